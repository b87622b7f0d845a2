// A Java environment without a virtual machine: a table of the JNI functions that the bridge may
// use. It counts calls, references and pins, converts UTF-8 as Java's class library does, can
// fail, and complains as a checking virtual machine would.
#ifndef WAP_TESTS_SUPPORT_FAKE_JNI_H
#define WAP_TESTS_SUPPORT_FAKE_JNI_H

#include <jni.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace wap::test {

/// How a planned failure of a JNI call looks.
enum class JniFailure { kNullAndException, kNullAlone };

class FakeJni : public JNIEnv {
  public:
    FakeJni();
    FakeJni(const FakeJni &) = delete;
    FakeJni &operator=(const FakeJni &) = delete;

    // ---- what Java hands over and gets back; such references are not the bridge's ----
    jstring JavaText(std::u16string sText);
    jobjectArray JavaTexts(const std::vector<std::optional<std::u16string>> &asTexts);
    jbyteArray JavaBytes(std::string sBytes);
    jobject JavaObject();
    /// The text behind a reference; nullopt for null.
    std::optional<std::u16string> TextOf(jobject jText) const;
    /// The same in UTF-8.
    std::optional<std::string> Utf8Of(jobject jText) const;
    /// What an array of bytes holds.
    std::string BytesOf(jobject jBytes) const;

    /// Ends the Java call: drops the local references, and complains about what must not be left.
    void EndCall();

    std::vector<std::string> asCalls;  ///< every call but those that only look at exceptions
    bool bRecord = true;
    JniFailure eFailure = JniFailure::kNullAndException;
    uint32_t uiCapacity = 16;         ///< local references that may exist
    uint32_t uiCapacityMax = 100000;  ///< what EnsureLocalCapacity grants at most
    uint32_t uiLocals = 0;            ///< references made by JNI calls and not deleted
    uint32_t uiLocalsMost = 0;
    uint32_t uiPins = 0;
    bool bPending = false;

    // ---- for the functions of the table ----
    struct Object {
        enum Kind { kClass, kText, kBytes, kArray, kThrowable, kOther } eKind = kOther;
        std::u16string sText;
        std::string sBytes;
        std::vector<std::shared_ptr<Object>> apstElements;
        std::string sName;
    };
    struct Ref {
        std::shared_ptr<Object> pstObject;
        bool bLocal = false;
        bool bDead = false;
    };

    /// Notes a call that needs a clear slate. False when a planned failure was applied.
    bool Enter(const char *pcName, const std::string &sArgs = "", bool bCanFail = true);
    /// Notes a call that is allowed at any time.
    void EnterAnyTime(const char *pcName);
    void NeedsCheck(const char *pcName) { sUnchecked = pcName; }
    void Checked() { sUnchecked.clear(); }
    void Throw() { bPending = true; }
    jobject NewRef(std::shared_ptr<Object> pstObject, bool bLocal);
    /// The object of a live reference of that kind; complains and gives null otherwise.
    Object *Deref(jobject jRef, Object::Kind eKind, const char *pcWhat) const;
    std::shared_ptr<Object> Shared(jobject jRef) const;
    void DropLocal(jobject jRef);

    struct Frame {
        size_t uiFirstRef;
        uint32_t uiCapacity;
    };
    std::vector<Frame> astFrames;
    std::vector<std::unique_ptr<Ref>> apstRefs;
    std::unordered_map<jobject, Ref *> mapRefs;  ///< the same, to look them up
    std::vector<std::pair<jbyte *, std::unique_ptr<std::string>>> astPinned;

  private:
    std::string sUnchecked;
};

// ---- defined by whoever links the environment ----
/// Called when the code under test broke a rule of JNI.
void NoteJniMisuse(const std::string &sText);
/// Called with the elements of an array as they go back to the virtual machine.
void NoteJniRelease(std::string_view sBytes);
/// Called by every JNI call that can fail, with its name; true makes it fail.
bool JniCallShallFail(const char *pcName);

/// UTF-16 to UTF-8 as getBytes does: an unpaired surrogate becomes '?'.
std::string ToUtf8(std::u16string_view sText);
/// UTF-8 to UTF-16 as the String constructor does: what is malformed becomes U+FFFD.
std::u16string FromUtf8(std::string_view sBytes);

}  // namespace wap::test

#endif

// Owners: each holds one thing and knows how its kind is given back. Three verbs say where a thing
// comes from:
//   Adopt  takes over something that the caller owned;
//   Make   makes the thing and owns it from the start;
//   Lend   hands out a borrowed pointer, which dies with the owner.
// Release() gives the thing away; from then on the receiver owns it.
#ifndef WAP_COMMON_OWNERS_H
#define WAP_COMMON_OWNERS_H

#include <jni.h>
#include <stdint.h>
#include <string.h>
#include <vt_ssp_basic.h>

#include "common/jni_base.h"
#include "common/jni_json_wrap.h"
#include "common/jni_vdata.h"
#include "common/report.h"

namespace wap {

/// A block of the platform's allocator, or of malloc.
class PlatformBlock {
  public:
    PlatformBlock() = default;
    PlatformBlock(const PlatformBlock &) = delete;
    PlatformBlock &operator=(const PlatformBlock &) = delete;
    ~PlatformBlock() { Adopt(nullptr); }

    /// Releases what is held and takes over a block, which may be null.
    void Adopt(void *pvBlock) {
        if (m_pvBlock != nullptr) {
            VT_OS_MemFreeD(m_pvBlock, WAP_SPOT.pcFile, WAP_SPOT.uiLine);
        }
        m_pvBlock = pvBlock;
    }
    /// Makes a zero-filled block of uiSize bytes, which exceeds 0; false when memory runs out.
    [[nodiscard]] bool Make(uint32_t uiSize, SourceSpot stSpot) {
        Adopt(VT_OS_MemMallocSet(uiSize, stSpot.pcFile, stSpot.uiLine));
        return m_pvBlock != nullptr;
    }
    /// Makes a block as Make does, but with whatever was in that memory: for a text that is ended,
    /// of which nothing is read behind its end.
    [[nodiscard]] bool MakeUnfilled(uint32_t uiSize, SourceSpot stSpot) {
        Adopt(VT_OS_MemMallocD(uiSize, stSpot.pcFile, stSpot.uiLine));
        return m_pvBlock != nullptr;
    }
    void *Lend() const { return m_pvBlock; }
    void *Release() {
        void *pvBlock = m_pvBlock;
        m_pvBlock = nullptr;
        return pvBlock;
    }
    explicit operator bool() const { return m_pvBlock != nullptr; }

  private:
    void *m_pvBlock = nullptr;
};

/// Overwrites a buffer with zeros through the platform, which the compiler can't optimise away.
inline void Wipe(void *pvBuf, uint32_t uiSize) {
    (void)VT_OS_MemSet_S(pvBuf, uiSize, 0, uiSize);
}

/// A record or buffer that holds secrets: wiped when it goes.
template <class Record>
class Wiped {
  public:
    Wiped() = default;
    Wiped(const Wiped &) = delete;
    Wiped &operator=(const Wiped &) = delete;
    ~Wiped() { Wipe(&stRecord, sizeof(stRecord)); }

    Record stRecord{};
};

/// A block that holds secrets: wiped over its whole length before it is released.
class SecretBlock {
  public:
    SecretBlock() = default;
    SecretBlock(const SecretBlock &) = delete;
    SecretBlock &operator=(const SecretBlock &) = delete;
    ~SecretBlock() { Drop(); }

    /// Makes a zero-filled block as PlatformBlock does, in the place of what is held.
    [[nodiscard]] bool Make(uint32_t uiSize, SourceSpot stSpot) {
        Drop();
        m_uiSize = m_stBlock.Make(uiSize, stSpot) ? uiSize : 0;
        return m_uiSize != 0;
    }
    /// Wipes and releases what is held.
    void Drop() {
        if (m_stBlock) {
            Wipe(m_stBlock.Lend(), m_uiSize);
            m_stBlock.Adopt(nullptr);
        }
    }
    void *Lend() const { return m_stBlock.Lend(); }
    explicit operator bool() const { return static_cast<bool>(m_stBlock); }

  private:
    PlatformBlock m_stBlock;
    uint32_t m_uiSize = 0;
};

/// A converted Java text.
class JavaText {
  public:
    static JavaText Make(JNIEnv *pstEnv, jstring jText, EmptyText eEmpty = EmptyText::kIsMissing) {
        return JavaText(pstEnv, jText, eEmpty, Secrecy::kPlain);
    }
    JavaText(const JavaText &) = delete;
    JavaText &operator=(const JavaText &) = delete;

    /// Lends the text; null when there is none.
    const char *Lend() const { return static_cast<const char *>(m_stBlock.Lend()); }
    explicit operator bool() const { return static_cast<bool>(m_stBlock); }

  protected:
    JavaText(JNIEnv *pstEnv, jstring jText, EmptyText eEmpty, Secrecy eSecrecy) {
        m_stBlock.Adopt(MakeNativeText(pstEnv, jText, eEmpty, eSecrecy, &m_uiLength));
    }
    PlatformBlock m_stBlock;
    uint32_t m_uiLength = 0;
};

/// A converted Java text that may be left away. One that is there and does not convert must not
/// count as none: something else would be asked for.
class OptionalText {
  public:
    OptionalText(JNIEnv *pstEnv, jstring jText)
        : m_stText(JavaText::Make(pstEnv, jText, EmptyText::kCounts)), m_bGiven(jText != nullptr) {}
    OptionalText(const OptionalText &) = delete;
    OptionalText &operator=(const OptionalText &) = delete;

    bool Failed() const { return m_bGiven && !m_stText; }
    /// Lends the text; null when there is none, or an empty one.
    const char *Lend() const {
        const char *pcText = m_stText.Lend();
        return pcText == nullptr || pcText[0] == '\0' ? nullptr : pcText;
    }

  private:
    const JavaText m_stText;
    const bool m_bGiven;
};

/// A converted Java text that is a secret: overwritten with zeros before it is released, also what
/// stands behind a U+0000 in it.
class SecretText : public JavaText {
  public:
    static SecretText Make(JNIEnv *pstEnv, jstring jText) {
        return SecretText(pstEnv, jText, EmptyText::kIsMissing, Secrecy::kSecret);
    }
    ~SecretText() {
        if (m_stBlock) {
            Wipe(m_stBlock.Lend(), m_uiLength);
        }
    }

  private:
    using JavaText::JavaText;
};

/// Up to kMax converted texts.
template <uint32_t kMax>
class TextTable {
  public:
    TextTable() = default;
    TextTable(const TextTable &) = delete;
    TextTable &operator=(const TextTable &) = delete;
    ~TextTable() { JNI_BASE_FreeArray2MaxIndex(m_apcTexts, m_uiCount); }

    /// Takes over the next text, null for an empty slot. A text beyond kMax is released; false.
    [[nodiscard]] bool Adopt(char *pcText) {
        if (m_uiCount == kMax) {
            JNI_BASE_FreeArray2MaxIndex(&pcText, 1);
            return false;
        }
        m_apcTexts[m_uiCount++] = pcText;
        return true;
    }
    uint32_t Count() const { return m_uiCount; }
    const char *Lend(uint32_t uiIndex) const {
        return uiIndex < kMax && uiIndex < m_uiCount ? m_apcTexts[uiIndex] : nullptr;
    }
    const char *const *Lend() const { return m_apcTexts; }

  private:
    char *m_apcTexts[kMax] = {};
    uint32_t m_uiCount = 0;
};

/// A JSON root.
class JsonValue {
  public:
    JsonValue() = default;
    /// Adopts; null is allowed.
    explicit JsonValue(json_object *pstValue) : m_pstValue(pstValue) {}
    JsonValue(const JsonValue &) = delete;
    JsonValue &operator=(const JsonValue &) = delete;
    ~JsonValue() { Adopt(nullptr); }

    /// Releases what is held and takes over a value, which may be null.
    void Adopt(json_object *pstValue) {
        if (m_pstValue != nullptr) {
            JNI_JSON_ObjPut(m_pstValue);
        }
        m_pstValue = pstValue;
    }
    json_object *Lend() const { return m_pstValue; }
    json_object *Release() {
        json_object *pstValue = m_pstValue;
        m_pstValue = nullptr;
        return pstValue;
    }
    explicit operator bool() const { return m_pstValue != nullptr; }

  private:
    json_object *m_pstValue = nullptr;
};

/// A bulk block fetched by its descriptor.
class BulkBlock {
  public:
    /// Fetches the block, which is gone for everyone afterwards. Results as
    /// VT_JNI_COMMON_ReadVData.
    uint32_t Make(const VDataDesc &stDesc) {
        void *pvData = nullptr;
        const uint32_t uiResult = VT_JNI_COMMON_ReadVData(&stDesc, &pvData);
        m_stBlock.Adopt(pvData);
        m_uiLen = pvData == nullptr ? 0 : stDesc.uiOriginalLen;
        return uiResult;
    }
    const void *Lend() const { return m_stBlock.Lend(); }
    /// Length in bytes; every count and text read from the block is bounded by it.
    uint32_t Length() const { return m_uiLen; }
    /// Lends the block as a text; null when no zero lies within it: a failed read for the caller.
    const char *LendText() const {
        if (m_uiLen == 0 || memchr(m_stBlock.Lend(), 0, m_uiLen) == nullptr) {
            return nullptr;
        }
        return static_cast<const char *>(m_stBlock.Lend());
    }
    /// Gives the block away, released with VT_OS_MemFreeD by the receiver.
    void *Release() {
        m_uiLen = 0;
        return m_stBlock.Release();
    }

  private:
    PlatformBlock m_stBlock;
    uint32_t m_uiLen = 0;
};

/// Frees the block that a reply of success names although it has nothing to read: who asked owns
/// it, and nobody else frees it. That there is none is no failure.
inline void FreeUnread(uint32_t uiDataID) {
    if (uiDataID != 0) {
        (void)VT_VDATA_FreeShm(uiDataID);
    }
}

}  // namespace wap

#endif

#include "support/fake_jni.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace wap::test {

namespace {

using Object = FakeJni::Object;

FakeJni &Env(JNIEnv *pstEnv) {
    return *static_cast<FakeJni *>(pstEnv);
}

void Complain(const std::string &sText) {
    NoteJniMisuse("JNI: " + sText);
}

std::shared_ptr<Object> MakeObject(Object::Kind eKind) {
    auto pstObject = std::make_shared<Object>();
    pstObject->eKind = eKind;
    return pstObject;
}

char g_acGetBytes[] = "getBytes(Ljava/lang/String;)[B";
char g_acStringInit[] = "<init>([BLjava/lang/String;)V";

void CheckCharset(FakeJni &stEnv, jobject jCharset) {
    const Object *pstCharset = stEnv.Deref(jCharset, Object::kText, "charset name");
    if (pstCharset != nullptr && pstCharset->sText != u"utf-8") {
        Complain("the charset is " + ToUtf8(pstCharset->sText));
    }
}

// ---- functions of the table ----

void UnexpectedCall() {
    std::fputs("a JNI function was called that the fake environment does not have\n", stderr);
    std::abort();
}

jclass FindClass(JNIEnv *pstEnv, const char *pcName) {
    FakeJni &stEnv = Env(pstEnv);
    if (!stEnv.Enter("FindClass", pcName)) {
        return nullptr;
    }
    auto pstClass = MakeObject(Object::kClass);
    pstClass->sName = pcName;
    return static_cast<jclass>(stEnv.NewRef(pstClass, true));
}

jstring NewStringUTF(JNIEnv *pstEnv, const char *pcText) {
    FakeJni &stEnv = Env(pstEnv);
    if (!stEnv.Enter("NewStringUTF", pcText)) {
        return nullptr;
    }
    auto pstText = MakeObject(Object::kText);
    pstText->sText.assign(pcText, pcText + std::strlen(pcText));
    return static_cast<jstring>(stEnv.NewRef(pstText, true));
}

jmethodID GetMethodID(JNIEnv *pstEnv, jclass jClass, const char *pcName, const char *pcSig) {
    FakeJni &stEnv = Env(pstEnv);
    const std::string sMethod = std::string(pcName) + pcSig;
    if (!stEnv.Enter("GetMethodID", sMethod)) {
        return nullptr;
    }
    const Object *pstClass = stEnv.Deref(jClass, Object::kClass, "class");
    if (pstClass != nullptr && pstClass->sName == "java/lang/String") {
        for (char *pcKnown : {g_acGetBytes, g_acStringInit}) {
            if (sMethod == pcKnown) {
                return reinterpret_cast<jmethodID>(pcKnown);
            }
        }
    }
    Complain("no method " + sMethod);
    stEnv.Throw();
    return nullptr;
}

jobject CallGetBytes(JNIEnv *pstEnv, jobject jThis, jmethodID jMethod, jobject jCharset) {
    FakeJni &stEnv = Env(pstEnv);
    const bool bGoesWell = stEnv.Enter("CallObjectMethod");
    stEnv.NeedsCheck("CallObjectMethod");
    if (!bGoesWell) {
        return nullptr;
    }
    if (jMethod != reinterpret_cast<jmethodID>(g_acGetBytes)) {
        Complain("CallObjectMethod of an unknown method");
        return nullptr;
    }
    CheckCharset(stEnv, jCharset);
    const Object *pstText = stEnv.Deref(jThis, Object::kText, "text");
    if (pstText == nullptr) {
        return nullptr;
    }
    auto pstBytes = MakeObject(Object::kBytes);
    pstBytes->sBytes = ToUtf8(pstText->sText);
    return stEnv.NewRef(pstBytes, true);
}

jobject CallObjectMethodV(JNIEnv *pstEnv, jobject jThis, jmethodID jMethod, va_list stArgs) {
    return CallGetBytes(pstEnv, jThis, jMethod, va_arg(stArgs, jobject));
}

jobject CallObjectMethod(JNIEnv *pstEnv, jobject jThis, jmethodID jMethod, ...) {
    va_list stArgs;
    va_start(stArgs, jMethod);
    const jobject jResult = CallObjectMethodV(pstEnv, jThis, jMethod, stArgs);
    va_end(stArgs);
    return jResult;
}

jobject CallObjectMethodA(JNIEnv *pstEnv, jobject jThis, jmethodID jMethod, const jvalue *pstArgs) {
    return CallGetBytes(pstEnv, jThis, jMethod, pstArgs[0].l);
}

jobject NewText(JNIEnv *pstEnv, jclass jClass, jmethodID jMethod, jobject jBytes,
                jobject jCharset) {
    FakeJni &stEnv = Env(pstEnv);
    const bool bGoesWell = stEnv.Enter("NewObject");
    stEnv.NeedsCheck("NewObject");
    if (!bGoesWell) {
        return nullptr;
    }
    stEnv.Deref(jClass, Object::kClass, "class");
    if (jMethod != reinterpret_cast<jmethodID>(g_acStringInit)) {
        Complain("NewObject with an unknown constructor");
        return nullptr;
    }
    CheckCharset(stEnv, jCharset);
    const Object *pstBytes = stEnv.Deref(jBytes, Object::kBytes, "bytes");
    if (pstBytes == nullptr) {
        return nullptr;
    }
    auto pstText = MakeObject(Object::kText);
    pstText->sText = FromUtf8(pstBytes->sBytes);
    return stEnv.NewRef(pstText, true);
}

jobject NewObjectV(JNIEnv *pstEnv, jclass jClass, jmethodID jMethod, va_list stArgs) {
    const jobject jBytes = va_arg(stArgs, jobject);
    return NewText(pstEnv, jClass, jMethod, jBytes, va_arg(stArgs, jobject));
}

jobject NewObjectVariadic(JNIEnv *pstEnv, jclass jClass, jmethodID jMethod, ...) {
    va_list stArgs;
    va_start(stArgs, jMethod);
    const jobject jResult = NewObjectV(pstEnv, jClass, jMethod, stArgs);
    va_end(stArgs);
    return jResult;
}

jobject NewObjectA(JNIEnv *pstEnv, jclass jClass, jmethodID jMethod, const jvalue *pstArgs) {
    return NewText(pstEnv, jClass, jMethod, pstArgs[0].l, pstArgs[1].l);
}

jsize GetArrayLength(JNIEnv *pstEnv, jarray jArray) {
    FakeJni &stEnv = Env(pstEnv);
    stEnv.Enter("GetArrayLength", "", false);
    const std::shared_ptr<Object> pstArray = stEnv.Shared(jArray);
    if (pstArray == nullptr ||
        (pstArray->eKind != Object::kBytes && pstArray->eKind != Object::kArray)) {
        Complain("GetArrayLength of no array");
        return 0;
    }
    return static_cast<jsize>(pstArray->eKind == Object::kBytes ? pstArray->sBytes.size()
                                                                : pstArray->apstElements.size());
}

// JNI's table says which pointers are to constants, here and below.
// NOLINTNEXTLINE(readability-non-const-parameter)
jbyte *GetByteArrayElements(JNIEnv *pstEnv, jbyteArray jArray, jboolean *pbCopy) {
    FakeJni &stEnv = Env(pstEnv);
    if (!stEnv.Enter("GetByteArrayElements")) {
        return nullptr;
    }
    if (pbCopy != nullptr) {
        Complain("GetByteArrayElements asks for the copy flag");
    }
    const Object *pstBytes = stEnv.Deref(jArray, Object::kBytes, "bytes");
    if (pstBytes == nullptr) {
        return nullptr;
    }
    auto pstCopy = std::make_unique<std::string>(pstBytes->sBytes);
    jbyte *pcElements = reinterpret_cast<jbyte *>(pstCopy->data());
    stEnv.astPinned.emplace_back(pcElements, std::move(pstCopy));
    ++stEnv.uiPins;
    return pcElements;
}

// NOLINTNEXTLINE(readability-non-const-parameter)
void ReleaseByteArrayElements(JNIEnv *pstEnv, jbyteArray jArray, jbyte *pcElements, jint iMode) {
    FakeJni &stEnv = Env(pstEnv);
    stEnv.EnterAnyTime("ReleaseByteArrayElements");
    Object *pstBytes = stEnv.Deref(jArray, Object::kBytes, "bytes");
    if (iMode != 0) {
        Complain("ReleaseByteArrayElements with mode " + std::to_string(iMode));
    }
    for (auto it = stEnv.astPinned.begin(); it != stEnv.astPinned.end(); ++it) {
        if (it->first == pcElements) {
            NoteJniRelease(*it->second);
            if (pstBytes != nullptr) {
                pstBytes->sBytes = *it->second;
            }
            stEnv.astPinned.erase(it);
            --stEnv.uiPins;
            return;
        }
    }
    Complain("ReleaseByteArrayElements of elements that nobody holds");
}

jbyteArray NewByteArray(JNIEnv *pstEnv, jsize iLen) {
    FakeJni &stEnv = Env(pstEnv);
    if (!stEnv.Enter("NewByteArray", std::to_string(iLen))) {
        return nullptr;
    }
    auto pstBytes = MakeObject(Object::kBytes);
    pstBytes->sBytes.assign(static_cast<size_t>(iLen), '\0');
    return static_cast<jbyteArray>(stEnv.NewRef(pstBytes, true));
}

void SetByteArrayRegion(JNIEnv *pstEnv, jbyteArray jArray, jsize iFrom, jsize iLen,
                        const jbyte *pcBytes) {
    FakeJni &stEnv = Env(pstEnv);
    const bool bGoesWell =
        stEnv.Enter("SetByteArrayRegion", std::to_string(iFrom) + " " + std::to_string(iLen));
    stEnv.NeedsCheck("SetByteArrayRegion");
    if (!bGoesWell) {
        return;
    }
    Object *pstBytes = stEnv.Deref(jArray, Object::kBytes, "bytes");
    if (pstBytes == nullptr || iFrom < 0 || iLen < 0 ||
        static_cast<size_t>(iFrom) + static_cast<size_t>(iLen) > pstBytes->sBytes.size()) {
        Complain("SetByteArrayRegion outside the array");
        stEnv.Throw();
        return;
    }
    std::memcpy(pstBytes->sBytes.data() + iFrom, pcBytes, static_cast<size_t>(iLen));
}

jobject GetObjectArrayElement(JNIEnv *pstEnv, jobjectArray jArray, jsize iIndex) {
    FakeJni &stEnv = Env(pstEnv);
    const bool bGoesWell = stEnv.Enter("GetObjectArrayElement", std::to_string(iIndex));
    stEnv.NeedsCheck("GetObjectArrayElement");
    if (!bGoesWell) {
        return nullptr;
    }
    const Object *pstArray = stEnv.Deref(jArray, Object::kArray, "array");
    if (pstArray == nullptr || iIndex < 0 ||
        static_cast<size_t>(iIndex) >= pstArray->apstElements.size()) {
        Complain("GetObjectArrayElement outside the array");
        stEnv.Throw();
        return nullptr;
    }
    const auto pstElement = pstArray->apstElements[static_cast<size_t>(iIndex)];
    return pstElement == nullptr ? nullptr : stEnv.NewRef(pstElement, true);
}

jint EnsureLocalCapacity(JNIEnv *pstEnv, jint iCount) {
    FakeJni &stEnv = Env(pstEnv);
    if (!stEnv.Enter("EnsureLocalCapacity", std::to_string(iCount))) {
        return -1;
    }
    if (iCount < 0 || static_cast<uint32_t>(iCount) > stEnv.uiCapacityMax) {
        stEnv.Throw();
        return -1;
    }
    stEnv.uiCapacity = std::max(stEnv.uiCapacity, stEnv.uiLocals + static_cast<uint32_t>(iCount));
    return 0;
}

jint PushLocalFrame(JNIEnv *pstEnv, jint iCount) {
    FakeJni &stEnv = Env(pstEnv);
    if (!stEnv.Enter("PushLocalFrame", std::to_string(iCount))) {
        return -1;
    }
    stEnv.astFrames.push_back({stEnv.apstRefs.size(), stEnv.uiCapacity});
    stEnv.uiCapacity = stEnv.uiLocals + static_cast<uint32_t>(iCount);
    return 0;
}

jobject PopLocalFrame(JNIEnv *pstEnv, jobject jResult) {
    FakeJni &stEnv = Env(pstEnv);
    stEnv.EnterAnyTime("PopLocalFrame");
    if (stEnv.astFrames.empty()) {
        Complain("PopLocalFrame without a frame");
        return nullptr;
    }
    const std::shared_ptr<Object> pstKept = stEnv.Shared(jResult);
    for (size_t i = stEnv.astFrames.back().uiFirstRef; i < stEnv.apstRefs.size(); ++i) {
        FakeJni::Ref &stRef = *stEnv.apstRefs[i];
        if (stRef.bLocal && !stRef.bDead) {
            stRef.bDead = true;
            --stEnv.uiLocals;
        }
    }
    stEnv.uiCapacity = stEnv.astFrames.back().uiCapacity;
    stEnv.astFrames.pop_back();
    return pstKept == nullptr ? nullptr : stEnv.NewRef(pstKept, true);
}

void DeleteLocalRef(JNIEnv *pstEnv, jobject jRef) {
    FakeJni &stEnv = Env(pstEnv);
    stEnv.EnterAnyTime("DeleteLocalRef");
    if (jRef != nullptr) {
        stEnv.DropLocal(jRef);
    }
}

jboolean ExceptionCheck(JNIEnv *pstEnv) {
    Env(pstEnv).Checked();
    return Env(pstEnv).bPending ? JNI_TRUE : JNI_FALSE;
}

jthrowable ExceptionOccurred(JNIEnv *pstEnv) {
    FakeJni &stEnv = Env(pstEnv);
    stEnv.Checked();
    return stEnv.bPending
               ? static_cast<jthrowable>(stEnv.NewRef(MakeObject(Object::kThrowable), true))
               : nullptr;
}

void ExceptionClear(JNIEnv *pstEnv) {
    Env(pstEnv).Checked();
    Env(pstEnv).bPending = false;
}

void ExceptionDescribe(JNIEnv *pstEnv) {
    Env(pstEnv).Checked();
}

JNINativeInterface_ MakeTable() {
    JNINativeInterface_ stTable{};
    using Slot = void (*)();
    static_assert(sizeof(stTable) % sizeof(Slot) == 0);
    const Slot pfnUnexpected = UnexpectedCall;
    for (size_t i = 0; i < sizeof(stTable) / sizeof(Slot); ++i) {
        std::memcpy(reinterpret_cast<char *>(&stTable) + i * sizeof(Slot), &pfnUnexpected,
                    sizeof(Slot));
    }
    stTable.FindClass = FindClass;
    stTable.NewStringUTF = NewStringUTF;
    stTable.GetMethodID = GetMethodID;
    stTable.CallObjectMethod = CallObjectMethod;
    stTable.CallObjectMethodV = CallObjectMethodV;
    stTable.CallObjectMethodA = CallObjectMethodA;
    stTable.NewObject = NewObjectVariadic;
    stTable.NewObjectV = NewObjectV;
    stTable.NewObjectA = NewObjectA;
    stTable.GetArrayLength = GetArrayLength;
    stTable.GetByteArrayElements = GetByteArrayElements;
    stTable.ReleaseByteArrayElements = ReleaseByteArrayElements;
    stTable.NewByteArray = NewByteArray;
    stTable.SetByteArrayRegion = SetByteArrayRegion;
    stTable.GetObjectArrayElement = GetObjectArrayElement;
    stTable.EnsureLocalCapacity = EnsureLocalCapacity;
    stTable.PushLocalFrame = PushLocalFrame;
    stTable.PopLocalFrame = PopLocalFrame;
    stTable.DeleteLocalRef = DeleteLocalRef;
    stTable.ExceptionCheck = ExceptionCheck;
    stTable.ExceptionOccurred = ExceptionOccurred;
    stTable.ExceptionClear = ExceptionClear;
    stTable.ExceptionDescribe = ExceptionDescribe;
    return stTable;
}

const JNINativeInterface_ kTable = MakeTable();

}  // namespace

FakeJni::FakeJni() {
    functions = &kTable;
}

jstring FakeJni::JavaText(std::u16string sText) {
    auto pstText = MakeObject(Object::kText);
    pstText->sText = std::move(sText);
    return static_cast<jstring>(NewRef(pstText, false));
}

jobjectArray FakeJni::JavaTexts(const std::vector<std::optional<std::u16string>> &asTexts) {
    auto pstArray = MakeObject(Object::kArray);
    for (const auto &sText : asTexts) {
        if (sText.has_value()) {
            auto pstText = MakeObject(Object::kText);
            pstText->sText = *sText;
            pstArray->apstElements.push_back(pstText);
        } else {
            pstArray->apstElements.push_back(nullptr);
        }
    }
    return static_cast<jobjectArray>(NewRef(pstArray, false));
}

jbyteArray FakeJni::JavaBytes(std::string sBytes) {
    auto pstBytes = MakeObject(Object::kBytes);
    pstBytes->sBytes = std::move(sBytes);
    return static_cast<jbyteArray>(NewRef(pstBytes, false));
}

jobject FakeJni::JavaObject() {
    return NewRef(MakeObject(Object::kOther), false);
}

std::optional<std::u16string> FakeJni::TextOf(jobject jText) const {
    if (jText == nullptr) {
        return std::nullopt;
    }
    const Object *pstText = Deref(jText, Object::kText, "text");
    return pstText == nullptr ? u"(not a text)" : pstText->sText;
}

std::optional<std::string> FakeJni::Utf8Of(jobject jText) const {
    const std::optional<std::u16string> sText = TextOf(jText);
    return sText ? std::optional(ToUtf8(*sText)) : std::nullopt;
}

std::string FakeJni::BytesOf(jobject jBytes) const {
    const Object *pstBytes = Deref(jBytes, Object::kBytes, "bytes");
    return pstBytes == nullptr ? "(no bytes)" : pstBytes->sBytes;
}

void FakeJni::EndCall() {
    if (bPending) {
        Complain("an exception is left pending");
    }
    if (!sUnchecked.empty()) {
        Complain("nobody looked for an exception after " + sUnchecked);
    }
    if (uiPins != 0) {
        Complain(std::to_string(uiPins) + " pinned arrays are left");
    }
    if (!astFrames.empty()) {
        Complain("a local frame is left");
    }
    bPending = false;
    sUnchecked.clear();
    uiPins = 0;
    astPinned.clear();
    astFrames.clear();
    mapRefs.clear();
    apstRefs.clear();
    uiLocals = 0;
    uiCapacity = 16;
}

bool FakeJni::Enter(const char *pcName, const std::string &sArgs, bool bCanFail) {
    if (bRecord) {
        asCalls.push_back(sArgs.empty() ? pcName : std::string(pcName) + " " + sArgs);
    }
    if (bPending) {
        Complain(std::string(pcName) + " with an exception pending");
    }
    if (!sUnchecked.empty()) {
        Complain(std::string(pcName) + " without a look for an exception after " + sUnchecked);
        sUnchecked.clear();
    }
    if (!bCanFail || !JniCallShallFail(pcName)) {
        return true;
    }
    // A void function has no other way to fail than an exception.
    if (eFailure == JniFailure::kNullAndException ||
        std::strcmp(pcName, "SetByteArrayRegion") == 0) {
        bPending = true;
    }
    return false;
}

void FakeJni::EnterAnyTime(const char *pcName) {
    if (bRecord) {
        asCalls.push_back(pcName);
    }
}

jobject FakeJni::NewRef(std::shared_ptr<Object> pstObject, bool bLocal) {
    if (bLocal) {
        ++uiLocals;
        uiLocalsMost = std::max(uiLocalsMost, uiLocals);
        if (uiLocals > uiCapacity) {
            Complain("more local references than capacity: " + std::to_string(uiLocals));
        }
    }
    apstRefs.push_back(std::make_unique<Ref>(Ref{std::move(pstObject), bLocal, false}));
    auto jRef = reinterpret_cast<jobject>(apstRefs.back().get());
    mapRefs.emplace(jRef, apstRefs.back().get());
    return jRef;
}

std::shared_ptr<Object> FakeJni::Shared(jobject jRef) const {
    const auto itRef = mapRefs.find(jRef);
    return itRef == mapRefs.end() || itRef->second->bDead ? nullptr : itRef->second->pstObject;
}

Object *FakeJni::Deref(jobject jRef, Object::Kind eKind, const char *pcWhat) const {
    const std::shared_ptr<Object> pstObject = Shared(jRef);
    if (pstObject == nullptr || pstObject->eKind != eKind) {
        Complain(std::string("no valid reference to a ") + pcWhat);
        return nullptr;
    }
    return pstObject.get();
}

void FakeJni::DropLocal(jobject jRef) {
    const auto itRef = mapRefs.find(jRef);
    if (itRef == mapRefs.end() || !itRef->second->bLocal || itRef->second->bDead) {
        Complain("DeleteLocalRef of no local reference");
        return;
    }
    itRef->second->bDead = true;
    --uiLocals;
}

std::string ToUtf8(std::u16string_view sText) {
    std::string sBytes;
    for (size_t i = 0; i < sText.size(); ++i) {
        uint32_t uiCode = sText[i];
        if (uiCode >= 0xD800 && uiCode <= 0xDFFF) {
            const bool bPair = uiCode < 0xDC00 && i + 1 < sText.size() && sText[i + 1] >= 0xDC00 &&
                               sText[i + 1] <= 0xDFFF;
            if (!bPair) {
                sBytes += '?';
                continue;
            }
            uiCode = 0x10000 + ((uiCode - 0xD800) << 10) + (sText[++i] - 0xDC00u);
        }
        if (uiCode < 0x80) {
            sBytes += static_cast<char>(uiCode);
        } else if (uiCode < 0x800) {
            sBytes += static_cast<char>(0xC0 | (uiCode >> 6));
            sBytes += static_cast<char>(0x80 | (uiCode & 0x3F));
        } else if (uiCode < 0x10000) {
            sBytes += static_cast<char>(0xE0 | (uiCode >> 12));
            sBytes += static_cast<char>(0x80 | ((uiCode >> 6) & 0x3F));
            sBytes += static_cast<char>(0x80 | (uiCode & 0x3F));
        } else {
            sBytes += static_cast<char>(0xF0 | (uiCode >> 18));
            sBytes += static_cast<char>(0x80 | ((uiCode >> 12) & 0x3F));
            sBytes += static_cast<char>(0x80 | ((uiCode >> 6) & 0x3F));
            sBytes += static_cast<char>(0x80 | (uiCode & 0x3F));
        }
    }
    return sBytes;
}

std::u16string FromUtf8(std::string_view sBytes) {
    std::u16string sText;
    const auto At = [&](size_t i) { return static_cast<uint8_t>(sBytes[i]); };
    for (size_t i = 0; i < sBytes.size();) {
        const uint8_t ucLead = At(i);
        size_t uiMore = ucLead < 0x80                     ? 0
                        : ucLead >= 0xC2 && ucLead < 0xE0 ? 1
                        : ucLead >= 0xE0 && ucLead < 0xF0 ? 2
                        : ucLead >= 0xF0 && ucLead < 0xF5 ? 3
                                                          : 99;
        uint32_t uiCode = uiMore == 0   ? ucLead
                          : uiMore == 1 ? ucLead & 0x1Fu
                          : uiMore == 2 ? ucLead & 0x0Fu
                                        : ucLead & 0x07u;
        size_t uiTaken = 1;
        bool bGood = uiMore != 99;
        for (size_t j = 1; bGood && j <= uiMore; ++j) {
            // The byte after the lead also rules out overlong forms, surrogates and what lies
            // beyond U+10FFFF.
            uint8_t ucLow = 0x80;
            uint8_t ucHigh = 0xBF;
            if (j == 1) {
                ucLow = ucLead == 0xE0 ? 0xA0 : ucLead == 0xF0 ? 0x90 : 0x80;
                ucHigh = ucLead == 0xED ? 0x9F : ucLead == 0xF4 ? 0x8F : 0xBF;
            }
            if (i + j >= sBytes.size() || At(i + j) < ucLow || At(i + j) > ucHigh) {
                bGood = false;
            } else {
                uiCode = (uiCode << 6) | (At(i + j) & 0x3Fu);
                ++uiTaken;
            }
        }
        i += uiTaken;
        if (!bGood) {
            sText += u'\xFFFD';
        } else if (uiCode < 0x10000) {
            sText += static_cast<char16_t>(uiCode);
        } else {
            sText += static_cast<char16_t>(0xD800 + ((uiCode - 0x10000) >> 10));
            sText += static_cast<char16_t>(0xDC00 + ((uiCode - 0x10000) & 0x3FF));
        }
    }
    return sText;
}

}  // namespace wap::test

#include "common/jni_common.h"

#include <string.h>

#include "common/fields.h"
#include "common/jni_base.h"
#include "common/owners.h"
#include "common/report.h"

using namespace wap;

uint32_t ROUTE_MODE = 0;

namespace {

/// Adds a code under "Result"; false, recorded, when the value can't be made or attached.
bool AddResult(SourceSpot stSpot, json_object *pstObj, int32_t iResult) {
    if (JNI_JSON_ObjAddKeyValueInt(pstObj, "Result", iResult) != 0) {
        RecordFault(stSpot, kErrFailed, static_cast<uint32_t>(iResult));
        return false;
    }
    return true;
}

/// Adds the text of a field that nobody promised to terminate.
template <size_t kSize>
bool AddField(json_object *pstObj, const char *pcKey, const char (&acField)[kSize]) {
    return JNI_JSON_ObjAddKeyValueString(pstObj, pcKey, FieldText(acField).Lend()) == 0;
}

using ItemAdder = uint32_t (*)(json_object *pstObj, const char *pcKey, uintptr_t ulValue,
                               uint32_t uiPolicy);

uint32_t AddInt(json_object *pstObj, const char *pcKey, uintptr_t ulValue, uint32_t) {
    return JNI_JSON_ObjAddKeyValueInt(pstObj, pcKey, static_cast<int32_t>(ulValue));
}

uint32_t AddBool(json_object *pstObj, const char *pcKey, uintptr_t ulValue, uint32_t) {
    return JNI_JSON_ObjAddKeyValueBool(pstObj, pcKey, static_cast<uint32_t>(ulValue));
}

uint32_t AddObject(json_object *pstObj, const char *pcKey, uintptr_t ulValue, uint32_t) {
    JsonValue stValue(PointerIn<json_object *>(ulValue));
    const uint32_t uiResult = JNI_JSON_ObjAddKeyValue(pstObj, pcKey, stValue.Lend());
    if (uiResult == 0) {
        (void)stValue.Release();
    }
    return uiResult;
}

/// By JsonItemType. The gaps are part of the table: items of those types are skipped.
constexpr ItemAdder kItemAdders[] = {
    AddInt,    AddBool, VT_JNI_COMMON_Json_Obj_AddStr,       VT_JNI_COMMON_Json_Obj_AddStrAddRef,
    AddObject, nullptr, VT_JNI_COMMON_Json_Obj_AddIntString, nullptr,
};
constexpr uint32_t kItemTypes = sizeof(kItemAdders) / sizeof(kItemAdders[0]);

}  // namespace

uint32_t VT_JNI_COMMON_Json_Obj_AddStr(json_object *pstObj, const char *pcKey, uintptr_t ulText,
                                       uint32_t uiPolicy) {
    const char *pcText = PointerIn<const char *>(ulText);
    if (pcText != nullptr && pcText[0] == '\0') {
        if (uiPolicy == kEmptyAsNull) {
            return JNI_JSON_ObjAddKeyValueNULL(pstObj, pcKey);
        }
        if (uiPolicy != kEmptyAsText) {
            return 0;
        }
    }
    return JNI_JSON_ObjAddKeyValueString(pstObj, pcKey, pcText);
}

uint32_t VT_JNI_COMMON_Json_Obj_AddStrAddRef(json_object *pstObj, const char *pcKey,
                                             uintptr_t ulTextRef, uint32_t uiPolicy) {
    const char *const *ppcText = PointerIn<const char *const *>(ulTextRef);
    if (ppcText == nullptr) {
        return Recorded(WAP_SPOT, kJsonErrNull, AsNumber(pcKey));
    }
    if (*ppcText == nullptr) {
        return JNI_JSON_ObjAddKeyValueString(pstObj, pcKey, "");
    }
    return VT_JNI_COMMON_Json_Obj_AddStr(pstObj, pcKey, reinterpret_cast<uintptr_t>(*ppcText),
                                         uiPolicy);
}

uint32_t VT_JNI_COMMON_Json_Obj_AddIntString(json_object *pstObj, const char *pcKey,
                                             uintptr_t ulIntRef, uint32_t uiPolicy) {
    const int32_t *piValue = PointerIn<const int32_t *>(ulIntRef);
    if (piValue == nullptr) {
        return Recorded(WAP_SPOT, kJsonErrNull, AsNumber(pcKey));
    }
    char acDigits[32] = {};
    (void)VT_OS_Int32ToStr_S(*piValue, acDigits, sizeof(acDigits));
    return VT_JNI_COMMON_Json_Obj_AddStr(pstObj, pcKey, reinterpret_cast<uintptr_t>(acDigits),
                                         uiPolicy);
}

void wap::PutFailureAnswer(char *pcBuf, uint32_t uiCap, const char *pcAnswer) {
    (void)VT_OS_MemSet_S(pcBuf, uiCap, 0, uiCap);
    (void)VT_OS_Snprintf_S(pcBuf, uiCap, uiCap - 1, "%s", pcAnswer);
}

uint32_t wap::AddItems(json_object *pstObj, const JsonItem *pstItems, uint32_t uiCount) {
    uint32_t uiFailed = 0;
    for (uint32_t i = 0; pstItems != nullptr && i < uiCount; ++i) {
        const JsonItem &stItem = pstItems[i];
        if (stItem.uiType < kItemTypes && kItemAdders[stItem.uiType] != nullptr &&
            kItemAdders[stItem.uiType](pstObj, stItem.pcKey, stItem.ulValue, stItem.uiPolicy) !=
                0) {
            ++uiFailed;
        }
    }
    return uiFailed;
}

PrintedText wap::PrintInto(json_object *pstValue, char *pcOut, uint32_t uiOutCap) {
    const char *pcText = JNI_JSON_ObjToJsonString(pstValue);
    if (HasNoText(pcText)) {
        return {nullptr, 0, false};
    }
    const uint32_t uiLength = VT_OS_StrLen(pcText);
    const bool bFits = pcOut != nullptr && uiLength < uiOutCap;
    if (bFits) {
        memcpy(pcOut, pcText, uiLength + 1);
    }
    return {pcText, uiLength, bFits};
}

void VT_JNI_COMMON_Json_Obj_AddItems(json_object *pstObj, const JsonItem *pstItems,
                                     uint32_t uiCount) {
    (void)AddItems(pstObj, pstItems, uiCount);
}

uint32_t JNI_COMMON_ComposeResult2JString(const JsonItem *pstItems, uint32_t uiCount, char *pcOut,
                                          uint32_t uiOutCap, int32_t iResult) {
    return Compose(pstItems, uiCount, pcOut, uiOutCap, iResult, Completeness::kAsFarAsItGoes);
}

uint32_t wap::Compose(const JsonItem *pstItems, uint32_t uiCount, char *pcOut, uint32_t uiOutCap,
                      int32_t iResult, Completeness eCompleteness) {
    JsonValue stRoot(JNI_JSON_ObjNewObj());
    if (!stRoot) {
        return Recorded(WAP_SPOT, kErrFailed);
    }
    // An answer without its result would be no answer.
    if (!AddResult(WAP_SPOT, stRoot.Lend(), iResult)) {
        return kErrFailed;
    }
    const uint32_t uiFailed = iResult == 0 ? AddItems(stRoot.Lend(), pstItems, uiCount) : 0;
    if (uiFailed != 0 && eCompleteness == Completeness::kWhole) {
        return Recorded(WAP_SPOT, 1, uiFailed);
    }
    const PrintedText stText = PrintInto(stRoot.Lend(), pcOut, uiOutCap);
    if (stText.pcText == nullptr) {
        return Recorded(WAP_SPOT, 1);
    }
    return stText.bCopied ? 0 : Recorded(WAP_SPOT, 1, uiOutCap, stText.uiLength);
}

jstring OSGI_JNI_FaultStrBuild(JNIEnv *pstEnv, int32_t iResult) {
    JsonValue stRoot(JNI_JSON_ObjNewObj());
    if (!stRoot) {
        RecordFault(WAP_SPOT, kErrFailed);
        return nullptr;
    }
    if (!AddResult(WAP_SPOT, stRoot.Lend(), iResult)) {
        return nullptr;
    }
    const char *pcText = JNI_JSON_ObjToJsonString(stRoot.Lend());
    if (HasNoText(pcText)) {
        RecordFault(WAP_SPOT, kErrFailed, static_cast<uint32_t>(iResult));
        return nullptr;
    }
    WAP_TRACE(kTraceEntries, "pcJsonStr:%s\r\n", pcText);
    return char2jstring(pstEnv, pcText);
}

uint32_t VT_OSGI_JNI_BuildJsonObj(const RuntimeNames *pstNames, json_object **ppstOut,
                                  int32_t iResult) {
    if (pstNames == nullptr || ppstOut == nullptr) {
        return Recorded(WAP_SPOT, kErrFailed, AsNumber(pstNames), AsNumber(ppstOut));
    }
    JsonValue stRoot(JNI_JSON_ObjNewObj());
    if (!stRoot) {
        return Recorded(WAP_SPOT, kJsonErrObject);
    }
    json_object *pstRoot = stRoot.Lend();
    if (!AddResult(WAP_SPOT, pstRoot, iResult) || !AddField(pstRoot, "Name", pstNames->acName) ||
        !AddField(pstRoot, "Version", pstNames->acVersion) ||
        !AddField(pstRoot, "Vendor", pstNames->acVendor)) {
        return Recorded(WAP_SPOT, kErrFailed);
    }
    *ppstOut = stRoot.Release();
    return 0;
}

uint32_t VT_JNI_MacfltNullCheck(const char *const *ppcTexts, uint32_t uiCount) {
    if (ppcTexts == nullptr) {
        return 1;
    }
    for (uint32_t i = 0; i < uiCount; ++i) {
        if (ppcTexts[i] != nullptr && ppcTexts[i][0] != '\0') {
            return 0;
        }
    }
    return 1;
}

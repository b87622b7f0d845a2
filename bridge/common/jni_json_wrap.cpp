#include "common/jni_json_wrap.h"

#include <string.h>
#include <vt_ssp_basic.h>

#include "common/json_parse.h"
#include "common/json_print.h"
#include "common/report.h"

using namespace wap;

namespace {

/// What every typed getter checks: its pointers, then the value's type.
uint32_t CheckValue(SourceSpot stSpot, json_object *pstValue, const void *pvOut, json_type eType) {
    if (pstValue == nullptr || pvOut == nullptr) {
        return Recorded(stSpot, kJsonErrNull, AsNumber(pstValue), AsNumber(pvOut));
    }
    const json_type eFound = json_object_get_type(pstValue);
    if (eFound != eType) {
        RecordFault(stSpot, kJsonErrType, static_cast<uint32_t>(eFound),
                    static_cast<uint32_t>(eType));
        return kJsonErrType;
    }
    return 0;
}

/// What every typed getter does: check, then take the value with json-c's getter.
template <class JsonC, class Out>
uint32_t GetTyped(SourceSpot stSpot, json_object *pstValue, json_type eType,
                  JsonC (*pfnGet)(const json_object *), Out *pOut) {
    const uint32_t uiResult = CheckValue(stSpot, pstValue, pOut, eType);
    if (uiResult == 0) {
        *pOut = static_cast<Out>(pfnGet(pstValue));
    }
    return uiResult;
}

/// Looks a key up and hands its value to a typed getter.
template <class Out>
uint32_t GetByKey(SourceSpot stSpot, json_object *pstObj, const char *pcKey, Out *pOut,
                  uint32_t (*pfnGet)(json_object *, Out *)) {
    json_object *pstValue = nullptr;
    const uint32_t uiResult = JNI_JSON_ObjGetValueObj(pstObj, pcKey, &pstValue);
    return Recorded(stSpot, uiResult != 0 ? uiResult : pfnGet(pstValue, pOut));
}

/// False, recorded, when a value asked for without a type check is null.
bool CheckLent(SourceSpot stSpot, const json_object *pstValue) {
    if (pstValue == nullptr) {
        RecordFault(stSpot, kJsonErrNull);
        return false;
    }
    return true;
}

/// Puts a value, or JSON null, under a key of an object. json-c would end the process if the
/// parent were something else.
uint32_t Attach(SourceSpot stSpot, json_object *pstObj, const char *pcKey, json_object *pstValue) {
    if (json_object_is_type(pstObj, json_type_object) == 0) {
        RecordFault(stSpot, kJsonErrType, static_cast<uint32_t>(json_object_get_type(pstObj)));
        return kJsonErrType;
    }
    if (json_object_object_add(pstObj, pcKey, pstValue) != 0) {
        return Recorded(stSpot, kJsonErrObject, AsNumber(pstObj), AsNumber(pstValue));
    }
    return 0;
}

/// True when object and key are there; else recorded.
bool CheckParent(SourceSpot stSpot, json_object *pstObj, const char *pcKey) {
    if (pstObj == nullptr || pcKey == nullptr) {
        RecordFault(stSpot, kJsonErrNull, AsNumber(pstObj), AsNumber(pcKey));
        return false;
    }
    return true;
}

/// Attaches a value that was made for this key alone: released again if it can't be attached.
uint32_t AttachNew(SourceSpot stSpot, json_object *pstObj, const char *pcKey,
                   json_object *pstValue) {
    if (pstValue == nullptr) {
        return Recorded(stSpot, kJsonErrValue, AsNumber(pstObj));
    }
    const uint32_t uiResult = JNI_JSON_ObjAddKeyValue(pstObj, pcKey, pstValue);
    if (uiResult != 0) {
        JNI_JSON_ObjPut(pstValue);
        RecordFault(stSpot, uiResult, AsNumber(pstObj));
    }
    return uiResult;
}

}  // namespace

json_object *JSON_Parse(const char *pcText, uint32_t uiStrict) {
    return ParseJson(WAP_SPOT, pcText, uiStrict == 1 ? Grammar::kStrict : Grammar::kLenient,
                     Secrecy::kPlain);
}

uint32_t JNI_JSON_ObjGetInt(json_object *pstValue, int32_t *piOut) {
    return GetTyped(WAP_SPOT, pstValue, json_type_int, json_object_get_int, piOut);
}

uint32_t JNI_JSON_ObjGetBool(json_object *pstValue, uint32_t *puiOut) {
    return GetTyped(WAP_SPOT, pstValue, json_type_boolean, json_object_get_boolean, puiOut);
}

uint32_t JNI_JSON_ObjGetDouble(json_object *pstValue, double *pdOut) {
    return GetTyped(WAP_SPOT, pstValue, json_type_double, json_object_get_double, pdOut);
}

uint32_t JNI_JSON_ObjGetStringLen(json_object *pstValue, uint32_t *puiOut) {
    return GetTyped(WAP_SPOT, pstValue, json_type_string, json_object_get_string_len, puiOut);
}

uint32_t JNI_JSON_ObjGetString(json_object *pstValue, char *pcBuf, uint32_t uiCap) {
    if (pstValue == nullptr || pcBuf == nullptr || uiCap == 0) {
        return Recorded(WAP_SPOT, kJsonErrNull, AsNumber(pstValue), AsNumber(pcBuf), uiCap);
    }
    uint32_t uiLength = 0;
    const uint32_t uiResult = JNI_JSON_ObjGetStringLen(pstValue, &uiLength);
    if (uiResult != 0) {
        return Recorded(WAP_SPOT, uiResult);
    }
    if (uiCap <= uiLength) {
        return Recorded(WAP_SPOT, kJsonErrTooLong, uiLength, uiCap);
    }
    if (const char *pcText = json_object_get_string(pstValue)) {
        (void)VT_OS_StrNCpy_S(pcBuf, uiCap, pcText, uiLength);
    }
    return 0;
}

uint32_t JNI_JSON_ObjGetArrayLen(json_object *pstArray, uint32_t *puiOut) {
    uint32_t uiLength = 0;
    const uint32_t uiResult =
        GetTyped(WAP_SPOT, pstArray, json_type_array, json_object_array_length, &uiLength);
    if (uiResult != 0) {
        return uiResult;
    }
    // Looked at last: whoever asks no array for its length is told that first.
    if (puiOut == nullptr) {
        return Recorded(WAP_SPOT, kJsonErrNull, AsNumber(pstArray));
    }
    *puiOut = uiLength;
    return 0;
}

uint32_t JNI_JSON_ObjGetValueObj(json_object *pstObj, const char *pcKey, json_object **ppstOut) {
    if (pstObj == nullptr || pcKey == nullptr || ppstOut == nullptr) {
        return Recorded(WAP_SPOT, kJsonErrNull, AsNumber(pstObj), AsNumber(pcKey),
                        AsNumber(ppstOut));
    }
    const uint32_t uiResult = CheckValue(WAP_SPOT, pstObj, ppstOut, json_type_object);
    if (uiResult != 0) {
        return uiResult;
    }
    json_object *pstValue = nullptr;
    if (json_object_object_get_ex(pstObj, pcKey, &pstValue) == 0) {
        return Recorded(WAP_SPOT, kJsonErrNoKey, AsNumber(pstObj), AsNumber(pcKey));
    }
    *ppstOut = pstValue;
    return 0;
}

uint32_t JNI_JSON_ObjGetValueInt(json_object *pstObj, const char *pcKey, int32_t *piOut) {
    return GetByKey(WAP_SPOT, pstObj, pcKey, piOut, JNI_JSON_ObjGetInt);
}

uint32_t JNI_JSON_ObjGetValueBool(json_object *pstObj, const char *pcKey, uint32_t *puiOut) {
    return GetByKey(WAP_SPOT, pstObj, pcKey, puiOut, JNI_JSON_ObjGetBool);
}

uint32_t JNI_JSON_ObjGetValueDouble(json_object *pstObj, const char *pcKey, double *pdOut) {
    return GetByKey(WAP_SPOT, pstObj, pcKey, pdOut, JNI_JSON_ObjGetDouble);
}

uint32_t JNI_JSON_ObjGetValueStringLen(json_object *pstObj, const char *pcKey, uint32_t *puiOut) {
    return GetByKey(WAP_SPOT, pstObj, pcKey, puiOut, JNI_JSON_ObjGetStringLen);
}

uint32_t JNI_JSON_ObjGetValueString(json_object *pstObj, const char *pcKey, char *pcBuf,
                                    uint32_t uiCap) {
    if (pcBuf == nullptr || uiCap == 0) {
        return Recorded(WAP_SPOT, kJsonErrNull, AsNumber(pcBuf), uiCap);
    }
    json_object *pstValue = nullptr;
    uint32_t uiResult = JNI_JSON_ObjGetValueObj(pstObj, pcKey, &pstValue);
    if (uiResult == 0) {
        uiResult =
            pstValue == nullptr ? kJsonErrNullValue : JNI_JSON_ObjGetString(pstValue, pcBuf, uiCap);
    }
    return Recorded(WAP_SPOT, uiResult);
}

uint32_t JNI_JSON_ObjGetValue(json_object *pstObj, const char *pcKey, json_object **ppstOut) {
    if (pstObj == nullptr || pcKey == nullptr || ppstOut == nullptr) {
        RecordFault(WAP_SPOT, kJsonErrNull, AsNumber(pstObj), AsNumber(pcKey), AsNumber(ppstOut));
        return 0;
    }
    return json_object_object_get_ex(pstObj, pcKey, ppstOut) != 0 ? 1 : 0;
}

const char *JNI_JSON_ObjGetStringEx(json_object *pstValue) {
    return CheckLent(WAP_SPOT, pstValue) ? json_object_get_string(pstValue) : nullptr;
}

uint32_t JNI_JSON_ObjGetStringLenEx(json_object *pstValue) {
    return CheckLent(WAP_SPOT, pstValue)
               ? static_cast<uint32_t>(json_object_get_string_len(pstValue))
               : 0;
}

int32_t JNI_JSON_ObjGetIntEx(json_object *pstValue) {
    return CheckLent(WAP_SPOT, pstValue) ? json_object_get_int(pstValue) : 0;
}

uint32_t JNI_JSON_ObjGetBoolEx(json_object *pstValue) {
    return CheckLent(WAP_SPOT, pstValue) && json_object_get_boolean(pstValue) != 0 ? 1 : 0;
}

uint32_t JNI_JSON_IsArray(json_object *pstValue) {
    return json_object_is_type(pstValue, json_type_array) != 0 ? 1 : 0;
}

uint32_t JNI_JSON_IsObj(json_object *pstValue) {
    return json_object_is_type(pstValue, json_type_object) != 0 ? 1 : 0;
}

json_object *JNI_JSON_ObjNewObj(void) {
    return json_object_new_object();
}

json_object *JNI_JSON_ObjNewArray(void) {
    return json_object_new_array();
}

json_object *JNI_JSON_ObjNewInt(int32_t iValue) {
    return json_object_new_int(iValue);
}

json_object *JNI_JSON_ObjNewBool(uint32_t uiValue) {
    return json_object_new_boolean(uiValue != 0 ? 1 : 0);
}

json_object *JNI_JSON_ObjNewDouble(double dValue) {
    return json_object_new_double(dValue);
}

json_object *JNI_JSON_ObjNewString(const char *pcText) {
    if (pcText == nullptr) {
        RecordFault(WAP_SPOT, kJsonErrNull);
        return nullptr;
    }
    return json_object_new_string(pcText);
}

uint32_t JNI_JSON_ObjAddKeyValue(json_object *pstObj, const char *pcKey, json_object *pstValue) {
    if (pstObj == nullptr || pcKey == nullptr || pstValue == nullptr) {
        return Recorded(WAP_SPOT, kJsonErrNull, AsNumber(pstObj), AsNumber(pcKey),
                        AsNumber(pstValue));
    }
    return Attach(WAP_SPOT, pstObj, pcKey, pstValue);
}

uint32_t JNI_JSON_ObjAddKeyValueString(json_object *pstObj, const char *pcKey, const char *pcText) {
    if (pstObj == nullptr || pcKey == nullptr || pcText == nullptr) {
        return Recorded(WAP_SPOT, kJsonErrNull, AsNumber(pstObj), AsNumber(pcKey),
                        AsNumber(pcText));
    }
    return AttachNew(WAP_SPOT, pstObj, pcKey, JNI_JSON_ObjNewString(pcText));
}

uint32_t JNI_JSON_ObjAddKeyValueNULL(json_object *pstObj, const char *pcKey) {
    return CheckParent(WAP_SPOT, pstObj, pcKey) ? Attach(WAP_SPOT, pstObj, pcKey, nullptr)
                                                : kJsonErrNull;
}

uint32_t JNI_JSON_ObjAddKeyValueInt(json_object *pstObj, const char *pcKey, int32_t iValue) {
    return CheckParent(WAP_SPOT, pstObj, pcKey)
               ? AttachNew(WAP_SPOT, pstObj, pcKey, JNI_JSON_ObjNewInt(iValue))
               : kJsonErrNull;
}

uint32_t JNI_JSON_ObjAddKeyValueBool(json_object *pstObj, const char *pcKey, uint32_t uiValue) {
    return CheckParent(WAP_SPOT, pstObj, pcKey)
               ? AttachNew(WAP_SPOT, pstObj, pcKey, JNI_JSON_ObjNewBool(uiValue))
               : kJsonErrNull;
}

uint32_t JNI_JSON_ObjAddKeyValueDouble(json_object *pstObj, const char *pcKey, double dValue) {
    return CheckParent(WAP_SPOT, pstObj, pcKey)
               ? AttachNew(WAP_SPOT, pstObj, pcKey, JNI_JSON_ObjNewDouble(dValue))
               : kJsonErrNull;
}

uint32_t JNI_JSON_ObjAddKeyValueIntToString(json_object *pstObj, const char *pcKey,
                                            int32_t iValue) {
    if (!CheckParent(WAP_SPOT, pstObj, pcKey)) {
        return kJsonErrNull;
    }
    char acDigits[32] = {};
    (void)VT_OS_Int32ToStr_S(iValue, acDigits, sizeof(acDigits));
    return JNI_JSON_ObjAddKeyValueString(pstObj, pcKey, acDigits);
}

uint32_t JNI_JSON_ObjArrayAdd(json_object *pstArray, json_object *pstElement) {
    if (pstArray == nullptr || pstElement == nullptr) {
        // Success all the same, deliberately: a list goes on with its next element.
        RecordFault(WAP_SPOT, kJsonErrNull, AsNumber(pstArray), AsNumber(pstElement));
        return 0;
    }
    if (json_object_is_type(pstArray, json_type_array) == 0) {
        RecordFault(WAP_SPOT, kJsonErrType, static_cast<uint32_t>(json_object_get_type(pstArray)));
        return kJsonErrType;
    }
    if (json_object_array_add(pstArray, pstElement) != 0) {
        return Recorded(WAP_SPOT, kJsonErrObject, AsNumber(pstArray), AsNumber(pstElement));
    }
    return 0;
}

void JNI_JSON_ObjPut(json_object *pstValue) {
    if (pstValue == nullptr) {
        RecordFault(WAP_SPOT, kJsonErrNull);
        return;
    }
    (void)json_object_put(pstValue);
}

const char *JNI_JSON_ObjToJsonString(json_object *pstValue) {
    if (pstValue == nullptr) {
        RecordFault(WAP_SPOT, kJsonErrNull);
        return nullptr;
    }
    const char *pcText = json_object_to_json_string(pstValue);
    if (pcText != nullptr && strlen(pcText) < SpacedLength(pstValue)) {
        // json-c drops what it has no memory for, and tells no one. More than expected is no loss:
        // other versions may escape more characters.
        RecordFault(WAP_SPOT, kErrNoMemory, static_cast<uint32_t>(strlen(pcText)));
        return nullptr;
    }
    return pcText;
}

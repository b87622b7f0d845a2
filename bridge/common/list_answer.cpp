#include "common/list_answer.h"

namespace wap {

bool AppendObject(SourceSpot stSpot, const JsonValue &stList, const JsonItem *pstItems,
                  uint32_t uiCount) {
    JsonValue stObject(JNI_JSON_ObjNewObj());
    if (!stObject) {
        RecordFault(stSpot, kJsonErrObject);
        return false;
    }
    VT_JNI_COMMON_Json_Obj_AddItems(stObject.Lend(), pstItems, uiCount);
    const uint32_t uiResult = JNI_JSON_ObjArrayAdd(stList.Lend(), stObject.Lend());
    if (uiResult != 0) {
        RecordFault(stSpot, uiResult);
    } else {
        (void)stObject.Release();
    }
    return true;
}

uint32_t ComposeList(SourceSpot stSpot, const char *pcWorker, JsonValue &stList, uint32_t uiCap,
                     char **ppcText) {
    VT_PROC_DBG_TraceS(kTraceEntries, stSpot.pcFile, stSpot.uiLine, 0, "%s  malloc size:%u\n\r",
                       pcWorker, uiCap);
    PlatformBlock stText;
    if (!stText.Make(uiCap, stSpot)) {
        RecordFault(stSpot, 1, uiCap);
        return 1;
    }
    const JsonItem stItem = {"List", reinterpret_cast<uintptr_t>(stList.Lend()), kItemObject,
                             kEmptyAsText};
    auto *pcText = static_cast<char *>(stText.Lend());
    const uint32_t uiResult = JNI_COMMON_ComposeResult2JString(&stItem, 1, pcText, uiCap, 0);
    if (uiResult != kErrFailed) {
        (void)stList.Release();
    }
    if (uiResult != 0) {
        RecordFault(stSpot, uiResult, uiCap);
        return 1;
    }
    *ppcText = static_cast<char *>(stText.Release());
    return 0;
}

}  // namespace wap

#include "common/list_answer.h"

#include <string.h>

namespace wap {

namespace {

/// Lets go of the objects among items that nobody will take any more.
void ReleaseObjects(const JsonItem *pstItems, uint32_t uiCount) {
    for (uint32_t i = 0; i < uiCount; ++i) {
        if (pstItems[i].uiType == kItemObject) {
            const JsonValue stValue(PointerIn<json_object *>(pstItems[i].ulValue));
        }
    }
}

}  // namespace

bool AppendOrTell(SourceSpot stSpot, json_object *pstList, const JsonItem *pstItems,
                  uint32_t uiCount, uint32_t &uiRefusal) {
    uiRefusal = 0;
    JsonValue stObject(JNI_JSON_ObjNewObj());
    if (!stObject) {
        ReleaseObjects(pstItems, uiCount);
        RecordFault(stSpot, kJsonErrObject);
        return false;
    }
    const uint32_t uiFailed = AddItems(stObject.Lend(), pstItems, uiCount);
    if (uiFailed != 0) {
        RecordFault(stSpot, kJsonErrObject, uiFailed);
        return false;
    }
    uiRefusal = Recorded(stSpot, JNI_JSON_ObjArrayAdd(pstList, stObject.Lend()));
    if (uiRefusal == 0) {
        (void)stObject.Release();
    }
    return true;
}

bool AppendObject(SourceSpot stSpot, const JsonValue &stList, const JsonItem *pstItems,
                  uint32_t uiCount) {
    uint32_t uiRefusal = 0;
    return AppendOrTell(stSpot, stList.Lend(), pstItems, uiCount, uiRefusal);
}

bool AppendObjectOrFail(SourceSpot stSpot, const JsonValue &stList, const JsonItem *pstItems,
                        uint32_t uiCount) {
    uint32_t uiRefusal = 0;
    return AppendOrTell(stSpot, stList.Lend(), pstItems, uiCount, uiRefusal) && uiRefusal == 0;
}

uint32_t ComposeListInto(SourceSpot stSpot, JsonValue &stList, char *pcOut, uint32_t uiOutCap) {
    const JsonItem stItem = {"List", reinterpret_cast<uintptr_t>(stList.Lend()), kItemObject,
                             kEmptyAsText};
    const uint32_t uiResult = Compose(&stItem, 1, pcOut, uiOutCap, 0, Completeness::kWhole);
    if (uiResult != kErrFailed) {
        // Attached, or released by the attempt.
        (void)stList.Release();
    }
    return Recorded(stSpot, uiResult, uiOutCap);
}

uint32_t GiveFixed(SourceSpot stSpot, std::string_view stAnswer, uint32_t uiFailure,
                   char **ppcText) {
    const auto uiSize = static_cast<uint32_t>(stAnswer.size()) + 1;
    PlatformBlock stText;
    if (!stText.Make(uiSize, stSpot)) {
        return Recorded(stSpot, uiFailure, uiSize);
    }
    memcpy(stText.Lend(), stAnswer.data(), stAnswer.size());
    *ppcText = static_cast<char *>(stText.Release());
    return 0;
}

uint32_t ComposeList(SourceSpot stSpot, const char *pcWorker, JsonValue &stList, uint32_t uiCap,
                     char **ppcText) {
    if (pcWorker != nullptr) {
        VT_PROC_DBG_TraceS(kTraceEntries, stSpot.pcFile, stSpot.uiLine, 0, "%s  malloc size:%u\n\r",
                           pcWorker, uiCap);
    }
    PlatformBlock stText;
    if (!stText.Make(uiCap, stSpot)) {
        return Recorded(stSpot, 1, uiCap);
    }
    if (ComposeListInto(stSpot, stList, static_cast<char *>(stText.Lend()), uiCap) != 0) {
        return 1;
    }
    *ppcText = static_cast<char *>(stText.Release());
    return 0;
}

}  // namespace wap

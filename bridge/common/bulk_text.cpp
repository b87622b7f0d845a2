#include "common/bulk_text.h"

#include "common/owners.h"

namespace wap {

void TraceDesc(SourceSpot stSpot, const VDataDesc &stDesc, DescTrace eTrace) {
    // The two blanks before "OriginalLen" belong to the text.
    if (eTrace == DescTrace::kUnsigned) {
        VT_PROC_DBG_TraceS(kTraceEntries, stSpot.pcFile, stSpot.uiLine, 0,
                           "stVdata Info DataID:%u CompressedLen:%u  OriginalLen = %u \n\r",
                           stDesc.uiDataID, stDesc.uiCompressedLen, stDesc.uiOriginalLen);
    } else {
        VT_PROC_DBG_TraceS(kTraceEntries, stSpot.pcFile, stSpot.uiLine, 0,
                           "stVdata Info DataID:%d CompressedLen:%d  OriginalLen = %d \n\r",
                           static_cast<int32_t>(stDesc.uiDataID),
                           static_cast<int32_t>(stDesc.uiCompressedLen),
                           static_cast<int32_t>(stDesc.uiOriginalLen));
    }
}

uint32_t ReadBulkText(SourceSpot stSpot, const VDataDesc &stDesc, EmptyText eEmpty, char **ppcText,
                      DescTrace eTrace) {
    TraceDesc(stSpot, stDesc, eTrace);
    BulkBlock stBlock;
    uint32_t uiResult = stBlock.Make(stDesc);
    const char *pcText = stBlock.LendText();
    if (uiResult == 0 &&
        (pcText == nullptr || (pcText[0] == '\0' && eEmpty == EmptyText::kIsMissing))) {
        uiResult = kErrFailed;
    }
    if (Recorded(stSpot, uiResult, stDesc.uiDataID) != 0) {
        return uiResult;
    }
    *ppcText = static_cast<char *>(stBlock.Release());
    return 0;
}

uint32_t FetchBulkText(SourceSpot stSpot, const GeneralRoute &stRoute, const void *pvReq,
                       uint32_t uiReqLen, char **ppcText, DescTrace eTrace) {
    *ppcText = nullptr;
    VDataDesc stDesc = {};
    const uint32_t uiResult = AskBytes(stRoute, pvReq, uiReqLen, stDesc);
    if (Recorded(stSpot, uiResult) != 0) {
        return uiResult;
    }
    return ReadBulkText(stSpot, stDesc, EmptyText::kCounts, ppcText, eTrace);
}

}  // namespace wap

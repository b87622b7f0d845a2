#include "access/diagnostics.h"

#include <vt_ssp_basic.h>

#include "common/bulk_text.h"
#include "common/jni_common.h"
#include "common/owners.h"
#include "records/word_request.h"

namespace wap {

namespace {

constexpr uint32_t kErrNoText = 1;
constexpr uint32_t kStatusTextCap = 32;

uint32_t TellStatus(SourceSpot stSpot, uint32_t uiStatus, char **ppcText) {
    PlatformBlock stText;
    if (!stText.Make(kStatusTextCap, stSpot)) {
        return Recorded(stSpot, kErrNoText, uiStatus);
    }
    (void)VT_OS_Snprintf_S(static_cast<char *>(stText.Lend()), kStatusTextCap, kStatusTextCap - 1,
                           "{\"Result\":%d}", static_cast<int32_t>(uiStatus));
    *ppcText = static_cast<char *>(stText.Release());
    return 0;
}

}  // namespace

uint32_t FetchDiagResult(SourceSpot stSpot, const GeneralRoute &stRoute, const char *pcWorker,
                         char **ppcText) {
    if (ppcText == nullptr) {
        return Recorded(stSpot, kErrNullArgument);
    }
    DiagResultReply stReply = {};
    uint32_t uiResult = Ask(stRoute, WordRequest{}, stReply);
    if (Recorded(stSpot, uiResult) != 0) {
        return uiResult;
    }
    if (stReply.uiStatus != 0) {
        // A failure names no block, so what stands there as an id is none to be freed.
        return TellStatus(stSpot, stReply.uiStatus, ppcText);
    }
    uiResult = ReadBulkText(stSpot, stReply.stText, EmptyText::kIsMissing, ppcText);
    if (uiResult != 0) {
        return uiResult;
    }
    VT_PROC_DBG_TraceS(kTraceEntries, stSpot.pcFile, stSpot.uiLine, 0, "%s buf len:%u\r\n",
                       pcWorker, VT_OS_StrLen(*ppcText));
    VT_PROC_DBG_TraceS(kTraceEntries, stSpot.pcFile, stSpot.uiLine, 0, "%s buf :%s\r\n", pcWorker,
                       *ppcText);
    return 0;
}

}  // namespace wap

// What the network diagnostics share: "app_m" runs them, a start answers at once, and the result is
// asked for later.
#ifndef WAP_ACCESS_DIAGNOSTICS_H
#define WAP_ACCESS_DIAGNOSTICS_H

#include <stdint.h>

#include "common/report.h"
#include "common/requests.h"
#include "records/diagnostics.h"

namespace wap {

/// The module id that all of them send.
inline constexpr uint32_t kDiagSender = 249;

/// Sends a start. Gives the start status as it is, or -1 (as unsigned), recorded.
template <class Request>
inline uint32_t StartDiagnostics(SourceSpot stSpot, const GeneralRoute &stRoute,
                                 const Request &stRequest) {
    DiagStartReply stReply = {};
    const uint32_t uiResult = Ask(stRoute, stRequest, stReply);
    return Recorded(stSpot, uiResult, stRequest.uiWanIndex) == 0 ? stReply.uiStatus : kErrFailed;
}

/**
 * Asks for a result: the text that the process left in a bulk block, or {"Result":%d} with its
 * status.
 * @param pcWorker who traces the text
 * @param ppcText  receives the text, released with VT_OS_MemFreeD by the caller; success only
 * @return 0; 0xF7702001 for a null argument; the code of a failed request or read; 1 when memory
 *         runs out; -1 (as unsigned) for a block that holds no text or does not end one. Failures
 * are recorded
 */
uint32_t FetchDiagResult(SourceSpot stSpot, const GeneralRoute &stRoute, const char *pcWorker,
                         char **ppcText);

}  // namespace wap

#endif

#include "access/jni_traceroute_diagnostics.h"

#include "access/diagnostics.h"
#include "common/fields.h"
#include "common/report.h"

using namespace wap;

namespace {

constexpr GeneralRoute kStart = {"app_m", kDiagSender, kRpcStartTraceRoute};
constexpr GeneralRoute kAskResult = {"app_m", kDiagSender, kRpcGetTraceRouteResult};

/// What "app_m" takes of either field, one byte less than there is.
constexpr uint32_t kTextCap = 255;

}  // namespace

uint32_t VT_JNI_startTraceRouteDiagnostics(uint32_t uiWanIndex, const char *pcHost,
                                           const char *pcPara) {
    TraceRouteDiagRequest stRequest = {};
    if (HasNoText(pcHost) || !PutWholeField(stRequest.acHost, pcHost, kTextCap) ||
        !PutWholeField(stRequest.acPara, pcPara, kTextCap)) {
        return Recorded(WAP_SPOT, kErrFailed, uiWanIndex);
    }
    stRequest.uiWanIndex = uiWanIndex;
    return StartDiagnostics(WAP_SPOT, kStart, stRequest);
}

uint32_t VT_JNI_getTraceRouteDiagnosticsResult(char **ppcText) {
    // Without the prefix of the function's name, unlike the DNS test.
    return FetchDiagResult(WAP_SPOT, kAskResult, "getTraceRouteDiagnosticsResult", ppcText);
}

#include "access/jni_dns_diagnostics.h"

#include "access/diagnostics.h"
#include "common/fields.h"
#include "common/report.h"

using namespace wap;

namespace {

constexpr GeneralRoute kStart = {"app_m", kDiagSender, kRpcStartDns};
constexpr GeneralRoute kAskResult = {"app_m", kDiagSender, kRpcGetDnsResult};

}  // namespace

uint32_t VT_JNI_startDnsDiagnostics(uint32_t uiWanIndex, const char *pcHost, const char *pcServers,
                                    const char *pcPara) {
    DnsDiagRequest stRequest = {};
    if (HasNoText(pcHost) || HasNoText(pcServers) || !PutWholeField(stRequest.acHost, pcHost) ||
        !PutWholeField(stRequest.acPara, pcPara)) {
        return Recorded(WAP_SPOT, kErrFailed, uiWanIndex);
    }
    stRequest.uiWanIndex = uiWanIndex;
    // The servers alone may be cut: those at the front are asked first.
    PutField(stRequest.acServers, pcServers);
    return StartDiagnostics(WAP_SPOT, kStart, stRequest);
}

uint32_t VT_JNI_getDnsDiagnosticsResult(char **ppcText) {
    return FetchDiagResult(WAP_SPOT, kAskResult, __func__, ppcText);
}

#include "access/jni_ping_diagnostics.h"

#include <vt_ssp_basic.h>

#include "access/diagnostics.h"
#include "common/fields.h"
#include "common/jni_common.h"
#include "common/owners.h"
#include "common/report.h"
#include "records/word_request.h"

using namespace wap;

namespace {

constexpr GeneralRoute kStart = {"app_m", kDiagSender, kRpcStartPing};
constexpr GeneralRoute kAskResult = {"app_m", kDiagSender, kRpcGetPingResult};

constexpr uint32_t kErrBadHost = 0xFFFFFFFE;
constexpr uint32_t kErrNoBuffer = 1;
constexpr uint32_t kStrict = 1;

/// A parameter that is an integer, or 0: one that is not must not keep the ping from starting.
uint32_t NumberIn(const JsonValue &stPara, const char *pcKey) {
    int32_t iNumber = 0;
    (void)JNI_JSON_ObjGetValueInt(stPara.Lend(), pcKey, &iNumber);
    return static_cast<uint32_t>(iNumber);
}

bool ReadParameters(const char *pcPara, PingDiagRequest &stRequest) {
    const JsonValue stPara(JSON_Parse(pcPara, kStrict));
    if (!stPara) {
        return false;
    }
    stRequest.uiRepetitions = NumberIn(stPara, "NumberOfRepetitions");
    stRequest.uiTimeout = NumberIn(stPara, "Timeout");
    stRequest.uiDataBlockSize = NumberIn(stPara, "DataBlockSize");
    stRequest.uiDscp = NumberIn(stPara, "DSCP");
    return true;
}

}  // namespace

uint32_t VT_JNI_SetIPPingDiagnostics(uint32_t uiWanIndex, const char *pcHost, const char *pcPara) {
    PingDiagRequest stRequest = {};
    if (pcHost == nullptr || (pcPara != nullptr && !ReadParameters(pcPara, stRequest))) {
        return Recorded(WAP_SPOT, kErrFailed, uiWanIndex);
    }
    if (pcHost[0] == '\0' || !PutWholeField(stRequest.acHost, pcHost)) {
        // Not recorded, deliberately: the code says it all.
        return kErrBadHost;
    }
    stRequest.uiWanIndex = uiWanIndex;
    return StartDiagnostics(WAP_SPOT, kStart, stRequest);
}

uint32_t VT_JNI_GetIPPingDiagnosticsResult(char *pcBuf, uint32_t uiSize) {
    if (pcBuf == nullptr || uiSize == 0) {
        return Recorded(WAP_SPOT, kErrNoBuffer, uiSize);
    }
    const WordRequest stRequest = {};
    return AskText(WAP_SPOT, kAskResult, &stRequest, sizeof(stRequest), pcBuf, uiSize);
}

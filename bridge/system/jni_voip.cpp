#include "system/jni_voip.h"

#include <string.h>

#include "common/jni_common.h"
#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"
#include "records/voip.h"

namespace wap {

namespace {

constexpr GeneralRoute kAskPots = {"app_m", 249, kRpcGetPotsInfo};
constexpr GeneralRoute kSubscribe = {"osgi_proxy", 0, kRpcSubscribeVoice};
constexpr GeneralRoute kUnsubscribe = {"osgi_proxy", 0, kRpcUnsubscribeVoice};

uint32_t SendBundleName(const GeneralRoute &stRoute, const char *pcBundleName) {
    if (pcBundleName == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    VoiceSubscription stRequest = {};
    // Not as a text: a long name fills the field to its end, deliberately, and the receiver knows.
    memcpy(stRequest.acBundleName, pcBundleName,
           strnlen(pcBundleName, sizeof(stRequest.acBundleName)));
    VoiceSubscriptionReply stReply = {};
    return Ask(stRoute, stRequest, stReply);
}

}  // namespace

uint32_t FetchPotsInfo(char **ppcText) {
    PlatformBlock stBlock;
    // One zero byte more than a reply can fill.
    if (ppcText == nullptr || !stBlock.Make(kPotsInfoSize + 1, WAP_SPOT)) {
        return Recorded(WAP_SPOT, 1, kPotsInfoSize);
    }
    const WordRequest stRequest = {};
    const uint32_t uiResult = AskText(WAP_SPOT, kAskPots, &stRequest, sizeof(stRequest),
                                      static_cast<char *>(stBlock.Lend()), kPotsInfoSize);
    if (uiResult == 0) {
        *ppcText = static_cast<char *>(stBlock.Release());
    }
    return uiResult;
}

uint32_t SubscribeVoice(const char *pcBundleName) {
    return SendBundleName(kSubscribe, pcBundleName);
}

uint32_t UnsubscribeVoice(const char *pcBundleName) {
    return SendBundleName(kUnsubscribe, pcBundleName);
}

}  // namespace wap

#include "system/jni_access_right.h"

#include <pthread.h>

#include "common/fields.h"
#include "common/jni_common.h"
#include "common/report.h"
#include "common/requests.h"
#include "system/right_segment.h"

using namespace wap;

namespace {

constexpr DirectRoute kCountFtp = {"tarn", 0, kRpcCountFtpAccounts, kProxyTimeoutMs};
constexpr DirectRoute kCountSamba = {"usb_mngt", 0, kRpcCountSambaAccounts, kProxyTimeoutMs};
constexpr ProxyRoute kFillFtp = {kRpcFillFtpRight};
constexpr ProxyRoute kFillSamba = {kRpcFillSambaRight};
constexpr ProxyRoute kSetFtp = {kRpcSetFtpRight};
constexpr ProxyRoute kSetSamba = {kRpcSetSambaRight};
constexpr ProxyRoute kAddFtp = {kRpcAddFtpAccount};
constexpr ProxyRoute kAddSamba = {kRpcAddSambaAccount};
constexpr ProxyRoute kDeleteFtp = {kRpcDeleteFtpAccount};
constexpr ProxyRoute kDeleteSamba = {kRpcDeleteSambaAccount};
constexpr ProxyRoute kDeleteAllFtp = {kRpcDeleteFtpAccounts};
constexpr ProxyRoute kDeleteAllSamba = {kRpcDeleteSambaAccounts};
constexpr ProxyRoute kAskHttp = {kRpcGetHttpRight};
constexpr ProxyRoute kSetHttp = {kRpcSetHttpRight};
constexpr ProxyRoute kSetHttpPassword = {kRpcSetHttpPassword};

constexpr uint32_t kFirstFlag = 1;
constexpr uint32_t kSecondFlag = 2;
constexpr uint32_t kRightMax = kFirstFlag | kSecondFlag;

pthread_mutex_t g_stFtpLock = PTHREAD_MUTEX_INITIALIZER;
pthread_mutex_t g_stSambaLock = PTHREAD_MUTEX_INITIALIZER;

/// How the reading of the right information differs between the services, by Share.
struct RightSource {
    uint32_t (*pfnCount)(uint32_t *puiCount);
    SegmentKind stSegment;
};
constexpr RightSource kRightSources[] = {
    {VT_JNI_GetFtpAccountCount,
     {kFtpRightKey, kFtpRightBytes, VT_JNI_GetFTPRightInfo, &g_stFtpLock}},
    {VT_JNI_GetSambaAccountCount,
     {kSambaRightKey, kSambaRightBytes, VT_JNI_GetSambaRightInfo, &g_stSambaLock}},
};

/// Asks "osgi_proxy" for something, with a word for an answer that says nothing.
template <class Request>
uint32_t Order(SourceSpot stSpot, const ProxyRoute &stRoute, const Request &stRequest) {
    RightReply stReply = {};
    return ZeroOrFailed(stSpot, Ask(stRoute, stRequest, stReply), stRoute.uiRpcId);
}

uint32_t CountAccounts(SourceSpot stSpot, const DirectRoute &stRoute, uint32_t *puiCount) {
    if (puiCount == nullptr) {
        return Recorded(stSpot, kErrNullArgument);
    }
    AccountCount stReply = {};
    const uint32_t uiResult = Ask(stRoute, AccountsRequest{}, stReply);
    if (uiResult == 0) {
        *puiCount = stReply.uiCount;
    }
    return ZeroOrFailed(stSpot, uiResult, stRoute.uiRpcId);
}

uint32_t SetRight(SourceSpot stSpot, const ProxyRoute &stRoute, uint32_t uiRight,
                  uint32_t uiValue) {
    const auto ucRight = static_cast<uint8_t>(uiRight);
    RightSet stRequest = {};
    stRequest.uiValue = uiValue;
    stRequest.ucMask = kRightMaskOff;
    if (ucRight != 0) {
        uint32_t uiFirst = 0;
        uint32_t uiSecond = 0;
        const uint32_t uiResult = VT_OSGI_Handle_EnabletoACL(ucRight, &uiFirst, &uiSecond);
        if (uiResult != 0) {
            return Recorded(stSpot, uiResult, uiRight, uiValue);
        }
        stRequest.uiEnable = 1;
        stRequest.uiFirst = uiFirst;
        stRequest.uiSecond = uiSecond;
        stRequest.ucMask = kRightMaskAll;
    }
    return Order(stSpot, stRoute, stRequest);
}

template <class Request>
uint32_t AddAccount(SourceSpot stSpot, const ProxyRoute &stRoute, const char *pcUser,
                    const char *pcPassword) {
    if (pcUser == nullptr || pcPassword == nullptr) {
        return Recorded(stSpot, kErrNullArgument);
    }
    Wiped<Request> stRequest;
    PutField(stRequest.stRecord.acUser, pcUser);
    PutField(stRequest.stRecord.acPassword, pcPassword);
    return Order(stSpot, stRoute, stRequest.stRecord);
}

uint32_t DeleteAccount(SourceSpot stSpot, const ProxyRoute &stRoute, const char *pcUser) {
    if (pcUser == nullptr) {
        return Recorded(stSpot, kErrNullArgument);
    }
    AccountDelete stRequest = {};
    PutField(stRequest.acUser, pcUser);
    return Order(stSpot, stRoute, stRequest);
}

}  // namespace

uint32_t VT_OSGI_Handle_EnabletoACL(uint8_t ucRight, uint32_t *puiFirst, uint32_t *puiSecond) {
    if (puiFirst == nullptr || puiSecond == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    if (ucRight > kRightMax) {
        return Recorded(WAP_SPOT, kErrFailed, uint32_t{ucRight});
    }
    *puiFirst = (ucRight & kFirstFlag) != 0 ? 1 : 0;
    *puiSecond = (ucRight & kSecondFlag) != 0 ? 1 : 0;
    return 0;
}

uint32_t VT_JNI_GetFtpAccountCount(uint32_t *puiCount) {
    return CountAccounts(WAP_SPOT, kCountFtp, puiCount);
}

uint32_t VT_JNI_GetSambaAccountCount(uint32_t *puiCount) {
    return CountAccounts(WAP_SPOT, kCountSamba, puiCount);
}

uint32_t VT_JNI_GetFTPRightInfo(uint32_t uiSize) {
    return Order(WAP_SPOT, kFillFtp, RightFill{uiSize});
}

uint32_t VT_JNI_GetSambaRightInfo(uint32_t uiSize) {
    return Order(WAP_SPOT, kFillSamba, RightFill{uiSize});
}

uint32_t VT_JNI_SetFTPRight(uint32_t uiRight, uint32_t uiValue) {
    return SetRight(WAP_SPOT, kSetFtp, uiRight, uiValue);
}

uint32_t VT_JNI_SetSambaRight(uint32_t uiRight, uint32_t uiValue) {
    return SetRight(WAP_SPOT, kSetSamba, uiRight, uiValue);
}

uint32_t VT_JNI_AddFTPAcount(const char *pcUser, const char *pcPassword) {
    return AddAccount<FtpAccountAdd>(WAP_SPOT, kAddFtp, pcUser, pcPassword);
}

uint32_t VT_JNI_AddSambaAcount(const char *pcUser, const char *pcPassword) {
    return AddAccount<SambaAccountAdd>(WAP_SPOT, kAddSamba, pcUser, pcPassword);
}

uint32_t VT_JNI_DeleteFTPAcount(const char *pcUser) {
    return DeleteAccount(WAP_SPOT, kDeleteFtp, pcUser);
}

uint32_t VT_JNI_DeleteSambaAcount(const char *pcUser) {
    return DeleteAccount(WAP_SPOT, kDeleteSamba, pcUser);
}

uint32_t VT_JNI_DeleteAllFTPAcount(void) {
    return Order(WAP_SPOT, kDeleteAllFtp, AccountsRequest{});
}

uint32_t VT_JNI_DeleteAllSambaAcount(void) {
    return Order(WAP_SPOT, kDeleteAllSamba, AccountsRequest{});
}

uint32_t VT_JNI_GetHTTPRightInfo(char *pcBuf, uint32_t uiCap) {
    if (pcBuf == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    HttpRightReply stReply = {};
    const uint32_t uiResult = Ask(kAskHttp, AccountsRequest{}, stReply);
    if (uiResult != 0) {
        return ZeroOrFailed(WAP_SPOT, uiResult, kRpcGetHttpRight);
    }
    return CopyField(WAP_SPOT, stReply.acText, pcBuf, uiCap);
}

uint32_t VT_JNI_SetHttpRight(uint32_t uiRight) {
    HttpRightSet stRequest = {};
    uint32_t uiFirst = 0;
    uint32_t uiSecond = 0;
    const uint32_t uiResult =
        VT_OSGI_Handle_EnabletoACL(static_cast<uint8_t>(uiRight), &uiFirst, &uiSecond);
    if (uiResult != 0) {
        return Recorded(WAP_SPOT, uiResult, uiRight);
    }
    // Unlike the storage services' requests no word to enable it: right 0 is two flags of 0.
    stRequest.uiFirst = uiFirst;
    stRequest.uiSecond = uiSecond;
    stRequest.ucMask = kRightMaskHttp;
    return Order(WAP_SPOT, kSetHttp, stRequest);
}

uint32_t VT_JNI_SetHttpUserPassword(const char *pcPassword) {
    if (pcPassword == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    Wiped<HttpPasswordSet> stRequest;
    PutField(stRequest.stRecord.acPassword, pcPassword);
    return Order(WAP_SPOT, kSetHttpPassword, stRequest.stRecord);
}

uint32_t wap::FetchRightText(Share eShare, SecretBlock &stText) {
    const RightSource &stSource = kRightSources[static_cast<uint32_t>(eShare)];
    uint32_t uiCount = 0;
    const uint32_t uiResult = stSource.pfnCount(&uiCount);
    if (uiResult != 0) {
        // In the form of the segment's faults: no error of the system, no count, no size.
        return Recorded(WAP_SPOT, uiResult, 0u, 0u, 0u);
    }
    return ReadRightSegment(stSource.stSegment, uiCount, stText);
}

#include "peers/gateway.h"

#include <string.h>
#include <vt_ssp_host.h>

#include <stdexcept>
#include <string>

#include "common/ready_answers.h"
#include "records/access_info.h"
#include "records/device_info.h"
#include "records/lan_hosts.h"

namespace wap::bench {

StoredHosts StoreHosts() {
    const std::string &acText = HostsText();
    const auto uiLength = static_cast<uint32_t>(acText.size() + 1);
    auto uiStored = uiLength;
    std::string acBytes(uiLength, '\0');
    if (VT_OS_Compress(acText.c_str(), uiLength, acBytes.data(), &uiStored) != 0) {
        throw std::runtime_error("the host list does not shrink");
    }
    acBytes.resize(uiStored);
    return {acBytes, uiLength};
}

uint32_t MakeBlock(const StoredHosts &stHosts, VDataDesc &stDesc) {
    const auto uiStored = static_cast<uint32_t>(stHosts.acBytes.size());
    stDesc = {0, stHosts.uiOriginalLen, uiStored};
    const uint32_t uiStatus = VT_VDATA_CreShm(uiStored, &stDesc);
    return uiStatus != 0 ? uiStatus
                         : VT_VDATA_UpdateData(stDesc.uiDataID, uiStored, stHosts.acBytes.data());
}

namespace {

uint32_t Answer(const VtHostCall &stCall, const void *pvBytes, size_t uiLength,
                uint32_t &uiRspLen) {
    if (uiLength > stCall.uiRspCap) {
        return VT_HOST_ERR_TOO_LONG;
    }
    memcpy(stCall.pvRsp, pvBytes, uiLength);
    uiRspLen = static_cast<uint32_t>(uiLength);
    return 0;
}

/// A block of its own for each call, which the reader frees.
uint32_t AnswerHosts(const VtHostCall &stCall, const StoredHosts &stHosts, uint32_t &uiRspLen) {
    VDataDesc stDesc;
    const uint32_t uiStatus = MakeBlock(stHosts, stDesc);
    return uiStatus != 0 ? uiStatus : Answer(stCall, &stDesc, sizeof(stDesc), uiRspLen);
}

uint32_t Serve(void *pvHosts, const VtHostCall *pstCall, uint32_t *puiRspLen) {
    switch (pstCall->uiRpcId) {
        case kRpcGetDeviceUpTime: {
            const DeviceUpTimeReply stReply = {kUpTime};
            return Answer(*pstCall, &stReply, sizeof(stReply), *puiRspLen);
        }
        case kRpcGetDeviceMac: {
            DeviceMacReply stReply = {};
            memcpy(stReply.acMac, kMac, sizeof(kMac));
            return Answer(*pstCall, &stReply, sizeof(stReply), *puiRspLen);
        }
        case kRpcGetWanStatus:
            return Answer(*pstCall, kWanStatus, sizeof(kWanStatus), *puiRspLen);
        case kRpcGetLanHostInfoByMac:
            return AnswerHosts(*pstCall, *static_cast<const StoredHosts *>(pvHosts), *puiRspLen);
        default:
            return VT_HOST_ERR_UNKNOWN_RPC;
    }
}

}  // namespace

std::vector<pid_t> StartGateway(Children &stChildren) {
    std::vector<pid_t> aiProcesses;
    for (const char *pcProcess : {"osgi_proxy", "app_m"}) {
        aiProcesses.push_back(stChildren.Start(pcProcess, [pcProcess](int iReady) {
            StoredHosts stHosts = StoreHosts();
            if (VT_MSG_Init(pcProcess, 0, 0, 0) != 0 || VT_HOST_Serve(Serve, &stHosts) != 0) {
                throw std::runtime_error(
                    "the message service can't be used; is the runtime "
                    "folder's path longer than 70 bytes?");
            }
            TellReady(iReady);
            WaitForTheEnd();
        }));
    }
    return aiProcesses;
}

}  // namespace wap::bench

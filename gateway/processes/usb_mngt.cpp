// usb_mngt: owns the USB devices and the volumes on USB sticks.
#include <stdio.h>

#include "processes/processes.h"
#include "processes/usb_manager.h"
#include "records/storage.h"

namespace wap::gateway {

namespace {

UsbManager &ManagerOf(HandlerContext &stContext) {
    return static_cast<UsbManager &>(*stContext.pstState);
}

uint32_t Register(HandlerContext &stContext, const UsbPluginReq &stRequest, UsbDoneReply &) {
    return ManagerOf(stContext).Register(stContext.iCaller, TextIn(stRequest.acPluginId),
                                         stRequest.uiType);
}

uint32_t Unregister(HandlerContext &stContext, const UsbPluginReq &stRequest, UsbDoneReply &) {
    return ManagerOf(stContext).Unregister(stContext.iCaller, TextIn(stRequest.acPluginId));
}

uint32_t Lock(HandlerContext &stContext, const UsbDeviceReq &stRequest, UsbDoneReply &) {
    return ManagerOf(stContext).Lock(stContext.iCaller, stRequest.uiDeviceId);
}

uint32_t Unlock(HandlerContext &stContext, const UsbDeviceReq &stRequest, UsbDoneReply &) {
    return ManagerOf(stContext).Unlock(stContext.iCaller, stRequest.uiDeviceId);
}

uint32_t Open(HandlerContext &stContext, const UsbDeviceReq &stRequest, UsbOpenReply &stReply) {
    return ManagerOf(stContext).Open(stContext.iCaller, stRequest.uiDeviceId, stReply);
}

/// A volume whose path does not fit is left out: what is left of it would be another folder.
uint32_t GetDiscInfo(HandlerContext &stContext, const DiscInfoReq &stRequest,
                     DiscInfoReply &stReply) {
    if (memcmp(&stRequest, &kDiscInfoReq, sizeof(stRequest)) != 0) {
        return kRefused;
    }
    for (const UsbVolume &stVolume : ManagerOf(stContext).Volumes().List()) {
        if (stVolume.acDirectory.size() >= sizeof(DiscVolume::acMountPath)) {
            fprintf(stderr, "usb_mngt: volume %s is left out, as its path is too long\n",
                    stVolume.acName.c_str());
        } else if (stReply.uiCount < kDiscVolumesMax) {
            PutField(stReply.astVolumes[stReply.uiCount++].acMountPath, stVolume.acDirectory);
        }
    }
    return 0;
}

}  // namespace

void AddUsbManagerRpcs(RpcTable &stTable) {
    stTable.SetState([](Home &stHome, const RuntimeDir &stDir) -> std::unique_ptr<ProcessState> {
        return std::make_unique<UsbManager>(stHome, stDir);
    });
    stTable.Add(kRpcUsbRegister, Register);
    stTable.Add(kRpcUsbUnregister, Unregister);
    stTable.Add(kRpcUsbLock, Lock);
    stTable.Add(kRpcUsbUnlock, Unlock);
    stTable.Add(kRpcUsbOpen, Open);
    stTable.Add(kRpcGetDiscInfo, GetDiscInfo);
}

}  // namespace wap::gateway

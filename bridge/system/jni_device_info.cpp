#include "system/jni_device_info.h"

#include "common/fields.h"
#include "common/jni_common.h"
#include "common/owners.h"
#include "common/report.h"
#include "common/requests.h"
#include "records/device_info.h"

using namespace wap;

namespace {

constexpr ProxyRoute kAskMac = {kRpcGetDeviceMac};
constexpr ProxyRoute kAskInfo = {kRpcGetDeviceInfo};
constexpr ProxyRoute kAskUpTime = {kRpcGetDeviceUpTime};
constexpr ProxyRoute kAskDefaults = {kRpcGetDeviceDefaults};
constexpr DirectRoute kAskIdentity = {"cwmp", 15, kRpcGetDeviceIdentity, kProxyTimeoutMs};

constexpr uint32_t kInfoTextCap = 512;
constexpr uint32_t kCpuSample = 10;

/// The shape that the text queries share: ask, and take one text of the reply. The reply is wiped:
/// some of these records carry passwords, whichever field was asked for.
template <class Reply, class Route, size_t kSize>
uint32_t FetchText(SourceSpot stSpot, const Route &stRoute, char (Reply::*pacField)[kSize],
                   char *pcBuf, uint32_t uiCap) {
    if (pcBuf == nullptr) {
        return Recorded(stSpot, kErrNullArgument);
    }
    Wiped<Reply> stReply;
    const uint32_t uiResult = Ask(stRoute, WordRequest{}, stReply.stRecord);
    if (uiResult != 0) {
        return ZeroOrFailed(stSpot, uiResult);
    }
    return CopyField(stSpot, stReply.stRecord.*pacField, pcBuf, uiCap);
}

}  // namespace

uint32_t VT_JNI_GetDeviceInfo(char *pcBuf, uint32_t uiCap) {
    if (pcBuf == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    DeviceInfoReply stReply = {};
    const uint32_t uiResult = Ask(kAskInfo, WordRequest{}, stReply);
    if (uiResult != 0) {
        return ZeroOrFailed(WAP_SPOT, uiResult);
    }
    // The blank before the first comma, the spelling of "ProductCLass" and the texts without JSON
    // escapes are what the Java side parses; they stay. Each text ends at its field.
    char acText[kInfoTextCap] = {};
    const int32_t iLength = VT_OS_Snprintf_S(
        acText, sizeof(acText), sizeof(acText) - 1,
        "{\"Result\":%d , \"Vendor\":\"%.*s\", \"ProductCLass\":\"%.*s\", "
        "\"HardwareVer\":\"%.*s\", \"FirmwareVer\":\"%.*s\", \"FlashSize\":%d, \"RamSize\":%d, "
        "\"MainChipClass\":\"%.*s\", \"NFC\":\"%.*s\"}",
        0, static_cast<int>(FieldLength(stReply.acVendor)), stReply.acVendor,
        static_cast<int>(FieldLength(stReply.acProductClass)), stReply.acProductClass,
        static_cast<int>(FieldLength(stReply.acHardwareVer)), stReply.acHardwareVer,
        static_cast<int>(FieldLength(stReply.acFirmwareVer)), stReply.acFirmwareVer,
        static_cast<int32_t>(stReply.uiFlashSize), static_cast<int32_t>(stReply.uiRamSize),
        static_cast<int>(FieldLength(stReply.acMainChipClass)), stReply.acMainChipClass,
        static_cast<int>(FieldLength(stReply.acNfc)), stReply.acNfc);
    if (iLength < 0) {
        return Recorded(WAP_SPOT, kErrTooLong, uiCap);
    }
    return CopyField(WAP_SPOT, acText, pcBuf, uiCap);
}

uint32_t VT_JNI_GetDeviceMAC(char *pcBuf, uint32_t uiCap) {
    return FetchText(WAP_SPOT, kAskMac, &DeviceMacReply::acMac, pcBuf, uiCap);
}

uint32_t VT_JNI_GetDeviceManufacturerOUI(char *pcBuf, uint32_t uiCap) {
    return FetchText(WAP_SPOT, kAskIdentity, &DeviceIdentityReply::acManufacturerOui, pcBuf, uiCap);
}

uint32_t VT_JNI_GetDeviceSerialNumber(char *pcBuf, uint32_t uiCap) {
    return FetchText(WAP_SPOT, kAskIdentity, &DeviceIdentityReply::acSerialNumber, pcBuf, uiCap);
}

uint32_t VT_JNI_GetDeviceDefaultWebPassword(char *pcBuf, uint32_t uiCap) {
    return FetchText(WAP_SPOT, kAskDefaults, &DeviceDefaultsReply::acWebPassword, pcBuf, uiCap);
}

uint32_t VT_JNI_GetDeviceDefaultSSID1Name(char *pcBuf, uint32_t uiCap) {
    return FetchText(WAP_SPOT, kAskDefaults, &DeviceDefaultsReply::acSsid1Name, pcBuf, uiCap);
}

uint32_t VT_JNI_GetDeviceDefaultSSID1Password(char *pcBuf, uint32_t uiCap) {
    return FetchText(WAP_SPOT, kAskDefaults, &DeviceDefaultsReply::acSsid1Password, pcBuf, uiCap);
}

uint32_t VT_JNI_GetDeviceUpTime(uint32_t *puiUpTime) {
    if (puiUpTime == nullptr) {
        return Recorded(WAP_SPOT, kErrNullArgument);
    }
    DeviceUpTimeReply stReply = {};
    const uint32_t uiResult = Ask(kAskUpTime, WordRequest{}, stReply);
    if (uiResult != 0) {
        return ZeroOrFailed(WAP_SPOT, uiResult);
    }
    *puiUpTime = stReply.uiUpTime;
    return 0;
}

uint32_t VT_JNI_GetAPIVersion(char *pcBuf, uint32_t uiCap) {
    if (pcBuf == nullptr) {
        return Recorded(WAP_SPOT, 1);
    }
    return CopyField(WAP_SPOT, "1.0", pcBuf, uiCap);
}

uint32_t VT_JNI_GetCPUOccupancyRate(void) {
    uint32_t uiRate = 0;
    const uint32_t uiResult = VT_OS_GetCPUBusyRateByTime(kCpuSample, &uiRate);
    if (uiResult != 0) {
        return ZeroOrFailed(WAP_SPOT, uiResult);
    }
    // Never 0, deliberately: Java shows an idle gateway as 1 percent.
    return uiRate == 0 ? 1 : uiRate;
}

uint32_t VT_JNI_GetRAMOccupancyRate(void) {
    uint32_t uiRate = 0;
    const uint32_t uiResult = VT_OS_GetMemUseRate(&uiRate);
    return uiResult != 0 ? ZeroOrFailed(WAP_SPOT, uiResult) : uiRate;
}

uint32_t VT_KAVO_JNI_GetDevicePassword(char *pcBuf, uint32_t uiCap) {
    if (pcBuf == nullptr || uiCap == 0) {
        RecordFault(WAP_SPOT, kErrNullArgument, uiCap);
        return 1;
    }
    constexpr uint32_t kReplyCap = sizeof(DevicePasswordReply);
    const WordRequest stRequest = {};
    const uint32_t uiResult =
        OSGI_JNI_BundleMng_RpcCall(0, kRpcGetDevicePassword, &stRequest, sizeof(stRequest), pcBuf,
                                   uiCap < kReplyCap ? uiCap : kReplyCap);
    return ZeroOrFailed(WAP_SPOT, uiResult);
}

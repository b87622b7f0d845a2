// Replies of the device information queries, as they travel. The request of each is a WordRequest.
#ifndef WAP_RECORDS_DEVICE_INFO_H
#define WAP_RECORDS_DEVICE_INFO_H

#include <stddef.h>
#include <stdint.h>

#include "records/word_request.h"

namespace wap {

// RPC ids served by "osgi_proxy".
inline constexpr uint32_t kRpcGetDeviceMac = 0x47209032;
inline constexpr uint32_t kRpcGetDeviceInfo = 0x47209035;
inline constexpr uint32_t kRpcGetDeviceUpTime = 0x47209036;
inline constexpr uint32_t kRpcGetDeviceDefaults = 0x47209037;
/// @reply DevicePasswordReply
inline constexpr uint32_t kRpcGetDevicePassword = 0x47209050;
// RPC id served by "cwmp".
inline constexpr uint32_t kRpcGetDeviceIdentity = 0x4720136A;

#pragma pack(push, 1)

/// Reply of kRpcGetDeviceInfo. Texts should end with a zero; read them as if they might not.
struct DeviceInfoReply {
    uint32_t uiRamSize;
    uint32_t uiFlashSize;
    char acNfc[2];
    char acProductClass[65];
    char acVendor[65];
    char acHardwareVer[65];
    char acFirmwareVer[65];
    char acMainChipClass[66];
};
static_assert(offsetof(DeviceInfoReply, uiRamSize) == 0);
static_assert(offsetof(DeviceInfoReply, uiFlashSize) == 4);
static_assert(offsetof(DeviceInfoReply, acNfc) == 8);
static_assert(offsetof(DeviceInfoReply, acProductClass) == 10);
static_assert(offsetof(DeviceInfoReply, acVendor) == 75);
static_assert(offsetof(DeviceInfoReply, acHardwareVer) == 140);
static_assert(offsetof(DeviceInfoReply, acFirmwareVer) == 205);
static_assert(offsetof(DeviceInfoReply, acMainChipClass) == 270);
static_assert(sizeof(DeviceInfoReply) == 336);

/// Reply of kRpcGetDeviceMac: the MAC address as text, for example "02:A1:B2:00:00:01". The
/// method fails on a text without a zero.
struct DeviceMacReply {
    char acMac[18];
};
static_assert(sizeof(DeviceMacReply) == 18);

/// Reply of kRpcGetDeviceUpTime, in the answering process's unit.
struct DeviceUpTimeReply {
    uint32_t uiUpTime;
};
static_assert(sizeof(DeviceUpTimeReply) == 4);

/// Reply of kRpcGetDevicePassword.
struct DevicePasswordReply {
    char acPassword[64];  ///< @secret
};
static_assert(sizeof(DevicePasswordReply) == 64);

/// Reply of kRpcGetDeviceDefaults: the factory credentials. The methods fail on a text
/// without a zero.
struct DeviceDefaultsReply {
    char acSsid1Name[32];
    char acSsid1Password[32];  ///< @secret
    char acWebPassword[128];   ///< @secret
};
static_assert(offsetof(DeviceDefaultsReply, acSsid1Name) == 0);
static_assert(offsetof(DeviceDefaultsReply, acSsid1Password) == 32);
static_assert(offsetof(DeviceDefaultsReply, acWebPassword) == 64);
static_assert(sizeof(DeviceDefaultsReply) == 192);

/// Reply of kRpcGetDeviceIdentity. Only the OUI and the serial number are used.
struct DeviceIdentityReply {
    char acUnused[65];
    char acManufacturerOui[72];  ///< the method fails on more than 6 bytes
    char acSerialNumber[128];    ///< the method fails on a text without a zero
};
static_assert(offsetof(DeviceIdentityReply, acManufacturerOui) == 65);
static_assert(offsetof(DeviceIdentityReply, acSerialNumber) == 137);
static_assert(sizeof(DeviceIdentityReply) == 265);

#pragma pack(pop)

}  // namespace wap

#endif

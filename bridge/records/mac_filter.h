// Requests and replies of the MAC filter, as they travel. The filter has two tables: the wired one
// lists MAC addresses, the wireless one a MAC address for each network that refuses or admits it.
#ifndef WAP_RECORDS_MAC_FILTER_H
#define WAP_RECORDS_MAC_FILTER_H

#include <stddef.h>
#include <stdint.h>

namespace wap {

// RPC ids served by "gulm". Those that read ask with one word: 0, an instance id, or the index of a
// wireless network.
inline constexpr uint32_t kRpcGetMacFltMode = 0x47307000;
inline constexpr uint32_t kRpcListLanMacFlt = 0x47309024;
/// @request word uiInstId
inline constexpr uint32_t kRpcGetLanMacFlt = 0x40007000;
inline constexpr uint32_t kRpcListWlanMacFlt = 0x47309027;
/// @request word uiInstId
inline constexpr uint32_t kRpcGetWlanMacFlt = 0x4730701A;
/// @request word uiSsid
/// @reply word uiExcluded
inline constexpr uint32_t kRpcIsSsidExcluded = 0x49350180;
/// @reply word uiInstId
inline constexpr uint32_t kRpcRestoreWlanMacFlt = 0x4730701D;
// RPC id served by "app_m".
inline constexpr uint32_t kRpcGetWlanInst = 0x47103092;
// RPC ids served by "osgi_proxy". Those that delete take one word, the instance id; all answer one
// word, which for those that add is the new instance id.
inline constexpr uint32_t kRpcSetMacFltMode = 0x47209091;
/// @reply word uiInstId
inline constexpr uint32_t kRpcAddLanMacFlt = 0x47209092;
/// @request word uiInstId
inline constexpr uint32_t kRpcDelLanMacFlt = 0x47209093;
/// @reply word uiInstId
inline constexpr uint32_t kRpcAddWlanMacFlt = 0x47209094;
/// @request word uiInstId
inline constexpr uint32_t kRpcDelWlanMacFlt = 0x47209095;

/// Modes: listed hosts are refused, or only listed hosts are admitted.
inline constexpr uint32_t kMacFltBlackList = 0;
inline constexpr uint32_t kMacFltTrustList = 1;

/// The firmware feature without which there are no wireless networks to filter.
inline constexpr uint32_t kFeatureWlanMacFlt = 314;
/// The answer of kRpcIsSsidExcluded that keeps a network out of the filter.
inline constexpr uint32_t kSsidExcluded = 1;
/// In WlanInstBlock: a slot that stands for no network.
inline constexpr uint32_t kNoSsid = 255;

#pragma pack(push, 1)

/// Reply of kRpcGetMacFltMode. Mode and status come twice and have to agree.
struct MacFltModeReply {
    uint32_t uiMode;
    uint32_t uiStatus;  ///< 0 off, 1 on
    uint8_t aucUnused1[60];
    uint32_t uiModeAgain;
    uint32_t uiStatusAgain;
    uint8_t aucUnused2[52];
};
static_assert(offsetof(MacFltModeReply, uiMode) == 0);
static_assert(offsetof(MacFltModeReply, uiStatus) == 4);
static_assert(offsetof(MacFltModeReply, aucUnused1) == 8);
static_assert(offsetof(MacFltModeReply, uiModeAgain) == 68);
static_assert(offsetof(MacFltModeReply, uiStatusAgain) == 72);
static_assert(offsetof(MacFltModeReply, aucUnused2) == 76);
static_assert(sizeof(MacFltModeReply) == 128);

/// Request of kRpcSetMacFltMode.
struct MacFltModeRequest {
    uint32_t uiMode;
    uint32_t uiStatus;
};
static_assert(offsetof(MacFltModeRequest, uiMode) == 0);
static_assert(offsetof(MacFltModeRequest, uiStatus) == 4);
static_assert(sizeof(MacFltModeRequest) == 8);

/// Reply of kRpcListLanMacFlt: the instance ids of the wired table.
struct MacFltInstBlock {
    uint32_t uiCount;
    uint32_t auiInstIds[32];
};
static_assert(offsetof(MacFltInstBlock, uiCount) == 0);
static_assert(offsetof(MacFltInstBlock, auiInstIds) == 4);
static_assert(sizeof(MacFltInstBlock) == 132);

/// Reply of kRpcListWlanMacFlt: the instance ids of the wireless table.
struct WlanMacFltInstBlock {
    uint32_t uiCount;
    uint32_t auiInstIds[256];
};
static_assert(offsetof(WlanMacFltInstBlock, uiCount) == 0);
static_assert(offsetof(WlanMacFltInstBlock, auiInstIds) == 4);
static_assert(sizeof(WlanMacFltInstBlock) == 1028);

/// Reply of kRpcGetWlanInst: the indexes of the wireless networks.
struct WlanInstBlock {
    uint32_t uiCount;
    uint32_t auiSsids[32];
};
static_assert(offsetof(WlanInstBlock, uiCount) == 0);
static_assert(offsetof(WlanInstBlock, auiSsids) == 4);
static_assert(sizeof(WlanInstBlock) == 132);

/// Reply of kRpcGetLanMacFlt: an entry of the wired table without its instance id.
struct LanMacFltBody {
    uint32_t uiEnable;
    char acMac[32];
    char acUnused[32];
    char acDays[16];
    char acStart[16];
    char acEnd[16];
};
static_assert(offsetof(LanMacFltBody, uiEnable) == 0);
static_assert(offsetof(LanMacFltBody, acMac) == 4);
static_assert(offsetof(LanMacFltBody, acUnused) == 36);
static_assert(offsetof(LanMacFltBody, acDays) == 68);
static_assert(offsetof(LanMacFltBody, acStart) == 84);
static_assert(offsetof(LanMacFltBody, acEnd) == 100);
static_assert(sizeof(LanMacFltBody) == 116);

/// An entry of the wired table, and the request of kRpcAddLanMacFlt with the instance id 0.
struct LanMacFltEntry {
    uint32_t uiInstId;
    LanMacFltBody stBody;
};
static_assert(offsetof(LanMacFltEntry, uiInstId) == 0);
static_assert(offsetof(LanMacFltEntry, stBody) == 4);
static_assert(offsetof(LanMacFltEntry, stBody.acMac) == 8);
static_assert(offsetof(LanMacFltEntry, stBody.acDays) == 72);
static_assert(sizeof(LanMacFltEntry) == 120);

/// Reply of kRpcGetWlanMacFlt: an entry of the wireless table without its instance id.
struct WlanMacFltBody {
    uint32_t uiEnable;
    char acSsidName[32];  ///< "SSID-" and the network's index
    char acMac[32];
};
static_assert(offsetof(WlanMacFltBody, uiEnable) == 0);
static_assert(offsetof(WlanMacFltBody, acSsidName) == 4);
static_assert(offsetof(WlanMacFltBody, acMac) == 36);
static_assert(sizeof(WlanMacFltBody) == 68);

/// Request of kRpcAddWlanMacFlt. All bytes behind the entry are 0xFF.
struct WlanMacFltAddRequest {
    uint32_t uiInstId;
    WlanMacFltBody stBody;
    uint8_t aucOnes[12];
};
static_assert(offsetof(WlanMacFltAddRequest, uiInstId) == 0);
static_assert(offsetof(WlanMacFltAddRequest, stBody) == 4);
static_assert(offsetof(WlanMacFltAddRequest, aucOnes) == 72);
static_assert(sizeof(WlanMacFltAddRequest) == 84);

/// Request of kRpcRestoreWlanMacFlt, answered with the new instance id. Deliberately not that of
/// kRpcAddWlanMacFlt, though as long: it has no word for the instance id.
struct WlanMacFltRestoreRequest {
    WlanMacFltBody stBody;
    uint8_t aucOnes[16];
};
static_assert(offsetof(WlanMacFltRestoreRequest, stBody) == 0);
static_assert(offsetof(WlanMacFltRestoreRequest, aucOnes) == 68);
static_assert(sizeof(WlanMacFltRestoreRequest) == 84);

#pragma pack(pop)

}  // namespace wap

#endif

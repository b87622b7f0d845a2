// The WAN connections: what they are called, which there are, and what they may be set to. Others
// (WAN configuration and status, routes) build on it.
//
// A connection is named by its WAN index, see PackWanIndex. All functions record every failure
// unless they say otherwise, with the WAN index when there is one.
#ifndef WAP_WAN_JNI_WAN_INFO_H
#define WAP_WAN_JNI_WAN_INFO_H

#include <stdint.h>

#include "common/jni_json_wrap.h"
#include "common/wap_export.h"
#include "records/wan_info.h"

namespace wap {

/// What the name and the service list of the connection that serves the management protocol hold,
/// in whatever case.
inline constexpr char kManagementMark[] = "TR069";

/// Size of a WAN interface name's buffer.
inline constexpr uint32_t kWanIfNameSize = 32;

/// The parts of a WAN index as a record's first words.
WanPlace SplitWanIndex(uint32_t uiWanIndex);

/// Asks for the list of WAN connections.
/// @param stList zero-filled; stays so on failure. Its count is as the process sent it: see
///               CountWans for how many entries there are to read
/// @return 0, or the platform's code, recorded
uint32_t AskWanList(WanIfList &stList);

/// How many entries a list has: what it claims, as far as there is room for them.
constexpr uint32_t CountWans(const WanIfList &stList) {
    return stList.uiCount < kWansMax ? stList.uiCount : kWansMax;
}

}  // namespace wap

// ---- names ----

/// Takes a WAN index apart. Null outputs are skipped.
WAP_EXPORT void VT_API_ParseWanIndex(uint32_t uiWanIndex, uint32_t *puiKind, uint8_t *pucWanDev,
                                     uint8_t *pucConnDev, uint16_t *pusConnIns);

/**
 * Tells a connection's interface name, such as wan1.1.ip1 or wan1.2.ppp3.
 * @param pcName kWanIfNameSize bytes, written on success only
 * @return 0; 1, recorded, for a null buffer; 1, not recorded, for an index that is neither of an IP
 *         nor of a PPP connection
 */
WAP_EXPORT uint32_t VT_API_GetWanIfName(uint32_t uiWanIndex, char *pcName);

// ---- the list ----

/**
 * Looks for the connection that serves the management protocol: the first that says so in its name.
 * @param puiFound   set to 1 when there is one, else left alone; may be null
 * @param puiWanIndex receives its WAN index when there is one, else left alone; may be null
 * @return 0, also when there is none; 1 without memory; the platform's code
 */
WAP_EXPORT uint32_t VT_API_IsTR069Exsit(uint32_t *puiFound, uint32_t *puiWanIndex);

/**
 * Looks for a connection whose name tells a VLAN. The search goes no further than to the first
 * connection whose name tells none, deliberately: those who choose VLANs count on it.
 * @param puiFound set to 1 when there is one, else left alone; may be null
 * @return as VT_API_IsTR069Exsit
 */
WAP_EXPORT uint32_t VT_API_IsVlanExsit(uint32_t uiVlan, uint32_t *puiFound);

/**
 * Writes the answer for a list of connections: index and name of each.
 * @param pstFirst uiWans entries, of which kWansMax at most are looked at
 * @param pcOut    receives the text and its zero; success only
 * @param uiOutCap size of pcOut in bytes
 * @return 0; -1 (as unsigned) for a null argument or when memory runs out; 1 when the text does not
 *         fit
 */
WAP_EXPORT uint32_t VT_API_ConvertWanListToJson(const wap::WanIfListEntry *pstFirst,
                                                uint32_t uiWans, char *pcOut, uint32_t uiOutCap);

// ---- settings ----

/**
 * Reads the settings from an object. One that is missing, no text, empty or too long for its field
 * is not set.
 * @param pstPara zero-filled; its place is left alone. Receives secrets: for the caller to wipe
 * @return 0, always
 */
WAP_EXPORT uint32_t VT_API_GetWANIfFromJson(json_object *pstJson, wap::WanIfPara *pstPara);

/// Sets a setting's flag by the result of reading it: 1 when that is 0 and the text not empty.
WAP_EXPORT void VT_API_IsParaSet(uint32_t uiResult, const char *pcField, uint8_t *pucFlag);

/**
 * Checks settings for a connection. Takes out what its IP mode has no use for, and completes the
 * IPv4 DNS servers with the connection's present ones.
 * @return 0; 1 for settings that are refused and for a null record; the code of a failed request
 */
WAP_EXPORT uint32_t VT_API_CheckWanPara(uint32_t uiWanIndex, wap::WanIfPara *pstPara);

/// Traces settings, but neither the PPP user and password nor the MAC address.
WAP_EXPORT void VT_API_PrintWanInfo(const wap::WanIfPara *pstPara);

// ---- DNS servers: lists of two texts with a comma between them ----

/**
 * Completes a list: a place of it that is not filled gets the present server of that place. Empty
 * places of either list don't count.
 * @param pcOld     the present list, zero-terminated
 * @param pcNew     the new one, changed on success only; cut to 32 bytes
 * @param uiNewSize size of pcNew in bytes
 * @return 0; 1 for a null argument, a size of 0 and when there is no server at all
 */
WAP_EXPORT uint32_t VT_API_MergeIpv4Dns(const char *pcOld, char *pcNew, uint32_t uiNewSize);

/**
 * Puts two servers into a request, with the same rule for each.
 * @param pcOut the two fields of a WanIpv6DnsPair; an empty one when there is no server, a server
 *              too long for its field is cut
 * @return 0, also without any server; 1 for a null argument
 */
WAP_EXPORT uint32_t VT_API_MergeIpv6Dns(const char *pcOld, const char *pcNew, char *pcOut);

/**
 * Completes a list with the present servers of a connection. One whose index says no kind is asked
 * for like an IP connection.
 * @param pcDns  the list, zero-terminated; changed on success only
 * @param uiSize size of pcDns in bytes
 * @return 0; 1 as VT_API_MergeIpv4Dns or without memory; the platform's code
 */
WAP_EXPORT uint32_t VT_API_MergeWanIpv4Dns(uint32_t uiWanIndex, char *pcDns, uint32_t uiSize);

/**
 * Sets the IPv6 DNS servers of a connection to a list, completed with its present ones.
 * @return 0; 1 for a null list, an index that is of no connection, or without memory; the
 *         platform's code
 */
WAP_EXPORT uint32_t VT_API_SetWanIpv6Dns(uint32_t uiWanIndex, const char *pcDns);

#endif

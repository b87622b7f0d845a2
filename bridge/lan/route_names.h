// What routes are named by: the WAN connection that they lead through, and IPv6 prefixes.
//
// A WAN connection has three names. Java knows its alias, which is the name in the WAN list; the
// route services know its connection name, such as wan1.1.ip1; its WAN index (see PackWanIndex)
// leads from one to the other.
#ifndef WAP_LAN_ROUTE_NAMES_H
#define WAP_LAN_ROUTE_NAMES_H

#include <stdint.h>

#include "common/wap_export.h"

namespace wap {

/// Size of a connection name, and of an interface's name in a list, each with its zero.
inline constexpr uint32_t kConnectionNameSize = 32;
inline constexpr uint32_t kShownNameSize = 128;

/// The bridge that the LAN ports and SSIDs belong to: no interface to route through.
inline constexpr char kLanBridge[] = "br0";

/// An IPv6 prefix taken apart.
struct Ipv6Prefix {
    uint8_t aucAddress[16];  ///< the most significant byte first
    uint32_t uiLength;       ///< as the text says it, which may be more than 128
};
static_assert(sizeof(Ipv6Prefix) == 20);

/// Whether a prefix is that of the default route.
bool IsDefaultRoute(const Ipv6Prefix &stPrefix);

/// Whether an interface is the LAN bridge, in letters of either case.
bool IsLanBridge(const char *pcInterface);

/// Whether a route's interface is a WAN connection, by the word in its name.
bool IsWanName(const char *pcInterface);

/**
 * Finds the connection name of an alias, in letters of either case. Asks for the WAN list.
 * @param pcAlias     not null, not empty
 * @param acName      written on success only
 * @return 0; 1 when there is no such connection or the list holds more than it has room for; the
 *         platform's code. Failures are recorded
 */
uint32_t FindConnectionName(const char *pcAlias, char (&acName)[kConnectionNameSize]);

/**
 * Makes a WAN index of a connection name, of which 31 bytes are looked at. Of the connection's own
 * number 8 bits are kept.
 * @param puiWanIndex written on success only
 * @return 0; 1, recorded, for null and for a text that is no connection name
 */
uint32_t ParseConnectionName(const char *pcName, uint32_t *puiWanIndex);

/**
 * Tells what a list shows for an interface: the alias of a WAN connection, which is asked for, or
 * else the name itself.
 * @param acShown zero-filled; written on success only
 * @return 0; 1 for a name that is too short, a connection name that can't be read and a text that
 *         does not fit; the platform's code. Failures are recorded
 */
uint32_t ShowInterface(const char *pcInterface, char (&acShown)[kShownNameSize]);

}  // namespace wap

/**
 * Takes the text of an IPv6 prefix (address/length) apart; 63 bytes of it are looked at. An address
 * that is none is tried again without the characters at its end that are no hexadecimal digits.
 * @param pstPrefix written on success only
 * @return 0; 0xF7702001 for a null argument; 1 for a text that is no prefix. Failures are recorded
 */
WAP_EXPORT uint32_t VT_Route6_GetIpStuctFromString(const char *pcText, wap::Ipv6Prefix *pstPrefix);

#endif

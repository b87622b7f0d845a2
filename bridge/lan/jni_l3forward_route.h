// Workers of the static routes and of the routes in force. Routes lead through WAN connections,
// which Java names by their aliases: see route_names.h. All of them record every failure.
#ifndef WAP_LAN_JNI_L3FORWARD_ROUTE_H
#define WAP_LAN_JNI_L3FORWARD_ROUTE_H

#include <stdint.h>

#include "common/wap_export.h"

/**
 * Adds an IPv4 route. Whether the addresses are any, and fit each other, is for the service to say.
 * @param pcDest      1 to 15 bytes
 * @param pcMask      1 to 15 bytes
 * @param pcGateway   cut to 15 bytes; null or empty for none
 * @param pcInterface alias of a WAN connection, not empty and not "br0"
 * @param puiInstId   receives the route's instance id; success only
 * @return 0; 1 for arguments that are refused and for an unknown alias; 0xF7702001 without a place
 *         for the id; the platform's code
 */
WAP_EXPORT uint32_t VT_JNI_AddL3Ipv4StaticRoute(const char *pcDest, const char *pcMask,
                                                const char *pcGateway, const char *pcInterface,
                                                uint32_t *puiInstId);

/// Deletes an IPv4 route. 0, or -1 (as unsigned).
WAP_EXPORT uint32_t VT_JNI_DelL3Ipv4StaticRoute(uint32_t uiInstId);

/**
 * Adds an IPv6 route, which can't be the default route.
 * @param pcDestPrefix address/length, 1 to 63 bytes
 * @param pcNextHop    cut to 63 bytes; null or empty for none
 * @param pcInterface  as for IPv4
 * @param puiInstId    as for IPv4
 * @return as for IPv4
 */
WAP_EXPORT uint32_t VT_JNI_AddL3Ipv6StaticRoute(const char *pcDestPrefix, const char *pcNextHop,
                                                const char *pcInterface, uint32_t *puiInstId);

/// Deletes an IPv6 route. 0, or -1 (as unsigned).
WAP_EXPORT uint32_t VT_JNI_DelL3Ipv6StaticRoute(uint32_t uiInstId);

/**
 * Lists the IPv4 routes that somebody set and that don't lead into the LAN, as a JSON text.
 * @param ppcText receives the text, released with VT_OS_MemFreeD by the caller; success only
 * @return 0; 0xF7702001 for a null argument; the code of a failed request; 1 for a reply that can't
 *         be right and when the text can't be made
 */
WAP_EXPORT uint32_t VT_JNI_GetAllL3Ipv4StaticRoute(char **ppcText);

/// Lists the IPv6 routes that don't lead into the LAN, without the default route. As for IPv4.
WAP_EXPORT uint32_t VT_JNI_GetAllL3Ipv6StaticRoute(char **ppcText);

/**
 * Lists the IPv4 routes in force that lead through WAN connections, as a JSON text.
 * @param ppcText receives the text, released with VT_OS_MemFreeD by the caller; success only
 * @return 0; 0xF7702001 for a null argument; the code of a failed request or read; 1 for a block
 *         that holds fewer routes than there should be, for a WAN connection that can't be named,
 *         and when the text can't be made
 */
WAP_EXPORT uint32_t VT_JNI_GetL3Ipv4CurrentRouter(char **ppcText);

/// Lists the IPv6 routes in force. As for IPv4.
WAP_EXPORT uint32_t VT_JNI_GetL3Ipv6CurrentRouter(char **ppcText);

#endif

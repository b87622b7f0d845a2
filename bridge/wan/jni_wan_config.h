// Workers of the WAN configuration: WAN connections are created, changed and deleted through
// "osgi_proxy". Every failure is recorded but the one that is said.
//
// What a connection's PPP user and password pass through here is overwritten before it is released.
#ifndef WAP_WAN_JNI_WAN_CONFIG_H
#define WAP_WAN_JNI_WAN_CONFIG_H

#include <stdint.h>

#include "common/jni_json_wrap.h"
#include "common/wap_export.h"

/**
 * Creates a WAN connection.
 * @param pcVlanMode  "0", "1" or "2", in decimal digits
 * @param pcVlan      "0" to "4094"; in VLAN mode 0 it is 0, whatever it says
 * @param pcConType   "IP_Routed", "IP_Bridged", "PPPoE_Bridged" or "PPPoE_Routed", in any case
 * @param puiWanIndex receives the new connection's WAN index; success only
 * @return 0; -2 (as unsigned), not recorded, when a connection has the VLAN already, as far as
 *         VT_API_IsVlanExsit sees; -1 for every other failure
 */
WAP_EXPORT uint32_t VT_JNI_AddWANIf(const char *pcVlanMode, const char *pcVlan,
                                    const char *pcConType, uint32_t *puiWanIndex);

/**
 * Changes a WAN connection.
 * @param uiWanIndex not checked
 * @param pcJson     the settings as a text that is strictly JSON, see VT_API_GetWANIfFromJson; for
 *                   the caller to wipe
 * @return 0, or -1 (as unsigned)
 */
WAP_EXPORT uint32_t VT_JNI_SetWANIf(uint32_t uiWanIndex, const char *pcJson);

/**
 * The same with settings that are parsed. Their IPv6 DNS servers are set apart from the rest, and
 * last.
 * @param pstJson lent
 * @return 0; 1 for a null object, settings that are refused, or without memory; the platform's code
 */
WAP_EXPORT uint32_t VT_API_SetIPWANIf(json_object *pstJson, uint32_t uiWanIndex);

/**
 * Deletes a WAN connection, and its connection device when that was the last one there.
 * @param uiWanIndex not checked
 * @return 0, or -1 (as unsigned)
 */
WAP_EXPORT uint32_t VT_JNI_DeleteWANIf(uint32_t uiWanIndex);

#endif

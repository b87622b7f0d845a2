// Workers of the VLAN binding services. What enters a LAN port or an SSID with a user-side VLAN's
// tag is carried on a WAN-side VLAN; a binding text names the pairs, "<user side>/<WAN side>" with
// commas between them. All workers record every failure.
#ifndef WAP_WAN_JNI_VLAN_BIND_H
#define WAP_WAN_JNI_VLAN_BIND_H

#include <stdint.h>

#include "common/jni_json_wrap.h"
#include "common/wap_export.h"

/**
 * Binds an interface to VLANs.
 * @param pcInterface such as LAN1 or SSID2, cut to 63 bytes
 * @param pcBind      a binding text that VT_JNI_CheckVlanBind accepts, cut to 128 bytes
 * @return 0; 1 when a text is null or empty, or the binding text is not acceptable, and nobody was
 *         asked; else the platform's code
 */
WAP_EXPORT uint32_t VT_JNI_SetVlanBind(const char *pcInterface, const char *pcBind);

/// Takes an interface's binding away. 0; 1 for null; else the platform's code.
WAP_EXPORT uint32_t VT_JNI_DelVlanBind(const char *pcInterface);

/**
 * Looks whether a binding text is acceptable: every VLAN within 1 and 4094.
 * @param pcBind its first 127 bytes are looked at; null is acceptable, and so is nothing but
 * commas. A pair without a second number has that of the pair before it
 * @return 0 acceptable, 1 not
 */
WAP_EXPORT uint32_t VT_JNI_CheckVlanBind(const char *pcBind);

/**
 * As JNI_MSG_RpcCall, but always to "osgi_proxy", and without a trace.
 * @param pcRcvApp not looked at
 * @param pvReq    the request, not null
 * @param pvRsp    room for the reply, not null
 * @return 0; 1 for a null buffer; else the platform's code
 */
WAP_EXPORT uint32_t JNI_MSG_VlanBindRpcCall(const char *pcRcvApp, uint32_t uiSndMid,
                                            uint32_t uiRpcId, const void *pvReq, uint32_t uiReqLen,
                                            void *pvRsp, uint32_t uiRspCap);

/**
 * Lists the bindings of all LAN ports and SSIDs as a JSON text.
 * @param ppcText receives the text, released with VT_OS_MemFreeD by the caller; success only
 * @return 0; 1 for a null argument, when memory runs out or the text is longer than 1087 bytes;
 * else the code of what failed
 */
WAP_EXPORT uint32_t VT_JNI_GetAllVlanBind(char **ppcText);

/**
 * Appends the LAN ports that are bound to VLANs to a JSON array.
 * @param pstList the array, borrowed
 * @return 0; 1 for null and when memory runs out; the code of a failed request; the code of the
 * last port that the array refused, the others are in it
 */
WAP_EXPORT uint32_t VT_API_GetLanVlanBindApi(json_object *pstList);

/// The same for the SSIDs, all of them, bound to VLANs or not; what becomes of the last one decides
/// about 0.
WAP_EXPORT uint32_t VT_API_GetWlanVlanBindApi(json_object *pstList);

#endif

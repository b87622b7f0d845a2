// Workers of the flows: traffic towards a remote address and port is put into a numbered flow,
// which has counters, a speed limit and a DSCP mark. The process "gulm" keeps the flows; which
// numbers and values it takes, and their units, is for it to know. All workers record every
// failure, with the flow. They are the library's own: no program but this one calls them.
#ifndef WAP_WAN_JNI_TRAFFIC_QOS_SRV_H
#define WAP_WAN_JNI_TRAFFIC_QOS_SRV_H

#include <stdint.h>

namespace wap {

/**
 * Puts traffic into a flow.
 * @param pcAddress the remote address, at most 255 bytes; null for none
 * @param pcPort    the remote port, at most 11 bytes; not null
 * @param uiFlow    a signed number whose decimal text has at most 3 characters
 * @return 0; -1 (as unsigned) when there is no port or something is too long, and nobody was asked
 *         then, or when the request fails
 */
uint32_t AddFlowTraffic(const char *pcAddress, const char *pcPort, uint32_t uiFlow);

/// Takes traffic out of a flow; as AddFlowTraffic.
uint32_t DeleteFlowTraffic(const char *pcAddress, const char *pcPort, uint32_t uiFlow);

/// Takes all traffic out of a flow. 0, or -1 (as unsigned).
uint32_t DeleteAllFlowTraffic(uint32_t uiFlow);

/// Limits a flow's speeds. 0, or -1 (as unsigned).
uint32_t SetFlowSpeedLimit(uint32_t uiFlow, int32_t iUp, int32_t iDown);

/// Sets a flow's DSCP mark. 0, or -1 (as unsigned).
uint32_t SetFlowDscp(uint32_t uiFlow, uint32_t uiDscp);

/// Gives a flow's DSCP mark, or -1 (as unsigned).
uint32_t GetFlowDscp(uint32_t uiFlow);

/// An answer about counters or speeds: no number makes it longer than 75 characters.
struct FlowAnswer {
    char acText[128];
};

/**
 * Tells a flow's counters as a JSON text.
 * @param stAnswer receives the text; success only
 * @return 0, or the code of a failed request
 */
uint32_t GetFlowStats(uint32_t uiFlow, FlowAnswer &stAnswer);

/// Tells a flow's current speeds; as GetFlowStats.
uint32_t GetFlowSpeed(uint32_t uiFlow, FlowAnswer &stAnswer);

/// Tells a flow's speed limits; as GetFlowStats.
uint32_t GetFlowSpeedLimit(uint32_t uiFlow, FlowAnswer &stAnswer);

/**
 * Lists a flow's members as a JSON text.
 * @param ppcText receives the text, released with VT_OS_MemFreeD by the caller; success only; not
 * null
 * @return 0; -1 (as unsigned) for a flow without members; the code
 *         of a failed request or read; 1 when the text can't be made, or takes 297 bytes or more
 * for each member and one member more
 */
uint32_t ListFlowTraffic(uint32_t uiFlow, char **ppcText);

}  // namespace wap

#endif

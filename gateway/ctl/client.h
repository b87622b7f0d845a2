// gatewayctl's questions to the processes.
#ifndef WAP_GATEWAY_CTL_CLIENT_H
#define WAP_GATEWAY_CTL_CLIENT_H

#include <stdint.h>

#include <string>

#include "framework/json_value.h"

namespace wap::gateway {

/// Sends a control request to a process and waits for its answer.
/// @param pcProcess  the process's name
/// @param uiRpcId    one of kControl...
/// @param pstRequest an object; null for an empty one
/// @return the answer, an object. Throws GatewayError when there is none, or when the process
///         answers that it can't be done.
JsonValue Ask(const char *pcProcess, uint32_t uiRpcId, json_object *pstRequest = nullptr);

/// The same, but null when the process doesn't answer in time or isn't there.
JsonValue TryAsk(const char *pcProcess, uint32_t uiRpcId, uint32_t uiTimeoutMs);

/// A section of the home, as its owner tells it. Throws GatewayError.
JsonValue ValueOf(const char *pcSection);

/// Changes a single value of a section. Throws GatewayError.
void SetValue(const char *pcSection, const char *pcMember, const std::string &acText);

}  // namespace wap::gateway

#endif

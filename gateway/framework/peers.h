// Requests from one process of the gateway to another.
#ifndef WAP_GATEWAY_FRAMEWORK_PEERS_H
#define WAP_GATEWAY_FRAMEWORK_PEERS_H

#include <stdint.h>

#include <string>
#include <string_view>

#include "framework/json_value.h"

namespace wap::gateway {

/**
 * Sends an RPC to a process and waits for its reply, shorter than those who wait for this one.
 * @param uiRoom  how long a reply may be, in bytes
 * @param acReply receives the reply: uiRoom bytes, zero where the reply was shorter; untouched
 *                unless 0 is returned
 * @return 0, or the status of the process or of the message service
 */
uint32_t AskPeer(const char *pcProcess, uint32_t uiRpcId, std::string_view pcRequest,
                 uint32_t uiRoom, std::string &acReply);

/// The value of a path of the home that another process owns. Throws GatewayError when nobody does
/// or when its owner does not answer.
JsonValue PeerValue(const std::string &acPath);

/// Sends a control request and gives the answer as an object; throws GatewayError when there is
/// none, with a text that says what to do, or when the answer is an error.
JsonValue AskControl(const char *pcProcess, uint32_t uiRpcId, json_object *pstRequest,
                     uint32_t uiTimeoutMs);

}  // namespace wap::gateway

#endif

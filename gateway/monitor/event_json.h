// Events as JSON, and what stands in them.
#ifndef WAP_GATEWAY_MONITOR_EVENT_JSON_H
#define WAP_GATEWAY_MONITOR_EVENT_JSON_H

#include <stdint.h>

#include <string>

#include "framework/json_value.h"
#include "framework/tap_event.h"

namespace wap::gateway {

/// What a part of an event says, secrets hidden: see DecodeContent. Null when nothing of it is held
/// and when the RPC is unknown, of which nobody knows what is secret.
JsonValue ContentOf(const TapEvent &stEvent, TapPart ePart);

/// "GetDeviceInfo", or "" for one that the table does not have.
const char *NameOfRpc(const TapEvent &stEvent);

/// The id as people write it: "0x47209035", and of a message its type, "39".
std::string IdText(const TapEvent &stEvent);

/// A point in time, in microseconds since 1970: "2026-11-22T15:14:25.123456Z", or the time of day
/// on this machine's clock, "15:14:25.123456".
std::string TimeInUtc(uint64_t ulMicroseconds);
std::string TimeOfDay(uint64_t ulMicroseconds);

/// The event as one object; docs/monitor.md says what is in it.
/// @param ulLost how many events are missing before it
JsonValue EventToJson(const TapEvent &stEvent, uint64_t ulLost);

}  // namespace wap::gateway

#endif

// Events for people.
#ifndef WAP_GATEWAY_MONITOR_EVENT_TEXT_H
#define WAP_GATEWAY_MONITOR_EVENT_TEXT_H

#include <stddef.h>

#include <string>

#include "framework/tap_event.h"

namespace wap::gateway {

/// Who called whom with what, how long it took and what came of it: a line without its end. Nothing
/// in it can do anything to a terminal.
std::string Headline(const TapEvent &stEvent);

/// A name from a header: as it is when it is one, else as a JSON text. Nothing in it can do
/// anything to a terminal.
std::string PrintedName(const char *pcName);

/// The headline, and below it what the request, the reply and the block say, in lines that are
/// broken between words at uiWidth columns.
std::string PrintEvent(const TapEvent &stEvent, size_t uiWidth);

}  // namespace wap::gateway

#endif

// What gatewayctl and the processes say to each other: RPCs whose request and reply are JSON
// objects as text. They are never subject to scripted faults.
//
//   id              request                     reply
//   kControlStatus  {}                          {"pid","upTime","served","faults","busy"}
//   kControlGet     {"path"}                    {"value"}, any JSON
//   kControlSet     {"path","text"}             {}
//   kControlFault   {"rpc" or none, "fault"}    {}
//   kControlFaults  {}                          {"faults":[{"rpc" or none, "fault"}]}
//   kControlClear   {}                          {"cleared"}
//   kControlAdd     {"path","key","id","value"} {}
//   kControlRemove  {"path","key","id"}         {}
//   kControlChange  {"path","key","id","member","text"}  {}
//   kControlMonitor {}                          {}
//
// The three before the last are for lists of objects: "id" is the text of the member "key".
// The last one has a process look who watches it, see Tap.
//
// Some are served by "usb_mngt" alone. A device is named by its name or its id, a volume by its
// name or its folder:
//   kControlUsb            {}                    {"devices":[{"id","name","kind","node","owner"}],
//                                                 "plugins":[{"name","type","owner"}]}
//   kControlUsbPlug        {"name","kind"}       {"id","node"}
//   kControlUsbUnplug      {"device"}            {}
//   kControlStorage        {}                    {"volumes":[{"name","directory"}]}
//   kControlStorageAdd     {"name","directory"}  {}
//   kControlStorageRemove  {"volume"}            {}
// The "owner" is a process id, and missing from a device that is free. A device without a "node" is
// one that does not work.
//
// A request that can't be done is answered with {"error": text for the user}.
//
// A reply that is too long for a message is a text in a bulk block instead, whose descriptor is
// sent: {"block":{"id","original","stored"}}. Whoever asked reads the reply there and frees it.
#ifndef WAP_GATEWAY_FRAMEWORK_CONTROL_H
#define WAP_GATEWAY_FRAMEWORK_CONTROL_H

#include <stdint.h>

namespace wap::gateway {

inline constexpr uint32_t kControlStatus = 0x7F000001;
inline constexpr uint32_t kControlGet = 0x7F000002;
inline constexpr uint32_t kControlSet = 0x7F000003;
inline constexpr uint32_t kControlFault = 0x7F000004;
inline constexpr uint32_t kControlFaults = 0x7F000005;
inline constexpr uint32_t kControlClear = 0x7F000006;
inline constexpr uint32_t kControlAdd = 0x7F000007;
inline constexpr uint32_t kControlRemove = 0x7F000008;
inline constexpr uint32_t kControlChange = 0x7F000009;
inline constexpr uint32_t kControlMonitor = 0x7F00000A;
inline constexpr uint32_t kControlUsb = 0x7F000020;
inline constexpr uint32_t kControlUsbPlug = 0x7F000021;
inline constexpr uint32_t kControlUsbUnplug = 0x7F000022;
inline constexpr uint32_t kControlStorage = 0x7F000023;
inline constexpr uint32_t kControlStorageAdd = 0x7F000024;
inline constexpr uint32_t kControlStorageRemove = 0x7F000025;

/// The longest reply, in bytes with the zero behind its text.
inline constexpr uint32_t kControlReplyMax = 16u << 20;

/// Tells whether an RPC id is one of gatewayctl's.
constexpr bool IsControl(uint32_t uiRpcId) {
    return (uiRpcId & 0xFFFFFF00u) == 0x7F000000u;
}

}  // namespace wap::gateway

#endif

// The processes of the gateway and what each of them owns.
#ifndef WAP_GATEWAY_FRAMEWORK_PROCESS_LIST_H
#define WAP_GATEWAY_FRAMEWORK_PROCESS_LIST_H

#include <array>
#include <string_view>

namespace wap::gateway {

/// One process of the gateway. A section is a top-level member of the home; it belongs to exactly
/// one process, which keeps it in its state file and answers for it.
struct ProcessInfo {
    const char *pcName;
    std::array<std::string_view, 16> astSections;  /// empty texts are no sections
};

inline constexpr std::array<ProcessInfo, 7> kProcesses = {{
    {"gulm",
     {"lan", "wan", "wanDevices", "routes", "lanPorts", "iptv", "portMapping", "macFilter",
      "attachControl", "monitoring", "mirrorRules", "forwardRules", "httpRules", "flows"}},
    {"app_m",
     {"network", "ssidBindings", "pon", "hosts", "leds", "voice", "diagnostics", "monitorNotices"}},
    {"osgi_proxy", {"device", "voiceEvents"}},
    {"usb_mngt", {"usb", "storage", "samba"}},
    {"tarn", {"ftp", "web"}},
    {"cwmp", {"identity"}},
    {"igmp", {"multicast"}},
}};

/// The process of that name, or null.
const ProcessInfo *FindProcess(std::string_view pcName);

/// The process that owns a section, or null.
const ProcessInfo *FindOwner(std::string_view pcSection);

}  // namespace wap::gateway

#endif

#include "common/ready_answers.h"

#include <stdio.h>
#include <string.h>

#include "records/traffic_rules.h"

namespace wap::bench {

namespace {

constexpr size_t kHostsSize = 65536;
constexpr char kListHead[] = "{\"Result\":0,\"List\":[";
constexpr char kListTail[] = "]}";

std::string HostRow(uint32_t uiHost, size_t uiPadding) {
    char acRow[320];
    snprintf(
        acRow, sizeof(acRow),
        "{\"MAC\":\"02:5E:%02X:%02X:%02X:01\",\"IP\":\"192.168.%u.%u\",\"DevName\":\"host-%u\","
        "\"DevType\":\"%s\",\"Port\":\"%s%u\",\"OnlineTime\":%u,\"Brand\":\"",
        uiHost >> 8 & 0xFF, uiHost & 0xFF, uiHost * 7 & 0xFF, 1 + uiHost / 250, 2 + uiHost % 250,
        uiHost, uiHost % 3 == 0 ? "Phone" : "PC", uiHost % 2 == 0 ? "LAN" : "SSID", 1 + uiHost % 4,
        1000 + uiHost * 37);
    return acRow + std::string(uiPadding, 'b') + "\"}";
}

std::string MakeHostsText() {
    std::string acText = kListHead;
    const size_t uiEnd = kHostsSize - 1 - strlen(kListTail);
    for (uint32_t uiHost = 0;; ++uiHost) {
        const std::string acRow = (uiHost == 0 ? "" : ",") + HostRow(uiHost, 0);
        // The last one takes up what is left.
        if (acText.size() + 2 * acRow.size() > uiEnd) {
            acText +=
                (uiHost == 0 ? "" : ",") + HostRow(uiHost, uiEnd - acText.size() - acRow.size());
            return acText + kListTail;
        }
        acText += acRow;
    }
}

}  // namespace

const std::string &HostsText() {
    static const std::string s_acText = MakeHostsText();
    return s_acText;
}

std::string AnswerText(Work eWork) {
    switch (eWork) {
        case Work::kUpTime:
            return std::to_string(kUpTime);
        case Work::kMac:
            return kMac;
        case Work::kWanStatus:
            return kWanStatus;
        case Work::kHosts:
            return HostsText();
    }
    return "";
}

std::string ForwardRuleTable(uint32_t uiRules) {
    std::string acTable;
    for (uint32_t i = 0; i < uiRules; ++i) {
        ForwardRuleRec stRule = {};
        snprintf(stRule.acRemoteAddress, sizeof(stRule.acRemoteAddress), "198.51.%u.%u", i / 250,
                 1 + i % 250);
        snprintf(stRule.acRemotePort, sizeof(stRule.acRemotePort), "%u", 1024 + i);
        snprintf(stRule.acProtocol, sizeof(stRule.acProtocol), "%s", i % 2 == 0 ? "TCP" : "UDP");
        snprintf(stRule.acHostMac, sizeof(stRule.acHostMac), "02:5E:00:00:%02X:%02X", i >> 8 & 0xFF,
                 i & 0xFF);
        snprintf(stRule.acForwardToIp, sizeof(stRule.acForwardToIp), "192.168.1.%u", 2 + i % 250);
        snprintf(stRule.acForwardToPort, sizeof(stRule.acForwardToPort), "%u", 8000 + i);
        acTable.append(reinterpret_cast<const char *>(&stRule), sizeof(stRule));
    }
    return acTable;
}

}  // namespace wap::bench

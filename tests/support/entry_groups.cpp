#include "support/entry_groups.h"

#include "support/entries.h"
#include "support/entry_table_attach.h"
#include "support/entry_table_diagnostics.h"
#include "support/entry_table_flows.h"
#include "support/entry_table_lan.h"
#include "support/entry_table_macfilter.h"
#include "support/entry_table_monitor.h"
#include "support/entry_table_portmap.h"
#include "support/entry_table_rights.h"
#include "support/entry_table_route.h"
#include "support/entry_table_rules.h"
#include "support/entry_table_runtime.h"
#include "support/entry_table_usb.h"
#include "support/entry_table_vlanbind.h"
#include "support/entry_table_wanconfig.h"
#include "support/furnish_attach.h"
#include "support/furnish_diagnostics.h"
#include "support/furnish_flows.h"
#include "support/furnish_lan.h"
#include "support/furnish_macfilter.h"
#include "support/furnish_monitor.h"
#include "support/furnish_portmap.h"
#include "support/furnish_rights.h"
#include "support/furnish_route.h"
#include "support/furnish_rules.h"
#include "support/furnish_runtime.h"
#include "support/furnish_usb.h"
#include "support/furnish_vlanbind.h"
#include "support/furnish_wanconfig.h"

namespace wap::test {

const std::vector<EntryGroup> &EntryGroups() {
    static const std::vector<EntryGroup> s_astGroups = {
        {BasicEntries(), FurnishHome},
        {LanEntries(), FurnishLan},
        {PortMappingEntries(), FurnishPortMapping},
        {MacFilterEntries(), FurnishMacFilter},
        {AttachEntries(), FurnishAttach},
        {MonitorEntries(), FurnishMonitor},
        {VlanBindEntries(), FurnishVlanBind},
        {RouteEntries(), FurnishRoutes},
        {RuntimeEntries(), FurnishRuntime},
        {WanConfigEntries(), FurnishWanConfig},
        {UsbEntries(), FurnishUsb},
        {RightsEntries(), FurnishRights},
        {FlowEntries(), FurnishFlows},
        {DiagnosticsEntries(), FurnishDiagnostics},
        {RulesEntries(), FurnishRules},
    };
    return s_astGroups;
}

std::vector<FurnishedEntry> AllEntries() {
    std::vector<FurnishedEntry> astEntries;
    for (const EntryGroup &stGroup : EntryGroups()) {
        for (const Entry &stEntry : stGroup.astEntries) {
            astEntries.push_back({stEntry, stGroup.pfnFurnish});
        }
    }
    return astEntries;
}

}  // namespace wap::test

#include "faults/sweep_cases.h"

#include <map>

#include "support/entry_groups.h"

namespace wap::test {

namespace {

SweepCase UsualCase(const FurnishedEntry &stFurnished) {
    const Entry &stEntry = stFurnished.stEntry;
    return {stEntry.sSymbol, stEntry.sMethod,  "usual", stEntry.fnCall, stFurnished.pfnFurnish, {},
            stEntry.stGood,  stEntry.stFailure};
}

std::vector<SweepCase> MakeCases() {
    std::vector<SweepCase> astCases;
    std::map<std::string, SweepCase> mapUsual;
    for (const FurnishedEntry &stFurnished : AllEntries()) {
        astCases.push_back(UsualCase(stFurnished));
        mapUsual[stFurnished.stEntry.sSymbol] = astCases.back();
    }
    for (const auto pfnRows : {DeviceCases, RuntimeCases, LanCases, PortMappingCases, FilterCases,
                               AttachCases, RouteCases, VlanCases, WanCases, UsbCases, RightsCases,
                               MonitorCases, FlowCases, RuleCases, DiagnosticsCases}) {
        for (CaseRow &stRow : pfnRows()) {
            SweepCase stCase = mapUsual.at(stRow.sSymbol);
            stCase.sCase = std::move(stRow.sCase);
            stCase.fnCall = std::move(stRow.fnCall);
            stCase.fnAlso = std::move(stRow.fnAlso);
            stCase.stGood = std::move(stRow.stGood);
            stCase.auiAsks = std::move(stRow.auiAsks);
            astCases.push_back(std::move(stCase));
        }
    }
    return astCases;
}

}  // namespace

void SweepCase::Furnish(World &stWorld) const {
    pfnFurnish(stWorld);
    if (fnAlso) {
        fnAlso(stWorld);
    }
}

const std::vector<SweepCase> &AllCases() {
    static const std::vector<SweepCase> s_astCases = MakeCases();
    return s_astCases;
}

}  // namespace wap::test

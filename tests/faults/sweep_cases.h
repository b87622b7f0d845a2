// The ways in which the sweeps call the Java entries: each entry as its table calls it, and further
// ones, with other arguments or on a gateway in another state, so that each branch of a method is
// gone through.
#ifndef WAP_TESTS_FAULTS_SWEEP_CASES_H
#define WAP_TESTS_FAULTS_SWEEP_CASES_H

#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "support/entry_table.h"
#include "support/world.h"

namespace wap::test {

/// A list without an element.
inline constexpr const char *kEmptyList = "{ \"Result\": 0, \"List\": [ ] }";

/// A further way to call an entry. The row starts like one of an entry table, with WAP_ENTRY.
struct CaseRow {
    std::string sSymbol;
    std::string sMethod;
    std::function<Answer(FakeJni &)> fnCall;
    std::string sCase;  ///< letters, digits and underscores
    Answer stGood;      ///< when nothing fails, which may be a refusal
    /// Changes what the furnishing of the entry's group has made ready.
    std::function<void(World &)> fnAlso = {};
    /// RPCs that the call must make when nothing fails, where the answer alone does not show it.
    std::set<uint32_t> auiAsks = {};
};

/// One way to call an entry, with all that is known about it.
struct SweepCase {
    std::string sSymbol;
    std::string sMethod;
    std::string sCase;
    std::function<Answer(FakeJni &)> fnCall;
    void (*pfnFurnish)(World &stWorld);
    std::function<void(World &)> fnAlso;
    Answer stGood;
    Answer stFailure;
    std::set<uint32_t> auiAsks{};

    std::string Name() const { return sMethod + "_" + sCase; }
    void Furnish(World &stWorld) const;
};

/// For messages of tests.
inline void PrintTo(const SweepCase &stCase, std::ostream *pstOut) {
    *pstOut << stCase.Name();
}

/// All of them; the first of each entry is that of its table, "usual".
const std::vector<SweepCase> &AllCases();

// The rows by feature.
std::vector<CaseRow> DeviceCases();
std::vector<CaseRow> RuntimeCases();
std::vector<CaseRow> LanCases();
std::vector<CaseRow> PortMappingCases();
std::vector<CaseRow> FilterCases();
std::vector<CaseRow> AttachCases();
std::vector<CaseRow> RouteCases();
std::vector<CaseRow> VlanCases();
std::vector<CaseRow> WanCases();
std::vector<CaseRow> UsbCases();
std::vector<CaseRow> RightsCases();
std::vector<CaseRow> MonitorCases();
std::vector<CaseRow> FlowCases();
std::vector<CaseRow> RuleCases();
std::vector<CaseRow> DiagnosticsCases();

/// Has an RPC answered with something else.
inline std::function<void(World &)> Answering(uint32_t uiRpcId, Reply stReply) {
    return [uiRpcId, stReply = std::move(stReply)](World &stWorld) {
        stWorld.stPlatform.mapReplies[uiRpcId] = stReply;
    };
}

}  // namespace wap::test

#endif

// Every native method once, on the scripted platform, which answers at once: the memory that a call
// takes, and for callgrind the call alone.
#include <stdio.h>
#include <string.h>
#include <valgrind/callgrind.h>

#include <deque>
#include <string>

#include "support/entry_groups.h"

using namespace wap::test;

namespace {

constexpr int kExitUsage = 2;

void PrintUsage(FILE *pstTo, const char *pcProgram) {
    fprintf(pstTo,
            "Usage: %s --heap\n"
            "       valgrind --tool=callgrind --collect-atstart=no --combine-dumps=yes\n"
            "           --callgrind-out-file=FILE %s --calls\n\n"
            "Calls every native method on a platform that answers at once.\n"
            "  --heap   prints, as JSON, what each call does: blocks and bytes that it allocates,\n"
            "           blocks that are left after it, calls of Java's functions, requests\n"
            "  --calls  has callgrind count each call alone, and write it under the method's name\n"
            "bench/run does both.\n",
            pcProgram, pcProgram);
}

/// "Class.method" of an exported name.
std::string NameOfEntry(const Entry &stEntry) {
    const std::string acSymbol = stEntry.sSymbol;
    const size_t uiEnd = acSymbol.rfind("_" + stEntry.sMethod);
    const size_t uiClass = acSymbol.rfind('_', uiEnd - 1);
    return acSymbol.substr(uiClass + 1, uiEnd - uiClass - 1) + "." + stEntry.sMethod;
}

/// One call of an entry whose bridge, platform and environment have had one like it before.
class SecondCall {
  public:
    explicit SecondCall(const FurnishedEntry &stFurnished) : m_stEntry(stFurnished.stEntry) {
        ResetBridge();
        stFurnished.pfnFurnish(m_stWorld);
        Make();
        stFurnished.pfnFurnish(m_stWorld);
        m_stWorld.ClearRecords();
        m_stWorld.Plan({});
        m_uiHeld = m_stWorld.stAllocs.Live();
    }

    void Make() {
        m_stAnswer = m_stEntry.fnCall(m_stEnv);
        m_stEnv.EndCall();
    }

    bool IsGood() const { return m_stAnswer == m_stEntry.stGood; }

    void Print(const char *pcBefore) const {
        size_t uiBytes = 0;
        for (const AllocRecord &stAlloc : m_stWorld.stAllocs.astLog) {
            uiBytes += stAlloc.uiSize;
        }
        printf(
            "%s\n  \"%s\": {\"blocks\": %zu, \"bytes\": %zu, \"left\": %zd, "
            "\"java_calls\": %u, \"requests\": %u}",
            pcBefore, NameOfEntry(m_stEntry).c_str(), m_stWorld.stAllocs.astLog.size(), uiBytes,
            static_cast<ssize_t>(m_stWorld.stAllocs.Live() - m_uiHeld), m_stWorld.Count(Op::kJni),
            m_stWorld.Count(Op::kRpc));
    }

  private:
    const Entry &m_stEntry;
    World m_stWorld;
    FakeJni m_stEnv;
    Answer m_stAnswer;
    size_t m_uiHeld = 0;
};

int Refuse(const Entry &stEntry) {
    fprintf(stderr, "%s does not answer as it should; the unit tests say more\n",
            NameOfEntry(stEntry).c_str());
    return 1;
}

int PrintHeap() {
    const char *pcBefore = "{";
    for (const FurnishedEntry &stFurnished : AllEntries()) {
        SecondCall stCall(stFurnished);
        stCall.Make();
        if (!stCall.IsGood()) {
            return Refuse(stFurnished.stEntry);
        }
        stCall.Print(pcBefore);
        pcBefore = ",";
    }
    printf("\n}\n");
    return 0;
}

int CountCalls() {
    if (RUNNING_ON_VALGRIND == 0) {
        fprintf(stderr, "--calls is for a run under callgrind (--help says how)\n");
        return kExitUsage;
    }
    // callgrind reads the names when it writes, which may be later.
    std::deque<std::string> acNames;
    for (const FurnishedEntry &stFurnished : AllEntries()) {
        SecondCall stCall(stFurnished);
        acNames.push_back(NameOfEntry(stFurnished.stEntry));
        CALLGRIND_ZERO_STATS;
        CALLGRIND_TOGGLE_COLLECT;
        stCall.Make();
        CALLGRIND_TOGGLE_COLLECT;
        CALLGRIND_DUMP_STATS_AT(acNames.back().c_str());
        if (!stCall.IsGood()) {
            return Refuse(stFurnished.stEntry);
        }
    }
    return 0;
}

}  // namespace

int main(int iArgCount, char **ppcArgs) {
    const std::string acMode = iArgCount == 2 ? ppcArgs[1] : "";
    if (acMode == "--heap") {
        return PrintHeap();
    }
    if (acMode == "--calls") {
        return CountCalls();
    }
    const bool bHelp = acMode == "--help" || acMode == "-h";
    PrintUsage(bHelp ? stdout : stderr, ppcArgs[0]);
    return bHelp ? 0 : kExitUsage;
}

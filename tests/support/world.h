// Everything around the bridge in one test: the platform that it calls, the memory that it takes,
// and the faults that are made to happen.
//
// A World belongs to the thread that made it, and the platform functions, the allocator hooks and
// the fake Java environment all act on the World of the calling thread. Worlds share nothing and
// take no lock, so a race detector sees only the synchronisation of the code under test.
#ifndef WAP_TESTS_SUPPORT_WORLD_H
#define WAP_TESTS_SUPPORT_WORLD_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "support/alloc_watch.h"
#include "support/scripted_platform.h"
#include "support/secret_watch.h"

namespace wap::test {

/// The kinds of operation that can be counted and made to fail.
enum class Op : uint32_t { kAlloc, kJni, kRpc, kBulk, kPlatform };
inline constexpr size_t kOpCount = 5;

/// Which operation fails: the uiAt-th of its kind (from 1; 0: none), and those after it too. With a
/// name, those of other names are not counted and don't fail.
struct FaultPlan {
    Op eOp = Op::kAlloc;
    uint32_t uiAt = 0;
    bool bForever = false;
    std::string_view sName = {};
};

// The names of the operations that are no functions of the platform or of JNI.
inline constexpr std::string_view kPlatformAllocation = "platform allocation";
inline constexpr std::string_view kMalloc = "malloc";
inline constexpr std::string_view kLocale = "locale";
inline constexpr std::string_view kRpcCall = "VT_MSG_RpcCall";

/// How often the operations of a name were done and made to fail.
struct OpTally {
    Op eOp = Op::kAlloc;
    uint32_t uiDone = 0;
    uint32_t uiFailed = 0;
};
/// By the operations' names: those above, or those of functions.
using OpTallies = std::map<std::string_view, OpTally>;

/// An operation that was made to fail.
struct FailedOp {
    std::string_view sName;
    uint32_t uiNth = 0;  ///< of its name, from 1
};

class World {
  public:
    World();
    ~World();
    World(const World &) = delete;
    World &operator=(const World &) = delete;

    /// The calling thread's World, or null.
    static World *Current();
    /// The calling thread's World; ends the program when there is none.
    static World &Get();
    /// Makes a World that of the calling thread; one thread at a time may use it.
    static void SetCurrent(World *pstWorld);

    /// Counts one operation; the name lives as long as the program. True when it shall fail.
    bool Hit(Op eOp, std::string_view sName);
    uint32_t Count(Op eOp) const { return auiCounts[static_cast<size_t>(eOp)]; }
    /// Since the last plan.
    const OpTallies &Tallies() const { return mapTallies; }
    /// In their order; since the last plan, too.
    const std::vector<FailedOp> &Failed() const { return astFailed; }
    /// Starts counting afresh and sets what fails from now on.
    void Plan(FaultPlan stNew);

    /// Notes that the code under test broke a rule of its surroundings.
    void Violation(std::string sText);
    /// Drops what the platform and the allocator recorded, not what they hold.
    void ClearRecords();
    /// Fails the running test for every broken rule and for whatever is still held.
    void ExpectClean(const std::string &sWhere = "");
    /// The broken rules and what is still held, as texts; both are forgotten with the call.
    std::vector<std::string> TakeComplaints();

    Platform stPlatform;
    AllocWatch stAllocs;
    SecretWatch stSecrets;

  private:
    FaultPlan stPlan;
    std::array<uint32_t, kOpCount> auiCounts{};
    OpTallies mapTallies;
    std::vector<FailedOp> astFailed;
    std::vector<std::string> asViolations;
    World *pstOuter;
};

/// Puts the bridge's globals back to how they are at load time.
void ResetBridge();

}  // namespace wap::test

#endif

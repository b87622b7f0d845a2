// Runs a call again and again, each time with another of its operations failing.
#ifndef WAP_TESTS_FAULTS_FAULT_SWEEP_H
#define WAP_TESTS_FAULTS_FAULT_SWEEP_H

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "support/fake_jni.h"
#include "support/world.h"

namespace wap::test {

/// Something to call under every fault. Every run has a World, an environment and a bridge of its
/// own, and two calls: one with the fault, and one after it.
struct Subject {
    std::string sName;
    /// Makes ready for one call, with nothing failing.
    std::function<void(World &)> fnFurnish = [](World &) {};
    /// Makes the call. What it gives stays until fnOutcome.
    std::function<void(FakeJni &)> fnCall;
    /// Tells, with nothing failing, what came out as a text, and releases it.
    std::function<std::string(FakeJni &)> fnOutcome;
    /// Gets what was done and failed in a call under a fault, before its outcome is asked for.
    std::function<void(const OpTallies &)> fnTold = [](const OpTallies &) {};
    /// Also fails the operations of each name alone, from each of them on.
    bool bByName = false;
    /// Allocations after this many are not made to fail.
    uint32_t uiMostAllocs = UINT32_MAX;
    std::string sGood;  ///< the outcome when nothing fails
    /// The outcomes that a fault may lead to.
    std::function<std::set<std::string>(const FaultPlan &)> fnAllowed;
};

/// How often a call does each operation when nothing fails.
using OpCounts = std::array<uint32_t, kOpCount>;

/// Fails each operation of the subject in turn, alone and with all of its kind that follow, and
/// expects an allowed outcome, nothing held or left behind, and a second call that works.
/// @return the counts of the call without a fault
OpCounts SweepFaults(const Subject &stSubject);

/// How many operations all sweeps of this program have made to fail so far, by group: "jni", "rpc",
/// "bulk.create" and so on.
const std::map<std::string, uint64_t> &FailedOperations();
/// The group of an operation's name.
std::string GroupOf(Op eOp, std::string_view sName);

/// Looks at what a call recorded, and at its outcome.
using Look = std::function<void(const Platform &, const std::string &sOutcome)>;

/// The outcomes that each of the allocations leads to when it fails alone.
std::set<std::string> OutcomesWithoutMemory(
    const Subject &stSubject, const Look &fnLook = [](const Platform &, const std::string &) {});

/// What a source records about it, in order of the allocations: a text for each run with all its
/// records, "code(numbers)" in hexadecimal without zeros at the end. Runs with the same follow each
/// other as one.
std::vector<std::string> RecordsWithoutMemory(const Subject &stSubject, const std::string &sFile);

/// All texts "<sHead><items, some left out><sTail>", with a separator between what is left, where
/// at most uiMissing items are left out.
std::set<std::string> WithSomeLeftOut(const std::string &sHead,
                                      const std::vector<std::string> &asItems,
                                      const std::string &sSeparator, const std::string &sTail,
                                      size_t uiMissing);

/// The same random numbers in every run.
class Dice {
  public:
    explicit Dice(uint32_t uiSeed) : stEngine(uiSeed) {}
    /// A number below uiSides.
    uint32_t Roll(uint32_t uiSides) { return static_cast<uint32_t>(stEngine()) % uiSides; }

  private:
    std::mt19937 stEngine;
};

const char *NameOf(Op eOp);
uint32_t CountOf(const OpCounts &auiCounts, Op eOp);

}  // namespace wap::test

#endif

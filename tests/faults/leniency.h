// What the Java entries may do under a fault besides giving their failing answer.
#ifndef WAP_TESTS_FAULTS_LENIENCY_H
#define WAP_TESTS_FAULTS_LENIENCY_H

#include <set>
#include <string_view>
#include <vector>

#include "faults/sweep_cases.h"

namespace wap::test {

struct Leniency {
    std::set<std::string_view> asUnimportant{};  ///< may fail, and the answer is the good one
    std::vector<Answer> astToo{};                ///< further answers
    /// Something else may be asked than without the fault: elements of an array that could not be
    /// had are left out, what was done is undone, or a block has another number.
    bool bOtherRequests = false;
};

/// Of a case, or of its method.
const Leniency &LeniencyOf(const SweepCase &stCase);
/// Releases, names and locks: nothing that any answer depends on.
bool IsUnimportant(std::string_view sOperation);

}  // namespace wap::test

#endif

// What the Java entries may do under a fault: which answers are right, and after which requests.
#ifndef WAP_TESTS_FAULTS_LENIENCY_H
#define WAP_TESTS_FAULTS_LENIENCY_H

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "faults/sweep_cases.h"

namespace wap::test {

/// What was asked of whom, in no order: the RPCs by their ids, the messages by their types.
using Requests = std::multiset<std::pair<uint32_t, std::string>>;
Requests RequestsOf(const Platform &stPlatform);

/// One call of an entry.
struct CallRecord {
    std::vector<std::string> asFailed;  ///< see FailedOperationsOf
    Answer stAnswer;
    Requests stRequests;
};

/// Tells the operations that were made to fail: "malloc 3" is the third of its name,
/// "VT_MSG_RpcCall 47307000" an RPC by its id, and "null element 1" an element of an array without
/// an exception.
std::vector<std::string> FailedOperationsOf(const World &stWorld, JniFailure eFailure);

/// The cases and methods that there are rules for; all others fail whatever fails.
std::vector<std::string> RuledNames();

/// What is wrong with how a call came out; empty when nothing is.
/// @param stGood what the case asks for when nothing fails
std::string Judge(const SweepCase &stCase, const Requests &stGood, const CallRecord &stCall);

}  // namespace wap::test

#endif

// The bridge attached to a gateway of its own, and what its methods answer there.
#ifndef WAP_TESTS_LIVE_LIVE_GATEWAY_H
#define WAP_TESTS_LIVE_LIVE_GATEWAY_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "gateway/gateway_fixture.h"
#include "support/entry_table.h"

namespace wap::test {

/// A query on the home as it is shipped.
struct LiveMethod {
    std::string sMethod;
    std::string sProcess;  ///< whom it asks; empty for nobody
    std::function<bool(const Answer &)> fnIsGood;
    Answer stFailure;  ///< when that process is away
};

/// The device services' methods, one that gets a bulk block and one that gets a segment of shared
/// memory, with answers written by hand.
const std::vector<LiveMethod> &LiveMethods();

/// Calls one of them.
Answer CallLive(FakeJni &stEnv, const LiveMethod &stMethod);

/// Bytes on the heap that nobody has freed.
size_t HeapBytes();

/// A gateway with the processes that are asked, and this program attached to it.
class LiveGatewayTest : public GatewayTest {
  protected:
    void SetUp() override;
    void TearDown() override;
};

}  // namespace wap::test

#endif

// One bundle, the gateway that answers it, and what must hold after each of its calls.
#ifndef WAP_TESTS_CALLERS_CALLER_H
#define WAP_TESTS_CALLERS_CALLER_H

#include <string>
#include <vector>

#include "callers/natives.h"
#include "support/world.h"

namespace wap::test {

/// Whether a request changes something on the gateway.
bool IsChange(const RpcRecord &stRpc);

class Caller {
  public:
    /// A fresh bridge and a gateway that has what the native asks for.
    explicit Caller(const Native &stCalled);
    Caller(const Caller &) = delete;
    Caller &operator=(const Caller &) = delete;
    ~Caller() { ResetBridge(); }

    /// Calls, and expects that nothing is left, pending or shown, and that no rule was broken.
    Answer Call(const Arguments &astArguments);
    /// Expects that the native gives its good answer now.
    void ExpectWorks();

    Platform &Gateway() { return stWorld.stPlatform; }
    /// The requests with this id of the last call.
    std::vector<RpcRecord> Requests(uint32_t uiRpcId) const;

    World stWorld;

  private:
    void WatchSecrets(const Arguments &astArguments);

    const Native &stNative;
    FakeJni stEnv;
};

}  // namespace wap::test

#endif

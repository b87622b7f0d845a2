// A second process that asks the gateway, because some of what it answers depends on who asks.
#ifndef WAP_TESTS_GATEWAY_OTHER_PROCESS_H
#define WAP_TESTS_GATEWAY_OTHER_PROCESS_H

#include <sys/types.h>

#include <string>

#include "gateway_fixture.h"

namespace wap::test {

/// Forked when it is first used, for which the test must not have started threads.
class OtherProcess {
  public:
    OtherProcess() = default;
    ~OtherProcess();
    OtherProcess(const OtherProcess &) = delete;
    OtherProcess &operator=(const OtherProcess &) = delete;

    pid_t Pid();

    /// Sends an RPC from there, as Call does from here.
    RpcReply Ask(const char *pcProcess, uint32_t uiRpcId, const std::string &acRequest,
                 size_t uiCapacity);

    /// Ends it as a crash would. It stays a zombie until this object goes.
    void Crash() const;

  private:
    void Start();
    [[noreturn]] static void Serve(int iQuestions, int iAnswers);

    pid_t m_iPid = -1;
    int m_iQuestions = -1;
    int m_iAnswers = -1;
};

}  // namespace wap::test

#endif

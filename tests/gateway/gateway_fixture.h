// A gateway of real processes in a runtime directory of its own, and what tests do with it.
#ifndef WAP_TESTS_GATEWAY_GATEWAY_FIXTURE_H
#define WAP_TESTS_GATEWAY_GATEWAY_FIXTURE_H

#include <gtest/gtest.h>
#include <stdint.h>
#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

#include "support/wire_bytes.h"

namespace wap::test {

/// How a program ended and what it printed.
struct Outcome {
    int iExit = -1;  ///< exit code; 128 + signal when a signal ended it
    std::string acOut;
    std::string acErr;
};

/// What came back from an RPC.
struct RpcReply {
    uint32_t uiStatus = 0;
    std::string acBytes;  ///< the whole reply buffer
};

inline constexpr const char *kProcessNames[] = {"gulm", "app_m", "osgi_proxy", "usb_mngt",
                                                "tarn", "cwmp",  "igmp"};

/// The bytes that the reply buffer holds before a call, to see what a reply did not touch.
inline constexpr char kUntouched = '\x5A';

/// What a process answers when a request makes no sense, or names nothing that is there.
inline constexpr uint32_t kRefused = 0xF7300001;
/// What it answers when a table is full.
inline constexpr uint32_t kTableFull = 0xF7300002;

/// Sends an RPC.
RpcReply Call(const char *pcProcess, uint32_t uiRpcId, std::string_view pcRequest,
              size_t uiCapacity, uint32_t uiTimeoutMs = 20000);

/// Sends the request of the device queries, one word holding 0.
RpcReply Query(const char *pcProcess, uint32_t uiRpcId, size_t uiCapacity,
               uint32_t uiTimeoutMs = 20000);

/// The reply's text, which must end in it.
std::string TextIn(const RpcReply &stReply);

/// What a block held whose descriptor, the reply's three words from uiAt, came as a reply; the
/// block is gone afterwards.
std::string BlockOf(const RpcReply &stReply, size_t uiAt = 0);

class GatewayTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    /// The command line of gatewayctl, likewise with the emulator.
    static std::vector<std::string> CtlWords(const std::vector<std::string> &astArguments);
    /// Runs gatewayctl.
    Outcome Ctl(const std::vector<std::string> &astArguments) const;
    /// Runs gatewayctl and expects that it succeeds; returns what it printed.
    std::string CtlOk(const std::vector<std::string> &astArguments) const;
    /// Runs a program with its whole command line and waits for its end.
    Outcome Run(const std::vector<std::string> &astWords) const;
    /// Starts a program without waiting; its output goes to files in the directory.
    pid_t Launch(const std::vector<std::string> &astWords) const;
    /// Waits for a program's end; returns the exit code as in Outcome.
    static int Await(pid_t iPid);
    /// The command line of wap_gateway, with the emulator before it where it needs one.
    static std::vector<std::string> GatewayWords(const std::string &acProcess);

    /// The environment files of all processes that were given the directory as theirs, whether or
    /// not they hold the lock by which gatewayctl knows them; a line each.
    std::string ProcessesOfTheDirectory() const;

    std::string ReadFile(const std::string &acName) const;
    void WriteFile(const std::string &acName, const std::string &acText) const;
    /// Makes a folder in the directory; returns its path.
    std::string MakeFolder(const std::string &acName) const;

    std::string m_acDir;

  private:
    void RemoveDirectory() const;
};

/// With the two processes that own values running.
class RunningGatewayTest : public GatewayTest {
  protected:
    void SetUp() override;
};

}  // namespace wap::test

#endif

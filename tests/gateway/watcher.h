// A gateway that someone watches.
#ifndef WAP_TESTS_GATEWAY_WATCHER_H
#define WAP_TESTS_GATEWAY_WATCHER_H

#include <signal.h>
#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

#include "gateway_fixture.h"

namespace wap::test {

inline constexpr uint32_t kMacRpc = 0x47209032;

/// Asks osgi_proxy for the MAC address.
RpcReply AskForMac();

/// Puts bytes into a block; returns its descriptor.
std::string NewBlock(const std::string &acBytes);

/// Lines of a monitor without what differs from run to run: the times are TIME, how long it took is
/// TOOK.
std::string WithoutTimes(const std::string &acLines);

/// The number that stands before a word, as in the last line of a monitor; 0 for none.
size_t NumberBefore(const std::string &acText, const std::string &acWord);

/// Waits until something is so, for a minute at most; whether it is.
bool Soon(const std::function<bool()> &fnIsSo);

class WatchTest : public RunningGatewayTest {
  protected:
    void SetUp() override;

    /// Starts a monitor whose output goes to NAME.out and NAME.err, and waits until it watches.
    pid_t Watch(const std::string &acName, const std::vector<std::string> &astArguments) const;

    /// Starts one by a line of the shell, in which "$@" is its command and "$0" NAME in the
    /// directory; what it says of itself must go to NAME.err.
    pid_t WatchWith(const std::string &acScript, const std::string &acName,
                    const std::vector<std::string> &astArguments) const;

    /// Waits until a part stands in a file; fails when it does not come.
    void Await(const std::string &acFile, const std::string &acPart) const;

    /// Ends a monitor with a signal, and expects that it ends as it should.
    void EndWatch(const std::string &acName, pid_t iPid, int iSignal = SIGTERM) const;

    /// What a monitor has printed.
    std::string Out(const std::string &acName) const { return ReadFile(acName + ".out"); }
    std::string Err(const std::string &acName) const { return ReadFile(acName + ".err"); }

    /// The names in the directory that begin so.
    std::string Files(const std::string &acBegin) const;
};

}  // namespace wap::test

#endif

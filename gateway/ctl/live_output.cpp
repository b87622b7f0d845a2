#include "ctl/live_output.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>

#include "framework/error.h"
#include "framework/files.h"

namespace wap::gateway {

namespace {

constexpr size_t kColumns = 100;
constexpr size_t kColumnsLeast = 60;

/// The pipe that the handler writes to: for a handler there is no object.
int g_aiPipe[2] = {-1, -1};

void OnEnd(int) {
    const int iErrno = errno;
    const char cByte = 0;
    (void)!write(g_aiPipe[1], &cByte, 1);
    errno = iErrno;
}

}  // namespace

EndSignals::EndSignals() : m_iRead(-1) {
    if (pipe2(g_aiPipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        throw GatewayError("cannot make a pipe: " + ErrnoText(errno));
    }
    m_iRead = g_aiPipe[0];
    struct sigaction stAction = {};
    stAction.sa_handler = OnEnd;
    sigemptyset(&stAction.sa_mask);
    for (const int iSignal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction stBefore = {};
        // Whoever starts it may have one of them passed over, as nohup does.
        if (sigaction(iSignal, nullptr, &stBefore) == 0 && stBefore.sa_handler != SIG_IGN) {
            (void)sigaction(iSignal, &stAction, nullptr);
        }
    }
    (void)signal(SIGPIPE, SIG_IGN);
}

bool LiveOutput::WaitForRoom() const {
    for (;;) {
        struct pollfd astPolls[] = {{STDOUT_FILENO, POLLOUT, 0}, {m_iSignals, POLLIN, 0}};
        if (poll(astPolls, 2, m_bHurry ? 0 : -1) < 0) {
            if (errno != EINTR) {
                throw GatewayError("cannot wait for the output: " + ErrnoText(errno));
            }
            continue;
        }
        // Errors show when it is written.
        return astPolls[0].revents != 0;
    }
}

void LiveOutput::Write(std::string_view sText) {
    // So much a pipe takes at once when it takes anything.
    constexpr size_t kPiece = PIPE_BUF;
    while (!sText.empty() && !m_bGone && WaitForRoom()) {
        const ssize_t iCount = write(STDOUT_FILENO, sText.data(), std::min(sText.size(), kPiece));
        if (iCount >= 0) {
            sText.remove_prefix(static_cast<size_t>(iCount));
        } else if (errno == EPIPE || errno == EIO) {
            m_bGone = true;
        } else if (errno != EINTR && errno != EAGAIN) {
            throw GatewayError("cannot write the output: " + ErrnoText(errno));
        }
    }
}

size_t LiveOutput::Columns() {
    struct winsize stSize = {};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &stSize) == 0 && stSize.ws_col != 0
               ? std::max<size_t>(stSize.ws_col, kColumnsLeast)
               : kColumns;
}

}  // namespace wap::gateway

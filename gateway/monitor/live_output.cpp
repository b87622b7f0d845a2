#include "monitor/live_output.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <span>

#include "framework/error.h"
#include "framework/files.h"

namespace wap::gateway {

namespace {

constexpr size_t kColumns = 100;
constexpr size_t kColumnsLeast = 60;
/// How long the end waits for somebody to read the rest of what is begun.
constexpr std::chrono::milliseconds kPatience(500);

/// The pipe that the handler writes to: for a handler there is no object.
int g_aiPipe[2] = {-1, -1};

void OnEnd(int) {
    const int iErrno = errno;
    const char cByte = 0;
    (void)!write(g_aiPipe[1], &cByte, 1);
    errno = iErrno;
}

/// Waits until one of them has something to tell; false when the time comes before.
bool PollUntil(std::span<struct pollfd> astPolls, ProgramEnd::Clock::time_point stEnd) {
    for (;;) {
        const int iReady = poll(astPolls.data(), astPolls.size(), MillisecondsUntil(stEnd));
        if (iReady < 0 && errno != EINTR) {
            throw GatewayError("cannot wait for the output: " + ErrnoText(errno));
        }
        if (iReady >= 0) {
            return iReady > 0;
        }
    }
}

}  // namespace

int MillisecondsUntil(std::chrono::steady_clock::time_point stTime) {
    const auto stNow = std::chrono::steady_clock::now();
    if (stTime <= stNow) {
        return 0;
    }
    constexpr std::chrono::hours kMost(24);
    // Not with a time that is as far away as can be: what is left until then is no number.
    const auto stLeft = stTime > stNow + kMost ? kMost : stTime - stNow;
    return stTime == std::chrono::steady_clock::time_point::max()
               ? -1
               : static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(stLeft).count());
}

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

bool EndSignals::HaveCome() const {
    struct pollfd stPoll = {Get(), POLLIN, 0};
    return poll(&stPoll, 1, 0) > 0;
}

bool ProgramEnd::ComesWithin(std::chrono::milliseconds stWait) const {
    struct pollfd stSignals = {iSignals, POLLIN, 0};
    return PollUntil({&stSignals, 1}, std::min(stTime, Clock::now() + stWait)) ||
           Clock::now() >= stTime;
}

bool LiveWriter::WaitForRoom(int iFd, bool bPatient) {
    struct pollfd astPolls[] = {{iFd, POLLOUT, 0}, {m_stEnd.iSignals, POLLIN, 0}};
    // Errors show when it is written.
    if (PollUntil(astPolls, m_stEnd.stTime) && astPolls[0].revents != 0) {
        return true;
    }
    m_stPatientUntil = std::min(m_stPatientUntil, Clock::now() + kPatience);
    return bPatient && PollUntil({astPolls, 1}, m_stPatientUntil);
}

LiveWriter::Result LiveWriter::Write(int iFd, std::string_view sBytes, bool bLines) {
    // So much a pipe takes at once when it takes anything.
    constexpr size_t kPiece = PIPE_BUF;
    bool bPatient = !bLines;
    while (!sBytes.empty() && !m_bOver) {
        if (!WaitForRoom(iFd, bPatient)) {
            m_bOver = true;
            break;
        }
        const std::string_view sPiece = sBytes.substr(0, kPiece);
        const size_t uiEnd = bLines ? sPiece.rfind('\n') : std::string_view::npos;
        const size_t uiCount = uiEnd == std::string_view::npos ? sPiece.size() : uiEnd + 1;
        const ssize_t iCount = write(iFd, sPiece.data(), uiCount);
        if (iCount > 0) {
            bPatient = !bLines || sPiece[static_cast<size_t>(iCount) - 1] != '\n';
            sBytes.remove_prefix(static_cast<size_t>(iCount));
        } else if (iCount < 0 && errno != EINTR && errno != EAGAIN) {
            return Result::kFailed;
        }
    }
    return sBytes.empty() ? Result::kAll : Result::kNotAll;
}

bool LiveOutput::Write(std::string_view sLines) {
    if (m_bGone) {
        return false;
    }
    const LiveWriter::Result eResult = m_stWriter.WriteLines(STDOUT_FILENO, sLines);
    if (eResult == LiveWriter::Result::kFailed) {
        if (errno != EPIPE && errno != EIO) {
            throw GatewayError("cannot write the output: " + ErrnoText(errno));
        }
        m_bGone = true;
    }
    return eResult == LiveWriter::Result::kAll;
}

size_t LiveOutput::Columns() {
    struct winsize stSize = {};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &stSize) == 0 && stSize.ws_col != 0
               ? std::max<size_t>(stSize.ws_col, kColumnsLeast)
               : kColumns;
}

}  // namespace wap::gateway

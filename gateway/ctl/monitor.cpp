// gatewayctl monitor: shows what the processes tell of the calls that they serve.
#include <errno.h>
#include <poll.h>
#include <stdio.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <list>
#include <map>
#include <memory>
#include <set>

#include "ctl/monitor_commands.h"
#include "framework/control.h"
#include "framework/error.h"
#include "framework/peers.h"
#include "framework/tap.h"
#include "framework/tap_socket.h"
#include "monitor/capture.h"
#include "monitor/event_json.h"
#include "monitor/event_text.h"
#include "monitor/frame_reader.h"
#include "monitor/live_output.h"

namespace wap::gateway {

namespace {

using Clock = std::chrono::steady_clock;

/// A process that hangs is not waited for long: it looks for itself when it goes on.
constexpr uint32_t kAskTimeoutMs = 2000;
/// What is read from a process before others have their turn.
constexpr size_t kReadAtOnce = 256u << 10;
/// Before the end, for what is on its way: so long for the next, and for all together.
constexpr std::chrono::milliseconds kLastPause(50);
constexpr std::chrono::milliseconds kLastWait(500);

/// The connection from a process.
struct TapConnection {
    FileDescriptor stSocket;
    FrameReader stReader = {};
    std::string acName = {};  ///< "" until it has said it
    bool bEnded = false;
    uint64_t ulLost = 0;  ///< before its next event
};

/// An event that came, and how many of its process are missing before it.
struct Arrived {
    TapEvent stEvent;
    uint64_t ulLost;
    std::string acProcess;  ///< as its connection is called

    uint64_t DoneUs() const { return stEvent.ulTimeUs + stEvent.ulDurationUs; }
};

class MonitorRun {
  public:
    MonitorRun(const RuntimeDir &stDir, const MonitorOptions &stOptions)
        : m_stDir(stDir), m_stOptions(stOptions), m_stListener(stDir) {
        SetEnd();
        if (!stOptions.acCapture.empty()) {
            m_pstCapture =
                std::make_unique<CaptureFile>(stOptions.acCapture, stOptions.bSecrets, m_stEnd);
        }
    }

    int Run() {
        try {
            Watch();
        } catch (const GatewayError &) {
            Conclude();
            throw;
        }
        Conclude();
        return 0;
    }

  private:
    void SetEnd() {
        if (m_stOptions.uiSeconds) {
            m_stEnd.stTime = Clock::now() + std::chrono::seconds(*m_stOptions.uiSeconds);
        }
    }

    void Watch() {
        Subscribe();
        // Those that hang have taken their time.
        SetEnd();
        while (!IsDone() && Clock::now() < m_stEnd.stTime && WaitAndShow()) {
        }
        if (!m_stOutput.ReaderIsGone()) {
            AwaitNames();
        }
        if (!IsDone()) {
            ShowTheLast();
        }
    }

    /// Says what there was, and leaves a whole capture behind.
    void Conclude() {
        // However it came to this: whoever reads has half a second from now.
        m_stEnd.stTime = Clock::time_point::min();
        if (!m_stOutput.ReaderIsGone()) {
            fprintf(stderr, "gatewayctl: %s\n", Summary().c_str());
        }
        if (m_ulNotCaptured > 0) {
            fprintf(stderr, "gatewayctl: %s of them are not in %s, which nobody read\n",
                    std::to_string(m_ulNotCaptured).c_str(), m_stOptions.acCapture.c_str());
        }
        if (m_pstCapture) {
            m_pstCapture->Finish(NowUs(), m_ulLost);
        }
    }

    bool IsDone() const {
        return m_stOutput.ReaderIsGone() ||
               (m_stOptions.uiCount && m_ulShown >= *m_stOptions.uiCount);
    }

    static uint64_t NowUs() {
        return static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(
                                         std::chrono::system_clock::now().time_since_epoch())
                                         .count());
    }

    std::string Summary() const {
        return std::to_string(m_ulSeen) + " seen, " + std::to_string(m_ulShown) + " shown, " +
               (m_ulUnread > 0 ? std::to_string(m_ulUnread) + " that nobody read, " : "") +
               std::to_string(m_ulLost) + " lost";
    }

    /// Has the processes that run look for those who watch. Those that start later do so anyway.
    void Subscribe() {
        RemoveDeadTaps(m_stDir);
        std::string acNames;
        for (const ProcessInfo *pstInfo : Running(m_stDir)) {
            if (m_stSignals.HaveCome()) {
                return;
            }
            try {
                (void)AskControl(pstInfo->pcName, kControlMonitor, nullptr, kAskTimeoutMs);
                acNames += (acNames.empty() ? "" : ", ") + std::string(pstInfo->pcName);
                m_setAsked.insert(pstInfo->pcName);
            } catch (const GatewayError &stError) {
                fprintf(stderr, "gatewayctl: %s is not watched yet: %s\n", pstInfo->pcName,
                        stError.what());
            }
        }
        fprintf(stderr, "gatewayctl: watching %s\n",
                acNames.empty() ? "for processes that start; none runs" : acNames.c_str());
        AcceptAll();
        WarnOfUnconnected();
    }

    /// Whether a process has connected, and not said yet which one it is.
    bool SomeoneIsNameless() const {
        return std::any_of(
            m_astConnections.begin(), m_astConnections.end(),
            [](const TapConnection &stConnection) { return stConnection.acName.empty(); });
    }

    /// Tells of processes that answered, but did not connect: they do so before they answer.
    void WarnOfUnconnected() {
        if (m_bWarned || SomeoneIsNameless()) {
            return;
        }
        m_bWarned = true;
        for (const std::string &acName : m_setAsked) {
            fprintf(stderr, "gatewayctl: %s is not watched: it has not connected\n",
                    acName.c_str());
        }
    }

    /// Before the end, hears who they are that have connected.
    void AwaitNames() {
        AcceptAll();
        const auto stLatest = Clock::now() + kLastWait;
        while (!m_bWarned && SomeoneIsNameless()) {
            std::vector<struct pollfd> astPolls = Connections();
            if (poll(astPolls.data(), astPolls.size(), MillisecondsUntil(stLatest)) <= 0 ||
                Clock::now() >= stLatest) {
                return;
            }
            ReceiveFrom(astPolls, 0);
            ShowArrived();
        }
        WarnOfUnconnected();
    }

    /// Waits until something comes, and shows it. False when a signal says that it is enough.
    bool WaitAndShow() {
        std::vector<struct pollfd> astPolls = {{m_stListener.Get(), POLLIN, 0},
                                               {m_stSignals.Get(), POLLIN, 0},
                                               {m_stOptions.bQuiet ? -1 : STDOUT_FILENO, 0, 0}};
        const size_t uiBefore = astPolls.size();
        const std::vector<struct pollfd> astConnections = Connections();
        astPolls.insert(astPolls.end(), astConnections.begin(), astConnections.end());
        const int iReady =
            poll(astPolls.data(), astPolls.size(), MillisecondsUntil(m_stEnd.stTime));
        if (iReady < 0 && errno != EINTR) {
            throw GatewayError("cannot wait for the processes: " + ErrnoText(errno));
        }
        if (iReady <= 0) {
            return true;
        }
        if ((astPolls[2].revents & (POLLERR | POLLHUP)) != 0) {
            m_stOutput.NoteReaderIsGone();
            return false;
        }
        ReceiveFrom(astPolls, uiBefore);
        if (astPolls[0].revents != 0) {
            AcceptAll();
        }
        WarnOfUnconnected();
        ShowArrived();
        return astPolls[1].revents == 0;
    }

    /// What was on its way when it was enough.
    void ShowTheLast() {
        m_stEnd.stTime = Clock::time_point::min();
        ShowArrived();
        const auto stLatest = Clock::now() + kLastWait;
        while (!IsDone() && Clock::now() < stLatest) {
            std::vector<struct pollfd> astPolls = Connections();
            if (poll(astPolls.data(), astPolls.size(), static_cast<int>(kLastPause.count())) <= 0) {
                return;
            }
            ReceiveFrom(astPolls, 0);
            ShowArrived();
        }
        if (!IsDone()) {
            fprintf(stderr, "gatewayctl: more is on its way, which is not waited for\n");
        }
    }

    std::vector<struct pollfd> Connections() const {
        std::vector<struct pollfd> astPolls;
        for (const TapConnection &stConnection : m_astConnections) {
            astPolls.push_back({stConnection.stSocket.Get(), POLLIN, 0});
        }
        return astPolls;
    }

    /// Reads from the processes of which poll has something to tell, from uiAt on.
    void ReceiveFrom(const std::vector<struct pollfd> &astPolls, size_t uiAt) {
        for (TapConnection &stConnection : m_astConnections) {
            if (astPolls[uiAt++].revents != 0) {
                Receive(stConnection);
            }
        }
        m_astConnections.remove_if(
            [](const TapConnection &stConnection) { return stConnection.bEnded; });
    }

    void AcceptAll() {
        for (;;) {
            FileDescriptor stNew = m_stListener.Accept();
            if (stNew.Get() < 0) {
                return;
            }
            m_astConnections.push_back({std::move(stNew)});
        }
    }

    /// Reads what a process says.
    void Receive(TapConnection &stConnection) {
        const ssize_t iCount =
            recv(stConnection.stSocket.Get(), m_acBuffer.data(), m_acBuffer.size(), 0);
        if (iCount < 0 && (errno == EAGAIN || errno == EINTR)) {
            return;
        }
        if (iCount <= 0) {
            End(stConnection,
                stConnection.stReader.HasRest() ? "has ended; calls may be missing" : "has ended");
            return;
        }
        stConnection.stReader.Add({m_acBuffer.data(), static_cast<size_t>(iCount)});
        try {
            while (std::optional<Arrival> stArrival = stConnection.stReader.Next()) {
                Take(stConnection, std::move(*stArrival));
            }
        } catch (const GatewayError &stError) {
            End(stConnection, ("is not watched any more: " + std::string(stError.what())).c_str());
        }
    }

    void End(TapConnection &stConnection, const char *pcHow) {
        stConnection.bEnded = true;
        m_mapLostBehind[stConnection.acName] += std::exchange(stConnection.ulLost, 0);
        if (!stConnection.acName.empty()) {
            fprintf(stderr, "gatewayctl: %s %s\n", stConnection.acName.c_str(), pcHow);
        }
    }

    void Take(TapConnection &stConnection, Arrival stArrival) {
        m_ulLost += stArrival.uiLost;
        stConnection.ulLost += stArrival.uiLost;
        if (!stArrival.stEvent) {
            return;
        }
        if (IsOfCall(stArrival.stEvent->eKind)) {
            m_astArrived.push_back({std::move(*stArrival.stEvent),
                                    std::exchange(stConnection.ulLost, 0), stConnection.acName});
            return;
        }
        const ProcessInfo *pstInfo = FindProcess(stArrival.stEvent->acReceiver);
        const std::string acName = pstInfo == nullptr ? "a process" : pstInfo->pcName;
        const bool bAsked = m_setAsked.erase(acName) != 0;
        if (stArrival.stEvent->eKind == TapKind::kFull) {
            // It says so each time that anybody asks.
            if (m_setFull.insert(acName).second) {
                fprintf(stderr,
                        "gatewayctl: %s is not watched: %zu watch it already, which is the most\n",
                        acName.c_str(), kTapWatchersMost);
            }
            stConnection.bEnded = true;
            return;
        }
        stConnection.acName = acName;
        if (m_setFull.erase(acName) != 0) {
            fprintf(stderr, "gatewayctl: %s is watched now\n", acName.c_str());
        } else if (!bAsked) {
            fprintf(stderr, "gatewayctl: %s has started\n", acName.c_str());
        }
    }

    /// Shows what came, in the order in which it was done, as far as it came at a time.
    void ShowArrived() {
        std::stable_sort(m_astArrived.begin(), m_astArrived.end(),
                         [](const Arrived &stLeft, const Arrived &stRight) {
                             return stLeft.DoneUs() < stRight.DoneUs();
                         });
        for (const Arrived &stArrived : m_astArrived) {
            if (IsDone()) {
                break;
            }
            ++m_ulSeen;
            uint64_t &ulLost = m_mapLostNow[stArrived.acProcess];
            ulLost += stArrived.ulLost;
            if (m_stOptions.stFilter.Wants(stArrived.stEvent)) {
                Show(stArrived.stEvent, std::exchange(ulLost, 0));
            }
        }
        m_astArrived.clear();
        for (const auto &[acProcess, ulLost] : m_mapLostBehind) {
            m_mapLostNow[acProcess] += ulLost;
        }
        m_mapLostBehind.clear();
    }

    void Show(const TapEvent &stEvent, uint64_t ulLost) {
        if (m_pstCapture && !m_pstCapture->Add(stEvent, ulLost)) {
            ++m_ulNotCaptured;
        }
        const bool bShown = m_stOptions.bQuiet || m_stOutput.Write(Printed(stEvent, ulLost));
        ++(bShown ? m_ulShown : m_ulUnread);
    }

    std::string Printed(const TapEvent &stEvent, uint64_t ulLost) const {
        if (m_stOptions.bJson) {
            return PrintJson(EventToJson(stEvent, ulLost).get(), false) + "\n";
        }
        return (ulLost > 0 ? "(" + std::to_string(ulLost) + " lost here)\n" : "") +
               (m_stOptions.bBrief ? Headline(stEvent) + "\n"
                                   : PrintEvent(stEvent, LiveOutput::Columns()));
    }

    const RuntimeDir m_stDir;
    const MonitorOptions &m_stOptions;
    const EndSignals m_stSignals;
    ProgramEnd m_stEnd = {m_stSignals.Get()};
    LiveOutput m_stOutput = LiveOutput(m_stEnd);
    const TapListener m_stListener;
    std::unique_ptr<CaptureFile> m_pstCapture;
    std::list<TapConnection> m_astConnections;
    std::vector<char> m_acBuffer = std::vector<char>(kReadAtOnce);
    std::set<std::string> m_setAsked;  ///< that have not said hello yet
    bool m_bWarned = false;            ///< of those among them that will not
    std::set<std::string> m_setFull;   ///< that tell so many that they tell no more
    std::vector<Arrived> m_astArrived;
    uint64_t m_ulSeen = 0;
    uint64_t m_ulShown = 0;
    uint64_t m_ulUnread = 0;  ///< not printed, because nobody read before the end
    uint64_t m_ulLost = 0;
    uint64_t m_ulNotCaptured = 0;  ///< not in the capture, for the same reason
    /// How many calls of a process were lost since its last one that was shown.
    std::map<std::string, uint64_t> m_mapLostNow;
    /// The same, behind what has arrived and is not shown yet.
    std::map<std::string, uint64_t> m_mapLostBehind;
};

}  // namespace

int Monitor(const Options &stOptions) {
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    stDir.Make();
    return MonitorRun(stDir, stOptions.stMonitor).Run();
}

}  // namespace wap::gateway

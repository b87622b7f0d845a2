// gatewayctl replay: sends what was captured again.
#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <thread>

#include "ctl/monitor_commands.h"
#include "framework/bulk.h"
#include "framework/codes.h"
#include "framework/control.h"
#include "framework/error.h"
#include "framework/process_list.h"
#include "monitor/capture.h"
#include "monitor/event_json.h"
#include "monitor/event_text.h"
#include "records/access_right.h"

namespace wap::gateway {

namespace {

/// For RPCs that the table does not have, as long as for most others.
constexpr uint32_t kUsualTimeoutMs = 5000;
/// A pause is no longer, whatever the file says.
constexpr double kPauseMostS = 3600;
/// Captures are kept in memory; a longer one has been left to itself for days.
constexpr uint64_t kFileMost = 1u << 30;

/// The next packet of a file; nothing at its end. A file that ends within a block is one whose
/// writer was stopped: what stands before that is as good as it was. Throws GatewayError for
/// others, and when there is nothing before it.
std::optional<Packet> NextWhole(PcapngReader &stReader, bool bFirst) {
    try {
        return stReader.Next();
    } catch (const GatewayError &stError) {
        if (bFirst || !stReader.EndsTooEarly()) {
            throw;
        }
        fprintf(stderr, "gatewayctl: %s; calls may be missing\n", stError.what());
        return std::nullopt;
    }
}

/// The calls of a capture, in the order in which they were made. Throws GatewayError.
std::vector<TapEvent> ReadCapture(const std::string &acPath) {
    errno = 0;
    std::ifstream stFile(acPath, std::ios::binary);
    if (!stFile) {
        throw GatewayError(errno == 0 ? "it can't be opened" : ErrnoText(errno));
    }
    std::vector<TapEvent> astEvents;
    uint64_t ulBytes = 0;
    size_t uiOthers = 0;
    PcapngReader stReader(stFile);
    while (const std::optional<Packet> stPacket = NextWhole(stReader, astEvents.empty())) {
        ulBytes += stPacket->acBytes.size();
        if (ulBytes > kFileMost) {
            throw GatewayError("it holds more than " + std::to_string(kFileMost >> 20) + " MiB");
        }
        if (std::optional<TapEvent> stEvent = EventIn(*stPacket)) {
            astEvents.push_back(std::move(*stEvent));
        } else {
            ++uiOthers;
        }
    }
    if (astEvents.empty() && uiOthers > 0) {
        throw GatewayError("none of its " + std::to_string(uiOthers) +
                           " packets is of this gateway; monitor --capture writes such files");
    }
    std::stable_sort(astEvents.begin(), astEvents.end(),
                     [](const TapEvent &stLeft, const TapEvent &stRight) {
                         return stLeft.ulTimeUs < stRight.ulTimeUs;
                     });
    return astEvents;
}

/// How it ended: its status, or that nobody answered.
uint32_t RecordedCode(const TapEvent &stEvent) {
    return stEvent.bAnswered || stEvent.eKind == TapKind::kMessage
               ? stEvent.uiCode
               : static_cast<uint32_t>(VT_HOST_ERR_TIMEOUT);
}

/// Whether the gateway makes the call by itself, or gatewayctl did.
bool IsInner(const TapEvent &stEvent) {
    return FindProcess(stEvent.stHead.acSndApp) != nullptr ||
           (stEvent.eKind == TapKind::kRpc && IsControl(stEvent.uiId));
}

/// Why something can't be sent; "" when it can.
std::string Obstacle(const TapEvent &stEvent) {
    if (FindProcess(stEvent.stHead.acRcvApp) == nullptr) {
        return "the gateway has no such process";
    }
    if (!stEvent.astParts[kTapRequest].IsWhole()) {
        return "the file does not hold its whole request";
    }
    if (stEvent.eBlockSide == WireSide::kRequest && !stEvent.astParts[kTapBlock].IsWhole()) {
        return "the file does not hold the block of its request";
    }
    return "";
}

/// The request as it is sent now: with a new block in place of the one that it named.
std::string RequestOf(const TapEvent &stEvent) {
    std::string acRequest = stEvent.astParts[kTapRequest].acHeld;
    const WireRpc *pstRpc = RpcOf(stEvent);
    if (pstRpc != nullptr && stEvent.eBlockSide == WireSide::kRequest &&
        DescriptorIn(*pstRpc, WireSide::kRequest, acRequest)) {
        const VDataDesc stDesc = PublishBlock(stEvent.astParts[kTapBlock].acHeld);
        memcpy(acRequest.data() + *DescriptorOffset(pstRpc->stRequest), &stDesc, sizeof(stDesc));
    }
    return acRequest;
}

/// The segment that some calls are answered in: who makes such a call makes it before, and removes
/// it afterwards.
class AnswerSegment {
  public:
    /// Makes it when the call needs one. Throws GatewayError when that can't be done.
    AnswerSegment(const TapEvent &stEvent, const std::string &acRequest) {
        RightFill stFill = {};
        const int32_t iKey = KeyOf(stEvent);
        if (iKey == IPC_PRIVATE || acRequest.size() != sizeof(stFill)) {
            return;
        }
        memcpy(&stFill, acRequest.data(), sizeof(stFill));
        if (stFill.uiSize > kSegmentMost) {
            throw GatewayError("the segment for its answer would have " +
                               std::to_string(stFill.uiSize) + " bytes, which no answer needs");
        }
        // All rights of its owner: the library may come upon this one, and asks for them.
        m_iId = VT_OS_ShmGet(iKey, stFill.uiSize, IPC_CREAT | IPC_EXCL | 0700);
        if (m_iId >= 0) {
            return;
        }
        const int iError = errno;
        if (iError != EEXIST) {
            throw GatewayError("the segment for its answer can't be made: " + ErrnoText(iError));
        }
        if (VT_OS_ShmGet(iKey, stFill.uiSize, 0) < 0 && errno == EINVAL) {
            throw GatewayError(
                "somebody else has made the segment for its answer, and it is too"
                " small; once nobody asks, gatewayctl restart removes it");
        }
    }
    AnswerSegment(const AnswerSegment &) = delete;
    AnswerSegment &operator=(const AnswerSegment &) = delete;
    ~AnswerSegment() {
        if (m_iId >= 0) {
            (void)VT_OS_ShmCtl(m_iId, IPC_RMID, nullptr);
        }
    }

  private:
    /// As long as the longest block.
    static constexpr uint32_t kSegmentMost = 16u << 20;

    /// IPC_PRIVATE when it is answered without a segment.
    static int32_t KeyOf(const TapEvent &stEvent) {
        return stEvent.uiId == kRpcFillFtpRight     ? kFtpRightKey
               : stEvent.uiId == kRpcFillSambaRight ? kSambaRightKey
                                                    : IPC_PRIVATE;
    }

    int32_t m_iId = -1;  ///< of the one that was made here
};

/// Sends a call again; returns what comes of it. Throws GatewayError when a block or a segment
/// can't be made.
uint32_t SendCall(const TapEvent &stEvent) {
    const WireRpc *pstRpc = RpcOf(stEvent);
    const std::string acRequest = RequestOf(stEvent);
    const AnswerSegment stSegment(stEvent, acRequest);
    std::string acReply(stEvent.uiRoom, '\0');
    const uint32_t uiStatus =
        VT_MSG_RpcCall(&stEvent.stHead, stEvent.uiId, stEvent.uiDstMid, acRequest.data(),
                       static_cast<uint32_t>(acRequest.size()), acReply.data(),
                       static_cast<uint32_t>(acReply.size()),
                       pstRpc == nullptr ? kUsualTimeoutMs : pstRpc->uiTimeoutMs);
    // Whoever read it has freed it already.
    FreePublished();
    if (uiStatus == 0 && pstRpc != nullptr) {
        if (const auto stDesc = DescriptorIn(*pstRpc, WireSide::kReply, acReply)) {
            (void)VT_VDATA_FreeShm(stDesc->uiDataID);
        }
    }
    return uiStatus;
}

/// The same for a message.
uint32_t SendMessage(const TapEvent &stEvent) {
    const std::string acContent = RequestOf(stEvent);
    const uint32_t uiStatus =
        VT_MSG_AsyncSendData(stEvent.stHead.acRcvApp, stEvent.uiId, acContent.data(),
                             static_cast<uint32_t>(acContent.size()));
    if (uiStatus == 0) {
        ForgetPublished();  // the receiver's, which may not have come to read it yet
    } else {
        FreePublished();
    }
    return uiStatus;
}

class ReplayRun {
  public:
    explicit ReplayRun(const ReplayOptions &stOptions) : m_stOptions(stOptions) {}

    int Run(const std::vector<TapEvent> &astEvents) {
        for (const TapEvent &stEvent : astEvents) {
            if (!m_stOptions.stFilter.Wants(stEvent)) {
                continue;
            }
            if (IsInner(stEvent)) {
                ++m_uiInner;
                continue;
            }
            const std::string acObstacle = Obstacle(stEvent);
            if (!acObstacle.empty()) {
                ++m_uiUnsent;
                Tell(stEvent, 0, "not sent: " + acObstacle);
            } else if (m_stOptions.bDryRun) {
                ++m_uiSent;
                Tell(stEvent, stEvent.ulDurationUs, "was " + DescribeCode(RecordedCode(stEvent)));
            } else {
                Pause(stEvent.ulTimeUs);
                Send(stEvent);
            }
        }
        return Summary();
    }

  private:
    using Clock = std::chrono::steady_clock;

    /// Waits until it is this one's turn.
    void Pause(uint64_t ulTimeUs) {
        if (m_stOptions.dSpeed > 0 && m_ulLastUs != 0 && ulTimeUs > m_ulLastUs) {
            const double dPause =
                static_cast<double>(ulTimeUs - m_ulLastUs) / 1e6 / m_stOptions.dSpeed;
            m_stTurn += std::chrono::duration_cast<Clock::duration>(
                std::chrono::duration<double>(std::min(dPause, kPauseMostS)));
            std::this_thread::sleep_until(m_stTurn);
        }
        m_ulLastUs = ulTimeUs;
    }

    void Send(const TapEvent &stEvent) {
        const auto stBegin = Clock::now();
        uint32_t uiCode = 0;
        try {
            uiCode = stEvent.eKind == TapKind::kMessage ? SendMessage(stEvent) : SendCall(stEvent);
        } catch (const GatewayError &stError) {
            ++m_uiUnsent;
            Tell(stEvent, 0, "not sent: " + std::string(stError.what()));
            return;
        }
        const auto stTook =
            std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - stBegin);
        ++m_uiSent;
        // What comes of a message shows nobody.
        const uint32_t uiWas = stEvent.eKind == TapKind::kMessage ? 0 : RecordedCode(stEvent);
        std::string acEnding = DescribeCode(uiCode);
        if (uiCode != uiWas) {
            ++m_uiDiffer;
            acEnding += "  (it was " + DescribeCode(uiWas) + ")";
        }
        Tell(stEvent, static_cast<uint64_t>(stTook.count()), acEnding);
    }

    void Tell(const TapEvent &stEvent, uint64_t ulTookUs, const std::string &acEnding) {
        m_uiMasked += stEvent.bMasked ? 1 : 0;
        const char *pcName = NameOfRpc(stEvent);
        printf("%-10s  %-21s  %-10s %8llu.%03u ms  %s%s\n",
               PrintedName(stEvent.stHead.acRcvApp).c_str(), *pcName == '\0' ? "(unknown)" : pcName,
               IdText(stEvent).c_str(), static_cast<unsigned long long>(ulTookUs / 1000),
               static_cast<unsigned>(ulTookUs % 1000), acEnding.c_str(),
               stEvent.bMasked ? "  [secrets are written over]" : "");
        (void)fflush(stdout);
    }

    int Summary() const {
        if (m_stOptions.bDryRun) {
            printf("%zu to send", m_uiSent);
        } else {
            printf("%zu sent: %zu ended as before, %zu otherwise", m_uiSent, m_uiSent - m_uiDiffer,
                   m_uiDiffer);
        }
        if (m_uiUnsent > 0) {
            printf("; %zu can't be sent", m_uiUnsent);
        }
        if (m_uiInner > 0) {
            printf("; %zu left out, which the gateway sends itself", m_uiInner);
        }
        printf("\n");
        if (m_uiMasked > 0) {
            printf("%zu with secrets that are written over in the file\n", m_uiMasked);
        }
        return m_uiDiffer == 0 && m_uiUnsent == 0 ? 0 : 1;
    }

    const ReplayOptions &m_stOptions;
    uint64_t m_ulLastUs = 0;
    Clock::time_point m_stTurn = Clock::now();
    size_t m_uiSent = 0;
    size_t m_uiDiffer = 0;
    size_t m_uiUnsent = 0;
    size_t m_uiInner = 0;
    size_t m_uiMasked = 0;
};

}  // namespace

int Replay(const Options &stOptions) {
    if (!stOptions.stReplay.bDryRun) {
        (void)RuntimeDir::FromEnvironment();
    }
    std::vector<TapEvent> astEvents;
    try {
        astEvents = ReadCapture(stOptions.stReplay.acFile);
    } catch (const GatewayError &stError) {
        fprintf(stderr, "gatewayctl: cannot replay %s: %s\n", stOptions.stReplay.acFile.c_str(),
                stError.what());
        return kExitUsage;
    }
    return ReplayRun(stOptions.stReplay).Run(astEvents);
}

}  // namespace wap::gateway

// app_m's network diagnostics, and what it is told about monitored addresses. Nothing leaves this
// machine: a diagnosis takes the time that the home says, and finds what the home knows.
#include <time.h>

#include <functional>
#include <mutex>

#include "framework/bulk.h"
#include "framework/peers.h"
#include "processes/processes.h"
#include "records/diagnostics.h"
#include "records/traffic_monitor.h"

namespace wap::gateway {

namespace {

// Status of a start, and of a result that is not there yet.
constexpr uint32_t kStatusBusy = 1;    ///< a start: one of its kind runs; a result: it runs still
constexpr uint32_t kStatusNoWan = 2;   ///< a start: there is no such connection, or it is down
constexpr uint32_t kPingsDefault = 4;  ///< where the request does not say how many
constexpr uint32_t kPingsMax = 100;
constexpr uint32_t kHops = 4;

enum class Kind : size_t { kPing, kDns, kTraceRoute, kCount };
constexpr const char *kTimeKeys[] = {"pingMs", "dnsMs", "traceRouteMs"};

uint64_t NowMs() {
    timespec stNow = {};
    clock_gettime(CLOCK_BOOTTIME, &stNow);
    return static_cast<uint64_t>(stNow.tv_sec) * 1000 +
           static_cast<uint64_t>(stNow.tv_nsec) / 1000000;
}

/// The diagnoses of this run of the process: one of each kind, the last one.
class Diagnoses : public ProcessState {
  public:
    JsonValue Control(uint32_t, json_object *) override { return nullptr; }

    /// Starts one unless one of its kind runs.
    uint32_t Start(Kind eKind, uint64_t uiTakesMs, JsonValue stResult) {
        const std::scoped_lock stLock(m_stMutex);
        Run &stRun = m_astRuns[static_cast<size_t>(eKind)];
        if (stRun.stResult && NowMs() < stRun.uiEndMs) {
            return kStatusBusy;
        }
        stRun = {NowMs() + uiTakesMs, std::move(stResult)};
        return 0;
    }

    /// The result's text, or why there is none.
    uint32_t Result(Kind eKind, std::string &acText) {
        const std::scoped_lock stLock(m_stMutex);
        const Run &stRun = m_astRuns[static_cast<size_t>(eKind)];
        if (!stRun.stResult) {
            acText = R"({"Result":0,"State":"None"})";
            return 0;
        }
        if (NowMs() < stRun.uiEndMs) {
            return kStatusBusy;
        }
        acText = PrintJson(stRun.stResult.get(), false);
        return 0;
    }

  private:
    struct Run {
        uint64_t uiEndMs = 0;
        JsonValue stResult;
    };
    std::mutex m_stMutex;
    std::array<Run, static_cast<size_t>(Kind::kCount)> m_astRuns;
};

Diagnoses &DiagnosesOf(HandlerContext &stContext) {
    return static_cast<Diagnoses &>(*stContext.pstState);
}

/// Whether a connection is there and up; index 0 leaves the choice to the gateway.
bool IsWanUp(uint32_t uiWanIndex) {
    const JsonValue stWans = PeerValue("wan");
    for (json_object *pstWan : Elements(stWans.get())) {
        if ((uiWanIndex == 0 || NumberOf(pstWan, "index") == uiWanIndex) &&
            IsTrue(pstWan, "connected")) {
            return true;
        }
    }
    return false;
}

/// The address that a name stands for: a host of the LAN's own, the name itself when it is made as
/// an address is, else one of those that are for documentation.
std::string AddressOf(HandlerContext &stContext, const std::string &acHost) {
    const HomeReader stHome(stContext.stHome);
    if (json_object *pstHost = FindElement(stHome.At("hosts"), "name", acHost)) {
        return TextOf(pstHost, "ip");
    }
    if (acHost.find_first_not_of("0123456789.") == std::string::npos ||
        acHost.find(':') != std::string::npos) {
        return acHost;
    }
    uint32_t uiSum = 0;
    for (const char cLetter : acHost) {
        uiSum = uiSum * 31 + static_cast<unsigned char>(cLetter);
    }
    return "203.0.113." + std::to_string(1 + uiSum % 254);
}

JsonValue NewResult(const std::string &acHost) {
    JsonValue stResult = MakeObject();
    PutNumber(stResult.get(), "Result", 0);
    PutText(stResult.get(), "State", "Complete");
    PutText(stResult.get(), "Host", acHost);
    return stResult;
}

uint64_t TimeFor(HandlerContext &stContext, Kind eKind) {
    return HomeReader(stContext.stHome)
        .Number(std::string("diagnostics.") + kTimeKeys[static_cast<size_t>(eKind)]);
}

uint32_t StartOne(HandlerContext &stContext, Kind eKind, uint32_t uiWanIndex, JsonValue stResult) {
    return IsWanUp(uiWanIndex)
               ? DiagnosesOf(stContext).Start(eKind, TimeFor(stContext, eKind), std::move(stResult))
               : kStatusNoWan;
}

/// A ping's result is a reply, which has room for no host of any length: what is too long for it
/// loses the address, and when that is not enough the host.
void FitPingReply(json_object *pstResult) {
    for (const char *pcKey : {"Address", "Host"}) {
        if (PrintJson(pstResult, false).size() >= kPingResultMax) {
            json_object_object_del(pstResult, pcKey);
        }
    }
}

uint32_t StartPing(HandlerContext &stContext, const PingDiagRequest &stRequest,
                   DiagStartReply &stReply) {
    const std::string acHost = TextIn(stRequest.acHost);
    const uint32_t uiPings =
        std::min(stRequest.uiRepetitions == 0 ? kPingsDefault : stRequest.uiRepetitions, kPingsMax);
    JsonValue stResult = NewResult(acHost);
    PutText(stResult.get(), "Address", AddressOf(stContext, acHost));
    PutNumber(stResult.get(), "Sent", uiPings);
    PutNumber(stResult.get(), "Received", uiPings);
    PutNumber(stResult.get(), "DataBlockSize", stRequest.uiDataBlockSize);
    PutNumber(stResult.get(), "DSCP", stRequest.uiDscp);
    PutNumber(stResult.get(), "MinimumMs", 2);
    PutNumber(stResult.get(), "AverageMs", 3);
    PutNumber(stResult.get(), "MaximumMs", 5);
    FitPingReply(stResult.get());
    stReply.uiStatus = StartOne(stContext, Kind::kPing, stRequest.uiWanIndex, std::move(stResult));
    return 0;
}

uint32_t StartDns(HandlerContext &stContext, const DnsDiagRequest &stRequest,
                  DiagStartReply &stReply) {
    const std::string acHost = TextIn(stRequest.acHost);
    JsonValue stResult = NewResult(acHost);
    PutText(stResult.get(), "Servers", TextIn(stRequest.acServers));
    JsonValue stAddresses = MakeArray();
    Append(stAddresses.get(),
           JsonValue(json_object_new_string(AddressOf(stContext, acHost).c_str())));
    PutMember(stResult.get(), "Addresses", std::move(stAddresses));
    PutText(stResult.get(), "Parameters", TextIn(stRequest.acPara));
    stReply.uiStatus = StartOne(stContext, Kind::kDns, stRequest.uiWanIndex, std::move(stResult));
    return 0;
}

uint32_t StartTraceRoute(HandlerContext &stContext, const TraceRouteDiagRequest &stRequest,
                         DiagStartReply &stReply) {
    const std::string acHost = TextIn(stRequest.acHost);
    JsonValue stResult = NewResult(acHost);
    JsonValue stHops = MakeArray();
    for (uint32_t uiHop = 1; uiHop <= kHops; ++uiHop) {
        JsonValue stHop = MakeObject();
        PutNumber(stHop.get(), "Hop", uiHop);
        PutText(
            stHop.get(), "Address",
            uiHop == kHops ? AddressOf(stContext, acHost) : "198.51.100." + std::to_string(uiHop));
        PutNumber(stHop.get(), "Ms", int64_t{2} * uiHop);
        Append(stHops.get(), std::move(stHop));
    }
    PutMember(stResult.get(), "Hops", std::move(stHops));
    PutText(stResult.get(), "Parameters", TextIn(stRequest.acPara));
    stReply.uiStatus =
        StartOne(stContext, Kind::kTraceRoute, stRequest.uiWanIndex, std::move(stResult));
    return 0;
}

/// The ping's result is the reply itself, also while there is none.
uint32_t GetPingResult(HandlerContext &stContext, std::string_view pcRequest,
                       std::string &acReply) {
    if (pcRequest != std::string_view("\0\0\0\0", sizeof(Word))) {
        return VT_HOST_ERR_ARGUMENT;
    }
    const uint32_t uiStatus = DiagnosesOf(stContext).Result(Kind::kPing, acReply);
    if (uiStatus != 0) {
        const JsonValue stAnswer = MakeObject();
        PutNumber(stAnswer.get(), "Result", uiStatus);
        acReply = PrintJson(stAnswer.get(), false);
    }
    acReply += '\0';
    return acReply.size() > kPingResultMax ? static_cast<uint32_t>(VT_HOST_ERR_TOO_LONG) : 0u;
}

template <Kind kKind>
uint32_t GetResult(HandlerContext &stContext, const Word &, DiagResultReply &stReply) {
    std::string acText;
    stReply.uiStatus = DiagnosesOf(stContext).Result(kKind, acText);
    if (stReply.uiStatus == 0) {
        stReply.stText = PublishText(acText);
    }
    return 0;
}

/// The longest notice that this process takes; the bound is its own. A longer one is dropped.
constexpr uint32_t kNoticeMax = 1 << 20;

/// A bundle has registered addresses or removed them. Nothing follows from it here: what is kept is
/// how often, and the last change.
void NoteMonitorChange(HandlerContext &stContext, std::string_view pcBytes) {
    VDataDesc stDesc = {};
    if (pcBytes.size() != sizeof(stDesc)) {
        return;
    }
    memcpy(&stDesc, pcBytes.data(), sizeof(stDesc));
    const std::string acNotice = FetchBlock(stDesc, kNoticeMax);
    TrafficMonitorNotice stNotice = {};
    if (acNotice.size() <= sizeof(stNotice)) {
        return;
    }
    memcpy(&stNotice, acNotice.data(), sizeof(stNotice));
    std::string acList = acNotice.substr(sizeof(stNotice));
    acList.resize(strnlen(acList.data(), acList.size()));
    HomeChange stChange(stContext.stHome);
    json_object *pstNotices = stChange.At("monitorNotices");
    const char *pcCount = stNotice.ucOperation == kNoticeAdd ? "added" : "deleted";
    PutNumber(pstNotices, pcCount, int64_t{NumberOf(pstNotices, pcCount)} + 1);
    PutText(pstNotices, "bundle", TextIn(stNotice.acBundleName));
    PutText(pstNotices, "addresses", acList);
    stChange.Commit();
}

}  // namespace

void AddDiagnosticsRpcs(RpcTable &stTable) {
    stTable.SetState([](Home &, const RuntimeDir &) -> std::unique_ptr<ProcessState> {
        return std::make_unique<Diagnoses>();
    });
    stTable.Add(kRpcStartPing, StartPing);
    stTable.AddBytes(kRpcGetPingResult, GetPingResult);
    stTable.Add(kRpcStartDns, StartDns);
    stTable.Add(kRpcGetDnsResult, GetResult<Kind::kDns>);
    stTable.Add(kRpcStartTraceRoute, StartTraceRoute);
    stTable.Add(kRpcGetTraceRouteResult, GetResult<Kind::kTraceRoute>);
    stTable.AddMessage(kMsgTrafficMonitorChanged, NoteMonitorChange);
}

}  // namespace wap::gateway

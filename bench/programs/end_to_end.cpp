// Calls from Java to a process of the gateway and back, beside other ways to ask another process.
// All that takes part is kept on one processor.
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include "common/measure.h"
#include "common/ready_answers.h"
#include "peers/dbus.h"
#include "peers/gateway.h"
#include "peers/plain_ask.h"
#include "peers/sockets.h"

using namespace wap::bench;

namespace {

constexpr char kPurpose[] =
    "Measures calls from Java to a process of the gateway, and what the same takes by other ways:\n"
    "  bridge                 the library under test\n"
    "  floor                  plain C with the same conversions and the same request\n"
    "  ping_pong              packets of the same sizes, in C, and nothing else\n"
    "  sd_bus                 D-Bus through a daemon, in C (libsystemd)\n"
    "  dbus_java              D-Bus through a daemon, by the Java library\n"
    "  sockets_java           a SocketChannel of plain Java to a server in C\n"
    "  sockets_java_deflated  the same for a text that is compressed, by zlib\n"
    "and by themselves the parts of the bridge's calls:\n"
    "  request                the platform's request, in C\n"
    "  text                   a Java text is made of bytes, by a native method in C\n"
    "  block/hosts            the bulk block is made, written, read and freed\n"
    "  unpack/hosts           what was read is decompressed\n"
    "All processes are kept on one processor. The benchmarks are called PEER/WORK.";

struct NamedWork {
    Work eWork;
    const char *pcName;
    size_t uiBatch;
};
constexpr NamedWork kWorks[] = {{Work::kUpTime, "up_time", 256},
                                {Work::kMac, "mac", 256},
                                {Work::kWanStatus, "wan_status", 256},
                                {Work::kHosts, "hosts", 16}};

/// What there is for the peers to call.
struct Ends {
    std::map<Work, std::shared_ptr<PingPong>> mapPingPongs;
    std::string acStreams;  ///< the socket's path
    std::string acBus;      ///< the daemon's address
};

Ends StartProcesses(Surroundings &stAround) {
    Ends stEnds;
    (void)StartGateway(stAround.stChildren);
    for (const NamedWork &stWork : kWorks) {
        stEnds.mapPingPongs[stWork.eWork] =
            std::make_shared<PingPong>(stAround.stChildren, stWork.eWork);
    }
    stEnds.acStreams = stAround.stFolder.PathOf("streams");
    StartStreamServer(stAround.stChildren, stEnds.acStreams);
    stEnds.acBus = StartBus(stAround.stChildren, stAround.stFolder.PathOf("bus"));
    return stEnds;
}

void RegisterPeer(Surroundings &stAround, const std::string &acPeer, const NamedWork &stWork,
                  const std::string &acAddress = "") {
    RegisterJava(stAround, acPeer + "/" + stWork.pcName, stWork.uiBatch,
                 stAround.pstJava->Prepare(acPeer, stWork.pcName, acAddress),
                 AnswerText(stWork.eWork));
}

void RegisterBus(const std::shared_ptr<BusClient> &pstBus, const NamedWork &stWork) {
    const Work eWork = stWork.eWork;
    const std::string acName = std::string("sd_bus/") + stWork.pcName;
    pstBus->Once(eWork);
    CheckAnswer(acName, pstBus->Answer(), AnswerText(eWork));
    Register(acName, stWork.uiBatch, Timing([pstBus, eWork] { pstBus->Once(eWork); }));
}

void RegisterPingPong(const std::shared_ptr<PingPong> &pstPingPong, const NamedWork &stWork) {
    const std::string acName = std::string("ping_pong/") + stWork.pcName;
    pstPingPong->Once();
    CheckAnswer(acName, std::to_string(pstPingPong->Received()),
                std::to_string(ReplyPacketSize(stWork.eWork)));
    Register(acName, stWork.uiBatch, Timing([pstPingPong] { pstPingPong->Once(); }));
}

void Demand(uint32_t uiStatus, const char *pcWhat) {
    if (uiStatus != 0) {
        throw std::runtime_error(std::string(pcWhat) + " fails with " + std::to_string(uiStatus));
    }
}

struct Request {
    const char *pcReceiver;
    uint32_t uiSender;
    uint32_t uiRpcId;
    uint32_t uiWord;
    uint32_t uiReplySize;
};

Request RequestOf(Work eWork) {
    switch (eWork) {
        case Work::kUpTime:
            return {"osgi_proxy", 281, kAskUpTime, 0, sizeof(uint32_t)};
        case Work::kMac:
            return {"osgi_proxy", 281, kAskMac, 0, kMacSize};
        case Work::kWanStatus:
            return {"app_m", 249, kAskWanStatus, kWan, kWanStatusSize};
        case Work::kHosts:
            break;
    }
    throw std::logic_error("a host list is more than a request");
}

/// The parts of a small query.
void RegisterParts(Surroundings &stAround, const NamedWork &stWork) {
    const Request stRequest = RequestOf(stWork.eWork);
    const auto pstReply = std::make_shared<std::string>(stRequest.uiReplySize, '\0');
    const auto fnAsk = [stRequest, pstReply] {
        Demand(PlainAsk(stRequest.pcReceiver, stRequest.uiSender, stRequest.uiRpcId,
                        stRequest.uiWord, pstReply->data(), stRequest.uiReplySize),
               "a request");
    };
    fnAsk();
    if (stWork.eWork != Work::kUpTime) {
        CheckAnswer("request", pstReply->substr(0, pstReply->find('\0')), AnswerText(stWork.eWork));
        RegisterPeer(stAround, "text", stWork, AnswerText(stWork.eWork));
    }
    Register(std::string("request/") + stWork.pcName, stWork.uiBatch, Timing(fnAsk));
}

/// The parts of the host list's call, but for the request.
void RegisterStages(Surroundings &stAround, const NamedWork &stWork) {
    const auto pstHosts = std::make_shared<StoredHosts>(StoreHosts());
    const auto pstRead = std::make_shared<std::string>(pstHosts->acBytes.size(), '\0');
    const auto fnBlock = [pstHosts, pstRead] {
        VDataDesc stDesc;
        Demand(MakeBlock(*pstHosts, stDesc), "making a block");
        Demand(VT_VDATA_ReadData(stDesc.uiDataID, stDesc.uiCompressedLen, pstRead->data()),
               "reading a block");
        Demand(VT_VDATA_FreeShm(stDesc.uiDataID), "freeing a block");
    };
    const auto pstText = std::make_shared<std::string>(pstHosts->uiOriginalLen, '\0');
    const auto fnUnpack = [pstRead, pstText] {
        Demand(VT_OS_Decompress(pstRead->data(), pstText->data(),
                                static_cast<uint32_t>(pstText->size())),
               "decompressing");
    };
    fnBlock();
    fnUnpack();
    CheckAnswer("unpack", pstText->substr(0, pstText->size() - 1), HostsText());
    const std::string acWork = std::string("/") + stWork.pcName;
    Register("block" + acWork, stWork.uiBatch, Timing(fnBlock));
    Register("unpack" + acWork, stWork.uiBatch, Timing(fnUnpack));
    RegisterPeer(stAround, "text", stWork, HostsText());
}

void SetUp(Surroundings &stAround) {
    stAround.StayOnOneCpu();
    const Ends stEnds = StartProcesses(stAround);
    const auto pstBus = std::make_shared<BusClient>(stEnds.acBus);
    stAround.StartJava();
    for (const NamedWork &stWork : kWorks) {
        RegisterPeer(stAround, "bridge", stWork);
        RegisterPeer(stAround, "floor", stWork);
        RegisterPingPong(stEnds.mapPingPongs.at(stWork.eWork), stWork);
        RegisterBus(pstBus, stWork);
        RegisterPeer(stAround, "dbus_java", stWork, stEnds.acBus);
        RegisterPeer(stAround, "sockets_java", stWork, stEnds.acStreams);
        if (stWork.eWork == Work::kHosts) {
            RegisterPeer(stAround, "sockets_java_deflated", stWork, stEnds.acStreams);
            RegisterStages(stAround, stWork);
        } else {
            RegisterParts(stAround, stWork);
        }
    }
}

}  // namespace

int main(int iArgCount, char **ppcArgs) {
    return RunProgram(iArgCount, ppcArgs, kPurpose, SetUp);
}

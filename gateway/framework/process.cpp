#include "framework/process.h"

#include <signal.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include <random>
#include <span>
#include <thread>

#include "framework/bulk.h"
#include "framework/control.h"
#include "framework/error.h"
#include "framework/home_lists.h"

namespace wap::gateway {

namespace {

/// Counts a request while it is served.
class UnderWay {
  public:
    explicit UnderWay(std::atomic<int64_t> &iBusy) : m_iBusy(iBusy) { ++m_iBusy; }
    UnderWay(const UnderWay &) = delete;
    UnderWay &operator=(const UnderWay &) = delete;
    ~UnderWay() { --m_iBusy; }

  private:
    std::atomic<int64_t> &m_iBusy;
};

std::string RequiredText(json_object *pstRequest, const char *pcKey) {
    std::optional<std::string> acText = GetText(pstRequest, pcKey);
    if (!acText) {
        throw GatewayError("the request has no text \"" + std::string(pcKey) + "\"");
    }
    return *acText;
}

ListPlace RequiredPlace(json_object *pstRequest) {
    return {RequiredText(pstRequest, "path"), RequiredText(pstRequest, "key"),
            RequiredText(pstRequest, "id")};
}

void FillRandomly(std::span<uint8_t> aucBytes) {
    std::random_device stSeed;
    std::mt19937 stRandom(stSeed());
    for (uint8_t &ucByte : aucBytes) {
        ucByte = static_cast<uint8_t>(stRandom());
    }
}

void Check(uint32_t uiStatus, const std::string &acWhat) {
    if (uiStatus != 0) {
        char acCode[16];
        snprintf(acCode, sizeof(acCode), "0x%08X", uiStatus);
        throw GatewayError("cannot " + acWhat + ": the message service answers " + acCode);
    }
}

JsonValue ErrorReply(const std::string &acText) {
    JsonValue stReply = MakeObject();
    PutText(stReply.get(), "error", acText);
    return stReply;
}

/// What is sent in place of a reply that is too long: where it is.
JsonValue BlockReply(const std::string &acReply) {
    if (acReply.size() >= kControlReplyMax) {
        throw GatewayError("the answer is too long: " + std::to_string(acReply.size()) + " bytes");
    }
    const VDataDesc stDesc = PublishText(acReply);
    JsonValue stBlock = MakeObject();
    PutNumber(stBlock.get(), "id", stDesc.uiDataID);
    PutNumber(stBlock.get(), "original", stDesc.uiOriginalLen);
    PutNumber(stBlock.get(), "stored", stDesc.uiCompressedLen);
    JsonValue stReply = MakeObject();
    PutMember(stReply.get(), "block", std::move(stBlock));
    return stReply;
}

}  // namespace

Process::Process(const RuntimeDir &stDir, const ProcessInfo &stInfo, RpcTable stTable)
    : m_stInfo(stInfo),
      m_iLock(LockProcess(stDir, stInfo.pcName).Release()),
      m_stHome(stDir, stInfo),
      m_stTable(std::move(stTable)),
      m_stTap(stDir, stInfo.pcName),
      m_pstState(m_stTable.MakeState(m_stHome, stDir)),
      m_stContext{m_stHome, GatewayStart(stDir), m_pstState.get()},
      m_uiStart(NowSeconds()) {}

void Process::Run() {
    Check(VT_MSG_Init(m_stInfo.pcName, 0, 0, 0), "register as " + std::string(m_stInfo.pcName));
    // Before the first call, so that none is missed; and again, as who came meanwhile could not yet
    // ask for it.
    m_stTap.Look();
    Check(VT_HOST_Serve(&Process::OnCall, this), "serve as " + std::string(m_stInfo.pcName));
    m_stTap.Look();
    Check(VT_HOST_OnLostReply(&Process::OnLostReply), "hear of replies that reach nobody");
    std::thread stMessages;
    if (m_stTable.TakesMessages()) {
        s_pstReceiver = this;
        Check(VT_MSG_RegisterMID(0, &Process::OnMessage, 1), "receive messages");
        stMessages = std::thread([] {
            uint32_t uiStatus = 0;
            // Any other status says that the service was stopped.
            while (uiStatus == 0 || uiStatus == VT_HOST_ERR_NO_PROCEDURE) {
                uiStatus = VT_MSG_GetAndDispatch(0, 0);
            }
        });
    }
    sigset_t stSignals;
    sigemptyset(&stSignals);
    sigaddset(&stSignals, SIGTERM);
    sigaddset(&stSignals, SIGINT);
    int iSignal = 0;
    while (sigwait(&stSignals, &iSignal) != 0) {
    }
    EndDelays();
    // Every change of the home was stored when it was made, so nothing is left to save.
    const uint32_t uiStopped = VT_HOST_Stop();
    if (stMessages.joinable()) {
        stMessages.join();
    }
    m_stTap.End();
    Check(uiStopped, "stop serving");
}

int32_t Process::OnMessage(void *pvMessage) {
    const auto *pstMessage = static_cast<const VtHostMsg *>(pvMessage);
    Process &stSelf = *s_pstReceiver;
    TappedCall stTapped(stSelf.m_stTap, pstMessage);
    uint32_t uiStatus = 0;
    try {
        stSelf.m_stTable.Receive(
            stSelf.m_stContext, pstMessage->uiMsgType,
            {reinterpret_cast<const char *>(pstMessage + 1), pstMessage->uiLen});
    } catch (const std::exception &stError) {
        fprintf(stderr, "%s: message %u is lost: %s\n", stSelf.m_stInfo.pcName,
                pstMessage->uiMsgType, stError.what());
        uiStatus = VT_HOST_ERR_DATA;
    }
    stTapped.End(uiStatus, nullptr, 0);
    return 0;
}

void Process::OnLostReply(void *) {
    FreePublished();
}

uint32_t Process::OnCall(void *pvContext, const VtHostCall *pstCall, uint32_t *puiRspLen) {
    Process &stSelf = *static_cast<Process *>(pvContext);
    ForgetPublished();
    TappedCall stTapped(stSelf.m_stTap, *pstCall);
    const uint32_t uiStatus = stSelf.Answer(*pstCall, stTapped, *puiRspLen);
    stTapped.End(uiStatus, pstCall->pvRsp, *puiRspLen);
    return uiStatus;
}

uint32_t Process::Answer(const VtHostCall &stCall, TappedCall &stTapped, uint32_t &uiReplyLength) {
    uint32_t uiStatus = 0;
    try {
        uint32_t uiLength = 0;
        uiStatus = Serve(stCall, stTapped, uiLength);
        uiReplyLength = uiLength;
    } catch (const std::bad_alloc &) {
        uiStatus = VT_HOST_ERR_MEMORY;
    } catch (const std::exception &stError) {
        fprintf(stderr, "%s: RPC 0x%08X failed: %s\n", m_stInfo.pcName, stCall.uiRpcId,
                stError.what());
        uiStatus = VT_HOST_ERR_DATA;
    }
    if (uiStatus != 0) {
        // A failure names nothing: whoever gets it reads no block.
        FreePublished();
    }
    return uiStatus;
}

uint32_t Process::Serve(const VtHostCall &stCall, TappedCall &stTapped, uint32_t &uiReplyLength) {
    if (IsControl(stCall.uiRpcId)) {
        return ServeControl(stCall, uiReplyLength);
    }
    m_uiServed.fetch_add(1, std::memory_order_relaxed);
    const UnderWay stUnderWay(m_iBusy);
    const std::optional<Fault> stFault = m_stFaults.Take(stCall.uiRpcId);
    if (stFault) {
        stTapped.NoteFault(*stFault);
        return ServeWithFault(*stFault, stCall, uiReplyLength);
    }
    return ServeRpc(stCall, uiReplyLength);
}

uint32_t Process::ServeRpc(const VtHostCall &stCall, uint32_t &uiReplyLength) {
    HandlerContext stContext = m_stContext;
    stContext.iCaller = stCall.iCallerPid;
    return m_stTable.Serve(stContext, stCall, uiReplyLength);
}

uint32_t Process::ServeWithFault(const Fault &stFault, const VtHostCall &stCall,
                                 uint32_t &uiReplyLength) {
    Delay(stFault.uiDelayMs);
    uint32_t uiStatus = 0;
    switch (stFault.eKind) {
        case FaultKind::kCode:
            return stFault.uiValue;
        case FaultKind::kDrop:
            uiReplyLength = VT_HOST_NO_REPLY;
            return 0;
        case FaultKind::kGarbage:
            FillRandomly({static_cast<uint8_t *>(stCall.pvRsp), stCall.uiRspCap});
            uiReplyLength = stCall.uiRspCap;
            return 0;
        case FaultKind::kFill:
            memset(stCall.pvRsp, static_cast<int>(stFault.uiValue), stCall.uiRspCap);
            uiReplyLength = stCall.uiRspCap;
            return 0;
        case FaultKind::kTruncate:
            uiStatus = ServeRpc(stCall, uiReplyLength);
            if (uiReplyLength > stFault.uiValue) {
                uiReplyLength = stFault.uiValue;
                // The reader may not learn which block it was to read.
                FreePublished();
            }
            return uiStatus;
        case FaultKind::kNone:
            break;
    }
    return ServeRpc(stCall, uiReplyLength);
}

uint32_t Process::ServeControl(const VtHostCall &stCall, uint32_t &uiReplyLength) {
    std::string acReply;
    try {
        const JsonValue stRequest = ParseJson(
            {static_cast<const char *>(stCall.pvReq), stCall.uiReqLen}, "the control request");
        const JsonValue stReply = AnswerControl(stCall.uiRpcId, stRequest.get());
        if (!stReply) {
            return VT_HOST_ERR_UNKNOWN_RPC;
        }
        acReply = PrintJson(stReply.get(), false);
        if (acReply.size() >= stCall.uiRspCap) {  // a zero must fit behind it
            acReply = PrintJson(BlockReply(acReply).get(), false);
        }
    } catch (const GatewayError &stError) {
        acReply = PrintJson(ErrorReply(stError.what()).get(), false);
    }
    if (acReply.size() >= stCall.uiRspCap) {
        return VT_HOST_ERR_TOO_LONG;
    }
    memcpy(stCall.pvRsp, acReply.c_str(), acReply.size() + 1);
    uiReplyLength = static_cast<uint32_t>(acReply.size() + 1);
    return 0;
}

JsonValue Process::AnswerControl(uint32_t uiRpcId, json_object *pstRequest) {
    JsonValue stReply = MakeObject();
    switch (uiRpcId) {
        case kControlStatus:
            PutNumber(stReply.get(), "pid", getpid());
            PutNumber(stReply.get(), "upTime", static_cast<int64_t>(NowSeconds() - m_uiStart));
            PutNumber(stReply.get(), "served", static_cast<int64_t>(m_uiServed.load()));
            PutNumber(stReply.get(), "faults", static_cast<int64_t>(m_stFaults.List().size()));
            PutNumber(stReply.get(), "busy", m_iBusy.load());
            return stReply;
        case kControlGet:
            PutMember(stReply.get(), "value", m_stHome.Get(RequiredText(pstRequest, "path")));
            return stReply;
        case kControlSet:
            m_stHome.Set(RequiredText(pstRequest, "path"), RequiredText(pstRequest, "text"));
            return stReply;
        case kControlFault: {
            const std::optional<int64_t> iRpcId = GetNumber(pstRequest, "rpc");
            if (FindMember(pstRequest, "rpc") != nullptr &&
                (!iRpcId || *iRpcId < 0 || *iRpcId > UINT32_MAX)) {
                throw GatewayError("an RPC id must be from 0 to 0xFFFFFFFF");
            }
            if (iRpcId && IsControl(static_cast<uint32_t>(*iRpcId))) {
                throw GatewayError("gatewayctl's own RPCs can't be given a fault");
            }
            m_stFaults.Set(iRpcId ? std::optional(static_cast<uint32_t>(*iRpcId)) : std::nullopt,
                           FaultFromJson(FindMember(pstRequest, "fault")));
            return stReply;
        }
        case kControlFaults:
            PutMember(stReply.get(), "faults", ListFaults());
            return stReply;
        case kControlClear:
            PutNumber(stReply.get(), "cleared", static_cast<int64_t>(m_stFaults.Clear()));
            return stReply;
        case kControlAdd:
            AddElement(m_stHome, RequiredPlace(pstRequest),
                       JsonValue(json_object_get(FindMember(pstRequest, "value"))));
            return stReply;
        case kControlRemove:
            RemoveElement(m_stHome, RequiredPlace(pstRequest));
            return stReply;
        case kControlChange:
            SetElement(m_stHome, RequiredPlace(pstRequest), RequiredText(pstRequest, "member"),
                       RequiredText(pstRequest, "text"));
            return stReply;
        case kControlMonitor:
            m_stTap.Look();
            return stReply;
        default:
            return m_pstState ? m_pstState->Control(uiRpcId, pstRequest) : nullptr;
    }
}

JsonValue Process::ListFaults() const {
    JsonValue stList = MakeArray();
    for (const auto &[uiRpcId, stFault] : m_stFaults.List()) {
        JsonValue stEntry = MakeObject();
        if (uiRpcId) {
            PutNumber(stEntry.get(), "rpc", *uiRpcId);
        }
        PutMember(stEntry.get(), "fault", FaultToJson(stFault));
        Append(stList.get(), std::move(stEntry));
    }
    return stList;
}

void Process::Delay(uint32_t uiMilliseconds) {
    if (uiMilliseconds == 0) {
        return;
    }
    std::unique_lock stLock(m_stEndMutex);
    m_stEndSignal.wait_for(stLock, std::chrono::milliseconds(uiMilliseconds),
                           [this] { return m_bEnding; });
}

void Process::EndDelays() {
    const std::scoped_lock stLock(m_stEndMutex);
    m_bEnding = true;
    m_stEndSignal.notify_all();
}

}  // namespace wap::gateway

#include "support/scripted_platform.h"

#include <dlfcn.h>
#include <sched.h>

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <type_traits>

#include "support/wire_bytes.h"
#include "support/world.h"

namespace wap::test {

void Platform::ClearRecords() {
    astRpcs.clear();
    astMessages.clear();
    astTraces.clear();
    astFaults.clear();
    asConsole.clear();
    asCalls.clear();
    astThreads.clear();
    astInits.clear();
    astRegistered.clear();
}

uint32_t Platform::AddBlock(std::string sBytes) {
    mapBlocks[uiNextBlock] = std::move(sBytes);
    return uiNextBlock++;
}

std::string Platform::AddBulk(const std::string &sData) {
    const std::string sBlock = sData.size() > 2048 ? Packed(sData) : sData;
    const uint32_t auiDesc[] = {AddBlock(sBlock), static_cast<uint32_t>(sData.size()),
                                static_cast<uint32_t>(sBlock.size())};
    return {reinterpret_cast<const char *>(auiDesc), sizeof(auiDesc)};
}

std::optional<std::string> Platform::TakeBulk(const std::string &sDesc) {
    const auto it = mapBlocks.find(WordAt(sDesc, 0));
    if (it == mapBlocks.end()) {
        return std::nullopt;
    }
    const std::string sBlock = std::move(it->second);
    mapBlocks.erase(it);
    return WordAt(sDesc, 4) > 2048 ? Unpacked(sBlock) : sBlock;
}

std::string Platform::Told(std::string sBytes) const {
    for (size_t i = 0; !mapBlocks.empty() && i + sizeof(VDataDesc) <= sBytes.size(); i += 4) {
        const auto it = mapBlocks.find(WordAt(sBytes, i));
        if (it != mapBlocks.end() && it->second.size() == WordAt(sBytes, i + 8)) {
            return sBytes.replace(i, 4, it->second);
        }
    }
    return sBytes;
}

size_t Platform::CountCalls(const std::string &sPrefix) const {
    return static_cast<size_t>(
        std::count_if(asCalls.begin(), asCalls.end(),
                      [&](const std::string &sCall) { return sCall.rfind(sPrefix, 0) == 0; }));
}

void *Platform::LibraryHandle() {
    static uint64_t s_ulHandle;
    return &s_ulHandle;
}

void *Platform::Open(World &stWorld, const char *pcName, int iFlags) {
    asCalls.push_back(std::string("dlopen ") + pcName + " " + std::to_string(iFlags));
    return stWorld.Hit(Op::kPlatform, "dlopen") || bNoLibrary ? nullptr : LibraryHandle();
}

namespace {

template <typename Function>
void *Address(Function *pfnAny) {
    return reinterpret_cast<void *>(pfnAny);
}

}  // namespace

void *Platform::Symbol(World &stWorld, void *pvHandle, const char *pcName) {
    asCalls.push_back(std::string("dlsym ") + pcName);
    if (pvHandle != LibraryHandle()) {
        stWorld.Violation(std::string("dlsym of ") + pcName + " with a foreign handle");
        return nullptr;
    }
    if (stWorld.Hit(Op::kPlatform, "dlsym") || setMissingSymbols.contains(pcName)) {
        return nullptr;
    }
    const std::map<std::string, void *> mapSymbols = {
        {"VT_MSG_Init", Address(VT_MSG_Init)},
        {"VT_MSG_RegisterMID", Address(VT_MSG_RegisterMID)},
        {"VT_OS_PthreadCreate", Address(VT_OS_PthreadCreate)},
        {"VT_MSG_GetAndDispatch", Address(VT_MSG_GetAndDispatch)},
    };
    const auto it = mapSymbols.find(pcName);
    if (it == mapSymbols.end()) {
        stWorld.Violation(std::string("dlsym of an unknown name: ") + pcName);
        return nullptr;
    }
    return it->second;
}

namespace {

std::string Render(const char *pcFmt, va_list stArgs) {
    va_list stCopy;
    va_copy(stCopy, stArgs);
    const int iLen = std::vsnprintf(nullptr, 0, pcFmt, stCopy);
    va_end(stCopy);
    std::string sText(static_cast<size_t>(iLen) + 1, '\0');
    std::vsnprintf(sText.data(), sText.size(), pcFmt, stArgs);
    sText.pop_back();
    return sText;
}

std::string Numbers(std::initializer_list<uint32_t> auiNumbers) {
    std::string sText;
    for (const uint32_t uiNumber : auiNumbers) {
        sText += (sText.empty() ? "" : " ") + std::to_string(uiNumber);
    }
    return sText;
}

std::string BytesAt(const void *pvAt, size_t uiLen) {
    return pvAt == nullptr ? std::string() : std::string(static_cast<const char *>(pvAt), uiLen);
}

constexpr char kPackedMark[4] = {'R', 'U', 'N', '1'};

/// A platform mutex: mark and state words; the rest of the 24 bytes is not used.
struct MutexWords {
    uint32_t uiMark;
    uint32_t uiState;
};
constexpr uint32_t kMutexMark = 0x4D555458;

std::atomic_ref<uint32_t> State(void *pvMutex) {
    return std::atomic_ref<uint32_t>(static_cast<MutexWords *>(pvMutex)->uiState);
}

bool IsMutex(const void *pvMutex) {
    return pvMutex != nullptr && static_cast<const MutexWords *>(pvMutex)->uiMark == kMutexMark;
}

}  // namespace

uint32_t Scripted(Op eOp, const char *pcName, const std::string &sArgs) {
    World &stWorld = World::Get();
    Platform &stPlatform = stWorld.stPlatform;
    stPlatform.asCalls.push_back(sArgs.empty() ? pcName : std::string(pcName) + " " + sArgs);
    if (stWorld.Hit(eOp, pcName)) {
        return kPlannedStatus;
    }
    const auto it = stPlatform.mapStatus.find(pcName);
    return it == stPlatform.mapStatus.end() ? 0 : it->second;
}

std::string Packed(const std::string &sPlain) {
    std::string sPacked(kPackedMark, sizeof(kPackedMark));
    const uint32_t uiLen = static_cast<uint32_t>(sPlain.size());
    sPacked.append(reinterpret_cast<const char *>(&uiLen), sizeof(uiLen));
    // Room for the worst case at once: it is done often.
    size_t uiAt = sPacked.size();
    sPacked.resize(uiAt + 2 * sPlain.size());
    for (size_t i = 0; i < sPlain.size();) {
        size_t uiRun = 1;
        while (uiRun < 255 && i + uiRun < sPlain.size() && sPlain[i + uiRun] == sPlain[i]) {
            ++uiRun;
        }
        sPacked[uiAt++] = static_cast<char>(uiRun);
        sPacked[uiAt++] = sPlain[i];
        i += uiRun;
    }
    sPacked.resize(uiAt);
    return sPacked;
}

std::string Unpacked(const std::string &sPacked) {
    std::string sPlain;
    for (size_t i = sizeof(kPackedMark) + sizeof(uint32_t); i + 1 < sPacked.size(); i += 2) {
        sPlain.append(static_cast<uint8_t>(sPacked[i]), sPacked[i + 1]);
    }
    return sPlain;
}

}  // namespace wap::test

using wap::test::BytesAt;
using wap::test::Numbers;
using wap::test::Op;
using wap::test::Render;
using wap::test::Scripted;
using wap::test::World;

extern "C" {

// ---- message service ----

uint32_t VT_MSG_Init(const char *pcProcName, uint32_t uiArg1, uint32_t uiArg2, uint32_t uiArg3) {
    World::Get().stPlatform.astInits.push_back({pcProcName, {uiArg1, uiArg2, uiArg3}});
    return Scripted(Op::kPlatform, "VT_MSG_Init", pcProcName);
}

uint32_t VT_MSG_RegisterMID(uint32_t uiMid, int32_t (*pfnProc)(void *), uint32_t uiArg) {
    World::Get().stPlatform.astRegistered.push_back({uiMid, pfnProc, uiArg});
    return Scripted(Op::kPlatform, "VT_MSG_RegisterMID", Numbers({uiMid, uiArg}));
}

uint32_t VT_MSG_GetAndDispatch(uint32_t uiArg1, uint32_t uiArg2) {
    const uint32_t uiStatus =
        Scripted(Op::kPlatform, "VT_MSG_GetAndDispatch", Numbers({uiArg1, uiArg2}));
    if (World::Get().stPlatform.fnDispatch) {
        World::Get().stPlatform.fnDispatch();
    }
    return uiStatus;
}

const char *VT_MSG_GetCurProcName(void) {
    World &stWorld = World::Get();
    if (stWorld.Hit(Op::kPlatform, "VT_MSG_GetCurProcName") || stWorld.stPlatform.bNoProcName) {
        return nullptr;
    }
    return stWorld.stPlatform.sProcName.c_str();
}

uint32_t VT_MSG_RpcCall(const RpcMsgHead *pstHead, uint32_t uiRpcId, uint32_t uiDstMid,
                        const void *pvReq, uint32_t uiReqLen, void *pvRsp, uint32_t uiRspCap,
                        uint32_t uiTimeoutMs) {
    World &stWorld = World::Get();
    wap::test::Platform &stPlatform = stWorld.stPlatform;
    const std::string sRequest = BytesAt(pvReq, uiReqLen);
    stPlatform.astRpcs.push_back({BytesAt(pstHead, sizeof(*pstHead)), uiRpcId, uiDstMid, sRequest,
                                  uiReqLen, BytesAt(pvRsp, uiRspCap), uiRspCap, uiTimeoutMs, pvReq,
                                  pvRsp, stPlatform.Told(sRequest)});
    if (stWorld.Hit(Op::kRpc, wap::test::kRpcCall)) {
        return wap::test::kPlannedRpcStatus;
    }
    wap::test::Reply stReply{wap::test::kUnscriptedStatus, ""};
    std::optional<wap::test::Reply> stOwnReply;
    if (stPlatform.fnReply) {
        stOwnReply = stPlatform.fnReply(stPlatform.astRpcs.back());
    }
    if (stOwnReply) {
        stReply = std::move(*stOwnReply);
    } else if (!stPlatform.astNextReplies.empty()) {
        stReply = std::move(stPlatform.astNextReplies.front());
        stPlatform.astNextReplies.pop_front();
    } else if (const auto it = stPlatform.mapReplies.find(uiRpcId);
               it != stPlatform.mapReplies.end()) {
        stReply = it->second;
    }
    if (stReply.bBulk) {
        stReply.sBytes =
            stReply.uiStatus == 0 ? stReply.sBeforeBulk + stPlatform.AddBulk(stReply.sBytes) : "";
    }
    if (stPlatform.fnSpoil) {
        stPlatform.fnSpoil(stPlatform.astRpcs.back(), stReply.sBytes);
    }
    const size_t uiLen = std::min<size_t>(stReply.sBytes.size(), uiRspCap);
    if (uiLen != 0) {
        std::memcpy(pvRsp, stReply.sBytes.data(), uiLen);
        stWorld.stSecrets.Written(pvRsp, uiLen);
    }
    return stReply.uiStatus;
}

uint32_t VT_MSG_AsyncSendData(const char *pcRcvApp, uint32_t uiMsgType, const void *pvData,
                              uint32_t uiLen) {
    const uint32_t uiStatus = Scripted(Op::kRpc, "VT_MSG_AsyncSendData",
                                       std::string(pcRcvApp) + " " + Numbers({uiMsgType, uiLen}));
    wap::test::Platform &stPlatform = World::Get().stPlatform;
    if (uiStatus == 0) {
        const std::string sData = BytesAt(pvData, uiLen);
        stPlatform.astMessages.push_back({pcRcvApp, uiMsgType, sData, stPlatform.Told(sData)});
        if (stPlatform.fnMessage) {
            stPlatform.fnMessage(stPlatform.astMessages.back());
        }
    }
    return uiStatus;
}

// ---- threads and locks ----

uint32_t VT_OS_PthreadCreate(unsigned long *pulThreadId, const void *pvAttr,
                             void *(*pfnEntry)(void *), void *pvArg) {
    const uint32_t uiStatus = Scripted(Op::kPlatform, "VT_OS_PthreadCreate", "");
    if (uiStatus == 0) {
        World::Get().stPlatform.astThreads.push_back({pvAttr, pfnEntry, pvArg});
        if (pulThreadId != nullptr) {
            *pulThreadId = 0x7777;
        }
    }
    return uiStatus;
}

uint32_t VT_OS_ModifyThreadName(const char *pcName) {
    return Scripted(Op::kPlatform, "VT_OS_ModifyThreadName", pcName);
}

uint32_t VT_OS_MutexInit(void *pvMutex) {
    const uint32_t uiStatus = Scripted(Op::kPlatform, "VT_OS_MutexInit", "");
    if (uiStatus != 0) {
        return uiStatus;
    }
    if (reinterpret_cast<uintptr_t>(pvMutex) % 8 != 0) {
        World::Get().Violation("a mutex is not aligned to 8 bytes");
    }
    std::memset(pvMutex, 0, VT_OS_MUTEX_SIZE);
    static_cast<wap::test::MutexWords *>(pvMutex)->uiMark = wap::test::kMutexMark;
    return 0;
}

uint32_t VT_OS_MutexLock(void *pvMutex) {
    const uint32_t uiStatus = Scripted(Op::kPlatform, "VT_OS_MutexLock", "");
    if (uiStatus != 0) {
        return uiStatus;
    }
    if (!wap::test::IsMutex(pvMutex)) {
        World::Get().Violation("lock of memory that holds no mutex");
        return 1;
    }
    while (wap::test::State(pvMutex).exchange(1, std::memory_order_acquire) != 0) {
        sched_yield();
    }
    ++World::Get().stPlatform.iLocksHeld;
    return 0;
}

uint32_t VT_OS_MutexUnLock(void *pvMutex) {
    const uint32_t uiStatus = Scripted(Op::kPlatform, "VT_OS_MutexUnLock", "");
    if (!wap::test::IsMutex(pvMutex) || World::Get().stPlatform.iLocksHeld == 0) {
        World::Get().Violation("unlock of a mutex that this thread did not lock");
        return 1;
    }
    // A planned failure is only reported: a lock that stays taken would hang the test.
    wap::test::State(pvMutex).store(0, std::memory_order_release);
    --World::Get().stPlatform.iLocksHeld;
    return uiStatus;
}

// ---- bulk data ----

uint32_t VT_VDATA_CreShm(uint32_t uiSize, VDataDesc *pstDesc) {
    const uint32_t uiStatus = Scripted(Op::kBulk, "VT_VDATA_CreShm", Numbers({uiSize}));
    if (uiStatus == 0) {
        pstDesc->uiDataID = World::Get().stPlatform.AddBlock(std::string(uiSize, '\0'));
    }
    return uiStatus;
}

uint32_t VT_VDATA_UpdateData(uint32_t uiDataID, uint32_t uiLen, const void *pvData) {
    const uint32_t uiStatus =
        Scripted(Op::kBulk, "VT_VDATA_UpdateData", Numbers({uiDataID, uiLen}));
    auto &mapBlocks = World::Get().stPlatform.mapBlocks;
    const auto it = mapBlocks.find(uiDataID);
    if (uiStatus != 0) {
        return uiStatus;
    }
    if (it == mapBlocks.end() || uiLen > it->second.size()) {
        return 0x0B0B0001;
    }
    std::memcpy(it->second.data(), pvData, uiLen);
    return 0;
}

uint32_t VT_VDATA_ReadData(uint32_t uiDataID, uint32_t uiLen, void *pvBuf) {
    const uint32_t uiStatus = Scripted(Op::kBulk, "VT_VDATA_ReadData", Numbers({uiDataID, uiLen}));
    const auto &mapBlocks = World::Get().stPlatform.mapBlocks;
    const auto it = mapBlocks.find(uiDataID);
    if (uiStatus != 0) {
        return uiStatus;
    }
    if (it == mapBlocks.end() || uiLen > it->second.size()) {
        return 0x0B0B0002;
    }
    std::memcpy(pvBuf, it->second.data(), uiLen);
    return 0;
}

uint32_t VT_VDATA_FreeShm(uint32_t uiDataID) {
    const uint32_t uiStatus = Scripted(Op::kBulk, "VT_VDATA_FreeShm", Numbers({uiDataID}));
    // A failure that is planned or scripted is told after the fact, so that it is no leak.
    const size_t uiErased = World::Get().stPlatform.mapBlocks.erase(uiDataID);
    if (uiStatus != 0) {
        return uiStatus;
    }
    return uiErased == 1 ? 0 : 0x0B0B0003;
}

uint32_t VT_OS_Compress(const void *pvSrc, uint32_t uiSrcLen, void *pvDst, uint32_t *puiDstLen) {
    const uint32_t uiStatus =
        Scripted(Op::kBulk, "VT_OS_Compress", Numbers({uiSrcLen, *puiDstLen}));
    if (uiStatus != 0) {
        return uiStatus;
    }
    const std::string sPacked = wap::test::Packed(BytesAt(pvSrc, uiSrcLen));
    if (sPacked.size() > uiSrcLen || sPacked.size() > *puiDstLen) {
        return 0x0B0B0004;
    }
    std::memcpy(pvDst, sPacked.data(), sPacked.size());
    *puiDstLen = static_cast<uint32_t>(sPacked.size());
    return 0;
}

uint32_t VT_OS_Decompress(const void *pvSrc, void *pvDst, uint32_t uiDstCap) {
    const uint32_t uiStatus = Scripted(Op::kBulk, "VT_OS_Decompress", Numbers({uiDstCap}));
    // All that the interface allows to be read is read, so that a source that is too short shows.
    const std::string sPacked = BytesAt(pvSrc, uiDstCap);
    if (uiStatus != 0) {
        return uiStatus;
    }
    uint32_t uiLen = 0;
    if (uiDstCap < 8 || std::memcmp(sPacked.data(), wap::test::kPackedMark, 4) != 0) {
        return 0x0B0B0005;
    }
    std::memcpy(&uiLen, sPacked.data() + 4, 4);
    if (uiLen > uiDstCap) {
        return 0x0B0B0006;
    }
    std::string sPlain;
    for (size_t i = 8; sPlain.size() < uiLen; i += 2) {
        if (i + 1 >= sPacked.size() || sPacked[i] == 0) {
            return 0x0B0B0007;
        }
        sPlain.append(static_cast<uint8_t>(sPacked[i]), sPacked[i + 1]);
    }
    if (sPlain.size() != uiLen) {
        return 0x0B0B0008;
    }
    std::memcpy(pvDst, sPlain.data(), uiLen);
    return 0;
}

// ---- figures and features ----

uint32_t VT_OS_GetCPUBusyRateByTime(uint32_t uiSample, uint32_t *puiRate) {
    const uint32_t uiStatus =
        Scripted(Op::kPlatform, "VT_OS_GetCPUBusyRateByTime", Numbers({uiSample}));
    if (uiStatus == 0) {
        *puiRate = World::Get().stPlatform.uiCpuRate;
    }
    return uiStatus;
}

uint32_t VT_OS_GetMemUseRate(uint32_t *puiRate) {
    const uint32_t uiStatus = Scripted(Op::kPlatform, "VT_OS_GetMemUseRate", "");
    if (uiStatus == 0) {
        *puiRate = World::Get().stPlatform.uiMemRate;
    }
    return uiStatus;
}

uint32_t VT_Feature_IsSupport(uint32_t uiFeature) {
    return World::Get().stPlatform.setFeatures.contains(uiFeature) ? 1 : 0;
}

// ---- console, trace and fault log ----

int32_t VT_OS_Printf(const char *pcFmt, ...) {
    va_list stArgs;
    va_start(stArgs, pcFmt);
    std::string sText = Render(pcFmt, stArgs);
    va_end(stArgs);
    World &stWorld = World::Get();
    stWorld.stSecrets.CheckShown(sText, "the console");
    stWorld.stPlatform.asConsole.push_back(sText);
    return static_cast<int32_t>(sText.size());
}

void VT_PROC_DBG_TraceS(uint32_t uiMid, const char *pcFile, uint32_t uiLine, uint32_t uiZero,
                        const char *pcFmt, ...) {
    va_list stArgs;
    va_start(stArgs, pcFmt);
    std::string sText = Render(pcFmt, stArgs);
    va_end(stArgs);
    World &stWorld = World::Get();
    stWorld.stSecrets.CheckShown(sText, "a trace");
    stWorld.stPlatform.astTraces.push_back({uiMid, pcFile, uiLine, uiZero, sText});
}

void VT_PROC_DBG_LastWord(const char *pcFile, uint32_t uiLine, uint32_t uiCode, uint32_t uiArg1,
                          uint32_t uiArg2, uint32_t uiArg3, uint32_t uiArg4) {
    World::Get().stPlatform.astFaults.push_back(
        {pcFile, uiLine, uiCode, false, {uiArg1, uiArg2, uiArg3, uiArg4}});
}

void VT_PROC_DBG_LastWord_1(const char *pcFile, uint32_t uiLine, uint32_t uiCode) {
    World::Get().stPlatform.astFaults.push_back({pcFile, uiLine, uiCode, true, {}});
}
}

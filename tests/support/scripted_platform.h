// The platform library as a script: what it answers is set by the test, what it is asked is
// recorded. It is linked into the test in the place of libvt_ssp_basic.so.
#ifndef WAP_TESTS_SUPPORT_SCRIPTED_PLATFORM_H
#define WAP_TESTS_SUPPORT_SCRIPTED_PLATFORM_H

#include <vt_ssp_basic.h>

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "support/scripted_descriptors.h"
#include "support/scripted_files.h"
#include "support/scripted_shm.h"

namespace wap::test {

class World;
enum class Op : uint32_t;

/// What an RPC is answered with.
struct Reply {
    uint32_t uiStatus = 0;
    std::string sBytes;  ///< cut to the caller's capacity; copied whatever the status is
    /// The bytes are those of a new bulk block, compressed where the rules want it, and the reply
    /// is its descriptor; there is no block with a status other than 0.
    bool bBulk = false;
    std::string sBeforeBulk{};  ///< stands before the descriptor
};

/// What an RPC was asked with.
struct RpcRecord {
    std::string sHead;  ///< the 84 bytes
    uint32_t uiRpcId = 0;
    uint32_t uiDstMid = 0;
    std::string sRequest;
    uint32_t uiReqLen = 0;
    std::string sRspBefore;  ///< the reply buffer before the answer was written
    uint32_t uiRspCap = 0;
    uint32_t uiTimeoutMs = 0;
    const void *pvReq = nullptr;
    const void *pvRsp = nullptr;
    std::string sTold{};  ///< see Platform::Told
};

/// A message that nobody answers.
struct MessageRecord {
    std::string sReceiver;
    uint32_t uiType = 0;
    std::string sData;
    std::string sTold{};
};

struct TraceRecord {
    uint32_t uiMid;
    std::string sFile;
    uint32_t uiLine;
    uint32_t uiZero;
    std::string sText;
};

struct FaultRecord {
    std::string sFile;
    uint32_t uiLine;
    uint32_t uiCode;
    bool bCodeOnly;
    std::array<uint32_t, 4> auiArgs;
};

struct ThreadRecord {
    const void *pvAttr;
    void *(*pfnEntry)(void *);
    void *pvArg;
};

struct InitRecord {
    std::string sProcName;
    std::array<uint32_t, 3> auiArgs;
};

struct RegisterRecord {
    uint32_t uiMid;
    int32_t (*pfnProc)(void *);
    uint32_t uiArg;
};

/// Status that a failure planned in the World gives, for RPCs and for the rest.
inline constexpr uint32_t kPlannedRpcStatus = 0x0E0E0001;
inline constexpr uint32_t kPlannedStatus = 0x0E0E0002;
/// Status of an RPC that the test has no answer for.
inline constexpr uint32_t kUnscriptedStatus = 0x0E0E0003;

class Platform {
  public:
    // ---- the script ----
    std::string sProcName = "jamvm";
    bool bNoProcName = false;  ///< VT_MSG_GetCurProcName gives null
    /// Answers by the request; one that it has nothing for goes to the replies below.
    std::function<std::optional<Reply>(const RpcRecord &)> fnReply;
    /// Changes the bytes of an answer, a descriptor in it among them, before they are written.
    std::function<void(const RpcRecord &, std::string &sBytes)> fnSpoil;
    /// Gets each message without an answer that was sent, as its receiver would.
    std::function<void(const MessageRecord &)> fnMessage;
    std::deque<Reply> astNextReplies;           ///< used up first, whatever the RPC
    std::map<uint32_t, Reply> mapReplies;       ///< then by RPC id
    std::map<std::string, uint32_t> mapStatus;  ///< status by function name, 0 unless given
    std::set<std::string> setMissingSymbols;
    bool bNoLibrary = false;           ///< dlopen fails
    std::function<void()> fnDispatch;  ///< called by VT_MSG_GetAndDispatch
    uint32_t uiCpuRate = 42;
    uint32_t uiMemRate = 57;
    std::set<uint32_t> setFeatures;
    std::set<uint32_t> setKeptBlocks;  ///< blocks that are meant to outlive the test
    ScriptedDescriptors stDescriptors;
    ScriptedFiles stFiles;
    ScriptedShm stShm;

    // ---- the record ----
    std::vector<RpcRecord> astRpcs;
    std::vector<MessageRecord> astMessages;  ///< those that could be sent
    std::vector<TraceRecord> astTraces;
    std::vector<FaultRecord> astFaults;
    std::vector<std::string> asConsole;
    std::vector<std::string> asCalls;  ///< start-up, mutex, bulk and rate calls, for example
                                       ///< "VT_VDATA_FreeShm 4097"
    std::vector<ThreadRecord> astThreads;
    std::vector<InitRecord> astInits;
    std::vector<RegisterRecord> astRegistered;
    std::map<uint32_t, std::string> mapBlocks;  ///< the bulk blocks that exist
    int32_t iLocksHeld = 0;

    void ClearRecords();
    /// Makes a bulk block as another process would, and gives its id.
    uint32_t AddBlock(std::string sBytes);
    /// The same for data that may have to be compressed, and gives the block's descriptor.
    std::string AddBulk(const std::string &sData);
    /// Takes the block that a descriptor names, as the process would that got the descriptor, and
    /// gives what is in it; nothing when there is no such block.
    std::optional<std::string> TakeBulk(const std::string &sDesc);
    /// A request or message as the one who gets it understands it: with what is in the block in the
    /// place of the number of the block.
    std::string Told(std::string sBytes) const;
    size_t CountCalls(const std::string &sPrefix) const;

    void *Open(World &stWorld, const char *pcName, int iFlags);
    void *Symbol(World &stWorld, void *pvHandle, const char *pcName);
    /// The handle that dlopen of the platform library gives.
    static void *LibraryHandle();

    uint32_t uiNextBlock = 0x1001;
};

/// For the platform's functions: notes a call, and gives the status that the plan or the script has
/// for it.
uint32_t Scripted(Op eOp, const char *pcName, const std::string &sArgs);

/// What VT_OS_Compress makes of a text here: 4 bytes of mark, 4 of length, then (count, byte)
/// pairs.
std::string Packed(const std::string &sPlain);
/// The text that it made that of.
std::string Unpacked(const std::string &sPacked);

}  // namespace wap::test

#endif

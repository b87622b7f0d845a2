// What the platform tests share: a runtime directory per test, and servers in child processes.
#ifndef WAP_TEST_RUNTIME_DIR_H
#define WAP_TEST_RUNTIME_DIR_H

#include <gtest/gtest.h>
#include <sys/types.h>

#include <chrono>
#include <string>

#include "support/wire_bytes.h"
#include "vt_ssp_host.h"

namespace wap::test {

/// A user who owns nothing.
inline constexpr uid_t kNobody = 65534;

/** Gives each test a fresh $VT_RUNTIME_DIR, and stops the message service after it. */
class RuntimeDirTest : public testing::Test {
  protected:
    RuntimeDirTest();
    ~RuntimeDirTest() override;

    std::string Path(const std::string &strName) const { return strDir + "/" + strName; }

    std::string strDir;

  private:
    std::string strMade; /**< what goes at the end, with all that is in it */
};

/** The runtime directory of the running test, also in its child processes. */
std::string RuntimeDir();

/** The path of a file in it. */
std::string InRuntimeDir(const std::string &strName);

/** The RPCs of TestHandler. */
enum TestRpc : uint32_t {
    kEcho = 1,     /**< replies the request */
    kSleep = 2,    /**< waits as many milliseconds as the request's first word, then echoes */
    kNoReply = 3,  /**< does not reply */
    kStatus = 4,   /**< status 0x1234 with the reply "why" */
    kOverlong = 5, /**< fills the room with 0xAB and claims a byte more than it */
    kHead = 6,     /**< replies the header as received */
    kDie = 7,      /**< ends the process in the middle of the call */
    kRoom = 8,     /**< replies the capacity and the sum of the room's bytes, as two words */
    kMid = 9,      /**< replies the destination module */
    kTryStop = 10, /**< calls VT_HOST_Stop, replies its result */
    kCaller = 11,  /**< replies the caller's process id, as a word */
    kTryHear = 12, /**< calls VT_HOST_OnLostReply for nobody, replies its result */
};

/** A handler for tests. The context, if any, is a uint32_t atomic that counts the calls. */
uint32_t TestHandler(void *pvContext, const VtHostCall *pstCall, uint32_t *puiRspLen);

/** A server with TestHandler in a child process. To be made before the test starts threads. */
class ChildServer {
  public:
    explicit ChildServer(const char *pcName);
    ~ChildServer() { Kill(); }
    ChildServer(const ChildServer &) = delete;
    ChildServer &operator=(const ChildServer &) = delete;

    bool Ready() const { return bReady; }
    pid_t Pid() const { return iPid; }
    void Kill();

  private:
    pid_t iPid = -1;
    bool bReady = false;
};

/** Runs a function in a child process. @return its result, or 255 when it died */
int InChild(int (*pfnBody)());

RpcMsgHead HeadFor(const char *pcReceiver);

/** An RPC to kEcho and the like with byte buffers. */
uint32_t Call(const char *pcReceiver, uint32_t uiRpcId, const std::string &strReq,
              std::string &strRsp, uint32_t uiTimeoutMs = 5000);

/** Measures elapsed milliseconds. */
class Stopwatch {
  public:
    int64_t Ms() const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
                   std::chrono::steady_clock::now() - stStart)
            .count();
    }

  private:
    std::chrono::steady_clock::time_point stStart = std::chrono::steady_clock::now();
};

/** A client's socket, connected to nobody yet. */
int NewRawSocket();

/** Connects to NAME.sock in the runtime directory. @return as connect */
int ConnectRaw(int iFd, const char *pcName);

/** Binds to NAME.sock in the runtime directory and listens. @return as listen */
int ListenRaw(int iFd, const char *pcName, int iBacklog = 5);

/** A request of its own making: magic, kind, serial 99, kEcho, module, length, room, header. */
std::string RawRequest(const std::string &strMagic, uint32_t uiKind, uint32_t uiLen,
                       uint32_t uiRoom, const std::string &strPayload);

/** The whole file; empty when there is none. */
std::string FileText(const std::string &strPath);

}  // namespace wap::test
#endif

#include "runtime_dir.h"

#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <sstream>

namespace wap::test {

RuntimeDirTest::RuntimeDirTest() {
    char acDir[] = "/tmp/vtpXXXXXX";
    strMade = mkdtemp(acDir);
    strDir = strMade;
    setenv("VT_RUNTIME_DIR", strDir.c_str(), 1);
}

RuntimeDirTest::~RuntimeDirTest() {
    VT_HOST_Stop();
    unsetenv("VT_RUNTIME_DIR");
    std::error_code stError;
    std::filesystem::remove_all(strMade, stError);
    EXPECT_FALSE(stError) << stError.message();
}

std::string RuntimeDir() {
    const char *pcDir = getenv("VT_RUNTIME_DIR");
    if (pcDir == nullptr) {
        ADD_FAILURE() << "outside of a RuntimeDirTest";
        abort();
    }
    return pcDir;
}

std::string InRuntimeDir(const std::string &strName) {
    return RuntimeDir() + "/" + strName;
}

uint32_t TestHandler(void *pvContext, const VtHostCall *pstCall, uint32_t *puiRspLen) {
    if (pvContext != nullptr) {
        static_cast<std::atomic<uint32_t> *>(pvContext)->fetch_add(1);
    }
    uint8_t *pucRsp = static_cast<uint8_t *>(pstCall->pvRsp);
    uint32_t uiEcho = std::min(pstCall->uiReqLen, pstCall->uiRspCap);
    uint32_t uiMs = 0;
    switch (pstCall->uiRpcId) {
        case kSleep:
            memcpy(&uiMs, pstCall->pvReq, sizeof uiMs);
            usleep(uiMs * 1000);
            [[fallthrough]];
        case kEcho:
            memcpy(pucRsp, pstCall->pvReq, uiEcho);
            *puiRspLen = uiEcho;
            return 0;
        case kNoReply:
            *puiRspLen = VT_HOST_NO_REPLY;
            return 0;
        case kStatus:
            std::copy_n("why", 3, pucRsp);
            *puiRspLen = 3;
            return 0x1234;
        case kOverlong:
            memset(pucRsp, 0xAB, pstCall->uiRspCap);
            *puiRspLen = pstCall->uiRspCap + 1;
            return 0;
        case kHead:
            memcpy(pucRsp, pstCall->pstHead, sizeof(RpcMsgHead));
            *puiRspLen = sizeof(RpcMsgHead);
            return 0;
        case kDie:
            _exit(3);
        case kRoom: {
            uint32_t auiRoom[2] = {pstCall->uiRspCap,
                                   std::accumulate(pucRsp, pucRsp + pstCall->uiRspCap, 0u)};
            memcpy(pucRsp, auiRoom, sizeof auiRoom);
            *puiRspLen = sizeof auiRoom;
            return 0;
        }
        case kMid:
            memcpy(pucRsp, &pstCall->uiDstMid, 4);
            *puiRspLen = 4;
            return 0;
        case kTryStop:
        case kTryHear: {
            uint32_t uiResult =
                pstCall->uiRpcId == kTryStop ? VT_HOST_Stop() : VT_HOST_OnLostReply(nullptr);
            memcpy(pucRsp, &uiResult, 4);
            *puiRspLen = 4;
            return 0;
        }
        case kCaller:
            memcpy(pucRsp, &pstCall->iCallerPid, 4);
            *puiRspLen = 4;
            return 0;
        default:
            return VT_HOST_ERR_UNKNOWN_RPC;
    }
}

ChildServer::ChildServer(const char *pcName) {
    int aiReady[2];
    if (pipe(aiReady) != 0) {
        return;
    }
    iPid = fork();
    if (iPid == 0) {
        close(aiReady[0]);
        bool bOk = VT_MSG_Init(pcName, 16, 0, 0) == 0 && VT_HOST_Serve(TestHandler, nullptr) == 0;
        if (bOk && write(aiReady[1], "1", 1) == 1) {
            for (;;) {
                pause();
            }
        }
        _exit(1);
    }
    close(aiReady[1]);
    char cReady = 0;
    bReady = read(aiReady[0], &cReady, 1) == 1 && cReady == '1';
    close(aiReady[0]);
}

void ChildServer::Kill() {
    if (iPid > 0) {
        kill(iPid, SIGKILL);
        waitpid(iPid, nullptr, 0);
        iPid = -1;
    }
}

int InChild(int (*pfnBody)()) {
    pid_t iPid = fork();
    if (iPid == 0) {
        _exit(pfnBody());
    }
    int iStatus = 0;
    waitpid(iPid, &iStatus, 0);
    return WIFEXITED(iStatus) ? WEXITSTATUS(iStatus) : 255;
}

RpcMsgHead HeadFor(const char *pcReceiver) {
    RpcMsgHead stHead{};
    memcpy(stHead.acSndApp, "tester", 6);
    memcpy(stHead.acRcvApp, pcReceiver, strlen(pcReceiver));
    stHead.uiSndMid = 249;
    return stHead;
}

uint32_t Call(const char *pcReceiver, uint32_t uiRpcId, const std::string &strReq,
              std::string &strRsp, uint32_t uiTimeoutMs) {
    RpcMsgHead stHead = HeadFor(pcReceiver);
    return VT_MSG_RpcCall(&stHead, uiRpcId, 0, strReq.data(), static_cast<uint32_t>(strReq.size()),
                          strRsp.data(), static_cast<uint32_t>(strRsp.size()), uiTimeoutMs);
}

namespace {

sockaddr_un AddressOf(const char *pcName) {
    sockaddr_un stAddress{};
    stAddress.sun_family = AF_UNIX;
    const std::string strPath = InRuntimeDir(std::string(pcName) + ".sock");
    memcpy(stAddress.sun_path, strPath.c_str(), strPath.size());
    return stAddress;
}

}  // namespace

int NewRawSocket() {
    return socket(AF_UNIX, SOCK_SEQPACKET, 0);
}

int ConnectRaw(int iFd, const char *pcName) {
    const sockaddr_un stAddress = AddressOf(pcName);
    return connect(iFd, reinterpret_cast<const sockaddr *>(&stAddress), sizeof stAddress);
}

int ListenRaw(int iFd, const char *pcName, int iBacklog) {
    const sockaddr_un stAddress = AddressOf(pcName);
    const int iBound = bind(iFd, reinterpret_cast<const sockaddr *>(&stAddress), sizeof stAddress);
    return iBound == 0 ? listen(iFd, iBacklog) : iBound;
}

std::string RawRequest(const std::string &strMagic, uint32_t uiKind, uint32_t uiLen,
                       uint32_t uiRoom, const std::string &strPayload) {
    std::string strHead = Word(0) + std::string(32, 'S') + Word(0) + std::string(32, 'R') +
                          Word(0) + std::string(8, '\0');
    return strMagic + Word(uiKind) + Word(99) + Word(kEcho) + Word(0) + Word(uiLen) + Word(uiRoom) +
           strHead + strPayload;
}

std::string FileText(const std::string &strPath) {
    std::ifstream stFile(strPath);
    std::ostringstream stText;
    stText << stFile.rdbuf();
    return stText.str();
}

}  // namespace wap::test

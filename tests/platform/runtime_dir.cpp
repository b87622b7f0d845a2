#include "runtime_dir.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <numeric>
#include <sstream>

namespace wap::test {

RuntimeDirTest::RuntimeDirTest() {
    char acDir[] = "/tmp/vtpXXXXXX";
    strDir = mkdtemp(acDir);
    setenv("VT_RUNTIME_DIR", strDir.c_str(), 1);
}

RuntimeDirTest::~RuntimeDirTest() {
    VT_HOST_Stop();
    unsetenv("VT_RUNTIME_DIR");
    std::string strRemove = "rm -rf '" + strDir + "'";
    EXPECT_EQ(0, system(strRemove.c_str()));
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
            return VT_HOST_NO_REPLY;
        case kStatus:
            memcpy(pucRsp, "why", 3);
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
        case kTryStop: {
            uint32_t uiResult = VT_HOST_Stop();
            memcpy(pucRsp, &uiResult, 4);
            *puiRspLen = 4;
            return 0;
        }
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

std::string FileText(const std::string &strPath) {
    std::ifstream stFile(strPath);
    std::ostringstream stText;
    stText << stFile.rdbuf();
    return stText.str();
}

std::string Word(uint32_t uiValue) {
    std::string strWord;
    for (int i = 0; i < 4; i++) {
        strWord += static_cast<char>(uiValue >> (8 * i));
    }
    return strWord;
}

}  // namespace wap::test

// When the machine has no more to give: descriptors, threads, room on the disk, shared memory. Each
// call must say so, leave nothing behind and work again as soon as there is some.
//
// Every case runs in a child process of its own, whose limits it may lower, and which says on
// stderr what it found wrong.
#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/ipc.h>
#include <sys/resource.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "runtime_dir.h"

/** Ends the child's body when something is not as it should be. */
#define MUST(bRight)                                                             \
    do {                                                                         \
        if (!(bRight)) {                                                         \
            fprintf(stderr, "%s:%d: not so: %s\n", __FILE__, __LINE__, #bRight); \
            return 1;                                                            \
        }                                                                        \
    } while (0)

namespace wap::test {
namespace {

constexpr int kNotPossible = 77;

/** Lowers a limit of the process for as long as it lives. */
class Limit {
  public:
    Limit(int iWhich, rlim_t uiNew) : iResource(iWhich) {
        getrlimit(Resource(), &stBefore);
        rlimit stLow{uiNew, stBefore.rlim_max};
        bSet = setrlimit(Resource(), &stLow) == 0;
    }
    ~Limit() { setrlimit(Resource(), &stBefore); }
    Limit(const Limit &) = delete;
    Limit &operator=(const Limit &) = delete;

    bool Set() const { return bSet; }

  private:
    decltype(RLIMIT_NOFILE) Resource() const {
        return static_cast<decltype(RLIMIT_NOFILE)>(iResource);
    }

    int iResource;
    rlimit stBefore{};
    bool bSet = false;
};

/** The lowest descriptor that is free: as a limit, it leaves none. */
rlim_t FirstFree() {
    const int iFd = open("/dev/null", O_RDONLY | O_CLOEXEC);
    const auto uiFree = static_cast<rlim_t>(iFd);
    close(iFd);
    return uiFree;
}

/**
 * Two callers with sockets from before the shortage. A service that waits for a caller may hold a
 * descriptor for the first; the second finds it without.
 */
class RawCallers {
  public:
    RawCallers() : aiFds{NewRawSocket(), NewRawSocket()} {}
    ~RawCallers() {
        close(aiFds[0]);
        close(aiFds[1]);
    }
    RawCallers(const RawCallers &) = delete;
    RawCallers &operator=(const RawCallers &) = delete;

    bool Ask() {
        const std::string strRequest = RawRequest("VTQ1", 1, 3, 10, "abc");
        bool bSent = true;
        for (const int iFd : aiFds) {
            bSent = bSent && ConnectRaw(iFd, "echo") == 0 &&
                    send(iFd, strRequest.data(), strRequest.size(), MSG_NOSIGNAL) ==
                        static_cast<ssize_t>(strRequest.size());
        }
        return bSent;
    }
    bool LastIsAnswered(int iTimeoutMs) {
        pollfd stPoll{aiFds[1], POLLIN, 0};
        char acAnswer[64];
        return poll(&stPoll, 1, iTimeoutMs) == 1 &&
               recv(aiFds[1], acAnswer, sizeof acAnswer, 0) == 19;
    }

  private:
    int aiFds[2];
};

uint32_t Echo() {
    std::string strRsp(4, '#');
    const uint32_t uiStatus = Call("echo", kEcho, "abcd", strRsp);
    return uiStatus == 0 && strRsp != "abcd" ? 0xBADu : uiStatus;
}

/** Takes what is written to stderr until End. */
class StderrToFile {
  public:
    StderrToFile() : iOld(dup(STDERR_FILENO)) {
        const int iFile = open(strPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(iFile, STDERR_FILENO);
        close(iFile);
    }
    ~StderrToFile() { End(); }
    StderrToFile(const StderrToFile &) = delete;
    StderrToFile &operator=(const StderrToFile &) = delete;

    /** Puts stderr back. @return what was written */
    std::string End() {
        if (iOld >= 0) {
            dup2(iOld, STDERR_FILENO);
            close(iOld);
            iOld = -1;
        }
        return FileText(strPath);
    }

  private:
    std::string strPath = InRuntimeDir("stderr");
    int iOld;
};

bool Serve() {
    return VT_MSG_Init("echo", 8, 0, 0) == 0 && VT_HOST_Serve(TestHandler, nullptr) == 0;
}

bool Exists(const char *pcName) {
    return access(InRuntimeDir(pcName).c_str(), F_OK) == 0;
}

class Exhaustion : public RuntimeDirTest {
  protected:
    /** Runs a case. */
    void Expect0(int (*pfnBody)()) {
        const int iReport = InChild(pfnBody);
        if (iReport == kNotPossible) {
            GTEST_SKIP() << "not possible for this user on this machine";
        }
        EXPECT_EQ(0, iReport) << "the line is on stderr; 255 means that the process died";
    }
};

// ---- descriptors ----

TEST_F(Exhaustion, ACallWithoutADescriptorFailsAndTheNextWorks) {
    ChildServer stServer("echo");
    ASSERT_TRUE(stServer.Ready());
    Expect0([] {
        // Lets go of connections of the parent's, which would free descriptors in the middle.
        MUST(VT_MSG_AsyncSendData("nobody", 1, "x", 1) == VT_HOST_ERR_NO_RECEIVER);
        {
            Limit stLimit(RLIMIT_NOFILE, FirstFree());
            MUST(stLimit.Set());
            MUST(Echo() == VT_HOST_ERR_SYSTEM);
            MUST(errno == EMFILE);
            MUST(VT_MSG_AsyncSendData("echo", 1, "x", 1) == VT_HOST_ERR_SYSTEM);
        }
        MUST(Echo() == 0);
        MUST(VT_MSG_AsyncSendData("echo", 1, "x", 1) == 0);
        Limit stLimit(RLIMIT_NOFILE, FirstFree());
        MUST(Echo() == 0);  // on the connection that is open
        return 0;
    });
}

TEST_F(Exhaustion, AServiceIsNotStartedWithoutDescriptors) {
    Expect0([] {
        // None for the lock; then one for the lock and none for the socket.
        for (rlim_t uiMore = 0; uiMore < 2; uiMore++) {
            StderrToFile stStderr;
            {
                Limit stLimit(RLIMIT_NOFILE, FirstFree() + uiMore);
                MUST(stLimit.Set());
                MUST(VT_MSG_Init("echo", 8, 0, 0) == VT_HOST_ERR_SYSTEM);
            }
            const std::string strText = stStderr.End();
            MUST(strText.find(": Too many open files\n") != std::string::npos);
            MUST(VT_MSG_GetCurProcName()[0] == '\0');
            MUST(!Exists("echo.sock"));
            MUST(VT_HOST_Stop() == VT_HOST_ERR_STATE);
        }
        MUST(Serve());
        MUST(Echo() == 0);
        MUST(VT_HOST_Stop() == 0);
        return 0;
    });
}

TEST_F(Exhaustion, AServiceWithoutADescriptorForACallerGoesOnOrStops) {
    Expect0([] {
        for (const bool bStopWithout : {false, true}) {
            MUST(Serve());
            RawCallers stCallers;
            {
                Limit stLimit(RLIMIT_NOFILE, FirstFree());
                MUST(stLimit.Set());
                MUST(stCallers.Ask());
                MUST(!stCallers.LastIsAnswered(300));
                MUST(!bStopWithout || VT_HOST_Stop() == 0);
            }
            if (!bStopWithout) {
                MUST(stCallers.LastIsAnswered(5000));
                MUST(Echo() == 0);
                MUST(VT_HOST_Stop() == 0);
            }
        }
        MUST(Serve());
        MUST(Echo() == 0);
        MUST(VT_HOST_Stop() == 0);
        return 0;
    });
}

TEST_F(Exhaustion, BulkBlocksNeedADescriptor) {
    Expect0([] {
        VDataDesc stKept{};
        MUST(VT_VDATA_CreShm(4, &stKept) == 0);
        MUST(VT_VDATA_UpdateData(stKept.uiDataID, 4, "abcd") == 0);
        char acBack[5] = "####";
        {
            Limit stLimit(RLIMIT_NOFILE, FirstFree());
            MUST(stLimit.Set());
            VDataDesc stDesc{7, 8, 9};
            MUST(VT_VDATA_CreShm(4, &stDesc) == VT_HOST_ERR_SYSTEM);
            MUST(stDesc.uiDataID == 7);
            MUST(VT_VDATA_UpdateData(stKept.uiDataID, 4, "wxyz") == VT_HOST_ERR_SYSTEM);
            MUST(VT_VDATA_ReadData(stKept.uiDataID, 4, acBack) == VT_HOST_ERR_SYSTEM);
            MUST(strcmp(acBack, "####") == 0);
            MUST(VT_HOST_RemoveStaleBlocks() == 0);
        }
        MUST(VT_VDATA_ReadData(stKept.uiDataID, 4, acBack) == 0);
        MUST(strcmp(acBack, "abcd") == 0);
        {
            Limit stLimit(RLIMIT_NOFILE, FirstFree());
            MUST(VT_VDATA_FreeShm(stKept.uiDataID) == 0);  // needs none
        }
        MUST(VT_HOST_RemoveStaleBlocks() == 0);
        return 0;
    });
}

TEST_F(Exhaustion, FilesAndFiguresNeedADescriptor) {
    Expect0([] {
        uint32_t uiRate = 777;
        {
            Limit stLimit(RLIMIT_NOFILE, FirstFree());
            MUST(stLimit.Set());
            MUST(VT_OS_Open("/dev/null", O_RDONLY, 0) == -1 && errno == EMFILE);
            MUST(VT_OS_Fopen("/dev/null", "r") == nullptr && errno == EMFILE);
            MUST(VT_OS_GetMemUseRate(&uiRate) == VT_HOST_ERR_SYSTEM);
            MUST(VT_OS_GetCPUBusyRateByTime(10, &uiRate) == VT_HOST_ERR_SYSTEM);
            MUST(uiRate == 777);
            MUST(VT_Feature_IsSupport(1) == 0);
        }
        MUST(VT_OS_GetMemUseRate(&uiRate) == 0 && uiRate <= 100);
        const int32_t iFd = VT_OS_Open("/dev/null", O_RDONLY, 0);
        MUST(iFd >= 0 && VT_OS_Close(iFd) == 0);
        return 0;
    });
}

TEST_F(Exhaustion, AFaultThatCannotBeLoggedIsToldOnStderr) {
    Expect0([] {
        StderrToFile stStderr;
        errno = 99;
        {
            Limit stLimit(RLIMIT_NOFILE, FirstFree());
            VT_PROC_DBG_LastWord("jni_x.cpp", 12, 0xF7000006u, 1, 2, 3, 4);
        }
        const bool bKept = errno == 99;
        VT_PROC_DBG_LastWord("jni_x.cpp", 13, 0xF7000007u, 1, 2, 3, 4);
        const std::string strText = stStderr.End();
        MUST(bKept);
        MUST(strText.find(" jni_x.cpp:12 0xF7000006 1 2 3 4\n") != std::string::npos);
        MUST(strText.find("jni_x.cpp:13") == std::string::npos);  // in the log again
        return 0;
    });
}

// ---- threads ----

/** Leaves the process without a right to another thread; root has no such limit. */
bool GiveUpRoot() {
    if (geteuid() != 0) {
        return true;
    }
    return chown(RuntimeDir().c_str(), kNobody, kNobody) == 0 &&
           setresgid(kNobody, kNobody, kNobody) == 0 && setresuid(kNobody, kNobody, kNobody) == 0;
}

void *Nothing(void *pvArg) {
    return pvArg;
}

TEST_F(Exhaustion, AThreadThatCannotBeMadeIsAFailure) {
    Expect0([] {
        MUST(GiveUpRoot());
        unsigned long ulId = 77;
        {
            Limit stLimit(RLIMIT_NPROC, 0);
            MUST(stLimit.Set());
            MUST(VT_OS_PthreadCreate(&ulId, nullptr, Nothing, nullptr) == VT_HOST_ERR_SYSTEM);
            MUST(ulId == 77);
            MUST(VT_OS_ExecShellCmdEx("exit 0") == VT_HOST_ERR_SYSTEM);
        }
        MUST(VT_OS_PthreadCreate(&ulId, nullptr, Nothing, nullptr) == 0);
        MUST(ulId != 77);
        MUST(VT_OS_ExecShellCmdEx("exit 5") == 5);
        return 0;
    });
}

TEST_F(Exhaustion, AServiceWithoutItsThreadIsNotStarted) {
    Expect0([] {
        MUST(GiveUpRoot());
        {
            Limit stLimit(RLIMIT_NPROC, 0);
            MUST(stLimit.Set());
            MUST(VT_MSG_Init("echo", 8, 0, 0) == VT_HOST_ERR_SYSTEM);
            MUST(VT_MSG_GetCurProcName()[0] == '\0');
            MUST(!Exists("echo.sock"));
        }
        MUST(Serve());  // the name is free as well
        MUST(Echo() == 0);
        MUST(VT_HOST_Stop() == 0);
        return 0;
    });
}

TEST_F(Exhaustion, ACallerForWhomThereIsNoThreadIsHungUpOn) {
    Expect0([] {
        MUST(GiveUpRoot());
        MUST(Serve());
        {
            Limit stLimit(RLIMIT_NPROC, 0);
            MUST(stLimit.Set());
            MUST(Echo() == VT_HOST_ERR_BROKEN);
            MUST(Echo() == VT_HOST_ERR_BROKEN);
        }
        MUST(Echo() == 0);
        MUST(VT_HOST_Stop() == 0);
        return 0;
    });
}

// ---- room on the disk ----

TEST_F(Exhaustion, ABulkBlockThatDoesNotFitIsNoBlock) {
    Expect0([] {
        signal(SIGXFSZ, SIG_IGN);
        VDataDesc stKept{};
        MUST(VT_VDATA_CreShm(8192, &stKept) == 0);
        std::vector<char> acData(8192, 'x');
        {
            Limit stLimit(RLIMIT_FSIZE, 4096);
            MUST(stLimit.Set());
            VDataDesc stDesc{7, 8, 9};
            MUST(VT_VDATA_CreShm(4097, &stDesc) == VT_HOST_ERR_SYSTEM);
            MUST(errno == EFBIG);
            MUST(stDesc.uiDataID == 7);
            // Half of it is written before the room ends.
            MUST(VT_VDATA_UpdateData(stKept.uiDataID, 8192, acData.data()) == VT_HOST_ERR_SYSTEM);
            MUST(VT_VDATA_CreShm(4096, &stDesc) == 0);
            MUST(VT_VDATA_FreeShm(stDesc.uiDataID) == 0);
        }
        MUST(VT_VDATA_UpdateData(stKept.uiDataID, 8192, acData.data()) == 0);
        std::vector<char> acBack(8192);
        MUST(VT_VDATA_ReadData(stKept.uiDataID, 8192, acBack.data()) == 0 && acBack == acData);
        MUST(VT_HOST_RemoveStaleBlocks() == 1);  // the refused one left no file
        return 0;
    });
}

TEST_F(Exhaustion, ALogThatCannotGrowCostsItsLineOnly) {
    Expect0([] {
        signal(SIGXFSZ, SIG_IGN);
        MUST(VT_MSG_Init("logger", 8, 0, 0) == 0);
        errno = 99;
        {
            Limit stLimit(RLIMIT_FSIZE, 0);
            MUST(stLimit.Set());
            VT_PROC_DBG_LastWord_1("lost.cpp", 1, 5);
            MUST(errno == 99);
            MUST(VT_OS_Printf("%s", "lost") == 4);
        }
        VT_PROC_DBG_LastWord_1("kept.cpp", 2, 6);
        const std::string strLog = FileText(InRuntimeDir("log/logger.fault"));
        MUST(strLog.find(" kept.cpp:2 0x00000006\n") != std::string::npos);
        MUST(strLog.find("lost") == std::string::npos);
        MUST(VT_HOST_Stop() == 0);
        return 0;
    });
}

TEST_F(Exhaustion, AFileThatCannotGrowSaysSo) {
    Expect0([] {
        signal(SIGXFSZ, SIG_IGN);
        const std::string strPath = InRuntimeDir("file");
        const int32_t iFd = VT_OS_Open(strPath.c_str(), O_RDWR | O_CREAT, 0600);
        MUST(iFd >= 0);
        {
            Limit stLimit(RLIMIT_FSIZE, 2);
            MUST(stLimit.Set());
            MUST(VT_OS_Write(iFd, "abcd", 4) == 2);  // as much as fits
            MUST(VT_OS_Write(iFd, "cd", 2) == -1 && errno == EFBIG);
        }
        MUST(VT_OS_Write(iFd, "cd", 2) == 2);
        MUST(VT_OS_Close(iFd) == 0);
        MUST(FileText(strPath) == "abcd");
        return 0;
    });
}

// ---- shared memory ----

TEST_F(Exhaustion, SharedMemoryWithoutAnIdIsRefused) {
    Expect0([] {
        // Ids of our own, so that nobody else on the machine goes without.
        if (unshare(CLONE_NEWIPC) != 0) {
            return kNotPossible;
        }
        std::vector<int32_t> aiIds;
        int32_t iId = 0;
        while (aiIds.size() < 100000 &&
               (iId = VT_OS_ShmGet(IPC_PRIVATE, 1, IPC_CREAT | 0600)) >= 0) {
            aiIds.push_back(iId);
        }
        MUST(iId == -1 && errno == ENOSPC);
        MUST(!aiIds.empty());
        MUST(VT_OS_ShmCtl(aiIds.back(), IPC_RMID, nullptr) == 0);
        iId = VT_OS_ShmGet(IPC_PRIVATE, 1, IPC_CREAT | 0600);
        MUST(iId >= 0);
        void *pvAt = VT_OS_ShmAt(iId, nullptr, 0);
        MUST(reinterpret_cast<intptr_t>(pvAt) != -1);
        MUST(VT_OS_ShmDt(pvAt) == 0);
        return 0;
    });
}

}  // namespace
}  // namespace wap::test

#include <fcntl.h>
#include <sys/select.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "runtime_dir.h"

namespace wap::test {
namespace {

class Files : public RuntimeDirTest {};

TEST_F(Files, OpenWriteReadClose) {
    std::string strPath = Path("f");
    int32_t iFd = VT_OS_Open(strPath.c_str(), O_RDWR | O_CREAT, 0600);
    ASSERT_GE(iFd, 0);
    EXPECT_NE(0, fcntl(iFd, F_GETFD) & FD_CLOEXEC);
    EXPECT_EQ(5, VT_OS_Write(iFd, "hello", 5));
    EXPECT_EQ(0, lseek(iFd, 0, SEEK_SET));
    char acBack[8] = {};
    EXPECT_EQ(5, VT_OS_Read(iFd, acBack, 8));
    EXPECT_STREQ("hello", acBack);
    EXPECT_EQ(0, VT_OS_Read(iFd, acBack, 8)) << "the end";
    EXPECT_EQ(0, VT_OS_Close(iFd));
    EXPECT_EQ(-1, VT_OS_Close(iFd));
}

TEST_F(Files, FailuresTellErrno) {
    errno = 0;
    EXPECT_EQ(-1, VT_OS_Open(Path("none").c_str(), O_RDONLY, 0));
    EXPECT_EQ(ENOENT, errno);
    EXPECT_EQ(-1, VT_OS_Open(nullptr, O_RDONLY, 0));
    char acBack[1];
    EXPECT_EQ(-1, VT_OS_Read(-1, acBack, 1));
    EXPECT_EQ(EBADF, errno);
    EXPECT_EQ(-1, VT_OS_Write(-1, acBack, 1));
    EXPECT_EQ(-1, VT_OS_Read(0, nullptr, 1));
    EXPECT_EQ(-1, VT_OS_Write(1, nullptr, 1));
}

TEST_F(Files, SelectWaitsAndReports) {
    int aiPipe[2];
    ASSERT_EQ(0, pipe(aiPipe));
    fd_set stRead;
    FD_ZERO(&stRead);
    FD_SET(aiPipe[0], &stRead);
    timeval stWait{0, 50000};
    Stopwatch stWatch;
    EXPECT_EQ(0, VT_OS_Select(aiPipe[0] + 1, &stRead, nullptr, nullptr, &stWait));
    EXPECT_GE(stWatch.Ms(), 49);
    ASSERT_EQ(1, write(aiPipe[1], "x", 1));
    FD_ZERO(&stRead);
    FD_SET(aiPipe[0], &stRead);
    stWait = {5, 0};
    EXPECT_EQ(1, VT_OS_Select(aiPipe[0] + 1, &stRead, nullptr, nullptr, &stWait));
    EXPECT_TRUE(FD_ISSET(aiPipe[0], &stRead));
    close(aiPipe[0]);
    close(aiPipe[1]);
}

TEST_F(Files, LinesAreReadOneByOne) {
    FILE *pstFile = fopen(Path("lines").c_str(), "w");
    ASSERT_NE(nullptr, pstFile);
    fputs("one\nsecond line\n", pstFile);
    fclose(pstFile);
    void *pvFile = VT_OS_Fopen(Path("lines").c_str(), "r");
    ASSERT_NE(nullptr, pvFile);
    char acLine[8];
    EXPECT_EQ(acLine, VT_OS_Fgets(acLine, sizeof acLine, pvFile));
    EXPECT_STREQ("one\n", acLine);
    EXPECT_EQ(acLine, VT_OS_Fgets(acLine, sizeof acLine, pvFile));
    EXPECT_STREQ("second ", acLine);
    EXPECT_EQ(acLine, VT_OS_Fgets(acLine, sizeof acLine, pvFile));
    EXPECT_STREQ("line\n", acLine);
    EXPECT_EQ(nullptr, VT_OS_Fgets(acLine, sizeof acLine, pvFile));
    EXPECT_EQ(0, VT_OS_Fclose(pvFile));
}

TEST_F(Files, StreamsRefuseBadArguments) {
    char acLine[8];
    EXPECT_EQ(nullptr, VT_OS_Fopen(Path("none").c_str(), "r"));
    EXPECT_EQ(nullptr, VT_OS_Fopen(nullptr, "r"));
    EXPECT_EQ(nullptr, VT_OS_Fopen(Path("none").c_str(), nullptr));
    EXPECT_EQ(nullptr, VT_OS_Fopen(Path("none").c_str(), "w,ccs=UTF-8"));
    EXPECT_EQ(nullptr, VT_OS_Fgets(acLine, sizeof acLine, nullptr));
    EXPECT_EQ(-1, VT_OS_Fclose(nullptr));
    void *pvFile = VT_OS_Fopen("/dev/null", "r");
    ASSERT_NE(nullptr, pvFile);
    EXPECT_EQ(nullptr, VT_OS_Fgets(acLine, 0, pvFile));
    EXPECT_EQ(nullptr, VT_OS_Fgets(nullptr, 8, pvFile));
    EXPECT_EQ(0, VT_OS_Fclose(pvFile));
}

TEST_F(Files, CommandsRunToTheirEnd) {
    std::string strCommand = "echo one > " + Path("out") + "; echo two >> " + Path("out");
    EXPECT_EQ(0u, VT_OS_ExecShellCmdEx(strCommand.c_str()));
    EXPECT_EQ("one\ntwo\n", FileText(Path("out")));
    EXPECT_EQ(0u, VT_OS_ExecShellCmdEx("true"));
    EXPECT_EQ(7u, VT_OS_ExecShellCmdEx("exit 7"));
    EXPECT_EQ(VT_HOST_ERR_SYSTEM, VT_OS_ExecShellCmdEx("kill -9 $$"));
    EXPECT_EQ(127u, VT_OS_ExecShellCmdEx("/no/such/program 2>/dev/null"));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_ExecShellCmdEx(nullptr));
}

}  // namespace
}  // namespace wap::test

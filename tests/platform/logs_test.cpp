#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <regex>
#include <thread>
#include <vector>

#include "runtime_dir.h"

namespace wap::test {
namespace {

/** Without a name in the message service the program's own is used. */
class Logs : public RuntimeDirTest {
  protected:
    ~Logs() override { VT_HOST_SetTrace(0); }

    std::string Log(const char *pcKind) const { return Path("log/platform_tests.") + pcKind; }
};

const std::string kStart = R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{6} \d+ )";

TEST_F(Logs, AFaultIsALine) {
    errno = ENOTTY;
    VT_PROC_DBG_LastWord("/home/me/src/jni_common.cpp", 42, 0xF7100007, 1, 22, 333, 4294967295u);
    EXPECT_EQ(ENOTTY, errno);
    std::regex stLine(kStart + R"(jni_common\.cpp:42 0xF7100007 1 22 333 4294967295\n)");
    EXPECT_TRUE(std::regex_match(FileText(Log("fault")), stLine)) << FileText(Log("fault"));
}

TEST_F(Logs, AFaultWithoutNumbersIsAShorterLine) {
    VT_PROC_DBG_LastWord_1("b.cpp", 7, 5);
    VT_PROC_DBG_LastWord_1(nullptr, 8, 6);
    std::regex stLines(kStart + R"(b\.cpp:7 0x00000005\n)" + kStart + R"(\?:8 0x00000006\n)");
    EXPECT_TRUE(std::regex_match(FileText(Log("fault")), stLines)) << FileText(Log("fault"));
}

TEST_F(Logs, TheTraceIsOffByDefault) {
    VT_PROC_DBG_TraceS(249, "a.cpp", 1, 0, "%s", "text");
    EXPECT_NE(0, access(Log("trace").c_str(), F_OK));
}

TEST_F(Logs, ATraceIsALine) {
    VT_HOST_SetTrace(1);
    VT_PROC_DBG_TraceS(249, "/x/y/a.cpp", 181, 0, "\r\n %s called \r\n", "startThread");
    VT_HOST_SetTrace(0);
    VT_PROC_DBG_TraceS(249, "a.cpp", 1, 0, "more");
    std::regex stLine(kStart + R"(a\.cpp:181 \[249\] startThread called\n)");
    EXPECT_TRUE(std::regex_match(FileText(Log("trace")), stLine)) << FileText(Log("trace"));
}

TEST_F(Logs, ATextCannotForgeALine) {
    VT_HOST_SetTrace(1);
    VT_PROC_DBG_TraceS(1, "a.cpp", 1, 0, "%s", "x\ny\x1B[31m\tz");
    std::regex stLine(kStart + R"(a\.cpp:1 \[1\] x y \[31m z\n)");
    EXPECT_TRUE(std::regex_match(FileText(Log("trace")), stLine)) << FileText(Log("trace"));
}

TEST_F(Logs, AnOverlongTraceIsCut) {
    VT_HOST_SetTrace(1);
    std::string strLong(100000, 'x');
    VT_PROC_DBG_TraceS(1, "a.cpp", 1, 0, "%s", strLong.c_str());
    std::string strText = FileText(Log("trace"));
    EXPECT_LE(strText.size(), 4096u);
    EXPECT_GT(strText.size(), 4000u);
    EXPECT_EQ('\n', strText.back());
}

TEST_F(Logs, ConsoleTextGoesToAFileAndNotToTheProgramsOutput) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(9, VT_OS_Printf("\r\n [%s:%u]", "ab", 1u));
    EXPECT_EQ(3, VT_OS_Printf("%s", "abc"));
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ("\r\n [ab:1]abc", FileText(Log("console")));
    EXPECT_LT(VT_OS_Printf(nullptr), 0);
}

TEST_F(Logs, AreNamedAfterTheProcess) {
    ASSERT_EQ(0u, VT_MSG_Init("jamvm", 0, 0, 0));
    VT_OS_Printf("hello");
    VT_PROC_DBG_LastWord_1("b.cpp", 7, 5);
    EXPECT_EQ("hello", FileText(Path("log/jamvm.console")));
    EXPECT_NE("", FileText(Path("log/jamvm.fault")));
}

TEST_F(Logs, GoToStderrWithoutARuntimeDirectory) {
    unsetenv("VT_RUNTIME_DIR");
    testing::internal::CaptureStderr();
    VT_OS_Printf("console text");
    VT_PROC_DBG_LastWord_1("b.cpp", 7, 5);
    std::string strText = testing::internal::GetCapturedStderr();
    EXPECT_NE(std::string::npos, strText.find("console text"));
    EXPECT_NE(std::string::npos, strText.find("b.cpp:7 0x00000005\n"));
}

TEST_F(Logs, AFullLogIsPutAsideAndTheFormerOneGoes) {
    VT_PROC_DBG_LastWord_1("first.cpp", 1, 1);
    ASSERT_EQ(0, truncate(Log("fault").c_str(), 1 << 20));  // as if 1 MiB had been written
    VT_PROC_DBG_LastWord_1("second.cpp", 2, 2);
    EXPECT_NE(std::string::npos, FileText(Log("fault.1")).find("first.cpp"));
    EXPECT_EQ(std::string::npos, FileText(Log("fault")).find("first.cpp"));
    EXPECT_NE(std::string::npos, FileText(Log("fault")).find("second.cpp"));
    ASSERT_EQ(0, truncate(Log("fault").c_str(), 1 << 20));
    VT_PROC_DBG_LastWord_1("third.cpp", 3, 3);
    EXPECT_EQ(std::string::npos, FileText(Log("fault.1")).find("first.cpp"));
    EXPECT_NE(std::string::npos, FileText(Log("fault")).find("third.cpp"));
}

TEST_F(Logs, LinesOfThreadsDoNotMixAlsoWhenTheFileChanges) {
    VT_PROC_DBG_LastWord_1("start.cpp", 1, 1);
    ASSERT_EQ(0, truncate(Log("fault").c_str(), (1 << 20) - 2000));
    constexpr int kThreads = 4;
    constexpr int kLines = 100;
    std::vector<std::thread> astThreads;
    astThreads.reserve(kThreads);
    for (int i = 0; i < kThreads; i++) {
        astThreads.emplace_back([] {
            for (uint32_t uiLine = 0; uiLine < kLines; uiLine++) {
                VT_PROC_DBG_LastWord("t.cpp", uiLine, 0xAB, 1, 2, 3, 4);
            }
        });
    }
    for (std::thread &stThread : astThreads) {
        stThread.join();
    }
    std::string strAll = FileText(Log("fault.1")) + FileText(Log("fault"));
    strAll.erase(0, strAll.find_last_of('\0') + 1);
    std::regex stLine(R"( t\.cpp:\d+ 0x000000AB 1 2 3 4\n)");
    auto itFirst = std::sregex_iterator(strAll.begin(), strAll.end(), stLine);
    EXPECT_EQ(kThreads * kLines, std::distance(itFirst, std::sregex_iterator()));
    struct stat stInfo {};
    ASSERT_EQ(0, stat(Log("fault.1").c_str(), &stInfo));
    EXPECT_LT(stInfo.st_size, (1 << 20) + 200);
}

}  // namespace
}  // namespace wap::test

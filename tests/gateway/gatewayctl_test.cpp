// gatewayctl: its verbs, what they say, and their exit codes.
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <thread>

#include "gateway_fixture.h"
#include "vt_ssp_basic.h"

namespace wap::test {

namespace {

bool Contains(const std::string &acText, const std::string &acPart) {
    return acText.find(acPart) != std::string::npos;
}

size_t CountLines(const std::string &acText) {
    return static_cast<size_t>(std::count(acText.begin(), acText.end(), '\n'));
}

constexpr int kEndingSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

/// Signals that end gatewayctl do so in the programs that are launched, too, when the tests
/// themselves were started without them, as background jobs are.
void TakeSignals() {
    for (const int iSignal : kEndingSignals) {
        signal(iSignal, SIG_DFL);
    }
    // One of them would leave a core file in the folder where the tests run.
    struct rlimit stNone = {};
    ASSERT_EQ(getrlimit(RLIMIT_CORE, &stNone), 0);
    stNone.rlim_cur = 0;
    ASSERT_EQ(setrlimit(RLIMIT_CORE, &stNone), 0);
}

}  // namespace

TEST_F(GatewayTest, StatusTellsWhatRuns) {
    Outcome stStatus = Ctl({"status"});
    EXPECT_EQ(stStatus.iExit, 1);
    for (const char *pcName : kProcessNames) {
        EXPECT_TRUE(Contains(stStatus.acOut, pcName)) << pcName;
    }
    EXPECT_TRUE(Contains(stStatus.acOut, "Simulated gateway in " + m_acDir));
    EXPECT_TRUE(Contains(stStatus.acOut, "igmp         not running"));

    const std::string acStarted = CtlOk({"start", "--timeout", "120"});
    EXPECT_TRUE(Contains(acStarted, "Simulated gateway"));
    EXPECT_EQ(Query("osgi_proxy", 0x47209032, 18).uiStatus, 0u);
    EXPECT_EQ(Query("osgi_proxy", 1, 18).uiStatus, 0xF700000Bu);
    stStatus = Ctl({"status"});
    EXPECT_EQ(stStatus.iExit, 0) << stStatus.acErr;
    EXPECT_FALSE(Contains(stStatus.acOut, "not running"));
    const size_t uiLine = stStatus.acOut.find("osgi_proxy ");
    const std::string acLine =
        stStatus.acOut.substr(uiLine, stStatus.acOut.find('\n', uiLine) - uiLine);
    EXPECT_TRUE(Contains(acLine, "running")) << acLine;
    EXPECT_TRUE(Contains(acLine, " 2       0     0"))
        << "two requests, no fault, none under way: " << acLine;
    std::string acPid = ReadFile("osgi_proxy.pid");
    acPid.back() = ' ';
    EXPECT_TRUE(Contains(acLine, acPid)) << acLine;

    CtlOk({"kill", "tarn"});
    stStatus = Ctl({"status"});
    EXPECT_EQ(stStatus.iExit, 1);
    EXPECT_TRUE(Contains(stStatus.acOut, "tarn         not running"));
}

TEST_F(RunningGatewayTest, ProcessThatHangsIsNotAnswering) {
    const pid_t iPid = static_cast<pid_t>(strtol(ReadFile("cwmp.pid").c_str(), nullptr, 10));
    ASSERT_GT(iPid, 0);
    ASSERT_EQ(kill(iPid, SIGSTOP), 0);
    const Outcome stStatus = Ctl({"status"});
    EXPECT_EQ(stStatus.iExit, 1);
    EXPECT_TRUE(Contains(stStatus.acOut, "cwmp         not answering")) << stStatus.acOut;
    EXPECT_EQ(Ctl({"wait", "cwmp", "--timeout", "0"}).iExit, 1);
    const Outcome stStop = Ctl({"stop", "cwmp", "--timeout", "1"});
    EXPECT_EQ(stStop.iExit, 1);
    EXPECT_TRUE(Contains(stStop.acErr, "gatewayctl kill cwmp")) << stStop.acErr;
    CtlOk({"kill", "cwmp"});
}

TEST_F(RunningGatewayTest, StartLeavesRunningProcessesAlone) {
    const std::string acPid = ReadFile("cwmp.pid");
    EXPECT_TRUE(Contains(CtlOk({"start", "cwmp"}), "cwmp runs already"));
    EXPECT_EQ(ReadFile("cwmp.pid"), acPid);
}

TEST_F(GatewayTest, InterruptedStartEndsProcessesThatHaveNoLockYet) {
    TakeSignals();
    setenv("WAP_EMULATOR", "", 1);
    for (const int iSignal : kEndingSignals) {
        SCOPED_TRACE(iSignal);
        // With SIGTERM also one that doesn't listen.
        WriteFile("slow", std::string("#!/bin/sh\n") +
                              (iSignal == SIGTERM ? "[ $1 = tarn ] && trap '' TERM\n" : "") +
                              "echo $1 >>\"$VT_RUNTIME_DIR/spawned\"\nexec sleep 600\n");
        WriteFile("spawned", "");
        ASSERT_EQ(chmod((m_acDir + "/slow").c_str(), 0700), 0);
        const pid_t iPid =
            Launch(CtlWords({"start", "--program", m_acDir + "/slow", "--timeout", "120"}));
        ASSERT_GT(iPid, 0);
        for (int iWait = 0; iWait < 6000 && CountLines(ReadFile("spawned")) < 7; ++iWait) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        EXPECT_EQ(CountLines(ReadFile("spawned")), 7u);
        EXPECT_EQ(CountLines(ProcessesOfTheDirectory()), 8u) << "with gatewayctl";
        EXPECT_EQ(kill(iPid, iSignal), 0);
        EXPECT_EQ(Await(iPid), 128 + iSignal);
        EXPECT_EQ(ProcessesOfTheDirectory(), "");
        EXPECT_NE(access((m_acDir + "/gateway.start").c_str(), F_OK), 0) << "it is down";
    }
}

TEST_F(GatewayTest, StartInterruptedAtAnyTimeLeavesAllOrNothing) {
    TakeSignals();
    const auto stBegin = std::chrono::steady_clock::now();
    CtlOk({"start", "--timeout", "120"});
    const auto stFull = std::chrono::steady_clock::now() - stBegin;
    CtlOk({"stop"});
    constexpr int kSteps = 21;
    int iInterrupted = 0;
    for (int iStep = 0; iStep <= kSteps; ++iStep) {
        const int iSignal = kEndingSignals[static_cast<size_t>(iStep) % std::size(kEndingSignals)];
        SCOPED_TRACE(iStep);
        const pid_t iPid = Launch(CtlWords({"start", "--timeout", "120"}));
        ASSERT_GT(iPid, 0);
        std::this_thread::sleep_for(stFull * iStep / kSteps);
        EXPECT_EQ(kill(iPid, iSignal), 0);
        const int iExit = Await(iPid);
        if (iExit == 0) {
            EXPECT_EQ(Ctl({"status"}).iExit, 0);
            CtlOk({"stop"});
        } else {
            EXPECT_EQ(iExit, 128 + iSignal) << ReadFile("test.err");
            ++iInterrupted;
        }
        EXPECT_EQ(ProcessesOfTheDirectory(), "");
        for (const char *pcName : kProcessNames) {
            EXPECT_NE(access((m_acDir + "/" + pcName + ".sock").c_str(), F_OK), 0) << pcName;
        }
        EXPECT_EQ(CtlOk({"stop"}), "Nothing was running\n");
    }
    EXPECT_GE(iInterrupted, 5);
}

TEST_F(GatewayTest, StartThatFailsEndsWhatItStartedAndNothingElse) {
    WriteFile("own.json", R"({"identity": {"manufacturerOui": "02FFFF", "serialNumber": "7"},)"
                          R"( "usb": [], "storage": [], "samba": {}, "ftp": {}, "web": {}})");
    CtlOk({"start", "cwmp", "--home", m_acDir + "/own.json", "--timeout", "60"});
    // For osgi_proxy there is no section "device".
    const Outcome stStart = Ctl({"start", "usb_mngt", "osgi_proxy", "tarn", "--timeout", "60"});
    EXPECT_EQ(stStart.iExit, 1);
    EXPECT_TRUE(Contains(stStart.acErr, "osgi_proxy ended at its start")) << stStart.acErr;
    std::string acPid = ReadFile("cwmp.pid");
    acPid.pop_back();
    EXPECT_EQ(ProcessesOfTheDirectory(), "/proc/" + acPid + "/environ\n");
    EXPECT_EQ(CtlOk({"stop"}), "Ended cwmp\n");
}

TEST_F(RunningGatewayTest, StopEndsOnlyWhatIsNamed) {
    EXPECT_EQ(CtlOk({"stop", "cwmp"}), "Ended cwmp\n");
    EXPECT_EQ(Query("cwmp", 0x4720136A, 265).uiStatus, 0xF7000003u);
    EXPECT_EQ(Query("osgi_proxy", 0x47209032, 18).uiStatus, 0u);
    EXPECT_EQ(CtlOk({"stop"}), "Ended osgi_proxy\n");
    EXPECT_EQ(CtlOk({"stop"}), "Nothing was running\n");
}

TEST_F(RunningGatewayTest, StopRemovesTheSocketsOfDeadProcesses) {
    CtlOk({"kill", "cwmp"});
    ASSERT_EQ(access((m_acDir + "/cwmp.sock").c_str(), F_OK), 0) << "a crash leaves it";
    // Of nobody that the message service knows; and a file that only looks like a socket.
    sockaddr_un stAddress = {};
    stAddress.sun_family = AF_UNIX;
    const std::string acStranger = m_acDir + "/stranger.sock";
    ASSERT_LT(acStranger.copy(stAddress.sun_path, sizeof(stAddress.sun_path) - 1),
              sizeof(stAddress.sun_path) - 1);
    const int iStranger = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    const int iBound =
        bind(iStranger, reinterpret_cast<const sockaddr *>(&stAddress), sizeof(stAddress));
    close(iStranger);
    ASSERT_EQ(iBound, 0);
    WriteFile("notes.sock", "text");
    WriteFile("notes.lock", "");
    // Whoever holds the lock of a name is alive.
    WriteFile("program.lock", "");
    ASSERT_EQ(link(acStranger.c_str(), (m_acDir + "/program.sock").c_str()), 0);
    const int iLock = open((m_acDir + "/program.lock").c_str(), O_RDWR | O_CLOEXEC);
    struct flock stLock = {};
    stLock.l_type = F_WRLCK;
    stLock.l_whence = SEEK_SET;
    EXPECT_EQ(fcntl(iLock, F_SETLK, &stLock), 0);

    CtlOk({"stop", "osgi_proxy"});
    EXPECT_NE(access((m_acDir + "/cwmp.sock").c_str(), F_OK), 0);
    EXPECT_EQ(access(acStranger.c_str(), F_OK), 0);
    EXPECT_EQ(access((m_acDir + "/notes.sock").c_str(), F_OK), 0);
    EXPECT_EQ(access((m_acDir + "/program.sock").c_str(), F_OK), 0);
    close(iLock);
    CtlOk({"stop"});
    EXPECT_NE(access((m_acDir + "/program.sock").c_str(), F_OK), 0) << "it has ended";
}

TEST_F(RunningGatewayTest, NothingStartsBeforeStopHasTidied) {
    // Enough blocks that removing them takes a while.
    std::vector<std::string> astBlocks;
    for (int iBlock = 0; iBlock < 5000; ++iBlock) {
        VDataDesc stDesc = {};
        ASSERT_EQ(VT_VDATA_CreShm(1, &stDesc), 0u);
        char acName[24];
        snprintf(acName, sizeof(acName), "/vdata/%08x", stDesc.uiDataID);
        astBlocks.push_back(m_acDir + acName);
        ASSERT_EQ(access(astBlocks.back().c_str(), F_OK), 0);
    }
    const pid_t iStop = Launch(CtlWords({"stop"}));
    ASSERT_GT(iStop, 0);
    // Whoever gets the lock, as a start would, finds the gateway up or all of it tidied.
    const int iLock = open((m_acDir + "/gatewayctl.lock").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(iLock, 0);
    bool bUp = true;
    const auto stEnd = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (bUp && std::chrono::steady_clock::now() < stEnd) {
        struct flock stLock = {};
        stLock.l_type = F_WRLCK;
        stLock.l_whence = SEEK_SET;
        ASSERT_EQ(fcntl(iLock, F_SETLKW, &stLock), 0);
        bUp = access((m_acDir + "/osgi_proxy.sock").c_str(), F_OK) == 0 ||
              access((m_acDir + "/cwmp.sock").c_str(), F_OK) == 0;
        if (!bUp) {
            EXPECT_NE(access((m_acDir + "/gateway.start").c_str(), F_OK), 0);
            EXPECT_EQ(
                std::count_if(astBlocks.begin(), astBlocks.end(),
                              [](const auto &acPath) { return access(acPath.c_str(), F_OK) == 0; }),
                0);
        }
        stLock.l_type = F_UNLCK;
        ASSERT_EQ(fcntl(iLock, F_SETLK, &stLock), 0);
        // Locks are not handed out in turn.
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    close(iLock);
    EXPECT_FALSE(bUp);
    EXPECT_EQ(Await(iStop), 0) << ReadFile("test.err");
}

TEST_F(GatewayTest, StrangersAreNeverKilled) {
    const pid_t iStranger = Launch({"sleep", "600"});
    ASSERT_GT(iStranger, 0);
    WriteFile("osgi_proxy.pid", std::to_string(iStranger) + "\n");
    EXPECT_EQ(Ctl({"kill", "osgi_proxy"}).iExit, 1);
    EXPECT_EQ(CtlOk({"stop"}), "Nothing was running\n");
    EXPECT_EQ(kill(iStranger, 0), 0);
    EXPECT_EQ(kill(iStranger, SIGKILL), 0);
    EXPECT_EQ(Await(iStranger), 128 + SIGKILL);
}

TEST_F(GatewayTest, KillAndWaitOfAProcessThatDoesNotRun) {
    const Outcome stKill = Ctl({"kill", "gulm"});
    EXPECT_EQ(stKill.iExit, 1);
    EXPECT_EQ(stKill.acErr, "gatewayctl: gulm is not running\n");
    const Outcome stWait = Ctl({"wait", "--timeout", "0"});
    EXPECT_EQ(stWait.iExit, 1);
    EXPECT_TRUE(Contains(stWait.acErr, "no answer from gulm, app_m")) << stWait.acErr;
}

TEST_F(RunningGatewayTest, WaitSucceedsWhenAllNamedAnswer) {
    EXPECT_EQ(CtlOk({"wait", "osgi_proxy", "cwmp"}), "");
}

TEST_F(GatewayTest, WapGatewayEndsCleanlyOnSigterm) {
    CtlOk({"start", "cwmp", "--timeout", "60"});  // brings the home
    const pid_t iPid = Launch(GatewayWords("osgi_proxy"));
    ASSERT_GT(iPid, 0);
    CtlOk({"wait", "osgi_proxy", "--timeout", "60"});
    EXPECT_EQ(kill(iPid, SIGTERM), 0);
    EXPECT_EQ(Await(iPid), 0);
}

TEST_F(RunningGatewayTest, SecondProcessOfTheSameNameIsRefused) {
    const Outcome stSecond = Run(GatewayWords("osgi_proxy"));
    EXPECT_EQ(stSecond.iExit, 1);
    EXPECT_TRUE(Contains(stSecond.acErr, "already runs")) << stSecond.acErr;
    EXPECT_EQ(Query("osgi_proxy", 0x47209032, 18).uiStatus, 0u);
}

TEST_F(GatewayTest, WapGatewaySaysHowItIsUsed) {
    Outcome stOutcome = Run(GatewayWords("--help"));
    EXPECT_EQ(stOutcome.iExit, 0);
    EXPECT_TRUE(Contains(stOutcome.acOut, "Usage: wap_gateway PROCESS"));
    stOutcome = Run(GatewayWords("nobody"));
    EXPECT_EQ(stOutcome.iExit, 2);
    EXPECT_TRUE(Contains(stOutcome.acErr, "no process \"nobody\"")) << stOutcome.acErr;
}

TEST_F(RunningGatewayTest, GetPrintsTextsNumbersAndGroups) {
    CtlOk({"start", "gulm", "app_m", "usb_mngt", "tarn", "igmp", "--timeout", "60"});
    EXPECT_EQ(CtlOk({"get", "device.vendor"}), "SimHome\n");
    EXPECT_EQ(CtlOk({"get", "device.flashKiB"}), "262144\n");
    EXPECT_EQ(CtlOk({"get", "identity"}),
              "{\n  \"manufacturerOui\": \"02A1B2\",\n"
              "  \"serialNumber\": \"SIM0000000001001\"\n}\n");
    const std::string acAll = CtlOk({"get"});
    EXPECT_TRUE(Contains(acAll, "\"device\": {\n    \"vendor\": \"SimHome\"")) << acAll;
    EXPECT_TRUE(Contains(acAll, "\"identity\": {")) << acAll;
    EXPECT_TRUE(Contains(acAll, "\"hosts\": [")) << acAll;
}

TEST_F(RunningGatewayTest, GetOfEverythingTellsWhatIsMissing) {
    CtlOk({"kill", "osgi_proxy"});
    const Outcome stGet = Ctl({"get"});
    EXPECT_EQ(stGet.iExit, 1);
    EXPECT_TRUE(Contains(stGet.acOut, "\"identity\"")) << stGet.acOut;
    EXPECT_FALSE(Contains(stGet.acOut, "\"device\"")) << stGet.acOut;
    EXPECT_TRUE(Contains(stGet.acErr, "gatewayctl start osgi_proxy")) << stGet.acErr;
}

TEST_F(RunningGatewayTest, WrongPathsAndValuesAreExplained) {
    CtlOk({"start", "gulm", "app_m", "usb_mngt", "tarn", "igmp", "--timeout", "60"});
    const struct {
        std::vector<std::string> astArguments;
        const char *pcSays;
    } astCases[] = {
        {{"get", "nothing"}, "the home has no \"nothing\"; it has lan, wan, "},
        {{"get", "device.nothing"}, "device has no \"nothing\"; it has vendor, "},
        {{"get", "device.vendor.x"}, "device.vendor is a single value"},
        {{"get", "device."}, "device has no \"\""},
        {{"set", "device.nothing", "1"}, "device has no \"nothing\""},
        {{"set", "device", "1"}, "device is no single value"},
        {{"set", "device.ramKiB", "much"}, "from 0 to 4294967295, not \"much\""},
        {{"set", "device.ramKiB", ""}, "not \"\""},
        {{"set", "device.ramKiB", "4294967296"}, "not \"4294967296\""},
        {{"set", "device.ramKiB", "12 "}, "not \"12 \""},
        {{"set", "device.ramKiB", "--", "-1"}, "not \"-1\""},
    };
    const std::string acBefore = CtlOk({"get"});
    for (const auto &stCase : astCases) {
        const Outcome stOutcome = Ctl(stCase.astArguments);
        EXPECT_EQ(stOutcome.iExit, 1) << stCase.pcSays;
        EXPECT_EQ(stOutcome.acOut, "") << stCase.pcSays;
        EXPECT_TRUE(Contains(stOutcome.acErr, stCase.pcSays)) << stOutcome.acErr;
    }
    EXPECT_EQ(CtlOk({"get"}), acBefore);
}

TEST_F(RunningGatewayTest, SetTakesAnyText) {
    for (const char *pcText : {"", "two words", "\"quoted\" \\ {}", "-dashed", "123",
                               "\xC3\xBC\xE2\x82\xAC", "line\nbreak"}) {
        CtlOk({"set", "device.password", "--", pcText});
        EXPECT_EQ(CtlOk({"get", "device.password"}), std::string(pcText) + "\n");
    }
}

TEST_F(RunningGatewayTest, ChangesSurviveCrashAndRestart) {
    CtlOk({"set", "device.vendor", "Kept"});
    CtlOk({"kill", "osgi_proxy"});
    CtlOk({"start", "osgi_proxy", "--timeout", "60"});
    EXPECT_EQ(CtlOk({"get", "device.vendor"}), "Kept\n");
    CtlOk({"stop"});
    CtlOk({"start", "osgi_proxy", "--timeout", "60"});
    EXPECT_EQ(CtlOk({"get", "device.vendor"}), "Kept\n");
    EXPECT_EQ(Query("osgi_proxy", 0x47209035, 336).acBytes.substr(75, 65), Field("Kept", 65));
}

TEST_F(RunningGatewayTest, WhatAKilledProcessHadHalfWrittenGoesWithTheNextStart) {
    const auto fnIsThere = [this](const std::string &acName) {
        return access((m_acDir + "/" + acName).c_str(), F_OK) == 0;
    };
    CtlOk({"set", "device.vendor", "Kept"});
    CtlOk({"kill", "osgi_proxy"});
    WriteFile("state/osgi_proxy.json.4711.tmp", "{\"device\": {\"ven");
    WriteFile("state/osgi_proxy.json.old.tmp", "of somebody else");
    WriteFile("state/cwmp.json.4711.tmp", "of a process that runs, or is about to be replaced");
    WriteFile("state/home.json.4711.tmp", "{");
    WriteFile("gateway.start.4711.tmp", "1");
    CtlOk({"start", "osgi_proxy", "--timeout", "60"});
    EXPECT_FALSE(fnIsThere("state/osgi_proxy.json.4711.tmp"));
    EXPECT_TRUE(fnIsThere("state/osgi_proxy.json.old.tmp"));
    EXPECT_TRUE(fnIsThere("state/cwmp.json.4711.tmp"));
    EXPECT_EQ(CtlOk({"get", "device.vendor"}), "Kept\n");
    CtlOk({"stop"});
    for (const char *pcName :
         {"state/cwmp.json.4711.tmp", "state/home.json.4711.tmp", "gateway.start.4711.tmp"}) {
        EXPECT_FALSE(fnIsThere(pcName)) << pcName;
    }
}

TEST_F(RunningGatewayTest, FreshStartsOverWithTheShippedHome) {
    CtlOk({"set", "device.vendor", "Forgotten"});
    const Outcome stRefused = Ctl({"start", "--fresh"});
    EXPECT_EQ(stRefused.iExit, 1);
    EXPECT_TRUE(Contains(stRefused.acErr, "gatewayctl stop")) << stRefused.acErr;
    EXPECT_EQ(CtlOk({"get", "device.vendor"}), "Forgotten\n");
    CtlOk({"stop"});
    CtlOk({"start", "osgi_proxy", "--fresh", "--timeout", "60"});
    EXPECT_EQ(CtlOk({"get", "device.vendor"}), "SimHome\n");
}

TEST_F(RunningGatewayTest, ChangeThatCannotBeStoredIsNotMade) {
    EXPECT_EQ(Await(Launch({"mv", m_acDir + "/state", m_acDir + "/moved"})), 0);
    const Outcome stSet = Ctl({"set", "device.vendor", "Lost"});
    EXPECT_EQ(stSet.iExit, 1);
    EXPECT_TRUE(Contains(stSet.acErr, "osgi_proxy.json")) << stSet.acErr;
    EXPECT_EQ(CtlOk({"get", "device.vendor"}), "SimHome\n");
}

TEST_F(GatewayTest, HomeOfOnesOwn) {
    WriteFile("own.json",
              "{\"identity\": {\"manufacturerOui\": \"02FFFF\", \"serialNumber\": \"7\"}}");
    CtlOk({"start", "cwmp", "--home", m_acDir + "/own.json", "--timeout", "60"});
    EXPECT_EQ(CtlOk({"get", "identity.manufacturerOui"}), "02FFFF\n");
    // It has no section "device".
    const Outcome stStart = Ctl({"start", "osgi_proxy", "--timeout", "60"});
    EXPECT_EQ(stStart.iExit, 1);
    EXPECT_TRUE(Contains(stStart.acErr, "osgi_proxy ended at its start")) << stStart.acErr;
    EXPECT_TRUE(Contains(stStart.acErr, "has no section \"device\"")) << stStart.acErr;
    CtlOk({"stop"});
    // Values that an older state lacks come from the shipped home; the others stay.
    CtlOk({"start", "cwmp", "osgi_proxy", "--timeout", "60"});
    EXPECT_EQ(CtlOk({"get", "identity.manufacturerOui"}), "02FFFF\n");
    EXPECT_EQ(CtlOk({"get", "device.vendor"}), "SimHome\n");
}

TEST_F(GatewayTest, DamagedFilesAreNamed) {
    WriteFile("own.json", "{\"identity\": ");
    Outcome stStart = Ctl({"start", "cwmp", "--home", m_acDir + "/own.json"});
    EXPECT_EQ(stStart.iExit, 1);
    EXPECT_TRUE(Contains(stStart.acErr, m_acDir + "/own.json is no valid JSON")) << stStart.acErr;
    stStart = Ctl({"start", "cwmp", "--home", m_acDir + "/missing.json"});
    EXPECT_EQ(stStart.iExit, 1);
    EXPECT_TRUE(Contains(stStart.acErr, "there is no home " + m_acDir + "/missing.json"));
    CtlOk({"start", "cwmp", "--timeout", "60"});
    CtlOk({"stop"});
    for (const char *pcDamaged : {"", "{} {}", "[]", "{\"identity\": tru", "null"}) {
        WriteFile("state/cwmp.json", pcDamaged);
        stStart = Ctl({"start", "cwmp", "--timeout", "60"});
        EXPECT_EQ(stStart.iExit, 1) << pcDamaged;
        EXPECT_TRUE(Contains(stStart.acErr, "state/cwmp.json")) << stStart.acErr;
    }
}

TEST_F(GatewayTest, WrongUseIsExplainedAndExitsWithTwo) {
    const struct {
        std::vector<std::string> astArguments;
        const char *pcSays;
    } astCases[] = {
        {{}, "say what to do"},
        {{"dance"}, "there is no verb \"dance\""},
        {{"status", "extra"}, "extra"},
        {{"kill"}, "PROCESS is required"},
        {{"kill", "nobody"}, "the gateway has no process \"nobody\"; it has gulm, app_m, "},
        {{"start", "nobody"}, "the gateway has no process \"nobody\""},
        {{"set", "device.vendor"}, "VALUE is required"},
        {{"fault", "cwmp"}, "RPC is required"},
        {{"fault", "cwmp", "1"}, "say what it does"},
        {{"fault", "cwmp", "some", "--drop"}, "\"some\" is no RPC id"},
        {{"fault", "cwmp", "0x100000000", "--drop"}, "is no RPC id"},
        {{"fault", "cwmp", "1", "--drop", "--garbage"}, "--garbage"},
        {{"fault", "cwmp", "1", "--code", "0"}, "\"0\" is no number from 1 to"},
        {{"fault", "cwmp", "1", "--code", "x"}, "\"x\" is no number"},
        {{"fault", "cwmp", "1", "--truncate", "131073"}, "from 0 to 131072"},
        {{"fault", "cwmp", "1", "--fill", "256"}, "from 0 to 255"},
        {{"fault", "cwmp", "1", "--delay", "0"}, "from 1 to 3600000"},
        {{"fault", "cwmp", "1", "--drop", "--times", "0"}, "from 1 to 4294967295"},
        {{"wait", "--timeout", "-1"}, "from 0 to 3600"},
    };
    for (const auto &stCase : astCases) {
        const Outcome stOutcome = Ctl(stCase.astArguments);
        EXPECT_EQ(stOutcome.iExit, 2) << stCase.pcSays;
        EXPECT_EQ(stOutcome.acOut, "") << stCase.pcSays;
        EXPECT_TRUE(Contains(stOutcome.acErr, stCase.pcSays)) << stOutcome.acErr;
        EXPECT_TRUE(Contains(stOutcome.acErr, "--help")) << stOutcome.acErr;
    }
}

TEST_F(RunningGatewayTest, SomeFaultsAreRefused) {
    Outcome stFault = Ctl({"fault", "cwmp", "0x7F000001", "--drop"});
    EXPECT_EQ(stFault.iExit, 1);
    EXPECT_TRUE(Contains(stFault.acErr, "can't be given a fault")) << stFault.acErr;
    stFault = Ctl({"fault", "gulm", "1", "--drop"});
    EXPECT_EQ(stFault.iExit, 1);
    EXPECT_TRUE(Contains(stFault.acErr, "gatewayctl start gulm")) << stFault.acErr;
}

TEST_F(RunningGatewayTest, FaultsAreListed) {
    CtlOk({"fault", "cwmp", "any", "--drop", "--delay", "5"});
    CtlOk({"fault", "cwmp", "0x10", "--truncate", "3", "--times", "4"});
    CtlOk({"fault", "osgi_proxy", "16", "--delay", "6"});
    EXPECT_EQ(CtlOk({"faults"}),
              "PROCESS      RPC          FAULT                            REQUESTS LEFT\n"
              "osgi_proxy   0x00000010   late by 6 ms                     all\n"
              "cwmp         any          drop after 5 ms                  all\n"
              "cwmp         0x00000010   truncate 3                       4\n");
    EXPECT_FALSE(Contains(CtlOk({"faults", "osgi_proxy"}), "cwmp"));
}

TEST_F(GatewayTest, EveryVerbHasHelp) {
    const std::string acHelp = CtlOk({"--help"});
    EXPECT_TRUE(Contains(acHelp, "It is a simulator."));
    for (const char *pcVerb :
         {"status", "start", "stop", "kill", "wait", "get", "set", "fault", "faults", "clear"}) {
        EXPECT_TRUE(Contains(acHelp, std::string("  ") + pcVerb + " ")) << pcVerb;
        EXPECT_TRUE(Contains(CtlOk({pcVerb, "--help"}), std::string("Usage: gatewayctl ") + pcVerb))
            << pcVerb;
    }
}

TEST_F(GatewayTest, DirectoryIsCheckedBeforeItIsUsed) {
    unsetenv("VT_RUNTIME_DIR");
    Outcome stOutcome = Ctl({"status"});
    EXPECT_EQ(stOutcome.iExit, 1);
    EXPECT_TRUE(Contains(stOutcome.acErr, "--dir")) << stOutcome.acErr;
    // One that is not there yet is made, with its parents, for this user alone.
    const std::string acNew = m_acDir + "/a/b";
    EXPECT_TRUE(Contains(CtlOk({"start", "cwmp", "--dir", acNew, "--timeout", "60"}), acNew));
    EXPECT_TRUE(Contains(CtlOk({"get", "identity.serialNumber", "--dir", acNew}), "SIM"));
    CtlOk({"--dir", acNew, "stop"});
    stOutcome = Ctl({"start", "--dir", "/tmp"});
    EXPECT_EQ(stOutcome.iExit, 1);
    EXPECT_TRUE(Contains(stOutcome.acErr, "/tmp")) << stOutcome.acErr;
    stOutcome = Ctl({"start", "--dir", m_acDir + "/" + std::string(100, 'd')});
    EXPECT_EQ(stOutcome.iExit, 1);
    EXPECT_TRUE(Contains(stOutcome.acErr, "too long")) << stOutcome.acErr;
    setenv("VT_RUNTIME_DIR", m_acDir.c_str(), 1);
}

TEST_F(GatewayTest, ProgramCanBeNamed) {
    const Outcome stStart = Ctl({"start", "cwmp", "--program", m_acDir + "/none"});
    EXPECT_EQ(stStart.iExit, 1);
    EXPECT_TRUE(Contains(stStart.acErr, "WAP_GATEWAY_PROGRAM")) << stStart.acErr;
    const std::vector<std::string> astWords = GatewayWords("cwmp");
    setenv("WAP_GATEWAY_PROGRAM", astWords[astWords.size() - 2].c_str(), 1);
    CtlOk({"start", "cwmp", "--timeout", "60"});
}

}  // namespace wap::test

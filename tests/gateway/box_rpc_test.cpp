// The box itself: lights, voice lines and the reset, byte for byte.
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>

#include "gateway_fixture.h"
#include "vt_ssp_host.h"

namespace wap::test {

namespace {

class BoxTest : public GatewayTest {
  protected:
    void SetUp() override {
        GatewayTest::SetUp();
        CtlOk({"start", "osgi_proxy", "app_m", "--timeout", "60"});
    }

    static uint32_t SwitchLeds(uint32_t uiSwitch) {
        return Call("app_m", 0x471030D3, Word(uiSwitch), 4).uiStatus;
    }
    static uint32_t Subscribe(const std::string &acBundle) {
        return Call("osgi_proxy", 0x47209062, Field(acBundle, 128), 4).uiStatus;
    }
    static uint32_t Unsubscribe(const std::string &acBundle) {
        return Call("osgi_proxy", 0x47209063, Field(acBundle, 128), 4).uiStatus;
    }
    static std::string VoiceLines() { return TextIn(Query("app_m", 0x47209061, 512)); }
};

bool Contains(const std::string &acText, const char *pcPart) {
    return acText.find(pcPart) != std::string::npos;
}

/// The gateway's up-time; a large number while it can't be asked.
uint32_t UpTime() {
    const RpcReply stReply = Query("osgi_proxy", 0x47209036, 4, 2000);
    return stReply.uiStatus == 0 ? WordAt(stReply.acBytes, 0) : UINT32_MAX;
}

}  // namespace

TEST_F(BoxTest, LightsAreSwitched) {
    EXPECT_EQ(CtlOk({"leds"}), "on\n");
    EXPECT_EQ(SwitchLeds(0), 0u);
    EXPECT_EQ(CtlOk({"leds"}), "off\n");
    EXPECT_EQ(SwitchLeds(2), kRefused);
    EXPECT_EQ(CtlOk({"leds"}), "off\n");
    EXPECT_EQ(SwitchLeds(1), 0u);
    EXPECT_EQ(CtlOk({"leds"}), "on\n");
    CtlOk({"leds", "off"});
    EXPECT_EQ(CtlOk({"leds"}), "off\n");
    EXPECT_EQ(Ctl({"leds", "blue"}).iExit, 2);
}

TEST_F(BoxTest, VoiceLinesTellTheirState) {
    EXPECT_EQ(VoiceLines(),
              R"({"Result":0,"List":[{"Name":"POTS1","Number":"5550101","Status":"idle"},)"
              R"({"Name":"POTS2","Number":"5550102","Status":"idle"}]})");
    CtlOk({"voice", "POTS2", "ringing"});
    EXPECT_NE(VoiceLines().find(R"("Number":"5550102","Status":"ringing"}]})"), std::string::npos);
    EXPECT_EQ(CtlOk({"voice"}),
              "LINE     NUMBER           STATE\n"
              "POTS1    5550101          idle\n"
              "POTS2    5550102          ringing\n");
    EXPECT_EQ(Call("app_m", 0x47209061, Word(1), 512).uiStatus, uint32_t{VT_HOST_ERR_ARGUMENT});
}

TEST_F(BoxTest, WrongVoiceVerbsAreExplained) {
    EXPECT_EQ(Ctl({"voice", "POTS1", "singing"}).iExit, 2);
    const Outcome stNoState = Ctl({"voice", "POTS1"});
    EXPECT_EQ(stNoState.iExit, 1);
    EXPECT_NE(stNoState.acErr.find("gatewayctl voice POTS1 STATE"), std::string::npos);
    const Outcome stUnknown = Ctl({"voice", "POTS9", "idle"});
    EXPECT_EQ(stUnknown.iExit, 1);
    EXPECT_NE(stUnknown.acErr.find("POTS9"), std::string::npos);
}

TEST_F(BoxTest, VoiceLinesThatDoNotFitAreNotCut) {
    CtlOk({"stop", "app_m", "--timeout", "60"});
    std::string acState = ReadFile("state/app_m.json");
    const size_t uiAt = acState.find("5550101");
    ASSERT_NE(uiAt, std::string::npos);
    acState.replace(uiAt, 7, std::string(600, '5'));
    WriteFile("state/app_m.json", acState);
    CtlOk({"start", "app_m", "--timeout", "60"});
    EXPECT_EQ(Query("app_m", 0x47209061, 512).uiStatus, uint32_t{VT_HOST_ERR_TOO_LONG});
}

TEST_F(BoxTest, BundlesSubscribeToVoiceEvents) {
    EXPECT_EQ(Subscribe("org.example.alarm"), 0u);
    EXPECT_EQ(Subscribe("org.example.alarm"), 0u) << "again";
    EXPECT_EQ(Subscribe(std::string(128, 'b')), 0u) << "a name without a zero";
    EXPECT_NE(CtlOk({"voice"}).find("events go to org.example.alarm\nevents go to " +
                                    std::string(128, 'b') + "\n"),
              std::string::npos);
    CtlOk({"kill", "osgi_proxy"});
    CtlOk({"start", "osgi_proxy", "--timeout", "60"});
    EXPECT_EQ(CountOf(CtlOk({"voice"}), "events go to "), 2u);
    EXPECT_EQ(Unsubscribe("org.example.alarm"), 0u);
    EXPECT_EQ(Unsubscribe("org.example.alarm"), kRefused) << "is none any more";
    EXPECT_EQ(Subscribe(""), kRefused);
    EXPECT_EQ(CtlOk({"voice"}).find("org.example.alarm"), std::string::npos);
}

TEST_F(BoxTest, SubscribersAreLimited) {
    for (int iBundle = 0; iBundle < 64; ++iBundle) {
        ASSERT_EQ(Subscribe("bundle" + std::to_string(iBundle)), 0u);
    }
    EXPECT_EQ(Subscribe("bundle64"), kTableFull);
}

TEST_F(BoxTest, ResetRestartsEverythingAndTheUpTime) {
    CtlOk({"leds", "off"});
    EXPECT_GE(UpTime(), 86400u);
    EXPECT_EQ(Query("osgi_proxy", 0x47209051, 4).uiStatus, 0u);
    const auto stEnd = std::chrono::steady_clock::now() + std::chrono::seconds(120);
    while (Ctl({"status"}).iExit != 0 && std::chrono::steady_clock::now() < stEnd) {
        usleep(50000);
    }
    EXPECT_EQ(Ctl({"status"}).iExit, 0) << "all seven run, not only those that did";
    while (!Contains(ReadFile("log/reset.out"), ": restarted\n") &&
           std::chrono::steady_clock::now() < stEnd) {
        usleep(50000);
    }
    EXPECT_TRUE(Contains(ReadFile("log/reset.out"), ": restarted\n"));
    EXPECT_LT(UpTime(), 86400u);
    EXPECT_EQ(CtlOk({"leds"}), "off\n") << "the home stays";
}

TEST_F(BoxTest, RestartStartsWhatIsDown) {
    CtlOk({"set", "device.vendor", "Other Home"});
    CtlOk({"kill", "app_m"});
    EXPECT_EQ(CtlOk({"restart", "--timeout", "60"}),
              "Simulated gateway in " + m_acDir + ": restarted\n");
    EXPECT_EQ(Ctl({"status"}).iExit, 0);
    EXPECT_EQ(CtlOk({"get", "device.vendor"}), "Other Home\n");
    EXPECT_GE(UpTime(), 86400u) << "only a reset forgets the time before the start";
}

TEST_F(BoxTest, RestartKillsWhatHangs) {
    ASSERT_EQ(kill(static_cast<pid_t>(std::stol(ReadFile("app_m.pid"))), SIGSTOP), 0);
    CtlOk({"restart", "--timeout", "60"});
    EXPECT_EQ(Ctl({"status"}).iExit, 0);
}

TEST_F(BoxTest, RestartEndsNothingWithoutAProgramToStart) {
    const Outcome stRestart = Ctl({"restart", "--program", "/nowhere/wap_gateway"});
    EXPECT_EQ(stRestart.iExit, 1);
    EXPECT_TRUE(Contains(stRestart.acErr, "there is no program /nowhere/wap_gateway"));
    CtlOk({"wait", "osgi_proxy", "app_m"});
}

TEST_F(GatewayTest, ResetStartsTheProgramThatRan) {
    std::string acProgram = GatewayWords("osgi_proxy").end()[-2];
    const std::string acLink = m_acDir + "/another_name";
    ASSERT_EQ(symlink(acProgram.c_str(), acLink.c_str()), 0);
    // As it would be after an installation elsewhere: gatewayctl has no wap_gateway beside it.
    CtlOk({"start", "osgi_proxy", "--program", acLink, "--timeout", "60"});
    ASSERT_EQ(unlink(acLink.c_str()), 0);
    EXPECT_EQ(Query("osgi_proxy", 0x47209051, 4).uiStatus, 0u);
    const auto stEnd = std::chrono::steady_clock::now() + std::chrono::seconds(120);
    while (!Contains(ReadFile("log/reset.out"), ": restarted\n") &&
           std::chrono::steady_clock::now() < stEnd) {
        usleep(50000);
    }
    EXPECT_TRUE(Contains(ReadFile("log/reset.out"), ": restarted\n"));
    EXPECT_LT(UpTime(), 86400u);
}

/// A proxy that gatewayctl has not started, with a controller of the test's.
class OwnProxyTest : public GatewayTest {
  protected:
    void LaunchWith(const char *pcController) {
        CtlOk({"start", "osgi_proxy", "--timeout", "60"});
        CtlOk({"stop", "osgi_proxy", "--timeout", "60"});
        setenv("WAP_GATEWAYCTL", pcController, 1);
        m_iProxy = Launch(GatewayWords("osgi_proxy"));
        unsetenv("WAP_GATEWAYCTL");
        CtlOk({"wait", "osgi_proxy", "--timeout", "60"});
    }
    void ExpectRefusedReset() {
        EXPECT_EQ(Query("osgi_proxy", 0x47209051, 4).uiStatus, uint32_t{VT_HOST_ERR_DATA});
        EXPECT_GE(UpTime(), 86400u);
        EXPECT_EQ(CtlOk({"get", "device.upTimeBase"}), "86400\n");
        CtlOk({"stop", "osgi_proxy", "--timeout", "60"});
        EXPECT_EQ(Await(m_iProxy), 0);
    }

    pid_t m_iProxy = -1;
};

TEST_F(GatewayTest, StartThatFailsEndsWhereChildrenAreNotWaitedFor) {
    // Without an end of its own it would take the whole test's time.
    std::vector<std::string> astWords = {"/usr/bin/timeout", "--kill-after=5", "100",
                                         "/usr/bin/env", "--ignore-signal=CHLD"};
    for (const std::string &acWord :
         CtlWords({"start", "tarn", "--program", "/bin/false", "--timeout", "60"})) {
        astWords.push_back(acWord);
    }
    const Outcome stStart = Run(astWords);
    EXPECT_EQ(stStart.iExit, 1);
    EXPECT_TRUE(Contains(stStart.acErr, "tarn ended at its start")) << stStart.acErr;
}

TEST_F(OwnProxyTest, ResetThatFailsLeavesNoTraceOfItsProgram) {
    LaunchWith("/bin/false");
    EXPECT_EQ(Query("osgi_proxy", 0x47209051, 4).uiStatus, 0u);
    const std::string acIsChild =
        "grep -qs '^PPid:[[:space:]]*" + std::to_string(m_iProxy) + "$' /proc/[0-9]*/status";
    EXPECT_EQ(Run({"/bin/sh", "-c",
                   "i=0; while " + acIsChild +
                       "; do i=$((i+1)); [ $i -lt 400 ] || exit 1; sleep 0.05; done"})
                  .iExit,
              0);
    CtlOk({"stop", "osgi_proxy", "--timeout", "60"});
    EXPECT_EQ(Await(m_iProxy), 0);
}

TEST_F(OwnProxyTest, ResetNeedsAController) {
    LaunchWith("");
    ExpectRefusedReset();
}

TEST_F(OwnProxyTest, ResetWithAControllerThatIsGoneChangesNothing) {
    if (getenv("WAP_EMULATOR") != nullptr && *getenv("WAP_EMULATOR") != '\0') {
        GTEST_SKIP() << "the emulator starts, and finds no program";
    }
    LaunchWith("/nowhere/gatewayctl");
    ExpectRefusedReset();
}

}  // namespace wap::test

// Captures: what Debian's own reader says of them, and that they can be sent again.
#include <sys/ipc.h>
#include <sys/shm.h>

#include <chrono>
#include <sstream>
#include <thread>

#include "monitor/capture.h"
#include "tap_events.h"
#include "vt_ssp_basic.h"
#include "watcher.h"

namespace wap::test {

using namespace std::string_literals;

namespace {

class ReplayTest : public WatchTest {
  protected:
    void SetUp() override {
        WatchTest::SetUp();
        CtlOk({"start", "gulm", "app_m", "tarn", "--timeout", "60"});
    }

    std::string File() const { return m_acDir + "/calls.pcapng"; }

    /// Captures what happens meanwhile; returns what the monitor printed.
    template <class Action>
    std::string Capture(const Action &fnAction, std::vector<std::string> astMore = {}) {
        astMore.insert(astMore.end(), {"--brief", "--capture", File()});
        const pid_t iWatch = Watch("watch", astMore);
        fnAction();
        EndWatch("watch", iWatch);
        return Out("watch");
    }

    /// A session that changes the home, with a call that fails, blocks both ways and a message.
    void Session() const {
        EXPECT_EQ(Call("osgi_proxy", 0x4720909E, Field("Captured", 257), 4).uiStatus, 0u);
        EXPECT_EQ(AskForMac().uiStatus, 0u);
        EXPECT_EQ(Call("gulm", 0x48304173, NewBlock("10.0.0.1\0"s) + Field("org.example.a", 256), 4)
                      .uiStatus,
                  0u);
        EXPECT_EQ(BlockOf(Query("gulm", 0x483041A5, 20), 8), "org.example.a[\"10.0.0.1\"]\0"s);
        EXPECT_EQ(Call("gulm", 0x48304174, NewBlock("10.0.0.9\0"s) + Field("org.example.b", 256), 4)
                      .uiStatus,
                  kRefused);
        const std::string acNotice = NewBlock('\1' + Field("org.example.c", 128) + "10.0.0.2\0"s);
        EXPECT_EQ(VT_MSG_AsyncSendData("app_m", 39, acNotice.data(), 12), 0u);
        // Processes tell independently of each other.
        for (const char *pcCall : {"-> app_m       SetGatewayName", "-> osgi_proxy  SetGatewayName",
                                   "GetDeviceMac", "AddMonitoredAddresses", "GetMonitoredAddresses",
                                   "DelMonitoredAddresses", "TrafficMonitorChanged"}) {
            Await("watch.out", pcCall);
        }
    }

    static uint32_t Register(bool bAdd, const std::string &acBundle) {
        return Call("gulm", bAdd ? 0x48304173 : 0x48304174,
                    NewBlock("10.0.0.1\0"s) + Field(acBundle, 256), 4)
            .uiStatus;
    }

    /// A call whose caller makes the room for the answer, under a key.
    struct SegmentCall {
        uint32_t uiRpcId;
        int32_t iKey;
    };
    static constexpr SegmentCall kFtp = {0x47209038, 0xD2036};
    static constexpr SegmentCall kSamba = {0x4720903D, 0xD2038};

    static int32_t MakeSegment(const SegmentCall &stCall, uint32_t uiSize) {
        const int32_t iId = VT_OS_ShmGet(stCall.iKey, uiSize, IPC_CREAT | IPC_EXCL | 0600);
        EXPECT_GE(iId, 0);
        return iId;
    }
    /// Makes a segment, has it filled and removes it; returns the status.
    static uint32_t Fill(const SegmentCall &stCall, uint32_t uiSize, uint32_t uiClaimed) {
        const int32_t iId = MakeSegment(stCall, uiSize);
        const uint32_t uiStatus = Call("osgi_proxy", stCall.uiRpcId, Word(uiClaimed), 4).uiStatus;
        EXPECT_EQ(VT_OS_ShmCtl(iId, IPC_RMID, nullptr), 0);
        return uiStatus;
    }
    std::string Name() const { return CtlOk({"get", "network.gatewayName"}); }
    std::string Blocks() const { return Run({"ls", m_acDir + "/vdata"}).acOut; }
};

}  // namespace

TEST_F(ReplayTest, CapturesCanBeReadByOthers) {
    const std::string acLines = Capture([this] { Session(); });
    const Outcome stRead =
        Run({"tshark", "-n", "-r", File(), "-T", "fields", "-e", "frame.comment"});
    EXPECT_EQ(stRead.iExit, 0) << stRead.acErr;
    EXPECT_EQ(stRead.acOut, acLines) << "each packet says what the monitor did";
    EXPECT_EQ(CountOf(acLines, "\n"), 7u) << acLines;
    const Outcome stColumns = Run({"tshark", "-n", "-r", File(), "-T", "fields", "-e",
                                   "_ws.col.Protocol", "-e", "data.data", "-c", "1"});
    EXPECT_EQ(stColumns.acOut.substr(0, 15), "VT-RPC\t56544d31") << stColumns.acOut;
    EXPECT_NE(Run({"capinfos", "-E", "-c", File()}).acOut.find("Wireshark Upper PDU export"),
              std::string::npos);
}

TEST_F(ReplayTest, SendsASessionAgain) {
    Capture([this] { Session(); });
    CtlOk({"set", "network.gatewayName", "Another"});
    EXPECT_EQ(Register(false, "org.example.a"), 0u);
    const std::string acOut = CtlOk({"replay", File(), "--fast"});
    EXPECT_EQ(
        WithoutTimes(acOut),
        "osgi_proxy  SetGatewayName         0x4720909E TOOK  ok\n"
        "osgi_proxy  GetDeviceMac           0x47209032 TOOK  ok\n"
        "gulm        AddMonitoredAddresses  0x48304173 TOOK  ok\n"
        "gulm        GetMonitoredAddresses  0x483041A5 TOOK  ok\n"
        "gulm        DelMonitoredAddresses  0x48304174 TOOK  0xF7300001 refused\n"
        "app_m       TrafficMonitorChanged  39 TOOK  ok\n"
        "6 sent: 6 ended as before, 0 otherwise; 1 left out, which the gateway sends itself\n");
    EXPECT_EQ(Name(), "Captured\n");
    EXPECT_NE(CtlOk({"get", "monitoring"}).find("\"org.example.a\""), std::string::npos);
    EXPECT_TRUE(Soon([this] {
        return CtlOk({"get", "monitorNotices"}).find("\"added\": 2") != std::string::npos;
    }));
    EXPECT_TRUE(Soon([this] { return Blocks().empty(); })) << Blocks();
}

TEST_F(ReplayTest, TellsWhatDiffers) {
    Capture([this] { Session(); });
    CtlOk({"fault", "osgi_proxy", "0x47209032", "--code", "5"});
    const Outcome stReplay = Ctl({"replay", File(), "--fast", "--process", "osgi_proxy"});
    EXPECT_EQ(stReplay.iExit, 1);
    EXPECT_EQ(
        WithoutTimes(stReplay.acOut),
        "osgi_proxy  SetGatewayName         0x4720909E TOOK  ok\n"
        "osgi_proxy  GetDeviceMac           0x47209032 TOOK  0x00000005  (it was ok)\n"
        "2 sent: 1 ended as before, 1 otherwise; 1 left out, which the gateway sends itself\n");
    CtlOk({"stop", "osgi_proxy"});
    const Outcome stGone = Ctl({"replay", File(), "--fast", "--rpc", "GetDeviceMac"});
    EXPECT_EQ(stGone.iExit, 1);
    EXPECT_NE(stGone.acOut.find("0xF7000003 no receiver  (it was ok)\n"), std::string::npos)
        << stGone.acOut;
}

TEST_F(ReplayTest, DryRunSendsNothing) {
    Capture([this] { Session(); });
    CtlOk({"stop"});
    const std::string acOut = CtlOk({"replay", File(), "--dry-run", "--rpc", "*Monitored*"});
    EXPECT_EQ(WithoutTimes(acOut),
              "gulm        AddMonitoredAddresses  0x48304173 TOOK  was ok\n"
              "gulm        GetMonitoredAddresses  0x483041A5 TOOK  was ok\n"
              "gulm        DelMonitoredAddresses  0x48304174 TOOK  was 0xF7300001 refused\n"
              "3 to send\n");
}

TEST_F(ReplayTest, SecretsThatAreWrittenOverAreSentSo) {
    const auto fnSet = [this] {
        EXPECT_EQ(Call("osgi_proxy", 0x47209044, Field("Sesame-88", 128), 4).uiStatus, 0u);
        EXPECT_NE(Call("osgi_proxy", 0x12345678, "Sesame-99", 4).uiStatus, 0u);
        // The process asks another one, which tells independently of it.
        EXPECT_TRUE(Soon([this] { return CountOf(Out("watch"), "SetHttpPassword") == 2; }));
        Await("watch.out", "0x12345678");
    };
    Capture(fnSet);
    const Outcome stMasked = Ctl({"replay", File(), "--fast"});
    EXPECT_EQ(stMasked.iExit, 1);
    EXPECT_EQ(WithoutTimes(stMasked.acOut),
              "osgi_proxy  SetHttpPassword        0x47209044 TOOK  ok  [secrets are written over]\n"
              "osgi_proxy  (unknown)              0x12345678 TOOK  not sent: the file does not hold"
              " its whole request  [secrets are written over]\n"
              "1 sent: 1 ended as before, 0 otherwise; 1 can't be sent; 1 left out, which the"
              " gateway sends itself\n"
              "2 with secrets that are written over in the file\n");
    EXPECT_EQ(stMasked.acErr, "");
    Capture(fnSet, {"--with-secrets"});
    const std::string acOut = CtlOk({"replay", File(), "--fast"});
    EXPECT_NE(acOut.find("2 sent: 2 ended as before"), std::string::npos) << acOut;
    EXPECT_EQ(acOut.find("written over"), std::string::npos) << acOut;
}

TEST_F(ReplayTest, MakesTheSegmentsThatCallersMake) {
    CtlOk({"start", "usb_mngt", "--timeout", "60"});
    Capture([this] {
        EXPECT_EQ(Fill(kFtp, 1000, 1000), 0u);
        EXPECT_EQ(Fill(kSamba, 1000, 1000), 0u);
        EXPECT_EQ(Fill(kSamba, 1000, 8), uint32_t{VT_HOST_ERR_TOO_LONG});
        EXPECT_EQ(Call("osgi_proxy", kFtp.uiRpcId, "abc", 4).uiStatus,
                  uint32_t{VT_HOST_ERR_ARGUMENT});
        EXPECT_TRUE(Soon([this] { return CountOf(Out("watch"), "Right ") == 4; }));
    });
    EXPECT_EQ(WithoutTimes(CtlOk({"replay", File(), "--fast", "--rpc", "Fill*"})),
              "osgi_proxy  FillFtpRight           0x47209038 TOOK  ok\n"
              "osgi_proxy  FillSambaRight         0x4720903D TOOK  ok\n"
              "osgi_proxy  FillSambaRight         0x4720903D TOOK  0xF7000008 too long\n"
              "osgi_proxy  FillFtpRight           0x47209038 TOOK  0xF7000001 bad request\n"
              "4 sent: 4 ended as before, 0 otherwise\n");
    EXPECT_EQ(VT_OS_ShmGet(kFtp.iKey, 0, 0), -1) << "removed again";
    EXPECT_EQ(VT_OS_ShmGet(kSamba.iKey, 0, 0), -1);
}

TEST_F(ReplayTest, SegmentsThatNoAnswerNeedsAreNotMade) {
    Capture([this] {
        EXPECT_NE(Fill(kFtp, 1000, (16u << 20) + 1), 0u);
        Await("watch.out", "FillFtpRight");
    });
    const Outcome stReplay = Ctl({"replay", File(), "--fast", "--rpc", "Fill*"});
    EXPECT_EQ(stReplay.iExit, 1);
    EXPECT_EQ(WithoutTimes(stReplay.acOut),
              "osgi_proxy  FillFtpRight           0x47209038 TOOK  not sent: the segment for its"
              " answer would have 16777217 bytes, which no answer needs\n"
              "0 sent: 0 ended as before, 0 otherwise; 1 can't be sent\n");
    EXPECT_EQ(VT_OS_ShmGet(kFtp.iKey, 0, 0), -1);
}

TEST_F(ReplayTest, SegmentsOfOthersStay) {
    Capture([this] {
        EXPECT_EQ(Fill(kFtp, 1000, 1000), 0u);
        Await("watch.out", "FillFtpRight");
    });
    const std::vector<std::string> astReplay = {"replay", File(), "--fast", "--rpc", "Fill*"};
    const int32_t iLarge = MakeSegment(kFtp, 2000);
    CtlOk(astReplay);
    EXPECT_EQ(VT_OS_ShmGet(kFtp.iKey, 0, 0), iLarge);
    const auto *pcText = static_cast<const char *>(VT_OS_ShmAt(iLarge, nullptr, SHM_RDONLY));
    EXPECT_EQ(std::string(pcText, 12), R"({"Result":0,)") << "it is the one that was filled";
    EXPECT_EQ(VT_OS_ShmDt(pcText), 0);
    EXPECT_EQ(VT_OS_ShmCtl(iLarge, IPC_RMID, nullptr), 0);
    const int32_t iSmall = MakeSegment(kFtp, 999);
    const Outcome stReplay = Ctl(astReplay);
    EXPECT_EQ(stReplay.iExit, 1);
    EXPECT_EQ(WithoutTimes(stReplay.acOut),
              "osgi_proxy  FillFtpRight           0x47209038 TOOK  not sent: somebody else has made"
              " the segment for its answer, and it is too small; once nobody asks,"
              " gatewayctl restart removes it\n"
              "0 sent: 0 ended as before, 0 otherwise; 1 can't be sent\n");
    EXPECT_EQ(VT_OS_ShmGet(kFtp.iKey, 0, 0), iSmall);
    EXPECT_EQ(VT_OS_ShmCtl(iSmall, IPC_RMID, nullptr), 0);
}

TEST_F(ReplayTest, KeepsThePaces) {
    Capture([this] {
        EXPECT_EQ(AskForMac().uiStatus, 0u);
        std::this_thread::sleep_for(std::chrono::milliseconds(600));
        EXPECT_EQ(AskForMac().uiStatus, 0u);
        EXPECT_TRUE(Soon([this] { return CountOf(Out("watch"), "GetDeviceMac") == 2; }));
    });
    const auto fnTook = [this](const std::string &acSpeed) {
        const auto stBegin = std::chrono::steady_clock::now();
        CtlOk({"replay", File(), "--speed", acSpeed});
        return std::chrono::steady_clock::now() - stBegin;
    };
    EXPECT_GE(fnTook("1"), std::chrono::milliseconds(600));
    EXPECT_GE(fnTook("0.5"), std::chrono::milliseconds(1200));
}

TEST_F(GatewayTest, NamesInCapturesDoNothingToATerminal) {
    gateway::TapEvent stEvent = TapMac();
    strcpy(stEvent.stHead.acRcvApp, "\x1B[2J\x7F\xC2\x9B");
    gateway::CaptureFile(m_acDir + "/names.pcapng", true).Add(stEvent, 0);
    const Outcome stReplay = Ctl({"replay", m_acDir + "/names.pcapng", "--dry-run"});
    EXPECT_EQ(stReplay.iExit, 1);
    EXPECT_EQ(WithoutTimes(stReplay.acOut),
              "\"\\u001b[2J\\u007f\\u009b\"  GetDeviceMac           0x47209032 TOOK  not sent: the"
              " gateway has no such process\n"
              "0 to send; 1 can't be sent\n");
}

TEST_F(GatewayTest, WholeCallsOfACutCaptureAreSent) {
    const std::string acFile = m_acDir + "/calls.pcapng";
    gateway::CaptureFile stFile(acFile, true);
    stFile.Add(TapMac(), 0);
    stFile.Add(TapAddresses(), 0);
    const std::string acBytes = ReadFile("calls.pcapng");
    WriteFile("cut.pcapng", acBytes.substr(0, acBytes.size() - 5));
    const Outcome stReplay = Ctl({"replay", m_acDir + "/cut.pcapng", "--dry-run"});
    EXPECT_EQ(stReplay.iExit, 0);
    EXPECT_EQ(WithoutTimes(stReplay.acOut),
              "osgi_proxy  GetDeviceMac           0x47209032 TOOK  was ok\n1 to send\n");
    EXPECT_NE(stReplay.acErr.find("gatewayctl: it ends too early (the block at byte "),
              std::string::npos)
        << stReplay.acErr;
    EXPECT_NE(stReplay.acErr.find("); calls may be missing\n"), std::string::npos);
}

TEST_F(ReplayTest, FilesThatCantBeUsedAreRefused) {
    Capture([this] {
        EXPECT_EQ(AskForMac().uiStatus, 0u);
        Await("watch.out", "GetDeviceMac");
    });
    const std::string acFile = ReadFile("calls.pcapng");
    WriteFile("cut.pcapng", acFile.substr(0, acFile.find("VTM1") + 5));
    WriteFile("text.pcapng", "This is no capture.\n");
    WriteFile("empty.pcapng", "");
    const struct {
        const char *pcName;
        const char *pcSays;
    } astCases[] = {
        {"missing.pcapng", "No such file or directory\n"},
        {"cut.pcapng", "it ends too early (the block at byte "},
        {"text.pcapng", "it is no pcapng file (the block at byte 0)\n"},
        {"empty.pcapng", "it is empty"},
        {"log", "it can't be read"},
    };
    for (const auto &stCase : astCases) {
        const std::string acPath = m_acDir + "/" + stCase.pcName;
        const Outcome stReplay = Ctl({"replay", acPath});
        EXPECT_EQ(stReplay.iExit, 2) << stCase.pcName;
        EXPECT_EQ(stReplay.acOut, "");
        EXPECT_NE(stReplay.acErr.find("gatewayctl: cannot replay " + acPath + ": " + stCase.pcSays),
                  std::string::npos)
            << stReplay.acErr;
    }
}

}  // namespace wap::test

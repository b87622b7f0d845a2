// Scripted faults, as their victims see them.
#include <chrono>
#include <regex>
#include <thread>

#include "gateway_fixture.h"

namespace wap::test {

namespace {

using Clock = std::chrono::steady_clock;

constexpr uint32_t kMacRpc = 0x47209032;

const std::string kMac = Field("02:A1:B2:00:10:01", 18);

RpcReply AskMac(uint32_t uiTimeoutMs = 20000) {
    return Query("osgi_proxy", kMacRpc, 18, uiTimeoutMs);
}

}  // namespace

TEST_F(RunningGatewayTest, CodeIsAnsweredWithoutAReply) {
    CtlOk({"fault", "osgi_proxy", "0x47209032", "--code", "0xF7654321"});
    const RpcReply stAnswer = AskMac();
    EXPECT_EQ(stAnswer.uiStatus, 0xF7654321u);
    EXPECT_EQ(stAnswer.acBytes, std::string(18, kUntouched));
    EXPECT_EQ(Query("osgi_proxy", 0x47209050, 64).uiStatus, 0u) << "other RPCs are left alone";
    EXPECT_EQ(Query("cwmp", 0x4720136A, 265).uiStatus, 0u) << "other processes are left alone";
}

TEST_F(RunningGatewayTest, EveryCodeButZeroReachesTheCaller) {
    for (const uint32_t uiCode : {1u, 0x7FFFFFFFu, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
        CtlOk({"fault", "osgi_proxy", "0x47209032", "--code", std::to_string(uiCode)});
        EXPECT_EQ(AskMac().uiStatus, uiCode);
    }
}

TEST_F(RunningGatewayTest, FaultHitsItsNumberOfRequests) {
    CtlOk({"fault", "osgi_proxy", "1193316402", "--code", "7", "--times", "2"});  // 0x47209032
    EXPECT_EQ(AskMac().uiStatus, 7u);
    EXPECT_NE(CtlOk({"faults"}).find("osgi_proxy   0x47209032   code 0x00000007"),
              std::string::npos);
    EXPECT_EQ(AskMac().uiStatus, 7u);
    EXPECT_EQ(AskMac().acBytes, kMac);
    EXPECT_EQ(CtlOk({"faults"}).find("osgi_proxy"), std::string::npos);
}

TEST_F(RunningGatewayTest, FaultWithoutANumberLastsUntilClear) {
    CtlOk({"fault", "osgi_proxy", "0x47209032", "--code", "7"});
    CtlOk({"fault", "cwmp", "0x4720136A", "--code", "8"});
    for (int iRound = 0; iRound < 3; ++iRound) {
        EXPECT_EQ(AskMac().uiStatus, 7u);
    }
    CtlOk({"clear", "osgi_proxy"});
    EXPECT_EQ(AskMac().uiStatus, 0u);
    EXPECT_EQ(Query("cwmp", 0x4720136A, 265).uiStatus, 8u);
    CtlOk({"clear"});
    EXPECT_EQ(Query("cwmp", 0x4720136A, 265).uiStatus, 0u);
}

TEST_F(RunningGatewayTest, NewFaultReplacesTheOldOne) {
    CtlOk({"fault", "osgi_proxy", "0x47209032", "--code", "7"});
    CtlOk({"fault", "osgi_proxy", "0x47209032", "--code", "9"});
    EXPECT_EQ(AskMac().uiStatus, 9u);
}

TEST_F(RunningGatewayTest, AnyHitsUnknownRpcsTooButNotThoseWithAFaultOfTheirOwn) {
    CtlOk({"fault", "osgi_proxy", "any", "--code", "5"});
    CtlOk({"fault", "osgi_proxy", "0x47209032", "--code", "6"});
    EXPECT_EQ(Query("osgi_proxy", 0x47209035, 336).uiStatus, 5u);
    EXPECT_EQ(Query("osgi_proxy", 0x12345678, 4).uiStatus, 5u);
    EXPECT_EQ(AskMac().uiStatus, 6u);
    EXPECT_EQ(CtlOk({"get", "device.vendor"}), "SimHome\n") << "gatewayctl gets through";
}

TEST_F(RunningGatewayTest, FaultOfAnUnknownRpc) {
    CtlOk({"fault", "cwmp", "0xDEADBEEF", "--fill", "0x41", "--times", "1"});
    const RpcReply stAnswer = Query("cwmp", 0xDEADBEEF, 6);
    EXPECT_EQ(stAnswer.uiStatus, 0u);
    EXPECT_EQ(stAnswer.acBytes, "AAAAAA");
    EXPECT_EQ(Query("cwmp", 0xDEADBEEF, 6).uiStatus, 0xF700000Bu);
}

TEST_F(RunningGatewayTest, DropLetsTheCallerRunIntoItsTimeOut) {
    CtlOk({"fault", "osgi_proxy", "0x47209032", "--drop", "--times", "1"});
    const auto stStart = Clock::now();
    const RpcReply stAnswer = AskMac(300);
    EXPECT_EQ(stAnswer.uiStatus, 0xF7000004u);
    EXPECT_GE(Clock::now() - stStart, std::chrono::milliseconds(300));
    EXPECT_EQ(stAnswer.acBytes, std::string(18, kUntouched));
    EXPECT_EQ(AskMac().acBytes, kMac) << "the connection works again";
}

TEST_F(RunningGatewayTest, DelayComesBeforeTheRightReply) {
    CtlOk({"fault", "osgi_proxy", "0x47209032", "--delay", "400", "--times", "1"});
    const auto stStart = Clock::now();
    const RpcReply stAnswer = AskMac();
    EXPECT_GE(Clock::now() - stStart, std::chrono::milliseconds(400));
    EXPECT_EQ(stAnswer.uiStatus, 0u);
    EXPECT_EQ(stAnswer.acBytes, kMac);
}

TEST_F(RunningGatewayTest, DelayGoesWithOtherFaults) {
    CtlOk({"fault", "osgi_proxy", "0x47209032", "--delay", "300", "--code", "3"});
    const auto stStart = Clock::now();
    EXPECT_EQ(AskMac().uiStatus, 3u);
    EXPECT_GE(Clock::now() - stStart, std::chrono::milliseconds(300));
}

TEST_F(RunningGatewayTest, TruncateKeepsTheFirstBytes) {
    CtlOk({"fault", "osgi_proxy", "0x47209032", "--truncate", "4"});
    RpcReply stAnswer = AskMac();
    EXPECT_EQ(stAnswer.uiStatus, 0u);
    EXPECT_EQ(stAnswer.acBytes, "02:A" + std::string(14, kUntouched));
    CtlOk({"fault", "osgi_proxy", "0x47209032", "--truncate", "0"});
    stAnswer = AskMac();
    EXPECT_EQ(stAnswer.uiStatus, 0u);
    EXPECT_EQ(stAnswer.acBytes, std::string(18, kUntouched));
    CtlOk({"fault", "osgi_proxy", "0x47209032", "--truncate", "500"});
    EXPECT_EQ(AskMac().acBytes, kMac);
}

TEST_F(RunningGatewayTest, GarbageFillsTheCallersRoomDifferentlyEachTime) {
    CtlOk({"fault", "osgi_proxy", "0x47209032", "--garbage"});
    const RpcReply stFirst = Query("osgi_proxy", kMacRpc, 4096);
    const RpcReply stSecond = Query("osgi_proxy", kMacRpc, 4096);
    EXPECT_EQ(stFirst.uiStatus, 0u);
    EXPECT_EQ(stSecond.uiStatus, 0u);
    EXPECT_NE(stFirst.acBytes, stSecond.acBytes);
    // Not even the last 64 bytes are as they were before.
    EXPECT_NE(stFirst.acBytes.substr(4032), std::string(64, kUntouched));
}

TEST_F(RunningGatewayTest, FillFillsTheCallersRoom) {
    CtlOk({"fault", "osgi_proxy", "0x47209035", "--fill", "255"});
    const RpcReply stAnswer = Query("osgi_proxy", 0x47209035, 336);
    EXPECT_EQ(stAnswer.uiStatus, 0u);
    EXPECT_EQ(stAnswer.acBytes, std::string(336, '\xFF'));
}

TEST_F(RunningGatewayTest, FaultsEndWithTheProcess) {
    CtlOk({"fault", "osgi_proxy", "any", "--code", "5"});
    CtlOk({"kill", "osgi_proxy"});
    CtlOk({"start", "osgi_proxy", "--timeout", "60"});
    EXPECT_EQ(AskMac().uiStatus, 0u);
}

TEST_F(RunningGatewayTest, StopDoesNotWaitForDelays) {
    CtlOk({"fault", "osgi_proxy", "any", "--delay", "3600000"});
    RpcReply stAnswer;
    std::thread stCaller([&] { stAnswer = AskMac(60000); });
    // Counted, the fault waiting for others, and one request under way: the fault holds it.
    const std::regex stOneRequest("osgi_proxy +running +[0-9]+ +[0-9:]+ +1 +1 +1\n");
    const auto stLatest = Clock::now() + std::chrono::seconds(30);
    while (!std::regex_search(Ctl({"status"}).acOut, stOneRequest)) {
        if (Clock::now() > stLatest) {
            ADD_FAILURE() << "the request never came in";
            break;
        }
    }
    const auto stStart = Clock::now();
    CtlOk({"stop", "osgi_proxy"});
    EXPECT_LT(Clock::now() - stStart, std::chrono::seconds(10));
    stCaller.join();
    EXPECT_TRUE(stAnswer.uiStatus == 0 || stAnswer.uiStatus == 0xF7000005u) << stAnswer.uiStatus;
}

}  // namespace wap::test

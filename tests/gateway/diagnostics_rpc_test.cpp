// The network diagnostics from start to result, byte for byte.
#include <unistd.h>

#include "gateway_fixture.h"
#include "vt_ssp_host.h"

namespace wap::test {

namespace {

constexpr uint32_t kBusy = 1;
constexpr uint32_t kNoWan = 2;
constexpr const char *kNone = R"({"Result":0,"State":"None"})";
constexpr uint32_t kInternetWan = 269488129;

/// A text that must end with its zero.
std::string WithoutZero(std::string acText) {
    EXPECT_TRUE(acText.ends_with('\0')) << acText;
    acText.pop_back();
    return acText;
}

class DiagnosticsTest : public GatewayTest {
  protected:
    void SetUp() override {
        GatewayTest::SetUp();
        CtlOk({"start", "gulm", "app_m", "--timeout", "60"});
    }
    void Take(const char *pcMs) const {
        for (const char *pcKind : {"pingMs", "dnsMs", "traceRouteMs"}) {
            CtlOk({"set", std::string("diagnostics.") + pcKind, pcMs});
        }
    }
    static uint32_t Start(uint32_t uiRpcId, const std::string &acRequest) {
        const RpcReply stReply = Call("app_m", uiRpcId, acRequest, 4);
        EXPECT_EQ(stReply.uiStatus, 0u);
        return WordAt(stReply.acBytes, 0);
    }
    static std::string PingText() { return TextIn(Query("app_m", 0x47103089, 512)); }
    /// The status, or the text.
    static std::string Result(uint32_t uiRpcId) {
        const RpcReply stReply = Query("app_m", uiRpcId, 16);
        EXPECT_EQ(stReply.uiStatus, 0u);
        const uint32_t uiStatus = WordAt(stReply.acBytes, 0);
        return uiStatus != 0 ? std::to_string(uiStatus) : WithoutZero(BlockOf(stReply, 4));
    }
};

std::string Ping(uint32_t uiWan, const std::string &acHost, uint32_t uiRepetitions) {
    return Word(uiWan) + std::string(256, '\0') + Field(acHost, 256) + Word(uiRepetitions) +
           Word(5) + Word(56) + Word(46);
}

std::string Dns(uint32_t uiWan, const std::string &acHost) {
    return Word(uiWan) + Field(acHost, 256) + Field("192.0.2.53", 512) + Field("p=1", 512);
}

std::string TraceRoute(uint32_t uiWan, const std::string &acHost) {
    return Word(uiWan) + Field(acHost, 256) + Field("", 256);
}

}  // namespace

TEST_F(DiagnosticsTest, PingFromStartToResult) {
    EXPECT_EQ(PingText(), kNone) << "none was started";
    Take("60000");
    EXPECT_EQ(Start(0x47103088, Ping(kInternetWan, "desk-pc", 0)), 0u);
    EXPECT_EQ(PingText(), R"({"Result":1})");
    EXPECT_EQ(Start(0x47103088, Ping(kInternetWan, "desk-pc", 0)), kBusy);
    CtlOk({"kill", "app_m"});
    CtlOk({"start", "app_m", "--timeout", "60"});
    EXPECT_EQ(PingText(), kNone) << "it ended with the process";
    Take("0");
    EXPECT_EQ(Start(0x47103088, Ping(kInternetWan, "desk-pc", 0)), 0u);
    EXPECT_EQ(
        PingText(),
        R"({"Result":0,"State":"Complete","Host":"desk-pc","Address":"192.168.1.10","Sent":4,"Received":4,)"
        R"("DataBlockSize":56,"DSCP":46,"MinimumMs":2,"AverageMs":3,"MaximumMs":5})");
    EXPECT_EQ(Start(0x47103088, Ping(0, "198.51.100.7", 9)), 0u);
    EXPECT_NE(PingText().find(R"("Address":"198.51.100.7","Sent":9,)"), std::string::npos);
}

// The reply has 512 bytes; of what does not fit, the host comes before its address.
TEST_F(DiagnosticsTest, PingOfAnyHostHasAResult) {
    Take("0");
    const std::string acDigits(255, '7');
    const auto Text = [](const std::string &acNames) {
        return R"({"Result":0,"State":"Complete",)" + acNames +
               R"("Sent":4,"Received":4,"DataBlockSize":56,"DSCP":46,"MinimumMs":2,)"
               R"("AverageMs":3,"MaximumMs":5})";
    };
    EXPECT_EQ(Start(0x47103088, Ping(0, acDigits, 0)), 0u);
    EXPECT_EQ(PingText(), Text("\"Host\":\"" + acDigits + "\","));
    for (const char cByte : {'"', '\\', '\1'}) {
        EXPECT_EQ(Start(0x47103088, Ping(0, std::string(255, cByte), 0)), 0u);
        EXPECT_EQ(PingText(), Text(""));
    }
    // The longest that loses nothing: with its zero, it fills the reply.
    const size_t uiMost = (511 - Text(R"("Host":"","Address":"",)").size()) / 2;
    const std::string acMost(uiMost, '7');
    EXPECT_EQ(Start(0x47103088, Ping(0, acMost, 0)), 0u);
    EXPECT_EQ(PingText(), Text(R"("Host":")" + acMost + R"(","Address":")" + acMost + "\","));
    EXPECT_EQ(Start(0x47103088, Ping(0, acMost + "7", 0)), 0u);
    EXPECT_EQ(PingText(), Text(R"("Host":")" + acMost + R"(7",)"));
}

TEST_F(DiagnosticsTest, DnsFromStartToResult) {
    EXPECT_EQ(Result(0x47103097), kNone);
    Take("60000");
    EXPECT_EQ(Start(0x47103096, Dns(kInternetWan, "printer")), 0u);
    EXPECT_EQ(Result(0x47103097), std::to_string(kBusy));
    CtlOk({"kill", "app_m"});
    CtlOk({"start", "app_m", "--timeout", "60"});
    Take("0");
    EXPECT_EQ(Start(0x47103096, Dns(kInternetWan, "printer")), 0u);
    EXPECT_EQ(Result(0x47103097),
              R"({"Result":0,"State":"Complete","Host":"printer","Servers":"192.0.2.53",)"
              R"("Addresses":["192.168.1.14"],"Parameters":"p=1"})");
    EXPECT_NE(Result(0x47103097), "") << "as often as one asks";
}

TEST_F(DiagnosticsTest, TraceRouteFromStartToResult) {
    EXPECT_EQ(Result(0x47103091), kNone);
    Take("0");
    EXPECT_EQ(Start(0x47103090, TraceRoute(kInternetWan, "2001:db8::1")), 0u);
    EXPECT_EQ(
        Result(0x47103091),
        R"({"Result":0,"State":"Complete","Host":"2001:db8::1","Hops":[{"Hop":1,"Address":"198.51.100.1",)"
        R"("Ms":2},{"Hop":2,"Address":"198.51.100.2","Ms":4},{"Hop":3,"Address":)"
        R"("198.51.100.3","Ms":6},{"Hop":4,"Address":"2001:db8::1","Ms":8}],)"
        R"("Parameters":""})");
}

TEST_F(DiagnosticsTest, ConnectionsThatAreDownOrUnknownAreTold) {
    Take("0");
    EXPECT_EQ(Start(0x47103088, Ping(12345, "desk-pc", 0)), kNoWan);
    CtlOk({"wan", "set", "1_INTERNET_R_VID_100", "down"});
    EXPECT_EQ(Start(0x47103096, Dns(kInternetWan, "printer")), kNoWan);
    EXPECT_EQ(Start(0x47103090, TraceRoute(kInternetWan, "printer")), kNoWan);
    EXPECT_EQ(PingText(), kNone);
}

}  // namespace wap::test

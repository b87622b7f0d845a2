// What the gateway's processes answer, byte for byte.
#include <unistd.h>

#include <atomic>
#include <thread>

#include "gateway_fixture.h"
#include "vt_ssp_host.h"

namespace wap::test {

namespace {

uint32_t ToldUpTime() {
    const RpcReply stAnswer = Query("osgi_proxy", 0x47209036, 4);
    EXPECT_EQ(stAnswer.uiStatus, 0u);
    return WordAt(stAnswer.acBytes, 0);
}

}  // namespace

TEST_F(RunningGatewayTest, DeviceInfoIsTheShippedHome) {
    const RpcReply stAnswer = Query("osgi_proxy", 0x47209035, 336);
    EXPECT_EQ(stAnswer.uiStatus, 0u);
    std::string acExpected("\x00\x00\x08\x00", 4);     // 524288 KiB
    acExpected += std::string("\x00\x00\x04\x00", 4);  // 262144 KiB
    acExpected += Field("1", 2);
    acExpected += Field("SH-GW100", 65);
    acExpected += Field("SimHome", 65);
    acExpected += Field("SHW.1.0", 65);
    acExpected += Field("SIM.2.4.7", 65);
    acExpected += Field("SIMCHIP-A", 66);
    EXPECT_EQ(stAnswer.acBytes, acExpected);
}

TEST_F(RunningGatewayTest, MacIsEighteenBytes) {
    const RpcReply stAnswer = Query("osgi_proxy", 0x47209032, 18);
    EXPECT_EQ(stAnswer.uiStatus, 0u);
    EXPECT_EQ(stAnswer.acBytes, Field("02:A1:B2:00:10:01", 18));
}

TEST_F(RunningGatewayTest, PasswordIsSixtyFourBytes) {
    const RpcReply stAnswer = Query("osgi_proxy", 0x47209050, 64);
    EXPECT_EQ(stAnswer.uiStatus, 0u);
    EXPECT_EQ(stAnswer.acBytes, Field("sim-device-pass", 64));
}

TEST_F(RunningGatewayTest, DefaultsHaveThreeFields) {
    const RpcReply stAnswer = Query("osgi_proxy", 0x47209037, 192);
    EXPECT_EQ(stAnswer.uiStatus, 0u);
    EXPECT_EQ(stAnswer.acBytes,
              Field("SimHome-1001", 32) + Field("sim-wifi-pass", 32) + Field("sim-web-pass", 128));
}

TEST_F(RunningGatewayTest, IdentityHasOuiAndSerialNumberAtTheirPlaces) {
    const RpcReply stAnswer = Query("cwmp", 0x4720136A, 265);
    EXPECT_EQ(stAnswer.uiStatus, 0u);
    EXPECT_EQ(stAnswer.acBytes,
              Field("", 65) + Field("02A1B2", 72) + Field("SIM0000000001001", 128));
}

TEST_F(RunningGatewayTest, SetTakesEffectAtTheNextRequest) {
    CtlOk({"set", "device.vendor", "Other Home"});
    CtlOk({"set", "device.ramKiB", "4294967295"});
    CtlOk({"set", "device.nfc", ""});
    CtlOk({"set", "identity.serialNumber", "S1"});
    const RpcReply stInfo = Query("osgi_proxy", 0x47209035, 336);
    EXPECT_EQ(stInfo.acBytes.substr(0, 4), "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(stInfo.acBytes.substr(8, 2), Field("", 2));
    EXPECT_EQ(stInfo.acBytes.substr(75, 65), Field("Other Home", 65));
    EXPECT_EQ(Query("cwmp", 0x4720136A, 265).acBytes.substr(137), Field("S1", 128));
}

TEST_F(RunningGatewayTest, TextsAreCutAtTheirFieldsWithAZero) {
    const std::string ac64(64, 'v');
    CtlOk({"set", "device.vendor", ac64});
    EXPECT_EQ(Query("osgi_proxy", 0x47209035, 336).acBytes.substr(75, 65), Field(ac64, 65));
    CtlOk({"set", "device.vendor", ac64 + "w"});
    EXPECT_EQ(Query("osgi_proxy", 0x47209035, 336).acBytes.substr(75, 65), Field(ac64, 65));
    CtlOk({"set", "device.nfc", "on"});
    EXPECT_EQ(Query("osgi_proxy", 0x47209035, 336).acBytes.substr(8, 2), Field("o", 2));
    CtlOk({"set", "device.mac", "02:A1:B2:00:10:01:99"});
    EXPECT_EQ(Query("osgi_proxy", 0x47209032, 18).acBytes, Field("02:A1:B2:00:10:01", 18));
    // A character that would be split by the cut is left out whole.
    CtlOk({"set", "device.vendor", std::string(63, 'v') + "\xC3\xA9"});
    EXPECT_EQ(Query("osgi_proxy", 0x47209035, 336).acBytes.substr(75, 65),
              Field(std::string(63, 'v'), 65));
}

TEST_F(RunningGatewayTest, RequestOfAnotherLengthIsRefused) {
    for (const std::string_view pcRequest :
         {std::string_view("\0\0\0", 3), std::string_view("\0\0\0\0\0", 5), std::string_view()}) {
        const RpcReply stAnswer = Call("osgi_proxy", 0x47209032, pcRequest, 18);
        EXPECT_EQ(stAnswer.uiStatus, 0xF7000001u) << pcRequest.size();
        EXPECT_EQ(stAnswer.acBytes, std::string(18, kUntouched));
    }
}

TEST_F(RunningGatewayTest, ReplyIsCutToTheCallersRoom) {
    const RpcReply stAnswer = Query("osgi_proxy", 0x47209032, 5);
    EXPECT_EQ(stAnswer.uiStatus, 0u);
    EXPECT_EQ(stAnswer.acBytes, "02:A1");
    EXPECT_EQ(Query("osgi_proxy", 0x47209032, 0).uiStatus, 0u);
}

TEST_F(RunningGatewayTest, OtherRpcsAreUnknown) {
    EXPECT_EQ(Query("osgi_proxy", 0x4720136A, 265).uiStatus, 0xF700000Bu);
    EXPECT_EQ(Query("cwmp", 0x47209035, 336).uiStatus, 0xF700000Bu);
    EXPECT_EQ(Query("cwmp", 0, 4).uiStatus, 0xF700000Bu);
}

TEST_F(GatewayTest, EveryProcessAnswersUnknownRpcs) {
    CtlOk({"start", "--timeout", "120"});
    for (const char *pcName : kProcessNames) {
        EXPECT_EQ(Query(pcName, 0x12345678, 4).uiStatus, 0xF700000Bu) << pcName;
    }
}

TEST_F(RunningGatewayTest, UpTimeGrowsFromItsBase) {
    const uint32_t uiShipped = ToldUpTime();
    EXPECT_GE(uiShipped, 86400u);
    EXPECT_LT(uiShipped, 86400u + 120);
    CtlOk({"set", "device.upTimeBase", "7"});
    const uint32_t uiFirst = ToldUpTime();
    EXPECT_GE(uiFirst, 7u);
    EXPECT_LT(uiFirst, 7u + 120);
    sleep(2);
    EXPECT_GE(ToldUpTime(), uiFirst + 2);
}

TEST_F(RunningGatewayTest, UpTimeContinuesOverARestartOfTheProcessButNotOfTheGateway) {
    const uint32_t uiFirst = ToldUpTime();
    sleep(2);
    CtlOk({"kill", "osgi_proxy"});
    CtlOk({"start", "osgi_proxy", "--timeout", "60"});
    EXPECT_GE(ToldUpTime(), uiFirst + 2);
    sleep(2);
    CtlOk({"stop"});
    CtlOk({"start", "osgi_proxy", "--timeout", "60"});
    EXPECT_LT(ToldUpTime(), uiFirst + 4);
}

TEST_F(RunningGatewayTest, UpTimeStaysAtItsLargestValue) {
    CtlOk({"set", "device.upTimeBase", "4294967295"});
    EXPECT_EQ(ToldUpTime(), 0xFFFFFFFFu);
    sleep(1);
    EXPECT_EQ(ToldUpTime(), 0xFFFFFFFFu);
}

TEST_F(RunningGatewayTest, ControlRequestsAreNotTrusted) {
    const std::string acDeep(10000, '[');
    const struct {
        uint32_t uiRpcId;
        std::string acRequest;
        const char *pcSays;
    } astCases[] = {
        {0x7F000001, "", "no valid JSON"},
        {0x7F000001, std::string("\xFF\xFE\x00{}", 5), "no valid JSON"},
        {0x7F000002, acDeep, "no valid JSON"},
        {0x7F000002, "[]", "no text \\\"path\\\""},
        {0x7F000002, "{\"path\":7}", "no text \\\"path\\\""},
        {0x7F000003, "{\"path\":\"device.vendor\"}", "no text \\\"text\\\""},
        {0x7F000003, "{\"path\":\"\",\"text\":\"x\"}", "no single value"},
        {0x7F000004, "{}", "no such kind of fault"},
        {0x7F000004, "{\"rpc\":-1,\"fault\":{\"kind\":\"drop\"}}", "an RPC id must be"},
        {0x7F000004, "{\"fault\":{\"kind\":\"drop\"}}", "value must be from 0 to 0"},
        {0x7F000004, "{\"fault\":{\"kind\":\"fill\",\"value\":256,\"delay\":0}}",
         "value must be from 0 to 255"},
        {0x7F000004, "{\"fault\":{\"kind\":\"none\",\"value\":0,\"delay\":0}}",
         "must do something"},
    };
    for (const auto &stCase : astCases) {
        const RpcReply stAnswer = Call("osgi_proxy", stCase.uiRpcId, stCase.acRequest, 1024);
        EXPECT_EQ(stAnswer.uiStatus, 0u) << stCase.pcSays;
        EXPECT_EQ(stAnswer.acBytes.substr(0, 10), "{\"error\":\"") << stCase.acRequest;
        EXPECT_NE(stAnswer.acBytes.find(stCase.pcSays), std::string::npos) << stAnswer.acBytes;
    }
    EXPECT_EQ(Call("osgi_proxy", 0x7F000099, "{}", 1024).uiStatus, 0xF700000Bu);
    EXPECT_EQ(Call("osgi_proxy", 0x7F000001, "{}", 8).uiStatus, 0xF7000008u) << "no room";
    EXPECT_EQ(Query("osgi_proxy", 0x47209032, 18).uiStatus, 0u) << "no fault was set";
}

TEST_F(RunningGatewayTest, ReadersNeverSeeHalfAChange) {
    std::atomic<bool> bDone = false;
    std::atomic<int> iCalls = 0;
    std::vector<std::thread> astThreads;
    astThreads.reserve(6);
    for (int iThread = 0; iThread < 6; ++iThread) {
        astThreads.emplace_back([&] {
            do {
                const RpcReply stAnswer = Query("osgi_proxy", 0x47209050, 64);
                EXPECT_EQ(stAnswer.uiStatus, 0u);
                EXPECT_TRUE(stAnswer.acBytes == Field("sim-device-pass", 64) ||
                            stAnswer.acBytes == Field(std::string(63, 'p'), 64));
                ++iCalls;
            } while (!bDone);
        });
    }
    for (int iRound = 0; iRound < 5; ++iRound) {
        CtlOk({"set", "device.password", std::string(63, 'p')});
        CtlOk({"set", "device.password", "sim-device-pass"});
    }
    bDone = true;
    for (std::thread &stThread : astThreads) {
        stThread.join();
    }
    EXPECT_GE(iCalls.load(), 6);
}

}  // namespace wap::test

#include "live/live_gateway.h"

#include <malloc.h>

#include "support/entry_table_portmap.h"
#include "support/entry_table_rights.h"
#include "support/sanitizers.h"
#include "system/wap_msg_jni.h"
#include "vt_ssp_host.h"

#if defined(WAP_ADDRESS_SANITIZER) || defined(WAP_THREAD_SANITIZER)
// The sanitizers' allocators count for themselves; not every compiler brings their header.
extern "C" size_t __sanitizer_get_current_allocated_bytes(void);
#endif

namespace wap::test {

void NoteJniMisuse(const std::string &sText) {
    ADD_FAILURE() << sText;
}

void NoteJniRelease(std::string_view) {}

bool JniCallShallFail(const char *) {
    return false;
}

namespace {

std::function<bool(const Answer &)> Exactly(Answer stExpected) {
    return [stExpected = std::move(stExpected)](const Answer &stAnswer) {
        return stAnswer == stExpected;
    };
}

std::function<bool(const Answer &)> Between(int32_t iLow, int32_t iHigh) {
    return [=](const Answer &stAnswer) {
        return stAnswer.iNumber && *stAnswer.iNumber >= iLow && *stAnswer.iNumber <= iHigh;
    };
}

std::vector<LiveMethod> MakeMethods() {
    const Answer stFault = TextAnswerOf("{ \"Result\": -1 }");
    const auto Text = [&](const char *pcMethod, const char *pcProcess, const char *pcGood) {
        return LiveMethod{pcMethod, pcProcess, Exactly(TextAnswerOf(pcGood)), stFault};
    };
    return {
        {"getDeviceInfo", "osgi_proxy",
         Exactly(TextAnswerOf("{\"Result\":0 , \"Vendor\":\"SimHome\", "
                              "\"ProductCLass\":\"SH-GW100\", \"HardwareVer\":\"SHW.1.0\", "
                              "\"FirmwareVer\":\"SIM.2.4.7\", \"FlashSize\":262144, "
                              "\"RamSize\":524288, \"MainChipClass\":\"SIMCHIP-A\", "
                              "\"NFC\":\"1\"}")),
         TextAnswerOf("{\"Result\":-1}")},
        Text("getDeviceMAC", "osgi_proxy", "02:A1:B2:00:10:01"),
        // The home's base of a day, and at most an hour of this test.
        {"getDeviceUpTime", "osgi_proxy", Between(86400, 86400 + 3600), NumberAnswerOf(-1)},
        Text("getAPIVersion", "", "1.0"),
        {"getCPUOccupancyRate", "", Between(1, 100), NullAnswer()},
        {"getRAMOccupancyRate", "", Between(0, 100), NullAnswer()},
        Text("getDevicePassword", "osgi_proxy", "sim-device-pass"),
        Text("getDeviceManufacturerOUI", "cwmp", "02A1B2"),
        Text("getDeviceSerialNumber", "cwmp", "SIM0000000001001"),
        Text("getDeviceDefaultWebPassword", "osgi_proxy", "sim-web-pass"),
        Text("getDeviceDefaultSSID1Name", "osgi_proxy", "SimHome-1001"),
        Text("getDeviceDefaultSSID1Password", "osgi_proxy", "sim-wifi-pass"),
        // By a bulk block, and by a segment of shared memory.
        {"getPortMappingInfo", "gulm",
         Exactly(
             TextAnswerOf("{ \"Result\": 0, \"List\": [ { \"WANName\": \"1_INTERNET_R_VID_100\", "
                          "\"MapList\": [ { \"PortMappingIndex\": 1, \"PortMappingEnabled\": "
                          "\"TRUE\", \"ExternalPort\": 8443, \"InternalPort\": 443, "
                          "\"PortMappingProtocol\": \"TCP\", \"InternalClient\": "
                          "\"192.168.1.10\" } ] } ] }")),
         TextAnswerOf("{\"Result\":-1}")},
        Text("getSambaRightInfo", "osgi_proxy",
             "{\"Result\":0,\"LanAccess\":0,\"WanAccess\":0,\"Enable\":0,\"Value\":0,"
             "\"List\":[]}"),
    };
}

const std::vector<Entry> &LiveEntries() {
    static const std::vector<Entry> s_astEntries = [] {
        std::vector<Entry> astAll = BasicEntries();
        for (const std::vector<Entry> &astMore : {PortMappingEntries(), RightsEntries()}) {
            astAll.insert(astAll.end(), astMore.begin(), astMore.end());
        }
        return astAll;
    }();
    return s_astEntries;
}

}  // namespace

Answer CallLive(FakeJni &stEnv, const LiveMethod &stMethod) {
    Answer stAnswer = EntryOf(LiveEntries(), stMethod.sMethod).fnCall(stEnv);
    stEnv.EndCall();
    return stAnswer;
}

const std::vector<LiveMethod> &LiveMethods() {
    static const std::vector<LiveMethod> s_astMethods = MakeMethods();
    return s_astMethods;
}

size_t HeapBytes() {
#if defined(WAP_ADDRESS_SANITIZER) || defined(WAP_THREAD_SANITIZER)
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 stInfo = mallinfo2();
    return stInfo.uordblks + stInfo.hblkhd;
#endif
}

void LiveGatewayTest::SetUp() {
    GatewayTest::SetUp();
    CtlOk({"start", "osgi_proxy", "cwmp", "gulm", "usb_mngt", "--timeout", "120"});
    // An earlier test of this program attached to another gateway, and left it.
    uiInitFlag = 0;
    FakeJni stEnv;
    ASSERT_EQ(EntryOf("startThread").fnCall(stEnv), NumberAnswerOf(0));
    ASSERT_EQ(uiInitFlag, 1u);
}

void LiveGatewayTest::TearDown() {
    EXPECT_EQ(VT_HOST_Stop(), 0u);
    GatewayTest::TearDown();
}

}  // namespace wap::test

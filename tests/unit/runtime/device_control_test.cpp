// The reset and the lights.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_DeviceConfigServiceJNI.h>
#include <com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_DeviceRsetServiceJNI.h>

#include <string>

#include "support/entry_calls.h"
#include "system/jni_device_control.h"
#include "unit/runtime/runtime_fixture.h"

namespace wap::test {
namespace {

constexpr const char *kWorkerFile = "jni_device_control.cpp";
constexpr const char *kResetFile = "DeviceRsetServiceJNI.cpp";
constexpr const char *kLedFile = "DeviceConfigServiceJNI.cpp";

class DeviceControlTest : public RuntimeTest {
  protected:
    jint Reset() {
        stPlatform.ClearRecords();
        return WAP_METHOD_OF(tarn, DeviceRset, reset)(&stEnv, stEnv.JavaObject());
    }
    jint SetLeds(jint iSwitch) {
        stPlatform.ClearRecords();
        return WAP_METHOD(DeviceConfig, setLedSwitch)(&stEnv, stEnv.JavaObject(), iSwitch);
    }
};

TEST_F(DeviceControlTest, ResetAsksTheProxy) {
    EXPECT_EQ(Reset(), 0);
    ExpectOnlyRpc(stPlatform, {"osgi_proxy", 281, kReset, Word(0), 4, 30000});
    EXPECT_TRUE(stPlatform.astTraces.empty());
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(Reset(), 0);
    ExpectOnlyRpc(stPlatform, {"osgi_proxy", 282, kReset, Word(0), 4, 30000});
}

TEST_F(DeviceControlTest, ResetWorksWhateverTheReply) {
    for (const std::string &sReply : {std::string(), std::string(1, '\xFF'), Word(0xFFFFFFFF)}) {
        stPlatform.mapReplies[kReset] = {0, sReply};
        EXPECT_EQ(Reset(), 0);
    }
}

TEST_F(DeviceControlTest, FailedResetIsOne) {
    stPlatform.mapReplies[kReset].uiStatus = kRefused;
    EXPECT_EQ(Reset(), 1);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kMinusOne}));
    EXPECT_EQ(TimesRecorded(kWorkerFile, kRefused), 1u);
    EXPECT_EQ(TimesRecorded(kResetFile, kMinusOne, {1, 0, 0, 0}), 1u);
    EXPECT_EQ(VT_KAVO_JNI_ResetONT(), kMinusOne);
    stPlatform.mapReplies[kReset].uiStatus = 1;
    EXPECT_EQ(VT_KAVO_JNI_ResetONT(), kMinusOne);
    EXPECT_TRUE(stPlatform.astTraces.empty());
}

TEST_F(DeviceControlTest, LightsGoOnAndOff) {
    for (const jint iSwitch : {0, 1}) {
        SCOPED_TRACE(iSwitch);
        const std::string sSwitch = std::to_string(iSwitch);
        EXPECT_EQ(SetLeds(iSwitch), 0);
        ExpectOnlyRpc(stPlatform, {"app_m", 249, kLeds, Word(static_cast<uint32_t>(iSwitch)), 4});
        EXPECT_EQ(EntryTraces(stPlatform),
                  (Calls{"\r\n Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_"
                         "DeviceConfigServiceJNI_setLedSwitch called \r\n",
                         "\r\n setLedSwitch bSwitch:" + sSwitch + " \r\n",
                         "\r\n setLedSwitch bLedSwitch:" + sSwitch + " \r\n"}));
        EXPECT_EQ(stPlatform.astTraces.at(1).sFile, kLedFile);
        EXPECT_EQ(stPlatform.astTraces.at(2).sFile, kWorkerFile);
        EXPECT_TRUE(stPlatform.astFaults.empty());
    }
}

TEST_F(DeviceControlTest, OtherSwitchesAreRefusedWithoutAsking) {
    const struct {
        jint iSwitch;
        uint32_t uiSwitch;
        const char *pcSwitch;
    } astCases[] = {{2, 2, "2"},
                    {256, 256, "256"},
                    {-1, 0xFFFFFFFF, "4294967295"},
                    {INT32_MIN, 0x80000000, "2147483648"},
                    {INT32_MAX, 0x7FFFFFFF, "2147483647"}};
    for (const auto &stCase : astCases) {
        SCOPED_TRACE(stCase.iSwitch);
        EXPECT_EQ(SetLeds(stCase.iSwitch), -1);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_EQ(EntryTraces(stPlatform).back(),
                  std::string("\r\n setLedSwitch bSwitch:") + stCase.pcSwitch + " \r\n");
        EXPECT_EQ(FaultCodes(stPlatform), Codes{kMinusOne});
        EXPECT_EQ(TimesRecorded(kLedFile, kMinusOne, {stCase.uiSwitch, 0, 0, 0}), 1u);
    }
}

TEST_F(DeviceControlTest, FailedSwitchIsMinusOne) {
    stPlatform.mapReplies[kLeds].uiStatus = kRefused;
    EXPECT_EQ(SetLeds(1), -1);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kMinusOne}));
    EXPECT_EQ(TimesRecorded("jni_rpc.cpp", kRefused), 1u);
    EXPECT_EQ(TimesRecorded(kLedFile, kMinusOne, {1, 0, 0, 0}), 1u);
    // The worker itself passes the code on, and any switch.
    EXPECT_EQ(VT_JNI_setLedSwitch(0), kRefused);
    stPlatform.mapReplies[kLeds].uiStatus = 0;
    EXPECT_EQ(VT_JNI_setLedSwitch(7), 0u);
    EXPECT_EQ(stPlatform.astRpcs.back().sRequest, Word(7));
}

}  // namespace
}  // namespace wap::test

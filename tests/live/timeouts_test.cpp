// Processes that take a request and never answer.
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "common/jni_common.h"
#include "live/live_gateway.h"
#include "vt_ssp_host.h"

namespace wap::test {

namespace {

using Clock = std::chrono::steady_clock;

/// Expects that the calls made since then have ended in time: not before iMs, and at most a second
/// after.
void ExpectWaited(Clock::time_point stBegin, int64_t iMs) {
    const auto stWaited =
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - stBegin);
    EXPECT_GE(stWaited.count(), iMs);
    EXPECT_LE(stWaited.count(), iMs + 1000);
}

uint32_t AskIdentity() {
    const uint32_t uiRequest = 0;
    char acReply[265];
    return JNI_MSG_RpcCall("cwmp", 249, 0x4720136A, &uiRequest, sizeof(uiRequest), acReply,
                           sizeof(acReply));
}

}  // namespace

TEST_F(LiveGatewayTest, GeneralCallsFailAfterFiveSecondsAndTheirThreadsGoOn) {
    CtlOk({"fault", "gulm", "any", "--drop"});
    std::vector<std::thread> astThreads;
    for (uint32_t i = 0; i < 4; ++i) {
        astThreads.emplace_back([] {
            const auto stBegin = Clock::now();
            EXPECT_EQ(JNI_MSG_RpcCall("gulm", 249, 0x12345678, nullptr, 0, nullptr, 0),
                      VT_HOST_ERR_TIMEOUT);
            ExpectWaited(stBegin, 5000);
            EXPECT_EQ(AskIdentity(), 0u);
        });
    }
    for (std::thread &stThread : astThreads) {
        stThread.join();
    }
    CtlOk({"clear", "gulm"});
    EXPECT_EQ(JNI_MSG_RpcCall("gulm", 249, 0x12345678, nullptr, 0, nullptr, 0),
              VT_HOST_ERR_UNKNOWN_RPC);
}

TEST_F(LiveGatewayTest, ProxyAndUsbCallsFailAfterThirtySecondsAndTheirThreadsGoOn) {
    CtlOk({"fault", "osgi_proxy", "0x47209032", "--drop", "--times", "1"});
    CtlOk({"fault", "usb_mngt", "any", "--drop", "--times", "1"});
    std::thread stProxy([] {
        FakeJni stEnv;
        const Entry stMac = EntryOf("getDeviceMAC");
        const auto stBegin = Clock::now();
        EXPECT_EQ(stMac.fnCall(stEnv), TextAnswerOf("{ \"Result\": -1 }"));
        ExpectWaited(stBegin, 30000);
        stEnv.EndCall();
        EXPECT_EQ(stMac.fnCall(stEnv), TextAnswerOf("02:A1:B2:00:10:01"));
        stEnv.EndCall();
    });
    std::thread stUsb([] {
        const uint32_t uiRequest = 0;
        const auto Ask = [&] {
            return VT_KAVO_USB_JNI_RpcCall(0x12345678, &uiRequest, sizeof(uiRequest), nullptr, 0);
        };
        const auto stBegin = Clock::now();
        EXPECT_EQ(Ask(), VT_HOST_ERR_TIMEOUT);
        ExpectWaited(stBegin, 30000);
        EXPECT_EQ(Ask(), VT_HOST_ERR_UNKNOWN_RPC);
    });
    stProxy.join();
    stUsb.join();
}

}  // namespace wap::test

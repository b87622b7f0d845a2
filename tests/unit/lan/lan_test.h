// What the tests of the LAN services share.
#ifndef WAP_TESTS_UNIT_LAN_LAN_TEST_H
#define WAP_TESTS_UNIT_LAN_LAN_TEST_H

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/entries.h"
#include "support/entry_calls.h"
#include "support/entry_table_lan.h"
#include "support/expect.h"
#include "support/furnish_lan.h"

namespace wap::test {

inline constexpr uint32_t kNoMemory = 0xF7108001;
inline constexpr const char *kPrefix =
    "\r\n Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_";
inline constexpr const char *kFault = "{\"Result\":-1}";

/// A record of the fault log: who wrote it, and the code.
using FileCode = std::pair<std::string, uint32_t>;
using FileCodes = std::vector<FileCode>;

/// A gateway that answers all requests of the LAN services.
class LanTest : public BridgeTest {
  protected:
    void SetUp() override {
        BridgeTest::SetUp();
        FurnishLan(stWorld);
    }

    /// Exactly one request went out, and it is this one.
    void ExpectAsked(const std::string &sReceiver, uint32_t uiSender, uint32_t uiRpcId,
                     const std::string &sRequest, uint32_t uiRspCap) {
        ExpectOnlyRpc(stPlatform, {sReceiver.c_str(), uiSender, uiRpcId, sRequest, uiRspCap});
        stPlatform.astRpcs.clear();
    }

    void ExpectNotAsked() { EXPECT_TRUE(stPlatform.astRpcs.empty()); }

    /// The request is refused, with bytes that must not reach anybody.
    void Refuse(uint32_t uiRpcId) {
        stPlatform.mapReplies[uiRpcId] = {kRefused, std::string(2000, 'r')};
    }

    /// The fault log, which is forgotten with the call.
    FileCodes TakeFaults() {
        FileCodes astFound;
        for (const FaultRecord &stFault : std::exchange(stPlatform.astFaults, {})) {
            astFound.emplace_back(stFault.sFile, stFault.uiCode);
        }
        return astFound;
    }

    /// A new Java text for one call; null for null.
    jstring Java(const char *pcText) {
        return pcText == nullptr ? nullptr : stEnv.JavaText(FromUtf8(pcText));
    }
    jstring Java(const std::string &sText) { return Java(sText.c_str()); }

    /// What a method gave Java; the Java call is over.
    Answer Ended(jstring jText) {
        Answer stAnswer{stEnv.Utf8Of(jText), std::nullopt};
        stEnv.EndCall();
        return stAnswer;
    }
    Answer Ended(jint iNumber) {
        stEnv.EndCall();
        return NumberAnswerOf(iNumber);
    }
};

}  // namespace wap::test

#endif

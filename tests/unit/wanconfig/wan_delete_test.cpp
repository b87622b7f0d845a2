// Deleting WAN connections, and connection devices that have become empty.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_WanConfigServiceJNI.h>

#include "support/entry_calls.h"
#include "unit/wanconfig/wanconfig_fixture.h"
#include "wan/jni_wan_config.h"

namespace wap::test {
namespace {

/// A PPP connection: device 0x12, connection device 0x34, instance 0x567.
constexpr uint32_t kDeletedWan = 0x21234567;

class DeleteWanTest : public WanConfigTest {
  protected:
    jint Delete(uint32_t uiWanIndex = kDeletedWan) {
        stPlatform.ClearRecords();
        return WAP_METHOD(WanConfig, deleteWANIf)(&stEnv, stEnv.JavaObject(),
                                                  static_cast<jint>(uiWanIndex));
    }
    void AnswerCounts(uint32_t uiIp, uint32_t uiPpp) {
        AnswerWith(kCountIp, CountBytes(uiIp));
        AnswerWith(kCountPpp, CountBytes(uiPpp));
    }
};

TEST_F(DeleteWanTest, LastConnectionTakesItsDeviceAlong) {
    EXPECT_EQ(Delete(), 0);
    ASSERT_EQ(Rpcs(), (Codes{kDelete, kCountPpp, kCountIp, kDelete}));
    const std::string sPlace = Word(0x12) + Word(0x34);
    ExpectRpc(stPlatform.astRpcs[0], {"osgi_proxy", 0, kDelete, Word(2) + sPlace + Word(0x567), 4});
    ExpectRpc(stPlatform.astRpcs[1], {"gulm", 48, kCountPpp, sPlace, 516});
    ExpectRpc(stPlatform.astRpcs[2], {"gulm", 48, kCountIp, sPlace, 516});
    ExpectRpc(stPlatform.astRpcs[3], {"osgi_proxy", 0, kDelete, Word(6) + sPlace + Word(0x567), 4});
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{"\r\n Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_"
                     "WanConfigServiceJNI_deleteWANIf called \r\n",
                     "deleteWANIf wanindex:555959655 \r\n",
                     "VT_JNI_SetWANIf uiWanIndex:0x21234567, uiIpNum:0, uiPppNum:0 \r\n"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(DeleteWanTest, DeviceStaysWithItsOtherConnections) {
    const struct {
        uint32_t uiIp;
        uint32_t uiPpp;
        const char *pcTrace;
    } astCounts[] = {
        {1, 0, "VT_JNI_SetWANIf uiWanIndex:0x21234567, uiIpNum:1, uiPppNum:0 \r\n"},
        {0, 1, "VT_JNI_SetWANIf uiWanIndex:0x21234567, uiIpNum:0, uiPppNum:1 \r\n"},
        {2, 3, "VT_JNI_SetWANIf uiWanIndex:0x21234567, uiIpNum:2, uiPppNum:3 \r\n"},
        {0xFFFFFFFF, 0xFFFFFFFF,
         "VT_JNI_SetWANIf uiWanIndex:0x21234567, uiIpNum:-1, uiPppNum:4294967295 \r\n"},
    };
    for (const auto &stCount : astCounts) {
        AnswerCounts(stCount.uiIp, stCount.uiPpp);
        EXPECT_EQ(Delete(), 0);
        EXPECT_EQ(Rpcs(), (Codes{kDelete, kCountPpp, kCountIp}));
        EXPECT_EQ(EntryTraces(stPlatform).at(2), stCount.pcTrace);
    }
}

TEST_F(DeleteWanTest, OnlyTheFirstWordOfACountCounts) {
    AnswerWith(kCountPpp, std::string(4, '\0') + std::string(512, '\xFF'));
    AnswerWith(kCountIp, "");
    EXPECT_EQ(Delete(), 0);
    EXPECT_EQ(Rpcs().size(), 4u);
}

TEST_F(DeleteWanTest, IndexGoesOutAsItIs) {
    const struct {
        uint32_t uiWanIndex;
        std::string sRequest;
    } astIndexes[] = {
        {0x10101001, Word(1) + Word(1) + Word(1) + Word(1)},
        {0, Word(0) + Word(0) + Word(0) + Word(0)},
        {0xFFFFFFFF, Word(15) + Word(255) + Word(255) + Word(4095)},
        {0x60101001, Word(6) + Word(1) + Word(1) + Word(1)},
    };
    for (const auto &stIndex : astIndexes) {
        EXPECT_EQ(Delete(stIndex.uiWanIndex), 0);
        EXPECT_EQ(stPlatform.astRpcs.at(0).sRequest, stIndex.sRequest);
        EXPECT_EQ(stPlatform.astRpcs.at(1).sRequest, stIndex.sRequest.substr(4, 8));
    }
}

TEST_F(DeleteWanTest, EachFailedRequestEndsIt) {
    const struct {
        uint32_t uiRpcId;
        Codes auiAsked;
        Args auiArgs;
    } astFailures[] = {
        {kDelete, {kDelete}, {kDeletedWan, 0, 0, 0}},
        {kCountPpp, {kDelete, kCountPpp}, {kCountPpp, kDeletedWan, 0, 0}},
        {kCountIp, {kDelete, kCountPpp, kCountIp}, {kCountIp, kDeletedWan, 0, 0}},
    };
    for (const auto &stFailure : astFailures) {
        FurnishWanConfig(stWorld);
        Refuse(stFailure.uiRpcId);
        EXPECT_EQ(Delete(), -1);
        EXPECT_EQ(Rpcs(), stFailure.auiAsked);
        EXPECT_TRUE(HasRecorded(kWanWorkers, kRefused, stFailure.auiArgs));
        EXPECT_TRUE(HasRecorded(kWanEntries, kMinusOne, {kDeletedWan, 0, 0, 0}));
    }
}

TEST_F(DeleteWanTest, FailedRemovalOfTheDeviceIsRecordedAsACount) {
    stPlatform.fnReply = [](const RpcRecord &stRpc) -> std::optional<Reply> {
        if (stRpc.uiRpcId == kDelete && WordAt(stRpc.sRequest, 0) == 6) {
            return Reply{kRefused, ""};
        }
        return std::nullopt;
    };
    EXPECT_EQ(Delete(), -1);
    EXPECT_EQ(Rpcs(), (Codes{kDelete, kCountPpp, kCountIp, kDelete}));
    EXPECT_TRUE(HasRecorded(kWanWorkers, kRefused, {kCountIp, kDeletedWan, 0, 0}));
    EXPECT_TRUE(HasRecorded(kWanEntries, kMinusOne, {kDeletedWan, 0, 0, 0}));
}

TEST_F(DeleteWanTest, WorkerKnowsOneCode) {
    EXPECT_EQ(VT_JNI_DeleteWANIf(kDeletedWan), 0u);
    Refuse(kDelete, 5);
    EXPECT_EQ(VT_JNI_DeleteWANIf(kDeletedWan), kMinusOne);
}

}  // namespace
}  // namespace wap::test

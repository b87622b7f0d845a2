// Creating WAN connections.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_WanConfigServiceJNI.h>

#include "faults/fault_sweep.h"
#include "support/entry_calls.h"
#include "unit/wanconfig/wanconfig_fixture.h"
#include "wan/jni_wan_config.h"

namespace wap::test {
namespace {

class AddWanTest : public WanConfigTest {
  protected:
    void SetUp() override {
        WanConfigTest::SetUp();
        AnswerWith(kAskList, WanListBytes({}));
    }

    jint Add(const char16_t *pcMode, const char16_t *pcVlan, const char16_t *pcType) {
        const auto Java = [this](const char16_t *pcText) {
            return pcText == nullptr ? nullptr : stEnv.JavaText(pcText);
        };
        stPlatform.ClearRecords();
        const jint iResult = WAP_METHOD(WanConfig, addWANIf)(
            &stEnv, stEnv.JavaObject(), Java(pcMode), Java(pcVlan), Java(pcType));
        stEnv.EndCall();
        return iResult;
    }

    /// The addition that went out last.
    std::string Sent() const {
        return Rpcs() == Codes{kAskList, kAdd} ? stPlatform.astRpcs[1].sRequest : "nothing";
    }
};

TEST_F(AddWanTest, LooksForTheVlanAndAsksForTheConnection) {
    EXPECT_EQ(Add(u"2", u"200", u"IP_Routed"), 0x10102001);
    ASSERT_EQ(Rpcs(), (Codes{kAskList, kAdd}));
    ExpectRpc(stPlatform.astRpcs[0], {"gulm", 48, kAskList, Word(0), 2116});
    ExpectRpc(
        stPlatform.astRpcs[1],
        {"osgi_proxy", 0, kAdd, std::string("\x02\0\0\0\xC8\0\0\0IP_Routed\0\0\0\0\0\0\0", 24), 4});
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{"\r\n Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_"
                     "WanConfigServiceJNI_addWANIf called \r\n",
                     "\r\n addWANIf pcVlanMode:2, pcVlan:200, pcConType:IP_Routed, uiVlanMode:2, "
                     "uiVlan:200\r\n"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(AddWanTest, AnyIndexReachesJava) {
    for (const uint32_t uiWanIndex : {0u, 0x20FF0FFFu, 0x80000000u}) {
        AnswerWith(kAdd, Word(uiWanIndex));
        EXPECT_EQ(Add(u"1", u"7", u"PPPoE_Routed"), static_cast<jint>(uiWanIndex));
    }
    AnswerWith(kAdd, "");
    EXPECT_EQ(Add(u"1", u"7", u"PPPoE_Routed"), 0);
}

TEST_F(AddWanTest, ModesAndVlansHaveBounds) {
    EXPECT_EQ(Add(u"2", u"4094", u"IP_Routed"), 0x10102001);
    EXPECT_EQ(Sent().substr(0, 8), Word(2) + Word(4094));
    EXPECT_EQ(Add(u"1", u"0", u"IP_Routed"), 0x10102001);
    EXPECT_EQ(Sent().substr(0, 8), Word(1) + Word(0));
    EXPECT_EQ(Add(u"01", u"000007", u"IP_Routed"), 0x10102001);
    EXPECT_EQ(Sent().substr(0, 8), Word(1) + Word(7));

    const struct {
        const char16_t *pcMode;
        const char16_t *pcVlan;
        Args auiArgs;
    } astBeyond[] = {
        {u"3", u"100", {100, 3, 0, 0}},
        {u"2", u"4095", {4095, 2, 0, 0}},
        // Also where the VLAN does not count.
        {u"0", u"4095", {4095, 0, 0, 0}},
        {u"4294967295", u"4294967295", {0xFFFFFFFF, 0xFFFFFFFF, 0, 0}},
    };
    for (const auto &stBeyond : astBeyond) {
        EXPECT_EQ(Add(stBeyond.pcMode, stBeyond.pcVlan, u"IP_Routed"), -1);
        EXPECT_TRUE(HasRecorded(kWanWorkers, 1, stBeyond.auiArgs));
        EXPECT_EQ(FilesOf(kMinusOne), Calls{kWanEntries});
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        // Nothing but the entry's name: what was refused is not traced.
        EXPECT_EQ(EntryTraces(stPlatform).size(), 1u);
    }
}

TEST_F(AddWanTest, TextsThatAreNoNumbersAreRefused) {
    for (const char16_t *pcNone : {u"x", u"1x", u"-1", u"+1", u" 1", u"1 ", u"0x1", u"4294967296",
                                   u"99999999999999999999999999"}) {
        EXPECT_EQ(Add(pcNone, u"100", u"IP_Routed"), -1);
        EXPECT_EQ(stPlatform.astFaults.size(), 2u);
        EXPECT_EQ(Add(u"1", pcNone, u"IP_Routed"), -1);
        EXPECT_EQ(stPlatform.astFaults.size(), 2u);
        EXPECT_EQ(stPlatform.astFaults.at(0).sFile, kWanWorkers);
        // The code of the conversion.
        EXPECT_EQ(stPlatform.astFaults.at(0).uiCode, 0x0C0C0001u);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
    }
}

TEST_F(AddWanTest, FourTypesInAnyCase) {
    const struct {
        const char16_t *pcType;
        const char *pcSent;
    } astTypes[] = {
        {u"IP_Routed", "IP_Routed"},         {u"IP_Bridged", "IP_Bridged"},
        {u"PPPoE_Bridged", "PPPoE_Bridged"}, {u"PPPoE_Routed", "PPPoE_Routed"},
        {u"ip_routed", "ip_routed"},         {u"IP_BRIDGED", "IP_BRIDGED"},
        {u"pPPoE_bRIDGED", "pPPoE_bRIDGED"}, {u"PPPOE_ROUTED", "PPPOE_ROUTED"},
    };
    for (const auto &stType : astTypes) {
        EXPECT_EQ(Add(u"1", u"5", stType.pcType), 0x10102001);
        EXPECT_EQ(Sent(), Word(1) + Word(5) + Field(stType.pcSent, 16));
    }
    for (const char16_t *pcType : {u"IPoE_Routed", u"IP_Routed ", u"IP_Route", u"IP", u"x"}) {
        EXPECT_EQ(Add(u"1", u"5", pcType), -1);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_TRUE(HasRecorded(kWanWorkers, 1, {5, 1, 0, 0}));
        EXPECT_EQ(EntryTraces(stPlatform).size(), 2u);
    }
}

TEST_F(AddWanTest, ModeZeroHasNoVlan) {
    EXPECT_EQ(Add(u"0", u"100", u"IP_Bridged"), 0x10102001);
    EXPECT_EQ(Sent(), Word(0) + Word(0) + Field("IP_Bridged", 16));
    EXPECT_TRUE(HasEntryTrace(stPlatform,
                              "\r\n addWANIf pcVlanMode:0, pcVlan:100, pcConType:IP_Bridged, "
                              "uiVlanMode:0, uiVlan:100\r\n"));
    AnswerWith(kAskList, WanListBytes({{0x10101001, "1_INTERNET_R_VID_100"}}));
    EXPECT_EQ(Add(u"0", u"100", u"IP_Bridged"), 0x10102001);
    AnswerWith(kAskList, WanListBytes({{0x10101001, "1_INTERNET_R_VID_0"}}));
    EXPECT_EQ(Add(u"0", u"100", u"IP_Bridged"), -2);
}

TEST_F(AddWanTest, VlanInUseIsMinusTwoAndNoFault) {
    AnswerWith(kAskList, WanListBytes({{0x10101001, "1_A_VID_100"}, {0x10101002, "2_B_VID_200"}}));
    EXPECT_EQ(Add(u"2", u"200", u"IP_Routed"), -2);
    EXPECT_EQ(Rpcs(), Codes{kAskList});
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(Add(u"2", u"20", u"IP_Routed"), 0x10102001);
    // Behind a connection without a VLAN nobody looks.
    AnswerWith(kAskList, WanListBytes({{0x10101001, "1_A"}, {0x10101002, "2_B_VID_200"}}));
    EXPECT_EQ(Add(u"2", u"200", u"IP_Routed"), 0x10102001);
}

TEST_F(AddWanTest, FailedRequestsAreRecordedWithVlanAndMode) {
    for (const uint32_t uiRpcId : {kAskList, kAdd}) {
        FurnishWanConfig(stWorld);
        AnswerWith(kAskList, WanListBytes({}));
        Refuse(uiRpcId);
        EXPECT_EQ(Add(u"2", u"200", u"IP_Routed"), -1);
        EXPECT_EQ(Rpcs().back(), uiRpcId);
        EXPECT_TRUE(HasRecorded(kWanWorkers, kRefused, {200, 2, 0, 0}));
        EXPECT_EQ(stPlatform.astFaults.back().sFile, kWanEntries);
        EXPECT_EQ(stPlatform.astFaults.back().uiCode, kMinusOne);
    }
    // The proxy's own -2 is not the one of a VLAN in use.
    Refuse(kAdd, kMinusTwo);
    EXPECT_EQ(Add(u"2", u"200", u"IP_Routed"), -1);
}

TEST_F(AddWanTest, MissingTextIsRefusedWithoutAsking) {
    const char16_t *apcGood[] = {u"2", u"200", u"IP_Routed"};
    for (size_t i = 0; i < 3; ++i) {
        for (const char16_t *pcMissing : {static_cast<const char16_t *>(nullptr), u""}) {
            const char16_t *apcTexts[] = {apcGood[0], apcGood[1], apcGood[2]};
            apcTexts[i] = pcMissing;
            EXPECT_EQ(Add(apcTexts[0], apcTexts[1], apcTexts[2]), -1);
            EXPECT_TRUE(stPlatform.astRpcs.empty());
            EXPECT_EQ(FilesOf(kMinusOne), Calls{kWanEntries});
        }
    }
}

TEST_F(AddWanTest, WorkerRefusesNullArguments) {
    uint32_t uiWanIndex = 42;
    EXPECT_EQ(VT_JNI_AddWANIf(nullptr, "1", "IP_Routed", &uiWanIndex), kMinusOne);
    EXPECT_EQ(VT_JNI_AddWANIf("1", nullptr, "IP_Routed", &uiWanIndex), kMinusOne);
    EXPECT_EQ(VT_JNI_AddWANIf("1", "1", nullptr, &uiWanIndex), kMinusOne);
    EXPECT_EQ(VT_JNI_AddWANIf("1", "1", "IP_Routed", nullptr), kMinusOne);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(stPlatform.astFaults.size(), 4u);
    EXPECT_EQ(uiWanIndex, 42u);
}

TEST_F(AddWanTest, IndexIsWrittenOnSuccessOnly) {
    uint32_t uiWanIndex = 42;
    Refuse(kAdd);
    EXPECT_EQ(VT_JNI_AddWANIf("1", "1", "IP_Routed", &uiWanIndex), kMinusOne);
    AnswerWith(kAskList, WanListBytes({{1, "_VID_1"}}));
    EXPECT_EQ(VT_JNI_AddWANIf("1", "1", "IP_Routed", &uiWanIndex), kMinusTwo);
    EXPECT_EQ(uiWanIndex, 42u);
}

}  // namespace
}  // namespace wap::test

// Setting and clearing bindings.
#include <string>

#include "unit/vlanbind/vlanbind_fixture.h"
#include "wan/jni_vlan_bind.h"

namespace wap::test {
namespace {

class VlanChangeTest : public VlanBindTest {
  protected:
    static WantedRpc Change(const std::string &sInterface, uint32_t uiOperation,
                            const std::string &sBind) {
        return {
            "osgi_proxy", 0, kChange,
            Field(sInterface, 64) + Word(uiOperation) + Field(sBind, 129) + std::string(3, '\0'),
            4};
    }
};

TEST_F(VlanChangeTest, SettingSendsNameOperationAndText) {
    EXPECT_EQ(VT_JNI_SetVlanBind("LAN1", "10/100,20/200"), 0u);
    ExpectOnlyRpc(stPlatform, Change("LAN1", 1, "10/100,20/200"));
    EXPECT_EQ(stPlatform.astRpcs[0].uiReqLen, 200u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_TRUE(stPlatform.astTraces.empty());
}

TEST_F(VlanChangeTest, ClearingSendsNameAlone) {
    EXPECT_EQ(VT_JNI_DelVlanBind("SSID2"), 0u);
    ExpectOnlyRpc(stPlatform, Change("SSID2", 0, ""));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_TRUE(stPlatform.astTraces.empty());
}

TEST_F(VlanChangeTest, ReplyIsNotInterpreted) {
    stPlatform.mapReplies[kChange] = {0, Word(0xFFFFFFFF)};
    EXPECT_EQ(VT_JNI_SetVlanBind("LAN1", "1/1"), 0u);
    stPlatform.mapReplies[kChange] = {0, ""};
    EXPECT_EQ(VT_JNI_DelVlanBind("LAN1"), 0u);
}

TEST_F(VlanChangeTest, TextsAreCutToTheirFields) {
    const std::string sName(63, 'n');
    const std::string sBind = "1/1" + std::string(125, 'b');
    EXPECT_EQ(VT_JNI_SetVlanBind((sName + "cut").c_str(), (sBind + "cut").c_str()), 0u);
    ExpectOnlyRpc(stPlatform, Change(sName, 1, sBind));
    stPlatform.ClearRecords();
    EXPECT_EQ(VT_JNI_SetVlanBind(sName.c_str(), sBind.c_str()), 0u);
    ExpectOnlyRpc(stPlatform, Change(sName, 1, sBind));
    stPlatform.ClearRecords();
    EXPECT_EQ(VT_JNI_DelVlanBind((sName + "cut").c_str()), 0u);
    ExpectOnlyRpc(stPlatform, Change(sName, 0, ""));
}

TEST_F(VlanChangeTest, MissingTextsAreRefusedWithoutAsking) {
    const struct {
        const char *pcInterface;
        const char *pcBind;
    } astCases[] = {{nullptr, "1/1"}, {"LAN1", nullptr}, {"", "1/1"}, {"LAN1", ""}, {nullptr, ""}};
    for (const auto &stCase : astCases) {
        stPlatform.ClearRecords();
        EXPECT_EQ(VT_JNI_SetVlanBind(stCase.pcInterface, stCase.pcBind), 1u);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_EQ(TimesRecorded(kFile, 1), 1u);
    }
    stPlatform.ClearRecords();
    EXPECT_EQ(VT_JNI_DelVlanBind(nullptr), 1u);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(TimesRecorded(kFile, 1), 1u);
}

// Unlike null, and unlike for a binding.
TEST_F(VlanChangeTest, ClearingTakesAnEmptyName) {
    EXPECT_EQ(VT_JNI_DelVlanBind(""), 0u);
    ExpectOnlyRpc(stPlatform, Change("", 0, ""));
}

TEST_F(VlanChangeTest, UnacceptableBindingIsRefusedWithoutAsking) {
    EXPECT_EQ(VT_JNI_SetVlanBind("LAN1", "10/4095"), 1u);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(TimesRecorded(kFile, 1, {4095, 0, 0, 0}), 1u);
    EXPECT_EQ(TimesRecorded(kFile, 1), 1u);
}

TEST_F(VlanChangeTest, PlatformsCodeIsPassedOnAndRecorded) {
    Refuse(kChange);
    EXPECT_EQ(VT_JNI_SetVlanBind("LAN1", "1/1"), kRefused);
    // Where it was asked, and by the worker with the operation.
    EXPECT_EQ(TimesRecorded(kFile, kRefused), 1u);
    EXPECT_EQ(TimesRecorded(kFile, kRefused, {1, 0, 0, 0}), 1u);
    stPlatform.ClearRecords();
    EXPECT_EQ(VT_JNI_DelVlanBind("LAN1"), kRefused);
    EXPECT_EQ(TimesRecorded(kFile, kRefused), 2u);
}

class VlanRpcTest : public VlanBindTest {};

TEST_F(VlanRpcTest, AlwaysAsksTheProxyWithoutATrace) {
    stPlatform.mapReplies[0x11223344] = {0, "pong"};
    for (const char *pcName : {"gulm", "", static_cast<const char *>(nullptr)}) {
        stPlatform.ClearRecords();
        std::string sReply(6, '\0');
        EXPECT_EQ(JNI_MSG_VlanBindRpcCall(pcName, 0x55, 0x11223344, "ping", 4, sReply.data(), 6),
                  0u);
        EXPECT_EQ(sReply, Field("pong", 6));
        ExpectOnlyRpc(stPlatform, {"osgi_proxy", 0x55, 0x11223344, "ping", 6});
        EXPECT_TRUE(stPlatform.astTraces.empty());
        EXPECT_TRUE(stPlatform.astFaults.empty());
    }
}

TEST_F(VlanRpcTest, NullBuffersAreRefused) {
    uint32_t uiWord = 0;
    EXPECT_EQ(JNI_MSG_VlanBindRpcCall("osgi_proxy", 0, kChange, nullptr, 0, &uiWord, 4), 1u);
    EXPECT_EQ(JNI_MSG_VlanBindRpcCall("osgi_proxy", 0, kChange, &uiWord, 4, nullptr, 0), 1u);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(TimesRecorded(kFile, 1, {kChange, 0, 0, 0}), 2u);
}

TEST_F(VlanRpcTest, FailureIsRecordedByItsCode) {
    Refuse(kChange);
    uint32_t uiWord = 0;
    EXPECT_EQ(JNI_MSG_VlanBindRpcCall("osgi_proxy", 0, kChange, &uiWord, 4, &uiWord, 4), kRefused);
    ASSERT_EQ(stPlatform.astFaults.size(), 1u);
    EXPECT_EQ(stPlatform.astFaults[0].uiCode, kRefused);
    EXPECT_TRUE(stPlatform.astFaults[0].bCodeOnly);
}

}  // namespace
}  // namespace wap::test

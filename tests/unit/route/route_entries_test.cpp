// The Java methods of the routes, as Java sees them.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_StaticLayer3ForwardingConfigServiceJNI.h>

#include <string>

#include "support/entry_table_route.h"
#include "unit/route/route_fixture.h"

namespace wap::test {
namespace {

#define WAP_CONFIG(method) \
    Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_StaticLayer3ForwardingConfigServiceJNI_##method

class RouteEntryTest : public RouteTest, public ::testing::WithParamInterface<Entry> {
  protected:
    void AnswerAll(uint32_t uiStatus) {
        for (auto &[uiRpcId, stReply] : stPlatform.mapReplies) {
            stReply.uiStatus = uiStatus;
        }
    }

    const Entry &stEntry = GetParam();
};

TEST_P(RouteEntryTest, TracesItsNameFirst) {
    (void)stEntry.fnCall(stEnv);
    const std::string sClass =
        stEntry.stGood.sText ? "TransferQueryServiceJNI" : "StaticLayer3ForwardingConfigServiceJNI";
    ASSERT_FALSE(stPlatform.astTraces.empty());
    EXPECT_EQ(stPlatform.astTraces[0].sFile, sClass + ".cpp");
    EXPECT_EQ(EntryTraces(stPlatform).at(0),
              "\r\n Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_" + sClass + "_" +
                  stEntry.sMethod + " called \r\n");
}

TEST_P(RouteEntryTest, AnswersFromAWorkingGateway) {
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_TRUE(stPlatform.asConsole.empty());
}

TEST_P(RouteEntryTest, AnswersItsFailureWhenRefusedAndWorksAgain) {
    AnswerAll(kRefused);
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stFailure);
    EXPECT_TRUE(HasFault(stPlatform, kRefused));
    stEnv.EndCall();
    AnswerAll(0);
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
}

INSTANTIATE_TEST_SUITE_P(Methods, RouteEntryTest, ::testing::ValuesIn(RouteEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

class AddEntryTest : public RouteTest {
  protected:
    jint Add4(jstring jDest, jstring jMask, jstring jGateway, jstring jInterface) {
        const jint iResult = WAP_CONFIG(addLayer3ForwardingStatic)(
            &stEnv, stEnv.JavaObject(), jDest, jMask, jGateway, jInterface);
        stEnv.EndCall();
        return iResult;
    }

    jint Add6(jstring jPrefix, jstring jNextHop, jstring jInterface) {
        const jint iResult = WAP_CONFIG(addIPv6Layer3ForwardingStatic)(
            &stEnv, stEnv.JavaObject(), jPrefix, jNextHop, jInterface);
        stEnv.EndCall();
        return iResult;
    }

    jstring Text(const char16_t *pcText) { return stEnv.JavaText(pcText); }
    jstring Alias() { return Text(u"2_internet_r_vid_100"); }
};

TEST_F(AddEntryTest, ArgumentsReachTheirPlaces) {
    EXPECT_EQ(Add4(Text(u"dest"), Text(u"mask"), Text(u"gateway"), Alias()), 7);
    EXPECT_EQ(stPlatform.astRpcs.at(1).sRequest, Word(1) + Field("dest", 16) + Field("mask", 16) +
                                                     Field("gateway", 16) +
                                                     Field("wan1.2.ip3", 32));
    stPlatform.ClearRecords();
    EXPECT_EQ(Add6(Text(u"::1/64"), Text(u"hop"), Alias()), 8);
    EXPECT_EQ(
        stPlatform.astRpcs.at(1).sRequest,
        Field("::1/64", 64) + Field("hop", 64) + Field("wan1.2.ip3", 32) + std::string(224, '\0'));
}

TEST_F(AddEntryTest, Ipv4TracesTheId) {
    stPlatform.mapReplies[0x47209071] = {0, Word(0xFFFFFFFE)};
    EXPECT_EQ(Add4(Text(u"dest"), Text(u"mask"), nullptr, Alias()), -2);
    EXPECT_EQ(EntryTraces(stPlatform).size(), 2u);
    EXPECT_EQ(EntryTraces(stPlatform).back(),
              "\r\n addLayer3ForwardingStatic iInstId:4294967294\r\n");
    EXPECT_EQ(stPlatform.astTraces.back().sFile, "StaticLayer3ForwardingConfigServiceJNI.cpp");
    // Not without one.
    stPlatform.ClearRecords();
    Refuse(0x47209071);
    EXPECT_EQ(Add4(Text(u"dest"), Text(u"mask"), nullptr, Alias()), -1);
    EXPECT_EQ(EntryTraces(stPlatform).size(), 1u);
    EXPECT_EQ(stPlatform.astFaults.back().sFile, "StaticLayer3ForwardingConfigServiceJNI.cpp");
}

TEST_F(AddEntryTest, Ipv6TracesNoMoreThanItsName) {
    EXPECT_EQ(Add6(Text(u"::1/64"), nullptr, Alias()), 8);
    EXPECT_EQ(EntryTraces(stPlatform).size(), 1u);
}

TEST_F(AddEntryTest, GatewayAndNextHopMayBeMissing) {
    for (const bool bEmpty : {false, true}) {
        stPlatform.ClearRecords();
        EXPECT_EQ(Add4(Text(u"dest"), Text(u"mask"), bEmpty ? Text(u"") : nullptr, Alias()), 7);
        EXPECT_EQ(stPlatform.astRpcs.at(1).sRequest.substr(36, 16), std::string(16, '\0'));
        EXPECT_EQ(Add6(Text(u"::1/64"), bEmpty ? Text(u"") : nullptr, Alias()), 8);
        EXPECT_EQ(stPlatform.astRpcs.at(3).sRequest.substr(64, 64), std::string(64, '\0'));
    }
}

TEST_F(AddEntryTest, MissingTextIsRefusedWithoutAsking) {
    for (const bool bEmpty : {false, true}) {
        for (uint32_t uiMissing = 0; uiMissing < 3; ++uiMissing) {
            stPlatform.ClearRecords();
            jstring jNone = bEmpty ? Text(u"") : nullptr;
            EXPECT_EQ(
                Add4(uiMissing == 0 ? jNone : Text(u"dest"), uiMissing == 1 ? jNone : Text(u"mask"),
                     Text(u"gateway"), uiMissing == 2 ? jNone : Alias()),
                -1);
            EXPECT_EQ(FaultCodes(stPlatform), Codes{kMinusOne});
            EXPECT_TRUE(stPlatform.astRpcs.empty());
        }
        for (const bool bPrefix : {false, true}) {
            stPlatform.ClearRecords();
            jstring jNone = bEmpty ? Text(u"") : nullptr;
            EXPECT_EQ(
                Add6(bPrefix ? jNone : Text(u"::1/64"), Text(u"hop"), bPrefix ? Alias() : jNone),
                -1);
            EXPECT_EQ(FaultCodes(stPlatform), Codes{kMinusOne});
            EXPECT_TRUE(stPlatform.astRpcs.empty());
        }
    }
}

TEST_F(AddEntryTest, RefusalIsMinusOne) {
    EXPECT_EQ(Add4(Text(u"1234567890123456"), Text(u"mask"), nullptr, Alias()), -1);
    EXPECT_EQ(Add4(Text(u"dest"), Text(u"mask"), nullptr, Text(u"bR0")), -1);
    EXPECT_EQ(Add6(Text(u"::/0"), nullptr, Alias()), -1);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

TEST_F(AddEntryTest, DeleteArgumentsReachTheirPlaces) {
    EXPECT_EQ(WAP_CONFIG(deleteLayer3ForwardingStatic)(&stEnv, stEnv.JavaObject(), -5), 0);
    EXPECT_EQ(WAP_CONFIG(deleteIPv6Layer3ForwardingStatic)(&stEnv, stEnv.JavaObject(), 6), 0);
    ASSERT_EQ(Rpcs(), (Codes{0x47209072, 0x47209074}));
    EXPECT_EQ(stPlatform.astRpcs[0].sRequest, Word(0xFFFFFFFB));
    EXPECT_EQ(stPlatform.astRpcs[1].sRequest, Word(6));
}

}  // namespace
}  // namespace wap::test

// The four Java methods of the port mapping classes, as Java sees them.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMappingConfigServiceJNI.h>

#include <string>

#include "support/entry_calls.h"
#include "support/entry_table_portmap.h"
#include "unit/portmap/portmap_fixture.h"

namespace wap::test {
namespace {

constexpr jint kWan = 0x10101003;

class MappingEntryTest : public PortMappingTest, public ::testing::WithParamInterface<Entry> {
  protected:
    void RefuseAll() {
        for (auto &[uiRpcId, stReply] : stPlatform.mapReplies) {
            stReply.uiStatus = kRefused;
        }
    }

    const Entry &stEntry = GetParam();
};

TEST_P(MappingEntryTest, TracesItsNameFirst) {
    (void)stEntry.fnCall(stEnv);
    const bool bList = stEntry.sMethod == "getPortMappingInfo";
    ASSERT_FALSE(stPlatform.astTraces.empty());
    const TraceRecord &stTrace = stPlatform.astTraces[0];
    EXPECT_EQ(stTrace.sFile,
              bList ? "PortMappingQueryServiceJNI.cpp" : "PortMappingConfigServiceJNI.cpp");
    EXPECT_EQ(stTrace.sText,
              "\r\n Java_com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_PortMapping" +
                  std::string(bList ? "Query" : "Config") + "ServiceJNI_" + stEntry.sMethod +
                  " called \r\n");
    EXPECT_EQ(stTrace.uiMid, 249u);
    EXPECT_EQ(stTrace.uiZero, 0u);
}

TEST_P(MappingEntryTest, AnswersFromAWorkingGateway) {
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_TRUE(stPlatform.asConsole.empty());
}

TEST_P(MappingEntryTest, AnswersItsFailureWhenRefusedAndWorksAgain) {
    RefuseAll();
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stFailure);
    EXPECT_TRUE(HasFault(stPlatform, kRefused));
    for (auto &[uiRpcId, stReply] : stPlatform.mapReplies) {
        stReply.uiStatus = 0;
    }
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
}

// Numbers need no Java.
TEST_P(MappingEntryTest, SurvivesEveryFailureOfJava) {
    EXPECT_EQ(ExpectNothingWithoutJava(stEntry, FurnishPortMapping) > 0,
              stEntry.sMethod == "addPortMapping" || stEntry.stGood.sText.has_value());
}

TEST_P(MappingEntryTest, SurvivesEveryMissingAllocation) {
    (void)stEntry.fnCall(stEnv);
    stEnv.EndCall();
    const uint32_t uiAllocs = stWorld.Count(Op::kAlloc);
    for (uint32_t uiAt = 1; uiAt <= uiAllocs; ++uiAt) {
        SCOPED_TRACE(uiAt);
        FurnishPortMapping(stWorld);
        stWorld.Plan({Op::kAlloc, uiAt, true});
        const Answer stAnswer = stEntry.fnCall(stEnv);
        stWorld.Plan({});
        EXPECT_EQ(stAnswer,
                  stEntry.sMethod == "addPortMapping" ? NumberAnswerOf(-1) : stEntry.stFailure);
        stEnv.EndCall();
        stWorld.ExpectClean();
    }
}

INSTANTIATE_TEST_SUITE_P(Methods, MappingEntryTest, ::testing::ValuesIn(PortMappingEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

class AddEntryTest : public PortMappingTest {
  protected:
    jint Add(jstring jProtocol, jstring jClient) {
        const jint iResult = WAP_METHOD(PortMappingConfig, addPortMapping)(
            &stEnv, stEnv.JavaObject(), kWan, 8080, -1, jProtocol, jClient);
        stEnv.EndCall();
        return iResult;
    }
};

TEST_F(AddEntryTest, TracesItsArguments) {
    EXPECT_EQ(Add(stEnv.JavaText(u"TCP"), stEnv.JavaText(u"192.168.1.20")), 0);
    EXPECT_EQ(EntryTraces(stPlatform).at(1),
              "wanIndex:269488131    externalPort:8080    internalPort:-1    protocol:TCP    "
              "internetClinet:192.168.1.20");
    EXPECT_EQ(stPlatform.astTraces[1].sFile, "PortMappingConfigServiceJNI.cpp");
}

TEST_F(AddEntryTest, ArgumentsReachTheirPlaces) {
    EXPECT_EQ(Add(stEnv.JavaText(u"proto"), stEnv.JavaText(u"client")), 0);
    EXPECT_EQ(stPlatform.astRpcs.at(0).sRequest, Word(0) + Word(kWanIndex));
    EXPECT_EQ(stPlatform.astRpcs.at(1).sRequest,
              Word(1) + Word(1) + Word(2) + Word(3) +
                  MappingBytes({1, 8080, 0xFFFFFFFF, "proto", "client"}));
}

TEST_F(AddEntryTest, MissingTextIsRefusedWithoutAsking) {
    const auto fnText = [this] { return stEnv.JavaText(u"text"); };
    const auto fnEmpty = [this] { return stEnv.JavaText(u""); };
    EXPECT_EQ(Add(nullptr, fnText()), -1);
    EXPECT_EQ(Add(fnText(), nullptr), -1);
    EXPECT_EQ(Add(nullptr, nullptr), -1);
    EXPECT_EQ(Add(fnEmpty(), fnText()), -1);
    EXPECT_EQ(Add(fnText(), fnEmpty()), -1);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    // Only the name of the entry was traced, and each failure recorded.
    EXPECT_EQ(EntryTraces(stPlatform).size(), 5u);
    EXPECT_EQ(FaultCodes(stPlatform), Codes(5, kMinusOne));
    for (const FaultRecord &stFault : stPlatform.astFaults) {
        EXPECT_EQ(stFault.auiArgs[0], static_cast<uint32_t>(kWan));
    }
}

TEST_F(AddEntryTest, LongTextsAreCut) {
    EXPECT_EQ(
        Add(stEnv.JavaText(std::u16string(4000, u'p')), stEnv.JavaText(std::u16string(16, u'c'))),
        0);
    EXPECT_EQ(stPlatform.astRpcs.back().sRequest.substr(16 + 36, 32),
              std::string(15, 'p') + '\0' + std::string(15, 'c') + '\0');
}

TEST_F(AddEntryTest, RefusalOfTheServiceReachesJava) {
    Refuse(kAdd, kRefusedByService);
    EXPECT_EQ(Add(stEnv.JavaText(u"TCP"), stEnv.JavaText(u"10.0.0.2")), -2);
    Refuse(kAdd, 5);
    EXPECT_EQ(Add(stEnv.JavaText(u"TCP"), stEnv.JavaText(u"10.0.0.2")), -1);
    EXPECT_EQ(stPlatform.astFaults.back().sFile, "PortMappingConfigServiceJNI.cpp");
}

class ChangeEntryTest : public PortMappingTest {
  protected:
    jint Switch(jboolean bEnable) {
        return WAP_METHOD(PortMappingConfig, setPortMappingSwitch)(&stEnv, stEnv.JavaObject(), kWan,
                                                                   -5, bEnable);
    }
};

TEST_F(ChangeEntryTest, SwitchArgumentsReachTheirPlaces) {
    EXPECT_EQ(Switch(JNI_FALSE), 0);
    EXPECT_EQ(stPlatform.astRpcs.at(0).sRequest, Word(0) + Word(kWanIndex));
    EXPECT_EQ(stPlatform.astRpcs.at(3).sRequest, Word(0) + Word(1) + Word(2) + Word(3) +
                                                     Word(0xFFFFFFFB) +
                                                     MappingBytes({.uiEnable = 0}) + Word(0x10));
    stPlatform.ClearRecords();
    EXPECT_EQ(Switch(JNI_TRUE), 0);
    EXPECT_EQ(Rpcs(), (Codes{kAskWan, kAskEntryOfKind1}));
}

TEST_F(ChangeEntryTest, SwitchTellsAMissingEntryFromAFailedChange) {
    Refuse(kSwitch);
    EXPECT_EQ(Switch(JNI_FALSE), -1);
    Refuse(kAskEntryOfKind1);
    EXPECT_EQ(Switch(JNI_FALSE), -2);
}

TEST_F(ChangeEntryTest, DeleteArgumentsReachTheirPlaces) {
    EXPECT_EQ(WAP_METHOD(PortMappingConfig, deletePortMapping)(&stEnv, stEnv.JavaObject(), -1, -5),
              0);
    EXPECT_EQ(stPlatform.astRpcs.at(0).sRequest, Word(0) + Word(0xFFFFFFFF));
    EXPECT_EQ(stPlatform.astRpcs.at(1).sRequest,
              Word(1) + Word(1) + Word(2) + Word(3) + Word(0xFFFFFFFB));
}

}  // namespace
}  // namespace wap::test

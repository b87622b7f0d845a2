// The Java methods of the traffic monitoring services, as Java sees them.
#include <com_veltra_domoline_deviceservice_kavo_wap_gulm_jni_TrafficMonitoringConfigServiceJNI.h>

#include <optional>
#include <string>
#include <vector>

#include "support/entry_calls.h"
#include "support/entry_table_monitor.h"
#include "unit/monitor/monitor_fixture.h"

namespace wap::test {
namespace {

using JavaArray = std::vector<std::optional<std::u16string>>;

class MonitorEntryTest : public MonitorTest, public ::testing::WithParamInterface<Entry> {
  protected:
    const Entry &stEntry = GetParam();
};

TEST_P(MonitorEntryTest, TracesTheCallFirst) {
    (void)stEntry.fnCall(stEnv);
    const TraceRecord &stTrace = stPlatform.astTraces.at(0);
    EXPECT_EQ(stTrace.sFile, kMonitorEntryFile);
    EXPECT_EQ(stTrace.sText, "\r\n " + stEntry.sSymbol + " called \r\n");
    EXPECT_EQ(stTrace.uiMid, 249u);
}

TEST_P(MonitorEntryTest, AnswersFromAWorkingGateway) {
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(RpcIds(stPlatform), Codes{stEntry.uiRpcId});
}

TEST_P(MonitorEntryTest, AnswersItsFailureWhenRefusedAndWorksAgain) {
    stPlatform.mapReplies[stEntry.uiRpcId].uiStatus = kRefused;
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stFailure);
    EXPECT_EQ(TimesRecorded(kMonitorEntryFile, kRefused), 1u);
    stPlatform.mapReplies[stEntry.uiRpcId].uiStatus = 0;
    EXPECT_EQ(stEntry.fnCall(stEnv), stEntry.stGood);
}

INSTANTIATE_TEST_SUITE_P(Methods, MonitorEntryTest, ::testing::ValuesIn(MonitorEntries()),
                         [](const auto &stInfo) { return stInfo.param.sMethod; });

/// The two changes.
struct ChangeEntry {
    const char *pcMethod;
    jint (*pfnEntry)(JNIEnv *, jobject, jobjectArray, jstring);
};

const ChangeEntry kChangeEntries[] = {
    {"addTrafficMonitoringDestAddress",
     WAP_METHOD(TrafficMonitoringConfig, addTrafficMonitoringDestAddress)},
    {"deleteTrafficMonitoringDestAddress",
     WAP_METHOD(TrafficMonitoringConfig, deleteTrafficMonitoringDestAddress)},
};

class MonitorArrayTest : public MonitorTest, public ::testing::WithParamInterface<ChangeEntry> {
  protected:
    jint Call(jobjectArray jAddresses, jstring jBundle) {
        Forget();
        const jint iResult = GetParam().pfnEntry(&stEnv, stEnv.JavaObject(), jAddresses, jBundle);
        stEnv.EndCall();
        return iResult;
    }
    jint Call(const JavaArray &asAddresses) {
        return Call(stEnv.JavaTexts(asAddresses), stEnv.JavaText(u"b"));
    }
    std::string CountTrace(size_t uiCount) const {
        return std::string("\r\n ") + GetParam().pcMethod +
               " uiAddrCnt:" + std::to_string(uiCount) + " \r\n";
    }
    void ExpectRefused(jint iResult) {
        EXPECT_EQ(iResult, -1);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_TRUE(stPlatform.astMessages.empty());
        EXPECT_TRUE(stPlatform.asCalls.empty());
    }
};

// What is traced for each address is what stands behind it in the list: nothing.
TEST_P(MonitorArrayTest, ArgumentsReachTheirPlaces) {
    EXPECT_EQ(Call(stEnv.JavaTexts({u"10.0.0.1", u"2001:db8::1"}), stEnv.JavaText(u"com.a")), 0);
    EXPECT_EQ(astLists.at(0).sBytes, std::string("10.0.0.1,2001:db8::1") + '\0');
    EXPECT_EQ(stPlatform.astRpcs.at(0).sRequest.substr(12), Field("com.a", 256));
    const Calls asTraces = EntryTraces(stPlatform);
    ASSERT_EQ(asTraces.size(), 6u);
    EXPECT_EQ(asTraces[1], CountTrace(2));
    EXPECT_EQ(asTraces[2], "\r\n pcTemp= \r\n");
    EXPECT_EQ(asTraces[3], "\r\n pcTemp= \r\n");
    EXPECT_EQ(asTraces[5], "AddrStrList [10.0.0.1,2001:db8::1]\r\n");
}

TEST_P(MonitorArrayTest, NullAndEmptyElementsLeaveTheirCommas) {
    struct Case {
        JavaArray asAddresses;
        const char *pcList;
    };
    const Case astCases[] = {
        {{u"10.0.0.1", std::nullopt, u"10.0.0.2"}, "10.0.0.1,,10.0.0.2"},
        {{u"10.0.0.1", u"", u"10.0.0.2"}, "10.0.0.1,,10.0.0.2"},
        {{std::nullopt, u"1"}, ",1"},
        {{u"1", std::nullopt}, "1,"},
        {{std::nullopt, u"", std::nullopt}, ",,"},
        {{std::nullopt}, ""},
        {{u""}, ""},
        {{u"1"}, "1"},
        {{u"1,2", u"3"}, "1,2,3"},
    };
    for (const Case &stCase : astCases) {
        SCOPED_TRACE(stCase.pcList);
        EXPECT_EQ(Call(stCase.asAddresses), 0);
        EXPECT_EQ(astLists.at(0).sBytes, std::string(stCase.pcList) + '\0');
        EXPECT_EQ(CountOf(EntryTraces(stPlatform)[1], CountTrace(stCase.asAddresses.size())), 1u);
        EXPECT_EQ(EntryTraces(stPlatform).size(), 4 + stCase.asAddresses.size());
    }
}

TEST_P(MonitorArrayTest, NoAddressesAreRefusedWithoutAnyMessage) {
    ExpectRefused(Call({}));
    EXPECT_EQ(EntryTraces(stPlatform).back(), CountTrace(0));
    EXPECT_EQ(TimesRecorded(kMonitorEntryFile, 0xFFFFFFFF, {0}), 1u);
    ExpectRefused(Call(nullptr, stEnv.JavaText(u"b")));
    EXPECT_EQ(EntryTraces(stPlatform).back(), CountTrace(0));
}

// Before the array is looked at.
TEST_P(MonitorArrayTest, MissingNameIsRefusedWithoutAnyMessage) {
    for (const bool bNull : {false, true}) {
        ExpectRefused(Call(stEnv.JavaTexts({u"1"}), bNull ? nullptr : stEnv.JavaText(u"")));
        EXPECT_EQ(EntryTraces(stPlatform).size(), 1u);
        EXPECT_EQ(FaultCodes(stPlatform), Codes{0xFFFFFFFF});
    }
}

TEST_P(MonitorArrayTest, AddressOf255BytesIsTakenAndOneMoreRefused) {
    const std::u16string sMost(255, u'a');
    EXPECT_EQ(Call({sMost, sMost, sMost}), 0);
    const std::string sUtf8(255, 'a');
    EXPECT_EQ(astLists.at(0).sBytes, sUtf8 + "," + sUtf8 + "," + sUtf8 + '\0');
    ExpectRefused(Call({u"1", sMost + u"a"}));
    EXPECT_EQ(TimesRecorded(kMonitorEntryFile, 0xFFFFFFFF, {2}), 1u);
    // It is the bytes of UTF-8 that count.
    ExpectRefused(Call({std::u16string(128, u'\u00E9')}));
    EXPECT_EQ(Call({std::u16string(127, u'\u00E9')}), 0);
    EXPECT_EQ(astLists.at(0).sBytes.size(), 255u);
    ExpectRefused(Call({std::u16string(5000, u'a')}));
}

TEST_P(MonitorArrayTest, ManyAddressesTravelCompressed) {
    EXPECT_EQ(Call(JavaArray(1000, u"55555555555555555555555555555555")), 0);
    EXPECT_EQ(astLists.at(0).sBytes.size(), 33000u);
    EXPECT_EQ(CountOf(astLists.at(0).sBytes, ","), 999u);
    EXPECT_EQ(stPlatform.CountCalls("VT_OS_Compress"), 2u);
}

// Sent without it, the list would lack an address that is not known to be none.
TEST_P(MonitorArrayTest, AddressThatCanNotBeHadIsRefusedWithoutAnyMessage) {
    for (uint32_t uiAt = 7; uiAt <= 18; ++uiAt) {
        SCOPED_TRACE(uiAt);
        Forget();
        const jobjectArray jAddresses = stEnv.JavaTexts({u"1", u"2"});
        const jstring jBundle = stEnv.JavaText(u"b");
        stWorld.Plan({Op::kJni, uiAt, false});
        EXPECT_EQ(GetParam().pfnEntry(&stEnv, stEnv.JavaObject(), jAddresses, jBundle), -1);
        EXPECT_GE(stWorld.Count(Op::kJni), uiAt);
        stWorld.Plan({});
        stEnv.EndCall();
        EXPECT_TRUE(stPlatform.asCalls.empty());
        EXPECT_EQ(TimesRecorded(kMonitorEntryFile, 0xFFFFFFFF, {2}), 1u);
    }
}

// With a list of 256 bytes for each, and as many more, a block may be no longer than 16 MB.
TEST_P(MonitorArrayTest, TooManyAddressesAreRefusedBeforeAnyIsLookedAt) {
    stEnv.uiCapacityMax = UINT32_MAX;
    const jobjectArray jAddresses = stEnv.JavaTexts(JavaArray(65536));
    stWorld.Plan({});
    ExpectRefused(Call(jAddresses, stEnv.JavaText(u"b")));
    EXPECT_EQ(TimesRecorded(kMonitorEntryFile, 0xFFFFFFFF, {65536}), 1u);
    EXPECT_LT(stWorld.Count(Op::kJni), 20u);
    EXPECT_EQ(Call(JavaArray(65535)), 0);
    EXPECT_EQ(astLists.at(0).sBytes, std::string(65534, ',') + '\0');
}

TEST_P(MonitorArrayTest, MoreAddressesThanTheVirtualMachineHasReferencesForAreRefused) {
    // Four for each, and four for the bundle's name.
    stEnv.uiCapacityMax = 16;
    EXPECT_EQ(Call({u"1", u"2", u"3"}), 0);
    ExpectRefused(Call({u"1", u"2", u"3", u"4"}));
    EXPECT_EQ(TimesRecorded(kMonitorEntryFile, 0xFFFFFFFF, {4}), 1u);
}

TEST_P(MonitorArrayTest, RefusalIsMinusOneWithTheCodeRecorded) {
    for (const uint32_t uiCode : {1u, 0xFFFFFFFEu, kRefused}) {
        stPlatform.mapReplies[kAddMonitored].uiStatus = uiCode;
        stPlatform.mapReplies[kDelMonitored].uiStatus = uiCode;
        EXPECT_EQ(Call({u"1"}), -1);
        EXPECT_EQ(TimesRecorded(kMonitorEntryFile, uiCode), 1u);
        EXPECT_TRUE(stPlatform.mapBlocks.empty());
    }
}

INSTANTIATE_TEST_SUITE_P(Both, MonitorArrayTest, ::testing::ValuesIn(kChangeEntries),
                         [](const auto &stInfo) { return stInfo.param.pcMethod; });

class MonitorQueryEntryTest : public MonitorTest {
  protected:
    std::string Ask() {
        Forget();
        const auto sAnswer =
            stEnv.Utf8Of(WAP_METHOD(TrafficMonitoringConfig, getTrafficMonitoringDestAddressInfo)(
                &stEnv, stEnv.JavaObject()));
        stEnv.EndCall();
        return sAnswer.value_or("(null)");
    }
};

TEST_F(MonitorQueryEntryTest, TracesTwice) {
    EXPECT_EQ(Ask(), kRegistryAnswer);
    EXPECT_EQ(EntryTraces(stPlatform).at(1), "\r\n getTrafficMonitoringDestAddressInfo\r\n");
}

// The blank after the comma tells them apart.
TEST_F(MonitorQueryEntryTest, EmptyRegistryAndEmptyListDiffer) {
    AnswerRegistry(stWorld, 0, 0, "");
    EXPECT_EQ(Ask(), "{\"Result\":0, \"List\":[]}");
    EXPECT_TRUE(stPlatform.astFaults.empty());
    AnswerRegistry(stWorld, 1, 1, std::string("[\"10.0.0.1\"]") + '\0');
    EXPECT_EQ(Ask(), "{\"Result\":0,\"List\":[]}");
}

TEST_F(MonitorQueryEntryTest, BytesBeyondAsciiPassUnchanged) {
    AnswerRegistry(stWorld, 1, 1, std::string("b\xC3\xA4r[\"\xE2\x82\xAC\"]") + '\0');
    EXPECT_EQ(Ask(),
              "{\"Result\":0,\"List\":[{\"BundleName\":\"b\xC3\xA4r\",\"DestAddressList\":"
              "[\"\xE2\x82\xAC\"]}]}");
}

}  // namespace
}  // namespace wap::test

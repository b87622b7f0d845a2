// The fetches that the port mapping methods are made of.
#include <cstring>
#include <string>

#include "lan/jni_port_mapping.h"
#include "records/port_mapping.h"
#include "records/wan_record.h"
#include "unit/portmap/portmap_fixture.h"

namespace wap::test {
namespace {

template <class Record>
std::string BytesOf(const Record &stRecord) {
    return {reinterpret_cast<const char *>(&stRecord), sizeof(stRecord)};
}

class FetchEntryTest : public PortMappingTest {
  protected:
    uint32_t Fetch() {
        std::memset(&stEntry, 'z', sizeof(stEntry));
        return VT_API_getPortMapping(kWanIndex, 77, &stEntry);
    }
    void ExpectUntouched() { EXPECT_EQ(BytesOf(stEntry), std::string(376, 'z')); }

    PortMappingEntry stEntry;
};

TEST_F(FetchEntryTest, KindChoosesTheRpc) {
    const struct {
        uint32_t uiKind;
        uint32_t uiRpcId;
    } astKinds[] = {{0, kAskEntryOfKind0}, {1, kAskEntryOfKind1}};
    for (const auto &stKind : astKinds) {
        stPlatform.ClearRecords();
        AnswerWan({.uiKind = stKind.uiKind});
        const std::string sEntry(376, static_cast<char>('a' + stKind.uiKind));
        stPlatform.mapReplies[stKind.uiRpcId] = {0, sEntry};
        EXPECT_EQ(Fetch(), 0u);
        EXPECT_EQ(BytesOf(stEntry), sEntry);
        ExpectRpcs({WanQuery(),
                    {"gulm", 87, stKind.uiRpcId, Word(1) + Word(2) + Word(3) + Word(77), 376}});
        EXPECT_EQ(EntryTraces(stPlatform), (Calls{kWanTrace, kNumbersTrace}));
        EXPECT_TRUE(stPlatform.astFaults.empty());
    }
}

TEST_F(FetchEntryTest, OtherKindsAreRefused) {
    for (const uint32_t uiKind : {2u, 3u, 0x80000000u, 0xFFFFFFFFu}) {
        stPlatform.ClearRecords();
        AnswerWan({.uiKind = uiKind});
        EXPECT_EQ(Fetch(), 1u);
        ExpectUntouched();
        EXPECT_EQ(Rpcs(), (Codes{kAskWan}));
        EXPECT_TRUE(HasRecorded(1, {kWanIndex, 77, uiKind, 0}));
    }
}

TEST_F(FetchEntryTest, WhatTheConnectionMustBe) {
    for (const GateCase &stCase : kGateCases) {
        SCOPED_TRACE(std::to_string(stCase.uiGate) + " " + std::to_string(stCase.uiMode));
        stPlatform.ClearRecords();
        AnswerWan({.uiGate = stCase.uiGate, .uiMode = stCase.uiMode});
        EXPECT_EQ(Fetch(), stCase.bAllowed ? 0 : kNotMappable);
        EXPECT_EQ(HasRecorded(kNotMappable, {kWanIndex, 77, 0, 0}), !stCase.bAllowed);
    }
}

// A connection that may have none comes before one of an unknown kind.
TEST_F(FetchEntryTest, GateIsCheckedBeforeTheKind) {
    AnswerWan({.uiKind = 2, .uiGate = 0});
    EXPECT_EQ(Fetch(), kNotMappable);
}

TEST_F(FetchEntryTest, FailedRequestsPassTheirCodesOn) {
    Refuse(kAskEntryOfKind1, 0x11);
    EXPECT_EQ(Fetch(), 0x11u);
    ExpectUntouched();
    EXPECT_TRUE(HasRecorded(0x11, {kWanIndex, 77, 0, 0}));
    Refuse(kAskWan, 0x22);
    EXPECT_EQ(Fetch(), 0x22u);
    ExpectUntouched();
    EXPECT_TRUE(HasRecorded(0x22, {kWanIndex, 77, 0, 0}));
}

TEST_F(FetchEntryTest, ReplyCutShortIsFilledWithZeros) {
    stPlatform.mapReplies[kAskEntryOfKind1].sBytes = "12345";
    EXPECT_EQ(Fetch(), 0u);
    EXPECT_EQ(BytesOf(stEntry), "12345" + std::string(371, '\0'));
}

TEST_F(FetchEntryTest, NullIsRefusedWithoutAsking) {
    EXPECT_EQ(VT_API_getPortMapping(kWanIndex, 77, nullptr), kNullArgument);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_TRUE(HasRecorded(kNullArgument, {kWanIndex, 0, 0, 0}));
}

class FetchNumTest : public PortMappingTest {};

TEST_F(FetchNumTest, NumberIsTheWordOfTheReply) {
    stPlatform.mapReplies[kAskNum] = {0, Word(0x89ABCDEF)};
    uint32_t uiNum = 0;
    EXPECT_EQ(VT_API_getPortMappingNum(&uiNum), 0u);
    EXPECT_EQ(uiNum, 0x89ABCDEFu);
    ExpectRpcs({{"gulm", 87, kAskNum, Word(0), 4}});
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(FetchNumTest, Failures) {
    uint32_t uiNum = 55;
    Refuse(kAskNum);
    EXPECT_EQ(VT_API_getPortMappingNum(&uiNum), kRefused);
    EXPECT_EQ(uiNum, 55u);
    EXPECT_TRUE(HasRecorded(kRefused, {}));
    stPlatform.ClearRecords();
    EXPECT_EQ(VT_API_getPortMappingNum(nullptr), kNullArgument);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_TRUE(HasRecorded(kNullArgument, {}));
}

class FetchWanTest : public PortMappingTest {
  protected:
    WanRecord stWan;
};

TEST_F(FetchWanTest, GivesTheRecordAsItCame) {
    const std::string sReply(284, 'w');
    stPlatform.mapReplies[kAskWan] = {0, sReply};
    EXPECT_EQ(VT_API_getOsgiWanInfoByWanIndex(kWanIndex, &stWan), 0u);
    EXPECT_EQ(BytesOf(stWan), sReply);
    ExpectRpcs({WanQuery()});
    EXPECT_EQ(EntryTraces(stPlatform), (Calls{kWanTrace}));
    EXPECT_EQ(stPlatform.astTraces.back().sFile, "jni_port_mapping.cpp");
}

TEST_F(FetchWanTest, ShortReplyIsFilledWithZeros) {
    stPlatform.mapReplies[kAskWan] = {0, "name"};
    EXPECT_EQ(VT_API_getOsgiWanInfoByWanIndex(kWanIndex, &stWan), 0u);
    EXPECT_EQ(BytesOf(stWan), "name" + std::string(280, '\0'));
}

TEST_F(FetchWanTest, Failures) {
    std::memset(&stWan, 'z', sizeof(stWan));
    Refuse(kAskWan);
    EXPECT_EQ(VT_API_getOsgiWanInfoByWanIndex(kWanIndex, &stWan), kRefused);
    EXPECT_EQ(BytesOf(stWan), std::string(284, 'z'));
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
    EXPECT_TRUE(HasRecorded(kRefused, {kWanIndex, 0, 0, 0}));
    stPlatform.ClearRecords();
    EXPECT_EQ(VT_API_getOsgiWanInfoByWanIndex(kWanIndex, nullptr), kNullArgument);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

}  // namespace
}  // namespace wap::test

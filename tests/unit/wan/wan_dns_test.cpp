// The DNS servers of WAN connections: merging lists, asking for the present ones, setting new ones.
#include <string>

#include "support/wire_bytes.h"
#include "unit/wan/wan_fixture.h"
#include "wan/jni_wan_info.h"

namespace wap::test {
namespace {

class WanDnsTest : public WanTest {
  protected:
    /// Merges into a field of 64 bytes that holds dirt behind its text.
    std::string Merge4(const std::string &sOld, const std::string &sNew, uint32_t uiWanted = 0) {
        std::string sField = Field(sNew, 64);
        for (size_t i = sNew.size() + 1; i < 64; ++i) {
            sField[i] = '~';
        }
        const std::string sBefore = sField;
        sField += "####";
        EXPECT_EQ(VT_API_MergeIpv4Dns(sOld.c_str(), sField.data(), 64), uiWanted);
        EXPECT_EQ(sField.substr(64), "####");
        sField.resize(64);
        if (uiWanted != 0) {
            EXPECT_EQ(sField, sBefore);
            return "";
        }
        std::string sText = UpToZero(sField);
        EXPECT_EQ(sField, Field(sText, 64));
        return sText;
    }

    std::string Merge6(const char *pcOld, const char *pcNew) {
        std::string sOut(132, '~');
        EXPECT_EQ(VT_API_MergeIpv6Dns(pcOld, pcNew, sOut.data()), 0u);
        EXPECT_EQ(sOut.substr(128), "~~~~");
        return sOut.substr(0, 128);
    }

    /// Completes a list of a connection; on failure it must be as before.
    std::string Complete(uint32_t uiWanIndex, const std::string &sNew, uint32_t uiWanted = 0) {
        stPlatform.ClearRecords();
        std::string sField = Field(sNew, 64);
        EXPECT_EQ(VT_API_MergeWanIpv4Dns(uiWanIndex, sField.data(), 64), uiWanted);
        if (uiWanted != 0) {
            EXPECT_EQ(sField, Field(sNew, 64));
        }
        return UpToZero(sField);
    }
};

/// Present list, list that is asked for, and what comes of it, as the two places.
struct MergeCase {
    const char *pcOld;
    const char *pcNew;
    const char *pcFirst;
    const char *pcSecond;
};
const MergeCase kMergeCases[] = {
    {"1.1.1.1,2.2.2.2", "8.8.8.8", "8.8.8.8", "2.2.2.2"},
    {"1.1.1.1,2.2.2.2", "8.8.8.8,9.9.9.9", "8.8.8.8", "9.9.9.9"},
    {"1.1.1.1,2.2.2.2", "", "1.1.1.1", "2.2.2.2"},
    // An empty place is none: what follows the comma comes first.
    {"1.1.1.1,2.2.2.2", ",8.8.4.4", "8.8.4.4", "2.2.2.2"},
    {"1.1.1.1,2.2.2.2", ",,,", "1.1.1.1", "2.2.2.2"},
    {"1.1.1.1,2.2.2.2", ",,8.8.8.8,,9.9.9.9,", "8.8.8.8", "9.9.9.9"},
    {",1.1.1.1,,2.2.2.2", "", "1.1.1.1", "2.2.2.2"},
    // A third is nobody's.
    {"1.1.1.1,2.2.2.2,3.3.3.3", "4.4.4.4", "4.4.4.4", "2.2.2.2"},
    {"1.1.1.1", "4.4.4.4,5.5.5.5,6.6.6.6", "4.4.4.4", "5.5.5.5"},
    {"1.1.1.1", "", "1.1.1.1", ""},
    {"1.1.1.1", "8.8.8.8", "8.8.8.8", ""},
    {"", "8.8.8.8", "8.8.8.8", ""},
    {"", "8.8.8.8,9.9.9.9", "8.8.8.8", "9.9.9.9"},
    // Texts are not looked at: blanks and words are servers like others.
    {" ", "x, y", "x", " y"},
};

TEST_F(WanDnsTest, EachPlaceIsTakenFromTheNewListIfItIsThere) {
    for (const MergeCase &stCase : kMergeCases) {
        SCOPED_TRACE(std::string(stCase.pcOld) + " | " + stCase.pcNew);
        std::string sWanted = stCase.pcFirst;
        sWanted += *stCase.pcSecond == '\0' ? "" : std::string(",") + stCase.pcSecond;
        EXPECT_EQ(Merge4(stCase.pcOld, stCase.pcNew), sWanted);
        EXPECT_EQ(Merge6(stCase.pcOld, stCase.pcNew),
                  Field(stCase.pcFirst, 64) + Field(stCase.pcSecond, 64));
    }
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

// ---- IPv4 ----

TEST_F(WanDnsTest, TracesOfAMerge) {
    Merge4("1.1.1.1,2.2.2.2", "8.8.8.8");
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{"ipv4 pcOldDns:1.1.1.1,2.2.2.2,  pcNewDns:8.8.8.8 \r\n",
                     "ipv4 acDnsStr:8.8.8.8,2.2.2.2,  pcNewDns:8.8.8.8,2.2.2.2 \r\n"}));
}

TEST_F(WanDnsTest, NoServerAtAllIsAFailure) {
    Merge4("", "", 1);
    EXPECT_EQ(EntryTraces(stPlatform), (Calls{"ipv4 pcOldDns:,  pcNewDns: \r\n"}));
    Merge4(",,", ",", 1);
    EXPECT_EQ(Recorded(kDnsFile, 1), (Records{{64, 0, 0, 0}, {64, 0, 0, 0}}));
}

TEST_F(WanDnsTest, ListIsCutTo32Characters) {
    const std::string s16 = "1234567890123456";
    EXPECT_EQ(Merge4("", s16 + "," + s16), s16 + ",123456789012345");
    EXPECT_EQ(Merge4("", s16 + ",123456789012345"), s16 + ",123456789012345");
    const std::string s40 = s16 + s16 + "12345678";
    EXPECT_EQ(Merge4("2.2.2.2", s40), s16 + s16);
    EXPECT_EQ(Merge4("1.1.1.1," + s40 + s40 + s40, "8.8.8.8"), "8.8.8.8,123456789012345612345678");
}

TEST_F(WanDnsTest, ListIsCutToItsBuffer) {
    std::string sField = std::string("9.9\0", 4) + "~~~~####";
    EXPECT_EQ(VT_API_MergeIpv4Dns("1.1.1.1,2.2.2.2", sField.data(), 8), 0u);
    EXPECT_EQ(sField, std::string("9.9,2.2\0####", 12));
    char acOne[] = "";
    EXPECT_EQ(VT_API_MergeIpv4Dns("1.1.1.1", acOne, 1), 0u);
    EXPECT_EQ(acOne[0], '\0');
}

TEST_F(WanDnsTest, WhatIsNoListIsRefused) {
    char acNew[] = "8.8.8.8";
    EXPECT_EQ(VT_API_MergeIpv4Dns(nullptr, acNew, sizeof(acNew)), 1u);
    EXPECT_EQ(VT_API_MergeIpv4Dns("1.1.1.1", nullptr, 64), 1u);
    EXPECT_EQ(VT_API_MergeIpv4Dns("1.1.1.1", acNew, 0), 1u);
    // No zero within its size.
    EXPECT_EQ(VT_API_MergeIpv4Dns("1.1.1.1", acNew, 7), 1u);
    EXPECT_STREQ(acNew, "8.8.8.8");
    EXPECT_EQ(Recorded(kDnsFile, 1),
              (Records{{8, 0, 0, 0}, {64, 0, 0, 0}, {0, 0, 0, 0}, {7, 0, 0, 0}}));
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
}

// ---- IPv6 ----

TEST_F(WanDnsTest, Ipv6ServersHaveAFieldEach) {
    EXPECT_EQ(Merge6("fe80::1,fe80::2", "2001:db8::1"),
              Field("2001:db8::1", 64) + Field("fe80::2", 64));
    EXPECT_EQ(EntryTraces(stPlatform), (Calls{"server1:2001:db8::1, server2:fe80::2 \r\n"}));
    EXPECT_EQ(Merge6("", ""), std::string(128, '\0'));
    EXPECT_EQ(EntryTraces(stPlatform).back(), "server1:, server2: \r\n");
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WanDnsTest, LongIpv6ServersAreCutToTheirFields) {
    const std::string sLong(100, 'a');
    EXPECT_EQ(Merge6("", (sLong + "," + std::string(64, 'b')).c_str()),
              Field(std::string(63, 'a'), 64) + Field(std::string(63, 'b'), 64));
}

TEST_F(WanDnsTest, Ipv6MergeOfNothingIsRefused) {
    std::string sOut(128, '~');
    EXPECT_EQ(VT_API_MergeIpv6Dns(nullptr, "a", sOut.data()), 1u);
    EXPECT_EQ(VT_API_MergeIpv6Dns("a", nullptr, sOut.data()), 1u);
    EXPECT_EQ(VT_API_MergeIpv6Dns("a", "b", nullptr), 1u);
    EXPECT_EQ(sOut, std::string(128, '~'));
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{1, 1, 1}));
    EXPECT_TRUE(RecordedAlone(kDnsFile, 1));
}

// ---- the present servers of a connection ----

TEST_F(WanDnsTest, KindChoosesTheRequestForThePresentServers) {
    AnswerIpDns("1.1.1.1,2.2.2.2");
    AnswerPppDns("3.3.3.3,4.4.4.4");
    EXPECT_EQ(Complete(kPppWan, "8.8.8.8"), "8.8.8.8,4.4.4.4");
    ExpectRpcs({{"gulm", 50, kAskPppDns, Word(1) + Word(2) + Word(3), 12004}});
    // Every other kind is asked for as an IP connection, also those that there are not.
    for (const uint32_t uiKind : {1u, 0u, 3u, 15u}) {
        EXPECT_EQ(Complete(uiKind << 28 | 0x0ABCDEF9, "8.8.8.8"), "8.8.8.8,2.2.2.2");
        ExpectRpcs({{"gulm", 50, kAskIpDns, Word(0xAB) + Word(0xCD) + Word(0xEF9), 12864}});
    }
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WanDnsTest, TracesOfACompletion) {
    AnswerIpDns("1.1.1.1");
    Complete(kIpWan, "8.8.8.8");
    EXPECT_EQ(EntryTraces(stPlatform), (Calls{"uiWanIndex:0x10101001, pcDns:8.8.8.8",
                                              "ipv4 pcOldDns:1.1.1.1,  pcNewDns:8.8.8.8 \r\n",
                                              "ipv4 acDnsStr:8.8.8.8,  pcNewDns:8.8.8.8 \r\n"}));
}

TEST_F(WanDnsTest, PresentServersEndAtTheirField) {
    // The whole reply is dirt; of the field's 64 bytes 24 fit behind the new server.
    stPlatform.mapReplies[kAskIpDns] = {0, std::string(12864, '7')};
    EXPECT_EQ(Complete(kIpWan, ""), std::string(32, '7'));
    EXPECT_EQ(EntryTraces(stPlatform).at(1),
              "ipv4 pcOldDns:" + std::string(64, '7') + ",  pcNewDns: \r\n");
    stPlatform.mapReplies[kAskPppDns] = {0, std::string(12004, '7')};
    EXPECT_EQ(Complete(kPppWan, "8.8.8.8"), "8.8.8.8");
}

TEST_F(WanDnsTest, ReplyCutShortHasWhatItHas) {
    const std::string sReply = DnsBytes(12864, 524, "1.1.1.1,2.2.2.2");
    const struct {
        size_t uiLength;
        const char *pcWanted;
    } astCases[] = {{0, "8.8.8.8"},     {524, "8.8.8.8"},         {532, "8.8.8.8"},
                    {533, "8.8.8.8,2"}, {539, "8.8.8.8,2.2.2.2"}, {12864, "8.8.8.8,2.2.2.2"}};
    for (const auto &stCase : astCases) {
        stPlatform.mapReplies[kAskIpDns] = {0, sReply.substr(0, stCase.uiLength)};
        EXPECT_EQ(Complete(kIpWan, "8.8.8.8"), stCase.pcWanted) << stCase.uiLength;
    }
}

TEST_F(WanDnsTest, FailedCompletions) {
    AnswerIpDns("1.1.1.1");
    Refuse(kAskIpDns);
    Complete(kIpWan, "8.8.8.8", kRefused);
    EXPECT_EQ(Recorded(kDnsFile, kRefused), (Records{{kIpWan, 0, 0, 0}}));
    AnswerIpDns("");
    Complete(kIpWan, ",", 1);
    EXPECT_EQ(Recorded(kDnsFile, 1), (Records{{64, 0, 0, 0}, {kIpWan, 0, 0, 0}}));
    stWorld.Plan({Op::kAlloc, 1});
    Complete(kIpWan, "8.8.8.8", 1);
    stWorld.Plan({});
    EXPECT_EQ(Recorded(kDnsFile, 1), (Records{{kIpWan, 0, 0, 0}}));
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

TEST_F(WanDnsTest, CompletionOfWhatIsNoList) {
    char acNew[] = "8.8.8.8";
    EXPECT_EQ(VT_API_MergeWanIpv4Dns(kIpWan, nullptr, 64), 1u);
    EXPECT_EQ(VT_API_MergeWanIpv4Dns(kIpWan, acNew, 7), 1u);
    EXPECT_EQ(Recorded(kDnsFile, 1), (Records{{kIpWan, 64, 0, 0}, {kIpWan, 7, 0, 0}}));
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
}

// ---- setting IPv6 servers ----

TEST_F(WanDnsTest, Ipv6ServersAreCompletedAndSet) {
    AnswerIpv6Dns("fe80::1,fe80::2");
    EXPECT_EQ(VT_API_SetWanIpv6Dns(kPppWan, "2001:db8::1"), 0u);
    ExpectRpcs(
        {{"gulm", 50, kAskIpv6Dns, Field("wan1.2.ppp3", 32), 1389},
         {"gulm", 89, kSetIpv6Dns,
          Word(kPppWan) + Field("2001:db8::1", 64) + Field("fe80::2", 64) + std::string(1, '\0'),
          4}});
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{"GetIpv6Dns wan index:0x20102003 ,wan name:wan1.2.ppp3, pcDns:2001:db8::1\r\n",
                     "server1:2001:db8::1, server2:fe80::2 \r\n"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WanDnsTest, Ipv6ServersCanBeTakenAway) {
    AnswerIpv6Dns("");
    EXPECT_EQ(VT_API_SetWanIpv6Dns(kIpWan, ","), 0u);
    ASSERT_EQ(stPlatform.astRpcs.size(), 2u);
    EXPECT_EQ(stPlatform.astRpcs[1].sRequest, Word(kIpWan) + std::string(129, '\0'));
}

TEST_F(WanDnsTest, PresentIpv6ServersEndAtTheirField) {
    AnswerIpv6Dns("");
    stPlatform.mapReplies[kAskIpv6Dns] = {0, std::string(1389, '7')};
    EXPECT_EQ(VT_API_SetWanIpv6Dns(kIpWan, ""), 0u);
    // 64 bytes of the reply are the text, and one less fits into the request.
    EXPECT_EQ(stPlatform.astRpcs.at(1).sRequest, Word(kIpWan) + Field(std::string(63, '7'), 129));
    stPlatform.mapReplies[kAskIpv6Dns] = {0, std::string(914, '7')};
    EXPECT_EQ(VT_API_SetWanIpv6Dns(kIpWan, "a"), 0u);
    EXPECT_EQ(stPlatform.astRpcs.at(3).sRequest, Word(kIpWan) + Field("a", 129));
}

TEST_F(WanDnsTest, Ipv6ServersOfNoConnection) {
    EXPECT_EQ(VT_API_SetWanIpv6Dns(0x30101001, "::1"), 1u);
    EXPECT_EQ(VT_API_SetWanIpv6Dns(kIpWan, nullptr), 1u);
    EXPECT_EQ(Recorded(kDnsFile, 1), (Records{{0x30101001, 0, 0, 0}, {kIpWan, 0, 0, 0}}));
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
}

TEST_F(WanDnsTest, Ipv6RequestsThatFail) {
    AnswerIpv6Dns("fe80::1");
    Refuse(kSetIpv6Dns, 0x22);
    EXPECT_EQ(VT_API_SetWanIpv6Dns(kIpWan, "::1"), 0x22u);
    EXPECT_EQ(Recorded(kDnsFile, 0x22), (Records{{kIpWan, 0, 0, 0}}));
    stPlatform.ClearRecords();
    Refuse(kAskIpv6Dns, 0x11);
    EXPECT_EQ(VT_API_SetWanIpv6Dns(kIpWan, "::1"), 0x11u);
    EXPECT_EQ(stPlatform.astRpcs.size(), 1u);
    EXPECT_EQ(Recorded(kDnsFile, 0x11), (Records{{kIpWan, 0, 0, 0}}));
    stPlatform.ClearRecords();
    stWorld.Plan({Op::kAlloc, 1});
    EXPECT_EQ(VT_API_SetWanIpv6Dns(kIpWan, "::1"), 1u);
    stWorld.Plan({});
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(Recorded(kDnsFile, 1), (Records{{kIpWan, 0, 0, 0}}));
}

}  // namespace
}  // namespace wap::test

// The list of WAN connections: what is looked for in it, and how it is shown.
#include <string>
#include <vector>

#include "unit/wan/wan_fixture.h"
#include "wan/jni_wan_info.h"

namespace wap::test {
namespace {

const std::vector<Wan> kThreeWans = {{kIpWan, "1_TR069_R_VID_46"},
                                     {kPppWan, "2_INTERNET_R_VID_100"},
                                     {0x10104002, "3_Other_B_VID_0"}};

class WanListTest : public WanTest {
  protected:
    /// Found flag and index, which are marked before.
    struct Found {
        uint32_t uiFlag = 77;
        uint32_t uiWanIndex = 88;

        bool operator==(const Found &) const = default;
    };
    static constexpr Found kNothing = {77, 88};

    Found Management(uint32_t uiWanted = 0) {
        Found stFound;
        EXPECT_EQ(VT_API_IsTR069Exsit(&stFound.uiFlag, &stFound.uiWanIndex), uiWanted);
        return stFound;
    }

    uint32_t Vlan(uint32_t uiVlan, uint32_t uiWanted = 0) {
        uint32_t uiFound = 77;
        EXPECT_EQ(VT_API_IsVlanExsit(uiVlan, &uiFound), uiWanted);
        return uiFound;
    }
    bool HasVlan(uint32_t uiVlan) {
        const uint32_t uiFound = Vlan(uiVlan);
        EXPECT_TRUE(uiFound == 1 || uiFound == 77) << uiFound;
        return uiFound == 1;
    }
    bool NameTells(const std::string &sName, uint32_t uiVlan) {
        AnswerList(ListBytes({{kIpWan, sName}}));
        return HasVlan(uiVlan);
    }
};

TEST_F(WanListTest, AsksForTheList) {
    WanIfList stList = {};
    const std::string sList = ListBytes(kThreeWans);
    AnswerList(sList);
    EXPECT_EQ(AskWanList(stList), 0u);
    EXPECT_EQ(BytesOf(stList), sList);
    ExpectRpcs({ListQuery()});
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WanListTest, ListStaysEmptyWhenTheRequestFails) {
    WanIfList stList = {};
    stPlatform.mapReplies[kAskList] = {kRefused, ListBytes(kThreeWans)};
    EXPECT_EQ(AskWanList(stList), kRefused);
    EXPECT_EQ(BytesOf(stList), std::string(2116, '\0'));
    EXPECT_EQ(stPlatform.astFaults.back().sFile, kListFile);
    EXPECT_EQ(stPlatform.astFaults.back().uiCode, kRefused);
}

TEST_F(WanListTest, ListHasNoMoreEntriesThanRoom) {
    WanIfList stList = {};
    for (const uint32_t uiCount : {0u, 1u, 7u, 8u}) {
        stList.uiCount = uiCount;
        EXPECT_EQ(CountWans(stList), uiCount);
    }
    for (const uint32_t uiCount : {9u, 0x80000000u, 0xFFFFFFFFu}) {
        stList.uiCount = uiCount;
        EXPECT_EQ(CountWans(stList), 8u);
    }
}

// ---- the management protocol's connection ----

TEST_F(WanListTest, FirstManagementConnectionIsFound) {
    AnswerList(ListBytes({{1, "1_INTERNET_R_VID_100"},
                          {kPppWan, "2_VOIP_tR069_R_VID_46"},
                          {3, "3_TR069_R_VID_47"}}));
    EXPECT_EQ(Management(), (Found{1, kPppWan}));
    ExpectRpcs({ListQuery()});
    EXPECT_EQ(EntryTraces(stPlatform), (Calls{"tr069 wan index:0x20102003 \r\n"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WanListTest, WithoutManagementConnectionOutputsStay) {
    AnswerList(ListBytes({{1, "1_INTERNET_R_VID_100"}, {2, "TR06"}, {3, ""}, {4, "TR 069"}}));
    EXPECT_EQ(Management(), kNothing);
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
    AnswerList(ListBytes({}));
    EXPECT_EQ(Management(), kNothing);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WanListTest, OnlyEntriesThatCountAreSearched) {
    AnswerList(ListBytes({{1, "x"}, {2, "TR069"}}, 1));
    EXPECT_EQ(Management(), kNothing);
    AnswerList(ListBytes({{1, "x"}, {2, "TR069"}}, 2));
    EXPECT_EQ(Management(), (Found{1, 2}));
    // The eighth is the last that there is room for.
    std::vector<Wan> astEight(8, Wan{1, "x"});
    astEight[7] = {0x1010100A, "8_TR069"};
    AnswerList(ListBytes(astEight, 0xFFFFFFFF));
    EXPECT_EQ(Management(), (Found{1, 0x1010100A}));
}

TEST_F(WanListTest, NameEndsAtItsField) {
    // Without a zero anywhere, the mark is at the name's very end or beyond it.
    const std::string sMarked = std::string(255, 'n') + "TR069";
    const std::string sCut = std::string(256, 'n') + "TR06";
    AnswerList(ListBytes({{5, sMarked}}));
    EXPECT_EQ(Management(), (Found{1, 5}));
    // The next entry's index would continue the mark.
    AnswerList(ListBytes({{5, sCut}, {'9', "x"}}));
    EXPECT_EQ(Management(), kNothing);
    AnswerList(std::string(2116, 'n'));
    EXPECT_EQ(Management(), kNothing);
}

TEST_F(WanListTest, ListCutShort) {
    const std::string sList = ListBytes({{kIpWan, "TR069"}});
    for (size_t i = 0; i <= 13; ++i) {
        AnswerList(sList.substr(0, i));
        EXPECT_EQ(Management(), i == 13 ? (Found{1, kIpWan}) : kNothing) << i;
    }
}

TEST_F(WanListTest, FailedRequestsPassTheirCodesOn) {
    AnswerList(ListBytes(kThreeWans));
    Refuse(kAskList);
    EXPECT_EQ(Management(kRefused), kNothing);
    EXPECT_EQ(Vlan(46, kRefused), 77u);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kRefused, kRefused, kRefused}));
    EXPECT_TRUE(RecordedAlone(kListFile, kRefused));
}

TEST_F(WanListTest, SearchesWithoutMemory) {
    AnswerList(ListBytes(kThreeWans));
    stWorld.Plan({Op::kAlloc, 1});
    EXPECT_EQ(Management(1), kNothing);
    stWorld.Plan({Op::kAlloc, 1});
    EXPECT_EQ(Vlan(46, 1), 77u);
    stWorld.Plan({});
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(Recorded(kListFile, 1), (Records{{2116, 0, 0, 0}, {2116, 0, 0, 0}}));
}

TEST_F(WanListTest, OutputsThatNobodyWantsAreSkipped) {
    AnswerList(ListBytes(kThreeWans));
    EXPECT_EQ(VT_API_IsTR069Exsit(nullptr, nullptr), 0u);
    uint32_t uiFound = 0;
    EXPECT_EQ(VT_API_IsTR069Exsit(&uiFound, nullptr), 0u);
    EXPECT_EQ(uiFound, 1u);
    uint32_t uiWanIndex = 0;
    EXPECT_EQ(VT_API_IsTR069Exsit(nullptr, &uiWanIndex), 0u);
    EXPECT_EQ(uiWanIndex, kIpWan);
    EXPECT_EQ(VT_API_IsVlanExsit(46, nullptr), 0u);
}

// ---- VLANs ----

TEST_F(WanListTest, VlansOfTaggedConnectionsAreFound) {
    AnswerList(ListBytes(kThreeWans));
    EXPECT_TRUE(HasVlan(46));
    ExpectRpcs({ListQuery()});
    EXPECT_TRUE(HasVlan(100));
    EXPECT_TRUE(HasVlan(0));
    EXPECT_FALSE(HasVlan(1));
    EXPECT_FALSE(HasVlan(4));
    EXPECT_FALSE(HasVlan(1000));
    EXPECT_EQ(EntryTraces(stPlatform), Calls{});
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

// Deliberate: see the search's documentation.
TEST_F(WanListTest, SearchEndsAtTheFirstUntaggedConnection) {
    AnswerList(ListBytes({{1, "1_INTERNET_R_VID_100"}, {2, "2_Bridge"}, {3, "3_IPTV_B_VID_45"}}));
    EXPECT_TRUE(HasVlan(100));
    EXPECT_FALSE(HasVlan(45));
    AnswerList(ListBytes({{2, "2_Bridge"}, {1, "1_INTERNET_R_VID_100"}}));
    EXPECT_FALSE(HasVlan(100));
    // A tag without a number, or with one that is too long, is a tag all the same.
    AnswerList(ListBytes({{1, "a_VID_"}, {2, "b_VID_99999999999"}, {3, "c_VID_7"}}));
    EXPECT_TRUE(HasVlan(7));
}

TEST_F(WanListTest, NumberOfTheTag) {
    EXPECT_TRUE(NameTells("1_INTERNET_R_vid_100", 100));
    EXPECT_TRUE(NameTells("_VID_100", 100));
    EXPECT_TRUE(NameTells("x_VID_100_y", 100));
    EXPECT_TRUE(NameTells("x_VID_0100", 100));
    EXPECT_TRUE(NameTells("x_VID_4294967295", 4294967295u));
    EXPECT_TRUE(NameTells("x_VID_00000000000000000000000000100", 100));
    // Only the first tag speaks.
    EXPECT_TRUE(NameTells("x_VID_7_VID_100", 7));
    EXPECT_FALSE(NameTells("x_VID_7_VID_100", 100));
    EXPECT_FALSE(NameTells("x_VID_100", 10));
    EXPECT_FALSE(NameTells("x_VID_10", 100));
    EXPECT_FALSE(NameTells("x_VID100", 100));
    EXPECT_FALSE(NameTells("VID_100", 100));
}

TEST_F(WanListTest, TagWithoutANumberTellsNone) {
    for (const char *pcName : {"x_VID_", "x_VID_x5", "x_VID_-0", "x_VID_ 0", "x_VID_+0"}) {
        EXPECT_FALSE(NameTells(pcName, 0)) << pcName;
        EXPECT_FALSE(NameTells(pcName, 5)) << pcName;
    }
}

TEST_F(WanListTest, NumberBeyondAWordIsNoOther) {
    // 2^32 + 100, 2^64 + 100, 2^32 and a number of many digits.
    EXPECT_FALSE(NameTells("x_VID_4294967396", 100));
    EXPECT_FALSE(NameTells("x_VID_18446744073709551716", 100));
    EXPECT_FALSE(NameTells("x_VID_4294967296", 0));
    EXPECT_FALSE(NameTells("x_VID_" + std::string(200, '9'), 0xFFFFFFFF));
}

TEST_F(WanListTest, TagAtTheEndOfAFullName) {
    const std::string sDigits = std::string(252, 'n') + "_VID_123";
    ASSERT_EQ(sDigits.size(), 260u);
    // The next entry's index would continue the number.
    AnswerList(ListBytes({{1, sDigits}, {'4', "y_VID_5"}}));
    EXPECT_TRUE(HasVlan(123));
    EXPECT_FALSE(HasVlan(1234));
    AnswerList(std::string(2116, '_'));
    EXPECT_FALSE(HasVlan(0));
}

TEST_F(WanListTest, TagsBeyondTheCountAreNotSeen) {
    AnswerList(ListBytes(kThreeWans, 1));
    EXPECT_TRUE(HasVlan(46));
    EXPECT_FALSE(HasVlan(100));
    AnswerList(ListBytes(kThreeWans, 0));
    EXPECT_FALSE(HasVlan(46));
    AnswerList(ListBytes(std::vector<Wan>(8, Wan{1, "x_VID_9"}), 0xFFFFFFFF));
    EXPECT_FALSE(HasVlan(8));
    EXPECT_TRUE(HasVlan(9));
}

}  // namespace
}  // namespace wap::test

// The JSON answer that lists WAN connections.
#include <cstring>
#include <string>
#include <vector>

#include "faults/fault_sweep.h"
#include "support/wire_bytes.h"
#include "unit/wan/wan_fixture.h"
#include "wan/jni_wan_info.h"

namespace wap::test {
namespace {

const std::string kEmptyList = "{ \"Result\": 0, \"List\": [ ] }";
const std::string kOneWan =
    "{ \"Result\": 0, \"List\": [ { \"Index\": 269488129, \"Name\": \"1_TR069_R_VID_46\" } ] }";

class WanListJsonTest : public WanTest {
  protected:
    std::string ConvertBytes(const std::string &sList, uint32_t uiCount, uint32_t uiCap,
                             uint32_t uiWanted = 0) {
        std::vector<WanIfListEntry> astEntries(8);
        std::memcpy(astEntries.data(), sList.data() + 4, sList.size() - 4);
        std::string sOut(uiCap + 8, '~');
        EXPECT_EQ(VT_API_ConvertWanListToJson(astEntries.data(), uiCount, sOut.data(), uiCap),
                  uiWanted);
        EXPECT_EQ(sOut.substr(uiCap), "~~~~~~~~");
        sOut.resize(uiCap);
        if (uiWanted != 0) {
            EXPECT_EQ(sOut, std::string(uiCap, '~'));
            return "";
        }
        return UpToZero(sOut);
    }
    std::string Convert(const std::vector<Wan> &astWans, uint32_t uiCap = 4096,
                        uint32_t uiWanted = 0) {
        return ConvertBytes(ListBytes(astWans), static_cast<uint32_t>(astWans.size()), uiCap,
                            uiWanted);
    }
};

TEST_F(WanListJsonTest, AnswerByteForByte) {
    EXPECT_EQ(Convert({{kIpWan, "1_TR069_R_VID_46"}}), kOneWan);
    EXPECT_EQ(Convert({{kIpWan, "1_TR069_R_VID_46"}, {kPppWan, "2_\"quoted\"/\t"}, {1, ""}}),
              "{ \"Result\": 0, \"List\": [ { \"Index\": 269488129, \"Name\": "
              "\"1_TR069_R_VID_46\" }, { \"Index\": 537927683, \"Name\": "
              "\"2_\\\"quoted\\\"\\/\\t\" }, { \"Index\": 1, \"Name\": \"\" } ] }");
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

TEST_F(WanListJsonTest, EmptyList) {
    EXPECT_EQ(Convert({}), kEmptyList);
    char acOut[64] = {};
    EXPECT_EQ(VT_API_ConvertWanListToJson(nullptr, 0, acOut, sizeof(acOut)), 0u);
    EXPECT_EQ(acOut, kEmptyList);
}

TEST_F(WanListJsonTest, IndexesAreShownSigned) {
    EXPECT_EQ(Convert({{0x80000000, "a"}, {0xFFFFFFFF, "b"}}),
              "{ \"Result\": 0, \"List\": [ { \"Index\": -2147483648, \"Name\": \"a\" }, "
              "{ \"Index\": -1, \"Name\": \"b\" } ] }");
}

TEST_F(WanListJsonTest, NoMoreThanEightAreShown) {
    const std::vector<Wan> astEight(8, Wan{7, "x"});
    const std::string sEight = Convert(astEight);
    EXPECT_EQ(CountOf(sEight, "\"Index\": 7"), 8u);
    for (const uint32_t uiCount : {9u, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(ConvertBytes(ListBytes(astEight), uiCount, 4096), sEight) << uiCount;
    }
    EXPECT_EQ(CountOf(ConvertBytes(ListBytes(astEight), 7, 4096), "\"Index\": 7"), 7u);
}

TEST_F(WanListJsonTest, NamesEndAtTheirFields) {
    const std::string sName(260, 'n');
    EXPECT_EQ(Convert({{1, sName}, {'n', "m"}}),
              "{ \"Result\": 0, \"List\": [ { \"Index\": 1, \"Name\": \"" + sName +
                  "\" }, { \"Index\": 110, \"Name\": \"m\" } ] }");
    // A list of nothing but ones: the last name ends with the list.
    const std::string sOnes = ConvertBytes(std::string(2116, '\xFF'), kMinusOne, 4096);
    EXPECT_EQ(CountOf(sOnes, "\"Index\": -1, \"Name\": \"" + std::string(260, '\xFF') + "\" }"),
              8u);
}

TEST_F(WanListJsonTest, AnswerMustFitWithItsZero) {
    const auto uiLength = static_cast<uint32_t>(kOneWan.size());
    const std::vector<Wan> astOne = {{kIpWan, "1_TR069_R_VID_46"}};
    EXPECT_EQ(Convert(astOne, uiLength + 1), kOneWan);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    for (const uint32_t uiCap : {uiLength, uiLength - 1, 1u, 0u}) {
        stPlatform.ClearRecords();
        EXPECT_EQ(Convert(astOne, uiCap, 1), "");
        EXPECT_EQ(Recorded(kListFile, 1), (Records{{uiCap, 0, 0, 0}}));
    }
}

TEST_F(WanListJsonTest, NullArguments) {
    char acOut[8] = "before";
    EXPECT_EQ(VT_API_ConvertWanListToJson(nullptr, 1, acOut, sizeof(acOut)), kMinusOne);
    EXPECT_STREQ(acOut, "before");
    EXPECT_EQ(VT_API_ConvertWanListToJson(nullptr, 0, nullptr, 8), kMinusOne);
    EXPECT_EQ(Recorded(kListFile, kMinusOne), (Records{{1, 8, 0, 0}, {0, 8, 0, 0}}));
}

TEST_F(WanListJsonTest, MemoryThatRunsOutIsAFailure) {
    const std::string sFirst = "{ \"Index\": 1, \"Name\": \"a\" }";
    const std::string sSecond = "{ \"Index\": 2, \"Name\": \"b\" }";
    std::string sText;
    Subject stSubject;
    stSubject.sName = "VT_API_ConvertWanListToJson";
    stSubject.fnCall = [&sText](FakeJni &) {
        WanIfListEntry astEntries[2] = {{1, "a"}, {2, "b"}};
        char acOut[512] = {};
        const uint32_t uiResult = VT_API_ConvertWanListToJson(astEntries, 2, acOut, sizeof(acOut));
        sText = std::to_string(static_cast<int32_t>(uiResult)) + " " + acOut;
    };
    stSubject.fnOutcome = [&sText](FakeJni &) { return sText; };
    const auto fnList = [](const std::string &sElements) {
        return "0 { \"Result\": 0, \"List\": [ " + sElements + " ] }";
    };
    stSubject.sGood = fnList(sFirst + ", " + sSecond);
    // -1 without memory for an object, 1 without memory for the text.
    stSubject.fnAllowed = [](const FaultPlan &) { return std::set<std::string>{"-1 ", "1 "}; };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_GE(CountOf(auiCounts, Op::kAlloc), 8u);
}

}  // namespace
}  // namespace wap::test

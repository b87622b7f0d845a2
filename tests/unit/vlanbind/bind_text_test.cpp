// Which binding texts are acceptable.
#include <random>
#include <string>

#include "unit/vlanbind/vlanbind_fixture.h"
#include "wan/jni_vlan_bind.h"

namespace wap::test {
namespace {

class BindTextTest : public VlanBindTest {
  protected:
    bool Accepts(const std::string &sText) {
        stPlatform.ClearRecords();
        const uint32_t uiResult = VT_JNI_CheckVlanBind(sText.c_str());
        EXPECT_LE(uiResult, 1u);
        // A refusal is recorded once, and nothing else is.
        EXPECT_EQ(FaultCodes(stPlatform), uiResult == 0 ? Codes{} : Codes{1});
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        return uiResult == 0;
    }

    /// The number that was recorded with a refused text, as a signed one; 99 when there is not one
    /// record.
    int32_t RecordedFor(const std::string &sText) {
        EXPECT_FALSE(Accepts(sText)) << sText;
        return stPlatform.astFaults.size() != 1
                   ? 99
                   : static_cast<int32_t>(stPlatform.astFaults[0].auiArgs[0]);
    }
};

TEST_F(BindTextTest, PairsWithinTheVlans) {
    for (const char *pcText :
         {"1/4094", "4094/1", "10/100", "10/100,20/200", "1/1,2/2,3/3", "4094/4094,1/1"}) {
        EXPECT_TRUE(Accepts(pcText)) << pcText;
    }
}

TEST_F(BindTextTest, NumbersOutsideOfTheVlansAreRefusedWhereverTheyStand) {
    for (const char *pcBad : {"0", "4095", "-1", "-4094", "65537", "4294967297", "10000"}) {
        for (const char *pcFormat :
             {"%/10", "10/%", "%/10,1/1", "10/%,1/1", "1/1,%/10", "1/1,10/%", "1/1,%/10,2/2",
              "1/1,10/%,2/2", "1/1,2/2,%/10", "1/1,2/2,10/%"}) {
            std::string sText = pcFormat;
            sText.replace(sText.find('%'), 1, pcBad);
            EXPECT_FALSE(Accepts(sText)) << sText;
        }
    }
}

// The offending number goes into the fault log.
TEST_F(BindTextTest, RefusalTellsTheNumber) {
    EXPECT_EQ(RecordedFor("0/10"), 0);
    EXPECT_EQ(RecordedFor("10/4095"), 4095);
    EXPECT_EQ(RecordedFor("-7/10"), -7);
    EXPECT_EQ(RecordedFor("1/1,2/2,4099/1"), 4099);
    EXPECT_EQ(RecordedFor("5000/6000"), 5000);
    // What is beyond 32 bits is recorded as all ones.
    EXPECT_EQ(RecordedFor("4294967297/10"), -1);
    EXPECT_EQ(RecordedFor("10/-99999999999"), -1);
    EXPECT_EQ(stPlatform.astFaults[0].sFile, "jni_vlan_bind.cpp");
}

TEST_F(BindTextTest, NumbersThatOverflowAreRefusedNotWrapped) {
    // 2^32 + 1, 2^64 + 1, -2^32 + 1: each would wrap to 1.
    for (const char *pcBad : {"4294967297", "18446744073709551617", "-4294967295",
                              "100000000000000000000000000000000000001"}) {
        EXPECT_FALSE(Accepts(pcBad + std::string("/10"))) << pcBad;
        EXPECT_FALSE(Accepts("10/" + std::string(pcBad))) << pcBad;
    }
    // Zeros in front make nothing larger.
    EXPECT_TRUE(Accepts("00000000000000000000010/0000000000000000000000004094"));
    EXPECT_FALSE(Accepts("00000000000000000000010/0000000000000000000000004095"));
}

TEST_F(BindTextTest, WhatHasNoNumberIsRefused) {
    for (const char *pcText : {"", " ", "/", "/10", "x", "x1/1", "1/1,x/2", "1/1,x/2,3/3", "+", "-",
                               "- 1/1", "1/1, ", "1/1, ,2/2"}) {
        EXPECT_FALSE(Accepts(pcText)) << pcText;
    }
}

// Bundles count on it, so it must stay: such a pair shares the WAN-side VLAN.
TEST_F(BindTextTest, PairWithOneNumberKeepsTheSecondOfThePairBefore) {
    for (const char *pcText : {"10/100,20", "10/100,20,30/300", "10/100,20/,30", "10/100,20/x",
                               "10/100,20x/200", "10/100,20 /200", "10/100,20,30,40"}) {
        EXPECT_TRUE(Accepts(pcText)) << pcText;
    }
    // The first pair has nobody before it.
    for (const char *pcText : {"10", "10/", "10/x", "10 /20", "10,20/200", "10,20"}) {
        EXPECT_EQ(RecordedFor(pcText), 0) << pcText;
    }
    // What is kept is kept from the pair before, not from the first.
    EXPECT_EQ(RecordedFor("10/100,20/4095,30"), 4095);
    EXPECT_EQ(RecordedFor("10/100,4095,30/300"), 4095);
}

TEST_F(BindTextTest, BlanksAndSignsAsInScanning) {
    for (const char *pcText : {" 10/100", "10/ 100", "\t10/\n100", "+10/+100", "10/100 ", "10/100x",
                               "10/100/1000", "10/100;20/5000", "10/100, 20/200"}) {
        EXPECT_TRUE(Accepts(pcText)) << pcText;
    }
    EXPECT_FALSE(Accepts("0x10/100"));
}

TEST_F(BindTextTest, CommaBehindTheLastPairIsRefused) {
    for (const char *pcText : {"10/100,", "10/100,,", "10/100,20/200,", "10/100,,20/200",
                               "10/100,20/200,,", ",10/100", ",,10/100,"}) {
        EXPECT_FALSE(Accepts(pcText)) << pcText;
    }
}

TEST_F(BindTextTest, CommasInFrontAndBetweenAreSkipped) {
    EXPECT_TRUE(Accepts(",10/100,20/200"));
    EXPECT_TRUE(Accepts("10/100,,20/200,30/300"));
    EXPECT_FALSE(Accepts("10/100,,20/5000,30/300"));
}

// "osgi_proxy" is asked what it means.
TEST_F(BindTextTest, NothingAndNothingButCommasAreAcceptable) {
    EXPECT_EQ(VT_JNI_CheckVlanBind(nullptr), 0u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_TRUE(Accepts(","));
    EXPECT_TRUE(Accepts(",,,,"));
}

TEST_F(BindTextTest, OnlyTheFirst127BytesAreLookedAt) {
    // 20 pairs of 6 bytes each, with a pair of 7 at the end: 127 bytes.
    std::string sPairs;
    while (sPairs.size() < 120) {
        sPairs += "1/400,";
    }
    ASSERT_EQ(sPairs.size(), 120u);
    EXPECT_TRUE(Accepts(sPairs + "11/4094"));
    EXPECT_FALSE(Accepts(sPairs + "11/4095"));
    EXPECT_FALSE(Accepts(sPairs + "1/40940"));
    // The 128th byte would make it wrong.
    EXPECT_TRUE(Accepts(sPairs + "11/40945"));
    EXPECT_TRUE(Accepts(sPairs + "11/4094,"));
    EXPECT_TRUE(Accepts(sPairs + "11/4094,x"));
    EXPECT_TRUE(Accepts("1/1" + std::string(5000, 'x')));
    EXPECT_FALSE(Accepts(std::string(5000, '1')));
    EXPECT_FALSE(Accepts(std::string(126, ' ') + "1/1"));
    EXPECT_TRUE(Accepts(std::string(124, ' ') + "1/1"));
}

}  // namespace
}  // namespace wap::test

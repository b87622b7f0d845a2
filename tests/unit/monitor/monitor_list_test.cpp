// The list of the registry: what is asked, fetched and handed out.
#include <string>
#include <vector>

#include "support/strict_json.h"
#include "unit/monitor/monitor_fixture.h"

namespace wap::test {
namespace {

constexpr uint32_t kUntouched = 0x55AA55AA;

class MonitorListTest : public MonitorTest {
  protected:
    /// The worker's code; sText has what it gave, "(null)" for no text and "(unwritten)" for
    /// nothing at all.
    uint32_t Ask() {
        Forget();
        static char s_cMark;
        char *pcText = &s_cMark;
        const uint32_t uiResult = VT_JNI_getTrafficMonitoringDestAddressInfo(&pcText);
        if (pcText == &s_cMark) {
            sText = "(unwritten)";
        } else {
            sText = pcText == nullptr ? "(null)" : pcText;
            VT_OS_MemFreeD(pcText, "monitor_list_test.cpp", __LINE__);
        }
        return uiResult;
    }
    /// A reply whose block's lengths are what is said.
    void AnswerDesc(uint32_t uiBlock, uint32_t uiOriginal, uint32_t uiCompressed) {
        stPlatform.mapReplies[kAskMonitored] = {
            0, Word(2) + Word(3) + Word(uiBlock) + Word(uiOriginal) + Word(uiCompressed)};
    }

    /// Each registry is a failure, recorded with its length, and so many records are there in all.
    void ExpectFailures(const std::vector<std::string> &asRegistries, size_t uiRecords) {
        for (const std::string &sRegistry : asRegistries) {
            SCOPED_TRACE(sRegistry);
            AnswerRegistry(stWorld, 2, 2, sRegistry + '\0');
            EXPECT_EQ(Ask(), 0xFFFFFFFFu);
            EXPECT_EQ(sText, "(unwritten)");
            EXPECT_EQ(TimesRecorded(kMonitorFile, 0xFFFFFFFF,
                                    {static_cast<uint32_t>(sRegistry.size() + 1)}),
                      1u);
            EXPECT_EQ(stPlatform.astFaults.size(), uiRecords);
        }
    }

    std::string sText;
};

TEST_F(MonitorListTest, AsksFetchesAndConverts) {
    EXPECT_EQ(Ask(), 0u);
    EXPECT_EQ(sText, kRegistryAnswer);
    // Nothing to say is said with a word of 0.
    ExpectOnlyRpc(stPlatform, {"gulm", 216, kAskMonitored, Word(0), 20});
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{"uiPlugNum:2, uiAddrNum:3, uivDataID:4097, uiOriginalLen:73, "
                     "uiCompressedLen:73\r\n",
                     std::string("pcOutJson: ") + kRegistryAnswer + "\r\n"}));
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_VDATA_ReadData 4097 73", "VT_VDATA_FreeShm 4097"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(MonitorListTest, LongRegistryComesCompressed) {
    const std::string sName(200, 'n');
    std::string sRegistry;
    std::string sWanted = "{\"Result\":0,\"List\":[";
    for (int i = 0; i < 20; ++i) {
        sRegistry += (i == 0 ? "" : ";") + sName + "[\"1\"]";
        sWanted += (i == 0 ? "{" : ",{");
        sWanted += "\"BundleName\":\"" + sName + "\",\"DestAddressList\":[\"1\"]}";
    }
    AnswerRegistry(stWorld, 20, 20, sRegistry + '\0');
    EXPECT_EQ(Ask(), 0u);
    EXPECT_EQ(sText, sWanted + "]}");
    EXPECT_EQ(stPlatform.CountCalls("VT_OS_Decompress"), 1u);
}

TEST_F(MonitorListTest, NullIsRefusedWithoutAsking) {
    EXPECT_EQ(VT_JNI_getTrafficMonitoringDestAddressInfo(nullptr), 1u);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(TimesRecorded(kMonitorFile, 1), 1u);
}

TEST_F(MonitorListTest, RefusalComesBack) {
    stPlatform.mapReplies[kAskMonitored].uiStatus = kRefused;
    EXPECT_EQ(Ask(), kRefused);
    EXPECT_EQ(sText, "(unwritten)");
    EXPECT_TRUE(stPlatform.astTraces.size() == 1);  // the call's own
    EXPECT_EQ(TimesRecorded(kMonitorFile, kRefused), 1u);
}

// Either length is enough; and a block without anything in it does not stay.
TEST_F(MonitorListTest, NoLengthIsNoText) {
    AnswerDesc(0, 0, 0);
    EXPECT_EQ(Ask(), 0u);
    EXPECT_EQ(sText, "(null)");
    EXPECT_TRUE(stPlatform.asCalls.empty());
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{"uiPlugNum:2, uiAddrNum:3, uivDataID:0, uiOriginalLen:0, "
                     "uiCompressedLen:0\r\n"}));
    const uint32_t auiLengths[][2] = {{0, 5}, {5, 0}, {0, 0}};
    for (const auto &auiPair : auiLengths) {
        const uint32_t uiBlock = stPlatform.AddBlock(std::string("a[1]\0", 5));
        AnswerDesc(uiBlock, auiPair[0], auiPair[1]);
        EXPECT_EQ(Ask(), 0u);
        EXPECT_EQ(sText, "(null)");
        EXPECT_EQ(stPlatform.asCalls, Calls{"VT_VDATA_FreeShm " + std::to_string(uiBlock)});
    }
    // That there is none is no failure.
    AnswerDesc(kUntouched, 0, 0);
    EXPECT_EQ(Ask(), 0u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(MonitorListTest, ShortReplyCountsAsZeros) {
    stPlatform.mapReplies[kAskMonitored] = {0, ""};
    EXPECT_EQ(Ask(), 0u);
    EXPECT_EQ(sText, "(null)");
    stPlatform.mapReplies[kAskMonitored] = {0, Word(2) + Word(3) + Word(0)};
    EXPECT_EQ(Ask(), 0u);
    EXPECT_EQ(sText, "(null)");
}

TEST_F(MonitorListTest, BlockThatCanNotBeReadIsAFailure) {
    AnswerDesc(kUntouched, 5, 5);
    EXPECT_EQ(Ask(), 0x0B0B0002u);
    EXPECT_EQ(sText, "(unwritten)");
    EXPECT_EQ(TimesRecorded(kMonitorFile, 0x0B0B0002), 1u);
    for (const uint32_t uiLength : {16777217u, 0xFFFFFFFFu}) {
        AnswerDesc(kUntouched, uiLength, uiLength);
        EXPECT_EQ(Ask(), kNoMemory);
        EXPECT_EQ(TimesRecorded(kMonitorFile, kNoMemory), 1u);
    }
}

TEST_F(MonitorListTest, TextWithoutAnEndIsAFailure) {
    for (const std::string &sBlock : {std::string("a[1]"), std::string(5000, 'a')}) {
        AnswerRegistry(stWorld, 1, 1, sBlock);
        EXPECT_EQ(Ask(), 0xFFFFFFFFu);
        EXPECT_EQ(sText, "(unwritten)");
        EXPECT_EQ(TimesRecorded(kMonitorFile, 0xFFFFFFFF, {static_cast<uint32_t>(sBlock.size())}),
                  1u);
    }
}

TEST_F(MonitorListTest, TextEndsWithItsFirstZero) {
    AnswerRegistry(stWorld, 2, 2, std::string("a[1]\0;b[2]\0", 11));
    EXPECT_EQ(Ask(), 0u);
    EXPECT_EQ(sText, "{\"Result\":0,\"List\":[{\"BundleName\":\"a\",\"DestAddressList\":[1]}]}");
}

// ---- what would be no JSON ----

TEST_F(MonitorListTest, WhatIsNoJsonIsAFailure) {
    // With the parse's own record.
    ExpectFailures({"a[1,]", "a[x]", "a[1}", "a\\x[1]", "c[3];a[1 2]",
                    "a[" + std::string(29, '[') + std::string(29, ']') + "]"},
                   2);
}

// Of some of them JSON would come, but not of what the registry's bundles are.
TEST_F(MonitorListTest, WhatReachesBeyondItsPlaceIsAFailure) {
    ExpectFailures({"a[1",
                    "a[",
                    "a[\"1]",
                    "a[1]x",
                    "a[1]]",
                    "a[1]}",
                    "a[1],{}",
                    "c[3];a[1",
                    "a[1;c[3]",
                    "a\\[1]",
                    "a\"b[1]",
                    "a\\\n[1]",
                    "\"[1]",
                    "x\",\"y\":\"z[1]",
                    "x\",\"BundleName\":\"c[1]",
                    "a[1],\"BundleName\":\"b\"",
                    "a[1]},{\"BundleName\":\"b\",\"DestAddressList\":[2]",
                    "c[3];a[1],\"x\":[2]",
                    "a\n[1]",
                    "a\x1F[1]",
                    "a[\"1\n\"]",
                    "a[{\"x\":\"\x01\"}]",
                    "a[\"\\",
                    "a[NaN]",
                    "a[Infinity]",
                    "a[-Infinity]",
                    "a[00]",
                    "a[00.5]",
                    "a[|]",
                    "a[-01]",
                    "a[1.]",
                    "a[1.e5]",
                    "a[1e]",
                    "a[1e+]",
                    "a[-]",
                    "a[1x]",
                    "a[{'x':1}]",
                    "a[{'\n':1}]",
                    "a[{'\"':1}]},{\"BundleName\":\"b\",\"DestAddressList\":[{'\"':1}]",
                    std::string(254, 'n') + "\\\"[1]"},
                   1);
}

TEST_F(MonitorListTest, WhatIsJsonIsHandedOutAsItStands) {
    const std::string sDeep = std::string(29, '[') + std::string(29, ']');
    const std::string asPairs[][2] = {
        {" a ", "[ \"1\" , 2 ] "},
        {"a", sDeep},
        {"\\u0041\\\"", "[]"},
        {"a:b", "[\"2001:db8::1\",\"::\"]"},
        {"a", "[\n{\"x\":[\"]\",\"\\\"]\"]} ]\t\r\n"},
        {"a", "[0,-1,10,1.50,-0.5e+7,2E3,4e-1,true,false,null]"},
        {"a", "[1e999,{\"x\":1,\"x\":2}]"},
        {"a\\udc00", "[\"\\ud800\",{\"\\uDFFF\":\"\\ud800\\u0041\"}]"}};
    for (const auto &asPair : asPairs) {
        SCOPED_TRACE(asPair[0]);
        AnswerRegistry(stWorld, 1, 1, asPair[0] + asPair[1] + '\0');
        EXPECT_EQ(Ask(), 0u);
        EXPECT_EQ(sText, "{\"Result\":0,\"List\":[{\"BundleName\":\"" + asPair[0] +
                             "\",\"DestAddressList\":" + asPair[1] + "}]}");
        EXPECT_EQ(JsonFault(sText, Elements::kHandedOver), "");
        EXPECT_TRUE(stPlatform.astFaults.empty());
    }
}

TEST_F(MonitorListTest, NamesCountAsTheyAreCut) {
    const std::string sCut(255, 'n');
    AnswerRegistry(stWorld, 2, 2, sCut + "\"[1]" + '\0');
    EXPECT_EQ(Ask(), 0u);
    EXPECT_EQ(sText, "{\"Result\":0,\"List\":[{\"BundleName\":\"" + sCut +
                         "\",\"DestAddressList\":[1]}]}");
    // Cut within an escape that is not over with its second letter.
    ExpectFailures({std::string(251, 'n') + "\\u0041[1]"}, 2);
}

// The list ends at what does not fit; what it is made of, is judged all the same.
TEST_F(MonitorListTest, RecordsBeyondTheRoomCount) {
    const std::string sLong = "a[1];b[\"" + std::string(700, 'x') + "\"];c[";
    AnswerRegistry(stWorld, 1, 1, sLong + "1]" + '\0');
    EXPECT_EQ(Ask(), 0u);
    EXPECT_EQ(sText, "{\"Result\":0,\"List\":[{\"BundleName\":\"a\",\"DestAddressList\":[1]}]}");
    AnswerRegistry(stWorld, 1, 1, sLong + "1" + '\0');
    EXPECT_EQ(Ask(), 0xFFFFFFFFu);
    EXPECT_EQ(sText, "(unwritten)");
}

// ---- the room for the answer ----

/// A list of one bundle whose text has so many characters.
std::string RegistryFor(size_t uiAnswer) {
    const size_t uiAround = std::string(
                                "{\"Result\":0,\"List\":[{\"BundleName\":\"a\","
                                "\"DestAddressList\":[\"\"]}]}")
                                .size();
    return "a[\"" + std::string(uiAnswer - uiAround, '1') + "\"]";
}

TEST_F(MonitorListTest, AnswerHas384BytesForABundleAnd272ForAnAddress) {
    struct Room {
        uint32_t uiBundles;
        uint32_t uiAddresses;
        size_t uiBytes;
    };
    for (const Room &stRoom : {Room{1, 0, 384}, {0, 1, 272}, {1, 1, 656}, {2, 3, 1584}}) {
        AnswerRegistry(stWorld, stRoom.uiBundles, stRoom.uiAddresses,
                       RegistryFor(stRoom.uiBytes - 1) + '\0');
        EXPECT_EQ(Ask(), 0u);
        EXPECT_EQ(sText.size(), stRoom.uiBytes - 1);
        EXPECT_TRUE(stPlatform.astFaults.empty());
        AnswerRegistry(stWorld, stRoom.uiBundles, stRoom.uiAddresses,
                       RegistryFor(stRoom.uiBytes) + '\0');
        EXPECT_EQ(Ask(), 0u);
        EXPECT_EQ(sText, "{\"Result\":0,\"List\":[]}");
        EXPECT_EQ(TimesRecorded(kMonitorFile, 0xF7700005, {static_cast<uint32_t>(stRoom.uiBytes)}),
                  1u);
    }
}

TEST_F(MonitorListTest, TextForNobodyIsAFailure) {
    AnswerRegistry(stWorld, 0, 0, std::string("a[1]") + '\0');
    EXPECT_EQ(Ask(), 1u);
    EXPECT_EQ(sText, "(unwritten)");
    EXPECT_EQ(TimesRecorded(kMonitorFile, 1, {0, 0}), 1u);
}

// Sizes are not those of 32 bits: some of these would come to a few bytes.
TEST_F(MonitorListTest, AbsurdCountsAreAFailure) {
    const uint32_t auiCounts[][2] = {{0xFFFFFFFF, 0xFFFFFFFF},
                                     {0xFFFFFFFF, 0},
                                     {0, 0xFFFFFFFF},
                                     {0x80000000, 0},
                                     {11184811, 0},
                                     {0, 15790321},
                                     {43690, 1},
                                     {0, 61681}};
    for (const auto &auiPair : auiCounts) {
        SCOPED_TRACE(auiPair[0]);
        AnswerRegistry(stWorld, auiPair[0], auiPair[1], std::string("a[1]") + '\0');
        EXPECT_EQ(Ask(), 1u);
        EXPECT_EQ(sText, "(unwritten)");
        EXPECT_EQ(TimesRecorded(kMonitorFile, 1, {auiPair[0], auiPair[1]}), 1u);
        EXPECT_TRUE(stPlatform.mapBlocks.empty());
    }
    // 16 MB less 256 bytes.
    AnswerRegistry(stWorld, 43690, 0, std::string("a[1]") + '\0');
    EXPECT_EQ(Ask(), 0u);
}

}  // namespace
}  // namespace wap::test

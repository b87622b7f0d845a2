// The owners: each releases what it holds exactly once, with the function that its kind demands.

#include "common/owners.h"

#include <cstring>
#include <string>
#include <string_view>

#include "support/entries.h"

namespace wap::test {
namespace {

constexpr char kSecretHead[] = "front-secret-0123456789";
constexpr char kSecretTail[] = "behind-secret-0123456789";

class Owners : public BridgeTest {
  protected:
    size_t Live() const { return stWorld.stAllocs.Live(); }
    static void *Block(uint32_t uiSize) {
        return VT_OS_MemMallocD(uiSize, __FILE_NAME__, __LINE__);
    }
    char *Text(const char *pcText) {
        const size_t uiSize = strlen(pcText) + 1;
        return static_cast<char *>(memcpy(Block(static_cast<uint32_t>(uiSize)), pcText, uiSize));
    }
};

TEST_F(Owners, BlockMadeIsZeroedAndReleased) {
    {
        PlatformBlock stBlock;
        EXPECT_FALSE(stBlock);
        EXPECT_EQ(stBlock.Lend(), nullptr);
        ASSERT_TRUE(stBlock.Make(16, WAP_SPOT));
        EXPECT_TRUE(stBlock);
        EXPECT_EQ(memcmp(stBlock.Lend(), std::string(16, '\0').data(), 16), 0);
        EXPECT_EQ(stWorld.stAllocs.SizeOf(stBlock.Lend()), 16u);
    }
    EXPECT_EQ(Live(), 0u);
}

TEST_F(Owners, BlockMadeUnfilledIsAsTheAllocatorGaveIt) {
    {
        PlatformBlock stBlock;
        stBlock.Adopt(Block(8));
        ASSERT_TRUE(stBlock.MakeUnfilled(16, WAP_SPOT));
        EXPECT_EQ(Live(), 1u);
        EXPECT_EQ(stWorld.stAllocs.SizeOf(stBlock.Lend()), 16u);
        // What the allocator of the tests fills such blocks with.
        EXPECT_EQ(memcmp(stBlock.Lend(), std::string(16, '\xA5').data(), 16), 0);
        stWorld.Plan({Op::kAlloc, 1, false});
        EXPECT_FALSE(stBlock.MakeUnfilled(16, WAP_SPOT));
        EXPECT_FALSE(stBlock);
    }
    EXPECT_EQ(Live(), 0u);
}

TEST_F(Owners, BlockReleasesTheOldForTheNew) {
    PlatformBlock stBlock;
    stBlock.Adopt(Block(8));
    stBlock.Adopt(Block(9));
    EXPECT_EQ(Live(), 1u);
    EXPECT_EQ(stWorld.stAllocs.SizeOf(stBlock.Lend()), 9u);
    ASSERT_TRUE(stBlock.Make(10, WAP_SPOT));
    EXPECT_EQ(Live(), 1u);
    stBlock.Adopt(nullptr);
    EXPECT_FALSE(stBlock);
    EXPECT_EQ(Live(), 0u);
}

TEST_F(Owners, BlockGivenAwayIsTheReceivers) {
    void *pvBlock = nullptr;
    {
        PlatformBlock stBlock;
        stBlock.Adopt(Block(8));
        pvBlock = stBlock.Release();
        EXPECT_FALSE(stBlock);
    }
    EXPECT_EQ(Live(), 1u);
    VT_OS_MemFreeD(pvBlock, __FILE_NAME__, __LINE__);
}

TEST_F(Owners, BlockWithoutMemoryHoldsNothing) {
    PlatformBlock stBlock;
    stBlock.Adopt(Block(8));
    stWorld.Plan({Op::kAlloc, 1, false});
    EXPECT_FALSE(stBlock.Make(16, WAP_SPOT));
    EXPECT_FALSE(stBlock);
    EXPECT_EQ(Live(), 0u);
}

TEST_F(Owners, WipedRecordStartsAndEndsAsZeros) {
    struct Record {
        char acPassword[32];
        uint32_t uiMore;
    };
    stWorld.stSecrets.Watch(kSecretHead);
    {
        Wiped<Record> stWiped;
        const Record stZero{};
        EXPECT_EQ(memcmp(&stWiped.stRecord, &stZero, sizeof(stZero)), 0);
        ASSERT_EQ(VT_OS_StrNCpy_S(stWiped.stRecord.acPassword, 32, kSecretHead, 31), 0u);
    }
    EXPECT_TRUE(stWorld.stSecrets.TakeUnwiped().empty());
}

TEST_F(Owners, SecretBlockIsWipedToItsEnd) {
    stWorld.stSecrets.Watch(kSecretHead);
    stWorld.stSecrets.Watch(kSecretTail);
    const auto fnFill = [](SecretBlock &stBlock) {
        ASSERT_TRUE(stBlock.Make(64, WAP_SPOT));
        ASSERT_TRUE(stBlock);
        EXPECT_EQ(memcmp(stBlock.Lend(), std::string(64, '\0').data(), 64), 0);
        memcpy(stBlock.Lend(), kSecretHead, strlen(kSecretHead));
        // Up to the last byte, with no place for a zero.
        const std::string_view sTail = kSecretTail;
        sTail.copy(static_cast<char *>(stBlock.Lend()) + 64 - sTail.size(), sTail.size());
    };
    {
        SecretBlock stBlock;
        stBlock.Drop();
        fnFill(stBlock);
        // What is held goes for the next one, also when there is none.
        fnFill(stBlock);
        EXPECT_EQ(Live(), 1u);
        stWorld.Plan({Op::kAlloc, 1, false});
        EXPECT_FALSE(stBlock.Make(8, WAP_SPOT));
        stWorld.Plan({});
        EXPECT_FALSE(stBlock);
        EXPECT_EQ(Live(), 0u);
        fnFill(stBlock);
        stBlock.Drop();
        EXPECT_EQ(stBlock.Lend(), nullptr);
        fnFill(stBlock);
    }
    EXPECT_EQ(Live(), 0u);
    EXPECT_TRUE(stWorld.stSecrets.TakeUnwiped().empty());
}

TEST_F(Owners, TheWatchSeesARecordThatIsNotWiped) {
    stWorld.stSecrets.Watch(kSecretHead);
    char acPassword[32];
    ASSERT_EQ(VT_OS_StrNCpy_S(acPassword, 32, kSecretHead, 31), 0u);
    EXPECT_FALSE(stWorld.stSecrets.TakeUnwiped().empty());
}

TEST_F(Owners, JavaTextLendsAndReleases) {
    {
        const JavaText stText = JavaText::Make(&stEnv, stEnv.JavaText(u"caf\u00E9"));
        ASSERT_TRUE(stText);
        EXPECT_STREQ(stText.Lend(), "caf\xC3\xA9");
        EXPECT_EQ(Live(), 1u);
    }
    EXPECT_EQ(Live(), 0u);
}

TEST_F(Owners, JavaTextThatIsNotThere) {
    const JavaText stNull = JavaText::Make(&stEnv, nullptr);
    EXPECT_FALSE(stNull);
    EXPECT_EQ(stNull.Lend(), nullptr);
    const JavaText stMissing = JavaText::Make(&stEnv, stEnv.JavaText(u""));
    EXPECT_FALSE(stMissing);
    const JavaText stEmpty = JavaText::Make(&stEnv, stEnv.JavaText(u""), EmptyText::kCounts);
    ASSERT_TRUE(stEmpty);
    EXPECT_STREQ(stEmpty.Lend(), "");
}

TEST_F(Owners, OptionalTextTellsNoneFromOneThatFailed) {
    const OptionalText stNone(&stEnv, nullptr);
    EXPECT_FALSE(stNone.Failed());
    EXPECT_EQ(stNone.Lend(), nullptr);
    const OptionalText stEmpty(&stEnv, stEnv.JavaText(u""));
    EXPECT_FALSE(stEmpty.Failed());
    EXPECT_EQ(stEmpty.Lend(), nullptr);
    const OptionalText stThere(&stEnv, stEnv.JavaText(u"there"));
    EXPECT_FALSE(stThere.Failed());
    EXPECT_STREQ(stThere.Lend(), "there");
    const jstring jText = stEnv.JavaText(u"there");
    stWorld.Plan({Op::kAlloc, 1, false});
    const OptionalText stFailed(&stEnv, jText);
    stWorld.Plan({});
    EXPECT_TRUE(stFailed.Failed());
    EXPECT_EQ(stFailed.Lend(), nullptr);
}

TEST_F(Owners, SecretTextIsWipedAlsoBehindAZero) {
    stWorld.stSecrets.Watch(kSecretHead);
    stWorld.stSecrets.Watch(kSecretTail);
    std::u16string sJava = u"front-secret-0123456789";
    sJava += u'\0';
    sJava += u"behind-secret-0123456789";
    const jstring jSecret = stEnv.JavaText(sJava);
    {
        const SecretText stSecret = SecretText::Make(&stEnv, jSecret);
        ASSERT_TRUE(stSecret);
        EXPECT_STREQ(stSecret.Lend(), kSecretHead);
        EXPECT_STREQ(stSecret.Lend() + strlen(kSecretHead) + 1, kSecretTail);
    }
    EXPECT_EQ(Live(), 0u);
    EXPECT_EQ(stWorld.stSecrets.TakeUnwiped(), std::vector<std::string>());
}

TEST_F(Owners, PlainTextIsNotWipedSoTheWatchSeesIt) {
    stWorld.stSecrets.Watch(kSecretHead);
    { const JavaText stText = JavaText::Make(&stEnv, stEnv.JavaText(u"front-secret-0123456789")); }
    EXPECT_FALSE(stWorld.stSecrets.TakeUnwiped().empty());
}

TEST_F(Owners, SecretTextThatIsNotThere) {
    const SecretText stNull = SecretText::Make(&stEnv, nullptr);
    EXPECT_FALSE(stNull);
    const SecretText stEmpty = SecretText::Make(&stEnv, stEnv.JavaText(u""));
    EXPECT_FALSE(stEmpty);
}

TEST_F(Owners, SecretTextWithoutMemoryLeavesNoPinnedSecret) {
    stWorld.stSecrets.Watch(kSecretHead);
    stWorld.Plan({Op::kAlloc, 1, false});
    const SecretText stSecret =
        SecretText::Make(&stEnv, stEnv.JavaText(u"front-secret-0123456789"));
    EXPECT_FALSE(stSecret);
    EXPECT_EQ(stEnv.uiPins, 0u);
}

TEST_F(Owners, TableHoldsUpToItsSize) {
    {
        TextTable<3> stTable;
        EXPECT_EQ(stTable.Count(), 0u);
        EXPECT_EQ(stTable.Lend(0), nullptr);
        EXPECT_TRUE(stTable.Adopt(Text("one")));
        EXPECT_TRUE(stTable.Adopt(nullptr));
        EXPECT_TRUE(stTable.Adopt(Text("three")));
        EXPECT_EQ(Live(), 2u);
        EXPECT_FALSE(stTable.Adopt(Text("four")));
        EXPECT_EQ(Live(), 2u) << "what did not fit is released";
        EXPECT_EQ(stTable.Count(), 3u);
        EXPECT_STREQ(stTable.Lend(0), "one");
        EXPECT_EQ(stTable.Lend(1), nullptr);
        EXPECT_STREQ(stTable.Lend(2), "three");
        EXPECT_EQ(stTable.Lend(3), nullptr);
        EXPECT_EQ(stTable.Lend(0xFFFFFFFF), nullptr);
        EXPECT_STREQ(stTable.Lend()[2], "three");
        EXPECT_FALSE(stTable.Adopt(nullptr));
    }
    EXPECT_EQ(Live(), 0u);
}

TEST_F(Owners, JsonValueIsReleasedOnceOrGivenAway) {
    {
        const JsonValue stNone;
        EXPECT_FALSE(stNone);
        const JsonValue stNull(nullptr);
        EXPECT_FALSE(stNull);
        const JsonValue stValue(JNI_JSON_ObjNewObj());
        ASSERT_TRUE(stValue);
        EXPECT_EQ(JNI_JSON_IsObj(stValue.Lend()), 1u);
        EXPECT_GT(Live(), 0u);
    }
    EXPECT_EQ(Live(), 0u);
    json_object *pstValue = nullptr;
    {
        JsonValue stValue(JNI_JSON_ObjNewInt(7));
        pstValue = stValue.Release();
        EXPECT_FALSE(stValue);
    }
    EXPECT_EQ(JNI_JSON_ObjGetIntEx(pstValue), 7);
    JNI_JSON_ObjPut(pstValue);
    EXPECT_TRUE(stPlatform.astFaults.empty()) << "an empty owner releases nothing";
}

TEST_F(Owners, BulkBlockFetchesAndBounds) {
    const std::string sBytes("abc\0def", 7);
    {
        BulkBlock stBlock;
        EXPECT_EQ(stBlock.Length(), 0u);
        EXPECT_EQ(stBlock.Lend(), nullptr);
        EXPECT_EQ(stBlock.LendText(), nullptr);
        const uint32_t uiId = stPlatform.AddBlock(sBytes);
        EXPECT_EQ(stBlock.Make({uiId, 7, 7}), 0u);
        ASSERT_EQ(stBlock.Length(), 7u);
        EXPECT_EQ(memcmp(stBlock.Lend(), sBytes.data(), 7), 0);
        EXPECT_STREQ(stBlock.LendText(), "abc");
        EXPECT_TRUE(stPlatform.mapBlocks.empty()) << "the block is gone for everyone";
    }
    EXPECT_EQ(Live(), 0u);
}

TEST_F(Owners, BulkBlockWithoutAZeroIsNoText) {
    BulkBlock stBlock;
    EXPECT_EQ(stBlock.Make({stPlatform.AddBlock("abc"), 3, 3}), 0u);
    EXPECT_EQ(stBlock.Length(), 3u);
    EXPECT_EQ(stBlock.LendText(), nullptr);
    // The last byte is enough.
    EXPECT_EQ(stBlock.Make({stPlatform.AddBlock(std::string("ab\0", 3)), 3, 3}), 0u);
    EXPECT_STREQ(stBlock.LendText(), "ab");
}

TEST_F(Owners, BulkBlockThatCannotBeReadIsEmpty) {
    BulkBlock stBlock;
    EXPECT_EQ(stBlock.Make({stPlatform.AddBlock(std::string("ab\0", 3)), 3, 3}), 0u);
    stPlatform.mapStatus["VT_VDATA_ReadData"] = 0x77;
    EXPECT_EQ(stBlock.Make({stPlatform.AddBlock(std::string("ab\0", 3)), 3, 3}), 0x77u);
    EXPECT_EQ(stBlock.Length(), 0u);
    EXPECT_EQ(stBlock.Lend(), nullptr);
    EXPECT_EQ(stBlock.LendText(), nullptr);
    EXPECT_EQ(Live(), 0u);
}

}  // namespace
}  // namespace wap::test

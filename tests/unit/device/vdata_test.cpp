// Bulk blocks: what is stored plainly and what compressed, and who frees what on which path.
#include <cstring>
#include <string>

#include "common/jni_vdata.h"
#include "support/entries.h"
#include "support/expect.h"

namespace wap::test {
namespace {

constexpr uint32_t kNoMemory = 0xF7108001;
constexpr uint32_t kBroken = 0x00BADBAD;
constexpr uint32_t kBlockLimit = 16u * 1024 * 1024;

std::string Call(const char *pcName, std::initializer_list<uint32_t> auiArgs) {
    std::string sCall = pcName;
    for (const uint32_t uiArg : auiArgs) {
        sCall += " " + std::to_string(uiArg);
    }
    return sCall;
}

class VDataTest : public BridgeTest {
  protected:
    /// A text that does not repeat within a line.
    static std::string Various(size_t uiLen) {
        std::string sText;
        for (uint32_t i = 0; i < uiLen; ++i) {
            sText += static_cast<char>('!' + (i * 7 + i / 90) % 90);
        }
        return sText;
    }

    void ExpectOneRecord(uint32_t uiCode, const Args &auiArgs) {
        ASSERT_EQ(stPlatform.astFaults.size(), 1u);
        EXPECT_EQ(stPlatform.astFaults[0].uiCode, uiCode);
        EXPECT_FALSE(stPlatform.astFaults[0].bCodeOnly);
        EXPECT_EQ(stPlatform.astFaults[0].auiArgs, auiArgs);
        EXPECT_EQ(stPlatform.astFaults[0].sFile, "jni_vdata.cpp");
    }

    /// A read that fails: code, one record, nothing handed out, nothing left, one call of free.
    void ExpectFailedRead(VDataDesc stDesc, uint32_t uiCode, const Calls &asCalls) {
        void *pvData = &stDesc;
        EXPECT_EQ(VT_JNI_COMMON_ReadVData(&stDesc, &pvData), uiCode);
        EXPECT_EQ(pvData, nullptr);
        EXPECT_EQ(stPlatform.asCalls, asCalls);
        EXPECT_EQ(stPlatform.CountCalls("VT_VDATA_FreeShm"), 1u);
        EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
        EXPECT_TRUE(stPlatform.mapBlocks.empty());
        ExpectOneRecord(uiCode, {stDesc.uiDataID, stDesc.uiOriginalLen, stDesc.uiCompressedLen, 0});
    }

    void ExpectRead(VDataDesc stDesc, const std::string &sExpected) {
        const VDataDesc stBefore = stDesc;
        void *pvData = nullptr;
        ASSERT_EQ(VT_JNI_COMMON_ReadVData(&stDesc, &pvData), 0u);
        EXPECT_EQ(memcmp(&stDesc, &stBefore, sizeof(stDesc)), 0);
        ASSERT_EQ(stWorld.stAllocs.SizeOf(pvData), sExpected.size());
        EXPECT_EQ(std::string(static_cast<char *>(pvData), sExpected.size()), sExpected);
        EXPECT_EQ(stWorld.stAllocs.Live(), 1u);
        EXPECT_TRUE(stPlatform.mapBlocks.empty());
        EXPECT_TRUE(stPlatform.astFaults.empty());
        VT_OS_MemFreeD(pvData, __FILE_NAME__, __LINE__);
    }
};

TEST_F(VDataTest, PlainBlockIsCopied) {
    const std::string sData("a list\0with zeros", 17);
    const uint32_t uiId = stPlatform.AddBlock(sData);
    ExpectRead({uiId, 17, 17}, sData);
    EXPECT_EQ(stPlatform.asCalls,
              (Calls{Call("VT_VDATA_ReadData", {uiId, 17}), Call("VT_VDATA_FreeShm", {uiId})}));
}

TEST_F(VDataTest, BlockOfOneByte) {
    ExpectRead({stPlatform.AddBlock("x"), 1, 1}, "x");
}

TEST_F(VDataTest, BlockOf2048BytesIsPlain) {
    const std::string sData = Various(2048);
    const uint32_t uiId = stPlatform.AddBlock(sData);
    ExpectRead({uiId, 2048, 2048}, sData);
    EXPECT_EQ(stPlatform.CountCalls("VT_OS_Decompress"), 0u);
}

TEST_F(VDataTest, BlockOf2049BytesIsDecompressed) {
    const std::string sData(2049, 'z');
    const std::string sPacked = Packed(sData);
    const uint32_t uiPacked = static_cast<uint32_t>(sPacked.size());
    ASSERT_LT(uiPacked, 100u);
    const uint32_t uiId = stPlatform.AddBlock(sPacked);
    ExpectRead({uiId, 2049, uiPacked}, sData);
    EXPECT_EQ(stPlatform.asCalls,
              (Calls{Call("VT_VDATA_ReadData", {uiId, uiPacked}), Call("VT_VDATA_FreeShm", {uiId}),
                     Call("VT_OS_Decompress", {2049})}));
}

// The original length alone decides, even when the compressed one says that nothing was gained.
TEST_F(VDataTest, BlockOf2049BytesIsNeverTakenAsPlain) {
    const uint32_t uiId = stPlatform.AddBlock(Various(2049));
    ExpectFailedRead({uiId, 2049, 2049}, 0x0B0B0005,
                     {Call("VT_VDATA_ReadData", {uiId, 2049}), Call("VT_VDATA_FreeShm", {uiId}),
                      Call("VT_OS_Decompress", {2049})});
}

TEST_F(VDataTest, PlainBlockShorterThanAnnouncedIsFilledWithZeros) {
    const uint32_t uiId = stPlatform.AddBlock("short");
    ExpectRead({uiId, 9, 5}, std::string("short\0\0\0\0", 9));
}

TEST_F(VDataTest, PlainBlockLongerThanAnnouncedIsRefused) {
    const uint32_t uiId = stPlatform.AddBlock(Various(20));
    // The platform's bounded copy refuses; its code is passed on.
    ExpectFailedRead({uiId, 10, 20}, 0x0C0C0001,
                     {Call("VT_VDATA_ReadData", {uiId, 20}), Call("VT_VDATA_FreeShm", {uiId})});
}

TEST_F(VDataTest, NothingIsNoData) {
    VDataDesc stDesc = {7, 7, 7};
    EXPECT_EQ(VT_JNI_COMMON_WriteVData(&stDesc, "x", 0), kNoMemory);
    EXPECT_EQ(stDesc.uiDataID, 0u);
    EXPECT_TRUE(stPlatform.asCalls.empty());
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kNoMemory}));
}

TEST_F(VDataTest, NullOutIsRefusedAndTheBlockStays) {
    const uint32_t uiId = stPlatform.AddBlock("data");
    stPlatform.setKeptBlocks.insert(uiId);
    const VDataDesc stDesc = {uiId, 4, 4};
    EXPECT_EQ(VT_JNI_COMMON_ReadVData(&stDesc, nullptr), 1u);
    EXPECT_EQ(stPlatform.mapBlocks.count(uiId), 1u);
    EXPECT_TRUE(stPlatform.asCalls.empty());
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{1}));
}

TEST_F(VDataTest, NullDescriptorIsRefused) {
    void *pvData = &pvData;
    EXPECT_EQ(VT_JNI_COMMON_ReadVData(nullptr, &pvData), 1u);
    EXPECT_EQ(pvData, nullptr);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{1}));
}

TEST_F(VDataTest, NoMemoryForEitherBufferFreesTheBlockUnread) {
    for (const uint32_t uiAt : {1u, 2u}) {
        SCOPED_TRACE(uiAt);
        stWorld.ClearRecords();
        const uint32_t uiId = stPlatform.AddBlock("data");
        stWorld.Plan({Op::kAlloc, uiAt, false});
        ExpectFailedRead({uiId, 4, 4}, kNoMemory, {Call("VT_VDATA_FreeShm", {uiId})});
    }
}

TEST_F(VDataTest, FailedReadFreesTheBlock) {
    const uint32_t uiId = stPlatform.AddBlock("data");
    stPlatform.mapStatus["VT_VDATA_ReadData"] = kBroken;
    ExpectFailedRead({uiId, 4, 4}, kBroken,
                     {Call("VT_VDATA_ReadData", {uiId, 4}), Call("VT_VDATA_FreeShm", {uiId})});
}

TEST_F(VDataTest, FailedReadIsToldEvenIfFreeingFailsToo) {
    const uint32_t uiId = stPlatform.AddBlock("data");
    stPlatform.mapStatus["VT_VDATA_ReadData"] = kBroken;
    stPlatform.mapStatus["VT_VDATA_FreeShm"] = 0x99;
    ExpectFailedRead({uiId, 4, 4}, kBroken,
                     {Call("VT_VDATA_ReadData", {uiId, 4}), Call("VT_VDATA_FreeShm", {uiId})});
}

TEST_F(VDataTest, BlockSmallerThanItsDescriptorIsAFailedRead) {
    const uint32_t uiId = stPlatform.AddBlock("data");
    ExpectFailedRead({uiId, 5, 5}, 0x0B0B0002,
                     {Call("VT_VDATA_ReadData", {uiId, 5}), Call("VT_VDATA_FreeShm", {uiId})});
}

TEST_F(VDataTest, FailureToFreeDropsTheData) {
    const uint32_t uiId = stPlatform.AddBlock("data");
    stPlatform.mapStatus["VT_VDATA_FreeShm"] = kBroken;
    ExpectFailedRead({uiId, 4, 4}, kBroken,
                     {Call("VT_VDATA_ReadData", {uiId, 4}), Call("VT_VDATA_FreeShm", {uiId})});
}

TEST_F(VDataTest, FailedDecompressionHandsNothingOut) {
    const std::string sPacked = Packed(std::string(3000, 'q'));
    const uint32_t uiPacked = static_cast<uint32_t>(sPacked.size());
    const uint32_t uiId = stPlatform.AddBlock(sPacked);
    stPlatform.mapStatus["VT_OS_Decompress"] = kBroken;
    ExpectFailedRead({uiId, 3000, uiPacked}, kBroken,
                     {Call("VT_VDATA_ReadData", {uiId, uiPacked}), Call("VT_VDATA_FreeShm", {uiId}),
                      Call("VT_OS_Decompress", {3000})});
}

TEST_F(VDataTest, CompressedBlockThatHoldsMoreThanAnnouncedIsRefused) {
    const std::string sPacked = Packed(std::string(3000, 'q'));
    const uint32_t uiPacked = static_cast<uint32_t>(sPacked.size());
    const uint32_t uiId = stPlatform.AddBlock(sPacked);
    ExpectFailedRead({uiId, 2999, uiPacked}, 0x0B0B0006,
                     {Call("VT_VDATA_ReadData", {uiId, uiPacked}), Call("VT_VDATA_FreeShm", {uiId}),
                      Call("VT_OS_Decompress", {2999})});
}

TEST_F(VDataTest, CompressedBlockMayBeLongerThanItsData) {
    std::string sPacked = Packed(std::string(2049, 'q'));
    sPacked.resize(5000, '\0');
    ExpectRead({stPlatform.AddBlock(sPacked), 2049, 5000}, std::string(2049, 'q'));
}

TEST_F(VDataTest, CompressedBlockCutShortIsRefused) {
    const std::string sPacked = Packed(std::string(3000, 'q')).substr(0, 9);
    const uint32_t uiId = stPlatform.AddBlock(sPacked);
    ExpectFailedRead({uiId, 3000, 9}, 0x0B0B0007,
                     {Call("VT_VDATA_ReadData", {uiId, 9}), Call("VT_VDATA_FreeShm", {uiId}),
                      Call("VT_OS_Decompress", {3000})});
}

TEST_F(VDataTest, AbsurdLengthsAreRefusedBeforeAnythingIsRead) {
    const uint32_t auiLengths[][2] = {{0, 0},
                                      {0, 4},
                                      {4, 0},
                                      {0xFFFFFFFF, 4},
                                      {4, 0xFFFFFFFF},
                                      {0xFFFFFFFF, 0xFFFFFFFF},
                                      {0x80000000, 4},
                                      {kBlockLimit + 1, 4},
                                      {4, kBlockLimit + 1}};
    for (const auto &[uiOriginal, uiCompressed] : auiLengths) {
        SCOPED_TRACE(std::to_string(uiOriginal) + " " + std::to_string(uiCompressed));
        stWorld.ClearRecords();
        const uint32_t uiId = stPlatform.AddBlock("data");
        ExpectFailedRead({uiId, uiOriginal, uiCompressed}, kNoMemory,
                         {Call("VT_VDATA_FreeShm", {uiId})});
    }
}

TEST_F(VDataTest, LongestBlockIsRead) {
    const std::string sData(kBlockLimit, 'L');
    const std::string sPacked = Packed(sData);
    const uint32_t uiPacked = static_cast<uint32_t>(sPacked.size());
    const VDataDesc stDesc = {stPlatform.AddBlock(sPacked), kBlockLimit, uiPacked};
    void *pvData = nullptr;
    ASSERT_EQ(VT_JNI_COMMON_ReadVData(&stDesc, &pvData), 0u);
    EXPECT_EQ(memcmp(pvData, sData.data(), kBlockLimit), 0);
    VT_OS_MemFreeD(pvData, __FILE_NAME__, __LINE__);
}

TEST_F(VDataTest, SameDescriptorCannotBeReadTwice) {
    const uint32_t uiId = stPlatform.AddBlock("data");
    ExpectRead({uiId, 4, 4}, "data");
    stWorld.ClearRecords();
    ExpectFailedRead({uiId, 4, 4}, 0x0B0B0002,
                     {Call("VT_VDATA_ReadData", {uiId, 4}), Call("VT_VDATA_FreeShm", {uiId})});
}

// ---- writing ----

class VDataWriteTest : public VDataTest {
  protected:
    void SetUp() override {
        VDataTest::SetUp();
        // A stale id in the descriptor that is handed in must not touch somebody else's block.
        uiForeign = stPlatform.AddBlock("somebody else's");
        stPlatform.setKeptBlocks.insert(uiForeign);
        uiNext = stPlatform.uiNextBlock;
        stDesc = {uiForeign, 77, 88};
    }
    void TearDown() override {
        EXPECT_EQ(stPlatform.mapBlocks[uiForeign], "somebody else's");
        VDataTest::TearDown();
    }

    uint32_t Write(const std::string &sData) {
        return VT_JNI_COMMON_WriteVData(&stDesc, sData.data(), static_cast<uint32_t>(sData.size()));
    }
    void ExpectNothingLeft() {
        EXPECT_EQ(stPlatform.mapBlocks.size(), 1u);
        EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
    }

    uint32_t uiForeign = 0;
    uint32_t uiNext = 0;
    VDataDesc stDesc = {};
};

TEST_F(VDataWriteTest, DataOf2048BytesIsStoredPlainly) {
    const std::string sData(2048, 'p');
    ASSERT_EQ(Write(sData), 0u);
    EXPECT_EQ(stDesc.uiDataID, uiNext);
    EXPECT_EQ(stDesc.uiOriginalLen, 2048u);
    EXPECT_EQ(stDesc.uiCompressedLen, 2048u);
    EXPECT_EQ(stPlatform.asCalls, (Calls{Call("VT_VDATA_CreShm", {2048}),
                                         Call("VT_VDATA_UpdateData", {uiNext, 2048})}));
    EXPECT_EQ(stPlatform.mapBlocks[uiNext], sData);
    EXPECT_TRUE(stWorld.stAllocs.astLog.empty());
    EXPECT_TRUE(stPlatform.astFaults.empty());
    stPlatform.setKeptBlocks.insert(uiNext);
}

TEST_F(VDataWriteTest, DataOf2049BytesIsStoredCompressed) {
    const std::string sData(2049, 'p');
    const std::string sPacked = Packed(sData);
    const uint32_t uiPacked = static_cast<uint32_t>(sPacked.size());
    ASSERT_EQ(Write(sData), 0u);
    EXPECT_EQ(stDesc.uiDataID, uiNext);
    EXPECT_EQ(stDesc.uiOriginalLen, 2049u);
    EXPECT_EQ(stDesc.uiCompressedLen, uiPacked);
    EXPECT_EQ(stPlatform.asCalls,
              (Calls{Call("VT_OS_Compress", {2049, 2049}), Call("VT_VDATA_CreShm", {uiPacked}),
                     Call("VT_VDATA_UpdateData", {uiNext, uiPacked})}));
    EXPECT_EQ(stPlatform.mapBlocks[uiNext], sPacked);
    ASSERT_EQ(stWorld.stAllocs.astLog.size(), 1u);
    EXPECT_EQ(stWorld.stAllocs.astLog[0].uiSize, 2049u);
    EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
    stPlatform.setKeptBlocks.insert(uiNext);
}

TEST_F(VDataWriteTest, WhatIsWrittenCanBeRead) {
    for (const size_t uiLen : {1u, 2048u, 2049u, 100000u}) {
        SCOPED_TRACE(uiLen);
        const std::string sData(uiLen, 'r');
        ASSERT_EQ(Write(sData), 0u);
        void *pvData = nullptr;
        ASSERT_EQ(VT_JNI_COMMON_ReadVData(&stDesc, &pvData), 0u);
        EXPECT_EQ(memcmp(pvData, sData.data(), uiLen), 0);
        VT_OS_MemFreeD(pvData, __FILE_NAME__, __LINE__);
    }
    ExpectNothingLeft();
}

TEST_F(VDataWriteTest, NullArgumentsAreRefused) {
    EXPECT_EQ(VT_JNI_COMMON_WriteVData(nullptr, "data", 4), 1u);
    EXPECT_EQ(VT_JNI_COMMON_WriteVData(&stDesc, nullptr, 4), 1u);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{1, 1}));
    EXPECT_TRUE(stPlatform.asCalls.empty());
}

TEST_F(VDataWriteTest, NoMemoryForTheCompressedForm) {
    stWorld.Plan({Op::kAlloc, 1, false});
    EXPECT_EQ(Write(std::string(2049, 'p')), kNoMemory);
    EXPECT_TRUE(stPlatform.asCalls.empty());
    ExpectOneRecord(kNoMemory, {0, 2049, 2049, 0});
    EXPECT_EQ(stDesc.uiDataID, 0u);
    ExpectNothingLeft();
}

TEST_F(VDataWriteTest, DataThatDoesNotShrinkIsRefused) {
    EXPECT_EQ(Write(Various(2049)), 0x0B0B0004u);
    EXPECT_EQ(stPlatform.asCalls, (Calls{Call("VT_OS_Compress", {2049, 2049})}));
    ExpectOneRecord(0x0B0B0004, {0, 2049, 2049, 0});
    EXPECT_EQ(stDesc.uiDataID, 0u);
    ExpectNothingLeft();
}

TEST_F(VDataWriteTest, FailedCreationIsFollowedByTheOtherStepsOnNoBlock) {
    stPlatform.mapStatus["VT_VDATA_CreShm"] = 0x00000F00;
    stPlatform.mapStatus["VT_VDATA_UpdateData"] = 0x000000F1;
    EXPECT_EQ(Write("data"), 0x00000FF1u);
    EXPECT_EQ(stPlatform.asCalls,
              (Calls{"VT_VDATA_CreShm 4", "VT_VDATA_UpdateData 0 4", "VT_VDATA_FreeShm 0"}));
    ExpectOneRecord(0x00000FF1, {0, 4, 4, 0});
    EXPECT_EQ(stDesc.uiDataID, 0u);
    ExpectNothingLeft();
}

TEST_F(VDataWriteTest, FailedCreationAloneIsAFailure) {
    stPlatform.mapStatus["VT_VDATA_CreShm"] = 0x40000000;
    EXPECT_EQ(Write("data"), 0x40000000u | 0x0B0B0001u);
    EXPECT_EQ(stDesc.uiDataID, 0u);
    ExpectNothingLeft();
}

TEST_F(VDataWriteTest, FailedUpdateFreesTheNewBlock) {
    stPlatform.mapStatus["VT_VDATA_UpdateData"] = kBroken;
    EXPECT_EQ(Write("data"), kBroken);
    EXPECT_EQ(stPlatform.asCalls,
              (Calls{"VT_VDATA_CreShm 4", Call("VT_VDATA_UpdateData", {uiNext, 4}),
                     Call("VT_VDATA_FreeShm", {uiNext})}));
    ExpectOneRecord(kBroken, {uiNext, 4, 4, 0});
    ExpectNothingLeft();
}

TEST_F(VDataWriteTest, FailedUpdateOfCompressedDataFreesTheBufferToo) {
    stPlatform.mapStatus["VT_VDATA_UpdateData"] = kBroken;
    EXPECT_EQ(Write(std::string(5000, 'p')), kBroken);
    EXPECT_EQ(stPlatform.CountCalls("VT_VDATA_FreeShm"), 1u);
    EXPECT_EQ(stPlatform.astFaults.size(), 1u);
    ExpectNothingLeft();
}

TEST_F(VDataWriteTest, FailedUpdateLeavesNoIdBehind) {
    stPlatform.mapStatus["VT_VDATA_UpdateData"] = kBroken;
    EXPECT_EQ(Write("data"), kBroken);
    EXPECT_EQ(stDesc.uiDataID, 0u);
    ExpectNothingLeft();
}

TEST_F(VDataWriteTest, DataOfMoreThanALongestBlockIsRefused) {
    const std::string sData(kBlockLimit + 1, 'p');
    EXPECT_EQ(Write(sData), kNoMemory);
    EXPECT_TRUE(stPlatform.asCalls.empty());
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kNoMemory}));
    ExpectNothingLeft();
}

}  // namespace
}  // namespace wap::test

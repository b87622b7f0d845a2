// Bulk data under every single fault, and descriptors and blocks that no honest process would make.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <string>

#include "common/jni_vdata.h"
#include "faults/fault_sweep.h"

namespace wap::test {

namespace {

constexpr uint32_t kNoMemory = 0xF7108001;
// What the scripted platform answers.
constexpr uint32_t kReadRefused = 0x0B0B0002;
constexpr uint32_t kNotPacked = 0x0B0B0005;
constexpr uint32_t kCopyRefused = 0x0C0C0001;
constexpr uint32_t kLargest = 16u * 1024 * 1024;

std::string Stripes(size_t uiLen) {
    std::string sData;
    for (size_t i = 0; i < uiLen; ++i) {
        sData += static_cast<char>('a' + i / 100 % 26);
    }
    return sData;
}

std::string Status(uint32_t uiStatus) {
    char acText[16];
    std::snprintf(acText, sizeof(acText), "%08X", static_cast<unsigned>(uiStatus));
    return acText;
}

void Release(void *pvData) {
    VT_OS_MemFreeD(pvData, __FILE_NAME__, __LINE__);
}

Subject ReadSubject(const std::string &sData) {
    struct State {
        VDataDesc stDesc{};
        void *pvData = nullptr;
        uint32_t uiStatus = 0;
        bool bBlockGone = false;
    };
    auto pstState = std::make_shared<State>();
    Subject stSubject;
    stSubject.sName = "reading " + std::to_string(sData.size()) + " bytes";
    stSubject.fnFurnish = [=](World &stWorld) {
        const std::string sBlock = sData.size() > 2048 ? Packed(sData) : sData;
        pstState->stDesc = {stWorld.stPlatform.AddBlock(sBlock),
                            static_cast<uint32_t>(sData.size()),
                            static_cast<uint32_t>(sBlock.size())};
        pstState->pvData = &pstState->stDesc;
    };
    stSubject.fnCall = [=](FakeJni &) {
        pstState->uiStatus = VT_JNI_COMMON_ReadVData(&pstState->stDesc, &pstState->pvData);
    };
    stSubject.fnOutcome = [=](FakeJni &) {
        std::string sOutcome = Status(pstState->uiStatus);
        if (World::Get().stPlatform.mapBlocks.contains(pstState->stDesc.uiDataID)) {
            sOutcome += " block kept";
        }
        if (pstState->pvData != nullptr) {
            sOutcome += " " + std::string(static_cast<const char *>(pstState->pvData),
                                          pstState->stDesc.uiOriginalLen);
            Release(pstState->pvData);
        }
        return sOutcome;
    };
    stSubject.sGood = "00000000 " + sData;
    stSubject.fnAllowed = [](const FaultPlan &stPlan) -> std::set<std::string> {
        return {Status(stPlan.eOp == Op::kAlloc ? kNoMemory : kPlannedStatus)};
    };
    return stSubject;
}

Subject WriteSubject(const std::string &sData) {
    struct State {
        VDataDesc stDesc{};
        uint32_t uiStatus = 0;
    };
    auto pstState = std::make_shared<State>();
    const std::string sStored = sData.size() > 2048 ? Packed(sData) : sData;
    Subject stSubject;
    stSubject.sName = "writing " + std::to_string(sData.size()) + " bytes";
    stSubject.fnFurnish = [=](World &) { pstState->stDesc = {77, 77, 77}; };
    stSubject.fnCall = [=](FakeJni &) {
        pstState->uiStatus = VT_JNI_COMMON_WriteVData(&pstState->stDesc, sData.data(),
                                                      static_cast<uint32_t>(sData.size()));
    };
    stSubject.fnOutcome = [=](FakeJni &) {
        const VDataDesc &stDesc = pstState->stDesc;
        if (pstState->uiStatus != 0) {
            return Status(pstState->uiStatus) + " id " + std::to_string(stDesc.uiDataID);
        }
        auto &mapBlocks = World::Get().stPlatform.mapBlocks;
        const std::string sBlock = mapBlocks[stDesc.uiDataID];
        mapBlocks.erase(stDesc.uiDataID);
        return "written " + std::to_string(stDesc.uiOriginalLen) + " " +
               std::to_string(stDesc.uiCompressedLen) + " " + sBlock;
    };
    stSubject.sGood = "written " + std::to_string(sData.size()) + " " +
                      std::to_string(sStored.size()) + " " + sStored;
    stSubject.fnAllowed = [](const FaultPlan &stPlan) -> std::set<std::string> {
        if (stPlan.eOp == Op::kAlloc) {
            return {Status(kNoMemory) + " id 0"};
        }
        // The platform's code, or both codes when the write into no block failed as well.
        return {Status(kPlannedStatus) + " id 0", Status(kPlannedStatus | 0x0B0B0001) + " id 0"};
    };
    return stSubject;
}

TEST(BulkFaults, ReadPlain) {
    const OpCounts auiCounts = SweepFaults(ReadSubject(Stripes(2048)));
    EXPECT_EQ(CountOf(auiCounts, Op::kAlloc), 2u);
    EXPECT_EQ(CountOf(auiCounts, Op::kBulk), 2u);
}

TEST(BulkFaults, ReadCompressed) {
    const OpCounts auiCounts = SweepFaults(ReadSubject(Stripes(2049)));
    EXPECT_EQ(CountOf(auiCounts, Op::kAlloc), 2u);
    EXPECT_EQ(CountOf(auiCounts, Op::kBulk), 3u);
}

TEST(BulkFaults, WritePlain) {
    const OpCounts auiCounts = SweepFaults(WriteSubject(Stripes(2048)));
    EXPECT_EQ(CountOf(auiCounts, Op::kAlloc), 0u);
    EXPECT_EQ(CountOf(auiCounts, Op::kBulk), 2u);
}

TEST(BulkFaults, WriteCompressed) {
    const OpCounts auiCounts = SweepFaults(WriteSubject(Stripes(2049)));
    EXPECT_EQ(CountOf(auiCounts, Op::kAlloc), 1u);
    EXPECT_EQ(CountOf(auiCounts, Op::kBulk), 3u);
}

TEST(BulkFaults, WriteOfTooMuchIsRefused) {
    World stWorld;
    const std::string sData(kLargest + 1, 'z');
    VDataDesc stDesc = {9, 9, 9};
    EXPECT_EQ(VT_JNI_COMMON_WriteVData(&stDesc, sData.data(), kLargest + 1), kNoMemory);
    EXPECT_EQ(stDesc.uiDataID, 0u);
    stWorld.ExpectClean();
}

class HostileBulkTest : public ::testing::Test {
  protected:
    /// Reads, and expects the data (code 0) or a failure that leaves nothing; the block goes in any
    /// case.
    void ExpectRead(const VDataDesc &stDesc, uint32_t uiCode, const std::string &sWanted = "") {
        SCOPED_TRACE("id " + std::to_string(stDesc.uiDataID) + ", lengths " +
                     std::to_string(stDesc.uiOriginalLen) + " " +
                     std::to_string(stDesc.uiCompressedLen));
        int iMark = 0;
        void *pvData = &iMark;
        const uint32_t uiStatus = VT_JNI_COMMON_ReadVData(&stDesc, &pvData);
        EXPECT_EQ(uiStatus, uiCode) << std::hex << uiStatus;
        if (uiStatus == 0) {
            const std::string sData(static_cast<const char *>(pvData), stDesc.uiOriginalLen);
            EXPECT_TRUE(sData == sWanted);
            Release(pvData);
        } else {
            EXPECT_EQ(pvData, nullptr);
        }
        EXPECT_EQ(stWorld.stPlatform.CountCalls("VT_VDATA_FreeShm"), 1u);
        EXPECT_TRUE(stWorld.stPlatform.mapBlocks.empty());
        stWorld.ExpectClean();
        stWorld.ClearRecords();
    }

    /// What is wrong with lengths that were drawn at random, for a block of random bytes.
    static uint32_t CodeFor(const VDataDesc &stDesc, size_t uiBlock) {
        for (const uint32_t uiLen : {stDesc.uiOriginalLen, stDesc.uiCompressedLen}) {
            if (uiLen == 0 || uiLen > kLargest) {
                return kNoMemory;
            }
        }
        if (stDesc.uiCompressedLen > uiBlock) {
            return kReadRefused;
        }
        if (stDesc.uiOriginalLen > 2048) {
            return kNotPacked;
        }
        return stDesc.uiCompressedLen > stDesc.uiOriginalLen ? kCopyRefused : 0;
    }

    uint32_t RandomLength() {
        constexpr uint32_t kEdges[] = {0,          1,         2047,     2048,         2049,
                                       2050,       4096,      kLargest, kLargest + 1, 0x7FFFFFFF,
                                       0xFFFFFFFE, 0xFFFFFFFF};
        return stDice.Roll(2) == 0 ? kEdges[stDice.Roll(std::size(kEdges))] : stDice.Roll(6000);
    }

    std::string RandomBytes(size_t uiLen) {
        std::string sBytes(uiLen, '\0');
        for (char &cByte : sBytes) {
            cByte = static_cast<char>(stDice.Roll(256));
        }
        return sBytes;
    }

    World stWorld;
    Dice stDice{77001};
};

TEST_F(HostileBulkTest, LengthsThatLie) {
    std::map<uint32_t, uint32_t> mapSeen;
    for (uint32_t i = 0; i < 400; ++i) {
        const std::string sBlock = RandomBytes(stDice.Roll(6000));
        const VDataDesc stDesc = {stWorld.stPlatform.AddBlock(sBlock), RandomLength(),
                                  RandomLength()};
        // Only a plain block can be made by chance, and it must hold what the descriptor says.
        const uint32_t uiCode = CodeFor(stDesc, sBlock.size());
        std::string sWanted = sBlock.substr(0, stDesc.uiCompressedLen);
        sWanted.resize(uiCode == 0 ? stDesc.uiOriginalLen : 0, '\0');
        ExpectRead(stDesc, uiCode, sWanted);
        ++mapSeen[uiCode];
    }
    for (const uint32_t uiCode : {0u, kNoMemory, kReadRefused, kNotPacked, kCopyRefused}) {
        EXPECT_GT(mapSeen[uiCode], 5u) << std::hex << uiCode;
    }
}

/// A packed block with one bit of its length turned, with a run of no bytes, or cut short.
std::string Damaged(std::string sBlock, Dice &stDice) {
    switch (stDice.Roll(3)) {
        case 0: {
            char &cByte = sBlock[4 + stDice.Roll(4)];
            cByte = static_cast<char>(cByte ^ (1 << stDice.Roll(8)));
            break;
        }
        case 1:
            sBlock[8] = '\0';
            break;
        default:
            sBlock.resize(1 + stDice.Roll(static_cast<uint32_t>(sBlock.size() - 1)));
    }
    return sBlock;
}

TEST_F(HostileBulkTest, CompressedBlocksThatLie) {
    uint32_t uiFailed = 0;
    for (uint32_t i = 0; i < 200; ++i) {
        const std::string sPlain = Stripes(2049 + stDice.Roll(4000));
        const std::string sBlock = Damaged(Packed(sPlain), stDice);
        const VDataDesc stDesc = {stWorld.stPlatform.AddBlock(sBlock),
                                  static_cast<uint32_t>(sPlain.size()),
                                  static_cast<uint32_t>(sBlock.size())};
        int iMark = 0;
        void *pvData = &iMark;
        const uint32_t uiStatus = VT_JNI_COMMON_ReadVData(&stDesc, &pvData);
        if (uiStatus != 0) {
            EXPECT_EQ(pvData, nullptr);
            ++uiFailed;
        } else {
            // The platform took a shorter block; what it did not fill is zero.
            std::string sData(static_cast<const char *>(pvData), sPlain.size());
            Release(pvData);
            sData.resize(std::min(sData.find('\0'), sData.size()));
            EXPECT_LT(sData.size(), sPlain.size());
            EXPECT_EQ(sData, sPlain.substr(0, sData.size()));
        }
        EXPECT_TRUE(stWorld.stPlatform.mapBlocks.empty());
        stWorld.ExpectClean();
    }
    EXPECT_GT(uiFailed, 100u);
}

TEST_F(HostileBulkTest, BlockThatIsNotThere) {
    for (const uint32_t uiId : {0u, 1u, 0xFFFFFFFFu}) {
        ExpectRead({uiId, 100, 100}, kReadRefused);
        ExpectRead({uiId, 5000, 100}, kReadRefused);
    }
}

}  // namespace

}  // namespace wap::test

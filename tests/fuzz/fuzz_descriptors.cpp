#include <algorithm>
#include <string>
#include <vector>

#include "common/jni_vdata.h"
#include "fuzz/targets.h"
#include "support/wire_bytes.h"

namespace wap::test {

namespace {

constexpr uint32_t kNoMemory = 0xF7108001;
constexpr uint32_t kLongest = 16u * 1024 * 1024;
constexpr uint32_t kLongestPlain = 2048;
constexpr size_t kHead = 9;

/// What a block should be read as: a code, and what it holds.
struct Outcome {
    uint32_t uiResult;
    std::string sData;
};

/// A block that is as long as it says, worked out with the platform's own functions.
Outcome ContentOf(const std::string &sStored, uint32_t uiLength) {
    if (uiLength <= kLongestPlain) {
        std::string sData(uiLength, '\0');
        const uint32_t uiResult = VT_OS_MemCpy_S(sData.data(), uiLength, sStored.data(),
                                                 static_cast<uint32_t>(sStored.size()));
        return {uiResult, sData};
    }
    // The platform may read as much as it may write.
    std::string sSource = sStored;
    sSource.resize(std::max<size_t>(sStored.size(), uiLength), '\0');
    std::string sData(uiLength, '\0');
    return {VT_OS_Decompress(sSource.data(), sData.data(), uiLength), sData};
}

Outcome OutcomeOf(const VDataDesc &stDesc, uint32_t uiBlock, const std::string &sBlock) {
    for (const uint32_t uiLength : {stDesc.uiOriginalLen, stDesc.uiCompressedLen}) {
        if (uiLength == 0 || uiLength > kLongest) {
            return {kNoMemory, ""};
        }
    }
    World stOther;
    stOther.stPlatform.mapBlocks[uiBlock] = sBlock;
    std::string sStored(stDesc.uiCompressedLen, '\0');
    const uint32_t uiRead =
        VT_VDATA_ReadData(stDesc.uiDataID, stDesc.uiCompressedLen, sStored.data());
    return uiRead != 0 ? Outcome{uiRead, ""} : ContentOf(sStored, stDesc.uiOriginalLen);
}

/// A block as its maker described it, which may be a lie.
void CheckRead(uint32_t uiOriginal, uint32_t uiCompressed, bool bOwnId, const std::string &sBlock) {
    World stWorld;
    Platform &stPlatform = stWorld.stPlatform;
    const uint32_t uiBlock = stPlatform.AddBlock(sBlock);
    const VDataDesc stDesc = {bOwnId ? uiBlock : uiBlock + 1, uiOriginal, uiCompressed};
    const Outcome stWanted = OutcomeOf(stDesc, uiBlock, sBlock);
    int iMark = 0;
    void *pvData = &iMark;
    const uint32_t uiResult = VT_JNI_COMMON_ReadVData(&stDesc, &pvData);
    Require(uiResult == stWanted.uiResult, "a block is read, or fails for the right reason");
    Require((uiResult == 0) == (pvData != nullptr), "a success has data, and nothing else");
    if (uiResult == 0) {
        Require(stWorld.stAllocs.SizeOf(pvData) == uiOriginal, "data is as long as it should be");
        Require(std::string(static_cast<char *>(pvData), uiOriginal) == stWanted.sData,
                "a block has the data that the platform's functions find");
        VT_OS_MemFreeD(pvData, "fuzz_descriptors.cpp", __LINE__);
    }
    Require(stPlatform.CountCalls("VT_VDATA_FreeShm") == 1, "a block is freed once");
    // Another's block is not touched.
    Require(stPlatform.mapBlocks.size() == (bOwnId ? 0 : 1), "the block that was named is freed");
    stPlatform.mapBlocks.clear();
    RequireClean(stWorld);
}

/// What is written is read again.
void CheckRoundTrip(const std::string &sData) {
    World stWorld;
    Platform &stPlatform = stWorld.stPlatform;
    VDataDesc stDesc = {};
    const auto uiLength = static_cast<uint32_t>(sData.size());
    const uint32_t uiResult = VT_JNI_COMMON_WriteVData(&stDesc, sData.data(), uiLength);
    const bool bPlain = uiLength <= kLongestPlain;
    Require((uiResult == 0) == (bPlain || Packed(sData).size() <= uiLength),
            "what there is room for is written");
    Require(stPlatform.mapBlocks.size() == (uiResult == 0 ? 1 : 0), "a failure leaves no block");
    if (uiResult == 0) {
        void *pvData = nullptr;
        Require(VT_JNI_COMMON_ReadVData(&stDesc, &pvData) == 0, "what was written can be read");
        Require(std::string(static_cast<char *>(pvData), uiLength) == sData,
                "what was written is what is read");
        VT_OS_MemFreeD(pvData, "fuzz_descriptors.cpp", __LINE__);
    }
    RequireClean(stWorld);
}

/// Lengths beyond what an input can fill are those that no block may have: others take long, and
/// show nothing that shorter ones don't.
uint32_t LengthOf(uint32_t uiAny) {
    constexpr uint32_t kFewBytes = 1u << 16;
    return uiAny > kFewBytes && uiAny <= kLongest ? uiAny % kFewBytes : uiAny;
}

}  // namespace

void FuzzDescriptors(const uint8_t *pucData, size_t uiSize) {
    if (uiSize < kHead) {
        return;
    }
    const std::string sBytes(reinterpret_cast<const char *>(pucData), uiSize);
    const std::string sBlock = sBytes.substr(kHead);
    const bool bOwnId = pucData[8] % 8 != 7;
    const uint32_t uiOriginal = LengthOf(WordAt(sBytes, 0));
    CheckRead(uiOriginal, LengthOf(WordAt(sBytes, 4)), bOwnId, sBlock);
    // The right length of the block, so that most inputs get as far as what is in it.
    CheckRead(uiOriginal, static_cast<uint32_t>(sBlock.size()), bOwnId, sBlock);
    if (!sBlock.empty()) {
        CheckRoundTrip(sBlock);
        std::string sLong;
        while (sLong.size() <= kLongestPlain) {
            sLong += sBlock;
        }
        CheckRoundTrip(sLong);
    }
}

}  // namespace wap::test

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "vt_ssp_host.h"

namespace wap::test {
namespace {

/** Text that shrinks well, as lists of records do. */
std::string Rows(size_t uiLen) {
    std::string strRows;
    for (int i = 0; strRows.size() < uiLen; i++) {
        strRows += "{ \"MAC\": \"00:11:22:33:44:" + std::to_string(i % 90 + 10) + "\" }, ";
    }
    strRows.resize(uiLen);
    return strRows;
}

/** Bytes without a pattern. */
std::string Noise(size_t uiLen) {
    std::string strNoise;
    uint32_t uiState = 12345;
    for (size_t i = 0; i < uiLen; i++) {
        uiState = uiState * 1664525u + 1013904223u;
        strNoise += static_cast<char>(uiState >> 24);
    }
    return strNoise;
}

std::string Compressed(const std::string &strData) {
    std::string strPacked(strData.size(), '\0');
    uint32_t uiLen = static_cast<uint32_t>(strPacked.size());
    EXPECT_EQ(0u, VT_OS_Compress(strData.data(), static_cast<uint32_t>(strData.size()),
                                 strPacked.data(), &uiLen));
    strPacked.resize(uiLen);
    return strPacked;
}

/** Decompresses out of a block of exactly uiCap bytes, so that a sanitizer sees a read beyond. */
uint32_t Unpack(const std::string &strPacked, std::string &strData) {
    std::vector<char> acSource(strData.size());
    memcpy(acSource.data(), strPacked.data(), std::min(strPacked.size(), acSource.size()));
    return VT_OS_Decompress(acSource.data(), strData.data(), static_cast<uint32_t>(strData.size()));
}

TEST(Compress, RoundTripGivesTheData) {
    for (size_t uiLen : {100u, 2049u, 65536u, 1000003u}) {
        std::string strData = Rows(uiLen);
        std::string strPacked = Compressed(strData);
        EXPECT_LT(strPacked.size(), strData.size());
        std::string strBack(uiLen, '\0');
        EXPECT_EQ(0u, Unpack(strPacked, strBack)) << uiLen;
        EXPECT_EQ(strData, strBack) << uiLen;
    }
}

TEST(Compress, ALargerRoomIsFine) {
    std::string strData = Rows(3000);
    std::string strBack(5000, '#');
    EXPECT_EQ(0u, Unpack(Compressed(strData), strBack));
    EXPECT_EQ(strData, strBack.substr(0, 3000));
    EXPECT_EQ(std::string(2000, '#'), strBack.substr(3000));
}

TEST(Compress, RefusesDataThatDoesNotShrink) {
    for (size_t uiLen : {1u, 10u, 17u, 3000u}) {
        std::string strNoise = Noise(uiLen);
        std::string strRoom(uiLen + 1000, '\0');
        uint32_t uiRoom = static_cast<uint32_t>(strRoom.size());
        EXPECT_EQ(VT_HOST_ERR_DATA, VT_OS_Compress(strNoise.data(), static_cast<uint32_t>(uiLen),
                                                   strRoom.data(), &uiRoom));
        EXPECT_EQ(uiLen + 1000, uiRoom) << "untouched on failure";
    }
}

TEST(Compress, KeepsToTheRoom) {
    std::string strData = Rows(3000);
    size_t uiNeed = Compressed(strData).size();
    for (size_t uiRoom = 0; uiRoom < uiNeed; uiRoom++) {
        std::vector<char> acRoom(uiRoom + 1);  // one byte, so that there is an address
        uint32_t uiLen = static_cast<uint32_t>(uiRoom);
        EXPECT_EQ(VT_HOST_ERR_TOO_LONG, VT_OS_Compress(strData.data(), 3000, acRoom.data(), &uiLen))
            << uiRoom;
        EXPECT_EQ(0, acRoom[uiRoom]) << "wrote beyond " << uiRoom;
    }
    std::vector<char> acRoom(uiNeed);
    uint32_t uiLen = static_cast<uint32_t>(uiNeed);
    EXPECT_EQ(0u, VT_OS_Compress(strData.data(), 3000, acRoom.data(), &uiLen));
    EXPECT_EQ(uiNeed, uiLen);
}

TEST(Compress, RefusesBadArguments) {
    char acRoom[64] = {};
    uint32_t uiLen = sizeof acRoom;
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_Compress(nullptr, 5, acRoom, &uiLen));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_Compress(acRoom, 5, nullptr, &uiLen));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_Compress(acRoom, 5, acRoom + 32, nullptr));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_Compress(acRoom, 0, acRoom + 32, &uiLen));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_Decompress(nullptr, acRoom, 64));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_Decompress(acRoom, nullptr, 64));
    EXPECT_EQ(VT_HOST_ERR_DATA, VT_OS_Decompress(acRoom, acRoom + 32, 0));
}

TEST(Decompress, ATooSmallRoomFails) {
    std::string strData = Rows(3000);
    std::string strPacked = Compressed(strData);
    for (size_t uiRoom = 1; uiRoom < strData.size(); uiRoom += 7) {
        std::string strBack(uiRoom, '\0');
        EXPECT_EQ(VT_HOST_ERR_DATA, Unpack(strPacked, strBack)) << uiRoom;
    }
    std::string strBack(2999, '\0');
    EXPECT_EQ(VT_HOST_ERR_DATA, Unpack(strPacked, strBack));
}

TEST(Decompress, EveryDamagedByteIsNoticed) {
    std::string strData = Rows(2500);
    std::string strPacked = Compressed(strData);
    for (size_t uiAt = 0; uiAt < strPacked.size(); uiAt++) {
        for (int iFlip : {0x01, 0x80, 0xFF}) {
            std::string strBad = strPacked;
            strBad[uiAt] = static_cast<char>(strBad[uiAt] ^ iFlip);
            std::string strBack(2500, '\0');
            EXPECT_EQ(VT_HOST_ERR_DATA, Unpack(strBad, strBack)) << uiAt << " ^ " << iFlip;
        }
    }
}

TEST(Decompress, EveryTruncationIsNoticed) {
    std::string strData = Rows(2500);
    std::string strPacked = Compressed(strData);
    for (size_t uiLen = 0; uiLen < strPacked.size(); uiLen++) {
        std::string strBack(2500, '\0');
        EXPECT_EQ(VT_HOST_ERR_DATA, Unpack(strPacked.substr(0, uiLen), strBack)) << uiLen;
    }
}

TEST(Decompress, ForeignBytesFail) {
    std::string strBack(3000, '\0');
    EXPECT_EQ(VT_HOST_ERR_DATA, Unpack(Noise(3000), strBack));
    EXPECT_EQ(VT_HOST_ERR_DATA, Unpack(std::string(3000, '\0'), strBack));
    EXPECT_EQ(VT_HOST_ERR_DATA, Unpack(std::string(3000, '\xFF'), strBack));
    EXPECT_EQ(VT_HOST_ERR_DATA, Unpack(Rows(3000), strBack));
}

}  // namespace
}  // namespace wap::test

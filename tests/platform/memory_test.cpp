#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "vt_ssp_host.h"

namespace wap::test {
namespace {

TEST(Allocator, GivesBlocksOfTheSize) {
    char *pcBlock = static_cast<char *>(VT_OS_MemMallocD(3, "a.cpp", 1));
    ASSERT_NE(nullptr, pcBlock);
    memcpy(pcBlock, "ab", 3);
    EXPECT_STREQ("ab", pcBlock);
    VT_OS_MemFreeD(pcBlock, "a.cpp", 2);
}

TEST(Allocator, FillsWithZerosWhenAsked) {
    char *pcBlock = static_cast<char *>(VT_OS_MemMallocSet(4096, nullptr, 0));
    ASSERT_NE(nullptr, pcBlock);
    EXPECT_TRUE(std::all_of(pcBlock, pcBlock + 4096, [](char cByte) { return cByte == 0; }));
    VT_OS_MemFreeD(pcBlock, nullptr, 0);
}

TEST(Allocator, SizeZeroGivesNull) {
    EXPECT_EQ(nullptr, VT_OS_MemMallocD(0, "a.cpp", 1));
    EXPECT_EQ(nullptr, VT_OS_MemMallocSet(0, "a.cpp", 1));
}

TEST(Allocator, FreesNullAndBlocksFromMalloc) {
    VT_OS_MemFreeD(nullptr, "a.cpp", 1);
    void *pvBlock = malloc(10);
    EXPECT_NE(nullptr, pvBlock);
    VT_OS_MemFreeD(pvBlock, "a.cpp", 1);  // the leak checker tells when it was not freed
}

TEST(MemSet, StaysWithinTheSize) {
    uint8_t aucRoom[4] = {1, 2, 3, 4};
    EXPECT_EQ(0u, VT_OS_MemSet_S(aucRoom, 4, 0x1FF, 3));
    EXPECT_EQ(0, memcmp(aucRoom, "\xFF\xFF\xFF\x04", 4));
    EXPECT_EQ(0u, VT_OS_MemSet_S(aucRoom, 4, 0, 0));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_MemSet_S(aucRoom, 3, 0, 4));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_MemSet_S(nullptr, 4, 0, 1));
    EXPECT_EQ(0, memcmp(aucRoom, "\xFF\xFF\xFF\x04", 4));
}

TEST(MemCpy, CopiesWithinTheSize) {
    uint8_t aucRoom[4] = {1, 2, 3, 4};
    EXPECT_EQ(0u, VT_OS_MemCpy_S(aucRoom, 4, "ab", 2));
    EXPECT_EQ(0, memcmp(aucRoom, "ab\x03\x04", 4));
    EXPECT_EQ(0u, VT_OS_MemCpy_S(aucRoom, 4, "wxyz", 4));
    EXPECT_EQ(0, memcmp(aucRoom, "wxyz", 4));
    EXPECT_EQ(0u, VT_OS_MemCpy_S(aucRoom, 0, "a", 0));
}

TEST(MemCpy, WritesNothingWhenItFails) {
    char acRoom[8] = "abcdefg";
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_MemCpy_S(acRoom, 3, "1234", 4));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_MemCpy_S(nullptr, 3, "1", 1));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_MemCpy_S(acRoom, 8, nullptr, 1));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_MemCpy_S(acRoom + 1, 7, acRoom, 2)) << "overlap";
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_MemCpy_S(acRoom, 8, acRoom + 1, 2)) << "overlap";
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_MemCpy_S(acRoom, 8, acRoom, 2)) << "overlap";
    EXPECT_STREQ("abcdefg", acRoom);
    EXPECT_EQ(0u, VT_OS_MemCpy_S(acRoom, 8, acRoom + 2, 2)) << "neighbours do not overlap";
    EXPECT_STREQ("cdcdefg", acRoom);
}

}  // namespace
}  // namespace wap::test

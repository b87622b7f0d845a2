#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "runtime_dir.h"

namespace wap::test {
namespace {

class VData : public RuntimeDirTest {};

VDataDesc NewBlock(uint32_t uiSize) {
    VDataDesc stDesc{0, 11, 22};
    EXPECT_EQ(0u, VT_VDATA_CreShm(uiSize, &stDesc));
    return stDesc;
}

TEST_F(VData, CreationWritesTheIdOnly) {
    VDataDesc stDesc = NewBlock(10);
    EXPECT_NE(0u, stDesc.uiDataID);
    EXPECT_EQ(11u, stDesc.uiOriginalLen);
    EXPECT_EQ(22u, stDesc.uiCompressedLen);
}

TEST_F(VData, ReadsWhatWasWritten) {
    VDataDesc stDesc = NewBlock(5);
    char acBack[5] = {};
    EXPECT_EQ(0u, VT_VDATA_ReadData(stDesc.uiDataID, 5, acBack));
    EXPECT_EQ(0, memcmp(acBack, "\0\0\0\0\0", 5)) << "a fresh block is zero";
    EXPECT_EQ(0u, VT_VDATA_UpdateData(stDesc.uiDataID, 5, "abcde"));
    EXPECT_EQ(0u, VT_VDATA_UpdateData(stDesc.uiDataID, 2, "XY"));
    EXPECT_EQ(0u, VT_VDATA_ReadData(stDesc.uiDataID, 5, acBack));
    EXPECT_EQ(0, memcmp(acBack, "XYcde", 5));
}

TEST_F(VData, KeepsToTheSize) {
    VDataDesc stDesc = NewBlock(4);
    char acBack[5] = "####";
    EXPECT_EQ(VT_HOST_ERR_TOO_LONG, VT_VDATA_UpdateData(stDesc.uiDataID, 5, "abcde"));
    EXPECT_EQ(VT_HOST_ERR_TOO_LONG, VT_VDATA_ReadData(stDesc.uiDataID, 5, acBack));
    EXPECT_STREQ("####", acBack);
    EXPECT_EQ(0u, VT_VDATA_ReadData(stDesc.uiDataID, 4, acBack));
    EXPECT_EQ(0, memcmp(acBack, "\0\0\0\0", 4)) << "the refused write wrote nothing";
}

TEST_F(VData, AFreedBlockIsGone) {
    VDataDesc stDesc = NewBlock(4);
    char acBack[4];
    EXPECT_EQ(0u, VT_VDATA_FreeShm(stDesc.uiDataID));
    EXPECT_EQ(VT_HOST_ERR_NO_BLOCK, VT_VDATA_FreeShm(stDesc.uiDataID));
    EXPECT_EQ(VT_HOST_ERR_NO_BLOCK, VT_VDATA_ReadData(stDesc.uiDataID, 4, acBack));
    EXPECT_EQ(VT_HOST_ERR_NO_BLOCK, VT_VDATA_UpdateData(stDesc.uiDataID, 4, "abcd"));
}

TEST_F(VData, IdZeroNamesNoBlock) {
    char acBack[4];
    EXPECT_EQ(VT_HOST_ERR_NO_BLOCK, VT_VDATA_FreeShm(0));
    EXPECT_EQ(VT_HOST_ERR_NO_BLOCK, VT_VDATA_ReadData(0, 4, acBack));
}

TEST_F(VData, RefusesBadArguments) {
    VDataDesc stDesc{7, 8, 9};
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_VDATA_CreShm(0, &stDesc));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_VDATA_CreShm(4, nullptr));
    EXPECT_EQ(VT_HOST_ERR_TOO_LONG, VT_VDATA_CreShm(UINT32_MAX, &stDesc));
    EXPECT_EQ(7u, stDesc.uiDataID) << "untouched on failure";
    stDesc = NewBlock(4);
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_VDATA_UpdateData(stDesc.uiDataID, 4, nullptr));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_VDATA_ReadData(stDesc.uiDataID, 4, nullptr));
}

TEST_F(VData, FailsWithoutARuntimeDirectory) {
    unsetenv("VT_RUNTIME_DIR");
    VDataDesc stDesc{};
    EXPECT_EQ(VT_HOST_ERR_STATE, VT_VDATA_CreShm(4, &stDesc));
    EXPECT_EQ(VT_HOST_ERR_STATE, VT_VDATA_FreeShm(1));
    EXPECT_EQ(0u, VT_HOST_RemoveStaleBlocks());
}

TEST_F(VData, IsPrivateToTheUser) {
    NewBlock(4);
    struct stat stInfo {};
    ASSERT_EQ(0, stat(Path("vdata").c_str(), &stInfo));
    EXPECT_EQ(0700u, stInfo.st_mode & 0777u);
}

uint32_t g_uiSharedId = 0;

TEST_F(VData, CrossesProcesses) {
    g_uiSharedId = NewBlock(3).uiDataID;
    ASSERT_EQ(0u, VT_VDATA_UpdateData(g_uiSharedId, 3, "abc"));
    EXPECT_EQ(0, InChild([] {
                  char acBack[3];
                  bool bOk = VT_VDATA_ReadData(g_uiSharedId, 3, acBack) == 0 &&
                             memcmp(acBack, "abc", 3) == 0 &&
                             VT_VDATA_UpdateData(g_uiSharedId, 3, "xyz") == 0;
                  return bOk ? 0 : 1;
              }));
    char acBack[3];
    ASSERT_EQ(0u, VT_VDATA_ReadData(g_uiSharedId, 3, acBack));
    EXPECT_EQ(0, memcmp(acBack, "xyz", 3)) << "what the child wrote before it ended";
    EXPECT_EQ(0, InChild([] { return VT_VDATA_FreeShm(g_uiSharedId) == 0 ? 0 : 1; }));
    EXPECT_EQ(VT_HOST_ERR_NO_BLOCK, VT_VDATA_ReadData(g_uiSharedId, 3, acBack));
}

TEST_F(VData, IdsAreUniqueAmongThreads) {
    std::mutex stMutex;
    std::set<uint32_t> setIds;
    constexpr int kThreads = 4;
    std::vector<std::thread> astThreads;
    astThreads.reserve(kThreads);
    for (int i = 0; i < kThreads; i++) {
        astThreads.emplace_back([&] {
            for (int iBlock = 0; iBlock < 50; iBlock++) {
                uint32_t uiId = NewBlock(8).uiDataID;
                std::lock_guard<std::mutex> stGuard(stMutex);
                setIds.insert(uiId);
            }
        });
    }
    for (std::thread &stThread : astThreads) {
        stThread.join();
    }
    EXPECT_EQ(200u, setIds.size());
    EXPECT_EQ(200u, VT_HOST_RemoveStaleBlocks());
}

TEST_F(VData, StaleBlocksAreRemovedAndNothingElse) {
    EXPECT_EQ(0u, VT_HOST_RemoveStaleBlocks()) << "no folder yet";
    uint32_t uiId = NewBlock(8).uiDataID;
    NewBlock(8);
    std::string strOther = Path("vdata/notes.txt");
    FILE *pstFile = fopen(strOther.c_str(), "w");
    ASSERT_NE(nullptr, pstFile);
    fclose(pstFile);
    EXPECT_EQ(2u, VT_HOST_RemoveStaleBlocks());
    EXPECT_EQ(VT_HOST_ERR_NO_BLOCK, VT_VDATA_FreeShm(uiId));
    EXPECT_EQ(0, access(strOther.c_str(), F_OK));
}

}  // namespace
}  // namespace wap::test

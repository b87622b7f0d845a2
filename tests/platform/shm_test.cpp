// System V shared memory: that of shmget, with keys of the gateway's own.
#include <sys/ipc.h>
#include <sys/shm.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "runtime_dir.h"
#include "vt_ssp_basic.h"

namespace wap::test {
namespace {

constexpr int32_t kKey = 0xD2036;

class KeyedSegments : public RuntimeDirTest {
  protected:
    ~KeyedSegments() override { EXPECT_EQ(-1, VT_OS_ShmGet(kKey, 0, 0)) << "the test removes it"; }

    /// Makes another runtime directory the process's.
    void Enter(const char *pcName) const {
        const std::string strPath = Path(pcName);
        mkdir(strPath.c_str(), 0700);
        setenv("VT_RUNTIME_DIR", strPath.c_str(), 1);
    }
};

TEST_F(KeyedSegments, TheSameDirectoryHasTheSameSegment) {
    const int32_t iId = VT_OS_ShmGet(kKey, 100, IPC_CREAT | 0600);
    ASSERT_GE(iId, 0);
    EXPECT_EQ(iId, VT_OS_ShmGet(kKey, 100, IPC_CREAT | 0600));
    EXPECT_EQ(iId, VT_OS_ShmGet(kKey, 0, 0));
    EXPECT_EQ(-1, VT_OS_ShmGet(kKey + 2, 0, 0)) << "another key";
    setenv("VT_RUNTIME_DIR", (strDir + "/.").c_str(), 1);
    EXPECT_EQ(iId, VT_OS_ShmGet(kKey, 0, 0)) << "the same place under another name";
    EXPECT_EQ(0, VT_OS_ShmCtl(iId, IPC_RMID, nullptr));
}

TEST_F(KeyedSegments, EveryDirectoryHasItsOwn) {
    Enter("one");
    const int32_t iOne = VT_OS_ShmGet(kKey, 100, IPC_CREAT | IPC_EXCL | 0600);
    Enter("two");
    EXPECT_EQ(-1, VT_OS_ShmGet(kKey, 0, 0));
    const int32_t iTwo = VT_OS_ShmGet(kKey, 100, IPC_CREAT | IPC_EXCL | 0600);
    ASSERT_GE(iOne, 0);
    ASSERT_GE(iTwo, 0);
    EXPECT_NE(iOne, iTwo);
    EXPECT_EQ(0, VT_OS_ShmCtl(iOne, IPC_RMID, nullptr));
    EXPECT_EQ(0, VT_OS_ShmCtl(iTwo, IPC_RMID, nullptr));
    setenv("VT_RUNTIME_DIR", strDir.c_str(), 1);
}

TEST_F(KeyedSegments, WithoutADirectoryTheKeyIsTheMachines) {
    constexpr int32_t kOddKey = 0x5EED0F01;
    unsetenv("VT_RUNTIME_DIR");
    const int32_t iId = VT_OS_ShmGet(kOddKey, 100, IPC_CREAT | 0600);
    ASSERT_GE(iId, 0);
    EXPECT_EQ(iId, shmget(kOddKey, 0, 0));
    EXPECT_EQ(0, VT_OS_ShmCtl(iId, IPC_RMID, nullptr));
    setenv("VT_RUNTIME_DIR", strDir.c_str(), 1);
}

TEST(SystemVMemory, IsSharedAndRemoved) {
    int32_t iId = VT_OS_ShmGet(IPC_PRIVATE, 100, IPC_CREAT | 0600);
    ASSERT_GE(iId, 0);
    char *pcFirst = static_cast<char *>(VT_OS_ShmAt(iId, nullptr, 0));
    char *pcSecond = static_cast<char *>(VT_OS_ShmAt(iId, nullptr, 0));
    ASSERT_NE(-1, reinterpret_cast<intptr_t>(pcFirst));
    ASSERT_NE(-1, reinterpret_cast<intptr_t>(pcSecond));
    memcpy(pcFirst, "hello", 6);
    EXPECT_STREQ("hello", pcSecond);
    shmid_ds stInfo{};
    EXPECT_EQ(0, VT_OS_ShmCtl(iId, IPC_STAT, &stInfo));
    EXPECT_EQ(100u, stInfo.shm_segsz);
    EXPECT_EQ(0, VT_OS_ShmDt(pcFirst));
    EXPECT_EQ(0, VT_OS_ShmDt(pcSecond));
    EXPECT_EQ(0, VT_OS_ShmCtl(iId, IPC_RMID, nullptr));
    EXPECT_EQ(-1, reinterpret_cast<intptr_t>(VT_OS_ShmAt(iId, nullptr, 0)));
}

TEST(SystemVMemory, MisuseFails) {
    EXPECT_EQ(-1, VT_OS_ShmGet(0x7E57AB1E, 10, 0)) << "nobody made it";
    EXPECT_EQ(-1, VT_OS_ShmDt(nullptr));
    EXPECT_EQ(-1, VT_OS_ShmCtl(-1, IPC_RMID, nullptr));
    EXPECT_EQ(-1, VT_OS_ShmCtl(0, IPC_STAT, nullptr));
}

}  // namespace
}  // namespace wap::test

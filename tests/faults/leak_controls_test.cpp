// What the sweeps look for after each fault is noticed: each kind of leak, made on purpose.

#include <gtest/gtest.h>
#include <json-c/json.h>
#include <sys/ipc.h>
#include <vt_ssp_basic.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

#include "support/entries.h"

namespace wap::test {

namespace {

/// The complaints about what a function leaves behind, with nothing complaining by itself.
std::string Complaints(const std::function<void(World &, FakeJni &)> &fnLeave) {
    World stWorld;
    FakeJni stEnv;
    stWorld.stPlatform.stDescriptors.bWatchOpened = true;
    fnLeave(stWorld, stEnv);
    stEnv.EndCall();
    std::string sAll;
    for (const std::string &sText : stWorld.TakeComplaints()) {
        sAll += sText + "\n";
    }
    EXPECT_TRUE(stWorld.TakeComplaints().empty()) << "a complaint was not taken";
    return sAll;
}

TEST(LeakControls, NothingIsNothing) {
    EXPECT_EQ(Complaints([](World &, FakeJni &) {}), "");
}

TEST(LeakControls, PlatformBlock) {
    void *pvBlock = nullptr;
    EXPECT_EQ(
        Complaints([&](World &, FakeJni &) { pvBlock = VT_OS_MemMallocD(7, "control.cpp", 3); }),
        "leak: 7 bytes control.cpp:3\n");
    std::free(pvBlock);
}

TEST(LeakControls, MallocBlock) {
    void *pvBlock = nullptr;
    EXPECT_EQ(Complaints([&](World &, FakeJni &) { pvBlock = std::malloc(9); }),
              "leak: 9 bytes \n");
    std::free(pvBlock);
}

TEST(LeakControls, JsonObject) {
    json_object *pstObject = nullptr;
    EXPECT_NE(
        Complaints([&](World &, FakeJni &) { pstObject = json_object_new_int(5); }).find("leak: "),
        std::string::npos);
    json_object_put(pstObject);
}

TEST(LeakControls, BulkBlock) {
    EXPECT_EQ(Complaints([](World &, FakeJni &) {
                  VDataDesc stDesc = {};
                  EXPECT_EQ(VT_VDATA_CreShm(4, &stDesc), 0u);
              }),
              "bulk block 4097 was not freed\n");
}

TEST(LeakControls, SystemVSegment) {
    EXPECT_EQ(Complaints([](World &, FakeJni &) {
                  const int32_t iId = VT_OS_ShmGet(5, 16, IPC_CREAT);
                  EXPECT_NE(VT_OS_ShmAt(iId, nullptr, 0), nullptr);
              }),
              "segment 0 was not removed nor detached\n");
}

TEST(LeakControls, Descriptor) {
    EXPECT_EQ(Complaints([](World &, FakeJni &) { EXPECT_EQ(VT_OS_Open("/dev/x", 2, 0), 77); }),
              "descriptor 77 was left open\n");
    EXPECT_EQ(Complaints([](World &, FakeJni &) {
                  EXPECT_EQ(VT_OS_Open("/dev/x", 2, 0), 77);
                  EXPECT_EQ(VT_OS_Close(77), 0);
              }),
              "");
}

TEST(LeakControls, File) {
    EXPECT_EQ(Complaints([](World &stWorld, FakeJni &) {
                  stWorld.stPlatform.stFiles.mapFiles["/x"] = "y";
                  EXPECT_NE(VT_OS_Fopen("/x", "r"), nullptr);
              }),
              "files left open: 1\n");
}

TEST(LeakControls, Lock) {
    alignas(8) unsigned char aucMutex[VT_OS_MUTEX_SIZE] = {};
    EXPECT_EQ(Complaints([&](World &, FakeJni &) {
                  EXPECT_EQ(VT_OS_MutexInit(aucMutex), 0u);
                  EXPECT_EQ(VT_OS_MutexLock(aucMutex), 0u);
              }),
              "locks held: 1\n");
}

TEST(LeakControls, Secret) {
    const std::string sSecret = "a-secret-of-some-length";
    char acField[32] = {};
    EXPECT_EQ(Complaints([&](World &stWorld, FakeJni &) {
                  stWorld.stSecrets.Watch(sSecret);
                  (void)VT_OS_StrNCpy_S(acField, sizeof(acField), sSecret.c_str(), 31);
              }),
              "a secret of 23 bytes was not wiped\n");
    EXPECT_EQ(Complaints([&](World &stWorld, FakeJni &) {
                  stWorld.stSecrets.Watch(sSecret);
                  auto *pcBlock = static_cast<char *>(std::malloc(64));
                  std::memcpy(pcBlock, sSecret.c_str(), sSecret.size() + 1);
                  __asm__ volatile("" : : "r"(pcBlock) : "memory");  // it is written, then
                  std::free(pcBlock);
              }),
              "secret '" + sSecret + "' in a released block\n");
}

TEST(LeakControls, PendingException) {
    EXPECT_EQ(Complaints([](World &, FakeJni &stEnv) { stEnv.Throw(); }),
              "JNI: an exception is left pending\n");
}

TEST(LeakControls, PinnedArray) {
    EXPECT_EQ(Complaints([](World &, FakeJni &stEnv) {
                  (void)stEnv.GetByteArrayElements(stEnv.JavaBytes("abc"), nullptr);
              }),
              "JNI: 1 pinned arrays are left\n");
}

// The virtual machine drops local references when a call ends. Until then they take up room, of
// which a call may take no more than it was granted.
TEST(LeakControls, LocalReferencesWithoutRoom) {
    EXPECT_EQ(Complaints([](World &, FakeJni &stEnv) {
                  for (int i = 0; i < 17; ++i) {
                      (void)stEnv.NewByteArray(1);
                  }
              }),
              "JNI: more local references than capacity: 17\n");
}

}  // namespace

}  // namespace wap::test

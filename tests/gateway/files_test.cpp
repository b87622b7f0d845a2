// Files that are replaced, and the homes in them: what is there when something fails on the way.
#include "framework/files.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "framework/error.h"
#include "framework/home.h"

namespace {

enum class Flushes { kAll, kNoFiles, kNoFolders };
Flushes g_eFlushes = Flushes::kAll;

}  // namespace

// The linker has this program's calls of fsync come here.
extern "C" int __real_fsync(int iFd);  // NOLINT(bugprone-reserved-identifier)
extern "C" int __wrap_fsync(int iFd);  // NOLINT(bugprone-reserved-identifier)
extern "C" int __wrap_fsync(int iFd) {
    struct stat stInfo {};
    if (g_eFlushes != Flushes::kAll && fstat(iFd, &stInfo) == 0 &&
        S_ISDIR(stInfo.st_mode) == (g_eFlushes == Flushes::kNoFolders)) {
        errno = EIO;
        return -1;
    }
    return __real_fsync(iFd);
}

namespace wap::gateway {
namespace {

/// A user who owns nothing.
constexpr uid_t kNobody = 65534;

class FilesTest : public ::testing::Test {
  protected:
    void SetUp() override {
        char acDir[] = "/tmp/wap-files-test-XXXXXX";
        ASSERT_NE(mkdtemp(acDir), nullptr);
        m_acDir = acDir;
        setenv("VT_RUNTIME_DIR", acDir, 1);
        WriteTextFile(File(), "old");
    }
    void TearDown() override {
        g_eFlushes = Flushes::kAll;
        (void)unlink(File().c_str());
        EXPECT_EQ(rmdir(m_acDir.c_str()), 0) << "something is left in " << m_acDir;
    }

    std::string File() const { return m_acDir + "/file"; }
    /// What writing the file says on stderr, or throws.
    std::string Write() const {
        testing::internal::CaptureStderr();
        std::string acThrown;
        try {
            WriteTextFile(File(), "new");
        } catch (const GatewayError &stError) {
            acThrown = std::string("thrown: ") + stError.what();
        }
        return acThrown + testing::internal::GetCapturedStderr();
    }

    std::string m_acDir;
};

TEST_F(FilesTest, IsReplacedAndItsOwnersAlone) {
    EXPECT_EQ(Write(), "");
    EXPECT_EQ(ReadTextFile(File()), "new");
    struct stat stInfo {};
    ASSERT_EQ(stat(File().c_str(), &stInfo), 0);
    EXPECT_EQ(stInfo.st_mode & 0777u, 0600u);
}

TEST_F(FilesTest, FileThatIsNotFlushedDoesNotReplace) {
    g_eFlushes = Flushes::kNoFiles;
    EXPECT_TRUE(Write().starts_with("thrown: cannot write "));
    EXPECT_EQ(ReadTextFile(File()), "old");
}

// It has replaced the old one by then.
TEST_F(FilesTest, FolderThatIsNotFlushedIsSaidAndNoFailure) {
    g_eFlushes = Flushes::kNoFolders;
    EXPECT_EQ(Write(), File() + " is written, but may be the old one after a crash: cannot flush " +
                           m_acDir + "/: Input/output error\n");
    EXPECT_EQ(ReadTextFile(File()), "new");
}

TEST_F(FilesTest, FolderThatCanNotBeOpenedIsAFailureWithTheOldContent) {
    // It may be written to, but not be read.
    ASSERT_EQ(chmod(m_acDir.c_str(), 0300), 0);
    const uid_t iUser = geteuid();
    if (iUser == 0) {
        ASSERT_EQ(chown(m_acDir.c_str(), kNobody, static_cast<gid_t>(-1)), 0);
        ASSERT_EQ(chown(File().c_str(), kNobody, static_cast<gid_t>(-1)), 0);
        ASSERT_EQ(seteuid(kNobody), 0);
    }
    const std::string acSaid = Write();
    const std::optional<std::string> acContent = ReadTextFile(File());
    EXPECT_EQ(seteuid(iUser), 0);
    EXPECT_EQ(acSaid, "thrown: cannot write " + File() + ": Permission denied");
    EXPECT_EQ(acContent, "old");
}

// A change is on disk and in memory, or in neither.
TEST_F(FilesTest, HomeIsTheSameInMemoryAndOnDisk) {
    const RuntimeDir stDir = RuntimeDir::FromEnvironment();
    stDir.Make();
    WriteTextFile(stDir.HomeFile(), R"({"multicast": {"version": 2}})");
    const ProcessInfo &stInfo = *FindProcess("igmp");
    Home stHome(stDir, stInfo);
    const auto fnVersion = [](const Home &stOf) {
        return PrintJson(stOf.Get("multicast.version").get(), false);
    };
    g_eFlushes = Flushes::kNoFolders;
    testing::internal::CaptureStderr();
    EXPECT_NO_THROW(stHome.Set("multicast.version", "3"));
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(fnVersion(stHome), "3");
    EXPECT_EQ(fnVersion(Home(stDir, stInfo)), "3");
    g_eFlushes = Flushes::kNoFiles;
    EXPECT_THROW(stHome.Set("multicast.version", "4"), GatewayError);
    EXPECT_EQ(fnVersion(stHome), "3");
    EXPECT_EQ(fnVersion(Home(stDir, stInfo)), "3");
    for (const auto &stFile : std::filesystem::directory_iterator(m_acDir)) {
        std::filesystem::remove_all(stFile.path());
    }
}

}  // namespace
}  // namespace wap::gateway

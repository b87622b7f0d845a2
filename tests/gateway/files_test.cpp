// Files that are replaced, and the homes in them: what is there when something fails on the way.
#include "framework/files.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "framework/error.h"
#include "framework/home.h"

namespace wap::gateway {
namespace {

/// A user who owns nothing.
constexpr uid_t kNobody = 65534;

/// While it lives, this process can write no byte into a file, as on a full disk.
class FullDisk {
  public:
    FullDisk() : m_fnOld(signal(SIGXFSZ, SIG_IGN)) {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &m_stOld), 0);
        const rlimit stNone = {0, m_stOld.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &stNone), 0);
    }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;
    ~FullDisk() {
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &m_stOld), 0);
        (void)signal(SIGXFSZ, m_fnOld);
    }

  private:
    sighandler_t m_fnOld;
    rlimit m_stOld = {};
};

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
        (void)unlink(File().c_str());
        EXPECT_EQ(rmdir(m_acDir.c_str()), 0) << "something is left in " << m_acDir;
    }

    std::string File() const { return m_acDir + "/file"; }
    /// What writing the file throws; nothing when it is written.
    std::string Write() const {
        try {
            WriteTextFile(File(), "new");
        } catch (const GatewayError &stError) {
            return stError.what();
        }
        return "";
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

TEST_F(FilesTest, FileThatCanNotBeWrittenDoesNotReplace) {
    std::string acSaid;
    {
        const FullDisk stFull;
        acSaid = Write();
    }
    EXPECT_EQ(acSaid,
              "cannot write " + File() + "." + std::to_string(getpid()) + ".tmp: File too large");
    EXPECT_EQ(ReadTextFile(File()), "old");
}

TEST_F(FilesTest, FolderThatCanNotBeWrittenIsAFailureWithTheOldContent) {
    ASSERT_EQ(chmod(m_acDir.c_str(), 0500), 0);
    const uid_t iUser = geteuid();
    if (iUser == 0) {
        ASSERT_EQ(chown(m_acDir.c_str(), kNobody, static_cast<gid_t>(-1)), 0);
        ASSERT_EQ(chown(File().c_str(), kNobody, static_cast<gid_t>(-1)), 0);
        ASSERT_EQ(seteuid(kNobody), 0);
    }
    const std::string acSaid = Write();
    const std::optional<std::string> acContent = ReadTextFile(File());
    EXPECT_EQ(seteuid(iUser), 0);
    ASSERT_EQ(chmod(m_acDir.c_str(), 0700), 0);
    EXPECT_EQ(acSaid,
              "cannot make " + File() + "." + std::to_string(getpid()) + ".tmp: Permission denied");
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
    EXPECT_NO_THROW(stHome.Set("multicast.version", "3"));
    EXPECT_EQ(fnVersion(stHome), "3");
    EXPECT_EQ(fnVersion(Home(stDir, stInfo)), "3");
    {
        const FullDisk stFull;
        EXPECT_THROW(stHome.Set("multicast.version", "4"), GatewayError);
    }
    EXPECT_EQ(fnVersion(stHome), "3");
    EXPECT_EQ(fnVersion(Home(stDir, stInfo)), "3");
    for (const auto &stFile : std::filesystem::directory_iterator(m_acDir)) {
        std::filesystem::remove_all(stFile.path());
    }
}

}  // namespace
}  // namespace wap::gateway

// The gateway's writable folder, which lies in the runtime directory.
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>

#include "runtime_dir.h"

namespace wap::test {
namespace {

class WritableTree : public RuntimeDirTest {
  protected:
    /** What a command line of the gateway writes into var/osgi/out. */
    std::string OutputOf(const std::string &strCommand) {
        EXPECT_EQ(0u, VT_OS_ExecShellCmdEx((strCommand + " > /var/osgi/out").c_str()));
        return FileText(Path("var/osgi/out"));
    }
    /** The same with what the shell makes of the words of a command. */
    std::string Words(const std::string &strWords) {
        return OutputOf("printf '%s\\n' " + strWords);
    }
};

/** The same in a runtime directory whose name a shell would take apart. */
class WritableTreeOddName : public WritableTree {
  protected:
    void SetUp() override {
        strDir = Path("it's $HOME `a` \"b\"; *\\ \xC3\xA9");
        ASSERT_EQ(0, mkdir(strDir.c_str(), 0700));
        ASSERT_EQ(0, setenv("VT_RUNTIME_DIR", strDir.c_str(), 1));
    }
};

TEST_F(WritableTree, FilesLieInTheRuntimeDirectory) {
    const int32_t iFd = VT_OS_Open("/var/osgi/f", O_WRONLY | O_CREAT, 0600);
    ASSERT_GE(iFd, 0);
    EXPECT_EQ(5, VT_OS_Write(iFd, "hello", 5));
    EXPECT_EQ(0, VT_OS_Close(iFd));
    EXPECT_EQ("hello", FileText(Path("var/osgi/f")));
    void *pvFile = VT_OS_Fopen("/var/osgi/f", "r");
    ASSERT_NE(nullptr, pvFile);
    char acLine[8];
    EXPECT_STREQ("hello", VT_OS_Fgets(acLine, sizeof acLine, pvFile));
    EXPECT_EQ(0, VT_OS_Fclose(pvFile));
    struct stat stFolder {};
    ASSERT_EQ(0, stat(Path("var/osgi").c_str(), &stFolder));
    EXPECT_EQ(0700u, stFolder.st_mode & 0777);
}

TEST_F(WritableTree, FolderIsMadeByWhatNeedsItFirst) {
    struct stat stFolder {};
    EXPECT_EQ(0u, VT_OS_ExecShellCmdEx("true /var/osgi_app/x"));
    EXPECT_EQ(-1, VT_OS_Open("/var/osgi", O_RDONLY | O_DIRECTORY | O_WRONLY, 0));
    EXPECT_EQ(-1, stat(Path("var").c_str(), &stFolder));
    errno = 0;
    EXPECT_EQ(nullptr, VT_OS_Fopen("/var/osgi/none", "r"));
    EXPECT_EQ(ENOENT, errno);
    EXPECT_EQ(0, stat(Path("var/osgi").c_str(), &stFolder));
    ASSERT_EQ(0, rmdir(Path("var/osgi").c_str()));
    EXPECT_EQ(0u, VT_OS_ExecShellCmdEx("echo x > /var/osgi/f"));
    EXPECT_EQ("x\n", FileText(Path("var/osgi/f")));
}

TEST_F(WritableTree, OtherPathsAreThemselves) {
    EXPECT_EQ(-1, VT_OS_Open("/var/osgi_app/none", O_WRONLY | O_CREAT, 0600));
    EXPECT_EQ(nullptr, VT_OS_Fopen("var/osgi/none", "w"));
    const std::string strNested = Path("var/osgi/f");
    void *pvFile = VT_OS_Fopen("/var/osgi/f", "w");
    ASSERT_NE(nullptr, pvFile);
    EXPECT_EQ(0, VT_OS_Fclose(pvFile));
    // A path that merely contains the folder's name.
    pvFile = VT_OS_Fopen(strNested.c_str(), "r");
    ASSERT_NE(nullptr, pvFile);
    EXPECT_EQ(0, VT_OS_Fclose(pvFile));
}

TEST_F(WritableTree, WithoutARuntimeDirectoryNothingChanges) {
    unsetenv("VT_RUNTIME_DIR");
    EXPECT_EQ(nullptr, VT_OS_Fopen("/var/osgi/no-such-folder/f", "w"));
    EXPECT_EQ(0u, VT_OS_ExecShellCmdEx("test /var/osgi/x = \"/var\"/osgi/x"));
    setenv("VT_RUNTIME_DIR", "", 1);
    EXPECT_EQ(0u, VT_OS_ExecShellCmdEx("test /var/osgi/x = \"/var\"/osgi/x"));
    setenv("VT_RUNTIME_DIR", strDir.c_str(), 1);
    EXPECT_NE(0u, VT_OS_ExecShellCmdEx("test /var/osgi/x = \"/var\"/osgi/x"));
}

TEST_F(WritableTree, CommandsHaveWholePathsReplacedOnly) {
    const std::string strTree = strDir + "/var/osgi/";
    EXPECT_EQ(strTree + "a\n", Words("/var/osgi/a"));
    EXPECT_EQ(strTree + "a\n" + strTree + "b\n", Words("/var/osgi/a /var/osgi/b"));
    EXPECT_EQ("x=" + strTree + "a:" + strTree + "b\n", Words("x=/var/osgi/a:/var/osgi/b"));
    EXPECT_EQ("/var/osgi_app/a\n", Words("/var/osgi_app/a"));
    EXPECT_EQ("/var/osgi\n", Words("/var/osgi"));
    EXPECT_EQ("/mnt/var/osgi/a\n", Words("/mnt/var/osgi/a"));
    EXPECT_EQ("./var/osgi/a\n", Words("./var/osgi/a"));
    EXPECT_EQ("/mnt/var/osgi/a\n", Words("'/mnt'/var/osgi/a"));
    EXPECT_EQ("a /var/osgi/a\n", Words("a\\ /var/osgi/a"));
    EXPECT_EQ(" /var/osgi/a\n", Words("\\ /var/osgi/a"));
    EXPECT_EQ(strTree + "a\n", OutputOf("x=/var/osgi/a; (echo $x)"));
    EXPECT_EQ(strTree + "a\n", OutputOf("true && echo `echo /var/osgi/a`"));
}

TEST_F(WritableTree, RedirectionsNeedNoBlank) {
    EXPECT_EQ(0u, VT_OS_ExecShellCmdEx("echo one >/var/osgi/f; echo two 1>>/var/osgi/f"));
    EXPECT_EQ(0u, VT_OS_ExecShellCmdEx("{ echo why >&2; } 2> /var/osgi/err"));
    EXPECT_EQ("one\ntwo\n", OutputOf("cat </var/osgi/f"));
    EXPECT_EQ("why\n", OutputOf("cat /var/osgi/err|cat"));
}

TEST_F(WritableTreeOddName, PathsStayOneWordInAnyQuotes) {
    const std::string strTree = strDir + "/var/osgi/";
    EXPECT_EQ(strTree + "a\n", Words("/var/osgi/a"));
    EXPECT_EQ(strTree + "a\n", Words("'/var/osgi/a'"));
    EXPECT_EQ(strTree + "a b\n", Words("\"/var/osgi/a b\""));
    EXPECT_EQ(strTree + "a b\n", Words("''/var/osgi/'a b'"));
    EXPECT_EQ("\" " + strTree + "a\n", Words("\"\\\" /var/osgi/a\""));
    EXPECT_EQ("\\\n" + strTree + "a\n", Words("'\\' /var/osgi/a"));
    EXPECT_EQ("'\n" + strTree + "a\n", Words("\\' /var/osgi/a"));
    EXPECT_EQ(strTree + "a\n", Words("\"it's\" /var/osgi/a").substr(5));
}

TEST_F(WritableTreeOddName, FilesOfCommandsAreFound) {
    EXPECT_EQ(0u, VT_OS_ExecShellCmdEx("echo said 2> /var/osgi/err >&2"));
    void *pvFile = VT_OS_Fopen("/var/osgi/err", "r");
    ASSERT_NE(nullptr, pvFile);
    char acLine[8];
    EXPECT_STREQ("said\n", VT_OS_Fgets(acLine, sizeof acLine, pvFile));
    EXPECT_EQ(0, VT_OS_Fclose(pvFile));
}

}  // namespace
}  // namespace wap::test

// What is taken from the words of the Java runtime, and what is left.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <string>
#include <thread>

#include "system/jni_runtime_info.h"
#include "unit/runtime/runtime_fixture.h"

namespace wap::test {
namespace {

/// The command to the letter; two blanks before the redirection.
constexpr const char *kCommand =
    "export LD_LIBRARY_PATH=/lib:/lib/omci_module:/lib/oam_module:/usr/osgi/lib:"
    "/var/osgi_app/osgi/lib:/usr/osgi/lib/aarch32:/var/osgi_app/osgi/lib/aarch32:"
    "/usr/osgi/lib/aarch32/jli:/var/osgi_app/osgi/lib/aarch32/jli:/usr/osgi/lib/aarch32/server:"
    "/var/osgi_app/osgi/lib/aarch32/server:/var/felix-temp/dlna/dlna/lib; "
    "java -version  2> /var/osgi/java_version.pipe";

class JavaOutputTest : public RuntimeTest {
  protected:
    /// The three texts that a runtime's words give, as "name|version|vendor".
    std::string Names(const std::string &sOutput) {
        stPlatform.stFiles.mapFiles[kVersionPath] = sOutput;
        stPlatform.ClearRecords();
        RuntimeNames stNames;
        memset(&stNames, 'z', sizeof(stNames));
        EXPECT_EQ(VT_JNI_GetJvmDataByCmd(&stNames), 0u);
        EXPECT_TRUE(stPlatform.astFaults.empty());
        // Each ends within its field.
        for (const char *pcField : {stNames.acName, stNames.acVersion, stNames.acVendor}) {
            EXPECT_LT(strnlen(pcField, 32), 32u);
        }
        return std::string(stNames.acName) + "|" + stNames.acVersion + "|" + stNames.acVendor;
    }
};

TEST_F(JavaOutputTest, TakesNameVersionAndVendor) {
    EXPECT_EQ(Names(kVersionText), "OpenJDK Client VM |1.8.0_212|Oracle");
    EXPECT_EQ(stPlatform.asCalls,
              (Calls{std::string("VT_OS_ExecShellCmdEx ") + kCommand,
                     "VT_OS_Fopen /var/osgi/java_version.pipe r", "VT_OS_Fclose"}));
    EXPECT_EQ(EntryTraces(stPlatform),
              (Calls{"VT_JNI_GetJVMInfo acVersion[1.8.0_212] \r\n",
                     "VT_JNI_GetJVMInfo acName[OpenJDK Client VM ] \r\n"}));
    EXPECT_EQ(stPlatform.astTraces[0].sFile, kFile);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

// The file is opened after the command has run.
TEST_F(JavaOutputTest, ReadsWhatThisCommandWrote) {
    stPlatform.stFiles.fnCommand = [&](const std::string &) {
        stPlatform.stFiles.mapFiles[kVersionPath] = "version \"new\"\n";
    };
    RuntimeNames stNames;
    ASSERT_EQ(VT_JNI_GetJvmDataByCmd(&stNames), 0u);
    EXPECT_STREQ(stNames.acVersion, "new");
}

TEST_F(JavaOutputTest, OtherRuntimesHaveNoVendor) {
    EXPECT_EQ(Names("java version \"1.7.0\"\n"
                    "Java(TM) SE Runtime Environment (build 1.7.0-b13)\n"
                    "Java HotSpot(TM) Client VM (build 24.0-b56, mixed mode)\n"),
              "Java HotSpot|1.7.0|");
    EXPECT_EQ(Names(""), "||");
    EXPECT_EQ(Names("sh: java: not found\n"), "||");
    EXPECT_EQ(Names("\n\n"), "||");
}

TEST_F(JavaOutputTest, VersionComesBeforeVmAndVmBeforeOpenJdk) {
    EXPECT_EQ(Names("OpenJDK VM (version \"9\")\n"), "|9|");
    EXPECT_EQ(Names("OpenJDK VM (build)\n"), "OpenJDK VM ||");
    EXPECT_EQ(Names("OpenJDK VM without a parenthesis\n"), "||");
    // Letters count as they are.
    EXPECT_EQ(Names("Version \"1\"\nvm (1)\nopenjdk\n"), "||");
}

TEST_F(JavaOutputTest, LaterLinesReplaceEarlierOnes) {
    EXPECT_EQ(Names("version \"1\"\nFirst VM (\nversion \"two\"\nSecond VM (\n"),
              "Second VM |two|");
    EXPECT_EQ(Names("version \"1\"\nversion \"\"\nA VM (\n(VM\n"), "||");
}

TEST_F(JavaOutputTest, VersionStandsBetweenTheFirstTwoQuotes) {
    EXPECT_EQ(Names("\"11\" is the version, not \"12\"\n"), "|11|");
    EXPECT_EQ(Names("version \"1\"\nversion \"\" \"2\"\n"), "||");
    EXPECT_EQ(Names("version \"1\"\nversion \"2\n"), "|1|") << "one quote";
    EXPECT_EQ(Names("version \"1\"\nversion 2\n"), "|1|") << "none";
    EXPECT_EQ(Names("version \"1\"\nversion 2\"\n"), "|1|") << "one, at the end";
    EXPECT_EQ(EntryTraces(stPlatform), (Calls{"VT_JNI_GetJVMInfo acVersion[1] \r\n"}));
}

TEST_F(JavaOutputTest, PiecesThatDoNotFitAreNotTaken) {
    const std::string s31(31, 'n');
    EXPECT_EQ(Names("version \"" + s31 + "\"\n"), "|" + s31 + "|");
    EXPECT_EQ(Names("version \"1\"\nversion \"" + s31 + "n\"\n"), "|1|");
    EXPECT_EQ(EntryTraces(stPlatform), (Calls{"VT_JNI_GetJVMInfo acVersion[1] \r\n"}));
    const std::string sName31 = "VM" + std::string(29, 'x');
    EXPECT_EQ(Names(sName31 + "(\n"), sName31 + "||");
    EXPECT_EQ(Names("A VM (\n" + sName31 + "x(\n"), "A VM ||");
    EXPECT_EQ(EntryTraces(stPlatform), (Calls{"VT_JNI_GetJVMInfo acName[A VM ] \r\n"}));
    EXPECT_EQ(Names("A VM (\nanother VM\n"), "A VM ||") << "no parenthesis";
}

TEST_F(JavaOutputTest, LinesOfAnyLength) {
    // Parts of 127 bytes count as lines: the first ends within the version.
    const std::string sBlanks(115, ' ');
    EXPECT_EQ(Names(sBlanks + "version \"12\""), "|12|") << "127 bytes";
    EXPECT_EQ(Names(sBlanks + "version \"123\""), "||") << "128 bytes";
    EXPECT_EQ(Names(std::string(126, ' ') + "\nversion \"1\"\n"), "|1|");
    EXPECT_EQ(Names(std::string(127, ' ') + "version \"2\"\n"), "|2|");
    EXPECT_EQ(Names(std::string(100000, 'V') + "M (\nversion \"3\"\n"), "|3|");
    EXPECT_EQ(Names(std::string(100000, '"') + "\nversion \"4\"\n"), "|4|");
    std::string sLong = "version \"5\" ";
    sLong += std::string(1000, 'x');
    EXPECT_EQ(Names(sLong), "|5|") << "no line feed at the end";
}

TEST_F(JavaOutputTest, BytesThatAreNoText) {
    EXPECT_EQ(Names(std::string("version\0 \"1\"\nversion \"2\"\n", 24)), "|2|");
    EXPECT_EQ(Names("version \"\xFF\xFE\"\n"), "|\xFF\xFE|");
}

// An older file is better than none.
TEST_F(JavaOutputTest, GoesOnWhenTheCommandFails) {
    stPlatform.mapStatus["VT_OS_ExecShellCmdEx"] = 127;
    RuntimeNames stNames;
    EXPECT_EQ(VT_JNI_GetJvmDataByCmd(&stNames), 0u);
    EXPECT_STREQ(stNames.acVersion, "1.8.0_212");
    EXPECT_EQ(FaultCodes(stPlatform), Codes{127});
    EXPECT_EQ(TimesRecorded(kFile, 127), 1u);
}

TEST_F(JavaOutputTest, NoOutputIsRecordedAndLeavesNoNames) {
    stPlatform.stFiles.mapFiles.clear();
    RuntimeNames stNames;
    memset(&stNames, 'z', sizeof(stNames));
    EXPECT_EQ(VT_JNI_GetJvmDataByCmd(&stNames), 1u);
    EXPECT_EQ(std::string(reinterpret_cast<char *>(&stNames), 96), std::string(96, '\0'));
    EXPECT_EQ(FaultCodes(stPlatform), Codes{1});
    EXPECT_EQ(TimesRecorded(kFile, 1), 1u);
    // The next call works: nothing stayed locked.
    FurnishRuntime(stWorld);
    EXPECT_EQ(VT_JNI_GetJvmDataByCmd(&stNames), 0u);
}

TEST_F(JavaOutputTest, NullRecordIsRefused) {
    EXPECT_EQ(VT_JNI_GetJvmDataByCmd(nullptr), 1u);
    EXPECT_EQ(FaultCodes(stPlatform), Codes{1});
    EXPECT_TRUE(stPlatform.asCalls.empty());
}

TEST_F(JavaOutputTest, HandleOfAnyPath) {
    EXPECT_EQ(VT_JNI_GetPipeFileHandle(nullptr), nullptr);
    EXPECT_TRUE(stPlatform.asCalls.empty());
    stPlatform.stFiles.mapFiles["/tmp/v"] = "x";
    void *pvFile = VT_JNI_GetPipeFileHandle("/tmp/v");
    ASSERT_NE(pvFile, nullptr);
    EXPECT_TRUE(stPlatform.asCalls.at(0).ends_with("; java -version  2> /tmp/v"));
    EXPECT_EQ(stPlatform.asCalls.at(1), "VT_OS_Fopen /tmp/v r");
    EXPECT_EQ(VT_OS_Fclose(pvFile), 0);
    EXPECT_EQ(VT_JNI_GetPipeFileHandle("/tmp/none"), nullptr);
}

TEST_F(JavaOutputTest, CommandThatDoesNotFitIsNotRun) {
    // What stands before the path has 343 bytes, and 511 fit.
    const std::string sFits = "/" + std::string(510 - std::string(kCommand).size() + 27, 'p');
    const std::string sLonger = sFits + "p";
    stPlatform.stFiles.mapFiles[sLonger] = "x";
    EXPECT_EQ(VT_JNI_GetPipeFileHandle(sFits.c_str()), nullptr);
    EXPECT_EQ(stPlatform.CountCalls("VT_OS_ExecShellCmdEx"), 1u);
    EXPECT_EQ(stPlatform.asCalls.at(0).size(), std::string("VT_OS_ExecShellCmdEx ").size() + 511);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    stPlatform.ClearRecords();
    void *pvFile = VT_JNI_GetPipeFileHandle(sLonger.c_str());
    EXPECT_NE(pvFile, nullptr);
    EXPECT_EQ(stPlatform.CountCalls("VT_OS_ExecShellCmdEx"), 0u);
    EXPECT_EQ(FaultCodes(stPlatform), Codes{0xF7700005});
    EXPECT_EQ(VT_OS_Fclose(pvFile), 0);
}

// Two threads: the second command waits until the first one's output has been read.
TEST(JavaOutputTurns, OneThreadAtATime) {
    ResetBridge();
    std::atomic<int> iInside = 0;
    std::atomic<int> iMost = 0;
    const auto fnThread = [&] {
        World stWorld;
        FurnishRuntime(stWorld);
        stWorld.stPlatform.stFiles.fnCommand = [&](const std::string &) {
            iMost = std::max(iMost.load(), ++iInside);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        };
        stWorld.stPlatform.stFiles.fnClose = [&] { --iInside; };
        for (int i = 0; i < 5; ++i) {
            RuntimeNames stNames;
            EXPECT_EQ(VT_JNI_GetJvmDataByCmd(&stNames), 0u);
        }
        stWorld.ExpectClean();
    };
    std::thread stOther(fnThread);
    fnThread();
    stOther.join();
    EXPECT_EQ(iMost, 1);
    EXPECT_EQ(iInside, 0);
}

}  // namespace
}  // namespace wap::test

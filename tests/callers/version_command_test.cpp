// The one command that the bridge has a shell run: nothing from outside gets into it.

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "callers/caller.h"
#include "callers/tricky_texts.h"
#include "support/furnish_runtime.h"
#include "support/strict_json.h"

namespace wap::test {

namespace {

constexpr const char *kCommand =
    "VT_OS_ExecShellCmdEx export LD_LIBRARY_PATH=/lib:/lib/omci_module:/lib/oam_module:"
    "/usr/osgi/lib:/var/osgi_app/osgi/lib:/usr/osgi/lib/aarch32:/var/osgi_app/osgi/lib/aarch32:"
    "/usr/osgi/lib/aarch32/jli:/var/osgi_app/osgi/lib/aarch32/jli:/usr/osgi/lib/aarch32/server:"
    "/var/osgi_app/osgi/lib/aarch32/server:/var/felix-temp/dlna/dlna/lib; java -version  2> "
    "/var/osgi/java_version.pipe";

/// Sets a variable of the environment as long as it lives.
class Variable {
  public:
    Variable(const char *pcVariable, const char *pcValue) : pcName(pcVariable) {
        if (const char *pcBefore = std::getenv(pcName)) {
            sBefore = pcBefore;
        }
        (void)setenv(pcName, pcValue, 1);
    }
    Variable(const Variable &) = delete;
    Variable &operator=(const Variable &) = delete;
    ~Variable() {
        if (sBefore) {
            (void)setenv(pcName, sBefore->c_str(), 1);
        } else {
            (void)unsetenv(pcName);
        }
    }

  private:
    const char *pcName;
    std::optional<std::string> sBefore;
};

std::vector<std::string> CommandsOf(const Platform &stPlatform) {
    std::vector<std::string> asCommands;
    for (const std::string &sCall : stPlatform.asCalls) {
        if (sCall.starts_with("VT_OS_ExecShellCmdEx")) {
            asCommands.push_back(sCall);
        }
    }
    return asCommands;
}

void ExpectTheCommand(const std::string &sOutput) {
    const Native &stNative = NativeOf("getJVMInfo");
    Caller stCaller(stNative);
    stCaller.Gateway().stFiles.mapFiles[kVersionPath] = sOutput;
    stCaller.Gateway().sProcName = "$(reboot)";
    const Answer stAnswer = stCaller.Call({});
    EXPECT_EQ(CommandsOf(stCaller.Gateway()), std::vector<std::string>{kCommand});
    ASSERT_TRUE(stAnswer.sText.has_value());
    EXPECT_EQ(JsonFault(*stAnswer.sText), "") << *stAnswer.sText;
}

TEST(VersionCommandTest, TakesNothingFromTheEnvironment) {
    for (const char *pcValue : {"", "$(reboot)", "'; reboot; '", "`reboot`", "%n%s", "../../bin"}) {
        SCOPED_TRACE(pcValue);
        const Variable stPath("LD_LIBRARY_PATH", pcValue);
        const Variable stHome("JAVA_HOME", pcValue);
        const Variable stOptions("JAVA_TOOL_OPTIONS", pcValue);
        const Variable stSeparators("IFS", pcValue);
        ExpectTheCommand(kVersionText);
    }
}

// The file is left where it is: the next call's command is the same, whatever this one's read.
TEST(VersionCommandTest, TakesNothingFromItsOutput) {
    for (const std::string_view stTricky : kTricky) {
        SCOPED_TRACE(stTricky);
        const std::string sTricky(stTricky);
        std::string sOutput = "version \"";
        sOutput.append(sTricky).append("\"\n").append(sTricky);
        sOutput.append(" VM (").append(sTricky).append("\n");
        ExpectTheCommand(sOutput);
        ExpectTheCommand(sTricky);
    }
}

TEST(VersionCommandTest, IsTheOnlyOne) {
    size_t uiRun = 0;
    for (const Native &stNative : Natives()) {
        SCOPED_TRACE(stNative.Method());
        Caller stCaller(stNative);
        (void)stCaller.Call(stNative.astGood);
        uiRun += CommandsOf(stCaller.Gateway()).size();
    }
    EXPECT_EQ(uiRun, 1u);
}

}  // namespace

}  // namespace wap::test

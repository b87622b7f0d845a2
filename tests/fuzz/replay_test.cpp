// The seeds of the fuzz targets, and every input that once found something, without a fuzzer: with
// any compiler, on any processor.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "fuzz/targets.h"

namespace wap::test {
namespace {

namespace fs = std::filesystem;

struct Target {
    std::string sName;
    void (*pfnRun)(const uint8_t *, size_t);
};

#define WAP_FUZZ_TARGET_ROW(name, function) {#name, function},
const Target kTargets[] = {WAP_FUZZ_TARGETS(WAP_FUZZ_TARGET_ROW)};

struct Input {
    Target stTarget;
    fs::path sFile;
};

std::vector<Input> Inputs() {
    std::vector<Input> astInputs;
    for (const Target &stTarget : kTargets) {
        for (const auto &stEntry : fs::directory_iterator(WAP_FUZZ_CORPUS "/" + stTarget.sName)) {
            astInputs.push_back({stTarget, stEntry.path()});
        }
    }
    return astInputs;
}

std::string NameOf(const Input &stInput) {
    std::string sName = stInput.stTarget.sName + "_" + stInput.sFile.filename().string();
    std::replace_if(
        sName.begin(), sName.end(), [](unsigned char cChar) { return std::isalnum(cChar) == 0; },
        '_');
    return sName;
}

class ReplayTest : public ::testing::TestWithParam<Input> {};

// A broken rule ends the program.
TEST_P(ReplayTest, BreaksNoRule) {
    std::ifstream stFile(GetParam().sFile, std::ios::binary);
    const std::string sBytes{std::istreambuf_iterator<char>(stFile), {}};
    ASSERT_FALSE(stFile.bad());
    // In a block of its own size, so that a read beyond it is seen.
    const std::vector<uint8_t> aucBytes(sBytes.begin(), sBytes.end());
    GetParam().stTarget.pfnRun(aucBytes.data(), aucBytes.size());
}

INSTANTIATE_TEST_SUITE_P(Corpus, ReplayTest, ::testing::ValuesIn(Inputs()),
                         [](const auto &stInfo) { return NameOf(stInfo.param); });

TEST(FuzzCorpus, IsThereForEveryTargetAndNoOther) {
    std::set<std::string> asFolders;
    for (const auto &stEntry : fs::directory_iterator(WAP_FUZZ_CORPUS)) {
        asFolders.insert(stEntry.path().filename().string());
        EXPECT_FALSE(fs::is_empty(stEntry.path())) << stEntry.path();
    }
    std::set<std::string> asTargets;
    for (const Target &stTarget : kTargets) {
        asTargets.insert(stTarget.sName);
    }
    EXPECT_EQ(asFolders, asTargets);
}

TEST(FuzzRulesDeathTest, BrokenOnesEndTheProgram) {
    EXPECT_DEATH(Require(false, "the rule"), "Broken: the rule");
    World stWorld;
    stWorld.Violation("the complaint");
    EXPECT_DEATH(RequireClean(stWorld), "Broken: the complaint");
    EXPECT_EQ(stWorld.TakeComplaints().size(), 1u);
}

}  // namespace
}  // namespace wap::test

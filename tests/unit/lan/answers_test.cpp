// How the LAN services' texts become Java texts.
#include "common/answers.h"

#include <cstring>

#include "unit/lan/lan_test.h"

namespace wap::test {
namespace {

using Answers = LanTest;

TEST_F(Answers, EmptyTextStaysAnEmptyJavaText) {
    EXPECT_EQ(Ended(TextOrEmpty(&stEnv, "")), TextAnswerOf(""));
    EXPECT_EQ(Ended(char2jstring(&stEnv, "")), NullAnswer()) << "the difference that it makes";
}

TEST_F(Answers, OtherTextsAreConvertedAsEverywhere) {
    EXPECT_EQ(Ended(TextOrEmpty(&stEnv, "x")), TextAnswerOf("x"));
    EXPECT_EQ(Ended(TextOrEmpty(&stEnv, "Caf\xC3\xA9 \xF0\x9F\x8F\xA0")),
              TextAnswerOf("Caf\xC3\xA9 \xF0\x9F\x8F\xA0"));
}

TEST_F(Answers, EmptyTextThatJavaCanNotMakeIsNull) {
    for (const JniFailure eFailure : {JniFailure::kNullAndException, JniFailure::kNullAlone}) {
        stEnv.eFailure = eFailure;
        stWorld.Plan({Op::kJni, 1, false});
        const jstring jText = TextOrEmpty(&stEnv, "");
        stWorld.Plan({});
        EXPECT_EQ(jText, nullptr);
        EXPECT_FALSE(stEnv.bPending);
    }
}

TEST_F(Answers, FaultTellsTheWorkersCodeWhereItIsWanted) {
    EXPECT_EQ(Ended(FaultAnswer(&stEnv, WAP_SPOT, OnFailure::kWorkersCode, 5)),
              TextAnswerOf("{ \"Result\": 5 }"));
    EXPECT_EQ(Ended(FaultAnswer(&stEnv, WAP_SPOT, OnFailure::kMinusOne, 5)),
              TextAnswerOf("{ \"Result\": -1 }"));
    EXPECT_EQ(TakeFaults(), (FileCodes(2, {"answers_test.cpp", 5})));
}

TEST_F(Answers, HeapTextIsHandedOverAndReleased) {
    auto *pcText = static_cast<char *>(VT_OS_MemMallocSet(6, __FILE_NAME__, __LINE__));
    memcpy(pcText, "a text", 5);
    EXPECT_EQ(Ended(HeapTextAnswer(&stEnv, WAP_SPOT, 0, pcText)), TextAnswerOf("a tex"));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
}

TEST_F(Answers, HeapTextOfAFailedWorkerIsReleasedToo) {
    auto *pcText = static_cast<char *>(VT_OS_MemMallocSet(6, __FILE_NAME__, __LINE__));
    EXPECT_EQ(Ended(HeapTextAnswer(&stEnv, WAP_SPOT, kRefused, pcText)), TextAnswerOf(kFault));
    EXPECT_EQ(Ended(HeapTextAnswer(&stEnv, WAP_SPOT, kRefused, nullptr)), TextAnswerOf(kFault));
    EXPECT_EQ(TakeFaults(), (FileCodes(2, {"answers_test.cpp", kRefused})));
    EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
}

TEST_F(Answers, WorkerThatGivesNoTextHasFailed) {
    EXPECT_EQ(Ended(HeapTextAnswer(&stEnv, WAP_SPOT, 0, nullptr)), TextAnswerOf(kFault));
}

// There is room for two characters.
TEST_F(Answers, ShortFaultTellsShortCodes) {
    const struct {
        uint32_t uiCode;
        const char *pcWanted;
    } astCases[] = {
        {1, "{ \"Result\": 1 }"},           {99, "{ \"Result\": 99 }"},
        {100, "{ \"Result\": -1 }"},        {0xFFFFFFFE, "{ \"Result\": -2 }"},
        {0xFFFFFFF6, "{ \"Result\": -1 }"}, {kRefused, "{ \"Result\": -1 }"},
    };
    for (const auto &stCase : astCases) {
        EXPECT_EQ(Ended(ShortFaultAnswer(&stEnv, WAP_SPOT, stCase.uiCode)),
                  TextAnswerOf(stCase.pcWanted));
        EXPECT_EQ(TakeFaults().at(0), (FileCode{"answers_test.cpp", stCase.uiCode}));
    }
}

TEST_F(Answers, HeapTextOrFaultReleasesTheTextEitherWay) {
    const auto fnText = [] {
        return static_cast<char *>(VT_OS_MemMallocSet(6, __FILE_NAME__, __LINE__));
    };
    char *pcText = fnText();
    memcpy(pcText, "a text", 5);
    EXPECT_EQ(Ended(HeapTextOrFault(&stEnv, WAP_SPOT, 0, pcText)), TextAnswerOf("a tex"));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(Ended(HeapTextOrFault(&stEnv, WAP_SPOT, 7, fnText())),
              TextAnswerOf("{ \"Result\": 7 }"));
    EXPECT_EQ(Ended(HeapTextOrFault(&stEnv, WAP_SPOT, 0, nullptr)),
              TextAnswerOf("{ \"Result\": -1 }"));
    EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
}

TEST_F(Answers, FallbackTakesThePlaceOfWhatWasWritten) {
    char acText[8] = "ooooooo";
    EXPECT_EQ(Ended(TextOrFallback(&stEnv, WAP_SPOT, 0, acText, "f")), TextAnswerOf("ooooooo"));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(Ended(TextOrFallback(&stEnv, WAP_SPOT, kRefused, acText, "f")), TextAnswerOf("f"));
    EXPECT_EQ(std::string(acText, sizeof(acText)), Field("f", 8));
    EXPECT_EQ(Ended(TextOrFallback(&stEnv, WAP_SPOT, kRefused, acText, "0123456789")),
              TextAnswerOf("0123456"));
    EXPECT_EQ(TakeFaults(), (FileCodes(2, {"answers_test.cpp", kRefused})));
}

}  // namespace
}  // namespace wap::test

// The JSON layer: parsing, printing and releasing.

#include <string>
#include <vector>

#include "unit/core/json_fixture.h"

namespace wap::test {
namespace {

// json-c's numbers of the tokener's errors.
constexpr uint32_t kTextEnds = 3;
constexpr uint32_t kUnexpected = 4;
constexpr uint32_t kNullWord = 5;
constexpr uint32_t kBooleanWord = 6;
constexpr uint32_t kNumber = 7;
constexpr uint32_t kArray = 8;
constexpr uint32_t kKeyName = 9;
constexpr uint32_t kKeySeparator = 10;
constexpr uint32_t kValueSeparator = 11;

// ---- parsing ----

TEST_F(Json, ParsesAndPrintsSpaced) {
    EXPECT_EQ(Print(Tree("{\"Result\":0,\"List\":[1,{\"k\":\"v\"}],\"e\":{},\"f\":[]}")),
              "{ \"Result\": 0, \"List\": [ 1, { \"k\": \"v\" } ], \"e\": { }, \"f\": [ ] }");
    ExpectRecorded(0);
}

TEST_F(Json, PrintsEveryType) {
    EXPECT_EQ(Print(Tree(kAllTypes)),
              "{ \"n\": null, \"b\": true, \"d\": 2.5, \"i\": -7, \"o\": { }, "
              "\"a\": [ 1, 2, 3 ], \"s\": \"abc\" }");
    EXPECT_EQ(Print(Tree("\"q\\\" b\\\\ s\\/ n\\n u\\u0001 \xC3\xBC\"")),
              "\"q\\\" b\\\\ s\\/ n\\n u\\u0001 \xC3\xBC\"");
    EXPECT_EQ(Print(Tree("-9223372036854775808")), "-9223372036854775808");
    EXPECT_EQ(Print(Tree("9223372036854775807")), "9223372036854775807");
}

// A number that was not parsed is printed once more to know how long its text must be, which needs
// memory, too.
TEST_F(Json, NumbersOfOurOwnPrintRightOrNotAtAll) {
    json_object *pstRoot = Keep(json_object_new_object());
    ASSERT_EQ(json_object_object_add(pstRoot, "d", json_object_new_double(0.5)), 0);
    uint32_t uiPrinted = 0;
    bool bDone = false;
    for (uint32_t uiAt = 1; !bDone; ++uiAt) {
        stWorld.Plan({Op::kAlloc, uiAt, false});
        const std::string sText = Print(pstRoot);
        bDone = stWorld.Count(Op::kAlloc) < uiAt;
        stWorld.Plan({});
        EXPECT_TRUE(sText == "{ \"d\": 0.5 }" || (sText == "(null)" && !bDone)) << sText;
        uiPrinted += sText == "(null)" ? 0 : 1;
    }
    EXPECT_GE(uiPrinted, 1u);
    stPlatform.astFaults.clear();
}

TEST_F(Json, ParseOfNoText) {
    EXPECT_EQ(JSON_Parse(nullptr, 0), nullptr);
    ExpectRecorded(kNull);
    EXPECT_EQ(JSON_Parse(nullptr, 1), nullptr);
    ExpectRecorded(kNull);
}

TEST_F(Json, ParseOfBrokenTextRecordsWhy) {
    const struct {
        const char *pcText;
        uint32_t uiReason;  ///< json-c's number of the tokener's error
    } astBroken[] = {
        {"", kTextEnds},
        {"{", kTextEnds},
        {"[1,", kTextEnds},
        {"\"open", kTextEnds},
        {"{\"a\":}", kUnexpected},
        {"{\"a\" 1}", kKeySeparator},
        {"{\"a\":1 2}", kValueSeparator},
        {"{1:2}", kKeyName},
        {"[1 2]", kArray},
        {"nope", kNullWord},
        {"trux", kBooleanWord},
        {"[-]", kNumber},
    };
    for (const auto &stBroken : astBroken) {
        for (const uint32_t uiStrict : {0u, 1u}) {
            SCOPED_TRACE(stBroken.pcText);
            EXPECT_EQ(JSON_Parse(stBroken.pcText, uiStrict), nullptr);
            ASSERT_EQ(stPlatform.astFaults.size(), 1u);
            EXPECT_EQ(stPlatform.astFaults[0].auiArgs[0], stBroken.uiReason);
            ExpectRecorded(kObject);
        }
    }
    EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
}

TEST_F(Json, ParseOfJsonNullGivesNothing) {
    EXPECT_EQ(JSON_Parse("null", 1), nullptr);
    ExpectRecorded(kObject);
}

TEST_F(Json, StrictRefusesWhatLenientTakes) {
    const struct {
        const char *pcText;
        const char *pcPrinted;
    } astLax[] = {
        {"{\"a\":1} trailing", "{ \"a\": 1 }"}, {"{'a':'b'}", "{ \"a\": \"b\" }"},
        {"{\"a\":1,}", "{ \"a\": 1 }"},         {"[1,2,]", "[ 1, 2 ]"},
        {"{/* why */\"a\":1}", "{ \"a\": 1 }"}, {"{\"a\":TRUE}", "{ \"a\": true }"},
    };
    for (const auto &stLax : astLax) {
        SCOPED_TRACE(stLax.pcText);
        EXPECT_EQ(JSON_Parse(stLax.pcText, 1), nullptr);
        ExpectRecorded(kObject);
        EXPECT_EQ(Print(Keep(JSON_Parse(stLax.pcText, 0))), stLax.pcPrinted);
        ExpectRecorded(0);
    }
}

TEST_F(Json, OnlyTheFlagOneIsStrict) {
    for (const uint32_t uiFlag : {0u, 2u, 3u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Print(Keep(JSON_Parse("[1]x", uiFlag))), "[ 1 ]") << uiFlag;
    }
    ExpectRecorded(0);
}

TEST_F(Json, DeepNestingIsBounded) {
    const auto Nested = [](size_t uiDepth) {
        return std::string(uiDepth, '[') + std::string(uiDepth, ']');
    };
    json_object *pstRoot = Tree(Nested(30).c_str());
    for (int i = 0; i < 29; ++i) {
        ASSERT_EQ(JNI_JSON_IsArray(pstRoot), 1u);
        pstRoot = json_object_array_get_idx(pstRoot, 0);
    }
    uint32_t uiLen = 9;
    EXPECT_EQ(JNI_JSON_ObjGetArrayLen(pstRoot, &uiLen), 0u);
    EXPECT_EQ(uiLen, 0u);
    ExpectRecorded(0);
    EXPECT_EQ(JSON_Parse(Nested(100000).c_str(), 0), nullptr);
    ExpectRecorded(kObject);
    EXPECT_EQ(JSON_Parse(std::string(100000, '[').c_str(), 1), nullptr);
    ExpectRecorded(kObject);
}

TEST_F(Json, AMegabyteOfText) {
    const std::string sLong(1 << 20, 'x');
    json_object *pstRoot = Tree(("{\"k\":\"" + sLong + "\"}").c_str());
    uint32_t uiLen = 0;
    EXPECT_EQ(JNI_JSON_ObjGetValueStringLen(pstRoot, "k", &uiLen), 0u);
    EXPECT_EQ(uiLen, 1048576u);
    std::vector<char> acBuf((1 << 20) + 1, '#');
    EXPECT_EQ(JNI_JSON_ObjGetValueString(pstRoot, "k", acBuf.data(), 1 << 20), kTooLong);
    EXPECT_EQ(acBuf[0], '#');
    EXPECT_EQ(JNI_JSON_ObjGetValueString(pstRoot, "k", acBuf.data(), (1 << 20) + 1), 0u);
    EXPECT_EQ(sLong, acBuf.data());
    EXPECT_EQ(Print(pstRoot), "{ \"k\": \"" + sLong + "\" }");
}

TEST_F(Json, ParseOfArraysWithoutMemoryLeavesNothing) {
    const char *pcText = "[[1,2.5,\"text\"],[true,[]]]";
    // One refusal at a time, and no objects: json-c itself reads through null when it gets no
    // locale twice or no copy of a member's name.
    uint32_t uiRefused = 0;
    for (uint32_t i = 1; i < 200; ++i) {
        stWorld.Plan({Op::kAlloc, i, false});
        json_object *pstRoot = JSON_Parse(pcText, 1);
        const bool bReached = stWorld.Count(Op::kAlloc) >= i;
        stWorld.Plan({});
        if (!bReached) {
            EXPECT_NE(pstRoot, nullptr);
            Keep(pstRoot);
            break;
        }
        ++uiRefused;
        if (pstRoot != nullptr) {
            EXPECT_EQ(Print(pstRoot), "[ [ 1, 2.5, \"text\" ], [ true, [ ] ] ]");
            JNI_JSON_ObjPut(pstRoot);
        } else {
            EXPECT_FALSE(stPlatform.astFaults.empty());
        }
        stPlatform.astFaults.clear();
        EXPECT_EQ(stWorld.stAllocs.Live(), 0u) << "allocation " << i;
    }
    EXPECT_GT(uiRefused, 3u);
}

TEST_F(Json, NoTokenerIsRecordedAsNull) {
    stWorld.Plan({Op::kAlloc, 1, false});
    EXPECT_EQ(JSON_Parse("{}", 0), nullptr);
    ExpectRecorded(kNull);
}

// ---- life and output ----

TEST_F(Json, PutReleasesTheWholeTree) {
    json_object *pstRoot = JSON_Parse(kAllTypes, 1);
    EXPECT_GT(stWorld.stAllocs.Live(), 5u);
    JNI_JSON_ObjPut(pstRoot);
    EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
    ExpectRecorded(0);
    JNI_JSON_ObjPut(nullptr);
    ExpectRecorded(kNull);
}

TEST_F(Json, PrintOfNothing) {
    EXPECT_EQ(JNI_JSON_ObjToJsonString(nullptr), nullptr);
    ExpectRecorded(kNull);
}

TEST_F(Json, PrintWithoutMemoryIsNeverWrong) {
    const std::string sLong(300, 'y');
    const std::string sWant = "{ \"k\": \"" + sLong + "\", \"l\": [ 1, \"\\n\" ] }";
    uint32_t uiFailed = 0;
    for (uint32_t i = 1; i < 100; ++i) {
        json_object *pstRoot = JSON_Parse(sWant.c_str(), 1);
        ASSERT_NE(pstRoot, nullptr);
        stWorld.Plan({Op::kAlloc, i, false});
        const char *pcText = JNI_JSON_ObjToJsonString(pstRoot);
        const bool bReached = stWorld.Count(Op::kAlloc) >= i;
        stWorld.Plan({});
        if (pcText == nullptr) {
            ++uiFailed;
        } else {
            EXPECT_EQ(pcText, sWant) << "allocation " << i;
        }
        JNI_JSON_ObjPut(pstRoot);
        if (!bReached) {
            break;
        }
    }
    EXPECT_GT(uiFailed, 0u);
}

}  // namespace
}  // namespace wap::test

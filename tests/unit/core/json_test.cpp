// The JSON layer: what every function answers and records, on good and on bad arguments.

#include "common/jni_json_wrap.h"

#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "support/entries.h"

namespace wap::test {
namespace {

constexpr uint32_t kObject = 0xF7100000;
constexpr uint32_t kValue = 0xF7100001;
constexpr uint32_t kType = 0xF7100007;
constexpr uint32_t kNull = 0xF7100008;
constexpr uint32_t kNullValue = 0xF7100009;
constexpr uint32_t kNoKey = 0xF710000C;
constexpr uint32_t kTooLong = 0xF710E009;

class Json : public BridgeTest {
  protected:
    void TearDown() override {
        for (json_object *pstRoot : apstRoots) {
            JNI_JSON_ObjPut(pstRoot);
        }
        BridgeTest::TearDown();
    }
    /// A tree that is released at the end.
    json_object *Keep(json_object *pstRoot) {
        EXPECT_NE(pstRoot, nullptr);
        if (pstRoot != nullptr) {
            apstRoots.push_back(pstRoot);
        }
        return pstRoot;
    }
    json_object *Tree(const char *pcText) { return Keep(JSON_Parse(pcText, 1)); }
    json_object *At(json_object *pstObj, const char *pcKey) {
        json_object *pstValue = nullptr;
        EXPECT_EQ(JNI_JSON_ObjGetValueObj(pstObj, pcKey, &pstValue), 0u);
        return pstValue;
    }
    std::string Print(json_object *pstValue) {
        const char *pcText = JNI_JSON_ObjToJsonString(pstValue);
        return pcText == nullptr ? "(null)" : pcText;
    }
    /// The result must be uiCode, and the records of this call carry that code and a place.
    void Expect(uint32_t uiCode, uint32_t uiResult) {
        EXPECT_EQ(uiResult, uiCode) << std::hex << uiResult;
        ExpectRecorded(uiCode);
    }
    /// Checks and drops the fault records; code 0 stands for none.
    void ExpectRecorded(uint32_t uiCode) {
        EXPECT_EQ(stPlatform.astFaults.empty(), uiCode == 0);
        for (const FaultRecord &stFault : stPlatform.astFaults) {
            EXPECT_EQ(stFault.uiCode, uiCode);
            EXPECT_EQ(stFault.sFile, "jni_json_wrap.cpp");
            EXPECT_GT(stFault.uiLine, 0u);
        }
        stPlatform.astFaults.clear();
    }

    std::vector<json_object *> apstRoots;
};

constexpr char kAllTypes[] =
    "{\"n\":null,\"b\":true,\"d\":2.5,\"i\":-7,\"o\":{},\"a\":[1,2,3],\"s\":\"abc\"}";

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

TEST_F(Json, ParseOfNoText) {
    EXPECT_EQ(JSON_Parse(nullptr, 0), nullptr);
    ExpectRecorded(kNull);
    EXPECT_EQ(JSON_Parse(nullptr, 1), nullptr);
    ExpectRecorded(kNull);
}

TEST_F(Json, ParseOfBrokenTextRecordsWhy) {
    for (const char *pcText : {"{", "[1,", "{\"a\":}", "{\"a\" 1}", "[1 2]", "nope", "\"open"}) {
        for (const uint32_t uiStrict : {0u, 1u}) {
            SCOPED_TRACE(pcText);
            EXPECT_EQ(JSON_Parse(pcText, uiStrict), nullptr);
            ASSERT_EQ(stPlatform.astFaults.size(), 1u);
            EXPECT_NE(stPlatform.astFaults[0].auiArgs[0], 0u) << "the tokener's reason";
            ExpectRecorded(kObject);
        }
    }
    EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
}

TEST_F(Json, ParseTellsTheTokenersError) {
    EXPECT_EQ(JSON_Parse("[1 2]", 1), nullptr);
    ASSERT_EQ(stPlatform.astFaults.size(), 1u);
    EXPECT_EQ(stPlatform.astFaults[0].auiArgs[0], 8u) << "an array without its comma";
    ExpectRecorded(kObject);
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

// ---- typed getters ----

/// Calls a getter on every type; only pcGood's may do, and only then the output is written.
template <class Out>
void OnlyTakes(json_object *pstRoot, const char *pcGood, uint32_t (*pfnGet)(json_object *, Out *),
               uint32_t (*pfnByKey)(json_object *, const char *, Out *), Out xWant) {
    for (const char *pcKey : {"n", "b", "d", "i", "o", "a", "s"}) {
        SCOPED_TRACE(pcKey);
        json_object *pstValue = nullptr;
        ASSERT_EQ(JNI_JSON_ObjGetValueObj(pstRoot, pcKey, &pstValue), 0u);
        const bool bGood = std::strcmp(pcKey, pcGood) == 0;
        // JSON null is a null value here.
        const uint32_t uiWant = bGood ? 0 : pstValue == nullptr ? kNull : kType;
        Out xOut = 99;
        EXPECT_EQ(pfnGet(pstValue, &xOut), uiWant);
        EXPECT_EQ(xOut, bGood ? xWant : Out(99));
        if (pfnByKey != nullptr) {
            xOut = 99;
            EXPECT_EQ(pfnByKey(pstRoot, pcKey, &xOut), uiWant);
            EXPECT_EQ(xOut, bGood ? xWant : Out(99));
        }
    }
}

TEST_F(Json, GettersTakeTheirTypeOnly) {
    json_object *pstRoot = Tree(kAllTypes);
    OnlyTakes<int32_t>(pstRoot, "i", JNI_JSON_ObjGetInt, JNI_JSON_ObjGetValueInt, -7);
    OnlyTakes<uint32_t>(pstRoot, "b", JNI_JSON_ObjGetBool, JNI_JSON_ObjGetValueBool, 1);
    OnlyTakes<double>(pstRoot, "d", JNI_JSON_ObjGetDouble, JNI_JSON_ObjGetValueDouble, 2.5);
    OnlyTakes<uint32_t>(pstRoot, "s", JNI_JSON_ObjGetStringLen, JNI_JSON_ObjGetValueStringLen, 3);
    OnlyTakes<uint32_t>(pstRoot, "a", JNI_JSON_ObjGetArrayLen, nullptr, 3);
}

TEST_F(Json, GettersRecordTheirFaults) {
    json_object *pstRoot = Tree(kAllTypes);
    json_object *pstText = At(pstRoot, "s");
    int32_t iOut = 0;
    uint32_t uiOut = 0;
    double dOut = 0;
    Expect(kType, JNI_JSON_ObjGetInt(pstText, &iOut));
    Expect(kType, JNI_JSON_ObjGetBool(pstText, &uiOut));
    Expect(kType, JNI_JSON_ObjGetDouble(pstText, &dOut));
    Expect(kType, JNI_JSON_ObjGetArrayLen(pstText, &uiOut));
    Expect(kType, JNI_JSON_ObjGetStringLen(pstRoot, &uiOut));
    Expect(kNull, JNI_JSON_ObjGetInt(nullptr, &iOut));
    Expect(kNull, JNI_JSON_ObjGetBool(nullptr, &uiOut));
    Expect(kNull, JNI_JSON_ObjGetDouble(nullptr, &dOut));
    Expect(kNull, JNI_JSON_ObjGetArrayLen(nullptr, &uiOut));
    Expect(kNull, JNI_JSON_ObjGetStringLen(nullptr, &uiOut));
    Expect(kNull, JNI_JSON_ObjGetInt(At(pstRoot, "i"), nullptr));
    Expect(kNull, JNI_JSON_ObjGetBool(At(pstRoot, "b"), nullptr));
    Expect(kNull, JNI_JSON_ObjGetDouble(At(pstRoot, "d"), nullptr));
    Expect(kNull, JNI_JSON_ObjGetStringLen(pstText, nullptr));
    // The array's getter looks at its output last.
    Expect(kType, JNI_JSON_ObjGetArrayLen(pstText, nullptr));
    Expect(kNull, JNI_JSON_ObjGetArrayLen(At(pstRoot, "a"), nullptr));
}

TEST_F(Json, NumbersAtTheirBounds) {
    json_object *pstRoot = Tree("{\"l\":-2147483648,\"h\":2147483647,\"f\":false,\"z\":0}");
    int32_t iOut = 0;
    EXPECT_EQ(JNI_JSON_ObjGetValueInt(pstRoot, "l", &iOut), 0u);
    EXPECT_EQ(iOut, INT32_MIN);
    EXPECT_EQ(JNI_JSON_ObjGetValueInt(pstRoot, "h", &iOut), 0u);
    EXPECT_EQ(iOut, INT32_MAX);
    EXPECT_EQ(JNI_JSON_ObjGetValueInt(pstRoot, "z", &iOut), 0u);
    EXPECT_EQ(iOut, 0);
    uint32_t uiOut = 9;
    EXPECT_EQ(JNI_JSON_ObjGetValueBool(pstRoot, "f", &uiOut), 0u);
    EXPECT_EQ(uiOut, 0u);
}

TEST_F(Json, StringLengthCountsBytes) {
    uint32_t uiOut = 0;
    EXPECT_EQ(JNI_JSON_ObjGetStringLen(Tree("\"\xC3\xBC\xE4\xB8\xAD\""), &uiOut), 0u);
    EXPECT_EQ(uiOut, 5u);
    EXPECT_EQ(JNI_JSON_ObjGetStringLen(Tree("\"\""), &uiOut), 0u);
    EXPECT_EQ(uiOut, 0u);
}

TEST_F(Json, StringMustFitWithItsZero) {
    json_object *pstText = Tree("\"abc\"");
    char acBuf[5] = "####";
    EXPECT_EQ(JNI_JSON_ObjGetString(pstText, acBuf, 3), kTooLong);
    ASSERT_EQ(stPlatform.astFaults.size(), 1u);
    EXPECT_EQ(stPlatform.astFaults[0].auiArgs[0], 3u) << "length";
    EXPECT_EQ(stPlatform.astFaults[0].auiArgs[1], 3u) << "capacity";
    ExpectRecorded(kTooLong);
    EXPECT_STREQ(acBuf, "####");
    Expect(kTooLong, JNI_JSON_ObjGetString(pstText, acBuf, 1));
    Expect(0, JNI_JSON_ObjGetString(pstText, acBuf, 4));
    EXPECT_STREQ(acBuf, "abc");
    EXPECT_EQ(acBuf[4], '\0');
    Expect(0, JNI_JSON_ObjGetString(Tree("\"\""), acBuf, 1));
    EXPECT_STREQ(acBuf, "");
}

TEST_F(Json, StringArguments) {
    json_object *pstText = Tree("\"abc\"");
    char acBuf[8] = "#";
    Expect(kNull, JNI_JSON_ObjGetString(nullptr, acBuf, 8));
    Expect(kNull, JNI_JSON_ObjGetString(pstText, nullptr, 8));
    Expect(kNull, JNI_JSON_ObjGetString(pstText, acBuf, 0));
    Expect(kType, JNI_JSON_ObjGetString(Tree("5"), acBuf, 8));
    EXPECT_STREQ(acBuf, "#");
}

// ---- keyed getters ----

TEST_F(Json, ValueByKey) {
    json_object *pstRoot = Tree("{\"k\":5,\"n\":null}");
    json_object *pstOut = pstRoot;
    Expect(0, JNI_JSON_ObjGetValueObj(pstRoot, "k", &pstOut));
    EXPECT_EQ(JNI_JSON_ObjGetIntEx(pstOut), 5);
    Expect(0, JNI_JSON_ObjGetValueObj(pstRoot, "n", &pstOut));
    EXPECT_EQ(pstOut, nullptr);
    pstOut = pstRoot;
    Expect(kNoKey, JNI_JSON_ObjGetValueObj(pstRoot, "K", &pstOut));
    Expect(kType, JNI_JSON_ObjGetValueObj(Tree("[1]"), "k", &pstOut));
    Expect(kType, JNI_JSON_ObjGetValueObj(Tree("\"k\""), "k", &pstOut));
    Expect(kNull, JNI_JSON_ObjGetValueObj(nullptr, "k", &pstOut));
    Expect(kNull, JNI_JSON_ObjGetValueObj(pstRoot, nullptr, &pstOut));
    Expect(kNull, JNI_JSON_ObjGetValueObj(pstRoot, "k", nullptr));
    EXPECT_EQ(pstOut, pstRoot) << "not written on failure";
}

TEST_F(Json, KeyedGettersPassInnerCodesOn) {
    json_object *pstRoot = Tree("{\"k\":\"5\"}");
    int32_t iOut = 0;
    uint32_t uiOut = 0;
    double dOut = 0;
    Expect(kType, JNI_JSON_ObjGetValueInt(pstRoot, "k", &iOut));
    Expect(kNoKey, JNI_JSON_ObjGetValueInt(pstRoot, "x", &iOut));
    Expect(kNoKey, JNI_JSON_ObjGetValueBool(pstRoot, "x", &uiOut));
    Expect(kNoKey, JNI_JSON_ObjGetValueDouble(pstRoot, "x", &dOut));
    Expect(kNoKey, JNI_JSON_ObjGetValueStringLen(pstRoot, "x", &uiOut));
    Expect(kNull, JNI_JSON_ObjGetValueInt(nullptr, "k", &iOut));
    Expect(kNull, JNI_JSON_ObjGetValueBool(pstRoot, nullptr, &uiOut));
    Expect(kNull, JNI_JSON_ObjGetValueDouble(nullptr, "k", &dOut));
    Expect(kNull, JNI_JSON_ObjGetValueStringLen(pstRoot, "k", nullptr));
    Expect(kType, JNI_JSON_ObjGetValueInt(Tree("[]"), "k", &iOut));
}

TEST_F(Json, FailuresLeaveAChainOfRecords) {
    json_object *pstRoot = Tree("{\"k\":\"5\"}");
    int32_t iOut = 0;
    EXPECT_EQ(JNI_JSON_ObjGetValueInt(pstRoot, "k", &iOut), kType);
    EXPECT_GE(stPlatform.astFaults.size(), 2u) << "where it is found, and where it is passed on";
    ExpectRecorded(kType);
}

TEST_F(Json, StringByKey) {
    char acBuf[4] = "#";
    Expect(kNullValue, JNI_JSON_ObjGetValueString(Tree("{\"k\":null}"), "k", acBuf, 4));
    Expect(kNoKey, JNI_JSON_ObjGetValueString(Tree("{}"), "k", acBuf, 4));
    Expect(kType, JNI_JSON_ObjGetValueString(Tree("{\"k\":5}"), "k", acBuf, 4));
    Expect(kType, JNI_JSON_ObjGetValueString(Tree("[]"), "k", acBuf, 4));
    json_object *pstRoot = Tree("{\"k\":\"abc\"}");
    Expect(kNull, JNI_JSON_ObjGetValueString(nullptr, "k", acBuf, 4));
    Expect(kNull, JNI_JSON_ObjGetValueString(pstRoot, nullptr, acBuf, 4));
    Expect(kNull, JNI_JSON_ObjGetValueString(pstRoot, "k", nullptr, 4));
    Expect(kNull, JNI_JSON_ObjGetValueString(pstRoot, "k", acBuf, 0));
    Expect(kTooLong, JNI_JSON_ObjGetValueString(pstRoot, "k", acBuf, 3));
    EXPECT_STREQ(acBuf, "#");
    Expect(0, JNI_JSON_ObjGetValueString(pstRoot, "k", acBuf, 4));
    EXPECT_STREQ(acBuf, "abc");
}

TEST_F(Json, PlainLookUpGivesAFlag) {
    json_object *pstRoot = Tree("{\"k\":5,\"n\":null}");
    json_object *pstOut = nullptr;
    EXPECT_EQ(JNI_JSON_ObjGetValue(pstRoot, "k", &pstOut), 1u);
    EXPECT_EQ(JNI_JSON_ObjGetIntEx(pstOut), 5);
    EXPECT_EQ(JNI_JSON_ObjGetValue(pstRoot, "n", &pstOut), 1u);
    EXPECT_EQ(pstOut, nullptr);
    EXPECT_EQ(JNI_JSON_ObjGetValue(pstRoot, "x", &pstOut), 0u);
    EXPECT_EQ(JNI_JSON_ObjGetValue(Tree("[1]"), "k", &pstOut), 0u);
    ExpectRecorded(0);
    EXPECT_EQ(JNI_JSON_ObjGetValue(nullptr, "k", &pstOut), 0u);
    ExpectRecorded(kNull);
    EXPECT_EQ(JNI_JSON_ObjGetValue(pstRoot, nullptr, &pstOut), 0u);
    ExpectRecorded(kNull);
    EXPECT_EQ(JNI_JSON_ObjGetValue(pstRoot, "k", nullptr), 0u);
    ExpectRecorded(kNull);
}

// ---- unchecked getters ----

TEST_F(Json, UncheckedGettersConvert) {
    EXPECT_STREQ(JNI_JSON_ObjGetStringEx(Tree("-42")), "-42");
    EXPECT_STREQ(JNI_JSON_ObjGetStringEx(Tree("true")), "true");
    EXPECT_STREQ(JNI_JSON_ObjGetStringEx(Tree("\"abc\"")), "abc");
    EXPECT_STREQ(JNI_JSON_ObjGetStringEx(Tree("[1]")), "[ 1 ]");
    EXPECT_EQ(JNI_JSON_ObjGetStringLenEx(Tree("\"abc\"")), 3u);
    EXPECT_EQ(JNI_JSON_ObjGetStringLenEx(Tree("42")), 0u) << "json-c measures strings only";
    EXPECT_EQ(JNI_JSON_ObjGetIntEx(Tree("\"5\"")), 5);
    EXPECT_EQ(JNI_JSON_ObjGetIntEx(Tree("\"five\"")), 0);
    EXPECT_EQ(JNI_JSON_ObjGetIntEx(Tree("7.9")), 7);
    EXPECT_EQ(JNI_JSON_ObjGetIntEx(Tree("true")), 1);
    EXPECT_EQ(JNI_JSON_ObjGetIntEx(Tree("99999999999")), INT32_MAX);
    EXPECT_EQ(JNI_JSON_ObjGetIntEx(Tree("-99999999999")), INT32_MIN);
    EXPECT_EQ(JNI_JSON_ObjGetIntEx(Tree("{}")), 0);
    EXPECT_EQ(JNI_JSON_ObjGetBoolEx(Tree("3")), 1u);
    EXPECT_EQ(JNI_JSON_ObjGetBoolEx(Tree("0")), 0u);
    EXPECT_EQ(JNI_JSON_ObjGetBoolEx(Tree("\"x\"")), 1u);
    EXPECT_EQ(JNI_JSON_ObjGetBoolEx(Tree("\"\"")), 0u);
    EXPECT_EQ(JNI_JSON_ObjGetBoolEx(Tree("false")), 0u);
    ExpectRecorded(0);
}

TEST_F(Json, UncheckedGettersOfNothing) {
    EXPECT_EQ(JNI_JSON_ObjGetStringEx(nullptr), nullptr);
    ExpectRecorded(kNull);
    EXPECT_EQ(JNI_JSON_ObjGetStringLenEx(nullptr), 0u);
    ExpectRecorded(kNull);
    EXPECT_EQ(JNI_JSON_ObjGetIntEx(nullptr), 0);
    ExpectRecorded(kNull);
    EXPECT_EQ(JNI_JSON_ObjGetBoolEx(nullptr), 0u);
    ExpectRecorded(kNull);
}

TEST_F(Json, TypeTestsRecordNothing) {
    EXPECT_EQ(JNI_JSON_IsArray(Tree("[]")), 1u);
    EXPECT_EQ(JNI_JSON_IsArray(Tree("{}")), 0u);
    EXPECT_EQ(JNI_JSON_IsArray(nullptr), 0u);
    EXPECT_EQ(JNI_JSON_IsObj(Tree("{}")), 1u);
    EXPECT_EQ(JNI_JSON_IsObj(Tree("\"{}\"")), 0u);
    EXPECT_EQ(JNI_JSON_IsObj(nullptr), 0u);
    ExpectRecorded(0);
}

// ---- constructors and adders ----

TEST_F(Json, ConstructorsMakeTheirType) {
    EXPECT_EQ(Print(Keep(JNI_JSON_ObjNewObj())), "{ }");
    EXPECT_EQ(Print(Keep(JNI_JSON_ObjNewArray())), "[ ]");
    EXPECT_EQ(Print(Keep(JNI_JSON_ObjNewInt(INT32_MIN))), "-2147483648");
    EXPECT_EQ(Print(Keep(JNI_JSON_ObjNewBool(0))), "false");
    EXPECT_EQ(Print(Keep(JNI_JSON_ObjNewBool(1))), "true");
    EXPECT_EQ(Print(Keep(JNI_JSON_ObjNewDouble(0.5))), "0.5");
    EXPECT_EQ(Print(Keep(JNI_JSON_ObjNewString("t"))), "\"t\"");
    EXPECT_EQ(Print(Keep(JNI_JSON_ObjNewString(""))), "\"\"");
    ExpectRecorded(0);
    EXPECT_EQ(JNI_JSON_ObjNewString(nullptr), nullptr);
    ExpectRecorded(kNull);
}

TEST_F(Json, ConstructorsWithoutMemory) {
    stWorld.Plan({Op::kAlloc, 1, true});
    EXPECT_EQ(JNI_JSON_ObjNewObj(), nullptr);
    EXPECT_EQ(JNI_JSON_ObjNewArray(), nullptr);
    EXPECT_EQ(JNI_JSON_ObjNewInt(1), nullptr);
    EXPECT_EQ(JNI_JSON_ObjNewBool(1), nullptr);
    EXPECT_EQ(JNI_JSON_ObjNewDouble(1), nullptr);
    EXPECT_EQ(JNI_JSON_ObjNewString("t"), nullptr);
}

TEST_F(Json, AddersAddInOrder) {
    json_object *pstObj = Keep(JNI_JSON_ObjNewObj());
    Expect(0, JNI_JSON_ObjAddKeyValue(pstObj, "v", JNI_JSON_ObjNewArray()));
    Expect(0, JNI_JSON_ObjAddKeyValueString(pstObj, "s", "\"q\""));
    Expect(0, JNI_JSON_ObjAddKeyValueNULL(pstObj, "n"));
    Expect(0, JNI_JSON_ObjAddKeyValueInt(pstObj, "i", -1));
    Expect(0, JNI_JSON_ObjAddKeyValueBool(pstObj, "b", 1));
    Expect(0, JNI_JSON_ObjAddKeyValueDouble(pstObj, "d", -2.25));
    Expect(0, JNI_JSON_ObjAddKeyValueIntToString(pstObj, "t", 12));
    EXPECT_EQ(Print(pstObj),
              "{ \"v\": [ ], \"s\": \"\\\"q\\\"\", \"n\": null, \"i\": -1, \"b\": true, "
              "\"d\": -2.25, \"t\": \"12\" }");
}

TEST_F(Json, ASecondAddReplacesTheFirst) {
    json_object *pstObj = Keep(JNI_JSON_ObjNewObj());
    EXPECT_EQ(JNI_JSON_ObjAddKeyValueInt(pstObj, "k", 1), 0u);
    EXPECT_EQ(JNI_JSON_ObjAddKeyValueInt(pstObj, "l", 2), 0u);
    EXPECT_EQ(JNI_JSON_ObjAddKeyValueString(pstObj, "k", "two"), 0u);
    EXPECT_EQ(Print(pstObj), "{ \"k\": \"two\", \"l\": 2 }");
    EXPECT_EQ(JNI_JSON_ObjAddKeyValueNULL(pstObj, "k"), 0u);
    EXPECT_EQ(Print(pstObj), "{ \"k\": null, \"l\": 2 }");
}

TEST_F(Json, IntegersAsText) {
    json_object *pstObj = Keep(JNI_JSON_ObjNewObj());
    EXPECT_EQ(JNI_JSON_ObjAddKeyValueIntToString(pstObj, "l", INT32_MIN), 0u);
    EXPECT_EQ(JNI_JSON_ObjAddKeyValueIntToString(pstObj, "h", INT32_MAX), 0u);
    EXPECT_EQ(JNI_JSON_ObjAddKeyValueIntToString(pstObj, "z", 0), 0u);
    EXPECT_EQ(Print(pstObj), "{ \"l\": \"-2147483648\", \"h\": \"2147483647\", \"z\": \"0\" }");
}

TEST_F(Json, AddersRefuseNull) {
    json_object *pstObj = Keep(JNI_JSON_ObjNewObj());
    json_object *pstValue = Keep(JNI_JSON_ObjNewInt(1));
    Expect(kNull, JNI_JSON_ObjAddKeyValue(nullptr, "k", pstValue));
    Expect(kNull, JNI_JSON_ObjAddKeyValue(pstObj, nullptr, pstValue));
    Expect(kNull, JNI_JSON_ObjAddKeyValue(pstObj, "k", nullptr));
    Expect(kNull, JNI_JSON_ObjAddKeyValueString(nullptr, "k", "t"));
    Expect(kNull, JNI_JSON_ObjAddKeyValueString(pstObj, nullptr, "t"));
    Expect(kNull, JNI_JSON_ObjAddKeyValueString(pstObj, "k", nullptr));
    for (json_object *pstParent : {static_cast<json_object *>(nullptr), pstObj}) {
        const char *pcKey = pstParent == nullptr ? "k" : nullptr;
        Expect(kNull, JNI_JSON_ObjAddKeyValueNULL(pstParent, pcKey));
        Expect(kNull, JNI_JSON_ObjAddKeyValueInt(pstParent, pcKey, 1));
        Expect(kNull, JNI_JSON_ObjAddKeyValueBool(pstParent, pcKey, 1));
        Expect(kNull, JNI_JSON_ObjAddKeyValueDouble(pstParent, pcKey, 1));
        Expect(kNull, JNI_JSON_ObjAddKeyValueIntToString(pstParent, pcKey, 1));
    }
    EXPECT_EQ(Print(pstObj), "{ }");
}

TEST_F(Json, AddersRefuseAParentThatIsNoObject) {
    json_object *pstArray = Keep(JNI_JSON_ObjNewArray());
    json_object *pstValue = Keep(JNI_JSON_ObjNewInt(1));
    const size_t uiLive = stWorld.stAllocs.Live();
    Expect(kType, JNI_JSON_ObjAddKeyValue(pstArray, "k", pstValue));
    Expect(kType, JNI_JSON_ObjAddKeyValueNULL(pstArray, "k"));
    Expect(kType, JNI_JSON_ObjAddKeyValueString(pstArray, "k", "t"));
    Expect(kType, JNI_JSON_ObjAddKeyValueInt(pstArray, "k", 1));
    Expect(kType, JNI_JSON_ObjAddKeyValueBool(pstArray, "k", 1));
    Expect(kType, JNI_JSON_ObjAddKeyValueDouble(pstArray, "k", 1));
    Expect(kType, JNI_JSON_ObjAddKeyValueIntToString(pstArray, "k", 1));
    EXPECT_EQ(stWorld.stAllocs.Live(), uiLive) << "what could not be attached is freed";
    EXPECT_EQ(JNI_JSON_ObjGetIntEx(pstValue), 1) << "a given value stays the caller's";
}

TEST_F(Json, AddersWithoutMemoryFreeTheirValue) {
    json_object *pstObj = Keep(JNI_JSON_ObjNewObj());
    const size_t uiLive = stWorld.stAllocs.Live();
    const std::vector<uint32_t (*)(json_object *)> apfnAdd = {
        [](json_object *pst) { return JNI_JSON_ObjAddKeyValueString(pst, "k", "t"); },
        [](json_object *pst) { return JNI_JSON_ObjAddKeyValueInt(pst, "k", 1); },
        [](json_object *pst) { return JNI_JSON_ObjAddKeyValueBool(pst, "k", 1); },
        [](json_object *pst) { return JNI_JSON_ObjAddKeyValueDouble(pst, "k", 1); },
        [](json_object *pst) { return JNI_JSON_ObjAddKeyValueIntToString(pst, "k", 1); },
    };
    for (const auto pfnAdd : apfnAdd) {
        // First the value can't be made, then its key can't be attached.
        for (const uint32_t uiCode : {kValue, kObject}) {
            stWorld.Plan({Op::kAlloc, uiCode == kValue ? 1u : 2u, false});
            Expect(uiCode, pfnAdd(pstObj));
            EXPECT_EQ(stWorld.stAllocs.Live(), uiLive);
            stWorld.Plan({});
        }
    }
    EXPECT_EQ(Print(pstObj), "{ }");
}

TEST_F(Json, ArrayAdd) {
    json_object *pstArray = Keep(JNI_JSON_ObjNewArray());
    Expect(0, JNI_JSON_ObjArrayAdd(pstArray, JNI_JSON_ObjNewInt(1)));
    Expect(0, JNI_JSON_ObjArrayAdd(pstArray, JNI_JSON_ObjNewString("t")));
    EXPECT_EQ(Print(pstArray), "[ 1, \"t\" ]");
    json_object *pstElement = Keep(JNI_JSON_ObjNewInt(3));
    Expect(kType, JNI_JSON_ObjArrayAdd(Keep(JNI_JSON_ObjNewObj()), pstElement));
    EXPECT_EQ(JNI_JSON_ObjArrayAdd(nullptr, pstElement), 0u);
    ExpectRecorded(kNull);
    EXPECT_EQ(JNI_JSON_ObjArrayAdd(pstArray, nullptr), 0u);
    ExpectRecorded(kNull);
    EXPECT_EQ(Print(pstArray), "[ 1, \"t\" ]");
}

TEST_F(Json, ArrayThatCannotGrowRefuses) {
    json_object *pstArray = Keep(JNI_JSON_ObjNewArray());
    json_object *pstElement = JNI_JSON_ObjNewInt(0);
    uint32_t uiAdded = 0;
    stWorld.Plan({Op::kAlloc, 1, true});
    // Room for some elements is there from the start.
    while (uiAdded < 1000 && JNI_JSON_ObjArrayAdd(pstArray, pstElement) == 0) {
        ++uiAdded;
        stWorld.Plan({});
        pstElement = JNI_JSON_ObjNewInt(0);
        stWorld.Plan({Op::kAlloc, 1, true});
    }
    stWorld.Plan({});
    EXPECT_LT(uiAdded, 1000u);
    ExpectRecorded(kObject);
    JNI_JSON_ObjPut(pstElement);
    uint32_t uiLen = 0;
    EXPECT_EQ(JNI_JSON_ObjGetArrayLen(pstArray, &uiLen), 0u);
    EXPECT_EQ(uiLen, uiAdded);
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

// The JSON layer: getting values out, by type and by key.

#include <cstring>
#include <limits>
#include <string>

#include "unit/core/json_fixture.h"

namespace wap::test {
namespace {

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
    ASSERT_EQ(stPlatform.astFaults.size(), 2u) << "where it is found, and where it is passed on";
    EXPECT_LT(stPlatform.astFaults[0].uiLine, stPlatform.astFaults[1].uiLine);
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

}  // namespace
}  // namespace wap::test

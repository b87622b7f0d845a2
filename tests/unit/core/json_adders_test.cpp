// The JSON layer: making values and putting them together.

#include <string>
#include <vector>

#include "unit/core/json_fixture.h"

namespace wap::test {
namespace {

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

}  // namespace
}  // namespace wap::test

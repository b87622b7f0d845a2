// Results as JSON: item tables, composed answers, fault texts and the runtime's description.
#include <cstring>
#include <string>

#include "common/answers.h"
#include "common/jni_common.h"
#include "support/entries.h"
#include "support/expect.h"

namespace wap::test {
namespace {

class ComposeTest : public BridgeTest {
  protected:
    /// What the items make of an empty object.
    std::string Printed(const std::vector<JsonItem> &astItems) {
        json_object *pstRoot = JNI_JSON_ObjNewObj();
        VT_JNI_COMMON_Json_Obj_AddItems(pstRoot, astItems.data(),
                                        static_cast<uint32_t>(astItems.size()));
        const char *pcText = JNI_JSON_ObjToJsonString(pstRoot);
        std::string sText = pcText == nullptr ? "(no text)" : pcText;
        JNI_JSON_ObjPut(pstRoot);
        return sText;
    }

    static uintptr_t At(const void *pvValue) { return reinterpret_cast<uintptr_t>(pvValue); }
};

TEST_F(ComposeTest, IntegerItems) {
    EXPECT_EQ(Printed({{"A", 7, 0, 0},
                       {"B", static_cast<uintptr_t>(static_cast<intptr_t>(-5)), 0, 0},
                       {"C", static_cast<uintptr_t>(0x80000000u), 0, 0},
                       {"D", 0x7FFFFFFF, 0, 2}}),
              "{ \"A\": 7, \"B\": -5, \"C\": -2147483648, \"D\": 2147483647 }");
}

TEST_F(ComposeTest, BooleanItems) {
    EXPECT_EQ(Printed({{"Yes", 1, 1, 0}, {"No", 0, 1, 0}}), "{ \"Yes\": true, \"No\": false }");
}

TEST_F(ComposeTest, TextItems) {
    EXPECT_EQ(Printed({{"A", At("one"), 2, 0}, {"B", At("two"), 2, 1}, {"C", At("three"), 2, 2}}),
              "{ \"A\": \"one\", \"B\": \"two\", \"C\": \"three\" }");
}

TEST_F(ComposeTest, EmptyTextFollowsThePolicy) {
    EXPECT_EQ(Printed({{"Text", At(""), 2, 0},
                       {"Out", At(""), 2, 1},
                       {"Null", At(""), 2, 2},
                       {"OutToo", At(""), 2, 3}}),
              "{ \"Text\": \"\", \"Null\": null }");
}

TEST_F(ComposeTest, TextPointerItems) {
    const char *pcOne = "one";
    const char *pcTwo = "two";
    const char *pcThree = "three";
    EXPECT_EQ(
        Printed({{"A", At(&pcOne), 3, 0}, {"B", At(&pcTwo), 3, 1}, {"C", At(&pcThree), 3, 2}}),
        "{ \"A\": \"one\", \"B\": \"two\", \"C\": \"three\" }");
}

TEST_F(ComposeTest, EmptyTextBehindAPointerFollowsThePolicy) {
    const char *pcEmpty = "";
    EXPECT_EQ(Printed({{"Text", At(&pcEmpty), 3, 0},
                       {"Out", At(&pcEmpty), 3, 1},
                       {"Null", At(&pcEmpty), 3, 2},
                       {"OutToo", At(&pcEmpty), 3, 0xFFFFFFFF}}),
              "{ \"Text\": \"\", \"Null\": null }");
}

TEST_F(ComposeTest, NullTextBehindAPointerIsEmptyWhateverThePolicy) {
    const char *pcNone = nullptr;
    EXPECT_EQ(
        Printed({{"A", At(&pcNone), 3, 0}, {"B", At(&pcNone), 3, 1}, {"C", At(&pcNone), 3, 2}}),
        "{ \"A\": \"\", \"B\": \"\", \"C\": \"\" }");
}

TEST_F(ComposeTest, ObjectItemsBelongToTheParent) {
    json_object *pstInner = JNI_JSON_ObjNewObj();
    ASSERT_EQ(JNI_JSON_ObjAddKeyValueInt(pstInner, "In", 3), 0u);
    json_object *pstList = JNI_JSON_ObjNewArray();
    ASSERT_EQ(JNI_JSON_ObjArrayAdd(pstList, JNI_JSON_ObjNewInt(4)), 0u);
    EXPECT_EQ(Printed({{"Obj", At(pstInner), 4, 0}, {"List", At(pstList), 4, 2}}),
              "{ \"Obj\": { \"In\": 3 }, \"List\": [ 4 ] }");
    EXPECT_EQ(stWorld.stAllocs.Live(), 0u);
}

TEST_F(ComposeTest, ObjectThatCannotBeAttachedIsReleased) {
    json_object *pstNoObject = JNI_JSON_ObjNewArray();
    const size_t uiBefore = stWorld.stAllocs.Live();
    const JsonItem stItem = {"Obj", At(JNI_JSON_ObjNewObj()), 4, 0};
    VT_JNI_COMMON_Json_Obj_AddItems(pstNoObject, &stItem, 1);
    EXPECT_EQ(stWorld.stAllocs.Live(), uiBefore);
    EXPECT_TRUE(HasFault(stPlatform, 0xF7100007));
    JNI_JSON_ObjPut(pstNoObject);
}

TEST_F(ComposeTest, IntegerTextItems) {
    const int32_t aiValues[] = {0, -1, 2147483647, -2147483647 - 1};
    EXPECT_EQ(Printed({{"A", At(&aiValues[0]), 6, 0},
                       {"B", At(&aiValues[1]), 6, 1},
                       {"C", At(&aiValues[2]), 6, 2},
                       {"D", At(&aiValues[3]), 6, 0}}),
              "{ \"A\": \"0\", \"B\": \"-1\", \"C\": \"2147483647\", \"D\": \"-2147483648\" }");
}

TEST_F(ComposeTest, IntegerTextAdderOnItsOwn) {
    const int32_t iValue = 12;
    json_object *pstRoot = JNI_JSON_ObjNewObj();
    EXPECT_EQ(VT_JNI_COMMON_Json_Obj_AddIntString(pstRoot, "A", At(&iValue), 2), 0u);
    EXPECT_STREQ(JNI_JSON_ObjToJsonString(pstRoot), "{ \"A\": \"12\" }");
    JNI_JSON_ObjPut(pstRoot);
}

TEST_F(ComposeTest, TypesWithoutAnActionAreSkipped) {
    const uintptr_t ulNowhere = 1;
    EXPECT_EQ(Printed({{"First", 1, 0, 0},
                       {"Five", ulNowhere, 5, 0},
                       {"Seven", ulNowhere, 7, 0},
                       {"Eight", ulNowhere, 8, 0},
                       {"Nine", ulNowhere, 9, 0},
                       {"Huge", ulNowhere, 0xFFFFFFFF, 0},
                       {"Top", ulNowhere, 0x80000000, 0},
                       {"Last", 2, 0, 0}}),
              "{ \"First\": 1, \"Last\": 2 }");
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(ComposeTest, FailedItemsDoNotStopTheOthers) {
    EXPECT_EQ(Printed({{"First", 1, 0, 0},
                       {"Text", 0, 2, 0},
                       {"Ref", 0, 3, 0},
                       {"Obj", 0, 4, 0},
                       {"IntText", 0, 6, 0},
                       {nullptr, 5, 0, 0},
                       {"Last", 2, 0, 0}}),
              "{ \"First\": 1, \"Last\": 2 }");
    EXPECT_GE(stPlatform.astFaults.size(), 5u);
    EXPECT_TRUE(HasFault(stPlatform, 0xF7100008));
}

TEST_F(ComposeTest, ItemsKeepTheirOrderAndTheCountIsKept) {
    const JsonItem astItems[] = {{"Z", 1, 0, 0}, {"A", 2, 0, 0}, {"M", 3, 0, 0}};
    json_object *pstRoot = JNI_JSON_ObjNewObj();
    VT_JNI_COMMON_Json_Obj_AddItems(pstRoot, astItems, 0);
    EXPECT_STREQ(JNI_JSON_ObjToJsonString(pstRoot), "{ }");
    VT_JNI_COMMON_Json_Obj_AddItems(pstRoot, astItems, 2);
    EXPECT_STREQ(JNI_JSON_ObjToJsonString(pstRoot), "{ \"Z\": 1, \"A\": 2 }");
    JNI_JSON_ObjPut(pstRoot);
}

TEST_F(ComposeTest, ItemLayoutIsFourWords) {
    EXPECT_EQ(sizeof(JsonItem), 2 * sizeof(void *) + 8);
    JsonItem stItem = {"K", 0x11, 0x22, 0x33};
    const char *pcRaw = reinterpret_cast<const char *>(&stItem);
    EXPECT_EQ(std::string(pcRaw + 2 * sizeof(void *), 8), Word(0x22) + Word(0x33));
    EXPECT_EQ(std::string(pcRaw + sizeof(void *), 4), Word(0x11));
}

// ---- composed answers ----

TEST_F(ComposeTest, SuccessCarriesTheItems) {
    const JsonItem astItems[] = {{"Name", At("wan"), 2, 0}, {"Up", 1, 1, 0}};
    char acOut[64] = {};
    EXPECT_EQ(JNI_COMMON_ComposeResult2JString(astItems, 2, acOut, sizeof(acOut), 0), 0u);
    EXPECT_STREQ(acOut, "{ \"Result\": 0, \"Name\": \"wan\", \"Up\": true }");
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(ComposeTest, FailureCarriesTheResultOnly) {
    const JsonItem astItems[] = {{"Name", At("wan"), 2, 0}};
    for (const int32_t iResult : {1, -2, 2147483647}) {
        char acOut[64] = {};
        EXPECT_EQ(JNI_COMMON_ComposeResult2JString(astItems, 1, acOut, sizeof(acOut), iResult), 0u);
        EXPECT_EQ(std::string(acOut), "{ \"Result\": " + std::to_string(iResult) + " }");
    }
}

TEST_F(ComposeTest, NoItemsAreNeeded) {
    char acOut[64] = {};
    EXPECT_EQ(JNI_COMMON_ComposeResult2JString(nullptr, 0, acOut, sizeof(acOut), 0), 0u);
    EXPECT_STREQ(acOut, "{ \"Result\": 0 }");
}

TEST_F(ComposeTest, LoneFaultFitsSeventeenBytes) {
    char acOut[18];
    memset(acOut, 'x', sizeof(acOut));
    EXPECT_EQ(JNI_COMMON_ComposeResult2JString(nullptr, 0, acOut, 17, -1), 0u);
    EXPECT_EQ(std::string(acOut, 18), std::string("{ \"Result\": -1 }\0x", 18));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(ComposeTest, LoneFaultDoesNotFitSixteenBytes) {
    char acOut[17];
    memset(acOut, 'x', sizeof(acOut));
    EXPECT_EQ(JNI_COMMON_ComposeResult2JString(nullptr, 0, acOut, 16, -1), 1u);
    EXPECT_EQ(std::string(acOut, 17), std::string(17, 'x'));
    ASSERT_EQ(stPlatform.astFaults.size(), 1u);
    EXPECT_EQ(stPlatform.astFaults[0].uiCode, 1u);
    EXPECT_EQ(stPlatform.astFaults[0].auiArgs, (Args{16, 16, 0, 0}));
}

TEST_F(ComposeTest, AnswerMustFitWithItsZero) {
    const JsonItem astItems[] = {{"A", At("0123456789"), 2, 0}};
    const std::string sExpected = "{ \"Result\": 0, \"A\": \"0123456789\" }";
    ASSERT_EQ(sExpected.size(), 34u);
    std::string sOut(36, 'x');
    EXPECT_EQ(JNI_COMMON_ComposeResult2JString(astItems, 1, sOut.data(), 34, 0), 1u);
    EXPECT_EQ(sOut, std::string(36, 'x'));
    ASSERT_EQ(stPlatform.astFaults.size(), 1u);
    EXPECT_EQ(stPlatform.astFaults[0].auiArgs, (Args{34, 34, 0, 0}));
    EXPECT_EQ(JNI_COMMON_ComposeResult2JString(astItems, 1, sOut.data(), 35, 0), 0u);
    EXPECT_EQ(sOut, sExpected + std::string("\0x", 2));
}

TEST_F(ComposeTest, NoRoomAtAll) {
    char cOut = 'x';
    EXPECT_EQ(JNI_COMMON_ComposeResult2JString(nullptr, 0, &cOut, 0, 0), 1u);
    EXPECT_EQ(cOut, 'x');
    EXPECT_EQ(JNI_COMMON_ComposeResult2JString(nullptr, 0, nullptr, 100, 0), 1u);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{1, 1}));
}

TEST_F(ComposeTest, NoObjectIsMinusOne) {
    char acOut[32] = "before";
    stWorld.Plan({Op::kAlloc, 1, true});
    EXPECT_EQ(JNI_COMMON_ComposeResult2JString(nullptr, 0, acOut, sizeof(acOut), 0), kMinusOne);
    EXPECT_STREQ(acOut, "before");
    ASSERT_FALSE(stPlatform.astFaults.empty());
    EXPECT_EQ(stPlatform.astFaults.back().uiCode, kMinusOne);
}

// Wherever memory runs out: a whole answer, or a code, a record and an untouched buffer.
TEST_F(ComposeTest, MemoryRunningOutNeverGivesHalfAnAnswer) {
    bool bNoText = false;
    uint32_t uiAt = 0;
    for (uint32_t uiResult = 1; uiResult != 0;) {
        ASSERT_LT(++uiAt, 100u);
        char acOut[64] = "before";
        stWorld.ClearRecords();
        stWorld.Plan({Op::kAlloc, uiAt, true});
        uiResult = JNI_COMMON_ComposeResult2JString(nullptr, 0, acOut, sizeof(acOut), -1);
        stWorld.Plan({});
        EXPECT_STREQ(acOut, uiResult == 0 ? "{ \"Result\": -1 }" : "before") << uiAt;
        EXPECT_EQ(stWorld.stAllocs.Live(), 0u) << uiAt;
        if (uiResult != 0) {
            EXPECT_TRUE(uiResult == 1 || uiResult == kMinusOne) << uiResult;
            EXPECT_TRUE(HasFault(stPlatform, uiResult)) << uiAt;
        }
        bNoText = bNoText || uiResult == 1;
    }
    EXPECT_GT(uiAt, 2u);
    EXPECT_TRUE(bNoText);
}

// ---- fault texts ----

TEST_F(ComposeTest, FaultTextHoldsTheCodeAndIsTraced) {
    EXPECT_EQ(stEnv.Utf8Of(OSGI_JNI_FaultStrBuild(&stEnv, -1)), "{ \"Result\": -1 }");
    EXPECT_EQ(stEnv.Utf8Of(OSGI_JNI_FaultStrBuild(&stEnv, -2147483647 - 1)),
              "{ \"Result\": -2147483648 }");
    ASSERT_EQ(stPlatform.astTraces.size(), 2u);
    EXPECT_EQ(stPlatform.astTraces[0].sText, "pcJsonStr:{ \"Result\": -1 }\r\n");
    EXPECT_EQ(stPlatform.astTraces[0].sFile, "jni_common.cpp");
    EXPECT_EQ(stPlatform.astTraces[0].uiMid, 249u);
    EXPECT_EQ(stPlatform.astTraces[0].uiZero, 0u);
    EXPECT_EQ(stPlatform.astTraces[1].sText, "pcJsonStr:{ \"Result\": -2147483648 }\r\n");
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(ComposeTest, FailedWorkerAnswersByItsMethod) {
    const TextWorker pfnFails = [](char *, uint32_t) -> uint32_t { return 0xF7700005; };
    EXPECT_EQ(stEnv.Utf8Of(TextAnswer<8>(&stEnv, {"x.cpp", 7}, pfnFails, OnFailure::kWorkersCode)),
              "{ \"Result\": -143654907 }");
    EXPECT_EQ(stEnv.Utf8Of(TextAnswer<8>(&stEnv, {"x.cpp", 7}, pfnFails)), "{ \"Result\": -1 }");
    ASSERT_EQ(stPlatform.astFaults.size(), 2u);
    for (const FaultRecord &stFault : stPlatform.astFaults) {
        EXPECT_EQ(stFault.sFile, "x.cpp");
        EXPECT_EQ(stFault.uiLine, 7u);
        EXPECT_EQ(stFault.uiCode, 0xF7700005u);
    }
}

TEST_F(ComposeTest, FaultTextWithoutAnObjectIsNull) {
    stWorld.Plan({Op::kAlloc, 1, true});
    EXPECT_EQ(OSGI_JNI_FaultStrBuild(&stEnv, 5), nullptr);
    EXPECT_EQ(stWorld.Count(Op::kJni), 0u);
    EXPECT_TRUE(stPlatform.astTraces.empty());
    ASSERT_FALSE(stPlatform.astFaults.empty());
    EXPECT_EQ(stPlatform.astFaults.back().uiCode, kMinusOne);
}

TEST_F(ComposeTest, FaultTextSurvivesEveryShortageOfMemory) {
    uint32_t uiAt = 0;
    for (bool bMade = false; !bMade;) {
        ASSERT_LT(++uiAt, 100u);
        stWorld.ClearRecords();
        stWorld.Plan({Op::kAlloc, uiAt, true});
        const jstring jText = OSGI_JNI_FaultStrBuild(&stEnv, -1);
        stWorld.Plan({});
        bMade = jText != nullptr;
        if (bMade) {
            EXPECT_EQ(stEnv.Utf8Of(jText), "{ \"Result\": -1 }");
        } else {
            EXPECT_TRUE(HasFault(stPlatform, kMinusOne)) << uiAt;
            EXPECT_TRUE(stPlatform.astTraces.empty()) << uiAt;
        }
        EXPECT_EQ(stWorld.stAllocs.Live(), 0u) << uiAt;
    }
    EXPECT_GT(uiAt, 2u);
}

TEST_F(ComposeTest, FaultTextSurvivesEveryFailureOfJava) {
    stWorld.Plan({});
    EXPECT_EQ(stEnv.Utf8Of(OSGI_JNI_FaultStrBuild(&stEnv, -1)), "{ \"Result\": -1 }");
    const uint32_t uiCalls = stWorld.Count(Op::kJni);
    ASSERT_GT(uiCalls, 0u);
    uint32_t uiNulls = 0;
    for (uint32_t uiAt = 1; uiAt <= uiCalls; ++uiAt) {
        stWorld.Plan({Op::kJni, uiAt, true});
        const jstring jText = OSGI_JNI_FaultStrBuild(&stEnv, -1);
        stWorld.Plan({});
        uiNulls += jText == nullptr ? 1 : 0;
        EXPECT_TRUE(jText == nullptr || stEnv.Utf8Of(jText) == "{ \"Result\": -1 }") << uiAt;
        EXPECT_FALSE(stEnv.bPending) << uiAt;
        EXPECT_EQ(stWorld.stAllocs.Live(), 0u) << uiAt;
    }
    EXPECT_GT(uiNulls, 0u);
}

// ---- the runtime's description ----

TEST_F(ComposeTest, RuntimeNamesBecomeAnObject) {
    RuntimeNames stNames = {};
    memcpy(stNames.acName, "jam", 4);
    memcpy(stNames.acVersion, "1.5", 4);
    json_object *pstOut = nullptr;
    ASSERT_EQ(VT_OSGI_JNI_BuildJsonObj(&stNames, &pstOut, 0), 0u);
    EXPECT_STREQ(JNI_JSON_ObjToJsonString(pstOut),
                 "{ \"Result\": 0, \"Name\": \"jam\", \"Version\": \"1.5\", \"Vendor\": \"\" }");
    JNI_JSON_ObjPut(pstOut);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(ComposeTest, RuntimeNamesWithAResultOfFailure) {
    const RuntimeNames stNames = {};
    json_object *pstOut = nullptr;
    ASSERT_EQ(VT_OSGI_JNI_BuildJsonObj(&stNames, &pstOut, -1), 0u);
    EXPECT_STREQ(JNI_JSON_ObjToJsonString(pstOut),
                 "{ \"Result\": -1, \"Name\": \"\", \"Version\": \"\", \"Vendor\": \"\" }");
    JNI_JSON_ObjPut(pstOut);
}

TEST_F(ComposeTest, RuntimeNamesEndAtTheirFields) {
    RuntimeNames stNames;
    memset(stNames.acName, 'N', sizeof(stNames.acName));
    memset(stNames.acVersion, 'V', sizeof(stNames.acVersion));
    memset(stNames.acVendor, 'W', sizeof(stNames.acVendor));
    json_object *pstOut = nullptr;
    ASSERT_EQ(VT_OSGI_JNI_BuildJsonObj(&stNames, &pstOut, 0), 0u);
    EXPECT_EQ(JNI_JSON_ObjToJsonString(pstOut),
              "{ \"Result\": 0, \"Name\": \"" + std::string(32, 'N') + "\", \"Version\": \"" +
                  std::string(32, 'V') + "\", \"Vendor\": \"" + std::string(32, 'W') + "\" }");
    JNI_JSON_ObjPut(pstOut);
}

TEST_F(ComposeTest, RuntimeNamesWithoutMemory) {
    RuntimeNames stNames = {};
    memcpy(stNames.acName, "jam", 4);
    uint32_t uiAt = 0;
    bool bMinusOne = false;
    for (uint32_t uiResult = 1; uiResult != 0;) {
        ASSERT_LT(++uiAt, 100u);
        json_object *pstOut = nullptr;
        stWorld.ClearRecords();
        stWorld.Plan({Op::kAlloc, uiAt, true});
        uiResult = VT_OSGI_JNI_BuildJsonObj(&stNames, &pstOut, 0);
        stWorld.Plan({});
        if (uiAt == 1) {
            EXPECT_EQ(uiResult, 0xF7100000u);
        }
        if (uiResult == 0) {
            EXPECT_STREQ(
                JNI_JSON_ObjToJsonString(pstOut),
                "{ \"Result\": 0, \"Name\": \"jam\", \"Version\": \"\", \"Vendor\": \"\" }");
            JNI_JSON_ObjPut(pstOut);
        } else {
            EXPECT_EQ(pstOut, nullptr);
            EXPECT_TRUE(uiResult == 0xF7100000 || uiResult == kMinusOne) << uiResult;
            EXPECT_TRUE(HasFault(stPlatform, uiResult)) << uiAt;
            bMinusOne = bMinusOne || uiResult == kMinusOne;
        }
        EXPECT_EQ(stWorld.stAllocs.Live(), 0u) << uiAt;
    }
    EXPECT_TRUE(bMinusOne);
}

TEST_F(ComposeTest, RuntimeNamesNeedBothArguments) {
    const RuntimeNames stNames = {};
    json_object *pstOut = nullptr;
    EXPECT_EQ(VT_OSGI_JNI_BuildJsonObj(nullptr, &pstOut, 0), kMinusOne);
    EXPECT_EQ(pstOut, nullptr);
    EXPECT_EQ(VT_OSGI_JNI_BuildJsonObj(&stNames, nullptr, 0), kMinusOne);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kMinusOne, kMinusOne}));
}

// ---- tables of texts ----

TEST_F(ComposeTest, NullCheckFindsAnyText) {
    const char *apcTexts[] = {nullptr, "", "02:00:00:00:00:01", ""};
    EXPECT_EQ(VT_JNI_MacfltNullCheck(apcTexts, 0), 1u);
    EXPECT_EQ(VT_JNI_MacfltNullCheck(apcTexts, 1), 1u);
    EXPECT_EQ(VT_JNI_MacfltNullCheck(apcTexts, 2), 1u);
    EXPECT_EQ(VT_JNI_MacfltNullCheck(apcTexts, 3), 0u);
    EXPECT_EQ(VT_JNI_MacfltNullCheck(apcTexts, 4), 0u);
    EXPECT_EQ(VT_JNI_MacfltNullCheck(apcTexts + 2, 1), 0u);
    EXPECT_EQ(VT_JNI_MacfltNullCheck(nullptr, 0), 1u);
    EXPECT_EQ(VT_JNI_MacfltNullCheck(nullptr, 3), 1u);
}

}  // namespace
}  // namespace wap::test

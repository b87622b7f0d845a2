// Composing, parsing and printing JSON under every single fault.

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "common/jni_common.h"
#include "common/jni_json_wrap.h"
#include "common/json_parse.h"
#include "faults/fault_sweep.h"
#include "support/expect.h"

namespace wap::test {

namespace {

struct Composed {
    std::vector<JsonItem> astItems;
    json_object *pstList = nullptr;
    char acOut[1024] = {};
    uint32_t uiStatus = 0;
};

const char *const g_pcReference = "by reference";
const int32_t g_iNumber = -2147483647 - 1;

uintptr_t Value(const void *pvAt) {
    return reinterpret_cast<uintptr_t>(pvAt);
}

Subject ComposeSubject(int32_t iResult) {
    auto pstState = std::make_shared<Composed>();
    Subject stSubject;
    stSubject.sName = "composing result " + std::to_string(iResult);
    stSubject.fnFurnish = [=](World &) {
        pstState->pstList = JNI_JSON_ObjNewArray();
        JNI_JSON_ObjArrayAdd(pstState->pstList, JNI_JSON_ObjNewInt(12));
        pstState->astItems = {
            {"Int", static_cast<uintptr_t>(-7), kItemInt, 0},
            {"Bool", 1, kItemBool, 0},
            {"Text", Value("a text that is longer than what json-c starts with"), kItemText, 0},
            {"Ref", Value(&g_pcReference), kItemTextRef, 0},
            {"Number", Value(&g_iNumber), kItemIntText, 0},
            {"Null", Value(""), kItemText, kEmptyAsNull},
            {"Out", Value(""), kItemText, kEmptyLeftOut},
            {"None", 0, 5, 0},
            {"List", Value(pstState->pstList), kItemObject, 0},
        };
        std::strcpy(pstState->acOut, "untouched");
    };
    stSubject.fnCall = [=](FakeJni &) {
        pstState->uiStatus = JNI_COMMON_ComposeResult2JString(
            pstState->astItems.data(), static_cast<uint32_t>(pstState->astItems.size()),
            pstState->acOut, sizeof(pstState->acOut), iResult);
    };
    stSubject.fnOutcome = [=](FakeJni &) {
        // The items are taken over only when they are looked at.
        if (iResult != 0 || pstState->uiStatus == kMinusOne) {
            JNI_JSON_ObjPut(pstState->pstList);
        }
        return std::to_string(static_cast<int32_t>(pstState->uiStatus)) + " " + pstState->acOut;
    };
    return stSubject;
}

const std::vector<std::string> &ComposedMembers() {
    static const std::vector<std::string> s_asMembers = {
        "\"Int\": -7",
        "\"Bool\": true",
        "\"Text\": \"a text that is longer than what json-c starts with\"",
        "\"Ref\": \"by reference\"",
        "\"Number\": \"-2147483648\"",
        "\"Null\": null",
        "\"List\": [ 12 ]",
    };
    return s_asMembers;
}

TEST(JsonFaults, ComposeWithItems) {
    Subject stSubject = ComposeSubject(0);
    const std::string sHead = "0 { \"Result\": 0";
    const auto Texts = [&](size_t uiMissing) {
        std::vector<std::string> asMembers;
        for (const std::string &sMember : ComposedMembers()) {
            asMembers.push_back(", " + sMember);
        }
        return WithSomeLeftOut(sHead, asMembers, "", " }", uiMissing);
    };
    stSubject.sGood = *Texts(0).begin();
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) {
        // An item that fails does not stop the others.
        std::set<std::string> asAllowed = Texts(stPlan.bForever ? ComposedMembers().size() : 1);
        asAllowed.insert({"1 untouched", "-1 untouched"});
        return asAllowed;
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_GT(CountOf(auiCounts, Op::kAlloc), 15u);
}

TEST(JsonFaults, ComposeFailure) {
    Subject stSubject = ComposeSubject(-5);
    stSubject.sGood = "0 { \"Result\": -5 }";
    stSubject.fnAllowed = [](const FaultPlan &) -> std::set<std::string> {
        return {"1 untouched", "-1 untouched"};
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_GT(CountOf(auiCounts, Op::kAlloc), 3u);
}

TEST(JsonFaults, FaultText) {
    auto pstText = std::make_shared<jstring>();
    Subject stSubject;
    stSubject.sName = "fault text";
    stSubject.fnCall = [=](FakeJni &stEnv) { *pstText = OSGI_JNI_FaultStrBuild(&stEnv, -77); };
    stSubject.fnOutcome = [=](FakeJni &stEnv) { return stEnv.Utf8Of(*pstText).value_or("null"); };
    stSubject.sGood = "{ \"Result\": -77 }";
    stSubject.fnAllowed = [](const FaultPlan &) -> std::set<std::string> { return {"null"}; };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_GT(CountOf(auiCounts, Op::kAlloc), 3u);
    EXPECT_EQ(CountOf(auiCounts, Op::kJni), 6u);
}

/// Prints a value, and releases it.
std::string PrintAndPut(json_object *pstValue) {
    const char *pcText = JNI_JSON_ObjToJsonString(pstValue);
    std::string sText = pcText == nullptr ? "not printed" : pcText;
    JNI_JSON_ObjPut(pstValue);
    return sText;
}

TEST(JsonFaults, RuntimeNames) {
    struct State {
        RuntimeNames stNames{};
        json_object *pstOut = nullptr;
        uint32_t uiStatus = 0;
    };
    auto pstState = std::make_shared<State>();
    std::strcpy(pstState->stNames.acName, "Runtime");
    std::strcpy(pstState->stNames.acVersion, "1.8");
    std::memset(pstState->stNames.acVendor, 'v', sizeof(pstState->stNames.acVendor));
    Subject stSubject;
    stSubject.sName = "names of a runtime";
    stSubject.fnFurnish = [=](World &) { pstState->pstOut = nullptr; };
    stSubject.fnCall = [=](FakeJni &) {
        pstState->uiStatus = VT_OSGI_JNI_BuildJsonObj(&pstState->stNames, &pstState->pstOut, 0);
    };
    stSubject.fnOutcome = [=](FakeJni &) {
        return std::to_string(pstState->uiStatus) + " " +
               (pstState->pstOut == nullptr ? "nothing" : PrintAndPut(pstState->pstOut));
    };
    stSubject.sGood =
        "0 { \"Result\": 0, \"Name\": \"Runtime\", \"Version\": \"1.8\", "
        "\"Vendor\": \"" +
        std::string(32, 'v') + "\" }";
    stSubject.fnAllowed = [](const FaultPlan &) -> std::set<std::string> {
        return {std::to_string(0xF7100000u) + " nothing", std::to_string(kMinusOne) + " nothing"};
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_GT(CountOf(auiCounts, Op::kAlloc), 8u);
}

TEST(JsonFaults, Print) {
    auto pstRoot = std::make_shared<json_object *>();
    auto pstText = std::make_shared<std::string>();
    const std::string sText =
        "{ \"a key of more than thirty-two characters\": [ 1, -2, 3.25, true, null, { } ], "
        "\"text\": \"quote \\\" slash \\/ tab \\t end\", \"big\": 9223372036854775807, "
        "\"inner\": { \"list\": [ ], \"more\": \"" +
        std::string(300, 'm') + "\" } }";
    Subject stSubject;
    stSubject.sName = "printing";
    stSubject.fnFurnish = [=](World &) {
        *pstRoot = JSON_Parse(sText.c_str(), 1);
        ASSERT_NE(*pstRoot, nullptr);
    };
    stSubject.fnCall = [=](FakeJni &) {
        const char *pcText = JNI_JSON_ObjToJsonString(*pstRoot);
        *pstText = pcText == nullptr ? "null" : pcText;
    };
    stSubject.fnOutcome = [=](FakeJni &) {
        JNI_JSON_ObjPut(*pstRoot);
        return *pstText;
    };
    stSubject.sGood = sText;
    stSubject.fnAllowed = [](const FaultPlan &) -> std::set<std::string> { return {"null"}; };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_GT(CountOf(auiCounts, Op::kAlloc), 5u);
}

/// Parses under every single fault: the value is whole, or there is none.
OpCounts SweepParse(const std::string &sText) {
    auto pstRoot = std::make_shared<json_object *>();
    Subject stSubject;
    stSubject.sName = "parsing";
    stSubject.fnCall = [=](FakeJni &) { *pstRoot = JSON_Parse(sText.c_str(), 1); };
    stSubject.fnOutcome = [=](FakeJni &) {
        return *pstRoot == nullptr ? "null" : PrintAndPut(*pstRoot);
    };
    stSubject.sGood = sText;
    // json-c gives memory of an array back when it is complete, and need not succeed in that.
    stSubject.fnAllowed = [=](const FaultPlan &) -> std::set<std::string> {
        return {"null", sText};
    };
    return SweepFaults(stSubject);
}

TEST(JsonFaults, Parse) {
    const OpCounts auiCounts = SweepParse(
        "{ \"list\": [ 1, 2.5, \"three: 3\", true, null, [ ] ], \"inner\": { \"key\": \"value\", "
        "\"of\": { \"of\": { \"it\": -1 } } }, \"no value\": null }");
    EXPECT_GT(CountOf(auiCounts, Op::kAlloc), 30u);
}

/// An array of 70 elements, each a number with a text before and behind it.
std::string LongList(const std::string &sBefore, const std::string &sBehind) {
    std::string sList = "[ ";
    for (int i = 0; i < 70; ++i) {
        sList.append(i == 0 ? "" : ", ").append(sBefore).append(std::to_string(i)).append(sBehind);
    }
    return sList + " ]";
}

// json-c by itself takes an array that can't grow for the end of everything, and forgets the
// element.
TEST(JsonFaults, ParseListThatCannotGrow) {
    const std::string asTexts[] = {
        "{ \"list\": " + LongList("", "") + " }",
        "{ \"list\": " + LongList("", "") + ", \"b\": \"c\" }",
        "{ \"list\": " + LongList("{ \"i\": ", " }") + " }",
        "{ \"list\": [ " + LongList("", "") + ", [ ] ], \"b\": \"c\" }",
        LongList("", ""),
        LongList("{ \"i\": ", " }"),
    };
    const std::pair<Grammar, Secrecy> aeKinds[] = {{Grammar::kStrict, Secrecy::kPlain},
                                                   {Grammar::kStrict, Secrecy::kSecret},
                                                   {Grammar::kLenient, Secrecy::kPlain},
                                                   {Grammar::kLenient, Secrecy::kSecret}};
    for (const std::string &sText : asTexts) {
        for (const auto &[eGrammar, eSecrecy] : aeKinds) {
            bool bDone = false;
            uint32_t uiRefused = 0;
            for (uint32_t uiAt = 1; !bDone; ++uiAt) {
                SCOPED_TRACE(sText.substr(0, 30) + std::to_string(uiAt));
                World stWorld;
                stWorld.Plan({Op::kAlloc, uiAt, false});
                json_object *pstRoot = ParseJson(WAP_SPOT, sText.c_str(), eGrammar, eSecrecy);
                bDone = stWorld.Count(Op::kAlloc) < uiAt;
                stWorld.Plan({});
                if (pstRoot == nullptr) {
                    ++uiRefused;
                } else {
                    EXPECT_EQ(PrintAndPut(pstRoot), sText);
                }
                stWorld.ExpectClean();
            }
            EXPECT_GT(uiRefused, 70u);
        }
    }
}

// Its table of members grows meanwhile, and what json-c collects of the text too.
TEST(JsonFaults, ParseLargeObject) {
    std::string sText = "{";
    for (int i = 0; i < 60; ++i) {
        sText += (i == 0 ? " \"" : ", \"") + std::string(static_cast<size_t>(i) + 1, 'k') +
                 "\": \"" + std::string(static_cast<size_t>(i) * 10, 'v') + "\"";
    }
    const OpCounts auiCounts = SweepParse(sText + " }");
    EXPECT_GT(CountOf(auiCounts, Op::kAlloc), 180u);
}

}  // namespace

}  // namespace wap::test

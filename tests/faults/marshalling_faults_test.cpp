// Java texts to native ones and back, under every single fault.

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "common/jni_base.h"
#include "faults/fault_sweep.h"

namespace wap::test {

namespace {

Subject NativeSubject(char *(*pfnConvert)(JNIEnv *, jstring)) {
    auto ppcText = std::make_shared<char *>();
    Subject stSubject;
    stSubject.sName = "to a native text";
    stSubject.fnCall = [=](FakeJni &stEnv) {
        *ppcText = pfnConvert(&stEnv, stEnv.JavaText(u"Gr\u00fc\u00dfe \U0001F600"));
    };
    stSubject.fnOutcome = [=](FakeJni &) {
        std::string sText = *ppcText == nullptr ? "null" : *ppcText;
        JNI_BASE_FreeArray2MaxIndex(ppcText.get(), 1);
        return sText;
    };
    stSubject.sGood =
        "Gr\xC3\xBC\xC3\x9F"
        "e \xF0\x9F\x98\x80";
    stSubject.fnAllowed = [](const FaultPlan &) -> std::set<std::string> { return {"null"}; };
    return stSubject;
}

TEST(MarshallingFaults, ToNative) {
    for (const auto pfnConvert : {jstring2char, jstringtochar}) {
        const OpCounts auiCounts = SweepFaults(NativeSubject(pfnConvert));
        EXPECT_EQ(CountOf(auiCounts, Op::kAlloc), 1u);
        // Class, charset, method, bytes, elements.
        EXPECT_EQ(CountOf(auiCounts, Op::kJni), 5u);
    }
}

TEST(MarshallingFaults, ToJava) {
    auto pjText = std::make_shared<jstring>();
    Subject stSubject;
    stSubject.sName = "to a Java text";
    stSubject.fnCall = [=](FakeJni &stEnv) { *pjText = char2jstring(&stEnv, "Z\xC3\xBCrich"); };
    stSubject.fnOutcome = [=](FakeJni &stEnv) { return stEnv.Utf8Of(*pjText).value_or("null"); };
    stSubject.sGood = "Z\xC3\xBCrich";
    stSubject.fnAllowed = [](const FaultPlan &) -> std::set<std::string> { return {"null"}; };
    EXPECT_EQ(CountOf(SweepFaults(stSubject), Op::kJni), 6u);
}

TEST(MarshallingFaults, JoinedArray) {
    struct State {
        char acOut[64] = {};
        uint32_t uiStatus = 0;
    };
    auto pstState = std::make_shared<State>();
    Subject stSubject;
    stSubject.sName = "joining an array";
    stSubject.fnFurnish = [=](World &) { *pstState = {}; };
    stSubject.fnCall = [=](FakeJni &stEnv) {
        const jobjectArray jTexts =
            stEnv.JavaTexts({u"one", u"", std::nullopt, u"tw\u00f6", u"three"});
        pstState->uiStatus = JNI_COMMON_GetStrFromObjArray(&stEnv, jTexts, ", ", pstState->acOut,
                                                           sizeof(pstState->acOut));
    };
    stSubject.fnOutcome = [=](FakeJni &) {
        return std::to_string(pstState->uiStatus) + " [" + pstState->acOut + "]";
    };
    const std::vector<std::string> asElements = {"one", "tw\xC3\xB6", "three"};
    stSubject.sGood = "0 [one, tw\xC3\xB6, three]";
    stSubject.fnAllowed = [&](const FaultPlan &stPlan) {
        if (stPlan.eOp == Op::kJni && stPlan.uiAt == 1) {
            // No room for local references was granted.
            return std::set<std::string>{"1 []"};
        }
        // An element that can't be had is left out, as a null one is.
        return WithSomeLeftOut("0 [", asElements, ", ", "]", stPlan.bForever ? 3 : 1);
    };
    const OpCounts auiCounts = SweepFaults(stSubject);
    EXPECT_EQ(CountOf(auiCounts, Op::kAlloc), 3u);
    // Capacity, five elements, and five calls for each that is not null.
    EXPECT_EQ(CountOf(auiCounts, Op::kJni), 26u);
}

}  // namespace

}  // namespace wap::test

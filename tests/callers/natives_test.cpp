// The list of the natives, and that the arguments which the tests call good are.

#include <gtest/gtest.h>
#include <wap_natives.h>

#include <set>
#include <string>
#include <utility>
#include <variant>

#include "callers/caller.h"
#include "callers/figures.h"
#include "callers/text_fields.h"

namespace wap::test {

namespace {

TEST(NativesTest, EachHasARowAndGoodArguments) {
    std::set<std::string> asSymbols;
    for (const Native &stNative : Natives()) {
        SCOPED_TRACE(stNative.sSymbol);
        EXPECT_TRUE(asSymbols.insert(stNative.sSymbol).second);
        EXPECT_FALSE(stNative.Method().empty()) << "no row in a table of the entries";
        ASSERT_EQ(stNative.astGood.size(), stNative.auiKinds.size()) << "no good arguments";
        for (size_t i = 0; i < stNative.astGood.size(); ++i) {
            EXPECT_EQ(stNative.astGood[i].index(), stNative.auiKinds[i]) << i;
        }
        AddToFigure("callers.natives");
        AddToFigure("callers.parameters", stNative.auiKinds.size());
    }
    EXPECT_EQ(asSymbols.size(), static_cast<size_t>(WAP_NATIVES));
    EXPECT_EQ(asSymbols.size(), AllEntries().size());
}

TEST(NativesTest, TheGoodArgumentsAre) {
    for (const Native &stNative : NativesInAllStates()) {
        SCOPED_TRACE(stNative.Name());
        Caller stCaller(stNative);
        EXPECT_EQ(stCaller.Call(stNative.astGood), stNative.stFurnished.stEntry.stGood);
    }
}

// A text that a method is given must have a limit that is tried, or a reason to have none.
TEST(NativesTest, EachTextHasAFieldOrNone) {
    std::set<std::pair<std::string, size_t>> setFilled;
    for (const TextField &stField : TextFields()) {
        setFilled.insert({stField.pcMethod, stField.uiArgument});
    }
    std::set<std::pair<std::string, size_t>> setTexts;
    for (const Native &stNative : Natives()) {
        for (size_t i = 0; i < stNative.astGood.size(); ++i) {
            const bool bText = std::holds_alternative<JavaString>(stNative.astGood[i]) ||
                               std::holds_alternative<JavaStrings>(stNative.astGood[i]);
            if (bText) {
                const auto &stText = *setTexts.insert({stNative.Method(), i}).first;
                EXPECT_NE(setFilled.count(stText), TextsWithoutField().count(stText))
                    << stText.first << ", argument " << stText.second;
            }
        }
    }
    for (const auto &[stText, sReason] : TextsWithoutField()) {
        EXPECT_EQ(setTexts.count(stText), 1u) << stText.first << ", argument " << stText.second;
        EXPECT_FALSE(sReason.empty());
    }
}

}  // namespace

}  // namespace wap::test

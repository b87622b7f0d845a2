// The list of the natives, and that the arguments which the tests call good are.

#include <gtest/gtest.h>
#include <wap_natives.h>

#include <set>

#include "callers/caller.h"
#include "callers/figures.h"

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
    for (const Native &stNative : Natives()) {
        SCOPED_TRACE(stNative.Method());
        Caller stCaller(stNative);
        EXPECT_EQ(stCaller.Call(stNative.astGood), stNative.stFurnished.stEntry.stGood);
    }
}

}  // namespace

}  // namespace wap::test

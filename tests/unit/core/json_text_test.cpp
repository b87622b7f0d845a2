// JSON texts that are written without json-c look as if it had printed them.
#include "common/json_text.h"

#include <gtest/gtest.h>
#include <json-c/json_object.h>

#include <climits>
#include <functional>
#include <string>
#include <vector>

namespace wap::test {
namespace {

/// What a writer with so much room has in the end; "-" when it did not fit.
std::string Written(size_t uiCap, const std::function<void(JsonText &)> &fnWrite) {
    // Of exactly that size, so that a sanitizer sees a byte beyond.
    std::vector<char> acOut(uiCap, 'x');
    JsonText stOut(acOut.data(), static_cast<uint32_t>(uiCap));
    fnWrite(stOut);
    const bool bFits = stOut.Finish();
    EXPECT_EQ(bFits, stOut.Length() < uiCap);
    const std::string sText = acOut.data();
    EXPECT_EQ(sText.size(), bFits ? stOut.Length() : 0);
    return bFits ? sText : "-";
}

std::string Quoted(const std::string &sText) {
    return Written(100000, [&](JsonText &stOut) { stOut.PutText(sText.c_str()); });
}

std::string IntText(int32_t iValue) {
    return Written(20, [=](JsonText &stOut) { stOut.PutInt(iValue); });
}

TEST(JsonTextTest, EscapesWhatJsonDemandsAndTheSlash) {
    EXPECT_EQ(Quoted(""), "\"\"");
    EXPECT_EQ(Quoted("plain"), "\"plain\"");
    EXPECT_EQ(Quoted("\"\\/"), "\"\\\"\\\\\\/\"");
    EXPECT_EQ(Quoted("a\b\n\r\t\fz"), "\"a\\b\\n\\r\\t\\fz\"");
    EXPECT_EQ(Quoted("\x01\x0b\x1f\x7f"), "\"\\u0001\\u000b\\u001f\x7f\"");
    EXPECT_EQ(Quoted("\x80\xc3\xa9\xff"), "\"\x80\xc3\xa9\xff\"");
}

TEST(JsonTextTest, EachByteIsWrittenAsJsonCDoes) {
    for (int i = 1; i < 256; ++i) {
        const std::string sText = std::string("<") + static_cast<char>(i) + ">";
        json_object *pstText = json_object_new_string(sText.c_str());
        EXPECT_EQ(Quoted(sText), json_object_to_json_string(pstText)) << i;
        json_object_put(pstText);
    }
}

TEST(JsonTextTest, Integers) {
    EXPECT_EQ(IntText(0), "0");
    EXPECT_EQ(IntText(7), "7");
    EXPECT_EQ(IntText(-10), "-10");
    EXPECT_EQ(IntText(INT_MAX), "2147483647");
    EXPECT_EQ(IntText(INT_MIN), "-2147483648");
}

TEST(JsonTextTest, KeepsToItsRoom) {
    const auto fnWrite = [](JsonText &stOut) {
        stOut.Put("{ \"k\": ");
        stOut.PutText("a\nb\x02");
        stOut.Put(", \"n\": ");
        stOut.PutInt(-12);
        stOut.Put(" }");
    };
    const std::string sWhole = "{ \"k\": \"a\\nb\\u0002\", \"n\": -12 }";
    for (size_t uiCap = 1; uiCap <= sWhole.size(); ++uiCap) {
        EXPECT_EQ(Written(uiCap, fnWrite), "-") << uiCap;
    }
    EXPECT_EQ(Written(sWhole.size() + 1, fnWrite), sWhole);
}

}  // namespace
}  // namespace wap::test

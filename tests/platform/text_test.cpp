#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include "vt_ssp_host.h"

namespace wap::test {
namespace {

/** A buffer whose every byte shows whether it was written. */
struct Room {
    char acBytes[8] = {'#', '#', '#', '#', '#', '#', '#', '#'};
    std::string Text() const { return std::string(acBytes, sizeof acBytes); }
};

const std::string kUntouched = "########";

TEST(StrNCpy, CopiesTheTextAndItsZero) {
    Room stRoom;
    EXPECT_EQ(0u, VT_OS_StrNCpy_S(stRoom.acBytes, 8, "abc", 3));
    EXPECT_EQ(std::string("abc\0####", 8), stRoom.Text());
}

TEST(StrNCpy, CopiesNoMoreThanTheCount) {
    Room stRoom;
    EXPECT_EQ(0u, VT_OS_StrNCpy_S(stRoom.acBytes, 3, "abcdef", 2));
    EXPECT_EQ(std::string("ab\0#####", 8), stRoom.Text());
}

TEST(StrNCpy, DoesNotReadBeyondTheCount) {
    Room stRoom;
    char acOpen[3] = {'x', 'y', 'z'};  // no zero: a sanitizer sees a longer read
    EXPECT_EQ(0u, VT_OS_StrNCpy_S(stRoom.acBytes, 8, acOpen, 3));
    EXPECT_STREQ("xyz", stRoom.acBytes);
}

TEST(StrNCpy, CountLargerThanTheTextIsHarmless) {
    Room stRoom;
    EXPECT_EQ(0u, VT_OS_StrNCpy_S(stRoom.acBytes, 4, "abc", UINT32_MAX));
    EXPECT_STREQ("abc", stRoom.acBytes);
}

TEST(StrNCpy, AnEmptyTextOrCountGivesAnEmptyText) {
    Room stRoom;
    EXPECT_EQ(0u, VT_OS_StrNCpy_S(stRoom.acBytes, 1, "", 5));
    EXPECT_EQ(std::string("\0#######", 8), stRoom.Text());
    Room stOther;
    EXPECT_EQ(0u, VT_OS_StrNCpy_S(stOther.acBytes, 1, "abc", 0));
    EXPECT_EQ(std::string("\0#######", 8), stOther.Text());
}

TEST(StrNCpy, WritesNothingWhenItFails) {
    Room stRoom;
    EXPECT_EQ(VT_HOST_ERR_TOO_LONG, VT_OS_StrNCpy_S(stRoom.acBytes, 3, "abc", 3));
    EXPECT_EQ(VT_HOST_ERR_TOO_LONG, VT_OS_StrNCpy_S(stRoom.acBytes, 0, "", 0));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_StrNCpy_S(stRoom.acBytes, 8, nullptr, 1));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_StrNCpy_S(nullptr, 8, "abc", 3));
    EXPECT_EQ(kUntouched, stRoom.Text());
}

TEST(StrNCpy, RefusesOverlap) {
    char acText[8] = "abcdef";
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_StrNCpy_S(acText + 2, 6, acText, 3));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_StrNCpy_S(acText, 8, acText + 3, 8));
    EXPECT_STREQ("abcdef", acText);
    EXPECT_EQ(0u, VT_OS_StrNCpy_S(acText, 3, acText + 3, 2));
    EXPECT_STREQ("de", acText);
}

TEST(StrNCat, Appends) {
    char acText[8] = "ab";
    EXPECT_EQ(0u, VT_OS_StrNCat_S(acText, 8, "cdef", 3));
    EXPECT_STREQ("abcde", acText);
    EXPECT_EQ(0u, VT_OS_StrNCat_S(acText, 8, "fg", 9));
    EXPECT_STREQ("abcdefg", acText);
    EXPECT_EQ(0u, VT_OS_StrNCat_S(acText, 8, "", 0));
    EXPECT_STREQ("abcdefg", acText);
}

TEST(StrNCat, WritesNothingWhenTheResultDoesNotFit) {
    char acText[8] = "abcd";
    EXPECT_EQ(VT_HOST_ERR_TOO_LONG, VT_OS_StrNCat_S(acText, 8, "efgh", 4));
    EXPECT_EQ(0, memcmp(acText, "abcd\0\0\0\0", 8));
    EXPECT_EQ(VT_HOST_ERR_TOO_LONG, VT_OS_StrNCat_S(acText, 4, "", 0)) << "no zero within the size";
    EXPECT_EQ(VT_HOST_ERR_TOO_LONG, VT_OS_StrNCat_S(acText, 0, "", 0));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_StrNCat_S(acText, 8, nullptr, 0));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_StrNCat_S(nullptr, 8, "a", 1));
    EXPECT_EQ(0, memcmp(acText, "abcd\0\0\0\0", 8));
}

TEST(StrNCat, RefusesOverlap) {
    char acText[16] = "abcd";
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_StrNCat_S(acText, 16, acText, 4));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_StrNCat_S(acText, 16, acText + 2, 2));
    EXPECT_STREQ("abcd", acText);
}

TEST(Snprintf, ReturnsTheNumberOfCharacters) {
    Room stRoom;
    EXPECT_EQ(5, VT_OS_Snprintf_S(stRoom.acBytes, 8, 7, "%d-%s", 12, "ab"));
    EXPECT_EQ(std::string("12-ab\0##", 8), stRoom.Text());
    EXPECT_EQ(7, VT_OS_Snprintf_S(stRoom.acBytes, 8, 7, "%s", "1234567"));
    EXPECT_STREQ("1234567", stRoom.acBytes);
    EXPECT_EQ(0, VT_OS_Snprintf_S(stRoom.acBytes, 8, 7, "%s", ""));
}

TEST(Snprintf, CutsAtTheCountAndSaysSo) {
    Room stRoom;
    EXPECT_EQ(-1, VT_OS_Snprintf_S(stRoom.acBytes, 8, 3, "%s", "abcdef"));
    EXPECT_EQ(std::string("abc\0####", 8), stRoom.Text());
}

TEST(Snprintf, ACountBeyondTheRoomIsFineAsLongAsTheTextFits) {
    Room stRoom;
    EXPECT_EQ(3, VT_OS_Snprintf_S(stRoom.acBytes, 4, 100, "%s", "abc"));
    EXPECT_EQ(std::string("abc\0####", 8), stRoom.Text());
}

TEST(Snprintf, WritesNothingWhenTheRoomIsTooSmall) {
    Room stRoom;
    EXPECT_EQ(-1, VT_OS_Snprintf_S(stRoom.acBytes, 4, 4, "%s", "abcd"));
    EXPECT_EQ(-1, VT_OS_Snprintf_S(stRoom.acBytes, 0, 0, "%s", ""));
    EXPECT_EQ(-1, VT_OS_Snprintf_S(nullptr, 8, 7, "%s", ""));
    EXPECT_EQ(kUntouched, stRoom.Text());
}

TEST(Texts, Length) {
    EXPECT_EQ(0u, VT_OS_StrLen(nullptr));
    EXPECT_EQ(0u, VT_OS_StrLen(""));
    EXPECT_EQ(3u, VT_OS_StrLen("abc"));
}

TEST(Texts, CompareWithoutCase) {
    EXPECT_EQ(0, VT_OS_StrCaseCmp("TrUe", "tRuE"));
    EXPECT_EQ(0, VT_OS_StrCaseCmp("", ""));
    EXPECT_LT(VT_OS_StrCaseCmp("ab", "ABC"), 0);
    EXPECT_GT(VT_OS_StrCaseCmp("B", "a"), 0);
    EXPECT_NE(0, VT_OS_StrCaseCmp("[", "{")) << "letters only";
    EXPECT_NE(0, VT_OS_StrCaseCmp("\xC4", "\xE4")) << "ASCII only";
    EXPECT_EQ(0, VT_OS_StrCaseCmp(nullptr, nullptr));
    EXPECT_LT(VT_OS_StrCaseCmp(nullptr, ""), 0);
    EXPECT_GT(VT_OS_StrCaseCmp("", nullptr), 0);
}

TEST(Texts, Search) {
    const char *pcHay = "one Two three";
    EXPECT_EQ(pcHay + 4, VT_OS_StrStr(pcHay, "Two"));
    EXPECT_EQ(nullptr, VT_OS_StrStr(pcHay, "two"));
    EXPECT_EQ(pcHay, VT_OS_StrStr(pcHay, ""));
    EXPECT_EQ(nullptr, VT_OS_StrStr(nullptr, "x"));
    EXPECT_EQ(nullptr, VT_OS_StrStr(pcHay, nullptr));
    EXPECT_EQ(pcHay + 4, VT_OS_StrCaseStr(pcHay, "tWO"));
    EXPECT_EQ(pcHay + 8, VT_OS_StrCaseStr(pcHay, "THREE"));
    EXPECT_EQ(nullptr, VT_OS_StrCaseStr(pcHay, "threex"));
    EXPECT_EQ(pcHay, VT_OS_StrCaseStr(pcHay, ""));
    EXPECT_EQ(nullptr, VT_OS_StrCaseStr("", "x"));
    EXPECT_EQ(nullptr, VT_OS_StrCaseStr(nullptr, "x"));
    EXPECT_EQ(nullptr, VT_OS_StrCaseStr(pcHay, nullptr));
}

class Tokens : public testing::TestWithParam<decltype(&VT_OS_StrtokR)> {};

TEST_P(Tokens, CutsAtRunsOfSeparators) {
    char acText[] = ",a,,bc;d,";
    char *pcSave = nullptr;
    EXPECT_STREQ("a", GetParam()(acText, ",;", &pcSave));
    EXPECT_STREQ("bc", GetParam()(nullptr, ",;", &pcSave));
    EXPECT_STREQ("d", GetParam()(nullptr, ",;", &pcSave));
    EXPECT_EQ(nullptr, GetParam()(nullptr, ",;", &pcSave));
    EXPECT_EQ(nullptr, GetParam()(nullptr, ",;", &pcSave));
}

TEST_P(Tokens, BadArgumentsGiveNull) {
    char acText[] = "a";
    char *pcSave = nullptr;
    EXPECT_EQ(nullptr, GetParam()(nullptr, ",", &pcSave));
    EXPECT_EQ(nullptr, GetParam()(acText, nullptr, &pcSave));
    EXPECT_EQ(nullptr, GetParam()(acText, ",", nullptr));
}

INSTANTIATE_TEST_SUITE_P(, Tokens, testing::Values(&VT_OS_StrtokR, &VT_OS_Strtok_S),
                         [](const testing::TestParamInfo<decltype(&VT_OS_StrtokR)> &stInfo) {
                             return stInfo.index == 0 ? "StrtokR" : "StrtokS";
                         });

TEST(Numbers, ReadsDecimalDigitsOnly) {
    uint32_t uiValue = 7;
    EXPECT_EQ(0u, VT_OS_StrToUInt32("0", &uiValue));
    EXPECT_EQ(0u, uiValue);
    EXPECT_EQ(0u, VT_OS_StrToUInt32("4294967295", &uiValue));
    EXPECT_EQ(4294967295u, uiValue);
    EXPECT_EQ(0u, VT_OS_StrToUInt32("0000000000000012", &uiValue));
    EXPECT_EQ(12u, uiValue);
}

TEST(Numbers, RefusesEverythingElseAndKeepsTheValue) {
    for (const char *pcText : {"", " 1", "1 ", "+1", "-1", "0x10", "1.5", "12a", "a", "4294967296",
                               "99999999999999999999999999"}) {
        uint32_t uiValue = 7;
        EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_StrToUInt32(pcText, &uiValue)) << pcText;
        EXPECT_EQ(7u, uiValue) << pcText;
    }
    uint32_t uiValue = 7;
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_StrToUInt32(nullptr, &uiValue));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_StrToUInt32("1", nullptr));
}

TEST(Numbers, WritesSignedDecimal) {
    char acText[12] = {};
    EXPECT_EQ(0u, VT_OS_Int32ToStr_S(0, acText, sizeof acText));
    EXPECT_STREQ("0", acText);
    EXPECT_EQ(0u, VT_OS_Int32ToStr_S(INT32_MIN, acText, sizeof acText));
    EXPECT_STREQ("-2147483648", acText);
    EXPECT_EQ(0u, VT_OS_Int32ToStr_S(INT32_MAX, acText, 11));
    EXPECT_STREQ("2147483647", acText);
}

TEST(Numbers, WritesNothingWhenTheTextDoesNotFit) {
    Room stRoom;
    EXPECT_EQ(VT_HOST_ERR_TOO_LONG, VT_OS_Int32ToStr_S(-123, stRoom.acBytes, 4));
    EXPECT_EQ(VT_HOST_ERR_TOO_LONG, VT_OS_Int32ToStr_S(1, stRoom.acBytes, 0));
    EXPECT_EQ(VT_HOST_ERR_ARGUMENT, VT_OS_Int32ToStr_S(1, nullptr, 8));
    EXPECT_EQ(kUntouched, stRoom.Text());
    EXPECT_EQ(0u, VT_OS_Int32ToStr_S(-123, stRoom.acBytes, 5));
    EXPECT_EQ(std::string("-123\0###", 8), stRoom.Text());
}

TEST(Scan, ReadsItems) {
    unsigned int uiA = 0;
    unsigned int uiB = 0;
    char acName[8] = {};
    EXPECT_EQ(3, VT_OS_Sscanf_S("wan1.2 abcdefghij", "wan%u.%u %7s", &uiA, &uiB, acName));
    EXPECT_EQ(1u, uiA);
    EXPECT_EQ(2u, uiB);
    EXPECT_STREQ("abcdefg", acName);
    EXPECT_EQ(1, VT_OS_Sscanf_S("5x", "%u.%u", &uiA, &uiB));
    EXPECT_LT(VT_OS_Sscanf_S("", "%u", &uiA), 0);
    EXPECT_LT(VT_OS_Sscanf_S(nullptr, "%u", &uiA), 0);
}

}  // namespace
}  // namespace wap::test

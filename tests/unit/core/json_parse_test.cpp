// Parsing member by member: the same texts are JSON as for json-c, and nothing else changes.
#include "common/json_parse.h"

#include <json-c/json_c_version.h>
#include <json-c/json_tokener.h>
#include <locale.h>

#include <cstring>
#include <random>
#include <string>

#include "support/entries.h"

namespace {

/// What json-c says of itself in this program.
int g_iJsonVersion = JSON_C_VERSION_NUM;

}  // namespace

int json_c_version_num() {
    return g_iJsonVersion;
}

namespace wap::test {
namespace {

/// Lets json-c be another version than its headers, as after an update, as long as it lives.
class OtherJsonVersion {
  public:
    OtherJsonVersion() { g_iJsonVersion = JSON_C_VERSION_NUM + 1; }
    OtherJsonVersion(const OtherJsonVersion &) = delete;
    OtherJsonVersion &operator=(const OtherJsonVersion &) = delete;
    ~OtherJsonVersion() { g_iJsonVersion = JSON_C_VERSION_NUM; }
};

constexpr const char *kTexts[] = {
    "",
    "{}",
    "[]",
    "{\"a\":1}",
    " { \"a\" : { \"b\" : [ 1 , -2.5e3 , \"c:d,e\" ] , \"f\" : null } , \"g\" : true } ",
    "{\"a\":\"b\",\"a\":{\"c\":\"d\"},\"a\":[\"e\"]}",
    "{\"a:b\":\"c:d\",\"\\u003a\\\\\":\"\\\":\"}",
    "{\"a\":\"\\ud83d\\ude00:\\ud83d:\"}",
    "{\"a\":\"\\ud83d",
    "{\"a\":\"x\\:y\"}",
    "{\"a\":1:2}",
    "{\"a\" /* : */ : // :\n 1}",
    "{'a\":b':1,\"c\":'d:e'}",
    "{\"a\":1,}",
    "[1,2,]",
    "[1:2]",
    "\"a\":1",
    "12:34",
    "{\"a\":NaN,\"b\":-Infinity,\"c\":00}",
    "nul:l",
    "{\"a\":1}:",
    "{\"a\":1} {\"b\":2}",
    "{:1}",
    "{\"a\":}",
    "{\"a\":,\"b\":2}",
    "{\"\":\"\",\"\":0}",
    "[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[1]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]",
    "{\"a\":{\"a\":{\"a\":{\"a\":{\"a\":{\"a\":{\"a\":{\"a\":1}}}}}}}}",
    "{\"a\":\"\xC3\xA9:\xFF\"}",
    "{\"a\":\"/09:@AFG`afg\\u00e9\\u00E9\\u00g9\"}",
    "{\"a\":\"/09:@AFG`afg\\u00e9\\u00E9\"}",
};

class JsonParseTest : public BridgeTest {
  protected:
    static std::string Print(json_object *pstRoot) {
        std::string sText = pstRoot == nullptr ? "none" : json_object_to_json_string(pstRoot);
        json_object_put(pstRoot);
        return sText;
    }
    /// What json-c makes of a text when it is given the whole of it.
    static std::string ByJsonC(const std::string &sText, Grammar eGrammar) {
        json_tokener *pstTokener = json_tokener_new();
        if (eGrammar == Grammar::kStrict) {
            json_tokener_set_flags(pstTokener, JSON_TOKENER_STRICT);
        }
        json_object *pstRoot = json_tokener_parse_ex(pstTokener, sText.c_str(), -1);
        json_tokener_free(pstTokener);
        return Print(pstRoot);
    }
    static void ExpectSame(const std::string &sText) {
        for (const Grammar eGrammar : {Grammar::kLenient, Grammar::kStrict}) {
            const std::string sWanted = ByJsonC(sText, eGrammar);
            const std::string sWhere = sText + (eGrammar == Grammar::kStrict ? " strictly" : "");
            for (const Secrecy eSecrecy : {Secrecy::kPlain, Secrecy::kSecret}) {
                EXPECT_EQ(Print(ParseJson(WAP_SPOT, sText.c_str(), eGrammar, eSecrecy)), sWanted)
                    << sWhere;
                // There, secrets come in strict texts.
                const OtherJsonVersion stOther;
                if (eSecrecy == Secrecy::kPlain || eGrammar == Grammar::kStrict) {
                    EXPECT_EQ(Print(ParseJson(WAP_SPOT, sText.c_str(), eGrammar, eSecrecy)),
                              sWanted)
                        << sWhere << " by another version";
                }
            }
        }
    }
};

TEST_F(JsonParseTest, IsWhatJsonCTakesForJson) {
    for (const char *pcText : kTexts) {
        ExpectSame(pcText);
    }
}

TEST_F(JsonParseTest, IsWhatJsonCTakesForJsonOfRandomTexts) {
    std::mt19937 stDice(20261122);  // NOLINT(cert-msc51-cpp): the same texts in every run
    const std::string sBytes = "{}[]:,\"'\\/*ab01-. \n\xC3";
    for (int i = 0; i < 3000; ++i) {
        std::string sText = kTexts[stDice() % std::size(kTexts)];
        for (uint32_t j = stDice() % 4; j != 0 && !sText.empty(); --j) {
            const size_t uiAt = stDice() % sText.size();
            if (stDice() % 2 == 0) {
                sText[uiAt] = sBytes[stDice() % sBytes.size()];
            } else {
                sText.insert(uiAt, 1, sBytes[stDice() % sBytes.size()]);
            }
        }
        ExpectSame(sText);
        stPlatform.ClearRecords();
    }
}

TEST_F(JsonParseTest, LocaleOfTheThreadStays) {
    const locale_t stBefore = uselocale(nullptr);
    for (const char *pcText : {"{\"a\":1.5}", "{\"a\":", "null"}) {
        (void)Print(ParseJson(WAP_SPOT, pcText, Grammar::kStrict, Secrecy::kPlain));
        EXPECT_EQ(uselocale(nullptr), stBefore);
    }
    const locale_t stOwn = newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
    ASSERT_NE(stOwn, nullptr);
    const locale_t stOuter = uselocale(stOwn);
    (void)Print(ParseJson(WAP_SPOT, "{\"a\":1.5}", Grammar::kStrict, Secrecy::kPlain));
    EXPECT_EQ(uselocale(stOuter), stOwn);
    freelocale(stOwn);
}

TEST_F(JsonParseTest, StringValuesAreWiped) {
    json_object *pstRoot = JSON_Parse(
        "{\"a\":\"secret\",\"b\":[\"secret\",{\"c\":\"a longer secret\"}],\"d\":5,\"e\":null}", 1);
    WipeTexts(pstRoot);
    EXPECT_EQ(Print(pstRoot),
              "{ \"a\": \"\\u0000\\u0000\\u0000\\u0000\\u0000\\u0000\", \"b\": [ "
              "\"\\u0000\\u0000\\u0000\\u0000\\u0000\\u0000\", { \"c\": "
              "\"\\u0000\\u0000\\u0000\\u0000\\u0000\\u0000\\u0000\\u0000\\u0000\\u0000\\u0000"
              "\\u0000\\u0000\\u0000\\u0000\" } ], \"d\": 5, \"e\": null }");
    WipeTexts(nullptr);
}

/// Texts with a secret in their strings, whole and flawed.
std::vector<std::string> TextsAround(const std::string &sSecret) {
    const std::string sLong(3000, 'l');
    return {
        "{\"a\":\"" + sSecret + "\"}",
        "[\"" + sSecret + "\",{\"a\":[\"" + sSecret + "\",1]}]",
        "\"" + sSecret + "\"",
        "{\"a\":\"" + sSecret + sLong + "\",\"b\":\"" + sLong + sSecret + "\"}",
        "{\"a\":\"\\\"\\u00e9" + sSecret + "\\\\\"}",
        "{\"a\":\"" + sSecret,
        "{\"a\":\"" + sSecret + "\\",
        "{\"a\":\"" + sSecret + "\\x\"}",
        "{\"a\":\"" + sSecret + "\\u12g4\"}",
        "{\"a\":\"" + sSecret + "\",\"b\":}",
        "{\"a\":\"" + sSecret + "\"} x",
        "{\"a\":{\"b\":[\"" + sSecret + "\"},\"c\":\"" + sLong + "\"}",
        "[\"" + sSecret + "\" \"" + sLong + "\"",
        "{\"a\":\"\",\"a\":\"" + sSecret + "\"}",
    };
}

// What stays of a secret in a released block is complained about.
TEST_F(JsonParseTest, SecretsAreGoneByAnyVersion) {
    const std::string sSecret = "a secret of some length";
    stWorld.stSecrets.Watch(sSecret);
    for (const bool bOther : {false, true}) {
        for (const std::string &sText : TextsAround(sSecret)) {
            SCOPED_TRACE(sText.substr(0, 100) + (bOther ? " by another version" : ""));
            const bool bParses = ByJsonC(sText, Grammar::kStrict) != "none";
            (void)stWorld.TakeComplaints();
            const auto stOther = bOther ? std::make_unique<OtherJsonVersion>() : nullptr;
            {
                const SecretJson stRoot(
                    ParseJson(WAP_SPOT, sText.c_str(), Grammar::kStrict, Secrecy::kSecret));
                EXPECT_EQ(static_cast<bool>(stRoot), bParses);
            }
            stWorld.ExpectClean();
        }
    }
}

// The two blocks that cover what was read, and the one that is judged.
TEST_F(JsonParseTest, AnotherVersionParsesNoSecretsWithoutRoom) {
    const std::string sSecret = "a secret of some length";
    const std::string sText = "{\"a\":\"" + sSecret + "\"}";
    const OtherJsonVersion stOther;
    stWorld.stSecrets.Watch(sSecret);
    for (uint32_t uiAt = 1; uiAt <= 3; ++uiAt) {
        stWorld.Plan({Op::kAlloc, uiAt, false, kPlatformAllocation});
        const SecretJson stRoot(
            ParseJson(WAP_SPOT, sText.c_str(), Grammar::kStrict, Secrecy::kSecret));
        stWorld.Plan({});
        EXPECT_EQ(static_cast<bool>(stRoot), uiAt == 3);
        EXPECT_EQ(stPlatform.astFaults.size(), uiAt == 3 ? 0u : 1u);
        stPlatform.ClearRecords();
    }
    (void)stWorld.TakeComplaints();
}

TEST_F(JsonParseTest, NoTextIsRecorded) {
    const SourceSpot stSpot = {"somewhere.cpp", 7};
    EXPECT_EQ(ParseJson(stSpot, nullptr, Grammar::kStrict, Secrecy::kSecret), nullptr);
    EXPECT_EQ(ParseJson(stSpot, "[", Grammar::kStrict, Secrecy::kSecret), nullptr);
    ASSERT_EQ(stPlatform.astFaults.size(), 2u);
    EXPECT_EQ(stPlatform.astFaults[0].uiCode, 0xF7100008u);
    EXPECT_EQ(stPlatform.astFaults[1].uiCode, 0xF7100000u);
    // json-c's number for a text that ends too early.
    EXPECT_EQ(stPlatform.astFaults[1].auiArgs[0], 3u);
    EXPECT_EQ(stPlatform.astFaults[1].sFile, "somewhere.cpp");
    EXPECT_EQ(stPlatform.astFaults[1].uiLine, 7u);
}

}  // namespace
}  // namespace wap::test

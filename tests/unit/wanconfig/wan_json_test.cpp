// Texts for setWANIf that are not what they should be.
#include "unit/wanconfig/wanconfig_fixture.h"
#include "wan/jni_wan_config.h"

namespace wap::test {
namespace {

const std::string kNothing(1080 - 16, '\0');

class WanJsonTest : public WanConfigTest {
  protected:
    uint32_t Set(const std::string &sJson) {
        stPlatform.ClearRecords();
        return VT_JNI_SetWANIf(kWan, sJson.c_str());
    }
    /// The record that went out behind the connection's place, or nothing.
    std::string Sent() const {
        return Rpcs() == Codes{kSet} ? stPlatform.astRpcs[0].sRequest.substr(16) : "";
    }
    static std::string Nested(size_t uiLevels) {
        return std::string(uiLevels, '[') + std::string(uiLevels, ']');
    }
};

TEST_F(WanJsonTest, TextThatIsNoJsonIsRefused) {
    for (const char *pcText : {"",
                               " ",
                               "{",
                               "}",
                               "{\"VLANMode\"",
                               "{\"VLANMode\":",
                               "{\"VLANMode\":\"1\"",
                               "{\"VLANMode\":\"1\",}",
                               "{VLANMode:\"1\"}",
                               "{'VLANMode':'1'}",
                               "{\"VLANMode\" \"1\"}",
                               "{\"VLANMode\":\"1}",
                               "{\"VLANMode\":\"\\x\"}",
                               "{\"VLANMode\":01}",
                               "nul",
                               "\"",
                               "\\",
                               "// {}",
                               "/* { */ {}",
                               "{\"VLANMode\":\"1\" /* : */ }",
                               ":",
                               "::",
                               "{:}",
                               "{\":\"}",
                               "{\"a\"::\"1\"}",
                               "\xFF\xFE",
                               "NaNx"}) {
        EXPECT_EQ(Set(pcText), kMinusOne) << pcText;
        EXPECT_TRUE(stPlatform.astRpcs.empty()) << pcText;
        // Where it does not parse, and for Java.
        EXPECT_EQ(FilesOf(kNoJson), (Calls{"jni_wan_config.cpp", "jni_wan_config.cpp"})) << pcText;
        EXPECT_TRUE(HasRecorded("jni_wan_config.cpp", kNoJson, {kWan, 0, 0, 0}));
    }
}

TEST_F(WanJsonTest, TextBehindTheObjectIsRefused) {
    for (const char *pcBehind : {"x", "{}", ",", "}", " x", "\n1", ":", "\":\""}) {
        EXPECT_EQ(Set(std::string("{\"VLANMode\":\"1\"}") + pcBehind), kMinusOne) << pcBehind;
        EXPECT_TRUE(stPlatform.astRpcs.empty()) << pcBehind;
    }
    EXPECT_EQ(Set("\t{\"VLANMode\":\"1\"} \r\n "), 0u);
    EXPECT_EQ(Sent(),
              std::string(64, '\0') + Field("1", 8 + 961) + '\0' + '\1' + std::string(29, '\0'));
}

// There is no setting in them, as in an object without any.
TEST_F(WanJsonTest, JsonThatIsNoObjectHasNoSettings) {
    for (const char *pcText :
         {"[]", "[\"VLANMode\",\"1\"]", "5", "-1.5e3", "\"VLANMode:1\"", "true"}) {
        EXPECT_EQ(Set(pcText), 0u) << pcText;
        EXPECT_EQ(Sent(), kNothing) << pcText;
    }
}

TEST_F(WanJsonTest, NullIsNoJson) {
    EXPECT_EQ(Set("null"), kMinusOne);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    // As a value it is a setting that is not there.
    EXPECT_EQ(Set("{\"VLANMode\":null}"), 0u);
    EXPECT_EQ(Sent(), kNothing);
}

TEST_F(WanJsonTest, DeepNestingIsRefused) {
    EXPECT_EQ(Set("{\"a\":" + Nested(30) + "}"), 0u);
    EXPECT_EQ(Sent(), kNothing);
    for (const size_t uiLevels : {32u, 33u, 1000u, 100000u}) {
        EXPECT_EQ(Set("{\"a\":" + Nested(uiLevels) + "}"), kMinusOne) << uiLevels;
        EXPECT_TRUE(stPlatform.astRpcs.empty());
    }
    std::string sObjects;
    for (int i = 0; i < 40; ++i) {
        sObjects += "{\"Password\":";
    }
    EXPECT_EQ(Set(sObjects), kMinusOne);
}

TEST_F(WanJsonTest, MegabytesAreAnswered) {
    const std::string sMegabyte(1 << 20, 'm');
    EXPECT_EQ(Set("{\"VLANMode\":\"" + sMegabyte + "\"}"), 0u);
    EXPECT_EQ(Sent(), kNothing);
    EXPECT_EQ(Set("{\"" + sMegabyte + "\":\"1\"}"), 0u);
    EXPECT_EQ(Sent(), kNothing);
    EXPECT_EQ(Set(sMegabyte), kMinusOne);
    EXPECT_EQ(Set(std::string(1 << 20, ' ') + "{}"), 0u);
    EXPECT_EQ(Set("{\"VLANMode\":\"" + sMegabyte), kMinusOne);
    // No more of these: at each mark and name, the address sanitizer measures the rest of the text.
    constexpr size_t kManyMarks = 1 << 16;
    EXPECT_EQ(Set("{\"VLANMode\":\"" + std::string(kManyMarks, ':') + "\"}"), 0u);
    EXPECT_EQ(Sent(), kNothing);
    std::string sMembers = "{";
    while (sMembers.size() < kManyMarks) {
        sMembers += "\"m" + std::to_string(sMembers.size()) + "\":\"v\",";
    }
    EXPECT_EQ(Set(sMembers + "\"VLANMode\":\"2\"}"), 0u);
    EXPECT_EQ(Sent().substr(64, 2), std::string("2\0", 2));
}

TEST_F(WanJsonTest, LastOfTwoMembersOfANameCounts) {
    EXPECT_EQ(Set(R"({"VLANMode":"1","VLANMode":"2"})"), 0u);
    EXPECT_EQ(Sent().substr(64, 2), std::string("2\0", 2));
    EXPECT_EQ(Set(R"({"VLANMode":"1","VLANMode":{"a":1}})"), 0u);
    EXPECT_EQ(Sent(), kNothing);
}

TEST_F(WanJsonTest, EscapesAreUndone) {
    EXPECT_EQ(Set(R"({"Username":"\u0061\u003A\"\\\/:\u00e9"})"), 0u);
    EXPECT_EQ(Sent().substr(128, 9), std::string("a:\"\\/:\xC3\xA9\0", 9));
    // A text ends at a zero in it, as every text here.
    EXPECT_EQ(Set(R"({"Username":"us\u0000er"})"), 0u);
    EXPECT_EQ(Sent().substr(128, 6), std::string("us\0\0\0\0", 6));
    EXPECT_EQ(Set(R"({"VLANM\u006fde":"1"})"), 0u);
    EXPECT_EQ(Sent().substr(64, 2), std::string("1\0", 2));
}

}  // namespace
}  // namespace wap::test

// The web service's right and the password of its user.
#include "unit/rights/rights_fixture.h"

namespace wap::test {
namespace {

constexpr uint32_t kGet = 0x47209042;
constexpr uint32_t kSet = 0x47209043;
constexpr uint32_t kSetPassword = 0x47209044;

class WebRightTest : public RightsTest {
  protected:
    Answer Get() {
        const jstring jText =
            WAP_METHOD(DeviceAccessRightQuery, getHTTPRightInfo)(&stEnv, stEnv.JavaObject());
        Answer stAnswer{stEnv.Utf8Of(jText), std::nullopt};
        stEnv.EndCall();
        return stAnswer;
    }
    jint Set(jint iRight) {
        return WAP_METHOD(DeviceAccessRightConfig, setHTTPRight)(&stEnv, stEnv.JavaObject(),
                                                                 iRight);
    }
    jint SetPassword(jstring jPassword) {
        const jint iResult = WAP_METHOD(DeviceAccessRightConfig, setHTTPUserPassword)(
            &stEnv, stEnv.JavaObject(), jPassword);
        stEnv.EndCall();
        return iResult;
    }
    WantedRpc GetRpc() const { return {"osgi_proxy", 281, kGet, Word(0), 256, 30000}; }
    WantedRpc SetRpc(uint32_t uiFirst, uint32_t uiSecond) const {
        return {"osgi_proxy",
                281,
                kSet,
                Word(uiFirst) + Word(uiSecond) + std::string(128, '\0') + Word(3),
                4,
                30000};
    }
    WantedRpc PasswordRpc(const std::string &sPassword) const {
        return {"osgi_proxy", 281, kSetPassword, Field(sPassword, 128), 4, 30000};
    }
};

TEST_F(WebRightTest, TheReplyIsTheAnswer) {
    EXPECT_EQ(Get(), TextAnswerOf(kHttpRightText));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    ExpectAsked({GetRpc()});
}

TEST_F(WebRightTest, TheLongestReplyIsAnsweredWhole) {
    const std::string sLongest(255, 'r');
    AnswerWith(kGet, sLongest + '\0');
    EXPECT_EQ(Get(), TextAnswerOf(sLongest));
    // Shorter than its room, and without a zero of its own.
    AnswerWith(kGet, "short");
    EXPECT_EQ(Get(), TextAnswerOf("short"));
}

TEST_F(WebRightTest, AReplyWithoutAZeroIsTooLong) {
    AnswerWith(kGet, std::string(400, 'r'));
    EXPECT_EQ(Get(), TextAnswerOf("{ \"Result\": -1 }"));
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{0xF7700005, 0xF7700005}));
    EXPECT_EQ(Recorded(kWorkerFile, 0xF7700005, {256, 256}), 1u);
    EXPECT_EQ(Recorded(kQueryFile, 0xF7700005), 1u);
    EXPECT_TRUE(HasEntryTrace(stPlatform, "pcJsonStr:{ \"Result\": -1 }\r\n"));
}

TEST_F(WebRightTest, AnEmptyReplyIsNull) {
    AnswerWith(kGet, "");
    EXPECT_EQ(Get(), NullAnswer());
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WebRightTest, RefusalIsTheFaultText) {
    Refuse(kGet);
    EXPECT_EQ(Get(), TextAnswerOf("{ \"Result\": -1 }"));
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kMinusOne}));
    EXPECT_EQ(Recorded(kWorkerFile, kRefused, {kGet}), 1u);
    EXPECT_EQ(Recorded(kQueryFile, kMinusOne), 1u);
}

TEST_F(WebRightTest, TheWorkerFillsTheBufferItIsGiven) {
    AnswerWith(kGet, "abcdef");
    char acBuf[8] = "xxxxxxx";
    EXPECT_EQ(VT_JNI_GetHTTPRightInfo(acBuf, 6), 0xF7700005u);
    EXPECT_STREQ(acBuf, "xxxxxxx");
    EXPECT_EQ(Recorded(kWorkerFile, 0xF7700005, {6, 6}), 1u);
    EXPECT_EQ(VT_JNI_GetHTTPRightInfo(acBuf, 0), 0xF7700005u);
    EXPECT_EQ(VT_JNI_GetHTTPRightInfo(acBuf, 7), 0u);
    EXPECT_STREQ(acBuf, "abcdef");
    stPlatform.ClearRecords();
    EXPECT_EQ(VT_JNI_GetHTTPRightInfo(nullptr, 256), kNullArgument);
    EXPECT_EQ(Recorded(kWorkerFile, kNullArgument), 1u);
    ExpectNobodyAsked();
}

TEST_F(WebRightTest, EachRightIsTwoFlagsUnderTheSameMask) {
    EXPECT_EQ(Set(0), 0);
    ExpectAsked({SetRpc(0, 0)});
    EXPECT_EQ(Set(1), 0);
    ExpectAsked({SetRpc(1, 0)});
    EXPECT_EQ(Set(2), 0);
    ExpectAsked({SetRpc(0, 1)});
    EXPECT_EQ(Set(3), 0);
    ExpectAsked({SetRpc(1, 1)});
    EXPECT_EQ(Set(256), 0);
    ExpectAsked({SetRpc(0, 0)});
    EXPECT_EQ(Set(-255), 0);
    ExpectAsked({SetRpc(1, 0)});
}

TEST_F(WebRightTest, OtherRightsAreRefusedWithoutAsking) {
    for (const jint iRight : {4, 255, -1, 0x7FFFFF04}) {
        const auto uiRight = static_cast<uint32_t>(iRight);
        stPlatform.ClearRecords();
        EXPECT_EQ(Set(iRight), -1);
        ExpectNobodyAsked();
        EXPECT_EQ(FaultCodes(stPlatform), (Codes{kMinusOne, kMinusOne, kMinusOne}));
        EXPECT_EQ(Recorded(kConfigFile, kMinusOne, {uiRight}), 1u);
    }
}

TEST_F(WebRightTest, ARefusedChangeIsMinusOne) {
    Refuse(kSet);
    EXPECT_EQ(Set(2), -1);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kMinusOne}));
    EXPECT_EQ(Recorded(kWorkerFile, kRefused, {kSet}), 1u);
    EXPECT_EQ(Recorded(kConfigFile, kMinusOne, {2}), 1u);
}

TEST_F(WebRightTest, ThePasswordIsSent) {
    EXPECT_EQ(SetPassword(Text("secret")), 0);
    ExpectAsked({PasswordRpc("secret")});
    const std::string sLongest(127, 'p');
    EXPECT_EQ(SetPassword(Text(sLongest)), 0);
    ExpectAsked({PasswordRpc(sLongest)});
    EXPECT_EQ(SetPassword(Text("p")), 0);
    ExpectAsked({PasswordRpc("p")});
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(WebRightTest, PasswordsOfOtherLengthsAreRefused) {
    const std::string sTooLong(128, 'p');
    stWorld.stSecrets.Watch(sTooLong);
    const struct {
        std::optional<std::string> sPassword;
        uint32_t uiLength;
    } astRows[] = {
        {sTooLong, 128}, {"", 0}, {std::string("\0", 1) + kHttpPassword, 0}, {std::nullopt, 0}};
    for (const auto &stRow : astRows) {
        EXPECT_EQ(SetPassword(stRow.sPassword ? Text(*stRow.sPassword) : nullptr), -1);
        ExpectNobodyAsked();
        EXPECT_EQ(FaultCodes(stPlatform), Codes{kMinusOne});
        EXPECT_EQ(Recorded(kConfigFile, kMinusOne, {stRow.uiLength, 127}), 1u);
        stWorld.ExpectClean();
        NextCall();
    }
}

TEST_F(WebRightTest, ARefusedPasswordIsMinusOne) {
    Refuse(kSetPassword);
    EXPECT_EQ(SetPassword(Text("secret")), -1);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kMinusOne}));
    EXPECT_EQ(Recorded(kWorkerFile, kRefused, {kSetPassword}), 1u);
    EXPECT_EQ(Recorded(kConfigFile, kMinusOne), 1u);
}

TEST_F(WebRightTest, TheWorkerRefusesNullAndCutsWhatIsTooLong) {
    EXPECT_EQ(VT_JNI_SetHttpUserPassword(nullptr), kNullArgument);
    EXPECT_EQ(Recorded(kWorkerFile, kNullArgument), 1u);
    ExpectNobodyAsked();
    EXPECT_EQ(VT_JNI_SetHttpUserPassword(std::string(200, 'z').c_str()), 0u);
    ExpectAsked({PasswordRpc(std::string(127, 'z'))});
}

}  // namespace
}  // namespace wap::test

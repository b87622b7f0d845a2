// The passwords on their way through: nothing of them stays behind or is shown. What is found in a
// released block, a trace or the console is complained about when a test ends, see SecretWatch.
#include <set>

#include "unit/rights/rights_fixture.h"

namespace wap::test {
namespace {

/// A method that is given a password.
struct SecretMethod {
    const char *pcName;
    const char *pcPassword;
    uint32_t uiRpcId;
    uint32_t uiLongest;
    size_t uiPasswordAt;  ///< in the request
    jint (*pfnCall)(FakeJni &stJni, jstring jPassword);
    uint32_t (*pfnWorker)(const char *pcPassword);
};

const SecretMethod kMethods[] = {
    {"addFTPAccount", kFtpPassword, 0x4720903A, 256, 257,
     [](FakeJni &stJni, jstring jPassword) {
         return WAP_METHOD(DeviceAccessRightConfig, addFTPAccount)(
             &stJni, stJni.JavaObject(), stJni.JavaText(u"guest"), jPassword);
     },
     [](const char *pcPassword) { return VT_JNI_AddFTPAcount("guest", pcPassword); }},
    {"addSambaAccount", kSambaPassword, 0x4720903F, 64, 257,
     [](FakeJni &stJni, jstring jPassword) {
         return WAP_METHOD(DeviceAccessRightConfig, addSambaAccount)(
             &stJni, stJni.JavaObject(), stJni.JavaText(u"guest"), jPassword);
     },
     [](const char *pcPassword) { return VT_JNI_AddSambaAcount("guest", pcPassword); }},
    {"setHTTPUserPassword", kHttpPassword, 0x47209044, 127, 0,
     [](FakeJni &stJni, jstring jPassword) {
         return WAP_METHOD(DeviceAccessRightConfig, setHTTPUserPassword)(&stJni, stJni.JavaObject(),
                                                                         jPassword);
     },
     VT_JNI_SetHttpUserPassword},
};

class RightsSecretTest : public RightsTest, public ::testing::WithParamInterface<SecretMethod> {
  protected:
    const SecretMethod &stMethod = GetParam();

    jint Call(const std::string &sPassword) {
        const jint iResult = stMethod.pfnCall(stEnv, Text(sPassword));
        stEnv.EndCall();
        return iResult;
    }
    /// Expects that every place of the secret was wiped and none was shown.
    void ExpectNothingKept() {
        stWorld.ExpectClean();
        // A number in the fault log must not be a piece of it.
        for (const FaultRecord &stFault : stPlatform.astFaults) {
            for (const uint32_t uiArg : stFault.auiArgs) {
                EXPECT_LT(uiArg, 1000u + 0x47209044u);
            }
        }
    }
};

TEST_P(RightsSecretTest, ThePasswordIsSentAndGone) {
    EXPECT_EQ(Call(stMethod.pcPassword), 0);
    ASSERT_EQ(RpcIds(stPlatform), Codes{stMethod.uiRpcId});
    const std::string &sRequest = stPlatform.astRpcs[0].sRequest;
    EXPECT_EQ(sRequest.find(stMethod.pcPassword), stMethod.uiPasswordAt);
    ExpectNothingKept();
}

TEST_P(RightsSecretTest, ThePasswordIsGoneWhenItIsRefused) {
    Refuse(stMethod.uiRpcId);
    EXPECT_EQ(Call(stMethod.pcPassword), -1);
    ExpectNothingKept();
    for (const uint32_t uiMore : {1u, 100u, 5000u}) {
        std::string sTooLong = stMethod.pcPassword;
        sTooLong.resize(stMethod.uiLongest + uiMore, 'x');
        NextCall();
        EXPECT_EQ(Call(sTooLong), -1);
        ExpectNobodyAsked();
        ExpectNothingKept();
    }
}

TEST_P(RightsSecretTest, ThePasswordIsGoneBehindANul) {
    EXPECT_EQ(Call(std::string("\0", 1) + stMethod.pcPassword), -1);
    ExpectNothingKept();
    EXPECT_EQ(Call(std::string("x\0", 2) + stMethod.pcPassword), 0);
    ExpectNothingKept();
}

TEST_P(RightsSecretTest, TheWorkerWipesItsRecord) {
    EXPECT_EQ(stMethod.pfnWorker(stMethod.pcPassword), 0u);
    ExpectNothingKept();
    Refuse(stMethod.uiRpcId);
    EXPECT_EQ(stMethod.pfnWorker(stMethod.pcPassword), kMinusOne);
    ExpectNothingKept();
}

TEST_P(RightsSecretTest, NothingStaysOnTheStack) {
    const std::string sPassword = stMethod.pcPassword;
    std::string sTooLong = sPassword;
    sTooLong.resize(stMethod.uiLongest + 1, 'x');
    const auto fnKeeps = [&](const std::string &sGiven, jint iWanted) {
        const jstring jGiven = Text(sGiven);
        const bool bKept =
            StackKeeps([&] { EXPECT_EQ(stMethod.pfnCall(stEnv, jGiven), iWanted); }, {sPassword});
        stEnv.EndCall();
        return bKept;
    };
    EXPECT_FALSE(fnKeeps(sPassword, 0));
    EXPECT_FALSE(fnKeeps(sTooLong, -1));
    Refuse(stMethod.uiRpcId);
    EXPECT_FALSE(fnKeeps(sPassword, -1));
}

// The other argument of the two that have one.
TEST_P(RightsSecretTest, ThePasswordIsGoneWhenTheUserIsRefused) {
    if (stMethod.uiPasswordAt == 0) {
        EXPECT_STREQ(stMethod.pcName, "setHTTPUserPassword");
        return;
    }
    const Service stService = Services().at(stMethod.uiLongest == 256 ? 0 : 1);
    for (const std::string &sUser : {std::string(), std::string(257, 'u')}) {
        const jstring jUser = Text(sUser);
        const jstring jPassword = Text(stMethod.pcPassword);
        EXPECT_EQ(stService.pfnAdd(&stEnv, stEnv.JavaObject(), jUser, jPassword), -1);
        stEnv.EndCall();
        ExpectNobodyAsked();
        ExpectNothingKept();
    }
}

INSTANTIATE_TEST_SUITE_P(Methods, RightsSecretTest, ::testing::ValuesIn(kMethods),
                         [](const auto &stInfo) { return stInfo.param.pcName; });

}  // namespace
}  // namespace wap::test

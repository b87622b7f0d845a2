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
        // No number in the fault log, a code included, is a piece of it.
        const std::set<uint32_t> setPieces = Pieces(stMethod.pcPassword);
        for (const FaultRecord &stFault : stPlatform.astFaults) {
            EXPECT_EQ(setPieces.count(stFault.uiCode), 0u) << stFault.uiCode;
            for (const uint32_t uiArg : stFault.auiArgs) {
                EXPECT_EQ(setPieces.count(uiArg), 0u) << uiArg;
            }
        }
    }

  private:
    /// All words that a secret has in its bytes.
    static std::set<uint32_t> Pieces(const std::string &sSecret) {
        std::set<uint32_t> setPieces;
        for (size_t i = 0; i + sizeof(uint32_t) <= sSecret.size(); ++i) {
            setPieces.insert(WordAt(sSecret, i));
        }
        return setPieces;
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
    // What is there when the entry has ended.
    const auto fnExpect = [&](const std::string &sGiven, jint iWanted) {
        const jstring jGiven = Text(sGiven);
        jint iResult = 1;
        EXPECT_FALSE(StackKeeps([&] { iResult = stMethod.pfnCall(stEnv, jGiven); }, {sPassword}));
        EXPECT_EQ(iResult, iWanted);
        stEnv.EndCall();
    };
    // What the worker leaves: an entry's later calls may hide it.
    const auto fnExpectOfWorker = [&](uint32_t uiWanted) {
        uint32_t uiResult = 1;
        EXPECT_FALSE(
            StackKeeps([&] { uiResult = stMethod.pfnWorker(stMethod.pcPassword); }, {sPassword}));
        EXPECT_EQ(uiResult, uiWanted);
    };
    fnExpect(sPassword, 0);
    fnExpect(sTooLong, -1);
    fnExpectOfWorker(0);
    Refuse(stMethod.uiRpcId);
    fnExpect(sPassword, -1);
    fnExpectOfWorker(kMinusOne);
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

class ListedSecretTest : public ServiceTest {};

// The text of the accounts may tell passwords: our copy of it is wiped, whatever comes after it.
TEST_P(ListedSecretTest, TheTextsCopyIsWiped) {
    ASSERT_NE(std::string(stService.pcText).find(kListedPassword), std::string::npos);
    const auto fnGet = [&] {
        const jstring jText = stService.pfnGetRight(&stEnv, stEnv.JavaObject());
        std::optional<std::string> sText = stEnv.Utf8Of(jText);
        stEnv.EndCall();
        stWorld.ExpectClean();
        return sText;
    };
    EXPECT_EQ(fnGet(), stService.pcText);
    for (const char *pcFails : {"VT_OS_ShmDt", "VT_OS_ShmCtl"}) {
        SCOPED_TRACE(pcFails);
        stPlatform.mapStatus = {{pcFails, 1}};
        EXPECT_EQ(fnGet(), "{ \"Result\": -1 }");
    }
    stPlatform.mapStatus.clear();
    stWorld.Plan({Op::kJni, 1, true});
    EXPECT_EQ(fnGet(), std::nullopt);
}

WAP_EACH_SERVICE(ListedSecretTest);

INSTANTIATE_TEST_SUITE_P(Methods, RightsSecretTest, ::testing::ValuesIn(kMethods),
                         [](const auto &stInfo) { return stInfo.param.pcName; });

}  // namespace
}  // namespace wap::test

// The accounts of the FTP and of the Samba service: counting, adding, deleting.
#include "unit/rights/rights_fixture.h"

namespace wap::test {
namespace {

class CountAccountsTest : public ServiceTest {};

TEST_P(CountAccountsTest, TheReplysFirstWordIsTheCount) {
    uint32_t uiCount = 0;
    EXPECT_EQ(stService.pfnCountWorker(&uiCount), 0u);
    EXPECT_EQ(uiCount, stService.uiAccounts);
    ExpectAsked({CountRpc()});
    AnswerWith(stService.uiCount, Word(0xFEDCBA98) + std::string(2000, '\x77'));
    EXPECT_EQ(stService.pfnCountWorker(&uiCount), 0u);
    EXPECT_EQ(uiCount, 0xFEDCBA98u);
    AnswerWith(stService.uiCount, "");
    EXPECT_EQ(stService.pfnCountWorker(&uiCount), 0u);
    EXPECT_EQ(uiCount, 0u);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_P(CountAccountsTest, FailuresLeaveTheCountAlone) {
    uint32_t uiCount = 77;
    Refuse(stService.uiCount);
    EXPECT_EQ(stService.pfnCountWorker(&uiCount), kMinusOne);
    EXPECT_EQ(uiCount, 77u);
    EXPECT_EQ(Recorded(kWorkerFile, kRefused, {stService.uiCount}), 1u);
    NextCall();
    EXPECT_EQ(stService.pfnCountWorker(nullptr), kNullArgument);
    EXPECT_EQ(Recorded(kWorkerFile, kNullArgument), 1u);
    ExpectNobodyAsked();
}

WAP_EACH_SERVICE(CountAccountsTest);

class AddAccountTest : public ServiceTest {
  protected:
    jint Add(jstring jUser, jstring jPassword) {
        const jint iResult = stService.pfnAdd(&stEnv, stEnv.JavaObject(), jUser, jPassword);
        stEnv.EndCall();
        return iResult;
    }
    jint Add(const std::string &sUser, const std::string &sPassword) {
        return Add(Text(sUser), Text(sPassword));
    }
    WantedRpc AddRpc(const std::string &sUser, const std::string &sPassword) const {
        return ProxyRpc(stService.uiAdd, Field(sUser, 257) +
                                             Field(sPassword, stService.uiPasswordField) +
                                             std::string(10, '\0'));
    }
    /// Expects a refusal before anybody was asked, with these lengths in the fault log.
    void ExpectRefused(jint iResult, uint32_t uiUser, uint32_t uiPassword) {
        EXPECT_EQ(iResult, -1);
        ExpectNobodyAsked();
        EXPECT_EQ(FaultCodes(stPlatform), Codes{kMinusOne});
        EXPECT_EQ(
            Recorded(kConfigFile, kMinusOne, {uiUser, uiPassword, 256, stService.uiPasswordMax}),
            1u);
        stWorld.ExpectClean();
        NextCall();
    }
};

TEST_P(AddAccountTest, NameAndPasswordAreSent) {
    EXPECT_EQ(Add("guest", "secret"), 0);
    const WantedRpc stWanted = AddRpc("guest", "secret");
    EXPECT_EQ(stWanted.sRequest.size(), stService.uiPasswordMax == 256 ? 524u : 332u);
    ExpectAsked({stWanted});
    EXPECT_EQ(Add("gäst", "päss"), 0);
    ExpectAsked({AddRpc("g\xC3\xA4st", "p\xC3\xA4ss")});
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_P(AddAccountTest, TheLongestTextsAreSentWhole) {
    const std::string sUser(256, 'u');
    const std::string sPassword(stService.uiPasswordMax, 'p');
    EXPECT_EQ(Add(sUser, sPassword), 0);
    ExpectAsked({AddRpc(sUser, sPassword)});
    EXPECT_EQ(Add("u", "p"), 0);
    ExpectAsked({AddRpc("u", "p")});
}

TEST_P(AddAccountTest, LongerTextsAreRefused) {
    const std::string sTooLong(stService.uiPasswordMax + 1, 'p');
    stWorld.stSecrets.Watch(sTooLong);
    ExpectRefused(Add(std::string(257, 'u'), kFtpPassword), 257, 23);
    ExpectRefused(Add("guest", sTooLong), 5, stService.uiPasswordMax + 1);
    // 256 characters, but more bytes.
    std::string sWide = "\xC3\xA4";
    sWide.append(255, 'u');
    ExpectRefused(Add(sWide, "secret"), 257, 6);
}

TEST_P(AddAccountTest, MissingTextsAreRefused) {
    ExpectRefused(Add("", kFtpPassword), 0, 23);
    ExpectRefused(Add("guest", ""), 5, 0);
    ExpectRefused(Add(nullptr, Text(kFtpPassword)), 0, 23);
    ExpectRefused(Add(Text("guest"), nullptr), 5, 0);
    ExpectRefused(Add(nullptr, nullptr), 0, 0);
}

// What stands behind a U+0000 is not sent, but it is wiped with the rest.
TEST_P(AddAccountTest, ANulEndsAText) {
    ExpectRefused(Add(std::string("\0guest", 6), kFtpPassword), 0, 23);
    ExpectRefused(Add("guest", std::string("\0", 1) + kSambaPassword), 5, 0);
    EXPECT_EQ(Add(std::string("guest\0x", 7), std::string("secret\0", 7) + kSambaPassword), 0);
    ExpectAsked({AddRpc("guest", "secret")});
}

TEST_P(AddAccountTest, RefusalIsMinusOneAndRecorded) {
    Refuse(stService.uiAdd);
    EXPECT_EQ(Add("guest", "secret"), -1);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kMinusOne}));
    EXPECT_EQ(Recorded(kWorkerFile, kRefused, {stService.uiAdd}), 1u);
    EXPECT_EQ(Recorded(kConfigFile, kMinusOne), 1u);
}

TEST_P(AddAccountTest, TheWorkerRefusesNullAndCutsWhatIsTooLong) {
    EXPECT_EQ(stService.pfnAddWorker(nullptr, "p"), kNullArgument);
    EXPECT_EQ(stService.pfnAddWorker("u", nullptr), kNullArgument);
    EXPECT_EQ(Recorded(kWorkerFile, kNullArgument), 2u);
    ExpectNobodyAsked();
    const std::string sLong(300, 'z');
    EXPECT_EQ(stService.pfnAddWorker(sLong.c_str(), sLong.c_str()), 0u);
    ExpectAsked({AddRpc(std::string(256, 'z'), std::string(stService.uiPasswordMax, 'z'))});
}

WAP_EACH_SERVICE(AddAccountTest);

class DeleteAccountTest : public ServiceTest {
  protected:
    jint Delete(jstring jUser) {
        const jint iResult = stService.pfnDelete(&stEnv, stEnv.JavaObject(), jUser);
        stEnv.EndCall();
        return iResult;
    }
    WantedRpc DeleteRpc(const std::string &sUser) const {
        return ProxyRpc(stService.uiDelete, Field(sUser, 257));
    }
};

TEST_P(DeleteAccountTest, CountsFirstAndSendsTheName) {
    EXPECT_EQ(Delete(Text("guest")), 0);
    ExpectAsked({CountRpc(), DeleteRpc("guest")});
    const std::string sLongest(256, 'u');
    EXPECT_EQ(Delete(Text(sLongest)), 0);
    ExpectAsked({CountRpc(), DeleteRpc(sLongest)});
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_P(DeleteAccountTest, WithoutAccountsTheNameIsNotEvenLookedAt) {
    AnswerWith(stService.uiCount, Word(0));
    EXPECT_EQ(Delete(Text("guest")), -1);
    EXPECT_TRUE(stEnv.asCalls.empty());
    EXPECT_EQ(FaultCodes(stPlatform), Codes{kMinusOne});
    EXPECT_EQ(Recorded(kConfigFile, kMinusOne), 1u);
    ExpectAsked({CountRpc()});
    Refuse(stService.uiCount);
    EXPECT_EQ(Delete(Text("guest")), -1);
    EXPECT_TRUE(stEnv.asCalls.empty());
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kMinusOne}));
    ExpectAsked({CountRpc()});
}

TEST_P(DeleteAccountTest, OtherLengthsAreRefused) {
    for (const std::string &sUser : {std::string(), std::string("\0u", 2), std::string(257, 'u')}) {
        EXPECT_EQ(Delete(Text(sUser)), -1);
        const uint32_t uiLength = sUser.size() == 257 ? 257 : 0;
        EXPECT_EQ(Recorded(kConfigFile, kMinusOne, {uiLength, 256}), 1u);
        ExpectAsked({CountRpc()});
    }
    EXPECT_EQ(Delete(nullptr), -1);
    EXPECT_EQ(Recorded(kConfigFile, kMinusOne, {0, 256}), 1u);
    ExpectAsked({CountRpc()});
}

TEST_P(DeleteAccountTest, RefusalIsMinusOneAndRecorded) {
    Refuse(stService.uiDelete);
    EXPECT_EQ(Delete(Text("guest")), -1);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kMinusOne}));
    EXPECT_EQ(Recorded(kWorkerFile, kRefused, {stService.uiDelete}), 1u);
    EXPECT_EQ(Recorded(kConfigFile, kMinusOne), 1u);
}

TEST_P(DeleteAccountTest, TheWorkerRefusesNullAndCutsWhatIsTooLong) {
    EXPECT_EQ(stService.pfnDeleteWorker(nullptr), kNullArgument);
    EXPECT_EQ(Recorded(kWorkerFile, kNullArgument), 1u);
    ExpectNobodyAsked();
    EXPECT_EQ(stService.pfnDeleteWorker(std::string(300, 'z').c_str()), 0u);
    ExpectAsked({DeleteRpc(std::string(256, 'z'))});
}

WAP_EACH_SERVICE(DeleteAccountTest);

class DeleteAllAccountsTest : public ServiceTest {
  protected:
    jint DeleteAll() { return stService.pfnDeleteAll(&stEnv, stEnv.JavaObject()); }
    WantedRpc DeleteAllRpc() const { return ProxyRpc(stService.uiDeleteAll, Word(0)); }
};

TEST_P(DeleteAllAccountsTest, CountsFirst) {
    EXPECT_EQ(DeleteAll(), 0);
    EXPECT_TRUE(stPlatform.astFaults.empty());
    ExpectAsked({CountRpc(), DeleteAllRpc()});
    EXPECT_EQ(stService.pfnDeleteAllWorker(), 0u);
    ExpectAsked({DeleteAllRpc()});
}

TEST_P(DeleteAllAccountsTest, NoAccountsAreASuccess) {
    AnswerWith(stService.uiCount, Word(0));
    EXPECT_EQ(DeleteAll(), 0);
    EXPECT_EQ(FaultCodes(stPlatform), Codes{1});
    EXPECT_EQ(Recorded(kConfigFile, 1), 1u);
    EXPECT_TRUE(stPlatform.astFaults.at(0).bCodeOnly);
    ExpectAsked({CountRpc()});
}

TEST_P(DeleteAllAccountsTest, FailuresAreMinusOneAndRecorded) {
    Refuse(stService.uiDeleteAll);
    EXPECT_EQ(DeleteAll(), -1);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kMinusOne}));
    EXPECT_EQ(Recorded(kWorkerFile, kRefused, {stService.uiDeleteAll}), 1u);
    EXPECT_EQ(Recorded(kConfigFile, kMinusOne, {stService.uiAccounts}), 1u);
    ExpectAsked({CountRpc(), DeleteAllRpc()});
    Refuse(stService.uiCount);
    EXPECT_EQ(DeleteAll(), -1);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused, kMinusOne}));
    EXPECT_EQ(Recorded(kConfigFile, kMinusOne), 1u);
    ExpectAsked({CountRpc()});
}

WAP_EACH_SERVICE(DeleteAllAccountsTest);

}  // namespace
}  // namespace wap::test

// Who may log in to what: the accounts and rights of the services, byte for byte.
#include <sys/ipc.h>
#include <sys/shm.h>

#include <cstdlib>

#include "gateway_fixture.h"
#include "vt_ssp_basic.h"
#include "vt_ssp_host.h"

namespace wap::test {

namespace {

/// What is different about the services.
struct Service {
    const char *pcName;
    const char *pcOwner;
    uint32_t uiCountRpc;
    uint32_t uiFillRpc;
    uint32_t uiSetRpc;
    uint32_t uiAddRpc;
    uint32_t uiDeleteRpc;
    uint32_t uiDeleteAllRpc;
    int32_t iKey;
    size_t uiPasswordSize;
    const char *pcShipped;  ///< text of the service as shipped
    uint32_t uiShipped;     ///< its accounts
};

constexpr Service kFtp = {
    "ftp",
    "tarn",
    0x47201064,
    0x47209038,
    0x47209039,
    0x4720903A,
    0x4720903B,
    0x4720903C,
    0xD2036,
    257,
    R"({"Result":0,"LanAccess":1,"WanAccess":0,"Enable":1,"Value":0,"List":[{"User":"anna"}]})",
    1};
constexpr Service kSamba = {
    "samba",
    "usb_mngt",
    0x48200114,
    0x4720903D,
    0x4720903E,
    0x4720903F,
    0x47209040,
    0x47209041,
    0xD2038,
    65,
    R"({"Result":0,"LanAccess":0,"WanAccess":0,"Enable":0,"Value":0,"List":[]})",
    0};

uint32_t Change(uint32_t uiRpcId, const std::string &acRequest) {
    return Call("osgi_proxy", uiRpcId, acRequest, 4).uiStatus;
}

class AccountsTest : public GatewayTest, public testing::WithParamInterface<Service> {
  protected:
    void SetUp() override {
        GatewayTest::SetUp();
        CtlOk({"start", "osgi_proxy", GetParam().pcOwner, "--timeout", "60"});
    }

    static uint32_t Count() {
        const RpcReply stReply = Call(GetParam().pcOwner, GetParam().uiCountRpc, Word(0), 1020);
        EXPECT_EQ(stReply.uiStatus, 0u);
        EXPECT_EQ(stReply.acBytes.substr(4), std::string(1016, '\0'));
        return WordAt(stReply.acBytes, 0);
    }

    static uint32_t Add(const std::string &acUser, const std::string &acPassword) {
        return Change(GetParam().uiAddRpc, Field(acUser, 257) +
                                               Field(acPassword, GetParam().uiPasswordSize) +
                                               std::string(10, '\0'));
    }

    /// Has a segment of that size filled. Its text, or the status that was answered, as a number.
    static std::string Filled(uint32_t uiSize, uint32_t uiClaimed) {
        const int32_t iId = VT_OS_ShmGet(GetParam().iKey, uiSize, IPC_CREAT | IPC_EXCL | 0600);
        EXPECT_GE(iId, 0);
        char *pcText = static_cast<char *>(VT_OS_ShmAt(iId, nullptr, 0));
        memset(pcText, '\x5A', uiSize);
        const uint32_t uiStatus = Change(GetParam().uiFillRpc, Word(uiClaimed));
        std::string acText(pcText, strnlen(pcText, uiSize));
        EXPECT_EQ(VT_OS_ShmDt(pcText), 0);
        EXPECT_EQ(VT_OS_ShmCtl(iId, IPC_RMID, nullptr), 0);
        if (uiStatus != 0) {
            EXPECT_EQ(acText, std::string(uiSize, '\x5A')) << "nothing may be written";
            return std::to_string(uiStatus);
        }
        return acText;
    }
    static std::string Text() { return Filled(1000, 1000); }
};

std::string NameOf(const testing::TestParamInfo<Service> &stInfo) {
    return stInfo.param.pcName;
}

INSTANTIATE_TEST_SUITE_P(Services, AccountsTest, testing::Values(kFtp, kSamba), NameOf);

class WebRightTest : public GatewayTest {
  protected:
    void SetUp() override {
        GatewayTest::SetUp();
        CtlOk({"start", "osgi_proxy", "tarn", "--timeout", "60"});
    }
};

std::string WebText(const char *pcLan, const char *pcWan, const char *pcChanges) {
    return Field(std::string(R"({"Result":0,"LanAccess":)") + pcLan + R"(,"WanAccess":)" + pcWan +
                     R"(,"PasswordChanges":)" + pcChanges + "}",
                 256);
}

}  // namespace

TEST_P(AccountsTest, ShippedHome) {
    EXPECT_EQ(Count(), GetParam().uiShipped);
    EXPECT_EQ(Text(), GetParam().pcShipped);
}

TEST_P(AccountsTest, AccountsComeAndGo) {
    const uint32_t uiBefore = Count();
    EXPECT_EQ(Add("tom", "secret"), 0u);
    EXPECT_EQ(Add("Tom", "secret"), 0u) << "another user";
    EXPECT_EQ(Count(), uiBefore + 2);
    EXPECT_NE(Text().find(R"({"User":"tom"},{"User":"Tom"}])"), std::string::npos);
    EXPECT_EQ(Change(GetParam().uiDeleteRpc, Field("tom", 257)), 0u);
    EXPECT_EQ(Count(), uiBefore + 1);
    EXPECT_NE(Text().find(R"({"User":"Tom"}])"), std::string::npos);
    EXPECT_EQ(Text().find(R"("tom")"), std::string::npos);
    EXPECT_EQ(Change(GetParam().uiDeleteAllRpc, Word(0)), 0u);
    EXPECT_EQ(Count(), 0u);
    EXPECT_NE(Text().find(R"("List":[])"), std::string::npos);
}

TEST_P(AccountsTest, LongestNamesAndPasswords) {
    const std::string acUser(256, 'u');
    EXPECT_EQ(Add(acUser, std::string(GetParam().uiPasswordSize - 1, 'p')), 0u);
    EXPECT_NE(Text().find(acUser), std::string::npos);
    EXPECT_EQ(Change(GetParam().uiDeleteRpc, acUser + '\0'), 0u);
}

TEST_P(AccountsTest, EveryAccountThatIsAcceptedCanBeListed) {
    // {"User":"…"} and a comma; a control character takes six bytes there, a quote two.
    const size_t uiRoom = (GetParam().uiPasswordSize + 257 - 12) / 6;
    EXPECT_EQ(Add(std::string(uiRoom, '\x01'), "secret"), 0u);
    EXPECT_EQ(Add(std::string(uiRoom + 1, '\x01'), "secret"), kRefused);
    // To the byte, with the comma.
    const size_t uiRest = GetParam().uiPasswordSize + 257 - 12 - 6 * uiRoom;
    const std::string acFull = std::string(uiRoom, '\x03') + std::string(uiRest, 'u');
    EXPECT_EQ(Add(acFull, "secret"), 0u);
    EXPECT_EQ(Add(acFull + "u", "secret"), kRefused);
    EXPECT_EQ(Change(GetParam().uiDeleteAllRpc, Word(0)), 0u);
    ASSERT_EQ(Add(std::string(uiRoom, '\x02'), "secret"), 0u);
    const auto uiSize = static_cast<uint32_t>(GetParam().uiPasswordSize + 257 + 128);
    EXPECT_NE(Filled(uiSize, uiSize).find(R"("User":"\u0002\u0002)"), std::string::npos);
}

TEST_P(AccountsTest, WrongChangesAreRefused) {
    EXPECT_EQ(Add("", "secret"), kRefused);
    EXPECT_EQ(Add("tom", ""), kRefused);
    EXPECT_EQ(Add("tom", "secret"), 0u);
    EXPECT_EQ(Add("tom", "other"), kRefused) << "twice";
    EXPECT_EQ(Change(GetParam().uiDeleteRpc, Field("nobody", 257)), kRefused);
    EXPECT_EQ(Change(GetParam().uiSetRpc, Word(1) + Word(0) + Word(1) + Word(1) + Word(0x07)),
              kRefused)
        << "no such mask";
    EXPECT_EQ(Change(GetParam().uiAddRpc, Word(0)), uint32_t{VT_HOST_ERR_ARGUMENT});
    EXPECT_EQ(Count(), GetParam().uiShipped + 1);
}

TEST_P(AccountsTest, ServiceKeepsThirtyTwo) {
    for (uint32_t uiUser = Count(); uiUser < 32; ++uiUser) {
        ASSERT_EQ(Add("user" + std::to_string(uiUser), "secret"), 0u);
    }
    EXPECT_EQ(Add("onemore", "secret"), kTableFull);
    EXPECT_EQ(Count(), 32u);
}

TEST_P(AccountsTest, RightsWithFlagsAndWithout) {
    EXPECT_EQ(Change(GetParam().uiSetRpc, Word(1) + Word(77) + Word(0) + Word(1) + Word(0x0F)), 0u);
    EXPECT_EQ(Text().substr(0, 61),
              R"({"Result":0,"LanAccess":0,"WanAccess":1,"Enable":1,"Value":77)");
    EXPECT_EQ(Change(GetParam().uiSetRpc, Word(0) + Word(8) + Word(1) + Word(0) + Word(0x03)), 0u);
    EXPECT_EQ(Text().substr(0, 60),
              R"({"Result":0,"LanAccess":0,"WanAccess":1,"Enable":0,"Value":8)")
        << "the flags do not count";
}

TEST_P(AccountsTest, TextStaysInTheSegmentAndInWhatIsSaidOfIt) {
    const auto uiNeeded = static_cast<uint32_t>(strlen(GetParam().pcShipped) + 1);
    const std::string acTooLong = std::to_string(uint32_t{VT_HOST_ERR_TOO_LONG});
    EXPECT_EQ(Filled(uiNeeded, uiNeeded), GetParam().pcShipped);
    EXPECT_EQ(Filled(uiNeeded, uiNeeded - 1), acTooLong);
    EXPECT_EQ(Filled(uiNeeded - 1, uiNeeded - 1), acTooLong);
    EXPECT_EQ(Filled(uiNeeded - 1, uiNeeded), acTooLong)
        << "the segment is smaller than it is said";
    EXPECT_EQ(Change(GetParam().uiFillRpc, Word(1000)), uint32_t{VT_HOST_ERR_NO_BLOCK})
        << "without a segment";
}

TEST_P(AccountsTest, AccountsSurviveACrashOfTheirOwner) {
    EXPECT_EQ(Add("tom", "secret"), 0u);
    const std::string acBefore = Text();
    CtlOk({"kill", GetParam().pcOwner});
    EXPECT_EQ(Change(GetParam().uiDeleteAllRpc, Word(0)), uint32_t{VT_HOST_ERR_NO_RECEIVER});
    EXPECT_EQ(Filled(1000, 1000), std::to_string(uint32_t{VT_HOST_ERR_DATA}));
    CtlOk({"start", GetParam().pcOwner, "--timeout", "60"});
    EXPECT_EQ(Text(), acBefore);
}

TEST_P(AccountsTest, PasswordsAreNotKept) {
    EXPECT_EQ(Add("tom", "do-not-keep-this"), 0u);
    const std::string acState = std::string("state/") + GetParam().pcOwner + ".json";
    EXPECT_NE(ReadFile(acState).find("tom"), std::string::npos);
    EXPECT_EQ(ReadFile(acState).find("do-not-keep-this"), std::string::npos);
}

TEST_P(AccountsTest, SegmentOfAKilledLibraryGoesWithTheGateway) {
    ASSERT_GE(VT_OS_ShmGet(GetParam().iKey, 100, IPC_CREAT | IPC_EXCL | 0600), 0);
    CtlOk({"stop", "--timeout", "60"});
    EXPECT_EQ(VT_OS_ShmGet(GetParam().iKey, 0, 0), -1);
    ASSERT_GE(VT_OS_ShmGet(GetParam().iKey, 100, IPC_CREAT | IPC_EXCL | 0600), 0);
    CtlOk({"start", "tarn", "--timeout", "60"});
    EXPECT_EQ(VT_OS_ShmGet(GetParam().iKey, 0, 0), -1);
}

TEST_F(WebRightTest, RightAndPassword) {
    EXPECT_EQ(Call("osgi_proxy", 0x47209042, Word(0), 256).acBytes, WebText("1", "0", "0"));
    const std::string acNothing(128, '\0');
    EXPECT_EQ(Change(0x47209043, Word(0) + Word(1) + acNothing + Word(0x03)), 0u);
    EXPECT_EQ(Call("osgi_proxy", 0x47209042, Word(0), 256).acBytes, WebText("0", "1", "0"));
    EXPECT_EQ(Change(0x47209043, Word(1) + Word(1) + acNothing + Word(0x0F)), kRefused);
    EXPECT_EQ(Change(0x47209044, Field("do-not-keep-this", 128)), 0u);
    EXPECT_EQ(Change(0x47209044, std::string(128, '\0')), kRefused) << "an empty one";
    EXPECT_EQ(Change(0x47209044, Word(1)), uint32_t{VT_HOST_ERR_ARGUMENT});
    EXPECT_EQ(Call("osgi_proxy", 0x47209042, Word(0), 256).acBytes, WebText("0", "1", "1"));
    EXPECT_EQ(ReadFile("state/tarn.json").find("do-not-keep-this"), std::string::npos);
    EXPECT_NE(ReadFile("state/tarn.json").find("passwordChanges"), std::string::npos);
}

}  // namespace wap::test

// What usb_mngt answers about its devices and volumes, byte for byte, and who may have what.
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include "other_process.h"
#include "usb_rpcs.h"
#include "vt_ssp_host.h"

namespace wap::test {

namespace {

constexpr uint32_t kUnregister = 0x47103042;
constexpr uint32_t kDiscInfo = 0x47103067;

constexpr uint32_t kBusy = 0xF710403D;

std::string Plugin(const std::string &acName, uint32_t uiType = 0) {
    return Word(uiType) + Field(acName, 128);
}

/// A request whose reply says nothing: its status.
uint32_t Status(uint32_t uiRpcId, const std::string &acRequest) {
    const RpcReply stReply = Call("usb_mngt", uiRpcId, acRequest, 68);
    EXPECT_EQ(stReply.acBytes, std::string(68, stReply.uiStatus == 0 ? '\0' : kUntouched));
    return stReply.uiStatus;
}
uint32_t Status(OtherProcess &stOther, uint32_t uiRpcId, const std::string &acRequest) {
    return stOther.Ask("usb_mngt", uiRpcId, acRequest, 68).uiStatus;
}

/// The reply to an open that succeeded as a call.
std::string Opened(uint32_t uiDevice) {
    const RpcReply stReply = Call("usb_mngt", kOpen, Word(uiDevice), 100);
    EXPECT_EQ(stReply.uiStatus, 0u);
    return stReply.acBytes;
}

/// The reply to an open that gives no node.
std::string NotOpened(uint32_t uiResult) {
    return Word(uiResult) + std::string(96, '\0');
}

std::string Volume(const std::string &acPath) {
    return std::string(96, '\0') + Field(acPath, 128);
}

class UsbGatewayTest : public GatewayTest {
  protected:
    void SetUp() override {
        GatewayTest::SetUp();
        CtlOk({"start", "usb_mngt", "--timeout", "60"});
    }

    void Restart() {
        CtlOk({"stop", "usb_mngt"});
        CtlOk({"start", "usb_mngt", "--timeout", "60"});
    }

    /// The reply about those volumes.
    static std::string DiscInfo(const std::vector<std::string> &astPaths) {
        std::string acReply = Word(static_cast<uint32_t>(astPaths.size()));
        for (const std::string &acPath : astPaths) {
            acReply += Volume(acPath);
        }
        return Field(acReply, 7172);
    }
    static std::string AskDiscInfo() {
        const RpcReply stReply = Call("usb_mngt", kDiscInfo, "input", 7172);
        EXPECT_EQ(stReply.uiStatus, 0u);
        return stReply.acBytes;
    }

    OtherProcess m_stOther;
};

}  // namespace

TEST_F(UsbGatewayTest, DevicesAreForRegisteredPluginsOnly) {
    for (const uint32_t uiRpcId : {kLock, kUnlock, kOpen}) {
        EXPECT_EQ(Call("usb_mngt", uiRpcId, Word(1), 100).uiStatus, kRefused) << uiRpcId;
    }
    EXPECT_EQ(Status(m_stOther, kRegister, Plugin("theirs", 2)), 0u);
    EXPECT_EQ(Status(kLock, Word(1)), kRefused) << "another process's plug-in";
    EXPECT_EQ(Status(kRegister, Plugin("ours", 7)), 0u);
    EXPECT_EQ(Status(kLock, Word(1)), 0u);
    EXPECT_EQ(Status(kUnregister, Plugin("ours")), 0u);
    EXPECT_EQ(Status(kLock, Word(2)), kRefused);
}

TEST_F(UsbGatewayTest, PluginsBelongToTheirProcess) {
    EXPECT_EQ(Status(kRegister, Plugin("")), kRefused);
    EXPECT_EQ(Status(kUnregister, Plugin("ours")), kRefused);
    EXPECT_EQ(Status(kRegister, Plugin("ours", 1)), 0u);
    EXPECT_EQ(Status(kRegister, Plugin("ours", 0xFFFFFFFF)), 0u) << "again, as another type";
    EXPECT_EQ(Status(m_stOther, kRegister, Plugin("ours", 1)), kRefused);
    EXPECT_EQ(Status(m_stOther, kRegister, Plugin("theirs", 1)), 0u);
    EXPECT_EQ(Status(m_stOther, kUnregister, Plugin("ours")), kRefused);
    EXPECT_EQ(Status(kUnregister, Plugin("theirs")), kRefused);
    EXPECT_EQ(Status(kUnregister, Plugin("ours")), 0u);
    EXPECT_EQ(Status(kUnregister, Plugin("ours")), kRefused);
    EXPECT_EQ(Status(m_stOther, kRegister, Plugin("ours", 1)), 0u) << "free again";
    const std::string acLong(128, 'x');
    EXPECT_EQ(Status(kRegister, Plugin(acLong)), 0u) << "a text without an end";
    EXPECT_EQ(Status(kUnregister, Plugin(acLong)), 0u);
}

TEST_F(UsbGatewayTest, OnlySoManyPluginsFit) {
    for (uint32_t uiPlugin = 0; uiPlugin < 64; ++uiPlugin) {
        EXPECT_EQ(Status(kRegister, Plugin("p" + std::to_string(uiPlugin))), 0u);
    }
    EXPECT_EQ(Status(kRegister, Plugin("one more")), kTableFull);
    EXPECT_EQ(Status(kRegister, Plugin("p0", 5)), 0u);
    EXPECT_EQ(Status(kUnregister, Plugin("p63")), 0u);
    EXPECT_EQ(Status(kRegister, Plugin("one more")), 0u);
}

TEST_F(UsbGatewayTest, ALockedDeviceIsBusyForAllThatAsk) {
    EXPECT_EQ(Status(kRegister, Plugin("ours")), 0u);
    EXPECT_EQ(Status(m_stOther, kRegister, Plugin("theirs")), 0u);
    EXPECT_EQ(Status(kUnlock, Word(1)), kRefused) << "nobody has it";
    EXPECT_EQ(Opened(1), NotOpened(2)) << "nor may it be opened then";
    EXPECT_EQ(Status(kLock, Word(1)), 0u);
    EXPECT_EQ(Status(kLock, Word(1)), kBusy) << "perhaps another plug-in of this process";
    EXPECT_EQ(Status(m_stOther, kLock, Word(1)), kBusy);
    EXPECT_EQ(Status(m_stOther, kUnlock, Word(1)), kRefused);
    const RpcReply stReply = m_stOther.Ask("usb_mngt", kOpen, Word(1), 100);
    EXPECT_EQ(stReply.uiStatus, kBusy);
    EXPECT_EQ(stReply.acBytes, std::string(100, kUntouched));
    EXPECT_EQ(Status(m_stOther, kLock, Word(2)), 0u) << "the other device is free";

    const std::string acOpened = Opened(1);
    EXPECT_EQ(acOpened.substr(0, 4), Word(0));
    const std::string acNode = acOpened.c_str() + 4;
    EXPECT_EQ(acOpened, Word(0) + Field(acNode, 96));
    struct stat stNode = {};
    EXPECT_EQ(stat(acNode.c_str(), &stNode), 0);
    EXPECT_TRUE(S_ISCHR(stNode.st_mode)) << acNode;
    EXPECT_EQ(Opened(1), acOpened) << "as often as its owner likes";

    EXPECT_EQ(Status(kUnlock, Word(1)), 0u);
    EXPECT_EQ(Status(kUnlock, Word(1)), kRefused);
    EXPECT_EQ(Status(m_stOther, kLock, Word(1)), 0u);
    EXPECT_EQ(Status(kLock, Word(1)), kBusy);
}

TEST_F(UsbGatewayTest, LocksGoWithTheLastPluginOfTheirProcess) {
    EXPECT_EQ(Status(kRegister, Plugin("one")), 0u);
    EXPECT_EQ(Status(kRegister, Plugin("two")), 0u);
    EXPECT_EQ(Status(m_stOther, kRegister, Plugin("theirs")), 0u);
    EXPECT_EQ(Status(kLock, Word(1)), 0u);
    EXPECT_EQ(Status(m_stOther, kLock, Word(2)), 0u);
    EXPECT_EQ(Status(kUnregister, Plugin("one")), 0u);
    EXPECT_EQ(Status(m_stOther, kLock, Word(1)), kBusy);
    EXPECT_EQ(Status(kUnregister, Plugin("two")), 0u);
    EXPECT_EQ(Status(m_stOther, kLock, Word(1)), 0u);
    EXPECT_EQ(Status(m_stOther, kLock, Word(2)), kBusy) << "its own, which was not touched";
}

TEST_F(UsbGatewayTest, ALockGoesWithItsProcess) {
    EXPECT_EQ(Status(kRegister, Plugin("ours")), 0u);
    EXPECT_EQ(Status(m_stOther, kRegister, Plugin("theirs")), 0u);
    EXPECT_EQ(Status(m_stOther, kLock, Word(1)), 0u);
    EXPECT_EQ(Status(kLock, Word(1)), kBusy);
    m_stOther.Crash();
    EXPECT_EQ(Status(kLock, Word(1)), 0u) << "though nobody has waited for it yet";
    EXPECT_EQ(Status(kRegister, Plugin("theirs")), 0u) << "and its plug-ins";
}

TEST_F(UsbGatewayTest, ADeviceThatIsNotThereIsRefused) {
    EXPECT_EQ(Status(kRegister, Plugin("ours")), 0u);
    for (const uint32_t uiDevice : {0u, 3u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Status(kLock, Word(uiDevice)), kRefused);
        EXPECT_EQ(Status(kUnlock, Word(uiDevice)), kRefused);
        EXPECT_EQ(Opened(uiDevice), NotOpened(1));
    }
}

TEST_F(UsbGatewayTest, RequestsOfAnotherLengthAreRefused) {
    for (const uint32_t uiRpcId : {kRegister, kUnregister}) {
        EXPECT_EQ(Status(uiRpcId, std::string(131, 'x')), VT_HOST_ERR_ARGUMENT);
        EXPECT_EQ(Status(uiRpcId, std::string(133, 'x')), VT_HOST_ERR_ARGUMENT);
    }
    for (const uint32_t uiRpcId : {kLock, kUnlock, kOpen}) {
        EXPECT_EQ(Status(uiRpcId, std::string(3, '\1')), VT_HOST_ERR_ARGUMENT);
        EXPECT_EQ(Status(uiRpcId, std::string(5, '\1')), VT_HOST_ERR_ARGUMENT);
    }
    EXPECT_EQ(Status(kDiscInfo, "inpu"), VT_HOST_ERR_ARGUMENT);
    EXPECT_EQ(Status(kDiscInfo, std::string("input\0", 6)), VT_HOST_ERR_ARGUMENT);
    EXPECT_EQ(Status(kDiscInfo, "INPUT"), kRefused);
}

TEST_F(UsbGatewayTest, VolumesAreTold) {
    const std::string acShipped = m_acDir + "/storage/usb1";
    struct stat stFolder = {};
    ASSERT_EQ(stat(acShipped.c_str(), &stFolder), 0);
    EXPECT_TRUE(S_ISDIR(stFolder.st_mode));
    EXPECT_EQ(AskDiscInfo(), DiscInfo({acShipped}));
    const std::string acStick = MakeFolder("stick");
    CtlOk({"storage", "add", acStick});
    EXPECT_EQ(AskDiscInfo(), DiscInfo({acShipped, acStick}));
    ASSERT_EQ(rmdir(acStick.c_str()), 0);
    EXPECT_EQ(AskDiscInfo(), DiscInfo({acShipped, acStick})) << "pulled out, not unmounted";
    CtlOk({"storage", "remove", "usb1"});
    CtlOk({"storage", "remove", acStick});
    EXPECT_EQ(AskDiscInfo(), DiscInfo({}));
}

TEST_F(UsbGatewayTest, NoMoreVolumesAreToldThanFit) {
    std::vector<std::string> astFolders = {m_acDir + "/storage/usb1"};
    for (int iFolder = 1; iFolder < 32; ++iFolder) {
        astFolders.push_back(MakeFolder("stick" + std::to_string(iFolder)));
        CtlOk({"storage", "add", astFolders.back()});
    }
    EXPECT_EQ(AskDiscInfo(), DiscInfo(astFolders));
    const Outcome stAdd = Ctl({"storage", "add", MakeFolder("too-many")});
    EXPECT_EQ(stAdd.iExit, 1);
    EXPECT_EQ(stAdd.acErr,
              "gatewayctl: there are 32 volumes already, and no more fit into an answer\n");

    // A home that was written by hand may have more, and paths that do not fit.
    CtlOk({"stop"});
    std::string acState = ReadFile("state/usb_mngt.json");
    const size_t uiList = acState.find("\"storage\"");
    const size_t uiFirst = acState.find('[', uiList) + 1;
    std::string acMore = "{\"name\":\"long\",\"directory\":\"/" + std::string(127, 'd') +
                         "\"},"
                         "{\"name\":\"longest\",\"directory\":\"/" +
                         std::string(126, 'd') + "\"},";
    for (int iFolder = 0; iFolder < 5; ++iFolder) {
        acMore += "{\"name\":\"more" + std::to_string(iFolder) + "\",\"directory\":\"/more/" +
                  std::to_string(iFolder) + "\"},";
    }
    WriteFile("state/usb_mngt.json", acState.insert(uiFirst, acMore));
    CtlOk({"start", "usb_mngt", "--timeout", "60"});
    std::vector<std::string> astTold = {"/" + std::string(126, 'd')};
    for (int iFolder = 0; iFolder < 5; ++iFolder) {
        astTold.push_back("/more/" + std::to_string(iFolder));
    }
    astTold.insert(astTold.end(), astFolders.begin(), astFolders.begin() + 26);
    EXPECT_EQ(AskDiscInfo(), DiscInfo(astTold));
}

TEST_F(UsbGatewayTest, DevicesAndVolumesOutliveTheProcessAndLocksDoNot) {
    const std::string acStick = MakeFolder("stick");
    CtlOk({"storage", "add", acStick});
    CtlOk({"usb", "plug", "serial1", "--kind", "echo"});
    CtlOk({"usb", "unplug", "modem0"});
    EXPECT_EQ(Status(kRegister, Plugin("ours")), 0u);
    EXPECT_EQ(Status(kLock, Word(2)), 0u);
    Restart();
    EXPECT_EQ(AskDiscInfo(), DiscInfo({m_acDir + "/storage/usb1", acStick}));
    EXPECT_EQ(Status(kLock, Word(2)), kRefused) << "nobody is registered";
    EXPECT_EQ(Status(m_stOther, kRegister, Plugin("ours")), 0u);
    EXPECT_EQ(Status(m_stOther, kLock, Word(1)), kRefused);
    EXPECT_EQ(Status(m_stOther, kLock, Word(2)), 0u);
    EXPECT_EQ(Status(m_stOther, kLock, Word(3)), 0u);
}

}  // namespace wap::test

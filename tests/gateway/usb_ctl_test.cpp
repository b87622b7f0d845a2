// gatewayctl's verbs about the USB port: what they say, refuse and keep.
#include <unistd.h>

#include "gateway_fixture.h"
#include "other_process.h"

namespace wap::test {

namespace {

constexpr uint32_t kRegister = 0x47103041;
constexpr uint32_t kLock = 0x47103043;

class UsbCtlTest : public GatewayTest {
  protected:
    void SetUp() override {
        GatewayTest::SetUp();
        CtlOk({"start", "usb_mngt", "--timeout", "60"});
    }

    /// Expects that a command is refused with that text.
    void Refuses(const std::vector<std::string> &astArguments, const std::string &acText,
                 int iExit = 1) const {
        const Outcome stOutcome = Ctl(astArguments);
        EXPECT_EQ(stOutcome.iExit, iExit);
        EXPECT_EQ(stOutcome.acOut, "");
        EXPECT_NE(stOutcome.acErr.find(acText), std::string::npos) << stOutcome.acErr;
    }

    /// The list of devices with each node, which the system numbers, as a word.
    std::string Devices() const {
        std::string acList = CtlOk({"usb"});
        for (size_t uiAt = acList.find("/dev/"); uiAt != std::string::npos;
             uiAt = acList.find("/dev/", uiAt)) {
            const std::string acNode = acList.substr(uiAt, acList.find(' ', uiAt) - uiAt);
            EXPECT_EQ(access(acNode.c_str(), R_OK | W_OK), 0) << acNode;
            acList.replace(uiAt, acNode.size(), Padded("NODE", acNode.size()));
        }
        return acList;
    }
    static std::string Padded(std::string acText, size_t uiSize) {
        acText.resize(uiSize, ' ');
        return acText;
    }

    std::string ShippedVolume() const { return "usb1         " + m_acDir + "/storage/usb1\n"; }

    OtherProcess m_stOther;
};

constexpr char kDeviceHead[] = "ID  NAME         KIND   NODE           LOCKED BY\n";
constexpr char kVolumeHead[] = "NAME         FOLDER\n";

}  // namespace

TEST_F(UsbCtlTest, DevicesArePluggedInAndOut) {
    EXPECT_EQ(Devices(), std::string(kDeviceHead) +
                             "1   modem0       modem  NODE           -\n"
                             "2   serial0      echo   NODE           -\n");
    const std::string acPlugged = CtlOk({"usb", "plug", "serial1", "--kind", "modem"});
    EXPECT_EQ(acPlugged.rfind("device 3: /dev/", 0), 0u) << acPlugged;
    CtlOk({"usb", "unplug", "1"});
    CtlOk({"usb", "unplug", "SERIAL0"});
    EXPECT_EQ(Devices(), std::string(kDeviceHead) + "3   serial1      modem  NODE           -\n");
    EXPECT_EQ(CtlOk({"usb", "plug", "a", "--kind", "echo"}).rfind("device 1: ", 0), 0u);
    CtlOk({"kill", "usb_mngt"});
    CtlOk({"start", "usb_mngt", "--timeout", "60"});
    EXPECT_EQ(Devices(), std::string(kDeviceHead) +
                             "1   a            echo   NODE           -\n"
                             "3   serial1      modem  NODE           -\n");
}

TEST_F(UsbCtlTest, UsersOfDevicesAreListed) {
    const std::string acPid = std::to_string(m_stOther.Pid());
    EXPECT_EQ(
        m_stOther.Ask("usb_mngt", kRegister, Word(9) + Field("meter.reader", 128), 68).uiStatus,
        0u);
    EXPECT_EQ(m_stOther.Ask("usb_mngt", kRegister, Word(0) + Field("alarm", 128), 68).uiStatus, 0u);
    EXPECT_EQ(m_stOther.Ask("usb_mngt", kLock, Word(2), 68).uiStatus, 0u);
    const std::string acProcess = Padded(acPid, 8);
    EXPECT_EQ(Devices(), std::string(kDeviceHead) +
                             "1   modem0       modem  NODE           -\n"
                             "2   serial0      echo   NODE           " +
                             acPid + "\n\nPROCESS  TYPE       PLUG-IN\n" + acProcess +
                             " 0          alarm\n" + acProcess + " 9          meter.reader\n");
    m_stOther.Crash();
    EXPECT_EQ(Devices(), std::string(kDeviceHead) +
                             "1   modem0       modem  NODE           -\n"
                             "2   serial0      echo   NODE           -\n");
}

TEST_F(UsbCtlTest, WhatCannotBePluggedIsRefused) {
    Refuses({"usb", "plug", "Modem0", "--kind", "echo"}, "there is a device \"Modem0\" already");
    Refuses({"usb", "plug", "17", "--kind", "echo"}, "\"17\" is no name for a device");
    Refuses({"usb", "plug", "a b", "--kind", "echo"}, "\"a b\" is no name for a device");
    Refuses({"usb", "plug", std::string(32, 'n'), "--kind", "echo"}, "is no name for a device");
    Refuses({"usb", "plug", "other"}, "--kind is required", 2);
    Refuses({"usb", "plug", "other", "--kind", "mouse"}, "mouse", 2);
    Refuses({"usb", "plug"}, "NAME is required", 2);
    Refuses({"usb", "unplug", "nobody"}, "there is no device \"nobody\"");
    Refuses({"usb", "unplug", "3"}, "there is no device \"3\"");
    Refuses({"usb", "list"}, "list", 2);
    CtlOk({"usb", "plug", std::string(31, 'n'), "--kind", "echo"});
    for (int iDevice = 3; iDevice < 16; ++iDevice) {
        CtlOk({"usb", "plug", "d" + std::to_string(iDevice), "--kind", "echo"});
    }
    Refuses({"usb", "plug", "other", "--kind", "echo"}, "all 16 sockets are in use");
    CtlOk({"stop"});
    Refuses({"usb"}, "usb_mngt");
}

TEST_F(UsbCtlTest, ADeviceThatTheHomeChangesIsAnotherOne) {
    CtlOk({"set", "usb.0.kind", "echo"});
    CtlOk({"set", "usb.1.kind", "toaster"});
    EXPECT_EQ(Devices(), std::string(kDeviceHead) +
                             "1   modem0       echo   NODE           -\n"
                             "2   serial0      toaster does not work  -\n");
    CtlOk({"set", "usb.0.id", "0"});
    EXPECT_EQ(Devices(), std::string(kDeviceHead) + "2   serial0      toaster does not work  -\n");
    EXPECT_NE(ReadFile("log/usb_mngt.out").find("there is no kind of device \"toaster\""),
              std::string::npos);
}

TEST_F(UsbCtlTest, FoldersAreMountedAndUnmounted) {
    EXPECT_EQ(CtlOk({"storage"}), kVolumeHead + ShippedVolume());
    const std::string acFirst = MakeFolder("first");
    const std::string acSecond = MakeFolder("second");
    ASSERT_EQ(symlink(acFirst.c_str(), (m_acDir + "/link").c_str()), 0);
    CtlOk({"storage", "add", m_acDir + "/link/../link"});
    CtlOk({"storage", "add", acSecond, "--name", "my stick"});
    EXPECT_EQ(CtlOk({"storage"}), kVolumeHead + ShippedVolume() + "first        " + acFirst +
                                      "\nmy stick     " + acSecond + "\n");
    CtlOk({"kill", "usb_mngt"});
    CtlOk({"start", "usb_mngt", "--timeout", "60"});
    CtlOk({"storage", "remove", m_acDir + "/link"});
    CtlOk({"storage", "remove", "usb1"});
    EXPECT_EQ(CtlOk({"storage"}), kVolumeHead + ("my stick     " + acSecond) + "\n");
    CtlOk({"storage", "remove", "MY STICK"});
    EXPECT_EQ(CtlOk({"storage"}), kVolumeHead);
}

TEST_F(UsbCtlTest, ARelativeFolderIsTakenFromWhereTheUserIs) {
    const std::string acFolder = MakeFolder("here");
    std::vector<std::string> astWords = {"sh", "-c", "cd \"$0\" && exec \"$@\"", m_acDir};
    for (const std::string &acWord : CtlWords({"storage", "add", "./here"})) {
        astWords.push_back(acWord);
    }
    const Outcome stAdd = Run(astWords);
    EXPECT_EQ(stAdd.iExit, 0) << stAdd.acErr;
    EXPECT_EQ(CtlOk({"storage"}),
              kVolumeHead + ShippedVolume() + "here         " + acFolder + "\n");
}

TEST_F(UsbCtlTest, WhatCannotBeMountedIsRefused) {
    const std::string acFolder = MakeFolder("folder");
    WriteFile("file", "");
    Refuses({"storage", "add", m_acDir + "/nowhere"}, "No such file or directory");
    Refuses({"storage", "add", m_acDir + "/file"}, m_acDir + "/file is no directory");
    Refuses({"storage", "add", m_acDir + "/storage/usb1", "--name", "other"},
            "is mounted already, as \"usb1\"");
    Refuses({"storage", "add", acFolder, "--name", "USB1"}, "there is a volume \"USB1\" already");
    Refuses({"storage", "add", acFolder, "--name", "a/b"}, "\"a/b\" is no name for a volume");
    Refuses({"storage", "add", "/"}, "\"\" is no name for a volume");
    Refuses({"storage", "remove", "nobody"}, "there is no volume \"nobody\"");
    Refuses({"storage", "remove", acFolder}, "there is no volume \"" + acFolder + "\"");
    Refuses({"storage", "add"}, "DIR is required", 2);
    const std::string acLongest = MakeFolder(std::string(127 - m_acDir.size() - 1, 'l'));
    const std::string acLong = MakeFolder(std::string(128 - m_acDir.size() - 1, 'l'));
    Refuses({"storage", "add", acLong}, "is too long: at most 127 bytes");
    CtlOk({"storage", "add", acLongest, "--name", "longest"});
    EXPECT_EQ(CtlOk({"storage"}),
              kVolumeHead + ShippedVolume() + "longest      " + acLongest + "\n");
}

}  // namespace wap::test

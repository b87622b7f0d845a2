// What "usb_mngt" is asked by the methods about plug-ins and devices, and what they make of its
// replies.
#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "unit/usb/usb_fixture.h"

namespace wap::test {
namespace {

/// A method that asks "usb_mngt" and gets no more than a result.
struct Managed {
    const char *pcName;
    jint (*pfnCall)(FakeJni &stEnv);
    uint32_t uiRpcId;
    std::string sRequest;
    Calls asTraces;
    uint32_t uiAbout;  ///< the number in the fault log
};

std::string PluginBytes(uint32_t uiType, const std::string &sPlugId) {
    return Word(uiType) + Field(sPlugId, 128);
}

const std::vector<Managed> &ManagedMethods() {
    static const std::vector<Managed> s_astMethods = {
        {"usbRegister",
         [](FakeJni &stEnv) {
             return WAP_USB(usbRegister)(&stEnv, nullptr, stEnv.JavaText(u"com.example.meter"), 7);
         },
         kAskRegister,
         PluginBytes(7, "com.example.meter"),
         {"\r\n pcPlugId = com.example.meter \r\n", "\r\n iType = 7 \r\n"},
         7},
        {"usbUnregister",
         [](FakeJni &stEnv) {
             return WAP_USB(usbUnregister)(&stEnv, nullptr, stEnv.JavaText(u"com.example.meter"));
         },
         kAskUnregister,
         PluginBytes(0, "com.example.meter"),
         {"\r\n pcPlugId = com.example.meter \r\n"},
         0},
        {"usbLock",
         [](FakeJni &stEnv) { return WAP_USB(usbLock)(&stEnv, nullptr, 0x01020304); },
         kAskLock,
         Word(0x01020304),
         {"\r\n iDevId = 16909060  \r\n"},
         0x01020304},
        {"usbUnlock",
         [](FakeJni &stEnv) { return WAP_USB(usbUnlock)(&stEnv, nullptr, -2); },
         kAskUnlock,
         Word(0xFFFFFFFE),
         {"\r\n iDevId = 4294967294  \r\n"},
         0xFFFFFFFE},
    };
    return s_astMethods;
}

class ManagedTest : public UsbTest, public ::testing::WithParamInterface<Managed> {
  protected:
    jint Call() {
        stPlatform.ClearRecords();
        const jint iResult = GetParam().pfnCall(stEnv);
        stEnv.EndCall();
        return iResult;
    }
};

TEST_P(ManagedTest, AsksWithItsRecordAndTracesItsArguments) {
    EXPECT_EQ(Call(), 0);
    ExpectOnlyRpc(stPlatform, {"usb_mngt", 0, GetParam().uiRpcId, GetParam().sRequest, 68, 30000});
    EXPECT_EQ(LaterTraces(), GetParam().asTraces);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_P(ManagedTest, DoesNotLookAtTheReply) {
    for (const std::string &sReply :
         {std::string(), std::string(4, '\xFF'), std::string(500, '\x5A')}) {
        stPlatform.mapReplies[GetParam().uiRpcId] = {0, sReply};
        EXPECT_EQ(Call(), 0);
    }
}

TEST_P(ManagedTest, BusyIsMinusTwoAndAllElseMinusOne) {
    for (const auto &[uiStatus, iWanted] :
         std::vector<std::pair<uint32_t, jint>>{{kBusy, -2},
                                                {kBusy + 1, -1},
                                                {kBusy - 1, -1},
                                                {kRefused, -1},
                                                {1, -1},
                                                {0xFFFFFFFE, -1},
                                                {kMinusOne, -1}}) {
        SCOPED_TRACE(uiStatus);
        stPlatform.mapReplies[GetParam().uiRpcId].uiStatus = uiStatus;
        EXPECT_EQ(Call(), iWanted);
        // Once by the call, once with what it was about.
        EXPECT_EQ(FaultCodes(stPlatform), (Codes{uiStatus, uiStatus}));
        EXPECT_TRUE(stPlatform.astFaults[0].bCodeOnly);
        EXPECT_FALSE(stPlatform.astFaults[1].bCodeOnly);
        EXPECT_EQ(stPlatform.astFaults[1].sFile, kWorkerFile);
        EXPECT_EQ(stPlatform.astFaults[1].auiArgs, (Args{GetParam().uiAbout, 0, 0, 0}));
    }
}

INSTANTIATE_TEST_SUITE_P(Methods, ManagedTest, ::testing::ValuesIn(ManagedMethods()),
                         [](const auto &stInfo) { return stInfo.param.pcName; });

class PluginTest : public UsbTest {
  protected:
    jint Register(jstring jPlugId, jint iType = 1) {
        stPlatform.ClearRecords();
        const jint iResult = WAP_USB(usbRegister)(&stEnv, nullptr, jPlugId, iType);
        stEnv.EndCall();
        return iResult;
    }
    jint Unregister(jstring jPlugId) {
        stPlatform.ClearRecords();
        const jint iResult = WAP_USB(usbUnregister)(&stEnv, nullptr, jPlugId);
        stEnv.EndCall();
        return iResult;
    }
};

TEST_F(PluginTest, IdIsCutTo127Bytes) {
    for (const size_t uiLength : {126u, 127u, 128u, 129u, 5000u}) {
        SCOPED_TRACE(uiLength);
        EXPECT_EQ(Register(stEnv.JavaText(std::u16string(uiLength, u'p')), -1), 0);
        EXPECT_EQ(stPlatform.astRpcs.at(0).sRequest,
                  PluginBytes(0xFFFFFFFF, std::string(std::min<size_t>(uiLength, 127), 'p')));
        EXPECT_EQ(Unregister(stEnv.JavaText(std::u16string(uiLength, u'p'))), 0);
        EXPECT_EQ(stPlatform.astRpcs.at(0).sRequest,
                  PluginBytes(0, std::string(std::min<size_t>(uiLength, 127), 'p')));
    }
}

TEST_F(PluginTest, WithoutAnIdNobodyIsAsked) {
    for (const bool bNull : {true, false}) {
        const auto Id = [&] { return bNull ? nullptr : stEnv.JavaText(u""); };
        EXPECT_EQ(Register(Id()), -1);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        EXPECT_TRUE(LaterTraces().empty());
        ExpectOnlyFault(kEntryFile, kMinusOne, {});
        EXPECT_EQ(Unregister(Id()), -1);
        EXPECT_TRUE(stPlatform.astRpcs.empty());
        ExpectOnlyFault(kEntryFile, kMinusOne, {});
    }
}

// The wait for "usb_mngt" can be long.
TEST_F(PluginTest, ConvertedIdIsReleasedBeforeAnybodyIsAsked) {
    size_t uiLive = 99;
    stPlatform.fnReply = [&](const RpcRecord &) -> std::optional<Reply> {
        uiLive = stWorld.stAllocs.Live();
        return std::nullopt;
    };
    EXPECT_EQ(Register(stEnv.JavaText(u"com.example.meter")), 0);
    EXPECT_EQ(uiLive, 0u);
    uiLive = 99;
    EXPECT_EQ(Unregister(stEnv.JavaText(u"com.example.meter")), 0);
    EXPECT_EQ(uiLive, 0u);
}

TEST_F(PluginTest, WorkersWithoutAnIdFail) {
    PlatformBlock stNone;
    EXPECT_EQ(UsbRegister(stNone, 1), -1);
    EXPECT_EQ(UsbUnregister(stNone), -1);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_EQ(TimesRecorded(kWorkerFile, kMinusOne), 2u);
}

class OpenTest : public UsbTest {
  protected:
    jint Open(jint iDevId = 3) {
        stPlatform.ClearRecords();
        const jint iResult = WAP_USB(usbOpen)(&stEnv, nullptr, iDevId);
        stEnv.EndCall();
        return iResult;
    }
};

TEST_F(OpenTest, AsksForThePathAndOpensIt) {
    EXPECT_EQ(Open(0x01020304), 77);
    ExpectOnlyRpc(stPlatform, {"usb_mngt", 0, kAskOpen, Word(0x01020304), 100, 30000});
    // For reading and writing, and nothing besides.
    EXPECT_EQ(stPlatform.asCalls,
              (Calls{"VT_OS_Open /dev/ttyUSB0 " + std::to_string(O_RDWR) + " 0"}));
    EXPECT_EQ(LaterTraces(), (Calls{"VT_JNI_UsbOpen : 77.\n"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(OpenTest, DescriptorZeroIsAHandle) {
    stScript.iOpened = 0;
    EXPECT_EQ(Open(), 0);
    EXPECT_EQ(LaterTraces(), (Calls{"VT_JNI_UsbOpen : 0.\n"}));
}

TEST_F(OpenTest, RefusalsOpenNothing) {
    for (const auto &[uiStatus, iWanted] :
         std::vector<std::pair<uint32_t, jint>>{{kBusy, -2}, {kRefused, -1}, {kMinusOne, -1}}) {
        stPlatform.mapReplies[kAskOpen].uiStatus = uiStatus;
        EXPECT_EQ(Open(), iWanted);
        EXPECT_TRUE(stPlatform.asCalls.empty());
        EXPECT_EQ(FaultCodes(stPlatform), (Codes{uiStatus, uiStatus}));
        EXPECT_EQ(stPlatform.astFaults[1].auiArgs, (Args{3, 0, 0, 0}));
        EXPECT_TRUE(LaterTraces().empty());
    }
}

TEST_F(OpenTest, ResultWordInTheReplyOpensNothing) {
    for (const uint32_t uiResult : {1u, 0x01000000u, kBusy, kMinusOne}) {
        stPlatform.mapReplies[kAskOpen] = {0, OpenBytes("/dev/ttyUSB0", uiResult)};
        EXPECT_EQ(Open(), -1);
        EXPECT_TRUE(stPlatform.asCalls.empty());
        ExpectOnlyFault(kWorkerFile, kMinusOne, {3, uiResult, 0, 0});
    }
}

TEST_F(OpenTest, PathEndsWithItsField) {
    stPlatform.mapReplies[kAskOpen] = {0, OpenBytes(std::string(96, 'p'))};
    EXPECT_EQ(Open(), 77);
    EXPECT_EQ(stPlatform.asCalls,
              (Calls{"VT_OS_Open " + std::string(96, 'p') + " " + std::to_string(O_RDWR) + " 0"}));
}

TEST_F(OpenTest, ShortReplyIsNoPath) {
    stScript.bReal = true;
    for (const size_t uiLength : {0u, 1u, 4u}) {
        stPlatform.mapReplies[kAskOpen] = {0, std::string(uiLength, '\0')};
        EXPECT_EQ(Open(), -1);
        ExpectOnlyFault(kWorkerFile, kMinusOne, {3, ENOENT, 0, 0});
    }
}

TEST_F(OpenTest, DeviceThatDoesNotOpenIsRecordedWithTheReason) {
    stPlatform.mapStatus["VT_OS_Open"] = 1;
    stScript.iError = EACCES;
    EXPECT_EQ(Open(), -1);
    ExpectOnlyFault(kWorkerFile, kMinusOne, {3, EACCES, 0, 0});
    EXPECT_TRUE(LaterTraces().empty());
}

TEST_F(PtyTest, OpenedDeviceIsThatOfThePath) {
    stPlatform.mapReplies[kAskOpen] = {0, OpenBytes(sPath)};
    const jint iHandle = WAP_USB(usbOpen)(&stEnv, nullptr, 3);
    ASSERT_GE(iHandle, 0);
    EXPECT_EQ(fcntl(iHandle, F_GETFL) & (O_ACCMODE | O_NONBLOCK), O_RDWR);
    char acName[64] = {};
    EXPECT_EQ(ttyname_r(iHandle, acName, sizeof acName), 0);
    EXPECT_EQ(acName, sPath);
    EXPECT_EQ(WAP_USB(usbClose)(&stEnv, nullptr, iHandle), 0);
    EXPECT_EQ(fcntl(iHandle, F_GETFL), -1);
}

TEST_F(UsbTest, CloseClosesTheHandle) {
    EXPECT_EQ(WAP_USB(usbClose)(&stEnv, nullptr, 77), 0);
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_OS_Close 77"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_TRUE(LaterTraces().empty());
}

TEST_F(UsbTest, HandleThatDoesNotCloseIsRecordedWithTheReason) {
    stScript.bReal = true;
    for (const jint iHandle : {-1, 1 << 20}) {
        stPlatform.ClearRecords();
        EXPECT_EQ(VT_KAVO_JNI_UsbClose(iHandle), -1);
        ExpectOnlyFault(kWorkerFile, kMinusOne, {static_cast<uint32_t>(iHandle), EBADF, 0, 0});
    }
}

}  // namespace
}  // namespace wap::test

// The workers of the device information queries.
#include "system/jni_device_info.h"

#include <cstring>
#include <string>

#include "support/entries.h"
#include "support/expect.h"

namespace wap::test {
namespace {

constexpr uint32_t kTooLong = 0xF7700005;

/// A worker that takes one text out of a reply.
struct TextQuery {
    const char *pcName;
    uint32_t (*pfnWorker)(char *pcBuf, uint32_t uiCap);
    const char *pcReceiver;
    uint32_t uiSender;
    uint32_t uiRpcId;
    uint32_t uiReplySize;
    uint32_t uiAt;     ///< the text's place in the reply
    uint32_t uiWidth;  ///< the bytes that it may take up there
    uint32_t uiCap;    ///< what the method hands to the worker
};

const TextQuery kQueries[] = {
    {"Mac", VT_JNI_GetDeviceMAC, "osgi_proxy", 281, 0x47209032, 18, 0, 18, 18},
    {"Oui", VT_JNI_GetDeviceManufacturerOUI, "cwmp", 15, 0x4720136A, 265, 65, 72, 7},
    {"SerialNumber", VT_JNI_GetDeviceSerialNumber, "cwmp", 15, 0x4720136A, 265, 137, 128, 128},
    {"WebPassword", VT_JNI_GetDeviceDefaultWebPassword, "osgi_proxy", 281, 0x47209037, 192, 64, 128,
     128},
    {"Ssid1Name", VT_JNI_GetDeviceDefaultSSID1Name, "osgi_proxy", 281, 0x47209037, 192, 0, 32, 32},
    {"Ssid1Password", VT_JNI_GetDeviceDefaultSSID1Password, "osgi_proxy", 281, 0x47209037, 192, 32,
     32, 32},
};

class TextQueryTest : public BridgeTest, public ::testing::WithParamInterface<TextQuery> {
  protected:
    /// A reply with nothing but this text in its place.
    void AnswerWith(const std::string &sText) {
        std::string sReply(stQuery.uiReplySize, '\0');
        PutText(sReply, stQuery.uiAt, sText);
        stPlatform.mapReplies[stQuery.uiRpcId] = {0, sReply};
    }

    /// Asks with a buffer of uiCap bytes between guards; sGot is what lies in it afterwards.
    uint32_t Ask(uint32_t uiCap) {
        std::string sRoom(uiCap + 16, 'x');
        const uint32_t uiResult = stQuery.pfnWorker(sRoom.data() + 8, uiCap);
        EXPECT_EQ(sRoom.substr(0, 8), "xxxxxxxx");
        EXPECT_EQ(sRoom.substr(uiCap + 8), "xxxxxxxx");
        sGot = sRoom.substr(8, uiCap);
        return uiResult;
    }

    void ExpectTooLong(uint32_t uiCap, uint32_t uiLength) {
        EXPECT_EQ(Ask(uiCap), kTooLong);
        EXPECT_EQ(sGot, std::string(uiCap, 'x'));
        ASSERT_EQ(stPlatform.astFaults.size(), 1u);
        EXPECT_EQ(stPlatform.astFaults[0].uiCode, kTooLong);
        EXPECT_EQ(stPlatform.astFaults[0].auiArgs, (Args{uiCap, uiLength, 0, 0}));
        stPlatform.ClearRecords();
    }

    const TextQuery &stQuery = GetParam();
    std::string sGot;
};

TEST_P(TextQueryTest, SendsAZeroWordWithItsOwnRoute) {
    AnswerWith("text");
    EXPECT_EQ(Ask(stQuery.uiCap), 0u);
    ExpectOnlyRpc(stPlatform, {stQuery.pcReceiver, stQuery.uiSender, stQuery.uiRpcId, Word(0),
                               stQuery.uiReplySize, 30000});
}

TEST_P(TextQueryTest, GivesTheTextAtItsPlace) {
    AnswerWith("a text");
    EXPECT_EQ(Ask(stQuery.uiCap), 0u);
    EXPECT_STREQ(sGot.c_str(), "a text");
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_P(TextQueryTest, EmptyTextIsASuccess) {
    AnswerWith("");
    EXPECT_EQ(Ask(stQuery.uiCap), 0u);
    EXPECT_EQ(sGot[0], '\0');
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_P(TextQueryTest, OneByteOfRoomHoldsAnEmptyTextOnly) {
    AnswerWith("");
    EXPECT_EQ(Ask(1), 0u);
    EXPECT_EQ(sGot, std::string(1, '\0'));
    AnswerWith("a");
    ExpectTooLong(1, 1);
}

TEST_P(TextQueryTest, NoRoomHoldsNothing) {
    AnswerWith("");
    ExpectTooLong(0, 0);
}

TEST_P(TextQueryTest, LongestTextFillsTheBuffer) {
    const std::string sText(stQuery.uiCap - 1, 't');
    AnswerWith(sText);
    EXPECT_EQ(Ask(stQuery.uiCap), 0u);
    EXPECT_EQ(sGot, sText + '\0');
}

TEST_P(TextQueryTest, TextOneByteLongerIsRefused) {
    AnswerWith(std::string(stQuery.uiCap, 't'));
    ExpectTooLong(stQuery.uiCap, stQuery.uiCap);
    AnswerWith("12345");
    ExpectTooLong(5, 5);
}

// A reply of nothing but 0xFF has no zero anywhere: the text ends where its field ends.
TEST_P(TextQueryTest, UnterminatedReplyEndsAtTheField) {
    stPlatform.mapReplies[stQuery.uiRpcId] = {0, std::string(stQuery.uiReplySize, '\xFF')};
    ExpectTooLong(stQuery.uiCap, stQuery.uiWidth);
    EXPECT_EQ(Ask(stQuery.uiWidth + 100), 0u);
    EXPECT_EQ(sGot.substr(0, stQuery.uiWidth + 1), std::string(stQuery.uiWidth, '\xFF') + '\0');
}

TEST_P(TextQueryTest, ShortReplyLeavesTheRestEmpty) {
    stPlatform.mapReplies[stQuery.uiRpcId] = {0, std::string(stQuery.uiAt, 'y') + "ab"};
    EXPECT_EQ(Ask(stQuery.uiCap), 0u);
    EXPECT_STREQ(sGot.c_str(), "ab");
}

TEST_P(TextQueryTest, NullBufferIsRefusedWithoutAsking) {
    AnswerWith("text");
    EXPECT_EQ(stQuery.pfnWorker(nullptr, stQuery.uiCap), kNullArgument);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kNullArgument}));
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

TEST_P(TextQueryTest, RefusedRequestIsRecordedAndBecomesMinusOne) {
    AnswerWith("text");
    stPlatform.mapReplies[stQuery.uiRpcId].uiStatus = kRefused;
    EXPECT_EQ(Ask(stQuery.uiCap), kMinusOne);
    EXPECT_EQ(sGot, std::string(stQuery.uiCap, 'x'));
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused}));
    EXPECT_EQ(stPlatform.astFaults[0].sFile, "jni_device_info.cpp");
}

INSTANTIATE_TEST_SUITE_P(Queries, TextQueryTest, ::testing::ValuesIn(kQueries),
                         [](const auto &stInfo) { return std::string(stInfo.param.pcName); });

class DeviceInfoTest : public BridgeTest {
  protected:
    void ExpectProxyCall(uint32_t uiRpcId, uint32_t uiRspCap) {
        ExpectOnlyRpc(stPlatform, {"osgi_proxy", 281, uiRpcId, Word(0), uiRspCap, 30000});
    }

    /// What the device info worker makes of a reply, in a buffer of 512 bytes.
    std::string InfoOf(const std::string &sReply) {
        stPlatform.mapReplies[0x47209035] = {0, sReply};
        char acBuf[512] = {};
        EXPECT_EQ(VT_JNI_GetDeviceInfo(acBuf, sizeof(acBuf)), 0u);
        return acBuf;
    }
};

// ---- device info ----

TEST_F(DeviceInfoTest, InfoSendsAZeroWordWithItsOwnRoute) {
    (void)InfoOf(DeviceInfoRecord());
    ExpectProxyCall(0x47209035, 336);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(DeviceInfoTest, InfoTextByteForByte) {
    EXPECT_EQ(InfoOf(DeviceInfoRecord()),
              "{\"Result\":0 , \"Vendor\":\"Example Works\", \"ProductCLass\":\"HG-7\", "
              "\"HardwareVer\":\"A1.2\", \"FirmwareVer\":\"V3.0.1\", \"FlashSize\":256, "
              "\"RamSize\":512, \"MainChipClass\":\"AX-9\", \"NFC\":\"1\"}");
}

TEST_F(DeviceInfoTest, InfoOfAnEmptyReply) {
    EXPECT_EQ(InfoOf(std::string(336, '\0')),
              "{\"Result\":0 , \"Vendor\":\"\", \"ProductCLass\":\"\", \"HardwareVer\":\"\", "
              "\"FirmwareVer\":\"\", \"FlashSize\":0, \"RamSize\":0, \"MainChipClass\":\"\", "
              "\"NFC\":\"\"}");
}

TEST_F(DeviceInfoTest, InfoWithoutNfc) {
    std::string sReply = DeviceInfoRecord();
    sReply[8] = '\0';
    EXPECT_EQ(InfoOf(sReply),
              "{\"Result\":0 , \"Vendor\":\"Example Works\", \"ProductCLass\":\"HG-7\", "
              "\"HardwareVer\":\"A1.2\", \"FirmwareVer\":\"V3.0.1\", \"FlashSize\":256, "
              "\"RamSize\":512, \"MainChipClass\":\"AX-9\", \"NFC\":\"\"}");
}

TEST_F(DeviceInfoTest, InfoTextsAreNotEscapedAndNoFormats) {
    std::string sReply(336, '\0');
    PutText(sReply, 10, "a\"b");
    PutText(sReply, 75, "c\\d");
    PutText(sReply, 140, "%s%n");
    PutText(sReply, 205, "\n\t/");
    PutText(sReply, 270, "\xC3\xA9");
    EXPECT_EQ(InfoOf(sReply),
              "{\"Result\":0 , \"Vendor\":\"c\\d\", \"ProductCLass\":\"a\"b\", "
              "\"HardwareVer\":\"%s%n\", \"FirmwareVer\":\"\n\t/\", \"FlashSize\":0, "
              "\"RamSize\":0, \"MainChipClass\":\"\xC3\xA9\", \"NFC\":\"\"}");
}

TEST_F(DeviceInfoTest, InfoSizesAreShownSigned) {
    std::string sReply(336, '\0');
    PutText(sReply, 0, Word(0x80000000));
    PutText(sReply, 4, Word(0x7FFFFFFF));
    EXPECT_EQ(InfoOf(sReply),
              "{\"Result\":0 , \"Vendor\":\"\", \"ProductCLass\":\"\", \"HardwareVer\":\"\", "
              "\"FirmwareVer\":\"\", \"FlashSize\":2147483647, \"RamSize\":-2147483648, "
              "\"MainChipClass\":\"\", \"NFC\":\"\"}");
}

TEST_F(DeviceInfoTest, InfoOfAnUnterminatedReplyEndsEachTextAtItsField) {
    const auto fnText = [](size_t uiLen) { return std::string(uiLen, '\xFF'); };
    EXPECT_EQ(InfoOf(std::string(336, '\xFF')),
              "{\"Result\":0 , \"Vendor\":\"" + fnText(65) + "\", \"ProductCLass\":\"" +
                  fnText(65) + "\", \"HardwareVer\":\"" + fnText(65) + "\", \"FirmwareVer\":\"" +
                  fnText(65) + "\", \"FlashSize\":-1, \"RamSize\":-1, \"MainChipClass\":\"" +
                  fnText(66) + "\", \"NFC\":\"" + fnText(2) + "\"}");
}

TEST_F(DeviceInfoTest, InfoMustFitWithItsZero) {
    const std::string sExpected =
        "{\"Result\":0 , \"Vendor\":\"\", \"ProductCLass\":\"\", \"HardwareVer\":\"\", "
        "\"FirmwareVer\":\"\", \"FlashSize\":0, \"RamSize\":0, \"MainChipClass\":\"\", "
        "\"NFC\":\"\"}";
    const uint32_t uiLength = static_cast<uint32_t>(sExpected.size());
    stPlatform.mapReplies[0x47209035] = {0, std::string(336, '\0')};
    std::string sOut(uiLength + 2, 'x');
    EXPECT_EQ(VT_JNI_GetDeviceInfo(sOut.data(), uiLength), kTooLong);
    EXPECT_EQ(sOut, std::string(uiLength + 2, 'x'));
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kTooLong}));
    EXPECT_EQ(VT_JNI_GetDeviceInfo(sOut.data(), uiLength + 1), 0u);
    EXPECT_EQ(sOut, sExpected + std::string("\0x", 2));
}

TEST_F(DeviceInfoTest, InfoRefusesANullBuffer) {
    EXPECT_EQ(VT_JNI_GetDeviceInfo(nullptr, 512), kNullArgument);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kNullArgument}));
    EXPECT_TRUE(stPlatform.astRpcs.empty());
}

TEST_F(DeviceInfoTest, InfoOfARefusedRequest) {
    stPlatform.mapReplies[0x47209035] = {kRefused, DeviceInfoRecord()};
    char acBuf[512] = "before";
    EXPECT_EQ(VT_JNI_GetDeviceInfo(acBuf, sizeof(acBuf)), kMinusOne);
    EXPECT_STREQ(acBuf, "before");
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused}));
}

// ---- up-time ----

TEST_F(DeviceInfoTest, UpTimeIsTheWordOfTheReply) {
    stPlatform.mapReplies[0x47209036] = {0, Word(0x89ABCDEF)};
    uint32_t uiUpTime = 0;
    EXPECT_EQ(VT_JNI_GetDeviceUpTime(&uiUpTime), 0u);
    EXPECT_EQ(uiUpTime, 0x89ABCDEFu);
    ExpectProxyCall(0x47209036, 4);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(DeviceInfoTest, UpTimeFailures) {
    EXPECT_EQ(VT_JNI_GetDeviceUpTime(nullptr), kNullArgument);
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    stPlatform.mapReplies[0x47209036] = {kRefused, Word(5)};
    uint32_t uiUpTime = 77;
    EXPECT_EQ(VT_JNI_GetDeviceUpTime(&uiUpTime), kMinusOne);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kNullArgument, kRefused}));
}

// ---- version of the interface ----

TEST_F(DeviceInfoTest, ApiVersionIsFixed) {
    char acBuf[5] = "xxxx";
    EXPECT_EQ(VT_JNI_GetAPIVersion(acBuf, 4), 0u);
    EXPECT_STREQ(acBuf, "1.0");
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(DeviceInfoTest, ApiVersionFailures) {
    char acBuf[5] = "xxxx";
    EXPECT_EQ(VT_JNI_GetAPIVersion(nullptr, 128), 1u);
    EXPECT_EQ(VT_JNI_GetAPIVersion(acBuf, 3), kTooLong);
    EXPECT_STREQ(acBuf, "xxxx");
    EXPECT_EQ(stPlatform.astFaults.size(), 2u);
}

// ---- rates ----

TEST_F(DeviceInfoTest, ProcessorRateIsNeverZero) {
    const uint32_t auiRates[][2] = {{0, 1}, {1, 1}, {2, 2}, {50, 50}, {100, 100}};
    for (const auto &[uiReported, uiExpected] : auiRates) {
        stPlatform.uiCpuRate = uiReported;
        EXPECT_EQ(VT_JNI_GetCPUOccupancyRate(), uiExpected);
    }
    EXPECT_EQ(stPlatform.asCalls, Calls(5, "VT_OS_GetCPUBusyRateByTime 10"));
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(DeviceInfoTest, MemoryRateMayBeZero) {
    for (const uint32_t uiRate : {0u, 1u, 57u, 100u}) {
        stPlatform.uiMemRate = uiRate;
        EXPECT_EQ(VT_JNI_GetRAMOccupancyRate(), uiRate);
    }
    EXPECT_EQ(stPlatform.asCalls, Calls(4, "VT_OS_GetMemUseRate"));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(DeviceInfoTest, RatesThatCannotBeHad) {
    stPlatform.mapStatus["VT_OS_GetCPUBusyRateByTime"] = 0x51;
    stPlatform.mapStatus["VT_OS_GetMemUseRate"] = 0x52;
    EXPECT_EQ(VT_JNI_GetCPUOccupancyRate(), kMinusOne);
    EXPECT_EQ(VT_JNI_GetRAMOccupancyRate(), kMinusOne);
    ASSERT_FALSE(stPlatform.astFaults.empty());
    EXPECT_EQ(stPlatform.astFaults.front().uiCode, 0x51u);
    EXPECT_EQ(stPlatform.astFaults.back().uiCode, 0x52u);
}

// ---- device password ----

TEST_F(DeviceInfoTest, PasswordComesStraightIntoTheBuffer) {
    stPlatform.mapReplies[0x47209050] = {0, Field("a password", 64)};
    char acBuf[64] = {};
    EXPECT_EQ(VT_KAVO_JNI_GetDevicePassword(acBuf, sizeof(acBuf)), 0u);
    EXPECT_STREQ(acBuf, "a password");
    ExpectProxyCall(0x47209050, 64);
    EXPECT_EQ(stPlatform.astRpcs.at(0).pvRsp, acBuf);
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(DeviceInfoTest, PasswordNeverPassesTheBuffersEnd) {
    stPlatform.mapReplies[0x47209050] = {0, std::string(64, '\xFF')};
    std::string sRoom(80, 'x');
    EXPECT_EQ(VT_KAVO_JNI_GetDevicePassword(sRoom.data(), 64), 0u);
    EXPECT_EQ(sRoom, std::string(64, '\xFF') + std::string(16, 'x'));
    sRoom.assign(80, 'x');
    EXPECT_EQ(VT_KAVO_JNI_GetDevicePassword(sRoom.data(), 16), 0u);
    EXPECT_EQ(sRoom.substr(16), std::string(64, 'x'));
}

TEST_F(DeviceInfoTest, PasswordRefusesABufferWithoutRoom) {
    char acBuf[64] = "before";
    EXPECT_EQ(VT_KAVO_JNI_GetDevicePassword(nullptr, 64), 1u);
    EXPECT_EQ(VT_KAVO_JNI_GetDevicePassword(acBuf, 0), 1u);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kNullArgument, kNullArgument}));
    EXPECT_TRUE(stPlatform.astRpcs.empty());
    EXPECT_STREQ(acBuf, "before");
}

TEST_F(DeviceInfoTest, PasswordOfARefusedRequest) {
    stPlatform.mapReplies[0x47209050] = {kRefused, ""};
    char acBuf[64] = {};
    EXPECT_EQ(VT_KAVO_JNI_GetDevicePassword(acBuf, sizeof(acBuf)), kMinusOne);
    EXPECT_EQ(FaultCodes(stPlatform), (Codes{kRefused}));
}

}  // namespace
}  // namespace wap::test

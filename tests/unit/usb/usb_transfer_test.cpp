// Waiting for a serial device, reading from it and writing to it.
#include <sys/resource.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "unit/usb/usb_fixture.h"

namespace wap::test {
namespace {

class Stopwatch {
  public:
    double Seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - stStart).count();
    }

  private:
    std::chrono::steady_clock::time_point stStart = std::chrono::steady_clock::now();
};

/// What the methods make of a handle and a Java array; the outcome's array is as Java sees it.
class TransferTest : public PtyTest {
  protected:
    void SetUp() override {
        PtyTest::SetUp();
        stScript.bReal = false;
    }

    jint Available(jint iHandle) {
        stPlatform.ClearRecords();
        return WAP_USB(usbDataAvailable)(&stEnv, nullptr, iHandle);
    }
    jint Read(jint iHandle, jint iOffset, jint iCount, jint iTimeOut) {
        stPlatform.ClearRecords();
        const jbyteArray jBuffer = stEnv.JavaBytes(sArray);
        const jint iResult =
            WAP_USB(usbRead)(&stEnv, nullptr, iHandle, jBuffer, iOffset, iCount, iTimeOut);
        sAfter = stEnv.BytesOf(jBuffer);
        stEnv.EndCall();
        return iResult;
    }
    jint Write(jint iHandle, jint iOffset, jint iCount) {
        stPlatform.ClearRecords();
        stScript.asSent.clear();
        const jbyteArray jData = stEnv.JavaBytes(sArray);
        const jint iResult = WAP_USB(usbWrite)(&stEnv, nullptr, iHandle, jData, iOffset, iCount);
        EXPECT_EQ(stEnv.BytesOf(jData), sArray);
        stEnv.EndCall();
        return iResult;
    }
    /// Makes the terminal pass bytes on as they are.
    void MakeRaw() {
        termios stLine = Settings();
        cfmakeraw(&stLine);
        stScript.bReal = true;
        ASSERT_EQ(tcsetattr(iLine, TCSANOW, &stLine), 0);
        stScript.bReal = false;
    }

    std::string sArray = "abcdefgh";
    std::string sAfter;
};

// ---- usbDataAvailable ----

TEST_F(TransferTest, AvailableAsksAboutThisHandleForTwoSeconds) {
    EXPECT_EQ(Available(12), 1);
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_OS_Select 13: 12, 2 s 0 us"}));
    EXPECT_TRUE(LaterTraces().empty());
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(TransferTest, AvailableFindsAPlaceForHandlesUpTo51579) {
    for (const jint iHandle : {0, 63, 64, 1023, 1024, 1025, 4096, 40000, 51578, 51579}) {
        EXPECT_EQ(Available(iHandle), 1);
        EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_OS_Select " + std::to_string(iHandle + 1) + ": " +
                                             std::to_string(iHandle) + ", 2 s 0 us"}));
    }
}

// Deliberate: no failure, and no wait.
TEST_F(TransferTest, AvailableAboveItIsZeroAtOnce) {
    for (const jint iHandle : {51580, 65535, INT_MAX}) {
        EXPECT_EQ(Available(iHandle), 0);
        EXPECT_TRUE(stPlatform.asCalls.empty());
        ExpectOnlyFault(kWorkerFile, kMinusOne, {static_cast<uint32_t>(iHandle), 0, 0, 0});
    }
}

TEST_F(TransferTest, AvailableOfNoHandleFailsAtOnce) {
    for (const jint iHandle : {-1, INT_MIN}) {
        EXPECT_EQ(Available(iHandle), -1);
        EXPECT_TRUE(stPlatform.asCalls.empty());
        ExpectOnlyFault(kWorkerFile, kMinusOne, {static_cast<uint32_t>(iHandle), 0, 0, 0});
    }
}

TEST_F(TransferTest, AvailableTellsTimeOutAndErrorApart) {
    stScript.iReady = 0;
    EXPECT_EQ(Available(12), -2);
    ExpectOnlyFault(kWorkerFile, kMinusOne, {12, 2, 0, 0});
    stPlatform.mapStatus["VT_OS_Select"] = 1;
    stScript.iError = EBADF;
    EXPECT_EQ(Available(12), -1);
    ExpectOnlyFault(kWorkerFile, kMinusOne, {12, EBADF, 0, 0});
}

TEST_F(TransferTest, AvailableOfARealLine) {
    MakeRaw();
    stScript.bReal = true;
    const Stopwatch stNothing;
    EXPECT_EQ(Available(iLine), -2);
    EXPECT_GE(stNothing.Seconds(), 1.9);
    Send("x");
    const Stopwatch stSomething;
    EXPECT_EQ(Available(iLine), 1);
    EXPECT_LT(stSomething.Seconds(), 1.5);
    const int iClosed = dup(iLine);
    close(iClosed);
    EXPECT_EQ(Available(iClosed), -1);
    ExpectOnlyFault(kWorkerFile, kMinusOne, {static_cast<uint32_t>(iClosed), EBADF, 0, 0});
}

/// A copy of a descriptor that is at least so high; -1 where the system allows none.
int CopyAbove(int iFd, int iLeast) {
    rlimit stLimit = {};
    if (getrlimit(RLIMIT_NOFILE, &stLimit) != 0) {
        return -1;
    }
    stLimit.rlim_cur = stLimit.rlim_max;
    (void)setrlimit(RLIMIT_NOFILE, &stLimit);
    return fcntl(iFd, F_DUPFD, iLeast);
}

TEST_F(TransferTest, AvailableOfARealHandleBeyondTheSystemsSets) {
    const int iHigh = sizeof(long) == 8 ? CopyAbove(iLine, 3000) : -1;
    if (iHigh < 0) {
        GTEST_SKIP() << "no descriptor above 3000 here, or an emulator that has no place for it";
    }
    MakeRaw();
    Send("x");
    stScript.bReal = true;
    EXPECT_EQ(Available(iHigh), 1);
    close(iHigh);
}

// ---- usbRead ----

TEST_F(TransferTest, ReadWaitsReadsAndTraces) {
    stScript.sReceived = "\xFFOK\x01";
    EXPECT_EQ(Read(12, 2, 5, 9), 4);
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_OS_Select 128: 12, 9 s 0 us", "VT_OS_Read 12 5"}));
    EXPECT_EQ(LaterTraces(),
              (Calls{"\r\n iHandle = 12 \r\n", "\r\n iOffset = 2 \r\n", "\r\n iCount = 5 \r\n",
                     "\r\n iTimeOut = 9 \r\n", "VT_JNI_UsbRead: Len:4 Data:\xFFOK\x01", "ff ",
                     "4f ", "4b ", "01 "}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

// Plug-ins see zeros in front of what was read, and behind it to the end of the range.
TEST_F(TransferTest, ReadWritesTheArrayFromItsStartToTheEndOfTheRange) {
    EXPECT_EQ(Read(12, 2, 5, 1), 4);
    EXPECT_EQ(sAfter, std::string("\0\0OK\r\n\0h", 8));
    EXPECT_EQ(Read(12, 4, 4, 1), 4);
    EXPECT_EQ(sAfter, std::string("\0\0\0\0OK\r\n", 8));
    EXPECT_EQ(Read(12, 0, 2, 1), 2);
    EXPECT_EQ(sAfter, "OKcdefgh");
    EXPECT_EQ(Read(12, 8, 0, 1), 0);
    EXPECT_EQ(sAfter, std::string(8, '\0'));
    EXPECT_EQ(Read(12, 0, 0, 1), 0);
    EXPECT_EQ(sAfter, sArray);
}

TEST_F(TransferTest, ReadOfNothingIsNoFailureAndClearsTheRange) {
    stScript.iReady = 0;
    EXPECT_EQ(Read(12, 1, 3, 0), 0);
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_OS_Select 128: 12, 0 s 0 us"}));
    EXPECT_EQ(sAfter, std::string("\0\0\0\0efgh", 8));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(TransferTest, ReadThatTimesOutIsMinusTwoAndLeavesTheArray) {
    stScript.iReady = 0;
    for (const jint iTimeOut : {1, 86400, -1}) {
        EXPECT_EQ(Read(12, 1, 3, iTimeOut), -2);
        EXPECT_EQ(sAfter, sArray);
        ExpectOnlyFault(kWorkerFile, kMinusOne, {12, static_cast<uint32_t>(iTimeOut), 0, 0});
    }
}

TEST_F(TransferTest, ReadWithANegativeTimeOutWaitsForEver) {
    for (const jint iTimeOut : {-1, INT_MIN}) {
        EXPECT_EQ(Read(12, 0, 8, iTimeOut), 4);
        EXPECT_EQ(stPlatform.asCalls.at(0), "VT_OS_Select 128: 12, for ever");
        EXPECT_EQ(LaterTraces().at(3),
                  "\r\n iTimeOut = " + std::to_string(static_cast<uint32_t>(iTimeOut)) + " \r\n");
    }
}

// Deliberate: the count of descriptors is fixed.
TEST_F(TransferTest, ReadLooksAtHandlesBelow128Only) {
    EXPECT_EQ(Read(127, 0, 8, 1), 4);
    EXPECT_EQ(stPlatform.asCalls.at(0), "VT_OS_Select 128: 127, 1 s 0 us");
    for (const jint iHandle : {128, 1024, 51579, 51580, INT_MAX}) {
        stScript.iReady = 0;
        EXPECT_EQ(Read(iHandle, 0, 8, 1), -2);
        EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_OS_Select 128:, 1 s 0 us"}));
    }
}

TEST_F(TransferTest, ReadThatFailsLeavesTheArray) {
    for (const char *pcFunction : {"VT_OS_Select", "VT_OS_Read"}) {
        stPlatform.mapStatus = {{pcFunction, 1}};
        stScript.iError = EIO;
        EXPECT_EQ(Read(12, 1, 3, 1), -1);
        EXPECT_EQ(sAfter, sArray);
        ExpectOnlyFault(kWorkerFile, kMinusOne, {12, EIO, 0, 0});
    }
    EXPECT_EQ(Read(-1, 1, 3, 1), -1);
    EXPECT_EQ(sAfter, sArray);
    EXPECT_TRUE(stPlatform.asCalls.empty());
    ExpectOnlyFault(kWorkerFile, kMinusOne, {kMinusOne, 0, 0, 0});
}

TEST_F(TransferTest, ReadThatClaimsMoreThanThereIsRoomForFails) {
    stScript.iReadMore = 5;
    EXPECT_EQ(Read(12, 0, 8, 1), -1);
    EXPECT_EQ(sAfter, sArray);
    stScript.iReadMore = 4;
    EXPECT_EQ(Read(12, 0, 8, 1), 8);
}

/// Ranges that are none of an array of 8.
const std::vector<std::pair<jint, jint>> &BadRanges() {
    static const std::vector<std::pair<jint, jint>> s_aiRanges = {
        {0, 9},
        {8, 1},
        {9, 0},
        {1, 8},
        {-1, 4},
        {-1, 1},
        {4, -1},
        {0, -1},
        {-4, 8},
        {INT_MAX, 1},
        {1, INT_MAX},
        {INT_MAX, 9},
        {INT_MAX, INT_MAX},
        {INT_MIN, 0},
        {0, INT_MIN},
        {INT_MIN, INT_MIN},
        {INT_MAX, INT_MIN},
    };
    return s_aiRanges;
}

TEST_F(TransferTest, RangesOutsideOfTheArrayTouchNothing) {
    for (const auto &[iOffset, iCount] : BadRanges()) {
        SCOPED_TRACE(std::to_string(iOffset) + " " + std::to_string(iCount));
        const Args auiRange = {static_cast<uint32_t>(iOffset), static_cast<uint32_t>(iCount), 0, 0};
        EXPECT_EQ(Read(12, iOffset, iCount, 1), -1);
        EXPECT_EQ(sAfter, sArray);
        EXPECT_TRUE(stPlatform.asCalls.empty());
        EXPECT_EQ(stWorld.stAllocs.astLog.size(), 0u);
        ExpectOnlyFault(kEntryFile, kMinusOne, auiRange);
        stWorld.ClearRecords();
        EXPECT_EQ(Write(12, iOffset, iCount), -1);
        EXPECT_TRUE(stPlatform.asCalls.empty());
        ExpectOnlyFault(kEntryFile, kMinusOne, auiRange);
    }
}

TEST_F(TransferTest, WithoutAnArrayNothingHappens) {
    EXPECT_EQ(WAP_USB(usbRead)(&stEnv, nullptr, 12, nullptr, 0, 0, 1), -1);
    EXPECT_EQ(WAP_USB(usbWrite)(&stEnv, nullptr, 12, nullptr, 0, 0), -1);
    EXPECT_TRUE(stPlatform.asCalls.empty());
    EXPECT_TRUE(stEnv.asCalls.empty());
    EXPECT_EQ(TimesRecorded(kEntryFile, kMinusOne), 2u);
}

TEST_F(TransferTest, ReadWithoutMemoryFails) {
    stWorld.Plan({Op::kAlloc, 1, false});
    EXPECT_EQ(Read(12, 1, 3, 1), -1);
    stWorld.Plan({});
    EXPECT_TRUE(stPlatform.asCalls.empty());
    ExpectOnlyFault(kEntryFile, 0xF7108001, {4, 0, 0, 0});
    EXPECT_EQ(Read(12, 1, 3, 1), 3);
    // Of the range and not of the array.
    EXPECT_EQ(stWorld.stAllocs.astLog.back().uiSize, 4u);
}

TEST_F(TransferTest, ReadThatJavaRefusesFails) {
    stWorld.Plan({Op::kJni, 1, false});
    EXPECT_EQ(Read(12, 1, 3, 1), -1);
    stWorld.Plan({});
    EXPECT_EQ(sAfter, sArray);
}

TEST_F(TransferTest, ReadOfARealLine) {
    MakeRaw();
    stScript.bReal = true;
    const Stopwatch stOneSecond;
    EXPECT_EQ(Read(iLine, 0, 8, 1), -2);
    EXPECT_GE(stOneSecond.Seconds(), 0.95);
    EXPECT_LT(stOneSecond.Seconds(), 1.9);
    const Stopwatch stAtOnce;
    EXPECT_EQ(Read(iLine, 0, 8, 0), 0);
    EXPECT_LT(stAtOnce.Seconds(), 0.5);
    Send("Hello");
    EXPECT_EQ(Read(iLine, 4, 4, 1), 4);
    EXPECT_EQ(sAfter, std::string("\0\0\0\0Hell", 8));
    EXPECT_EQ(Read(iLine, 0, 8, 0), 1);
    EXPECT_EQ(sAfter, std::string("o\0\0\0\0\0\0\0", 8));
    // Without a limit it waits until something comes.
    std::thread stLater([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(1300));
        Send("late");
    });
    const Stopwatch stLong;
    EXPECT_EQ(Read(iLine, 0, 8, -1), 4);
    EXPECT_GE(stLong.Seconds(), 1.2);
    stLater.join();
}

// ---- usbWrite ----

TEST_F(TransferTest, WriteTracesAndWritesTheRange) {
    EXPECT_EQ(Write(12, 2, 5), 5);
    EXPECT_EQ(stPlatform.asCalls, (Calls{"VT_OS_Write 12 5"}));
    EXPECT_EQ(stScript.asSent, (Calls{"cdefg"}));
    EXPECT_EQ(LaterTraces(), (Calls{"VT_JNI_UsbWrite: Len:5 Data:cdefg"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
    EXPECT_EQ(Write(12, 0, 8), 8);
    EXPECT_EQ(stScript.asSent, (Calls{"abcdefgh"}));
    EXPECT_EQ(Write(12, 8, 0), 0);
    EXPECT_EQ(stScript.asSent, (Calls{""}));
    // A zero ends the text in the trace, and not what is sent.
    sArray = std::string("a\0b", 3);
    EXPECT_EQ(Write(12, 0, 3), 3);
    EXPECT_EQ(stScript.asSent, (Calls{std::string("a\0b", 3)}));
    EXPECT_EQ(LaterTraces(), (Calls{"VT_JNI_UsbWrite: Len:3 Data:a"}));
}

TEST_F(TransferTest, WriteThatFailsIsRecordedWithTheReason) {
    stPlatform.mapStatus["VT_OS_Write"] = 1;
    stScript.iError = EIO;
    EXPECT_EQ(Write(12, 0, 3), -1);
    ExpectOnlyFault(kWorkerFile, kMinusOne, {12, EIO, 0, 0});
    EXPECT_EQ(Write(-7, 0, 3), -1);
    EXPECT_TRUE(stPlatform.asCalls.empty());
    ExpectOnlyFault(kWorkerFile, kMinusOne, {static_cast<uint32_t>(-7), 0, 0, 0});
}

TEST_F(TransferTest, WriteThatJavaRefusesFails) {
    for (const JniFailure eFailure : {JniFailure::kNullAndException, JniFailure::kNullAlone}) {
        stEnv.eFailure = eFailure;
        stWorld.Plan({Op::kJni, 1, false});
        EXPECT_EQ(Write(12, 0, 3), -1);
        stWorld.Plan({});
        EXPECT_TRUE(stPlatform.asCalls.empty());
        ExpectOnlyFault(kEntryFile, kMinusOne, {});
    }
}

TEST_F(TransferTest, WriteToARealLine) {
    MakeRaw();
    stScript.bReal = true;
    EXPECT_EQ(Write(iLine, 2, 3), 3);
    char acReceived[8] = {};
    EXPECT_EQ(read(iDevice, acReceived, sizeof(acReceived)), 3);
    EXPECT_STREQ(acReceived, "cde");
}

// ---- the workers, called by other native code ----

TEST_F(TransferTest, WorkersRefuseWhatCanNotBeARange) {
    char acBlock[8] = {};
    EXPECT_EQ(VT_KAVO_JNI_UsbRead(12, nullptr, 0, 4, 0), -1);
    EXPECT_EQ(VT_KAVO_JNI_UsbWrite(12, nullptr, 0, 4), -1);
    for (const auto &[iOffset, iCount] : std::vector<std::pair<jint, jint>>{
             {-1, 4}, {0, -1}, {INT_MIN, 4}, {0, INT_MIN}, {INT_MAX, 1}, {1, INT_MAX}}) {
        EXPECT_EQ(VT_KAVO_JNI_UsbRead(12, acBlock, iOffset, iCount, 0), -1);
        EXPECT_EQ(VT_KAVO_JNI_UsbWrite(12, acBlock, iOffset, iCount), -1);
    }
    EXPECT_EQ(VT_KAVO_JNI_UsbRead(-1, acBlock, 0, 4, 0), -1);
    EXPECT_EQ(VT_KAVO_JNI_UsbWrite(-1, acBlock, 0, 4), -1);
    EXPECT_TRUE(stPlatform.asCalls.empty());
    EXPECT_EQ(stPlatform.astFaults.size(), 16u);
    EXPECT_TRUE(stPlatform.astTraces.empty());
}

}  // namespace
}  // namespace wap::test

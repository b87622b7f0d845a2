// Waiting for a serial device, writing to it, and the ranges of arrays that it takes.
#include <poll.h>
#include <sys/resource.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <future>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "unit/usb/transfer_fixture.h"

namespace wap::test {
namespace {

/// How long to wait for what must come.
constexpr int kPatienceSeconds = 20;

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

// ---- ranges ----

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
        // All that was asked for is in the trace, which is where one looks for the mistake.
        EXPECT_EQ(LaterTraces(),
                  (Calls{"\r\n iHandle = 12 \r\n", ArgumentTrace("iOffset", iOffset),
                         ArgumentTrace("iCount", iCount), "\r\n iTimeOut = 1 \r\n"}));
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

// ---- two threads with one handle ----

/// What a thread has of its own: a Java environment, and a platform with real descriptors.
struct Elsewhere {
    Elsewhere() { stWorld.stPlatform.stDescriptors.bReal = true; }
    ~Elsewhere() {
        stEnv.EndCall();
        stWorld.ExpectClean();
    }

    World stWorld;
    FakeJni stEnv;
};

/// Everything that the line's other end gets, up to so many bytes.
std::string Received(int iDevice, size_t uiCount) {
    std::string sBytes;
    pollfd stWait = {iDevice, POLLIN, 0};
    while (sBytes.size() < uiCount && poll(&stWait, 1, kPatienceSeconds * 1000) == 1) {
        char acPiece[4096];
        const ssize_t iRead = read(iDevice, acPiece, sizeof(acPiece));
        if (iRead <= 0) {
            break;
        }
        sBytes.append(acPiece, static_cast<size_t>(iRead));
    }
    return sBytes;
}

TEST_F(TransferTest, AThreadWritesWhileAnotherWaitsInARead) {
    MakeRaw();
    stScript.bReal = true;
    std::promise<void> stWaits;
    std::string sRead;
    std::thread stReader([&] {
        Elsewhere stHere;
        stHere.stWorld.stPlatform.stDescriptors.fnSelect = [&] { stWaits.set_value(); };
        const jbyteArray jBuffer = stHere.stEnv.JavaBytes(std::string(6, '!'));
        EXPECT_EQ(WAP_USB(usbRead)(&stHere.stEnv, nullptr, iLine, jBuffer, 0, 6, kPatienceSeconds),
                  6);
        sRead = stHere.stEnv.BytesOf(jBuffer);
    });
    stWaits.get_future().wait();
    // The device answers what it is told, and so the read ends by the write alone.
    EXPECT_EQ(Write(iLine, 0, 8), 8);
    EXPECT_EQ(Received(iDevice, 8), sArray);
    Send("answer");
    stReader.join();
    EXPECT_EQ(sRead, "answer");
}

TEST_F(TransferTest, AThreadReadsWhileAnotherIsStuckInAWrite) {
    // Much more than a line holds.
    constexpr jint kBytes = 300000;
    std::string sSent(kBytes, '\0');
    for (size_t i = 0; i < sSent.size(); ++i) {
        sSent[i] = static_cast<char>(i + i / 256);
    }
    MakeRaw();
    stScript.bReal = true;
    std::atomic<bool> bWritten = false;
    std::thread stWriter([&] {
        Elsewhere stHere;
        const jbyteArray jData = stHere.stEnv.JavaBytes(sSent);
        EXPECT_EQ(WAP_USB(usbWrite)(&stHere.stEnv, nullptr, iLine, jData, 0, kBytes), kBytes);
        bWritten = true;
    });
    std::string sReceived = Received(iDevice, 1);
    for (int i = 0; i < 20; ++i) {
        const std::string sAnswer = "answer " + std::to_string(100 + i);
        Send(sAnswer);
        sArray.assign(sAnswer.size(), '!');
        EXPECT_EQ(Read(iLine, 0, static_cast<jint>(sAnswer.size()), kPatienceSeconds), 10);
        EXPECT_EQ(sAfter, sAnswer);
    }
    EXPECT_FALSE(bWritten);
    sReceived += Received(iDevice, sSent.size() - sReceived.size());
    stWriter.join();
    EXPECT_TRUE(sReceived == sSent) << sReceived.size();
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

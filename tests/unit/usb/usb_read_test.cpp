// Reading from a serial device.
#include <cerrno>
#include <chrono>
#include <climits>
#include <string>
#include <thread>
#include <utility>

#include "unit/usb/transfer_fixture.h"

namespace wap::test {
namespace {

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

// The bytes that there were may be another thread's by now.
TEST_F(TransferTest, ReadThatFindsNothingBehindTheWaitIsNoFailure) {
    stScript.sReceived = "";
    EXPECT_EQ(Read(12, 1, 3, 9), 0);
    EXPECT_EQ(sAfter, std::string("\0\0\0\0efgh", 8));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

TEST_F(TransferTest, DeviceThatIsGoneHasNothingToReadAtOnce) {
    MakeRaw();
    stScript.bReal = true;
    close(std::exchange(iDevice, -1));
    const Stopwatch stAtOnce;
    EXPECT_EQ(Available(iLine), 1);
    EXPECT_EQ(Read(iLine, 0, 8, 20), 0);
    EXPECT_EQ(Read(iLine, 0, 8, -1), 0);
    EXPECT_LT(stAtOnce.Seconds(), 1.5);
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
        EXPECT_EQ(LaterTraces().at(3), ArgumentTrace("iTimeOut", iTimeOut));
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
    // An error of earlier, which is not this one's reason.
    stScript.fnSelect = [] { errno = EIO; };
    EXPECT_EQ(Read(12, 0, 8, 1), -1);
    EXPECT_EQ(sAfter, sArray);
    ExpectOnlyFault(kWorkerFile, kMinusOne, {12, 0, 0, 0});
    stScript.iReadMore = 4;
    EXPECT_EQ(Read(12, 0, 8, 1), 8);
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
    ExpectOnlyFault(kEntryFile, kMinusOne, {});
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

}  // namespace
}  // namespace wap::test

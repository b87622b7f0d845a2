// What setting a serial line up does to it. What a pseudo-terminal shows is looked at there; it has
// no parity and no 5 bits, and the C library drops a bit of the input flags, so those are looked at
// where they are handed over.
#include <sys/ioctl.h>

#include <cerrno>
#include <climits>
#include <string>
#include <utility>
#include <vector>

#include "unit/usb/usb_fixture.h"

namespace wap::test {
namespace {

/// The bit by which flow control by wires is switched, here in the input flags.
constexpr tcflag_t kWires = 020000000000;

/// The arguments of the method.
struct LineSetup {
    jint iBaudRate = 9600;
    jint iParity = 0;
    jint iDataBits = 8;
    jint iStopBits = 1;
    bool bHardware = false;
    bool bSoftware = false;
};

class SerialLineTest : public UsbTest {
  protected:
    jint Set(const LineSetup &stSetup, jint iHandle = 12) {
        stPlatform.ClearRecords();
        stScript.astSet.clear();
        return WAP_USB(usbSetSerial)(&stEnv, nullptr, iHandle, stSetup.iBaudRate, stSetup.iParity,
                                     stSetup.iDataBits, stSetup.iStopBits, stSetup.bHardware,
                                     stSetup.bSoftware);
    }
    /// The settings that came of the line's present ones; zeros when it was not set.
    termios Made(const LineSetup &stSetup) {
        EXPECT_EQ(Set(stSetup), 0);
        EXPECT_EQ(stScript.astSet.size(), 1u);
        return stScript.astSet.empty() ? termios{} : stScript.astSet[0];
    }
    /// The same for a line with all flags on or off.
    termios MadeOf(tcflag_t uiFlags, const LineSetup &stSetup) {
        stScript.stLine = {};
        stScript.stLine.c_iflag = uiFlags;
        stScript.stLine.c_oflag = uiFlags;
        stScript.stLine.c_cflag = uiFlags;
        stScript.stLine.c_lflag = uiFlags;
        for (cc_t &ucChar : stScript.stLine.c_cc) {
            ucChar = 0x42;
        }
        return Made(stSetup);
    }
    /// A refusal that leaves the line's settings alone.
    void ExpectRefused(const LineSetup &stSetup) {
        EXPECT_EQ(Set(stSetup), -1);
        EXPECT_TRUE(stScript.astSet.empty());
        EXPECT_EQ(stPlatform.astFaults.size(), 1u);
        EXPECT_EQ(stPlatform.CountCalls("tcsetattr"), 0u);
    }
};

constexpr tcflag_t kAllOn = ~static_cast<tcflag_t>(0);

TEST_F(SerialLineTest, TracesItsArguments) {
    EXPECT_EQ(Set({115200, 2, 7, 2, true, false}), 0);
    EXPECT_EQ(LaterTraces(),
              (Calls{"\r\n iHandle = 12 \r\n", "\r\n iBandRate = 115200 \r\n",
                     "\r\n iParity = 2 \r\n", "\r\n iDataBit = 7 \r\n", "\r\n iStopBit = 2 \r\n",
                     "\r\n bHardwareFlowControl = 1 \r\n", "\r\n bSoftwareFlowControl = 0 \r\n"}));
    EXPECT_EQ(Set({-1, -1, -1, -1, false, true}, -3), -1);
    EXPECT_EQ(LaterTraces(),
              (Calls{"\r\n iHandle = 4294967293 \r\n", "\r\n iBandRate = 4294967295 \r\n",
                     "\r\n iParity = 4294967295 \r\n", "\r\n iDataBit = 4294967295 \r\n",
                     "\r\n iStopBit = 4294967295 \r\n", "\r\n bHardwareFlowControl = 0 \r\n",
                     "\r\n bSoftwareFlowControl = 1 \r\n"}));
}

TEST_F(SerialLineTest, FlushesBeforeAndBehind) {
    EXPECT_EQ(Set({}), 0);
    EXPECT_EQ(stPlatform.asCalls, (Calls{"tcgetattr 12", "tcflush 12 both", "tcsetattr 12 at once",
                                         "tcflush 12 both"}));
    EXPECT_TRUE(stPlatform.astFaults.empty());
}

// ---- rates ----

const std::vector<std::pair<jint, speed_t>> &Rates() {
    static const std::vector<std::pair<jint, speed_t>> s_aRates = {
        {0, B0},
        {50, B50},
        {75, B75},
        {110, B110},
        {134, B134},
        {150, B150},
        {200, B200},
        {300, B300},
        {600, B600},
        {1200, B1200},
        {1800, B1800},
        {2400, B2400},
        {4800, B4800},
        {9600, B9600},
        {19200, B19200},
        {38400, B38400},
        {57600, B57600},
        {115200, B115200},
        {230400, B230400},
        {460800, B460800},
        {500000, B500000},
        {576000, B576000},
        {921600, B921600},
        {1000000, B1000000},
        {1152000, B1152000},
        {1500000, B1500000},
        {2000000, B2000000},
        {2500000, B2500000},
        {3000000, B3000000},
        {3500000, B3500000},
        {4000000, B4000000},
    };
    return s_aRates;
}

TEST_F(SerialLineTest, RatesOfTheSystem) {
    ASSERT_EQ(Rates().size(), 31u);
    for (const auto &[iRate, uiSpeed] : Rates()) {
        SCOPED_TRACE(iRate);
        for (const tcflag_t uiBefore : {tcflag_t{0}, static_cast<tcflag_t>(B38400)}) {
            stScript.stLine = {};
            stScript.stLine.c_cflag = uiBefore;
            const termios stMade = Made({iRate});
            EXPECT_EQ(cfgetospeed(&stMade), uiSpeed);
            EXPECT_EQ(stMade.c_cflag & (CBAUD | CBAUDEX), uiSpeed);
            // In both directions.
            EXPECT_EQ(stMade.c_ispeed, uiSpeed);
            EXPECT_EQ(stMade.c_ospeed, uiSpeed);
        }
    }
}

TEST_F(SerialLineTest, OtherRatesTouchNothing) {
    for (const jint iRate : {14400, 1, 49, 51, 28800, 4000001, -1, -9600, INT_MAX, INT_MIN,
                             static_cast<jint>(B9600), static_cast<jint>(B115200)}) {
        ExpectRefused({iRate});
        EXPECT_TRUE(stPlatform.asCalls.empty());
        ExpectOnlyFault(kWorkerFile, kMinusOne, {12, 0, 0, 0});
    }
}

// ---- bits ----

TEST_F(SerialLineTest, DataBits) {
    for (const auto &[iBits, uiFlags] :
         std::vector<std::pair<jint, tcflag_t>>{{5, CS5}, {6, CS6}, {7, CS7}, {8, CS8}}) {
        LineSetup stSetup;
        stSetup.iDataBits = iBits;
        EXPECT_EQ(MadeOf(0, stSetup).c_cflag & CSIZE, uiFlags);
        EXPECT_EQ(MadeOf(kAllOn, stSetup).c_cflag & CSIZE, uiFlags);
    }
    for (const jint iBits : {4, 9, 0, -5, 13, INT_MAX, INT_MIN, INT_MIN + 4, INT_MIN + 8}) {
        LineSetup stSetup;
        stSetup.iDataBits = iBits;
        ExpectRefused(stSetup);
        ExpectOnlyFault(kWorkerFile, kMinusOne, {12, static_cast<uint32_t>(iBits), 1, 0});
        // What was waiting is dropped all the same.
        EXPECT_EQ(stPlatform.asCalls, (Calls{"tcgetattr 12", "tcflush 12 both"}));
    }
}

TEST_F(SerialLineTest, StopBits) {
    for (const tcflag_t uiBefore : {tcflag_t{0}, kAllOn}) {
        EXPECT_EQ(MadeOf(uiBefore, {9600, 0, 8, 1}).c_cflag & CSTOPB, 0u);
        EXPECT_EQ(MadeOf(uiBefore, {9600, 0, 8, 2}).c_cflag & CSTOPB, tcflag_t{CSTOPB});
    }
    for (const jint iBits : {0, 3, -1, INT_MAX, INT_MIN}) {
        ExpectRefused({9600, 0, 8, iBits});
        ExpectOnlyFault(kWorkerFile, kMinusOne, {12, 8, static_cast<uint32_t>(iBits), 0});
    }
}

/// What a parity makes of the flags about it.
struct ParityRow {
    jint iParity;
    tcflag_t uiOfNone;  ///< control flags, when none of them was set
    tcflag_t uiOfAll;   ///< when all of them were
    bool bChecked;      ///< whether the input is checked for it
};

TEST_F(SerialLineTest, Parities) {
    constexpr tcflag_t kFlags = PARENB | PARODD | CMSPAR;
    for (const ParityRow &stRow : {
             ParityRow{0, 0, PARODD | CMSPAR, false},
             ParityRow{1, PARENB, PARENB | CMSPAR, true},
             ParityRow{2, PARENB | PARODD, kFlags, true},
             // Deliberate: whether there is a parity bit at all stays as it was.
             ParityRow{3, PARODD | CMSPAR, kFlags, true},
             ParityRow{4, CMSPAR, PARENB | CMSPAR, true},
         }) {
        SCOPED_TRACE(stRow.iParity);
        const termios stOfNone = MadeOf(0, {9600, stRow.iParity});
        EXPECT_EQ(stOfNone.c_cflag & kFlags, stRow.uiOfNone);
        EXPECT_EQ(stOfNone.c_iflag, stRow.bChecked ? tcflag_t{INPCK} : 0u);
        const termios stOfAll = MadeOf(kAllOn, {9600, stRow.iParity});
        EXPECT_EQ(stOfAll.c_cflag & kFlags, stRow.uiOfAll);
        EXPECT_EQ(stOfAll.c_iflag & INPCK, tcflag_t{INPCK});
        for (const tcflag_t uiParity : {tcflag_t{0}, tcflag_t{PARENB}}) {
            stScript.stLine = {};
            stScript.stLine.c_cflag = uiParity;
            const bool bKept = stRow.iParity >= 3;
            const tcflag_t uiWanted = bKept ? uiParity : stRow.iParity == 0 ? 0 : tcflag_t{PARENB};
            EXPECT_EQ(Made({9600, stRow.iParity}).c_cflag & PARENB, uiWanted);
        }
    }
    for (const jint iParity : {5, -1, 255, INT_MAX, INT_MIN}) {
        ExpectRefused({9600, iParity});
        ExpectOnlyFault(kWorkerFile, kMinusOne, {12, 8, 1, static_cast<uint32_t>(iParity)});
    }
}

// ---- flow control, and bytes as they are ----

// Deliberate: in the input flags, and the control flags never change.
TEST_F(SerialLineTest, HardwareFlowControlIsABitOfTheInputFlags) {
    ASSERT_EQ(static_cast<tcflag_t>(CRTSCTS), kWires);
    for (const tcflag_t uiControl : {tcflag_t{0}, kWires}) {
        for (const tcflag_t uiInput : {tcflag_t{0}, kWires}) {
            for (const bool bOn : {false, true}) {
                stScript.stLine = {};
                stScript.stLine.c_cflag = uiControl;
                stScript.stLine.c_iflag = uiInput;
                const termios stMade = Made({9600, 0, 8, 1, bOn});
                EXPECT_EQ(stMade.c_iflag & kWires, bOn ? kWires : 0u);
                EXPECT_EQ(stMade.c_cflag & kWires, uiControl);
            }
        }
    }
    // Also where the C library uses the same bit for a line that hangs up.
    EXPECT_EQ(MadeOf(0, {0, 0, 8, 1, false}).c_iflag & kWires, 0u);
    EXPECT_EQ(MadeOf(0, {0, 0, 8, 1, true}).c_iflag & kWires, kWires);
}

TEST_F(SerialLineTest, SoftwareFlowControl) {
    constexpr tcflag_t kFlags = IXON | IXOFF | IXANY;
    for (const tcflag_t uiBefore : {tcflag_t{0}, kAllOn}) {
        EXPECT_EQ(MadeOf(uiBefore, {9600, 0, 8, 1, false, true}).c_iflag & kFlags, kFlags);
        EXPECT_EQ(MadeOf(uiBefore, {9600, 0, 8, 1, false, false}).c_iflag & kFlags, 0u);
    }
}

// Whatever is not named stays.
TEST_F(SerialLineTest, AllFlagsOfALineThatHadAllOrNone) {
    const termios stOfNone = MadeOf(0, {50, 0, 5, 1});
    EXPECT_EQ(stOfNone.c_iflag, 0u);
    EXPECT_EQ(stOfNone.c_oflag, 0u);
    EXPECT_EQ(stOfNone.c_lflag, 0u);
    EXPECT_EQ(stOfNone.c_cflag, tcflag_t{B50});
    const termios stOfAll = MadeOf(kAllOn, {50, 0, 5, 1});
    EXPECT_EQ(
        stOfAll.c_iflag,
        kAllOn & ~static_cast<tcflag_t>(INLCR | IGNCR | ICRNL | IXON | IXOFF | IXANY) & ~kWires);
    EXPECT_EQ(stOfAll.c_oflag, kAllOn & ~tcflag_t{OPOST});
    EXPECT_EQ(stOfAll.c_lflag, kAllOn & ~static_cast<tcflag_t>(ISIG | ICANON | ECHO | ECHOE));
    EXPECT_EQ(stOfAll.c_cflag,
              (kAllOn & ~static_cast<tcflag_t>(CBAUD | CBAUDEX | CSIZE | CSTOPB | PARENB)) |
                  tcflag_t{B50});
    for (size_t i = 0; i < NCCS; ++i) {
        EXPECT_EQ(stOfAll.c_cc[i], i == VMIN ? 0 : 0x42) << i;
    }
}

// ---- failures ----

TEST_F(SerialLineTest, LineThatCanNotBeReadOrSetFails) {
    for (const char *pcFunction : {"tcgetattr", "tcsetattr"}) {
        stPlatform.mapStatus = {{pcFunction, 1}};
        stScript.iError = ENOTTY;
        EXPECT_EQ(Set({}), -1);
        EXPECT_TRUE(stScript.astSet.empty());
        ExpectOnlyFault(kWorkerFile, kMinusOne, {12, ENOTTY, 0, 0});
    }
    // The line is not flushed once more, as nothing has changed.
    EXPECT_EQ(stPlatform.CountCalls("tcflush"), 1u);
    stPlatform.mapStatus = {{"tcflush", 1}};
    EXPECT_EQ(Set({}), 0);
    EXPECT_EQ(stScript.astSet.size(), 1u);
}

// ---- a real line ----

class RealLineTest : public PtyTest {
  protected:
    int32_t Set(const LineSetup &stSetup) {
        return VT_KAVO_JNI_UsbSetSerial(iLine, stSetup.iBaudRate, stSetup.iParity,
                                        stSetup.iDataBits, stSetup.iStopBits, stSetup.bHardware,
                                        stSetup.bSoftware);
    }
};

TEST_F(RealLineTest, TakesRatesBitsAndFlowControl) {
    for (const auto &[iRate, uiSpeed] : Rates()) {
        EXPECT_EQ(Set({iRate}), 0);
        // An emulator of 32-bit machines knows no others.
        if (sizeof(long) < 8 && iRate > 460800) {
            continue;
        }
        const termios stLine = Settings();
        EXPECT_EQ(cfgetospeed(&stLine), uiSpeed) << iRate;
    }
    EXPECT_EQ(Set({115200, 1, 8, 2, false, true}), 0);
    const termios stLine = Settings();
    EXPECT_EQ(stLine.c_cflag & CSTOPB, tcflag_t{CSTOPB});
    EXPECT_EQ(stLine.c_iflag & (INPCK | IXON | IXOFF | IXANY | ICRNL | INLCR | IGNCR),
              static_cast<tcflag_t>(INPCK | IXON | IXOFF | IXANY));
    EXPECT_EQ(stLine.c_lflag & (ISIG | ICANON | ECHO | ECHOE), 0u);
    EXPECT_EQ(stLine.c_oflag & OPOST, 0u);
    EXPECT_EQ(stLine.c_cc[VMIN], 0);
    EXPECT_EQ(Set({115200, 0, 8, 1, false, false}), 0);
    EXPECT_EQ(Settings().c_cflag & CSTOPB, 0u);
    EXPECT_EQ(Settings().c_iflag & (IXON | IXOFF | IXANY), 0u);
}

TEST_F(RealLineTest, DropsWhatWasWaiting) {
    EXPECT_EQ(Set({}), 0);
    Send("stale");
    EXPECT_EQ(Set({}), 0);
    char acBlock[8] = {};
    EXPECT_EQ(VT_KAVO_JNI_UsbRead(iLine, acBlock, 0, 8, 0), 0);
    Send("\r\n\x03\x11");
    EXPECT_EQ(VT_KAVO_JNI_UsbRead(iLine, acBlock, 0, 8, 1), 4);
    // As they are: no newline, interrupt or start character is made of them.
    EXPECT_EQ(std::string(acBlock, 4), "\r\n\x03\x11");
}

TEST_F(RealLineTest, RefusedValuesLeaveItAsItWas) {
    EXPECT_EQ(Set({19200, 1, 8, 2, false, true}), 0);
    const termios stBefore = Settings();
    for (const LineSetup &stSetup :
         {LineSetup{14400}, LineSetup{9600, 5}, LineSetup{9600, 0, 9}, LineSetup{9600, 0, 8, 3}}) {
        EXPECT_EQ(Set(stSetup), -1);
        const termios stAfter = Settings();
        EXPECT_EQ(stAfter.c_iflag, stBefore.c_iflag);
        EXPECT_EQ(stAfter.c_cflag, stBefore.c_cflag);
        EXPECT_EQ(stAfter.c_lflag, stBefore.c_lflag);
    }
}

TEST_F(RealLineTest, WhatIsNoLineFails) {
    const int iFile = open("/dev/null", O_RDWR);
    EXPECT_EQ(VT_KAVO_JNI_UsbSetSerial(iFile, 9600, 0, 8, 1, 0, 0), -1);
    ExpectOnlyFault(kWorkerFile, kMinusOne, {static_cast<uint32_t>(iFile), ENOTTY, 0, 0});
    close(iFile);
    EXPECT_EQ(VT_KAVO_JNI_UsbSetSerial(-1, 9600, 0, 8, 1, 0, 0), -1);
    EXPECT_EQ(TimesRecorded(kWorkerFile, kMinusOne, {kMinusOne, EBADF, 0, 0}), 1u);
}

}  // namespace
}  // namespace wap::test

// What the tests of reading and writing share.
#ifndef WAP_TESTS_UNIT_USB_TRANSFER_FIXTURE_H
#define WAP_TESTS_UNIT_USB_TRANSFER_FIXTURE_H

#include <chrono>
#include <string>

#include "unit/usb/usb_fixture.h"

namespace wap::test {

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

/// An argument in the trace: a negative one is a large one there.
inline std::string ArgumentTrace(const char *pcName, jint iValue) {
    return std::string("\r\n ") + pcName + " = " + std::to_string(static_cast<uint32_t>(iValue)) +
           " \r\n";
}

}  // namespace wap::test

#endif

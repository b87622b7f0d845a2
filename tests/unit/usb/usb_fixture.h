// What the tests of the USB serial devices and the storage volumes share.
#ifndef WAP_TESTS_UNIT_USB_FIXTURE_H
#define WAP_TESTS_UNIT_USB_FIXTURE_H

#include <com_veltra_domoline_deviceservice_kavo_wap_tarn_jni_UsbServiceJNI.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <string>
#include <utility>

#include "support/entries.h"
#include "support/entry_calls.h"
#include "support/expect.h"
#include "support/furnish_usb.h"
#include "system/jni_usb_serial.h"

#define WAP_USB(method) WAP_METHOD_OF(tarn, Usb, method)

namespace wap::test {

inline constexpr uint32_t kBusy = 0xF710403D;
inline constexpr uint32_t kAskOpen = 0x4710303F;
inline constexpr uint32_t kAskRegister = 0x47103041;
inline constexpr uint32_t kAskUnregister = 0x47103042;
inline constexpr uint32_t kAskLock = 0x47103043;
inline constexpr uint32_t kAskUnlock = 0x47103044;
inline constexpr uint32_t kAskDiscs = 0x47103067;

inline constexpr const char *kWorkerFile = "jni_usb_serial.cpp";
inline constexpr const char *kEntryFile = "UsbServiceJNI.cpp";

class UsbTest : public BridgeTest {
  protected:
    void SetUp() override {
        BridgeTest::SetUp();
        FurnishUsb(stWorld);
    }

    size_t TimesRecorded(const std::string &sFile, uint32_t uiCode, const Args &auiArgs = {}) {
        return test::TimesRecorded(stPlatform, sFile, uiCode, auiArgs);
    }
    /// The one fault on record is this one.
    void ExpectOnlyFault(const std::string &sFile, uint32_t uiCode, const Args &auiArgs) {
        EXPECT_EQ(FaultCodes(stPlatform), Codes{uiCode});
        EXPECT_EQ(TimesRecorded(sFile, uiCode, auiArgs), 1u);
    }
    /// The traces behind the first one, which tells the call.
    Calls LaterTraces() {
        Calls asTexts = EntryTraces(stPlatform);
        if (!asTexts.empty()) {
            asTexts.erase(asTexts.begin());
        }
        return asTexts;
    }

    ScriptedDescriptors &stScript = stPlatform.stDescriptors;
};

/// A pseudo-terminal: what a device at its one end does is seen as a serial line at the other.
class PtyTest : public UsbTest {
  protected:
    void SetUp() override {
        UsbTest::SetUp();
        stScript.bReal = true;
        // For whom the line becomes the controlling terminal, its end would be the program's.
        (void)signal(SIGHUP, SIG_IGN);
        iDevice = posix_openpt(O_RDWR | O_NOCTTY);
        ASSERT_GE(iDevice, 0);
        ASSERT_EQ(grantpt(iDevice), 0);
        ASSERT_EQ(unlockpt(iDevice), 0);
        sPath = ptsname(iDevice);
        iLine = open(sPath.c_str(), O_RDWR | O_NOCTTY);
        ASSERT_GE(iLine, 0);
    }
    void TearDown() override {
        close(iLine);
        close(iDevice);
        UsbTest::TearDown();
    }

    /// The line's settings, as they are.
    termios Settings() {
        termios stLine = {};
        const bool bReal = std::exchange(stScript.bReal, true);
        EXPECT_EQ(tcgetattr(iLine, &stLine), 0);
        stScript.bReal = bReal;
        return stLine;
    }
    /// A device that sends bytes.
    void Send(const std::string &sBytes) const {
        EXPECT_EQ(write(iDevice, sBytes.data(), sBytes.size()),
                  static_cast<ssize_t>(sBytes.size()));
    }

    int iDevice = -1;
    int iLine = -1;
    std::string sPath;
};

}  // namespace wap::test

#endif

#include "system/jni_usb_serial.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/time.h>
#include <termios.h>
#include <vt_ssp_basic.h>

#include "common/fields.h"
#include "common/jni_common.h"
#include "common/report.h"
#include "records/usb_serial.h"

using namespace wap;

namespace {

/// Above it UsbDataAvailable does not look, and no set has a place for it.
constexpr int32_t kHandleMax = 51579;
/// usbRead has select look at the handles below this one only. Deliberate: plug-ins count on a read
/// from a higher one to end by its time-out, whatever there is to read. One without a time-out does
/// not end.
constexpr int32_t kReadHandles = 128;
constexpr int32_t kAvailableSeconds = 2;

/// What select watches. The system's own type ends at 1024, this one at kHandleMax; a handle that
/// has no place in it is not in it.
class DescriptorSet {
  public:
    explicit DescriptorSet(int32_t iHandle) {
        if (iHandle >= 0 && iHandle <= kHandleMax) {
            const uint32_t uiHandle = static_cast<uint32_t>(iHandle);
            m_aulBits[uiHandle / kWordBits] = 1UL << uiHandle % kWordBits;
        }
    }
    void *Lend() { return m_aulBits; }

  private:
    static constexpr uint32_t kWordBits = 8 * sizeof(unsigned long);
    unsigned long m_aulBits[kHandleMax / kWordBits + 1] = {};
};

/// What select says about reading from a handle; errno goes with -1. Waits without limit for
/// negative seconds. Not inlined, so that the set is on the stack only while it is needed.
[[gnu::noinline]] int32_t WaitForInput(int32_t iHandle, int32_t iHandles, int32_t iSeconds) {
    DescriptorSet stReadable(iHandle);
    timeval stTime = {iSeconds, 0};
    return VT_OS_Select(iHandles, stReadable.Lend(), nullptr, nullptr,
                        iSeconds < 0 ? nullptr : &stTime);
}

/// Records a failure, with the system's error where it is one of the system's.
int32_t Failed(SourceSpot stSpot, int32_t iHandle, int32_t iError = 0) {
    RecordFault(stSpot, kErrFailed, static_cast<uint32_t>(iHandle), static_cast<uint32_t>(iError));
    return kUsbFailed;
}

/// Records that nothing came in time.
int32_t TimedOut(SourceSpot stSpot, int32_t iHandle, int32_t iSeconds) {
    RecordFault(stSpot, kErrFailed, static_cast<uint32_t>(iHandle),
                static_cast<uint32_t>(iSeconds));
    return kUsbBusy;
}

/// What Java gets for the result of a request to "usb_mngt".
int32_t AnswerOf(SourceSpot stSpot, uint32_t uiResult, uint32_t uiAbout) {
    if (Recorded(stSpot, uiResult, uiAbout) == 0) {
        return 0;
    }
    return uiResult == kErrUsbBusy ? kUsbBusy : kUsbFailed;
}

template <class Request>
int32_t Manage(SourceSpot stSpot, uint32_t uiRpcId, const Request &stRequest, uint32_t uiAbout) {
    UsbDoneReply stReply = {};
    return AnswerOf(
        stSpot,
        VT_KAVO_USB_JNI_RpcCall(uiRpcId, &stRequest, sizeof(stRequest), &stReply, sizeof(stReply)),
        uiAbout);
}

int32_t ManagePlugin(SourceSpot stSpot, uint32_t uiRpcId, PlatformBlock &stPlugId,
                     uint32_t uiType) {
    if (!stPlugId) {
        return Failed(stSpot, 0);
    }
    UsbPluginReq stRequest = {};
    stRequest.uiType = uiType;
    PutField(stRequest.acPluginId, static_cast<const char *>(stPlugId.Lend()));
    stPlugId.Adopt(nullptr);
    return Manage(stSpot, uiRpcId, stRequest, uiType);
}

/// A line speed and the number by which the system knows it.
struct BaudRate {
    int32_t iRate;
    speed_t uiSpeed;
};
constexpr BaudRate kBaudRates[] = {
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
    {38400, B38400},
    {19200, B19200},
    {57600, B57600},
    {115200, B115200},
    {230400, B230400},
    {460800, B460800},
    {500000, B500000},
    {1152000, B1152000},
    {576000, B576000},
    {1500000, B1500000},
    {2500000, B2500000},
    {2000000, B2000000},
    {921600, B921600},
    {1000000, B1000000},
    {3000000, B3000000},
    {3500000, B3500000},
    {4000000, B4000000},
};

const BaudRate *FindBaudRate(int32_t iRate) {
    for (const BaudRate &stBaudRate : kBaudRates) {
        if (stBaudRate.iRate == iRate) {
            return &stBaudRate;
        }
    }
    return nullptr;
}

/// What a setting does to the control flags: those to clear, then those to set.
struct ControlChange {
    tcflag_t uiClear;
    tcflag_t uiSet;
};
constexpr int32_t kDataBitsLeast = 5;
constexpr ControlChange kDataBits[] = {{CSIZE, CS5}, {CSIZE, CS6}, {CSIZE, CS7}, {CSIZE, CS8}};
constexpr int32_t kStopBitsLeast = 1;
constexpr ControlChange kStopBits[] = {{CSTOPB, 0}, {0, CSTOPB}};
/// Mark and space deliberately leave PARENB alone: plug-ins choose even or odd first.
constexpr ControlChange kParities[] = {
    {PARENB, 0}, {PARODD, PARENB}, {0, PARENB | PARODD}, {0, CMSPAR | PARODD}, {PARODD, CMSPAR},
};

/// Applies one row of a table whose first row is for the value iLeast; false when there is none.
template <int32_t kRows>
bool ChangeControl(termios &stLine, const ControlChange (&astRows)[kRows], int32_t iLeast,
                   int32_t iValue) {
    if (iValue < iLeast || iValue - iLeast >= kRows) {
        return false;
    }
    const ControlChange &stRow = astRows[iValue - iLeast];
    stLine.c_cflag = (stLine.c_cflag & ~stRow.uiClear) | stRow.uiSet;
    return true;
}

void SwitchInput(termios &stLine, tcflag_t uiFlags, bool bOn) {
    stLine.c_iflag = bOn ? stLine.c_iflag | uiFlags : stLine.c_iflag & ~uiFlags;
}

void MakeRaw(termios &stLine) {
    SwitchInput(stLine, INLCR | IGNCR | ICRNL, false);
    stLine.c_lflag &= ~static_cast<tcflag_t>(ISIG | ICANON | ECHO | ECHOE);
    stLine.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    stLine.c_cc[VMIN] = 0;
}

/// Whether a transfer has a block, a handle and a range that can exist.
bool IsRange(const void *pvBlock, int32_t iHandle, int32_t iOffset, int32_t iCount) {
    return pvBlock != nullptr && iHandle >= 0 && UsbRangeFits(iOffset, iCount, INT32_MAX);
}

void TraceRead(const char *pcData, int32_t iLength) {
    WAP_TRACE(kTraceEntries, "VT_JNI_UsbRead: Len:%u Data:%.*s", static_cast<uint32_t>(iLength),
              iLength, pcData);
    for (int32_t i = 0; i < iLength; ++i) {
        WAP_TRACE(kTraceEntries, "%02x ", static_cast<unsigned char>(pcData[i]));
    }
}

}  // namespace

int32_t wap::UsbRegister(PlatformBlock &stPlugId, uint32_t uiType) {
    return ManagePlugin(WAP_SPOT, kRpcUsbRegister, stPlugId, uiType);
}

int32_t wap::UsbUnregister(PlatformBlock &stPlugId) {
    return ManagePlugin(WAP_SPOT, kRpcUsbUnregister, stPlugId, 0);
}

int32_t wap::UsbLock(uint32_t uiDevId) {
    return Manage(WAP_SPOT, kRpcUsbLock, UsbDeviceReq{uiDevId}, uiDevId);
}

int32_t wap::UsbUnlock(uint32_t uiDevId) {
    return Manage(WAP_SPOT, kRpcUsbUnlock, UsbDeviceReq{uiDevId}, uiDevId);
}

int32_t wap::UsbOpen(uint32_t uiDevId) {
    const UsbDeviceReq stRequest = {uiDevId};
    UsbOpenReply stReply = {};
    const uint32_t uiResult = VT_KAVO_USB_JNI_RpcCall(kRpcUsbOpen, &stRequest, sizeof(stRequest),
                                                      &stReply, sizeof(stReply));
    if (uiResult != 0) {
        return AnswerOf(WAP_SPOT, uiResult, uiDevId);
    }
    if (stReply.uiResult != 0) {
        RecordFault(WAP_SPOT, kErrFailed, uiDevId, stReply.uiResult);
        return kUsbFailed;
    }
    // No other flag, deliberately: reads wait, and the device may become the controlling terminal.
    const int32_t iHandle = VT_OS_Open(FieldText(stReply.acPath).Lend(), O_RDWR, 0);
    if (iHandle < 0) {
        return Failed(WAP_SPOT, static_cast<int32_t>(uiDevId), errno);
    }
    WAP_TRACE(kTraceEntries, "VT_JNI_UsbOpen : %u.\n", static_cast<uint32_t>(iHandle));
    return iHandle;
}

int32_t wap::UsbDataAvailable(int32_t iHandle) {
    if (iHandle > kHandleMax) {
        // No failure for Java: a handle that can't be looked at has nothing to read.
        (void)Failed(WAP_SPOT, iHandle);
        return 0;
    }
    if (iHandle < 0) {
        return Failed(WAP_SPOT, iHandle);
    }
    const int32_t iReady = WaitForInput(iHandle, iHandle + 1, kAvailableSeconds);
    if (iReady < 0) {
        return Failed(WAP_SPOT, iHandle, errno);
    }
    return iReady == 0 ? TimedOut(WAP_SPOT, iHandle, kAvailableSeconds) : 1;
}

bool wap::UsbRangeFits(int32_t iOffset, int32_t iCount, int32_t iLength) {
    return iOffset >= 0 && iCount >= 0 && iLength >= iOffset && iLength - iOffset >= iCount;
}

int32_t VT_KAVO_JNI_UsbRead(int32_t iHandle, void *pvBlock, int32_t iOffset, int32_t iCount,
                            int32_t iTimeOut) {
    if (!IsRange(pvBlock, iHandle, iOffset, iCount)) {
        return Failed(WAP_SPOT, iHandle);
    }
    const int32_t iReady = WaitForInput(iHandle, kReadHandles, iTimeOut);
    if (iReady < 0) {
        return Failed(WAP_SPOT, iHandle, errno);
    }
    if (iReady == 0) {
        return iTimeOut == 0 ? 0 : TimedOut(WAP_SPOT, iHandle, iTimeOut);
    }
    char *pcData = static_cast<char *>(pvBlock) + iOffset;
    const int32_t iRead = VT_OS_Read(iHandle, pcData, static_cast<uint32_t>(iCount));
    if (iRead < 0) {
        return Failed(WAP_SPOT, iHandle, errno);
    }
    if (iRead > iCount) {
        return Failed(WAP_SPOT, iHandle);
    }
    TraceRead(pcData, iRead);
    return iRead;
}

int32_t VT_KAVO_JNI_UsbWrite(int32_t iHandle, const void *pvData, int32_t iOffset, int32_t iCount) {
    if (!IsRange(pvData, iHandle, iOffset, iCount)) {
        return Failed(WAP_SPOT, iHandle);
    }
    const char *pcData = static_cast<const char *>(pvData) + iOffset;
    WAP_TRACE(kTraceEntries, "VT_JNI_UsbWrite: Len:%u Data:%.*s", static_cast<uint32_t>(iCount),
              iCount, pcData);
    const int32_t iWritten = VT_OS_Write(iHandle, pcData, static_cast<uint32_t>(iCount));
    return iWritten < 0 ? Failed(WAP_SPOT, iHandle, errno) : iWritten;
}

int32_t VT_KAVO_JNI_UsbSetSerial(int32_t iHandle, int32_t iBaudRate, int32_t iParity,
                                 int32_t iDataBits, int32_t iStopBits, uint32_t uiHardware,
                                 uint32_t uiSoftware) {
    const BaudRate *pstBaudRate = FindBaudRate(iBaudRate);
    if (pstBaudRate == nullptr) {
        return Failed(WAP_SPOT, iHandle);
    }
    termios stLine = {};
    if (tcgetattr(iHandle, &stLine) != 0) {
        return Failed(WAP_SPOT, iHandle, errno);
    }
    (void)tcflush(iHandle, TCIOFLUSH);
    (void)cfsetispeed(&stLine, pstBaudRate->uiSpeed);
    (void)cfsetospeed(&stLine, pstBaudRate->uiSpeed);
    if (!ChangeControl(stLine, kDataBits, kDataBitsLeast, iDataBits) ||
        !ChangeControl(stLine, kStopBits, kStopBitsLeast, iStopBits) ||
        !ChangeControl(stLine, kParities, 0, iParity)) {
        RecordFault(WAP_SPOT, kErrFailed, static_cast<uint32_t>(iHandle),
                    static_cast<uint32_t>(iDataBits), static_cast<uint32_t>(iStopBits),
                    static_cast<uint32_t>(iParity));
        return kUsbFailed;
    }
    if (iParity != 0) {
        SwitchInput(stLine, INPCK, true);
    }
    // In the input flags, deliberately, though the bit is a control flag: there the C library drops
    // it, and the wires' setting stays. The lines of plug-ins have always been set up so, and would
    // behave in another way.
    SwitchInput(stLine, static_cast<tcflag_t>(CRTSCTS), uiHardware != 0);
    SwitchInput(stLine, IXON | IXOFF | IXANY, uiSoftware != 0);
    MakeRaw(stLine);
    if (tcsetattr(iHandle, TCSANOW, &stLine) != 0) {
        return Failed(WAP_SPOT, iHandle, errno);
    }
    (void)tcflush(iHandle, TCIOFLUSH);
    return 0;
}

int32_t VT_KAVO_JNI_UsbClose(int32_t iHandle) {
    return VT_OS_Close(iHandle) == 0 ? 0 : Failed(WAP_SPOT, iHandle, errno);
}

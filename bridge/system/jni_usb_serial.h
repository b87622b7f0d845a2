// Workers of the USB serial devices. "usb_mngt" owns the devices; what a plug-in reads and writes
// through is a descriptor, which Java knows as the handle.
//
// All failures are recorded. -2 stands for "somebody else has it" and for "nothing came in time",
// -1 for everything else.
#ifndef WAP_SYSTEM_JNI_USB_SERIAL_H
#define WAP_SYSTEM_JNI_USB_SERIAL_H

#include <stdint.h>

#include "common/owners.h"
#include "common/wap_export.h"

namespace wap {

inline constexpr int32_t kUsbFailed = -1;
inline constexpr int32_t kUsbBusy = -2;

/**
 * Makes a plug-in known.
 * @param stPlugId its id, a text; released before anybody is asked. Cut to 127 bytes
 * @return 0, -1 or -2
 */
int32_t UsbRegister(PlatformBlock &stPlugId, uint32_t uiType);
/// Makes a plug-in unknown. Argument and result as for UsbRegister.
int32_t UsbUnregister(PlatformBlock &stPlugId);

/// Reserves a device, and gives it free again. 0, -1 or -2; a device that the caller has reserved
/// itself is busy, too.
int32_t UsbLock(uint32_t uiDevId);
int32_t UsbUnlock(uint32_t uiDevId);

/// Opens a device. The handle, -1 or -2.
int32_t UsbOpen(uint32_t uiDevId);

/**
 * Waits 2 seconds for something to read.
 * @return 1 when there is; -2 when there is not, or when the handle is none and beyond the
 *         process's descriptor table, which the system does not look at; 0, without a wait, for a
 *         handle above 51579; -1, also for another that is none
 */
int32_t UsbDataAvailable(int32_t iHandle);

/// Whether iCount bytes behind the first iOffset lie within an array of iLength.
bool UsbRangeFits(int32_t iOffset, int32_t iCount, int32_t iLength);

}  // namespace wap

/**
 * Waits for bytes and reads them.
 * @param iHandle  below 128: no other can have anything to read here. Never use a negative time-out
 *                 with one of 128 or above, for such a call does not return
 * @param pvBlock  a block of iOffset + iCount bytes
 * @param iOffset  where in the block the bytes go
 * @param iCount   how many at most
 * @param iTimeOut how long to wait, in seconds; without limit when negative
 * @return how many bytes were read; 0 also when there are none and iTimeOut is 0, and at once,
 *         whatever the time-out, when the device is gone or another thread took the bytes; -2 when
 *         the time is over; -1, also when waiting or reading fails
 */
WAP_EXPORT int32_t VT_KAVO_JNI_UsbRead(int32_t iHandle, void *pvBlock, int32_t iOffset,
                                       int32_t iCount, int32_t iTimeOut);

/**
 * Writes bytes.
 * @param pvData  a block of iOffset + iCount bytes, of which the first iOffset are left out
 * @return how many bytes were written, or -1
 */
WAP_EXPORT int32_t VT_KAVO_JNI_UsbWrite(int32_t iHandle, const void *pvData, int32_t iOffset,
                                        int32_t iCount);

/**
 * Sets up a serial line for bytes as they are, with what is waiting in both directions dropped.
 * @param iBaudRate    one of the rates of the system; 0 hangs up
 * @param iParity      0 none, 1 even, 2 odd, 3 mark, 4 space; the last two leave the parity bit on
 *                     or off as it is
 * @param iDataBits    5 to 8
 * @param iStopBits    1 or 2
 * @param uiHardware   meant for flow control by wires, and without effect: the line's RTS/CTS
 *                     setting stays as it was, whichever value is given
 * @param uiSoftware   flow control by characters, unless 0
 * @return 0, or -1 with the line's settings as they were
 */
WAP_EXPORT int32_t VT_KAVO_JNI_UsbSetSerial(int32_t iHandle, int32_t iBaudRate, int32_t iParity,
                                            int32_t iDataBits, int32_t iStopBits,
                                            uint32_t uiHardware, uint32_t uiSoftware);

/// Closes a device. 0 or -1.
WAP_EXPORT int32_t VT_KAVO_JNI_UsbClose(int32_t iHandle);

#endif

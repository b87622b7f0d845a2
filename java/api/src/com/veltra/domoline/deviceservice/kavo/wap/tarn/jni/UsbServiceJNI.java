package com.veltra.domoline.deviceservice.kavo.wap.tarn.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * What is plugged into the gateway's USB ports: serial devices for plug-ins to use, and storage.
 *
 * <p>A plug-in registers, locks a serial device, opens it, sets the line up, reads and writes, and
 * at the end closes, unlocks and unregisters:
 *
 * <pre>{@code
 * usb.usbRegister("com.example.meter", 1);
 * if (usb.usbLock(1) == 0) {
 *     int iHandle = usb.usbOpen(1);
 *     usb.usbSetSerial(iHandle, 115200, 0, 8, 1, false, false);
 *     usb.usbWrite(iHandle, abCommand, 0, abCommand.length);
 *     int iRead = usb.usbRead(iHandle, abAnswer, 0, abAnswer.length, 2);
 *     usb.usbClose(iHandle);
 *     usb.usbUnlock(1);
 * }
 * usb.usbUnregister("com.example.meter");
 * }</pre>
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads. Those that ask the process {@code usb_mngt} block the calling thread
 * until the answer arrives, 30 seconds at most; when it is not running they fail without waiting.
 * No method throws because of the gateway's state.
 *
 * <p>A handle is a file descriptor of this process. Close what you have opened, once, and don't use
 * a handle afterwards: the number may by then belong to something else.
 */
public class UsbServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public UsbServiceJNI() {}

    /**
     * Makes a plug-in known to the process {@code usb_mngt}. Asks it, at most 30 seconds.
     *
     * <p>Example: {@code usbRegister("com.example.meter", 1)} answers {@code 0}.
     *
     * @param sPlugId the plug-in's id, neither {@code null} nor empty; cut to 127 bytes of UTF-8
     * @param iType the plug-in's type; sent as it is
     * @return 0; -2 when the process says that somebody else is in the way; -1 when the id is
     *     {@code null} or empty (nobody is asked then), or when the process doesn't answer or
     *     refuses
     */
    public native int usbRegister(String sPlugId, int iType);

    /**
     * Makes a plug-in unknown again. Asks the process {@code usb_mngt}, at most 30 seconds.
     *
     * <p>Example: {@code usbUnregister("com.example.meter")} answers {@code 0}.
     *
     * @param sPlugId as for {@link #usbRegister(String, int)}
     * @return 0; -2 when the process says that somebody else is in the way; -1 when the id is
     *     {@code null} or empty (nobody is asked then), or when the process doesn't answer or
     *     refuses
     */
    public native int usbUnregister(String sPlugId);

    /**
     * Reserves a serial device. Asks the process {@code usb_mngt}, at most 30 seconds.
     *
     * <p>Example: {@code usbLock(1)} answers {@code 0}, and then -2 to whoever asks, until the
     * device is given free.
     *
     * @param iDevId the device's number, as {@code usb_mngt} counts them; sent as it is
     * @return 0; -2 when the device is locked already, also by the caller; -1 when the process
     *     doesn't answer or refuses
     */
    public native int usbLock(int iDevId);

    /**
     * Gives a serial device free. Asks the process {@code usb_mngt}, at most 30 seconds.
     *
     * <p>Example: {@code usbUnlock(1)} answers {@code 0}.
     *
     * @param iDevId as for {@link #usbLock(int)}
     * @return 0; -2 when the process says that the device is busy; -1 when the process doesn't
     *     answer or refuses
     */
    public native int usbUnlock(int iDevId);

    /**
     * Opens a serial device for reading and writing. Asks the process {@code usb_mngt} where it is,
     * at most 30 seconds.
     *
     * <p>Example: {@code usbOpen(1)} answers {@code 77}, say.
     *
     * @param iDevId as for {@link #usbLock(int)}
     * @return the handle; -2 when another plug-in has the device; -1 when the process doesn't
     *     answer or refuses, or when the device can't be opened
     */
    public native int usbOpen(int iDevId);

    /**
     * Waits until there is something to read, 2 seconds at most. Asks no process.
     *
     * <p>Example: {@code usbDataAvailable(77)} answers {@code 1} when the device has sent
     * something.
     *
     * @param iHandle a handle of {@link #usbOpen(int)}
     * @return 1 when there is something to read, or when the device is gone; -2 when nothing came;
     *     0, without a wait, for a handle above 51579; -1 when the handle is none. The system looks
     *     no further than this process's table of descriptors reaches: for a number beyond it, up
     *     to 51579, the answer is -2 after the 2 seconds
     */
    public native int usbDataAvailable(int iHandle);

    /**
     * Reads what the device has sent. Asks no process. Waits until there is anything to read, and
     * doesn't wait for more.
     *
     * <p>Example: {@code usbRead(77, abAnswer, 2, 8, 1)} answers {@code 4} when four bytes have
     * come: they are the elements 2 to 5, and those before and behind them are 0.
     *
     * <p>The array is written from its start to the end of the range, not only where bytes were
     * read: unless the read fails, the elements in front of {@code iOffset} become 0, and so do
     * those of the range behind what was read.
     *
     * <p><b>Never use a negative time-out with a handle of 128 or above: the call never
     * returns.</b>
     *
     * @param iHandle a handle of {@link #usbOpen(int)}. One that is 128 or above is not looked at:
     *     it never has anything to read
     * @param abBuffer receives the bytes; not {@code null}
     * @param iOffset the element that receives the first byte, from 0
     * @param iCount how many bytes at most, from 0; iOffset + iCount must not exceed the array's
     *     length
     * @param iTimeOut how long to wait, in seconds; 0 not at all; without limit when negative
     * @return how many bytes were read. 0 also when there are none and {@code iTimeOut} is 0; and,
     *     at once and whatever the time-out, when the device was pulled out or, on a line that
     *     {@code usbSetSerial} has set up, when another thread took the bytes. -2 when nothing came
     *     in time. -1, with the array untouched, when the range is not one of the array (nothing is
     *     read then), when the handle is negative or, below 128, none, when waiting or reading
     *     fails, or when memory runs out
     */
    public native int usbRead(
            int iHandle, byte[] abBuffer, int iOffset, int iCount, int iTimeOut);

    /**
     * Sends bytes to the device. Asks no process. Waits while the device takes none.
     *
     * <p>Example: {@code usbWrite(77, abCommand, 0, 4)} answers {@code 4}.
     *
     * @param iHandle a handle of {@link #usbOpen(int)}
     * @param abData the bytes; not {@code null}
     * @param iOffset the first element to send, from 0
     * @param iCount how many, from 0; iOffset + iCount must not exceed the array's length
     * @return how many bytes were sent, which may be fewer than {@code iCount}; -1 when the range
     *     is not one of the array (nothing is sent then), when the handle is none, when sending
     *     fails, or when memory runs out
     */
    public native int usbWrite(int iHandle, byte[] abData, int iOffset, int iCount);

    /**
     * Sets a serial line up, for bytes as they are. Asks no process and doesn't wait. Drops what
     * has been received and not read, and what has not been sent yet.
     *
     * <p>Example: {@code usbSetSerial(77, 115200, 0, 8, 1, false, false)} answers {@code 0}.
     *
     * @param iHandle a handle of {@link #usbOpen(int)}
     * @param iBaudRate bits a second: 0 (hangs up), 50, 75, 110, 134, 150, 200, 300, 600, 1200,
     *     1800, 2400, 4800, 9600, 19200, 38400, 57600, 115200, 230400, 460800, 500000, 576000,
     *     921600, 1000000, 1152000, 1500000, 2000000, 2500000, 3000000, 3500000 or 4000000
     * @param iParity 0 none, 1 even, 2 odd, 3 mark, 4 space. Mark and space don't switch the parity
     *     bit on or off: it stays as it was, so set even or odd before them
     * @param iDataBits 5, 6, 7 or 8
     * @param iStopBits 1 or 2
     * @param bHardwareFlowControl meant for holding back by the wires RTS and CTS, and without
     *     effect: the line's RTS/CTS setting stays as it was, whichever value is given
     * @param bSoftwareFlowControl whether to hold back by the characters XON and XOFF
     * @return 0; -1, with the settings as they were, when a value is none of those above or the
     *     handle is no serial line
     */
    public native int usbSetSerial(
            int iHandle,
            int iBaudRate,
            int iParity,
            int iDataBits,
            int iStopBits,
            boolean bHardwareFlowControl,
            boolean bSoftwareFlowControl);

    /**
     * Closes a serial device. Asks no process; the lock stays until {@link #usbUnlock(int)}.
     *
     * <p>Example: {@code usbClose(77)} answers {@code 0}.
     *
     * @param iHandle a handle of {@link #usbOpen(int)}
     * @return 0, or -1 when the handle is none
     */
    public native int usbClose(int iHandle);

    /**
     * Lists the storage volumes that are mounted. Asks the process {@code usb_mngt} which there
     * are, at most 30 seconds, and the system how large they are.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * { "Result": 0, "List": [ { "storagePath": "\/mnt\/usb1", "totalStorage": 4294967296,
     *   "validStorage": 2147483648 }, { "storagePath": "\/mnt\/gone", "totalStorage": 0,
     *   "validStorage": 0 } ] }
     * }</pre>
     *
     * <p>The answer is one line. {@code storagePath} is where a volume is mounted, with JSON's
     * backslash before each slash, which a parser takes away; {@code totalStorage} is its size and
     * {@code validStorage} what is free of it, both in bytes. A volume that can't be measured has 0
     * for both. At most 32 volumes are listed, and one that there is no memory for is left out.
     *
     * @return the list; <code>{ "Result": 1 }</code> (1, not -1) when the process doesn't answer or
     *     refuses, when the list is longer than 511 bytes of UTF-8, JSON's escapes included, or
     *     when memory runs out; {@code null} when there is no memory even for the text
     */
    public native String getStorageInfo();
}

package com.veltra.domoline.deviceservice.kavo.wap.gulm.jni;

import com.veltra.domoline.deviceservice.kavo.wap.JNINativeMethods;
import com.veltra.domoline.deviceservice.kavo.wap.NativeLibrary;

/**
 * General information about the gateway: model and versions, memory, load, running time, and what
 * the applications run on.
 *
 * <p>{@link JNINativeMethods#startThread()} must have been called once. The methods may be called
 * by any number of threads. Those that ask another process of the gateway block the calling thread
 * until the answer arrives, 30 seconds at most; a process that is not running makes them fail
 * without waiting. No method throws because of the gateway's state.
 */
public class DeviceInfoQueryServiceJNI {
    static {
        NativeLibrary.load();
    }

    /** Creates a client of the service. It holds no state; one can serve all threads. */
    public DeviceInfoQueryServiceJNI() {}

    /**
     * Describes the device. Asks the process {@code osgi_proxy}, at most 30 seconds.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * {"Result":0 , "Vendor":"Example Works", "ProductCLass":"HG-7", "HardwareVer":"A1.2",
     *   "FirmwareVer":"V3.0.1", "FlashSize":256, "RamSize":512, "MainChipClass":"AX-9", "NFC":"1"}
     * }</pre>
     *
     * <p>The answer is one line. {@code Vendor} is who made the device, {@code ProductCLass} (with
     * a capital L) its model, {@code HardwareVer} and {@code FirmwareVer} are its versions, and
     * {@code MainChipClass} is its processor. {@code FlashSize} and {@code RamSize} are numbers in
     * the unit that the firmware uses, signed ones: from 2147483648 on they are negative. {@code
     * NFC} is a text of one character at most, and empty when the firmware doesn't say; the other
     * texts have 64 bytes at most, that of the processor 65. Each text of the gateway is inserted
     * as it stands, so a quotation mark in one of them makes the answer invalid JSON.
     *
     * @return the description, or <code>{"Result":-1}</code> (no blanks) when the gateway's process
     *     doesn't answer or refuses; {@code null} when there is no memory for the text
     */
    public native String getDeviceInfo();

    /**
     * Tells the device's MAC address. Asks the process {@code osgi_proxy}, at most 30 seconds.
     *
     * <p>Example answer: {@code 02:A1:B2:00:00:01}
     *
     * @return the address as the gateway writes it, 17 characters at most; <code>{ "Result": -1
     *     }</code> (with blanks) when the process doesn't answer, refuses, or sends a longer text;
     *     {@code null} when it sends an empty text, or when there is no memory for it
     */
    public native String getDeviceMAC();

    /**
     * Tells how long the device has been running. Asks the process {@code osgi_proxy}, at most 30
     * seconds.
     *
     * <p>Example answer: {@code 86400}
     *
     * @return the running time in the unit of the firmware, as an unsigned 32-bit number in an
     *     {@code int}: read it with {@link Integer#toUnsignedLong(int)}; -1 when the process
     *     doesn't answer or refuses. A running time of 4294967295 can't be told from that failure.
     */
    public native int getDeviceUpTime();

    /**
     * Tells the version of this programming interface. Asks nobody and doesn't wait.
     *
     * <p>Example answer: {@code 1.0}
     *
     * @return the version, always this one: no state of the gateway makes this call fail; {@code
     *     null} when there is no memory for the text
     */
    public native String getAPIVersion();

    /**
     * Tells how busy the processors are. Measured by the platform's library in this process,
     * without asking the gateway's processes; the measurement itself can take a moment.
     *
     * <p>Example answer: {@code 42}
     *
     * @param iSample ignored, whatever its value
     * @return the share of busy time in percent, never 0: an idle device answers 1; -1 when the
     *     platform can't measure
     */
    public native int getCPUOccupancyRate(int iSample);

    /**
     * Tells how much of the memory is in use. Read by the platform's library in this process,
     * without asking the gateway's processes.
     *
     * <p>Example answer: {@code 57}
     *
     * @param iSample ignored, whatever its value
     * @return the used share in percent, 0 included; -1 when the platform can't tell
     */
    public native int getRAMOccupancyRate(int iSample);

    /**
     * Describes the Java runtime of the device, in its own words: runs {@code java -version} and
     * reads what it prints. Asks none of the gateway's processes. Blocks the calling thread until
     * the command has ended, for which there is no limit; calls of several threads take turns.
     *
     * <p>Example answer:
     *
     * <pre>{@code
     * { "Result": 0, "Name": "OpenJDK Client VM ", "Version": "1.8.0_212", "Vendor": "Oracle" }
     * }</pre>
     *
     * <p>The answer is one line. {@code Name} is what stands before the parenthesis in the line of
     * the virtual machine, the blank at its end included; {@code Version} what stands between the
     * first two quotation marks of a line about the version; {@code Vendor} is {@code Oracle} for
     * every runtime that calls itself an OpenJDK, and empty for the others. Each has 31 bytes at
     * most. What the runtime doesn't tell is empty; what it tells in more bytes is left out.
     *
     * @return the description; <code>{ "Result": 1, "Name": "", "Version": "", "Vendor": ""
     *     }</code> when there is no output, neither of the command nor of one that ran before;
     *     <code>{"Result":-1}</code> (no blanks) when the description has more than 127 bytes or
     *     memory runs out; {@code null} when there is no memory for the text. Where there is no
     *     command {@code java}, the result is 0 and the texts are empty: the shell's complaint is
     *     the output then. An output that can't be read to its end counts as far as it was read
     */
    public native String getJVMInfo();

    /**
     * Describes the OSGi framework that the applications run in. Asks nobody and doesn't wait.
     *
     * <p>Example answer, which is the only one:
     *
     * <pre>{@code
     * { "Result": 0, "Name": "Felix OSGi", "Version": "4.4.0",
     *   "Vendor": "Apache Software Foundation" }
     * }</pre>
     *
     * <p>The answer is one line: {@code Name}, {@code Version} and {@code Vendor} of the framework.
     *
     * @return the description; <code>{"Result":-1}</code> (no blanks) when memory runs out; {@code
     *     null} when there is no memory for the text
     */
    public native String getOSGiInfo();
}

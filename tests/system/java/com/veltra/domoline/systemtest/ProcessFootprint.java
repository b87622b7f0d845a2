package com.veltra.domoline.systemtest;

import java.lang.management.ManagementFactory;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Collections;
import java.util.List;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import javax.management.JMException;
import javax.management.ObjectName;

/**
 * What native code of this process holds, counted rather than guessed from the process's size: the
 * resident memory of a Java virtual machine moves by megabytes on its own.
 *
 * <p>The C library knows how many bytes are allocated, the virtual machine how many of them are its
 * own (with -XX:NativeMemoryTracking=summary). The difference belongs to the libraries. To it comes
 * the virtual machine's category "Internal", where the copies and the references are that JNI calls
 * make for native code.
 */
final class ProcessFootprint {
    private static final int kMostDescriptors = 4096;
    private static final int kSamples = 5;
    private static final int kTries = 100;
    /** Each of the commands keeps a few bytes itself. */
    private static final int kSlackBytes = 1024;
    private static final int kPauseMilliseconds = 20;

    /** Bytes that native libraries hold, themselves or through JNI. */
    final long lNative;
    /** Bytes of Java objects that are alive. */
    final long lHeap;
    final int iGlobalReferences;
    final int iDescriptors;
    /** For information only. */
    final long lResidentKiB;

    private ProcessFootprint(long lNative, long lHeap, int iGlobalReferences, int iDescriptors,
            long lResidentKiB) {
        this.lNative = lNative;
        this.lHeap = lHeap;
        this.iGlobalReferences = iGlobalReferences;
        this.iDescriptors = iDescriptors;
        this.lResidentKiB = lResidentKiB;
    }

    /** Takes stock. The other threads shall rest meanwhile. */
    static ProcessFootprint take() throws InterruptedException {
        long lHeap = number(command("gcClassHistogram"), "Total +\\d+ +(\\d+)");
        String references = command("threadPrint");
        int iReferences = (int) number(references, "JNI global refs: (\\d+)");
        // The counts are taken one after the other, and the compiler allocates meanwhile: a sample
        // counts when the machine's own part was the same before and after, and of several the one
        // in the middle.
        List<Long> samples = new ArrayList<>();
        String info = "";
        for (int iTry = 0; samples.size() < kSamples; iTry++) {
            if (iTry == kTries) {
                throw new AssertionError("the virtual machine never stops allocating");
            }
            long lBefore = machinesOwn(command("vmNativeMemory", "summary", "scale=B"));
            info = command("vmInfo");
            long lAfter = machinesOwn(command("vmNativeMemory", "summary", "scale=B"));
            if (Math.abs(lAfter - lBefore) <= kSlackBytes) {
                samples.add(
                        1024 * number(info, "C-Heap outstanding allocations: (\\d+)K") - lAfter);
            } else {
                Thread.sleep(kPauseMilliseconds);
            }
        }
        Collections.sort(samples);
        return new ProcessFootprint(samples.get(kSamples / 2), lHeap, iReferences,
                openDescriptors(), number(info, "Resident Set Size: (\\d+)K"));
    }

    /** The virtual machine's allocations apart from those it makes for JNI. */
    private static long machinesOwn(String report) {
        Pattern head = Pattern.compile("-\\s+(.+) \\(reserved=\\d+, committed=\\d+\\)");
        Pattern allocated = Pattern.compile("\\((?:malloc|arena)=(\\d+) #\\d+\\)");
        long lSum = number(report, "tracking overhead=(\\d+)");
        boolean bInternal = false;
        boolean bInternalSeen = false;
        for (String line : report.split("\n")) {
            Matcher section = head.matcher(line.strip());
            if (section.matches()) {
                bInternal = section.group(1).equals("Internal");
                bInternalSeen |= bInternal;
            }
            Matcher bytes = allocated.matcher(line);
            if (bytes.find() && !bInternal) {
                lSum += Long.parseLong(bytes.group(1));
            }
        }
        if (!bInternalSeen) {
            throw new AssertionError("no section Internal in:\n" + report);
        }
        return lSum;
    }

    /** One by one: a 32-bit program under an emulator cannot list a folder. */
    private static int openDescriptors() {
        int iOpen = 0;
        for (int i = 0; i < kMostDescriptors; i++) {
            if (Files.exists(Path.of("/proc/self/fd/" + i))) {
                iOpen++;
            }
        }
        return iOpen;
    }

    private static long number(String text, String pattern) {
        Matcher matcher = Pattern.compile(pattern).matcher(text);
        if (!matcher.find()) {
            throw new AssertionError("no \"" + pattern + "\" in:\n" + text);
        }
        return Long.parseLong(matcher.group(1));
    }

    /** Runs a diagnostic command of this virtual machine. */
    private static String command(String name, String... arguments) {
        try {
            return (String) ManagementFactory.getPlatformMBeanServer().invoke(
                    new ObjectName("com.sun.management:type=DiagnosticCommand"), name,
                    new Object[] {arguments}, new String[] {String[].class.getName()});
        } catch (JMException e) {
            throw new AssertionError("diagnostic command " + name, e);
        }
    }
}

package com.veltra.domoline.systemtest;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.File;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;

/** The volumes on USB sticks, and how large they are. */
@ExtendWith(AttachedGateway.class)
class StorageTest {
    private static final String kNone = "{ \"Result\": 0, \"List\": [ ] }";
    /** The machine works meanwhile: what is free is looked at until it stands still for once. */
    private static final int kTries = 200;
    private static final int kLongestAnswer = 511;

    private final List<Path> folders = new ArrayList<>();
    private Path base;

    @BeforeEach
    void makeFolder() throws IOException {
        // Not where the run's folder is: a volume's path has 127 bytes at most.
        base = Files.createTempDirectory(Path.of("/tmp"), "volumes").toRealPath();
    }

    /** The home as shipped again. The folders are noted: under the emulator none can be listed. */
    @AfterEach
    void removeVolumes() throws IOException {
        for (String line : Gateway.ctl("storage").split("\n")) {
            String name = line.split(" +")[0];
            if (!name.equals("NAME") && !name.equals("usb1")) {
                Gateway.ctl("storage", "remove", name);
            }
        }
        for (Path folder : folders) {
            Files.deleteIfExists(folder);
        }
        Files.delete(base);
    }

    private Path add(String name) {
        try {
            Path folder = base.resolve(name);
            folders.add(Files.createDirectory(folder));
            Gateway.ctl("storage", "add", folder.toString());
            return folder;
        } catch (IOException e) {
            throw new AssertionError(e);
        }
    }

    private void remove(Path folder) {
        Gateway.ctl("storage", "remove", folder.toString());
    }

    private static String answer() {
        return Box.kUsb.getStorageInfo();
    }

    private static String entry(String path, String total, String free) {
        return "{ \"storagePath\": \"" + path.replace("/", "\\/") + "\", \"totalStorage\": " + total
                + ", \"validStorage\": " + free + " }";
    }

    private static String list(String... entries) {
        return Lan.list(entries);
    }

    /** The answer with the sizes as words. */
    private static String paths(String answer) {
        return answer.replaceAll("\"totalStorage\": [1-9][0-9]*", "\"totalStorage\": TOTAL")
                .replaceAll("\"validStorage\": [1-9][0-9]*", "\"validStorage\": FREE");
    }

    private static String sized(Path path) {
        return entry(path.toString(), "TOTAL", "FREE");
    }

    /** The volume that is shipped lies in the gateway's own folder. */
    private static Path shipped() {
        return Path.of(Gateway.ctl("storage").split("\n")[1].split(" +")[1]);
    }

    @Test
    void volumesAreListedInTheirOrder() {
        Path usb1 = shipped();
        assertTrue(usb1.endsWith("storage/usb1"), usb1.toString());
        assertEquals(list(sized(usb1)), paths(answer()));
        Path stick = add("stick");
        assertEquals(list(sized(usb1), sized(stick)), paths(answer()));
        remove(stick);
        assertEquals(list(sized(usb1)), paths(answer()));
    }

    @Test
    void anyPathIsToldAsItIs() {
        Path strange = add("a \"stick\" \u00E4\u5BB6 \\ {}");
        String path = strange.toString().replace("\\", "\\\\").replace("\"", "\\\"");
        assertEquals(list(sized(shipped()), entry(path, "TOTAL", "FREE")), paths(answer()));
        // By its name, which is no path.
        Gateway.ctl("storage", "remove", strange.getFileName().toString());
    }

    @Test
    void sizesAreThoseOfTheFileSystem() {
        Path stick = add("stick");
        // Not a FileStore: there is none without a mount point, as at the top of a changed root.
        File folder = stick.toFile();
        Pattern sizes = Pattern.compile(
                Pattern.quote("{ \"storagePath\": \"" + stick.toString().replace("/", "\\/") + "\"")
                + ", \"totalStorage\": ([0-9]+), \"validStorage\": ([0-9]+) }");
        boolean bStood = false;
        for (int i = 0; i < kTries && !bStood; i++) {
            long lBefore = folder.getFreeSpace();
            String answer = answer();
            bStood = lBefore == folder.getFreeSpace();
            Matcher matcher = sizes.matcher(answer);
            assertTrue(matcher.find(), answer);
            assertEquals(folder.getTotalSpace(), Long.parseLong(matcher.group(1)));
            if (bStood) {
                assertEquals(lBefore, Long.parseLong(matcher.group(2)));
            }
        }
        assertTrue(bStood, "the free space never stood still");
    }

    private static void withoutTheShippedOne(Runnable calls) {
        String usb1 = shipped().toString();
        Gateway.ctl("storage", "remove", "usb1");
        try {
            calls.run();
        } finally {
            Gateway.ctl("storage", "add", usb1);
        }
    }

    @Test
    void withoutVolumesTheListIsEmpty() {
        withoutTheShippedOne(() -> assertEquals(kNone, answer()));
        BoxMethod.STORAGE.assertSucceeds();
    }

    @Test
    void aVolumeWhoseFolderIsGoneHasNoBytes() throws IOException {
        Path stick = add("stick");
        Files.delete(stick);
        assertEquals(list(sized(shipped()), entry(stick.toString(), "0", "0")), paths(answer()));
    }

    /** Without the shipped one, whose path grows with that of the run's folder. */
    @Test
    void aListThatIsTooLongIsAFailure() {
        withoutTheShippedOne(this::fillAndOverfill);
    }

    private void fillAndOverfill() {
        // One after the other with a name of one letter, until the next one does not fit.
        List<Path> added = new ArrayList<>();
        String whole = answer();
        for (String next = whole; !next.equals(Box.kStorageFailed); next = answer()) {
            whole = next;
            assertTrue(added.size() < 26, next);
            added.add(add(String.valueOf((char) ('a' + added.size()))));
        }
        remove(added.remove(added.size() - 1));
        assertEquals(whole.length(), answer().length());
        assertTrue(added.size() >= 2, whole);

        // The names of two are made longer, so that the answer has just as many characters as fit.
        int iMore = kLongestAnswer - whole.length();
        Path last = lengthen(added, iMore / 2);
        assertEquals(whole.length() + iMore / 2, answer().length());
        Path longest = lengthen(added, iMore - iMore / 2);
        String full = answer();
        assertEquals(kLongestAnswer, full.length());
        assertTrue(full.endsWith(" } ] }"), full);
        assertTrue(full.contains("\\/" + last.getFileName() + "\""), full);

        remove(longest);
        add(longest.getFileName() + "+");
        assertEquals(Box.kStorageFailed, answer());
    }

    /** Gives the first of some volumes a longer name. */
    private Path lengthen(List<Path> added, int iMore) {
        Path old = added.remove(0);
        remove(old);
        return add(old.getFileName() + "-".repeat(iMore));
    }

    @Test
    void aManagerThatIsAwayIsAFailure() {
        Gateway.kill(Gateway.kUsbMngt);
        try {
            assertEquals(Box.kStorageFailed, answer());
            assertEquals(Box.kStorageFailed, answer());
        } finally {
            Gateway.start(Gateway.kUsbMngt);
        }
        BoxMethod.STORAGE.assertSucceeds();
    }

    @Test
    void volumesOutliveTheManager() {
        Path stick = add("stick");
        Gateway.crash(Gateway.kUsbMngt);
        assertEquals(list(sized(shipped()), sized(stick)), paths(answer()));
    }
}

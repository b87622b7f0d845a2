package com.veltra.domoline.systemtest;

import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.file.Files;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.util.List;
import java.util.stream.Collectors;
import java.util.stream.Stream;

/** What may stay behind of calls that failed: files, bulk blocks, segments, threads. */
final class Leftovers {
    private static final String kBlocks = "vdata";
    private static final String kLogs = "log";

    private Leftovers() {}

    /** The gateway's runtime directory. */
    static Path directory() {
        return Path.of(System.getenv("VT_RUNTIME_DIR"));
    }

    /** All files of the runtime directory but logs and bulk blocks: sockets, states, locks. */
    static List<String> files() {
        Path top = directory();
        try (Stream<Path> paths = Files.walk(top)) {
            return paths.filter(path -> !path.equals(top))
                    .map(path -> top.relativize(path))
                    .filter(path
                            -> path.getNameCount() == 1
                                    || !path.startsWith(kLogs) && !path.startsWith(kBlocks))
                    .map(Path::toString)
                    .sorted()
                    .collect(Collectors.toList());
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    static long blocks() {
        try (Stream<Path> paths = Files.list(directory().resolve(kBlocks))) {
            return paths.count();
        } catch (NoSuchFileException e) {
            return 0;
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    /** How many blocks there are when all is quiet: what is on its way may still arrive. */
    static long blocksAtRest() {
        Traffic.await(() -> blocks() == 0);
        return blocks();
    }

    /** The terminals that this process has open. */
    static List<String> terminals() {
        try (Stream<Path> descriptors = Files.list(Path.of("/proc/self/fd"))) {
            return descriptors.map(Leftovers::targetOf)
                    .filter(target -> target.startsWith("/dev/pts/"))
                    .sorted()
                    .collect(Collectors.toList());
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    /** The sizes of the System V segments that this process has made. */
    static List<String> segments() {
        String me = String.valueOf(ProcessHandle.current().pid());
        try (Stream<String> lines = Files.lines(Path.of("/proc/sysvipc/shm"))) {
            return lines.map(line -> line.trim().split(" +"))
                    .filter(columns -> columns[4].equals(me))
                    .map(columns -> columns[3])
                    .collect(Collectors.toList());
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    /** The names of this process's threads, without those that the virtual machine keeps itself. */
    static List<String> threads() {
        try (Stream<Path> tasks = Files.list(Path.of("/proc/self/task"))) {
            return tasks.map(Leftovers::nameOf)
                    .filter(name -> !name.isEmpty() && !name.matches("(C[12] Comp|GC |G1 |VM ).*"))
                    .sorted()
                    .collect(Collectors.toList());
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    /** "" for a descriptor that has just been closed. */
    private static String targetOf(Path descriptor) {
        try {
            return Files.readSymbolicLink(descriptor).toString();
        } catch (IOException e) {
            return "";
        }
    }

    /** "" for a thread that has just ended. */
    private static String nameOf(Path task) {
        try {
            return Files.readString(task.resolve("comm")).strip();
        } catch (IOException e) {
            return "";
        }
    }
}

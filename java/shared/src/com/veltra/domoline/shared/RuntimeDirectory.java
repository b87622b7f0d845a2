package com.veltra.domoline.shared;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.InvalidPathException;
import java.nio.file.Path;

/** The folder in which the processes of a simulated gateway meet. */
public final class RuntimeDirectory {
    private static final String kVariable = "VT_RUNTIME_DIR";
    private static final String kAdvice =
            " It must name the runtime directory of a gateway that runs.\n"
            + "In a clone, './run --keep tour' starts one and says what to set.\n"
            + "With an installed SDK: export " + kVariable + "=DIR; gatewayctl start";

    private RuntimeDirectory() {}

    /**
     * Looks whether the environment names it; not whether a gateway runs there.
     *
     * @throws IOException if it doesn't; the message says what to do
     */
    public static void check() throws IOException {
        String name = System.getenv(kVariable);
        if (name == null || name.isEmpty()) {
            throw new IOException(kVariable + " is not set." + kAdvice);
        }
        try {
            if (!Files.isDirectory(Path.of(name))) {
                throw new IOException(kVariable + " is no directory: " + name + "." + kAdvice);
            }
        } catch (InvalidPathException e) {
            return; // in letters of another locale; native code doesn't mind
        }
    }

    /**
     * Finds it, for what Java itself does there.
     *
     * @return the folder
     * @throws IOException as check does, or if Java can't use the name in this locale
     */
    public static Path find() throws IOException {
        check();
        try {
            return Path.of(System.getenv(kVariable));
        } catch (InvalidPathException e) {
            throw new IOException(kVariable + " has letters that this locale doesn't know: "
                    + e.getInput() + ". LC_ALL=C.UTF-8 knows all.");
        }
    }
}

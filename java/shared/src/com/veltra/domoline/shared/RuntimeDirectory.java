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
     * Finds it, as the environment names it. That a gateway runs there is not looked at.
     *
     * @return the folder
     * @throws IOException if the environment doesn't name one; the message says what to do
     */
    public static Path find() throws IOException {
        String name = System.getenv(kVariable);
        if (name == null || name.isEmpty()) {
            throw new IOException(kVariable + " is not set." + kAdvice);
        }
        try {
            Path folder = Path.of(name);
            if (Files.isDirectory(folder)) {
                return folder;
            }
        } catch (InvalidPathException e) {
            throw new IOException(kVariable + " has letters that this locale doesn't know: "
                    + e.getInput() + ". LC_ALL=C.UTF-8 knows all.");
        }
        throw new IOException(kVariable + " is no directory: " + name + "." + kAdvice);
    }
}

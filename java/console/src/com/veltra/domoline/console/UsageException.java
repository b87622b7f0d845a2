package com.veltra.domoline.console;

/**
 * What the user typed can't be carried out as it stands; the message says why and what would be.
 */
public final class UsageException extends Exception {
    private static final long serialVersionUID = 1L;

    /**
     * Makes one.
     *
     * @param message the words for the user, without a full stop at the end
     */
    public UsageException(String message) {
        super(message);
    }
}

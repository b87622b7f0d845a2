package com.veltra.domoline.systemtest;

/** The library's conversions of texts, which no service class offers by themselves. */
final class TextProbe {
    static {
        System.load(Gateway.property("wap.probe"));
    }

    private TextProbe() {}

    /** The bytes up to the zero; null where the conversion gives null. */
    static native byte[] jstring2char(String text);

    /** Likewise, for the conversion that lets an empty text count. */
    static native byte[] jstringtochar(String text);

    /** The text of these bytes, behind which there is a zero; null passes null. */
    static native String char2jstring(byte[] bytes);

    /**
     * Appends the texts to the text in a buffer.
     *
     * @return what the join answers, 0 or 1; 2 when it wrote behind the buffer
     */
    static native int join(String[] texts, byte[] separator, byte[] buffer);
}

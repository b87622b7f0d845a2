package com.veltra.domoline.systemtest;

import static java.nio.charset.StandardCharsets.UTF_8;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;

import java.util.Arrays;
import java.util.Collections;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;

/** Texts between Java and native code, converted by a real class library. */
class TextConversionTest {
    private static final byte[] kComma = {','};

    /** Code points, and their bytes in UTF-8. */
    @ParameterizedTest
    @CsvSource({
            "1, 01",
            "7F, 7F",
            "80, C280",
            "E9, C3A9",
            "7FF, DFBF",
            "800, E0A080",
            "20AC, E282AC",
            "D7FF, ED9FBF",
            "E000, EE8080",
            "FFFD, EFBFBD",
            "FFFF, EFBFBF",
            "10000, F0908080", // from here on two surrogates in Java
            "1F600, F09F9880",
            "10FFFF, F48FBFBF",
    })
    void everyLengthOfACharacterGoesThereAndBack(String codePoint, String hex) {
        String text = new String(Character.toChars(Integer.parseInt(codePoint, 16)));
        assertConverts(text, hex);
        assertEquals(text, TextProbe.char2jstring(bytes(hex)));
        String within = "a" + text + text + "b";
        assertConverts(within, "61" + hex + hex + "62");
        assertEquals(within, TextProbe.char2jstring(bytes("61" + hex + hex + "62")));
    }

    @Test
    void anUnpairedSurrogateBecomesAQuestionMark() {
        assertConverts("\uD800", "3F");
        assertConverts("a\uDC00b", "613F62");
        assertConverts("x\uD83D", "783F");
        assertConverts("\uDE00\uD83D", "3F3F"); // a pair the wrong way round
        assertConverts("\uD83D\uD83D\uDE00", "3FF09F9880");
    }

    @Test
    void aZeroEndsTheNativeText() {
        assertConverts("ab\u0000cd", "6162");
        assertConverts("\u0000", ""); // not empty in Java, so not null either
        assertConverts("\u0000cd", "");
    }

    @Test
    void nullIsNull() {
        assertNull(TextProbe.jstring2char(null));
        assertNull(TextProbe.jstringtochar(null));
        assertNull(TextProbe.char2jstring(null));
    }

    @Test
    void anEmptyTextIsNullButWhereItCounts() {
        assertNull(TextProbe.jstring2char(""));
        assertArrayEquals(new byte[0], TextProbe.jstringtochar(""));
        assertNull(TextProbe.char2jstring(new byte[0]));
        assertNull(TextProbe.char2jstring(bytes("006162")));
    }

    @Test
    void bytesThatAreNoUtf8AreReplaced() {
        assertEquals("a\uFFFDb", TextProbe.char2jstring(bytes("61FF62")));
        // The virtual machine's own form of U+0000.
        assertEquals("\uFFFD\uFFFD", TextProbe.char2jstring(bytes("C080")));
        assertEquals("a\uFFFD", TextProbe.char2jstring(bytes("61E282"))); // cut off
    }

    @Test
    void aLongTextArrivesWhole() {
        String text = String.join("", Collections.nCopies(5000, "\u00E9\uD83D\uDE00"));
        byte[] utf8 = TextProbe.jstring2char(text);
        assertEquals(30000, utf8.length);
        assertEquals(text, TextProbe.char2jstring(utf8));
    }

    @Test
    void aJoinLeavesOutTheEmptyAndTheNull() {
        assertJoin(0, "a,b,\u00E9", 64, "", "a", "", "b", null, "\u00E9");
        assertJoin(0, "", 64, "", "", null);
        assertJoin(0, "before", 64, "before");
        assertJoin(0, "before,a", 64, "before,", "a");
        assertJoin(0, "\uD83D\uDE00,?,x", 64, "", "\uD83D\uDE00", "\uD800", "x\u0000y");
    }

    @Test
    void aJoinThatDoesNotFitLeavesWhatDid() {
        // Eight bytes with the separator behind the last, a zero, and one that stays unused.
        assertJoin(0, "abc,def", 10, "", "abc", "def");
        assertJoin(1, "abc,def", 9, "", "abc", "def");
        assertJoin(1, "abc,", 8, "", "abc", "def");
        assertJoin(1, "abc", 5, "", "abc", "def");
        assertJoin(1, "", 4, "", "abc", "def");
        assertJoin(1, "\u00E9", 4, "", "\u00E9", "a"); // bytes count, not characters
    }

    @Test
    void aJoinOfManyElements() {
        String[] texts = new String[200];
        Arrays.fill(texts, "\u00E9");
        String joined = String.join(",", texts);
        assertJoin(0, joined, 602, "", texts);
        assertJoin(1, joined, 601, "", texts);
    }

    /** Both conversions, which differ for the empty text only. */
    private static void assertConverts(String text, String hex) {
        assertArrayEquals(bytes(hex), TextProbe.jstring2char(text));
        assertArrayEquals(bytes(hex), TextProbe.jstringtochar(text));
    }

    private static void assertJoin(
            int iResult, String expected, int iSize, String before, String... texts) {
        byte[] buffer = Arrays.copyOf(before.getBytes(UTF_8), iSize);
        assertEquals(iResult, TextProbe.join(texts, kComma, buffer));
        int iEnd = 0;
        while (iEnd < iSize && buffer[iEnd] != 0) {
            iEnd++;
        }
        assertEquals(expected, new String(buffer, 0, iEnd, UTF_8));
        assertEquals(0, buffer[iSize - 1]);
    }

    private static byte[] bytes(String hex) {
        byte[] bytes = new byte[hex.length() / 2];
        for (int i = 0; i < bytes.length; i++) {
            bytes[i] = (byte) Integer.parseInt(hex.substring(2 * i, 2 * i + 2), 16);
        }
        return bytes;
    }
}

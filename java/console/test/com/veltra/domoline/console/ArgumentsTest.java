package com.veltra.domoline.console;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.lang.reflect.Method;
import java.util.Arrays;
import java.util.List;
import java.util.stream.Collectors;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;

class ArgumentsTest {
    /** Methods with a parameter of each kind. */
    interface Sample {
        void ofInt(int iValue);

        void ofLong(long lValue);

        void ofShort(short value);

        void ofByte(byte value);

        void ofBoolean(boolean bValue);

        void ofDouble(double value);

        void ofChar(char value);

        void ofString(String value);

        void ofBytes(byte[] value);

        void ofStrings(String[] value);

        void ofInts(int[] value);

        void ofObject(Object value);

        void mixed(int iValue, boolean bValue, String value);

        void over(String value);

        void over(String first, int iSecond);

        int plain(int iFirst, boolean bSecond);
    }

    private static Method method(String name) {
        return overloads(name).get(0);
    }

    private static List<Method> overloads(String name) {
        return Arrays.stream(Sample.class.getMethods())
                .filter(method -> method.getName().equals(name))
                .collect(Collectors.toList());
    }

    private static Object one(String name, String word) throws UsageException {
        return Arguments.convert(method(name), List.of(word))[0];
    }

    private static String refusal(String name, String... words) {
        return assertThrows(
                UsageException.class, () -> Arguments.convert(method(name), List.of(words)))
                .getMessage();
    }

    @ParameterizedTest
    @CsvSource({"0,0", "10,10", "-1,-1", "+5,5", "0x1F,31", "-0x10,-16", "010,10", "-007,-7",
            "00,0", "2147483647,2147483647", "-2147483648,-2147483648"})
    void
    integers(String word, int iExpected) throws UsageException {
        assertEquals(iExpected, one("ofInt", word));
        assertEquals((long) iExpected, one("ofLong", word));
    }

    @Test
    void otherPrimitives() throws UsageException {
        assertEquals(Long.MIN_VALUE, one("ofLong", "-9223372036854775808"));
        assertEquals((short) -32768, one("ofShort", "-32768"));
        assertEquals((byte) 127, one("ofByte", "127"));
        assertEquals(true, one("ofBoolean", "true"));
        assertEquals(false, one("ofBoolean", "false"));
        assertEquals(1.5, one("ofDouble", "1.5"));
        assertEquals('x', one("ofChar", "x"));
    }

    @Test
    void wrongWordsAreRefusedWithTheReason() {
        assertEquals("argument 1: 'x' is no int", refusal("ofInt", "x"));
        assertEquals("argument 1: '' is no int", refusal("ofInt", ""));
        assertEquals("argument 1: 'null' is no int", refusal("ofInt", "null"));
        assertEquals("argument 1: 2147483648 is outside -2147483648 to 2147483647 of int",
                refusal("ofInt", "2147483648"));
        assertEquals("argument 1: 128 is outside -128 to 127 of byte", refusal("ofByte", "128"));
        assertEquals("argument 1: 'yes' is not true or false", refusal("ofBoolean", "yes"));
        assertEquals("argument 1: 'xy' is not one character", refusal("ofChar", "xy"));
        assertEquals("argument 1: a Object can't be written here", refusal("ofObject", "x"));
        assertEquals("argument 1: 'abc' is not an even number of hexadecimal digits",
                refusal("ofBytes", "abc"));
        assertEquals("argument 1: a \\ in 'AT\\x' must be \\r, \\n or \\\\",
                refusal("ofBytes", "text:AT\\x"));
        assertEquals("argument 1: a \\ in 'AT\\' must be \\r, \\n or \\\\",
                refusal("ofBytes", "text:AT\\"));
        assertEquals("argument 1: 'many' is no int", refusal("ofBytes", "zeros:many"));
        assertEquals(
                "argument 1: zeros:-1 is not zeros:0 to 1048576", refusal("ofBytes", "zeros:-1"));
        assertEquals("argument 1: zeros:1048577 is not zeros:0 to 1048576",
                refusal("ofBytes", "zeros:1048577"));
        assertEquals("argument 1: 'y' is no int", refusal("ofInts", "1,y"));
        assertEquals("argument 2: 'no' is not true or false", refusal("mixed", "1", "no", "x"));
    }

    @Test
    void countOfWordsMustFit() {
        assertEquals("void ofInt(int) takes 1 argument, not 0", refusal("ofInt"));
        assertEquals(
                "void mixed(int, boolean, String) takes 3 arguments, not 1", refusal("mixed", "1"));
    }

    @Test
    void texts() throws UsageException {
        assertEquals("a b", one("ofString", "a b"));
        assertEquals("", one("ofString", ""));
        assertNull(one("ofString", "null"));
        assertEquals("null", one("ofString", "text:null"));
        assertEquals("text:x", one("ofString", "text:text:x"));
    }

    @Test
    void arrays() throws UsageException {
        assertArrayEquals(new String[] {"a", "b", "c"}, (String[]) one("ofStrings", "a,b,c"));
        assertArrayEquals(new String[] {"a,b", ""}, (String[]) one("ofStrings", "a\\,b,"));
        assertArrayEquals(new String[] {null, "x"}, (String[]) one("ofStrings", "null,x"));
        assertArrayEquals(new String[0], (String[]) one("ofStrings", ""));
        assertNull(one("ofStrings", "null"));
        assertArrayEquals(new int[] {1, -2, 3}, (int[]) one("ofInts", "1,-2,0x3"));
        assertArrayEquals(new byte[] {0, (byte) 0xFF, 0x10}, (byte[]) one("ofBytes", "00:fF 10"));
        assertArrayEquals(new byte[0], (byte[]) one("ofBytes", ""));
        assertArrayEquals(new byte[] {'A', 'T', '\r', '\n', '\\', (byte) 0xC3, (byte) 0xBC},
                (byte[]) one("ofBytes", "text:AT\\r\\n\\\\\u00FC"));
        assertArrayEquals(new byte[0], (byte[]) one("ofBytes", "text:"));
        assertArrayEquals(new byte[3], (byte[]) one("ofBytes", "zeros:3"));
        assertArrayEquals(new byte[0], (byte[]) one("ofBytes", "zeros:0"));
    }

    @Test
    void overloadIsChosenByTheCountOfWords() throws UsageException {
        Arguments.Call call = Arguments.bind(overloads("over"), List.of("x", "5"));
        assertEquals(2, call.method.getParameterCount());
        assertArrayEquals(new Object[] {"x", 5}, call.values);
        assertEquals(1, Arguments.bind(overloads("over"), List.of("x")).method.getParameterCount());
        UsageException refusal = assertThrows(
                UsageException.class, () -> Arguments.bind(overloads("over"), List.of("x", "y")));
        assertEquals("argument 2: 'y' is no int", refusal.getMessage());
        assertTrue(assertThrows(
                UsageException.class, () -> Arguments.bind(overloads("over"), List.of()))
                           .getMessage()
                           .contains("not 0"));
    }

    private static Object[] samples(Method method) {
        return Arguments.samples(method, () -> 269488129);
    }

    @Test
    void samplesExistForNumbersBooleansAndListsOfTexts() {
        assertArrayEquals(new Object[] {10, false}, samples(method("plain")));
        assertArrayEquals(new Object[] {new String[0]}, samples(method("ofStrings")));
        assertNull(samples(method("ofInts")));
        assertNull(samples(method("ofBytes")));
        assertNull(samples(method("ofString")));
        assertNull(samples(method("mixed")));
        assertNull(samples(method("ofChar")));
    }
}

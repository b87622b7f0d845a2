package com.veltra.domoline.console;

import java.lang.reflect.Array;
import java.lang.reflect.Method;
import java.lang.reflect.Parameter;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.List;
import java.util.function.IntSupplier;

/**
 * Turns typed words into the arguments of a method.
 *
 * <table>
 *   <caption>How each type is written</caption>
 *   <tr><th>type</th><th>written as</th></tr>
 *   <tr><td>byte, short, int, long</td><td>{@code 10}, {@code -1} or {@code 0x1F}</td></tr>
 *   <tr><td>boolean</td><td>{@code true} or {@code false}</td></tr>
 *   <tr><td>float, double</td><td>{@code 1.5}</td></tr>
 *   <tr><td>char</td><td>one character</td></tr>
 *   <tr><td>String</td><td>the text itself; {@code null}; {@code text:null} for the text
 *       "null"</td></tr>
 *   <tr><td>byte[]</td><td>hexadecimal, {@code 0aff10}, blanks and colons allowed;
 *       {@code text:AT\r} for the bytes of a text, with {@code \r}, {@code \n} and {@code \\};
 *       {@code zeros:64} for as many zeros</td></tr>
 *   <tr><td>other arrays</td><td>{@code a,b,c}; <code>\,</code> for a comma in an element; an empty
 *       word for an empty array</td></tr>
 * </table>
 */
public final class Arguments {
    private static final String kNull = "null";
    private static final String kLiteral = "text:";
    private static final String kZeros = "zeros:";
    private static final int kMostZeros = 1 << 20;
    private static final String kWanIndex = "iWanIndex";

    private Arguments() {}

    /**
     * Converts the words of a call.
     *
     * @param method the method that they are for
     * @param words one word for each parameter
     * @return the arguments for {@link Method#invoke}
     * @throws UsageException if there are too many or too few words, or one doesn't fit its type
     */
    public static Object[] convert(Method method, List<String> words) throws UsageException {
        Class<?>[] types = method.getParameterTypes();
        if (types.length != words.size()) {
            throw new UsageException(ServiceCatalog.signature(method) + " takes "
                    + count(types.length) + ", not " + words.size());
        }
        Object[] values = new Object[types.length];
        for (int i = 0; i < types.length; i++) {
            try {
                values[i] = convert(types[i], words.get(i));
            } catch (UsageException e) {
                throw new UsageException("argument " + (i + 1) + ": " + e.getMessage());
            }
        }
        return values;
    }

    /**
     * Picks the overload that fits and converts the words for it.
     *
     * @param overloads methods of one name, at least one
     * @param words the words of the call
     * @return the first overload whose parameters the words fit, with its arguments
     * @throws UsageException if none fits; the reason given is that of an overload with as many
     *     parameters, if there is one
     */
    public static Call bind(List<Method> overloads, List<String> words) throws UsageException {
        UsageException reason = null;
        boolean bCountFits = false;
        for (Method method : overloads) {
            boolean bFits = method.getParameterCount() == words.size();
            try {
                return new Call(method, convert(method, words));
            } catch (UsageException e) {
                if (reason == null || bFits || !bCountFits) {
                    reason = e;
                }
                bCountFits |= bFits;
            }
        }
        throw reason == null ? new UsageException("there is no such method") : reason;
    }

    private static String count(int number) {
        return number == 0 ? "no arguments" : number == 1 ? "1 argument" : number + " arguments";
    }

    private static Object convert(Class<?> type, String word) throws UsageException {
        if (type.isPrimitive()) {
            return primitive(type, word);
        }
        if (word.equals(kNull)) {
            return null;
        }
        if (type == String.class) {
            return word.startsWith(kLiteral) ? word.substring(kLiteral.length()) : word;
        }
        if (type == byte[].class) {
            return bytes(word);
        }
        if (type.isArray()) {
            return array(type.getComponentType(), word);
        }
        throw new UsageException("a " + type.getSimpleName() + " can't be written here");
    }

    private static Object primitive(Class<?> type, String word) throws UsageException {
        try {
            if (type == int.class) {
                return (int) integer(type, word, Integer.MIN_VALUE, Integer.MAX_VALUE);
            } else if (type == long.class) {
                return integer(type, word, Long.MIN_VALUE, Long.MAX_VALUE);
            } else if (type == short.class) {
                return (short) integer(type, word, Short.MIN_VALUE, Short.MAX_VALUE);
            } else if (type == byte.class) {
                return (byte) integer(type, word, Byte.MIN_VALUE, Byte.MAX_VALUE);
            } else if (type == double.class) {
                return Double.valueOf(word);
            } else if (type == float.class) {
                return Float.valueOf(word);
            }
        } catch (NumberFormatException e) {
            throw new UsageException("'" + word + "' is no " + type.getSimpleName());
        }
        if (type == boolean.class && (word.equals("true") || word.equals("false"))) {
            return Boolean.valueOf(word);
        }
        if (type == char.class && word.length() == 1) {
            return word.charAt(0);
        }
        String wanted = type == boolean.class ? "true or false" : "one character";
        throw new UsageException("'" + word + "' is not " + wanted);
    }

    private static long integer(Class<?> type, String word, long lLeast, long lMost)
            throws UsageException {
        // A leading zero is no octal mark here: what people paste are decimal numbers.
        long lValue = Long.decode(word.replaceFirst("^([+-]?)0+(?=\\d)", "$1"));
        if (lValue < lLeast || lValue > lMost) {
            throw new UsageException(
                    word + " is outside " + lLeast + " to " + lMost + " of " + type);
        }
        return lValue;
    }

    private static byte[] bytes(String word) throws UsageException {
        if (word.startsWith(kLiteral)) {
            return unescaped(word.substring(kLiteral.length())).getBytes(StandardCharsets.UTF_8);
        }
        if (word.startsWith(kZeros)) {
            int iCount = (Integer) primitive(int.class, word.substring(kZeros.length()));
            if (iCount < 0 || iCount > kMostZeros) {
                throw new UsageException(word + " is not " + kZeros + "0 to " + kMostZeros);
            }
            return new byte[iCount];
        }
        return hexadecimal(word);
    }

    private static String unescaped(String text) throws UsageException {
        StringBuilder out = new StringBuilder();
        for (int i = 0; i < text.length(); i++) {
            char c = text.charAt(i);
            if (c == '\\') {
                int iEscape = i + 1 < text.length() ? "rn\\".indexOf(text.charAt(i + 1)) : -1;
                if (iEscape < 0) {
                    throw new UsageException("a \\ in '" + text + "' must be \\r, \\n or \\\\");
                }
                c = "\r\n\\".charAt(iEscape);
                i++;
            }
            out.append(c);
        }
        return out.toString();
    }

    private static byte[] hexadecimal(String word) throws UsageException {
        String digits = word.replaceAll("[\\s:]", "");
        if (!digits.matches("([0-9A-Fa-f]{2})*")) {
            throw new UsageException("'" + word + "' is not an even number of hexadecimal digits");
        }
        byte[] bytes = new byte[digits.length() / 2];
        for (int i = 0; i < bytes.length; i++) {
            bytes[i] = (byte) Integer.parseInt(digits.substring(2 * i, 2 * i + 2), 16);
        }
        return bytes;
    }

    private static Object array(Class<?> element, String word) throws UsageException {
        List<String> parts = word.isEmpty() ? List.of() : split(word);
        Object array = Array.newInstance(element, parts.size());
        for (int i = 0; i < parts.size(); i++) {
            Array.set(array, i, convert(element, parts.get(i)));
        }
        return array;
    }

    private static List<String> split(String word) {
        List<String> parts = new ArrayList<>();
        StringBuilder part = new StringBuilder();
        for (int i = 0; i < word.length(); i++) {
            char c = word.charAt(i);
            if (c == '\\' && i + 1 < word.length() && word.charAt(i + 1) == ',') {
                part.append(',');
                i++;
            } else if (c == ',') {
                parts.add(part.toString());
                part.setLength(0);
            } else {
                part.append(c);
            }
        }
        parts.add(part.toString());
        return parts;
    }

    /**
     * Makes up arguments for trying a query: a WAN connection that there is, 10 for every other
     * number, false for a boolean, and a list without texts, which asks about everything.
     *
     * @param method a method
     * @param wanIndex tells a WAN connection's index
     * @return the arguments, or null when a parameter has no value that is good for a trial
     */
    static Object[] samples(Method method, IntSupplier wanIndex) {
        List<String> words = new ArrayList<>();
        for (Parameter parameter : method.getParameters()) {
            Class<?> type = parameter.getType();
            if (type == int.class && parameter.getName().equals(kWanIndex)) {
                words.add(Integer.toString(wanIndex.getAsInt()));
            } else if (type == boolean.class) {
                words.add("false");
            } else if (type.isPrimitive() && type != char.class) {
                words.add("10");
            } else if (type == String[].class) {
                words.add("");
            } else {
                return null;
            }
        }
        try {
            return convert(method, words);
        } catch (UsageException e) {
            return null;
        }
    }

    /** A method with the arguments to call it with. */
    public static final class Call {
        /** The method. */
        public final Method method;

        /** Its arguments. */
        public final Object[] values;

        Call(Method method, Object[] values) {
            this.method = method;
            this.values = values;
        }
    }
}

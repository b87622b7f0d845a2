package com.veltra.domoline.console;

import com.google.gson.JsonElement;
import com.google.gson.JsonPrimitive;
import java.lang.reflect.Method;
import java.util.Arrays;
import java.util.stream.Collectors;
import java.util.stream.IntStream;

/** What a call brought: its answer, and whether that is a failure. */
public final class Outcome {
    private final Method method;
    private final Object value;
    private final Throwable thrown;
    private final long lMilliseconds;

    /**
     * Makes one.
     *
     * @param method the method called
     * @param value its answer; null when there is none or when it threw
     * @param thrown what it threw, or null
     * @param lMilliseconds how long the call took
     */
    public Outcome(Method method, Object value, Throwable thrown, long lMilliseconds) {
        this.method = method;
        this.value = value;
        this.thrown = thrown;
        this.lMilliseconds = lMilliseconds;
    }

    /**
     * Tells whether the call failed: it threw, answered no text, answered JSON whose "Result" is
     * negative, or answered a failure number. A query's number fails only with -1, because sizes
     * and times above two thousand million arrive as other negative numbers; a change's number
     * fails when it is negative, and that of {@code startThread} when it isn't 0. Some have
     * failures of their own: an empty IPTV status, and -2 as the time that the PON is up.
     *
     * @return true for a failure
     */
    public boolean failed() {
        if (thrown != null) {
            return true;
        }
        Class<?> type = method.getReturnType();
        if (type == void.class || type == boolean.class) {
            return false;
        }
        if (value == null) {
            return true;
        }
        if (value instanceof Number) {
            long lValue = ((Number) value).longValue();
            if (method.getName().equals(Gateway.kStartMethod)) {
                return lValue != 0;
            }
            if (method.getName().equals("getPONIfUpTime") && lValue == -2) {
                return true;
            }
            return ServiceCatalog.isQuery(method) ? lValue == -1 : lValue < 0;
        }
        if (method.getName().equals("getIPTVStatus") && value.equals("")) {
            return true;
        }
        return value instanceof String && hasNegativeResult((String) value);
    }

    private static boolean hasNegativeResult(String answer) {
        JsonElement element = JsonText.parse(answer);
        if (element == null || !element.isJsonObject()) {
            return false;
        }
        JsonElement result = element.getAsJsonObject().get("Result");
        if (result == null || !result.isJsonPrimitive()) {
            return false;
        }
        JsonPrimitive number = result.getAsJsonPrimitive();
        return number.isNumber() && number.getAsDouble() < 0;
    }

    /**
     * Describes the answer for people.
     *
     * @param palette the colours
     * @return the text, without a line end behind it
     */
    public String describe(Palette palette) {
        if (thrown != null) {
            return palette.paint(palette.bad, thrown.toString());
        }
        if (method.getReturnType() == void.class) {
            return "done";
        }
        if (value == null) {
            return palette.paint(palette.bad, "null") + " (no answer, or an empty text)";
        }
        if (value instanceof byte[]) {
            byte[] bytes = (byte[]) value;
            return IntStream.range(0, bytes.length)
                    .mapToObj(i -> String.format("%02x", bytes[i]))
                    .collect(Collectors.joining());
        }
        if (value instanceof Object[]) {
            return Arrays.stream((Object[]) value)
                    .map(item -> JsonText.pretty(String.valueOf(item), palette))
                    .collect(Collectors.joining("\n"));
        }
        if (value instanceof String) {
            return JsonText.pretty((String) value, palette);
        }
        return palette.paint(failed() ? palette.bad : palette.number, String.valueOf(value));
    }

    /**
     * Tells how long the call took.
     *
     * @return milliseconds
     */
    public long milliseconds() {
        return lMilliseconds;
    }

    /**
     * Gives the answer itself.
     *
     * @return what the method returned; null when it returned nothing or threw
     */
    public Object value() {
        return value;
    }
}

package com.veltra.domoline.console;

import com.google.gson.JsonElement;
import com.google.gson.JsonPrimitive;
import java.lang.reflect.Method;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Set;
import java.util.stream.Collectors;
import java.util.stream.IntStream;
import java.util.stream.Stream;

/** What a call brought: its answer, and whether that is a failure. */
public final class Outcome {
    /** Methods whose every other number is a failure: codes of the gateway, or 1. */
    private static final Set<String> kZeroOnly = Set.of(
            Gateway.kStartMethod, "reset", "getSubscribeVoIPEvent", "getUnSubscribeVoIPEvent");

    private final Method method;
    private final Object value;
    private final Throwable thrown;
    private final long lMilliseconds;
    private final List<String> filled = new ArrayList<>();

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
     * not 0, or answered a failure number. A query's number fails only with -1, because sizes and
     * times above two thousand million arrive as other negative numbers; a change's number fails
     * when it is negative, and for a few methods when it isn't 0. Some have failures of their own:
     * an empty IPTV status, and -2 as the time that the PON is up.
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
            if (kZeroOnly.contains(method.getName())) {
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
        return value instanceof String && hasFailedResult((String) value);
    }

    private static boolean hasFailedResult(String answer) {
        JsonElement element = JsonText.parse(answer);
        if (element == null || !element.isJsonObject()) {
            return false;
        }
        JsonElement result = element.getAsJsonObject().get("Result");
        if (result == null || !result.isJsonPrimitive()) {
            return false;
        }
        JsonPrimitive number = result.getAsJsonPrimitive();
        return number.isNumber() && number.getAsDouble() != 0;
    }

    /**
     * Notes that the call wrote into an array that it was given, as those that read do.
     *
     * @param name the parameter's name
     * @param bytes what is in the array now
     */
    void addFilled(String name, byte[] bytes) {
        String text = new String(bytes, StandardCharsets.ISO_8859_1).replaceAll("\0+$", "");
        filled.add(name + ": " + hexadecimal(bytes) + " \"" + JsonText.visible(text) + '"');
    }

    private static String hexadecimal(byte[] bytes) {
        return IntStream.range(0, bytes.length)
                .mapToObj(i -> String.format("%02x", bytes[i]))
                .collect(Collectors.joining());
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
            return hexadecimal((byte[]) value);
        }
        if (value instanceof Object[]) {
            return Arrays.stream((Object[]) value)
                    .map(item -> JsonText.pretty(String.valueOf(item), palette))
                    .collect(Collectors.joining("\n"));
        }
        if (value instanceof String) {
            return JsonText.pretty((String) value, palette);
        }
        String number =
                palette.paint(failed() ? palette.bad : palette.number, String.valueOf(value));
        return Stream.concat(Stream.of(number), filled.stream()).collect(Collectors.joining("\n"));
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

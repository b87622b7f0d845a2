package com.veltra.domoline.console;

import com.google.gson.Gson;
import com.google.gson.JsonArray;
import com.google.gson.JsonElement;
import com.google.gson.JsonObject;
import com.google.gson.JsonParseException;
import com.google.gson.JsonPrimitive;
import com.google.gson.stream.JsonReader;
import com.google.gson.stream.JsonToken;
import java.io.IOException;
import java.io.StringReader;
import java.util.Map;

/** Reads and prints the JSON that services answer. */
public final class JsonText {
    private static final String kIndent = "  ";

    private JsonText() {}

    /**
     * Reads an answer as JSON.
     *
     * @param answer a service's answer
     * @return the object or array, or null when the answer is a bare text or not well-formed
     */
    static JsonElement parse(String answer) {
        try (JsonReader reader = new JsonReader(new StringReader(answer))) {
            JsonToken first = reader.peek();
            if (first != JsonToken.BEGIN_OBJECT && first != JsonToken.BEGIN_ARRAY) {
                return null;
            }
            JsonElement element = new Gson().getAdapter(JsonElement.class).read(reader);
            return reader.peek() == JsonToken.END_DOCUMENT ? element : null;
        } catch (IOException | JsonParseException | IllegalStateException e) {
            return null;
        }
    }

    /**
     * Prints an answer for people: JSON with one member a line, anything else as it is. Control
     * characters are written as escapes in both, so that no answer can steer the terminal.
     *
     * @param answer a service's answer
     * @param palette the colours
     * @return the text, without a line end behind it
     */
    public static String pretty(String answer, Palette palette) {
        JsonElement element = parse(answer);
        if (element == null) {
            return palette.paint(palette.text, visible(answer));
        }
        StringBuilder out = new StringBuilder();
        write(element, palette, "", out);
        return out.toString();
    }

    private static void write(
            JsonElement element, Palette palette, String indent, StringBuilder out) {
        if (element.isJsonObject()) {
            writeObject(element.getAsJsonObject(), palette, indent, out);
        } else if (element.isJsonArray()) {
            writeArray(element.getAsJsonArray(), palette, indent, out);
        } else if (element.isJsonNull()) {
            out.append(palette.paint(palette.number, "null"));
        } else {
            JsonPrimitive value = element.getAsJsonPrimitive();
            boolean bText = value.isString();
            out.append(palette.paint(bText ? palette.text : palette.number,
                    bText ? quoted(value.getAsString()) : value.getAsString()));
        }
    }

    private static void writeObject(
            JsonObject object, Palette palette, String indent, StringBuilder out) {
        if (object.size() == 0) {
            out.append("{}");
            return;
        }
        String separator = "{\n";
        for (Map.Entry<String, JsonElement> member : object.entrySet()) {
            out.append(separator).append(indent).append(kIndent);
            out.append(palette.paint(palette.key, quoted(member.getKey()))).append(": ");
            write(member.getValue(), palette, indent + kIndent, out);
            separator = ",\n";
        }
        out.append('\n').append(indent).append('}');
    }

    private static void writeArray(
            JsonArray array, Palette palette, String indent, StringBuilder out) {
        if (array.size() == 0) {
            out.append("[]");
            return;
        }
        String separator = "[\n";
        for (JsonElement element : array) {
            out.append(separator).append(indent).append(kIndent);
            write(element, palette, indent + kIndent, out);
            separator = ",\n";
        }
        out.append('\n').append(indent).append(']');
    }

    private static String quoted(String text) {
        return '"' + visible(text.replace("\\", "\\\\").replace("\"", "\\\"")) + '"';
    }

    /**
     * Writes control characters as escapes.
     *
     * @param text any text
     * @return it, without them
     */
    static String visible(String text) {
        StringBuilder out = new StringBuilder();
        for (int i = 0; i < text.length(); i++) {
            char c = text.charAt(i);
            if (c == '\n') {
                out.append("\\n");
            } else if (c == '\t') {
                out.append("\\t");
            } else if (Character.isISOControl(c)) {
                out.append(String.format("\\u%04x", (int) c));
            } else {
                out.append(c);
            }
        }
        return out.toString();
    }
}

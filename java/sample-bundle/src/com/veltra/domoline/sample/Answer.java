package com.veltra.domoline.sample;

import com.google.gson.Gson;
import com.google.gson.JsonParseException;
import com.google.gson.annotations.SerializedName;

/** What the JSON answers of the services have in common. */
class Answer {
    private static final Gson kGson = new Gson();

    /** 0 stands for success. An answer without it is none. */
    @SerializedName("Result") private int iResult = -1;

    /**
     * Reads an answer. It comes from another process, as that has written it: it may be missing, be
     * a failure, or be no JSON at all.
     *
     * @param answer what the service answered, {@code null} included
     * @param type what to read
     * @return the answer, or {@code null} when it is a failure
     */
    static <T extends Answer> T read(String answer, Class<T> type) {
        try {
            T read = kGson.fromJson(answer, type);
            return read != null && ((Answer) read).iResult == 0 ? read : null;
        } catch (JsonParseException e) {
            return null;
        }
    }

    /**
     * Makes a text of the gateway fit for a log: a host gives itself any name, and one with control
     * characters could steer a terminal.
     */
    static String printable(String text) {
        return text == null ? "" : text.replaceAll("\\p{Cntrl}", "?");
    }
}

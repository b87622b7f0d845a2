package com.veltra.domoline.console;

import java.util.ArrayList;
import java.util.List;

/** Splits a typed line into words. */
final class Words {
    private Words() {}

    /**
     * Splits at blanks. Single or double quotation marks keep blanks, and make a word even of
     * nothing; a backslash is a character like any other. A quotation that is not closed ends with
     * the line.
     *
     * @param line the line
     * @return its words, quotation marks taken away
     */
    static String[] split(String line) {
        List<String> words = new ArrayList<>();
        StringBuilder word = null;
        char quote = 0;
        for (char c : line.toCharArray()) {
            if (quote == 0 && Character.isWhitespace(c)) {
                if (word != null) {
                    words.add(word.toString());
                }
                word = null;
                continue;
            }
            word = word == null ? new StringBuilder() : word;
            if (c == quote) {
                quote = 0;
            } else if (quote == 0 && (c == '"' || c == '\'')) {
                quote = c;
            } else {
                word.append(c);
            }
        }
        if (word != null) {
            words.add(word.toString());
        }
        return words.toArray(new String[0]);
    }
}

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.HashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.Collectors;

/**
 * Reads the entry tables of the unit and fault tests, and the further cases of the fault tests. A
 * row is one of
 *
 * <pre>{@code
 * {WAP_ENTRY(Class, method, arguments...), good answer, answer to a failure, ...}
 * {WAP_ENTRY(Class, method, arguments...), "case", answer, ...}
 * }</pre>
 *
 * <p>with answers such as {@code TextAnswerOf("text")}, {@code NumberAnswerOf(kConstant)}, {@code
 * NullAnswer()}, or the name of an {@code Answer} above it.
 */
final class EntryTables {
    private enum Kind { kWord, kText, kSign }

    private record Token(Kind kind, String text) {
        boolean is(String sign) {
            return kind != Kind.kText && text.equals(sign);
        }

        boolean opens() {
            return is("(") || is("{") || is("[");
        }

        boolean closes() {
            return is(")") || is("}") || is("]");
        }
    }

    private static final Pattern kToken = Pattern.compile(
            // Blanks, comments, lines for the preprocessor.
            "\\s+|//[^\n]*|/\\*(?s:.*?)\\*/|(?m:^[ \t]*#)(?:\\\\\n|[^\n])*"
            + "|(?:u8|[uUL])?R\"(?<mark>[^(\\s]*)\\((?<raw>(?s:.*?))\\)\\k<mark>\""
            + "|(?:u8|[uUL])?\"(?<text>(?:\\\\.|[^\"\\\\])*)\"|'(?:\\\\.|[^'\\\\])+'"
            + "|(?<word>[A-Za-z_]\\w*|\\d(?:[\\w.]|'\\w)*)|(?<sign>(?s:.))");
    private static final Pattern kEscape = Pattern.compile(
            "\\\\(x[0-9a-fA-F]+|u[0-9a-fA-F]{4}|U[0-9a-fA-F]{8}|[0-7]{1,3}|.)");
    private static final Pattern kNumber = Pattern.compile("(-?(?:0[xX][0-9a-fA-F]+|[0-9]+))[uU]?");

    private final Set<String> methods;
    private final Expectations expectations;
    private final Map<String, Expectations.Answer> constants = new HashMap<>();

    /** @param methods the names of the native methods */
    EntryTables(Set<String> methods, Expectations expectations) {
        this.methods = methods;
        this.expectations = expectations;
    }

    /** @param prefix the files in the folder that have rows begin with it; constants are in any */
    void read(Path folder, String prefix) throws IOException {
        for (Path file : Sources.in(folder, ".h", ".cpp")) {
            readConstants(tokens(Files.readString(file)));
        }
        for (Path file : Sources.in(folder, ".cpp")) {
            if (file.getFileName().toString().startsWith(prefix)) {
                readRows(tokens(Files.readString(file)));
            }
        }
    }

    /** The source in pieces; texts that stand beside each other are one. */
    private static List<Token> tokens(String source) {
        List<Token> tokens = new ArrayList<>();
        Matcher match = kToken.matcher(source);
        while (match.find()) {
            String text = match.group("raw") != null ? match.group("raw")
                    : match.group("text") != null    ? unescaped(match.group("text"))
                                                     : null;
            int iLast = tokens.size() - 1;
            if (text != null && iLast >= 0 && tokens.get(iLast).kind() == Kind.kText) {
                tokens.set(iLast, new Token(Kind.kText, tokens.get(iLast).text() + text));
            } else if (text != null) {
                tokens.add(new Token(Kind.kText, text));
            } else if (match.group("word") != null) {
                tokens.add(new Token(Kind.kWord, match.group("word")));
            } else if (match.group("sign") != null) {
                tokens.add(new Token(Kind.kSign, match.group("sign")));
            }
        }
        return tokens;
    }

    private static String unescaped(String text) {
        return kEscape.matcher(text).replaceAll(match -> {
            String escape = match.group(1);
            String plain = "xuU".indexOf(escape.charAt(0)) >= 0
                    ? Character.toString(Integer.parseInt(escape.substring(1), 16))
                    // Java lacks three escapes of C, none of which an answer has.
                    : "av?".contains(escape) ? "" : ("\\" + escape).translateEscapes();
            return Matcher.quoteReplacement(plain);
        });
    }

    /** Notes each "name = constant;". A name with two values has none. */
    private void readConstants(List<Token> tokens) {
        for (int iAt = 0; iAt + 2 < tokens.size(); iAt++) {
            if (tokens.get(iAt).kind() == Kind.kWord && tokens.get(iAt + 1).is("=")) {
                List<List<Token>> parts = parts(tokens, iAt + 2);
                Expectations.Answer value = parts.size() == 1 ? constant(parts.get(0)) : null;
                if (value != null) {
                    constants.merge(tokens.get(iAt).text(), value,
                            (one, other)
                                    -> one.equals(other) ? one : Expectations.Answer.ofNull());
                }
            }
        }
    }

    /** What stands between commas, from here to the bracket or semicolon that ends it. */
    private static List<List<Token>> parts(List<Token> tokens, int iFrom) {
        List<List<Token>> parts = new ArrayList<>();
        int iDepth = 0;
        int iStart = iFrom;
        for (int iAt = iFrom; iAt < tokens.size(); iAt++) {
            Token token = tokens.get(iAt);
            boolean bEnd = iDepth == 0 && (token.closes() || token.is(";"));
            if (bEnd || (iDepth == 0 && token.is(","))) {
                parts.add(tokens.subList(iStart, iAt));
                iStart = iAt + 1;
            }
            if (bEnd) {
                break;
            }
            iDepth += token.opens() ? 1 : token.closes() ? -1 : 0;
        }
        return parts;
    }

    /** The value of a text, a number or a name that was noted; null for anything else. */
    private Expectations.Answer constant(List<Token> tokens) {
        if (tokens.size() == 1 && tokens.get(0).kind() == Kind.kText) {
            return Expectations.Answer.of(tokens.get(0).text());
        }
        String all = tokens.stream().map(Token::text).collect(Collectors.joining());
        Matcher number = kNumber.matcher(all);
        if (number.matches()) {
            return Expectations.Answer.of(Long.decode(number.group(1)).intValue());
        }
        return tokens.size() == 1 ? constants.get(all) : null;
    }

    private void readRows(List<Token> tokens) {
        Map<String, Expectations.Answer> named = new HashMap<>();
        for (int iAt = 0; iAt + 2 < tokens.size(); iAt++) {
            if (tokens.get(iAt).is("Answer") && tokens.get(iAt + 2).is("=")) {
                named.put(tokens.get(iAt + 1).text(),
                        answer(parts(tokens, iAt + 3).get(0), named));
            } else if (tokens.get(iAt).is("{")) {
                readRow(parts(tokens, iAt + 1), named);
            }
        }
    }

    /** A row has one or two answers, and the name of one native method in what is no answer. */
    private void readRow(List<List<Token>> parts, Map<String, Expectations.Answer> named) {
        List<Expectations.Answer> answers = new ArrayList<>();
        Set<String> called = new HashSet<>();
        for (List<Token> part : parts) {
            Expectations.Answer answer = answer(part, named);
            if (answer != null) {
                answers.add(answer);
            } else {
                part.stream().map(Token::text).filter(methods::contains).forEach(called::add);
            }
        }
        if (called.size() != 1) {
            return;
        }
        String method = called.iterator().next();
        if (answers.size() == 2) {
            expectations.rows.put(method, new Expectations.Row(answers.get(0), answers.get(1)));
        } else if (answers.size() == 1) {
            expectations.add(method, answers.get(0));
        }
    }

    private Expectations.Answer answer(
            List<Token> part, Map<String, Expectations.Answer> named) {
        if (part.size() == 1) {
            return named.get(part.get(0).text());
        }
        if (part.size() < 3 || !part.get(1).is("(")) {
            return null;
        }
        List<Token> argument = part.subList(2, part.size() - 1);
        if (argument.size() > 1 && argument.get(0).is("static_cast")) {
            int iOpen = argument.indexOf(new Token(Kind.kSign, "("));
            argument = argument.subList(iOpen + 1, argument.size() - 1);
        }
        return switch (part.get(0).text()) {
            case "NullAnswer" -> Expectations.Answer.ofNull();
            case "TextAnswerOf", "NumberAnswerOf" -> constant(argument);
            default -> null;
        };
    }
}

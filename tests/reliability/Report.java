import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * Makes docs/reliability.md out of its text, reliability.md.in, and of the figures that a whole run
 * of the tests printed: figures.txt, which is build/reports/figures.txt of that run. In the text
 *
 * <ul>
 *   <li>{@code @REPORT NAME@} is a figure: the line "REPORT NAME VALUE" of the figures' file. Two
 *       reports with a plus between them are summed up.
 *   <li>{@code @rows REPORT BEFORE AFTER@}, alone on a line, is a row of a table, "| NAME | VALUE
 *       |", for each figure "BEFORE NAME AFTER" (without the blanks) of the report.
 * </ul>
 */
final class Report {
    private static final String kUsage = "Usage: java Report.java TEXT FIGURES\n"
            + "Prints the page that the file TEXT makes of the figures in the file FIGURES.\n"
            + "Exit codes: 0 done, 1 a figure is missing or there twice, 2 wrong use.\n";
    private static final Pattern kFigure = Pattern.compile("@([^@ ]+) ([^@ ]+)@");
    private static final Pattern kRows = Pattern.compile("@rows ([^@ ]+) ([^@ ]*) ([^@ ]*)@");

    private final Map<String, String> figures = new LinkedHashMap<>();
    private final List<String> complaints = new ArrayList<>();

    private Report() {}

    private void read(List<String> lines) {
        for (String line : lines) {
            String[] words = line.split(" ", 3);
            if (words.length < 3) {
                complaints.add("this is no figure: " + line);
            } else if (figures.put(words[0] + " " + words[1], words[2]) != null) {
                complaints.add("two figures " + words[0] + " " + words[1]);
            }
        }
    }

    private String figure(String key) {
        String value = figures.get(key);
        if (value == null) {
            complaints.add("no figure " + key);
            return "?";
        }
        return value;
    }

    private static String grouped(String value) {
        return value.matches("[0-9]{1,18}") ? String.format(Locale.ROOT, "%,d", Long.parseLong(value)) : value;
    }

    private String value(String reports, String name) {
        if (!reports.contains("+")) {
            return grouped(figure(reports + " " + name));
        }
        long lSum = 0;
        for (String report : reports.split("\\+")) {
            String value = figure(report + " " + name);
            lSum += value.matches("[0-9]{1,18}") ? Long.parseLong(value) : 0;
        }
        return grouped(String.valueOf(lSum));
    }

    private List<String> rows(String report, String before, String after) {
        Pattern row = Pattern.compile(
                Pattern.quote(report + " " + before) + "(.+)" + Pattern.quote(after));
        List<String> rows = new ArrayList<>();
        figures.forEach((key, value) -> {
            Matcher match = row.matcher(key);
            if (match.matches()) {
                rows.add("| " + match.group(1) + " | " + grouped(value) + " |");
            }
        });
        if (rows.isEmpty()) {
            complaints.add("no figure " + report + " " + before + "..." + after);
        }
        return rows;
    }

    private List<String> page(List<String> text) {
        List<String> page = new ArrayList<>();
        for (String line : text) {
            Matcher rows = kRows.matcher(line);
            if (rows.matches()) {
                page.addAll(rows(rows.group(1), rows.group(2), rows.group(3)));
            } else {
                String done = kFigure.matcher(line).replaceAll(
                        it -> Matcher.quoteReplacement(value(it.group(1), it.group(2))));
                if (done.contains("@")) {
                    complaints.add("this is no figure: " + line);
                }
                page.add(done);
            }
        }
        return page;
    }

    public static void main(String[] args) throws IOException {
        boolean bHelp = args.length == 1 && args[0].matches("-h|--help");
        if (bHelp || args.length != 2 || args[0].startsWith("-")) {
            (bHelp ? System.out : System.err).print(kUsage);
            System.exit(bHelp ? 0 : 2);
        }
        Report report = new Report();
        report.read(Files.readAllLines(Path.of(args[1])));
        report.page(Files.readAllLines(Path.of(args[0]))).forEach(System.out::println);
        report.complaints.forEach(complaint -> System.err.println("Report: " + complaint));
        System.exit(report.complaints.isEmpty() ? 0 : 1);
    }
}

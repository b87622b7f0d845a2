#!/usr/bin/python3
"""Makes docs/performance.md and its plots of the results of a run."""

import argparse
import difflib
import os
import shutil
import sys

from figures import METHOD, PEER, ROWS, SMALL, Unusable, load, median, run_command, short

COLOUR = {
    "bridge": "#1f5fa8",
    "floor": "#7fa8d0",
    "ping_pong": "#a8c6a0",
    "sd_bus": "#d9a441",
    "dbus_java": "#c46a4a",
    "sockets_java": "#8a7fb0",
    "sockets_java_deflated": "#b8b0d0",
}
MAIN_PEERS = ("ping_pong", "floor", "bridge", "sockets_java", "sd_bus", "dbus_java")
HOSTS_PEERS = MAIN_PEERS + ("sockets_java_deflated",)
PARTS_HEAD = ("where the time goes, each part by itself", "p50, µs", "of the call")
# What profiles have shown, written by hand: it goes into the page as it is.
LEARNED = os.path.join(os.path.dirname(os.path.realpath(__file__)), "learned.md")


def table(head, rows):
    """A table of Markdown; all columns but the first to the right."""
    yield "| " + " | ".join(head) + " |"
    yield "|" + "|".join("---" if i == 0 else "---:" for i in range(len(head))) + "|"
    for row in rows:
        yield "| " + " | ".join(str(cell) for cell in row) + " |"


def number(value):
    return f"{value:,.0f}".replace(",", " ")


def limits(results):
    for row in ROWS:
        value = row.value(results)
        rounds = row.rounds(results)
        yield (row.what, row.limit(), f"{value:.2f} ×", f"{min(rounds):.2f} to {max(rounds):.2f}",
               "yes" if row.met(value) else "**no**")
    left = sum(method["left"] for method in results["methods"].values())
    yield ("blocks of memory that are left after a call of each method", "0", left, "",
           "yes" if left == 0 else "**no**")


def peer_rows(results, work, peers):
    for peer in peers:
        name = f"{peer}/{work}"
        yield (PEER[peer], f"{median(results, name, 'p50_us'):.1f}",
               f"{median(results, name, 'p90_us'):.1f}",
               number(median(results, name, "calls_per_s")))


def method_rows(results):
    for name, method in results["methods"].items():
        yield (f"`{name}`", number(method["bridge"]), number(method["json_c"]), method["blocks"],
               number(method["bytes"]), method["left"], method["java_calls"], method["requests"])


def part_rows(results, work):
    """Where the time of a call goes: what its parts take by themselves, and what comes to them."""
    whole = median(results, f"bridge/{work}", "p50_us")
    floor = median(results, f"floor/{work}", "p50_us")
    hosts = work == "hosts"
    parts = [("the platform's request" + (", as of getDeviceUpTime" if hosts else ""),
              f"request/{'up_time' if hosts else work}")]
    if hosts:
        parts += [("the bulk block, made, written, read and freed", "block/hosts"),
                  ("its decompression", "unpack/hosts")]
    if work != "up_time":
        parts += [("the Java text", f"text/{work}")]
    parts = [(what, median(results, name, "p50_us")) for what, name in parts]
    beside = floor - sum(micros for _, micros in parts)
    parts += [("what the floor takes beside them", beside),
              ("what the bridge takes beyond the floor", whole - floor),
              ("the bridge's call", whole)]
    for what, micros in parts:
        # Adding 0 takes the sign off what rounds to nothing.
        yield (what, f"{round(micros, 1) + 0:.1f}", f"{round(100 * micros / whole) + 0} %")


def save(pyplot, figure, folder, name):
    figure.tight_layout()
    figure.savefig(os.path.join(folder, name), format="svg",
                   metadata={"Date": None, "Creator": None})
    pyplot.close(figure)


def plot_small(pyplot, results, folder):
    figure, axes = pyplot.subplots(figsize=(8, 3.6))
    width = 0.8 / len(MAIN_PEERS)
    for i, peer in enumerate(MAIN_PEERS):
        heights = [median(results, f"{peer}/{work}", "p50_us") for work in SMALL]
        places = [group + (i - (len(MAIN_PEERS) - 1) / 2) * width for group in range(len(SMALL))]
        axes.bar(places, heights, width, label=short(peer), color=COLOUR[peer])
    axes.set_yscale("log")
    axes.set_ylim(bottom=1)
    axes.set_ylabel("microseconds, p50")
    axes.set_xticks(range(len(SMALL)), [METHOD[work] for work in SMALL])
    axes.legend(fontsize="small", loc="center left", bbox_to_anchor=(1, 0.5))
    axes.set_title("A small query, there and back, on one processor")
    save(pyplot, figure, folder, "small-queries.svg")


def plot_bars(pyplot, title, label, names, values, colours, folder, file):
    figure, axes = pyplot.subplots(figsize=(8, 0.45 * len(names) + 1.2))
    axes.barh(range(len(names)), values, color=colours)
    axes.set_yticks(range(len(names)), names)
    axes.invert_yaxis()
    axes.set_xlabel(label)
    axes.set_title(title)
    save(pyplot, figure, folder, file)


def plot(results, folder):
    # Only here, as the text can be compared where there is no Matplotlib.
    import matplotlib

    matplotlib.use("svg")
    # The same results make the same bytes.
    matplotlib.rcParams["svg.hashsalt"] = "wap"
    matplotlib.rcParams["svg.fonttype"] = "none"
    from matplotlib import pyplot

    plot_small(pyplot, results, folder)
    plot_bars(pyplot, "A host list of 64 KiB, on one processor", "calls per second",
              [short(peer) for peer in HOSTS_PEERS],
              [median(results, f"{peer}/hosts", "calls_per_s") for peer in HOSTS_PEERS],
              [COLOUR[peer] for peer in HOSTS_PEERS], folder, "host-list.svg")
    threads = ("1/one_cpu", "1/two_cpus", "2/two_cpus", "4/two_cpus")
    plot_bars(pyplot, "Java threads", "calls per second",
              [name.replace("_", " ").replace("/", " on ") for name in threads],
              [median(results, f"threads/{name}", "calls_per_s") for name in threads],
              COLOUR["bridge"], folder, "threads.svg")


def facts(machine, run):
    yield (f"On {run['date']}, commit `{run['commit']}`, on a machine that others kept"
           f" {run['busy_percent']:g} % busy at most, before and between: {machine['processor']},"
           f" {machine['processors']} processors, {machine['system']}, Linux {machine['kernel']};"
           f" GCC {machine['compiler']} with `-O2`, OpenJDK {machine['java']}, json-c"
           f" {machine['json_c']}, libsystemd {machine['libsystemd']}, dbus-java"
           f" {machine['dbus_java']}, Google Benchmark {machine['google_benchmark']}.")
    yield ""
    yield (f"Every figure is the median of {run['rounds']} rounds of {run['seconds']:g} s; the"
           " rounds of all that is compared are mixed at random, in one program.")


def spread(results):
    """What a single thread did in this run that was not kept on one processor."""
    free = results["timed"]["threads/1/two_cpus"]["calls_per_s"]
    kept = results["timed"]["threads/1/one_cpu"]["calls_per_s"]
    return (f"In this run, one made {number(min(free))} to {number(max(free))} calls per second on"
            f" two processors, and {number(min(kept))} to {number(max(kept))} on one.")


def learned():
    with open(LEARNED, encoding="utf-8") as file:
        return file.read().rstrip("\n").split("\n")


def document(results):
    rules = [(name, f"{median(results, key, 'p50_us'):.0f}") for name, key in (
        ("the bridge, to the Java text", "rules_bridge/500"),
        ("plain code over json-c, to the Java text", "rules_plain/500"),
        ("the same without Java: make, print, release", "rules_plain_text/500"))]
    threads = [(name, number(median(results, f"threads/{key}", "calls_per_s"))) for name, key in (
        ("1 thread, all on one processor", "1/one_cpu"),
        ("1 thread, on two processors", "1/two_cpus"),
        ("2 threads, on two processors", "2/two_cpus"),
        ("4 threads, on two processors", "4/two_cpus"))]
    peers_head = ("", "p50, µs", "p90, µs", "calls per second")
    lines = [
        "# Performance",
        "",
        "Made by `bench/run` of what its programs have measured, and of `bench/learned.md`; change"
        " that or `bench/report.py`, not this page.",
        "",
        *table(("", "limit", "measured", "in the rounds", "met"), limits(results)),
        "",
        "## How it is measured",
        "",
        *facts(results["machine"], results["run"]),
        "",
        "Only the ratios mean something, as both figures of one come out of the same run: machines"
        " differ, and one machine differs from minute to minute. What is held against a limit is the"
        " ratio of the medians; \"in the rounds\" are the lowest and the highest ratio of one's first"
        " round to the other's first, and so on. Caller, gateway process and, where"
        " there is one, the D-Bus daemon are kept on one processor. Without that, the figures of a"
        " single thread jump from minute to minute, by a factor of up to six so far, by where the"
        " system happens to put the two ends. " + spread(results),
        "",
        "The gateway's processes have their answers ready, as have the other ends of the peers:"
        " what is measured is the way there and back, not a simulator. The ends that the Java"
        " peers ask are native programs, which is the fastest that they can meet. The host list is"
        " compressed once, and put into a new bulk block for every call.",
        "",
        "## Small queries",
        "",
        "![Small queries](performance/small-queries.svg)",
    ]
    for work in SMALL:
        lines += ["", f"### {METHOD[work]}", "",
                  *table(peers_head, peer_rows(results, work, MAIN_PEERS)), "",
                  *table(PARTS_HEAD, part_rows(results, work))]
    lines += [
        "",
        "## A host list of 64 KiB",
        "",
        "![Host list](performance/host-list.svg)",
        "",
        *table(peers_head, peer_rows(results, "hosts", HOSTS_PEERS)),
        "",
        *table(PARTS_HEAD, part_rows(results, "hosts")),
        "",
        "Beside their parts, the floor and the bridge take the way from Java and back, and two"
        " buffers of their own; and what each part finds in the processor's caches when it runs by"
        " itself again and again, it may have to fetch anew behind the others.",
        "",
        "The bridge and the floor read a compressed block, free it and decompress it, as blocks of"
        " more than 2048 bytes have to be compressed. On the host platform a block is a file, here"
        f" in `{results['run']['folder']}` ({results['run']['file_system']}), compressed by LZ4. The"
        " peers get the text as it is, but for the last one, whose compression is that of Java's"
        " own classes.",
        "",
        "## 500 forward rules",
        "",
        "From the table of records to the JSON text, on a platform that answers at once. The texts"
        " are the same, byte by byte. The plain code adds constant keys without a look-up, and"
        " checks nothing.",
        "",
        *table(("", "p50, µs"), rules),
        "",
        "## Java threads",
        "",
        "![Threads](performance/threads.svg)",
        "",
        *table(("", "calls per second"), threads),
        "",
        "`getDeviceMAC`, all threads together. The first limit above is for a single thread on two"
        " processors, the second for one that is kept on one processor with the gateway, which is"
        " harder to surpass.",
        "",
        "## Each method by itself",
        "",
        "On a platform and with a Java environment that answer at once, the second call of each"
        " method: the instructions of the bridge's own functions and of json-c's, as callgrind"
        " counts them, without those of the C library; the blocks and bytes that are allocated for"
        " the call, and the blocks left after it; the calls of Java's functions; the requests.",
        "",
        *table(("method", "bridge", "json-c", "blocks", "bytes", "left", "Java", "requests"),
               method_rows(results)),
        "",
        "## What was learned",
        "",
        *learned(),
        "",
        "## Measuring again",
        "",
        "```",
        "bench/run                      # on a machine that has nothing else to do",
        "bench/compare OLD.json NEW.json",
        "```",
        "",
        "`bench/run` writes `build/bench/results.json`, this page, its plots and, beside them,"
        " `performance/results.json`, which this page is made of. `bench/compare` compares two such"
        " files and fails when something has become worse.",
    ]
    return "\n".join(lines) + "\n"


def differs(page, text):
    """1 when the page is another than this text, with the difference told; otherwise 0."""
    try:
        with open(page, encoding="utf-8") as file:
            lines = file.read().splitlines()
    except OSError as failure:
        raise Unusable(f"{page}: {failure.strerror}; bench/run makes it") from None
    difference = list(difflib.unified_diff(lines, text.splitlines(), page, "what it would become",
                                           lineterm="", n=0))
    for line in difference:
        print(line)
    return 1 if difference else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--results", help="results.json of bench/run; without it, the one that the"
                        " folder has from the last time")
    parser.add_argument("--check", action="store_true", help="write nothing; fail, and tell the"
                        " difference, unless performance.md is what it would become")
    parser.add_argument("folder", help="where performance.md goes, and performance/ with the plots"
                        " and the results")
    arguments = parser.parse_args()
    page = os.path.join(arguments.folder, "performance.md")
    beside = os.path.join(arguments.folder, "performance")
    kept = os.path.join(beside, "results.json")
    results = load(arguments.results or kept)
    text = document(results)
    if arguments.check:
        return differs(page, text)
    os.makedirs(beside, exist_ok=True)
    plot(results, beside)
    with open(page, "w", encoding="utf-8") as file:
        file.write(text)
    if arguments.results:
        shutil.copyfile(arguments.results, kept)
    return 0


if __name__ == "__main__":
    sys.exit(run_command(main))

#!/usr/bin/python3
"""Puts what the programs of a run have written into one file."""

import argparse
import json
import os
import platform
import re
import subprocess
import sys
import tempfile

from figures import Unusable, run_command

COUNTERS = ("p50_us", "p90_us", "calls_per_s")


def timed(path):
    """What a program of Google Benchmark has written, by benchmark: a list for each counter."""
    with open(path, encoding="utf-8") as file:
        written = json.load(file)
    figures = {}
    for entry in written["benchmarks"]:
        if entry.get("error_occurred"):
            raise Unusable(f"{entry['run_name']} failed: {entry['error_message']}")
        if entry["run_type"] != "iteration":
            continue
        # The library puts how it was measured behind the name.
        name = entry["run_name"].removesuffix("/manual_time")
        for counter in COUNTERS:
            if counter in entry:
                figures.setdefault(name, {}).setdefault(counter, []).append(entry[counter])
    if not figures:
        raise Unusable(f"{path} has no measurement")
    return figures


class Names:
    """callgrind's abbreviations: "(7) name" at first, "(7)" from then on."""

    _FORM = re.compile(r"\((\d+)\)(?: (.*))?")

    def __init__(self):
        self._names = {}

    def read(self, text):
        form = self._FORM.fullmatch(text)
        if form is None:
            return text
        if form[2] is not None:
            self._names[form[1]] = form[2]
        return self._names[form[1]]


def owner(file, function):
    """Whose a function is: the bridge's, json-c's, or nobody's here."""
    if re.search(r"(^|/)(tests|bench/programs)/[^/]+/[^/]+\.(cpp|h)$", file):
        return None
    if re.search(r"(^|/)bridge/[a-z]+/([a-z]+/)?[^/]+\.(cpp|h)$", file):
        return "bridge"
    if file == "???" and re.match(r"_?(json_|printbuf_|sprintbuf|lh_|array_list_)", function):
        return "json_c"
    return None


def instructions(path):
    """By method: the instructions of the bridge's own functions, and those of json-c's."""
    files, functions = Names(), Names()
    counts, part, file, function = {}, None, "", ""
    at = ""  # the file of the present lines, which may be inlined into the function
    skip = False
    # Symbols are bytes of any kind.
    with open(path, encoding="utf-8", errors="replace") as dump:
        for line in dump:
            line = line.rstrip("\n")
            if line.startswith("desc: Trigger: Client Request: "):
                part = counts.setdefault(line.rsplit(": ", 1)[1], {"bridge": 0, "json_c": 0})
            elif line.startswith(("desc: Trigger: ", "part: ")):
                part = None
            elif line.startswith(("fl=", "fi=", "fe=")):
                at = files.read(line[3:])
            elif line.startswith(("cfi=", "cfl=")):
                files.read(line[4:])
            elif line.startswith("fn="):
                file, function = at, functions.read(line[3:])
            elif line.startswith("cfn="):
                functions.read(line[4:])
            elif line.startswith("calls="):
                # The next line has what was called, not what is here.
                skip = True
            elif line[:1] in "0123456789+-*" and line:
                if skip:
                    skip = False
                elif part is not None and (whose := owner(file, function)) is not None:
                    part[whose] += int(line.split()[1])
    if not counts:
        raise Unusable(f"{path} has no method's instructions")
    return counts


def output_of(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout.strip()
    except (OSError, subprocess.CalledProcessError):
        return ""


def processor():
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        models = re.findall(r"^model name\s*: (.*)$", file.read(), re.MULTILINE)
    return models[0] if models else platform.machine()


def package(name):
    return output_of("dpkg-query", "-W", "-f", "${Version}", name)


def machine():
    return {
        "processor": processor(),
        "processors": len(os.sched_getaffinity(0)),
        "kernel": platform.release(),
        "system": platform.freedesktop_os_release().get("PRETTY_NAME", ""),
        "compiler": output_of("g++", "-dumpfullversion"),
        "java": package("openjdk-17-jre-headless"),
        "json_c": package("libjson-c5"),
        "libsystemd": package("libsystemd0"),
        "dbus_java": package("libdbus-java"),
        "google_benchmark": package("libbenchmark-dev"),
    }


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", help="where the programs have written")
    parser.add_argument("--seconds", type=float, required=True, help="of a measurement")
    parser.add_argument("--busy", type=float, required=True,
                        help="how busy the processors were before, in percent")
    arguments = parser.parse_args()
    def at(name):
        return os.path.join(arguments.folder, name)
    results = {"machine": machine(), "timed": {}}
    for program in ("end_to_end", "forward_rules", "threads"):
        results["timed"].update(timed(at(f"{program}.json")))
    rounds = min(len(values) for counters in results["timed"].values()
                 for values in counters.values())
    results["run"] = {
        "date": output_of("date", "-u", "+%Y-%m-%d"),
        "commit": output_of("git", "describe", "--always", "--dirty", "--abbrev=12"),
        "rounds": rounds,
        "seconds": arguments.seconds,
        "busy_percent": arguments.busy,
        "folder": tempfile.gettempdir(),
        "file_system": output_of("stat", "-f", "-c", "%T", tempfile.gettempdir()),
    }
    with open(at("heap.json"), encoding="utf-8") as file:
        methods = json.load(file)
    counted = instructions(at("callgrind.out"))
    if methods.keys() != counted.keys():
        raise Unusable("callgrind has counted other methods than the heap was looked at for: "
                       + ", ".join(sorted(methods.keys() ^ counted.keys())))
    results["methods"] = {name: {**counted[name], **methods[name]} for name in sorted(methods)}
    with open(at("results.json"), "w", encoding="utf-8") as file:
        json.dump(results, file, indent=1)
        file.write("\n")
    return 0


if __name__ == "__main__":
    sys.exit(run_command(main))

"""What the measured figures mean: the limits to keep, and how runs are read."""

import json
import statistics
import sys

SMALL = ("up_time", "mac", "wan_status")
METHOD = {
    "up_time": "getDeviceUpTime",
    "mac": "getDeviceMAC",
    "wan_status": "getWANIfStatus",
    "hosts": "a host list of 64 KiB",
}
PEER = {
    "bridge": "the bridge",
    "floor": "the floor: plain C, same conversions, same request",
    "ping_pong": "bare packets in C",
    "sd_bus": "D-Bus in C, through a daemon",
    "dbus_java": "D-Bus in Java, through a daemon",
    "sockets_java": "plain Java over a socket",
    "sockets_java_deflated": "plain Java over a socket, compressed by zlib",
}


def short(peer):
    """A peer's name without the explanation."""
    return PEER[peer].split(":")[0]


class Unusable(Exception):
    """A file that is no result of a run; the text says what to do."""


class Row:
    """A limit: a ratio of two medians that is to stay below, or to reach, a bound."""

    def __init__(self, name, what, bound, at_most, counter, over, under):
        self.name = name
        self.what = what
        self.bound = bound
        self.at_most = at_most
        self._counter = counter
        self._over = over
        self._under = under

    def value(self, results):
        return (median(results, self._over, self._counter)
                / median(results, self._under, self._counter))

    def rounds(self, results):
        """The ratio of each round by itself."""
        pairs = zip(rounds(results, self._over, self._counter),
                    rounds(results, self._under, self._counter))
        return [over / under for over, under in pairs]

    def met(self, value):
        return value <= self.bound if self.at_most else value >= self.bound

    def limit(self):
        return f"{'at most' if self.at_most else 'at least'} {self.bound:g} ×"


def rounds(results, name, counter):
    try:
        return results["timed"][name][counter]
    except KeyError:
        raise Unusable(f"the results have no {counter} of {name}; run bench/run again") from None


def median(results, name, counter):
    return statistics.median(rounds(results, name, counter))


def _rows():
    for work in SMALL:
        for peer, bound in (("floor", 1.08), ("ping_pong", 1.25)):
            yield Row(f"{work}/p50/{peer}", f"{METHOD[work]}, time (p50), to {short(peer)}",
                      bound, True, "p50_us", f"bridge/{work}", f"{peer}/{work}")
    calls = dict.fromkeys(SMALL, {"sd_bus": 4, "dbus_java": 6, "sockets_java": 1.1})
    calls["hosts"] = {"sockets_java": 1.5, "dbus_java": 10}
    for work, bounds in calls.items():
        for peer, bound in bounds.items():
            yield Row(f"{work}/calls/{peer}",
                      f"{METHOD[work]}, calls per second, to {short(peer)}", bound, False,
                      "calls_per_s", f"bridge/{work}", f"{peer}/{work}")
    yield Row("rules/p50", "500 forward rules listed, time (p50), to plain code over json-c", 0.85,
              True, "p50_us", "rules_bridge/500", "rules_plain/500")
    # A single thread on two processors may be slow, which flatters; kept on one, it is not.
    for kept, where in (("two_cpus", "there"), ("one_cpu", "kept on one with its gateway")):
        yield Row(f"threads/4/{kept}",
                  f"4 Java threads on two processors, calls per second, to one thread {where}",
                  1.8, False, "calls_per_s", "threads/4/two_cpus", f"threads/1/{kept}")


ROWS = tuple(_rows())


def load(path):
    """The results of a run."""
    try:
        with open(path, encoding="utf-8") as file:
            results = json.load(file)
    except OSError as failure:
        raise Unusable(f"{path}: {failure.strerror}; bench/run makes it") from None
    except json.JSONDecodeError as failure:
        raise Unusable(f"{path} is no JSON: {failure}; run bench/run again") from None
    parts = {"machine", "run", "timed", "methods"}
    if not isinstance(results, dict) or not parts <= results.keys():
        raise Unusable(f"{path} is not what bench/run writes")
    return results


def run_command(main):
    """Runs a command; gives its exit code, with what is wrong told on standard error."""
    try:
        return main()
    except Unusable as failure:
        print(f"{sys.argv[0]}: {failure}", file=sys.stderr)
        return 2

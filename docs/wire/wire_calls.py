"""Follows the bridge's calls from the native methods down to the two functions that send.

Arguments are worked out on the way: a route that comes as an argument is known where it is used,
and so is the record behind a pointer to void. Of a branching one side is taken when its condition
compares numbers that are known, else both; and each element of a table unless its index is known.
What is found is what a method can send, not what it always does.

A value is a tuple: ("func", key), ("int", number), ("str", text), ("null",), ("init", type,
((field, values), ...)), ("ptr", value), ("call", type, key) or ("obj", type).
"""

from collections import namedtuple

# What goes to the platform's two sending functions goes through these.
SENDER = "c:@N@wap@F@CallProcess"
MESSENGER = "c:@F@VT_MSG_AsyncSendData"
PLATFORM_CALL = "c:@F@VT_MSG_RpcCall"
# The only one that replaces null pointers, by a request that is a word of 0 and a reply that is a
# word which is dropped.
REPLACER = "CallOrScratch"

Sending = namedtuple("Sending", "receiver sender id timeout module request length reply capacity")
_UNKNOWN = ("obj", "?")


class Calls:
    """All functions and constants of the bridge."""

    def __init__(self, units):
        self.functions = {}
        self.variables = {}
        for unit in units:
            self.functions.update(unit.functions)
            self.variables.update(unit.variables)
        self.memo = {}
        self.running = set()

    def callers_of(self, prefix):
        """The names of the functions that call one directly."""
        return {function.name for function in self.functions.values()
                for callee, *_ in function.calls
                if callee[0] == "func" and callee[1].startswith(prefix)}

    def sent_by(self, key, arguments=()):
        """What a function can send: a set of Sending."""
        where = (key, arguments)
        if where in self.memo:
            return self.memo[where]
        function = self.functions.get(key)
        if function is None or where in self.running:
            return frozenset()
        self.running.add(where)
        # Parameters that the caller does not give are unknown.
        scope = dict(zip(function.params, arguments))
        found = set()
        for callee, given, conditions in function.calls:
            if any(self.truth(c, scope) is (not wanted) for c, wanted in conditions):
                continue
            values = tuple(self.values(g, scope) for g in given)
            for target in self.values(callee, scope):
                if target[0] == "func":
                    found |= self.called(target[1], values)
        self.running.discard(where)
        # Inside a loop of calls the result lacks what the loop has sent.
        if not self.running:
            self.memo[where] = frozenset(found)
        return frozenset(found)

    def called(self, key, values):
        if key.startswith(SENDER + "#"):
            return set(_requests(values))
        if key == MESSENGER:
            return set(_messages(values))
        if key in self.functions:
            return self.sent_by(key, values)
        found = set()  # what another library may call back
        for alternatives in values:
            for value in alternatives:
                if value[0] == "func":
                    found |= self.sent_by(value[1])
        return found

    def truth(self, condition, scope):
        """Whether a condition holds, or None when that is not known."""
        values = self.values(condition, scope)
        return bool(values[0][1]) if len(values) == 1 and values[0][0] == "int" else None

    def values(self, expression, scope):
        """What an expression can be, with the parameters that the scope gives."""
        found = dict.fromkeys(self.each_value(expression, scope))
        return tuple(found) or (_UNKNOWN,)

    def each_value(self, expression, scope):
        kind = expression[0]
        if kind in ("func", "int", "str", "null", "obj", "call"):
            yield expression
        elif kind == "var":
            yield from self.variable(expression, scope)
        elif kind == "cond":
            holds = self.truth(expression[1], scope)
            if holds is not False:
                yield from self.each_value(expression[2], scope)
            if holds is not True:
                yield from self.each_value(expression[3], scope)
        elif kind == "compare":
            left, right = (self.values(part, scope) for part in expression[2:])
            known = len(left) == len(right) == 1 and left[0][0] == right[0][0] == "int"
            equal = int((left == right) == (expression[1] == "=="))
            yield ("int", equal) if known else ("obj", "bool")
        elif kind == "init":
            yield ("init", expression[1],
                   tuple((field, self.values(value, scope)) for field, value in expression[2]))
        elif kind == "addr":
            for value in self.each_value(expression[1], scope):
                yield value if value[0] == "func" else ("ptr", value)
        elif kind == "deref":
            for value in self.each_value(expression[2], scope):
                if value[0] == "ptr":
                    yield value[1] if _type_of(value[1]) != "void" else ("obj", expression[1])
                else:
                    yield value if value[0] == "func" else ("obj", expression[1])
        elif kind == "cast":
            yield from self.cast(expression, scope)
        elif kind == "member":
            for base in self.each_value(expression[2], scope):
                yield from _member(base, expression[3], expression[1])
        elif kind == "index":
            indices = self.values(expression[3], scope)
            known = {i[1] for i in indices} if all(i[0] == "int" for i in indices) else None
            for base in self.each_value(expression[2], scope):
                if base[0] == "init":
                    for i, values in base[2]:
                        if known is None or i in known:
                            yield from values
                else:
                    yield ("obj", expression[1])

    def variable(self, expression, scope):
        _, kind, key = expression
        if key in scope:
            yield from scope[key]
        elif key in self.variables:
            for value in self.each_value(self.variables[key], scope):
                # What a call has returned is of the variable's type.
                yield ("obj", kind) if value[0] == "obj" else value
        else:
            yield _plain(kind)

    def cast(self, expression, scope):
        _, kind, inner = expression
        for value in self.each_value(inner, scope):
            if kind.endswith("*") and kind != "void *" and value[0] in ("call", "obj", "ptr"):
                # What a pointer is known to point to stays known when it is looked at as bytes.
                yield value if _known_record(value) else _plain(kind)
            elif value[0] == "obj":
                yield _plain(kind) if kind != "void *" else value
            else:
                yield value


def _plain(kind):
    return ("ptr", ("obj", kind[:-1].strip())) if kind.endswith("*") else ("obj", kind)


def _type_of(value):
    return value[1] if value[0] in ("obj", "init", "call") else value[0]


def _known_record(value):
    return value[0] == "ptr" and value[1][0] in ("obj", "init") and value[1][1].startswith("wap::")


def _member(base, field, kind):
    if base[0] == "init":
        for name, values in base[2]:
            if name == field:
                yield from values
                return
    yield _plain(kind)


def _route(route):
    """The alternatives of each field of a DirectRoute."""
    fields = dict(route[2]) if route[0] == "init" else {}
    return [fields.get(f, (_UNKNOWN,))
            for f in ("pcRcvApp", "uiSndMid", "uiRpcId", "uiTimeoutMs")]


def _requests(values):
    routes, modules, requests, lengths, replies, capacities = values
    for route in routes:
        for receiver, sender, rpc_id, timeout in _product(_route(route)):
            for module, request, length, reply, capacity in _product(
                    (modules, requests, lengths, replies, capacities)):
                yield Sending(receiver, sender, rpc_id, timeout, module, request, length, reply,
                              capacity)


def _messages(values):
    for receiver, message, data, length in _product(values):
        yield Sending(receiver, None, message, None, None, data, length, None, None)


def _product(lists):
    if not lists:
        yield ()
        return
    for first in lists[0]:
        for rest in _product(lists[1:]):
            yield (first, *rest)

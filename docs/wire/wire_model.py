"""Puts together what the bridge sends and what the record headers say about it.

The code is the authority: receiver, sender module, id, time-out and every record that it names by
its type. What it does not show comes from tags in the headers' doc comments:

    on the constant of an RPC or message
        @request CONTENT    what a request is that the code only knows as bytes
        @reply CONTENT      the same for a reply
        @block CONTENT      what the bulk block holds whose descriptor travels
    on a field, or with the names of fields on a record
        @secret             nobody may see the value

CONTENT is one part, or two with "or" or "then" between them. A part is

    nothing
    word [NAME]     32 bits; with a name it may also stand where the code shows a word
    text [SIZE]     of at most so many bytes, a number or a constant of the headers
    RECORD          a structure of the headers
    RECORD[]        as many of them as the length says

and "secret" before a part keeps all of it from being seen.
"""

from collections import namedtuple

from wire_ast import PLATFORM_HEADER

Part = namedtuple("Part", "form record size name secret")
Content = namedtuple("Content", "parts join")  # join: "", "or", "then"
Rpc = namedtuple("Rpc", "name id is_message receiver senders timeout natives request reply block "
                        "block_side comment header")
Model = namedtuple("Model", "rpcs records introductions secrets")

_RPC_PREFIX, _MESSAGE_PREFIX = "kRpc", "kMsg"
_WORD = Part("word", None, 4, None, False)
NOTHING = Content((Part("nothing", None, 0, None, False),), "")


class Faults(Exception):
    """All that is missing or contradicts itself."""


def split_comment(comment):
    """The prose of a doc comment, and its tags: a list of (tag, rest of the line)."""
    prose, tags = [], []
    for line in comment.split("\n"):
        if line.startswith("@"):
            tag, _, rest = line[1:].partition(" ")
            tags.append((tag, rest.strip()))
        else:
            prose.append(line)
    return " ".join(prose).strip(), tags


class Builder:
    """Makes the model, and collects what is wrong."""

    def __init__(self, headers, calls, native_name):
        self.headers = headers
        self.calls = calls
        self.native_name = native_name
        self.faults = []
        self.constants = {c.name: c for c in headers.constants}
        self.secrets = {}

    def fail(self, text):
        if text not in self.faults:
            self.faults.append(text)

    def model(self):
        self.find_secrets()
        ids = self.ids()
        found = self.sendings(ids)
        rpcs = [self.rpc(ids[value], sendings) for value, sendings in sorted(found.items())]
        for constant in (c for v, c in ids.items() if v not in found):
            self.fail(f"{constant.header}: nothing sends {constant.name}")
        self.check_records(rpcs)
        self.check_names(rpcs)
        if self.faults:
            raise Faults("\n".join(self.faults))
        return Model(rpcs, self.headers.records, self.headers.introductions, self.secrets)

    # ---- ids and who sends them ----

    def ids(self):
        ids = {}
        for constant in self.headers.constants:
            if constant.name.startswith((_RPC_PREFIX, _MESSAGE_PREFIX)):
                if constant.value in ids:
                    self.fail(f"{constant.header}: {constant.name} has the id of "
                              f"{ids[constant.value].name}")
                ids[constant.value] = constant
        return ids

    def sendings(self, ids):
        """By id: a dictionary of each Sending, with the names of those that send it."""
        found = {}
        functions = self.calls.functions
        unnamed = "{}: sends {}, an id that no record header names"
        natives = [k for k, f in functions.items() if f.name.startswith("Java_")]
        # C functions, which other native code in the process may call.
        workers = [k for k, f in functions.items()
                   if k.startswith("c:@F@") and "#" not in k and k not in natives]
        for key in natives:
            for sending in self.calls.sent_by(key):
                if sending.id[0] != "int" or sending.id[1] not in ids:
                    self.fail(unnamed.format(functions[key].name, sending.id[1:]))
                    continue
                senders = found.setdefault(sending.id[1], {}).setdefault(sending, set())
                senders.add(self.native_name(functions[key].name))
        reached = set(found)
        for key in workers:
            for sending in self.calls.sent_by(key):
                # A wrapper for any id has none of its own.
                if sending.id[0] == "int" and sending.id[1] not in reached:
                    if sending.id[1] not in ids:
                        self.fail(unnamed.format(functions[key].name, f"{sending.id[1]:#x}"))
                        continue
                    senders = found.setdefault(sending.id[1], {}).setdefault(sending, set())
                    senders.add(functions[key].name + "()")
        return found

    # ---- one RPC ----

    def rpc(self, constant, sendings):
        is_message = constant.name.startswith(_MESSAGE_PREFIX)
        where = f"{constant.header}: {constant.name}"
        prose, tags = split_comment(constant.comment)
        for tag, _ in tags:
            if tag not in ("request", "reply", "block"):
                self.fail(f"{where}: there is no tag @{tag} for an RPC")
        tags = {tag: self.content(rest, where) for tag, rest in tags}
        request = self.side(where, "request", tags.get("request"),
                            {(s.request, s.length) for s in sendings})
        reply = NOTHING
        if not is_message:
            reply = self.side(where, "reply", tags.get("reply"),
                              {(s.reply, s.capacity) for s in sendings})
            self.single(where, "destination module", {s.module for s in sendings}, ("int", 0))
        block_side = self.block_side(where, request, reply, tags.get("block"))
        timeout = None if is_message else self.number(where, "time-out",
                                                      {s.timeout for s in sendings})
        return Rpc(constant.name[4:], constant.value, is_message,
                   self.receiver(where, {s.receiver for s in sendings}),
                   () if is_message else self.senders(where, {s.sender for s in sendings}),
                   timeout, tuple(sorted(set().union(*sendings.values()))), request, reply,
                   tags.get("block"), block_side, prose, constant.header)

    def single(self, where, what, values, wanted=None):
        if len(values) != 1 or (wanted is not None and values != {wanted}):
            self.fail(f"{where}: its {what} is not clear: {sorted(map(str, values))}")
            return None
        return next(iter(values))

    def receiver(self, where, values):
        value = self.single(where, "receiver", values)
        if value is None or value[0] != "str":
            self.fail(f"{where}: its receiver is not known")
            return ""
        return value[1]

    def number(self, where, what, values):
        value = self.single(where, what, values)
        if value is None or value[0] != "int":
            self.fail(f"{where}: its {what} is not known")
            return 0
        return value[1]

    def senders(self, where, values):
        """The sender modules: ranges of first and last."""
        ranges = set()
        for value in values:
            if value[0] == "int":
                ranges.add((value[1], value[1]))
            elif value[0] == "call" and "NextProxySender" in value[2]:
                first = self.bridge_constant("kFirstProxySender")
                ranges.add((first, first + self.bridge_constant("kProxySenders") - 1))
            else:
                self.fail(f"{where}: its sender module is not known: {value}")
        return tuple(sorted(ranges))

    def bridge_constant(self, name):
        for key, value in self.calls.variables.items():
            if key.endswith("@" + name) and value[0] == "int":
                return value[1]
        self.fail(f"there is no constant {name} in the bridge")
        return 0

    # ---- what a request or a reply holds ----

    def side(self, where, side, tagged, values):
        shown, lengths = set(), set()
        for value, length in values:
            part = self.shown_part(side, value, length)
            if part is not None:
                shown.add(part)
            else:
                lengths.add(length)
        if tagged is None:
            if lengths or len(shown) != 1:
                self.fail(f"{where}: the code does not show its {side}; add @{side} to its comment")
                return NOTHING
            return Content(tuple(shown), "")
        said = {p._replace(name=None, secret=False) for p in tagged.parts}
        for part in shown - said:
            self.fail(f"{where}: @{side} lacks what the code sends: {part.form} {part.record}")
        if not lengths and shown == said and not any(p.name or p.secret for p in tagged.parts):
            self.fail(f"{where}: @{side} says what the code shows; take it out")
        for length in lengths:
            if length[0] == "int" and length[1] != 0 and \
                    not any(self.can_be(p, side, length[1]) for p in tagged.parts):
                self.fail(f"{where}: no part of @{side} has the {length[1]} bytes of the code")
        return tagged

    @staticmethod
    def can_be(part, side, length):
        """Whether a part has a length that the code shows. Of a text that comes it is the most."""
        if part.form == "text" and side == "request":
            return part.size == 0 or length <= part.size
        return length == part.size

    def shown_part(self, side, value, length):
        """What the code shows of the record behind a pointer; None for bytes."""
        if value == ("null",):
            # A word of 0 is sent in its place; a word that comes is dropped.
            return _WORD if side == "request" else NOTHING.parts[0]
        if value[0] != "ptr":
            return None
        target = value[1]
        kind = "unsigned int" if target[0] == "int" else target[1]
        if kind == "unsigned int" and length == ("int", 4):
            return _WORD
        record = self.headers.records.get(kind.removeprefix("wap::"))
        if record is not None and length == ("int", record.size):
            return Part("record", record.name, record.size, None, False)
        return None

    def content(self, text, where):
        for join in ("or", "then"):
            first, found, second = text.partition(f" {join} ")
            if found:
                return Content((self.part(first, where), self.part(second, where)), join)
        return Content((self.part(text, where),), "")

    def part(self, text, where):
        words = text.split()
        secret = words[:1] == ["secret"]
        words = words[1:] if secret else words
        if words == ["nothing"]:
            return NOTHING.parts[0]
        if words[:1] == ["word"] and len(words) <= 2:
            return Part("word", None, 4, words[1] if len(words) == 2 else None, secret)
        if words[:1] == ["text"] and len(words) <= 2:
            return Part("text", None, self.size(words[1:], where), None, secret)
        name = words[0].removesuffix("[]") if len(words) == 1 else None
        if name not in self.headers.records:
            self.fail(f"{where}: no record, and no word of the tags' language: {text}")
            return NOTHING.parts[0]
        form = "rows" if words[0].endswith("[]") else "record"
        return Part(form, name, self.headers.records[name].size, None, secret)

    def size(self, words, where):
        if not words:
            return 0
        if words[0].isdigit():
            return int(words[0])
        if words[0] in self.constants:
            return self.constants[words[0]].value
        self.fail(f"{where}: there is no constant {words[0]}")
        return 0

    def block_side(self, where, request, reply, block):
        sides = [name for name, content in (("request", request), ("reply", reply))
                 if self.has_descriptor(content)]
        if len(sides) > 1:
            self.fail(f"{where}: a descriptor in the request and in the reply; there is one @block")
        if sides and block is None:
            self.fail(f"{where}: its {sides[0]} names a bulk block; add @block to its comment")
        if block is not None and not sides:
            self.fail(f"{where}: @block, but neither request nor reply has a descriptor")
        return sides[0] if sides else None

    def has_descriptor(self, content):
        """Whether a record here is a descriptor, or has one, or the words of one."""
        for part in content.parts:
            if part.record == "VDataDesc":
                return True
            if part.record is not None and any(
                    f.element == "VDataDesc" or f.name == "uiDataID"
                    for f in self.headers.records[part.record].fields):
                return True
        return False

    # ---- records ----

    def find_secrets(self):
        for record in self.headers.records.values():
            names = {f.name for f in record.fields if "@secret" in f.comment.split()}
            for tag, rest in split_comment(record.comment)[1]:
                if tag != "secret":
                    self.fail(f"{record.header}: there is no tag @{tag} for a record")
                    continue
                names.update(rest.split())
            for name in names - {f.name for f in record.fields}:
                self.fail(f"{record.header}: {record.name} has no field {name} to be secret")
            for field in record.fields:
                if "Password" in field.name and field.name not in names:
                    self.fail(f"{record.header}: {record.name}.{field.name} must be @secret")
                for word in field.comment.split():
                    if word.startswith("@") and word != "@secret":
                        self.fail(f"{record.header}: there is no tag {word} for a field")
            self.secrets[record.name] = names

    def check_records(self, rpcs):
        used = set()
        queue = [p.record for rpc in rpcs for content in (rpc.request, rpc.reply, rpc.block)
                 if content is not None for p in content.parts if p.record is not None]
        while queue:
            name = queue.pop()
            if name not in used:
                used.add(name)
                queue += [f.element for f in self.headers.records[name].fields
                          if f.element in self.headers.records]
        for record in self.headers.records.values():
            if record.name not in used and record.header != PLATFORM_HEADER:
                self.fail(f"{record.header}: {record.name} is in no request, reply or block")
            for field in record.fields:
                if field.element not in self.headers.records and field.element not in SCALARS:
                    self.fail(f"{record.header}: {record.name}.{field.name} is of a type that "
                              f"does not travel: {field.element}")


    def check_names(self, rpcs):
        """Each name is a heading, and headings are told apart without their case."""
        seen = set()
        for name in [r.name for r in rpcs] + list(self.headers.records):
            if name.lower() in seen:
                self.fail(f"two things are called {name}")
            seen.add(name.lower())


# What fields are made of: the name in tables, and whether it is signed.
SCALARS = {
    "char": ("text", False),
    "unsigned char": ("uint8", False),
    "unsigned short": ("uint16", False),
    "unsigned int": ("uint32", False),
    "unsigned long": ("uint64", False),
    "int": ("int32", True),
}

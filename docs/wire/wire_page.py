"""Writes the page: docs/wire-formats.md."""

from wire_ast import PLATFORM_HEADER
from wire_model import SCALARS, split_comment


def _hex(number):
    return f"0x{number:08X}"


def _sentence(text):
    text = text.strip()
    if not text:
        return ""
    return text[0].upper() + text[1:] + ("" if text[-1] in ".:!" else ".")


class Page:
    """The page of a model."""

    def __init__(self, model, constants, introduction):
        self.model = model
        self.introduction = introduction
        self.lines = []
        self.numbers = {c.name: c.value for c in constants if c.value is not None}
        self.names = {}
        for rpc in model.rpcs:
            self.names[("kMsg" if rpc.is_message else "kRpc") + rpc.name] = rpc.name

    def text(self):
        self.lines = self.introduction.rstrip("\n").split("\n")
        self.common_records()
        self.overview()
        for header in sorted(self.model.introductions):
            rpcs = [r for r in self.model.rpcs if r.header == header]
            records = [r for r in self.model.records.values() if r.header == header]
            if rpcs or records:
                self.section(header, rpcs, records)
        return "\n".join(self.lines) + "\n"

    def add(self, *lines):
        self.lines += ["", *lines]

    def common_records(self):
        self.add("## The platform's records", "",
                 f"They stand in `platform/include/{PLATFORM_HEADER}`.")
        for record in self.model.records.values():
            if record.header == PLATFORM_HEADER:
                self.record(record)

    def overview(self):
        self.add("## All of them", "",
                 "| id | name | receiver | module | time-out | request | reply |",
                 "|---|---|---|---|---|---|---|")
        for rpc in sorted(self.model.rpcs, key=lambda r: (r.is_message, r.id)):
            self.lines.append(
                f"| {self.id(rpc)} | {self.link(rpc.name)} | {rpc.receiver} | "
                f"{self.modules(rpc) or '-'} | {self.timeout(rpc) or '-'} | "
                f"{self.content(rpc.request)} | "
                f"{'-' if rpc.is_message else self.content(rpc.reply)} |")

    @staticmethod
    def id(rpc):
        return f"message {rpc.id}" if rpc.is_message else _hex(rpc.id)

    @staticmethod
    def modules(rpc):
        return ", ".join(str(a) if a == b else f"{a} to {b}" for a, b in rpc.senders)

    @staticmethod
    def timeout(rpc):
        return "" if rpc.timeout is None else f"{rpc.timeout} ms"

    def section(self, header, rpcs, records):
        self.add(f"## {header.removesuffix('.h').replace('_', ' ').capitalize()}", "",
                 f"{self.prose(self.model.introductions[header])} "
                 f"(`bridge/records/{header}`)")
        for rpc in rpcs:
            self.rpc(rpc)
        for record in records:
            self.record(record)

    def rpc(self, rpc):
        self.add(f"### {rpc.name}", "")
        if rpc.is_message:
            self.lines.append(f"Message of type {rpc.id} to `{rpc.receiver}`, which does not "
                              "answer.")
        else:
            self.lines.append(f"`{_hex(rpc.id)}` to `{rpc.receiver}`, sender module "
                              f"{self.modules(rpc)}, time-out {self.timeout(rpc)}.")
        self.lines.append("Sent by " + ", ".join(f"`{n}`" for n in rpc.natives) + ".")
        if rpc.comment:
            self.add(self.prose(rpc.comment))
        side = "Content" if rpc.is_message else "Request"
        self.add(f"- {side}: {self.content(rpc.request, True)}")
        if not rpc.is_message:
            self.lines.append(f"- Reply: {self.content(rpc.reply, True)}")
        if rpc.block is not None:
            side = "message" if rpc.is_message else rpc.block_side
            self.lines.append(f"- The block that the {side} names: {self.content(rpc.block, True)}")

    def content(self, content, sizes=False):
        return f" {content.join} ".join(self.part(p, sizes) for p in content.parts)

    def part(self, part, sizes):
        secret = ", secret" if part.secret and sizes else ""
        if part.form == "record":
            return self.link(part.record) + (f" ({part.size} bytes)" if sizes else "") + secret
        if part.form == "rows":
            each = f" ({part.size} bytes each)" if sizes else ""
            return f"rows of {self.link(part.record)}{each}{secret}"
        if part.form == "text" and sizes:
            bound = f" of at most {part.size} bytes" if part.size else ""
            return f"a text{bound}{secret}"
        if part.form == "word":
            return "word" + (f" `{part.name}`" if part.name else "") + secret
        return part.form + secret

    def record(self, record):
        prose, _ = split_comment(record.comment)
        self.add(f"### {record.name}", "", f"{record.size} bytes. {self.prose(prose)}".strip(), "",
                 "| offset | size | type | field | |", "|---|---|---|---|---|")
        for field in record.fields:
            note = _sentence(self.prose(" ".join(
                w for w in field.comment.split() if w != "@secret")))
            if field.name in self.model.secrets[record.name]:
                note = ("Secret. " + note).strip()
            self.lines.append(f"| {field.offset} | {field.size} | {self.type(field)} | "
                              f"{field.name} | {note} |")

    def type(self, field):
        if field.element == "char":
            return "text"
        if field.element == "unsigned char" and field.count > 1:
            return "bytes"
        name = SCALARS[field.element][0] if field.element in SCALARS else self.link(field.element)
        return f"{name}[{field.count}]" if field.count > 1 else name

    @staticmethod
    def link(name):
        return f"[{name}](#{name.lower()})"

    def prose(self, text):
        """A comment, with links to what it names and the numbers behind names of constants."""
        words = []
        for word in text.split():
            core = word.strip("\"'.,:;()")
            if core in self.names:
                word = word.replace(core, self.link(self.names[core]))
            elif core in self.model.records:
                word = word.replace(core, self.link(core))
            elif core in self.numbers:
                number = self.numbers[core]
                shown = f"0x{number & 0xFFFFFFFF:X}" if abs(number) > 0xFFFF else number
                word = word.replace(core, f"`{core}` ({shown})")
            else:
                word = word.replace("<", "&lt;").replace("|", "\\|")
            words.append(word)
        return " ".join(words)

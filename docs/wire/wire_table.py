"""Writes the facts for a decoder: gateway/framework/wire_facts.inc."""

from wire_model import SCALARS

_HEAD = """\
// Made by docs/wire/make-wire-formats of the bridge's sources and bridge/records; not for editing.
// Included by wire_table.cpp, which has the types.
"""


def _quoted(text):
    return "nullptr" if text is None else f'"{text}"'


def _field(field, secrets):
    secret = "kSecret" if field.name in secrets else "kShown"
    count, record = field.count, "nullptr"
    if field.element == "char":
        kind, count = "kText", 1
    elif field.element == "unsigned char" and field.count > 1:
        kind, count = "kBytes", 1
    elif field.element in SCALARS:
        kind = "kSigned" if SCALARS[field.element][1] else "kUnsigned"
    else:
        kind = "kDescriptor" if field.element == "VDataDesc" else "kRecord"
        record = f"&kRecord{field.element}"
    return _wrapped(f'    {{"{field.name}", {field.offset}, {field.size // count}, {count}, '
                    f"WireKind::{kind}, {secret}, {record}}},")


def _part(part):
    arguments = {"nothing": "", "word": _quoted(part.name), "text": part.size,
                 "record": f"kRecord{part.record}", "rows": f"kRecord{part.record}"}[part.form]
    text = f"{part.form.capitalize()}Part({arguments})"
    return f"Hidden({text})" if part.secret else text


def _content(content):
    if content is None:
        return "kNoContent"
    join = {"": "Alone", "or": "Either", "then": "Both"}[content.join]
    return f"{join}({', '.join(_part(p) for p in content.parts)})"


def _rpc(rpc):
    senders = [f"{{{first}, {last}}}" for first, last in rpc.senders]
    assert len(senders) <= 2, f"{rpc.name} needs room for more sender modules"
    senders += ["kNoModules"] * (2 - len(senders))
    words = [f"{rpc.id}" if rpc.is_message else f"0x{rpc.id:08X}", _quoted(rpc.name),
             _quoted(rpc.receiver), f"{rpc.timeout or 0}", f"{{{{{', '.join(senders)}}}}}",
             _content(rpc.request), "kNoContent" if rpc.is_message else _content(rpc.reply),
             _content(rpc.block),
             "WireSide::k" + (rpc.block_side or "none").capitalize()]
    return _wrapped(f"    {{{', '.join(words)}}},")


def _wrapped(line):
    """A line, cut behind commas where it is too long."""
    lines = []
    while len(line) > 100:
        cut = line.rindex(", ", 0, 100) + 1
        lines.append(line[:cut])
        line = "     " + line[cut + 1:]
    return "\n".join([*lines, line])


def _in_order(records):
    """The records, each behind those that it is made of."""
    done, order = set(), []

    def visit(record):
        if record.name in done:
            return
        done.add(record.name)
        for field in record.fields:
            if field.element in records:
                visit(records[field.element])
        order.append(record)

    for name in sorted(records):
        visit(records[name])
    return order


def table_text(model):
    lines = [_HEAD]
    for record in _in_order(model.records):
        lines.append(f"constexpr WireField kFieldsOf{record.name}[] = {{")
        lines += [_field(f, model.secrets[record.name]) for f in record.fields]
        lines.append("};")
        lines.append(_wrapped(f'constexpr WireRecord kRecord{record.name} = {{"{record.name}", '
                              f"{record.size}, kFieldsOf{record.name}}};"))
    for name, is_message in (("kRpcs", False), ("kMessages", True)):
        lines += ["", f"constexpr WireRpc {name}[] = {{"]
        lines += [_rpc(r) for r in sorted(model.rpcs, key=lambda r: r.id)
                  if r.is_message == is_message]
        lines.append("};")
    return "\n".join(lines) + "\n"

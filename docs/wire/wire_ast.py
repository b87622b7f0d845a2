"""Reads the bridge's sources with libclang and keeps what tells how it sends requests.

What comes out is plain data, so that several processes can read sources beside each other: for each
function its parameters and calls, for each constant its initialiser, each as an expression. A call is
a tuple of what is called, the arguments, and the conditions that it is under: ((expression, whether
it must hold), ...). An expression is a tuple whose first word says what it is:

    ("func", key)                  a function
    ("var", type, key)             a variable or parameter
    ("int", number) ("str", text) ("null",)
    ("init", type, ((field, expression), ...))   a list in braces; a field is a name or an index
    ("member", type, expression, field)
    ("index", type, expression, expression)      an element
    ("addr", expression) ("deref", type, expression)
    ("cond", condition, expression, expression)
    ("compare", "==" or "!=", expression, expression)
    ("cast", type, expression)
    ("call", type, key)            what a function returned
    ("obj", type)                  anything else of that type
"""

import ctypes
import os
import sys
from collections import namedtuple

try:
    from clang import cindex
    from clang.cindex import CursorKind, LinkageKind, TypeKind
except ImportError:
    sys.exit("make-wire-formats: Python's libclang is missing: install python3-clang-14")

Function = namedtuple("Function", "name params calls")
Unit = namedtuple("Unit", "functions variables")
Field = namedtuple("Field", "name offset size count element comment")
Record = namedtuple("Record", "name size fields comment header")
Constant = namedtuple("Constant", "name value comment header")
Headers = namedtuple("Headers", "records constants introductions")

# What the platform itself sends: the header of a message, and the descriptor of a bulk block.
PLATFORM_HEADER = "vt_ssp_basic.h"
PLATFORM_RECORDS = ("RpcMsgHead", "VDataDesc")

_WRAPPERS = (CursorKind.UNEXPOSED_EXPR, CursorKind.PAREN_EXPR)
_CASTS = (CursorKind.CXX_STATIC_CAST_EXPR, CursorKind.CXX_REINTERPRET_CAST_EXPR,
          CursorKind.CXX_CONST_CAST_EXPR, CursorKind.CSTYLE_CAST_EXPR,
          CursorKind.CXX_FUNCTIONAL_CAST_EXPR)
_LEAVES = (CursorKind.DECL_REF_EXPR, CursorKind.INTEGER_LITERAL, CursorKind.STRING_LITERAL,
           CursorKind.CXX_NULL_PTR_LITERAL_EXPR, CursorKind.TYPE_REF, CursorKind.NAMESPACE_REF,
           CursorKind.TEMPLATE_REF, CursorKind.MEMBER_REF)
_FUNCTIONS = (CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR,
              CursorKind.CONVERSION_FUNCTION)
_BRANCHES = (CursorKind.IF_STMT, CursorKind.CONDITIONAL_OPERATOR)
_SCOPES = (CursorKind.NAMESPACE, CursorKind.LINKAGE_SPEC, CursorKind.UNEXPOSED_DECL)


def _evaluator():
    lib = cindex.conf.lib
    lib.clang_Cursor_Evaluate.argtypes = [cindex.Cursor]
    lib.clang_Cursor_Evaluate.restype = ctypes.c_void_p
    for name, result in (("getKind", ctypes.c_int), ("getAsLongLong", ctypes.c_longlong),
                         ("isUnsignedInt", ctypes.c_uint), ("getAsUnsigned", ctypes.c_ulonglong),
                         ("dispose", None)):
        function = getattr(lib, "clang_EvalResult_" + name)
        function.argtypes = [ctypes.c_void_p]
        function.restype = result

    def evaluate(cursor):
        """The number that an expression or a variable is known to have, or None."""
        result = lib.clang_Cursor_Evaluate(cursor)
        if not result:
            return None
        number = None
        if lib.clang_EvalResult_getKind(result) == 1:
            number = (lib.clang_EvalResult_getAsUnsigned(result)
                      if lib.clang_EvalResult_isUnsignedInt(result)
                      else lib.clang_EvalResult_getAsLongLong(result))
        lib.clang_EvalResult_dispose(result)
        return number

    return evaluate


_evaluate = _evaluator()


def type_name(kind):
    """A type without reference and const: "wap::LanIndex", "char[32]", "void *"."""
    kind = kind.get_canonical()
    if kind.kind in (TypeKind.LVALUEREFERENCE, TypeKind.RVALUEREFERENCE):
        kind = kind.get_pointee()
    if kind.kind == TypeKind.POINTER:
        return type_name(kind.get_pointee()) + " *"
    return kind.spelling.removeprefix("const ").removeprefix("struct ")


def _is_constant(kind):
    kind = kind.get_canonical()
    return (kind.kind in (TypeKind.LVALUEREFERENCE, TypeKind.RVALUEREFERENCE)
            or kind.is_const_qualified()
            or (kind.kind == TypeKind.CONSTANTARRAY and kind.element_type.is_const_qualified()))


def _parts(cursor):
    return [child for child in cursor.get_children() if not child.kind.is_reference()]


def _returns(statement):
    """Whether a statement ends with a return."""
    while statement.kind == CursorKind.COMPOUND_STMT:
        parts = list(statement.get_children())
        if not parts:
            return False
        statement = parts[-1]
    return statement.kind == CursorKind.RETURN_STMT


class _Reader:
    """Reads the functions of one source, and those of headers that it calls."""

    def __init__(self, unit_name, folder):
        self.unit_name = unit_name
        self.folder = folder
        self.unit = Unit({}, {})
        self.queue = []
        self.known = set()

    def key(self, cursor):
        usr = cursor.get_usr()
        if cursor.linkage in (LinkageKind.INTERNAL, LinkageKind.UNIQUE_EXTERNAL):
            return self.unit_name + ":" + usr
        return usr

    def note(self, cursor):
        """The key of a function, which is read later if it has a body here."""
        key = self.key(cursor)
        if key not in self.known:
            self.known.add(key)
            definition = cursor if cursor.is_definition() else cursor.get_definition()
            if definition is not None and self.is_ours(definition):
                self.queue.append((key, definition))
        return key

    def is_ours(self, cursor):
        file = cursor.location.file
        return file is not None and file.name.startswith(self.folder)

    def read(self, scope):
        for cursor in scope.get_children():
            if cursor.kind in _SCOPES:
                self.read(cursor)
            elif cursor.kind in _FUNCTIONS and cursor.is_definition():
                self.note(cursor)
            elif cursor.kind == CursorKind.VAR_DECL:
                self.variable(cursor)
        while self.queue:
            key, cursor = self.queue.pop()
            calls = []
            self.walk(cursor, calls)
            self.unit.functions[key] = Function(
                cursor.spelling, tuple(p.get_usr() for p in cursor.get_arguments()), tuple(calls))

    def walk(self, cursor, calls, conditions=()):
        if cursor.kind in _BRANCHES:
            branches = self.branches(cursor)
            for part, choice in branches:
                self.visit(part, calls, conditions + choice)
            return
        for child in cursor.get_children():
            self.visit(child, calls, conditions)
            if child.kind == CursorKind.IF_STMT:
                # Behind a branch that returns, the other one was taken.
                for part, choice in self.branches(child):
                    if choice and _returns(part):
                        conditions += ((choice[0][0], not choice[0][1]),)

    def visit(self, cursor, calls, conditions):
        if cursor.kind == CursorKind.CALL_EXPR:
            self.call(cursor, calls, conditions)
        elif cursor.kind == CursorKind.CXX_FOR_RANGE_STMT:
            self.loop(cursor)
        if cursor.kind not in _LEAVES:
            self.walk(cursor, calls, conditions)

    def branches(self, cursor):
        """The parts of a branching, each with the condition that it is under: () or one."""
        parts = _parts(cursor)
        if len(parts) not in (2, 3) or not parts[0].kind.is_expression():
            return [(part, ()) for part in parts]  # with a declaration in its head
        condition = self.expression(parts[0])
        return [(part, ((condition, i == 1),) if i else ()) for i, part in enumerate(parts)]

    def loop(self, cursor):
        """Notes that a loop's variable is an element of what it goes through."""
        parts = _parts(cursor)
        elements = [p for p in parts if p.kind == CursorKind.VAR_DECL]
        ranges = [p for p in parts if p.kind.is_expression()]
        if elements and ranges:
            key = elements[0].get_usr()
            self.known.add(key)
            self.unit.variables[key] = ("index", type_name(elements[0].type),
                                        self.expression(ranges[0]), ("obj", "?"))

    def call(self, cursor, calls, conditions):
        target = cursor.referenced
        if target is not None and target.kind in _FUNCTIONS:
            if target.spelling == "operator()":
                return  # a lambda's: what is in it counts for the function that it stands in
            callee = ("func", self.note(target))
        else:
            parts = _parts(cursor)
            callee = self.expression(parts[0]) if parts else ("obj", "?")
        calls.append((callee, tuple(self.expression(a) for a in cursor.get_arguments()
                                    if a is not None), conditions))

    def variable(self, cursor):
        key = cursor.get_usr() if cursor.linkage == LinkageKind.NO_LINKAGE else self.key(cursor)
        if key not in self.known:
            self.known.add(key)
            if cursor.kind == CursorKind.VAR_DECL and _is_constant(cursor.type) and \
                    self.is_ours(cursor):
                definition = cursor.get_definition() or cursor
                parts = [p for p in _parts(definition) if p.kind.is_expression()]
                if parts:
                    self.unit.variables[key] = self.expression(parts[-1])
        return ("var", type_name(cursor.type), key)

    def expression(self, cursor):
        kind = cursor.kind
        if kind in _WRAPPERS:
            parts = _parts(cursor)
            return self.expression(parts[0]) if len(parts) == 1 else self.number(cursor)
        if kind == CursorKind.DECL_REF_EXPR:
            target = cursor.referenced
            if target is None:  # the value of a template's parameter
                parts = _parts(cursor)
                return self.expression(parts[0]) if parts else ("obj", "?")
            if target.kind in _FUNCTIONS:
                return ("func", self.note(target))
            if target.kind in (CursorKind.VAR_DECL, CursorKind.PARM_DECL):
                return self.variable(target)
            return self.number(cursor)
        if kind == CursorKind.STRING_LITERAL:
            return ("str", cursor.spelling[1:-1])
        if kind == CursorKind.CXX_NULL_PTR_LITERAL_EXPR:
            return ("null",)
        if kind in (CursorKind.INTEGER_LITERAL, CursorKind.CXX_UNARY_EXPR):
            return self.number(cursor)
        return self.composed(cursor, kind)

    def composed(self, cursor, kind):
        parts = _parts(cursor)
        name = type_name(cursor.type)
        if kind == CursorKind.MEMBER_REF_EXPR and parts:
            base = self.expression(parts[0])
            if parts[0].type.get_canonical().kind == TypeKind.POINTER:
                base = ("deref", type_name(parts[0].type.get_canonical().get_pointee()), base)
            return ("member", name, base, cursor.spelling)
        if kind == CursorKind.UNARY_OPERATOR and parts:
            inner = type_name(parts[0].type)
            if name == inner + " *":
                return ("addr", self.expression(parts[0]))
            if inner == name + " *":
                return ("deref", name, self.expression(parts[0]))
            return self.number(cursor)
        if kind == CursorKind.ARRAY_SUBSCRIPT_EXPR and parts:
            return ("index", name, *(self.expression(part) for part in parts))
        if kind == CursorKind.CONDITIONAL_OPERATOR and len(parts) == 3:
            return ("cond", *(self.expression(part) for part in parts))
        if kind == CursorKind.BINARY_OPERATOR and name == "bool" and len(parts) == 2:
            return self.comparison(cursor, parts)
        if kind == CursorKind.INIT_LIST_EXPR:
            return ("init", name, self.initialisers(cursor, parts))
        if kind in _CASTS and parts:
            return ("cast", name, self.expression(parts[-1]))
        if kind == CursorKind.CALL_EXPR:
            return self.result(cursor, name)
        return self.number(cursor)

    def comparison(self, cursor, parts):
        """Only == and != are looked at: libclang does not tell one operator from another, but shows
        where the operands end."""
        start, end = parts[0].extent.end.offset, parts[1].extent.start.offset
        for token in cursor.get_tokens():
            if token.spelling in ("==", "!=") and start <= token.extent.start.offset < end:
                return ("compare", token.spelling, *(self.expression(part) for part in parts))
        return self.number(cursor)

    def initialisers(self, cursor, parts):
        fields = [f.spelling for f in cursor.type.get_canonical().get_fields()]
        values = []
        for i, part in enumerate(parts):
            children = list(part.get_children())
            if part.kind == CursorKind.UNEXPOSED_EXPR and len(children) == 2 and \
                    children[0].kind == CursorKind.MEMBER_REF:
                values.append((children[0].spelling, self.expression(children[1])))
            else:
                values.append((fields[i] if i < len(fields) else i, self.expression(part)))
        return tuple(values)

    def result(self, cursor, name):
        target = cursor.referenced
        if target is None or target.kind not in _FUNCTIONS:
            return ("obj", name)
        arguments = list(cursor.get_arguments())
        if target.kind == CursorKind.CONSTRUCTOR and len(arguments) == 1:
            if type_name(arguments[0].type) == name:
                return self.expression(arguments[0])  # a copy
        return ("call", name, self.note(target))

    @staticmethod
    def number(cursor):
        value = _evaluate(cursor)
        return ("obj", type_name(cursor.type)) if value is None else ("int", value)


def _complain(unit):
    errors = [str(d) for d in unit.diagnostics if d.severity >= cindex.Diagnostic.Error]
    if errors:
        raise ValueError("\n".join(errors))


def save_headers(sources, arguments, folder, place):
    """Compiles all headers of the folder once, and reads the records in them."""
    with open(place + ".h", "w", encoding="utf-8") as out:
        for path in sources:
            out.write(f'#include "{os.path.relpath(path, folder)}"\n')
    unit = cindex.Index.create().parse(
        place + ".h", args=["-x", "c++-header", *arguments],
        options=(cindex.TranslationUnit.PARSE_INCOMPLETE | 0x10))  # 0x10: to be saved
    _complain(unit)
    unit.save(place + ".pch")
    headers = Headers({}, [], {})
    _read_headers(unit.cursor, os.path.join(folder, "records"), headers)
    return headers


def read_source(path, arguments, folder, place, stand_ins):
    """The functions of a source, and those of headers that it calls. The stand-ins are the texts of
    headers that a build makes."""
    unit = cindex.Index.create(excludeDecls=True).parse(
        path, args=["-x", "c++", *arguments, "-include-pch", place + ".pch"],
        unsaved_files=stand_ins)
    _complain(unit)
    reader = _Reader(os.path.relpath(path, folder), folder)
    reader.read(unit.cursor)
    return reader.unit


def _read_headers(scope, folder, headers):
    for cursor in scope.get_children():
        if cursor.kind in _SCOPES:
            if cursor.kind != CursorKind.NAMESPACE or cursor.spelling == "wap":
                _read_headers(cursor, folder, headers)
            continue
        file = cursor.location.file
        if file is None:
            continue
        is_record = cursor.kind == CursorKind.STRUCT_DECL and cursor.is_definition()
        if is_record and cursor.spelling in PLATFORM_RECORDS:
            headers.records[cursor.spelling] = _record(cursor, PLATFORM_HEADER)
        if not file.name.startswith(folder):
            continue
        header = os.path.basename(file.name)
        if header not in headers.introductions:
            headers.introductions[header] = _introduction(file.name)
        if is_record and cursor.type.get_align() == 1:  # packed: others do not travel
            headers.records[cursor.spelling] = _record(cursor, header)
        elif cursor.kind == CursorKind.VAR_DECL and cursor.spelling.startswith("k"):
            headers.constants.append(Constant(cursor.spelling, _evaluate(cursor),
                                              comment_text(cursor.raw_comment), header))


def _record(cursor, header):
    fields = []
    for field in cursor.type.get_fields():
        kind = field.type.get_canonical()
        count = 1
        if kind.kind == TypeKind.CONSTANTARRAY:
            count = kind.element_count
            kind = kind.element_type.get_canonical()
        fields.append(Field(field.spelling, cursor.type.get_offset(field.spelling) // 8,
                            field.type.get_size(), count, type_name(kind).removeprefix("wap::"),
                            comment_text(field.raw_comment)))
    return Record(cursor.spelling, cursor.type.get_size(), tuple(fields),
                  comment_text(cursor.raw_comment), header)


def comment_text(raw):
    """The lines of a doc comment without its marks."""
    lines = []
    for line in (raw or "").splitlines():
        line = line.strip()
        for mark in ("///<", "///", "/**<", "/**", "*/", "*"):
            if line.startswith(mark):
                line = line[len(mark):]
                break
        lines.append(line.removesuffix("*/").strip())
    return "\n".join(lines).strip()


def _introduction(path):
    """The comment that a header begins with."""
    lines = []
    with open(path, encoding="utf-8") as text:
        for line in text:
            if not line.startswith("//"):
                break
            lines.append(line[2:].strip())
    return " ".join(lines)

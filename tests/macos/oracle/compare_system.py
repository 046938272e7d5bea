"""The C library's functions, records and constants that the sources name, as the compiler's headers for
macOS declare them, against the libc crate."""

import re

from clang.cindex import CursorKind as K

from encodings_of_objc import in_words, normal
from libc_crate import Unknown
from source_reader import Item

# Members that are one record in C, and two numbers in the crate.
TIMES = {"st_atimespec": "st_atime", "st_mtimespec": "st_mtime", "st_ctimespec": "st_ctime"}
INCLUDES = re.compile(r"^#\s*(?:include|import) <([\w/]+\.h)>", re.M)


def compare_system(paths, reader, libc, findings):
    texts = [path.read_text() for path in paths]
    words = {word for text in texts for word in re.findall(r"\b[A-Za-z_]\w*", text)}
    headers = sorted({header for text in texts for header in INCLUDES.findall(text)
                      if (reader.system / "libc/include/any-macos-any" / header).is_file()})
    SystemComparison(reader, libc, findings, headers, words).compare()


class SystemComparison:
    def __init__(self, reader, libc, findings, headers, words):
        self.reader, self.libc, self.findings = reader, libc, findings
        self.headers, self.words, self.arch = headers, words, reader.arch
        self.includes = "".join(f"#include <{header}>\n" for header in headers)

    def compare(self):
        unit = self.reader.parse("system-headers.c", "c", self.includes)
        for cursor in unit.cursor.get_children():
            if cursor.spelling not in self.words:
                continue
            if cursor.kind == K.FUNCTION_DECL:
                self._function(self.reader.function(cursor))
            elif cursor.kind == K.STRUCT_DECL and cursor.is_definition():
                self._record(cursor)
        self._constants()

    def _equal(self, kind, name, ours, theirs):
        self.findings.equal(f"system {kind}", "the compiler's headers", f"{name} ({self.arch})", ours, theirs,
                            self.libc.name)

    def _unknown(self, item, why=""):
        self.findings.note(f"not in the libc crate: {item.kind} {item.name}{why}")

    # --- functions

    def _function(self, item):
        if item.name not in self.libc.functions:
            self._unknown(item)
            return
        types, symbol = self.libc.functions[item.name]
        try:
            theirs = [self.libc.encode(type_) for type_ in types]
        except Unknown as problem:
            self._unknown(item, f": {problem}")
            return
        self._equal("function's types", item.name, in_words(self._plain(type_) for type_ in item.types),
                    in_words(theirs))
        if symbol and "$NOCANCEL" not in symbol:  # a variant that is no point of cancellation
            self._equal("function's symbol", item.name, *(text.removeprefix("\x01").removeprefix("_")
                                                          for text in (item.symbol, symbol)))

    def _plain(self, encoding):
        text = normal(encoding, self.arch)
        return "^" if text.startswith(("^", "[", "@")) else text.split("=")[0]

    # --- records

    def _record(self, cursor):
        item = Item("record", cursor.spelling, "")
        if item.name not in self.libc.structs:
            self._unknown(item)
            return
        try:
            theirs, size = self._crate_layout(item.name)
        except (Unknown, RuntimeError) as problem:
            self._unknown(item, f": {str(problem).splitlines()[0]}")
            return
        self._equal("record's size", item.name, cursor.type.get_size(), size)
        for field in cursor.type.get_fields():
            if field.spelling in self.words:
                self._member(cursor, field, theirs)

    def _crate_layout(self, name):
        unit = self.reader.parse("record.c", "c", f"{self.libc.struct_in_c(name)}struct rs_{name} probe;\n")
        probe = next(c for c in unit.cursor.get_children() if c.spelling == "probe").type
        fields = {f.spelling: (f.type.get_size(), probe.get_offset(f.spelling) // 8)
                  for f in probe.get_canonical().get_fields()}
        return fields, probe.get_size()

    def _member(self, cursor, field, theirs):
        name = f"{cursor.spelling}.{field.spelling}"
        ours = field.type.get_size(), cursor.type.get_offset(field.spelling) // 8
        other = theirs.get(TIMES.get(field.spelling, field.spelling))
        if other is None:
            self._unknown(Item("member", name, ""))
            return
        if field.spelling in TIMES:
            other = 16, other[1]
        self._equal("member's size and offset", name, ours, other)

    # --- constants

    def _constants(self):
        names = sorted(word for word in self.words - {"NULL"} if re.fullmatch(r"[A-Z][A-Z0-9_]{2,}", word))
        for name, value in sorted(self._values(names).items()):
            item = Item("constant", name, "")
            if name not in self.libc.constants:
                self._unknown(item)
                continue
            try:
                self._equal("constant", name, value, self.libc.number(self.libc.constants[name]))
            except Unknown as problem:
                self._unknown(item, f": {problem}")

    def _values(self, names):
        """The values of those names that are macros for integers in the headers."""
        while True:
            start = len(self.headers)
            text = self.includes + "".join(
                f"#ifdef {name}\nconstexpr long long value_{name} = (long long)({name});\n#endif\n"
                for name in names)
            unit = self.reader.diagnosed("values.cpp", "c++", text)
            wrong = {names[(d.location.line - start - 1) // 3] for d in unit.diagnostics
                     if d.severity >= 3 and str(d.location.file) == "values.cpp" and d.location.line > start}
            if not wrong:
                break
            names = [name for name in names if name not in wrong]
        text += "enum : long long {\n" + "".join(
            f"#ifdef {name}\nenum_{name} = value_{name},\n#endif\n" for name in names) + "};\n"
        unit = self.reader.parse("values.cpp", "c++", text)
        return {x.spelling.removeprefix("enum_"): x.enum_value for c in unit.cursor.get_children()
                if c.kind == K.ENUM_DECL for x in c.get_children() if x.spelling.startswith("enum_")}

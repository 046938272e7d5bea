"""The objc2 crates: Rust declarations that their translator made from the headers of Xcode's SDK."""

import re
from pathlib import Path

from rust_text import end_of, split_arguments

CRATES = ("objc2", "objc2-foundation", "objc2-app-kit", "objc2-core-foundation", "objc2-core-graphics",
          "objc2-core-services", "objc2-security")

RECT = "{CGRect={CGPoint=dd}{CGSize=dd}}"
ENCODINGS = {
    "bool": "Z", "Bool": "Z", "c_char": "c", "c_schar": "c", "i8": "c", "c_uchar": "C", "u8": "C",
    "Boolean": "C", "c_short": "s", "i16": "s", "c_ushort": "S", "u16": "S", "unichar": "S",
    "c_int": "i", "i32": "i", "OSStatus": "i", "c_uint": "I", "u32": "I", "UInt32": "I",
    "FourCharCode": "I", "OSType": "I", "c_long": "q", "i64": "q", "isize": "q", "c_longlong": "q",
    "NSInteger": "q", "CFIndex": "q", "c_ulong": "Q", "u64": "Q", "usize": "Q", "c_ulonglong": "Q",
    "NSUInteger": "Q", "f32": "f", "c_float": "f", "f64": "d", "c_double": "d", "CGFloat": "d",
    "Sel": ":", "()": "v", "c_void": "v", "NSRect": RECT, "CGRect": RECT, "NSPoint": "{CGPoint=dd}",
    "CGPoint": "{CGPoint=dd}", "NSSize": "{CGSize=dd}", "CGSize": "{CGSize=dd}", "NSZone": "{_NSZone=}",
}
OBJECTS = ("Retained<", "Allocated<", "ProtocolObject<", "CFRetained<", "&ProtocolObject", "&AnyObject",
           "&AnyClass", "&Self")
GENERIC = ("ObjectType", "KeyType")
FIELD_SIZES = {"CGFloat": 8, "CGPoint": 16, "CGSize": 16}

SUPERS = re.compile(r"#\[unsafe\(super\(([^)]*)\)\)\][^;]*?pub struct (\w+)(?:<[^;{]*>)?\s*;", re.S)
ENUMS = re.compile(r"pub struct (\w+)\(pub (\w+)\);")
ALIASES = re.compile(r"pub type (\w+) = ([\w:]+);")
VALUES = re.compile(r'#\[doc\(alias = "(\w+)"\)\](?:\s*#\[[^\n]*\])*\s*(?:pub )?const \w+:? ?(?:Self)? ?='
                    r" ?(?:Self\()?([^;]*?)\)?;")
PLAIN_VALUES = re.compile(r"pub (?:const|static) (\w+): \w+ =\s*([^;]+);")
CONSTANTS = re.compile(r"pub static (\w+): ([^;=]+);")
RECORDS = re.compile(r"pub struct (\w+) \{(.*?)\n\}", re.S)
FOREIGN = re.compile(r'extern "C(?:-unwind)?" \{')
OWNERS = re.compile(r"\n(?:    )?(?:impl(?:<[^{]*>)? (\w+)(?:<[^{]*>)?|pub unsafe trait (\w+)[^{]*)\s*\{")
METHODS = re.compile(r"((?:[ \t]*(?:#\[[^\n]*|///[^\n]*)\n|[ \t]*\n)*)[ \t]*#\[unsafe\(method\(([\w:]+)\)\)\]")
RESULT = re.compile(r"\s*(?:->\s*([^;{]+?))?\s*(?:where[^;]*)?;", re.S)


class Objc2Crates:
    name = "the objc2 crates"

    def __init__(self, folder):
        self.supers, self.methods, self.protocols, self.records = {}, {}, {}, {}
        self.types, self.values, self.constants, self.functions = {}, {}, {}, {}
        for crate in CRATES:
            for path in sorted(Path(folder, crate, "src").rglob("*.rs")):
                self._read(path.read_text())

    def _read(self, text):
        self.supers.update((name, supers.split(",")[0].strip()) for supers, name in SUPERS.findall(text))
        self.types.update(ENUMS.findall(text))
        self.types.update((name, type_.split("::")[-1]) for name, type_ in ALIASES.findall(text))
        self.values.update((name, value.strip()) for name, value in VALUES.findall(text))
        self.values.update((name, value.strip()) for name, value in PLAIN_VALUES.findall(text))
        self.constants.update((name, type_.strip()) for name, type_ in CONSTANTS.findall(text))
        self.records.update((name, re.findall(r"pub (\w+): (\w+)", body))
                            for name, body in RECORDS.findall(text))
        for m in FOREIGN.finditer(text):
            self._read_functions(text[m.end():end_of(text, m.end() - 1)])
        for m in OWNERS.finditer(text):
            table = self.methods if m[1] else self.protocols
            self._read_methods(table.setdefault(m[1] or m[2], {}), text[m.end():end_of(text, m.end() - 1)])

    def _read_functions(self, body):
        for m in re.finditer(r"\bfn (\w+)\(", body):
            end = end_of(body, m.end() - 1)
            result = RESULT.match(body, end)
            if result:
                types = [a.split(":", 1)[1].strip() for a in split_arguments(body[m.end():end - 1])
                         if ":" in a]
                self.functions[m[1]] = [(result[1] or "()").strip(), *types]

    @staticmethod
    def _read_methods(table, body):
        for m in METHODS.finditer(body):
            f = re.compile(r"fn \w+\(").search(body, m.end())
            if not f:
                continue
            end = end_of(body, f.end() - 1)
            result = RESULT.match(body, end)
            arguments = split_arguments(body[f.end():end - 1])
            instance = bool(arguments) and (arguments[0] in ("&self", "&mut self", "self")
                                            or arguments[0].startswith("this:"))
            types = [a.split(":", 1)[1].strip() for a in arguments
                     if ":" in a and not a.startswith(("this:", "mtm:"))]
            table[m[2], not instance] = [(result[1] if result and result[1] else "()").strip(), *types]

    # --- encodings

    def encode(self, rust):
        """The encoding of a Rust type, or None when it is not understood."""
        rust = re.sub(r"^\w+: ", "", rust.strip())
        if rust.startswith("Option<") and rust.endswith(">"):
            return self.encode(rust[7:-1])
        if rust.startswith("&'static CF"):
            return "^{" + rust.removeprefix("&'static ") + "}"
        if rust.startswith((*OBJECTS, "&'static ")) or rust in GENERIC:
            return "@"
        if rust.startswith("NonNull<"):
            return self._pointer(rust[8:-1])
        if rust.startswith(("*mut ", "*const ")):
            inner = rust.split(" ", 1)[1]
            name = inner.split("<")[0]
            return "@" if name in ("Self", "AnyObject") or self._is_class(name) else self._pointer(inner)
        if rust.startswith("&mut "):
            return self._pointer(rust[5:])
        if rust.startswith("&"):
            return self._reference(rust[1:].strip())
        if rust in ENCODINGS:
            return ENCODINGS[rust]
        return self.encode(self.types[rust]) if rust in self.types else None

    def _pointer(self, inner):
        return "^" + (self.encode(inner) or "{" + inner.split("<")[0] + "}")

    def _reference(self, inner):
        name = inner.split("<")[0]
        if name.startswith(("CF", "CG")):
            return "^{" + name + "}"
        if name in GENERIC or name in self.types or self._is_class(name):
            return "@"
        return self._pointer(inner)

    def _is_class(self, name):
        return name in self.supers or self.types.get(name) in self.supers or name == "NSObject"

    # --- looking up

    def method(self, owner, selector, class_method):
        """The types of a method of a class or of one of its parents, the result first; or None."""
        while owner:
            types = self.methods.get(owner, {}).get((selector, class_method))
            if types:
                return [self.encode(type_) for type_ in types]
            owner = self.supers.get(owner)
        return None

    def protocol_method(self, protocol, selector, class_method):
        types = self.protocols.get(protocol, {}).get((selector, class_method))
        return types and [self.encode(type_) for type_ in types]

    def function(self, name):
        return [self.encode(type_) for type_ in self.functions[name]] if name in self.functions else None

    def constant(self, name):
        return self.encode(self.constants[name]) if name in self.constants else None

    def type(self, name):
        return self.encode(self.types[name]) if name in self.types else None

    def record(self, name):
        """(size, [(field, offset)...]) of a record whose fields are all known, or None."""
        fields = self.records.get(name)
        if not fields or any(type_ not in FIELD_SIZES for _, type_ in fields):
            return None
        at, found = 0, []
        for field, type_ in fields:
            found.append((field, at))
            at += FIELD_SIZES[type_]
        return at, found

    def value(self, name):
        """The number that a constant of an enumeration is, or None."""
        text = self.values.get(name)
        for _ in range(5):
            number = number_in(text or "")
            if number is not None:
                return number
            m = re.fullmatch(r"(?:\w+\()?(\w+)::(\w+)\.0\)?", text or "")
            if not m:
                return None
            text = self.values.get(m[1] + m[2])
        return None


def number_in(text):
    """The value of an expression of numbers alone, or None."""
    text = re.sub(r"(?<=\w)_(?:[iu]\d+|[iu]size)\b|\s+as\s+\w+", "", text)
    if not re.fullmatch(r"[\s0-9a-fA-FxXo()|&^~<>+*-]+", text):
        return None
    try:
        return int(eval(text, {"__builtins__": {}}))  # nothing but digits, operators and brackets
    except (SyntaxError, NameError, TypeError):
        return None

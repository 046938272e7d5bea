"""The libc crate's part for Darwin: prototypes, layouts of records, and constants.

Records are turned back into C, so that the compiler that lays out the system headers' records lays out
the crate's.
"""

import re
from pathlib import Path

from rust_text import Conditions, end_of, split_arguments

C_TYPES = {"c_char": "char", "c_schar": "signed char", "c_uchar": "unsigned char", "c_short": "short",
           "c_ushort": "unsigned short", "c_int": "int", "c_uint": "unsigned", "c_long": "long",
           "c_ulong": "unsigned long", "c_longlong": "long long", "c_ulonglong": "unsigned long long",
           "c_void": "void", "c_float": "float", "c_double": "double", "i8": "signed char",
           "u8": "unsigned char", "i16": "short", "u16": "unsigned short", "i32": "int",
           "u32": "unsigned", "i64": "long long", "u64": "unsigned long long", "usize": "unsigned long",
           "isize": "long", "bool": "_Bool", "f32": "float", "f64": "double"}
ENCODINGS = {"int": "i", "unsigned": "I", "long": "q", "unsigned long": "Q", "long long": "q",
             "unsigned long long": "Q", "short": "s", "unsigned short": "S", "char": "c",
             "signed char": "c", "unsigned char": "C", "double": "d", "float": "f"}

# From the most specific file to the most general: the first definition of a name counts.
OWN = {"x86_64": "unix/bsd/apple/b64/x86_64/mod.rs", "arm64": "unix/bsd/apple/b64/aarch64/mod.rs"}
COMMON = ["unix/bsd/apple/b64/mod.rs", "unix/bsd/apple/mod.rs", "unix/bsd/mod.rs", "unix/mod.rs",
          "primitives.rs", "new/apple/*.rs", "new/apple/**/*.rs", "new/common/**/*.rs"]


class Unknown(Exception):
    """Something in the crate that is not understood here."""


class LibcCrate:
    name = "the libc crate"

    def __init__(self, crate, arch):
        self.structs, self.aliases, self.functions, self.constants = {}, {}, {}, {}
        self.conditions = Conditions(arch)
        root = Path(crate, "src")
        for pattern in [OWN[arch], *COMMON]:
            for path in sorted(root.glob(pattern)):
                self._read(self.conditions.apply(path.read_text()))

    def _read(self, text):
        for m in re.finditer(r"pub (?:struct|union) (\w+) \{(.*?)\n {0,4}\}", text, re.S):
            fields = re.findall(r"(?:pub )?(\w+): ([^,]+),", re.sub(r"#\[[^\]]*\]\s*", "", m[2]))
            self.structs.setdefault(m[1], fields)
        for name, type_ in re.findall(r"pub type (\w+) = ([^;]+);", text):
            self.aliases.setdefault(name, type_.strip())
        for m in re.finditer(r"pub (?:safe |unsafe )?fn (\w+)\(", text):
            end = end_of(text, m.end() - 1)
            result = re.compile(r"\s*(?:->\s*([^;{]+))?;").match(text, end)
            if not result:
                continue
            before = text[max(0, m.start() - 1500):m.start()]
            before = before[max(before.rfind(";"), before.rfind("{")) + 1:]
            link = re.findall(r'#\[link_name = "([^"]+)"', before)
            types = [a.split(":", 1)[1].strip() for a in split_arguments(text[m.end():end - 1])
                     if ":" in a]
            self.functions.setdefault(m[1], ([(result[1] or "()").strip(), *types], link[0] if link else None))
        for m in re.finditer(r"pub const (\w+): (?:crate::)?(?:c_int|[\w:]+) = ([^;]+);", text):
            self.constants.setdefault(m[1], m[2].strip())

    def c_type(self, rust, declarator=""):
        name = rust.strip().replace("crate::", "").replace("ffi::", "")
        m = re.fullmatch(r"\[(.+); (.+)\]", name, re.S)
        if m:
            return self.c_type(m[1], f"{declarator}[{self.number(m[2])}]")
        for _ in range(8):
            if name.startswith(("*", "Option<", "&")):
                return f"void *{declarator}"
            if name in C_TYPES:
                return f"{C_TYPES[name]} {declarator}"
            if name.startswith("Padding<"):
                name = name[8:-1]
            elif name in self.structs:
                return f"struct rs_{name} {declarator}"
            elif name in self.aliases:
                name = self.aliases[name].replace("crate::", "")
            else:
                break
        raise Unknown(f"type {rust}")

    def encode(self, rust):
        """The encoding of an argument or a result; every pointer is "^"."""
        rust = rust.replace("crate::", "")
        if rust in ("()", "!", "c_void"):
            return "v"
        if rust.startswith(("*", "Option<", "&", "extern ", "sighandler_t")) or rust.endswith("pthread_t"):
            return "^"  # a pthread_t is a pointer in C and an integer of its size in Rust
        c = self.c_type(rust).strip()
        if c.startswith("void *"):
            return "^"
        if c == "unsigned" and rust.endswith("clockid_t"):
            return "i"  # an enumeration in C++
        if c not in ENCODINGS:
            raise Unknown(f"type {rust}")
        return ENCODINGS[c]

    def number(self, text):
        for _ in range(6):
            text = text.replace("crate::", "").replace("ffi::", "").replace("c_int::MAX", "2147483647")
            text = re.sub(r"\s+as\s+\w+", "", text).strip()
            if re.fullmatch(r"(?:\b0[xo]?[0-9a-fA-F_]*|\b[0-9][0-9_]*|[\s()|&^~<>+*/-])+", text):
                return int(eval(text.replace("/", "//"), {"__builtins__": {}}))  # digits and operators alone
            text = re.sub(r"\b[A-Za-z_]\w*", lambda m: f"({self.constants.get(m[0], m[0])})", text)
        raise Unknown(f"number {text}")

    def struct_in_c(self, name, done=None):
        """C declarations of the record `name` and of those inside it, each named rs_..."""
        done = set() if done is None else done
        if name in done:
            return ""
        done.add(name)
        before, lines = "", []
        for field, rust in self.structs[name]:
            inner = re.sub(r"[\[\]]", " ", rust.replace("crate::", "")).split(";")[0].strip()
            while inner in self.aliases and inner not in self.structs:
                inner = self.aliases[inner].replace("crate::", "")
            if inner in self.structs and not rust.strip().startswith("*"):
                before += self.struct_in_c(inner, done)
            lines.append(f"  {self.c_type(rust, field)};\n")
        return before + f"struct rs_{name} {{\n{''.join(lines)}}};\n"

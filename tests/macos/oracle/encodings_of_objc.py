"""Objective-C's type encodings in one form, so that those of two sources can be compared."""

import re

# Compilers and metadata differ in how they write these; none of it changes how a value is passed.
QUALIFIERS = "rnNoORVAj"

MEANINGS = {
    "c": "signed char", "C": "unsigned char", "B": "bool", "s": "short", "S": "unsigned short",
    "i": "int", "I": "unsigned int", "q": "long", "Q": "unsigned long", "f": "float", "d": "double",
    "v": "void", "@": "object", ":": "SEL", "^c": "char*", "^": "pointer",
}


def tag_of(record):
    """The name of an encoded record, without the underscores that private tags have."""
    return record[1:].split("=")[0].rstrip("}").lstrip("_")


def normal(encoding, arch):
    """Qualifiers, the names of classes and the contents of records that are pointed to are left out."""
    text = re.sub(r'@"[^"]*"', "@", encoding.lstrip(QUALIFIERS)).replace("@?", "@")
    if text == "Z":
        return "c" if arch == "x86_64" else "B"  # BOOL
    if text in ("*", "^t", "^T", "^c", "^C", "^Z", "^B"):
        return "^c"
    if text.startswith("^"):
        inside = normal(text[1:], arch)
        return "^" + ("{" + tag_of(inside) + "}" if inside.startswith("{") else inside)
    return {"#": "@", "l": "q", "L": "Q", "t": "c"}.get(text, text)


def same(ours, theirs):
    """Whether two types in normal form are one."""
    if ours.startswith("^{") and theirs.startswith("^{"):
        return tag_of(ours[1:]) == tag_of(theirs[1:])
    return ours == theirs


def in_words(types):
    return " ".join(MEANINGS.get(type_, type_) for type_ in types)

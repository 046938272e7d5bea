"""Everything that platform/macos-sdk declares, and what the tests declare beside it, one Item each."""

from clang.cindex import CursorKind as K
from pathlib import Path

from source_reader import Item, encoding

METHODS = (K.OBJC_INSTANCE_METHOD_DECL, K.OBJC_CLASS_METHOD_DECL)


def declarations(reader):
    headers = sorted(path for path in (reader.sdk / "Frameworks").rglob("*.h"))
    headers += sorted(reader.more.glob("*.h"))
    text = "".join(f'#import "{path}"\n' for path in headers)
    unit = reader.parse("all-declarations.mm", "objective-c++", text)
    return [item for cursor in _top(unit.cursor, reader) for item in _items(cursor, reader)]


def _top(cursor, reader):
    for child in cursor.get_children():
        if child.kind in (K.LINKAGE_SPEC, K.UNEXPOSED_DECL):
            yield from _top(child, reader)
        elif child.location.file:
            path = Path(child.location.file.name).resolve()
            if path.is_relative_to(reader.sdk) or path.is_relative_to(reader.more):
                yield child


def _items(c, reader):
    where = reader.where(c)
    if c.kind == K.OBJC_INTERFACE_DECL:
        yield Item("class", c.spelling, where, value=next(_names(c, K.OBJC_SUPER_CLASS_REF), None))
        yield from _methods(c, c.spelling, reader)
    elif c.kind == K.OBJC_CATEGORY_DECL:
        yield from _methods(c, next(_names(c, K.OBJC_CLASS_REF)), reader)
    elif c.kind == K.OBJC_PROTOCOL_DECL:
        if c.is_definition() or any(True for _ in c.get_children()):
            yield Item("protocol", c.spelling, where)
            yield from _methods(c, c.spelling, reader, "protocol method")
    elif c.kind == K.FUNCTION_DECL:
        yield reader.function(c)
    elif c.kind == K.VAR_DECL:
        yield Item("constant", c.spelling, where, [encoding(c.type)])
    elif c.kind == K.ENUM_DECL:
        yield from _enumeration(c, reader)
    elif c.kind == K.TYPEDEF_DECL:
        yield Item("type", c.spelling, where, [encoding(c.underlying_typedef_type)])
    elif c.kind == K.STRUCT_DECL and c.is_definition():
        fields = [(f.spelling, c.type.get_offset(f.spelling) // 8) for f in c.type.get_fields()]
        yield Item("record", c.spelling, where, value=(c.type.get_size(), fields))


def _names(cursor, kind):
    return (child.spelling for child in cursor.get_children() if child.kind == kind)


def _methods(cursor, owner, reader, kind="method"):
    for child in cursor.get_children():
        if child.kind in METHODS:
            yield reader.method(child, owner, kind)


def _unsigned(value, underlying):
    """The value in its type: libclang takes those of a type with a name of its own for signed ones."""
    bits = {"C": 8, "S": 16, "I": 32, "L": 64, "Q": 64}.get(underlying)
    return value % (1 << bits) if bits else value


def _enumeration(cursor, reader):
    underlying = encoding(cursor.enum_type)
    if cursor.spelling and "unnamed" not in cursor.spelling:
        yield Item("type", cursor.spelling, reader.where(cursor), [underlying])
    for child in cursor.get_children():
        if child.kind == K.ENUM_CONSTANT_DECL:
            yield Item("enumeration value", child.spelling, reader.where(child), [underlying],
                       value=_unsigned(child.enum_value, underlying))

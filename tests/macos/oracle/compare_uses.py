"""What the Objective-C++ sources take for granted beyond the declarations: methods of the runtime's own
classes, selectors that are only named, and methods that stand in the place of Apple's."""

from clang.cindex import CursorKind as K

from compare_declarations import Comparison
from declarations import METHODS

# The receivers of selectors that are only named, and whether each is a class: the application, an object of
# this project, any object, a window, or a class that is newer than the oldest system.
RECEIVERS = (("NSApplication", False), ("NSResponder", False), ("NSObject", False), ("NSWindow", False),
             ("NSAppearance", True))


def compare_uses(paths, reader, options, sdk, crates, findings):
    comparison = Comparison(sdk, crates, reader.arch, findings)
    named, own = set(), set()
    for path in paths:
        unit = reader.parse(path, "objective-c++", more=options)
        for cursor in unit.cursor.get_children():
            if cursor.location.file is None or cursor.location.file.name != str(path):
                continue
            if cursor.kind == K.OBJC_IMPLEMENTATION_DECL:
                own |= {c.spelling for c in cursor.get_children() if c.kind in METHODS}
                _compare_implemented(cursor, reader, comparison)
            named |= set(_named_selectors(cursor, reader))
            for method in _runtime_methods(cursor, reader):
                _compare_runtime_method(method, comparison)
    for selector, where in sorted(named):
        known = any(sdk.method(owner, selector, class_method) or crates.method(owner, selector, class_method)
                    for owner, class_method in RECEIVERS)
        findings.equal("named selector", where, selector, True, known or selector in own,
                       "an oracle or the sources")


def _named_selectors(cursor, reader):
    for c in cursor.walk_preorder():
        if c.kind == K.OBJC_SELECTOR_EXPR:
            text = "".join(token.spelling for token in c.get_tokens())
            yield text[text.index("(") + 1:text.rindex(")")], reader.where(c)


def _runtime_methods(cursor, reader):
    """The methods of the runtime's headers that messages are sent to."""
    for c in cursor.walk_preorder():
        method = c.referenced if c.kind == K.OBJC_MESSAGE_EXPR else None
        if method is not None and method.location.file.name.startswith(str(reader.system)):
            yield reader.method(method, method.semantic_parent.spelling, "runtime method")


def _compare_runtime_method(item, comparison):
    entry = (comparison.sdk.method("NSObject", item.name, item.class_method)
             or comparison.sdk.protocol_method("NSObject", item.name))
    types = (comparison.crates.method("NSObject", item.name, item.class_method)
             or comparison.crates.protocol_method("NSObjectProtocol", item.name, item.class_method))
    comparison.findings.known_by(item, comparison.knowing(comparison.in_metadata(item, entry),
                                                           comparison.in_crates(item, types)))


def _compare_implemented(cursor, reader, comparison):
    """A method that has the name of one of a protocol or a parent has its types too."""
    children = list(cursor.canonical.get_children())
    protocols = [c.spelling for c in children if c.kind == K.OBJC_PROTOCOL_REF]
    parents = [c.spelling for c in children if c.kind == K.OBJC_SUPER_CLASS_REF]
    for c in cursor.get_children():
        if c.kind not in METHODS:
            continue
        item = reader.method(c, cursor.spelling, "implemented method")
        entries = [comparison.sdk.protocol_method(protocol, item.name) for protocol in protocols]
        entries += [comparison.sdk.method(parent, item.name, item.class_method) for parent in parents]
        entry = next((entry for entry in entries if entry), None)
        if entry:
            comparison.in_metadata(item, entry)

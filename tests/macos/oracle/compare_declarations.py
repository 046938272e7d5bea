"""What platform/macos-sdk declares, against both oracles of the frameworks."""

import re

from encodings_of_objc import in_words, normal, same
from sdk_metadata import encoding_of, types_of
from source_reader import OLDEST


def compare_declarations(items, sdk, crates, arch, findings):
    comparison = Comparison(sdk, crates, arch, findings)
    for item in items:
        comparison.compare(item)


def version(text):
    return tuple(int(number) for number in re.findall(r"\d+", str(text))[:2])


class Comparison:
    def __init__(self, sdk, crates, arch, findings):
        self.sdk, self.crates, self.arch, self.findings = sdk, crates, arch, findings

    def compare(self, item):
        kinds = {"class": self._class, "method": self._method, "protocol": self._protocol,
                 "protocol method": self._protocol_method, "function": self._function,
                 "constant": self._constant, "enumeration value": self._value, "type": self._type,
                 "record": self._record}
        self.findings.known_by(item, kinds[item.kind](item))

    def types(self, item, theirs, oracle):
        """Compares the types of an item with the encodings that an oracle gives."""
        ours = [normal(type_, self.arch) for type_ in item.types]
        theirs = [normal(type_, self.arch) if type_ else "?" for type_ in theirs]
        if len(ours) == len(theirs):
            theirs = [mine if same(mine, other) else other for mine, other in zip(ours, theirs)]
        self.findings.equal(f"{item.kind}'s types", item.where, f"{item.title()} ({self.arch})",
                            in_words(ours), in_words(theirs), oracle.name)

    def _equal(self, item, what, ours, theirs, oracle):
        self.findings.equal(item.kind, item.where, what, ours, theirs, oracle.name)

    def _age(self, item, entry):
        introduced, deprecated = entry.get("introduced"), entry.get("deprecated")
        if introduced and version(introduced) > OLDEST[self.arch]:
            self.findings.note(f"newer than the oldest system: {item.kind} {item.title()}: "
                               f"since {introduced}, {self.arch}")
        if deprecated:
            self.findings.note(f"deprecated: {item.kind} {item.title()}")
        for word in ("removed", "obsoleted"):
            if entry.get(word):
                self._equal(item, f"{item.title()} {word}", None, entry[word], self.sdk)

    def _class(self, item):
        entry, parent = self.sdk.class_(item.name), self.crates.supers.get(item.name)
        if entry is not None:
            self._equal(item, f"{item.name}'s parent", item.value, entry.get("super"), self.sdk)
            self._age(item, entry)
        if parent is not None:
            self._equal(item, f"{item.name}'s parent", item.value, parent, self.crates)
        return self.knowing(entry is not None, parent is not None)

    def knowing(self, sdk, crates):
        return [oracle.name for oracle, knows in ((self.sdk, sdk), (self.crates, crates)) if knows]

    def in_metadata(self, item, entry):
        if entry is not None:
            # The metadata has no other word for CoreFoundation's Boolean than for BOOL.
            ours = [*item.types, *"?" * len(types_of(entry))]
            theirs = ["C" if t == "Z" and ours[i] == "C" else t for i, t in enumerate(types_of(entry))]
            self.types(item, theirs, self.sdk)
            self._equal(item, f"{item.title()} takes more", item.variadic, entry.get("variadic", False),
                        self.sdk)
            self._age(item, entry)
        return entry is not None

    def in_crates(self, item, types):
        if types is not None:
            self.types(item, types, self.crates)
        return types is not None

    def _method(self, item):
        where = item.owner, item.name, item.class_method
        return self.knowing(self.in_metadata(item, self.sdk.method(*where)),
                             self.in_crates(item, self.crates.method(*where)))

    def _protocol(self, item):
        return self.knowing(self.sdk.find("formal_protocols", item.name) is not None,
                             item.name in self.crates.protocols)

    def _protocol_method(self, item):
        entry = self.sdk.protocol_method(item.owner, item.name)
        types = self.crates.protocol_method(item.owner, item.name, item.class_method)
        return self.knowing(self.in_metadata(item, entry), self.in_crates(item, types))

    def _function(self, item):
        return self.knowing(self.in_metadata(item, self.sdk.find("functions", item.name)),
                             self.in_crates(item, self.crates.function(item.name)))

    def _constant(self, item):
        entry, type_ = self.sdk.find("externs", item.name), self.crates.constant(item.name)
        if entry is not None:
            self.types(item, [encoding_of(entry)], self.sdk)
            self._age(item, entry)
        return self.knowing(entry is not None, self.in_crates(item, type_ and [type_]))

    def _value(self, item):
        entry, number = self.sdk.enum_value(item.name), self.crates.value(item.name)
        if entry is not None:
            self._equal(item, item.name, item.value, entry["value"], self.sdk)
            self._age(item, entry)
            if entry.get("enum"):
                self.types(item, [self.sdk.type(entry["enum"])], self.sdk)
        if number is not None:
            self._equal(item, item.name, item.value, number, self.crates)
        return self.knowing(entry is not None, number is not None)

    def _type(self, item):
        theirs, in_rust = self.sdk.type(item.name), self.crates.type(item.name)
        plain = theirs is not None and len(theirs) <= 2
        if plain:
            self.types(item, [theirs], self.sdk)
        return self.knowing(plain, self.in_crates(item, in_rust and [in_rust]))

    def _record(self, item):
        entry, layout = self.sdk.find("structs", item.name), self.crates.record(item.name)
        if entry is not None:
            self._equal(item, f"{item.name}'s fields", [f[0] for f in item.value[1]], entry["fieldnames"],
                        self.sdk)
        if layout is not None:
            self._equal(item, f"{item.name} ({self.arch})", item.value, layout, self.crates)
        return self.knowing(entry is not None, layout is not None)

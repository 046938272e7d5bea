"""PyObjC's metadata: what its scanner read in the headers of Xcode's SDK, one file for each processor."""

import json
from pathlib import Path

FRAMEWORKS = {"Foundation": "cocoa", "AppKit": "cocoa", "CoreFoundation": "cocoa", "CoreGraphics": "quartz"}


class SdkMetadata:
    name = "PyObjC's metadata"

    def __init__(self, folder, arch):
        self.frameworks, self.sdks = {}, set()
        for framework, package in FRAMEWORKS.items():
            pattern = f"pyobjc_framework_{package}-*/metadata/raw.{framework}/{arch}-*.fwinfo"
            text = sorted(Path(folder).glob(pattern))[-1].read_text()
            data = json.loads(text[text.index("{"):])
            self.frameworks[framework] = data["definitions"]
            self.sdks.add(data["sdk"])

    def _all(self, kind, name):
        return [definitions[kind][name] for definitions in self.frameworks.values()
                if name in definitions[kind]]

    def find(self, kind, name):
        return next(iter(self._all(kind, name)), None)

    def class_(self, name):
        """The class itself rather than a category of it in another framework; or None."""
        found = sorted(self._all("classes", name), key=lambda entry: entry.get("super") is None)
        return found[0] if found else None

    def method(self, owner, selector, class_method):
        """The method of a class, of one of its parents, or of what every object has; or None."""
        while owner:
            for entry in self._all("classes", owner):
                for methods in (entry["methods"], *(category.get("methods", [])
                                                    for category in entry.get("categories", [])
                                                    if isinstance(category, dict))):
                    for method in methods:
                        if (method["selector"], method["class_method"]) == (selector, class_method):
                            return method
            parent = self.class_(owner)
            owner = parent and parent.get("super")
        return self._of_every_object(selector, class_method)

    def _of_every_object(self, selector, class_method):
        protocols = [self.find("formal_protocols", "NSObject")]
        for definitions in self.frameworks.values():
            protocols += definitions["informal_protocols"].values()
        for protocol in protocols:
            for method in protocol["methods"] if protocol else ():
                if (method["selector"], method["class_method"]) == (selector, class_method):
                    return method
        return None

    def protocol_method(self, protocol, selector):
        entry = self.find("formal_protocols", protocol)
        return next((m for m in entry["methods"] if m["selector"] == selector), None) if entry else None

    def enum_value(self, name):
        entry = self.find("enum", name)
        if entry is None:
            other = self.find("aliases", name)
            return self.enum_value(other) if other is not None else None
        return entry

    def type(self, name):
        entry = self.find("enum_type", name)
        return entry["type"] if entry is not None else self.find("typedefs", name)


def types_of(entry):
    """The encodings of the result and the arguments of a method or a function."""
    return [encoding_of(part) for part in [entry["retval"], *entry.get("args", [])]]


def encoding_of(part):
    # A parameter of a generic class is an object.
    if part["typestr"] == "?" and part.get("type_name") in ("ObjectType", "KeyType", None):
        return "@"
    return part["typestr"]

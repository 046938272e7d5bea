#!/usr/bin/env python3
"""Reads an Info.plist with the library's parser, compares it with what Apple documents, and prints it as
JSON with sorted keys. Ends with 1, and a line for each fault, if a required entry is missing, an entry has
another type or form than documented, or is not one of those below.

Usage: info_plist.py FILE [KEY...]   (KEYs are entries that the project adds)
"""
import json
import plistlib
import re
import sys

NUMBERS = re.compile(r"[0-9]+(\.[0-9]+){0,2}")  # one to three whole numbers
IDENTIFIER = re.compile(r"[A-Za-z0-9.-]+")
CONTENT_TYPE = IDENTIFIER
SCHEME = re.compile(r"[a-z][a-z0-9+.-]*")
ROLE = re.compile("Editor|Viewer|Shell|QLGenerator|None")
RANK = re.compile("Owner|Default|Alternate|None")

TYPE_DECLARATION = {
    "UTTypeConformsTo": [CONTENT_TYPE],
    "UTTypeDescription": str,
    "UTTypeIconFile": str,
    "UTTypeIdentifier": CONTENT_TYPE,
    "UTTypeTagSpecification": {"public.filename-extension": [str]},
}

ENTRIES = {
    "CFBundleDevelopmentRegion": str,
    "CFBundleDisplayName": str,
    "CFBundleDocumentTypes": [{
        "CFBundleTypeExtensions": [str],
        "CFBundleTypeIconFile": str,
        "CFBundleTypeName": str,
        "CFBundleTypeRole": ROLE,
        "LSHandlerRank": RANK,
        "LSItemContentTypes": [CONTENT_TYPE],
    }],
    "CFBundleExecutable": str,
    "CFBundleIconFile": str,
    "CFBundleIdentifier": IDENTIFIER,
    "CFBundleInfoDictionaryVersion": re.compile(r"6\.0"),
    "CFBundleName": str,
    "CFBundlePackageType": re.compile("APPL"),
    "CFBundleShortVersionString": str,
    "CFBundleURLTypes": [{
        "CFBundleTypeRole": ROLE,
        "CFBundleURLName": str,
        "CFBundleURLSchemes": [SCHEME],
    }],
    "CFBundleVersion": NUMBERS,
    "LSApplicationCategoryType": re.compile(r"public\.app-category\.[a-z-]+"),
    "LSMinimumSystemVersion": NUMBERS,
    "NSAppTransportSecurity": {
        "NSAllowsLocalNetworking": bool,
        "NSExceptionDomains": dict,
    },
    "NSHighResolutionCapable": bool,
    "NSHumanReadableCopyright": str,
    "NSPrincipalClass": str,
    "UTExportedTypeDeclarations": [TYPE_DECLARATION],
    "UTImportedTypeDeclarations": [TYPE_DECLARATION],
}

REQUIRED = [
    "CFBundleDevelopmentRegion", "CFBundleDisplayName", "CFBundleExecutable", "CFBundleIconFile",
    "CFBundleIdentifier", "CFBundleInfoDictionaryVersion", "CFBundleName", "CFBundlePackageType",
    "CFBundleShortVersionString", "CFBundleVersion", "LSMinimumSystemVersion",
    "NSHighResolutionCapable", "NSPrincipalClass",
]


def faults(value, form, place):
    if isinstance(form, re.Pattern):
        if not isinstance(value, str) or not form.fullmatch(value):
            yield f"{place} is {value!r}"
    elif isinstance(form, list):
        if not isinstance(value, list) or not value:
            yield f"{place} is no list, or an empty one"
            return
        for i, element in enumerate(value):
            yield from faults(element, form[0], f"{place}[{i}]")
    elif isinstance(form, dict):
        if not isinstance(value, dict):
            yield f"{place} is no table"
            return
        for key, element in value.items():
            if key in form:
                yield from faults(element, form[key], f"{place}.{key}")
            else:
                yield f"{place} has the unknown entry {key}"
    elif type(value) is not form:
        yield f"{place} is {type(value).__name__}, not {form.__name__}"


def main():
    with open(sys.argv[1], "rb") as file:
        plist = plistlib.load(file)
    added = {key: type(plist.get(key)) for key in sys.argv[2:]}
    found = list(faults(plist, {**ENTRIES, **added}, "Info.plist"))
    found += [f"{key} is missing" for key in [*REQUIRED, *added] if key not in plist]
    print(json.dumps(plist, ensure_ascii=False, sort_keys=True))
    print("\n".join(found), end="", file=sys.stderr)
    return 1 if found else 0


sys.exit(main())

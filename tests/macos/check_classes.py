"""The Objective-C classes: variables, and methods in the order of their lists."""

import mach_o
from expected import classes


def normalized(entry, arch):
    # BOOL is a signed char on x86-64 and a bool on arm64.
    return entry[:-1] + "c" if arch == "arm64" and entry.endswith(" B") else entry


def check_classes(report, path, arch, title):
    found = {c.name: [normalized(line, arch) for line in c.lines()]
             for c in mach_o.objc_classes(path)}
    wanted = classes()
    report.same_names(f"{title}: defines the classes in expected/classes", found, wanted)
    for name in sorted(set(found) & set(wanted)):
        report.check(f"{title}: {name} has its variables and methods in order",
                     found[name] == wanted[name],
                     ["expected:", *wanted[name], "found:", *found[name]])

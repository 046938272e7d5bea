"""The plain C++ modules under every warning that the compiler has, with the macOS headers."""

from concurrent.futures import ThreadPoolExecutor
from os import cpu_count

import mach_o
from check_stubs import compile_commands, compile_with

# Warnings that ask for another language or another style than this project's, each with its reason.
NOT_WANTED = {
    "c++98-compat": "the language is C++17",
    "c++98-compat-pedantic": "the language is C++17",
    "padded": "the layout of a record is the compiler's",
    "poison-system-directories": "Apple's layout of header folders is not followed here",
    "unsafe-buffer-usage": "the interfaces are C texts and buffers",
    "weak-vtables": "an exception class may stand in its header alone",
    "global-constructors": "the argument tables are allocated before main",
}


def problems_in(command):
    path, directory, arguments = command
    options = ["-Weverything", *(f"-Wno-{name}" for name in NOT_WANTED)]
    status, messages = compile_with(directory, arguments, *options)
    problems = [line for line in messages.splitlines() if ": error: " in line]
    return path, status, problems or messages.splitlines()[-5:]


def check_warnings(report, build):
    with ThreadPoolExecutor(cpu_count()) as pool:
        results = list(pool.map(problems_in, compile_commands(build, ".cpp")))
    report.check(f"{build.name}: plain C++ sources were found", len(results) > 20, [len(results)])
    for path, status, problems in results:
        name = path.relative_to(mach_o.SOURCE)
        report.check(f"{name} compiles for macOS under every warning", status == 0, problems)

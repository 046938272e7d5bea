"""Finds the places of a C++ or Objective-C++ file where it can be changed, and what each is changed into.

Only the text is looked at, formatted as clang-format leaves it: a change that the compiler does not take is not
counted. Comments, texts, preprocessor lines and calls that only log are left alone, and so is free(), which is
what the search for lost memory looks at.
"""

import re
from dataclasses import dataclass

# Calls of which nobody but a log, a leak search or the compiler would notice anything.
IGNORED_CALLS = {"logMessage", "NSLog", "printf", "puts", "fflush", "static_assert"}
IGNORED_CALLS |= {"free", "release", "retain", "autorelease", "drain"}
KEYWORDS = {"if", "while", "for", "switch", "return", "sizeof", "defined", "catch", "else", "do"}


@dataclass(frozen=True)
class Mutant:
    file: str
    start: int
    end: int
    kind: str
    old: str
    new: str
    line: int
    before: str
    after: str

    def applied(self, text):
        return text[: self.start] + self.new + text[self.end :]

    def key(self):
        return (self.file, self.before, self.after)


def blanked(text):
    return "".join("\n" if character == "\n" else " " for character in text)


TRIVIA = re.compile(
    r"""//[^\n]*|/\*.*?\*/|@?"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])'|^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*""",
    re.S | re.M | re.X,
)


def closing(text, opening):
    """The place of the parenthesis that closes the one at `opening`, or -1."""
    depth = 0
    for at in range(opening, len(text)):
        depth += {"(": 1, ")": -1}.get(text[at], 0)
        if depth == 0:
            return at
    return -1


def masked(text):
    """The same text, as long, with blanks for everything that is not to be changed."""
    code = TRIVIA.sub(lambda match: blanked(match.group()), text)
    for match in reversed(list(re.finditer(r"\b(?:logMessage|NSLog|printf|puts|static_assert)\(", code))):
        end = closing(code, match.end() - 1)
        # The statement's end stays, so that the next one can be seen to begin.
        code = code[: match.start()] + blanked(code[match.start() : end + 1]) + code[end + 1 :]
    return code


def conditions(code):
    """(start, end) of the conditions of if, while and for."""
    for match in re.finditer(r"\b(if|while|for) \(", code):
        start, end = match.end(), closing(code, match.end() - 1)
        if match.group(1) == "for":
            parts = code[start:end].split(";")
            if len(parts) != 3 or not parts[1].strip():
                continue
            start += len(parts[0]) + 1
            end = start + len(parts[1])
            start += len(parts[1]) - len(parts[1].lstrip())
        # One that declares a name is not an expression.
        if code[start:end].strip() and not re.search(r"[^=!<>]=[^=]", code[start:end]):
            yield start, end


def negations(code, text):
    for start, end in conditions(code):
        yield start, end, "negated", f"!({text[start:end]})"
    whole = {(start, end) for start, end in conditions(code)}
    for match in re.finditer(r"\s(==|!=)\s", code):
        # Alone in its condition this would be the same change.
        alone = any(
            start <= match.start() < end and not re.search(r"&&|\|\||[=!]=", code[start : match.start()] + code[match.end() : end])
            for start, end in whole
        )
        if not alone:
            yield *match.span(1), "negated", "!=" if match.group(1) == "==" else "=="


def limits(code, _):
    exchanged = {"<": "<=", "<=": "<", ">": ">=", ">=": ">"}
    for match in re.finditer(r"(?<=\s)(<=|>=|<|>)(?=\s)", code):
        yield *match.span(1), "limit", exchanged[match.group(1)]


def connections(code, _):
    for match in re.finditer(r"(?<=\s)(&&|\|\|)(?=\s)", code):
        yield *match.span(1), "and/or", "||" if match.group(1) == "&&" else "&&"


def constants(code, text):
    for match in re.finditer(r"(?<![\w.])(0[xX][0-9a-fA-F]+|\d+)([uUlL]*)(?![\w.])", code):
        line = code[code.rfind("\n", 0, match.start()) + 1 : match.start()]
        # A buffer that is longer by one byte is not noticed, and a pure virtual function is no number.
        if re.search(r"(?:char|\w) \w+\[$", line) or re.search(r"\) = $", line):
            continue
        yield *match.span(), "constant", f"({match.group()} + 1)"


def statements(code):
    """(start, end) of the statements that are calls, and the name of the called function."""
    for match in re.finditer(r"(?<=[;{}])\s*((?:\w+(?:\.|->|::))*(\w+))\(", code):
        end = closing(code, match.end() - 1)
        if end > 0 and code[end + 1 : end + 2] == ";":
            yield match.start(1), end + 2, match.group(2)
    for match in re.finditer(r"(?<=[;{}])\s*(\[[^;{}]*\b(\w+)(?::[^;{}]*)?\];)", code):
        yield *match.span(1), match.group(2)


def drops(code, _):
    for start, end, name in statements(code):
        if name not in IGNORED_CALLS | KEYWORDS:
            yield start, end, "dropped", ";"


def functions_of_truth(code):
    """(start, end) of the bodies of the functions that return a bool."""
    for match in re.finditer(r"^(?:static |\[\[nodiscard\]\] |inline )*bool [\w:]+\(|^[-+] \(BOOL\)", code, re.M):
        end = code.find("\n}", match.end())
        if ";" not in code[match.end() : max(code.find("{", match.end()), match.end())]:
            yield match.end(), end


def returns(code, text):
    for start, end in functions_of_truth(code):
        for match in re.finditer(r"\breturn ([^;]+);", code[start:end]):
            first, last = start + match.start(1), start + match.end(1)
            opposite = {"true": "false", "false": "true", "YES": "NO", "NO": "YES"}
            yield first, last, "returned", opposite.get(text[first:last], f"!({text[first:last]})")


KINDS = (negations, limits, connections, constants, drops, returns)


def collapsed(text):
    return " ".join(text.split())


def mutants(file, text):
    """All mutants of a file, from its beginning to its end."""
    code = masked(text)
    found = {}
    for kind in KINDS:
        for start, end, name, new in kind(code, text):
            lines = text.rfind("\n", 0, start) + 1, text.find("\n", end)
            mutant = Mutant(
                file, start, end, name, text[start:end], new, text.count("\n", 0, start) + 1,
                collapsed(text[lines[0] : lines[1]]),
                collapsed(text[lines[0] : start] + new + text[end : lines[1]]),
            )
            found.setdefault((start, end, new), mutant)
    return sorted(found.values(), key=lambda mutant: (mutant.start, mutant.end, mutant.new))

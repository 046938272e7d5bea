"""Rust source as text: brackets, arguments, and what its conditions leave out for one target."""

import re


def end_of(text, at):
    """The position after the bracket that closes the one at `at`."""
    close = {"(": ")", "{": "}", "[": "]"}[text[at]]
    open_, depth = text[at], 0
    for m in re.compile("[" + re.escape(open_ + close) + "]").finditer(text, at):
        depth += 1 if m[0] == open_ else -1
        if depth == 0:
            return m.end()
    return len(text)


def split_arguments(text):
    """The parts between the commas that are inside no bracket."""
    parts, depth, start = [], 0, 0
    for i, c in enumerate(text):
        depth += c in "(<[{"
        depth -= c in ")]}" or (c == ">" and text[i - 1] != "-")
        if c == "," and depth == 0:
            parts.append(text[start:i])
            start = i + 1
    parts.append(text[start:])
    return [part.strip() for part in parts if part.strip()]


class Conditions:
    def __init__(self, arch):
        self.facts = {("target_os", "macos"), ("target_vendor", "apple"), ("target_family", "unix"),
                      ("target_pointer_width", "64"), ("target_endian", "little"), ("target_env", ""),
                      ("target_arch", {"arm64": "aarch64"}.get(arch, arch))}

    def holds(self, condition):
        condition = condition.strip()
        m = re.match(r"(all|any|not)\s*\(", condition)
        if m:
            inside = condition[m.end():end_of(condition, m.end() - 1) - 1]
            values = [self.holds(part) for part in split_arguments(inside)]
            return not values[0] if m[1] == "not" else {"all": all, "any": any}[m[1]](values)
        m = re.fullmatch(r'(\w+)\s*=\s*"([^"]*)"', condition)
        return (m[1], m[2]) in self.facts if m else condition == "unix"

    def apply(self, text):
        """The text without comments and without what the conditions leave out."""
        text = re.sub(r"//[^\n]*|/\*.*?\*/", "", text, flags=re.S)
        while m := re.search(r"cfg_if!\s*\{", text):
            end = end_of(text, m.end() - 1)
            text = text[:m.start()] + self._branch(text[m.end():end - 1]) + text[end:]
        return self._without_left_out(text)

    def _branch(self, body):
        """The branch of a cfg_if! that is taken."""
        at = 0
        while m := re.compile(r"\s*(?:else\s*)?if\s*#\[cfg\(").match(body, at):
            close = end_of(body, m.end() - 1)
            start = body.index("{", close)
            at = end_of(body, start)
            if self.holds(body[m.end():close - 1]):
                return body[start + 1:at - 1]
        m = re.compile(r"\s*else\s*\{").match(body, at)
        return body[m.end():end_of(body, m.end() - 1) - 1] if m else ""

    def _without_left_out(self, text):
        at = 0
        while m := re.compile(r"#\[cfg(_attr)?\(").search(text, at):
            close = end_of(text, m.end() - 1)
            end = text.index("]", close) + 1
            inside = text[m.end():close - 1]
            kept = ""
            if m[1]:
                condition, attribute = split_arguments(inside)[:2]
                kept = f"#[{attribute}]" if self.holds(condition) else ""
            elif not self.holds(inside):
                end = item_end(text, end)
            text = text[:m.start()] + kept + text[end:]
            at = m.start() + len(kept)
        return text


def item_end(text, at):
    """The end of the item, the field or the branch that begins at `at`."""
    depth = 0
    for i in range(at, len(text)):
        c = text[i]
        depth += c in "([{"
        depth -= c in ")]}"
        if depth < 0:
            return i
        if depth == 0 and c in "};,":
            return i + 1
    return len(text)

"""Puts all mutants of a file into it at once, each behind a question for its number. See switch.h."""

import re
from dataclasses import dataclass, field

import mutants as places

OPERATORS = {"==", "!=", "<", "<=", ">", ">=", "&&", "||"}


def is_assignment(code, at):
    """A comparison's sign is none; one that adds, say, is."""
    return code[at] == "=" and code[at + 1] != "=" and code[at - 1] not in "=!<>"


def first_of_operands(code, at):
    """Where the whole expression begins whose operator stands at `at`."""
    depth = 0
    while at > 0:
        at -= 1
        if code[at] in ")]}":
            depth += 1
        elif code[at] in "([{":
            if depth == 0:
                return at + 1
            depth -= 1
        elif depth == 0 and code[at] == ":" and code[at - 1] == ":":
            at -= 1
        elif depth == 0 and (code[at] in ",;?:" or is_assignment(code, at)):
            return at + 1
        elif depth == 0 and re.search(r"\breturn$", code[max(at - 6, 0) : at + 1]):
            return at + 1
    return at


def last_of_operands(code, at):
    depth = 0
    while at < len(code):
        if code[at] in "([{":
            depth += 1
        elif code[at] in ")]}":
            if depth == 0:
                return at
            depth -= 1
        elif depth == 0 and code[at : at + 2] == "::":
            at += 1
        elif depth == 0 and code[at] in ",;?:":
            return at
        at += 1
    return at


def region(text, code, mutant):
    """(start, end) of what a question can be put around."""
    if mutant.old not in OPERATORS:
        return mutant.start, mutant.end
    start, end = first_of_operands(code, mutant.start), last_of_operands(code, mutant.end)
    # A letter in quotes is a blank in the code, but an operand.
    return start + len(text[start:end]) - len(text[start:end].lstrip()), start + len(text[start:end].rstrip())


@dataclass
class Node:
    start: int
    end: int
    numbered: list = field(default_factory=list)
    parts: list = field(default_factory=list)


def nodes_of(text, numbered):
    """The outermost regions, each with those inside of it; a region that only overlaps another is left out."""
    code = places.masked(text)
    by_place = {}
    for number, mutant in numbered:
        start, end = region(text, code, mutant)
        by_place.setdefault((start, end), Node(start, end)).numbered.append((number, mutant))
    outermost, open_nodes = [], []
    for node in sorted(by_place.values(), key=lambda node: (node.start, -node.end)):
        while open_nodes and open_nodes[-1].end <= node.start:
            open_nodes.pop()
        if open_nodes and node.end > open_nodes[-1].end:
            continue
        (open_nodes[-1].parts if open_nodes else outermost).append(node)
        open_nodes.append(node)
    return outermost


class Woven:
    """The woven text, and where each mutant came to lie in it."""

    def __init__(self, text, numbered):
        self.text = text
        self.places = []
        self.output = ""
        self.put(0, len(text), nodes_of(text, numbered))

    def put(self, start, end, nodes):
        for node in nodes:
            self.output += self.text[start : node.start]
            self.put_node(node)
            start = node.end
        self.output += self.text[start:end]

    def put_node(self, node):
        begin = len(self.output)
        dropped = any(mutant.kind == "dropped" for _, mutant in node.numbered)
        truth = any(mutant.kind in ("negated", "returned", "and/or", "limit") for _, mutant in node.numbered)
        for number, mutant in node.numbered:
            if dropped:
                self.output += f"{{ if (isMutant({number})) {{ ; }} else {{ "
            else:
                changed = self.text[node.start : mutant.start] + mutant.new + self.text[mutant.end : node.end]
                self.output += f"(isMutant({number}) ? {'bool' if truth else ''}({changed}) : "
        self.output += "" if dropped else ("bool(" if truth else "(")
        self.put(node.start, node.end, node.parts)
        self.output += "}" * (2 * len(node.numbered)) if dropped else ")" * (1 + len(node.numbered))
        self.places += [(begin, len(self.output), number) for number, _ in node.numbered]

    def numbers_at(self, line):
        """The mutants in this line that hold no others which are in it too."""
        starts = [0] + [match.end() for match in re.finditer("\n", self.output)]
        begin = starts[line - 1]
        end = starts[line] if line < len(starts) else len(self.output)
        touching = [place for place in self.places if place[0] < end and place[1] > begin]
        inner = [
            place for place in touching
            if not any(place[0] <= other[0] and other[1] <= place[1] and other[:2] != place[:2] for other in touching)
        ]
        return {number for _, _, number in inner}

    def numbers(self):
        return {number for _, _, number in self.places}

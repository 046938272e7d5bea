"""What was compared, what differs, and what could not be compared."""

from collections import Counter


class Findings:
    def __init__(self):
        self.compared = Counter()  # by kind and oracle
        self.mismatches = []
        self.notes = set()         # what the reader of a change should see: no line numbers in them

    def equal(self, kind, where, what, ours, theirs, oracle):
        self.compared[kind, oracle] += 1
        if ours != theirs:
            self.mismatches.append(f"{where}: {kind} {what}: {ours} here, {theirs} in {oracle}")

    def note(self, text):
        self.notes.add(text)

    def known_by(self, item, oracles):
        """Notes what fewer than two oracles know; `oracles` are the names of those that know it."""
        if len(oracles) < 2:
            self.note(f"{f'only in {oracles[0]}' if oracles else 'in no oracle'}: {item.kind} {item.title()}")

    def add(self, other):
        self.compared += other.compared
        self.mismatches += [text for text in other.mismatches if text not in self.mismatches]
        self.notes |= other.notes

"""Small changes to C++ text, of which each should make a test fail: a condition flipped, a call dropped, a constant
changed. Works on formatted lines: an operator has blanks around it, a bracket of a template has none.
"""

import dataclasses
import pathlib
import re

# What each operator becomes.
FLIPS = {" == ": " != ", " != ": " == ", " < ": " >= ", " >= ": " < ", " > ": " <= ", " <= ": " > ", " && ": " || ",
         " || ": " && "}
OPERATOR = re.compile("|".join(re.escape(operator) for operator in sorted(FLIPS, key=len, reverse=True)))
# Of one operand, as in `if (!found)`.
NOT = re.compile(r"(?<=[(\s])!(?=[A-Za-z_:(])")
WORD = re.compile(r"\b(?:true|false)\b")
NUMBER = re.compile(r"(?<![\w.'])(?:0[xX][0-9A-Fa-f']+|\d[\d']*)(?:u|U|ull|ULL)?(?![\w.'])")
# A statement that is nothing but a call.
CALL = re.compile(r"^\s+(?:[A-Za-z_]\w*(?:::|\.|->))*[A-Za-z_]\w*(?:<[\w:, ]+>)?\(.*\);\s*$")
NO_CALL = re.compile(r"^\s*(?:return|throw|delete|static_assert|using|typedef|if|for|while|switch)\b")
# Nothing that runs.
LEFT_ALONE = re.compile(r"^\s*(?:#|static_assert|using |template|namespace |extern )")


@dataclasses.dataclass(frozen=True)
class Mutant:
    file: str  # relative to the tree
    line: int  # from 1
    column: int  # from 0
    kind: str  # "condition", "call" or "constant"
    before: str  # what is replaced
    after: str
    text: str  # the whole line as it was, without the blanks around it
    nth: int  # among the mutants of the line, from 1

    def apply(self, source: str) -> str:
        lines = source.split("\n")
        line = lines[self.line - 1]
        assert line[self.column:self.column + len(self.before)] == self.before, self
        lines[self.line - 1] = line[:self.column] + self.after + line[self.column + len(self.before):]
        return "\n".join(lines)

    @property
    def key(self) -> str:
        """Names the mutant as long as its line stays, wherever that moves."""
        return f"{self.file}: {self.text}: {self.before.strip()} -> {self.after.strip()}, {self.nth} in the line"


def without_texts(source: str) -> str:
    """Comments and literals of texts and characters become blanks; lines and columns stay."""
    token = re.compile(r'//[^\n]*|/\*.*?\*/|L?"(?:\\.|[^"\\\n])*"|L?\'(?:\\.|[^\'\\\n])+\'(?!\w)', re.DOTALL)
    return token.sub(lambda match: re.sub(r"[^\n]", " ", match.group()), source)


def changed_number(text: str) -> str:
    digits = re.match(r"(?:0[xX][0-9A-Fa-f']+|[\d']+)", text).group()
    suffix = text[len(digits):]
    value = int(digits.replace("'", ""), 0 if digits[:2].lower() == "0x" else 10) + 1
    return (hex(value) if digits[:2].lower() == "0x" else str(value)) + suffix


def mutants_of(file: str, source: str) -> list[Mutant]:
    """All of a source, in the order of the text."""
    found = []
    for number, (line, code) in enumerate(zip(source.split("\n"), without_texts(source).split("\n")), start=1):
        if LEFT_ALONE.match(code):
            continue
        changes = [(match.start(), "condition", match.group(), FLIPS[match.group()]) for match in OPERATOR.finditer(code)]
        changes += [(match.start(), "condition", "!", "") for match in NOT.finditer(code)]
        changes += [(match.start(), "constant", match.group(), "false" if match.group() == "true" else "true")
                    for match in WORD.finditer(code)]
        changes += [(match.start(), "constant", match.group(), changed_number(match.group()))
                    for match in NUMBER.finditer(code)]
        if CALL.match(code) and not NO_CALL.match(code):
            changes.append((len(line) - len(line.lstrip()), "call", line.strip(), ";"))
        found += [Mutant(file, number, *change, line.strip(), nth) for nth, change in enumerate(changes, start=1)]
    return found


def mutants_in(root: pathlib.Path, folders: list[str]) -> list[Mutant]:
    found = []
    for folder in folders:
        for path in sorted((root / folder).rglob("*.cpp")):
            found += mutants_of(path.relative_to(root).as_posix(), path.read_text(encoding="utf-8"))
    return found

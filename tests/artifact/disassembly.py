"""Reads objdump's disassembly."""

import re
import subprocess

FUNCTION = re.compile(r"^[0-9a-f]+ <(.+)>:$")
INSTRUCTION = re.compile(r"^ *([0-9a-f]+):\t(\S+) *([0-9a-f]*)(.*)$")


def short_name(function):
    """Without namespaces, arguments and what the compiler adds: LibraryPath."""
    function = function.replace("(anonymous namespace)::", "")
    return re.sub(r"\[.*", "", function.split("(")[0]).split("::")[-1].strip()


def guarded_functions(lines):
    """The functions that compare the guard's value and call the failure when it has changed, as a jump to that call shows.
    And all functions."""
    functions, guarded = set(), set()
    for line in lines:
        if match := FUNCTION.match(line):
            function, jumps, reads = short_name(match[1]), set(), False
            functions.add(function)
        elif match := INSTRUCTION.match(line):
            address, mnemonic, target, rest = match.groups()
            reads = reads or "__stack_chk_guard" in rest
            if mnemonic.startswith("j"):
                jumps.add(target)
            elif mnemonic == "call" and "<__stack_chk_fail>" in rest and reads and address in jumps:
                guarded.add(function)
    return functions, guarded


def disassemble(objdump, path):
    """The lines, with the names of functions."""
    command = [objdump, "--disassemble", "--demangle", "--no-show-raw-insn", str(path)]
    return subprocess.run(command, capture_output=True, check=True, encoding="utf-8").stdout.splitlines()

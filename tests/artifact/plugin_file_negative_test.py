"""Breaks a copy of the plug-in in one way after the other: the checker must name the check, and no other."""

import argparse
import struct
import sys
import tempfile
import unittest
from pathlib import Path
from types import SimpleNamespace

import pefile

from disassembly import INSTRUCTION, disassemble
from memory_checks import has_shadow_stack_mark
from plugin_checks import CHECKS, WAIVERS, findings_of
from plugin_file import Known, PluginFile

options = None


class Patch:
    """The file's bytes, and where its parts are."""

    def __init__(self, file):
        self.file = file
        self.pe = file.pe
        self.bytes = bytearray(file.bytes)

    def number(self, structure, field, change):
        """Changes a field of a header, given by its structure of pefile and its name."""
        offset = structure.get_field_absolute_offset(field)
        form = {1: "<B", 2: "<H", 4: "<I", 8: "<Q"}[self.size_of(structure, field)]
        (value,) = struct.unpack_from(form, self.bytes, offset)
        struct.pack_into(form, self.bytes, offset, change(value))

    @staticmethod
    def size_of(structure, field):
        relative = structure.get_field_relative_offset
        after = [relative(each) for keys in structure.__keys__ for each in keys]
        return min(each for each in [*after, structure.sizeof()] if each > relative(field)) - relative(field)

    def text(self, old, new, begin=0):
        """The first occurrence; both are equally long."""
        assert len(old) == len(new), (old, new)
        offset = self.bytes.index(old, begin)
        self.bytes[offset : offset + len(old)] = new

    def section(self, name):
        return next(part for part in self.pe.sections if part.Name.rstrip(b"\0") == name)

    def place_of(self, section):
        return self.section(section).PointerToRawData


def clears(flag):
    return lambda patch: patch.number(patch.pe.OPTIONAL_HEADER, "DllCharacteristics", lambda value: value & ~flag)


def sets(flag):
    return lambda patch: patch.number(patch.pe.OPTIONAL_HEADER, "DllCharacteristics", lambda value: value | flag)


def marks(name, flag):
    return lambda patch: patch.number(patch.section(name), "Characteristics", lambda value: value | flag)


def header(field, change):
    return lambda patch: patch.number(patch.pe.FILE_HEADER, field, change)


def replaces(old, new, section):
    return lambda patch: patch.text(old, new, patch.place_of(section))


def replaces_text(old, new):
    """In the resources."""
    return replaces(old.encode("utf-16-le"), new.encode("utf-16-le"), b".rsrc")


def exports_another(patch):
    """A new table in place of the old one, with room to spare in its part of the file."""
    part = patch.section(b".edata")
    old = patch.pe.DIRECTORY_ENTRY_EXPORT.struct
    entry = patch.pe.DIRECTORY_ENTRY_EXPORT.symbols[0].address
    begin = part.VirtualAddress
    functions, names, ordinals, texts = (begin + offset for offset in (40, 48, 56, 60))
    table = struct.pack("<IIHHIIIIIII", 0, 0, 0, 0, old.Name, old.Base, 2, 2, functions, names, ordinals)
    table += struct.pack("<IIIIHH", entry, entry, texts, texts + 11, 0, 1) + b"PluginMain\0PluginOther\0"
    name = b"Plugin.aip\0"
    table = table[:12] + struct.pack("<I", begin + len(table)) + table[16:] + name
    assert len(table) <= part.SizeOfRawData
    patch.bytes[part.PointerToRawData : part.PointerToRawData + len(table)] = table
    directory = patch.pe.OPTIONAL_HEADER.DATA_DIRECTORY[pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_EXPORT"]]
    patch.number(directory, "Size", lambda _: len(table))


def has_late_imports(patch):
    kind = pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT"]
    directory = patch.pe.OPTIONAL_HEADER.DATA_DIRECTORY[kind]
    imports = patch.pe.OPTIONAL_HEADER.DATA_DIRECTORY[pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_IMPORT"]]
    patch.number(directory, "VirtualAddress", lambda _: imports.VirtualAddress)
    patch.number(directory, "Size", lambda _: 64)


def does_not_jump_to_the_failure(patch):
    """The comparison of one function leads nowhere: its conditional jumps to the failure become nothing."""
    lines = disassemble(options.objdump, options.plugin)
    begin = next(i for i, line in enumerate(lines) if line.endswith("<CheckHeap(char const*, int)>:"))
    end = next(i for i in range(begin, len(lines)) if "<__stack_chk_fail>" in lines[i])
    failure = INSTRUCTION.match(lines[end])[1]
    for line in lines[begin + 1 : end]:
        address, mnemonic, target, _ = INSTRUCTION.match(line).groups()
        if mnemonic == "jne" and target == failure:
            offset = patch.pe.get_offset_from_rva(int(address, 16) - patch.pe.OPTIONAL_HEADER.ImageBase)
            size = 6 if patch.bytes[offset] == 0x0F else 2
            patch.bytes[offset : offset + size] = b"\x90" * size


def tells_the_folder(patch):
    patch.bytes += options.source_folder.encode()


def tells_the_folder_in_wide_characters(patch):
    patch.bytes += options.source_folder.encode("utf-16-le")


# What is broken, how, and the check that must say so.
BREACHES = (
    ("for another processor", header("Machine", lambda _: 0xAA64), "64-bit"),
    ("no library", header("Characteristics", lambda value: value & ~0x2000), "64-bit"),
    ("a fixed place", clears(0x0040), "address-randomised"),
    ("without relocations", header("Characteristics", lambda value: value | 1), "address-randomised"),
    ("the lower part only", clears(0x0020), "high-addresses"),
    (
        "a low base",
        lambda patch: patch.number(patch.pe.OPTIONAL_HEADER, "ImageBase", lambda _: 0x10000000),
        "high-addresses",
    ),
    ("data may be executed", clears(0x0100), "no-executable-data"),
    ("code may be written", marks(b".text", 0x80000000), "no-executable-data"),
    ("data is code", marks(b".data", 0x20000000), "no-executable-data"),
    ("a shared section", marks(b".data", 0x10000000), "nothing-shared"),
    ("another export's name", replaces(b"\0PluginMain\0", b"\0PluginMaim\0", b".edata"), "exports"),
    ("one export more", exports_another, "exports"),
    ("a function that is not allowed", replaces(b"LoadLibraryA\0", b"SetErrorMode\0", b".idata"), "imports"),
    ("a library that is not allowed", replaces(b"\0VERSION.dll\0", b"\0WININET.dll\0", b".idata"), "imports"),
    ("late imports", has_late_imports, "no-late-imports"),
    ("an unguarded function", does_not_jump_to_the_failure, "buffers-guarded"),
    ("an unguarded source", replaces(b"-fstack-protector-strong", b"-fno-stack-protector    ", b".text"), "stack-protector"),
    ("a part is gone", replaces(b"\0CacheFindFontMenuItem\0", b"\0CacheFindFontMenuItam\0", b".rdata"), "parts-kept"),
    ("another property", replaces(b"EBDA68xw", b"EBDA69xw", b".rsrc"), "property-list"),
    ("another notice", replaces_text("konnte keine", "konnte eine "), "notice"),
    ("another version text", replaces_text("FileVersion\0\0" + "1.0", "FileVersion\0\0" + "1.9"), "version-texts"),
    ("another language", replaces_text("040904b0", "040704b0"), "version-texts"),
    (
        "another version number",
        lambda patch: patch.number(patch.pe.VS_FIXEDFILEINFO[0], "FileVersionMS", lambda value: value + 1),
        "version-numbers",
    ),
    (
        "a debug build",
        lambda patch: patch.number(patch.pe.VS_FIXEDFILEINFO[0], "FileFlags", lambda _: 1),
        "version-numbers",
    ),
    ("the building folder", tells_the_folder, "no-machine"),
    ("the building folder, wide", tells_the_folder_in_wide_characters, "no-machine"),
    ("a time", header("TimeDateStamp", lambda _: 1_600_000_000), "no-time"),
    ("a waiver without need", sets(0x4000), "control-flow-guard"),
)


class CheckerNamesEachBreach(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.known = Known(Path(options.plugin).stem, options.version, options.source_folder, options.objdump)
        cls.intact = PluginFile(options.plugin, cls.known)

    def findings_of_copy(self, breach):
        patch = Patch(self.intact)
        breach(patch)
        self.assertNotEqual(bytes(patch.bytes), self.intact.bytes, "the breach has changed nothing")
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / Path(options.plugin).name
            path.write_bytes(patch.bytes)
            broken = PluginFile(path, self.known)
            if breach is not does_not_jump_to_the_failure:
                # The same code; reading it takes a second.
                broken.functions = self.intact.functions
            return findings_of(broken)

    def test_intact_file_has_none(self):
        self.assertEqual(findings_of(self.intact), [])

    def test_each_breach_is_named_and_nothing_else(self):
        for what, breach, check in BREACHES:
            with self.subTest(what):
                findings = self.findings_of_copy(breach)
                self.assertNotEqual(findings, [])
                self.assertEqual({finding.split(":")[0] for finding in findings}, {check}, findings)

    def test_each_check_is_broken_once(self):
        checks = {check for _, _, check in BREACHES}
        self.assertEqual(CHECKS.keys() - checks, set())
        # See below.
        self.assertEqual(WAIVERS.keys() - checks, {"shadow-stack"})

    def test_mark_for_the_shadow_stack_is_seen(self):
        """It would need a new part of the file: only the entries that pefile finds there are made up."""
        for kinds, is_found in (([], False), ([2], False), ([2, 20], True)):
            entries = [SimpleNamespace(struct=SimpleNamespace(Type=kind)) for kind in kinds]
            file = SimpleNamespace(pe=SimpleNamespace(DIRECTORY_ENTRY_DEBUG=entries))
            self.assertEqual(not list(has_shadow_stack_mark(file)), is_found, kinds)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("plugin")
    parser.add_argument("--version", required=True)
    parser.add_argument("--source-folder", required=True)
    parser.add_argument("--objdump", required=True)
    options, unittest_arguments = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0], *unittest_arguments])

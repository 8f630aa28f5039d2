"""Reads the built plug-in as the host and Windows read it, instead of trusting the build."""

import argparse
import sys
import unittest
from pathlib import Path

import pefile

options = None

WINDOWS_LIBRARIES = {"kernel32.dll", "msvcrt.dll", "shell32.dll", "user32.dll", "version.dll"}

# The plug-in starts no thread, handles no exception of others and leaves the process's settings alone.
CHANGES_THE_PROCESS = {
    "AddVectoredContinueHandler",
    "AddVectoredExceptionHandler",
    "CreateThread",
    "ExitProcess",
    "SetConsoleCtrlHandler",
    "SetCurrentDirectoryA",
    "SetCurrentDirectoryW",
    "SetDllDirectoryA",
    "SetDllDirectoryW",
    "SetEnvironmentVariableA",
    "SetEnvironmentVariableW",
    "SetErrorMode",
    "SetProcessAffinityMask",
    "SetThreadPriority",
    "SetUnhandledExceptionFilter",
    "SuspendThread",
    "TerminateProcess",
    "_beginthread",
    "_beginthreadex",
    "_set_invalid_parameter_handler",
    "signal",
}

# A text that only the operation's own code holds; the symbols of a shipped file are elsewhere.
PARTS_THAT_NOTHING_CALLS = {
    "CacheFindFontMenuItem": "CacheFindFontMenuItem",
    "DisplayFindFontDialog": "DisplayFindFontDialog",
    "CrossPluginUtils::HandleOpenExistingDocument": "CrossPluginUtils::HandleOpenExistingDocument",
    "CrossPluginUtils::Startup": "CrossPluginUtils::Startup",
    "CrossPluginUtils::RefreshActiveFontList": "CrossPluginUtils::RefreshActiveFontList",
    "CheckHeap": "Heap corruption %d detected in '%s' line %d",
    "ForciblyCloseWindow": "Forcibly closing HWND 0x%08x (title='%s', text='%s')",
}

ENGLISH_US = 1033
PROPERTY_LIST_ID = 16000
STRING_ID = 105

# Byte for byte, because the host reads it with no tolerance: the count says 3, and four records follow.
PROPERTY_LIST = bytes.fromhex(
    "0100 00000000 03000000"
    # The kind: an Illustrator plug-in.
    "45424441 646e696b 00000000 04000000 41455053"
    # The interface version, 2.
    "45424441 73727669 00000000 04000000 02000000"
    # The entry point's name, PluginMain.
    "45424441 36387877 00000000 0c000000 506c7567 696e4d61 696e0000"
    # The exported suites: none.
    "45424441 74707865 00000000 14000000 01000000 0c000000 6e6f6e65 00000000 01000000"
)

ENGLISH_NOTICE = (
    "The Quorvel plug-in could not locate a running copy of the Lumet application. "
    "Auto-activation plug-in functionality will be disabled."
)
# What only this language's paragraph holds; the letters beyond ASCII show that the code page was right.
NOTICE_LANGUAGES = (
    ("English", "could not locate"),
    ("French", "n’a trouvé"),
    ("Japanese", "プラグイン"),
    ("German", "konnte keine"),
    ("Italian", "non ha trovato"),
    ("Spanish", "no encontró"),
    ("Portuguese", "não encontrou"),
)


def resource(pe, kind, identifier, language):
    """The bytes of one resource; kind is a name or a number."""
    for type_entry in pe.DIRECTORY_ENTRY_RESOURCE.entries:
        if kind not in (str(type_entry.name), type_entry.id):
            continue
        for id_entry in type_entry.directory.entries:
            for language_entry in id_entry.directory.entries:
                if id_entry.id == identifier and language_entry.id == language:
                    place = language_entry.data.struct
                    return pe.get_data(place.OffsetToData, place.Size)
    return None


def string_of(pe, identifier, language):
    """One text of the string table, which holds blocks of 16: a length in UTF-16 units, then the units."""
    block = resource(pe, pefile.RESOURCE_TYPE["RT_STRING"], identifier // 16 + 1, language)
    offset = 0
    for _ in range(identifier % 16):
        offset += 2 + 2 * int.from_bytes(block[offset : offset + 2], "little")
    length = int.from_bytes(block[offset : offset + 2], "little")
    return block[offset + 2 : offset + 2 + 2 * length].decode("utf-16-le")


def exports_of(pe):
    return [symbol.name.decode() for symbol in pe.DIRECTORY_ENTRY_EXPORT.symbols]


class PluginFile(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.pe = pefile.PE(options.plugin)
        cls.bytes = Path(options.plugin).read_bytes()

    def test_is_a_64_bit_library(self):
        self.assertEqual(self.pe.OPTIONAL_HEADER.Magic, pefile.OPTIONAL_HEADER_MAGIC_PE_PLUS)
        self.assertEqual(self.pe.FILE_HEADER.Machine, pefile.MACHINE_TYPE["IMAGE_FILE_MACHINE_AMD64"])
        self.assertTrue(self.pe.FILE_HEADER.IMAGE_FILE_DLL)

    def test_exports_the_entry_point_and_nothing_else(self):
        self.assertEqual(exports_of(self.pe), ["PluginMain"])

    def test_needs_nothing_that_windows_does_not_ship(self):
        imported = {library.dll.decode().lower() for library in self.pe.DIRECTORY_ENTRY_IMPORT}
        self.assertIn("kernel32.dll", imported)
        self.assertEqual(imported - WINDOWS_LIBRARIES, set())
        self.assertFalse(hasattr(self.pe, "DIRECTORY_ENTRY_DELAY_IMPORT"))

    def test_imports_nothing_that_would_change_the_hosts_process(self):
        imported = {
            symbol.name.decode()
            for library in self.pe.DIRECTORY_ENTRY_IMPORT
            for symbol in library.imports
            if symbol.name
        }
        self.assertIn("LoadLibraryA", imported)
        self.assertEqual(imported & CHANGES_THE_PROCESS, set())

    def test_holds_the_parts_that_nothing_calls_yet(self):
        constants = b"".join(
            section.get_data() for section in self.pe.sections if section.Name.rstrip(b"\0") == b".rdata"
        )
        for operation, text in PARTS_THAT_NOTHING_CALLS.items():
            with self.subTest(operation):
                self.assertTrue(text.encode() + b"\0" in constants, f"{text} is not in the file")

    def test_is_placed_at_random_in_the_whole_address_space(self):
        flags = self.pe.OPTIONAL_HEADER
        self.assertTrue(flags.IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE)
        self.assertTrue(flags.IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA)
        self.assertGreaterEqual(flags.ImageBase, 2**32)
        # Without relocations the first flag is a promise that cannot be kept.
        self.assertFalse(self.pe.FILE_HEADER.IMAGE_FILE_RELOCS_STRIPPED)
        self.assertTrue(self.pe.DIRECTORY_ENTRY_BASERELOC)

    def test_executes_no_data(self):
        self.assertTrue(self.pe.OPTIONAL_HEADER.IMAGE_DLLCHARACTERISTICS_NX_COMPAT)
        for section in self.pe.sections:
            self.assertFalse(section.IMAGE_SCN_MEM_EXECUTE and section.IMAGE_SCN_MEM_WRITE, section.Name)

    def test_property_list(self):
        self.assertEqual(len(PROPERTY_LIST), 114)
        self.assertEqual(resource(self.pe, "PIPL", PROPERTY_LIST_ID, ENGLISH_US), PROPERTY_LIST)

    def test_notice_in_seven_languages(self):
        paragraphs = string_of(self.pe, STRING_ID, ENGLISH_US).split("\n\n")
        self.assertEqual(len(paragraphs), len(NOTICE_LANGUAGES))
        self.assertEqual(paragraphs[0], ENGLISH_NOTICE)
        for paragraph, (language, words) in zip(paragraphs, NOTICE_LANGUAGES):
            with self.subTest(language):
                self.assertIn(words, paragraph)
                self.assertIn("Quorvel", paragraph)
                self.assertIn("Lumet", paragraph)
                self.assertNotIn("\n", paragraph)
                self.assertEqual(paragraph, paragraph.strip())

    def test_version_texts(self):
        expected = {
            "CompanyName": "Quorvel",
            "FileDescription": "Font auto-activation plug-in for Adobe Illustrator",
            "FileVersion": options.version,
            "InternalName": "QuorvelTypeAgentAI20",
            "LegalCopyright": "Copyright the Quorvel Type Agent authors",
            "OriginalFilename": "QuorvelTypeAgentAI20.aip",
            "PrivateBuild": options.version,
            "ProductName": "Quorvel Type Agent",
            "ProductVersion": options.version,
        }
        tables = [
            table
            for info in self.pe.FileInfo[0]
            if info.Key == b"StringFileInfo"
            for table in info.StringTable
        ]
        self.assertEqual([table.LangID for table in tables], [b"040904b0"])
        texts = {key.decode(): value.decode("utf-8") for key, value in tables[0].entries.items()}
        self.assertEqual(texts, expected)

    def test_version_translation_names_the_table(self):
        translations = [
            var.entry for info in self.pe.FileInfo[0] if info.Key == b"VarFileInfo" for var in info.Var
        ]
        self.assertEqual(translations, [{b"Translation": "0x0409 0x04b0"}])

    def test_version_numbers(self):
        major, minor, patch = (int(number) for number in options.version.split("."))
        fixed = self.pe.VS_FIXEDFILEINFO[0]
        expected = (major << 16 | minor, patch << 16)
        self.assertEqual((fixed.FileVersionMS, fixed.FileVersionLS), expected)
        self.assertEqual((fixed.ProductVersionMS, fixed.ProductVersionLS), expected)
        self.assertEqual(fixed.FileType, 2)  # VFT_DLL
        self.assertEqual(fixed.FileFlags, 0)  # neither a debug nor a special build

    def test_tells_nothing_of_the_building_machine(self):
        for folder in (options.source_folder, f"{Path.home()}/"):
            for encoding in ("utf-8", "utf-16-le"):
                self.assertNotIn(folder.encode(encoding), self.bytes, f"{folder} as {encoding}")

    def test_says_no_time_of_building(self):
        self.assertEqual(self.pe.FILE_HEADER.TimeDateStamp, 0)


class DiagnosticPluginFile(unittest.TestCase):
    def test_exports_the_same(self):
        self.assertEqual(exports_of(pefile.PE(options.diagnostic)), ["PluginMain"])

    def test_carries_the_same_property_list(self):
        self.assertEqual(resource(pefile.PE(options.diagnostic), "PIPL", PROPERTY_LIST_ID, ENGLISH_US), PROPERTY_LIST)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--plugin", required=True, help="the shipped plug-in")
    parser.add_argument("--diagnostic", required=True, help="the diagnostic plug-in")
    parser.add_argument("--version", required=True, help="the project's version, three numbers")
    parser.add_argument("--source-folder", required=True, help="where the project was built")
    options, unittest_arguments = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0], *unittest_arguments])

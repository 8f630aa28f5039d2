"""The plug-in as it is shipped: what was built and tested, without its symbols, which lie in a file beside it."""

import argparse
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

import pefile

# In bytes. Whoever loads the file pays for its size; what makes it grow beyond this needs a reason.
SIZE_LIMIT = 300_000


def sections_of(pe):
    """What is loaded, by name."""
    return {part.Name.rstrip(b"\0").decode(): part.get_data()[: part.Misc_VirtualSize] for part in pe.sections
            if not part.Name.startswith((b"/", b".gnu"))}


class ShippedFile(unittest.TestCase):
    options = None

    @classmethod
    def setUpClass(cls):
        cls.built = pefile.PE(cls.options.built, fast_load=True)
        cls.shipped = pefile.PE(cls.options.shipped, fast_load=True)

    def line_of_entry(self, file):
        """What the tool knows about the entry point's first instruction, function and place."""
        self.built.parse_data_directories([pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_EXPORT"]])
        symbol = self.built.DIRECTORY_ENTRY_EXPORT.symbols[0]
        address = self.built.OPTIONAL_HEADER.ImageBase + symbol.address
        command = [self.options.addr2line, "-fe", str(file), hex(address)]
        return subprocess.run(command, check=True, capture_output=True, text=True).stdout.split()

    def test_is_small(self):
        self.assertLess(Path(self.options.shipped).stat().st_size, SIZE_LIMIT)

    def test_holds_what_was_tested(self):
        self.assertEqual(sections_of(self.shipped), sections_of(self.built))

    def test_tells_no_time(self):
        self.assertEqual((self.built.FILE_HEADER.TimeDateStamp, self.shipped.FILE_HEADER.TimeDateStamp), (0, 0))

    def test_has_no_symbols(self):
        self.assertNotEqual(self.built.FILE_HEADER.NumberOfSymbols, 0)
        self.assertEqual(self.shipped.FILE_HEADER.NumberOfSymbols, 0)

    def test_symbols_beside_it_lead_to_the_lines(self):
        function, place = self.line_of_entry(self.options.shipped)
        self.assertEqual(function, "PluginMain")
        self.assertRegex(place, r"src/frame/PluginMain\.cpp:\d+$")

    def test_alone_it_knows_no_lines(self):
        folder = Path(self.options.work_folder)
        folder.mkdir(parents=True, exist_ok=True)
        alone = shutil.copy(self.options.shipped, folder)
        self.assertEqual(self.line_of_entry(alone)[-1], "??:0")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for option in ("--built", "--shipped", "--addr2line", "--work-folder"):
        parser.add_argument(option, required=True)
    ShippedFile.options, rest = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0], *rest])


if __name__ == "__main__":
    main()

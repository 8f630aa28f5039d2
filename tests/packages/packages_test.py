#!/usr/bin/env python3
"""What is in the packages, and that packing twice gives the same."""

import argparse
import hashlib
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import zipfile

import pefile

ROOT = pathlib.Path(__file__).parents[2]
PACK = ROOT / "packaging" / "packages.py"
CHECK_VERSION = ROOT / "scripts" / "check-version"
PLUGIN, DIAGNOSTIC = "QuorvelTypeAgentAI20.aip", "QuorvelTypeAgentAI20-diagnostic.aip"
SUPPORT_BUNDLE = "QuorvelSupportBundle.exe"
TERMS = ("LICENSE.txt", "THIRD-PARTY.txt")
# Of each package, a word from the terms of what only it holds beside the plug-in.
OF_OTHERS = {"QuorvelTypeAgentAI20-{}.zip": "Nemanja Trifunovic",
             "QuorvelTypeAgentAI20-diagnostic-{}.zip": "Mark Adler", "QuorvelTypeAgentKit-{}.zip": "Niels Lohmann"}


class Packages(unittest.TestCase):
    options: argparse.Namespace
    folders: list[pathlib.Path]

    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        cls.folders = [pathlib.Path(temporary.name) / name for name in ("first", "a second one, elsewhere")]
        cls.folders[1].mkdir()
        for kind in ("AI20-0.9.0.zip", "AI20-diagnostic-0.9.0.zip", "Kit-0.9.0.zip"):
            (cls.folders[1] / f"QuorvelTypeAgent{kind}").write_bytes(b"before")
        for folder in cls.folders:
            subprocess.run([sys.executable, PACK, "--build-folder", cls.options.build_folder, "--output", folder],
                           check=True)
        cls.names = {file.name for file in cls.folders[0].iterdir()}

    def file(self, name: str) -> pathlib.Path:
        return self.folders[0] / name.format(self.options.version)

    def archive(self, name: str) -> dict[str, bytes]:
        with zipfile.ZipFile(self.file(name)) as archive:
            return {member: archive.read(member) for member in archive.namelist()}

    def shipped(self, name: str) -> bytes:
        return (self.options.build_folder / "shipped" / name).read_bytes()

    def test_names_hold_the_version(self):
        version = self.options.version
        self.assertEqual(self.names, {
            "SHA256SUMS", f"QuorvelTypeAgentAI20-{version}.zip", f"QuorvelTypeAgentAI20-{version}-setup.exe",
            f"QuorvelTypeAgentAI20-{version}-symbols.zip", f"QuorvelTypeAgentAI20-diagnostic-{version}.zip",
            f"QuorvelTypeAgentKit-{version}.zip"})

    def test_names_and_files_tell_the_version(self):
        done = subprocess.run([CHECK_VERSION, "--packages", self.folders[0]], capture_output=True, check=False,
                              encoding="utf-8")
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_packing_twice_gives_the_same(self):
        for name in self.names:
            with self.subTest(name):
                sums = {hashlib.sha256((folder / name).read_bytes()).hexdigest() for folder in self.folders}
                self.assertEqual(len(sums), 1)

    def test_a_package_replaces_those_of_its_kind_and_nothing_else(self):
        version = self.options.version
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            (folder / "QuorvelTypeAgentKit-sources").mkdir()
            packages = ["QuorvelTypeAgentAI20-0.9.0.zip", f"QuorvelTypeAgentKit-{version}.zip"]
            others = [PLUGIN, "QuorvelTypeAgentAI20.zip", "QuorvelTypeAgentAI20-1.0.0-symbols.zip.sig"]
            for file in (*packages, *others, "QuorvelTypeAgentAI20-0.9.0-symbols.zip",
                         f"QuorvelTypeAgentAI20-{version}-symbols.zip", "SHA256SUMS"):
                (folder / file).write_bytes(b"before")
            self.pack(folder)
            packages.append(f"QuorvelTypeAgentAI20-{version}-symbols.zip")
            self.assertEqual({file.name for file in folder.iterdir()},
                             {*packages, *others, "QuorvelTypeAgentKit-sources", "SHA256SUMS"})
            self.assertEqual({file for file in folder.iterdir() if file.is_file() and file.read_bytes() == b"before"},
                             {folder / file for file in (*packages[:-1], *others)})
            # Of all packages that are there now.
            done = subprocess.run(["sha256sum", "--check", "SHA256SUMS"], cwd=folder, capture_output=True, check=True,
                                  encoding="utf-8")
            self.assertEqual(sorted(done.stdout.splitlines()), sorted(f"{package}: OK" for package in packages))

    def test_all_packages_replace_those_of_an_earlier_version(self):
        self.assertEqual({file.name for file in self.folders[1].iterdir()}, self.names)

    def test_a_name_that_no_package_has_is_refused(self):
        with tempfile.TemporaryDirectory() as name:
            done = subprocess.run([sys.executable, PACK, "--build-folder", self.options.build_folder, "--output", name,
                                   "--only", "symbol.zip"], capture_output=True, check=False, encoding="utf-8")
            self.assertEqual(done.returncode, 2)
            self.assertIn("no name holds 'symbol.zip'", done.stderr)
            self.assertEqual(list(pathlib.Path(name).iterdir()), [])

    def test_what_cannot_be_packed_costs_no_package(self):
        with tempfile.TemporaryDirectory() as name:
            before = pathlib.Path(name) / "QuorvelTypeAgentAI20-0.9.0.zip"
            before.write_bytes(b"before")
            with self.assertRaises(subprocess.CalledProcessError):
                self.pack(before.parent, "--sign", "--certificate", "none")
            self.assertTrue(before.exists())

    def pack(self, folder: pathlib.Path, *arguments: str):
        subprocess.run([sys.executable, PACK, "--build-folder", self.options.build_folder, "--output", folder,
                        "--only", "symbols", *arguments], check=True, stderr=subprocess.DEVNULL)

    def test_sums_are_right(self):
        done = subprocess.run(["sha256sum", "--check", "SHA256SUMS"], cwd=self.folders[0], capture_output=True,
                              check=True)
        self.assertEqual(done.stdout.count(b": OK\n"), len(self.names) - 1)

    def test_plugin_is_a_folder_for_the_host(self):
        members = self.archive("QuorvelTypeAgentAI20-{}.zip")
        self.assertEqual(set(members), {"README.txt", *TERMS, f"Quorvel Type Agent/{PLUGIN}"})
        self.assertEqual(members[f"Quorvel Type Agent/{PLUGIN}"], self.shipped(PLUGIN))

    def test_texts_are_those_of_this_version_and_of_windows(self):
        for name in sorted(self.names - {"SHA256SUMS"}):
            if name.endswith(".zip"):
                text = self.archive(name)["README.txt"].decode("utf-8")
                self.assertIn(self.options.version, text.splitlines()[0], name)
                self.assertEqual(re.findall(r"(?<!\r)\n|@", text), [], name)

    def test_terms_of_others_are_told(self):
        for name, holder in OF_OTHERS.items():
            text = self.archive(name)["THIRD-PARTY.txt"].decode("utf-8")
            for words in ("GCC RUNTIME LIBRARY EXCEPTION", "mingw-w64", holder):
                self.assertIn(words.lower(), text.lower(), name)

    def test_symbols_are_a_package_of_their_own(self):
        members = self.archive("QuorvelTypeAgentAI20-{}-symbols.zip")
        self.assertEqual(set(members), {"README.txt", f"{PLUGIN}.debug", f"{DIAGNOSTIC}.debug"})
        for name in (f"{PLUGIN}.debug", f"{DIAGNOSTIC}.debug"):
            self.assertEqual(members[name], self.shipped(name), name)

    def test_diagnostic_plugin_is_another_package(self):
        members = self.archive("QuorvelTypeAgentAI20-diagnostic-{}.zip")
        self.assertEqual(set(members), {"README.txt", *TERMS, f"Quorvel Type Agent/{DIAGNOSTIC}", SUPPORT_BUNDLE})
        self.assertEqual(members[f"Quorvel Type Agent/{DIAGNOSTIC}"], self.shipped(DIAGNOSTIC))
        self.assertEqual(members[SUPPORT_BUNDLE], (self.options.build_folder / "bin" / SUPPORT_BUNDLE).read_bytes())

    def test_setup_is_a_64_bit_program_that_asks_for_no_rights_by_itself(self):
        pe = pefile.PE(str(self.file("QuorvelTypeAgentAI20-{}-setup.exe")))
        self.assertEqual(pe.FILE_HEADER.Machine, pefile.MACHINE_TYPE["IMAGE_FILE_MACHINE_AMD64"])
        [manifests] = [each for each in pe.DIRECTORY_ENTRY_RESOURCE.entries
                       if each.id == pefile.RESOURCE_TYPE["RT_MANIFEST"]]
        place = manifests.directory.entries[0].directory.entries[0].data.struct
        manifest = pe.get_data(place.OffsetToData, place.Size).decode("utf-8")
        self.assertIn('level="asInvoker"', manifest)

    def test_setup_tells_its_version(self):
        pe = pefile.PE(str(self.file("QuorvelTypeAgentAI20-{}-setup.exe")))
        fixed = pe.VS_FIXEDFILEINFO[0]
        numbers = [fixed.FileVersionMS >> 16, fixed.FileVersionMS & 0xFFFF, fixed.FileVersionLS >> 16]
        self.assertEqual(".".join(map(str, numbers)), self.options.version)
        [texts] = [table.entries for info in pe.FileInfo for part in info if part.Key == b"StringFileInfo"
                   for table in part.StringTable]
        self.assertEqual((texts[b"FileVersion"], texts[b"CompanyName"]), (self.options.version.encode(), b"Quorvel"))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build-folder", type=pathlib.Path, required=True)
    parser.add_argument("--version", required=True)
    Packages.options, rest = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0], *rest])


if __name__ == "__main__":
    main()

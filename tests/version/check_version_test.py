#!/usr/bin/env python3
"""Asserts that scripts/check-version finds what it is there to find, on small trees made for it."""

import argparse
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

options = None


def utf16(text):
    return text.encode("utf-16-le")


def other_digit(content, before, place=0):
    """The content with the last digit of what stands behind `before` changed."""
    at = content.index(before) + len(before) + place
    return content[:at] + bytes([content[at] ^ 1]) + content[at + 1:]


class CheckVersion(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name) / "tree"
        self.version = options.version
        self.set_version(self.version)
        self.write("README.md", "For Windows 10.0.18362. The PluginCore listens on 127.0.0.1.\n")
        self.content = Path(options.file).read_bytes()

    def set_version(self, version):
        self.write("CMakeLists.txt", f"project(Agent VERSION {version} LANGUAGES C)\n")

    def write(self, name, content):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return str(path)

    def package(self, name, **members):
        path = self.root / "build" / "packages" / name
        path.parent.mkdir(parents=True, exist_ok=True)
        with zipfile.ZipFile(path, "w") as file:
            for member, content in members.items():
                file.writestr(member.replace("_", "."), content)
        return str(path)

    def git(self, *arguments):
        subprocess.run(["git", "-c", "user.name=N", "-c", "user.email=e@example.com", "-c", "init.defaultBranch=main",
                        "-C", self.root, *arguments], check=True, capture_output=True)

    def commit(self):
        self.git("init")
        self.git("add", ".")
        self.git("commit", "-m", "A")

    def findings(self, *arguments):
        run = subprocess.run([options.script, "--root", self.root, *arguments], capture_output=True, text=True, check=False)
        lines = run.stderr.splitlines()
        self.assertEqual(run.returncode, 1 if lines else 0)
        return lines

    def assert_finds(self, beginning, *arguments):
        findings = self.findings(*arguments)
        self.assertEqual(len(findings), 1, findings)
        self.assertIn(beginning, findings[0])

    def packages(self):
        return "--packages", str(self.root / "build" / "packages")

    def test_good_tree_has_no_findings(self):
        self.commit()
        self.git("tag", f"v{self.version}")
        self.git("tag", "reviewed")
        file = self.write("build/plugin.aip", self.content)
        self.package(f"QuorvelTypeAgentAI20-{self.version}.zip", plugin_aip=self.content, read_txt="")
        self.write(f"build/packages/QuorvelTypeAgentAI20-{self.version}-setup.exe", self.content)
        self.package(f"QuorvelTypeAgentAI20-{self.version}-symbols.zip", plugin_debug=b"")
        self.write("build/packages/SHA256SUMS", "")
        self.assertEqual(self.findings(*self.packages(), file), [])
        self.assertEqual(self.findings("--tag", f"v{self.version}"), [])

    def test_number_that_is_none(self):
        for number in ("1.0", "1.0.0.0", "1.0.65536", "01.0.0", "1.0.x"):
            with self.subTest(number):
                self.set_version(number)
                self.assert_finds("CMakeLists.txt: ")

    def test_two_numbers_in_the_one_place(self):
        self.write("CMakeLists.txt", "project(A VERSION 1.0.0)\nproject(B VERSION 2.0.0)\n")
        self.assert_finds("found 2")

    def test_number_told_a_second_time(self):
        for name in ("src/a.cpp", "support_bundle/a.cpp", "bench/a.cpp", "fuzz/a.cpp", "scripts/a", "packaging/a.nsi",
                     "cmake/a.cmake", ".ci/run"):
            with self.subTest(name):
                path = self.write(name, f"Here\nis {self.version}.\n")
                self.assert_finds(f"{name}:2: tells the version a second time")
                Path(path).unlink()

    def test_another_number_in_a_page(self):
        for name in ("docs/a.md", "README.md", "CONTRIBUTING.md"):
            with self.subTest(name):
                self.write(name, f"QuorvelTypeAgentAI20-{self.version}.zip\nQuorvelTypeAgentAI20-61.7.3-setup.exe\n")
                self.assert_finds(f"{name}:2: tells the version 61.7.3")
                (self.root / name).unlink()

    def test_numbers_of_a_resource_written_by_hand(self):
        self.write("src/a.rc.in", "FILEVERSION 61,7,3,0\nPRODUCTVERSION @A@,0\n")
        self.assert_finds("src/a.rc.in:1: a version number that is written by hand")

    def test_tag_of_the_commit(self):
        self.commit()
        self.git("tag", "v61.7.3")
        self.assert_finds("the tag v61.7.3 does not go with")

    def test_tag_of_another_commit(self):
        self.commit()
        self.git("tag", "v61.7.3")
        self.git("commit", "--allow-empty", "-m", "B")
        self.assertEqual(self.findings(), [])

    def test_tag_that_is_about_to_be_made(self):
        for tag in ("v61.7.3", self.version, f"v{self.version}-rc1"):
            with self.subTest(tag):
                self.assert_finds(f"the tag {tag} does not go with", "--tag", tag)

    def test_tag_that_was_made_before(self):
        self.commit()
        self.git("tag", "-a", "-m", "T", f"v{self.version}")
        self.assertEqual(self.findings("--tag", f"v{self.version}"), [])
        self.git("commit", "--allow-empty", "-m", "B")
        self.assert_finds("stands at another commit already", "--tag", f"v{self.version}")

    def test_texts_of_a_built_file(self):
        for key in ("FileVersion", "ProductVersion"):
            with self.subTest(key):
                # The value begins at the next multiple of four bytes behind the key's terminator.
                before = utf16(key + "\0")
                at = self.content.index(before) + len(before)
                start = self.content.index(utf16(self.version), at)
                file = self.write("a.aip", self.content[:start] + b"9" + self.content[start + 1:])
                self.assert_finds(f"a.aip: the {key} is 9", file)

    def test_numbers_of_a_built_file(self):
        signature = bytes.fromhex("bd04effe")
        for what, place in (("file", 8), ("product", 16)):
            with self.subTest(what):
                file = self.write("a.aip", other_digit(self.content, signature, place - 4))
                self.assert_finds(f"a.aip: the {what} version is", file)

    def test_built_file_without_a_version(self):
        kept = self.content.index(utf16("VS_VERSION_INFO"))
        file = self.write("a.aip", self.content[:kept] + b"X" + self.content[kept + 1:])
        self.assert_finds("a.aip: has no version resource", file)

    def test_no_packages(self):
        self.assert_finds("there is no package", *self.packages())

    def test_package_with_another_number_in_its_name(self):
        for name in ("QuorvelTypeAgentAI20-61.7.3.zip", "QuorvelTypeAgentKit.zip", f"QuorvelTypeAgentAI20-{self.version}1.zip",
                     f"QuorvelTypeAgentAI20-{self.version}.1.zip"):
            with self.subTest(name):
                path = self.package(name, plugin_aip=self.content)
                self.assert_finds(f"{name}: the name does not tell version", *self.packages())
                Path(path).unlink()

    def test_package_with_a_file_of_another_number(self):
        self.package(f"QuorvelTypeAgentAI20-{self.version}.zip",
                     plugin_aip=other_digit(self.content, bytes.fromhex("bd04effe"), 4))
        self.assert_finds(".zip/plugin.aip: the file version is", *self.packages())

    def test_package_without_a_file_of_ours(self):
        self.package(f"QuorvelTypeAgentAI20-{self.version}.zip", read_txt="")
        self.assert_finds("holds no file that tells the product's version", *self.packages())

    def test_installer_of_another_number(self):
        self.write(f"build/packages/QuorvelTypeAgentAI20-{self.version}-setup.exe",
                   other_digit(self.content, bytes.fromhex("bd04effe"), 4))
        self.assert_finds("-setup.exe: the file version is", *self.packages())


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    for option in ("--script", "--version", "--file"):
        parser.add_argument(option, required=True)
    options, unittest_arguments = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0], *unittest_arguments])

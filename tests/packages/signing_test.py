#!/usr/bin/env python3
"""scripts/sign and the packages that it signs, with certificates made here: what holds is told from what does not."""

import argparse
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile

from certificates import PASSWORD, make_certificate

ROOT = pathlib.Path(__file__).parents[2]
SIGN = ROOT / "scripts" / "sign"
PACK = ROOT / "packaging" / "packages.py"
# Nobody listens there.
NO_SERVER = "http://127.0.0.1:9/"


class Signing(unittest.TestCase):
    options: argparse.Namespace

    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        cls.folder = pathlib.Path(temporary.name)
        cls.certificate, cls.other = (make_certificate(cls.folder, name) for name in ("Ours", "Another"))
        cls.by_pem = ["--certificate", cls.certificate, "--key", cls.certificate.with_suffix(".key")]

    def setUp(self):
        self.file = pathlib.Path(shutil.copy(self.options.plugin, self.folder / "plugin.aip"))

    def sign(self, *arguments, password: str | None = None) -> int:
        environment = {name: value for name, value in os.environ.items() if name != "QUORVEL_SIGNING_PASSWORD"}
        if password is not None:
            environment["QUORVEL_SIGNING_PASSWORD"] = password
        done = subprocess.run([SIGN, *map(str, arguments)], env=environment, stdin=subprocess.DEVNULL,
                              capture_output=True, check=False, encoding="utf-8")
        self.told = done.stderr
        return done.returncode

    def verify(self, file: pathlib.Path, certificate: pathlib.Path | None = None) -> int:
        return self.sign("--verify", "--trust", certificate or self.certificate, file)

    def assert_unsigned(self):
        self.assertEqual(self.file.read_bytes(), self.options.plugin.read_bytes())

    def test_signed_file_holds(self):
        self.assertEqual(self.sign(*self.by_pem, "--trust", self.certificate, self.file), 0, self.told)
        self.assertEqual(self.verify(self.file), 0, self.told)

    def test_unsigned_file_is_refused(self):
        self.assertEqual(self.verify(self.file), 1)
        self.assertIn("No signature found", self.told)

    def test_one_of_several_that_does_not_hold_is_named(self):
        unsigned = pathlib.Path(shutil.copy(self.file, self.folder / "unsigned.aip"))
        self.sign(*self.by_pem, "--trust", self.certificate, self.file)
        self.assertEqual(self.sign("--verify", "--trust", self.certificate, self.file, unsigned), 1)
        self.assertIn("unsigned.aip: the signature does not hold", self.told)
        self.assertNotIn("plugin.aip: the", self.told)

    def test_changed_byte_is_refused_wherever_it_is(self):
        self.sign(*self.by_pem, "--trust", self.certificate, self.file)
        signed = self.file.read_bytes()
        length = len(self.options.plugin.read_bytes())
        # In the header, the code, the data, and the signature itself.
        for place in (0x40, 0x1000, length // 2, length - 1, len(signed) - 600):
            with self.subTest(place):
                changed = bytearray(signed)
                changed[place] ^= 1
                self.file.write_bytes(changed)
                self.assertEqual(self.verify(self.file), 1, self.told)

    def test_signature_of_another_is_refused(self):
        self.sign(*self.by_pem, "--trust", self.certificate, self.file)
        self.assertEqual(self.verify(self.file, self.other), 1)

    def test_what_nobody_here_trusts_stays_unsigned(self):
        self.assertEqual(self.sign(*self.by_pem, self.file), 1)
        self.assert_unsigned()

    def test_password_comes_from_a_file_or_the_environment(self):
        store = ["--pkcs12", self.certificate.with_suffix(".p12"), "--trust", self.certificate]
        password = self.folder / "password"
        password.write_text(PASSWORD + "\n", encoding="utf-8")
        self.assertEqual(self.sign(*store, "--password-file", password, self.file), 0, self.told)
        self.setUp()
        self.assertEqual(self.sign(*store, self.file, password=PASSWORD), 0, self.told)
        self.assertEqual(self.verify(self.file), 0)
        self.setUp()
        self.assertEqual(self.sign(*store, self.file, password="wrong"), 1)
        self.assertEqual(self.sign(*store, self.file), 1)
        self.assert_unsigned()

    def test_signed_file_replaces_the_other_at_once(self):
        # Another name for the file that was: written into, it would change.
        before = self.folder / "before.aip"
        os.link(self.file, before)
        self.file.chmod(0o640)
        self.assertEqual(self.sign(*self.by_pem, "--trust", self.certificate, self.file), 0, self.told)
        self.assertEqual(before.read_bytes(), self.options.plugin.read_bytes())
        self.assertEqual(self.file.stat().st_mode & 0o777, 0o640)

    def test_no_signature_without_the_time_that_was_asked_for(self):
        self.assertEqual(self.sign(*self.by_pem, "--trust", self.certificate, "--timestamp", NO_SERVER, self.file), 1)
        self.assert_unsigned()

    def test_incomplete_command_line_is_told(self):
        for arguments in ((self.file,), ("--certificate", self.certificate, self.file),
                          (*self.by_pem, self.folder / "none.exe")):
            self.assertEqual(self.sign(*arguments), 2)
        self.assert_unsigned()

    def test_packages_are_not_left_unsigned_without_a_word(self):
        packages = self.folder / "unsigned"
        for command in ([ROOT / "scripts" / "package"],
                        [sys.executable, PACK, "--build-folder", self.options.build_folder]):
            done = subprocess.run([*command, "--output", packages, "--sign"], stdin=subprocess.DEVNULL,
                                  capture_output=True, check=False, encoding="utf-8")
            self.assertEqual(done.returncode, 2)
            self.assertIn("--sign needs a certificate and its key", done.stderr)
            self.assertFalse(packages.exists())

    def test_packages_hold_signed_files(self):
        output = self.folder / "packages"
        # By paths that begin in this folder; makensis, which has the uninstaller signed, works in another.
        subprocess.run([sys.executable, PACK, "--build-folder", self.options.build_folder, "--output", "packages",
                        "--only", "AI20", "--sign", "--certificate", self.certificate.name,
                        "--key", self.certificate.with_suffix(".key").name, "--trust", self.certificate.name],
                       cwd=self.folder, check=True)
        for archive in ("QuorvelTypeAgentAI20-[0-9].*[0-9].zip", "QuorvelTypeAgentAI20-diagnostic-*.zip"):
            [file] = output.glob(archive)
            with zipfile.ZipFile(file) as unpacked:
                for name in unpacked.namelist():
                    if name.endswith((".aip", ".exe")):
                        self.assertEqual(self.verify(pathlib.Path(unpacked.extract(name, self.folder))), 0, self.told)
        [setup] = output.glob("*-setup.exe")
        self.assertEqual(self.verify(setup), 0, self.told)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build-folder", type=pathlib.Path, required=True)
    Signing.options, rest = parser.parse_known_args()
    Signing.options.plugin = Signing.options.build_folder / "shipped" / "QuorvelTypeAgentAI20.aip"
    unittest.main(argv=[sys.argv[0], *rest])


if __name__ == "__main__":
    main()

"""What the tests of the installer share: a desktop, setup programs of three versions, hosts, and what is asserted."""

import argparse
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile

from installer_desktop import Desktop, on_drive_z

ROOT = pathlib.Path(__file__).parents[2]
sys.path.insert(0, str(ROOT / "packaging"))

import archive  # noqa: E402
import setup_program  # noqa: E402

OLDER, NEWER = "0.9.0", "99.0.0"
PLUGIN = "QuorvelTypeAgentAI20.aip"
APPS = r"Software\Microsoft\Windows\CurrentVersion\Uninstall"
ENTRY = rf"{APPS}\QuorvelTypeAgentAI20"
HOST = r"C:\Program Files\Adobe\Adobe Illustrator CC 2015.3"
OTHER_HOST = r"C:\Zeichnen & Sätze\Illustrator 二十"
HOST_PROGRAM = r"Support Files\Contents\Windows\Illustrator.exe"
KEY_OF_HOST = r"HKLM\Software\Adobe\Adobe Illustrator\20.0"
TERMS = ("LICENSE.txt", "THIRD-PARTY.txt")
OWN_FOLDER = r"Plug-ins\Quorvel Type Agent"
PROGRAM_FOLDER = r"C:\Program Files\Quorvel Type Agent"
(ELEVATION_NEEDED, NO_HOST, SEVERAL_HOSTS, IN_USE, NEWER_INSTALLED, NOT_WRITABLE, COMMAND_LINE, SECOND_RUN,
 NOT_INSTALLED) = range(3, 12)
CANCELLED = 1


class InstallerTest(unittest.TestCase):
    """One desktop for all cases; each finds it as it was at the beginning."""

    options: argparse.Namespace
    desktop: Desktop
    setups: dict[str, pathlib.Path]
    plugins: dict[str, bytes]
    terms: dict[str, bytes]

    @classmethod
    def make_setups(cls, folder: pathlib.Path):
        """Of an older version, this one, and a newer one; their plug-ins differ behind the end of the file."""
        shipped = cls.options.plugin.read_bytes()
        cls.plugins = {OLDER: shipped + b"older", cls.options.version: shipped, NEWER: shipped + b"newer"}
        cls.setups = {}
        for version, content in cls.plugins.items():
            plugin, setup = folder / f"{version}.aip", folder / f"setup-{version}.exe"
            plugin.write_bytes(content)
            setup_program.make(setup, version, plugin)
            cls.setups[version] = setup

    @classmethod
    def read_terms(cls, folder: pathlib.Path):
        """As who takes the zip gets them."""
        name = f"QuorvelTypeAgentAI20-{cls.options.version}.zip"
        subprocess.run([sys.executable, ROOT / "packaging" / "packages.py", "--build-folder", cls.options.build_folder,
                        "--output", folder, "--only", name], check=True)
        with zipfile.ZipFile(folder / name) as package:
            cls.terms = {text: package.read(text) for text in TERMS}

    def setUp(self):
        self.version = self.options.version
        self.files = self.desktop.files()
        self.keys = []
        self.addCleanup(self.clear_desktop)

    def clear_desktop(self):
        for file in sorted(self.desktop.files() - self.files, reverse=True):
            path = pathlib.Path(file)
            shutil.rmtree(path) if path.is_dir() else path.unlink(missing_ok=True)
        self.desktop.delete_keys(rf"HKLM\{ENTRY}", rf"HKCU\{ENTRY}", *self.keys)

    # What is done.

    def make_host(self, folder: str = HOST, version: int = 20) -> str:
        program = self.desktop.path(rf"{folder}\{HOST_PROGRAM}")
        program.parent.mkdir(parents=True)
        self.desktop.path(rf"{folder}\Plug-ins").mkdir()
        shutil.copy(self.options.hosts / str(version) / "Illustrator.exe", program)
        return folder

    def set_values(self, key: str, values: dict[str, str]):
        self.keys.append(key)
        self.desktop.set_values(key, values)

    def setup(self, switches: str = "", version: str = "", without_rights: bool = False) -> int:
        """The exit code of a silent setup."""
        program = on_drive_z(self.setups[version or self.version])
        return self.desktop.start(f'"{program}" /S {switches}'.strip(), without_rights)

    def uninstaller(self, folder: str = PROGRAM_FOLDER, own_folder: str = "") -> int:
        """The exit code of a silent uninstaller that is told its folder, and so makes no copy of itself."""
        return self.desktop.start(rf'"{folder}\uninstall.exe" /S _?={own_folder or folder}')

    def uninstall(self, root: str = "HKLM", without_rights: bool = False):
        """As Windows does it. It goes on in a copy of itself."""
        self.desktop.start_and_wait_for_all(self.entry(root)["QuietUninstallString"], without_rights)

    def entry(self, root: str = "HKLM") -> dict[str, str]:
        return self.desktop.values(rf"{root}\{ENTRY}")

    def log(self, folder: str = PROGRAM_FOLDER) -> str:
        """Of the installation; without a folder, of a run that was refused."""
        name = "install.log" if folder else "QuorvelTypeAgentAI20-setup.log"
        files = [self.desktop.path(folder) / name] if folder else list(self.desktop.path("C:\\users").rglob(name))
        self.assertEqual(len(files), 1, "there is not one log")
        return files[0].read_text(encoding="utf-16")

    def profile(self) -> str:
        """The folder of the user."""
        [folder] = [each for each in self.desktop.path(r"C:\users").iterdir() if each.name != "Public"]
        return rf"C:\users\{folder.name}"

    def play(self, plugin: pathlib.Path) -> subprocess.CompletedProcess:
        """A story, with the simulated host, to a plug-in."""
        story = ROOT / "devkit" / "scenarios" / "saved.json"
        return self.desktop.run(self.options.simhost, "play", story, "--plugin", plugin, "--brief")

    # What is asserted.

    def new_files(self) -> set[str]:
        """Since the case began, below drive C; without the log of a run that was refused."""
        drive = str(self.desktop.drive) + "/"
        return {file.removeprefix(drive) for file in self.desktop.files() - self.files
                if not file.endswith("/QuorvelTypeAgentAI20-setup.log")}

    def assert_refused(self, code: int, expected: int, files: set[str], words: str):
        """With that code, for a reason that the log tells, and nothing has changed since the files were listed."""
        self.assertEqual(code, expected)
        self.assertIn(words, self.log(""))
        self.assertIn("Nothing was changed", self.log(""))
        self.assertEqual(self.new_files(), files)

    def assert_uninstaller_refused(self, files: set[str], words: str, without_rights: bool = False):
        """As Windows starts it: for a reason that its log tells, and nothing has changed."""
        self.uninstall(without_rights=without_rights)
        self.assertIn("Uninstalling", self.log("").splitlines()[0])
        self.assertIn(words, self.log(""))
        self.assertIn("Nothing was changed", self.log(""))
        self.assertEqual(self.new_files(), files)

    def assert_not_installed(self):
        self.assertEqual((self.entry("HKLM"), self.entry("HKCU")), ({}, {}))

    def assert_plays(self, plugin_folder: str):
        """What is installed there."""
        played = self.play(self.desktop.path(rf"{plugin_folder}\{PLUGIN}"))
        self.assertIn(b"Passed: ", played.stdout)
        self.assertEqual(played.returncode, 0)

    def assert_installed(self, plugin_folder: str, root: str = "HKLM", program_folder: str = PROGRAM_FOLDER,
                         version: str = ""):
        """All of it, and nothing half-done beside it."""
        version = version or self.version
        entry = self.entry(root)
        self.assertEqual(entry.get("DisplayVersion"), version)
        self.assertEqual(entry["PluginFolder"], plugin_folder)
        self.assertEqual(entry["InstallLocation"], program_folder)
        folder = self.desktop.path(plugin_folder)
        self.assertEqual((folder / PLUGIN).read_bytes(), self.plugins[version])
        self.assertEqual([file.name for file in folder.glob("*.aip*")], [PLUGIN])
        files = {file.name: file for file in self.desktop.path(program_folder).iterdir() if file.is_file()}
        texts = {"README.txt": archive.readme("installed.txt", version), **self.terms}
        self.assertEqual(set(files), {"install.log", "uninstall.exe", *texts})
        for name, text in texts.items():
            self.assertEqual(without_uninstaller(files[name].read_bytes()), text, name)
        self.assertIn(b"NSIS Contributors", files["THIRD-PARTY.txt"].read_bytes())
        self.assertIn(f"Version {version} is installed", self.log(program_folder))


def without_uninstaller(terms: bytes) -> bytes:
    """The terms of others' code without those of the uninstaller's, which the zip does not have."""
    listed = terms.replace(b"  nsis-common\r\n", b"", 1)
    return re.sub(rb"\r\n={80}\r\nnsis-common\r\n={80}\r\n.*?(?=\r\n={80}\r\n|\Z)", b"", listed, count=1, flags=re.DOTALL)


def main() -> None:
    parser = argparse.ArgumentParser()
    for name in ("build-folder", "plugin", "simhost", "start-program", "read-window", "hosts", "screenshots"):
        parser.add_argument(f"--{name}", type=pathlib.Path, required=True)
    parser.add_argument("--version", required=True)
    InstallerTest.options, rest = parser.parse_known_args()
    with tempfile.TemporaryDirectory() as folder:
        InstallerTest.make_setups(pathlib.Path(folder))
        InstallerTest.read_terms(pathlib.Path(folder) / "packages")
        InstallerTest.desktop = Desktop(InstallerTest.options.start_program)
        try:
            passed = unittest.main(module="__main__", argv=[sys.argv[0], *rest], exit=False).result.wasSuccessful()
        finally:
            InstallerTest.desktop.close()
    sys.exit(0 if passed else 1)

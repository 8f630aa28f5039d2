#!/usr/bin/env python3
"""The installer by itself, on a desktop of its own: what it did is looked for in files and registry."""

import contextlib
import pathlib
import shlex
import shutil
import stat
import subprocess
import tempfile

from certificates import make_certificate
from installer_desktop import on_drive_z
from installer_fixture import (APPS, COMMAND_LINE, ELEVATION_NEEDED, ENTRY, HOST, IN_USE, KEY_OF_HOST, NEWER,
                               NEWER_INSTALLED, NO_HOST, NOT_INSTALLED, NOT_WRITABLE, OLDER, OTHER_HOST, OWN_FOLDER,
                               PLUGIN, PROGRAM_FOLDER, ROOT, SEVERAL_HOSTS, TERMS, InstallerTest, main, setup_program)
from path_cases import FolderOfAPerson, Spellings  # noqa: F401 -- its cases run with these
from wizard_cases import Wizard  # noqa: F401 -- its cases run with these

ENVIRONMENT = r"HKCU\Environment"
USER_SHELL_FOLDERS = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Explorer\User Shell Folders"


class Fresh(InstallerTest):
    def test_for_all_users_installs_what_the_host_loads_and_goes_without_a_trace(self):
        self.make_host()
        files, registry = self.desktop.files(), self.desktop.registry()
        self.assertEqual(self.setup(), 0)
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}")
        entry = self.entry()
        self.assertEqual(entry["Publisher"], "Quorvel")
        self.assertEqual((entry["NoModify"], entry["NoRepair"]), ("00000001", "00000001"))
        self.assertIn("Quorvel Type Agent", entry["DisplayName"])
        self.assertGreater(int(entry["EstimatedSize"], 16), 200)
        self.assert_plays(rf"{HOST}\{OWN_FOLDER}")
        self.uninstall()
        self.assertEqual({file for file in self.desktop.files() if "/simhost" not in file}, files)
        self.assertEqual(self.desktop.registry(), registry)

    def test_for_one_user_needs_no_rights_and_no_host(self):
        # Wine takes the name of the user from Linux. The folders that Windows names after it are elsewhere here.
        profile = r"C:\users\Jörg Łukasz 山"
        temporary = rf"{profile}\Zwischen ablage"
        self.desktop.path(temporary).mkdir(parents=True)
        for key in (USER_SHELL_FOLDERS, ENVIRONMENT):
            self.addCleanup(self.desktop.import_text, self.desktop.exported(key))
        self.desktop.set_values(USER_SHELL_FOLDERS, {"Local AppData": rf"{profile}\Lokale Daten"})
        self.desktop.set_values(ENVIRONMENT, {"TEMP": temporary, "TMP": temporary})
        files = self.desktop.files()
        self.assertEqual(self.setup("/CurrentUser", without_rights=True), 0)
        program_folder = rf"{profile}\Lokale Daten\Programs\Quorvel Type Agent"
        self.assert_installed(rf"{program_folder}\Plug-ins", "HKCU", program_folder)
        self.assertIn("Additional Plug-ins Folder", self.log(program_folder))
        self.assertEqual(self.entry("HKLM"), {})
        self.assert_plays(rf"{program_folder}\Plug-ins")
        self.uninstall("HKCU")
        self.assert_not_installed()
        # The profile was not made by the installer alone: Windows makes it as soon as it is asked for.
        left = {file for file in self.desktop.files() - files if "Quorvel" in file}
        self.assertEqual(left, set())
        self.assertEqual([file for file in self.desktop.path(temporary).iterdir() if "simhost" not in file.name], [])

    def test_rights_decide_when_nothing_is_said(self):
        self.make_host()
        self.assertEqual(self.setup(without_rights=True), 0)
        self.assertNotEqual(self.entry("HKCU"), {})
        # What is installed already decides from then on.
        self.assertEqual(self.setup(), 0)
        self.assertEqual(self.entry("HKLM"), {})

    def test_all_users_without_rights_is_refused(self):
        self.make_host()
        before = self.new_files()
        self.assert_refused(self.setup("/AllUsers", without_rights=True), ELEVATION_NEEDED, before, "administrator")
        self.assert_not_installed()

    def test_wrong_command_line_is_refused(self):
        self.make_host()
        before = self.new_files()
        self.assert_refused(self.setup("/AllUser"), COMMAND_LINE, before, "/AllUser")
        self.assert_refused(self.setup(r"/D=Plug-ins\Mine"), COMMAND_LINE, before, "whole path")
        self.assert_not_installed()


class FindingHosts(InstallerTest):
    def assert_found(self):
        self.assertEqual(self.setup(), 0)
        self.assert_installed(rf"{OTHER_HOST}\{OWN_FOLDER}")

    def test_by_its_own_key(self):
        self.make_host(OTHER_HOST)
        self.set_values(KEY_OF_HOST, {"InstallPath": OTHER_HOST + "\\"})
        self.assert_found()

    def test_by_a_subkey_of_it(self):
        self.make_host(OTHER_HOST)
        self.set_values(rf"{KEY_OF_HOST}\InstallPath", {"": rf"{OTHER_HOST}\Support Files\Contents\Windows"})
        self.assert_found()

    def test_by_the_path_of_its_program(self):
        self.make_host(OTHER_HOST)
        self.set_values(r"HKLM\Software\Microsoft\Windows\CurrentVersion\App Paths\Illustrator.exe",
                        {"": rf'"{OTHER_HOST}\Support Files\Contents\Windows\Illustrator.exe"'})
        self.assert_found()

    def test_among_the_apps(self):
        self.make_host(OTHER_HOST)
        self.set_values(rf"HKLM\{APPS}\ILST_20_0",
                        {"DisplayName": "Adobe Illustrator CC 2015.3", "InstallLocation": OTHER_HOST})
        self.assert_found()

    def test_among_the_apps_that_are_32_bit_by_the_folder_above(self):
        # The host's own folder has its usual name there.
        above = r"C:\Große Programme"
        self.make_host(rf"{above}\Adobe Illustrator CC 2015.3")
        key = r"HKLM\Software\Wow6432Node\Microsoft\Windows\CurrentVersion\Uninstall\ILST_20_0"
        self.set_values(key, {"DisplayName": "Adobe Illustrator CC 2015.3", "InstallLocation": above})
        self.assertEqual(self.setup(), 0)
        self.assert_installed(rf"{above}\Adobe Illustrator CC 2015.3\{OWN_FOLDER}")

    def test_one_that_is_found_twice_is_one(self):
        self.make_host()
        self.set_values(KEY_OF_HOST, {"InstallPath": HOST.upper() + "\\"})
        self.assertEqual(self.setup(), 0)
        self.assertEqual(self.log().count("Found Adobe Illustrator"), 1)

    def test_what_is_none_is_passed_over(self):
        self.make_host(HOST, version=21)
        self.make_host(OTHER_HOST)
        self.desktop.path(rf"{OTHER_HOST}\Plug-ins").rmdir()
        self.set_values(KEY_OF_HOST, {"InstallPath": OTHER_HOST, "Elsewhere": r"C:\Not there"})
        before = self.new_files()
        self.assert_refused(self.setup(), NO_HOST, before, "has no folder Plug-ins")
        self.assert_not_installed()

    def test_of_several_one_has_to_be_named(self):
        self.make_host()
        self.make_host(OTHER_HOST)
        self.set_values(KEY_OF_HOST, {"InstallPath": OTHER_HOST})
        before = self.new_files()
        self.assert_refused(self.setup(), SEVERAL_HOSTS, before, "There are 2 copies")
        self.assert_not_installed()
        self.assertEqual(self.setup(rf"/D={OTHER_HOST}\{OWN_FOLDER}"), 0)
        self.assert_installed(rf"{OTHER_HOST}\{OWN_FOLDER}")


class OverAnother(InstallerTest):
    def test_upgrade_and_repair(self):
        self.make_host()
        self.assertEqual(self.setup(version=OLDER), 0)
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}", version=OLDER)
        self.assertEqual(self.setup(), 0)
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}")
        self.assertIn(f"Installed already: version {OLDER}", self.log())
        self.assertIn(f"Version {OLDER} is installed", self.log())
        self.assert_plays(rf"{HOST}\{OWN_FOLDER}")
        self.desktop.path(rf"{HOST}\{OWN_FOLDER}\{PLUGIN}").write_bytes(b"damaged")
        self.desktop.path(rf"{PROGRAM_FOLDER}\uninstall.exe").unlink()
        self.assertEqual(self.setup(), 0)
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}")
        before = self.new_files()
        self.uninstall()
        # The folders were made by the first of the three.
        self.assertFalse([file for file in before & self.new_files() if "Quorvel" in file])

    def test_downgrade_is_refused_unless_asked_for(self):
        self.make_host()
        self.assertEqual(self.setup(version=NEWER), 0)
        before = self.new_files()
        self.assert_refused(self.setup(), NEWER_INSTALLED, before, f"Version {NEWER} is installed")
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}", version=NEWER)
        self.assertEqual(self.setup("/Downgrade"), 0)
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}")

    def test_to_another_folder_leaves_nothing_in_the_first(self):
        self.make_host()
        mine = rf"{HOST}\Plug-ins\Meine Schriften"
        self.assertEqual(self.setup(version=OLDER), 0)
        self.assertEqual(self.setup(rf"/D={mine}"), 0)
        self.assert_installed(mine)
        self.assertFalse(self.desktop.path(rf"{HOST}\{OWN_FOLDER}").exists())
        # Without a word, it stays where it is.
        self.assertEqual(self.setup(), 0)
        self.assert_installed(mine)

    def test_of_a_host_that_is_gone_goes_to_the_one_that_is_there(self):
        self.make_host()
        self.assertEqual(self.setup(version=OLDER), 0)
        shutil.rmtree(self.desktop.path(HOST))
        self.make_host(OTHER_HOST)
        self.set_values(KEY_OF_HOST, {"InstallPath": OTHER_HOST})
        self.assertEqual(self.setup(), 0)
        self.assert_installed(rf"{OTHER_HOST}\{OWN_FOLDER}")

    def test_copies_elsewhere_are_told_and_left(self):
        self.make_host()
        by_hand = self.desktop.path(rf"{HOST}\Plug-ins\By hand\{PLUGIN}")
        by_hand.parent.mkdir()
        by_hand.write_bytes(b"another")
        self.assertEqual(self.setup("/CurrentUser"), 0)
        self.assertEqual(self.setup("/AllUsers"), 0)
        self.assertIn(rf"Warning: another copy of the plug-in is in {HOST}\Plug-ins\By hand\{PLUGIN}", self.log())
        self.assertIn(rf"in {self.entry('HKCU')['PluginFolder']}\{PLUGIN}", self.log())
        self.assertEqual(self.log().count("Warning"), 2)
        self.assertEqual(by_hand.read_bytes(), b"another")
        self.uninstall()
        self.assertTrue(by_hand.exists())
        self.assertNotEqual(self.entry("HKCU"), {})
        # The copy for all is below the host's folder and in the registry. It is told once.
        self.assertEqual(self.setup("/AllUsers"), 0)
        self.assertEqual(self.setup("/CurrentUser"), 0)
        log = self.log(self.entry("HKCU")["InstallLocation"]).rpartition(" Setup of ")[2]
        self.assertEqual(log.count(rf"in {HOST}\{OWN_FOLDER}\{PLUGIN};"), 1)
        self.assertEqual(log.count("Warning"), 2)

    def test_what_cannot_be_removed_from_the_folder_before_is_told(self):
        self.make_host()
        self.assertEqual(self.setup(version=OLDER), 0)
        with locked(self.desktop.path(rf"{HOST}\{OWN_FOLDER}")):
            self.assertEqual(self.setup(r"/D=C:\Own plug-ins"), 0)
        self.assert_installed(r"C:\Own plug-ins")
        left = rf"{HOST}\{OWN_FOLDER}\{PLUGIN}"
        self.assertTrue(self.desktop.path(left).exists())
        self.assertIn(f"{left} cannot be removed", self.log())
        self.assertEqual(self.log().count(f"another copy of the plug-in is in {left};"), 1)


class AfterAKilledRun(InstallerTest):
    """Which has left files that end in .old and .new."""

    def setUp(self):
        super().setUp()
        self.make_host()
        self.assertEqual(self.setup(version=OLDER), 0)
        self.plugin = self.desktop.path(rf"{HOST}\{OWN_FOLDER}\{PLUGIN}")

    def leave(self, *endings: str):
        others = [self.desktop.path(PROGRAM_FOLDER) / name for name in ("uninstall.exe", "README.txt", *TERMS)]
        for file in (self.plugin, *others):
            for ending in endings:
                file.with_name(file.name + ending).write_bytes(b"stale")

    def test_the_next_one_installs(self):
        self.leave(".old", ".new")
        self.assertEqual(self.setup(), 0)
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}")

    def test_one_that_gets_stuck_does_not_put_stale_files_back(self):
        self.leave(".old")
        with locked(self.desktop.path(PROGRAM_FOLDER)):
            self.assertEqual(self.setup(), NOT_WRITABLE)
        self.assertIn("a file that ends in .old, cannot be removed", self.log(""))
        self.assertEqual(self.plugin.read_bytes(), self.plugins[OLDER])
        for file in self.desktop.path(PROGRAM_FOLDER).glob("*.old"):
            file.unlink()
        self.plugin.with_name(PLUGIN + ".old").write_bytes(b"stale")
        with locked(self.desktop.path(PROGRAM_FOLDER)):
            self.assertEqual(self.setup(), NOT_WRITABLE)
        self.assertIn("cannot be written", self.log(""))
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}", version=OLDER)

    def test_the_only_one_there_is_counts(self):
        self.plugin.rename(self.plugin.with_name(PLUGIN + ".old"))
        with locked(self.desktop.path(PROGRAM_FOLDER)):
            self.assertEqual(self.setup(), NOT_WRITABLE)
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}", version=OLDER)

    def test_the_uninstaller_removes_them(self):
        self.leave(".old", ".new")
        self.uninstall()
        self.assert_not_installed()
        self.assertEqual([file for file in self.new_files() if "Quorvel" in file], [])


@contextlib.contextmanager
def locked(folder: pathlib.Path):
    """Against writing."""
    mode = stat.S_IMODE(folder.stat().st_mode)
    folder.chmod(0o555)
    try:
        yield
    finally:
        folder.chmod(mode)


class Refused(InstallerTest):
    def test_while_the_host_runs(self):
        self.make_host()
        before = self.new_files()
        with self.desktop.running(self.desktop.path(rf"{HOST}\Support Files\Contents\Windows\Illustrator.exe")):
            self.assert_refused(self.setup(), IN_USE, before, "is running")
            self.assert_not_installed()
        self.assertEqual(self.setup(), 0)
        before = self.new_files()
        with self.desktop.running(self.desktop.path(rf"{HOST}\Support Files\Contents\Windows\Illustrator.exe")):
            self.assert_uninstaller_refused(before, "is running")
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}")

    def test_not_while_a_host_of_another_version_runs(self):
        self.make_host()
        self.make_host(OTHER_HOST, version=21)
        with self.desktop.running(self.desktop.path(rf"{OTHER_HOST}\Support Files\Contents\Windows\Illustrator.exe")):
            self.assertEqual(self.setup(), 0)

    def test_while_the_file_is_in_use(self):
        self.make_host()
        self.assertEqual(self.setup(version=OLDER), 0)
        viewer = self.desktop.path(r"C:\Viewer.exe")
        shutil.copy(self.options.hosts / "20" / "Illustrator.exe", viewer)
        before = self.new_files()
        with self.desktop.running(viewer, rf"{HOST}\{OWN_FOLDER}\{PLUGIN}"):
            self.assert_refused(self.setup(), IN_USE, before, "is in use")
            self.assert_refused(self.setup(rf"/D={HOST}\Plug-ins\Elsewhere"), IN_USE, before, "is in use")
            self.assert_uninstaller_refused(before, "is in use")
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}", version=OLDER)

    def test_folder_of_the_host_that_is_not_writable(self):
        self.make_host()
        before = self.new_files()
        with locked(self.desktop.path(rf"{HOST}\Plug-ins")):
            self.assert_refused(self.setup(), NOT_WRITABLE, before, "cannot be written")
        self.assert_not_installed()

    def test_folder_of_the_uninstaller_that_is_not_writable(self):
        self.make_host()
        before = self.new_files()
        with locked(self.desktop.path(r"C:\Program Files")):
            self.assert_refused(self.setup(), NOT_WRITABLE, before, "cannot be written")
        self.assert_not_installed()

    def test_upgrade_that_gets_stuck_leaves_the_version_before(self):
        self.make_host()
        self.assertEqual(self.setup(version=OLDER), 0)
        before = self.new_files()
        for folder in (PROGRAM_FOLDER, rf"{HOST}\{OWN_FOLDER}"):
            with self.subTest(folder), locked(self.desktop.path(folder)):
                self.assert_refused(self.setup(), NOT_WRITABLE, before, "cannot be written")
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}", version=OLDER)

    def test_upgrade_that_gets_stuck_half_way_puts_all_back(self):
        self.make_host()
        self.assertEqual(self.setup(version=OLDER), 0)
        # As of a version that had none.
        self.desktop.path(rf"{PROGRAM_FOLDER}\LICENSE.txt").unlink()
        viewer = self.desktop.path(r"C:\Viewer.exe")
        shutil.copy(self.options.hosts / "20" / "Illustrator.exe", viewer)
        before = {file: file.read_bytes() for file in self.ours()}
        files = self.new_files()
        # By then, the texts have their names.
        with self.desktop.running(viewer, "--open", rf"{PROGRAM_FOLDER}\uninstall.exe"):
            self.assert_refused(self.setup(), NOT_WRITABLE, files, "cannot be written")
        self.assertEqual({file: file.read_bytes() for file in self.ours()}, before)
        self.assertEqual(self.entry()["DisplayVersion"], OLDER)

    def ours(self) -> list[pathlib.Path]:
        folders = (PROGRAM_FOLDER, rf"{HOST}\{OWN_FOLDER}")
        return [file for folder in folders for file in self.desktop.path(folder).iterdir()]


class Uninstalling(InstallerTest):
    def test_of_another_folder_leaves_what_is_there_for_all(self):
        self.make_host()
        self.assertEqual(self.setup(), 0)
        another = r"C:\users\another\Quorvel Type Agent"
        self.desktop.path(another).mkdir(parents=True)
        shutil.copy(self.desktop.path(rf"{PROGRAM_FOLDER}\uninstall.exe"), self.desktop.path(another))
        before = self.new_files()
        self.assert_refused(self.uninstaller(another), NOT_INSTALLED, before, f"Nothing is installed in {another}")
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}")

    def test_what_cannot_be_removed_is_told(self):
        self.make_host()
        self.assertEqual(self.setup(), 0)
        before = self.new_files()
        with locked(self.desktop.path(rf"{HOST}\{OWN_FOLDER}")):
            self.assert_refused(self.uninstaller(), NOT_WRITABLE, before, "cannot be removed")
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}")

    def test_that_does_not_know_where_the_plug_in_is_removes_nothing(self):
        self.make_host()
        self.assertEqual(self.setup(), 0)
        self.desktop.delete_keys(rf"HKLM\{ENTRY}")
        # What an empty name of a folder would lead to.
        self.desktop.path(rf"C:\{PLUGIN}").write_bytes(b"mine")
        before = self.new_files()
        self.assert_refused(self.uninstaller(), NOT_INSTALLED, before, "does not tell where the plug-in is")

    def test_what_the_user_put_there_stays(self):
        self.make_host()
        self.desktop.path(r"C:\Own plug-ins").mkdir()
        self.assertEqual(self.setup(r"/D=C:\Own plug-ins"), 0)
        note = self.desktop.path(rf"{PROGRAM_FOLDER}\note.txt")
        note.write_bytes(b"mine")
        self.uninstall()
        self.assert_not_installed()
        # An empty folder too, when it was there before.
        self.assertEqual(list(self.desktop.path(r"C:\Own plug-ins").iterdir()), [])
        self.assertEqual(list(self.desktop.path(PROGRAM_FOLDER).iterdir()), [note])

    def test_by_the_installer_waits_and_answers(self):
        self.make_host()
        self.assertEqual(self.setup(), 0)
        before = self.new_files()
        with self.desktop.running(self.desktop.path(rf"{HOST}\Support Files\Contents\Windows\Illustrator.exe")):
            self.assert_refused(self.setup("/Uninstall"), IN_USE, before, "is running")
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}")
        self.assertEqual(self.setup("/Uninstall"), 0)
        self.assert_not_installed()
        self.assertFalse([file for file in self.new_files() if "Quorvel" in file])
        # And when there is nothing left to do.
        self.assertEqual(self.setup("/Uninstall"), 0)
        self.assertIn("Nothing is installed", self.log(""))

    def test_uninstaller_of_a_signed_setup_is_signed(self):
        self.make_host()
        sign = ROOT / "scripts" / "sign"
        with tempfile.TemporaryDirectory(suffix=" for keys") as folder:
            certificate = make_certificate(pathlib.Path(folder), "Ours")
            by_key = ["--certificate", certificate, "--key", certificate.with_suffix(".key"), "--trust", certificate]
            setup = pathlib.Path(folder) / "signed-setup.exe"
            setup_program.make(setup, self.version, self.options.plugin, shlex.join(map(str, [sign, *by_key])))
            self.assertEqual(self.desktop.start(f'"{on_drive_z(setup)}" /S'), 0)
            self.assert_installed(rf"{HOST}\{OWN_FOLDER}")
            uninstaller = self.desktop.path(rf"{PROGRAM_FOLDER}\uninstall.exe")
            subprocess.run([sign, "--verify", "--trust", certificate, uninstaller], check=True)
        self.uninstall()
        self.assert_not_installed()

    def test_all_users_without_rights_is_refused(self):
        self.make_host()
        self.assertEqual(self.setup(), 0)
        before = self.new_files()
        self.assert_uninstaller_refused(before, "administrator", without_rights=True)
        self.assert_installed(rf"{HOST}\{OWN_FOLDER}")


if __name__ == "__main__":
    main()

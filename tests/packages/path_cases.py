"""Folders that are spelled in an unusual way, on the command line, in the registry and by a person."""

from installer_desktop import on_drive_z
from installer_fixture import (COMMAND_LINE, ENTRY, HOST, KEY_OF_HOST, OLDER, OWN_FOLDER, PLUGIN, PROGRAM_FOLDER,
                               InstallerTest)
from wizard_cases import Window

FOLDER = rf"{HOST}\{OWN_FOLDER}"


class PathTest(InstallerTest):
    def link(self, link: str, folder: str):
        """Which Windows follows, as it does a junction."""
        path = self.desktop.path(link)
        path.symlink_to(self.desktop.path(folder), target_is_directory=True)
        self.addCleanup(path.unlink)


class Spellings(PathTest):
    def short(self, folder: str) -> str:
        """A path whose names have at most eight letters and an ending of three."""
        # Wine leaves the last name as it is: that of something in the folder.
        below = next(self.desktop.path(folder).iterdir()).name
        script = self.desktop.folder / "short.bat"
        script.write_text(f'@for %%i in ("{folder}\\{below}") do @echo %%~si\r\n', encoding="ascii")
        said = self.desktop.run("cmd", "/c", on_drive_z(script)).stdout.decode("ascii").strip()
        short = said.removesuffix("\\" + below)
        self.assertIn("~", short.rpartition("\\")[2])
        self.assertLessEqual(max(map(len, short.split("\\"))), 12)
        return short

    def link_to(self, folder: str) -> str:
        self.link(r"C:\Link", folder)
        return r"C:\Link"

    def test_an_upgrade_of_a_folder_in_another_spelling_is_one_in_place(self):
        self.make_host()
        self.assertEqual(self.setup(version=OLDER), 0)
        self.assertEqual(self.setup(), 0)
        files, registry = self.new_files(), self.desktop.exported(rf"HKLM\{ENTRY}")
        for spelling in (FOLDER + "\\", rf"{HOST}\.\{OWN_FOLDER}", rf"{HOST}\Plug-ins\..\{OWN_FOLDER}", FOLDER.upper(),
                         self.short(FOLDER)):
            with self.subTest(spelling):
                self.assertEqual(self.setup("/Downgrade", version=OLDER), 0)
                self.assertEqual(self.setup(f"/D={spelling}"), 0)
                self.assert_installed(FOLDER)
                self.assertEqual(self.new_files(), files)
                self.assertEqual(self.desktop.exported(rf"HKLM\{ENTRY}"), registry)
        self.assertNotIn("Warning", self.log())
        self.assertNotIn("Removing", self.log())

    def test_the_uninstaller_in_another_spelling_is_the_one_that_was_installed(self):
        self.make_host()
        for spelled in (self.short, lambda folder: rf"{folder}\.\..\Quorvel Type Agent", self.link_to):
            self.assertEqual(self.setup(), 0)
            folder = spelled(PROGRAM_FOLDER)
            with self.subTest(folder):
                self.assertEqual(self.uninstaller(folder), 0)
                self.assert_not_installed()
                self.assertFalse(self.desktop.path(FOLDER).exists())

    def test_a_folder_that_is_not_there_yet_is_known_by_its_whole_name(self):
        self.make_host()
        self.assertEqual(self.setup(rf"/D={self.short(HOST)}\Support Files\..\Plug-ins\.\Of  mine\.."
                                    r"\Quorvel Type Agent"), 0)
        self.assert_installed(FOLDER)
        self.assertNotIn("Warning", self.log())
        self.uninstall()
        self.assertFalse(self.desktop.path(FOLDER).exists())

    def test_a_link_to_a_folder_is_that_folder(self):
        self.make_host()
        self.assertEqual(self.setup(version=OLDER), 0)
        files = self.new_files()
        self.link(r"C:\Link", FOLDER)
        self.assertEqual(self.setup(r"/D=C:\Link"), 0)
        self.assertEqual(self.new_files(), files | {"Link"})
        self.assert_installed(FOLDER)
        self.assertNotIn("Warning", self.log())

    def test_a_host_in_several_spellings_is_one(self):
        self.make_host()
        places = (rf"{HOST}\.", rf"{HOST}\Plug-ins\..\\", HOST.upper(), self.short(HOST), HOST.replace("\\", "/"),
                  rf"{HOST}\Support Files\Contents\..\Contents\Windows\Illustrator.exe")
        self.set_values(KEY_OF_HOST, {f"Path{number}": place for number, place in enumerate(places)})
        self.assertEqual(self.setup(), 0)
        self.assertEqual(self.log().count("Found Adobe Illustrator"), 1)
        self.assert_installed(FOLDER)

    def test_the_copy_for_one_user_in_another_spelling_is_no_other_copy(self):
        self.make_host()
        self.set_values(rf"HKCU\{ENTRY}", {"PluginFolder": rf"{self.short(HOST)}\.\{OWN_FOLDER}"})
        self.assertEqual(self.setup("/AllUsers"), 0)
        self.assertTrue(self.desktop.path(rf"{FOLDER}\{PLUGIN}").exists())
        self.assertNotIn("Warning", self.log())

    def test_what_is_no_whole_path_is_refused(self):
        self.make_host()
        before = self.new_files()
        for folder in ("Plug-ins", r"\Plug-ins", "C:Plug-ins", "C:", "C:\\", r"\\server", r"\\server\share"):
            with self.subTest(folder):
                self.assert_refused(self.setup(f"/D={folder}"), COMMAND_LINE, before, "whole path")

    def test_a_share_keeps_its_name(self):
        self.make_host()
        self.set_values(rf"HKLM\{ENTRY}", {"DisplayVersion": OLDER, "PluginFolder": r"\\server\share\Mine\.\\"})
        self.assertEqual(self.setup(), 0)
        self.assertIn(f"version {OLDER} in \\\\server\\share\\Mine\n", self.log())
        self.assert_installed(FOLDER)


class FolderOfAPerson(PathTest):
    def first_page(self, folder: str) -> Window:
        """The only one when it is known for whom, with that folder in its field."""
        window = Window(self, "Quorvel Type Agent Setup", [self.setups[self.version], "/AllUsers"])
        window.control("Button", "Install")
        window.control("Edit", folder)
        return window

    def type_in_field(self, window: Window, *keys: str, text: str):
        place = window.control("Edit")["place"]
        window.click_at(place["x"] + place["width"] // 2, place["y"] + place["height"] // 2)
        window.tool("xdotool", "key", *keys)
        window.tool("xdotool", "type", "--delay", "20", text)

    def install(self, window: Window):
        window.press("Install")
        window.press("Finish")
        self.assertEqual(window.code(), 0)

    def test_a_backslash_at_the_end_is_no_other_folder(self):
        self.make_host()
        self.assertEqual(self.setup(version=OLDER), 0)
        self.assertEqual(self.setup(), 0)
        files, registry = self.new_files(), self.desktop.exported(rf"HKLM\{ENTRY}")
        self.assertEqual(self.setup("/Downgrade", version=OLDER), 0)
        window = self.first_page(FOLDER)
        self.type_in_field(window, "End", text="\\")
        window.control("Edit", FOLDER + "\\")
        self.install(window)
        self.assert_installed(FOLDER)
        self.assertEqual(self.new_files(), files)
        self.assertEqual(self.desktop.exported(rf"HKLM\{ENTRY}"), registry)

    def test_what_is_no_whole_path_is_asked_for_again(self):
        self.make_host()
        window = self.first_page(FOLDER)
        self.type_in_field(window, "ctrl+a", text=r"Plug-ins\Mine")
        window.control("Edit", r"Plug-ins\Mine")
        window.press("Install")
        window.wait_for_text("must be a whole path")
        self.assert_not_installed()
        window.press("OK")
        self.type_in_field(window, "ctrl+a", text=r"C:\Plug-ins\Mine")
        window.control("Edit", r"C:\Plug-ins\Mine")
        self.install(window)
        self.assert_installed(r"C:\Plug-ins\Mine")

    def test_a_folder_that_turns_out_to_be_the_one_before_keeps_the_plug_in(self):
        """It gets its second path when setup has read the first one already."""
        self.make_host()
        self.assertEqual(self.setup(r"/D=C:\First", version=OLDER), 0)
        window = self.first_page(r"C:\First")
        self.desktop.path(r"C:\First").rename(self.desktop.path(r"C:\Second"))
        self.link(r"C:\First", r"C:\Second")
        self.type_in_field(window, "ctrl+a", text=r"C:\Second")
        window.control("Edit", r"C:\Second")
        self.install(window)
        self.assert_installed(r"C:\Second")
        self.assertIn(r"C:\Second is C:\First, where it was before", self.log())
        # Who followed it would remove the only one.
        self.assertNotIn("Warning", self.log())

"""The installer as a person uses it, by the mouse."""

import json
import pathlib
import subprocess
import time

from installer_desktop import LOADER, on_drive_z
from installer_fixture import (APPS, CANCELLED, HOST, HOST_PROGRAM, IN_USE, KEY_OF_HOST, OTHER_HOST, OWN_FOLDER,
                               PROGRAM_FOLDER, SECOND_RUN, InstallerTest)

PATIENCE_SECONDS = 60
# Where a line of a list is clicked, from its left end.
IN_LINE = 40


class Window:
    """The window of a running program: read by Windows' own means, and operated by the mouse of its display."""

    def __init__(self, test: InstallerTest, title: str, command: list[str | pathlib.Path]):
        self.test = test
        # Its last pages say more, or end with a blank.
        self.titles = [title, title + " ", title + ": Completed"]
        self.environment = test.desktop.environment
        self.process = subprocess.Popen([LOADER, *map(str, command)], env=self.environment, stdin=subprocess.DEVNULL,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        test.addCleanup(self.end)

    def end(self):
        self.process.kill()
        self.process.wait()

    def wait_for(self, what: str, condition):
        end = time.monotonic() + PATIENCE_SECONDS
        while time.monotonic() < end:
            if value := condition():
                return value
            time.sleep(0.1)
        raise AssertionError(f"{what} did not come within {PATIENCE_SECONDS} seconds; there is {self.controls()}")

    def controls(self) -> list[dict]:
        for title in self.titles:
            read = self.test.desktop.run(self.test.options.read_window, title)
            if read.returncode == 0:
                return json.loads(read.stdout)["controls"]
        return []

    def control(self, kind: str, text: str | None = None) -> dict:
        """As soon as it can be used."""
        def found():
            return [each for each in self.controls() if each["class"] == kind and each["enabled"] and
                    (text is None or text in (each["text"], each["text"].replace("&", "")))]
        return self.wait_for(f"{kind} {text or ''}", found)[0]

    def tool(self, *command: str):
        subprocess.run(command, env=self.environment, check=True, stdout=subprocess.DEVNULL)

    def click_at(self, x: int, y: int):
        self.tool("xdotool", "mousemove", str(x), str(y), "click", "1")

    def press(self, text: str):
        place = self.control("Button", text)["place"]
        self.click_at(place["x"] + place["width"] // 2, place["y"] + place["height"] // 2)

    def click_line(self, text: str):
        of_list = self.control("ListBox")
        line = of_list["lines"].index(text) * of_list["line_height"] + of_list["line_height"] // 2
        self.click_at(of_list["place"]["x"] + IN_LINE, of_list["place"]["y"] + line)

    def screenshot(self, name: str):
        self.test.options.screenshots.mkdir(parents=True, exist_ok=True)
        self.tool("import", "-window", "root", str(self.test.options.screenshots / f"{name}.png"))

    def wait_for_text(self, text: str):
        self.wait_for(text, lambda: [each for each in self.controls() if text in each["text"]])

    def code(self) -> int:
        """Of the program that has ended."""
        return self.process.wait(PATIENCE_SECONDS)


class Wizard(InstallerTest):
    def test_a_person_chooses_one_of_two_hosts_and_removes_it_again(self):
        self.make_host()
        self.make_host(OTHER_HOST)
        self.set_values(KEY_OF_HOST, {"InstallPath": OTHER_HOST})
        before = self.new_files()
        window = Window(self, "Quorvel Type Agent Setup", [self.setups[self.version]])
        window.press("Next >")
        window.control("Button", "Install")
        self.assertEqual(sorted(window.control("ListBox")["lines"]), [HOST, OTHER_HOST])
        # Neither is more likely than the other.
        window.control("Edit", "")
        window.click_line(OTHER_HOST)
        window.control("Edit", rf"{OTHER_HOST}\{OWN_FOLDER}")
        window.screenshot("installer")
        window.press("Install")
        window.control("Button", "Finish")
        # One & would be an underline.
        window.wait_for_text(rf"The plug-in is in {OTHER_HOST}\{OWN_FOLDER}".replace("&", "&&"))
        window.screenshot("installed")
        window.press("Finish")
        self.assertEqual(window.code(), 0)
        self.assert_installed(rf"{OTHER_HOST}\{OWN_FOLDER}")

        window = Window(self, "Quorvel Type Agent Uninstall", [self.desktop.path(rf"{PROGRAM_FOLDER}\uninstall.exe")])
        window.press("Uninstall")
        window.press("Close")
        window.wait_for("the end", lambda: self.new_files() == before)
        self.assert_not_installed()

    def test_a_person_chooses_to_have_it_alone(self):
        """Though there is a host, and the rights are there to install for all."""
        self.make_host()
        # Windows has that key from the beginning.
        self.set_values(rf"HKCU\{APPS}", {})
        files, registry = self.desktop.files(), self.desktop.registry()
        window = Window(self, "Quorvel Type Agent Setup", [self.setups[self.version]])
        window.press("Only me (a preference of the host has to be set afterwards)")
        window.press("Next >")
        window.control("Button", "Finish")
        program_folder = rf"{self.profile()}\AppData\Local\Programs\Quorvel Type Agent"
        window.wait_for_text(rf"{program_folder}\Plug-ins")
        window.wait_for_text("Additional Plug-ins Folder")
        window.press("Finish")
        self.assertEqual(window.code(), 0)
        self.assert_installed(rf"{program_folder}\Plug-ins", "HKCU", program_folder)
        self.assertEqual(self.entry("HKLM"), {})
        self.assertFalse(self.desktop.path(PROGRAM_FOLDER).exists())
        self.assertFalse(self.desktop.path(rf"{HOST}\{OWN_FOLDER}").exists())
        self.uninstall("HKCU")
        self.assertEqual(self.desktop.files(), files)
        self.assertEqual(self.desktop.registry(), registry)

    def test_who_cancels_before_installing_leaves_nothing(self):
        self.make_host()
        files, registry = self.desktop.files(), self.desktop.registry()
        for page, last_button in (("first", "Next >"), ("last", "Install")):
            with self.subTest(page):
                window = Window(self, "Quorvel Type Agent Setup", [self.setups[self.version]])
                if page == "last":
                    window.press("Next >")
                    window.control("Button", "Install")
                    window.click_line(HOST)
                    window.control("Edit", rf"{HOST}\{OWN_FOLDER}")
                window.control("Button", last_button)
                window.press("Cancel")
                # Asked whether that was meant, a person may still go on.
                window.press("No")
                window.control("Button", last_button)
                window.press("Cancel")
                window.press("Yes")
                self.assertEqual(window.code(), CANCELLED)
                self.assertEqual(self.desktop.files(), files)
                self.assertEqual(self.desktop.registry(), registry)

    def test_who_cancels_while_the_host_runs_is_told_once(self):
        self.make_host()
        before = self.new_files()
        with self.desktop.running(self.desktop.path(rf"{HOST}\{HOST_PROGRAM}")):
            window = Window(self, "Quorvel Type Agent Setup", [self.setups[self.version], "/AllUsers"])
            window.press("Install")
            window.wait_for_text("is running. Quit it, then try again.")
            window.press("Cancel")
            self.assertEqual(window.code(), IN_USE)
        self.assert_refused(IN_USE, IN_USE, before, "It was not quit")

    def test_a_second_run_is_refused_while_one_goes_on(self):
        self.make_host()
        self.assertEqual(self.setup(), 0)
        before = self.new_files()
        window = Window(self, "Quorvel Type Agent Setup", [self.setups[self.version]])
        window.control("Button", "Next >")
        log = self.log("")
        self.assertEqual(self.setup(), SECOND_RUN)
        self.assertEqual(self.uninstaller(), SECOND_RUN)
        # The log is the first one's.
        self.assertEqual(self.log(""), log)
        window.press("Cancel")
        window.press("Yes")
        self.assertEqual(window.code(), CANCELLED)
        self.assertEqual(self.new_files(), before)
        self.assertEqual(self.setup("/Uninstall"), 0)
        self.assert_not_installed()

    def test_rights_are_asked_for_once(self):
        """Wine's way to ask for them gives none."""
        self.make_host()
        before = self.new_files()
        setup = f'"{on_drive_z(self.setups[self.version])}" /AllUsers'
        window = Window(self, "Quorvel Type Agent Setup", self.desktop.starter(setup, without_rights=True))
        window.wait_for_text("they were not given")
        window.press("OK")
        window.wait_for("the end", lambda: not window.controls())
        self.assertIn("they were not given", self.log(""))
        self.assertEqual(self.new_files(), before)
        self.assert_not_installed()

#!/usr/bin/env python3
"""`simhost window` is operated by a real mouse and real keys, and watched on the screen.

The folder for the screenshots and the command that shows the window follow on the command line.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "support"))

import wine_session  # noqa: E402

SCREENSHOTS, *COMMAND = sys.argv[1:]
TITLE = "Host by hand"
PATIENCE_SECONDS = 60

# In pixels from the window's corner.
MENU = (60, 33)
FIRST_DOCUMENT = (100, 85)
SECOND_DOCUMENT = (100, 99)
FONTS_FIELD = (150, 401)
CHANGE_BUTTON = (60, 427)
ASK_FOR_THE_PORT = (100, 557)
RAISE_DIALOG = (100, 609)
TRACE = (700, 400)


def tool(*command: str) -> str:
    return subprocess.run(command, capture_output=True, check=True, encoding="utf-8").stdout


def wait_for(what: str, condition):
    end = time.monotonic() + PATIENCE_SECONDS
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.1)
    raise AssertionError(f"{what} did not come within {PATIENCE_SECONDS} seconds")


class HostByHand:
    """The running program: its window, and what it prints."""

    def __init__(self):
        self.output = tempfile.TemporaryFile()
        self.process = subprocess.Popen(COMMAND, stdout=self.output, stderr=subprocess.STDOUT,
                                        stdin=subprocess.DEVNULL)
        os.environ["DISPLAY"] = wait_for("the display", self.display)
        self.window = wait_for("the window", self.find)
        self.read = 0

    @staticmethod
    def display():
        file = wine_session.display_file()
        return file.read_text().strip() if file.exists() else ""

    def find(self):
        if self.process.poll() is not None:
            raise AssertionError(f"the program has ended:\n{self.printed()}")
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{TITLE}$"], capture_output=True,
                               check=False, encoding="utf-8")
        return found.stdout.split()[0] if found.stdout.split() else None

    def printed(self) -> str:
        self.output.seek(0)
        return self.output.read().decode("utf-8")

    def expect(self, *patterns: str):
        """In this order, behind what was expected before."""
        for pattern in patterns:
            def found(pattern=pattern):
                return re.compile(pattern, re.MULTILINE).search(self.printed(), self.read)
            try:
                self.read = wait_for(pattern, found).end()
            except AssertionError as error:
                raise AssertionError(f"{error}; printed since the last:\n{self.printed()[self.read:]}") from None

    def click(self, place):
        tool("xdotool", "mousemove", "--window", self.window, str(place[0]), str(place[1]), "click", "1")
        time.sleep(0.2)

    def keys(self, *keys: str):
        for key in keys:
            # Without a window manager the keys go to the window under the mouse.
            tool("xdotool", "key", key)
            time.sleep(0.2)

    def type(self, text: str):
        tool("xdotool", "type", "--delay", "20", text)

    def screenshot(self, name: str) -> pathlib.Path:
        file = pathlib.Path(SCREENSHOTS) / f"{name}.png"
        file.parent.mkdir(parents=True, exist_ok=True)
        geometry = dict(line.split("=") for line in tool("xdotool", "getwindowgeometry", "--shell",
                                                           self.window).split())
        area = "{WIDTH}x{HEIGHT}+{X}+{Y}".format(**geometry)
        tool("import", "-window", "root", "-crop", area, "+repage", str(file))
        return file

    def close(self) -> int:
        self.keys("alt+F4")
        return self.process.wait(PATIENCE_SECONDS)


def colours(file: pathlib.Path) -> int:
    return int(tool("identify", "-format", "%k", str(file)))


def different_pixels(one: pathlib.Path, other: pathlib.Path) -> int:
    done = subprocess.run(["compare", "-metric", "AE", str(one), str(other), "null:"], capture_output=True, check=False,
                          encoding="utf-8")
    return int(float(done.stderr.split()[0]))


class Window(unittest.TestCase):
    def setUp(self):
        self.host = HostByHand()
        self.addCleanup(self.host.output.close)
        self.addCleanup(self.host.process.kill)

    def test_a_day_by_mouse_and_keys(self):
        host = self.host
        host.expect("CreateMenusFromJSONBuffer", "The host is idle", "PlugPlugDispatchEvent", "the panel is told")
        before = host.screenshot("window")
        self.assertGreater(colours(before), 20, "the window is empty")

        host.click(FIRST_DOCUMENT)
        host.keys("ctrl+o")
        host.expect("^Brochure is opened$", '"AI File Format"/"AI Check" .*-> -1', "AI Document Opened Notifier",
                    "HandleOpenExistingDocument", r"path: <work>.*\.ai$")

        host.click(MENU)
        host.expect("^A menu is opened$", '"AI Menu"/"AI Update" Fonts -> 0', '"AI Update" About the Font Manager -> 0')
        host.keys("Down", "Right")
        host.expect("^A menu is opened$", '"AI Update" Activate Document Fonts -> 0')
        time.sleep(0.5)
        opened = host.screenshot("menu")
        self.assertGreater(different_pixels(before, opened), 5000, "no menu is on the screen")
        host.keys("Return")
        host.expect('^"Activate Document Fonts" is chosen$', '"AI Menu"/"AI Go" Activate Document Fonts -> 0',
                    "HandleMenuSelection", "item: activate$")

        host.click(FONTS_FIELD)
        host.keys("Home", "shift+End")
        host.type("Univers-Condensed, Optima-Roman")
        host.click(CHANGE_BUTTON)
        host.expect("^Brochure is changed$", "AI Document Changed Notifier, Brochure -> 0")
        host.click(TRACE)
        host.keys("ctrl+s")
        host.expect("^Brochure is saved$", "AI Command Notifier: After Save -> 0", "HandleSaveDocument",
                    r'"DocumentFonts":\[\{"PostScriptName":"Univers-Condensed"\},\{"PostScriptName":"Optima-Roman"\}\]')
        host.keys("ctrl+shift+s")
        host.expect("^Brochure is saved under another name$", "After Save As -> 0", r"path: <work>.* copy\.ai$")

        host.click(ASK_FOR_THE_PORT)
        host.expect("^The panel asks for the port$", "the panel asks for the port -> 0", "the panel is told")
        host.click(RAISE_DIALOG)
        host.expect("^The host shows a dialog$", 'dialog "Missing Fonts": clicked OK$')

        host.click(TRACE)
        host.keys("ctrl+n")
        host.expect("^A document is created$", "AI Document New Notifier, Untitled-1 -> 0", "HandleCreateNewDocument")
        host.click(FIRST_DOCUMENT)
        host.expect("^Brochure becomes the current document$")
        host.keys("ctrl+w")
        host.expect("^Brochure is closed$", "AI Document Closed Notifier, Brochure -> 0", "HandleCloseDocument")
        host.screenshot("day")

        self.assertEqual(host.close(), 0)
        # What is still open is closed as a host does it.
        host.expect("AI Document Closed Notifier, Untitled-1 -> 0", "The host quits", "^Passed: ")

    def test_a_dialog_that_nobody_dismisses_stays_until_a_person_closes_it(self):
        host = self.host
        host.expect("The host is idle")
        # Nothing was opened, so the plug-in leaves dialogs alone.
        host.click(RAISE_DIALOG)
        host.expect("^The host shows a dialog$")
        dialog = wait_for("the dialog", lambda: subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--name", "^Missing Fonts$"], capture_output=True,
            encoding="utf-8", check=False).stdout.split())
        time.sleep(0.5)
        host.screenshot("dialog")
        tool("xdotool", "mousemove", "--window", dialog[0], "60", "40", "click", "1")
        host.expect('dialog "Missing Fonts": ended with OK$')
        host.click(TRACE)
        self.assertEqual(host.close(), 0)


if __name__ == "__main__":
    sys.argv[1:] = []
    unittest.main(verbosity=1)

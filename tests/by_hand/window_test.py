#!/usr/bin/env python3
"""`simhost window` is operated by a real mouse and real keys, and watched on the screen.

On the command line follow: the folder for the screenshots, the program that reads windows, a PluginCore of one's own
with the faulty ones beside it, the command to import a document, the one that runs a Windows program, simhost.
"""

import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "support"))

import wine_session  # noqa: E402

SCREENSHOTS, READ_WINDOW, EXAMPLE, IMPORT, RUN, SIMHOST = sys.argv[1:]
SHOWS_DIALOG = str(pathlib.Path(EXAMPLE).with_name("FaultyShowsDialog.dll"))
TITLE = "Host by hand"
PATIENCE_SECONDS = 60
# Where the first menu is, in pixels from the window's corner.
MENU = (60, 33)


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

    def __init__(self, *options: str):
        self.output = tempfile.TemporaryFile()
        self.process = subprocess.Popen([RUN, "--live", SIMHOST, "window", *options], stdout=self.output,
                                        stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL, start_new_session=True)
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

    def shown(self) -> dict:
        """The window as Windows holds it."""
        return json.loads(tool(RUN, READ_WINDOW, TITLE))

    def control(self, text: str, kind: str = "Button") -> dict:
        found = [each for each in self.shown()["controls"]
                 if each["class"] == kind and each["text"].replace("&", "") == text]
        if len(found) != 1:
            raise AssertionError(f"there are {len(found)} of {kind} {text}")
        return found[0]

    def of_class(self, kind: str) -> list[dict]:
        return [each for each in self.shown()["controls"] if each["class"] == kind]

    def documents(self) -> list[str]:
        return self.of_class("ListBox")[0]["lines"]

    def wait_for_dialog(self, title: str) -> str:
        return wait_for(f"the dialog {title}", lambda: subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--name", f"^{title}$"], capture_output=True, encoding="utf-8",
            check=False).stdout.split())[0]

    def wait_for_documents(self, *lines: str):
        wait_for(f"the list {lines}", lambda: self.documents() == list(lines))

    def click_at(self, x: int, y: int):
        """On the screen."""
        tool("xdotool", "mousemove", str(x), str(y), "click", "1")

    def click(self, control: dict):
        place = control["place"]
        self.click_at(place["x"] + place["width"] // 2, place["y"] + place["height"] // 2)

    def press(self, text: str):
        button = self.control(text)
        if not button["enabled"]:
            raise AssertionError(f"the button {text} is disabled")
        self.click(button)

    def click_document(self, number: int):
        documents = self.of_class("ListBox")[0]
        self.click_at(documents["place"]["x"] + 40,
                      documents["place"]["y"] + documents["line_height"] * number + documents["line_height"] // 2)

    def open_menu(self):
        tool("xdotool", "mousemove", "--window", self.window, str(MENU[0]), str(MENU[1]), "click", "1")

    def wait_for_menus(self, count: int) -> list[dict]:
        """The places of the open menus, the last one first."""
        return wait_for(f"{count} open menus", lambda: [each for each in [self.shown()["menus"]] if len(each) == count])[0]

    def keys(self, *keys: str):
        for key in keys:
            # Without a window manager the keys go to the window under the mouse.
            tool("xdotool", "key", key)
            time.sleep(0.2)

    def type(self, text: str):
        tool("xdotool", "type", "--delay", "20", text)

    def screenshot(self, name: str, part: dict | None = None) -> pathlib.Path:
        """Of a part of the screen, else of the window."""
        file = pathlib.Path(SCREENSHOTS) / f"{name}.png"
        file.parent.mkdir(parents=True, exist_ok=True)
        place = part or self.shown()["place"]
        tool("import", "-window", "root", "-crop", "{width}x{height}+{x}+{y}".format(**place), "+repage", str(file))
        return file

    def wait_for_text_in(self, what: str, part: dict):
        """Until a part of the screen has been painted: text is dark, and on what is light."""
        def is_there():
            file = self.screenshot("part", part)
            dark = float(tool("convert", str(file), "-colorspace", "gray", "-threshold", "50%", "-negate", "-format",
                              "%[fx:mean]", "info:"))
            return 0.01 < dark < 0.5
        wait_for(f"text in {what}", is_there)

    def close(self) -> int:
        self.click(self.of_class("Edit")[1])
        self.keys("alt+F4")
        return self.process.wait(PATIENCE_SECONDS)

    def end(self):
        if self.process.poll() is None:
            # With the program that the script waits for.
            os.killpg(self.process.pid, signal.SIGKILL)
            self.process.wait()
        self.output.close()


def imported(folder: str, name: str) -> str:
    """A drawing with two text elements, as a document of the kit."""
    drawing, document = pathlib.Path(folder) / name, pathlib.Path(folder) / f"{name}.json"
    drawing.write_text("<svg xmlns='http://www.w3.org/2000/svg'><text font-family='P052'>a<tspan font-family='C059'>b"
                       "</tspan></text><text font-family='P052'>c</text></svg>", encoding="utf-8")
    tool(IMPORT, str(drawing), "--output", str(document))
    return str(document)


class Window(unittest.TestCase):
    def start(self, *options: str) -> HostByHand:
        host = HostByHand(*options)
        self.addCleanup(host.end)
        return host

    def test_a_day_by_mouse_and_keys(self):
        host = self.start()
        host.expect("CreateMenusFromJSONBuffer", "The host is idle", "PlugPlugDispatchEvent", "the panel is told")
        self.assertEqual(host.documents(), ["Brochure (closed)"])
        wait_for("what the panel was told", lambda: [
            each for each in host.of_class("Static") if each["text"] == "was told <payload><number>49152</number></payload>"])
        host.screenshot("window")
        self.assertFalse(host.control("Save")["enabled"])

        host.click_document(0)
        wait_for("the button Open", lambda: host.control("Open")["enabled"])
        host.press("Open")
        host.expect("^Brochure is opened$", '"AI File Format"/"AI Check" .*-> -1', "AI Document Opened Notifier",
                    "HandleOpenExistingDocument", r"path: <work>.*\.ai$")
        host.wait_for_documents("Brochure (current)")
        self.assertFalse(host.control("Open")["enabled"])
        fonts, trace = host.of_class("Edit")
        self.assertEqual(fonts["text"], "Garamond-Bold, Frutiger-Light; Optima-Roman")

        host.open_menu()
        host.expect("^A menu is opened$", '"AI Menu"/"AI Update" Fonts -> 0', '"AI Update" About the Font Manager -> 0')
        host.wait_for_menus(1)
        host.keys("Down", "Right")
        host.expect("^A menu is opened$", '"AI Update" Activate Document Fonts -> 0')
        opened = host.wait_for_menus(2)
        for number, menu in enumerate(opened):
            host.wait_for_text_in(f"menu {number}", menu)
        # The trace goes down to its lower edge.
        lines = {**trace["place"], "height": 60, "y": trace["place"]["y"] + trace["place"]["height"] - 90}
        host.wait_for_text_in("the trace", lines)
        host.screenshot("menu")
        host.keys("Return")
        host.expect('^"Activate Document Fonts" is chosen$', '"AI Menu"/"AI Go" Activate Document Fonts -> 0',
                    "HandleMenuSelection", "item: activate$")

        host.click(fonts)
        host.keys("Home", "shift+End")
        host.type("Univers-Condensed, Optima-Roman")
        host.press("Change")
        host.expect("^Brochure is changed$", "AI Document Changed Notifier, Brochure -> 0")
        host.wait_for_documents("Brochure (current, changed)")
        host.click(trace)
        host.keys("ctrl+s")
        host.expect("^Brochure is saved$", "AI Command Notifier: After Save -> 0", "HandleSaveDocument",
                    r'"DocumentFonts":\[\{"PostScriptName":"Univers-Condensed"\},\{"PostScriptName":"Optima-Roman"\}\]')
        host.press("Save As")
        host.expect("^Brochure is saved under another name$", "After Save As -> 0", r"path: <work>.* copy\.ai$")

        host.press("Ask for the port")
        host.expect("^The panel asks for the port$", "the panel asks for the port -> 0", "the panel is told")
        host.press('Raise "Missing Fonts"')
        host.expect("^The host shows a dialog$", 'dialog "Missing Fonts": clicked OK$')

        host.press("New")
        host.expect("^A document is created$", "AI Document New Notifier, Untitled-1 -> 0", "HandleCreateNewDocument")
        host.wait_for_documents("Brochure (open)", "Untitled-1 (current)")
        host.click_document(0)
        host.expect("^Brochure becomes the current document$")
        host.press("Close")
        host.expect("^Brochure is closed$", "AI Document Closed Notifier, Brochure -> 0", "HandleCloseDocument")
        host.wait_for_documents("Brochure (closed)", "Untitled-1 (current)")
        host.screenshot("day")
        # The trace shows what is printed; its beginning is what was printed before there was a window.
        told = host.of_class("Edit")[1]["text"].replace("\r\n", "\n")
        self.assertIn("\nBrochure is closed\n", told)
        self.assertTrue(host.printed().startswith(told.split("\nA document is created\n")[0]))

        self.assertEqual(host.close(), 0)
        # What is still open is closed as a host does it.
        host.expect("AI Document Closed Notifier, Untitled-1 -> 0", "The host quits", "^Passed: ")

    def raise_dialog(self, host: HostByHand) -> str:
        host.press('Raise "Missing Fonts"')
        host.expect("^The host shows a dialog$")
        return host.wait_for_dialog("Missing Fonts")

    def test_a_dialog_that_nobody_dismisses_stays_until_a_person_closes_it(self):
        host = self.start()
        host.expect("The host is idle")
        # Nothing was opened, so the plug-in leaves dialogs alone.
        dialog = self.raise_dialog(host)
        self.assertFalse(host.shown()["enabled"], "the dialog is not modal")
        host.screenshot("dialog")
        tool("xdotool", "mousemove", "--window", dialog, "60", "40", "click", "1")
        host.expect('dialog "Missing Fonts": ended with OK$')
        self.assertTrue(host.shown()["enabled"])
        self.raise_dialog(host)
        host.keys("Escape")
        host.expect('dialog "Missing Fonts": closed$')
        self.assertEqual(host.close(), 0)

    def test_a_plugincore_of_ones_own_and_the_options_of_play(self):
        with tempfile.TemporaryDirectory() as folder:
            record, events, junit = (pathlib.Path(folder) / name for name in ("record.json", "events.jsonl", "junit.xml"))
            document = imported(folder, "Untitled-1")
            host = self.start(document, "--plugincore", EXAMPLE, "--record", str(record), "--json-lines", str(events), "--junit",
                              str(junit), "--color", "always")
            host.expect("About the Example")
            host.click_document(0)
            host.press("Open")
            host.expect("Untitled-1 is opened", r"path: <work>\\Job\\Untitled-1$")
            fonts = "P052-Roman, C059-Roman; P052-Roman"
            self.assertEqual(host.of_class("Edit")[0]["text"], fonts)
            host.press("Change")
            host.expect("Untitled-1 is changed")
            host.wait_for_documents("Untitled-1 (current, changed)")
            self.assertEqual(host.of_class("Edit")[0]["text"], fonts)
            # The imported one stays what it is.
            host.press("New")
            host.expect("A document is created", "AI Document New Notifier, Untitled-2 -> 0")
            # The host is idle once a second; what it tells again and again is counted.
            wait_for("a repeated tick", lambda: '"event":"repeated"' in events.read_text(encoding="utf-8"))
            host.open_menu()
            host.wait_for_menus(1)
            host.keys("Up", "Return")
            host.expect('"AI Menu"/"AI Go" About the Example -> 0', "HandleMenuSelection")
            self.assertEqual(host.close(), 0)
            host.expect("Passed: ")
            self.assertIn("\033[", host.printed())
            self.assertTrue(json.loads(record.read_text(encoding="utf-8"))["passed"])
            told = [json.loads(line) for line in events.read_text(encoding="utf-8").splitlines()]
            calls = [event["entry"] for event in told if event["event"] == "call"]
            self.assertIn("HandleMenuSelection", calls)
            self.assertGreater(sum(event["calls"] for event in told if event["event"] == "repeated"), 0)
            observed = [name for event in told if event["event"] == "step_end" for call in event["observed"].get("calls", [])
                        for name in call]
            self.assertEqual(observed.count("IdleEvent"), calls.count("IdleEvent"))
            self.assertIn('tests="1"', junit.read_text(encoding="utf-8"))

    def test_a_dialog_of_the_plugincore_waits_for_the_person_and_an_act_that_throws_ends_the_window(self):
        with tempfile.TemporaryDirectory() as folder:
            work = pathlib.Path(folder) / "run"
            host = self.start(imported(folder, "drawing.svg"), "--plugincore", SHOWS_DIALOG, "--step-time-limit", "3",
                              "--work-folder", str(work))
            host.expect("The host is idle")
            host.click_document(0)
            host.press("Open")
            host.wait_for_dialog("Font manager")
            # For longer than the limit, and until shortly before it would be over again. The library then takes 2 seconds.
            time.sleep(4.7)
            host.wait_for_dialog("Font manager")
            host.keys("Return")
            host.wait_for_documents("drawing.svg (current)")
            # Where the document was nothing can be saved any more.
            shutil.rmtree(work / "Job")
            (work / "Job").write_text("in the way", encoding="utf-8")
            host.press("Save As")
            self.assertEqual(host.process.wait(PATIENCE_SECONDS), 1)
            host.expect("^drawing.svg is saved under another name$", "not-reached")


if __name__ == "__main__":
    sys.argv[1:] = []
    unittest.main(verbosity=1)

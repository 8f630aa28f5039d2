#!/usr/bin/env python3
"""Real documents are opened, changed, saved and closed in the simulated host: what the shipped plug-in reports is what
other tools list for them.

The command to import a document, a PluginCore of one's own and the command of simhost follow on the command line.
"""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

import real_documents

IMPORT, EXAMPLE, *SIMHOST = sys.argv[1:]
LINKS = {
    "drawing.svg": ["${work}\\Pictures\\A harbour.png"],
    "illustration.ai": ["C:\\Jobs\\Logo.psd", "${work}\\Links\\Photo.tif"],
    "advertisement.eps": ["Z:\\Volumes\\Pictures\\A large photo.tif"],
}


class OpenDocument(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory()
        cls.folder = pathlib.Path(cls.temporary.name)
        cls.files = real_documents.make_all(cls.folder)

    @classmethod
    def tearDownClass(cls):
        cls.temporary.cleanup()

    def play(self, file):
        document, events = self.folder / (file.name + ".json"), self.folder / (file.name + ".jsonl")
        real_documents.run(IMPORT, str(file), "--output", str(document))
        done = subprocess.run([*SIMHOST, "open", str(document), "--json-lines", str(events), "--quiet"],
                              capture_output=True, check=False, encoding="utf-8")
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        return [json.loads(line) for line in events.read_text(encoding="utf-8").splitlines()]

    def test_reports_are_what_other_tools_list(self):
        self.assertGreaterEqual(len(self.files), 5)
        for name, file in self.files.items():
            with self.subTest(name):
                calls = [event for event in self.play(file) if event["event"] == "call"]
                told = {call["entry"]: call["arguments"] for call in calls}
                report = json.loads(told["HandleSaveDocument"]["report"])
                fonts = [font["PostScriptName"] for font in report["DocumentFonts"]]
                self.assertEqual(len(fonts), len(set(fonts)), "a font is reported twice")
                self.assertEqual(set(fonts), real_documents.fonts_by_other_tools(file, self.folder))
                path = told["HandleOpenExistingDocument"]["path"]
                work, _, opened = path.rpartition("\\")
                self.assertEqual(opened, name)
                self.assertEqual(report["LinkedDocuments"],
                                 [link.replace("${work}", work) for link in LINKS.get(name, [])])
                self.assertEqual(told["HandleCloseDocument"]["report"], told["HandleSaveDocument"]["report"])

    def test_a_plugincore_of_ones_own(self):
        document = self.folder / "own.json"
        real_documents.run(IMPORT, str(self.files["drawing.svg"]), "--output", str(document))
        done = subprocess.run([*SIMHOST, "open", str(document), "--plugincore", EXAMPLE], capture_output=True,
                              check=False, encoding="utf-8")
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertIn("About the Example", done.stdout)
        self.assertIn("HandleSaveDocument", done.stdout)

    def test_title_that_leads_elsewhere_is_refused_and_nothing_is_removed(self):
        somebodys = self.folder / "somebody's"
        somebodys.mkdir()
        (somebodys / "thesis.txt").write_text("the only copy", encoding="utf-8")
        for number, title in enumerate(["Z:" + str(somebodys / "a.pdf").replace("/", "\\"), "..\\..\\a.pdf",
                                        f"../..{somebodys}/a.pdf", "..", ""]):
            for command in ("open", "window"):
                with self.subTest(title=title, command=command):
                    file = self.folder / f"title-{number}.json"
                    file.write_text(json.dumps({"title": title, "source": str(self.files["drawing.svg"]),
                                                "document": {"path": "${work}\\a.pdf"}}), encoding="utf-8")
                    done = subprocess.run([*SIMHOST, command, str(file)], capture_output=True, check=False,
                                          encoding="utf-8")
                    self.assertEqual(done.returncode, 2, done.stdout + done.stderr)
                    self.assertIn("is no name of a file", done.stderr)
                    self.assertTrue((somebodys / "thesis.txt").exists())

    def test_what_is_no_imported_document_is_refused(self):
        cases = {
            "absent.json": (None, "cannot be read"),
            "text.json": ("no JSON", "is no imported document"),
            "scenario.json": ('{"title": "T", "steps": []}', "is no imported document"),
            "gone.json": ('{"title": "a.ai", "source": "/gone/a.ai", "document": {"path": "${work}\\\\a.ai"}}',
                          "was made from /gone/a.ai, which is not there any more"),
            "number.json": (json.dumps({"title": "a.ai", "source": str(self.files["drawing.svg"]),
                                        "document": {"path": 5}}), "has no path"),
        }
        for name, (text, complaint) in cases.items():
            with self.subTest(name):
                file = self.folder / name
                if text is not None:
                    file.write_text(text, encoding="utf-8")
                done = subprocess.run([*SIMHOST, "open", str(file), "--quiet"], capture_output=True, check=False,
                                      encoding="utf-8")
                self.assertEqual(done.returncode, 2, done.stdout + done.stderr)
                self.assertIn(complaint, done.stderr)


if __name__ == "__main__":
    sys.argv[1:] = []
    unittest.main(verbosity=0)

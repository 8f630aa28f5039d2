#!/usr/bin/env python3
"""Real documents are opened, changed, saved and closed in the simulated host: what the shipped plug-in reports is what
other tools list for them.

The command to import a document, a PluginCore of one's own and the command of simhost follow on the command line.
"""

import json
import subprocess
import sys
import unittest

import real_documents

IMPORT, EXAMPLE, *SIMHOST = sys.argv[1:]
LINKS = {
    "drawing.svg": ["${work}\\Job\\Pictures\\A harbour.png"],
    "diagram.svg": ["${work}\\Job\\Pictures\\A logo.png"],
    "illustration.ai": ["C:\\Jobs\\Logo.psd", "${work}\\Job\\Links\\Photo.tif"],
    "advertisement.eps": ["Z:\\Volumes\\Pictures\\A large photo.tif"],
}


class OpenDocument(real_documents.WithRealDocuments):
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
                work = work.removesuffix("\\Job")
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

    def test_source_is_relative_to_the_document(self):
        document = self.folder / "moved.json"
        document.write_text(json.dumps({"title": "drawing.svg", "source": "drawing.svg",
                                        "document": {"path": "${work}\\Job\\drawing.svg"}}), encoding="utf-8")
        done = subprocess.run([*SIMHOST, "open", str(document), "--quiet"], capture_output=True, check=False, encoding="utf-8",
                              cwd=self.folder.parent)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def test_two_documents_of_one_name_are_refused(self):
        documents = []
        for folder, name in (("one", "A drawing.svg"), ("other", "a DRAWING.svg")):
            drawing = self.folder / folder / name
            drawing.parent.mkdir()
            drawing.write_text(real_documents.DRAWING, encoding="utf-8")
            documents.append(self.folder / f"{folder}.json")
            real_documents.run(IMPORT, str(drawing), "--output", str(documents[-1]))
        done = subprocess.run([*SIMHOST, "window", *map(str, documents)], capture_output=True, check=False, encoding="utf-8")
        self.assertEqual(done.returncode, 2, done.stdout + done.stderr)
        self.assertRegex(done.stderr, r"two documents have the same name: .*one\\A drawing.svg and .*other\\a DRAWING.svg; "
                         "rename one of the files, and import it again")

    def test_options_are_those_of_play(self):
        document, outputs = self.folder / "options.json", self.folder / "outputs"
        outputs.mkdir()
        real_documents.run(IMPORT, str(self.files["drawing.svg"]), "--output", str(document))
        done = subprocess.run([*SIMHOST, "open", str(document), "--brief", "--color", "always", "--work-folder",
                               str(outputs / "run"), "--junit", str(outputs / "junit.xml"), "--record",
                               str(outputs / "record.json"), "--time-limit", "50"], capture_output=True, check=False,
                              encoding="utf-8")
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertIn("\033[", done.stdout)
        self.assertNotIn("HandleSaveDocument", done.stdout)
        self.assertTrue((outputs / "run" / "Job" / "drawing.svg").exists())
        junit = (outputs / "junit.xml").read_text(encoding="utf-8")
        self.assertIn('tests="1"', junit)
        # Nobody has written a scenario.
        self.assertIn("open.json", junit)
        self.assertNotIn("scenario.json", junit)
        self.assertTrue(json.loads((outputs / "record.json").read_text(encoding="utf-8"))["passed"])
        # The folder of a run is its own, and is emptied by the next one.
        inside = outputs / "run" / "inside.json"
        inside.write_bytes(document.read_bytes())
        for command in ("open", "window"):
            done = subprocess.run([*SIMHOST, command, str(inside), "--work-folder", str(outputs / "run")],
                                  capture_output=True, check=False, encoding="utf-8")
            self.assertEqual(done.returncode, 2, done.stdout + done.stderr)
            self.assertRegex(done.stderr, "^simhost: document: .*inside.json lies in the folder that --work-folder names")
        self.assertTrue(inside.exists())

    def test_what_is_no_imported_document_is_refused(self):
        source = str(self.files["drawing.svg"])
        whole = {"title": "a.ai", "source": source, "document": {"path": "${work}\\a.ai", "frames": [["A"]]}}
        cases = {
            "absent.json": (None, "absent.json: cannot be read"),
            "text.json": ("no JSON", "text.json:1:1: unexpected no"),
            "deep.json": ("[" * 200_000, "deep.json:1:101: more than 100 levels of arrays and objects"),
            "scenario.json": ({"title": "T", "steps": []}, 'scenario.json:1:16: unknown key "steps"'),
            "gone.json": ({**whole, "source": "/gone/a.ai"},
                          'source: the document was made from "/gone/a.ai", which is not there any more'),
            "pathless.json": ({**whole, "document": {}}, 'document: needs "path"'),
            "number.json": ({**whole, "document": {"path": 5}}, "document.path: must be a text"),
            "frames.json": ({**whole, "document": {**whole["document"], "frames": 1}}, "document.frames: must be an array"),
            "name.json": ({**whole, "document": {"path": "${wrok}\\a.ai"}}, 'document.path: unknown placeholder'),
        }
        for name, (content, complaint) in cases.items():
            with self.subTest(name):
                file = self.folder / name
                if content is not None:
                    file.write_text(content if isinstance(content, str) else json.dumps(content), encoding="utf-8")
                done = subprocess.run([*SIMHOST, "open", str(file), "--quiet"], capture_output=True, check=False,
                                      encoding="utf-8")
                self.assertEqual(done.returncode, 2, done.stdout + done.stderr)
                self.assertIn(complaint, done.stderr)
                # Never the scenario that is made of it.
                self.assertNotIn("simhost-", done.stderr)
                if name != "absent.json":
                    self.assertIn(f"{name}: is no imported document", done.stderr)


if __name__ == "__main__":
    sys.argv[1:] = []
    unittest.main(verbosity=0)

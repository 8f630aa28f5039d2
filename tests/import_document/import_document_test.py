#!/usr/bin/env python3
"""scripts/import-document reads real files: the fonts of their text, the files that they link.

The command to import a document follows on the command line.
"""

import gzip
import json
import subprocess
import sys
import unittest

import real_documents

COMMAND = sys.argv.pop(1)


class ImportDocument(real_documents.WithRealDocuments):
    def run_on(self, *arguments):
        return subprocess.run([COMMAND, *map(str, arguments)], capture_output=True, check=False, encoding="utf-8")

    def document(self, name):
        done = self.run_on(self.files[name])
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return json.loads(done.stdout)["document"]

    def imported_drawing(self, content, *warnings):
        """The frames of an SVG, whose elements and style sheets these are."""
        file = self.write("tried.svg", f'<svg xmlns="http://www.w3.org/2000/svg">{content}</svg>'.encode())
        done = self.run_on(file)
        self.assertEqual((done.returncode, done.stderr),
                         (0, "".join(f"import-document: {warning}\n" for warning in warnings).replace("FILE", str(file))))
        return json.loads(done.stdout)["document"]["frames"]

    def assert_fonts_by_other_tools(self, *fonts):
        """Of the drawing that was imported last."""
        self.assertEqual(real_documents.fonts_by_other_tools(self.folder / "tried.svg", self.folder), set(fonts))

    def refusal(self, file):
        done = self.run_on(file)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        return done.stderr.removeprefix("import-document: ").strip().replace(str(file), "FILE")

    def write(self, name, data):
        file = self.folder / name
        file.write_bytes(data)
        return file

    def test_fonts_are_those_that_other_tools_list(self):
        for name, file in self.files.items():
            with self.subTest(name):
                fonts = {font for frame in self.document(name)["frames"] for font in frame}
                self.assertEqual(fonts, real_documents.fonts_by_other_tools(file, self.folder))

    def test_runs_come_in_the_order_in_which_one_reads(self):
        self.assertEqual(self.document("Überschrift.pdf")["frames"],
                         [["URWGothic-Book", "P052-Italic", "URWGothic-Demi", "DejaVuSerif"]])

    def test_each_page_is_a_frame(self):
        frames = self.document("typeset.pdf")["frames"]
        self.assertEqual(len(frames), 2)
        self.assertEqual(frames[0][:4], ["Times-Bold", "Times-Italic", "Times-Roman", "Times-Bold"])
        self.assertIn("Helvetica-Bold", frames[1])
        self.assertNotIn("Helvetica-Bold", frames[0])

    def test_composite_font_has_the_name_of_the_font_alone(self):
        self.assertEqual(self.document("scripts.pdf")["frames"], [["DejaVuSans"]])

    def test_font_that_is_not_installed_keeps_its_name(self):
        self.assertEqual(self.document("advertisement.eps")["frames"], [["Frutiger-Light", "Helvetica-Bold"]])

    def test_svg_runs_follow_sheets_attributes_and_nesting(self):
        self.assertEqual(self.document("drawing.svg")["frames"],
                         [["NimbusRoman-Regular", "NimbusRoman-Bold", "DejaVuSans-Oblique", "NimbusRoman-Regular"],
                          ["C059-Roman"]])

    def test_svg_font_that_nobody_has_is_a_guess_that_is_said(self):
        guess = 'no font of the family "Some Family" is installed; the PostScript name {} is a guess'.format
        self.assertEqual(self.imported_drawing(
            '<text font-family="Some Family" font-weight="bold">a</text>'
            '<text font-family="Some Family" font-stretch="condensed" font-style="italic">b</text>',
            guess("SomeFamily-Bold"), guess("SomeFamily-CondensedItalic")),
            [["SomeFamily-Bold"], ["SomeFamily-CondensedItalic"]])

    def test_svg_family_that_is_a_postscript_name_stays_one(self):
        self.assertEqual(self.imported_drawing(
            '<text font-family="NimbusRoman-Bold">a</text><text font-family="MyriadPro-Bold" font-weight="bold">b</text>'
            '<text font-family="Frutiger-57LightCondensedItalic">c</text><text font-family="Futura-SemiboldMT">d</text>'),
            [["NimbusRoman-Bold"], ["MyriadPro-Bold"], ["Frutiger-57LightCondensedItalic"], ["Futura-SemiboldMT"]])

    def test_svg_family_with_a_hyphen_is_no_postscript_name(self):
        self.assertEqual(self.imported_drawing(
            '<text font-family="Open-Sans" font-weight="bold">a</text>',
            'no font of the family "Open-Sans" is installed; the PostScript name Open-Sans-Bold is a guess'),
            [["Open-Sans-Bold"]])

    def test_svg_family_that_stands_for_any_font_is_said(self):
        for family in ("cursive", "Sans-Serif", "ui-sans-serif", "system-ui"):
            with self.subTest(family):
                match = subprocess.run(["fc-match", "--format=%{postscriptname}", family.replace("-", r"\-")],
                                       capture_output=True, check=True, encoding="utf-8").stdout
                self.assertEqual(self.imported_drawing(
                    f'<text font-family="{family}">a</text>',
                    f'"{family}" is no font\'s name; this machine takes {match} for it, another one may not'), [[match]])

    def test_svg_width_of_a_font(self):
        wide = "<text font-family='DejaVu Serif'>a<tspan font-stretch='{0}'>b</tspan>" \
            "<tspan style='font: {0} 9px DejaVu Serif'>c<tspan style='font-stretch: normal'>d</tspan></tspan></text>"
        self.assertEqual(self.imported_drawing(wide.format("semi-condensed")),
                         [["DejaVuSerif", "DejaVuSerifCondensed", "DejaVuSerif"]])
        self.assert_fonts_by_other_tools("DejaVuSerif", "DejaVuSerifCondensed")

    def test_svg_sizes_in_words(self):
        self.assertEqual(self.imported_drawing(
            "<text style='font: bold medium/2 C059'>a</text><text style='font: italic x-large P052, serif'>b</text>"),
            [["C059-Bold"], ["P052-Italic"]])
        self.assert_fonts_by_other_tools("C059-Bold", "P052-Italic")

    def test_svg_style_sheets_and_rules_for_something_else(self):
        self.assertEqual(self.imported_drawing(
            "<style>text { font-family: P052 } text::first-letter { font-family: A }</style>"
            "<style media='print'>text { font-family: B }</style><style media='tv, screen'>.c { font-family: C059 }</style>"
            "<text>a<tspan class='c'>b</tspan></text>"), [["P052-Roman", "C059-Roman"]])

    def test_svg_text_that_is_kept_aside_is_shown_where_it_is_used(self):
        self.assertEqual(self.imported_drawing(
            "<defs><text font-family='A'>a</text><text id='kept'>b</text></defs><symbol><text font-family='B'>c</text>"
            "</symbol><symbol id='sign'><text font-family='C059'>d</text></symbol><g font-family='P052'>"
            "<use href='#kept'/><use xmlns:x='http://www.w3.org/1999/xlink' x:href='#sign'/></g>"),
            [["P052-Roman"], ["C059-Roman"]])
        self.assert_fonts_by_other_tools("P052-Roman", "C059-Roman")

    def test_svg_that_shows_itself_is_refused(self):
        file = self.write("itself.svg", b'<svg xmlns="http://www.w3.org/2000/svg"><g id="a"><use href="#a"/></g></svg>')
        self.assertEqual(self.refusal(file), "FILE: its elements are nested too deep")

    def test_svg_what_is_not_looked_into_is_said(self):
        self.assertEqual(self.imported_drawing(
            "<pattern><text font-family='A'>a</text></pattern><clipPath><path/></clipPath><use href='other.svg#a'/>"
            "<text font-family='C059'>b</text>", "FILE: text in a pattern is not looked into",
            'FILE: what "other.svg#a" names is not in it'), [["C059-Roman"]])

    def test_svg_switch_shows_the_first_that_is_understood(self):
        self.assertEqual(self.imported_drawing(
            "<switch><foreignObject requiredExtensions='urn:a'>x</foreignObject><text font-family='C059'>a</text>"
            "<text font-family='A'>b</text></switch>"), [["C059-Roman"]])
        self.assertEqual(self.imported_drawing(
            "<switch><text systemLanguage='de' font-family='A'>a</text><text systemLanguage='fr, en-GB' "
            "font-family='P052'>b</text><text font-family='B'>c</text></switch>",
            "what the drawing shows depends on the reader's language; English is taken"), [["P052-Roman"]])

    def test_svg_in_utf_16(self):
        text = real_documents.DRAWING.replace("UTF-8", "UTF-16")
        for encoding in ("utf-16-le", "utf-16-be"):
            file = self.write("wide.svg", ("\ufeff" + text).encode(encoding))
            self.assertEqual(json.loads(self.run_on(file).stdout)["document"]["frames"],
                             self.document("drawing.svg")["frames"])

    def test_font_without_a_name_is_said(self):
        pages = self.folder / "drawn.pdf"
        real_documents.run("gs", "-q", "-sDEVICE=pdfwrite", f"-sOutputFile={pages}", "-dBATCH", "-dNOPAUSE", "-",
                           stdin=real_documents.FONT_OF_ITS_OWN.encode())
        done = self.run_on(pages)
        self.assertEqual(json.loads(done.stdout)["document"]["frames"], [["Helvetica"]])
        self.assertEqual(done.stderr, f"import-document: page 1 of {pages}: a font that is drawn by the document itself "
                         "has no name, and is left out\n")

    def test_page_that_cannot_be_read_is_refused(self):
        pages = self.files["typeset.pdf"].read_bytes()
        self.assertEqual(pages.count(b"/Count 2"), 1)
        self.assertEqual(self.refusal(self.write("pages.pdf", pages.replace(b"/Count 2", b"/Count 3"))),
                         "page 3 of FILE cannot be read")

    def test_name_that_cannot_be_opened_is_refused(self):
        for name in ("aux.svg", "dot.", "x${work}.svg", "line\nfeed.svg", "com1", "a\\b.svg", "a?b.svg",
                     "a*b.svg", 'a"b.svg', "a<b.svg", "a>b.svg", "a|b.svg"):
            with self.subTest(name):
                done = self.run_on(self.write(name, real_documents.DRAWING.encode()))
                self.assertEqual((done.returncode, done.stdout), (2, ""))
                self.assertIn(f"Windows or a scenario cannot name {ascii(name)}; rename it", done.stderr)

    def test_linked_files(self):
        placed = {name: self.document(name)["placed"] for name in self.files}
        self.assertEqual(placed, {
            "typeset.pdf": [], "typeset.eps": [], "Überschrift.pdf": [], "scripts.pdf": [],
            "drawing.svg": ["${work}\\Job\\Pictures\\A harbour.png"], "diagram.svg": ["${work}\\Job\\Pictures\\A logo.png"],
            "illustration.ai": ["C:\\Jobs\\Logo.psd", "${work}\\Job\\Links\\Photo.tif"],
            "advertisement.eps": ["Z:\\Volumes\\Pictures\\A large photo.tif"],
        })

    def test_links_are_those_that_other_tools_find(self):
        sizes = real_documents.PICTURES
        for name in ("drawing.svg", "diagram.svg"):
            linked = [link.removeprefix("${work}\\Job\\").replace("\\", "/") for link in self.document(name)["placed"]]
            self.assertEqual([sizes[link] for link in linked],
                             real_documents.pictures_of_svg(self.files[name], self.folder), name)
        self.assertEqual(real_documents.links_in_metadata(self.files["illustration.ai"]),
                         list(real_documents.LINKS_OF_ILLUSTRATION))

    def test_links_of_an_svg_are_addresses(self):
        links = {"a.png?size=2#part": "${work}\\Job\\a.png", "b%3F%23.png": "${work}\\Job\\b?#.png", "#part": None,
                 "https://host/c.png": None, "http://host/c.png": None, "//host/c.png": None, "data:image/png,": None,
                 "file:///D:/d%20e.png?x#y": "D:\\d e.png", "file://localhost/f.png": "Z:\\f.png",
                 "file://server/share/g.png": "\\\\server\\share\\g.png", "C:\\h#1.png": "C:\\h#1.png", " i.png ":
                     "${work}\\Job\\i.png"}
        images = "".join(f'<image href="{link}"/>' for link in links)
        file = self.write("links.svg", f'<svg xmlns="http://www.w3.org/2000/svg">{images}</svg>'.encode())
        self.assertEqual(json.loads(self.run_on(file).stdout)["document"]["placed"], list(filter(None, links.values())))

    def test_links_of_an_eps_into_the_web_are_no_files(self):
        file = self.write("web.eps", real_documents.ADVERTISEMENT.replace("/Volumes/Pictures/A large photo.tif",
                                                                          "http://host/photo.tif").encode())
        self.assertEqual(json.loads(self.run_on(file).stdout)["document"]["placed"], [])

    def test_svg_text_that_is_not_shown_has_no_font(self):
        file = self.write("hidden.svg", b'''<svg xmlns="http://www.w3.org/2000/svg">
            <style>.off { display: none } text { font-family: C059 }</style>
            <text class="off">a</text><g display="none"><text>a</text></g><text style="display:none">a</text>
            <text><title font-family="D">a title</title>shown<tspan display="none" font-family="E">a</tspan>
            <desc>a description</desc> and shown <tspan font-family="P052"><title>a</title>again</tspan></text></svg>''')
        self.assertEqual(json.loads(self.run_on(file).stdout)["document"]["frames"], [["C059-Roman", "P052-Roman"]])
        self.assertEqual(real_documents.fonts_by_other_tools(file, self.folder), {"C059-Roman", "P052-Roman"})

    def test_svg_rules_for_the_screen_hold(self):
        file = self.write("media.svg", b'''<svg xmlns="http://www.w3.org/2000/svg"><style>
            text { font-family: P052 } @media print { text { font-family: A } } @media tv, screen { .s { font-family: C059 } }
            @media screen and (min-width: 1px) { text { font-family: B } } @media all { .a { font-family: D } }</style>
            <text>a<tspan class="s">b</tspan><tspan class="a">c</tspan></text></svg>''')
        self.assertEqual(json.loads(self.run_on(file).stdout)["document"]["frames"], [["P052-Roman", "C059-Roman", "D"]])

    def test_links_of_an_eps_with_the_line_ends_of_old_machines(self):
        file = self.write("old.eps", real_documents.ADVERTISEMENT.replace("\n", "\r").encode())
        self.assertEqual(json.loads(self.run_on(file).stdout)["document"]["placed"],
                         ["Z:\\Volumes\\Pictures\\A large photo.tif"])

    def test_text_of_an_eps_larger_than_a_page(self):
        large = real_documents.ADVERTISEMENT.replace("0 0 300 200", "0 0 2000 2000").replace("100 50 moveto",
                                                                                             "1500 1500 moveto")
        document = json.loads(self.run_on(self.write("large.eps", large.encode())).stdout)["document"]
        self.assertEqual(set(document["frames"][0]), {"Frutiger-Light", "Helvetica-Bold"})

    def test_name_that_windows_does_not_allow(self):
        document = json.loads(self.run_on(self.write("Price: 5.svg", real_documents.DRAWING.encode())).stdout)
        self.assertEqual((document["title"], document["document"]["path"]), ("Price_ 5.svg", "${work}\\Job\\Price_ 5.svg"))

    def test_document_names_its_file(self):
        done = json.loads(self.run_on(self.files["Überschrift.pdf"]).stdout)
        self.assertEqual(done["title"], "Überschrift.pdf")
        self.assertEqual(done["source"], "Z:" + str(self.files["Überschrift.pdf"].resolve()).replace("/", "\\"))
        self.assertEqual(done["document"]["path"], "${work}\\Job\\Überschrift.pdf")

    def test_output_file(self):
        output = self.folder / "document.json"
        done = self.run_on(self.files["scripts.pdf"], "--output", output)
        self.assertEqual((done.returncode, done.stdout), (0, ""))
        self.assertEqual(json.loads(output.read_text(encoding="utf-8"))["document"]["frames"], [["DejaVuSans"]])

    def test_output_never_replaces_somebodys_file(self):
        drawing = self.write("only-copy.svg", real_documents.DRAWING.encode())
        notes = self.write("notes.txt", b"somebody's")
        for output in (drawing, notes):
            before = output.read_bytes()
            done = self.run_on(drawing, "--output", output)
            self.assertEqual(done.returncode, 2, done.stderr)
            self.assertIn("is no imported document; name another file", done.stderr)
            self.assertEqual(output.read_bytes(), before)
        again = self.folder / "again.json"
        for _ in range(2):
            self.assertEqual(self.run_on(drawing, "--output", again).returncode, 0)
        self.assertEqual(list(self.folder.glob("*.unfinished")), [])

    def test_drawing_nested_too_deep_is_refused(self):
        deep = b'<svg xmlns="http://www.w3.org/2000/svg">' + b"<g>" * 5000 + b"</g>" * 5000 + b"</svg>"
        done = self.run_on(self.write("deep.svg", deep))
        self.assertEqual(done.returncode, 2)
        self.assertNotIn("Traceback", done.stderr)

    def test_compressed_svg(self):
        file = self.write("drawing.svgz", gzip.compress(real_documents.DRAWING.encode()))
        self.assertEqual(json.loads(self.run_on(file).stdout)["document"]["frames"],
                         self.document("drawing.svg")["frames"])

    def test_document_without_text_is_said(self):
        done = self.run_on(self.write("empty.svg", b'<svg xmlns="http://www.w3.org/2000/svg"/>'))
        self.assertEqual(json.loads(done.stdout)["document"]["frames"], [])
        self.assertIn("there is no text in", done.stderr)

    def test_files_that_are_none_are_refused(self):
        protected = self.folder / "protected.pdf"
        real_documents.run("gs", "-q", "-sDEVICE=pdfwrite", "-sOwnerPassword=a", "-sUserPassword=b",
                           "-dEncryptionR=3", "-dKeyLength=128", f"-sOutputFile={protected}", "-dBATCH", "-dNOPAUSE",
                           str(self.files["scripts.pdf"]))
        damaged = bytearray(gzip.compress(real_documents.DRAWING.encode()))
        damaged[20:40] = bytes(20)
        cases = {
            self.write("text.pdf", b"not a PDF\n"): "FILE is neither a PDF (or an .ai based on one) nor an EPS nor an SVG",
            self.write("nothing.pdf", b""): "FILE is empty",
            self.write("damaged.pdf", b"%PDF-1.4\ngarbage"): "FILE cannot be read: PDF document is damaged",
            protected: "FILE cannot be read: Document is encrypted",
            self.write("broken.eps", b"%!PS-Adobe-3.0 EPSF-3.0\nnot PostScript at all (\n"):
                "gs cannot read FILE: Error: /stackunderflow in --not--",
            self.write("broken.svg", b"<svg"): "FILE is not well-formed: unclosed token: line 1, column 0",
            self.write("damaged.svgz", damaged): "FILE is neither a PDF (or an .ai based on one) nor an EPS nor an SVG",
            self.write("broken.svgz", b"\x1f\x8bgarbage"):
                "FILE is neither a PDF (or an .ai based on one) nor an EPS nor an SVG",
            self.folder / "absent.pdf": "[Errno 2] No such file or directory: 'FILE'",
        }
        for file, complaint in cases.items():
            with self.subTest(file.name):
                self.assertEqual(self.refusal(file), complaint)


if __name__ == "__main__":
    unittest.main(verbosity=0)

"""Real documents, made by the programs of this machine, and what independent tools say about them."""

import pathlib
import re
import subprocess
import tempfile
import unittest

MANUSCRIPT = r"""
.TL
A brochure
.AU
Somebody
.PP
Text in Times with \fBbold\fP and \fIitalic\fP and \f[CR]typewriter\fP words.
.NH
Heading
.PP
More text in \f[HR]Helvetica\fP and \f[PR]Palatino\fP.
.bp
.PP
\f[HB]A second page\fP with little text.
"""

MARKUP = ('Hello <span font="P052 Italic 15">world</span> <b>bold</b> '
          '<span font="DejaVu Serif 10">with umlauts: ÄÖÜ</span>')

DRAWING = """<?xml version="1.0" encoding="UTF-8"?>
<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" width="300" height="200">
  <style>.caption { font-family: C059; } @import url(other.css); text > .strong { font-weight: 700 }</style>
  <image xlink:href="Pictures/A%20harbour.png" x="0" y="0" width="40" height="40"/>
  <image href="data:image/png;base64,AAAA" width="1" height="1"/>
  <text x="10" y="60" font-family="'Nimbus Roman', serif" font-size="12">Roman
    <tspan class="strong">and bold</tspan>
    <tspan style="font: oblique 10px/12px 'DejaVu Sans'">and slanted</tspan> and Roman again</text>
  <text class="caption" x="10" y="90">A caption</text>
</svg>
"""

# For a program that writes SVG and links its pictures.
DIAGRAM = """digraph { node [shape=none];
a [label="Roman", fontname="Nimbus Roman"]; b [label="Sans", fontname="DejaVu Sans"]; c [label="", image="%s"];
a -> b -> c }"""
PICTURES = {"Pictures/A harbour.png": (7, 5), "Pictures/A logo.png": (31, 17)}

# What a drawing program writes about the files that a document is made from.
METADATA = """<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta xmlns:x='adobe:ns:meta/'>
<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description rdf:about=''
xmlns:xmpMM='http://ns.adobe.com/xap/1.0/mm/' xmlns:stMfs='http://ns.adobe.com/xap/1.0/sType/ManifestItem#'
xmlns:stRef='http://ns.adobe.com/xap/1.0/sType/ResourceRef#'><xmpMM:Manifest><rdf:Bag>
%s</rdf:Bag></xmpMM:Manifest></rdf:Description></rdf:RDF></x:xmpmeta><?xpacket end='w'?>"""
METADATA_ITEM = """<rdf:li rdf:parseType='Resource'><stMfs:linkForm>ReferenceStream</stMfs:linkForm>
<stMfs:reference rdf:parseType='Resource'><stRef:filePath>%s</stRef:filePath></stMfs:reference></rdf:li>
"""
LINKS_OF_ILLUSTRATION = ("C:\\Jobs\\Logo.psd", "Links/Photo.tif")

ILLUSTRATION = """%%!PS
[ /_objdef {metadata} /type /stream /OBJ pdfmark
[ {metadata} (%s) /PUT pdfmark
[ {metadata} << /Type /Metadata /Subtype /XML >> /PUT pdfmark
[ {Catalog} << /Metadata {metadata} >> /PUT pdfmark
/URWGothic-Book findfont 20 scalefont setfont 100 600 moveto (A headline) show
/P052-Roman findfont 12 scalefont setfont 100 560 moveto (and a line of text) show
showpage
"""

# A font that is not installed, and an image that a page-layout program has left out.
ADVERTISEMENT = """%!PS-Adobe-3.0 EPSF-3.0
%%BoundingBox: 0 0 300 200
%%DocumentNeededResources: font Frutiger-Light Helvetica-Bold
%%EndComments
%ALDImageFileName: /Volumes/Pictures/A large photo.tif
%ALDImageCropRect: 0 0 10 10
/Frutiger-Light findfont 20 scalefont setfont 100 100 moveto (Somebody else's font) show
/Helvetica-Bold findfont 20 scalefont setfont 100 50 moveto (A bold line) show
showpage
%%EOF
"""

# Its letters are drawings in the document.
FONT_OF_ITS_OWN = """%!PS
/Drawn 8 dict def Drawn begin
/FontType 3 def /FontMatrix [.001 0 0 .001 0 0] def /FontBBox [0 0 1000 1000] def
/Encoding 256 array def 0 1 255 { Encoding exch /.notdef put } for Encoding 97 /square put
/CharProcs 2 dict def CharProcs begin /.notdef {} def /square { 0 0 750 750 rectfill } def end
/BuildGlyph { 1000 0 0 0 750 750 setcachedevice exch /CharProcs get exch get exec } bind def
/BuildChar { 1 index /Encoding get exch get 1 index /BuildGlyph get exec } bind def
end
/Named Drawn definefont pop
/Named findfont 20 scalefont setfont 100 100 moveto (aaa) show
/Helvetica findfont 20 scalefont setfont 100 200 moveto (Hello) show
showpage
"""


def run(*command, stdin: bytes = b"", cwd: pathlib.Path | None = None) -> bytes:
    return subprocess.run(command, input=stdin, capture_output=True, check=True, cwd=cwd).stdout


def letters_of_many_scripts() -> str:
    """More glyphs than a simple font can encode."""
    blocks = (range(0x391, 0x3A1), range(0x400, 0x480), range(0x100, 0x17F), range(0x531, 0x556))
    return "".join(chr(code) for block in blocks for code in block)


def escaped(text: str) -> str:
    return re.sub(r"([()\\])", r"\\\1", text)


def make_all(folder: pathlib.Path) -> dict[str, pathlib.Path]:
    """By name; made anew."""
    files = {name: folder / name for name in (
        "typeset.pdf", "typeset.eps", "Überschrift.pdf", "scripts.pdf", "drawing.svg", "diagram.svg",
        "illustration.ai", "advertisement.eps")}
    files["typeset.pdf"].write_bytes(run("groff", "-ms", "-Tpdf", stdin=MANUSCRIPT.encode()))
    page = run("groff", "-ms", "-Tps", stdin=MANUSCRIPT.encode())
    run("gs", "-q", "-sDEVICE=eps2write", "-dLastPage=1", f"-sOutputFile={files['typeset.eps']}", "-dBATCH", "-dNOPAUSE",
        "-", stdin=page)
    run("pango-view", "--no-display", "--font=URW Gothic 20", "--markup", f"--text={MARKUP}",
        f"--output={files['Überschrift.pdf']}")
    run("pango-view", "--no-display", "--font=DejaVu Sans 12", f"--text={letters_of_many_scripts()}", "--wrap=char",
        "--width=400", f"--output={files['scripts.pdf']}")
    (folder / "Pictures").mkdir(exist_ok=True)
    for name, (width, height) in PICTURES.items():
        run("convert", "-size", f"{width}x{height}", "plasma:", f"PNG24:{folder / name}")
    files["drawing.svg"].write_text(DRAWING, encoding="utf-8")
    files["diagram.svg"].write_bytes(run("dot", "-Tsvg", stdin=(DIAGRAM % "Pictures/A logo.png").encode(), cwd=folder))
    metadata = METADATA % "".join(METADATA_ITEM % link for link in LINKS_OF_ILLUSTRATION)
    run("gs", "-q", "-sDEVICE=pdfwrite", f"-sOutputFile={files['illustration.ai']}", "-dBATCH", "-dNOPAUSE", "-",
        stdin=(ILLUSTRATION % escaped(metadata)).encode())
    files["advertisement.eps"].write_text(ADVERTISEMENT, encoding="utf-8")
    return files


class WithRealDocuments(unittest.TestCase):
    """Has them in `files`, in a folder of its own."""

    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory()
        cls.folder = pathlib.Path(cls.temporary.name)
        cls.files = make_all(cls.folder)

    @classmethod
    def tearDownClass(cls):
        cls.temporary.cleanup()


def fonts_by_other_tools(file: pathlib.Path, folder: pathlib.Path) -> set[str]:
    """The PostScript names without the prefixes of subsets: of a PDF as pdffonts lists them; of an EPS as Ghostscript's
    interpreter meets them while it extracts the text, without a PDF in between; of an SVG as librsvg embeds them."""
    if file.suffix == ".eps":
        text = run("gs", "-q", "-dSAFER", "-sDEVICE=txtwrite", "-dTextFormat=0", "-sOutputFile=-", "-dBATCH", "-dNOPAUSE",
                   str(file)).decode()
        return {without_prefix(font) for font in re.findall('<span [^>]*font="([^"]*)"', text)}
    if file.suffix == ".svg":
        file = converted(file, folder, "rsvg-convert", "--format=pdf", str(file), "--output")
    lines = run("pdffonts", str(file)).decode().splitlines()[2:]
    return {without_prefix(line.split()[0]) for line in lines}


def without_prefix(font: str) -> str:
    return re.sub(r"^[A-Z]{6}\+", "", font)


def converted(file: pathlib.Path, folder: pathlib.Path, *command: str) -> pathlib.Path:
    pages = folder / (file.stem + "-converted.pdf")
    run(*command, str(pages))
    return pages


def pictures_of_svg(file: pathlib.Path, folder: pathlib.Path) -> list[tuple[int, int]]:
    """The sizes of the pictures that librsvg finds where the drawing says that they are."""
    pages = converted(file, folder, "rsvg-convert", "--format=pdf", str(file), "--output")
    lines = [line.split() for line in run("pdfimages", "-list", str(pages)).decode().splitlines()[2:]]
    return [(int(line[3]), int(line[4])) for line in lines if line[2] == "image"]


def links_in_metadata(file: pathlib.Path) -> list[str]:
    """As Poppler shows the metadata of a PDF."""
    return re.findall(r"<stRef:filePath>(.*?)</stRef:filePath>", run("pdfinfo", "-meta", str(file)).decode())

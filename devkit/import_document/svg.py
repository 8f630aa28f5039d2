"""The fonts and linked images of an SVG."""

import pathlib
import re
import urllib.parse
import xml.etree.ElementTree as ElementTree

import cssselect2
import font_names
import kinds
import style
import tools

SVG = "{http://www.w3.org/2000/svg}"
LINK = "{http://www.w3.org/1999/xlink}href"
# What holds text to be shown within a text element; a title or a description does not.
PARTS_OF_TEXT = tuple(SVG + tag for tag in ("text", "tspan", "textPath", "a"))


class Drawing:
    def __init__(self, file: pathlib.Path):
        try:
            self.root = ElementTree.fromstring(kinds.contents(file))
        except ElementTree.ParseError as error:
            raise tools.ImportFailed(f"{file} is not well-formed: {error}") from None
        self.sheet = style.Sheet(element.text or "" for element in self.root.iter(SVG + "style"))

    def frames(self) -> list[list[str]]:
        """A frame for each text element, with one PostScript name for each run in another font."""
        frames = []
        wrapped = cssselect2.ElementWrapper.from_xml_root(self.root)
        self.visit(wrapped, style.INITIAL, None, frames)
        return frames

    def visit(self, element, inherited: style.Font, frame, frames: list) -> None:
        tag = element.etree_element.tag
        if not self.sheet.is_shown(element) or (frame is not None and tag not in PARTS_OF_TEXT):
            return
        font = self.sheet.font_of(element, inherited)
        if tag == SVG + "text":
            frame = []
            frames.append(frame)
        add_run(frame, element.etree_element.text, font)
        for child in element.iter_children():
            self.visit(child, font, frame, frames)
            # What stands behind the child is this element's own text again.
            add_run(frame, child.etree_element.tail, font)

    def linked_files(self) -> list[str]:
        links = []
        for image in self.root.iter(SVG + "image"):
            link = image.get("href") or image.get(LINK) or ""
            links.append(file_named_by(link.strip()))
        return list(dict.fromkeys(filter(None, links)))


def file_named_by(link: str) -> str:
    """Empty for what is no file: data, a part of the drawing itself, something in the web."""
    if re.match(r"^[A-Za-z]:[\\/]", link):
        return link
    parts = urllib.parse.urlsplit(link)
    if parts.scheme == "file":
        return link
    return "" if parts.scheme or parts.netloc else urllib.parse.unquote(parts.path)


def add_run(frame, text, font: style.Font) -> None:
    if frame is None or not (text or "").strip():
        return
    name = font_names.postscript_name(font)
    if not frame or frame[-1] != name:
        frame.append(name)

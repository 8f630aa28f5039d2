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
XLINK_HREF = "{http://www.w3.org/1999/xlink}href"
# What holds text to be shown within a text element; a title or a description does not.
PARTS_OF_TEXT = tuple(SVG + tag for tag in ("text", "tspan", "textPath", "a"))
# What is shown only where a `use` names it, or a part of it.
KEPT_ASIDE = tuple(SVG + tag for tag in ("defs", "symbol"))
# What is shown only as the look of something else.
NOT_FOLLOWED = tuple(SVG + tag for tag in ("clipPath", "mask", "pattern", "marker", "foreignObject"))
# Far more than anybody draws: drawings that show themselves again and again grow without end.
MOST_ELEMENTS = 1_000_000


class Drawing:
    def __init__(self, file: pathlib.Path):
        try:
            self.root = ElementTree.fromstring(kinds.contents(file))
        except ElementTree.ParseError as error:
            raise tools.ImportFailed(f"{file} is not well-formed: {error}") from None
        self.file = file
        self.sheet = style.Sheet(element.text or "" for element in self.root.iter(SVG + "style")
                                 if style.holds_for(element.get("media") or "all"))
        self.wrapped = cssselect2.ElementWrapper.from_xml_root(self.root)
        self.named = {element.id: element for element in self.wrapped.iter_subtree() if element.id}
        self.elements = 0

    def frames(self) -> list[list[str]]:
        """A frame for each text element, with one PostScript name for each run in another font."""
        frames = []
        self.visit(self.wrapped, style.INITIAL, None, frames)
        return frames

    def visit(self, element, inherited: style.Font, frame, frames: list) -> None:
        tag = element.etree_element.tag
        if not self.sheet.is_shown(element) or not is_understood(element) or tag in KEPT_ASIDE \
                or (frame is not None and tag not in PARTS_OF_TEXT):
            return
        if tag in NOT_FOLLOWED:
            if "".join(element.etree_element.itertext()).strip():
                tools.warn(f"{self.file}: text in a {element.local_name} is not looked into")
            return
        self.show(element, inherited, frame, frames)

    def show(self, element, inherited: style.Font, frame, frames: list) -> None:
        self.elements += 1
        if self.elements > MOST_ELEMENTS:
            raise tools.ImportFailed(f"{self.file} shows more than {MOST_ELEMENTS} elements")
        tag = element.etree_element.tag
        font = self.sheet.font_of(element, inherited)
        if tag == SVG + "text":
            frame = []
            frames.append(frame)
        add_run(frame, element.etree_element.text, font)
        for child in children_of(element):
            self.visit(child, font, frame, frames)
            # What stands behind the child is this element's own text again.
            add_run(frame, child.etree_element.tail, font)
        if tag == SVG + "use":
            self.show_used(element, font, frames)

    def show_used(self, element, font: style.Font, frames: list) -> None:
        """As if it stood here: fonts are inherited from the `use`."""
        link = link_of(element.etree_element)
        used = self.named.get(link.removeprefix("#"))
        if used is None:
            tools.warn(f"{self.file}: what \"{link}\" names is not in it")
        elif used.etree_element.tag in KEPT_ASIDE and self.sheet.is_shown(used):
            self.show(used, font, None, frames)
        else:
            self.visit(used, font, None, frames)

    def linked_files(self) -> list[str]:
        links = []
        for image in self.root.iter(SVG + "image"):
            links.append(file_named_by(link_of(image)))
        return list(dict.fromkeys(filter(None, links)))


def link_of(element) -> str:
    return (element.get("href") or element.get(XLINK_HREF) or "").strip()


def is_understood(element) -> bool:
    """What asks for more than an ordinary reader knows is not shown, and of languages the one that is asked for here."""
    attributes = element.etree_element
    if attributes.get("systemLanguage") is not None:
        tools.warn("what the drawing shows depends on the reader's language; English is taken")
    languages = [each.strip().lower() for each in attributes.get("systemLanguage", "en").split(",")]
    return not attributes.get("requiredExtensions") and any(re.match("en(-|$)", each) for each in languages)


def children_of(element) -> list:
    """Of a switch, the first one that is understood."""
    children = list(element.iter_children())
    if element.etree_element.tag != SVG + "switch":
        return children
    return [child for child in children if is_understood(child)][:1]


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

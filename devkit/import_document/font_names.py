"""The PostScript name of a font that is asked for by family, weight and slant: fontconfig's word, and a guess for fonts
that this machine does not have. Those are the ones that a font manager is for."""

import functools
import re

import style
import tools

# fontconfig's own scale, by that of style sheets.
WEIGHTS = {100: 0, 200: 40, 300: 50, 400: 80, 500: 100, 600: 180, 700: 200, 800: 205, 900: 210}
SLANTS = {"normal": 0, "italic": 100, "oblique": 110}
BOLD = 600


@functools.cache
def postscript_name(font: style.Font) -> str:
    family = escaped(font.family)
    if listed(f":family={family}") or font.family in ("serif", "sans-serif", "monospace"):
        weight = WEIGHTS[min(WEIGHTS, key=lambda each: abs(each - font.weight))]
        pattern = f"{family}:weight={weight}:slant={SLANTS[font.slant]}"
        return tools.text_of(tools.run("fc-match", "--format=%{postscriptname}", pattern))
    if listed(f":postscriptname={family}"):
        # Drawing programs write the PostScript name where the family belongs.
        return font.family
    return guess(font)


def escaped(family: str) -> str:
    return re.sub(r"([-:,\\])", r"\\\1", family)


def listed(pattern: str) -> bool:
    return bool(tools.run("fc-list", pattern).strip())


def guess(font: style.Font) -> str:
    looks = ("Bold" if font.weight >= BOLD else "") + ("Italic" if font.slant != "normal" else "")
    return font.family.replace(" ", "") + ("-" + looks if looks else "")

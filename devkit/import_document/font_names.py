"""The PostScript name of a font that is asked for by family, weight, slant and width: fontconfig's word, and a guess for
fonts that this machine does not have. Those are the ones that a font manager is for."""

import functools
import re

import style
import tools

# fontconfig's own scale, by that of style sheets. That of widths is the same.
WEIGHTS = {100: 0, 200: 40, 300: 50, 400: 80, 500: 100, 600: 180, 700: 200, 800: 205, 900: 210}
SLANTS = {"normal": 0, "italic": 100, "oblique": 110}
BOLD = 600
# What stands for any font of a kind, in small letters.
GENERIC = ("serif", "sans-serif", "monospace", "cursive", "fantasy", "system-ui", "ui-serif", "ui-sans-serif",
           "ui-monospace", "ui-rounded", "math", "emoji", "fangsong")
# What stands behind the hyphen of a PostScript name, one or several; the foundry's letters may follow.
STYLES = ("Thin", "Hairline", "Extra", "Ultra", "Semi", "Demi", "Light", "Book", "Regular", "Normal", "Roman", "Plain",
          "Medium", "Bold", "bold", "Heavy", "Black", "Italic", "It", "Oblique", "Slanted", "Condensed", "Cond", "Cn",
          "Compressed", "Narrow", "Extended", "Ext", "Expanded", "Wide", "Display", "Caption", "Text")
POSTSCRIPT_NAME = re.compile(rf"[^-\s]+-(\d*({'|'.join(STYLES)}))+(PS)?(MT)?")


@functools.cache
def postscript_name(font: style.Font) -> str:
    family = escaped(font.family)
    if font.family.lower() in GENERIC:
        name = best_match(font)
        tools.warn(f"\"{font.family}\" is no font's name; this machine takes {name} for it, another one may not")
        return name
    if listed(f":family={family}"):
        return best_match(font)
    # Drawing programs write the PostScript name where the family belongs.
    if listed(f":postscriptname={family}") or POSTSCRIPT_NAME.fullmatch(font.family):
        return font.family
    name = guess(font)
    tools.warn(f"no font of the family \"{font.family}\" is installed; the PostScript name {name} is a guess")
    return name


def best_match(font: style.Font) -> str:
    weight = WEIGHTS[min(WEIGHTS, key=lambda each: abs(each - font.weight))]
    pattern = f"{escaped(font.family)}:weight={weight}:slant={SLANTS[font.slant]}:width={font.stretch}"
    return tools.text_of(tools.run("fc-match", "--format=%{postscriptname}", pattern))


def escaped(family: str) -> str:
    return re.sub(r"([-:,\\])", r"\\\1", family)


def listed(pattern: str) -> bool:
    return bool(tools.run("fc-list", pattern).strip())


def guess(font: style.Font) -> str:
    looks = ("Condensed" if font.stretch < 100 else "Extended" if font.stretch > 100 else "") \
        + ("Bold" if font.weight >= BOLD else "") + ("Italic" if font.slant != "normal" else "")
    return font.family.replace(" ", "") + ("-" + looks if looks else "")

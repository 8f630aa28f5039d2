"""Which font an element of an SVG asks for: attributes, style sheets, style attributes and inheritance."""

import dataclasses

import cssselect2
import tinycss2

WEIGHTS = {"normal": 400, "bold": 700}
SLANTS = ("normal", "italic", "oblique")
# In per cent.
STRETCHES = {"ultra-condensed": 50, "extra-condensed": 63, "condensed": 75, "semi-condensed": 87, "normal": 100,
             "semi-expanded": 113, "expanded": 125, "extra-expanded": 150, "ultra-expanded": 200}
SIZES = ("xx-small", "x-small", "small", "medium", "large", "x-large", "xx-large", "xxx-large", "smaller", "larger")
# What a browser shows without any family; nobody can say which font that is.
NO_FAMILY = "serif"
# What is looked at, in rules and as attributes of an element.
PROPERTIES = ("font-family", "font-weight", "font-style", "font-stretch", "display")
# The field of a font that each is about.
FIELDS = {"font-family": "family", "font-weight": "weight", "font-style": "slant", "font-stretch": "stretch"}
# The media whose rules hold: a drawing program shows a document on a screen. Conditions, as in
# "screen and (min-width: 1px)", are not looked into.
MEDIA = ("all", "screen")


@dataclasses.dataclass(frozen=True)
class Font:
    family: str = NO_FAMILY
    weight: int = 400
    slant: str = "normal"
    stretch: int = 100


INITIAL = Font()


class Sheet:
    def __init__(self, texts):
        self.matcher = cssselect2.Matcher()
        for text in texts:
            for rule in tinycss2.parse_stylesheet(text, skip_comments=True, skip_whitespace=True):
                self.add(rule)

    def add(self, rule) -> None:
        if rule.type == "at-rule" and rule.lower_at_keyword == "media" and holds_for(tinycss2.serialize(rule.prelude)):
            for within in tinycss2.parse_rule_list(rule.content, skip_comments=True, skip_whitespace=True):
                self.add(within)
        if rule.type != "qualified-rule":
            return
        declarations = tinycss2.parse_declaration_list(rule.content, skip_comments=True, skip_whitespace=True)
        try:
            selectors = cssselect2.compile_selector_list(rule.prelude)
        except cssselect2.SelectorError:
            # As browsers do: a rule that is not understood is left out.
            return
        for selector in selectors:
            self.matcher.add_selector(selector, declarations)

    def font_of(self, element, inherited: Font) -> Font:
        font = inherited
        for declaration in self.declarations_for(element):
            font = applied(font, declaration.lower_name, significant(declaration.value), inherited)
        return font

    def is_shown(self, element) -> bool:
        values = [significant(each.value) for each in self.declarations_for(element) if each.lower_name == "display"]
        return not values or [token.serialize().lower() for token in values[-1]] != ["none"]

    def declarations_for(self, element) -> list:
        """The weakest first."""
        attributes = element.etree_element
        weakest = [f"{name}: {attributes.get(name)}" for name in PROPERTIES if attributes.get(name)]
        found = parse("; ".join(weakest))
        for _, _, pseudo_element, declarations in sorted(self.matcher.match(element), key=lambda match: match[:2]):
            # A rule for the first letter, say, is none for the element.
            if pseudo_element is None:
                found += [declaration for declaration in declarations if declaration.type == "declaration"]
        found += parse(attributes.get("style") or "")
        # sorted keeps the order of equals.
        return sorted(found, key=lambda declaration: declaration.important)


def holds_for(media: str) -> bool:
    """Media as a rule or a style sheet lists them."""
    return any(query.strip().lower() in MEDIA for query in media.split(","))


def parse(declarations: str) -> list:
    parsed = tinycss2.parse_declaration_list(declarations, skip_comments=True, skip_whitespace=True)
    return [declaration for declaration in parsed if declaration.type == "declaration"]


def significant(tokens) -> list:
    return [token for token in tokens if token.type not in ("whitespace", "comment")]


def applied(font: Font, name: str, tokens: list, inherited: Font) -> Font:
    if not tokens:
        return font
    word = tokens[0].lower_value if tokens[0].type == "ident" else None
    if word == "inherit":
        if name == "font":
            return inherited
        return dataclasses.replace(font, **{FIELDS[name]: getattr(inherited, FIELDS[name])}) if name in FIELDS else font
    if name == "font-family":
        return dataclasses.replace(font, family=first_family(tokens))
    if name == "font-weight":
        return dataclasses.replace(font, weight=weight_of(tokens[0], inherited.weight))
    if name == "font-style" and word in SLANTS:
        return dataclasses.replace(font, slant=word)
    if name == "font-stretch":
        return dataclasses.replace(font, stretch=stretch_of(tokens[0], inherited.stretch))
    if name == "font":
        return shorthand(tokens, inherited)
    return font


def weight_of(token, inherited: int) -> int:
    if token.type == "number":
        return int(token.value)
    word = token.lower_value if token.type == "ident" else ""
    if word == "bolder":
        return 700 if inherited < 600 else 900
    if word == "lighter":
        return 400 if inherited > 500 else 100
    return WEIGHTS.get(word, inherited)


def stretch_of(token, inherited: int) -> int:
    if token.type == "percentage":
        return int(token.value)
    return STRETCHES.get(token.lower_value if token.type == "ident" else "", inherited)


def first_family(tokens: list) -> str:
    """The family that the document asks for: what stands behind it is for machines that do not have it."""
    words = []
    for token in tokens:
        if token.type == "literal" and token.value == ",":
            break
        words.append(token.value if token.type in ("string", "ident") else "")
    return " ".join(filter(None, words)) or NO_FAMILY


def shorthand(tokens: list, inherited: Font) -> Font:
    """`font: italic bold 12px/14px "Some Family", serif`; what it does not name has its initial value."""
    font = Font(family=inherited.family)
    for i, token in enumerate(tokens):
        word = token.lower_value if token.type == "ident" else ""
        if token.type in ("dimension", "percentage") or word in SIZES:
            rest = tokens[i + 1:]
            if rest and rest[0].type == "literal" and rest[0].value == "/":
                rest = rest[2:]
            return dataclasses.replace(font, family=first_family(rest))
        if word in SLANTS[1:]:
            font = dataclasses.replace(font, slant=word)
        elif word in STRETCHES and word != "normal":
            font = dataclasses.replace(font, stretch=STRETCHES[word])
        elif token.type == "number" or word in ("bold", "bolder", "lighter"):
            font = dataclasses.replace(font, weight=weight_of(token, inherited.weight))
    # Without a size it is no font shorthand, or the name of a font of the system.
    return inherited

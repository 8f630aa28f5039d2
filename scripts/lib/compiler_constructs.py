"""Finds in C and C++ what a single compiler understands, so that scripts/check-tree can keep it in few places."""

import re

# Each pattern with what it stands for. Looked for in the code alone: comments and literals are taken out before.
CONSTRUCTS = (
    (r"__attribute__|__attribute\b|\[\[\s*(?:gnu|clang|msvc)\s*::", "an attribute of one compiler"),
    (r"__builtin_\w+|__sync_\w+|__atomic_\w+", "a built-in function of GCC"),
    (r"\b(?:asm|__asm|__asm__)\b", "assembler"),
    (r"__extension__|\b__int128\b|\b__float128\b|\b(?:__typeof__|__typeof|typeof)\b|\b__PRETTY_FUNCTION__\b|\b__label__\b",
     "a word of GCC's own"),
    (r"\b__(?:try|except|finally|leave|fastfail|assume|uuidof|super)\b|\b_ReturnAddress\b", "a word of Visual C++'s own"),
    (r"\b(?:__GNUC__|__GNUG__|__GLIBCXX__|__clang__|__MINGW\w*__|__MINGW\w*|_MSC_\w+)\b", "a question which compiler it is"),
    (r"^\s*#\s*pragma\s+(?:GCC|clang|warning|comment|intrinsic|section)\b", "a pragma of one compiler"),
    (r"^\s*#\s*include_next\b", "GCC's #include_next"),
    (r"^\s*#\s*include\s*<(?:bits/|ext/|sys/(?!stat\.h|types\.h)|"
     r"(?:unistd|dirent|strings|pthread|dlfcn|cxxabi|cpuid|x86intrin|libgen|getopt|endian|alloca|_mingw|intrin)(?:\.h)?>)",
     "a header that not every compiler has"),
    (r"\b(?:strn?casecmp|v?asprintf|ssize_t|usleep|gettimeofday|mkstemp|stpcpy|mempcpy|getline_r)\b",
     "a function or type that Windows' C library does not have"),
    (r"\bcase\b[^:;{}\n]*\.\.\.", "a range of cases"),
    (r"\?\s*:(?!:)", "a conditional without its middle"),
)

# Literals first: what looks like a comment within them is none.
NOT_CODE = re.compile(
    r'R"(?P<mark>[^()\s\\]{0,16})\(.*?\)(?P=mark)"'
    r'|"(?:\\.|[^"\\\n])*"'
    r"|(?<![0-9a-zA-Z_])'(?:\\.|[^'\\\n])+'"
    r"|//[^\n]*"
    r"|/\*.*?\*/",
    re.DOTALL)


def code_of(text):
    """The text without comments, and with a plain literal in place of each; its lines are those of the text."""
    plain = {'"': '""', "R": '""', "'": "0", "/": " "}
    return NOT_CODE.sub(lambda found: plain[found[0][0]] + "\n" * found[0].count("\n"), text)


def statement_expressions(code):
    """Where "({" begins a block with statements, and is no list of arguments."""
    for found in re.finditer(r"\(\s*\{", code):
        depth = 0
        for place in range(found.end() - 1, len(code)):
            letter = code[place]
            depth += (letter == "{") - (letter == "}")
            if depth == 0:
                break
            if depth == 1 and letter == ";":
                yield found.start()
                break


def constructs_in(text):
    """Pairs of a line's number and what stands there."""
    code = code_of(text)
    places = [(found.start(), what) for pattern, what in CONSTRUCTS
              # Blanks in front of a match may be lines.
              for found in re.finditer(rf"(?m:{pattern})", code)]
    places += [(place, "a block in place of a value") for place in statement_expressions(code)]
    for place, what in sorted(places):
        while code[place].isspace():
            place += 1
        yield code.count("\n", 0, place) + 1, what

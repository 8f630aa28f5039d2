#!/usr/bin/env python3
"""The presets for Visual C++ configure what the preset release does: the same targets of the same sources, and tests, but
for differences that are named here with their reasons. No compiler is given an option of the other one.

Visual C++ itself is not here: what stands for it only fails, and CMake is told what it would find (LikeVisualCpp.cmake).
"""

import argparse
import fnmatch
import json
import pathlib
import re
import subprocess
import sys
import tempfile

import codemodel

HERE = pathlib.Path(__file__).parent
# Targets that are there for GCC alone.
ONLY_GCC_HAS = {
    "shipped_plugin": "takes the symbols out of the file, where Visual C++ never puts them",
    "shipped_diagnostic_plugin": "the same",
    "guarded": "a library with the plug-in's own stack guard",
    "unguarded": "the same without",
    "thread_variables": "a library with the plug-in's own thread variables",
}
# Targets whose commands are those of a Linux shell or Python: labels of tests that Windows does not have.
ONLY_DEBIAN_HAS = {"documentation", "mutation", "reliability", "scripts", "versions", "visual_cpp", "import_document",
                   "by_hand", "read_window", "bench_tests",
                   "diagnostics", "fake_host_20", "fake_host_21", "packaged", "packages", "start_program"}
# Sources that one of the two compilers alone is given: its own way to do what the other's does.
GNU_SOURCES = {
    "src/support/ForeignExceptionGuardGnu.S": "the frame that stops Visual C++'s exceptions",
    "src/support/StackGuardGnu.cpp": "Visual C++ brings its own",
    "src/support/ThreadVariablesGnu.cpp": "Visual C++ brings its own",
    "src/support/TerminateGnu.cpp": "keeps a part of GCC's runtime out of the file",
    "tests/unit/support/StackGuardGnuTest.cpp": "tests one of these",
    "tests/unit/support/ThreadVariablesGnuTest.cpp": "tests one of these",
}
VISUAL_CPP_SOURCES = {"src/support/ForeignExceptionGuardMsvc.cpp": "the frame that stops Visual C++'s exceptions"}
# Definitions that one of the two alone is given.
GNU_DEFINITIONS = {"QUORVEL_PLUGIN_VARIABLES_ARE_GATHERED": "needs a script of GNU's linker"}
VISUAL_CPP_DEFINITIONS = {"_CRT_SECURE_NO_WARNINGS": "warns about the functions of standard C"}
# Debian's zlib for the cross compiler lies in the compiler's own folder.
VISUAL_CPP_INCLUDES = {"<zlib>": "where zlib was unpacked"}
GNU_INCLUDES = {"tests/support/gtest_custom": "the test framework's threads, which this compiler's library lacks"}

# An option of the other compiler; a path has a second slash.
GNU_OPTION = re.compile(r"-(W(?!X$)|f(?!p:)|O\d|g|m|std=|static|shared|s$|x$|pipe|include$)")
VISUAL_CPP_OPTION = re.compile(r"/[A-Za-z][^/]*$|-std:|-M[TD]d?$")
# What has to be there, for whom.
OPTIONS_OF_THE_PLUGIN = {"/utf-8", "/EHsc", "/permissive-", "/GS", "/guard:cf", "/W4", "-std:c++20"}
LINKING_OF_THE_PLUGIN = {"/DYNAMICBASE", "/HIGHENTROPYVA", "/NXCOMPAT", "/GUARD:CF", "/CETCOMPAT", "/BASE:0x180000000"}


def cache_of(presets: dict, name: str) -> dict:
    """The variables of a preset and of those that it is made from."""
    preset = presets[name]
    inherited = preset.get("inherits", [])
    variables: dict = {}
    for parent in [inherited] if isinstance(inherited, str) else reversed(inherited):
        variables |= cache_of(presets, parent)
    return variables | preset.get("cacheVariables", {})


class Configuration:
    def __init__(self, options, work: pathlib.Path, preset: str, toolchain: pathlib.Path, **more: str):
        self.preset = preset
        self.source = pathlib.Path(options.source_folder)
        self.build = work / preset
        codemodel.ask(self.build)
        presets = json.loads((self.source / "CMakePresets.json").read_text(encoding="utf-8"))["configurePresets"]
        variables = cache_of({each["name"]: each for each in presets}, preset) | more
        variables |= {"CMAKE_TOOLCHAIN_FILE": str(toolchain), "QUORVEL_BUILD_BENCHMARKS": "ON"}
        self.process = subprocess.Popen(
            [options.cmake, "-S", self.source, "-B", self.build, "-G", "Ninja",
             *(f"-D{name}={value}" for name, value in variables.items())],
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8")

    def finish(self, ctest: str) -> None:
        printed, _ = self.process.communicate()
        if self.process.returncode != 0:
            sys.exit(f"the preset {self.preset} cannot be configured:\n{printed}")
        self.targets = codemodel.targets_of(self.source, self.build)
        listed = subprocess.run([ctest, "--test-dir", self.build, "--show-only=json-v1"], check=True, capture_output=True)
        self.tests = {each["name"]: {one["name"]: one["value"] for one in each["properties"]}["LABELS"][0]
                      for each in json.loads(listed.stdout)["tests"]}


def differing(name: str, what: str, gcc, visual_cpp, of_gcc=(), of_visual_cpp=()):
    """Members that one of the two has alone without a reason."""
    for here, there, allowed, compiler in ((gcc, visual_cpp, of_gcc, "GCC"), (visual_cpp, gcc, of_visual_cpp, "Visual C++")):
        for each in sorted(here - there - set(allowed)):
            yield f"{name}: {what} {each} is there for {compiler} alone"


def of_ours(configuration: Configuration) -> dict[str, codemodel.Target]:
    """Without the test framework, which has its own ways with each compiler."""
    return {name: target for name, target in configuration.targets.items() if not re.match("gtest|gmock", name)}


def sources_of(target: codemodel.Target) -> set[str]:
    """Without what the build makes for a header that is compiled once, and objects, which are other targets' sources."""
    return {each for each in target.sources if not re.search(r"cmake_pch|\.pdb\.rule$|\.obj$", each)}


def compare_targets(gcc: Configuration, visual_cpp: Configuration):
    yield from differing("the build", "the target", set(gcc.targets), set(visual_cpp.targets),
                         ONLY_GCC_HAS | dict.fromkeys(ONLY_DEBIAN_HAS))
    for name in sorted(set(of_ours(gcc)) & set(of_ours(visual_cpp))):
        one, other = gcc.targets[name], visual_cpp.targets[name]
        if one.kind != other.kind:
            yield f"{name}: {one.kind} and {other.kind}"
        yield from differing(name, "the source", sources_of(one), sources_of(other), GNU_SOURCES, VISUAL_CPP_SOURCES)
        yield from differing(name, "the definition", one.definitions, other.definitions, GNU_DEFINITIONS,
                             VISUAL_CPP_DEFINITIONS)
        yield from differing(name, "the folder of headers", one.includes,
                             {"<zlib>" if each == str(visual_cpp.build.parent) else each for each in other.includes},
                             GNU_INCLUDES, VISUAL_CPP_INCLUDES)


def check_reasons(gcc: Configuration, visual_cpp: Configuration):
    """A difference that is gone needs no reason any more."""
    def all_of(configuration, member):
        return {each for target in configuration.targets.values() for each in getattr(target, member)}

    for names, found in ((ONLY_GCC_HAS, set(gcc.targets) - set(visual_cpp.targets)),
                         (ONLY_DEBIAN_HAS, set(gcc.targets) - set(visual_cpp.targets)),
                         (GNU_SOURCES, all_of(gcc, "sources") - all_of(visual_cpp, "sources")),
                         (VISUAL_CPP_SOURCES, all_of(visual_cpp, "sources") - all_of(gcc, "sources")),
                         (GNU_DEFINITIONS, all_of(gcc, "definitions") - all_of(visual_cpp, "definitions")),
                         (VISUAL_CPP_DEFINITIONS, all_of(visual_cpp, "definitions") - all_of(gcc, "definitions")),
                         (GNU_INCLUDES, all_of(gcc, "includes") - all_of(visual_cpp, "includes"))):
        for name in sorted(set(names) - found):
            yield f"{name} is named as a difference, and is none"


def check_options(configuration: Configuration, foreign: re.Pattern):
    for name, target in sorted(of_ours(configuration).items()):
        options = {word for language, word in target.compiling if language != "RC"} | target.linking
        for each in sorted(filter(foreign.match, options)):
            yield f"{name}: the preset {configuration.preset} passes {each}, an option of the other compiler"


def check_needed(visual_cpp: Configuration):
    for name, target in sorted(visual_cpp.targets.items()):
        options = {word for language, word in target.compiling if language == "CXX"}
        if options and name.startswith("quorvel_") and any(each.startswith("src/") for each in target.sources):
            for each in sorted(OPTIONS_OF_THE_PLUGIN - options):
                yield f"{name}: {each} is not passed to Visual C++"
        if name in ("plugin", "diagnostic_plugin"):
            for each in sorted(LINKING_OF_THE_PLUGIN - target.linking):
                yield f"{name}: {each} is not passed to Visual C++'s linker"


def suites_of(configuration: Configuration) -> set[str]:
    """For Visual C++ each case of a suite is a test of its own."""
    units = {label for label in configuration.tests.values() if label.endswith("_tests")}
    return {name.partition(".")[0] if label in units else name for name, label in configuration.tests.items()}


def compare_tests(gcc: Configuration, visual_cpp: Configuration, page: pathlib.Path):
    missing_on_page = re.findall(r"`([\w.*-]+)`", page.read_text(encoding="utf-8"))
    ours, theirs = suites_of(gcc), suites_of(visual_cpp)
    for name in sorted(theirs - ours):
        yield f"the test {name} is there for Visual C++ alone"
    for name in sorted(ours - theirs):
        if not any(fnmatch.fnmatchcase(name, each) for each in missing_on_page):
            yield f"the test {name} is missing for Visual C++, and {page.name} does not say so"
    if len(theirs) < len(ours) / 2:
        yield f"Visual C++ has {len(theirs)} tests, of {len(ours)}"


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    for option in ("--cmake", "--ctest", "--source-folder", "--gcc-toolchain"):
        parser.add_argument(option, required=True)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        compiler = work / "cl.exe"
        compiler.write_text("#!/bin/sh\nexit 1\n", encoding="utf-8")
        compiler.chmod(0o755)
        gcc = Configuration(options, work, "release", pathlib.Path(options.gcc_toolchain))
        visual_cpp = Configuration(options, work, "msvc-tests", HERE / "LikeVisualCpp.cmake",
                                   CMAKE_CXX_COMPILER=str(compiler), QUORVEL_COMPILER_THAT_FAILS=str(compiler),
                                   ZLIB_LIBRARY="zlib.lib", ZLIB_INCLUDE_DIR=str(work))
        for each in (gcc, visual_cpp):
            each.finish(options.ctest)
    faults = [*compare_targets(gcc, visual_cpp), *check_reasons(gcc, visual_cpp), *check_options(gcc, VISUAL_CPP_OPTION),
              *check_options(visual_cpp, GNU_OPTION), *check_needed(visual_cpp),
              *compare_tests(gcc, visual_cpp, gcc.source / "docs" / "windows.md")]
    print("\n".join(faults) or f"{len(visual_cpp.targets)} targets and {len(visual_cpp.tests)} tests for Visual C++.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

"""Asserts that scripts/check-tree finds what it is there to find, on small trees made for it."""

import argparse
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

options = None


class CheckTree(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        # What the script excuses has to exist.
        for name in ("DiscardingLogSink.cpp", "ForeignExceptionGuardMsvc.cpp", "TerminateGnu.cpp", "CompilerSupport.h",
                     "ForeignExceptionGuardGnu.S"):
            self.write(f"src/support/{name}", "")
        self.write("src/plugincore/DirectEntries.cpp", "")
        for name in ("StackGuard", "ThreadVariables"):
            self.write(f"src/support/{name}Gnu.cpp", "")
            self.write(f"tests/unit/support/{name}GnuTest.cpp", "")
        for name in ("devkit/doubles/common/CompilerSupport.h", "bench/common/Run.h", "bench/shipped/Empty.c"):
            self.write(name, "")

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def findings(self):
        result = subprocess.run([options.script, self.root], capture_output=True, text=True)
        lines = result.stderr.splitlines()
        self.assertEqual(result.returncode, 1 if lines else 0)
        return lines

    def assert_finds(self, beginning):
        findings = self.findings()
        self.assertEqual(len(findings), 1, findings)
        self.assertTrue(findings[0].startswith(f"check-tree: {beginning}"), findings[0])

    def include(self, source, target):
        self.write(f"src/{target}", "")
        self.write(f"src/{source}", f'#include "{target}"\n')

    def test_good_tree_has_no_findings(self):
        self.include("documents/Registry.h", "frame/base/Suites.h")
        self.include("frame/Dispatch.h", "documents/Registry.h")
        self.include("plugincore/Loader.h", "support/Log.h")
        self.write("src/json/Parser.cpp", "#include <string>\n")
        self.write("tests/unit/json/ParserTest.cpp", '#include "json/Parser.h"\n')
        self.assertEqual(self.findings(), [])

    def test_source_without_test(self):
        self.write("src/json/Parser.cpp", "")
        self.write("tests/unit/menus/ParserTest.cpp", "")
        self.assert_finds("src/json/Parser.cpp: has no test. Write tests/unit/json/ParserTest.cpp")

    def test_excuse_for_a_source_that_has_gone(self):
        (self.root / "src/support/DiscardingLogSink.cpp").unlink()
        self.assert_finds("scripts/check-tree: excuses src/support/DiscardingLogSink.cpp")

    def test_diagnostic_log_is_included_by_nobody(self):
        self.include("plugincore/PCILoader.h", "diagnostic/DiagnosticLog.h")
        self.assert_finds('src/plugincore/PCILoader.h: includes "diagnostic/DiagnosticLog.h"')

    def test_lowest_folders_know_nobody(self):
        for folder, other in (("support", "host"), ("json", "support"), ("host", "json")):
            with self.subTest(folder):
                self.include(f"{folder}/Low.h", f"{other}/Other.h")
                self.assert_finds(f'src/{folder}/Low.h: includes "{other}/Other.h"')
                (self.root / f"src/{folder}/Low.h").unlink()

    def test_subsystems_do_not_know_each_other(self):
        self.include("documents/Registry.h", "menus/MenuTree.h")
        self.assert_finds('src/documents/Registry.h: includes "menus/MenuTree.h"')

    def test_frame_is_included_by_nobody(self):
        self.include("documents/Registry.h", "frame/Dispatch.h")
        self.assert_finds('src/documents/Registry.h: includes "frame/Dispatch.h"')

    def test_base_of_frame_does_not_know_the_rest_of_it(self):
        self.include("frame/base/Suites.h", "frame/Dispatch.h")
        self.assert_finds('src/frame/base/Suites.h: includes "frame/Dispatch.h"')

    def test_partner_of_a_source_in_a_nested_folder_is_nested_too(self):
        self.write("src/frame/base/Suites.cpp", "")
        self.write("tests/unit/frame/SuitesTest.cpp", "")
        self.assert_finds("src/frame/base/Suites.cpp: has no test. Write tests/unit/frame/base/SuitesTest.cpp")

    def test_source_includes_nothing_outside(self):
        self.write("src/json/Parser.h", '#include "../devkit/Trace.h"\n')
        self.assert_finds('src/json/Parser.h: includes "../devkit/Trace.h"')

    def test_folder_without_a_layer(self):
        self.write("src/misc/Thing.h", "")
        self.assert_finds("src/misc/Thing.h: the folder misc has no place")

    def test_what_only_one_compiler_understands(self):
        for code, what in (
            ("int f() __attribute__((cold));", "an attribute"),
            ("[[gnu::cold]] int f();", "an attribute"),
            ("int a = __builtin_ctz(b);", "a built-in function"),
            ('void f() { asm("nop"); }', "assembler"),
            ('void f() { __asm__ volatile("nop"); }', "assembler"),
            ("__extension__ using A = int;", "a word of GCC's own"),
            ("using A = __int128;", "a word of GCC's own"),
            ("__typeof__(a) b;", "a word of GCC's own"),
            ("void f() { __try { } __except (1) { } }", "a word of Visual C++'s own"),
            ("#ifdef __GNUC__\n#endif", "a question"),
            ("#if defined(_MSC_VER)\n#endif", "a question"),
            ('#pragma GCC diagnostic ignored "-Wshadow"', "a pragma"),
            ("#pragma warning(disable: 4100)", "a pragma"),
            ("#include_next <stdlib.h>", "GCC's #include_next"),
            ("#include <bits/stdc++.h>", "a header"),
            ("#include <unistd.h>", "a header"),
            ("#include <sys/time.h>", "a header"),
            ("int a = strcasecmp(b, c);", "a function or type"),
            ("int f(int a) { switch (a) { case 1 ... 5: return 1; } }", "a range of cases"),
            ("int a = b ?: c;", "a conditional without its middle"),
            ("int a = ({ int b = 1; b; });", "a block in place of a value"),
            ("int a = f(({ g(); 1; }));", "a block in place of a value"),
        ):
            for folder in ("src/json", "devkit/simhost", "bench/json", "tests/unit/json", "fuzz/targets"):
                with self.subTest(code=code, folder=folder):
                    self.write(f"{folder}/Thing.h", f"// First\n\n{code}\n")
                    findings = self.findings()
                    self.assertTrue(findings, "nothing is found")
                    beginning = f"check-tree: {folder}/Thing.h:"
                    self.assertTrue(all(finding.startswith(beginning) for finding in findings), findings)
                    self.assertTrue(findings[0].startswith(f"{beginning}3: {what}"), findings[0])
                    (self.root / folder / "Thing.h").unlink()

    def test_what_every_compiler_understands(self):
        self.write("src/json/Thing.h", "\n".join((
            "// __attribute__ and ({ x; }) in words", "/* asm,", "   __GNUC__ */",
            'const char* a = "__builtin_x // asm";  // unistd.h', 'auto b = R"(case 1 ... 5: asm)";', "char c = d ? '?' : ':';",
            "#include <sys/stat.h>", "#pragma once", "[[maybe_unused]] int e;", "f({1, 2});", "f({[] { return 1; }, 2});",
            "template <class... T> void g(T... t);", "#pragma code_page(65001)", "bool h = i ? ::j : k;", "int asmA, myasm;",
            "const int l = 1'000'000; char m = '\\'';  // 'asm'", "__declspec(dllexport) void n();")))
        self.assertEqual(self.findings(), [])

    def test_assembler_has_named_places(self):
        self.write("devkit/simhost/Thing.S", "")
        self.assert_finds("devkit/simhost/Thing.S: assembler")

    def test_named_places_may_hold_it(self):
        self.write("devkit/doubles/common/CompilerSupport.h", "#ifdef __GNUC__\n#endif\n")
        self.assertEqual(self.findings(), [])

    def test_named_place_that_has_gone(self):
        (self.root / "bench/shipped/Empty.c").unlink()
        self.assert_finds("scripts/check-tree: makes room for bench/shipped/Empty.c")


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--script", required=True, help="scripts/check-tree")
    options, unittest_arguments = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0], *unittest_arguments])

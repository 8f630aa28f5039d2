"""Nothing is measured that has no name: neither the sources nor what measures them. With git, without a build."""

import pathlib
import subprocess
import tempfile
import unittest

import tree

FILES = ["src/A.cpp", "src/diagnostic/A.cpp", "devkit/A.cpp", "tests/a_test.py", "tests/reliability/figures/a.json",
         "scripts/a", "fuzz/A.cpp", "cmake/A.cmake", "docs/reliability.md"]
MEASURED = [file for file in FILES if not file.startswith(("docs/", "tests/reliability/figures/"))]


class TreeTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        for file in FILES:
            self.write(file, "as it was")
        self.git("init", "--quiet")
        self.commit()

    def write(self, file: str, text: str):
        (self.root / file).parent.mkdir(parents=True, exist_ok=True)
        (self.root / file).write_text(text, encoding="utf-8")

    def git(self, *arguments: str):
        subprocess.run(["git", "-c", "user.name=A", "-c", "user.email=a@b", *arguments], cwd=self.root, check=True)

    def commit(self):
        self.git("add", ".")
        self.git("commit", "--quiet", "--allow-empty", "--message=all")

    def test_a_change_that_is_not_committed_is_refused(self):
        for file in MEASURED:
            with self.subTest(file):
                self.write(file, "changed")
                with self.assertRaisesRegex(RuntimeError, f"^{file}: not as in commit"):
                    tree.commit_of(self.root)
                self.git("add", file)  # nor is that enough
                with self.assertRaisesRegex(RuntimeError, f"^{file}: not as in commit"):
                    tree.commit_of(self.root)
                self.commit()
                tree.commit_of(self.root)

    def test_a_file_that_is_new_is_refused_and_an_ignored_one_is_not(self):
        self.write("devkit/New.cpp", "new")
        with self.assertRaisesRegex(RuntimeError, "^devkit/New.cpp: "):
            tree.commit_of(self.root)
        self.write(".gitignore", "New.cpp")
        self.commit()
        tree.commit_of(self.root)

    def test_figures_and_pages_may_change(self):
        before = tree.commit_of(self.root)
        self.write("tests/reliability/figures/a.json", "changed")
        self.write("tests/reliability/figures/new.json", "new")
        self.write("docs/reliability.md", "changed")
        self.assertEqual(tree.commit_of(self.root), before)
        self.commit()
        tree.refuse_changes(self.root, before)

    def test_what_was_committed_since_is_a_change(self):
        before = tree.commit_of(self.root)
        self.write("tests/a_test.py", "changed")
        self.commit()
        with self.assertRaisesRegex(RuntimeError, f"^tests/a_test.py: not as in commit {before}"):
            tree.refuse_changes(self.root, before)

    def test_the_source_is_named_by_itself(self):
        before, commit = tree.source_of(self.root, "HEAD"), tree.commit_of(self.root)
        self.write("tests/a_test.py", "changed")
        self.commit()
        self.assertEqual(tree.source_of(self.root, "HEAD"), before)
        self.assertNotEqual(tree.commit_of(self.root), commit)
        self.write("src/A.cpp", "changed")
        self.commit()
        self.assertNotEqual(tree.source_of(self.root, "HEAD"), before)
        self.assertEqual(tree.source_of(self.root, commit), before)

    def test_a_folder_that_is_left_out_changes_no_name(self):
        def names():
            return tree.source_of(self.root, "HEAD"), tree.source_of(self.root, "HEAD", tree.DIAGNOSTIC)
        before = names()
        self.write("src/diagnostic/A.cpp", "changed")
        self.commit()
        changed = names()
        self.assertNotEqual(changed[0], before[0])
        self.assertEqual(changed[1], before[1])
        self.write("src/A.cpp", "changed")
        self.commit()
        self.assertNotEqual(names()[1], before[1])

    def test_what_git_says_is_told(self):
        with self.assertRaisesRegex(RuntimeError, "git diff ended with"):
            tree.refuse_changes(self.root, "no-commit")


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/env python3
"""The program that collects what support wants to see, started as a designer and as a script start it.

The folder of the built files and the command that runs a Windows program follow on the command line.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile

import diagnostic_files
from diagnostic_files import Built, ROOT, TIME

import wine_session  # found by way of diagnostic_files

PROGRAM = "QuorvelSupportBundle.exe"
SCENARIO = ROOT / "devkit" / "scenarios" / "saved.json"
LAUNCH_INFO = "com.quorvel.Lumet-LaunchInfo.conf"
DATED_NAME = re.compile(r"Quorvel-Support-\d{8}-\d{6}\.zip")
TITLE = "Quorvel Type Agent"
SYSTEM = wine_session.drive() / "windows" / "system32"
UNINSTALL_KEY = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\QuorvelTypeAgentAI20"
# The account that Wine makes of the variable USER.
ACCOUNT = "Jörg Größe"


class SupportBundle(unittest.TestCase):
    built = None

    def setUp(self):
        diagnostic_files.clear_logs()
        self.addCleanup(diagnostic_files.clear_logs)
        self.user = diagnostic_files.profile().name
        folder = tempfile.TemporaryDirectory(dir=wine_session.drive())
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def bundle(self, *arguments, code: int = 0, **environment) -> subprocess.CompletedProcess:
        run = self.built.run(PROGRAM, "--quiet", *arguments, **environment)
        self.assertEqual(run.returncode, code, run.stdout + run.stderr)
        return run

    def files(self, *arguments, **environment) -> dict[str, str]:
        """What is in a bundle, by name."""
        target = self.folder / "bundle.zip"
        # Last, where a switch that takes more than its value would swallow it.
        self.bundle(*arguments, diagnostic_files.windows_path(target), **environment)
        return self.content(target)

    def content(self, archive: pathlib.Path) -> dict[str, str]:
        with zipfile.ZipFile(archive) as archive:
            self.assertIsNone(archive.testzip())
            self.assertEqual(archive.namelist(), sorted(archive.namelist()))
            return {name: archive.read(name).decode("utf-8") for name in archive.namelist()}

    def files_with_local_app_data(self, folder: str) -> dict[str, str]:
        """Of a program that was started with this value of the variable."""
        # Not given to the program from here: Wine sets the variable itself.
        target = self.folder / "bundle.zip"
        script = self.folder / "start.cmd"
        script.write_text(f"set LOCALAPPDATA={folder}\r\n"
                          f'"Z:{self.built.folder.resolve() / PROGRAM}" --quiet '
                          f"{diagnostic_files.windows_path(target)}\r\n".replace("/", "\\"), encoding="utf-8")
        subprocess.run([*self.built.run_command, str(SYSTEM / "cmd.exe"), "/c", diagnostic_files.windows_path(script)],
                       capture_output=True, check=False, cwd=ROOT)
        return self.content(target)

    def check_names(self, files: dict[str, str], *names: str) -> None:
        """None of them is in any text or name of a file."""
        for file, text in files.items():
            for name in names:
                self.assertNotRegex(file, rf"(?i)\b{re.escape(name)}\b")
                self.assertNotRegex(text, rf"(?i)\b{re.escape(name)}\b", file)

    def write(self, path: pathlib.Path, content: bytes) -> None:
        self.assertFalse(path.exists(), path)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
        self.addCleanup(path.unlink)

    def registry(self, *arguments: str) -> None:
        """In the view of 64-bit programs."""
        run = subprocess.run([*self.built.run_command, str(SYSTEM / "reg.exe"), *arguments, "/reg:64"],
                             capture_output=True, check=False, cwd=ROOT)
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)

    def play(self) -> None:
        run = self.built.run("simhost.exe", "play", SCENARIO, "--quiet", "--plugin", self.built.diagnostic_plugin)
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)

    def test_log_of_a_story_is_in_it_without_the_users_name(self):
        self.play()
        self.assertIn(f"\\users\\{self.user}\\", diagnostic_files.only_log())
        files = self.files()
        logs = [name for name in files if name.startswith("logs/")]
        self.assertEqual(len(logs), 1)
        self.assertRegex(logs[0], r"^logs/QuorvelTypeAgentAI20-\d{8}-\d{6}-\d+\.log$")
        self.assertIn('-> HandleSaveDocument("%USERPROFILE%\\Temp\\', files[logs[0]])
        # Within the report, a text in JSON.
        self.assertIn('"LinkedDocuments":["%USERPROFILE%\\\\Temp\\\\', files[logs[0]])
        self.check_names(files, self.user)
        self.assertEqual(files[logs[0]].count("\r\n"), diagnostic_files.only_log().count("\r\n"))

    def test_running_host_is_told_with_its_modules(self):
        host = self.built.start("simhost.exe", "play", SCENARIO, "--quiet", "--plugin", self.built.diagnostic_plugin,
                                "--plugincore", self.built.folder / "plugincores" / "FaultyHangs.dll",
                                "--step-time-limit", "25", "--time-limit", "25")
        self.addCleanup(host.wait)
        diagnostic_files.wait_for("the call that hangs", lambda: "-> HandleOpenExistingDocument(" in
                                  diagnostic_files.last_line_of_log())
        files = self.files()
        modules = [name for name in files if re.fullmatch(r"modules/simhost\.exe-\d+\.txt", name)]
        self.assertEqual(len(modules), 1, list(files))
        number = re.search(r"-(\d+)\.txt", modules[0])[1]
        about = files["about.txt"]
        self.assertRegex(about, rf"  Process {number}\r\n"
                         r"    program:     \d+\.\d+\.\d+\.0  %USERPROFILE%\\Temp\\[^\r]*\\simhost\.exe\r\n"
                         r"    plug-in:     \d+\.\d+\.\d+\.0  %USERPROFILE%\\[^\r]*\\QuorvelTypeAgentAI20-diagnostic\.aip\r\n"
                         r"    PluginCore:  without a version  %USERPROFILE%\\[^\r]*\\PluginCoreX64\.dll\r\n")
        self.assertRegex(about, r"Windows:  10\.0\.\d+\r\n")
        module = r"0x[0-9a-f]{16}  0x[0-9a-f]{8}  \d+\.\d+\.\d+\.\d+  "
        self.assertRegex(files[modules[0]], rf"\r\n{module}%USERPROFILE%\\[^\r]*-diagnostic\.aip\r\n")
        self.assertRegex(files[modules[0]], rf"(?i)\r\n{module}C:\\windows\\system32\\kernel32\.dll\r\n")
        # It is still being written.
        log = next(text for name, text in files.items() if name.startswith("logs/"))
        self.assertRegex(log, rf'\r\n{TIME} +-> HandleOpenExistingDocument\("%USERPROFILE%[^\r]*\)\r\n$')
        self.check_names(files, self.user)

    def test_launch_info_and_word_file_are_in_it(self):
        lumet = self.folder / "Lumet"
        profile = diagnostic_files.windows_path(diagnostic_files.profile())
        self.write(diagnostic_files.local_app_data() / "Quorvel" / LAUNCH_INFO,
                   f"lumet.path={diagnostic_files.windows_path(lumet)}\\Lumet.exe\r\nowner={profile}\r\n".encode())
        self.write(wine_session.drive() / "ProgramData" / "Quorvel" / LAUNCH_INFO, b"lumet.path=C:/nowhere/Lumet.exe\n")
        self.write(lumet / "DialogSuppression.tmp", "Schrift\nfür ".encode() + self.user.encode())
        self.write(lumet / "Plug-ins" / "DialogSuppression.tmp", b"")
        files = self.files()
        self.assertIn("owner=%USERPROFILE%\r\n", files[f"launch-info/{LAUNCH_INFO}"])
        self.assertEqual(files["launch-info/com.quorvel.Lumet-LaunchInfo-2.conf"], "lumet.path=C:/nowhere/Lumet.exe\n")
        self.assertEqual(files["word-files/DialogSuppression.tmp"], "Schrift\nfür <user>")
        self.assertEqual(files["word-files/DialogSuppression-2.tmp"], "")
        self.check_names(files, self.user)

    def test_launch_info_is_read_as_the_plugin_reads_it(self):
        lumet = self.folder / "Lumet"
        self.write(diagnostic_files.local_app_data() / "Quorvel" / LAUNCH_INFO,
                   f"lumet.path without a value\nour lumet.path is={diagnostic_files.windows_path(lumet)}\\Lumet.exe\r\n".encode())
        self.write(lumet / "DialogSuppression.tmp", b"word")
        self.assertEqual(self.files()["word-files/DialogSuppression.tmp"], "word")

    def test_logs_are_found_where_the_variable_says(self):
        logs = self.folder / "Local" / "Quorvel" / "TypeAgent" / "Logs"
        self.write(logs / "a.log", b"there")
        files = self.files_with_local_app_data(f"{diagnostic_files.windows_path(self.folder)}\\Local")
        self.assertEqual(files["logs/a.log"], "there")

    def test_installer_is_told_of(self):
        text = f"Folder: C:\\users\\{self.user}\\x\r\n"
        local = diagnostic_files.local_app_data()
        program_files = wine_session.drive() / "Program Files"
        for path in (program_files / "Quorvel Type Agent" / "install.log",
                     local / "Programs" / "Quorvel Type Agent" / "install.log",
                     diagnostic_files.profile() / "Temp" / "QuorvelTypeAgentAI20-setup.log"):
            self.write(path, b"\xff\xfe" + text.encode("utf-16-le"))
        for root, version in (("HKLM", "1.2.3"), ("HKCU", "1.2.4")):
            key = f"{root}\\{UNINSTALL_KEY}"
            for name, value in (("DisplayVersion", version), ("PluginFolder", f"C:\\users\\{self.user}\\Plug-ins")):
                self.registry("add", key, "/v", name, "/d", value, "/f")
            self.addCleanup(self.registry, "delete", key, "/f")
        files = self.files()
        self.assertEqual({name: content for name, content in files.items() if name.startswith("install/")}, {
            f"install/{name}": "Folder: %USERPROFILE%\\x\r\n"
            for name in ("install.log", "install-2.log", "QuorvelTypeAgentAI20-setup.log")})
        self.assertIn("\r\n  for all users: 1.2.3  %USERPROFILE%\\Plug-ins\r\n"
                      "  for this user: 1.2.4  %USERPROFILE%\\Plug-ins\r\n", files["about.txt"])

    def test_word_file_is_found_by_the_log(self):
        library = self.folder / "Core"
        self.write(library / "DialogSuppression.tmp", b"word")
        logs = self.folder / "logs"
        self.write(logs / "a.log", f"12:00:00.000 PluginCore: 1.2.3.4  {diagnostic_files.windows_path(library)}\\PluginCoreX64.dll\r\n"
                   .encode())
        files = self.files("--logs", diagnostic_files.windows_path(logs))
        self.assertEqual(files["word-files/DialogSuppression.tmp"], "word")

    def test_word_file_is_taken_once_however_its_folder_is_written(self):
        library = self.folder / "Core"
        self.write(library / "DialogSuppression.tmp", b"word")
        path = f"{diagnostic_files.windows_path(library)}\\PluginCoreX64.dll"
        logs = self.folder / "logs"
        for number, each in enumerate((path, path.upper(), path.replace("\\", "/"), path.replace("Core\\", "Core\\.\\"))):
            self.write(logs / f"{number}.log", f"12:00:00.000 PluginCore: 1.2.3.4  {each}\r\n".encode())
        files = self.files("--logs", diagnostic_files.windows_path(logs))
        self.assertEqual([name for name in files if name.startswith("word-files/")], ["word-files/DialogSuppression.tmp"])

    def test_word_file_is_found_by_a_core_application_that_runs_without_the_library(self):
        lumet = self.folder / "Lumet"
        self.write(lumet / "DialogSuppression.tmp", b"beside")
        self.write(lumet / "Plug-ins" / "DialogSuppression.tmp", b"below")
        shutil.copy(self.built.folder / "Lumet.exe", lumet)
        core = self.built.start(lumet / "Lumet.exe")
        self.addCleanup(core.wait)
        # The whole desktop is this test's.
        self.addCleanup(subprocess.run, [*self.built.run_command, str(SYSTEM / "taskkill.exe"), "/f", "/im", "Lumet.exe"],
                        capture_output=True, check=True, cwd=ROOT)
        files = diagnostic_files.wait_for("the core application", lambda: next(
            (each for each in [self.files()] if any(name.startswith("modules/Lumet.exe-") for name in each)), None))
        self.assertIn("    PluginCore:  not loaded\r\n", files["about.txt"])
        self.assertEqual([text for name, text in files.items() if name.startswith("word-files/")], ["below", "beside"])

    def test_folders_of_logs_that_cannot_be_looked_into_are_told(self):
        file = self.folder / "file"
        self.write(file, b"")
        self.assertIn(f"\r\nCould not be read\r\n  {diagnostic_files.windows_path(file)}\r\n",
                      self.files("--logs", diagnostic_files.windows_path(file))["about.txt"])
        long = "C:" + "\\long" * 300
        files = self.files_with_local_app_data(long)
        self.assertIn(f"\r\nCould not be read\r\n  {long}\\Quorvel\\TypeAgent\\Logs (the path is too long to look there)\r\n",
                      files["about.txt"])

    def test_account_with_letters_beyond_ascii(self):
        logs = self.folder / f"of {ACCOUNT}"
        forms = [f"C:\\Users\\{ACCOUNT}\\a", f"c:/users/{ACCOUNT.upper().replace('SS', 'ß')}/a",
                 f"D:\\\\Work\\\\{ACCOUNT}\\\\a", "D:\\\\Work\\\\J\\u00f6rg Gr\\u00f6\\u00dfe\\\\a",
                 "file:///D:/J%C3%B6rg%20Gr%C3%B6%C3%9Fe/a", "C:\\users\\Somebody Else\\a", "C:\\users\\Public\\a"]
        self.write(logs / f"{ACCOUNT}.log", "\r\n".join(forms).encode())
        files = self.files("--logs", diagnostic_files.windows_path(logs), USER=ACCOUNT)
        self.assertEqual(files["logs/user.log"].split("\r\n"), [
            "C:\\Users\\<user>\\a", "c:/users/<user>/a", "D:\\\\Work\\\\<user>\\\\a", "D:\\\\Work\\\\<user>\\\\a",
            "file:///D:/<user>/a", "C:\\users\\<user>\\a", "C:\\users\\Public\\a"])
        self.check_names(files, "Jörg", "Größe", self.user)
        self.assertIn("of <user>\\<user>.log", files["about.txt"])

    def test_goes_to_the_desktop_unless_something_else_is_named(self):
        desktop = diagnostic_files.profile() / "Desktop"
        before = set(desktop.iterdir())
        self.bundle()
        made = set(desktop.iterdir()) - before
        self.assertEqual(len(made), 1)
        self.addCleanup(made.pop().unlink)
        self.assertRegex(next(iter(set(desktop.iterdir()) - before)).name, DATED_NAME)
        folder = self.folder / "für support"
        folder.mkdir()
        run = self.bundle(diagnostic_files.windows_path(folder))
        made = list(folder.iterdir())
        self.assertEqual(len(made), 1)
        self.assertRegex(made[0].name, DATED_NAME)
        self.assertIn(diagnostic_files.windows_path(made[0]), run.stdout.decode("utf-8"))

    def test_says_when_there_is_nothing_to_collect(self):
        files = self.files("--logs", "C:\\no such folder")
        self.assertEqual(list(files), ["about.txt"])
        self.assertIn("none: neither the host nor the core application runs", files["about.txt"])
        self.assertIn("Installed by setup (version, folder of the plug-in)\r\n  nothing\r\n", files["about.txt"])
        self.assertIn("none: no log, no launch-info file, no word file and no log of the installer was found", files["about.txt"])

    def test_process_that_is_named_is_told_too(self):
        # Wine's own are always there; their numbers are multiples of 4.
        files = self.files(*(each for number in range(4, 4000, 4) for each in ("--process", number)))
        services = next(text for name, text in files.items() if name.startswith("modules/services.exe-"))
        self.assertRegex(services, r"(?i)\\ntdll\.dll\r\n")

    def test_each_switch_takes_one_value(self):
        # In brackets, as a list would be written.
        logs = [self.folder / name for name in ("[first]", "second")]
        for number, folder in enumerate(logs):
            self.write(folder / f"{number}.log", b"")
        files = self.files(*(each for folder in logs for each in ("--logs", diagnostic_files.windows_path(folder))))
        self.assertEqual([name for name in files if name.startswith("logs/")], ["logs/0.log", "logs/1.log"])
        target = self.folder / "after a number.zip"
        self.bundle("--process", 4, diagnostic_files.windows_path(target))
        self.assertTrue(target.exists())
        run = self.bundle("--logs", "C:\\a", "C:\\b.zip", "C:\\c.zip", code=2)
        self.assertIn("C:\\c.zip", run.stderr.decode("utf-8"))

    def test_exit_codes_and_errors(self):
        run = self.bundle("--nonsense", code=2)
        self.assertIn("--nonsense", run.stderr.decode("utf-8"))
        # Told before the flags are looked at; a box would stay until somebody closes it.
        run = self.bundle("--logs", code=2)
        self.assertIn("--logs", run.stderr.decode("utf-8"))
        run = self.bundle("C:\\no such folder\\b.zip", code=1)
        self.assertIn("b.zip: ", run.stderr.decode("utf-8"))
        self.assertIn("usage", self.bundle("--help").stdout.decode("utf-8").lower())

    def test_double_click_shows_where_it_is(self):
        target = self.folder / "bundle.zip"
        program = self.built.start(PROGRAM, diagnostic_files.windows_path(target))
        self.addCleanup(program.wait)
        environment = {**os.environ, "DISPLAY": diagnostic_files.wait_for(
            "the display", lambda: wine_session.display_file().exists() and wine_session.display_file().read_text().strip())}

        def xdotool(*arguments: str) -> list[str]:
            return subprocess.run(["xdotool", *arguments], capture_output=True, check=False, encoding="utf-8",
                                  env=environment).stdout.split()

        window = diagnostic_files.wait_for("the message", lambda: xdotool("search", "--onlyvisible", "--name", f"^{TITLE}$"))
        self.assertTrue(target.exists())
        self.assertIsNone(program.poll())
        def answered() -> bool:
            xdotool("windowfocus", window[0], "key", "Return")
            return program.poll() is not None
        diagnostic_files.wait_for("the end", answered)
        self.assertEqual(program.returncode, 0)


if __name__ == "__main__":
    SupportBundle.built = Built(sys.argv[1], sys.argv[2:])
    unittest.main(argv=[sys.argv[0]])

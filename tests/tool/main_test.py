import fcntl
import os
import pathlib
import subprocess
import sys
import tempfile
import termios
import unittest


FRONT = pathlib.Path(__file__).resolve().parents[2] / "tool"
URL = "http://127.0.0.1/"
# A package of the tool's name that has nothing of what the front needs.
STRANGE_TOOL = """
import sys

def main(words=None):
    print(*words)
    print("secret" in open("/proc/self/cmdline").read() + open("/proc/self/environ").read())
    sys.exit(7)
"""
# One that asks, and starts a program that does.
ASKING_TOOL = """
import getpass, subprocess, sys

def main(words):
    try:
        getpass.getpass()
    except Exception as error:
        print(sys.stdin.buffer.read(), type(error).__name__, flush=True)
    subprocess.run("{ read line </dev/tty && echo read; } 2>/dev/null || echo no terminal", shell=True)
"""


class MainTest(unittest.TestCase):
    """The front as a program, with a tool that it does not know."""

    def setUp(self) -> None:
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)
        (self.folder / "yt_dlp.py").write_text(STRANGE_TOOL)
        (self.folder / "noxwebmedia").mkdir()
        self.settings = self.folder / "noxwebmedia" / "tool.conf"

    def run_front(self, *words: str) -> "subprocess.CompletedProcess[str]":
        environment = {**os.environ, "PYTHONPATH": str(self.folder), "XDG_CONFIG_HOME": str(self.folder)}
        return subprocess.run([sys.executable, str(FRONT), *words], capture_output=True, text=True, timeout=60,
                              env=environment)

    def test_other_command_lines_are_the_tools(self) -> None:
        self.settings.write_text("--quiet")  # no concern of theirs
        rows: list[list[str]] = [["--version"], ["-f", "22", URL], ["--dump-json", URL, URL]]
        for words in rows:
            run = self.run_front(*words)
            self.assertEqual((run.returncode, run.stdout, run.stderr), (7, " ".join(words) + "\nFalse\n", ""))

    def test_a_fault_of_the_front_leaves_it_to_the_tool(self) -> None:
        self.settings.write_text("--username me --password secret")
        rows: list[list[str]] = [["--dump-json", URL], ["-f", "22", "-o", "/tmp/x.%(ext)s", URL]]
        for words in rows:
            run = self.run_front(*words)
            words_of_tool = " ".join(["--ignore-config --username=me --password=secret", *words])
            self.assertEqual((run.returncode, run.stdout), (7, f"{words_of_tool}\nFalse\n"))
            self.assertRegex(run.stderr, r"\AWARNING: .*\n\Z")

    def test_a_package_that_is_no_python(self) -> None:
        (self.folder / "yt_dlp.py").write_text("raise ImportError('x\\nERROR: [nox:login] y')")
        run = self.run_front("--dump-json", URL)
        self.assertRegex(run.stderr, r"\AERROR: \[nox:tool\] .*x\n  ERROR: \[nox:login\] y\n\Z")

    def test_settings_that_are_refused(self) -> None:
        self.settings.write_text("--exec true")
        run = self.run_front("--dump-json", URL)
        self.assertEqual((run.returncode, run.stdout), (2, ""))
        message = r"\AERROR: \[nox:settings\] /.*tool.conf: line 1: the option --exec is not allowed here: .*\n\Z"
        self.assertRegex(run.stderr, message)

    def test_nothing_asks_a_terminal(self) -> None:
        (self.folder / "yt_dlp.py").write_text(ASKING_TOOL)
        keyboard, terminal = os.openpty()

        def take_terminal() -> None:
            os.setsid()
            fcntl.ioctl(terminal, termios.TIOCSCTTY, 0)

        with open(keyboard, "wb"), open(terminal, "rb"):
            run = subprocess.run([sys.executable, str(FRONT), "--dump-json", URL], stdin=terminal, capture_output=True,
                                 text=True, timeout=60, preexec_fn=take_terminal,
                                 env={**os.environ, "PYTHONPATH": str(self.folder)})
        self.assertEqual(run.stdout, "b'' SecretMissing\nno terminal\n", run.stderr)

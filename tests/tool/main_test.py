import os
import pathlib
import subprocess
import sys
import tempfile
import unittest
from typing import List

FRONT = pathlib.Path(__file__).resolve().parents[2] / "tool"
URL = "http://127.0.0.1/"
# A package of the tool's name that has nothing of what the front needs.
STRANGE_TOOL = """
import sys

def main(words=None):
    print(*sys.argv[1:])
    sys.exit(7)
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
        rows: List[List[str]] = [["--version"], ["-f", "22", URL], ["--dump-json", URL, URL]]
        for words in rows:
            run = self.run_front(*words)
            self.assertEqual((run.returncode, run.stdout, run.stderr), (7, " ".join(words) + "\n", ""))

    def test_a_fault_of_the_front_leaves_it_to_the_tool(self) -> None:
        self.settings.write_text("--limit-rate 1M")
        rows: List[List[str]] = [["--dump-json", URL], ["-f", "22", "-o", "/tmp/x.%(ext)s", URL]]
        for words in rows:
            run = self.run_front(*words)
            self.assertEqual((run.returncode, run.stdout),
                             (7, " ".join(["--ignore-config --limit-rate=1M", *words]) + "\n"))
            self.assertRegex(run.stderr, r"\AWARNING: .*\n\Z")

    def test_settings_that_are_refused(self) -> None:
        self.settings.write_text("--exec true")
        run = self.run_front("--dump-json", URL)
        self.assertEqual((run.returncode, run.stdout), (2, ""))
        self.assertRegex(run.stderr, r"\AERROR: .*tool.conf: the option --exec is not allowed here\n\Z")

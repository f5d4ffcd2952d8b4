"""The front as a program, with a tool that it does not know."""

import fcntl
import os
import termios
from typing import Any

from front_runs import FolderTest, environment, run_front

URL = "http://127.0.0.1/"
# A package of the tool's name that has nothing of what the front needs.
STRANGE_TOOL = """
import sys

def main(words=None):
    print(*words)
    print("secret" in open("/proc/self/cmdline").read() + open("/proc/self/environ").read())
    sys.exit(7)
"""
# One that reads, and starts a program that asks.
ASKING_TOOL = """
import os, subprocess

def main(words):
    print(os.read(0, 9), flush=True)
    subprocess.run("{ read line </dev/tty && echo read; } 2>/dev/null || echo no terminal", shell=True)
"""


class MainTest(FolderTest):
    def run_tool(self, tool: str, settings: str, *words: str, **more: Any) -> Any:
        (self.folder / "yt_dlp.py").write_text(tool)
        (self.folder / "noxwebmedia").mkdir(exist_ok=True)
        (self.folder / "noxwebmedia" / "tool.conf").write_text(settings)
        return run_front([*words], environment(self.folder, XDG_CONFIG_HOME=str(self.folder)), **more)

    def test_what_is_left_to_the_tool(self) -> None:
        secret = "--username me --password secret"
        rows: list[tuple[str, list[str], str, str]] = [
            # settings, command line, what goes before that of the tool, standard error
            ("--quiet", ["-f", "22", URL], "", r"\Z"),  # no command of the library's: settings are no concern of it
            (secret, ["--dump-json", URL], "--ignore-config --username=me --password=secret ", r"WARNING: .*\n\Z"),
            (secret, ["-f", "22", "-o", "/tmp/x.%(ext)s", URL], "--ignore-config --username=me --password=secret ",
             r"WARNING: .*\n\Z"),
        ]
        for settings, words, start, errors in rows:
            with self.subTest(words=words):
                run = self.run_tool(STRANGE_TOOL, settings, *words)
                self.assertEqual((run.returncode, run.stdout), (7, f"{start}{' '.join(words)}\nFalse\n"))
                self.assertRegex(run.stderr, rf"\A{errors}")

    def test_nothing_asks_a_terminal(self) -> None:
        keyboard, terminal = os.openpty()

        def take_terminal() -> None:
            os.setsid()
            fcntl.ioctl(terminal, termios.TIOCSCTTY, 0)

        with open(keyboard, "wb"), open(terminal, "rb"):
            run = self.run_tool(ASKING_TOOL, "", "--dump-json", URL, stdin=terminal, preexec_fn=take_terminal)
        self.assertEqual(run.stdout, "b''\nno terminal\n", run.stderr)

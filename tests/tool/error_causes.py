"""Each cause of a failure, provoked through the real tool: what the front says of it."""

import concurrent.futures
import re
import resource
import socket
import subprocess
import time
import unittest
import urllib.parse
from typing import Any, Callable, NamedTuple, Optional

from front_runs import HERE, PACKAGES, FolderTest, environment, run_front
from noxfront import error_tags, failures
from servers import Handler, Server

TAGS = {value for name, value in vars(error_tags).items() if name.isupper()}
ERROR_BLOCK = re.compile(r"ERROR: \[nox:([a-z-]+)\] (.*(?:\n  .*)*)\n((?:(?:ERROR|WARNING|NOTE): .*\n|  .*\n)*)")
SITE = "http://causes.invalid/"


class CausesHandler(Handler):
    def do_GET(self) -> None:
        if self.path == "/slow":
            time.sleep(5)
        status = int(self.path[8:]) if self.path.startswith("/status/") else 200
        data = b"#EXTM3U\n" if "list" in self.path else b"<html><title>t</title></html>"
        if self.path == "/clip":
            data = bytes(1 << 20)
        self.begin_answer(status, 0, len(data), len(data), kind="video/mp4" if self.path == "/clip" else "text/html")
        self.wfile.write(data)


def limit_files() -> None:
    resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 18, 1 << 18))


def says(sentence: str) -> str:
    return f"{SITE}says?{urllib.parse.quote(sentence)}"


class Row(NamedTuple):
    address: str
    tag: str
    text: str = ""  # of the leading message
    template: str = ""  # of a download
    settings: str = ""
    prepare: Optional[Callable[[], None]] = None  # in the new process
    changes: dict[str, str] = {}  # in the environment
    package: str = ""  # the text of a broken one


class ErrorCausesTest(FolderTest):
    def setUp(self) -> None:
        super().setUp()
        self.server = Server(CausesHandler)
        self.addCleanup(self.server.stop)
        self.config = self.folder / "config" / "noxwebmedia" / "tool.conf"

    def rows(self) -> list[Row]:
        server = self.server.address
        into = str(self.folder / "{x}YDTMP_.%(ext)s")
        with socket.socket() as unused:
            unused.bind(("127.0.0.1", 0))
            closed_port = unused.getsockname()[1]
        (self.folder / "bin").mkdir()
        (self.folder / "file").write_text("")
        (self.folder / "cookies").write_text("none")
        for name in ("ffmpeg", "ffprobe"):
            (self.folder / "bin" / name).symlink_to("/bin/false")
        return [
            Row(f"http://127.0.0.1:{closed_port}/", "network", "refused"),
            Row("http://no.such.invalid/", "network"),
            Row(f"https://127.0.0.1:{self.server.port}/", "network"),
            Row(f"{server}/slow", "network", "timed out", settings="--socket-timeout 0.5"),
            *(Row(f"{server}/status/{status}", tag, str(status)) for status, tag in (
                (401, "login"), (403, "other"), (404, "not-found"), (429, "network"), (451, "country"),
                (503, "network"))),
            Row(f"{server}/", "nothing", "Unsupported URL"),
            Row(SITE + "login", "login", f"Options are set in {self.config}"),
            Row(SITE + "code", "login", "--twofactor", settings="--username me --password x"),
            Row(SITE + "country", "country", "available in Germany"),
            Row(SITE + "drm", "protected"),
            Row(SITE + "offline", "not-begun"),
            Row(SITE + "not-found", "not-found"),
            Row(SITE + "runtime", "runtime", "Install Deno 2.3"),
            Row(SITE + "fault", "other"),
            Row(says("Premieres in 20 minutes"), "not-begun"),
            Row(says("[nox:runtime] x\nERROR: [nox:runtime] y\r\nWARNING: z\r"), "other",
                "[nox:runtime] x\n  ERROR: [nox:runtime] y\n  WARNING: z"),
            Row(says("Something is wrong; please report this issue on  https://example.invalid/ . Use --cookies FILE. "
                     "Use --list-formats to see more"), "login", "--cookies FILE. Options are set in"),
            Row(SITE + "page", "settings", "--exec", settings="--exec true"),
            Row(SITE + "page", "settings", "no file of cookies", settings=f"--cookies {self.folder}/cookies"),
            Row(SITE + "page", "settings", "cannot be read", settings="--cookies-from-browser firefox",
                changes={"HOME": str(self.folder)}),
            Row(SITE + "page", "settings", "rate limit", settings="-rfast", template=into),
            Row(SITE + "page", "tool", "not for this Python", package="raise ImportError('not for this Python')"),
            Row(SITE + "page", "tool", "SyntaxError", package="def"),
            Row(says("This video has been removed by the uploader"), "not-found", template=into),
            Row(SITE + "page?/status/404", "not-found", template=into),
            Row(SITE + "page?/status/403", "other", template=into),
            Row(SITE + "page", "nothing", template=into, changes={"CODE": "nowhere"}),
            Row(SITE + "page", "no-space", template=into, prepare=limit_files),
            Row(SITE + "page", "destination", template=f"{self.folder}/file/" + "{x}YDTMP_.%(ext)s"),
            Row(SITE + "page", "destination", template="/proc/{x}YDTMP_.%(ext)s"),
            Row(SITE + "page", "destination", template=f"{self.folder}/{'x' * 250}YDTMP_.%(ext)s"),
            Row(SITE + "playlist?/list", "conversion", template=into, changes={"PATH": "/nowhere"}),
            Row(SITE + "playlist?/list", "conversion", template=into, changes={"PATH": str(self.folder / "bin")}),
        ]

    def run_row(self, row: Row, package: str, number: int = 0) -> "subprocess.CompletedProcess[str]":
        config = self.folder / f"config{number}" / "noxwebmedia" / "tool.conf" if row.settings else self.config
        config.parent.mkdir(parents=True, exist_ok=True)
        if row.settings:
            config.write_text(row.settings)
        if row.package:
            broken = self.folder / f"package{number}"
            (broken / "yt_dlp").mkdir(parents=True, exist_ok=True)
            (broken / "yt_dlp" / "__init__.py").write_text(row.package)
            package = str(broken)
        code = row.changes.get("CODE", "1")
        words = ["-f", code, "-o", row.template, row.address] if row.template else ["--dump-json", row.address]
        env = environment(package, HERE / "plugin_causes", NOX_SERVER=self.server.address,
                          XDG_CONFIG_HOME=str(config.parents[1]), **row.changes)
        return run_front(words, env, preexec_fn=row.prepare)

    def test_the_front_tells_the_cause(self) -> None:
        rows = self.rows()
        self.assertEqual({row.tag for row in rows}, TAGS)
        for package in PACKAGES:
            with concurrent.futures.ThreadPoolExecutor(3) as pool:
                def run(item: Any) -> Any:
                    return self.run_row(item[1], package, item[0])

                for row, result in zip(rows, pool.map(run, enumerate(rows))):
                    with self.subTest(row=row, package=package):
                        self.check(row, result)

    def check(self, row: Row, run: "subprocess.CompletedProcess[str]") -> None:
        # What goes before the block of a download are its warnings.
        begin = re.search("^ERROR", run.stderr, re.MULTILINE)
        block = run.stderr[begin.start():] if begin else ""
        found = ERROR_BLOCK.fullmatch(block)
        assert found, run
        self.assertEqual(found.group(1), row.tag, run.stderr)
        self.assertIn(row.text, found.group(2))
        self.assertNotRegex(found.group(3), r"(?m)^(ERROR|WARNING): \[nox:")
        self.assertNotRegex(run.stderr, "report this issue|list-formats|works without its front")
        self.assertEqual(run.returncode, 2 if row.tag == "settings" else 1)
        self.assertLessEqual(len(block.encode()), 4096)
        self.assertEqual(list(self.folder.glob("*YDTMP_*")), [])

    def test_warnings_of_a_page_that_was_read(self) -> None:
        rows = {
            "warns": ["WARNING: [Causes] Some formats may be missing",
                      "WARNING: [Causes] Use --cookies for more.",
                      f"  ERROR: [nox:login] x. Options are set in {self.config}"],
            "fewer": ["WARNING: [Causes] This page needs a program that runs its script, and none was found; some or "
                      "all streams are missing. Install Deno 2.3 or newer, so that its command \"deno\" is found on "
                      f"PATH; or Node.js 22 or newer, with the line \"--js-runtimes node\" in {self.config}"],
        }
        for package in PACKAGES:
            for name, lines in rows.items():
                run = self.run_row(Row(f"{SITE}{name}", ""), package)
                self.assertEqual((run.returncode, run.stderr.splitlines()), (0, lines))
                self.assertIn('"format_id":"1"', run.stdout)


class TagTest(unittest.TestCase):
    def test_numbers_and_sentences(self) -> None:
        rows: list[tuple[Optional[BaseException], str, str]] = [
            (OSError(122, "x"), "", "no-space"), (OSError(30, "x"), "", "destination"),
            (None, "unable to open for writing: [Errno 36] File name too long", "destination"),
            (ConnectionResetError(104, "x"), "", "network"), (TimeoutError("x"), "", "network"),
            (MemoryError(), "", "other"), (None, "Something strange", "other"),
            (None, "Join this channel to get access to members-only content like this video", "login"),
            (None, "Private video. Sign in if you've been granted access to this video", "login"),
            (None, "Sign in to confirm your age. This video may be inappropriate for some users.", "login"),
            (None, "This live event will begin in 3 hours.", "not-begun"), (None, "Video unavailable", "not-found"),
            (None, "No stream of this page can be downloaded", "nothing"),
            (None, "HTTP Error 410: Gone", "not-found"), (None, "HTTP Error 500: x", "network"),
        ]
        for error, message, tag in rows:
            with self.subTest(error=error, message=message):
                self.assertEqual(failures.tag_of(error, message), tag)

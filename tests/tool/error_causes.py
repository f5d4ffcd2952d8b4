"""Each cause of a failure, provoked through the real tool: what the front says of it."""

import concurrent.futures
import json
import os
import re
import resource
import socket
import subprocess
import unittest
from typing import Any, NamedTuple, Optional

from front_runs import PLUGIN, FolderTest, environment, run_front
from noxfront import error_tags, failures
from servers import Site
from yt_dlp.utils import UnsupportedError, UserNotLive

TAGS = {value for name, value in vars(error_tags).items() if name.isupper()}
ERROR_BLOCK = re.compile(r"ERROR: \[nox:([a-z-]+)\] (.*(?:\n  .*)*)\n((?:(?:ERROR|WARNING|NOTE): .*\n|  .*\n)*)")
NO_RUNTIME = ("No supported JavaScript runtime could be found. Only deno is enabled by default; to use another runtime "
              "add  --js-runtimes RUNTIME[:PATH]  to your command/config. See  https://example.invalid/ for details")


class Row(NamedTuple):
    address: str
    tag: str
    text: str = ""  # of the leading message
    template: str = ""  # of a download
    settings: str = ""
    size_limit: int = resource.RLIM_INFINITY  # of files
    path: str = os.environ["PATH"]  # of programs
    package: str = ""  # the text of a broken one
    code: str = "1"


class ErrorCausesTest(FolderTest):
    def setUp(self) -> None:
        super().setUp()
        statuses = (401, 403, 404, 429, 451, 503)
        self.server = Site(1, 1 << 20, status=dict(zip(statuses, statuses)), delay={5: 5.0})
        self.addCleanup(self.server.stop)
        self.shapes: dict[str, Any] = {}

    def page(self, *calls: list[Any], path: str = "/file", protocol: str = "http") -> str:
        """The address of a page with one stream; before it is there, methods of the tool are called."""
        name = str(len(self.shapes))
        stream = {"format_id": "1", "ext": "mp4", "vcodec": "avc1", "acodec": "mp4a", "protocol": protocol,
                  "url": self.server.address + path}
        self.shapes[name] = {"calls": calls, "formats": [stream]}
        (self.folder / "shapes").write_text(json.dumps(self.shapes))
        return f"http://shapes.invalid/{name}"

    def says(self, sentence: str) -> str:
        return self.page(["raise_no_formats", sentence, True])

    def rows(self) -> list[Row]:
        server, page = self.server.address, self.page()
        into = str(self.folder / "{x}YDTMP_.%(ext)s")
        with socket.socket() as unused:
            unused.bind(("127.0.0.1", 0))
            closed_port = unused.getsockname()[1]
        (self.folder / "bin").mkdir()
        (self.folder / "file").write_text("none")
        for name in ("ffmpeg", "ffprobe"):
            (self.folder / "bin" / name).symlink_to("/bin/false")
        return [
            Row(f"http://127.0.0.1:{closed_port}/", "network", "refused"),
            Row("http://no.such.invalid/", "network"),
            Row(f"https://127.0.0.1:{self.server.port}/", "network"),
            Row(f"{server}/5.ts", "network", "timed out", settings="--socket-timeout 0.5"),
            *(Row(f"{server}/{status}.ts", tag, str(status)) for status, tag in (
                (401, "login"), (403, "other"), (404, "not-found"), (429, "network"), (451, "country"),
                (503, "network"))),
            Row(self.page(["raise_login_required"]), "login", "Options are set in"),
            Row(self.page(["_get_tfa_info"]), "login", "--twofactor"),
            Row(self.page(["report_drm", "x"]), "protected"),
            Row(self.page(["raise_geo_restricted", "Not here", ["DE"]]), "country", "available in Germany"),
            Row(self.page(["report_warning", NO_RUNTIME], ["raise_no_formats", "No video formats found!"]), "runtime",
                "Install Deno 2.3"),
            Row("http://shapes.invalid/none", "other"),  # a fault of the extractor
            Row(self.says("Premieres in 20 minutes"), "not-begun"),
            Row(self.says("Something is wrong; please report this issue on  https://example.invalid/ . Use --cookies "
                          "FILE. Use --list-formats to see more"), "login", "--cookies FILE. Options are set in"),
            Row(page, "settings", "--exec", settings="--exec true"),
            Row(page, "settings", "no file of cookies", settings=f"--cookies {self.folder}/file"),
            Row(page, "settings", "cannot be read", settings="--cookies-from-browser firefox"),
            Row(page, "settings", "rate limit", settings="-rfast", template=into),
            Row(page, "tool", "not for this Python", package="raise ImportError('not for this Python')"),
            Row(self.says("This video has been removed by the uploader"), "not-found", template=into),
            *(Row(self.page(path=f"/{status}.ts"), tag, template=into) for status, tag in (
                (404, "not-found"), (403, "other"))),
            Row(page, "nothing", template=into, code="nowhere"),
            Row(page, "no-space", template=into, size_limit=1 << 18),
            *(Row(page, "destination", template=f"{folder}YDTMP_.%(ext)s") for folder in (
                f"{self.folder}/file/", "/proc/", f"{self.folder}/{'x' * 250}")),
            *(Row(self.page(path="/list.m3u8", protocol="m3u8"), "conversion", template=into, path=path)
              for path in ("/nowhere", str(self.folder / "bin"))),
        ]

    def run_row(self, row: Row, number: int = 0) -> "subprocess.CompletedProcess[str]":
        config = self.folder / f"config{number}" / "noxwebmedia" / "tool.conf"
        config.parent.mkdir(parents=True)
        config.write_text(row.settings)
        package = self.folder / f"package{number}"
        if row.package:
            (package / "yt_dlp").mkdir(parents=True)
            (package / "yt_dlp" / "__init__.py").write_text(row.package)
        words = ["-f", row.code, "-o", row.template, row.address] if row.template else ["--dump-json", row.address]
        env = environment(package, PLUGIN, NOX_SHAPES=str(self.folder / "shapes"),
                          XDG_CONFIG_HOME=str(config.parents[1]), HOME=str(self.folder), PATH=row.path)
        limits = row.size_limit, resource.RLIM_INFINITY
        return run_front(words, env, preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, limits))

    def test_the_front_tells_the_cause(self) -> None:
        rows = self.rows()
        self.assertEqual({row.tag for row in rows}, TAGS)
        with concurrent.futures.ThreadPoolExecutor(3) as pool:
            for row, run in zip(rows, pool.map(self.run_row, rows, range(len(rows)))):
                with self.subTest(row=row):
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
        texts = ["Some formats may be missing; please report this issue on  https://example.invalid/ .",
                 "Some formats may be missing", "Falling back on generic information extractor",
                 "Use --cookies for more.\nERROR: [nox:login] x", NO_RUNTIME, NO_RUNTIME]
        config = self.folder / "config0" / "noxwebmedia" / "tool.conf"
        run = self.run_row(Row(self.page(*(["report_warning", text] for text in texts)), ""))
        self.assertEqual((run.returncode, run.stderr.splitlines()), (0, [
            "WARNING: [Shapes] Some formats may be missing", "WARNING: [Shapes] Use --cookies for more.",
            f"  ERROR: [nox:login] x. Options are set in {config}",
            "WARNING: [Shapes] This page needs a program that runs its script, and none was found; some or all streams "
            "are missing. Install Deno 2.3 or newer, so that its command \"deno\" is found on PATH; or Node.js 22 or "
            f"newer, with the line \"--js-runtimes node\" in {config}"]))
        self.assertIn('"format_id":"1"', run.stdout)


class TagTest(unittest.TestCase):
    def test_numbers_and_sentences(self) -> None:
        rows: list[tuple[Optional[BaseException], str, str]] = [
            (OSError(122, "x"), "", "no-space"), (OSError(30, "x"), "", "destination"),
            (None, "unable to open for writing: [Errno 36] File name too long", "destination"),
            (ConnectionResetError(104, "x"), "", "network"), (TimeoutError("x"), "", "network"),
            (UserNotLive("x"), "x", "not-begun"), (UnsupportedError("x"), "x", "nothing"), (MemoryError(), "", "other"),
            (None, "Join this channel to get access to members-only content like this video", "login"),
            (None, "Private video. Sign in if you've been granted access to this video", "login"),
            (None, "Sign in to confirm your age. This video may be inappropriate for some users.", "login"),
            (None, "This live event will begin in 3 hours.", "not-begun"),
            (None, "No stream of this page can be downloaded", "nothing"),
            (None, "HTTP Error 410: Gone", "not-found"), (None, "HTTP Error 500: x", "network"),
        ]
        for error, message, tag in rows:
            with self.subTest(error=error, message=message):
                self.assertEqual(failures.tag_of(error, message), tag)

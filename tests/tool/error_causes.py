"""Each cause of a failure, provoked through the real tool: what the front says of it.

The environment's NOX_TOOL_PACKAGES names folders with other packages of the tool to try, divided by colons.
"""

import concurrent.futures
import http.server
import os
import pathlib
import re
import resource
import socket
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from typing import Any, Callable, NamedTuple, Optional, Sequence

from noxfront import error_tags, failures

HERE = pathlib.Path(__file__).resolve().parent
FRONT = HERE.parents[1] / "tool"
PACKAGES = ["", *filter(None, os.environ.get("NOX_TOOL_PACKAGES", "").split(":"))]
TAGS = {value for name, value in vars(error_tags).items() if name.isupper()}
ERROR_BLOCK = re.compile(r"ERROR: \[nox:([a-z-]+)\] (.*(?:\n  .*)*)\n((?:(?:ERROR|WARNING|NOTE): .*\n|  .*\n)*)")


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self) -> None:
        if self.path == "/slow":
            time.sleep(5)
        status = int(self.path[8:]) if self.path.startswith("/status/") else 200
        data = b"#EXTM3U\n" if "list" in self.path else b"<html><title>t</title></html>"
        if self.path == "/clip":
            data = bytes(1 << 20)
        self.send_response(status)
        self.send_header("Content-Type", "video/mp4" if self.path == "/clip" else "text/html")
        self.send_header("Content-Length", str(len(data)))
        self.end_headers()
        self.wfile.write(data)

    def log_message(self, *_: object) -> None:
        pass


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, *_: object) -> None:
        """A client that goes away is nothing to report."""


def limit_files() -> None:
    resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 18, 1 << 18))


class Row(NamedTuple):
    address: str
    tag: str
    text: str = ""  # of the leading message
    template: str = ""  # of a download
    settings: str = ""
    prepare: Optional[Callable[[], None]] = None  # in the new process
    changes: dict[str, str] = {}  # in the environment
    package: str = ""  # the text of a broken one


class ErrorCausesTest(unittest.TestCase):
    def setUp(self) -> None:
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)
        server = Server(("127.0.0.1", 0), Handler)
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.port = server.server_address[1]
        self.server = f"http://127.0.0.1:{self.port}"
        with socket.socket() as unused:
            unused.bind(("127.0.0.1", 0))
            self.closed_port = unused.getsockname()[1]

    def rows(self) -> list[Row]:
        site = "http://causes.invalid/"
        into = str(self.folder / "{x}YDTMP_.%(ext)s")
        broken = (self.folder / "bin").joinpath
        (self.folder / "bin").mkdir()
        (self.folder / "file").write_text("")
        (self.folder / "cookies").write_text("none")
        broken("ffmpeg").symlink_to("/bin/false")
        broken("ffprobe").symlink_to("/bin/false")
        return [
            Row(f"http://127.0.0.1:{self.closed_port}/", "network", "refused"),
            Row("http://no.such.invalid/", "network"),
            Row(f"https://127.0.0.1:{self.port}/", "network"),
            Row(f"{self.server}/slow", "network", "timed out", settings="--socket-timeout 0.5"),
            *(Row(f"{self.server}/status/{status}", tag, str(status)) for status, tag in (
                (401, "login"), (403, "other"), (404, "not-found"), (410, "not-found"), (429, "network"),
                (451, "country"), (500, "network"), (503, "network"))),
            Row(f"{self.server}/", "nothing", "Unsupported URL"),
            Row(site + "login", "login", f"Options are set in {self.folder}/config/noxwebmedia/tool.conf"),
            Row(site + "members", "login"),
            Row(site + "private", "login"),
            Row(site + "age", "login"),
            Row(site + "code", "login", "--twofactor", settings="--username me --password x"),
            Row(site + "country", "country", "available in Germany"),
            Row(site + "drm", "protected"),
            Row(site + "drm-streams", "protected"),
            Row(site + "begins", "not-begun"),
            Row(site + "premiere", "not-begun"),
            Row(site + "offline", "not-begun"),
            Row(site + "removed", "not-found"),
            Row(site + "unavailable", "not-found"),
            Row(site + "not-found", "not-found"),
            Row(site + "pictures", "nothing", "No stream of this page"),
            Row(site + "runtime", "runtime", "Install Deno 2.3"),
            Row(site + "strange", "other", "Something strange"),
            Row(site + "fault", "other"),
            Row(site + "forged", "other", "[nox:runtime] x\n  ERROR: [nox:runtime] y\n  WARNING: z"),
            Row(site + "advice", "login", "--cookies FILE. Options are set in"),
            Row(site + "strange", "settings", "--exec", settings="--exec true"),
            Row(site + "strange", "settings", "no file of cookies", settings=f"--cookies {self.folder}/cookies"),
            Row(site + "strange", "settings", "cannot be read", settings="--cookies-from-browser firefox",
                changes={"HOME": str(self.folder)}),
            Row(site + "page", "settings", "rate limit", settings="-rfast", template=into),
            Row(site + "strange", "tool", "not for this Python", package="raise ImportError('not for this Python')"),
            Row(site + "strange", "tool", "SyntaxError", package="def"),
            Row(site + "removed", "not-found", template=into),
            Row(site + "page?/status/404", "not-found", template=into),
            Row(site + "page?/status/403", "other", template=into),
            Row(site + "page", "nothing", template=into, changes={"CODE": "nowhere"}),
            Row(site + "page", "no-space", template=into, prepare=limit_files),
            Row(site + "page", "destination", template=f"{self.folder}/file/" + "{x}YDTMP_.%(ext)s"),
            Row(site + "page", "destination", template="/proc/{x}YDTMP_.%(ext)s"),
            Row(site + "page", "destination", template=f"{self.folder}/{'x' * 250}YDTMP_.%(ext)s"),
            Row(site + "playlist?/list", "conversion", template=into, changes={"PATH": "/nowhere"}),
            Row(site + "playlist?/list", "conversion", template=into, changes={"PATH": str(self.folder / "bin")}),
        ]

    def run_front(self, row: Row, package: str, number: int = 0) -> "subprocess.CompletedProcess[str]":
        config = self.folder / ("config" if not row.settings else f"config{number}") / "noxwebmedia"
        config.mkdir(parents=True, exist_ok=True)
        if row.settings:
            (config / "tool.conf").write_text(row.settings)
        if row.package:
            package = str(self.folder / f"package{number}")
            os.makedirs(f"{package}/yt_dlp", exist_ok=True)
            pathlib.Path(package, "yt_dlp", "__init__.py").write_text(row.package)
        code = row.changes.get("CODE", "1")
        words = ["-f", code, "-o", row.template, row.address] if row.template else ["--dump-json", row.address]
        paths = [str(FRONT), package, str(HERE / "plugin_causes")]
        environment = {**os.environ, "PYTHONPATH": ":".join(filter(None, paths)), "NOX_SERVER": self.server,
                       "XDG_CONFIG_HOME": str(config.parent), **row.changes}
        return subprocess.run([sys.executable, str(FRONT), *words], capture_output=True, text=True, timeout=120,
                              env=environment, preexec_fn=row.prepare)

    def test_the_front_tells_the_cause(self) -> None:
        rows = self.rows()
        self.assertEqual({row.tag for row in rows}, TAGS)
        for package in PACKAGES:
            with concurrent.futures.ThreadPoolExecutor(3) as pool:
                def run(item: Any) -> Any:
                    return self.run_front(item[1], package, item[0])

                for row, result in zip(rows, pool.map(run, enumerate(rows))):
                    with self.subTest(row=row, package=package):
                        self.check(row, result)

    def check(self, row: Row, run: "subprocess.CompletedProcess[str]") -> None:
        # What goes before the block of a download are its warnings.
        begin = re.search("^ERROR", run.stderr, re.MULTILINE)
        self.assertIsNotNone(begin, run)
        block = run.stderr[begin.start() if begin else 0:]
        found = ERROR_BLOCK.fullmatch(block)
        self.assertIsNotNone(found, run)
        if found:
            self.assertEqual(found.group(1), row.tag, run.stderr)
            self.assertIn(row.text, found.group(2))
            self.assertNotRegex(found.group(3), r"(?m)^(ERROR|WARNING): \[nox:")
        self.assertNotRegex(run.stderr, "report this issue|list-formats|works without its front")
        self.assertIn(run.returncode, (1, 2))
        self.assertLessEqual(len(block.encode()), 4096)
        left = [file for file in self.folder.iterdir() if "YDTMP_" in file.name]
        self.assertEqual(left, [])

    def test_warnings_of_a_page_that_was_read(self) -> None:
        config = f"{self.folder}/config/noxwebmedia/tool.conf"
        rows = {
            "warns": ["WARNING: [Causes] Some formats may be missing",
                      "WARNING: [Causes] Use --cookies for more.",
                      f"  ERROR: [nox:login] x. Options are set in {config}"],
            "fewer": ["WARNING: [Causes] This page needs a program that runs its script, and none was found; some or "
                      "all streams are missing. Install Deno 2.3 or newer, so that its command \"deno\" is found on "
                      f"PATH; or Node.js 22 or newer, with the line \"--js-runtimes node\" in {config}"],
        }
        for package in PACKAGES:
            for name, lines in rows.items():
                run = self.run_front(Row(f"http://causes.invalid/{name}", ""), package)
                self.assertEqual((run.returncode, run.stderr.splitlines()), (0, lines))
                self.assertIn('"format_id":"1"', run.stdout)


class TagTest(unittest.TestCase):
    def test_numbers_that_are_hard_to_provoke(self) -> None:
        def caused(inner: BaseException) -> BaseException:
            outer = RuntimeError("x")
            outer.__cause__ = inner
            return outer

        rows: Sequence[Any] = [
            (OSError(28, "x"), "", "no-space"), (caused(OSError(122, "x")), "", "no-space"),
            (PermissionError(13, "x"), "", "destination"), (OSError(30, "x"), "", "destination"),
            (None, "unable to open for writing: [Errno 36] File name too long", "destination"),
            (caused(ConnectionResetError(104, "x")), "", "network"), (TimeoutError("x"), "", "network"),
            (MemoryError(), "", "other"), (None, "", "other"),
        ]
        for error, message, tag in rows:
            with self.subTest(error=error, message=message):
                self.assertEqual(failures.tag_of(error, message), tag)

    def test_the_list_has_the_form_that_others_read(self) -> None:
        text = pathlib.Path(error_tags.__file__).read_text()
        self.assertEqual(set(re.findall(r'^[A-Z_]+ = "([a-z-]+)"$', text, re.MULTILINE)), TAGS)

"""The front fetches a stream by a record of its page, from a server that answers late, refuses, or goes away."""

import contextlib
import http.server
import json
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from typing import Any, Iterator

from stoppable_server import StoppableServer

FRONT = pathlib.Path(__file__).resolve().parents[2] / "tool"
TIME_LIMIT = 60  # seconds
READ_ANEW = 9  # the exit code of the child where the page is to be read anew
CHILD = f"""
import json, resource, sys
from noxfront import command_line, download, lean_start, messages
command = command_line.parse(sys.argv[1:6])
lean_start.prepare()
page, options = json.load(sys.stdin)
log = messages.DownloadLog(command.template)
before = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
code = download.run_remembered(command, options, page, log)
print("kilobytes", resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - before)
sys.exit({READ_ANEW} if code is None else code)
"""


class Site(StoppableServer):
    """Serves "/NUMBER", each with bytes of its own, whole or in part."""

    def __init__(self, size: int, port: int = 0) -> None:
        super().__init__(Handler, port)
        self.size = size
        self.status: dict[int, int] = {}
        self.delay: dict[int, float] = {}
        self.pause = 0.0  # seconds between pieces of 64 kB
        self.asked: list[int] = []
        self.asked_before_first = 0
        self.under_way = self.most_under_way = 0
        self.lock = threading.Lock()
        self.begin()

    def content(self, number: int) -> bytes:
        return f"{number:08d}".encode() * (self.size // 8)


class Handler(http.server.BaseHTTPRequestHandler):
    server: Site

    def do_GET(self) -> None:
        number = int(self.path.partition("?")[0][1:])
        site = self.server
        with site.lock:
            site.asked.append(number)
            site.under_way += 1
            site.most_under_way = max(site.most_under_way, site.under_way)
        try:
            time.sleep(site.delay.get(number, 0))
            if number == 0 and not site.asked_before_first:
                site.asked_before_first = len(set(site.asked))
            self.answer(number)
        finally:
            with site.lock:
                site.under_way -= 1

    def answer(self, number: int) -> None:
        data = self.server.content(number)
        begin = re.fullmatch(r"bytes=(\d+)-(\d*)", self.headers.get("Range") or "")
        first = int(begin.group(1)) if begin else 0
        end = int(begin.group(2)) + 1 if begin and begin.group(2) else len(data)
        self.send_response(self.server.status.get(number, 206 if begin else 200))
        self.send_header("Content-Length", str(end - first))
        if begin:
            self.send_header("Content-Range", f"bytes {first}-{end - 1}/{len(data)}")
        self.end_headers()
        for place in range(first, end, 1 << 16):
            if self.server.is_stopped.is_set():
                return
            self.wfile.write(data[place:min(place + (1 << 16), end)])
            time.sleep(self.server.pause)

    def log_message(self, *_: object) -> None:
        pass


class DownloadTest(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    @contextlib.contextmanager
    def site(self, size: int, port: int = 0) -> Iterator[Site]:
        site = Site(size, port)
        try:
            yield site
        finally:
            if not site.is_stopped.is_set():
                site.stop()

    def begin(self, site: Site, segments: int = 0, options: tuple[str, ...] = (), query: str = "") -> Any:
        base = f"http://127.0.0.1:{site.server_address[1]}/"
        stream: dict[str, Any] = {"format_id": "1", "ext": "mp4", "url": f"{base}0{query}", "protocol": "http"}
        if segments:
            fragments = [{"url": f"{base}{number}{query}"} for number in range(segments)]
            stream.update(protocol="http_dash_segments", fragments=fragments)
        page = {"id": "1", "title": "t", "formats": [stream], "extractor": "x", "extractor_key": "X",
                "webpage_url": base}
        words = ["-f", "1", "-o", f"{self.folder}/clip.%(ext)s", base]
        child = subprocess.Popen([sys.executable, "-c", CHILD, *words], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                 stderr=subprocess.PIPE, text=True,
                                 env={**os.environ, "PYTHONPATH": os.pathsep.join([str(FRONT), *sys.path])})
        assert child.stdin
        child.stdin.write(json.dumps([page, options]))
        child.stdin.close()
        child.stdin = None
        self.addCleanup(child.kill)
        return child

    def finish(self, child: Any) -> tuple[int, str, str]:
        output, errors = child.communicate(timeout=TIME_LIMIT)
        return child.returncode, output, errors

    def assert_whole(self, site: Site, count: int) -> None:
        self.assertEqual([file.name for file in self.folder.iterdir()], ["clip.mp4"])
        self.assertEqual((self.folder / "clip.mp4").read_bytes(), b"".join(map(site.content, range(count))))

    def test_segments_at_once(self) -> None:
        rows: list[tuple[tuple[str, ...], int]] = [((), 4), (("--concurrent-fragments=1",), 1),
                                                   (("--concurrent-fragments=6", "--http-chunk-size=400K"), 6)]
        for options, at_once in rows:
            with self.subTest(options=options), self.site(1 << 20) as site:
                site.delay = dict.fromkeys(range(24), 0.05)
                site.delay[0] = 1.0  # the others must not run far ahead of it
                code, output, errors = self.finish(self.begin(site, 24, options))
                self.assertEqual((code, errors), (0, ""))
                self.assert_whole(site, 24)
                self.assertEqual(site.most_under_way, at_once)
                self.assertLessEqual(site.asked_before_first, at_once)
                [kilobytes] = re.findall(r"^kilobytes (\d+)", output, re.MULTILINE)
                self.assertLess(int(kilobytes), (at_once + 12) << 10)  # not the 24 MB of them all
                figures = re.findall(r"^\[download\] ([\d.]+)% of (\d+)B", output, re.MULTILINE)
                shares = [float(share) for share, _ in figures]
                self.assertGreater(len(shares), 3)
                self.assertEqual(shares, sorted(shares))
                self.assertEqual(figures[-1], ("100.000", str(24 << 20)))
                (self.folder / "clip.mp4").unlink()

    def test_the_speed_limit_is_for_all_segments_together(self) -> None:
        with self.site(1 << 18) as site:
            begin = time.monotonic()
            self.assertEqual(self.finish(self.begin(site, 12, ("--limit-rate=1M",)))[0], 0)
            self.assertGreater(time.monotonic() - begin, 2)

    def test_a_program_that_is_killed_leaves_what_the_library_removes(self) -> None:
        with self.site(1 << 18) as site:
            site.delay = {3: 30, 9: 30}
            child = self.begin(site, 20)
            deadline = time.monotonic() + TIME_LIMIT
            while len(site.asked) < 6 and time.monotonic() < deadline:
                time.sleep(0.05)
            self.assertGreaterEqual(len(site.asked), 6)
            child.send_signal(signal.SIGKILL)
            _, output, _ = self.finish(child)
            self.assertIn(f"[download] Destination: {self.folder}/clip.mp4", output)
            self.assertEqual([file.name for file in self.folder.iterdir()], ["clip.mp4.part"])

    def test_what_the_server_refuses(self) -> None:
        past = "?expires=1500000000"
        rows: list[tuple[int, int, str, tuple[str, ...], int, int]] = [
            # status, segments, query, options, exit code, how often that address is asked for
            *((status, segments, "", (), READ_ANEW, 1) for status, segments in ((403, 0), (410, 0), (404, 8))),
            (401, 0, "", (), 1, 1),
            (402, 8, "", (), 1, 3),
            (402, 8, "", ("--fragment-retries=0",), 1, 1),
            (503, 0, "", ("--retries=1",), 1, 2),
            (503, 8, "", ("--retries=1",), 1, 2),
            (503, 8, "", ("--retries=3", "--retry-sleep=0"), 1, 4),
            (503, 0, past, (), READ_ANEW, 0),
        ]
        for status, segments, query, options, expected, times in rows:
            with self.subTest(status=status, segments=segments, options=options), self.site(1 << 12) as site:
                number = segments // 2
                site.status[number] = status
                code, _, errors = self.finish(self.begin(site, segments, options, query))
                self.assertEqual((code, site.asked.count(number)), (expected, times), errors)
                self.assertEqual(errors.startswith("WARNING: "), code == READ_ANEW or "nox:waiting" in errors, errors)
                self.assertEqual("ERROR: " in errors, code == 1, errors)
                self.assertEqual(list(self.folder.iterdir()), [])

    def outage(self, segments: int, seconds: float, size: int) -> str:
        """Standard error of a download from a server that is stopped in its middle, and started again."""
        with self.site(size) as site:
            site.pause = 0.05
            site.delay = dict.fromkeys(range(segments), 0.1)
            child = self.begin(site, segments)
            deadline = time.monotonic() + TIME_LIMIT
            part = self.folder / "clip.mp4.part"
            while not (part.exists() and part.stat().st_size > 0) and time.monotonic() < deadline:
                time.sleep(0.05)
            port = site.server_address[1]
            site.stop()
            self.assertIsNone(child.poll())
            time.sleep(seconds)
        with self.site(size, port) as site:
            code, _, errors = self.finish(child)
            self.assertEqual(code, 0, errors)
            self.assert_whole(site, max(segments, 1))
        (self.folder / "clip.mp4").unlink()
        return errors

    def test_an_outage_ends_no_download(self) -> None:
        seconds = float(os.environ.get("NOX_OUTAGE_SECONDS", "2"))
        for segments, size in ((0, 1 << 22), (24, 1 << 17)):
            with self.subTest(segments=segments):
                lines = self.outage(segments, seconds, size).splitlines()
                message = "WARNING: [nox:waiting] The server does not answer. Trying again in"
                expected = [f"{message} {wait} s ({count} of 6)"
                            for count, wait in enumerate((1, 2, 4, 8, 16, 9), start=1)]
                # Once for all segments that wait. How many waits the outage takes depends on when it begins.
                self.assertGreaterEqual(len(lines), 2)
                self.assertEqual(lines, expected[:len(lines)])


if __name__ == "__main__":
    unittest.main()

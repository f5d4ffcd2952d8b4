"""A download that ends in its middle, and the next run in the same folder for parts.

The environment's NOX_TOOL_PACKAGES names folders with other packages of the tool to try, divided by colons.
"""

import contextlib
import hashlib
import http.server
import json
import os
import pathlib
import re
import resource
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import unittest.mock
from typing import Any, Callable, NamedTuple

from download_test import CHILD, FRONT
from noxfront import parts
from stoppable_server import StoppableServer

PACKAGES = ["", *filter(None, os.environ.get("NOX_TOOL_PACKAGES", "").split(":"))]
TIME_LIMIT = 120  # seconds
COUNT, SEGMENT = 10, 200_000
WHOLE = COUNT * SEGMENT
HELD = 6  # segments of which the first run gets no more, or the part of the file that is as long


class Request(NamedTuple):
    token: str  # of the run
    path: str
    first: int  # byte
    status: int
    condition: bool  # whether the rest was asked for only of the same file


class Site(StoppableServer):
    """Serves "/file", and the same bytes in segments "/N.ts" of the playlist "/list.m3u8"."""

    def __init__(self, has_etag: bool = True, has_ranges: bool = True, port: int = 0) -> None:
        super().__init__(Handler, port)
        self.has_etag, self.has_ranges = has_etag, has_ranges
        self.version = "a"
        self.is_held = True  # nothing behind the first segments
        self.requests: list[Request] = []
        self.begin()

    def data(self) -> bytes:
        block = hashlib.sha512(self.version.encode()).digest()
        size = WHOLE + (999 if self.version == "longer" else 0)
        return b"".join(block[:60] + f"{number:04d}".encode() for number in range(size // 64 + 1))[:size]

    def file(self, path: str, token: str) -> bytes:
        if path == "/file":
            return self.data()
        if path == "/list.m3u8":
            segments = "".join(f"#EXTINF:2,\n{number}.ts?{token}\n" for number in range(COUNT))
            return f"#EXTM3U\n#EXT-X-TARGETDURATION:2\n{segments}#EXT-X-ENDLIST\n".encode()
        number = int(path[1:-3])
        end = None if number == COUNT - 1 else (number + 1) * SEGMENT
        return self.data()[number * SEGMENT:end]


class Handler(http.server.BaseHTTPRequestHandler):
    server: Site

    def do_GET(self) -> None:
        site = self.server
        path, _, token = self.path.partition("?")
        data = site.file(path, token)
        etag = f'"{hashlib.sha1(data).hexdigest()}"' if site.has_etag else ""
        found = re.fullmatch(r"bytes=(\d+)-", self.headers.get("Range") or "")
        condition = self.headers.get("If-Range")
        first = int(found.group(1)) if found and site.has_ranges and condition in (None, etag) else 0
        status = 206 if first else 200
        if etag and self.headers.get("If-None-Match") == etag:
            status, data = 304, b""
        elif first >= max(len(data), 1):
            status, data = 416, b""
        site.requests.append(Request(token, path, first, status, condition == etag))
        self.send_response(status)
        if etag:
            self.send_header("ETag", etag)
        if status == 206:
            self.send_header("Content-Range", f"bytes {first}-{len(data) - 1}/{len(data)}")
        if status != 304:
            self.send_header("Content-Length", str(len(data) - first))
        self.end_headers()
        self.send(path, data, first)

    def send(self, path: str, data: bytes, first: int) -> None:
        held = len(data) if path != "/file" else HELD * SEGMENT
        if path.endswith(".ts") and int(path[1:-3]) >= HELD:
            held = 0
        with contextlib.suppress(OSError):
            for place in range(first, len(data), 1 << 14):
                while place >= held and self.server.is_held:
                    if self.server.is_stopped.wait(0.02):
                        return
                self.wfile.write(data[place:place + (1 << 14)])

    def log_message(self, *_: object) -> None:
        pass


class PartsTest(unittest.TestCase):
    package = ""

    def setUp(self) -> None:
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)
        self.parts = self.folder / "parts"
        self.parts.mkdir(mode=0o700)
        self.size_limit = resource.RLIM_INFINITY

    def site(self, **more: Any) -> Site:
        site = Site(**more)
        self.addCleanup(site.stop)
        return site

    def begin(self, site: Site, kind: str, *options: str) -> Any:
        base = f"http://127.0.0.1:{site.server_address[1]}/"
        self.token = str(time.monotonic_ns())
        query = f"?{self.token}"
        streams: dict[str, dict[str, Any]] = {
            "file": {"url": f"{base}file{query}", "protocol": "http"},
            "dash": {"url": base, "protocol": "http_dash_segments",
                     "fragments": [{"url": f"{base}{number}.ts{query}"} for number in range(COUNT)]},
            "hls": {"url": f"{base}list.m3u8{query}", "protocol": "m3u8_native"},
        }
        page = {"id": "1", "title": "t", "extractor": "x", "extractor_key": "X", "webpage_url": base,
                "formats": [{"format_id": "1", "ext": "ts", **streams[kind]}]}
        environment = {**os.environ, "PYTHONPATH": os.pathsep.join(filter(None, [str(FRONT), self.package, *sys.path]))}
        words = ["-f", "1", "-o", f"{self.folder}/clip.%(ext)s", "http://127.0.0.1/page"]
        child = subprocess.Popen([sys.executable, "-c", CHILD, *words], stdin=subprocess.PIPE, text=True,
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=environment,
                                 preexec_fn=self.limit_files)
        assert child.stdin
        child.stdin.write(json.dumps([page, options]))
        child.stdin.close()
        child.stdin = None
        self.addCleanup(child.kill)
        return child

    def limit_files(self) -> None:
        resource.setrlimit(resource.RLIMIT_FSIZE, (self.size_limit, resource.RLIM_INFINITY))

    def finish(self, child: Any, expected: int = 0) -> str:
        output, errors = child.communicate(timeout=TIME_LIMIT)
        self.assertEqual(child.returncode, expected, errors)
        self.assertNotIn(str(self.parts), output + errors)
        return str(output)

    def run_whole(self, site: Site, kind: str) -> tuple[list[Request], str]:
        """A run that completes the file, which is checked and removed: its requests for data, and what it prints."""
        site.is_held = False
        output = self.finish(self.begin(site, kind))
        self.assertEqual((self.folder / "clip.ts").read_bytes(), site.data())
        self.assertEqual(sorted(file.name for file in self.folder.iterdir()), ["clip.ts", "parts"])
        self.assertIn(f"[download] Destination: {self.folder}/clip.ts\n", output)
        self.assertRegex(output, r"\[download\] 100\.000% of \d+B")
        (self.folder / "clip.ts").unlink()
        requests = [request for request in site.requests if request.token == self.token]
        return [request for request in requests if not request.path.endswith(".m3u8")], output

    def wait_for(self, condition: Callable[[], object]) -> None:
        deadline = time.monotonic() + TIME_LIMIT
        while not condition():
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.02)

    def is_at_the_held_place(self) -> bool:
        return any(part.stat().st_size > HELD * SEGMENT - (1 << 16) for part in self.parts.glob("*.part"))

    def interrupt(self, site: Site, kind: str, event: str) -> Site:
        """A run that ends near the held place; the server that is there then."""
        site.is_held = event != "full"
        self.size_limit = resource.RLIM_INFINITY if site.is_held else HELD * SEGMENT - 5000
        child = self.begin(site, kind, "--retries=0", "--fragment-retries=0")
        self.size_limit = resource.RLIM_INFINITY
        if event == "full":
            self.finish(child, 1)
            return site
        self.wait_for(self.is_at_the_held_place)
        if event == "kill":
            child.send_signal(signal.SIGKILL)
            self.finish(child, -signal.SIGKILL)
            return site
        site.stop()
        self.finish(child, 1)
        return self.site(has_etag=site.has_etag, has_ranges=site.has_ranges, port=site.server_address[1])

    def assert_rest(self, kind: str, requests: list[Request], size: int) -> None:
        """That no more than the rest was asked for.

        :param size: of the part that was there
        """
        if kind == "file":
            self.assertEqual([request[2:] for request in requests], [(size, 206, True)])
            return
        fetched = sorted(int(request.path[1:-3]) for request in requests if request.status == 200)
        self.assertGreaterEqual(fetched[0], HELD - 1)
        self.assertIn(size // SEGMENT - fetched[0], (0, 1))  # a segment may be there before the record tells of it
        self.assertEqual(fetched, list(range(fetched[0], COUNT)))
        self.assertEqual([request.path for request in requests if request.status == 304], [f"/{fetched[0] - 1}.ts"])

    def test_the_rest_is_fetched(self) -> None:
        for self.package in PACKAGES:
            for kind, event in (("file", "kill"), ("file", "stop"), ("file", "full"), ("dash", "kill"),
                                ("dash", "full"), ("hls", "kill"), ("hls", "stop")):
                with self.subTest(package=self.package, kind=kind, event=event):
                    self.setUp()
                    site = self.interrupt(self.site(), kind, event)
                    size = next(self.parts.glob("*.part")).stat().st_size
                    requests, output = self.run_whole(site, kind)
                    self.assert_rest(kind, requests, size)
                    share = re.search(r"^\[download\] ([\d.]+)%", output, re.MULTILINE)
                    assert share
                    self.assertGreater(float(share.group(1)), 40)
                    if event == "kill":  # a stream that is there is not asked for at all
                        self.assertEqual(self.run_whole(site, kind)[0], [])
                    site.stop()

    def set_record(self, data: bytes) -> None:
        next(self.parts.glob("*.json")).write_bytes(data)

    def start_anew(self, *synced: Any) -> None:
        """As when the system has been started anew, with so much on the disk."""
        record = json.loads(next(self.parts.glob("*.json")).read_text())
        self.set_record(json.dumps({**record, "session": "x", "synced": synced or record["synced"]}).encode())

    def resize_part(self, change: int) -> None:
        [part] = self.parts.glob("*.part")
        os.truncate(part, part.stat().st_size + change)

    def test_what_is_there_counts_only_where_it_is_of_this_stream(self) -> None:
        rows: list[tuple[str, bool, Callable[[Site], None], int]] = [
            # kind, whether there are validators, what happens between the runs, bytes that need not be fetched again
            *((kind, False, lambda site: None, HELD) for kind in ("file", "hls")),
            *((kind, True, lambda site: setattr(site, "version", "b"), 0) for kind in ("file", "dash")),
            ("file", False, lambda site: setattr(site, "version", "longer"), 0),
            ("file", True, lambda site: setattr(site, "has_ranges", False), 0),
            ("hls", True, lambda site: self.start_anew(), 0),
            ("file", True, lambda site: self.start_anew(0, 3 * SEGMENT, {}), 3),
            ("dash", False, lambda site: self.start_anew(3, 3 * SEGMENT, {"size": SEGMENT, "name": ""}), 3),
            ("dash", True, lambda site: self.resize_part(SEGMENT // 2), HELD),
            ("dash", True, lambda site: self.resize_part(-SEGMENT), 0),
            ("file", True, lambda site: self.set_record(b"[" * 9999), 0),
            ("dash", True, lambda site: self.set_record(b'{"whole": [1, 2, 3], "session": [], "synced": 5}'), 0),
        ]
        for self.package in PACKAGES:
            for place, (kind, has_etag, change, kept) in enumerate(rows):
                with self.subTest(package=self.package, row=place, kind=kind, has_etag=has_etag):
                    self.setUp()
                    site = self.interrupt(self.site(has_etag=has_etag), kind, "kill")
                    change(site)
                    requests, _ = self.run_whole(site, kind)
                    if kind == "file":
                        self.assertLessEqual(len(requests), 2)
                        first = requests[-1].first // SEGMENT
                    else:
                        # Without validators the check looks like a request for the segment before.
                        numbers = [int(request.path[1:-3]) for request in requests if request.status == 200]
                        first = min(numbers) + (0 if has_etag or not kept else 1)
                    self.assertIn(first, (HELD - 1, HELD) if kept == HELD else (kept,), requests)
                    site.stop()

    def test_what_is_no_folder_of_the_users_is_not_used(self) -> None:
        site = self.site()
        self.parts.rmdir()
        target = self.folder / "elsewhere"
        target.mkdir()
        for is_link in (True, False):
            if is_link:
                self.parts.symlink_to(target)
            else:
                self.parts.touch()
            site.is_held = False
            self.finish(self.begin(site, "file"))
            self.assertEqual((self.folder / "clip.ts").read_bytes(), site.data())
            self.assertEqual(list(target.iterdir()), [])
            (self.folder / "clip.ts").unlink()
            self.parts.unlink()

    def test_after_a_restart_of_the_system_what_was_forced_to_the_disk_counts(self) -> None:
        file = self.parts / "x.ts"
        unfinished = self.parts / "x.ts.part"
        for segments in (False, True):
            with unittest.mock.patch.object(parts, "SYNC_INTERVAL", 0):
                part = parts.Part(str(file))
                part.begin()
                unfinished.write_bytes(b"12345")
                if segments:
                    part.begin_segments("list")
                    part.add_segment(3, {"etag": "a"})
                else:
                    part.begin_file({"size": 9})
                    unfinished.write_bytes(b"12345")
                    part.sync()
                part._next_sync += 99
                if segments:
                    part.add_segment(5, {"etag": "b"})
            with unittest.mock.patch.object(parts, "_session", return_value="another start"):
                part = parts.Part(str(file))
                self.assertFalse(part.begin())
            self.assertEqual(unfinished.read_bytes(), b"123" if segments else b"12345")
            self.assertEqual(part.last_segment, {"etag": "a"} if segments else {})
            part.clear()

    def test_a_file_system_without_links(self) -> None:
        (self.parts / "x.ts").write_bytes(b"12345")
        part = parts.Part(str(self.parts / "x.ts"))
        self.assertTrue(part.complete())
        with unittest.mock.patch("os.link", side_effect=PermissionError):
            part.deliver(str(self.folder / "clip.ts"))
        self.assertEqual((self.folder / "clip.ts").read_bytes(), b"12345")
        self.assertFalse(parts.Part(str(self.parts / "x.ts")).begin())


if __name__ == "__main__":
    unittest.main()

"""A download that ends in its middle, and the next run in the same folder for parts."""

import json
import os
import pathlib
import re
import resource
import signal
import sys
import time
import unittest.mock
from typing import Any, Callable

from front_runs import StreamTest, wait_for
from noxfront import parts
from servers import Request, Site

COUNT, SEGMENT = 10, 200_000
HELD = 6  # segments of which the first run gets no more, or the part of the file that is as long


class PartsTest(StreamTest):
    def setUp(self) -> None:
        super().setUp()
        self.parts = self.folder / "parts"
        self.parts.mkdir(mode=0o700)

    def the(self, suffix: str) -> pathlib.Path:
        return next(self.parts.glob(f"*.{suffix}"))

    def run_whole(self, site: Site, kind: str) -> tuple[list[Request], str]:
        """A run that completes the file, which is checked and removed: its requests for data, and what it prints."""
        site.held = sys.maxsize
        token = str(time.monotonic_ns())
        code, output, errors = self.finish(self.begin(site, kind, query=token))
        self.assertEqual(code, 0, errors)
        self.assertNotIn(str(self.parts), output + errors)
        self.assertEqual((self.folder / "clip.ts").read_bytes(), site.data())
        self.assertEqual(sorted(file.name for file in self.folder.iterdir()), ["clip.ts", "parts"])
        self.assertIn(f"[download] Destination: {self.folder}/clip.ts\n", output)
        self.assertRegex(output, r"\[download\] 100\.000% of \d+B")
        (self.folder / "clip.ts").unlink()
        requests = [request for request in site.requests if request.token == token]
        return [request for request in requests if not request.path.endswith(".m3u8")], output

    def interrupt(self, site: Site, kind: str, event: str) -> Site:
        """A run that ends near the held place; the server that is there then."""
        is_full = event == "full"
        site.held = sys.maxsize if is_full else HELD
        child = self.begin(site, kind, "--retries=0", "--fragment-retries=0",
                           size_limit=HELD * SEGMENT - 5000 if is_full else resource.RLIM_INFINITY)
        if not is_full:
            wait_for(lambda: any(part.stat().st_size > HELD * SEGMENT - (1 << 16)
                                 for part in self.parts.glob("*.part")))
        if event == "kill":
            child.send_signal(signal.SIGKILL)
        elif event == "stop":
            site.stop()
        code, output, errors = self.finish(child)
        self.assertEqual(code, -signal.SIGKILL if event == "kill" else 1, errors)
        self.assertNotIn(str(self.parts), output + errors)
        return self.site(COUNT, SEGMENT, port=site.port) if event == "stop" else site

    def assert_rest(self, kind: str, requests: list[Request], size: int) -> None:
        """That no more than the rest was asked for, where the part had this size."""
        if kind == "file":
            self.assertEqual([request[2:] for request in requests], [(size, 206, True)])
            return
        fetched = sorted(int(request.path[1:-3]) for request in requests if request.status == 200)
        self.assertGreaterEqual(fetched[0], HELD - 1)
        self.assertIn(size // SEGMENT - fetched[0], (0, 1))  # a segment may be there before the record tells of it
        self.assertEqual(fetched, list(range(fetched[0], COUNT)))
        self.assertEqual([request.path for request in requests if request.status == 304], [f"/{fetched[0] - 1}.ts"])

    def test_the_rest_is_fetched(self) -> None:
        for kind, event in (("file", "kill"), ("file", "stop"), ("file", "full"), ("dash", "kill"), ("dash", "full"),
                            ("hls", "kill"), ("hls", "stop")):
            with self.subTest(kind=kind, event=event):
                self.setUp()
                site = self.interrupt(self.site(COUNT, SEGMENT), kind, event)
                size = self.the("part").stat().st_size
                requests, output = self.run_whole(site, kind)
                self.assert_rest(kind, requests, size)
                [share, *_] = re.findall(r"^\[download\] ([\d.]+)%", output, re.MULTILINE)
                self.assertGreater(float(share), 40)
                if event == "kill":  # a stream that is there is not asked for at all
                    self.assertEqual(self.run_whole(site, kind)[0], [])

    def change_record(self, **members: Any) -> None:
        """With another session as when the system has been started anew, with so much on the disk as was synced."""
        self.the("json").write_text(json.dumps({**json.loads(self.the("json").read_text()), **members}))

    def resize_part(self, change: int) -> None:
        os.truncate(self.the("part"), self.the("part").stat().st_size + change)

    def test_what_is_there_counts_only_where_it_is_of_this_stream(self) -> None:
        rows: list[tuple[str, bool, Callable[[Site], object], int]] = [
            # kind, whether there are validators, what happens between the runs, segments that are not fetched again
            *((kind, False, lambda site: None, HELD) for kind in ("file", "hls")),
            *((kind, True, lambda site: setattr(site, "version", "b"), 0) for kind in ("file", "dash")),
            ("file", False, lambda site: setattr(site, "version", "longer"), 0),
            ("file", True, lambda site: setattr(site, "has_ranges", False), 0),
            ("file", False, lambda site: self.change_record(identity={"size": COUNT * SEGMENT, "name": "other"}), 0),
            ("hls", True, lambda site: self.change_record(session="x"), 0),
            ("file", True, lambda site: self.change_record(session="x", synced=[0, 3 * SEGMENT, {}]), 3),
            ("dash", False, lambda site: self.change_record(
                session="x", synced=[3, 3 * SEGMENT, {"size": SEGMENT, "name": ""}]), 3),
            ("dash", True, lambda site: self.resize_part(SEGMENT // 2), HELD),
            ("dash", True, lambda site: self.resize_part(-SEGMENT), 0),
            ("file", True, lambda site: self.the("json").write_text("[" * 9999), 0),
            ("dash", True, lambda site: self.the("json").write_text('{"whole": [1, 2, 3], "session": []}'), 0),
        ]
        for place, (kind, has_etag, change, kept) in enumerate(rows):
            with self.subTest(row=place, kind=kind, has_etag=has_etag):
                self.setUp()
                site = self.interrupt(self.site(COUNT, SEGMENT, has_etag=has_etag), kind, "kill")
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

    def test_what_is_no_folder_of_the_users_is_not_used(self) -> None:
        target = self.folder / "elsewhere"
        target.mkdir()
        self.parts.rmdir()
        rows: list[Callable[[], object]] = [lambda: self.parts.symlink_to(target), self.parts.touch]
        for make in rows:
            make()
            site = self.site(COUNT, SEGMENT)
            self.assertEqual(self.finish(self.begin(site, "file"))[0], 0)
            self.assertEqual((self.folder / "clip.ts").read_bytes(), site.data())
            self.assertEqual(list(target.iterdir()), [])
            (self.folder / "clip.ts").unlink()
            self.parts.unlink()

    def test_after_a_restart_of_the_system_what_was_forced_to_the_disk_counts(self) -> None:
        unfinished = self.parts / "x.ts.part"
        for segments in (False, True):
            with unittest.mock.patch.object(parts, "SYNC_INTERVAL", 0):
                part = parts.Part(str(self.parts / "x.ts"))
                part.begin()
                unfinished.write_bytes(b"12345")
                if segments:
                    part.begin_segments("list")
                    part.add_segment(3, {"etag": "a"})
                    part._next_sync += 99
                    part.add_segment(5, {"etag": "b"})
                else:
                    part.begin_file({"size": 9})
                    unfinished.write_bytes(b"12345")
                    part.sync()
            with unittest.mock.patch.object(parts, "_session", return_value="another start"):
                part = parts.Part(str(self.parts / "x.ts"))
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

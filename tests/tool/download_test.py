"""The front fetches a stream by a record of its page, from a server that answers late, refuses, or goes away."""

import re
import signal
import time

from front_runs import READ_ANEW, StreamTest, wait_for
from servers import Site


class DownloadTest(StreamTest):
    def assert_whole(self, site: Site) -> None:
        self.assertEqual([file.name for file in self.folder.iterdir()], ["clip.ts"])
        self.assertEqual((self.folder / "clip.ts").read_bytes(), site.data())

    def test_segments_at_once(self) -> None:
        rows: list[tuple[tuple[str, ...], int]] = [((), 4), (("--concurrent-fragments=1",), 1),
                                                   (("--concurrent-fragments=6", "--http-chunk-size=400K"), 6)]
        for options, at_once in rows:
            with self.subTest(options=options):
                self.setUp()
                # The others must not run far ahead of the first.
                site = self.site(24, 1 << 20, crowd=at_once, delay={0: 1.0})
                code, output, errors = self.finish(self.begin(site, "dash", *options))
                self.assertEqual((code, errors), (0, ""))
                self.assert_whole(site)
                self.assertEqual(site.most_under_way, at_once)
                self.assertLessEqual(site.asked_before_first, at_once)
                [kilobytes] = re.findall(r"^kilobytes (\d+)", output, re.MULTILINE)
                self.assertLess(int(kilobytes), (at_once + 12) << 10)  # not the 24 MB of them all
                figures = re.findall(r"^\[download\] ([\d.]+)% of (\d+)B", output, re.MULTILINE)
                shares = [float(share) for share, _ in figures]
                self.assertGreater(len(shares), 1)
                self.assertEqual(shares, sorted(shares))
                self.assertEqual(figures[-1], ("100.000", str(24 << 20)))

    def test_the_speed_limit_is_for_all_segments_together(self) -> None:
        site = self.site(12, 1 << 18)
        child = self.begin(site, "dash", "--limit-rate=1M")
        wait_for(lambda: site.requests)
        begin = time.monotonic()
        self.assertEqual(self.finish(child)[0], 0)
        self.assertGreater(time.monotonic() - begin, 2)

    def test_a_program_that_is_killed_leaves_what_the_library_removes(self) -> None:
        site = self.site(20, 1 << 18, delay={3: 30, 9: 30})
        child = self.begin(site, "dash")
        wait_for(lambda: len(site.requests) >= 6)
        child.send_signal(signal.SIGKILL)
        self.assertIn(f"[download] Destination: {self.folder}/clip.ts", self.finish(child)[1])
        self.assertEqual([file.name for file in self.folder.iterdir()], ["clip.ts.part"])

    def test_what_the_server_refuses(self) -> None:
        rows: list[tuple[int, str, tuple[str, ...], int, int]] = [
            # status, kind, options, exit code, how often that address is asked for
            (403, "file", (), READ_ANEW, 1), (410, "file", (), READ_ANEW, 1), (404, "dash", (), READ_ANEW, 1),
            (401, "file", (), 1, 1),
            (402, "dash", (), 1, 3),
            (402, "dash", ("--fragment-retries=0",), 1, 1),
            (503, "file", ("--retries=1",), 1, 2),
            (503, "dash", ("--retries=3", "--retry-sleep=0"), 1, 4),
            (200, "file", (), READ_ANEW, 0),  # its address has expired
        ]
        for status, kind, options, expected, times in rows:
            with self.subTest(status=status, kind=kind, options=options):
                site = self.site(8, 1 << 12, status=dict.fromkeys((0, 4) if kind == "file" else (4,), status))
                child = self.begin(site, kind, *options, query="" if status != 200 else "expires=1500000000")
                code, _, errors = self.finish(child)
                path = "/file" if kind == "file" else "/4.ts"
                found = sum(request.path == path for request in site.requests)
                self.assertEqual((code, found), (expected, times), errors)
                self.assertEqual(errors.startswith("WARNING: "), code == READ_ANEW or "nox:waiting" in errors, errors)
                self.assertEqual("ERROR: " in errors, code == 1, errors)
                self.assertEqual(list(self.folder.iterdir()), [])

    def test_an_outage_ends_no_download(self) -> None:
        message = "WARNING: [nox:waiting] The server does not answer. Trying again in"
        expected = [f"{message} {wait} s ({count} of 6)" for count, wait in enumerate((1, 2, 4, 8, 16, 9), start=1)]
        for kind in ("file", "dash"):
            with self.subTest(kind=kind):
                self.setUp()
                site = self.site(24, 1 << 17, pause=0.02)
                child = self.begin(site, kind)
                part = self.folder / "clip.ts.part"
                wait_for(lambda: part.exists() and part.stat().st_size > 0)
                site.stop()
                self.assertIsNone(child.poll())
                time.sleep(2)
                site = self.site(24, 1 << 17, port=site.port)
                code, _, errors = self.finish(child)
                self.assertEqual(code, 0, errors)
                self.assert_whole(site)
                # Once for all segments that wait. How many waits the outage takes depends on when it begins.
                lines = errors.splitlines()
                self.assertGreaterEqual(len(lines), 2)
                self.assertEqual(lines, expected[:len(lines)])

import re
import unittest
from typing import Any

from noxfront import progress

# As the library matches it.
PATTERN = re.compile(r"\[download\]\s*(\d+(\.\d+)?)%\s*of\s*((\d+(\.\d+)?)\w*)\s*at\s*([^\s\n\r]*/s)\s*ETA (.*)$")


class ProgressTest(unittest.TestCase):
    def setUp(self) -> None:
        self.said: list[str] = []
        self.now = 0.0
        self.report = progress.Reporter(self.said.append, lambda: self.now)

    def test_lines(self) -> None:
        rows: list[tuple[dict[str, Any], Any]] = [
            (dict(downloaded_bytes=453, total_bytes=1000, speed=100.7, eta=5), ("45.300", "1000B", "100B/s", "00:05")),
            (dict(downloaded_bytes=0, total_bytes=1000, eta=65.4), ("0.000", "1000B", "0B/s", "01:05")),
            (dict(downloaded_bytes=2999, total_bytes=3000, speed=None, eta=None), ("99.966", "3000B", "0B/s", "--:--")),
            # Fragments: the total is an estimate, and may turn out too small.
            (dict(downloaded_bytes=10, total_bytes_estimate=40.5, eta=3725), ("25.000", "40B", "0B/s", "01:02:05")),
            (dict(downloaded_bytes=50, total_bytes_estimate=40.5, eta=-1), ("100.000", "50B", "0B/s", "--:--")),
            (dict(downloaded_bytes=1, total_bytes_estimate=2, eta=1e9), ("50.000", "2B", "0B/s", "--:--")),
            (dict(downloaded_bytes=1, total_bytes=2, speed=2e9, eta=float("nan")),
             ("50.000", "2B", "2000000000B/s", "--:--")),
            (dict(status="finished", downloaded_bytes=7), ("100.000", "7B", "0B/s", "--:--")),
            # Without a total there is no line.
            (dict(downloaded_bytes=100), None), (dict(downloaded_bytes=None, total_bytes=0), None),
        ]
        for status, expected in rows:
            with self.subTest(status=status):
                match = PATTERN.search(progress.line(status) or "")
                self.assertEqual(match and match.group(1, 3, 6, 7), expected)

    def test_few_lines_and_always_the_last(self) -> None:
        for step in range(1001):
            self.now = step / 500
            self.report({"status": "downloading", "downloaded_bytes": step, "total_bytes": 1000})
        self.report({"status": "finished", "total_bytes": 1000})
        self.assertIn(len(self.said) - 2 * progress.LINES_PER_SECOND, (0, 1, 2))
        self.assertIn("100.000%", self.said[-1])
        self.report({"status": "error", "total_bytes": 1000})  # is no progress
        self.assertIn("100.000%", self.said.pop())

    def test_nothing_said_falls(self) -> None:
        for done, estimate in ((10, 100), (8, 100), (20, 400), (60, 400), (50, 1000), (300, 310), (305, 600)):
            self.now += 1
            self.report({"status": "downloading", "downloaded_bytes": done, "total_bytes_estimate": estimate})
        self.report({"status": "finished", "total_bytes": 610})
        shares = [float(match.group(1)) for match in map(PATTERN.search, self.said) if match]
        self.assertEqual((len(shares), shares[0], shares[-1]), (8, 10, 100))
        self.assertEqual(shares, sorted(shares))

import re
import unittest
from typing import Any

from noxfront import progress

# As the library matches it.
PATTERN = re.compile(r"\[download\]\s*(\d+(\.\d+)?)%\s*of\s*((\d+(\.\d+)?)\w*)\s*at\s*([^\s\n\r]*/s)\s*ETA")


def status(**members: Any) -> dict[str, Any]:
    return {"status": "downloading", **members}


class LineTest(unittest.TestCase):
    def test_figures(self) -> None:
        rows = [
            (status(downloaded_bytes=453, total_bytes=1000, speed=100.7, eta=5), ("45.300", "1000B", "100B/s")),
            (status(downloaded_bytes=0, total_bytes=1000), ("0.000", "1000B", "0B/s")),
            (status(downloaded_bytes=999_999, total_bytes=1_000_000), ("99.999", "1000000B", "0B/s")),
            (status(downloaded_bytes=1, total_bytes=3, speed=None, eta=None), ("33.333", "3B", "0B/s")),
            # Fragments: the total is an estimate, and may turn out too small.
            (status(downloaded_bytes=10, total_bytes_estimate=40.5, fragment_index=1), ("25.000", "40B", "0B/s")),
            (status(downloaded_bytes=50, total_bytes_estimate=40.5), ("100.000", "50B", "0B/s")),
            (status(downloaded_bytes=1, total_bytes=None, total_bytes_estimate=2), ("50.000", "2B", "0B/s")),
            ({"status": "finished", "total_bytes": 7}, ("100.000", "7B", "0B/s")),
            ({"status": "finished", "downloaded_bytes": 7}, ("100.000", "7B", "0B/s")),
            (status(downloaded_bytes=2**40, total_bytes=2**41, speed=2e9), ("50.000", f"{2**41}B", "2000000000B/s")),
        ]
        for record, (percent, total, speed) in rows:
            with self.subTest(record=record):
                match = PATTERN.search(progress.line(record) or "")
                assert match
                self.assertEqual(match.group(1, 3, 6), (percent, total, speed))

    def test_no_line_without_a_total(self) -> None:
        for record in (status(), status(downloaded_bytes=100), status(downloaded_bytes=None, total_bytes=0)):
            self.assertIsNone(progress.line(record))

    def test_time_left(self) -> None:
        for seconds, text in ((0, "00:00"), (65.4, "01:05"), (3725, "01:02:05"), (-1, "--:--"), (1e9, "--:--"),
                              (None, "--:--"), (float("nan"), "--:--")):
            line = progress.line(status(downloaded_bytes=1, total_bytes=2, eta=seconds)) or ""
            self.assertTrue(line.endswith(f" ETA {text}"), line)


class ReporterTest(unittest.TestCase):
    def test_few_lines_and_always_the_last(self) -> None:
        said: list[str] = []
        now = 0.0
        report = progress.Reporter(said.append, lambda: now)
        for step in range(1001):
            now = step / 500
            report(status(downloaded_bytes=step, total_bytes=1000))
        report({"status": "finished", "total_bytes": 1000})
        self.assertLessEqual(len(said), 2 * progress.LINES_PER_SECOND + 2)
        self.assertGreaterEqual(len(said), 2 * progress.LINES_PER_SECOND)
        self.assertIn("100.000%", said[-1])

    def test_failures_are_no_progress(self) -> None:
        said: list[str] = []
        progress.Reporter(said.append)({"status": "error", "total_bytes": 1000})
        self.assertEqual(said, [])

    def test_nothing_said_falls(self) -> None:
        said: list[str] = []
        now = iter(range(100))
        report = progress.Reporter(said.append, lambda: float(next(now)))
        for done, estimate in ((10, 100), (8, 100), (20, 400), (60, 400), (50, 1000), (300, 310), (305, 600)):
            report(status(downloaded_bytes=done, total_bytes_estimate=estimate))
        report({"status": "finished", "total_bytes": 610})
        shares = [float(match.group(1)) for match in map(PATTERN.search, said) if match]
        self.assertEqual(len(shares), 8)
        self.assertEqual(shares, sorted(shares))
        self.assertEqual((shares[0], shares[-1]), (10, 100))

import os
import unittest

from unittest import mock

from noxfront import messages

TEMPLATE = "/videos/50%% off/{0b6f}YDTMP_.%(ext)s"
FILE = "/videos/50% off/{0b6f}YDTMP_.mp4"


class DownloadLogTest(unittest.TestCase):
    def setUp(self) -> None:
        self.said: list[str] = []
        self.log = messages.DownloadLog(TEMPLATE, say=self.said.append)

    def test_lines_that_tell_of_the_file(self) -> None:
        rows = [
            f"[download] Destination: {FILE}",
            f"[download] {FILE} has already been downloaded",
            "[download] Destination: /videos/50% off/{0b6f}YDTMP_.f137.mp4",
        ]
        for text in rows:
            self.log.debug(text)
        self.assertEqual(self.said, rows)
        self.assertEqual(self.log.files, [FILE, "/videos/50% off/{0b6f}YDTMP_.f137.mp4"])

    def test_lines_that_only_look_so(self) -> None:
        rows = [
            "[download] Destination: /home/me/diary.txt",
            "[download] /home/me/diary.txt has already been downloaded",
            "[info] [download] Destination: /home/me/diary.txt: Downloading 1 format(s): 137",
            "[download] Downloading playlist: [download] 50% of 1MiB at 1B/s ETA",
            "[download] Resuming download at byte 7",
        ]
        for text in rows:
            self.log.debug(text)
        self.assertEqual(len(self.said), len(rows))
        self.assertNotIn("[download]", "".join(self.said))
        self.assertEqual(self.log.files, [])

    def test_another_name_at_last_is_told(self) -> None:
        self.log.debug(f"[download] Destination: {FILE}")
        self.log.announce(FILE)
        self.assertEqual(len(self.said), 1)
        self.log.announce(FILE + ".mkv")
        self.assertEqual(self.said[1:], [f"[download] Destination: {FILE}.mkv"])


class ReportTest(unittest.TestCase):
    def setUp(self) -> None:
        no_version = mock.patch.dict("sys.modules", {"yt_dlp.version": None})  # other tests may have loaded the tool
        no_version.start()
        self.addCleanup(no_version.stop)

    def report(self, log: messages.Collector, has_failed: bool) -> str:
        """What goes to standard error, which must be no more than one piece."""
        reader, writer = os.pipe()
        kept = os.dup(messages.STANDARD_ERROR)
        os.dup2(writer, messages.STANDARD_ERROR)
        try:
            log.report(has_failed)
        finally:
            os.dup2(kept, messages.STANDARD_ERROR)
            os.close(kept)
            os.close(writer)
        with open(reader, "rb") as pipe:
            return pipe.read().decode("utf-8", "surrogateescape")

    def test_complaints(self) -> None:
        rows: list[tuple[list[str], list[str], bool, str]] = [
            ([], [], False, ""),
            (["w1", "w2", "w1"], [], False, "WARNING: w1\nWARNING: w2\n"),
            # A broken entry does not spoil the page.
            (["w"], ["ERROR: e\n", "\r"], False, "WARNING: e\nWARNING: w\n"),
            # The library looks at the begin.
            (["w"], ["ERROR: e1", "e2"], True, "ERROR: [nox:other] e1\nERROR: e2\nWARNING: w\n"),
            ([], ["ERROR: \r[download] Got error: 404"], True, "ERROR: [nox:other] Got error: 404\n"),
            # The most telling error is the first one.
            ([], ["e1", "Video unavailable"], True, "ERROR: [nox:not-found] Video unavailable\nERROR: e1\n"),
            ([], ["e"] * 2, True, "ERROR: [nox:other] e\n"),
            ([], [], True, "ERROR: [nox:other] The download tool has failed and gives no reason\n"),
            # Nothing but the front's own word is a tag.
            (["[nox:x] w\rERROR: [nox:x]"], ["[nox:x] e1\n\nERROR: [nox:x] e2", "[nox:x] e3"], True,
             "ERROR: [nox:other] (nox:x] e1\n  ERROR: [nox:x] e2\nERROR: (nox:x] e3\n"
             "WARNING: (nox:x] w\n  ERROR: [nox:x]\n"),
            ([], ["\r[download] Got error: 404"], False, "WARNING: Got error: 404\n"),
            (["name \udcff and \ud800"], [], False, "WARNING: name ? and ?\n"),
        ]
        for warnings, errors, has_failed, expected in rows:
            with self.subTest(warnings=warnings, errors=errors):
                log = messages.Collector()
                for text in warnings:
                    log.warning(text)
                for text in errors:
                    log.error(text)
                self.assertEqual(self.report(log, has_failed), expected)
                self.assertEqual(self.report(log, False), "")

    def test_much_is_cut_to_one_piece(self) -> None:
        log = messages.Collector([f"{number} \u00e9" for number in range(2000)])
        text = self.report(log, False)
        self.assertLessEqual(len(text.encode()), 4096)
        self.assertTrue(text.startswith("WARNING: 0 ") and text.endswith("...\n"))

    def test_the_age_of_the_tool(self) -> None:
        rows = [("2020.01.02", True), ("2999.01.02", False), ("strange", False), ("2020.99.99", False)]
        for version, is_told in rows:
            with mock.patch.dict("sys.modules", {"yt_dlp.version": mock.Mock(__version__=version)}):
                for message, has_hint in (("e " * 3000, is_told), ("timed out", False)):
                    log = messages.Collector()
                    log.error(message)
                    text = self.report(log, True)
                    note = f"\nNOTE: This download tool is older than a year ({version})"
                    self.assertEqual(note in text and text.endswith("nox-renew-tool\n"), has_hint, text)
                    self.assertLessEqual(len(text.encode()), 4096)

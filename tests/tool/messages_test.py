import unittest
from unittest import mock

from noxfront import messages

TEMPLATE = "/videos/50%% off/{0b6f}YDTMP_.%(ext)s"
FILE = "/videos/50% off/{0b6f}YDTMP_"
DESTINATION = "[download] Destination: "


class DownloadLogTest(unittest.TestCase):
    def test_lines_that_tell_of_the_file_and_those_that_only_look_so(self) -> None:
        said: list[str] = []
        log = messages.DownloadLog(TEMPLATE, say=said.append)
        true = [f"{DESTINATION}{FILE}.mp4", f"[download] {FILE}.mp4 has already been downloaded",
                f"{DESTINATION}{FILE}.f137.mp4"]
        false = [f"{DESTINATION}/home/me/diary.txt", "[download] /home/me/diary.txt has already been downloaded",
                 f"[info] {DESTINATION}/home/me/diary.txt: Downloading 1 format(s): 137",
                 "[download] Downloading playlist: [download] 50% of 1MiB at 1B/s ETA"]
        for text in (*true, *false):
            log.debug(text)
        log.announce(f"{FILE}.f137.mp4")
        log.announce(f"{FILE}.mkv")  # another name at last
        harmless = [text.replace("[download]", "(download)") for text in false]
        self.assertEqual(said, [*true, *harmless, f"{DESTINATION}{FILE}.mkv"])
        self.assertEqual(log.files, [f"{FILE}.mp4", f"{FILE}.f137.mp4"])


class ReportTest(unittest.TestCase):
    def report(self, warnings: list[str], errors: list[str], has_failed: bool, version: str = "") -> str:
        """What goes to standard error, which must be no more than one piece."""
        log = messages.Collector()
        for text in warnings:
            log.warning(text)
        for text in errors:
            log.error(text)
        with mock.patch("os.write", side_effect=lambda _, data: len(data)) as write, \
                mock.patch.dict("sys.modules", {"yt_dlp.version": mock.Mock(__version__=version)}):
            log.report(has_failed)
            log.report(False)  # nothing again
        [(channel, data)] = [call.args for call in write.mock_calls]
        self.assertEqual(channel, 2)
        self.assertLessEqual(len(data), 4096)
        return str(data, "utf-8", "surrogateescape")

    def test_complaints(self) -> None:
        rows: list[tuple[list[str], list[str], bool, str]] = [
            (["w1", "w2", "w1"], [], False, "WARNING: w1\nWARNING: w2\n"),
            # A broken entry does not spoil the page.
            (["w"], ["ERROR: e\n", "\r"], False, "WARNING: e\nWARNING: w\n"),
            # The library looks at the begin.
            (["w"], ["ERROR: e1", "e2", "e2"], True, "ERROR: [nox:other] e1\nERROR: e2\nWARNING: w\n"),
            ([], ["ERROR: \r[download] Got error: 404"], True, "ERROR: [nox:other] Got error: 404\n"),
            # The most telling error is the first one.
            ([], ["e1", "Video unavailable"], True, "ERROR: [nox:not-found] Video unavailable\nERROR: e1\n"),
            ([], [], True, "ERROR: [nox:other] The download tool has failed and gives no reason\n"),
            # Nothing but the front's own word is a tag.
            (["[nox:x] w\rERROR: [nox:x]"], ["[nox:x] e1\n\nERROR: [nox:x] e2", "[nox:x] e3"], True,
             "ERROR: [nox:other] (nox:x] e1\n  ERROR: [nox:x] e2\nERROR: (nox:x] e3\n"
             "WARNING: (nox:x] w\n  ERROR: [nox:x]\n"),
            (["name \udcff and \ud800"], [], False, "WARNING: name ? and ?\n"),
        ]
        for warnings, errors, has_failed, expected in rows:
            with self.subTest(warnings=warnings, errors=errors):
                self.assertEqual(self.report(warnings, errors, has_failed), expected)

    def test_much_is_cut_to_one_piece(self) -> None:
        text = self.report([f"{number} \u00e9" for number in range(2000)], [], False)
        self.assertTrue(text.startswith("WARNING: 0 ") and text.endswith("...\n"))

    def test_the_age_of_the_tool(self) -> None:
        rows = [("2020.01.02", True), ("2999.01.02", False), ("strange", False), ("2020.99.99", False)]
        for version, is_told in rows:
            for message, has_hint in (("e " * 3000, is_told), ("timed out", False)):
                text = self.report([], [message], True, version)
                note = f"\nNOTE: This download tool is older than a year ({version})"
                self.assertEqual(note in text and text.endswith("nox-renew-tool\n"), has_hint, text)

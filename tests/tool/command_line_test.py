import unittest


from noxfront import command_line
from noxfront.command_line import Describe, Download, ListEntries

URL = "http://127.0.0.1/page"
SWITCH = "--no-check-certificate"
LIST = ["--flat-playlist", "--dump-json", "--playlist-items"]
TEMPLATE = "/videos/my clips/{0b6f}YDTMP_.%(ext)s"


class CommandLineTest(unittest.TestCase):
    def test_commands_of_the_library(self) -> None:
        rows: list[tuple[list[str], command_line.Command]] = [
            (["--dump-json", URL], Describe(URL, [])),
            (["--dump-json", SWITCH, URL], Describe(URL, [SWITCH])),
            (["-f", "137", "-o", TEMPLATE, URL], Download(URL, [], "137", TEMPLATE)),
            (["-f", "hls-1080p", SWITCH, "-o", TEMPLATE, URL], Download(URL, [SWITCH], "hls-1080p", TEMPLATE)),
            ([*LIST, "1:200", URL], ListEntries(URL, [], 1, 200)),
            ([*LIST, "3:4", SWITCH, URL], ListEntries(URL, [SWITCH], 3, 4)),
        ]
        for words, expected in rows:
            with self.subTest(words=words):
                self.assertEqual(command_line.parse(words), expected)

    def test_all_others_are_the_tools(self) -> None:
        rows: list[list[str]] = [
            [],
            ["--version"],
            ["--dump-json"],
            ["--dump-json", SWITCH],
            ["--dump-json", URL, SWITCH],
            ["--dump-json", SWITCH, SWITCH, URL],
            ["--dump-json", URL, URL],
            ["--dump-json", "--verbose"],
            ["--dump-json", "-4", URL],
            ["--dump-json", ""],
            ["-f", "137", URL],
            ["-f", "137", "-o", TEMPLATE],
            ["-f", "137", "-o", TEMPLATE, SWITCH, URL],
            ["-f", SWITCH, "-o", TEMPLATE, URL],
            ["-f", "137", "-o", TEMPLATE, "--exec=x"],
            ["-f", "137", "-o", TEMPLATE, URL, URL],
            ["-o", TEMPLATE, "-f", "137", URL],
            [URL],
            [*LIST[:2], URL],
            *([*LIST, items, URL] for items in ("1", "0:5", "1:", "a:b")),
            [*LIST, "1:2", "-x"],
        ]
        for words in rows:
            with self.subTest(words=words):
                self.assertIsNone(command_line.parse(words))

import unittest

from noxfront import command_line
from noxfront.command_line import Describe, Download, ListEntries

URL = "http://127.0.0.1/page"
SWITCH = "--no-check-certificate"
LIST = ["--flat-playlist", "--dump-json", "--playlist-items"]
TEMPLATE = "/videos/my clips/{0b6f}YDTMP_.%(ext)s"


class CommandLineTest(unittest.TestCase):
    def test_commands_of_the_library(self) -> None:
        switches: list[list[str]] = [[], [SWITCH]]
        for switch in switches:
            rows: list[tuple[list[str], command_line.Command]] = [
                (["--dump-json", *switch, URL], Describe(URL, switch)),
                (["-f", "137", *switch, "-o", TEMPLATE, URL], Download(URL, switch, "137", TEMPLATE)),
                ([*LIST, "3:200", *switch, URL], ListEntries(URL, switch, 3, 200)),
            ]
            for words, expected in rows:
                self.assertEqual(command_line.parse(words), expected)

    def test_all_others_are_the_tools(self) -> None:
        rows: list[tuple[list[str], list[list[str]]]] = [
            # the begin, and what follows it
            ([], [[], ["--version"], [URL], ["-o", TEMPLATE, "-f", "137", URL]]),
            (["--dump-json"], [[], [SWITCH], [URL, SWITCH], [SWITCH, SWITCH, URL], [URL, URL], ["-4", URL], [""]]),
            (["-f", "137"], [[URL], ["-o", TEMPLATE], ["-o", TEMPLATE, SWITCH, URL], ["-o", TEMPLATE, "--exec=x"],
                             ["-o", TEMPLATE, URL, URL]]),
            (["-f", SWITCH], [["-o", TEMPLATE, URL]]),
            (LIST, [["1", URL], ["0:5", URL], ["1:", URL], ["a:b", URL], ["1:2", "-x"]]),
            (LIST[:2], [[URL]]),
        ]
        for begin, ends in rows:
            for end in ends:
                with self.subTest(begin=begin, end=end):
                    self.assertIsNone(command_line.parse([*begin, *end]))

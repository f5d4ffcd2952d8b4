import pathlib
import re
import unittest
from typing import Any, Callable
from unittest import mock

from front_runs import FolderTest
from noxfront import addresses
from yt_dlp.extractor import gen_extractor_classes

PATTERN = r"https?://example\.com/"


class NeededTest(unittest.TestCase):
    def test_texts(self) -> None:
        rows: list[tuple[str, list[str]]] = [
            (r"https?://(?:www\.)?(?:first|second)\.(?:com|net)/v/", ["first", "second"]),
            (r"https?://(?:first|x)\.net/", [".net/"]),
            ("(?x)https?:// # here\n (?: (?P<a> Some-Site ) [.] de ){1,2} /", ["some-site"]),
            (r"https?://(?:some-site)?(?:(?!other-site)[a-z]+)*/", []),
            (r"(?i)TAG:(?P<id>\w+)", ["tag:"]),
            (r"stra\u00dfe\.example", ["e.example"]),
            (r"(", []),
        ]
        for pattern, expected in rows:
            with self.subTest(pattern=pattern):
                self.assertEqual(addresses.needed(pattern), expected)

    def test_no_address_is_lost_that_the_tool_knows(self) -> None:
        """All those by which the tool tests its own extractors."""
        table = addresses.AddressTable(None)
        count = excluded = 0
        known: list[tuple[str, str]] = []
        for extractor in gen_extractor_classes():
            patterns = extractor._VALID_URL
            for pattern in [patterns] if isinstance(patterns, str) else patterns or []:
                tests: list[dict[str, Any]] = getattr(getattr(extractor, "real_class", extractor), "_TESTS", None) or []
                known += [(pattern, test["url"]) for test in tests if re.match(pattern, test.get("url") or "")]
                count += 1
                excluded += table.excludes(pattern, "http://127.0.0.1/page")
        self.assertEqual([row for row in known if table.excludes(*row)], [])
        self.assertGreater(len(known), 1000)
        self.assertGreater(excluded, count * 0.9)


class TableTest(FolderTest):
    def test_it_is_kept_for_the_user_alone(self) -> None:
        file = pathlib.Path(self.folder, addresses.FOLDER, addresses.FILE)
        changes: list[Callable[[], object]] = [
            lambda: None, lambda: file.write_text("{"), lambda: file.write_text('{"a": 1}'), lambda: file.chmod(0o644)]
        for change in changes:
            change()
            table = addresses.AddressTable(str(self.folder))
            for patterns, address, is_excluded in (([PATTERN], "http://127.0.0.1/", True),
                                                   (PATTERN, "HTTP://EXAMPLE.COM/", False),
                                                   ([PATTERN, "."], "http://127.0.0.1/", False),
                                                   (PATTERN, "http://127.0.0.1/\u017f", False)):
                self.assertEqual(table.excludes(patterns, address), is_excluded, (patterns, address))
            table.save()
            self.assertEqual(file.stat().st_mode & 0o777, 0o600)
            with mock.patch.object(addresses, "needed", side_effect=AssertionError):
                self.assertTrue(addresses.AddressTable(str(self.folder)).excludes([PATTERN], "http://127.0.0.1/"))

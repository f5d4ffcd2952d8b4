"""Pages with several videos."""

import json
import os
import subprocess
import sys
import unittest
from typing import Any, Iterator, Optional

from front_runs import FRONT, PLUGIN, FolderTest, environment, run_front
from noxfront import entries
from noxfront.entries import Entries
from yt_dlp.utils import OnDemandPagedList

SITE = "http://shapes.invalid/"
LIST = ["--flat-playlist", "--dump-json", "--playlist-items"]


def video(number: int) -> dict[str, Any]:
    return {"id": str(number), "title": f"Video {number}", "duration": number * 10,
            "formats": [{"format_id": "1", "url": f"http://127.0.0.1:9/{number}.mp4", "ext": "mp4"}]}


def playlist(*entries: dict[str, Any], **more: Any) -> dict[str, Any]:
    return {"_type": "playlist", "entries": entries, **more}


TWELVE = [*({"_type": "url", "url": f"{SITE}one", "title": "\ud83d\n\"", "thumbnails": [{"url": "http://t/"}, {}]}
            for _ in range(2)), *map(video, range(3, 13))]
PAGES: dict[str, Any] = {
    "one": video(1), "1": video(1), "twelve": playlist(*TWELVE), "empty": playlist(), "many": playlist(lazy=5000),
    "lazy-one": playlist(lazy=1), "parts": playlist(lazy=3, _type="multi_video"),
    "nested": playlist({"_type": "url", "url": f"{SITE}twelve"}),
    "smuggled": playlist(*({"_type": "url", "url": address} for address in (f"{SITE}#__youtubedl_smuggle=x", "x"))),
}


class ProgramTest(FolderTest):
    def setUp(self) -> None:
        super().setUp()
        (self.folder / "pages.json").write_text(json.dumps(PAGES))
        self.environment = environment(PLUGIN, NOX_SHAPES=str(self.folder / "pages.json"),
                                       XDG_CONFIG_HOME=str(self.folder))

    def run_page(self, *words: str) -> tuple[int, str, str]:
        run = run_front([*words[:-1], SITE + words[-1]], self.environment)
        return run.returncode, run.stdout, run.stderr

    def test_which_video_is_described_and_how_many_there_are(self) -> None:
        rows: list[tuple[str, Optional[str], str]] = [
            # page, title of what is described, standard error
            ("twelve", "Video 1", "WARNING: [nox:videos] 12\n"), ("twelve#a#nox-item=12", "Video 12", ""),
            ("twelve#nox-item=13", None, "There is no video"), ("many", "Video 1", "WARNING: [nox:videos] many\n"),
            ("parts", "Video 1", "WARNING: [nox:parts] many\n"), ("one#nox-item=1", "Video 1", ""),
            ("one#nox-item=2", None, "There is no video 2"), ("lazy-one", "Video 1", ""),
            ("nested", "Video 1", "WARNING: [nox:videos] 12\n"), ("nested#nox-item=4", "Video 4", ""),
            ("empty", None, "ERROR: [nox:nothing] There is no video on this page\n"),
        ]
        for page, title, complaint in rows:
            with self.subTest(page=page):
                code, output, errors = self.run_page("--dump-json", page)
                self.assertEqual(json.loads(output)["title"] if output else None, title)
                self.assertEqual(code, 0 if title else 1)
                self.assertIn(complaint, errors)
                self.assertTrue(title is None or errors == complaint, errors)

    def test_lists(self) -> None:
        rows: list[tuple[str, str, list[Optional[int]], dict[str, Any], dict[str, Any]]] = [
            # page, range, numbers in the lines, some members of the first line and of the last one
            ("twelve", "1:200", [*range(1, 13)],
             {"nox_count": 12, "nox_url": f"{SITE}one", "title": "\ufffd\n\"", "duration": None,
              "thumbnail": "http://t/"},
             {"nox_url": f"{SITE}twelve#nox-item=12", "nox_parts": None, "title": "Video 12", "duration": 120}),
            ("twelve", "3:4", [3, 4, None], {"nox_url": f"{SITE}twelve#nox-item=3", "nox_count": 12},
             {"nox_more": True}),
            ("twelve", "13:20", [], {}, {}),
            ("nested", "12:12", [12], {"nox_count": 12}, {"nox_url": f"{SITE}nested#nox-item=12"}),
            ("many", "4999:5198", [4999, 5000], {"nox_count": None}, {"nox_url": f"{SITE}5000", "title": "0" * 500}),
            ("parts", "1:2", [1, 2, None], {"nox_parts": True, "nox_count": None}, {"nox_more": True}),
            ("one", "1:200", [1], {"nox_count": 1}, {"nox_url": f"{SITE}one"}),
            ("one#nox-item=3", "1:5", [1], {"nox_count": 1}, {"nox_url": f"{SITE}one"}),
            ("smuggled", "1:5", [1, 2], {"nox_url": f"{SITE}smuggled#nox-item=1"}, {"nox_count": None}),
        ]
        for page, numbers, expected, *members in rows:
            with self.subTest(page=page, numbers=numbers):
                code, output, errors = self.run_page(*LIST, numbers, page)
                self.assertEqual((code, errors), (0, ""))
                lines = [json.loads(line) for line in output.splitlines()]
                self.assertEqual([line.get("nox_index") for line in lines], expected)
                for line, some in zip([*lines[:1], *lines[-1:]], members):
                    self.assertEqual({name: line.get(name) for name in some}, some)
        code, output, errors = self.run_page(*LIST, "1:9", "empty")
        self.assertEqual((code, output, errors.splitlines()[0]),
                         (1, "", "ERROR: [nox:nothing] There is no video on this page"))

    def test_memory_does_not_grow_with_the_list(self) -> None:
        kilobytes = []
        for numbers in ("1:9", "4992:5000"):
            words = [sys.executable, str(FRONT), *LIST, numbers, f"{SITE}many"]
            with subprocess.Popen(words, stdout=subprocess.PIPE, env=self.environment) as child:
                kilobytes.append(os.wait4(child.pid, 0)[2].ru_maxrss)  # the pipe holds nine lines
        self.assertLess(kilobytes[1], kilobytes[0] + 3000)  # 5,000 entries have more than 5 MB


class EntriesTest(unittest.TestCase):
    def test_what_a_faulty_front_leaves_to_the_tool(self) -> None:
        self.assertEqual(entries.plain_words(["--dump-json", "http://a/#nox-item=7"]),
                         ["--dump-json", "--playlist-items", "7", "http://a/"])
        for address in ("http://a/", "http://a/#nox-item=0", "http://a/#nox-item=\u0663", "http://a/#nox-item=3#x"):
            self.assertEqual(entries.plain_words(["-f", address]), ["-f", address])

    def test_entries_that_come_page_by_page_are_asked_for_when_they_are_used(self) -> None:
        asked: list[int] = []

        def page(number: int) -> Iterator[dict[str, int]]:
            asked.append(number)
            return iter([{"id": number * 10 + place} for place in range(10 if number < 20 else 3)])

        found = Entries({"entries": OnDemandPagedList(page, 10)})
        self.assertEqual((found.count, asked), (None, [0]))
        self.assertEqual([number for number, _ in found.range(199, 300)], [199, 200, 201, 202, 203])
        self.assertEqual(set(asked), {0, 19, 20})

    def test_counts(self) -> None:
        def failing() -> Iterator[dict[str, int]]:
            yield {"id": 1}
            raise ConnectionError

        for found, told, count in ((failing(), 7, 1), (OnDemandPagedList(lambda number: [{}], 5), None, 1),
                                   (iter([{}, {}, {}]), 3, 3)):
            self.assertEqual(Entries({"entries": found, "playlist_count": told}).count, count)

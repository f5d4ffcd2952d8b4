import json
import unittest
from typing import Any

from noxfront import description, streams

PICTURE = {"format_id": "137", "ext": "mp4", "url": "http://127.0.0.1/v", "vcodec": "avc1", "acodec": "none"}
SOUND = {"format_id": "140", "ext": "m4a", "url": "http://127.0.0.1/a", "vcodec": "none", "acodec": "mp4a.40.2"}


class DescriptionTest(unittest.TestCase):
    def test_only_what_the_library_reads(self) -> None:
        stream = {**PICTURE, "format_note": "DASH video", "resolution": "1920x1080", "width": 1920, "height": 1080}
        page: dict[str, Any] = {"title": "t", "thumbnail": "http://127.0.0.1/t", "description": "d", "duration": 213}
        more = {"fps": 25, "tbr": 1.5, "http_headers": {}}
        found = description.of_page({**page, "id": "1", "duration": 212.5, "formats": [{**stream, **more}]})
        self.assertEqual(found, {**page, "formats": [stream]})

    def test_members_that_make_no_sense_are_left_out(self) -> None:
        values: list[Any] = [None, "", "x", 0, -1, True, float("nan"), float("inf"), 2**31, [], {}]
        for value in values:
            with self.subTest(value=value):
                page = {"title": None, "duration": value, "formats": [{**PICTURE, "height": value, "abr": value}, None]}
                self.assertEqual(description.of_page(page), {"formats": [PICTURE]})

    def test_numbers(self) -> None:
        for value, expected in ((212.0, 212), (0.2, 1), ("212", 212), (2**31 - 1, 2**31 - 1)):
            duration = description.of_page({"duration": value})["duration"]
            self.assertEqual((type(duration), duration), (int, expected))
        page = description.of_page({"formats": [{**SOUND, "abr": abr} for abr in (128, 128.0, 129.478)]})
        self.assertEqual(json.dumps([entry["abr"] for entry in page["formats"]]), "[128, 128, 129.478]")

    def test_duration_of_segments(self) -> None:
        segments: list[Any] = [{}, {"duration": 20.001}, {"duration": 20}, {"duration": None}, None]
        formats: list[Any] = [{**PICTURE, "fragments": fragments} for fragments in (segments[:2], segments, None, 3)]
        rows: list[tuple[dict[str, Any], Any]] = [
            ({}, 40), ({"duration": 39}, 39), ({"duration": 0, "live_status": "was_live"}, 40),
            ({"is_live": True}, None),
        ]
        for page, expected in rows:
            with self.subTest(page=page):
                self.assertEqual(description.of_page({**page, "formats": formats}).get("duration"), expected)

    def test_streams(self) -> None:
        rows: list[tuple[dict[str, Any], Any]] = [
            # what the tool says of a stream; suffix and codecs as they are described, or None when it is left out
            ({"ext": "mhtml", "format_note": "storyboard"}, None),
            ({"ext": "mp4", "vcodec": "none", "acodec": "none"}, None),
            ({**PICTURE, "has_drm": True}, None),
            ({**PICTURE, "has_drm": "maybe"}, ("mp4", "avc1", "none")),
            # By direct link; the tool says nothing of codecs.
            ({"ext": "mp3"}, ("mp3", "none", "unknown")),
            ({"ext": "opus", "acodec": "opus"}, ("opus", "none", "opus")),
            ({"ext": "ogg", "height": 240}, ("ogg", None, None)),
            # In a group of an HLS manifest; the file is an MP4 that holds sound alone.
            ({"ext": "mp4", "vcodec": "none", "acodec": None}, ("m4a", "none", "unknown")),
            ({"ext": "webm", "vcodec": "none", "acodec": "opus"}, ("webm", "none", "opus")),
        ]
        for stream, expected in rows:
            with self.subTest(stream=stream):
                page = {"formats": [dict(stream)]}
                streams.complete(streams.of_page(page))
                found = [(entry["ext"], entry.get("vcodec"), entry.get("acodec"))
                         for entry in description.of_page(page)["formats"]]
                self.assertEqual(found, [expected] if expected else [])

#!/usr/bin/python3
"""Shapes of descriptions as sites have them, through the tool by a plugin: what nox-fetch chooses of them.

    page_shapes.py --fetch NOX-FETCH [--tool PACKAGE]... [--only WORD]
"""

import functools
import json
import re
import sys
from typing import Any

import host_bench
from front_runs import HERE
from host_bench import HostBench, Row

Record = dict[str, Any]
HEIGHTS = (144, 240, 360, 480, 720, 1080, 1440, 2160)


def address(name: str) -> str:
    return "http://shapes.invalid/" + re.sub(r"\W+", "-", name)


def stream(code: str, ext: str, vcodec: Any, acodec: Any, height: int = 0, **more: Any) -> Record:
    size = {"width": height * 16 // 9, "height": height} if height else {}
    return {"format_id": code, "url": f"http://127.0.0.1:9/{code}", "ext": ext, "vcodec": vcodec, "acodec": acodec,
            **size, **more}


def picture(code: str, ext: str, codec: str, height: int, **more: Any) -> Record:
    return stream(code, ext, codec, "none", height, format_note="DASH video", **more)


def sound(code: str, ext: str, codec: Any, rate: Any, **more: Any) -> Record:
    return stream(code, ext, "none", codec, abr=rate, format_note="DASH audio", **more)


STORYBOARD = stream("sb0", "mhtml", "none", "none", 90, format_note="storyboard", protocol="mhtml")
H264, VP9, AV1, AAC, OPUS = "avc1.640028", "vp9", "av01.0.08M.08", "mp4a.40.2", "opus"
M4A = sound("140", "m4a", AAC, 129.478)
SOUNDS = [sound("139", "m4a", AAC, 48.8), sound("249", "webm", OPUS, 50.1), M4A, sound("251", "webm", OPUS, 142.3)]
MUXED = stream("18", "mp4", "avc1.42001E", AAC, 360)
WEBM = [picture(f"webm-{height}", "webm", VP9, height) for height in HEIGHTS]
MP4 = [picture(f"mp4-{height}", "mp4", H264, height) for height in HEIGHTS if height <= 1080]
MANY = [
    STORYBOARD, *SOUNDS, sound("140-drc", "m4a", AAC, 142.3, preference=-2), *MP4, *WEBM, MUXED,
    *(picture(f"av1-{height}", "mp4", AV1, height) for height in HEIGHTS),
    *(picture(f"mp4-{height}-60", "mp4", H264, height, fps=60) for height in (720, 1080)),
]
LANGUAGES = ("ar", "de", "en", "es", "fr", "hi", "ja", "pt")
DUBS = [sound(f"140-{language}", "m4a", AAC, 129 + place, language=language,
              language_preference=10 if language == "en" else -1) for place, language in enumerate(LANGUAGES)]


def hls(code: str, vcodec: Any, acodec: Any, height: int = 0, **more: Any) -> Record:
    return stream(code, "mp4", vcodec, acodec, height, protocol="m3u8_native", **more)


HLS_GROUPS = [
    hls("audio-0", "none", None, language="en"), hls("audio-1", "none", None, language="en"),
    hls("hls-800", H264, "none", 360), hls("hls-2000", H264, "none", 720), hls("hls-4000", H264, "none", 1080),
]

# The name, the page's record, and what has to come out: what is chosen, how many streams are offered, the duration.
SHAPES: list[tuple[str, Record, str]] = [
    ("many streams with storyboards", {"formats": MANY, "duration": 212}, "mp4-1080-60+140 of 22, 212 s"),
    ("4K in WebM and AV1 only", {"formats": [*SOUNDS, MUXED, *WEBM, picture("av1", "mp4", AV1, 2160)]},
     "18 of 13, 0 s"),
    ("WebM only", {"formats": [*SOUNDS, *WEBM]}, "webm-2160+251 of 12, 0 s"),
    ("eight dubs", {"formats": [*DUBS, *MP4]}, "mp4-1080+140-en of 14, 0 s"),
    ("HLS, sound in groups", {"formats": HLS_GROUPS}, "hls-4000+audio-1 of 5, 0 s"),
    ("one nameless stream", {"url": "http://127.0.0.1:9/clip.mp4", "ext": "mp4"}, "0 of 1, 0 s"),
    ("nameless sound", {"url": "http://127.0.0.1:9/clip.mp3", "ext": "mp3"}, "0 of 1, 0 s"),
    ("a code that is a container", {"formats": [{**MUXED, "format_id": "mp4"}, {**MUXED, "format_id": "webm"}]},
     "fwebm of 2, 0 s"),
    ("some streams protected", {"formats": [*MP4, M4A, picture("drm", "mp4", H264, 2160, has_drm=True)]},
     "mp4-1080+140 of 7, 0 s"),
    ("all streams protected", {"formats": [{**MUXED, "has_drm": True}]}, "exit code 1: DRM protected"),
    ("live that has not begun", {"calls": [["raise_no_formats", "This live event will begin in 3 hours", True]]},
     "exit code 1: will begin in 3 hours"),
    ("storyboards only", {"formats": [STORYBOARD]}, "exit code 1: No stream of this page can be downloaded"),
    ("first entry not yet begun", {"_type": "playlist", "entries": [
        {"_type": "url", "url": address(name)} for name in ("live that has not begun", "one nameless stream")]},
     "0 of 1, 0 s"),
]


class Bench(HostBench):
    def result(self, name: str, expected: str) -> str:
        shapes = self.folder / "shapes.json"
        shapes.write_text(json.dumps({address(name).rpartition("/")[2]: record for name, record, _ in SHAPES}))
        found = self.fetch(address(name), "--json", PYTHONPATH=str(HERE / "plugin"), NOX_SHAPES=str(shapes))
        if found.returncode != 0:
            words = expected.partition(": ")[2]
            return f"exit code {found.returncode}: {words if words and words in found.stderr else found.stderr.strip()}"
        page = json.loads(found.stdout)
        chosen = "+".join(filter(None, (page["choice"].get("format"), page["choice"].get("audio"))))
        return f"{chosen} of {len(page['streams'])}, {page['duration']} s"

    def rows(self) -> list[Row]:
        return [(name, expected, functools.partial(self.result, name, expected)) for name, _, expected in SHAPES]


if __name__ == "__main__":
    sys.exit(host_bench.main(host_bench.parser(__doc__ or "").parse_args(), Bench))

"""Shapes of descriptions as sites have them, through the tool by a plugin: what nox-fetch chooses of them."""

import json
from typing import Any

from front_runs import PLUGIN
from staged_host import HostTest

Record = dict[str, Any]
SITE = "http://shapes.invalid/"
H264, VP9, AV1, AAC = "avc1.640028", "vp9", "av01.0.08M.08", "mp4a.40.2"


def stream(code: str, ext: str, vcodec: Any, acodec: Any, **more: Any) -> Record:
    return {"format_id": code, "url": f"{SITE}{code}", "ext": ext, "vcodec": vcodec, "acodec": acodec, **more}


def picture(code: str, ext: str, codec: str, height: int, **more: Any) -> Record:
    return stream(code, ext, codec, "none", width=height * 16 // 9, height=height, format_note="DASH video", **more)


def sound(code: str, rate: float, **more: Any) -> Record:
    return stream(code, "m4a", "none", AAC, abr=rate, format_note="DASH audio", **more)


STORYBOARD = stream("sb0", "mhtml", "none", "none", format_note="storyboard", protocol="mhtml")
M4A, MUXED, LARGE = sound("140", 129.478), stream("18", "mp4", H264, AAC), picture("1080", "mp4", H264, 1080)
MANY = [STORYBOARD, sound("139", 48.8), M4A, sound("140-drc", 142.3, preference=-2), MUXED, LARGE,
        picture("720", "mp4", H264, 720), picture("1080-60", "mp4", H264, 1080, fps=60),
        picture("av1", "mp4", AV1, 2160), picture("vp9", "webm", VP9, 2160)]
DUBS = [sound(f"140-{language}", 129 + place, language=language, language_preference=10 if language == "en" else -1)
        for place, language in enumerate(("de", "en", "pt"))]
HLS_GROUPS = [stream(code, "mp4", vcodec, acodec, protocol="m3u8_native", height=height) for
              code, vcodec, acodec, height in (("audio-0", "none", None, None), ("audio-1", "none", None, None),
                                               ("hls-360", H264, "none", 360), ("hls-720", H264, "none", 720))]
# By the page's name: its record, and what has to come out: what is chosen, how many streams are offered, the duration.
SHAPES: dict[str, tuple[Record, str]] = {
    "many": ({"formats": MANY, "duration": 212}, "1080-60+140 of 8, 212 s"),
    "dubs": ({"formats": [*DUBS, LARGE]}, "1080+140-en of 4, 0 s"),
    "hls-groups": ({"formats": HLS_GROUPS}, "hls-720+audio-1 of 4, 0 s"),
    "nameless": ({"url": "http://127.0.0.1:9/clip.mp4", "ext": "mp4"}, "0 of 1, 0 s"),
    "nameless-sound": ({"url": "http://127.0.0.1:9/clip.mp3", "ext": "mp3"}, "0 of 1, 0 s"),
    "container": ({"formats": [{**MUXED, "format_id": "mp4"}, {**MUXED, "format_id": "webm"}]}, "fwebm of 2, 0 s"),
    "some-protected": ({"formats": [LARGE, M4A, {**LARGE, "format_id": "2", "has_drm": True}]}, "1080+140 of 2, 0 s"),
    "all-protected": ({"formats": [{**MUXED, "has_drm": True}]}, "DRM protected"),
    "not-begun": ({"calls": [["raise_no_formats", "This event will begin in 3 hours", True]]}, "will begin in 3 hours"),
    "storyboards-only": ({"formats": [STORYBOARD]}, "No stream of this page can be downloaded"),
    "first-not-begun": ({"_type": "playlist", "entries": [{"_type": "url", "url": f"{SITE}{name}"} for name in (
        "not-begun", "nameless")]}, "0 of 1, 0 s"),
}


class ShapesTest(HostTest):
    def test_shapes(self) -> None:
        file = self.folder / "shapes.json"
        file.write_text(json.dumps({name: record for name, (record, _) in SHAPES.items()}))
        for name, (_, expected) in SHAPES.items():
            with self.subTest(name=name):
                fetched = self.host.fetch(SITE + name, "--json", PYTHONPATH=PLUGIN, NOX_SHAPES=str(file))
                if fetched.returncode != 0:
                    self.assertEqual(fetched.returncode, 1)
                    self.assertIn(expected, fetched.stderr)
                    continue
                page = json.loads(fetched.stdout)
                chosen = "+".join(filter(None, (page["choice"].get("format"), page["choice"].get("audio"))))
                self.assertEqual(f"{chosen} of {len(page['streams'])}, {page['duration']} s", expected)

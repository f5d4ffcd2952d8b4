#!/usr/bin/python3
"""Kinds of pages, versions of the tool, and what comes out: by nox-fetch, from a server of our own.

    page_kinds.py --fetch NOX-FETCH [--tool PACKAGE]... [--only WORD] [--plain]

"""

import functools
import json
import pathlib
import subprocess
import sys
from typing import Callable, NamedTuple, Optional

import host_bench
import page_media
import page_server
from front_runs import TIME_LIMIT
from host_bench import HostBench, Row

WHOLE = "mp4: h264 640x360, aac, 6 s"


class Kind(NamedTuple):
    name: str
    address: str
    expected: str
    requests: str = "1 0"  # for the page and for manifests
    prepare: Optional[Callable[[pathlib.Path], dict[str, str]]] = None  # returns what to change in the environment


def user_configuration(folder: pathlib.Path) -> dict[str, str]:
    (folder / "yt-dlp").mkdir(parents=True, exist_ok=True)
    (folder / "yt-dlp" / "config").write_text("--quiet\n-x\n-o /nowhere/%(title)s\n--remux-video mkv\n")
    return {"XDG_CONFIG_HOME": str(folder)}


def open_cache(folder: pathlib.Path) -> dict[str, str]:
    pages = folder / "noxwebmedia" / "pycache" / "nox-pages"
    pages.mkdir(parents=True, exist_ok=True)
    pages.chmod(0o777)
    return {"XDG_CACHE_HOME": str(folder)}


def no_other_ffmpeg(_: pathlib.Path) -> dict[str, str]:
    return {"PATH": "/nowhere"}


KINDS = [
    Kind("progressive", "/page/progressive", WHOLE),
    Kind("DASH, whole files", "/page/dash-whole", WHOLE, "1 1"),
    Kind("DASH, segments", "/page/dash-segments", WHOLE, "1 1"),
    Kind("HLS, sound apart, TS", "/page/hls-apart-ts", WHOLE, "1 3"),
    Kind("HLS, sound apart, fMP4", "/page/hls-apart-fmp4", WHOLE, "1 3"),
    Kind("HLS, single", "/page/hls-single", WHOLE, "1 1"),
    Kind("WebM", "/page/webm", "webm: vp8 640x360, opus, 6 s"),
    Kind("direct MP4", "/media/clip.mp4", WHOLE, "0 0"),
    Kind("direct MP4 as octet-stream", "/media/octets/clip.mp4", WHOLE, "0 0"),
    Kind("direct MP3", "/media/clip.mp3", "mp3: mp3, 6 s", "0 0"),
    Kind("two videos", "/page/two-videos", WHOLE),
    Kind("broken embed beside a good one", "/page/broken-embed", WHOLE, "1 1"),
    Kind("og:video only", "/page/og-video", WHOLE),
    Kind("missing segment", "/page/hls-missing-segment", "exit code 3, nothing left"),
    Kind("user's configuration", "/page/progressive", WHOLE, prepare=user_configuration),
    Kind("stream's address has expired", "/page/expiring", WHOLE, "2 0"),
    Kind("cache that others may write to", "/page/dash-whole", WHOLE, "3 3", prepare=open_cache),
    Kind("ffmpeg only beside the host", "/page/hls-apart-ts", WHOLE, "1 3", prepare=no_other_ffmpeg),
]


def probe(file: pathlib.Path) -> str:
    """Such as "mp4: h264 640x360, aac, 6 s"."""
    words = ["ffprobe", "-v", "error", "-of", "json", "-show_entries",
             "stream=codec_name,codec_type,width,height:format=duration,format_name", str(file)]
    found = json.loads(subprocess.run(words, capture_output=True, check=True, timeout=TIME_LIMIT).stdout)
    texts = []
    for stream in found["streams"]:
        size = f" {stream['width']}x{stream['height']}" if stream["codec_type"] == "video" else ""
        texts.append(stream["codec_name"] + size)
    seconds = round(float(found["format"]["duration"]))
    names = found["format"]["format_name"].split(",")
    suffix = file.suffix[1:]
    container = suffix if suffix in names else f"{suffix} that is {names[0]}"
    return f"{container}: {', '.join(texts)}, {seconds} s"


class Bench(HostBench):
    """With the server of pages."""

    def __init__(self, folder: pathlib.Path, fetch: pathlib.Path) -> None:
        super().__init__(folder, fetch)
        page_media.make(folder / "media")
        self.server = page_server.PageServer(folder / "media")

    def result(self, kind: Kind) -> str:
        """What comes of the page, and how often page and manifests were asked for."""
        self.empty_work()
        changes = kind.prepare(self.folder / kind.prepare.__name__) if kind.prepare else {}
        self.server.take_counts()
        run = self.fetch(self.server.address + kind.address, "--quiet", **changes)
        requests = "{} {}".format(*self.server.take_counts())
        left = sorted(self.work.iterdir())
        if run.returncode != 0:
            return f"exit code {run.returncode}, {len(left) or 'nothing'} left"
        text = probe(left[0]) if len(left) == 1 else f"{len(left)} files"
        return text if requests == kind.requests else f"{text}; requests {requests} instead of {kind.requests}"

    def titles(self) -> str:
        wrong = []
        for number, title in enumerate(page_server.TITLES):
            run = self.fetch(f"{self.server.address}/page/title-{number}", "--json")
            found = json.loads(run.stdout).get("title", "") if run.returncode == 0 else ""
            # The tool numbers the videos of a page.
            if found.removesuffix(" (1)") != title:
                wrong.append(f"{title!r}: {found!r}")
        for text in wrong:
            print(text, file=sys.stderr)
        return f"{len(page_server.TITLES) - len(wrong)} of {len(page_server.TITLES)} exact"

    def rows(self) -> list[Row]:
        count = len(page_server.TITLES)
        rows: list[Row] = [(kind.name, kind.expected, functools.partial(self.result, kind)) for kind in KINDS]
        return [*rows, (f"{count} odd titles", f"{count} of {count} exact", self.titles)]


if __name__ == "__main__":
    sys.exit(host_bench.main(__doc__ or "", Bench))

#!/usr/bin/python3
"""Kinds of pages, versions of the tool, and what comes out: by nox-fetch, from a server of our own.

    page_kinds.py --fetch NOX-FETCH [--tool PACKAGE]... [--only WORD]
"""

import functools
import json
import pathlib
import subprocess
import sys
import time
from typing import Any, NamedTuple

import host_bench
import page_media
from front_runs import run, wait_for
from host_bench import HostBench, Row
from page_server import PageServer
from servers import BLOCK

WHOLE = "mp4: h264 640x360, aac, 6 s"
SEGMENTS = 48


class Kind(NamedTuple):
    name: str
    address: str
    expected: str = WHOLE
    requests: str = "1 0"  # for the page and for manifests


KINDS = [
    Kind("progressive", "/page/progressive"),
    Kind("DASH, whole files", "/page/dash-whole", WHOLE, "1 1"),
    Kind("DASH, segments", "/page/dash-segments", WHOLE, "1 1"),
    Kind("HLS, sound apart, TS", "/page/hls-apart-ts", WHOLE, "1 3"),
    Kind("HLS, sound apart, fMP4", "/page/hls-apart-fmp4", WHOLE, "1 3"),
    Kind("HLS, single", "/page/hls-single", WHOLE, "1 1"),
    Kind("WebM", "/page/webm", "webm: vp8 640x360, opus, 6 s"),
    Kind("direct MP4", "/media/clip.mp4", WHOLE, "0 0"),
    Kind("direct MP3", "/media/clip.mp3", "mp3: mp3, 6 s", "0 0"),
    Kind("two videos", "/page/two-videos"),
    Kind("missing segment", "/page/hls-missing-segment", "exit code 3, nothing left"),
    Kind("stream's address has expired", "/page/expiring", WHOLE, "2 0"),
]
# Addresses of downloads that are killed, and the shares that are there then.
KILLED: list[tuple[str, tuple[float, ...]]] = [
    ("/page/many-progressive", (0.5,)), ("/page/many-dash-whole", (0.3, 0.95)), ("/page/many-dash", (0.3, 0.95)),
    ("/page/many-hls", (0.5,)),
]
RESUMED = "the rest, the same file, nothing else"
# Data that is on its way when a run ends: of a file some blocks, of segments up to five of them.
SLACK = 0.25


def probe(file: pathlib.Path) -> str:
    """Such as "mp4: h264 640x360, aac, 6 s"."""
    words = ["ffprobe", "-v", "error", "-of", "json", "-show_entries",
             "stream=codec_name,codec_type,width,height:format=duration,format_name", file]
    found = json.loads(run(words, check=True).stdout)
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

    def __init__(self, *arguments: Any) -> None:
        super().__init__(*arguments)
        page_media.make(self.folder / "media")
        page_media.make_many(self.folder / "media" / "many", SEGMENTS)
        self.server = PageServer(self.folder / "media")

    def result(self, kind: Kind) -> str:
        """What comes of the page, and how often page and manifests were asked for."""
        self.empty_work()
        self.server.begin()
        # The tool finds ffmpeg beside the host.
        fetched = self.fetch(self.server.address + kind.address, "--quiet", PATH="/nowhere")
        requests = "{} {}".format(*self.server.counts())
        left = sorted(self.work.iterdir())
        if fetched.returncode != 0:
            return f"exit code {fetched.returncode}, {len(left) or 'nothing'} left"
        text = probe(left[0]) if len(left) == 1 else f"{len(left)} files"
        return text if requests == kind.requests else f"{text}; requests {requests} instead of {kind.requests}"

    def fetch_whole(self, address: str, *options: str) -> tuple[bytes, int]:
        """The file, and how many bytes were sent for it."""
        self.server.begin()
        fetched = self.fetch(address, "--quiet", *options)
        files = list(self.work.iterdir())
        assert len(files) == 1, (files, fetched)
        data = files[0].read_bytes()
        self.empty_work()
        return data, self.server.sent

    def resumed(self, path: str, share: float) -> str:
        """What comes of a download that is killed and of the same command again."""
        self.empty_work()
        address = self.server.address + path
        original, total = self.fetch_whole(address)
        self.server.begin(limit := int(total * share))
        with subprocess.Popen([self.host / "nox-fetch", "-c", address], cwd=self.work, env=self.environment(),
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as child:
            # Whatever fits is sent, and a moment later written.
            wait_for(lambda: self.server.sent + BLOCK > limit)
            time.sleep(0.5)
            child.kill()
        data, rest = self.fetch_whole(address, "-c")
        if data != original:
            return "another file"
        return RESUMED if rest <= total * (1 - share + SLACK) else f"{rest} of {total} bytes fetched again"

    def rows(self) -> list[Row]:
        rows: list[Row] = [(kind.name, kind.expected, functools.partial(self.result, kind)) for kind in KINDS]
        return rows + [(f"{path}, killed at {share}", RESUMED, functools.partial(self.resumed, path, share))
                       for path, shares in KILLED for share in shares]


if __name__ == "__main__":
    sys.exit(host_bench.main(host_bench.parser(__doc__ or "").parse_args(), Bench))

#!/usr/bin/python3
"""Kinds of pages, versions of the tool, and what comes out: by nox-fetch, from a server of our own.

    page_kinds.py --fetch NOX-FETCH [--tool [NAME=]PACKAGE]... [--only WORD] [--plain]

--fetch F    the nox-fetch to try; it is copied, and the programs that it needs are put beside it
--tool P     the yt_dlp package to try: "installed" (the default), a folder, a wheel or an archive of its sources;
             can be given several times
--only W     only the kinds whose name holds this word
--plain      the tool without its front, for comparison; then differences are no failure

Prints a table. The exit code is 1 when something came out otherwise than it has to.
"""

import argparse
import functools
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
from typing import Callable, Dict, List, NamedTuple, Optional, Tuple

import page_media
import page_server

SCRIPTS = pathlib.Path(__file__).resolve().parents[2] / "scripts"
PATIENCE = 120  # seconds
WHOLE = "mp4: h264 640x360, aac, 6 s"


class Kind(NamedTuple):
    name: str
    address: str
    expected: str
    requests: str = "1 0"  # for the page and for manifests
    prepare: Optional[Callable[["Bench"], Dict[str, str]]] = None  # returns what to change in the environment


def user_configuration(bench: "Bench") -> Dict[str, str]:
    folder = bench.folder / "config"
    (folder / "yt-dlp").mkdir(parents=True, exist_ok=True)
    (folder / "yt-dlp" / "config").write_text("--quiet\n-x\n-o /nowhere/%(title)s\n--remux-video mkv\n")
    return {"XDG_CONFIG_HOME": str(folder)}


def no_other_ffmpeg(_: "Bench") -> Dict[str, str]:
    return {"PATH": "/nowhere"}


KINDS = [
    Kind("progressive", "/page/progressive", WHOLE),
    Kind("DASH, whole files", "/page/dash-whole", WHOLE, "1 1"),
    Kind("DASH, segments", "/page/dash-segments", WHOLE, "1 1"),
    Kind("HLS, sound apart, TS", "/page/hls-apart-ts", WHOLE, "1 3"),
    Kind("HLS, sound apart, fMP4", "/page/hls-apart-fmp4", WHOLE, "1 3"),
    Kind("HLS, single", "/page/hls-single", WHOLE, "1 2"),
    Kind("WebM", "/page/webm", "webm: vp8 640x360, opus, 6 s"),
    Kind("direct MP4", "/media/clip.mp4", WHOLE, "0 0"),
    Kind("direct MP4 as octet-stream", "/media/octets/clip.mp4", WHOLE, "0 0"),
    Kind("direct MP3", "/media/clip.mp3", "mp3: mp3, 6 s", "0 0"),
    Kind("two videos", "/page/two-videos", WHOLE),
    Kind("broken embed beside a good one", "/page/broken-embed", WHOLE, "1 1"),
    Kind("og:video only", "/page/og-video", WHOLE),
    Kind("missing segment", "/page/hls-missing-segment", "exit code 3, nothing left"),
    Kind("user's configuration", "/page/progressive", WHOLE, prepare=user_configuration),
    Kind("ffmpeg only beside the host", "/page/hls-apart-ts", WHOLE, "1 3", prepare=no_other_ffmpeg),
]


def probe(file: pathlib.Path) -> str:
    """Such as "mp4: h264 640x360, aac, 6 s"."""
    words = ["ffprobe", "-v", "error", "-of", "json", "-show_entries",
             "stream=codec_name,codec_type,width,height:format=duration,format_name", str(file)]
    found = json.loads(subprocess.run(words, capture_output=True, check=True, timeout=PATIENCE).stdout)
    texts = []
    for stream in found["streams"]:
        size = f" {stream['width']}x{stream['height']}" if stream["codec_type"] == "video" else ""
        texts.append(stream["codec_name"] + size)
    seconds = round(float(found["format"]["duration"]))
    names = found["format"]["format_name"].split(",")
    suffix = file.suffix[1:]
    container = suffix if suffix in names else f"{suffix} that is {names[0]}"
    return f"{container}: {', '.join(texts)}, {seconds} s"


class Bench:
    """A host with its programs in a folder of its own, and the server."""

    def __init__(self, folder: pathlib.Path, fetch: pathlib.Path, server: page_server.PageServer) -> None:
        self.folder = folder
        self.host = folder / "host"
        self.work = folder / "work"
        self.server = server
        self.host.mkdir()
        self.work.mkdir()
        shutil.copy(fetch, self.host / "nox-fetch")

    def stage(self, package: str, is_plain: bool) -> str:
        """Puts this version beside the host; its number."""
        options = [] if package == "installed" else ["--package", package]
        subprocess.run([SCRIPTS / "stage-programs.sh", self.host, *options], check=True)
        tool = self.host / "yt.zip"
        if is_plain:
            subprocess.run([SCRIPTS / "make-tool-archive.py", tool, "--plain", *options], check=True)
        words = ["/usr/bin/python3", str(tool), "--version"]
        return subprocess.run(words, capture_output=True, check=True, text=True).stdout.strip()

    def fetch(self, address: str, changes: Dict[str, str], *options: str) -> "subprocess.CompletedProcess[str]":
        private = {name: str(self.folder / name) for name in ("XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME")}
        words = [str(self.host / "nox-fetch"), *options, self.server.address + address]
        return subprocess.run(words, capture_output=True, text=True, timeout=PATIENCE, cwd=self.work,
                              env={**os.environ, **private, "HOME": str(self.folder), **changes})

    def result(self, kind: Kind) -> str:
        """What comes of the page, and how often page and manifests were asked for."""
        shutil.rmtree(self.work, ignore_errors=True)
        self.work.mkdir()
        changes = kind.prepare(self) if kind.prepare else {}
        self.server.take_counts()
        run = self.fetch(kind.address, changes, "--quiet")
        requests = "{} {}".format(*self.server.take_counts())
        left = sorted(self.work.iterdir())
        if run.returncode != 0:
            return f"exit code {run.returncode}, {len(left) or 'nothing'} left"
        text = probe(left[0]) if len(left) == 1 else f"{len(left)} files"
        return text if requests == kind.requests else f"{text}; requests {requests} instead of {kind.requests}"

    def titles(self) -> str:
        wrong = []
        for number, title in enumerate(page_server.TITLES):
            run = self.fetch(f"/page/title-{number}", {}, "--json")
            found = json.loads(run.stdout).get("title", "") if run.returncode == 0 else ""
            # The tool numbers the videos of a page.
            if found.removesuffix(" (1)") != title:
                wrong.append(f"{title!r}: {found!r}")
        for text in wrong:
            print(text, file=sys.stderr)
        return f"{len(page_server.TITLES) - len(wrong)} of {len(page_server.TITLES)} exact"


def run(bench: Bench, options: argparse.Namespace) -> List[str]:
    """The lines of the table that are not as they have to be."""
    differences = []
    print("| Page | Tool | Result | |\n|---|---|---|---|")
    for package in options.tool or ["installed"]:
        version = bench.stage(package, options.plain)
        rows: List[Tuple[str, str, Callable[[], str]]] = []
        rows += [(kind.name, kind.expected, functools.partial(bench.result, kind)) for kind in KINDS]
        count = len(page_server.TITLES)
        rows.append((f"{count} odd titles", f"{count} of {count} exact", bench.titles))
        for name, expected, result in rows:
            if options.only not in name:
                continue
            found = result()
            line = f"| {name} | {version} | {found} | {'as it has to be' if found == expected else 'not ' + expected} |"
            print(line, flush=True)
            if found != expected:
                differences.append(line)
    return differences


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--fetch", type=pathlib.Path, required=True)
    parser.add_argument("--tool", action="append")
    parser.add_argument("--only", default="")
    parser.add_argument("--plain", action="store_true")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        media = folder / "media"
        media.mkdir()
        page_media.make(media)
        with page_server.PageServer(media) as server:
            differences = run(Bench(folder, options.fetch.resolve(), server), options)
            server.shutdown()
    return 1 if differences and not options.plain else 0


if __name__ == "__main__":
    sys.exit(main())

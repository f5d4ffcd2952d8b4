#!/usr/bin/python3
"""What whole runs of nox-fetch cost beside one run of the plain tool for the same job, on pages as they are.

    run_bench.py --fetch NOX-FETCH [--tool PACKAGE]... [--only WORD] [--pairs N]

--fetch F    the nox-fetch to measure; it is copied, and the programs that it needs are put beside it
--tool P     the yt_dlp package to measure with: "installed" (the default), a folder, a wheel or an archive of its
             sources; can be given several times
--only W     only the pages whose name holds this word

Both sides run in turn, in changing order; the median of the ratios of all pairs counts. The exit code is 1 when a
median is above its bar. The modules that it shares with tests are in tests/tool, which has to be in PYTHONPATH.
"""

import argparse
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time
from typing import Callable, NamedTuple

import page_media
import page_server
from front_runs import TIME_LIMIT, run
from staged_host import SCRIPTS, StagedHost, package_options

SEGMENTS = 80
SEGMENT_DELAY = 0.06  # seconds
PLAIN_TOOL = "plain-yt.zip"


class Page(NamedTuple):
    name: str
    address: str
    delay: float  # seconds until the page is answered
    bar: float


PAGES = [
    Page("page of a second", "/page/dash-whole/manifest.mpd", 1, 1.2),
    Page(f"DASH, {SEGMENTS} segments of 60 ms", "/page/many/dash/manifest.mpd", 0, 0.7),
    Page(f"HLS, {SEGMENTS} segments of 60 ms", "/page/many/hls/clip.m3u8", 0, 0.7),
]


class Handler(page_server.Handler):
    server: "SlowServer"

    def answer(self, path: str) -> None:
        is_segment = path.endswith((".m4s", ".ts"))
        time.sleep(self.server.delay if path.startswith("/page/") else SEGMENT_DELAY if is_segment else 0)
        super().answer(path)


class SlowServer(page_server.PageServer):
    delay = 0.0  # seconds until a page is answered


class Bench(StagedHost):
    def __init__(self, folder: pathlib.Path, fetch: pathlib.Path, server: SlowServer) -> None:
        super().__init__(folder, fetch)
        self.server = server
        self.requests = ""
        # Both sides keep bytecode, as they do for users, also where the one who builds keeps none.
        os.environ.pop("PYTHONDONTWRITEBYTECODE", None)

    def stage_both(self, package: str) -> str:
        """The tool's version."""
        packages = [] if package == "installed" else [package]
        self.stage(packages)
        plain_tool = self.programs / PLAIN_TOOL
        run([SCRIPTS / "make-tool-archive.py", plain_tool, "--plain", *package_options(packages)], check=True)
        return run(["/usr/bin/python3", plain_tool, "--version"], check=True).stdout.strip()

    def run_host(self, page: Page) -> None:
        self.server.begin()
        fetched = self.fetch(self.server.address + page.address, "--quiet", "-o", "clip.mp4")
        if fetched.returncode != 0:
            sys.exit(f"{page.name}: nox-fetch failed: {fetched.stderr}")
        self.requests = "{} + {}".format(*self.server.counts())

    def run_tool(self, page: Page) -> None:
        words = [str(self.programs / "python3.10/bin/python3.10"), "-X", f"pycache_prefix={self.folder / 'pycache'}",
                 str(self.programs / PLAIN_TOOL), "--ignore-config", "--quiet", "--no-warnings", "-f", "bv+ba/b",
                 "--merge-output-format", "mp4", "-o", "clip.%(ext)s", self.server.address + page.address]
        subprocess.run(words, check=True, cwd=self.work, timeout=TIME_LIMIT)

    def seconds(self, work: Callable[[Page], None], page: Page) -> float:
        self.empty_work()
        begin = time.monotonic()
        work(page)
        elapsed = time.monotonic() - begin
        left = [file.name for file in self.work.iterdir()]
        if left != ["clip.mp4"]:
            sys.exit(f"{page.name}: {left} instead of clip.mp4")
        return elapsed


def measure(bench: Bench, page: Page, version: str, pairs: int) -> bool:
    """Whether the bar holds."""
    bench.server.delay = page.delay
    host: list[float] = []
    tool: list[float] = []
    for pair in range(-1, pairs):  # the first pair fills the caches
        order = [(host, bench.run_host), (tool, bench.run_tool)]
        for times, work in reversed(order) if pair % 2 else order:
            times.append(bench.seconds(work, page))
    ratio = statistics.median(own / plain for own, plain in zip(host[1:], tool[1:]))
    is_good = ratio <= page.bar
    print(f"| {page.name} | {version} | {statistics.median(host[1:]):.2f} s | {statistics.median(tool[1:]):.2f} s | "
          f"{ratio:.2f} | {page.bar} | {bench.requests} | {'' if is_good else 'above the bar'} |", flush=True)
    return is_good


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--fetch", type=pathlib.Path, required=True)
    parser.add_argument("--tool", action="append")
    parser.add_argument("--only", default="")
    parser.add_argument("--pairs", type=int, default=5)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        media = folder / "media"
        page_media.make(media)
        page_media.make_many(media / "many", SEGMENTS)
        print("| Page | Tool | nox-fetch | plain tool | ratio | bar | requests for page + manifest | |")
        print("|---|---|---|---|---|---|---|---|")
        is_good = True
        with SlowServer(media, Handler) as server:
            bench = Bench(folder, options.fetch, server)
            for package in options.tool or ["installed"]:
                version = bench.stage_both(package)
                for page in PAGES:
                    if options.only in page.name:
                        is_good = measure(bench, page, version, options.pairs) and is_good
    return 0 if is_good else 1


if __name__ == "__main__":
    sys.exit(main())

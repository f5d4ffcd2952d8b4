#!/usr/bin/python3
"""Downloads of nox-fetch that end in their middle, and the same command again: kinds of streams and of ends.

    host_resume.py --fetch NOX-FETCH [--tool PACKAGE]... [--only WORD]

"""

import functools
import hashlib
import os
import pathlib
import signal
import subprocess
import sys
import time
from typing import Any

import host_bench
import page_media
import page_server
from front_runs import TIME_LIMIT, wait_for
from host_bench import HostBench, Row
from servers import BLOCK

SECONDS = 24
KINDS: dict[str, str] = {
    "progressive": "/page/progressive",
    "DASH, whole files": "/page/dash-whole",
    "DASH, segments": "/page/dash-segments",
    "HLS, single": "/page/hls-single",
}
EVENTS = ("kill", "kill in the second stream", "pause", "the tool's end", "server stops")
GOOD = "the rest, the same file, nothing else"
# Data that is on its way when a run ends: of a file some blocks, of segments up to five of them.
SLACK = 0.35


class Handler(page_server.Handler):
    server: "Server"

    def send(self, status: int, kind: str, data: bytes, with_body: bool) -> None:
        path = self.path.partition("?")[0]
        if not path.startswith("/media/") or path.endswith(page_server.MANIFESTS):
            super().send(status, kind, data, with_body)
            return
        etag = f'"{hashlib.sha1(data).hexdigest()}"'
        status, first, end = self.asked(len(data), etag)
        self.begin_answer(status, first, end, len(data), etag, kind)
        for place in range(first, end if with_body else first, BLOCK):
            block = data[place:min(place + BLOCK, end)]
            if not self.server.may_send(len(block)):
                self.close_connection = True
                return
            self.wfile.write(block)


class Server(page_server.PageServer):
    """Stops to send media after so many bytes, until it is told to go on."""

    limit = sys.maxsize
    sent = 0
    is_broken = False

    def may_send(self, size: int) -> bool:
        while not self.is_broken:
            with self.lock:
                if self.sent + size <= self.limit:
                    self.sent += size
                    return True
            time.sleep(0.02)
        return False

    def begin(self, limit: int = sys.maxsize) -> None:
        with self.lock:
            self.limit, self.sent, self.is_broken = limit, 0, False

    def get_request(self) -> Any:
        request = super().get_request()
        if self.is_broken:
            self.shutdown_request(request[0])
            raise OSError("as if nobody listened")
        return request


class Bench(HostBench):
    def __init__(self, folder: pathlib.Path, fetch: pathlib.Path) -> None:
        super().__init__(folder, fetch)
        make_media(folder / "media")
        self.server = Server(folder / "media", Handler)
        self.set_settings("--retries 0\n--fragment-retries 0\n")

    @functools.lru_cache(maxsize=None)
    def whole(self, address: str) -> tuple[bytes, int]:
        """The file, and how many bytes are sent for it."""
        self.server.begin()
        self.fetch(address, "-q")
        [file] = self.work.iterdir()
        data = file.read_bytes()
        self.empty_work()
        return data, self.server.sent

    def interrupt(self, child: Any, event: str) -> None:
        if event.startswith("kill"):
            child.send_signal(signal.SIGKILL)
        elif event == "pause":
            child.send_signal(signal.SIGINT)
        elif event == "the tool's end":
            children = pathlib.Path(f"/proc/{child.pid}/task/{child.pid}/children").read_text().split()
            os.kill(int(children[0]), signal.SIGKILL)
        else:
            self.server.is_broken = True
        child.wait(TIME_LIMIT)

    def result(self, kind: str, event: str) -> str:
        self.empty_work()
        address = self.server.address + KINDS[kind]
        original, total = self.whole(address)
        share = 0.97 if "second" in event else 0.6
        limit = int(total * share)
        self.server.begin(limit)
        child = subprocess.Popen([self.host / "nox-fetch", "-c", address], cwd=self.work, env=self.environment(),
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        # Whatever fits is sent, and a moment later written.
        wait_for(lambda: self.server.sent + BLOCK > limit)
        time.sleep(0.5)
        self.interrupt(child, event)
        left = [entry.name for entry in self.work.iterdir()]
        if len(left) != 1 or not left[0].startswith(".nox-"):
            return f"left behind: {left}"
        self.server.begin()
        run = self.fetch(address, "-c", "-q")
        files = list(self.work.iterdir())
        if run.returncode != 0 or len(files) != 1:
            return f"exit code {run.returncode}, {len(files)} files: {run.stderr}"
        if files[0].read_bytes() != original:
            return "another file"
        fetched = self.server.sent
        return GOOD if fetched <= total * (1 - share + SLACK) else f"{fetched} of {total} bytes fetched again"

    def rows(self) -> list[Row]:
        return [(f"{kind}: {event}", GOOD, functools.partial(self.result, kind, event)) for kind in KINDS
                for event in EVENTS if "second" not in event or kind.startswith("DASH")]


def make_media(folder: pathlib.Path) -> None:
    folder.mkdir()
    picture = ["-f", "lavfi", "-i", f"testsrc2=size=640x360:rate=10:duration={SECONDS},noise=c0s=20:c0f=t"]
    sound = ["-f", "lavfi", "-i", f"anoisesrc=d={SECONDS}:a=0.2"]
    keys = ["-x264-params", "keyint=10:min-keyint=10:scenecut=0"]
    page_media.ffmpeg(*picture, *sound, *page_media.H264[:-2], *keys, *page_media.AAC, "-movflags", "+faststart",
                      folder / "clip.mp4")
    page_media.SEGMENT = 1
    page_media.SECONDS = SECONDS
    page_media.dash(folder / "dash")
    page_media.dash_whole(folder / "dash-whole")
    page_media.hls_single(folder / "hls")


if __name__ == "__main__":
    sys.exit(host_bench.main(__doc__ or "", Bench))

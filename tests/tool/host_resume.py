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
import tempfile
import threading
import time
from typing import Any, Callable

import host_bench
import page_media
import page_server
from host_bench import TIMEOUT, HostBench, Row

SECONDS = 24
KINDS: dict[str, str] = {
    "progressive": "/page/progressive",
    "DASH, whole files": "/page/dash-whole",
    "DASH, segments": "/page/dash-segments",
    "HLS, single": "/page/hls-single",
}
EVENTS = ("kill", "kill in the second stream", "pause", "the tool's end", "server stops")
GOOD = "the rest, the same file, nothing else"
BLOCK = 1 << 14
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
        if self.headers.get("If-None-Match") == etag:
            self.send_response(304)
            self.end_headers()
            return
        wanted = self.headers.get("Range") or ""
        first = 0
        if wanted.startswith("bytes=") and wanted.endswith("-") and self.headers.get("If-Range") in (None, etag):
            first = int(wanted[6:-1])
        self.send_response(206 if first else status)
        self.send_header("Content-Type", kind)
        self.send_header("ETag", etag)
        if first:
            self.send_header("Content-Range", f"bytes {first}-{len(data) - 1}/{len(data)}")
        self.send_header("Content-Length", str(len(data) - first))
        self.end_headers()
        for place in range(first, len(data) if with_body else 0, BLOCK):
            block = data[place:place + BLOCK]
            if not self.server.may_send(len(block)):
                self.close_connection = True
                return
            try:
                self.wfile.write(block)
            except OSError:
                return


class Server(page_server.PageServer):
    """Stops to send media after so many bytes, until it is told to go on."""

    def __init__(self, media: pathlib.Path) -> None:
        super().__init__(media)
        self.RequestHandlerClass = Handler
        self.limit = sys.maxsize
        self.sent = 0
        self.is_broken = False
        self.lock = threading.Lock()

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

    def handle_error(self, *_: object) -> None:
        pass


def wait_for(condition: Callable[[], bool]) -> None:
    deadline = time.monotonic() + TIMEOUT
    while not condition():
        if time.monotonic() > deadline:
            raise TimeoutError
        time.sleep(0.02)


class Bench(HostBench):
    def __init__(self, folder: pathlib.Path, fetch: pathlib.Path, server: Server) -> None:
        super().__init__(folder, fetch)
        self.server = server
        settings = folder / "XDG_CONFIG_HOME" / "noxwebmedia"
        settings.mkdir(parents=True)
        (settings / "tool.conf").write_text("--retries 0\n--fragment-retries 0\n")
        (settings / "tool.conf").chmod(0o600)

    @functools.lru_cache(maxsize=None)
    def whole(self, address: str) -> tuple[bytes, int]:
        """The file, and how many bytes are sent for it."""
        self.server.begin()
        self.fetch(address, {}, "-q")
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
        child.communicate(timeout=TIMEOUT)

    def result(self, kind: str, event: str) -> str:
        self.empty_work()
        address = self.server.address + KINDS[kind]
        original, total = self.whole(address)
        share = 0.97 if "second" in event else 0.6
        limit = int(total * share)
        self.server.begin(limit)
        private = {name: str(self.folder / name) for name in ("XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME")}
        child = subprocess.Popen([self.host / "nox-fetch", "-c", address], cwd=self.work, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.DEVNULL, env={**os.environ, **private, "HOME": str(self.folder)})
        # Whatever fits is sent, and a moment later written.
        wait_for(lambda: self.server.sent + BLOCK > limit)
        time.sleep(0.5)
        self.interrupt(child, event)
        left = [entry.name for entry in self.work.iterdir()]
        if len(left) != 1 or not left[0].startswith(".nox-"):
            return f"left behind: {left}"
        self.server.begin()
        run = self.fetch(address, {}, "-c", "-q")
        files = list(self.work.iterdir())
        if run.returncode != 0 or len(files) != 1:
            return f"exit code {run.returncode}, {len(files)} files: {run.stderr}"
        if files[0].read_bytes() != original:
            return "another file"
        fetched = self.server.sent
        return GOOD if fetched <= total * (1 - share + SLACK) else f"{fetched} of {total} bytes fetched again"

    def rows(self) -> list[Row]:
        rows: list[Row] = []
        for kind in KINDS:
            for event in EVENTS:
                if "second" not in event or kind.startswith("DASH"):
                    rows.append((f"{kind}: {event}", GOOD, functools.partial(self.result, kind, event)))
        return rows


def make_media(folder: pathlib.Path) -> None:
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


def main() -> int:
    wanted = host_bench.parser(__doc__ or "").parse_args()
    wanted.plain = False
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        media = folder / "media"
        media.mkdir()
        make_media(media)
        with Server(media) as server:
            bench = Bench(folder, wanted.fetch, server)
            code = host_bench.print_table(bench, bench.rows(), wanted)
            server.shutdown()
    return code


if __name__ == "__main__":
    sys.exit(main())

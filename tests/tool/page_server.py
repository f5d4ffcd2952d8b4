"""Serves media, and pages that show them, on a free port of the loopback address.

"/page/a.mp4+b.webm" shows "/media/a.mp4" and "/media/b.webm". In the folder "once" the addresses of media expire.
"""

import pathlib
import re
import sys

import servers

KINDS = {
    ".mp4": "video/mp4", ".m4a": "audio/mp4", ".m4s": "video/iso.segment", ".webm": "video/webm",
    ".mp3": "audio/mpeg", ".ts": "video/mp2t", ".m3u8": "application/x-mpegURL", ".mpd": "application/dash+xml",
}


class Handler(servers.Handler):
    protocol_version = "HTTP/1.1"
    server: "PageServer"

    def do_GET(self) -> None:
        self.answer(self.path.partition("?")[0])

    do_HEAD = do_GET

    def answer(self, path: str) -> None:
        self.server.paths.append(path)
        if path.startswith("/page/"):
            sources = path[6:].replace("once", f"once-{self.server.counts()[0]}").split("+")
            videos = [f'<video><source src="/media/{source}" type="{KINDS[pathlib.Path(source).suffix]}"></video>'
                      for source in sources]
            self.send(f"<!DOCTYPE html><html><title>The page</title>{''.join(videos)}</html>".encode(), "text/html")
            return
        # The addresses that the first reading of a page gives are no longer good.
        file = self.server.media / re.sub("/once-[2-9]/", "/", path).removeprefix("/media/")
        if file.is_file():
            self.send(file.read_bytes(), KINDS[file.suffix])
        else:
            self.send_error(404)

    def send(self, data: bytes, kind: str) -> None:
        is_media = kind.startswith(("video", "audio"))
        etag = f'"{self.path} {len(data)}"' if is_media else ""
        status, first, end = self.asked(len(data), etag)
        self.begin_answer(status, first, end, len(data), etag, kind)
        for place in range(first, end if self.command == "GET" else first, servers.BLOCK):
            block = data[place:min(place + servers.BLOCK, end)]
            if is_media:
                self.server.wait_for_turn(len(block))
            self.wfile.write(block)


class PageServer(servers.Server):
    def __init__(self, media: pathlib.Path, handler: type[Handler] = Handler) -> None:
        super().__init__(handler)
        self.media = media
        self.begin()

    def begin(self, limit: int = sys.maxsize) -> None:
        """Counts anew, and sends no more than so many bytes of media until the next call."""
        self.paths: list[str] = []  # that are asked for
        with self.lock:
            self.sent, self._limit = 0, limit

    def wait_for_turn(self, size: int) -> None:
        while not self.is_stopped.is_set():
            with self.lock:
                if self.sent + size <= self._limit:
                    self.sent += size
                    return
            self.is_stopped.wait(0.02)

    def counts(self) -> tuple[int, int]:
        """How often pages and manifests have been asked for."""
        return (sum(path.startswith("/page/") for path in self.paths),
                sum(path.startswith("/media/") and path.endswith((".m3u8", ".mpd")) for path in self.paths))

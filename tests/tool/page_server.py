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
        paths = self.server.paths
        status, first, end = self.asked(len(data), etag)
        self.begin_answer(status, first, end, len(data), etag, kind)
        for place in range(first, end if self.command == "GET" else first, servers.BLOCK):
            block = data[place:min(place + servers.BLOCK, end)]
            if is_media and not self.server.may_send(len(block), paths):
                self.close_connection = True
                return
            self.wfile.write(block)


class PageServer(servers.Server):
    def __init__(self, media: pathlib.Path, handler: type[Handler] = Handler) -> None:
        super().__init__(handler)
        self.media = media
        self.begin()

    def begin(self, limit: int = sys.maxsize) -> None:
        """Counts anew, and sends no more than so many bytes of media until the next call. With less than zero bytes, it
        closes the connections."""
        with self.lock:
            self.paths: list[str] = []  # that are asked for
            self.sent, self._limit = 0, limit

    def may_send(self, size: int, paths: list[str]) -> bool:
        """Waits while the limit is reached; false after a call of begin(), which makes new paths."""
        while self._limit >= 0 and not self.is_stopped.wait(0 if self.sent + size <= self._limit else 0.02):
            with self.lock:
                if self.paths is not paths:
                    return False
                if self.sent + size <= self._limit:
                    self.sent += size
                    return True
        return False

    def counts(self) -> tuple[int, int]:
        """How often pages and manifests have been asked for."""
        return (sum(path.startswith("/page/") for path in self.paths),
                sum(path.startswith("/media/") and path.endswith((".m3u8", ".mpd")) for path in self.paths))

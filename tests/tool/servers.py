"""Web servers of tests, on a free port of the loopback address unless a port is given."""

import functools
import http.server
import re
import sys
import threading
import time
from typing import Any, NamedTuple, Optional

BLOCK = 1 << 14


class Server(http.server.ThreadingHTTPServer):
    """Handlers look at is_stopped while they answer."""

    daemon_threads = True

    def __init__(self, handler: type[http.server.BaseHTTPRequestHandler], port: int = 0) -> None:
        super().__init__(("127.0.0.1", port), handler)
        self.port = self.server_address[1]
        self.address = f"http://127.0.0.1:{self.port}"
        self.is_stopped = threading.Event()
        self.lock = threading.Lock()
        threading.Thread(target=self.serve_forever, args=(0.05,), daemon=True).start()

    def stop(self) -> None:
        """Breaks all connections, too."""
        if not self.is_stopped.is_set():
            self.is_stopped.set()
            self.shutdown()
            self.server_close()

    def __exit__(self, *_: object) -> None:
        self.stop()

    def handle_error(self, *_: object) -> None:
        """A client that goes away is nothing to report."""


class Handler(http.server.BaseHTTPRequestHandler):
    def asked(self, size: int, etag: str) -> tuple[int, int, int]:
        """The status of the answer, and the first byte and the end of what is asked for."""
        found = re.fullmatch(r"bytes=(\d+)-(\d*)", self.headers.get("Range") or "")
        if etag and self.headers.get("If-None-Match") == etag:
            return 304, 0, 0
        if not found or self.headers.get("If-Range") not in (None, etag):
            return 200, 0, size
        first, last = int(found[1]), int(found[2] or size - 1)
        return (206, first, min(last + 1, size)) if first < size else (416, 0, 0)

    def begin_answer(self, status: int, first: int, end: int, size: int, etag: str = "", kind: str = "") -> None:
        self.send_response(status)
        self.send_header("Content-Length", str(end - first))
        if status == 206:
            self.send_header("Content-Range", f"bytes {first}-{end - 1}/{size}")
        for name, value in (("ETag", etag), ("Content-Type", kind)):
            if value:
                self.send_header(name, value)
        self.end_headers()

    def log_message(self, *_: object) -> None:
        pass


class Request(NamedTuple):
    token: str  # of the run
    path: str
    first: int  # byte
    status: int
    condition: bool  # whether only the rest of the same file was asked for


@functools.lru_cache(maxsize=4)
def content(version: str, size: int) -> bytes:
    return b"".join(b"%56s%08d" % (version.encode(), number) for number in range(size // 64 + 1))[:size]


class Site(Server):
    """Serves "/file", and the same bytes in segments "/N.ts" of the playlist "/list.m3u8".

    It answers late, refuses, or holds data back, by the number of the segment; the file counts as 0. The size is that
    of a segment; the changes are of attributes.
    """

    def __init__(self, count: int, size: int, port: int = 0, **changes: Any) -> None:
        super().__init__(SiteHandler, port)
        self.count, self.size = count, size
        self.version = "a"
        self.has_etag = self.has_ranges = True
        self.held = sys.maxsize  # from this segment on nothing is sent
        self.status: dict[int, int] = {}
        self.crowd = 0  # so many requests have to be under way at the same time before the first is answered
        self.delay: dict[int, float] = {}
        self.pause = 0.0  # seconds after each block
        self.requests: list[Request] = []
        self.asked_before_first = self.under_way = self.most_under_way = 0
        vars(self).update(changes)

    def data(self) -> bytes:
        return content(self.version, self.count * self.size + (999 if self.version == "longer" else 0))

    def file(self, path: str, token: str) -> bytes:
        if path == "/file":
            return self.data()
        if path == "/list.m3u8":
            segments = "".join(f"#EXTINF:2,\n{number}.ts?{token}\n" for number in range(self.count))
            return f"#EXTM3U\n#EXT-X-TARGETDURATION:2\n{segments}#EXT-X-ENDLIST\n".encode()
        number = int(path[1:-3])
        return self.data()[number * self.size:None if number == self.count - 1 else (number + 1) * self.size]


class SiteHandler(Handler):
    server: Site

    def do_GET(self) -> None:
        site = self.server
        path, _, token = self.path.partition("?")
        number = int(path[1:-3]) if path.endswith(".ts") else 0
        data = site.file(path, token)
        etag = f'"{path} {site.version} {len(data)}"' if site.has_etag else ""
        status, first, end = self.asked(len(data), etag) if site.has_ranges else (200, 0, len(data))
        status = site.status.get(number, status)
        with site.lock:
            site.requests.append(Request(token, path, first, status, self.headers.get("If-Range") == etag))
            site.under_way += 1
            site.most_under_way = max(site.most_under_way, site.under_way)
        try:
            deadline = time.monotonic() + 20
            while site.most_under_way < site.crowd and time.monotonic() < deadline:
                time.sleep(0.01)
            time.sleep(site.delay.get(number, 0))
            if number == 0 and not site.asked_before_first:
                site.asked_before_first = len({request.path for request in site.requests})
            self.begin_answer(status, first, end, len(data), etag)
            self.send(data[:end], first, number if path.endswith(".ts") else None)
        finally:
            with site.lock:
                site.under_way -= 1

    def send(self, data: bytes, first: int, segment: Optional[int]) -> None:
        for place in range(first, len(data), BLOCK):
            while (place // self.server.size if segment is None else segment) >= self.server.held:
                if self.server.is_stopped.wait(0.02):
                    return
            self.wfile.write(data[place:place + BLOCK])
            if self.server.is_stopped.wait(self.server.pause):
                return

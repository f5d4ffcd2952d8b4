"""Serves pages of many kinds on a free port of the loopback address, and counts what is asked for."""

import collections
import html
import pathlib
import re
from typing import Counter

import servers

# Titles that must come out as they are: each has broken something at some time.
TITLES: list[str] = [
    "Caf\u00e9 \u2013 na\u00efve", "\u0627\u0644\u0639\u0631\u0628\u064a\u0629", "Smile \U0001f600", "a/b\\c",
    "\\u0022 is an escape", "ends with \\", "&#34; is a reference", "&#92;u0022 both", "Tom & Jerry &amp; co",
    "'single' \"double\" `back`", "%(title)s.%(ext)s", "[download] Destination: /tmp/x.mp4", "<b>bold</b>", "-x --exec",
    "x" * 300,
]

MANIFESTS = (".m3u8", ".mpd")
KINDS = {
    ".mp4": "video/mp4", ".m4a": "audio/mp4", ".m4s": "video/iso.segment", ".webm": "video/webm",
    ".mp3": "audio/mpeg", ".ts": "video/mp2t", ".m3u8": "application/vnd.apple.mpegurl", ".mpd": "application/dash+xml",
}


def video(source: str, kind: str = "video/mp4") -> str:
    return f'<video controls><source src="/media/{source}" type="{kind}"></video>'


HLS, DASH = "application/x-mpegURL", "application/dash+xml"
BODIES: dict[str, str] = {
    "progressive": video("clip.mp4"),
    "dash-whole": video("dash-whole/manifest.mpd", DASH),
    "dash-segments": video("dash/manifest.mpd", DASH),
    "hls-apart-ts": video("hls-ts/master.m3u8", HLS),
    "hls-apart-fmp4": video("hls-fmp4/master.m3u8", HLS),
    "hls-single": video("hls/clip.m3u8", HLS),
    "hls-missing-segment": video("hls/broken.m3u8", HLS),
    "webm": video("clip.webm", "video/webm"),
    "two-videos": video("clip.mp4") + video("other.mp4"),
    "broken-embed": video("nowhere/master.m3u8", HLS) + video("clip.mp4"),
    "og-video": "",
    "expiring": video("once-{reading}/clip.mp4"),
}


def page(name: str) -> str:
    """The page's text; empty when there is none."""
    title = f"The page {name}"
    if re.fullmatch(r"title-\d+", name):
        title = TITLES[int(name[6:])]
    elif name not in BODIES:
        return ""
    head = f'<meta charset="utf-8"><title>{html.escape(title)}</title>'
    if name == "og-video":
        head += '<meta property="og:title" content="The page og-video">'
        head += '<meta property="og:video" content="{base}/media/clip.mp4">'
    return f"<!DOCTYPE html><html><head>{head}</head><body>{BODIES.get(name, video('clip.mp4'))}</body></html>"


class Handler(servers.Handler):
    protocol_version = "HTTP/1.1"
    server: "PageServer"

    def do_GET(self) -> None:
        self.answer(with_body=True)

    def do_HEAD(self) -> None:
        self.answer(with_body=False)

    def answer(self, with_body: bool) -> None:
        path = self.path.partition("?")[0]
        self.server.count(path)
        if path.startswith("/page/"):
            text = page(path[6:]).replace("{base}", self.server.address)
            text = text.replace("{reading}", str(self.server.next_reading()))
            self.send(200 if text else 404, "text/html; charset=utf-8", text.encode(), with_body)
            return
        # The addresses that the first reading of a page gives are no longer good.
        path = re.sub("/once-[2-9]/", "/", path)
        file = self.server.media / path.removeprefix("/media/").lstrip("/")
        if not path.startswith("/media/") or ".." in path or not file.is_file():
            self.send(404, "text/plain", b"", with_body)
            return
        kind = "" if "/octets/" in path else KINDS.get(file.suffix, "")
        self.send(200, kind or "application/octet-stream", file.read_bytes(), with_body)

    def send(self, status: int, kind: str, data: bytes, with_body: bool) -> None:
        self.begin_answer(status, 0, len(data), len(data), kind=kind)
        if with_body:
            self.wfile.write(data)


class PageServer(servers.Server):
    def __init__(self, media: pathlib.Path, handler: type[Handler] = Handler) -> None:
        super().__init__(handler)
        self.media = media
        self._counts: Counter[str] = collections.Counter()
        self._readings = 0

    def count(self, path: str) -> None:
        kind = "page" if path.startswith("/page/") else "manifest" if path.endswith(MANIFESTS) else "media"
        with self.lock:
            self._counts[kind] += 1

    def next_reading(self) -> int:
        """Which reading of a page this is since the last call of take_counts()."""
        with self.lock:
            self._readings += 1
            return self._readings

    def take_counts(self) -> tuple[int, int]:
        """How often pages and manifests have been asked for since the last call."""
        with self.lock:
            counts, self._counts = self._counts, collections.Counter()
            self._readings = 0
        return counts["page"], counts["manifest"]

"""Stores the playlist of an HLS stream, which the tool would request twice: for the description and for the download.

If the page links directly to the playlist of segments, its text is stored in the stream's record, and the download does
not request it again.
"""

from __future__ import annotations

import contextlib
import io
from typing import Any, Iterator

from yt_dlp.extractor.common import InfoExtractor

from . import streams
from .streams import Info

_TEXT = "nox_playlist"
SIZE_LIMIT = 1 << 20
# A playlist without an end mark grows, so the stored text would be outdated.
_MARKS = ("#EXT-X-TARGETDURATION", "#EXT-X-ENDLIST")


@contextlib.contextmanager
def kept() -> Iterator[None]:
    """Within this context, streams that the tool reads from a playlist contain its text."""
    original = InfoExtractor._parse_m3u8_formats_and_subtitles

    def parse(extractor: Any, text: Any, *arguments: Any, **more: Any) -> Any:
        result = original(extractor, text, *arguments, **more)
        if isinstance(text, str) and len(text) <= SIZE_LIMIT and all(mark in text for mark in _MARKS):
            for stream in result[0]:
                stream[_TEXT] = text
        return result

    InfoExtractor._parse_m3u8_formats_and_subtitles = parse
    try:
        yield
    finally:
        InfoExtractor._parse_m3u8_formats_and_subtitles = original


def install(tool: Any, page: Info) -> None:
    """From now on the tool gets stored playlists from the page's record instead of the server."""
    texts: dict[str, str] = {
        stream["url"]: stream[_TEXT] for stream in streams.of_page(page)
        if isinstance(stream.get("url"), str) and isinstance(stream.get(_TEXT), str)
    }
    urlopen = tool.urlopen

    def answer(request: Any, *arguments: Any, **more: Any) -> Any:
        address: Any = request
        if not isinstance(request, str):
            address = getattr(request, "full_url", getattr(request, "url", None))
        # Only once: a second request has a reason, such as an error.
        text = texts.pop(address, None)
        return urlopen(request, *arguments, **more) if text is None else _Answer(address, text)

    if texts:
        tool.urlopen = answer


class _Answer(io.BytesIO):
    """The attributes of a server's response that the tool's downloader uses."""

    def __init__(self, address: str, text: str) -> None:
        super().__init__(text.encode("utf-8", "replace"))
        self.url = address
        self.headers: dict[str, str] = {}

    def geturl(self) -> str:
        return self.url

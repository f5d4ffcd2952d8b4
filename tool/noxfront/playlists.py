"""The playlist of an HLS stream, which the tool fetches once to describe the page and again to fetch the stream.

Where the page names the playlist of segments itself, and not a list of such playlists, its text is kept in the stream's
record, and the download asks the server for it no more.
"""

from __future__ import annotations

import contextlib
import io
from typing import Any, Dict, Iterator

from yt_dlp.extractor.common import InfoExtractor

from . import streams
from .streams import Info

_TEXT = "nox_playlist"
SIZE_LIMIT = 1 << 20
# A playlist without its end grows: what was read of it is no longer all.
_MARKS = ("#EXT-X-TARGETDURATION", "#EXT-X-ENDLIST")


@contextlib.contextmanager
def kept() -> Iterator[None]:
    """For the time of the context, streams that the tool makes of a playlist hold its text."""
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
    """From now on the tool gets the playlists that the page's record holds without asking the server."""
    texts: Dict[str, str] = {
        stream["url"]: stream[_TEXT] for stream in streams.of_page(page)
        if isinstance(stream.get("url"), str) and isinstance(stream.get(_TEXT), str)
    }
    urlopen = tool.urlopen

    def answer(request: Any, *arguments: Any, **more: Any) -> Any:
        address: Any = request
        if not isinstance(request, str):
            address = getattr(request, "full_url", getattr(request, "url", None))
        # Once: who asks again has a reason to.
        text = texts.pop(address, None)
        return urlopen(request, *arguments, **more) if text is None else _Answer(address, text)

    if texts:
        tool.urlopen = answer


class _Answer(io.BytesIO):
    """As far as the tool's downloader looks at the server's answer."""

    def __init__(self, address: str, text: str) -> None:
        super().__init__(text.encode("utf-8", "replace"))
        self.url = address
        self.headers: Dict[str, str] = {}

    def geturl(self) -> str:
        return self.url

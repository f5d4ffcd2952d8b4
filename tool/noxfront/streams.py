"""Properties of the tool's streams: sound, picture, or not playable."""

from __future__ import annotations

from typing import Any, Iterable

Info = dict[str, Any]  # the tool's record of a page or a stream

UNKNOWN_CODEC = "unknown"
_LIVE = ("is_live", "is_upcoming", "post_live")
_SOUND_FILES = frozenset("aac aiff alac ape flac m4a m4b mka mp3 oga ogg opus wav weba wma".split())


def of_page(page: Info) -> list[Info]:
    """The page's streams. If the tool has no list, the page's record itself is the only stream."""
    formats = page.get("formats")
    if formats is None and page.get("url"):
        return [page]
    return [stream for stream in formats or () if isinstance(stream, dict)]


def is_live(page: Info) -> bool:
    """Whether the page's streams are live, so they may grow or be replaced."""
    return bool(page.get("is_live")) or page.get("live_status") in _LIVE


def complete(streams: Iterable[Info]) -> None:
    """Adds properties that the tool leaves out. Downloads need this as well, so that the file gets the name from the
    description."""
    for stream in streams:
        extension = stream.get("ext")
        if stream.get("vcodec") is None and extension in _SOUND_FILES and not stream.get("height"):
            stream["vcodec"] = "none"
        if stream.get("vcodec") != "none" or stream.get("acodec") == "none":
            continue
        if not stream.get("acodec"):
            stream["acodec"] = UNKNOWN_CODEC
        if extension == "mp4":
            # The suffix of an MP4 file with sound only. It shows the library that the sound need not be encoded.
            stream["ext"] = "m4a"


def is_usable(stream: Info) -> bool:
    """Whether the stream can be downloaded and has picture or sound."""
    if stream.get("vcodec") == "none" and stream.get("acodec") == "none":
        return False
    if stream.get("ext") == "mhtml" or stream.get("format_note") == "storyboard":
        return False
    return not stream.get("has_drm") or stream["has_drm"] == "maybe"

"""What a stream of the tool's is: sound, picture, or nothing that can be watched."""

from __future__ import annotations

from typing import Any, Dict, Iterable

Info = Dict[str, Any]  # a page's record or a stream's, as the tool makes it

UNKNOWN_CODEC = "unknown"
_LIVE = ("is_live", "is_upcoming", "post_live")
_SOUND_FILES = frozenset("aac aiff alac ape flac m4a m4b mka mp3 oga ogg opus wav weba wma".split())


def of_page(page: Info) -> list[Info]:
    """The page's streams; where the tool names none, the page's record is itself the only one."""
    formats = page.get("formats")
    if formats is None and page.get("url"):
        return [page]
    return [stream for stream in formats or () if isinstance(stream, dict)]


def is_live(page: Info) -> bool:
    """Whether the page's streams still grow, or may be made anew any time."""
    return bool(page.get("is_live")) or page.get("live_status") in _LIVE


def complete(streams: Iterable[Info]) -> None:
    """Says of each stream what the tool leaves open although it can be known. Downloads need it as well: the file gets
    the name that was described."""
    for stream in streams:
        extension = stream.get("ext")
        if stream.get("vcodec") is None and extension in _SOUND_FILES and not stream.get("height"):
            stream["vcodec"] = "none"
        if stream.get("vcodec") != "none" or stream.get("acodec") == "none":
            continue
        if not stream.get("acodec"):
            stream["acodec"] = UNKNOWN_CODEC
        if extension == "mp4":
            # The name of an MP4 file that holds sound alone; by it the library sees that the sound need not be encoded.
            stream["ext"] = "m4a"


def is_usable(stream: Info) -> bool:
    """Whether the stream is something to watch or to hear that can be had."""
    if stream.get("vcodec") == "none" and stream.get("acodec") == "none":
        return False
    if stream.get("ext") == "mhtml" or stream.get("format_note") == "storyboard":
        return False
    return not stream.get("has_drm") or stream["has_drm"] == "maybe"

"""The description of a page: those of the tool's members that the library reads."""

from __future__ import annotations

import math
from typing import Any, Optional

from . import streams
from .streams import Info

_INT_LIMIT = 2**31
_STREAM_TEXTS = ("format_id", "format_note", "ext", "acodec", "vcodec", "resolution", "url")
_STREAM_NUMBERS = ("width", "height")


def of_page(page: Info) -> Info:
    """The description of a page's record. Missing and invalid members are left out."""
    document = _texts(page, ("title", "thumbnail", "description"))
    duration = whole(page.get("duration")) or _length_of_segments(page)
    if duration is not None:
        document["duration"] = duration
    document["formats"] = [_of_stream(stream) for stream in streams.of_page(page) if streams.is_usable(stream)]
    return document


def _length_of_segments(page: Info) -> Optional[int]:
    """The longest duration among the streams, for sites whose duration the tool does not find."""
    if streams.is_live(page):
        return None
    return whole(max((_play_time(stream) for stream in streams.of_page(page)), default=0))


def _play_time(stream: Info) -> float:
    segments = stream.get("fragments")
    if not isinstance(segments, list):
        return 0
    return sum(_number(segment.get("duration")) or 0 for segment in segments if isinstance(segment, dict))


def _of_stream(stream: Info) -> Info:
    entry = _texts(stream, _STREAM_TEXTS)
    for name in _STREAM_NUMBERS:
        number = whole(stream.get(name))
        if number is not None:
            entry[name] = number
    rate = _number(stream.get("abr"))
    if rate is not None:
        entry["abr"] = int(rate) if rate.is_integer() else rate
    return entry


def _texts(record: Info, names: tuple[str, ...]) -> Info:
    return {name: record[name] for name in names if isinstance(record.get(name), str)}


def _number(value: Any) -> Optional[float]:
    if isinstance(value, bool):
        return None
    try:
        number = float(value)
    except (TypeError, ValueError, OverflowError):
        return None
    return number if math.isfinite(number) and 0 < number < _INT_LIMIT else None


def whole(value: Any) -> Optional[int]:
    """Rounds to a whole number, but never to zero, which means unknown."""
    number = _number(value)
    return None if number is None else min(max(int(number + 0.5), 1), _INT_LIMIT - 1)

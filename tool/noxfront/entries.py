"""Pages with several videos: their entries, and the address by which each is named.

An entry that has no address of its own is named by the page's, with a fragment that stays here: "#nox-item=3".
"""

from __future__ import annotations

import contextlib
import itertools
import re
from typing import Any, Iterator, List, Optional, Sequence, Tuple

from . import description, json_text
from .streams import Info

KINDS = ("playlist", "multi_video")  # the tool's words for pages with several videos, and for a video in several parts
_MARK = "#nox-item="
_NUMBER = re.compile(r"[1-9][0-9]{0,8}")
_ADDRESS_LIMIT, _TITLE_LIMIT = 4096, 500


def split(address: str) -> Tuple[str, int]:
    """The page's address, and the number of the entry that is named, from 1; 0 where it is the page itself."""
    page, mark, number = address.rpartition(_MARK)
    return (page, int(number)) if mark and _NUMBER.fullmatch(number) else (address, 0)


def plain_words(words: Sequence[str]) -> List[str]:
    """The command line for a tool that does not know the fragment."""
    address, item = split(words[-1])
    choice = ["--playlist-items", str(item)] if item and "--playlist-items" not in words else []
    return [*words[:-1], *choice, address]


class Entries:
    """The entries of one page. Those that the tool has to ask the server for come when they are used, and once."""

    def __init__(self, page: Info) -> None:
        self.is_in_parts = page.get("_type") == "multi_video"
        found = page.get("entries")
        self.all: Any = [] if found is None else found  # as the tool takes them; to test its truth may ask the server
        self.count: Optional[int] = None  # where it is known
        told = page.get("playlist_count")
        if isinstance(self.all, (list, tuple)):
            self.count = len(self.all)
        elif self._has_less_than_two():
            self.count = 1
        elif isinstance(told, int) and told > 1:
            self.count = told

    def range(self, first: int, last: int) -> Iterator[Tuple[int, Info]]:
        """Those from the first number to the last, with their numbers."""
        if hasattr(self.all, "getslice"):  # the tool's lists that come page by page
            found = self.all.getslice(first - 1, last)
        else:
            found = itertools.islice(iter(self.all), first - 1, last)
        return ((number, entry) for number, entry in enumerate(found, first) if entry)

    def _has_less_than_two(self) -> bool:
        if hasattr(self.all, "getslice"):
            return len(self.all.getslice(0, 2)) < 2
        rest = iter(self.all)
        begin = list(itertools.islice(rest, 1))
        with contextlib.suppress(Exception):  # a failure of the second is none of the first
            begin += itertools.islice(rest, 1)
        self.all = itertools.chain(begin, rest)
        return len(begin) < 2


def line(number: int, entry: Info, page: str) -> Info:
    """What a list of entries says of one.

    :param page: the page's address
    """
    title = entry.get("title")
    return {
        "nox_index": number,
        "nox_url": _own_address(entry) or f"{page}{_MARK}{number}",
        "title": json_text.readable(title)[:_TITLE_LIMIT] if isinstance(title, str) else None,
        "duration": description.whole(entry.get("duration")),
        "thumbnail": _thumbnail(entry),
    }


def _own_address(entry: Info) -> Optional[str]:
    address = _address(entry.get("url")) if entry.get("_type") in ("url", "url_transparent") else None
    # Some hold what the page says to the tool alone.
    return None if address and "#__youtubedl_smuggle" in address else address


def _thumbnail(entry: Info) -> Optional[str]:
    pictures = [picture.get("url") for picture in entry.get("thumbnails") or () if isinstance(picture, dict)]
    return next(filter(None, map(_address, [entry.get("thumbnail"), *reversed(pictures)])), None)


def _address(text: Any) -> Optional[str]:
    is_one = isinstance(text, str) and len(text) <= _ADDRESS_LIMIT and text.startswith(("http://", "https://"))
    return text if is_one else None

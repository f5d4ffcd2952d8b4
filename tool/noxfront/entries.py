"""Pages with several videos: their entries, and the address of each.

An entry without its own address gets that of the page with a fragment, "#nox-item=3". It is never sent to a server.
"""

from __future__ import annotations

import contextlib
import itertools
import re
from typing import Any, Iterator, Optional, Sequence

from . import description, json_text
from .streams import Info

KINDS = ("playlist", "multi_video")  # as the tool calls pages with several videos, and a video in several parts
_MARK = "#nox-item="
_NUMBER = re.compile(r"[1-9][0-9]{0,8}")
_ADDRESS_LIMIT, _TITLE_LIMIT = 4096, 500


def split(address: str) -> tuple[str, int]:
    """Splits an address into that of the page and the number of the entry, from 1; 0 is the page itself."""
    page, mark, number = address.rpartition(_MARK)
    return (page, int(number)) if mark and _NUMBER.fullmatch(number) else (address, 0)


def plain_words(words: Sequence[str]) -> list[str]:
    """The command line for a tool that does not know the fragment."""
    address, item = split(words[-1])
    choice = ["--playlist-items", str(item)] if item and "--playlist-items" not in words else []
    return [*words[:-1], *choice, address]


class Entries:
    """The entries of one page. They are requested from the server on demand, and only once."""

    def __init__(self, page: Info) -> None:
        self.is_in_parts = page.get("_type") == "multi_video"
        found = page.get("entries")
        self.all: Any = [] if found is None else found  # the tool's list; testing its truth may send a request
        self.count: Optional[int] = None  # None if unknown
        told = page.get("playlist_count")
        if isinstance(self.all, (list, tuple)):
            self.count = len(self.all)
        elif self._has_less_than_two():
            self.count = 1
        elif isinstance(told, int) and told > 1:
            self.count = told

    def range(self, first: int, last: int) -> Iterator[tuple[int, Info]]:
        """The entries from the first number to the last, with their numbers."""
        if hasattr(self.all, "getslice"):  # the tool's list that loads page by page
            found = self.all.getslice(first - 1, last)
        else:
            found = itertools.islice(iter(self.all), first - 1, last)
        return ((number, entry) for number, entry in enumerate(found, first) if entry)

    def _has_less_than_two(self) -> bool:
        if hasattr(self.all, "getslice"):
            return len(self.all.getslice(0, 2)) < 2
        rest = iter(self.all)
        begin = list(itertools.islice(rest, 1))
        with contextlib.suppress(Exception):  # an error in the second entry must not affect the first
            begin += itertools.islice(rest, 1)
        self.all = itertools.chain(begin, rest)
        return len(begin) < 2


def line(number: int, entry: Info, page: str) -> Info:
    """The line of one entry in the list.

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
    # Some entries contain data for the tool only.
    return None if address and "#__youtubedl_smuggle" in address else address


def _thumbnail(entry: Info) -> Optional[str]:
    pictures = [picture.get("url") for picture in entry.get("thumbnails") or () if isinstance(picture, dict)]
    return next(filter(None, map(_address, [entry.get("thumbnail"), *reversed(pictures)])), None)


def _address(text: Any) -> Optional[str]:
    is_one = isinstance(text, str) and len(text) <= _ADDRESS_LIMIT and text.startswith(("http://", "https://"))
    return text if is_one else None

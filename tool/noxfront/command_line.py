"""The command lines of the library and the jobs."""

from __future__ import annotations

import re
from typing import NamedTuple, Optional, Sequence, Union

CERTIFICATE_SWITCH = "--no-check-certificate"


class Describe(NamedTuple):
    """--dump-json [--no-check-certificate] URL"""

    url: str
    tool_options: list[str]  # passed to the tool unchanged


class Download(NamedTuple):
    """-f CODE [--no-check-certificate] -o TEMPLATE URL"""

    url: str
    tool_options: list[str]
    code: str
    template: str


class ListEntries(NamedTuple):
    """--flat-playlist --dump-json --playlist-items FIRST:LAST [--no-check-certificate] URL"""

    url: str
    tool_options: list[str]
    first: int  # from 1
    last: int


Command = Union[Describe, Download, ListEntries]
_RANGE = re.compile(r"([1-9][0-9]{0,8}):([1-9][0-9]{0,8})")


def parse(words: Sequence[str]) -> Optional[Command]:
    """The command in these arguments; None if they have another form."""
    if words[:1] == ["--flat-playlist"]:
        return _parse_list(words)
    place = 1 if words[:1] == ["--dump-json"] else 2
    switch = [word for word in words[place:place + 1] if word == CERTIFICATE_SWITCH]
    rest = [*words[:place], *words[place + len(switch):]]
    if rest[0::2] == ["--dump-json"] and _are_values(rest[1:], 1):
        return Describe(rest[1], switch)
    if rest[0:4:2] == ["-f", "-o"] and _are_values([*rest[1:4:2], *rest[4:]], 3):
        return Download(rest[4], switch, rest[1], rest[3])
    return None


def _parse_list(words: Sequence[str]) -> Optional[ListEntries]:
    rest = [word for word in words if word != CERTIFICATE_SWITCH]
    numbers = _RANGE.fullmatch(rest[3]) if len(rest) == 5 else None
    if numbers is None or rest[1:3] != ["--dump-json", "--playlist-items"] or not _are_values(rest[4:], 1):
        return None
    switch = [CERTIFICATE_SWITCH] if len(words) > len(rest) else []
    return ListEntries(rest[4], switch, int(numbers.group(1)), int(numbers.group(2)))


def _are_values(words: Sequence[str], count: int) -> bool:
    return len(words) == count and not any(word == "" or word.startswith("-") for word in words)

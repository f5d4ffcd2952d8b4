"""The two command lines by which the library drives the tool."""

from __future__ import annotations

from typing import NamedTuple, Optional, Sequence, Union

CERTIFICATE_SWITCH = "--no-check-certificate"


class Describe(NamedTuple):
    """--dump-json [--no-check-certificate] URL"""

    url: str
    tool_options: list[str]  # what the tool is to get as it is


class Download(NamedTuple):
    """-f CODE [--no-check-certificate] -o TEMPLATE URL"""

    url: str
    tool_options: list[str]
    code: str
    template: str


Command = Union[Describe, Download]


def parse(words: Sequence[str]) -> Optional[Command]:
    """The command that the words are; None when they are none of the library's."""
    place = 1 if words[:1] == ["--dump-json"] else 2
    switch = [word for word in words[place:place + 1] if word == CERTIFICATE_SWITCH]
    rest = [*words[:place], *words[place + len(switch):]]
    if rest[0::2] == ["--dump-json"] and _are_values(rest[1:], 1):
        return Describe(rest[1], switch)
    if rest[0:4:2] == ["-f", "-o"] and _are_values([*rest[1:4:2], *rest[4:]], 3):
        return Download(rest[4], switch, rest[1], rest[3])
    return None


def _are_values(words: Sequence[str], count: int) -> bool:
    return len(words) == count and not any(word == "" or word.startswith("-") for word in words)

"""Finds out which patterns an address cannot match, without compiling the patterns.

The tool tries the patterns of its extractors one after the other. For a page of an unknown site it compiles 1,900
patterns, which takes half of the time to read the page. Nearly all patterns contain a fixed text, such as the name of
the site, that a matching address must contain. These texts are cached in a file.
"""

from __future__ import annotations

import contextlib
import json
from typing import Any, Iterator, Optional

from yt_dlp.extractor.common import InfoExtractor

from . import private_folder
from .private_folder import PrivateFolder

try:
    from re import _constants as codes, _parser as parser  # type: ignore[attr-defined]
except ImportError:
    parser = None  # then the table is not used

FOLDER = "nox-addresses"
FILE = "needed.json"
SIZE_LIMIT = 4 << 20
_SHORTEST = 4
_COMMON_TEXTS = frozenset("http https http:// https:// www. .com .com/ /video video videos".split())

Texts = list[str]


def needed(pattern: str) -> Texts:
    """Texts in lower case; a matching address contains at least one of them. Empty if none are known."""
    try:
        return _needed(parser.parse(pattern))
    except Exception:  # the parser is private to the interpreter; without it the pattern is compiled
        return []


def _needed(sequence: Any) -> Texts:
    best: Texts = []
    text = ""
    for code, argument in [*sequence, (None, None)]:
        if code is codes.LITERAL and argument < 128:
            text += chr(argument).lower()
            continue
        best = _better(best, [text])
        text = ""
        if code is codes.SUBPATTERN:
            best = _better(best, _needed(argument[-1]))
        elif code in (codes.MAX_REPEAT, codes.MIN_REPEAT) and argument[0] > 0:
            best = _better(best, _needed(argument[2]))
        elif code is codes.BRANCH:
            choices = [_needed(choice) for choice in argument[1]]
            if all(choices):
                best = _better(best, [text for choice in choices for text in choice])
    return best


def _better(one: Texts, other: Texts) -> Texts:
    """The set whose shortest text is longer, since fewer addresses contain it."""
    if not other or any(len(text) < _SHORTEST or text in _COMMON_TEXTS for text in other):
        return one
    return other if not one or min(map(len, other)) > min(map(len, one)) else one


class AddressTable:
    """The cached texts. Never fails: a file that cannot be read counts as empty; an error in writing is ignored."""

    def __init__(self, cache: Optional[str]) -> None:
        self._folder = PrivateFolder(cache, FOLDER)
        self._texts: dict[str, Texts] = {}
        self._has_grown = False
        with contextlib.suppress(OSError, ValueError, RecursionError), self._folder.opened(create=False) as folder:
            kept = json.loads(private_folder.read(folder, FILE, SIZE_LIMIT)[1])
            if isinstance(kept, dict) and all(isinstance(texts, list) for texts in kept.values()):
                self._texts = kept

    def excludes(self, patterns: Any, address: str) -> bool:
        """Whether none of the patterns, one or several, matches the address."""
        if isinstance(patterns, str):
            patterns = (patterns,)
        if not isinstance(patterns, (list, tuple)) or not address.isascii():
            return False
        address = address.lower()
        return all(isinstance(pattern, str) and self._excludes(pattern, address) for pattern in patterns)

    def _excludes(self, pattern: str, address: str) -> bool:
        texts = self._texts.get(pattern)
        if texts is None:
            texts = self._texts[pattern] = needed(pattern)
            self._has_grown = True
        return bool(texts) and not any(text in address for text in texts)

    def save(self) -> None:
        if not self._has_grown:
            return
        with contextlib.suppress(OSError, ValueError), self._folder.opened(create=True) as folder:
            data = json.dumps(self._texts).encode()
            # Patterns of other versions of the tool accumulate, so the table is sometimes cleared.
            private_folder.write(folder, FILE, data if len(data) <= SIZE_LIMIT else b"{}")


@contextlib.contextmanager
def shortcut(cache: Optional[str]) -> Iterator[None]:
    """Within this context, the tool's extractors ask the table before they compile their patterns."""
    if parser is None:
        yield
        return
    kinds: list[Any] = [InfoExtractor]
    with contextlib.suppress(ImportError):
        from yt_dlp.extractor.lazy_extractors import LazyLoadExtractor
        kinds.append(LazyLoadExtractor)
    table = AddressTable(cache)
    originals = [kind.__dict__["_match_valid_url"] for kind in kinds]
    for kind, original in zip(kinds, originals):
        kind._match_valid_url = classmethod(_Match(table, original.__func__))
    try:
        yield
    finally:
        for kind, original in zip(kinds, originals):
            kind._match_valid_url = original
        table.save()


class _Match:
    def __init__(self, table: AddressTable, original: Any) -> None:
        self._table = table
        self._original = original

    def __call__(self, extractor: Any, address: str) -> Any:
        if "_VALID_URL_RE" not in extractor.__dict__ and self._table.excludes(extractor._VALID_URL, address):
            return None
        return self._original(extractor, address)

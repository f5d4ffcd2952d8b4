"""Writes JSON so that the library's replacements before parsing do not change its meaning.

The library first replaces character references ("&#34;") in the whole text, then escapes of the form backslash, u, four
digits, and only then parses the JSON. So every character with a special meaning in one of these steps is written as an
escape of this form: the library does not process replaced characters again.
"""

from __future__ import annotations

import json
import re
from typing import Any

_BYTE_ORDER_MARK = "\ufeff"
_REPLACEMENT = "\ufffd"
# Characters to escape: backslash and quote, the ampersand of a reference, control characters, and everything that
# depends on the user's encoding.
_SPECIAL = re.compile(r'[\\"&\x00-\x1f\x7f-\U0010ffff]')


def readable(text: str) -> str:
    """The text without characters that the library cannot store: lone surrogates, NUL, a leading byte order mark."""
    if not text.isascii():
        text = text.encode("utf-16-le", "surrogatepass").decode("utf-16-le", "replace").lstrip(_BYTE_ORDER_MARK)
    return text.replace("\0", _REPLACEMENT)


def dumps(document: Any) -> str:
    """The document on one line in ASCII. All strings are passed through readable()."""
    if isinstance(document, dict):
        return "{" + ",".join(f"{dumps(str(key))}:{dumps(value)}" for key, value in document.items()) + "}"
    if isinstance(document, (list, tuple)):
        return "[" + ",".join(map(dumps, document)) + "]"
    if isinstance(document, str):
        return '"' + _SPECIAL.sub(_escaped, readable(document)) + '"'
    return json.dumps(document, allow_nan=False)


def _escaped(match: re.Match[str]) -> str:
    character = match.group()
    if character == "\\":
        return r"\u005c\u005c"
    if character == '"':
        return r"\u005c\u0022"
    if character < " ":
        return rf"\\u0075{ord(character):04x}"  # an escaped "u": leaves an escape for the JSON parser
    units = character.encode("utf-16-be").hex()
    return "".join(rf"\u{units[place:place + 4]}" for place in range(0, len(units), 4))

"""A JSON document in a form that survives what the library does to it before it parses it.

The library replaces character references ("&#34;") in the whole text by the characters they name, then escapes of the
form backslash, u, four digits, and only then reads it as JSON. So each character that means something to one of these
steps is written as such an escape itself: replaced characters are not looked at again.
"""

from __future__ import annotations

import json
import re
from typing import Any

_BYTE_ORDER_MARK = "\ufeff"
_REPLACEMENT = "\ufffd"
# What does not stand for itself: the escape sign and the end of a JSON string, the begin of a reference, what JSON
# wants escaped, and everything that is not the same in every encoding of the user's.
_SPECIAL = re.compile(r'[\\"&\x00-\x1f\x7f-\U0010ffff]')


def readable(text: str) -> str:
    """The text as far as the library can hold it: no half surrogate pairs, no zero, no byte order mark in front."""
    if not text.isascii():
        text = text.encode("utf-16-le", "surrogatepass").decode("utf-16-le", "replace").lstrip(_BYTE_ORDER_MARK)
    return text.replace("\0", _REPLACEMENT)


def dumps(document: Any) -> str:
    """The document on one line, in ASCII. Strings are those that readable() makes of the document's."""
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
        return rf"\\u0075{ord(character):04x}"  # an escape whose letter u comes from another: for the JSON parser
    units = character.encode("utf-16-be").hex()
    return "".join(rf"\u{units[place:place + 4]}" for place in range(0, len(units), 4))

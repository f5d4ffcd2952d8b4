"""Finds the tag of a failure: by the tool's exception types, by HTTP statuses and by errno.

For some causes the tool has only a message. A table in this module recognises these messages.
"""

from __future__ import annotations

import errno
import http.client
import re
import socket
from typing import Iterator, Mapping, Optional

from . import error_tags as tags

# By class names, since not every version of the tool has all of these exceptions.
_TYPES: Mapping[str, str] = {
    "ConfigurationError": tags.SETTINGS,
    "CookieLoadError": tags.SETTINGS,
    "SecretMissing": tags.LOGIN,
    "GeoRestrictedError": tags.COUNTRY,
    "UnsupportedError": tags.NOTHING,
    "UserNotLive": tags.NOT_BEGUN,
}
# Less certain ones, used if the wrapped errors do not show the cause.
_GENERAL_TYPES: Mapping[str, str] = {
    "PostProcessingError": tags.CONVERSION,
    "TransportError": tags.NETWORK,
    "ContentTooShortError": tags.NETWORK,
    "ImportError": tags.TOOL,
    "SyntaxError": tags.TOOL,
    "ZipImportError": tags.TOOL,
    "BadZipFile": tags.TOOL,
    "zlib.error": tags.TOOL,
}
_STATUSES: Mapping[int, str] = {
    401: tags.LOGIN, 402: tags.LOGIN, 404: tags.NOT_FOUND, 407: tags.NETWORK, 408: tags.NETWORK, 410: tags.NOT_FOUND,
    425: tags.NETWORK, 429: tags.NETWORK, 451: tags.COUNTRY,
}
_SPACE = frozenset({errno.ENOSPC, errno.EDQUOT, errno.EFBIG})
_DESTINATION = frozenset({
    errno.EACCES, errno.EPERM, errno.EROFS, errno.ENAMETOOLONG, errno.ENOENT, errno.ENOTDIR, errno.EISDIR, errno.ELOOP,
    errno.EIO, errno.EINVAL, errno.EEXIST,
})
_CONNECTION = frozenset({
    errno.ECONNREFUSED, errno.ECONNRESET, errno.ECONNABORTED, errno.ENETUNREACH, errno.EHOSTUNREACH, errno.ETIMEDOUT,
    errno.ENETDOWN, errno.EPIPE, errno.EADDRNOTAVAIL,
})
_NETWORK_TYPES = (ConnectionError, TimeoutError, socket.timeout, socket.gaierror, http.client.HTTPException)

# Messages of the tool, in the order in which they are tried. A short list: an uncertain message is OTHER.
_SENTENCES: list[tuple[str, "re.Pattern[str]"]] = [(tag, re.compile(pattern, re.IGNORECASE)) for tag, pattern in (
    (tags.PROTECTED, r"\bDRM\b"),
    (tags.RUNTIME, r"No supported JavaScript runtime|PhantomJS.* not found"),
    (tags.COUNTRY, r"geo.?restrict|in your (country|region|location)|from your (country|region|location)"),
    (tags.NOT_BEGUN, r"\b(will begin|premieres) (in|at)\b|\b(has|have)(n't| not) (yet )?(started|begun)"
                     r"|not (yet started|started yet)|\b(is|are) not currently live|not yet available"),
    (tags.LOGIN, r"registered users|account credentials|--(cookies|username)\b|\b(log|sign)(ged)?.?in\b|members.only"
                 r"|join this channel|(?<!\w)age.restrict|confirm your age|\bprivate\b|(for|to) subscribers"
                 r"|--(video-)?password\b"),
    (tags.NOTHING, r"No (video formats|media|video)\b.* found|There is no video|No stream of|is not a valid URL"
                   r"|Unsupported (URL|url scheme)|unknown url type|Requested format is not available"
                   r"|did not get any data blocks|The downloaded file is empty"),
    (tags.NOT_FOUND, r"\b(has|have) been (removed|deleted|terminated)|was (removed|deleted)|removed by the"
                     r"|no longer (available|exists)|does(n't| not) exist|\bunavailable\b"
                     r"|(video|page|content|track|clip|episode|channel) (was |is )?not found"
                     r"|(is|was)(n't| not) available"),
    (tags.NO_SPACE, r"No space left on device|Disk quota exceeded"),
    (tags.CONVERSION, r"\bff(mpeg|probe)\b.*(not (be )?found|not installed)"),
    (tags.NETWORK, r"\bIncompleteRead\b|timed out|CERTIFICATE_VERIFY_FAILED|content too short|bytes read, \d+ more"
                   r"|Downloaded \d+ bytes, expected \d+"),
)]
_STATUS_IN_TEXT = re.compile(r"\bHTTP Error (\d{3})\b")
_ERRNO_IN_TEXT = re.compile(r"\[Errno (\d+)\]")


def causes(error: Optional[BaseException]) -> Iterator[BaseException]:
    """The error and its causes, the nearest first. Some are in attributes of the tool's exceptions."""
    waiting = [error]
    seen = set()
    while waiting:
        current = waiting.pop(0)
        if current is None or id(current) in seen:
            continue
        seen.add(id(current))
        yield current
        kept_aside = getattr(current, "exc_info", None) or (None, None)
        for other in (kept_aside[1], getattr(current, "cause", None), getattr(current, "source_error", None),
                      getattr(current, "reason", None), current.__cause__, current.__context__):
            if isinstance(other, BaseException):
                waiting.append(other)


def tag_of(error: Optional[BaseException], message: str) -> str:
    """The tag for an error that the tool reports.

    :param error: the exception that is being handled, if any
    :param message: the tool's whole message
    """
    chain = list(causes(error))
    status_in_text = _STATUS_IN_TEXT.search(message)
    return (
        _by_types(chain, _TYPES)
        or (None if status_in_text else _by_sentence(message))
        or _by_status(chain, status_in_text)
        or _by_errno(chain, message)
        or _by_types(chain, _GENERAL_TYPES)
        or _by_sentence(message)
        or tags.OTHER
    )


def is_of_network(chain: list[BaseException]) -> bool:
    return any(isinstance(error, _NETWORK_TYPES) or _names(error) & {"TransportError", "URLError", "SSLError"}
               for error in chain)


def _names(error: BaseException) -> "set[str]":
    names = {kind.__name__ for kind in type(error).__mro__}
    return names | {f"{type(error).__module__}.{type(error).__name__}"}


def _by_types(chain: list[BaseException], table: Mapping[str, str]) -> Optional[str]:
    for error in chain:
        for name in _names(error) & set(table):
            return table[name]
    return None


def _by_sentence(message: str) -> Optional[str]:
    return next((tag for tag, pattern in _SENTENCES if pattern.search(message)), None)


def _by_status(chain: list[BaseException], status_in_text: Optional["re.Match[str]"]) -> Optional[str]:
    statuses = [int(status_in_text.group(1))] if status_in_text else []
    for error in chain:
        status = getattr(error, "status", None) or getattr(error, "code", None)
        if "HTTPError" in _names(error) and isinstance(status, int):
            statuses.append(status)
    for status in statuses:
        if status in _STATUSES:
            return _STATUSES[status]
        if status >= 500:
            return tags.NETWORK
        return tags.OTHER  # refused by the server, without a known status
    return None


def _by_errno(chain: list[BaseException], message: str) -> Optional[str]:
    numbers = [error.errno for error in chain if isinstance(error, OSError) and error.errno is not None]
    numbers += [int(number) for number in _ERRNO_IN_TEXT.findall(message)]
    if _SPACE & set(numbers):
        return tags.NO_SPACE
    if is_of_network(chain) or _CONNECTION & set(numbers):
        return tags.NETWORK
    if _by_types(chain, {"PostProcessingError": tags.CONVERSION}):
        return tags.CONVERSION
    return tags.DESTINATION if _DESTINATION & set(numbers) else None

"""Decides about retries after a failure of the server: how many, after which time, and when to give up.

The tool itself retries immediately, so an outage of some seconds would end the download. Here the tool's loops ask a
RetryPolicy, which all threads of a download share. It decides how long to wait and when to give up.
"""

from __future__ import annotations

import functools
import http.client
import re
import socket
import threading
import time
import urllib.error
from typing import Any, Callable, Optional, Sequence

from yt_dlp.downloader.common import FileDownloader
from yt_dlp.downloader.http import HttpFD

WAITS = (1, 2, 4, 8, 16, 9)  # seconds between attempts in one outage; 40 in all
SEGMENT_RETRIES = 2  # for a segment that the server reports as missing
NEW_READING_HELPS = frozenset({403, 404, 410})
_BUSY = frozenset({408, 425, 429})  # temporary refusals
_ATTEMPTS_OF_THE_TOOL = 10_000  # more than the policy allows, but limited
_NO_DATA = "Did not get any data blocks"
_NETWORK_ERRORS = (ConnectionError, TimeoutError, socket.gaierror, urllib.error.URLError, http.client.HTTPException)
_EXPIRY = re.compile(r"(?i)(?<![a-z])(?:expires?|exp)(?:=|/|~|%3D)(\d{10})(?!\d)")

Tell = Callable[[str], None]


def status_of(error: BaseException) -> Optional[int]:
    """The HTTP status of the error; None if it is another kind of error."""
    is_refusal = any(kind.__name__ == "HTTPError" for kind in type(error).__mro__)
    status = getattr(error, "status", None) if is_refusal else None
    return status if isinstance(status, int) else None


def is_outage(error: BaseException) -> bool:
    """Whether the same request may succeed some seconds later."""
    status = status_of(error)
    if status is not None:
        return status in _BUSY or status >= 500
    names = {kind.__name__ for kind in type(error).__mro__}
    if "CertificateVerifyError" in names or "SSLCertVerificationError" in type(getattr(error, "reason", None)).__name__:
        return False
    return isinstance(error, _NETWORK_ERRORS) or "TransportError" in names


def has_expired(address: str, now: float) -> bool:
    """Whether the address contains an expiry time that has passed."""
    return any(int(seconds) <= now for seconds in _EXPIRY.findall(address))


class RetryPolicy:
    """The policy of one download. Its methods may be called from any thread."""

    def __init__(
        self, params: dict[str, Any], options: Sequence[str], tell: Tell, clock: Callable[[], float] = time.monotonic
    ) -> None:
        """
        :param params: the tool's settings; changed so that this object decides
        :param options: the user's options, which override the defaults of this module
        :param tell: called with the message when a wait begins
        """
        given = {option.partition("=")[0] for option in options}
        self._retries: float = params.get("retries") or 0 if "--retries" in given else len(WAITS)
        has_segment_retries = "--fragment-retries" in given
        self._segment_retries: float = params.get("fragment_retries") or 0 if has_segment_retries else SEGMENT_RETRIES
        self._sleep_functions = params.get("retry_sleep_functions") or {}
        for name in ("retries", "fragment_retries"):
            params[name] = max(_ATTEMPTS_OF_THE_TOOL, params.get(name) or 0)
        self._tell = tell
        self._clock = clock
        self._condition = threading.Condition()
        self._thread = threading.local()  # the attempts of each thread: data for another thread do not count
        self._attempt = 0  # of all threads, since one of them last made progress
        self._until = 0.0
        self._most = 0
        self._has_ended = False
        self.can_read_anew = False  # whether the page is read again if the download fails
        self.last_status: Optional[int] = None  # the status that ended the download

    def progress(self, status: dict[str, Any]) -> None:
        """To be called by the tool for each block. Bytes that were received before do not count as progress: otherwise
        a server that always fails at the same place would be retried for ever."""
        done = status.get("downloaded_bytes") or 0
        if done > self._most:
            self._most = done
            self._thread.attempt = self._attempt = 0
        if status.get("status") == "finished":
            self._most = 0

    def wait(self) -> bool:
        """Waits before the next attempt; returns False to give up. Threads that fail during a wait share it."""
        with self._condition:
            if self._clock() >= self._until and not self._has_ended:
                attempt = max(getattr(self._thread, "attempt", 0), self._attempt)
                if attempt >= self._retries:
                    self.end()
                else:
                    self._begin_wait(attempt)
                    self._attempt = attempt + 1
            self._thread.attempt = max(getattr(self._thread, "attempt", 0) + 1, self._attempt)
            while not self._has_ended:
                left = self._until - self._clock()
                if left <= 0:
                    return True
                self._condition.wait(left)
            return False

    def call(self, function: Callable[..., Any], *arguments: Any, **more: Any) -> Any:
        """Calls the function, and again after each outage that the tool itself does not retry."""
        while True:
            try:
                return function(*arguments, **more)
            except Exception as error:
                if not is_outage(error) or not self.wait():
                    raise

    def on_error(self, downloader: Any, error: BaseException, count: int, is_segment: bool) -> None:
        """Returns for a retry; otherwise reports the error, which ends the download."""
        if not is_segment or is_outage(error):
            if self.wait():
                return
        else:
            status = status_of(error)
            leaves_it = self.can_read_anew and status in NEW_READING_HELPS
            if not leaves_it and count <= self._segment_retries and self._sleep(self._seconds("fragment", count - 1)):
                return
            self.last_status = status
            self.end()
        downloader.report_error(f"\r[download] Got error: {error}")
        raise error

    def end(self) -> None:
        """Ends all waits; no thread retries afterwards."""
        with self._condition:
            self._has_ended = True
            self._condition.notify_all()

    def _begin_wait(self, attempt: int) -> None:
        seconds = self._seconds("http", attempt)
        self._until = self._clock() + seconds
        if seconds > 0:
            of_all = f" of {self._retries:.0f}" if self._retries < _ATTEMPTS_OF_THE_TOOL else ""
            self._tell("[nox:waiting] The server does not answer. "
                       f"Trying again in {seconds:.3g} s ({attempt + 1}{of_all})")

    def _seconds(self, kind: str, attempt: int) -> float:
        function = self._sleep_functions.get(kind)
        if function is not None:
            return max(float(function(n=attempt) or 0), 0)
        return WAITS[attempt] if attempt < len(WAITS) else max(WAITS)

    def _sleep(self, seconds: float) -> bool:
        with self._condition:
            return not self._condition.wait_for(lambda: self._has_ended, seconds)


def install(policy: RetryPolicy, tool: Any) -> None:
    """From now on the tool's downloaders use the policy."""
    thread = threading.local()
    urlopen = tool.urlopen

    def open_and_note(*arguments: Any, **more: Any) -> Any:
        response = urlopen(*arguments, **more)
        thread.length = response.headers.get("Content-Length")
        return response

    def report_retry(
        downloader: Any, err: BaseException, count: int, retries: float, frag_index: Any = None, fatal: bool = True
    ) -> None:
        policy.on_error(downloader, err, count, frag_index is not None)

    def report_error(downloader: Any, message: str, *arguments: Any, **more: Any) -> None:
        # The tool does not retry if a connection ends before the first byte.
        if message == _NO_DATA and getattr(thread, "length", None) not in (None, "0"):
            raise ConnectionAbortedError("The server closed the connection before the first byte")
        tool.report_error(message, *arguments, **more)

    tool.urlopen = open_and_note
    tool.dl = functools.partial(policy.call, tool.dl)
    tool.add_progress_hook(policy.progress)
    FileDownloader.report_retry = report_retry
    HttpFD.report_error = report_error

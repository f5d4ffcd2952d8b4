"""Lets the tool resume from the parts of an earlier run.

The tool gets the name of a part instead of the output. Each response of the server is checked: it must belong to the
same file as the part. The tool's messages still contain the name of the output.
"""

from __future__ import annotations

import contextlib
import hashlib
import json
import os
import re
import threading
from typing import Any, Callable, Iterable, Optional

from yt_dlp.downloader.common import FileDownloader
from yt_dlp.utils import determine_protocol

from . import messages, parts, retries, streams
from .parts import Identity, Part
from .streams import Info

BLOCK_LIMIT = 1 << 16  # bytes; the tool's blocks grow to 4 MB, and an incomplete block is lost if the tool is killed
ATTEMPTS = 3  # for a stream that changes on the server during the download
_ONE_FILE = ("http", "https")


class Changed(Exception):
    """The file on the server is not the same as the part's."""


class Resumer:
    """Replaces the tool's functions that download a stream and that send a request."""

    def __init__(self, tool: Any, folder: str, address: str, log: messages.DownloadLog) -> None:
        """
        :param folder: for the parts
        :param address: of the page, part of the names of its parts
        """
        self._tool = tool
        self._folder = folder
        self._page = address
        self._log = log
        self._thread = threading.local()
        self._address = ""  # of a stream that is one file; else empty
        self.part: Optional[Part] = None  # of the current stream
        self._fetch_stream = tool.dl
        self._open = tool.urlopen
        tool.dl = self.fetch
        tool.urlopen = self.open
        tool.add_progress_hook(self._on_progress)
        block_size = FileDownloader.best_block_size
        FileDownloader.best_block_size = staticmethod(lambda *figures: min(block_size(*figures), BLOCK_LIMIT))

    def fetch(self, name: str, info: Info, subtitle: bool = False, test: bool = False) -> tuple[bool, bool]:
        """As the tool's function: returns whether the file is complete, and whether it was downloaded."""
        is_section = "Range" in (info.get("http_headers") or {})
        if subtitle or test or is_section or streams.is_live(info) or info.get("requested_formats"):
            result: tuple[bool, bool] = self._fetch_stream(name, info, subtitle, test)
            return result
        protocol = determine_protocol(info)
        key = json.dumps([self._page, info.get("format_id"), protocol]).encode()
        file = hashlib.sha256(key).hexdigest()[:32] + os.path.splitext(name)[1]
        part = Part(os.path.join(self._folder, file))
        self._log.names[part.file] = name
        self._address = info["url"] if protocol in _ONE_FILE else ""
        self.part = part
        try:
            if not self._complete(part, info):
                return False, True
        finally:
            self.part = None
        part.deliver(name)
        return True, True

    def _complete(self, part: Part, info: Info) -> bool:
        for _ in range(ATTEMPTS):
            if part.begin():
                self._log.announce(self._log.names[part.file])
            try:
                if not self._fetch_stream(part.file, info)[0]:
                    return False
                if part.complete():
                    return True
            except Changed:
                pass
            part.clear()
        self._tool.report_error("The stream changes on the server while it is fetched")
        return False

    def open(self, request: Any, *arguments: Any, **more: Any) -> Any:
        """As the tool's function: returns the server's response."""
        part = self.part
        if part is None or not self._address:
            response = self._open(request, *arguments, **more)
            self._thread.identity = parts.identity_of(response, "")
            return response
        known = part.identity
        is_rest = re.match(r"bytes=0*[1-9]", request.headers.get("Range") or "") is not None
        if is_rest and known.get("etag", "").startswith('"'):
            request.headers["If-range"] = known["etag"]
        try:
            response = self._open(request, *arguments, **more)
        except Exception as error:
            if is_rest and retries.status_of(error) == 416:
                raise Changed from error
            raise
        found = parts.identity_of(response, self._address)
        if is_rest and known and not parts.is_same(known, found):
            response.close()
            raise Changed
        if not is_rest or response.status != 206:
            part.begin_file(found)
        return response

    def last_identity(self) -> Identity:
        """Identity by the last response in this thread."""
        return getattr(self._thread, "identity", {})

    def remaining(
        self, downloader: Any, stream: Any, segments: Iterable[dict[str, Any]], info: Info, call: Callable[..., Any]
    ) -> list[dict[str, Any]]:
        """The missing segments. Truncates the file after the complete ones."""
        assert self.part
        part = self.part
        wanted = list(segments)
        digest = _digest(wanted)
        done = part.segments
        is_same = part.segment_list == digest and (
            done == 0 or self._is_unchanged(downloader, wanted[done - 1], info, call))
        stream.truncate(part.length if is_same else 0)
        if not is_same:
            part.begin_segments(digest)
        return wanted[part.segments:]

    def _is_unchanged(self, downloader: Any, segment: dict[str, Any], info: Info, call: Callable[..., Any]) -> bool:
        """Asks the server whether a complete segment has changed, without downloading it."""
        assert self.part
        known = self.part.last_segment
        headers = dict(info.get("http_headers") or {})
        if segment.get("byte_range"):
            headers["Range"] = "bytes={start}-{0}".format(segment["byte_range"]["end"] - 1, **segment["byte_range"])
        if "etag" in known:
            headers["If-None-Match"] = known["etag"]
        if "modified" in known:
            headers["If-Modified-Since"] = known["modified"]
        try:
            response = call(self._tool.urlopen, downloader._prepare_url({"http_headers": headers}, segment["url"]))
        except Exception as error:
            if retries.status_of(error) == 304:
                return True
            raise
        with contextlib.closing(response):
            return parts.is_same(known, parts.identity_of(response, ""))

    def _on_progress(self, status: dict[str, Any]) -> None:
        if self.part is not None and self._address and status.get("status") == "downloading":
            self.part.sync()


def _digest(segments: list[dict[str, Any]]) -> str:
    """A digest of the segments, without the parts of their addresses that expire."""
    names = [[parts.stable_name(segment["url"]), segment.get("byte_range") or {}] for segment in segments]
    return hashlib.sha256(json.dumps(names).encode()).hexdigest()

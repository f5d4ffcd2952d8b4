"""Lets the tool go on with the parts of an earlier run.

It gets the name of a part instead of the output's. Each answer of the server is looked at: whether it still belongs to
the file whose beginning is there. What the tool prints has the output's name.
"""

from __future__ import annotations

import contextlib
import hashlib
import json
import os
import re
import threading
from typing import Any, Callable, Dict, Iterable, List, Optional, Tuple

from yt_dlp.downloader.common import FileDownloader
from yt_dlp.utils import determine_protocol

from . import messages, parts, retries, streams
from .parts import Identity, Part
from .streams import Info

BLOCK_LIMIT = 1 << 16  # bytes; a killed tool loses what it has read of a block, and its blocks grow to 4 MB
ATTEMPTS = 3  # for a stream that changes on the server while it is fetched
_ONE_FILE = ("http", "https")


class Changed(Exception):
    """The server has another file than the one whose beginning is there."""


class Resumer:
    """Takes the place of the tool's functions that fetch a stream and that ask a server."""

    def __init__(self, tool: Any, folder: str, address: str, log: messages.DownloadLog) -> None:
        """
        :param folder: for the parts
        :param address: of the page, by which its parts are found again
        """
        self._tool = tool
        self._folder = folder
        self._page = address
        self._log = log
        self._thread = threading.local()
        self._address = ""  # of a stream that is one file; empty for all others
        self.part: Optional[Part] = None  # of the stream that is being fetched
        self._fetch_stream = tool.dl
        self._open = tool.urlopen
        tool.dl = self.fetch
        tool.urlopen = self.open
        tool.add_progress_hook(self._on_progress)
        block_size = FileDownloader.best_block_size
        FileDownloader.best_block_size = staticmethod(lambda *figures: min(block_size(*figures), BLOCK_LIMIT))

    def fetch(self, name: str, info: Info, subtitle: bool = False, test: bool = False) -> Tuple[bool, bool]:
        """As the tool's function: whether there is a file now, and whether it is a new one."""
        is_section = "Range" in (info.get("http_headers") or {})
        if subtitle or test or is_section or streams.is_live(info) or info.get("requested_formats"):
            result: Tuple[bool, bool] = self._fetch_stream(name, info, subtitle, test)
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
        """As the tool's function: the server's answer."""
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
        """What the last answer to this thread has told."""
        return getattr(self._thread, "identity", {})

    def remaining(
        self, downloader: Any, stream: Any, segments: Iterable[Dict[str, Any]], info: Info, call: Callable[..., Any]
    ) -> List[Dict[str, Any]]:
        """The segments that are not there yet; the stream is cut behind the others."""
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

    def _is_unchanged(self, downloader: Any, segment: Dict[str, Any], info: Info, call: Callable[..., Any]) -> bool:
        """Asks the server whether a segment that is there is still the same, without fetching it."""
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

    def _on_progress(self, status: Dict[str, Any]) -> None:
        if self.part is not None and self._address and status.get("status") == "downloading":
            self.part.sync()


def _digest(segments: List[Dict[str, Any]]) -> str:
    """What the segments are, without what expires in their addresses."""
    names = [[parts.stable_name(segment["url"]), segment.get("byte_range") or {}] for segment in segments]
    return hashlib.sha256(json.dumps(names).encode()).hexdigest()

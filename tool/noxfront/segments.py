"""Downloads the segments of a stream, several at once, and keeps them in memory.

The tool stores each segment in a file until it is its turn. If the program is killed, these files are left behind. Here
the segments stay in memory, and their number is limited to those that are downloaded at once. If parts are kept, a run
resumes after the last segment that an earlier run has written.
"""

from __future__ import annotations

import collections
import concurrent.futures
import contextlib
import io
import os
import threading
import time
from typing import Any, Callable, Deque, Iterable, Iterator, Optional

from yt_dlp.downloader.common import FileDownloader
from yt_dlp.downloader.fragment import FragmentFD, HttpQuietDownloader

from .parts import Identity
from .resuming import Resumer

AT_ONCE = 4  # default
_SPEED_TIME = 3.0  # seconds, for the average speed
# Key in a segment's record, which the tool passes through.
_SEGMENT = "fragment_filename_sanitized"
_PART = "nox_part"  # key in the record of a stream's download: the Part
_NO_FILE = "-"  # under this name the tool uses the given stream and no files
# For the tool each segment is a small download; settings for a whole download must not apply to it again.
_SEGMENT_PARAMS = {"continuedl": False, "updatetime": False, "sleep_interval": 0, "max_sleep_interval": 0}


Call = Callable[..., Any]  # calls a function with the given arguments, and again after each outage


class Segment(io.BytesIO):
    """The data of a segment, and its identity on the server."""

    identity: Identity = {}


class SegmentMeter:
    """Adds up the bytes of all threads. To be called by the tool for each block of a segment."""

    def __init__(self, count: int, clock: Callable[[], float] = time.monotonic) -> None:
        """
        :param count: number of segments; 0 if unknown
        """
        self._count = count
        self._clock = clock
        self._lock = threading.Lock()
        self._open: dict[int, tuple[int, int]] = {}  # by thread: bytes so far, and total bytes
        self._finished = self._finished_bytes = 0
        self._samples: Deque[tuple[float, int]] = collections.deque([(clock(), 0)])

    def begin_at(self, count: int, done: int) -> None:
        """Sets the number and the total size of the segments that are already complete."""
        self._finished, self._finished_bytes = count, done
        self._samples = collections.deque([(self._clock(), done)])

    def __call__(self, status: dict[str, Any]) -> None:
        done = status.get("downloaded_bytes") or 0
        with self._lock:
            thread = threading.get_ident()
            if status.get("status") == "finished":
                self._open.pop(thread, None)
                self._finished += 1
                self._finished_bytes += done
            else:
                self._open[thread] = (done, status.get("total_bytes") or 0)

    def figures(self) -> dict[str, Any]:
        """The figures of the whole stream, under the tool's names."""
        with self._lock:
            done = self._finished_bytes + sum(done for done, _ in self._open.values())
            known = [total for _, total in self._open.values() if total]
            number = self._finished + len(known)
            total = (self._finished_bytes + sum(known)) / number * self._count if number else 0
            speed = self._speed(done)
        figures = {"downloaded_bytes": done, "speed": speed, "fragment_index": self._finished}
        if total > 0:
            figures["total_bytes_estimate"] = total
            figures["eta"] = max(total - done, 0) / speed if speed else None
        return figures

    def _speed(self, done: int) -> Optional[float]:
        now = self._clock()
        self._samples.append((now, done))
        while len(self._samples) > 2 and self._samples[1][0] < now - _SPEED_TIME:
            self._samples.popleft()
        begin, before = self._samples[0]
        return max(done - before, 0) / (now - begin) if now > begin else None


class SegmentDownloader(HttpQuietDownloader):  # type: ignore[misc]
    """Downloads segments into memory. Several threads may use one object at once."""

    def __init__(self, tool: Any, params: dict[str, Any], call: Call, resumer: Optional[Resumer]) -> None:
        super().__init__(tool, {**params, **_SEGMENT_PARAMS})
        self._call = call
        self._resumer = resumer
        self._thread = threading.local()

    def fetch(self, info: dict[str, Any]) -> Optional[Segment]:
        self._thread.buffer = buffer = Segment()
        try:
            is_there, _ = self._call(self.download, _NO_FILE, info)
        finally:
            del self._thread.buffer
        if self._resumer is not None:
            buffer.identity = self._resumer.last_identity()
        return buffer if is_there else None

    def sanitize_open(self, filename: str, open_mode: str) -> tuple[Segment, str]:
        buffer: Segment = self._thread.buffer
        if open_mode != "ab":  # from the start: the server does not support ranges
            buffer.seek(0)
            buffer.truncate()
        return buffer, filename


class SegmentPool(concurrent.futures.ThreadPoolExecutor):
    """A thread pool that runs ahead of the results by at most the number of its threads."""

    def __init__(self, count: int) -> None:
        super().__init__(count)
        self._count = count

    def map(  # type: ignore[override]
        self, function: Callable[[Any], Any], items: Iterable[Any]
    ) -> Iterator[Any]:
        under_way: Deque[concurrent.futures.Future[Any]] = collections.deque()
        try:
            for item in items:
                if len(under_way) == self._count:
                    yield under_way.popleft().result()
                under_way.append(self.submit(function, item))
            while under_way:
                yield under_way.popleft().result()
        finally:
            for future in under_way:
                future.cancel()

    def __exit__(self, kind: Any, error: Any, trace: Any) -> None:
        # After a failure, running downloads are not waited for.
        self.shutdown(wait=kind is None, cancel_futures=True)


class _Segments:
    """The replacements for the tool's own functions, under the same names."""

    def __init__(self, at_once: int, call: Call, resumer: Optional[Resumer]) -> None:
        self._at_once = at_once
        self._call = call
        self._resumer = resumer
        self._prepare = FragmentFD._prepare_frag_download
        self._fetch_all = FragmentFD.download_and_append_fragments

    def prepare(self, downloader: Any, ctx: dict[str, Any]) -> None:
        part = self._resumer.part if self._resumer else None
        if part is None or part.segments == 0:
            with contextlib.suppress(OSError):
                os.unlink(downloader.temp_name(ctx["filename"]))  # left by an earlier attempt; must not be appended to
        self._prepare(downloader, ctx)
        ctx["dl"] = SegmentDownloader(downloader.ydl, ctx["dl"].params, self._call, self._resumer)
        downloader.nox_meter = SegmentMeter(ctx.get("total_frags") or 0)
        ctx["dl"].add_progress_hook(downloader.nox_meter)

    def fetch_all(self, downloader: Any, ctx: dict[str, Any], fragments: Any, info_dict: Any, **more: Any) -> Any:
        if self._at_once > 1 and more.get("tpe") is None:
            more["tpe"] = SegmentPool(self._at_once)
            for limit in ("ratelimit", "throttledratelimit"):  # for all threads together
                if ctx["dl"].params.get(limit):
                    ctx["dl"].params[limit] /= self._at_once
            # The tool warns here that its speed is that of one thread; these figures are of all threads.
            downloader.report_warning = downloader.write_debug
        resumer = self._resumer
        # Subtitles need data of earlier segments, which are not kept.
        if resumer and resumer.part and not ctx.get("live") and "pack_func" not in more:
            fragments = resumer.remaining(downloader, ctx["dest_stream"], fragments, info_dict, self._call)
            downloader.nox_meter.begin_at(resumer.part.segments, resumer.part.length)
            ctx[_PART] = resumer.part
        return self._fetch_all(downloader, ctx, fragments, info_dict, **more)


def _download(
    downloader: Any, ctx: dict[str, Any], frag_url: str, info_dict: dict[str, Any], headers: Any = None,
    request_data: Any = None
) -> bool:
    segment = ctx["dl"].fetch({
        "url": frag_url, "http_headers": headers or info_dict.get("http_headers"), "request_data": request_data,
        "ctx_id": ctx.get("ctx_id"),
    })
    if segment is None:
        return False
    ctx[_SEGMENT] = segment
    return True


def _read(downloader: Any, ctx: dict[str, Any]) -> Optional[bytes]:
    segment = ctx.get(_SEGMENT)
    return segment.getvalue() if segment else None


def _append(downloader: Any, ctx: dict[str, Any], frag_content: bytes) -> None:
    segment = ctx.pop(_SEGMENT, None)
    ctx["dest_stream"].write(frag_content)
    ctx["dest_stream"].flush()
    if _PART in ctx:
        ctx[_PART].add_segment(ctx["dest_stream"].tell(), segment.identity)


def _hook_progress(downloader: Any, status: dict[str, Any], info_dict: dict[str, Any]) -> None:
    if status.get("status") == "downloading" and hasattr(downloader, "nox_meter"):
        status = {**status, **downloader.nox_meter.figures()}
    FileDownloader._hook_progress(downloader, status, info_dict)


def install(params: dict[str, Any], call: Call, resumer: Optional[Resumer]) -> None:
    """From now on the tool downloads segments with this module.

    :param resumer: set if parts are kept
    """
    params["_no_ytdl_file"] = True  # the tool's own file for resuming; no later run would find it
    segments = _Segments(params.get("concurrent_fragment_downloads") or 1, call, resumer)
    FragmentFD._prepare_frag_download = lambda downloader, ctx: segments.prepare(downloader, ctx)
    FragmentFD.download_and_append_fragments = lambda downloader, *arguments, **more: segments.fetch_all(
        downloader, *arguments, **more)
    FragmentFD._download_fragment = _download
    FragmentFD._read_fragment = _read
    FragmentFD._append_fragment = _append
    FragmentFD._hook_progress = _hook_progress

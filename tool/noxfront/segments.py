"""Segments of a stream, several at once and in memory.

The tool keeps each segment in a file until its turn comes, all of them if it must. A program that is killed leaves
these files behind, and nobody knows their names. Here the segments stay in memory, and no more of them are under way
than are fetched at once. Where parts are kept, a run goes on behind the last segment that an earlier one has written.
"""

from __future__ import annotations

import collections
import concurrent.futures
import contextlib
import io
import os
import threading
import time
from typing import Any, Callable, Deque, Dict, Iterable, Iterator, Optional, Tuple

from yt_dlp.downloader.common import FileDownloader
from yt_dlp.downloader.fragment import FragmentFD, HttpQuietDownloader

from .parts import Identity
from .resuming import Resumer

AT_ONCE = 4  # unless the user says otherwise
_SPEED_TIME = 3.0  # seconds over which the speed is taken
# In a segment's record, which goes through the tool's hands.
_SEGMENT = "fragment_filename_sanitized"
_PART = "nox_part"  # in the record of a stream's download: that which the segments are added to
_NO_FILE = "-"  # the tool writes to what it is given under this name, and leaves all files alone
# Each segment is a small download to the tool; what concerns a whole one has had its effect before.
_SEGMENT_PARAMS = {"continuedl": False, "updatetime": False, "sleep_interval": 0, "max_sleep_interval": 0}


Call = Callable[..., Any]  # calls a function with the arguments that follow, once more after each outage


class Segment(io.BytesIO):
    """What has been fetched of a segment, and what the server says it is."""

    identity: Identity = {}


class SegmentMeter:
    """Adds up what the threads of a download have fetched. To be called by the tool for each block of a segment."""

    def __init__(self, count: int, clock: Callable[[], float] = time.monotonic) -> None:
        """
        :param count: how many segments there are; 0 where that is not known
        """
        self._count = count
        self._clock = clock
        self._lock = threading.Lock()
        self._open: Dict[int, Tuple[int, int]] = {}  # by thread: bytes that are there, and bytes in all
        self._finished = self._finished_bytes = 0
        self._samples: Deque[Tuple[float, int]] = collections.deque([(clock(), 0)])

    def begin_at(self, count: int, done: int) -> None:
        """So many segments are there, of so many bytes in all."""
        self._finished, self._finished_bytes = count, done
        self._samples = collections.deque([(self._clock(), done)])

    def __call__(self, status: Dict[str, Any]) -> None:
        done = status.get("downloaded_bytes") or 0
        with self._lock:
            thread = threading.get_ident()
            if status.get("status") == "finished":
                self._open.pop(thread, None)
                self._finished += 1
                self._finished_bytes += done
            else:
                self._open[thread] = (done, status.get("total_bytes") or 0)

    def figures(self) -> Dict[str, Any]:
        """For the whole stream, under the names that the tool has for them."""
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
    """Fetches segments into memory. Several threads use one object at once."""

    def __init__(self, tool: Any, params: Dict[str, Any], call: Call, resumer: Optional[Resumer]) -> None:
        super().__init__(tool, {**params, **_SEGMENT_PARAMS})
        self._call = call
        self._resumer = resumer
        self._thread = threading.local()

    def fetch(self, info: Dict[str, Any]) -> Optional[Segment]:
        self._thread.buffer = buffer = Segment()
        try:
            is_there, _ = self._call(self.download, _NO_FILE, info)
        finally:
            del self._thread.buffer
        if self._resumer is not None:
            buffer.identity = self._resumer.last_identity()
        return buffer if is_there else None

    def sanitize_open(self, filename: str, open_mode: str) -> Tuple[Segment, str]:
        buffer: Segment = self._thread.buffer
        if open_mode != "ab":  # begun anew: the server does not send the rest alone
            buffer.seek(0)
            buffer.truncate()
        return buffer, filename


class SegmentPool(concurrent.futures.ThreadPoolExecutor):
    """Threads that run no further ahead of the results than there are threads."""

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
        # What still runs after a failure is of no use and not waited for.
        self.shutdown(wait=kind is None, cancel_futures=True)


class _Segments:
    """What takes the place of the tool's own functions, by their names there."""

    def __init__(self, at_once: int, call: Call, resumer: Optional[Resumer]) -> None:
        self._at_once = at_once
        self._call = call
        self._resumer = resumer
        self._prepare = FragmentFD._prepare_frag_download
        self._fetch_all = FragmentFD.download_and_append_fragments

    def prepare(self, downloader: Any, ctx: Dict[str, Any]) -> None:
        part = self._resumer.part if self._resumer else None
        if part is None or part.segments == 0:
            with contextlib.suppress(OSError):
                os.unlink(downloader.temp_name(ctx["filename"]))  # of an attempt before; nothing is added to it
        self._prepare(downloader, ctx)
        ctx["dl"] = SegmentDownloader(downloader.ydl, ctx["dl"].params, self._call, self._resumer)
        downloader.nox_meter = SegmentMeter(ctx.get("total_frags") or 0)
        ctx["dl"].add_progress_hook(downloader.nox_meter)

    def fetch_all(self, downloader: Any, ctx: Dict[str, Any], fragments: Any, info_dict: Any, **more: Any) -> Any:
        if self._at_once > 1 and more.get("tpe") is None:
            more["tpe"] = SegmentPool(self._at_once)
            for limit in ("ratelimit", "throttledratelimit"):  # of all threads together
                if ctx["dl"].params.get(limit):
                    ctx["dl"].params[limit] /= self._at_once
            # What the tool warns of here, that its speed is of one thread alone, does not hold for these figures.
            downloader.report_warning = downloader.write_debug
        resumer = self._resumer
        # Subtitles are packed; what that needs to know of the segments before is not kept.
        if resumer and resumer.part and not ctx.get("live") and "pack_func" not in more:
            fragments = resumer.remaining(downloader, ctx["dest_stream"], fragments, info_dict, self._call)
            downloader.nox_meter.begin_at(resumer.part.segments, resumer.part.length)
            ctx[_PART] = resumer.part
        return self._fetch_all(downloader, ctx, fragments, info_dict, **more)


def _download(
    downloader: Any, ctx: Dict[str, Any], frag_url: str, info_dict: Dict[str, Any], headers: Any = None,
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


def _read(downloader: Any, ctx: Dict[str, Any]) -> Optional[bytes]:
    segment = ctx.get(_SEGMENT)
    return segment.getvalue() if segment else None


def _append(downloader: Any, ctx: Dict[str, Any], frag_content: bytes) -> None:
    segment = ctx.pop(_SEGMENT, None)
    ctx["dest_stream"].write(frag_content)
    ctx["dest_stream"].flush()
    if _PART in ctx:
        ctx[_PART].add_segment(ctx["dest_stream"].tell(), segment.identity)


def _hook_progress(downloader: Any, status: Dict[str, Any], info_dict: Dict[str, Any]) -> None:
    if status.get("status") == "downloading" and hasattr(downloader, "nox_meter"):
        status = {**status, **downloader.nox_meter.figures()}
    FileDownloader._hook_progress(downloader, status, info_dict)


def install(params: Dict[str, Any], call: Call, resumer: Optional[Resumer]) -> None:
    """From now on the tool fetches segments as this module does.

    :param resumer: where parts are kept
    """
    params["_no_ytdl_file"] = True  # to go on another time, which under these names never comes
    segments = _Segments(params.get("concurrent_fragment_downloads") or 1, call, resumer)
    FragmentFD._prepare_frag_download = lambda downloader, ctx: segments.prepare(downloader, ctx)
    FragmentFD.download_and_append_fragments = lambda downloader, *arguments, **more: segments.fetch_all(
        downloader, *arguments, **more)
    FragmentFD._download_fragment = _download
    FragmentFD._read_fragment = _read
    FragmentFD._append_fragment = _append
    FragmentFD._hook_progress = _hook_progress

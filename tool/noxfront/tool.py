"""The tool's own package, set up for what the library wants of it."""

from __future__ import annotations

import contextlib
import io
import optparse
import sys
from typing import Any, Callable, Dict, List, Optional

import yt_dlp
from yt_dlp.utils import DownloadCancelled

from . import addresses, playlists, segments, streams
from .configuration import ConfigurationError
from .streams import Info

# Of a page that holds many videos none of which can be described, no more than these are tried.
MAXIMUM_FAILURES = 25
_COMMON_OPTIONS = (
    "--ignore-config",
    "--no-update",  # that a version is old is nothing that a host's user can act on at each page
    "--no-playlist",
    "--lazy-playlist",
    "--abort-on-unavailable-fragments",
    "--no-progress",  # the front has its own
    f"--concurrent-fragments={segments.AT_ONCE}",
)

Selector = Callable[[Dict[str, Any]], List[Info]]


def settings(options: list[str], **more: Any) -> Dict[str, Any]:
    """The tool's settings for the options given, as its own command line would make them.

    :raises ConfigurationError: where the tool does not take an option; they come from the user's settings
    """
    complaint = io.StringIO()
    try:
        with contextlib.redirect_stderr(complaint):
            params: Dict[str, Any] = yt_dlp.parse_options([*_COMMON_OPTIONS, *options])[3]
    except (SystemExit, optparse.OptParseError) as problem:
        text = f"{complaint.getvalue()}\n{problem}".strip()
        raise ConfigurationError(f"The tool does not take a setting in tool.conf: {text.splitlines()[-1]}") from problem
    params.update(more)
    return params


class FirstVideo(DownloadCancelled):  # type: ignore[misc]
    """Ends the reading of a page; the tool lets its own kind of cancellation through everywhere."""

    def __init__(self, page: Info) -> None:
        super().__init__()
        self.page = page


class PageReader(yt_dlp.YoutubeDL):  # type: ignore[misc]
    """Reads a page up to the first video that can be described."""

    def first_video(self, url: str) -> Optional[Info]:
        """The video's record; None if there is none, for reasons that the logger has been told."""
        self.params.update(ignoreerrors=True, skip_playlist_after_errors=MAXIMUM_FAILURES)
        self.format_selector = _any_stream
        try:
            with addresses.shortcut(sys.pycache_prefix), playlists.kept():
                self.extract_info(url, download=False)
        except FirstVideo as found:
            return found.page
        finally:
            self.params["ignoreerrors"] = False
        return None

    def process_video_result(self, info_dict: Info, download: bool = True) -> Info:
        page: Info = super().process_video_result(info_dict, download)
        if download:
            return page
        candidates = streams.of_page(page)
        streams.complete(candidates)
        if not any(map(streams.is_usable, candidates)):
            raise yt_dlp.utils.ExtractorError("No stream of this page can be downloaded", expected=True)
        raise FirstVideo(self.sanitize_info(page, remove_private_keys=True))


def _any_stream(context: Dict[str, Any]) -> List[Info]:
    # A description is of all streams. The tool demands that one be chosen, which must not fail.
    formats: List[Info] = context["formats"]
    return formats[-1:]


def selector(tool: Any, code: str) -> Selector:
    """Chooses the stream that has the code. The tool itself would read a code such as "mp4" as a wish; a code that no
    stream has is left to it."""

    def select(context: Dict[str, Any]) -> List[Info]:
        # The tool puts an "f" before a code that is also the name of a container.
        for name in (code, "f" + code):
            found = [stream for stream in context["formats"] if stream.get("format_id") == name]
            if found:
                return found
        return list(tool.build_format_selector(code)(context))

    return select

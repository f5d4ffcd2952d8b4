"""The tool's own package, set up for what the library wants of it."""

from __future__ import annotations

import contextlib
import io
import optparse
import os
import sys
from typing import Any, Callable, Dict, Iterator, List, Optional

import yt_dlp
from yt_dlp.utils import DownloadCancelled

from . import addresses, configuration, entries, playlists, segments, streams
from .configuration import ConfigurationError
from .entries import Entries
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
    except (SystemExit, optparse.OptParseError) as error:
        unknown = _unknown_options(options)
        if unknown:
            reason = (f"the download tool {yt_dlp.version.__version__} does not know the option {unknown[0]}; "
                      "a newer one may, which nox-renew-tool fetches")
        else:
            lines = f"{complaint.getvalue()}\n{error}".strip().splitlines()
            reason = f"the download tool does not take a setting: {lines[-1].rpartition('error: ')[2]}"
        raise _configuration_error(reason) from error
    params.update(more)
    return params


def _configuration_error(reason: str) -> ConfigurationError:
    return ConfigurationError(f"{configuration.path(os.environ)}: {reason}")


def _unknown_options(options: list[str]) -> list[str]:
    parser = yt_dlp.options.create_parser()
    names = [option.partition("=")[0] for option in options if option.startswith("--")]
    return [name for name in names if not parser.has_option(name)]


class Tool(yt_dlp.YoutubeDL):  # type: ignore[misc]
    """The tool, which tells of settings that cannot be used as such, and not as a fault of the page's."""

    def __init__(self, params: Dict[str, Any], **more: Any) -> None:
        """
        :raises ConfigurationError: where a setting cannot be used
        """
        impersonate = params.get("impersonate")
        try:
            with _cookie_errors():
                super().__init__(params, **more)
                if params.get("cookiefile") or params.get("cookiesfrombrowser"):
                    self.cookiejar  # newer tools load it when it is used
        except yt_dlp.utils.YoutubeDLError as error:
            if impersonate is None:
                raise
            raise _configuration_error(
                f"the option --impersonate={impersonate} cannot be followed: the Python package curl_cffi is missing, "
                "or does not know this client") from error

    def save_cookies(self) -> None:
        # A file of cookies that may only be read is good enough.
        with contextlib.suppress(OSError):
            super().save_cookies()

    def __exit__(self, *error: Any) -> None:
        with contextlib.suppress(OSError):  # of cookies, where an older tool saves them here
            super().__exit__(*error)


@contextlib.contextmanager
def _cookie_errors() -> Iterator[None]:
    """Makes the tool say of cookies that cannot be loaded that the settings are wrong."""
    module = sys.modules["yt_dlp.YoutubeDL"]
    load = module.load_cookies

    def load_cookies(file: Any, browser: Any, *more: Any) -> Any:
        try:
            return load(file, browser, *more)
        except Exception as error:
            cause = error.__context__ if type(error).__name__ == "CookieLoadError" and error.__context__ else error
            if browser:
                reason = f"the cookies of the browser that --cookies-from-browser names cannot be read: {cause}"
            else:
                reason = f"the file that --cookies names is no file of cookies in Netscape's format: {cause}"
            raise _configuration_error(reason) from error

    module.load_cookies = load_cookies  # type: ignore[attr-defined]
    try:
        yield
    finally:
        module.load_cookies = load  # type: ignore[attr-defined]


class FirstVideo(DownloadCancelled):  # type: ignore[misc]
    """Ends the reading of a page; the tool lets its own kind of cancellation through everywhere."""

    def __init__(self, page: Info) -> None:
        super().__init__()
        self.page = page


class PageReader(Tool):
    """Reads a page up to the first video that can be described, or a certain one."""

    entries: Optional[Entries] = None  # of the page, where it has several
    _item = 0
    _on_entries: Optional[Callable[[Entries], None]] = None

    def first_video(
        self, url: str, item: int = 0, on_entries: Optional[Callable[[Entries], None]] = None
    ) -> Optional[Info]:
        """The video's record; None if there is none, for reasons that the logger has been told.

        :param item: the number of the page's entry that is wanted, from 1; 0 for the first that can be described
        :param on_entries: gets the entries of a page that has several; then none is read, and the result is the page's
        """
        self._item, self._on_entries = item, on_entries
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

    def process_ie_result(self, ie_result: Info, download: bool = True, extra_info: Optional[Info] = None) -> Info:
        if not download and self.entries is None and ie_result.get("_type") in entries.KINDS:
            found = Entries(ie_result)
            if found.count != 1:
                self.entries = found
                if self._on_entries and found.count != 0:
                    self._on_entries(found)
                    raise FirstVideo(ie_result)
                if self._item:
                    found.all = [entry for _, entry in found.range(self._item, self._item)]
            ie_result = {**ie_result, "entries": found.all}
        result: Info = super().process_ie_result(ie_result, download, extra_info)
        return result

    def process_video_result(self, info_dict: Info, download: bool = True) -> Info:
        if self._item > 1 and self.entries is None:
            raise yt_dlp.utils.ExtractorError(f"There is no video {self._item} on this page", expected=True)
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

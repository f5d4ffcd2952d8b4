"""Sets up the tool's package for the library's commands."""

from __future__ import annotations

import contextlib
import io
import optparse
import os
import sys
from typing import Any, Callable, Iterator, Optional

import yt_dlp
from yt_dlp.utils import DownloadCancelled

from . import addresses, configuration, entries, playlists, segments, streams
from .configuration import ConfigurationError
from .entries import Entries
from .streams import Info

# At most so many entries of a page are tried until one can be described.
MAXIMUM_FAILURES = 25
_COMMON_OPTIONS = (
    "--ignore-config",
    "--no-update",  # no advice to update the tool at each page
    "--no-playlist",
    "--lazy-playlist",
    "--abort-on-unavailable-fragments",
    "--no-progress",  # the front prints its own
    f"--concurrent-fragments={segments.AT_ONCE}",
)

Selector = Callable[[dict[str, Any]], list[Info]]


def settings(options: list[str], **more: Any) -> dict[str, Any]:
    """The tool's settings for these options, as by its own command line.

    :raises ConfigurationError: if the tool refuses an option of the user's settings
    """
    complaint = io.StringIO()
    try:
        with contextlib.redirect_stderr(complaint):
            params: dict[str, Any] = yt_dlp.parse_options([*_COMMON_OPTIONS, *options])[3]
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
    """The tool's main class. Reports errors in the settings as such, and not as errors of the page."""

    def __init__(self, params: dict[str, Any], **more: Any) -> None:
        """
        :raises ConfigurationError: if a setting cannot be used
        """
        impersonate = params.get("impersonate")
        try:
            with _cookie_errors():
                super().__init__(params, **more)
                if params.get("cookiefile") or params.get("cookiesfrombrowser"):
                    self.cookiejar  # newer versions of the tool load it at the first use
        except yt_dlp.utils.YoutubeDLError as error:
            if impersonate is None:
                raise
            raise _configuration_error(
                f"the option --impersonate={impersonate} cannot be followed: the Python package curl_cffi is missing, "
                "or does not know this client") from error

    def save_cookies(self) -> None:
        # A read-only file of cookies is sufficient.
        with contextlib.suppress(OSError):
            super().save_cookies()

    def __exit__(self, *error: Any) -> None:
        with contextlib.suppress(OSError):  # older versions of the tool save the cookies here
            super().__exit__(*error)


@contextlib.contextmanager
def _cookie_errors() -> Iterator[None]:
    """Makes the tool report cookies that cannot be loaded as an error in the settings."""
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
    """Ends the reading of a page. The tool never catches its own class for cancellation."""

    def __init__(self, page: Info) -> None:
        super().__init__()
        self.page = page


class PageReader(Tool):
    """Reads a page until the first video that can be described, or until a given one."""

    entries: Optional[Entries] = None  # of a page that has several
    _item = 0
    _on_entries: Optional[Callable[[Entries], None]] = None

    def first_video(
        self, url: str, item: int = 0, on_entries: Optional[Callable[[Entries], None]] = None
    ) -> Optional[Info]:
        """The video's record; None if there is none. Then the reason has been logged.

        :param item: number of the requested entry, from 1; 0 for the first that can be described
        :param on_entries: called with the entries of a page that has several; then no entry is read, and the result is
            the record of the page
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


def _any_stream(context: dict[str, Any]) -> list[Info]:
    # A description has all streams, but the tool requires a selection, which must not fail.
    formats: list[Info] = context["formats"]
    return formats[-1:]


def selector(tool: Any, code: str) -> Selector:
    """Chooses the stream with the code. The tool itself would take a code such as "mp4" for a container; if no stream
    has the code, the tool decides."""

    def select(context: dict[str, Any]) -> list[Info]:
        # The tool prepends "f" to a code that is also the name of a container.
        for name in (code, "f" + code):
            found = [stream for stream in context["formats"] if stream.get("format_id") == name]
            if found:
                return found
        return list(tool.build_format_selector(code)(context))

    return select

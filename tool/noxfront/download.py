"""-f CODE -o TEMPLATE: one stream of a page is fetched into a file."""

from __future__ import annotations

import contextlib
import errno
import glob
import os
from typing import Any, Iterator, Optional

import yt_dlp

from . import error_tags, messages, tool
from .command_line import Download
from .page_memory import PageMemory
from .progress import Reporter
from .streams import Info

# Failures of this machine's, which another reading of the page does not mend.
_LOCAL_FAILURES = {
    errno.EACCES, errno.EDQUOT, errno.EFBIG, errno.EIO, errno.EISDIR, errno.EMFILE, errno.ENAMETOOLONG, errno.ENFILE,
    errno.ENOENT, errno.ENOMEM, errno.ENOSPC, errno.ENOTDIR, errno.EPERM, errno.EROFS,
}


class Failure(Exception):
    """A stream could not be fetched; the log has been told why."""

    def __init__(self, cause: Optional[BaseException]) -> None:
        super().__init__()
        self.is_local = any(
            isinstance(error, OSError) and error.errno in _LOCAL_FAILURES
            or isinstance(error, yt_dlp.utils.PostProcessingError)
            for error in _causes(cause)
        )


def run(command: Download, options: list[str], memory: PageMemory, log: messages.DownloadLog) -> int:
    """Reads the page and fetches the stream; the exit code."""
    job = _Job(command, options, log)
    try:
        job.fetch_anew(memory)
        return 0
    except Failure:
        job.remove_leftovers()
        log.report(has_failed=True)
        return 1


def run_remembered(command: Download, options: list[str], page: Info, log: messages.DownloadLog) -> Optional[int]:
    """Fetches the stream by a record of the page; the exit code, or None where the page should be read anew."""
    job = _Job(command, options, log)
    try:
        job.fetch_remembered(page)
        return 0
    except Failure as failure:
        job.remove_leftovers()
        log.report(has_failed=failure.is_local)
        if failure.is_local:
            return 1
        log.warning("The page was read a while ago and its stream is no longer to be had; it is read anew")
        return None


class _Job:
    def __init__(self, command: Download, options: list[str], log: messages.DownloadLog) -> None:
        self._command = command
        self._options = [*options, *command.tool_options, "-o", command.template]
        self._log = log

    def fetch_remembered(self, page: Info) -> None:
        # Loading all that the tool knows about pages takes most of its start.
        with tool.Tool(self._settings(), auto_init=False) as plain_tool:
            self._fetch(plain_tool, page)

    def fetch_anew(self, memory: PageMemory) -> None:
        with tool.PageReader(self._settings(), auto_init="no_verbose_header") as reader:
            page = reader.first_video(self._command.url)
            if page is None:
                if not self._log.errors:
                    self._log.fail(error_tags.NOTHING, "There is no video on this page")
                raise Failure(None)
            memory.remember(self._command.url, page)  # for the other stream
            self._log.report(has_failed=False)
            reader._download_retcode = 0  # of entries that could not be described
            self._fetch(reader, page)

    def remove_leftovers(self) -> None:
        """Removes what the tool keeps to go on with another time, which under these names never comes."""
        for file in dict.fromkeys(self._log.files):
            root, extension = os.path.splitext(file)
            parts = glob.glob(glob.escape(file) + ".part*")
            for path in (file, f"{file}.ytdl", f"{root}.temp{extension}", *parts):
                with contextlib.suppress(OSError):
                    os.unlink(path)

    def _settings(self) -> dict[str, Any]:
        return tool.settings(
            self._options,
            logger=self._log,
            progress_hooks=[Reporter(self._log.say)],
            # A stream may get another name at last, for example when the tool has joined two.
            post_hooks=[self._log.announce],
        )

    def _fetch(self, plain_tool: Any, page: Info) -> None:
        plain_tool.format_selector = tool.selector(plain_tool, self._command.code)
        try:
            plain_tool.process_ie_result(page, download=True)
        except yt_dlp.utils.DownloadError as error:  # has been logged
            raise Failure(error) from error
        except (yt_dlp.utils.YoutubeDLError, SyntaxError) as error:
            self._log.error(str(error))
            raise Failure(error) from error
        if plain_tool._download_retcode != 0:
            raise Failure(None)


def _causes(error: Optional[BaseException]) -> Iterator[BaseException]:
    """The error and all those that led to it. The tool keeps some aside, in "exc_info"."""
    waiting = [error]
    seen = set()
    while waiting:
        current = waiting.pop()
        if current is None or id(current) in seen:
            continue
        seen.add(id(current))
        yield current
        kept_aside = getattr(current, "exc_info", None) or (None, None)
        waiting += [current.__cause__, current.__context__, kept_aside[1]]

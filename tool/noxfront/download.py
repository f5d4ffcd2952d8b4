"""-f CODE -o TEMPLATE: downloads one stream of a page into a file."""

from __future__ import annotations

import contextlib
import errno
import glob
import os
import time
from typing import Any, Optional

import yt_dlp

from . import entries, error_tags, failures, messages, parts, playlists, resuming, retries, segments, streams, tool
from .command_line import Download
from .page_memory import PageMemory
from .progress import Reporter
from .streams import Info

# Errors of this machine; reading the page again does not help.
_LOCAL_FAILURES = {
    errno.EACCES, errno.EDQUOT, errno.EFBIG, errno.EIO, errno.EISDIR, errno.EMFILE, errno.ENAMETOOLONG, errno.ENFILE,
    errno.ENOENT, errno.ENOMEM, errno.ENOSPC, errno.ENOTDIR, errno.EPERM, errno.EROFS,
}


class Failure(Exception):
    """A stream could not be downloaded; the reason has been logged."""

    def __init__(self, cause: Optional[BaseException], is_stale: bool = False) -> None:
        """
        :param is_stale: whether the address of the stream may have expired, so that reading the page again may help
        """
        super().__init__()
        causes = list(failures.causes(cause))
        is_local = any(
            isinstance(error, OSError) and error.errno in _LOCAL_FAILURES
            or isinstance(error, yt_dlp.utils.PostProcessingError)
            for error in causes
        )
        is_refused = any(retries.status_of(error) in retries.NEW_READING_HELPS for error in causes)
        self.is_stale = (is_stale or is_refused) and not is_local


def run(command: Download, options: list[str], memory: PageMemory, log: messages.DownloadLog) -> int:
    """Reads the page and downloads the stream. Returns the exit code."""
    job = _Job(command, options, log)
    try:
        job.fetch_anew(memory)
        return 0
    except Failure:
        job.remove_leftovers()
        log.report(has_failed=True)
        return 1


def run_remembered(command: Download, options: list[str], page: Info, log: messages.DownloadLog) -> Optional[int]:
    """Downloads the stream by a stored record of the page. Returns the exit code, or None to read the page again."""
    job = _Job(command, options, log)
    try:
        job.fetch_remembered(page)
        return 0
    except Failure as failure:
        job.remove_leftovers()
        log.report(has_failed=not failure.is_stale)
        if not failure.is_stale:
            return 1
        log.warning("The page was read a while ago and its stream is no longer to be had; it is read anew")
        return None


class _Job:
    def __init__(self, command: Download, options: list[str], log: messages.DownloadLog) -> None:
        self._command = command
        self._options = [*options, *command.tool_options, "-o", command.template]
        self._log = log

    def fetch_remembered(self, page: Info) -> None:
        wanted = [stream for stream in streams.of_page(page) if stream.get("format_id") == self._command.code]
        addresses = [stream.get("url") or "" for stream in wanted]
        if any(retries.has_expired(address, time.time()) for address in addresses):
            raise Failure(None, is_stale=True)
        params = self._settings()
        # Loading the extractors takes most of the tool's start-up time.
        with tool.Tool(params, auto_init=False) as plain_tool:
            policy = self._prepare(plain_tool, page)
            policy.can_read_anew = True
            try:
                self._fetch(plain_tool, page)
            except Failure as failure:
                failure.is_stale = failure.is_stale or policy.last_status in retries.NEW_READING_HELPS or any(
                    retries.has_expired(address, time.time()) for address in addresses)
                raise

    def fetch_anew(self, memory: PageMemory) -> None:
        with tool.PageReader(self._settings(), auto_init="no_verbose_header") as reader:
            page = reader.first_video(*entries.split(self._command.url))
            if page is None:
                if not self._log.errors:
                    self._log.fail(error_tags.NOTHING, "There is no video on this page")
                raise Failure(None)
            memory.remember(self._command.url, page)  # for the other stream
            self._log.report(has_failed=False)
            reader._download_retcode = 0  # ignores failures of other entries
            self._prepare(reader, page)
            self._fetch(reader, page)

    def remove_leftovers(self) -> None:
        """Removes the tool's partial files, which no later run would find. The folder for parts is not touched."""
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
            ignoreerrors=False,  # so that exceptions show the cause
            progress_hooks=[Reporter(self._log.say)],
            # The final name may differ, for example if the tool has joined two streams.
            post_hooks=[self._log.announce],
        )

    def _prepare(self, plain_tool: Any, page: Info) -> retries.RetryPolicy:
        """Changes how the tool downloads: it waits for servers, and downloads several segments at once."""
        policy = retries.RetryPolicy(plain_tool.params, self._options, self._log.notice)
        retries.install(policy, plain_tool)
        folder = parts.folder_beside(self._command.template)
        resumer = resuming.Resumer(plain_tool, folder, self._command.url, self._log) if folder else None
        segments.install(plain_tool.params, policy.call, resumer)
        playlists.install(plain_tool, page)
        return policy

    def _fetch(self, plain_tool: Any, page: Info) -> None:
        plain_tool.format_selector = tool.selector(plain_tool, self._command.code)
        try:
            plain_tool.process_ie_result(page, download=True)
        except yt_dlp.utils.DownloadError as error:  # already logged
            raise Failure(error) from error
        except (yt_dlp.utils.YoutubeDLError, SyntaxError) as error:
            self._log.error(str(error))
            raise Failure(error) from error
        if plain_tool._download_retcode != 0:
            raise Failure(None)

"""The main function: from the command line to the exit code."""

from __future__ import annotations

import importlib.util
import os
import pathlib
import sys
from typing import NoReturn, Sequence

from . import command_line, configuration, entries, error_tags, lean_start, messages, terminal
from .command_line import Command, Describe, ListEntries
from .page_memory import PageMemory

# Set in the environment after a restart. Settings are never passed this way or on the command line, which other users
# can read: the new process reads them itself.
_ANEW = "NOX_READ_PAGE_ANEW"
_WITHOUT_FRONT = "NOX_WITHOUT_FRONT"


class ToolBroken(Exception):
    """The tool's package cannot be used; the text is for the user."""


def main(words: Sequence[str]) -> int:
    command = command_line.parse(words)
    if command is None:
        return _plain_tool(words)
    terminal.leave()
    try:
        settings = configuration.load(configuration.path(os.environ))
    except configuration.ConfigurationError as error:
        return _refuse(error)
    _put_own_programs_first()
    if os.environ.pop(_WITHOUT_FRONT, None):
        return _plain_tool(["--ignore-config", *settings.options, *entries.plain_words(words)])
    try:
        return _run(command, settings)
    except configuration.ConfigurationError as error:
        return _refuse(error)
    except ToolBroken as error:
        messages.report_failure(error_tags.TOOL, str(error))
        return 1
    except (BrokenPipeError, KeyboardInterrupt):
        return 1
    except Exception as error:  # the tool alone may succeed, or prints its own error
        reason = f"{type(error).__name__}: {error}"
        messages.report_warning(f"The tool works without its front, which failed: {reason}")
        os.environ[_WITHOUT_FRONT] = "1"
        restart()


def _refuse(error: configuration.ConfigurationError) -> int:
    messages.report_failure(error_tags.SETTINGS, str(error))
    return 2


def restart() -> NoReturn:
    """Starts this program again with the same arguments, without any loaded or excluded packages."""
    os.execv(sys.executable, sys.orig_argv)


def _run(command: Command, settings: configuration.Configuration) -> int:
    memory = PageMemory(sys.pycache_prefix, [_tool_state(), *settings.options, *command.tool_options])
    lean_start.prepare()
    # The tool's package is loaded as late as possible. If it fails with an unknown version, that is our fault.
    if isinstance(command, Describe):
        _load_tool()
        from . import describe

        return describe.run(command, settings.options, memory, messages.Collector(settings.warnings))
    if isinstance(command, ListEntries):
        _load_tool()
        from . import listing

        return listing.run(command, settings.options, messages.Collector(settings.warnings))
    page = None if _ANEW in os.environ else memory.recall(command.url)
    if page is not None:
        lean_start.prepare_stream(page, command.code)
    _load_tool()
    from . import download

    log = messages.DownloadLog(command.template, settings.warnings)
    if page is None:
        return download.run(command, settings.options, memory, log)
    outcome = download.run_remembered(command, settings.options, page, log)
    if outcome is not None:
        return outcome
    memory.forget(command.url)
    os.environ[_ANEW] = "1"  # in case the record cannot be removed
    restart()


def _load_tool() -> None:
    """
    :raises ToolBroken: where the package cannot be loaded at all
    """
    try:
        import yt_dlp  # noqa: F401
    except Exception as error:
        raise ToolBroken(f"The download tool cannot be loaded, it is damaged or made for another version of Python: "
                         f"{type(error).__name__}: {error}") from error


def _tool_state() -> str:
    """A text that changes if the tool's package changes. Does not load the package."""
    found = importlib.util.find_spec("yt_dlp")
    path = pathlib.Path(found.origin or "") if found else pathlib.Path()
    for file in (path, *path.parents):
        if file.is_file():  # a module, or the archive that contains it
            status = file.stat()
            return f"{file} {status.st_mtime_ns} {status.st_size}"
    return ""


def _put_own_programs_first() -> None:
    """Lets the tool find the host's ffmpeg: HOST/ffmpeg beside HOST/python3.10/bin/python3.10."""
    folder = pathlib.Path(sys.executable).parents[2] if sys.executable.count("/") > 3 else None
    if folder is not None and os.access(folder / "ffmpeg", os.X_OK):
        os.environ["PATH"] = os.pathsep.join(filter(None, (str(folder), os.environ.get("PATH", os.defpath))))


def _plain_tool(words: Sequence[str]) -> int:
    import yt_dlp

    yt_dlp.main(list(words))
    return 0

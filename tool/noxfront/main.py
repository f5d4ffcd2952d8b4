"""From the words of the command line to the exit code."""

from __future__ import annotations

import importlib.util
import os
import pathlib
import sys
from typing import NoReturn, Sequence

from . import command_line, configuration, lean_start, messages
from .command_line import Command, Describe
from .page_memory import PageMemory

_ANEW = "NOX_READ_PAGE_ANEW"  # in the environment of a program that has begun anew


def main(words: Sequence[str]) -> int:
    command = command_line.parse(words)
    if command is None:
        return _plain_tool(words)
    settings = configuration.Configuration([])
    try:
        settings = configuration.load(configuration.path(os.environ))
        _put_own_programs_first()
        return _run(command, settings)
    except configuration.ConfigurationError as problem:
        messages.write(messages.STANDARD_ERROR, f"ERROR: {problem}\n")
        return 2
    except (BrokenPipeError, KeyboardInterrupt):
        return 1
    except Exception as fault:  # the tool alone may well manage, and gives its own reasons if not
        reason = f"{type(fault).__name__}: {fault}"
        messages.write(messages.STANDARD_ERROR, f"WARNING: The tool works without its front, which failed: {reason}\n")
        restart(["--ignore-config", *settings.options, *words])


def restart(words: Sequence[str]) -> NoReturn:
    """Begins anew with other words, and with nothing of what has been loaded or left out."""
    own_words = len(sys.argv) - 1
    os.execv(sys.executable, [*sys.orig_argv[:len(sys.orig_argv) - own_words], *words])


def _run(command: Command, settings: configuration.Configuration) -> int:
    memory = PageMemory(sys.pycache_prefix, [_tool_state(), *settings.options, *command.tool_options])
    warnings = [settings.warning] if settings.warning else []
    lean_start.prepare()
    # The tool's package is loaded as late as possible. What of it fails with an unknown version is a fault of ours.
    if isinstance(command, Describe):
        from . import describe

        return describe.run(command, settings.options, memory, messages.Collector(warnings))
    page = None if _ANEW in os.environ else memory.recall(command.url)
    if page is not None:
        lean_start.prepare_stream(page, command.code)
    from . import download

    log = messages.DownloadLog(command.template, warnings)
    if page is None:
        return download.run(command, settings.options, memory, log)
    outcome = download.run_remembered(command, settings.options, page, log)
    if outcome is not None:
        return outcome
    memory.forget(command.url)
    os.environ[_ANEW] = "1"  # where the record cannot be removed
    restart(sys.argv[1:])


def _tool_state() -> str:
    """Changes when the tool's package does. Without loading it."""
    found = importlib.util.find_spec("yt_dlp")
    path = pathlib.Path(found.origin or "") if found else pathlib.Path()
    for file in (path, *path.parents):
        if file.is_file():  # a module, or the archive that it lies in
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

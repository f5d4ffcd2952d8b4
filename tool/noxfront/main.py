"""From the words of the command line to the exit code."""

from __future__ import annotations

import os
import pathlib
import sys
from typing import Sequence

from . import command_line, configuration, messages
from .command_line import Command, Describe
from .page_memory import PageMemory


def main(words: Sequence[str]) -> int:
    command = command_line.parse(words)
    if command is None:
        return _plain_tool(list(words))
    try:
        settings = configuration.load(configuration.path(os.environ))
    except configuration.ConfigurationError as problem:
        messages.write(messages.STANDARD_ERROR, f"ERROR: {problem}\n")
        return 2
    _put_own_programs_first()
    try:
        return _run(command, settings)
    except (BrokenPipeError, KeyboardInterrupt):
        return 1
    except Exception as fault:  # the tool alone may well manage, and gives its own reasons if not
        reason = f"{type(fault).__name__}: {fault}"
        messages.write(messages.STANDARD_ERROR, f"WARNING: The tool works without its front, which failed: {reason}\n")
        return _plain_tool(["--ignore-config", *settings.options, *words])


def _run(command: Command, settings: configuration.Configuration) -> int:
    # Whatever of these fails with a version of the tool that is not known is a fault of the front's.
    from . import describe, download, tool

    memory = PageMemory(sys.pycache_prefix, [tool.VERSION, *settings.options, *command.tool_options])
    warnings = [settings.warning] if settings.warning else []
    if isinstance(command, Describe):
        return describe.run(command, settings.options, memory, messages.Collector(warnings))
    return download.run(command, settings.options, memory, messages.DownloadLog(command.template, warnings))


def _put_own_programs_first() -> None:
    """Lets the tool find the host's ffmpeg: HOST/ffmpeg beside HOST/python3.10/bin/python3.10."""
    folder = pathlib.Path(sys.executable).parents[2] if sys.executable.count("/") > 3 else None
    if folder is not None and os.access(folder / "ffmpeg", os.X_OK):
        os.environ["PATH"] = os.pathsep.join(filter(None, (str(folder), os.environ.get("PATH", os.defpath))))


def _plain_tool(words: list[str]) -> int:
    import yt_dlp

    sys.argv[1:] = words
    yt_dlp.main(words)
    return 0

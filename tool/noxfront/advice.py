"""Adapts the tool's messages for users who do not use the tool's command line."""

from __future__ import annotations

import os
import re

from . import configuration, options

# Printed for each page, or useful to developers of the tool only.
_NOISE = re.compile(
    r"generic information extractor|older than \d+ days|^Deprecated Feature|unable to obtain file audio codec"
    r"|have asked for UNPLAYABLE|Could not determine .* terminal", re.IGNORECASE)
# Sentences about the tool's command line and about bug reports.
_NOT_HERE = re.compile(
    r"report this issue|latest version|how to update|(^|\s)-[Uv]\b|\bREADME\b|FAQ#how-do-i-pass"
    r"|yt-dlp \"ytsearch|warnings presented before", re.IGNORECASE)
_SENTENCE_END = re.compile(r"(?<=[.;!?])\s+")
_OPTION = re.compile(r"(?<![\w-])--[a-z][a-z0-9-]+")
# The tool's warning if a page needs a script runtime and none is found.
_RUNTIME_MISSING = re.compile(r"No supported JavaScript runtime could be found", re.IGNORECASE)


def is_noise(message: str) -> bool:
    return _NOISE.search(message) is not None


def tells_missing_runtime(message: str) -> bool:
    return _RUNTIME_MISSING.search(message) is not None


def missing_runtime() -> str:
    return ("This page needs a program that runs its script, and none was found; some or all streams are missing. "
            "Install Deno 2.3 or newer, so that its command \"deno\" is found on PATH; or Node.js 22 or newer, with "
            f"the line \"--js-runtimes node\" in {_file()}")


def adapted(message: str) -> str:
    """The message without useless sentences, and with the place where options are set; may be empty."""
    if tells_missing_runtime(message):
        return re.sub(r"No supported JavaScript runtime could be found.*", lambda _: missing_runtime(), message,
                      flags=re.IGNORECASE | re.DOTALL)
    text = message.replace("your command/config", "tool.conf").replace("--netrc-cmd, ", "")
    lines = (" ".join(filter(_is_of_use, _SENTENCE_END.split(line))) for line in re.split(r"[\r\n]+", text))
    text = "\n".join(line.rstrip("; ") for line in lines if line.strip())
    if _OPTION.search(text) and str(_file()) not in text:
        text += f"{'' if text.endswith(('.', '!', '?')) else '.'} Options are set in {_file()}"
    return text


def _is_of_use(sentence: str) -> bool:
    return not _NOT_HERE.search(sentence) and all(name in options.TAKEN for name in _OPTION.findall(sentence))


def _file() -> str:
    return str(configuration.path(os.environ))

"""The tool's messages, and which of them reach the library."""

from __future__ import annotations

import os
import re
import select
import sys
from typing import Callable, Iterable, NamedTuple, Optional

from . import advice, error_tags as tags, failures, tool_age

STANDARD_OUTPUT, STANDARD_ERROR = 1, 2
_TAG = "[download]"
_OTHER_TAG = "(download)"
_DESTINATION = f"{_TAG} Destination: "
# Up to this size, a write to a pipe is atomic.
_PIECE = select.PIPE_BUF
_WARNING, _ERROR, _NOTE = "WARNING: ", "ERROR: ", "NOTE: "
_TAG_START = "[nox:"
_LINE_END = re.compile(r"\s*[\r\n]\s*")
# Failures that a newer version of the tool may fix.
_OF_OLD_TOOLS = frozenset({tags.OTHER, tags.NOTHING, tags.LOGIN, tags.RUNTIME, tags.TOOL})


def write(channel: int, text: str) -> None:
    """Writes immediately and, if the system allows it, in one piece."""
    data = _encoded(text)
    while data:
        data = data[os.write(channel, data):]


def _encoded(text: str) -> bytes:
    try:
        return text.encode("utf-8", "surrogateescape")  # restores the bytes of file names that are not UTF-8
    except UnicodeEncodeError:
        return text.encode("utf-8", "replace")


class Complaint(NamedTuple):
    tag: str
    text: str


class Collector:
    """The tool's logger while it reads a page: collects errors and warnings until the outcome is known.

    The library takes each piece of error output that does not begin with WARNING for a failure, and the host gets only
    the last piece. So everything is written as one piece, which begins with the most important message.
    """

    def __init__(self, warnings: Iterable[str] = ()) -> None:
        self.errors: list[Complaint] = []
        self.warnings = list(warnings)
        self.notices: list[str] = []  # of the front, printed after a success; may begin with a tag
        self._lacks_runtime = False

    def debug(self, message: str) -> None:
        """A status message; ignored."""

    info = debug

    def warning(self, message: str) -> None:
        """A warning of the tool."""
        text = self._useful(message)
        if text:
            self.warnings.append(text)

    def error(self, message: str) -> None:
        """An error of the tool; its cause is the exception that is being handled."""
        # After their prefix, some begin with a carriage return and the tag of status messages.
        text = str(message).strip().removeprefix(_ERROR.strip()).lstrip().removeprefix(_TAG).lstrip()
        if text and not advice.is_noise(text):
            self.fail(failures.tag_of(sys.exc_info()[1], text), advice.adapted(text) or text)

    def fail(self, tag: str, text: str) -> None:
        """An error whose cause is known."""
        self.errors.append(Complaint(tag, text))

    def report(self, has_failed: bool) -> None:
        """Writes the messages; after a success, errors become warnings."""
        errors = self._ordered_errors()
        lines = [_line(_WARNING, text) for text in self.warnings]
        end = ""
        if has_failed:
            tag = errors[0].tag if errors else tags.OTHER
            if not errors:
                errors = [Complaint(tag, "The download tool has failed and gives no reason")]
            lines = [_line(_ERROR, text) for _, text in errors] + lines
            lines[0] = _line(f"{_ERROR}[nox:{tag}] ", errors[0].text)
            note = tool_age.note() if tag in _OF_OLD_TOOLS else None
            end = f"{_NOTE}{note}\n" if note else ""
        else:
            notices = [f"{_WARNING}{text}\n" for text in self.notices]
            lines = notices + [_line(_WARNING, text) for _, text in errors] + lines
        self.errors, self.warnings = [], []
        text = "".join(dict.fromkeys(lines))
        if text:
            write(STANDARD_ERROR, _shortened(text, _PIECE - len(end)) + end)

    def _useful(self, message: str) -> str:
        text = str(message).strip()
        self._lacks_runtime |= advice.tells_missing_runtime(text)
        return "" if advice.is_noise(text) else advice.adapted(text)

    def _ordered_errors(self) -> list[Complaint]:
        """The errors, the most useful one first."""
        errors = list(dict.fromkeys(self.errors))
        if self._lacks_runtime and errors and all(error.tag in (tags.OTHER, tags.NOTHING) for error in errors):
            self.warnings = [text for text in self.warnings if advice.missing_runtime() not in text]
            return [Complaint(tags.RUNTIME, advice.missing_runtime()), *errors]
        return sorted(errors, key=lambda error: error.tag == tags.OTHER)


class DownloadLog(Collector):
    """The tool's logger while it downloads a stream. Status messages go to standard output, one line in one piece.

    The library searches the output for file names and figures by a tag. Only lines about this download's file keep the
    tag, since the title of a page could look like such a line.
    """

    def __init__(
        self, template: str, warnings: Iterable[str] = (), say: Optional[Callable[[str], None]] = None
    ) -> None:
        super().__init__(warnings)
        self.files: list[str] = []  # files that the tool has begun to write
        self.names: dict[str, str] = {}  # maps the tool's names of files to those that the library knows
        self._warned: set[str] = set()
        self._told = ""  # the last printed name
        self.say = say or (lambda text: write(STANDARD_OUTPUT, text + "\n"))
        self._start = os.path.basename(template.partition("%(")[0].replace("%%", "%"))

    def announce(self, file: str) -> None:
        """Prints the name of the file, unless it was the last printed one."""
        if file != self._told:
            self._told = file
            self.say(_DESTINATION + file)

    def debug(self, message: str) -> None:
        text = self._renamed(message.strip("\r\n"))
        for start, end in ((_DESTINATION, ""), (f"{_TAG} ", " has already been downloaded")):
            if text.startswith(start) and text.endswith(end):
                file = text[len(start):len(text) - len(end)]
                if not os.path.basename(file).startswith(self._start):
                    break
                if start == _DESTINATION:
                    self.files.append(file)
                self._told = file
                self.say(text)
                return
        self.say(text.replace(_TAG, _OTHER_TAG))

    info = debug

    def warning(self, message: str) -> None:
        text = self._useful(self._renamed(message))
        if text and text not in self._warned:
            self._warned.add(text)
            report_warning(text)

    def error(self, message: str) -> None:
        super().error(self._renamed(message))

    def notice(self, message: str) -> None:
        """Writes a message of the front immediately, also repeatedly. It may begin with a tag."""
        write(STANDARD_ERROR, f"{_WARNING}{message}\n")

    def _renamed(self, message: str) -> str:
        message = str(message)
        for file, name in self.names.items():
            message = message.replace(file, name)
        return message


def report_failure(tag: str, text: str) -> None:
    """Reports the only error of a run in which the tool was not started."""
    log = Collector()
    log.fail(tag, text)
    log.report(has_failed=True)


def report_warning(text: str) -> None:
    """Writes a warning immediately."""
    write(STANDARD_ERROR, _shortened(_line(_WARNING, text), _PIECE))


def _line(start: str, text: str) -> str:
    """Prefix and text. Further lines are indented, so that none of them looks like a message of the front."""
    text = _LINE_END.sub("\n  ", text.strip())
    if text.startswith(_TAG_START):
        text = "(" + text[1:]
    return f"{start}{text}\n"


def _shortened(text: str, limit: int) -> str:
    data = _encoded(text)
    if len(data) <= limit:
        return text
    ellipsis = "...\n"
    return data[:limit - len(ellipsis)].decode("utf-8", "ignore") + ellipsis

"""What the tool says while it works, and which of it reaches the library."""

from __future__ import annotations

import os
import select
from typing import Callable, Iterable, Optional

STANDARD_OUTPUT, STANDARD_ERROR = 1, 2
_TAG = "[download]"
_OTHER_TAG = "(download)"
_DESTINATION = f"{_TAG} Destination: "
# A pipe takes so much in one piece, so that the reader gets it in one piece.
_PIECE = select.PIPE_BUF
_WARNING, _ERROR = "WARNING: ", "ERROR: "


def write(channel: int, text: str) -> None:
    """At once and, as far as the system does so, in one piece."""
    data = _encoded(text)
    while data:
        data = data[os.write(channel, data):]


def _encoded(text: str) -> bytes:
    try:
        return text.encode("utf-8", "surrogateescape")  # file names that are not UTF-8 become what they were
    except UnicodeEncodeError:
        return text.encode("utf-8", "replace")


class Collector:
    """The tool's logger while it reads a page: keeps what it complains about until the outcome is known.

    The library takes each piece of error output that does not begin with WARNING as a failure, and the host gets the
    last piece only. So all of it goes out as one piece, which begins with what decides.
    """

    def __init__(self, warnings: Iterable[str] = ()) -> None:
        self.errors: list[str] = []
        self.warnings = list(warnings)

    def debug(self, message: str) -> None:
        """Narration, which nobody reads."""

    info = debug

    def warning(self, message: str) -> None:
        self.warnings.append(message)

    def error(self, message: str) -> None:
        # Some begin with a carriage return and the narration's tag, behind the word of their own.
        text = message.strip().removeprefix(_ERROR.strip()).lstrip().removeprefix(_TAG).lstrip()
        if text:
            self.errors.append(text)

    def report(self, has_failed: bool) -> None:
        """Writes it out: as warnings where there was a success all the same."""
        if has_failed:
            lines = [_ERROR + text for text in self.errors] + [_WARNING + text for text in self.warnings]
        else:
            lines = [_WARNING + text for text in self.errors + self.warnings]
        self.errors, self.warnings = [], []
        text = "".join(f"{line}\n" for line in dict.fromkeys(lines))
        if text:
            write(STANDARD_ERROR, _shortened(text, _PIECE))


class DownloadLog(Collector):
    """The tool's logger while it fetches a stream. Its narration goes to standard output, a line in one piece.

    The library looks for file names and figures anywhere in it. Only the lines that really tell of this download's file
    keep the tag by which it finds them: a page's title may look like one.
    """

    def __init__(
        self, template: str, warnings: Iterable[str] = (), say: Optional[Callable[[str], None]] = None
    ) -> None:
        super().__init__(warnings)
        self.files: list[str] = []  # those that the tool has begun to write
        self._told = ""  # the name that the library has been told last
        self.say = say or (lambda text: write(STANDARD_OUTPUT, text + "\n"))
        self._start = os.path.basename(template.partition("%(")[0].replace("%%", "%"))

    def announce(self, file: str) -> None:
        """Tells the library the name of the file, unless it was the last told."""
        if file != self._told:
            self._told = file
            self.say(_DESTINATION + file)

    def debug(self, message: str) -> None:
        text = message.strip("\r\n")
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
        write(STANDARD_ERROR, f"{_WARNING}{message}\n")


def _shortened(text: str, limit: int) -> str:
    data = _encoded(text)
    if len(data) <= limit:
        return text
    ellipsis = "...\n"
    return data[:limit - len(ellipsis)].decode("utf-8", "ignore") + ellipsis

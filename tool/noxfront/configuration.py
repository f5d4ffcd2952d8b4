"""The user's settings for the tool: $XDG_CONFIG_HOME/noxwebmedia/tool.conf.

Each line contains one or more options, as on the tool's command line, quoted as in a shell; "#" begins a comment. The
module "options" has the list of the allowed ones.
"""

from __future__ import annotations

import os
import pathlib
import shlex
import stat
from typing import Iterator, Mapping, NamedTuple

from . import options as table

SIZE_LIMIT = 64 << 10


class ConfigurationError(Exception):
    """The file contains something that is not allowed; the text is for the user."""


class Configuration(NamedTuple):
    options: list[str]
    warnings: tuple[str, ...] = ()


def path(environment: Mapping[str, str]) -> pathlib.Path:
    """The path of the user's file, which need not exist."""
    folder = environment.get("XDG_CONFIG_HOME", "")
    if not os.path.isabs(folder):
        home = os.path.expanduser("~")
        folder = os.path.join(home if os.path.isabs(home) else "/nonexistent", ".config")
    return pathlib.Path(folder, "noxwebmedia", "tool.conf")


def load(file: pathlib.Path) -> Configuration:
    """The options in the file. If anybody else could have written them: none, and a warning.

    :raises ConfigurationError: for every error in the file; the message names the file and the line
    """
    try:
        # Non-blocking: if the file is a named pipe, open() would block for ever.
        with open(file, "rb", opener=lambda name, flags: os.open(name, flags | os.O_NONBLOCK)) as source:
            status = os.fstat(source.fileno())
            if not stat.S_ISREG(status.st_mode):
                return Configuration([], (f"{file} is no file and is not used",))
            if status.st_uid != os.geteuid() or status.st_mode & (stat.S_IWGRP | stat.S_IWOTH):
                return Configuration(
                    [], (f"{file} is not used: it must be your own, and nobody else may write to it",))
            data = source.read(SIZE_LIMIT + 1)
        if len(data) > SIZE_LIMIT:
            raise ConfigurationError(f"it is larger than {SIZE_LIMIT >> 10} kB, more than settings can need")
        found = parse(data.decode("utf-8", "surrogateescape"))
        _demand_files(found.options)
    except (FileNotFoundError, NotADirectoryError):
        return Configuration([])
    except OSError as error:
        raise ConfigurationError(f"{file} cannot be read: {error.strerror}") from error
    except ConfigurationError as error:
        raise ConfigurationError(f"{file}: {error}") from error
    return Configuration(found.options, tuple(f"{file}: {warning}" for warning in found.warnings))


def parse(text: str) -> Configuration:
    """The options for the tool, each joined with its value, so that no value is read as an option."""
    return _Parser(text).result()


def _demand_files(options: list[str]) -> None:
    for option in options:
        name, _, value = option.partition("=")
        if name not in table.FILES:
            continue
        try:
            is_there = os.access(value, os.R_OK)
            cause = "cannot be read" if os.path.exists(value) else "does not exist"
        except ValueError:
            is_there, cause = False, "cannot be a file's name"
        if not is_there:
            raise ConfigurationError(f"the file that {name} names {cause}: {value}")
        if name == "--cookies" and os.path.isdir(value):
            raise ConfigurationError(f"the file that {name} names is a folder: {value}")


class _Parser:
    def __init__(self, text: str) -> None:
        self._text = text
        self._options: list[str] = []
        self._first_lines: dict[str, int] = {}
        self._ignored: list[str] = []
        self._warnings: list[str] = []

    def result(self) -> Configuration:
        words = self._words()
        for line, word in words:
            self._take(line, word, words)
        self._demand_secrets()
        if self._ignored:
            names = ", ".join(self._ignored)
            self._warnings.append(f"without meaning here, and ignored: {names}")
        return Configuration(self._options, tuple(self._warnings))

    def _words(self) -> Iterator[tuple[int, str]]:
        """The words with their line numbers."""
        for line, text in enumerate(self._text.split("\n"), 1):
            if not text.isprintable():
                _check_characters(line, text)
            try:
                words = shlex.split(text, comments=True)
            except ValueError:
                raise ConfigurationError(f"line {line}: a quotation is not closed, or the line ends with \\") from None
            for word in words:
                yield line, word

    def _take(self, line: int, word: str, rest: Iterator[tuple[int, str]]) -> None:
        name, has_sign, value = word.partition("=")
        has_value = bool(has_sign)
        short = word[:2]
        if short in table.SHORT and not word.startswith("--"):
            name, value = table.SHORT[short], word[2:].removeprefix("=")
            has_value = len(word) > 2
        takes_value = self._takes_value(line, name)
        if has_value and not takes_value:
            raise ConfigurationError(f"line {line}: the option {name} has no value")
        if takes_value and not has_value:
            try:
                value = next(rest)[1]
            except StopIteration:
                raise ConfigurationError(f"line {line}: the option {name} needs a value") from None
        if name not in table.TAKEN:
            self._ignored.append(f"{name} (line {line})")
            return
        if takes_value:
            value = _checked(line, name, value)
        self._note_repeated(line, name)
        self._options.append(f"{name}={value}" if takes_value else name)

    @staticmethod
    def _takes_value(line: int, name: str) -> bool:
        if name in table.TAKEN:
            return table.TAKEN[name]
        if table.is_without_meaning(name):
            return table.WITHOUT_MEANING.get(name, False)
        reason = table.refusal(name)
        if reason is not None:
            raise ConfigurationError(f"line {line}: the option {name} is not allowed here: {reason}")
        if not name.startswith("-"):
            raise ConfigurationError(f"line {line}: \"{name}\" is no option")
        import difflib  # seldom needed

        similar = difflib.get_close_matches(name[:80], table.TAKEN, n=1)
        hint = f"; is {similar[0]} meant?" if similar else ""
        raise ConfigurationError(f"line {line}: the option {name} is not known here{hint}")

    def _note_repeated(self, line: int, name: str) -> None:
        if name in self._first_lines and name not in table.REPEATED:
            self._warnings.append(
                f"line {line}: the option {name} stands in line {self._first_lines[name]} already; the last one counts")
        self._first_lines[name] = line

    def _demand_secrets(self) -> None:
        for name, secret in table.SECRETS.items():
            if name not in self._first_lines:
                continue
            place = f"line {self._first_lines[name]}: the option {name}"
            if secret not in self._first_lines:
                raise ConfigurationError(f"{place} needs {secret} as well: the tool would ask for it, and nobody could "
                                         "answer here. For names and passwords in ~/.netrc, --netrc alone is right")
            if name == "--username" and "--netrc" in self._first_lines:
                raise ConfigurationError(f"{place} and the option --netrc exclude each other")


def _check_characters(line: int, text: str) -> None:
    if "\0" in text:
        raise ConfigurationError(f"line {line}: it holds a zero character; is this a text file?")
    if any("\udc80" <= character <= "\udcff" for character in text):
        raise ConfigurationError(f"line {line}: it is not in UTF-8")


def _checked(line: int, name: str, value: str) -> str:
    if name == "--concurrent-fragments":
        limit = table.CONNECTIONS_LIMIT
        if not value.isascii() or not value.isdigit() or not 1 <= int(value[:9]) <= limit:
            raise ConfigurationError(f"line {line}: the option {name} (-N) takes a number from 1 to {limit}")
    if name in table.FILES:
        return os.path.expanduser(value)
    return value

"""The user's settings for the tool: $XDG_CONFIG_HOME/noxwebmedia/tool.conf.

One option on a line or several, as on the tool's command line, quoted as in a shell; "#" begins a comment. Only options
that leave the tool's output and its files as the library expects them are taken.
"""

from __future__ import annotations

import os
import pathlib
import shlex
import stat
from typing import Mapping, NamedTuple, Optional

# Options and whether they have a value.
ALLOWED: Mapping[str, bool] = {
    "--proxy": True,
    "--geo-verification-proxy": True,
    "--socket-timeout": True,
    "--source-address": True,
    "--force-ipv4": False,
    "--force-ipv6": False,
    "--cookies": True,
    "--no-cookies": False,
    "--cookies-from-browser": True,
    "--no-cookies-from-browser": False,
    "--limit-rate": True,
    "--throttled-rate": True,
    "--retries": True,
    "--file-access-retries": True,
    "--fragment-retries": True,
    "--extractor-retries": True,
    "--retry-sleep": True,
    "--user-agent": True,
    "--referer": True,
    "--add-header": True,
    "--add-headers": True,
    "--username": True,
    "--password": True,
    "--twofactor": True,
    "--video-password": True,
    "--netrc": False,
    "--netrc-location": True,
    "--extractor-args": True,
}
SHORT: Mapping[str, str] = {
    "-4": "--force-ipv4",
    "-6": "--force-ipv6",
    "-r": "--limit-rate",
    "-R": "--retries",
    "-u": "--username",
    "-p": "--password",
    "-2": "--twofactor",
    "-n": "--netrc",
}
SIZE_LIMIT = 1 << 20


class ConfigurationError(Exception):
    """The file holds something that is not taken; the text is for the user."""


class Configuration(NamedTuple):
    options: list[str]
    warning: Optional[str] = None


def path(environment: Mapping[str, str]) -> pathlib.Path:
    """Where the user's file is, whether or not there is one."""
    folder = environment.get("XDG_CONFIG_HOME", "")
    base = pathlib.Path(folder) if os.path.isabs(folder) else pathlib.Path.home() / ".config"
    return base / "noxwebmedia" / "tool.conf"


def load(file: pathlib.Path) -> Configuration:
    """The options in the file; none, with a warning, where others than the user may have written them."""
    try:
        # Not waiting: a pipe in the file's place would hold up the tool for ever.
        with open(file, "rb", opener=lambda name, flags: os.open(name, flags | os.O_NONBLOCK)) as source:
            status = os.fstat(source.fileno())
            if not stat.S_ISREG(status.st_mode):
                return Configuration([], f"{file} is no file and is not used")
            if status.st_uid != os.geteuid() or status.st_mode & (stat.S_IWGRP | stat.S_IWOTH):
                return Configuration([], f"{file} is not used: it must be your own, and nobody else may write to it")
            text = source.read(SIZE_LIMIT).decode("utf-8")
    except (FileNotFoundError, NotADirectoryError):
        return Configuration([])
    except (OSError, ValueError) as problem:
        raise ConfigurationError(f"{file} cannot be read: {problem}") from problem
    try:
        return Configuration(parse(text))
    except ConfigurationError as problem:
        raise ConfigurationError(f"{file}: {problem}") from problem


def parse(text: str) -> list[str]:
    """The options as words for the tool, each with its value in one word, so that none is read as another option."""
    try:
        words = shlex.split(text, comments=True)
    except ValueError as problem:
        raise ConfigurationError(str(problem)) from problem
    options = []
    rest = iter(words)
    for word in rest:
        name, has_sign, value = word.partition("=")
        name = SHORT.get(name, name)
        if name not in ALLOWED:
            raise ConfigurationError(f"the option {name} is not allowed here")
        if ALLOWED[name] and not has_sign:
            try:
                value = next(rest)
            except StopIteration:
                raise ConfigurationError(f"the option {name} needs a value") from None
        elif has_sign and not ALLOWED[name]:
            raise ConfigurationError(f"the option {name} has no value")
        options.append(f"{name}={value}" if ALLOWED[name] else name)
    return options

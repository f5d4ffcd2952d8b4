"""Nothing that the tool runs asks a person: the host's user sees no terminal, and nobody would answer."""

from __future__ import annotations

import contextlib
import fcntl
import getpass
import os
import signal
import termios
from typing import Any, NoReturn


class SecretMissing(Exception):
    """The tool has asked for a password or a code."""


def leave() -> None:
    """From now on standard input is empty, for the programs that the tool runs as well, and there is no terminal."""
    empty = os.open(os.devnull, os.O_RDONLY)
    os.dup2(empty, 0)
    if empty != 0:
        os.close(empty)
    # The process stays in its group, by which the library ends it: a session of its own would be a new group.
    with contextlib.suppress(OSError):
        terminal = os.open("/dev/tty", os.O_RDWR | os.O_NOCTTY | os.O_NONBLOCK)
        hang_up = signal.signal(signal.SIGHUP, signal.SIG_IGN)  # is sent where this process leads its session
        try:
            fcntl.ioctl(terminal, termios.TIOCNOTTY)
        finally:
            signal.signal(signal.SIGHUP, hang_up)
            os.close(terminal)
    getpass.getpass = _refuse


def _refuse(*_: Any, **__: Any) -> NoReturn:
    raise SecretMissing("The page asks for a password or a code that is not set. "
                        "See --password, --twofactor and --video-password")

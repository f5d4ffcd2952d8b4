"""Prevents questions on the terminal, which a user of a host could not see or answer."""

from __future__ import annotations

import contextlib
import fcntl
import getpass
import os
import signal
import termios
from typing import Any, NoReturn


class SecretMissing(Exception):
    """The tool asked for a password or a code."""


def leave() -> None:
    """From now on, this process and its children have an empty standard input and no terminal."""
    empty, end = os.pipe()  # not /dev/null: some containers have a file in its place
    os.close(end)
    os.dup2(empty, 0)
    if empty != 0:
        os.close(empty)
    # setsid() would create a new process group, but the library kills the process by its group.
    with contextlib.suppress(OSError):
        terminal = os.open("/dev/tty", os.O_RDWR | os.O_NOCTTY | os.O_NONBLOCK)
        hang_up = signal.signal(signal.SIGHUP, signal.SIG_IGN)  # sent if this process is the session leader
        try:
            fcntl.ioctl(terminal, termios.TIOCNOTTY)
        finally:
            signal.signal(signal.SIGHUP, hang_up)
            os.close(terminal)
    getpass.getpass = _refuse


def _refuse(*_: Any, **__: Any) -> NoReturn:
    raise SecretMissing("The page asks for a password or a code that is not set. "
                        "See --password, --twofactor and --video-password")

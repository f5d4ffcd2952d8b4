"""A folder below the interpreter's bytecode cache with access for the user only.

All files are opened relative to the open folder, so that exchanging the folder has no effect.
"""

from __future__ import annotations

import contextlib
import os
import stat
from typing import Iterator, Optional


class PrivateFolder:
    """Its methods raise OSError if the folder or the file is missing or not private."""

    def __init__(self, cache: Optional[str], name: str) -> None:
        """
        :param cache: the bytecode cache; None for no folder
        """
        self._path = os.path.join(cache, name) if cache else None

    @contextlib.contextmanager
    def opened(self, create: bool) -> Iterator[int]:
        """Opens the folder for the duration of the context."""
        if self._path is None:
            raise FileNotFoundError
        if create:
            os.makedirs(os.path.dirname(self._path), mode=0o700, exist_ok=True)
            with contextlib.suppress(FileExistsError):
                os.mkdir(self._path, mode=0o700)
        folder = os.open(self._path, os.O_RDONLY | os.O_DIRECTORY | os.O_NOFOLLOW | os.O_CLOEXEC)
        try:
            _demand_private(os.fstat(folder))
            yield folder
        finally:
            os.close(folder)


def read(folder: int, name: str, size_limit: int) -> tuple[os.stat_result, bytes]:
    """Reads a file of the open folder."""
    file = os.open(name, os.O_RDONLY | os.O_NOFOLLOW | os.O_NONBLOCK | os.O_CLOEXEC, dir_fd=folder)
    with open(file, "rb") as source:
        status = os.fstat(file)
        _demand_private(status)
        if not stat.S_ISREG(status.st_mode) or status.st_size > size_limit:
            raise FileNotFoundError
        return status, source.read()


def write(folder: int, name: str, data: bytes) -> None:
    """Writes atomically: readers see the old file or the new one."""
    unfinished = f"{name}.{os.getpid()}"
    flags = os.O_WRONLY | os.O_CREAT | os.O_TRUNC | os.O_NOFOLLOW | os.O_CLOEXEC
    file = os.open(unfinished, flags, mode=0o600, dir_fd=folder)
    try:
        with open(file, "wb") as sink:
            sink.write(data)
        os.rename(unfinished, name, src_dir_fd=folder, dst_dir_fd=folder)
    except BaseException:
        os.unlink(unfinished, dir_fd=folder)
        raise


def _demand_private(status: os.stat_result) -> None:
    if status.st_uid != os.geteuid() or stat.S_IMODE(status.st_mode) & 0o077:
        raise PermissionError

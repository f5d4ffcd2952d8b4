"""Pages that have been read, for the downloads that follow a description.

The records lie in a private folder below the interpreter's bytecode cache, one file to a page. They hold what the tool
needs to fetch the streams, which may include cookies: nobody but the user reads or writes them. All files are reached
through the open folder, so that a folder that is exchanged meanwhile is of no use.
"""

from __future__ import annotations

import contextlib
import hashlib
import json
import os
import stat
import time
from typing import Callable, Iterator, Optional, Sequence

from . import streams
from .streams import Info

FOLDER = "nox-pages"
MAXIMUM_AGE = 20 * 60  # seconds
MAXIMUM_COUNT = 50
SIZE_LIMIT = 32 << 20


class PageMemory:
    """Never fails: a record that cannot be written is not kept, one that cannot be read is not there."""

    def __init__(self, cache: Optional[str], scope: Sequence[str], clock: Callable[[], float] = time.time) -> None:
        """
        :param cache: the interpreter's bytecode cache; without one nothing is remembered
        :param scope: what else than the address decides what the tool makes of a page: its version and its options
        """
        self._folder = os.path.join(cache, FOLDER) if cache else None
        self._scope = list(scope)
        self._clock = clock

    def recall(self, url: str) -> Optional[Info]:
        """The page's record, if it was read a short time ago."""
        try:
            with self._opened(create=False) as folder:
                kept = self._read(folder, self._name(url))
        except (OSError, ValueError, RecursionError):
            return None
        if not isinstance(kept, dict) or kept.get("url") != url or not isinstance(kept.get("page"), dict):
            return None
        page: Info = kept["page"]
        return page

    def remember(self, url: str, page: Info) -> None:
        """Keeps the record, which must be one that can be written as JSON; not that of a live page."""
        if streams.is_live(page):
            self.forget(url)
            return
        try:
            data = json.dumps({"url": url, "page": page}).encode()
            with self._opened(create=True) as folder:
                self._write(folder, self._name(url), data)
                self._prune(folder)
        except (OSError, ValueError, TypeError, RecursionError):
            self.forget(url)

    def forget(self, url: str) -> None:
        """Removes the record."""
        with contextlib.suppress(OSError), self._opened(create=False) as folder:
            os.unlink(self._name(url), dir_fd=folder)

    def _name(self, url: str) -> str:
        return hashlib.sha256(json.dumps([url, *self._scope]).encode()).hexdigest() + ".json"

    @contextlib.contextmanager
    def _opened(self, create: bool) -> Iterator[int]:
        if self._folder is None:
            raise FileNotFoundError
        if create:
            os.makedirs(os.path.dirname(self._folder), mode=0o700, exist_ok=True)
            with contextlib.suppress(FileExistsError):
                os.mkdir(self._folder, mode=0o700)
        folder = os.open(self._folder, os.O_RDONLY | os.O_DIRECTORY | os.O_NOFOLLOW | os.O_CLOEXEC)
        try:
            _demand_private(os.fstat(folder))
            yield folder
        finally:
            os.close(folder)

    def _read(self, folder: int, name: str) -> object:
        file = os.open(name, os.O_RDONLY | os.O_NOFOLLOW | os.O_NONBLOCK | os.O_CLOEXEC, dir_fd=folder)
        with open(file, "rb") as source:
            status = os.fstat(file)
            _demand_private(status)
            if not stat.S_ISREG(status.st_mode) or not self._is_young(status) or status.st_size > SIZE_LIMIT:
                raise FileNotFoundError
            return json.loads(source.read())

    def _write(self, folder: int, name: str, data: bytes) -> None:
        if len(data) > SIZE_LIMIT:
            raise ValueError
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

    def _prune(self, folder: int) -> None:
        files = []
        for name in os.listdir(folder):
            with contextlib.suppress(OSError):  # another run may have removed it
                files.append((os.stat(name, dir_fd=folder, follow_symlinks=False), name))
        files.sort(key=lambda file: file[0].st_mtime, reverse=True)
        for place, (status, name) in enumerate(files):
            if place >= MAXIMUM_COUNT or not self._is_young(status):
                with contextlib.suppress(OSError):
                    os.unlink(name, dir_fd=folder)

    def _is_young(self, status: os.stat_result) -> bool:
        # A record from the future means that the clock has been set: its age is not known.
        return -1 <= self._clock() - status.st_mtime <= MAXIMUM_AGE


def _demand_private(status: os.stat_result) -> None:
    if status.st_uid != os.geteuid() or stat.S_IMODE(status.st_mode) & 0o077:
        raise PermissionError

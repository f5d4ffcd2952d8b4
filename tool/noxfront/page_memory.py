"""Stores the records of pages, for the downloads that follow a description.

The records lie in a private folder, one file to a page. They hold what the tool needs to fetch the streams, which may
include cookies.
"""

from __future__ import annotations

import contextlib
import hashlib
import json
import os
import time
from typing import Callable, Optional, Sequence

from . import private_folder, streams
from .private_folder import PrivateFolder
from .streams import Info

FOLDER = "nox-pages"
MAXIMUM_AGE = 20 * 60  # seconds
MAXIMUM_COUNT = 50
SIZE_LIMIT = 32 << 20


class PageMemory:
    """Never fails: errors in writing are ignored, and a record that cannot be read counts as missing."""

    def __init__(self, cache: Optional[str], scope: Sequence[str], clock: Callable[[], float] = time.time) -> None:
        """
        :param cache: the interpreter's bytecode cache; without one nothing is remembered
        :param scope: what else than the address decides what the tool makes of a page: its version and its options
        """
        self._folder = PrivateFolder(cache, FOLDER)
        self._scope = list(scope)
        self._clock = clock

    def recall(self, url: str) -> Optional[Info]:
        """The page's record, if the page was read recently."""
        try:
            with self._folder.opened(create=False) as folder:
                kept = self._read(folder, self._name(url))
        except (OSError, ValueError, RecursionError):
            return None
        if not isinstance(kept, dict) or kept.get("url") != url or not isinstance(kept.get("page"), dict):
            return None
        page: Info = kept["page"]
        return page

    def remember(self, url: str, page: Info) -> None:
        """Stores the record, if it can be written as JSON and the page is not live."""
        if streams.is_live(page):
            self.forget(url)
            return
        try:
            data = json.dumps({"url": url, "page": page}).encode()
            with self._folder.opened(create=True) as folder:
                self._write(folder, self._name(url), data)
                self._prune(folder)
        except (OSError, ValueError, TypeError, RecursionError):
            self.forget(url)

    def forget(self, url: str) -> None:
        """Removes the record."""
        with contextlib.suppress(OSError), self._folder.opened(create=False) as folder:
            os.unlink(self._name(url), dir_fd=folder)

    def _name(self, url: str) -> str:
        return hashlib.sha256(json.dumps([url, *self._scope]).encode()).hexdigest() + ".json"

    def _read(self, folder: int, name: str) -> object:
        status, data = private_folder.read(folder, name, SIZE_LIMIT)
        if not self._is_young(status):
            raise FileNotFoundError
        return json.loads(data)

    def _write(self, folder: int, name: str, data: bytes) -> None:
        if len(data) > SIZE_LIMIT:
            raise ValueError
        private_folder.write(folder, name, data)

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
        # A date in the future means that the clock was changed: the record's age is unknown.
        return -1 <= self._clock() - status.st_mtime <= MAXIMUM_AGE

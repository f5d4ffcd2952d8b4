"""Partial and complete files of streams from earlier runs.

A host that wants to resume downloads creates a folder for parts beside the output. The tool then works in that folder,
with file names that are the same in each run. Each file has a record with the identity of the stream and the length of
the valid data. A complete file stays in the folder, and the output is a hard link to it. Without the folder, nothing
here is used.

The record is written after the data that it describes. After a restart of the system, only data that were synced to the
disk count as valid. So a run may be killed at any moment.
"""

from __future__ import annotations

import contextlib
import json
import os
import re
import stat
import time
import urllib.parse
from typing import Any, Optional

FOLDER = "parts"
SYNC_INTERVAL = 5.0  # seconds between two syncs to the disk
_SYNC_SHARE = 20  # the interval is at least so many times the duration of a sync
_RECORD_LIMIT = 1 << 16
_BOOT_ID = "/proc/sys/kernel/random/boot_id"

Identity = dict[str, Any]  # members of a file on a server, as far as known: "etag", "modified", "size", "name"


def folder_beside(template: str) -> Optional[str]:
    """The folder for parts beside the output; None if the host has not created one."""
    output = template.partition("%(")[0].replace("%%", "%")
    folder = os.path.join(os.path.dirname(output), FOLDER)
    try:
        status = os.lstat(folder)
    except OSError:
        return None
    return folder if stat.S_ISDIR(status.st_mode) and status.st_uid == os.geteuid() else None


def identity_of(response: Any, address: str) -> Identity:
    """The identity of the file, by the server's response. Empty if the content is encoded: then ranges do not fit."""
    headers = response.headers
    if headers.get("Content-Encoding", "identity") != "identity":
        return {}
    size = re.search(r"/(\d+)\s*$", headers.get("Content-Range") or f"/{headers.get('Content-Length')}")
    known: Identity = {"etag": headers.get("ETag"), "modified": headers.get("Last-Modified"),
                       "size": int(size.group(1)) if size else None, "name": stable_name(address)}
    return {member: value for member, value in known.items() if value is not None}


def is_same(one: Identity, other: Identity) -> bool:
    """Whether both are the same file, by all members that both have."""
    common = (one.keys() & other.keys()) - {"name"}
    if common == {"size"}:
        common.add("name")
    return bool(common) and all(one[member] == other[member] for member in common)


def stable_name(address: str) -> str:
    """The stable part of an address: its server, folders and query may change from run to run."""
    return urllib.parse.urlsplit(address).path.rpartition("/")[2]


class Part:
    """The partial or complete file of one stream, and its record."""

    def __init__(self, path: str) -> None:
        """
        :param path: of the completed file
        """
        self.file = path
        self._unfinished = path + ".part"  # the tool's name for it
        self._record_file = path + ".json"
        self._record = self._read()
        self._session = _session(os.path.dirname(path))
        self._next_sync = time.monotonic() + SYNC_INTERVAL

    @property
    def identity(self) -> Identity:
        """Identity of a stream that is one file."""
        return self._record.get("identity") or {}

    @property
    def segment_list(self) -> Optional[str]:
        """The digest of the stream's segments; None for a single file, or before the begin."""
        return self._record.get("list")

    @property
    def segments(self) -> int:
        """Number of complete segments."""
        return int(self._record["whole"][0]) if self.segment_list else 0

    @property
    def length(self) -> int:
        """Size of these segments in bytes."""
        return int(self._record["whole"][1]) if self.segment_list else 0

    @property
    def last_segment(self) -> Identity:
        """Identity of the last of these segments."""
        return dict(self._record["whole"][2]) if self.segment_list else {}

    def begin(self) -> bool:
        """Prepares the file: it is complete, can be resumed, or is removed. Returns whether it is complete.

        :raises OSError: if the folder cannot be written
        """
        with contextlib.suppress(FileNotFoundError):
            if os.path.getsize(self.file) == self._record.get("complete"):
                return True
            os.replace(self.file, self._unfinished)  # the earlier run ended before it wrote the record
        try:
            self._cut()
        except (AttributeError, LookupError, TypeError, ValueError, FileNotFoundError):
            self.clear()
            return False
        if self.segment_list or self._record["whole"][1] != self.identity.get("size"):
            return False
        os.replace(self._unfinished, self.file)
        return self.complete()

    def clear(self) -> None:
        self._record = {}
        for file in (self._record_file, self.file, self._unfinished):
            with contextlib.suppress(FileNotFoundError):
                os.unlink(file)

    def begin_file(self, identity: Identity) -> None:
        """The server will send the stream from its first byte."""
        if os.path.exists(self._unfinished):
            os.truncate(self._unfinished, 0)
        self._begin_record(identity=identity)

    def begin_segments(self, segment_list: str) -> None:
        """The first segment will be downloaded; the file is empty."""
        self._begin_record(list=segment_list)

    def add_segment(self, end: int, identity: Identity) -> None:
        """One more segment is complete; the file ends after it."""
        self._record["whole"] = [self.segments + 1, end, identity]
        with contextlib.suppress(OSError):  # then the segment will be downloaded again
            self._write()
        self.sync()

    def sync(self) -> None:
        """To be called regularly. Syncs the data to the disk from time to time."""
        begin = time.monotonic()
        if begin < self._next_sync:
            return
        with contextlib.suppress(OSError), open(self._unfinished, "rb") as file:
            whole = self._record["whole"] if self.segment_list else [0, os.fstat(file.fileno()).st_size, {}]
            os.fsync(file)
            self._record["synced"] = whole
            self._write(is_forced=True)
        end = time.monotonic()
        self._next_sync = end + max(SYNC_INTERVAL, _SYNC_SHARE * (end - begin))

    def complete(self) -> bool:
        """The tool has completed the file. Returns False if its size is not the one that the server stated."""
        with open(self.file, "rb") as file:
            size = os.fstat(file.fileno()).st_size
            if self.identity.get("size", size) != size:
                return False
            if "complete" not in self._record:
                os.fsync(file)
                self._record = {"complete": size}
                self._write()
        return True

    def deliver(self, name: str) -> None:
        """Links the complete file to its final name."""
        try:
            os.link(self.file, name)
        except OSError:  # a file system without links
            os.replace(self.file, name)

    def _cut(self) -> None:
        """Removes the data at the end that are not known to be valid. An exception means that none are."""
        size = os.path.getsize(self._unfinished)
        if not self._session or self._record["session"] != self._session:
            self._record.update(session=self._session, whole=self._record["synced"])
        elif not self.segment_list:
            self._record["whole"] = [0, size, {}]
        count, end, _ = self._record["whole"]
        is_known = count > 0 if self.segment_list else not self.identity.keys() <= {"name"}
        if not is_known or not 0 < end <= size:
            raise ValueError
        os.truncate(self._unfinished, end)
        self._write()

    def _begin_record(self, **members: Any) -> None:
        nothing: list[Any] = [0, 0, {}]
        self._record = {"session": self._session, "whole": nothing, "synced": nothing, **members}
        self._write()

    def _read(self) -> dict[str, Any]:
        with contextlib.suppress(OSError, ValueError, RecursionError), open(self._record_file, "rb") as file:
            record = json.loads(file.read(_RECORD_LIMIT))
            if isinstance(record, dict):
                return record
        return {}

    def _write(self, is_forced: bool = False) -> None:
        """Writes atomically: the next run sees the old record or the new one."""
        unfinished = self._record_file + ".new"
        with open(unfinished, "w", encoding="ascii") as file:
            json.dump(self._record, file)
            if is_forced:
                file.flush()
                os.fsync(file)
        os.replace(unfinished, self._record_file)


def _session(folder: str) -> str:
    """Changes when written data may have been lost: the system was started anew, or it is another disk."""
    try:
        with open(_BOOT_ID, encoding="ascii") as boot:
            return f"{boot.read().strip()} {os.stat(folder).st_dev}"
    except OSError:
        return ""

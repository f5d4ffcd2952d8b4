"""Files of streams that an earlier run has begun or completed.

A host that wants to go on with them makes a folder for parts beside the output. There the tool works, under names that
are the same in each run. Beside each file lies a record: what is known of the stream, and how much of the file is
whole. A completed file stays in the folder, and the output is another name for it. Without the folder, nothing here is
used.

The record is written after the data that it tells of. After a restart of the system, only those data count that had
been forced to the disk. So a run may end at any moment.
"""

from __future__ import annotations

import contextlib
import json
import os
import re
import stat
import time
import urllib.parse
from typing import Any, Dict, List, Optional

FOLDER = "parts"
SYNC_INTERVAL = 5.0  # seconds between two times that data are forced to the disk
_SYNC_SHARE = 20  # the interval is at least so many times as long as that takes
_RECORD_LIMIT = 1 << 16
_BOOT_ID = "/proc/sys/kernel/random/boot_id"

Identity = Dict[str, Any]  # what is known of a file on a server: "etag", "modified", "size", "name"


def folder_beside(template: str) -> Optional[str]:
    """The folder for parts, where the host has made one beside the output."""
    output = template.partition("%(")[0].replace("%%", "%")
    folder = os.path.join(os.path.dirname(output), FOLDER)
    try:
        status = os.lstat(folder)
    except OSError:
        return None
    return folder if stat.S_ISDIR(status.st_mode) and status.st_uid == os.geteuid() else None


def identity_of(response: Any, address: str) -> Identity:
    """What an answer tells of the whole file; nothing where its bytes are not those that ranges count."""
    headers = response.headers
    if headers.get("Content-Encoding", "identity") != "identity":
        return {}
    size = re.search(r"/(\d+)\s*$", headers.get("Content-Range") or f"/{headers.get('Content-Length')}")
    known: Identity = {"etag": headers.get("ETag"), "modified": headers.get("Last-Modified"),
                       "size": int(size.group(1)) if size else None, "name": stable_name(address)}
    return {member: value for member, value in known.items() if value is not None}


def is_same(one: Identity, other: Identity) -> bool:
    """Whether both are the same file, by all that both tell."""
    common = (one.keys() & other.keys()) - {"name"}
    if common == {"size"}:
        common.add("name")
    return bool(common) and all(one[member] == other[member] for member in common)


def stable_name(address: str) -> str:
    """The part of an address that stays: servers change, and queries and folders may hold what expires."""
    return urllib.parse.urlsplit(address).path.rpartition("/")[2]


class Part:
    """The file of one stream, as far as it is there, and its record."""

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
        """Of a stream that is fetched as one file."""
        return self._record.get("identity") or {}

    @property
    def segment_list(self) -> Optional[str]:
        """What the stream's segments are; None where it is one file, or has not been begun."""
        return self._record.get("list")

    @property
    def segments(self) -> int:
        """How many segments are there."""
        return int(self._record["whole"][0]) if self.segment_list else 0

    @property
    def length(self) -> int:
        """How many bytes these segments have."""
        return int(self._record["whole"][1]) if self.segment_list else 0

    @property
    def last_segment(self) -> Identity:
        """The last of these segments."""
        return dict(self._record["whole"][2]) if self.segment_list else {}

    def begin(self) -> bool:
        """Leaves a completed file, or one that can be gone on with, or none; whether it is completed.

        :raises OSError: where the folder cannot be written to
        """
        with contextlib.suppress(FileNotFoundError):
            if os.path.getsize(self.file) == self._record.get("complete"):
                return True
            os.replace(self.file, self._unfinished)  # the earlier run ended before it could record it
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
        """The server is about to send the stream from its first byte."""
        if os.path.exists(self._unfinished):
            os.truncate(self._unfinished, 0)
        self._begin_record(identity=identity)

    def begin_segments(self, segment_list: str) -> None:
        """The first segment is about to be fetched, and the file is empty."""
        self._begin_record(list=segment_list)

    def add_segment(self, end: int, identity: Identity) -> None:
        """One more segment is there, and the file ends behind it."""
        self._record["whole"] = [self.segments + 1, end, identity]
        with contextlib.suppress(OSError):  # then the segment will be fetched again
            self._write()
        self.sync()

    def sync(self) -> None:
        """To be called now and then: forces to the disk what is there."""
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
        """The tool has completed the file; False where it has not the size that the server has told."""
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
        """Gives the completed file another name."""
        try:
            os.link(self.file, name)
        except OSError:  # a file system without links
            os.replace(self.file, name)

    def _cut(self) -> None:
        """Removes from the file what is not known to be whole. Errors mean that nothing is."""
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
        nothing: List[Any] = [0, 0, {}]
        self._record = {"session": self._session, "whole": nothing, "synced": nothing, **members}
        self._write()

    def _read(self) -> Dict[str, Any]:
        with contextlib.suppress(OSError, ValueError, RecursionError), open(self._record_file, "rb") as file:
            record = json.loads(file.read(_RECORD_LIMIT))
            if isinstance(record, dict):
                return record
        return {}

    def _write(self, is_forced: bool = False) -> None:
        """In one step: the next run sees the old record or the new one."""
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

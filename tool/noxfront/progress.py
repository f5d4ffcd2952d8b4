"""Progress lines that the library reads, also where the tool only estimates."""

from __future__ import annotations

import threading
import time
from typing import Any, Callable, Dict, Optional

LINES_PER_SECOND = 5


def line(status: Dict[str, Any]) -> Optional[str]:
    """The line for what the tool reports; None where there is no total to relate to."""
    done = status.get("downloaded_bytes") or 0
    total = status.get("total_bytes") or status.get("total_bytes_estimate") or 0
    if status.get("status") == "finished":
        total = total or done
        done = total
    if total <= 0:
        return None
    total = max(int(total), int(done))  # an estimate may be too small
    # Cut, not rounded: nothing is called complete before it is.
    percent = int(done) * 100_000 // total / 1000
    speed = max(int(status.get("speed") or 0), 0)
    return f"[download] {percent:.3f}% of {total}B at {speed}B/s ETA {_clock(status.get('eta'))}"


def _clock(seconds: Any) -> str:
    if not isinstance(seconds, (int, float)) or not 0 <= seconds < 360_000:
        return "--:--"
    minutes, rest = divmod(int(seconds), 60)
    return f"{minutes:02d}:{rest:02d}" if minutes < 60 else f"{minutes // 60:02d}:{minutes % 60:02d}:{rest:02d}"


class Reporter:
    """To be called by the tool for each block, from any thread; says no more than a few lines in a second, and always
    the last. What it says never falls: neither the bytes nor their share of an estimated total."""

    def __init__(self, say: Callable[[str], None], clock: Callable[[], float] = time.monotonic) -> None:
        self._say = say
        self._clock = clock
        self._lock = threading.Lock()
        self._next = 0.0
        self._done = 0.0
        self._share = 0.0

    def __call__(self, status: Dict[str, Any]) -> None:
        kind = status.get("status")
        if kind not in ("downloading", "finished"):
            return
        with self._lock:
            now = self._clock()
            if kind == "downloading" and now < self._next:
                return
            text = line(self._risen(status) if kind == "downloading" else status)
            if kind == "finished":
                self._done = self._share = 0  # another file may follow, to be joined with this one
            if text is not None:
                self._next = now + 1 / LINES_PER_SECOND
                self._say(text)

    def _risen(self, status: Dict[str, Any]) -> Dict[str, Any]:
        self._done = max(self._done, status.get("downloaded_bytes") or 0)
        total = status.get("total_bytes") or status.get("total_bytes_estimate") or 0
        if not total:
            return {**status, "downloaded_bytes": self._done}
        if not status.get("total_bytes") and self._share > 0:
            total = min(total, self._done / self._share)
        self._share = min(max(self._share, self._done / total), 1)
        return {**status, "downloaded_bytes": self._done, "total_bytes": None, "total_bytes_estimate": total}

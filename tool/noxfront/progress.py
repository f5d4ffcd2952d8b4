"""Progress lines for the library, also if the tool only has an estimate."""

from __future__ import annotations

import threading
import time
from typing import Any, Callable, Optional

LINES_PER_SECOND = 2


def line(status: dict[str, Any]) -> Optional[str]:
    """The progress line for the tool's report; None if there is no total."""
    done = status.get("downloaded_bytes") or 0
    total = status.get("total_bytes") or status.get("total_bytes_estimate") or 0
    if status.get("status") == "finished":
        total = total or done
        done = total
    if total <= 0:
        return None
    total = max(int(total), int(done))  # an estimate may be too small
    # Rounded down: 100 % is printed only at the end.
    percent = int(done) * 100_000 // total / 1000
    speed = max(int(status.get("speed") or 0), 0)
    return f"[download] {percent:.3f}% of {total}B at {speed}B/s ETA {_clock(status.get('eta'))}"


def _clock(seconds: Any) -> str:
    if not isinstance(seconds, (int, float)) or not 0 <= seconds < 360_000:
        return "--:--"
    minutes, rest = divmod(int(seconds), 60)
    return f"{minutes:02d}:{rest:02d}" if minutes < 60 else f"{minutes // 60:02d}:{minutes % 60:02d}:{rest:02d}"


class Reporter:
    """To be called by the tool for each block, from any thread. Prints a few lines per second at most, and always the
    last one. Neither the bytes nor the percentage ever decrease, even if the total is an estimate."""

    def __init__(self, say: Callable[[str], None], clock: Callable[[], float] = time.monotonic) -> None:
        self._say = say
        self._clock = clock
        self._lock = threading.Lock()
        self._next = 0.0
        self._done = 0.0
        self._share = 0.0

    def __call__(self, status: dict[str, Any]) -> None:
        kind = status.get("status")
        if kind not in ("downloading", "finished"):
            return
        with self._lock:
            now = self._clock()
            if kind == "downloading" and now < self._next:
                return
            text = line(self._risen(status) if kind == "downloading" else status)
            if kind == "finished":
                self._done = self._share = 0  # another file to join may follow
            if text is not None:
                self._next = now + 1 / LINES_PER_SECOND
                self._say(text)

    def _risen(self, status: dict[str, Any]) -> dict[str, Any]:
        self._done = max(self._done, status.get("downloaded_bytes") or 0)
        total = status.get("total_bytes") or status.get("total_bytes_estimate") or 0
        if not total:
            return {**status, "downloaded_bytes": self._done}
        if not status.get("total_bytes") and self._share > 0:
            total = min(total, self._done / self._share)
        self._share = min(max(self._share, self._done / total), 1)
        return {**status, "downloaded_bytes": self._done, "total_bytes": None, "total_bytes_estimate": total}

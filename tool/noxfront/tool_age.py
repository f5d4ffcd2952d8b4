"""The age of the tool's package."""

from __future__ import annotations

import datetime
import re
import sys
from typing import Optional

LIMIT = datetime.timedelta(days=365)


def note(today: Optional[datetime.date] = None) -> Optional[str]:
    """A note for failures of a tool that is older than a year; None for a newer one."""
    version = getattr(sys.modules.get("yt_dlp.version"), "__version__", "")
    found = re.match(r"(\d{4})\.(\d{1,2})\.(\d{1,2})", version)
    try:
        date = datetime.date(*map(int, found.groups())) if found else None
    except ValueError:
        date = None
    if date is None or (today or datetime.date.today()) - date <= LIMIT:
        return None
    return (f"This download tool is older than a year ({version}), which is a likely cause. "
            "A newer one: nox-renew-tool")

"""How old the tool's package is."""

from __future__ import annotations

import datetime
import re
import sys
from typing import Optional

LIMIT = datetime.timedelta(days=365)


def note(today: Optional[datetime.date] = None) -> Optional[str]:
    """What the user should know of a failure of a tool that is older than a year; None with a younger one."""
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

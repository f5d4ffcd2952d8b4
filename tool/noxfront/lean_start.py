"""Keeps the tool from loading packages that a plain stream does not need: loading is most of a remembered download."""

from __future__ import annotations

import sys
from typing import Sequence

from . import streams
from .streams import Info

# To decrypt, to write tags into files, and to speak to live sites. The tool does without them where they are missing.
_PACKAGES = ("Cryptodome", "Crypto", "mutagen", "websockets")
_PLAIN_PROTOCOLS = ("http", "https", "http_dash_segments")


def prepare(page: Info, code: str, options: Sequence[str]) -> None:
    """To be called before the tool's package is loaded. What is left out stays out for as long as the process runs."""
    wanted = [stream for stream in streams.of_page(page) if stream.get("format_id") == code]
    needs_secrets = any(option.startswith("--cookies-from-browser") for option in options)
    if wanted and not needs_secrets and all(stream.get("protocol") in _PLAIN_PROTOCOLS for stream in wanted):
        for name in _PACKAGES:
            # The interpreter takes such an entry for a package that is not there.
            sys.modules.setdefault(name, None)  # type: ignore[arg-type]

"""Prevents the tool from loading packages that are not needed. Loading takes most of the time of a short run."""

from __future__ import annotations

import importlib
import importlib.abc
import importlib.machinery
import importlib.util
import sys
import types
from typing import Any, Optional, Sequence

from . import streams
from .streams import Info

# Writes tags into files, which the library never requests. The tool works without it.
_NEVER_NEEDED = ("mutagen",)
# The tool always loads these, but uses them for few pages. Its ciphers take 0.1 to 0.3 s.
_LATE = "asyncio"
_CIPHERS = "Cryptodome"
_CIPHER_PACKAGES = ("Cipher", "Hash", "PublicKey")
# Only for live pages and streams.
_LIVE_PACKAGES = ("websockets",)
_PLAIN_PROTOCOLS = ("http", "https", "http_dash_segments", "m3u8_native")


def prepare() -> None:
    """To be called before the tool's package is loaded. Packages that are left out stay unavailable in this process."""
    _leave_out(_NEVER_NEEDED)
    if _LATE not in sys.modules:
        sys.meta_path.insert(0, _LateFinder())
    if _CIPHERS not in sys.modules and importlib.util.find_spec(_CIPHERS) is not None:
        for name in _CIPHER_PACKAGES:
            full_name = f"{_CIPHERS}.{name}"
            sys.modules[full_name] = _LateModule(full_name)


def prepare_stream(page: Info, code: str) -> None:
    """The same for a run that only downloads a stream by a stored record."""
    wanted = [stream for stream in streams.of_page(page) if stream.get("format_id") == code]
    if wanted and all(stream.get("protocol") in _PLAIN_PROTOCOLS for stream in wanted):
        _leave_out(_LIVE_PACKAGES)


def _leave_out(names: Sequence[str]) -> None:
    for name in names:
        # With None as its entry, the package cannot be imported.
        sys.modules.setdefault(name, None)  # type: ignore[arg-type]


class _LateFinder(importlib.abc.MetaPathFinder):
    """Finds a package and delays its loading until the first use."""

    def find_spec(self, fullname: str, path: Any, target: Any = None) -> Optional[importlib.machinery.ModuleSpec]:
        if fullname != _LATE:
            return None
        found = importlib.machinery.PathFinder.find_spec(fullname, path)
        if found is not None and found.loader is not None:
            found.loader = importlib.util.LazyLoader(found.loader)
        return found


class _LateModule(types.ModuleType):
    """Placeholder for the package of ciphers or one of its modules, until the first use.

    The interpreter's own lazy loader does not help: importing a module uses its package, and this package loads all of
    its modules.
    """

    def __getattr__(self, name: str) -> Any:
        if name.startswith("__"):
            raise AttributeError(name)
        if self.__name__.count(".") == 1:
            part = _LateModule(f"{self.__name__}.{name}")
            setattr(self, name, part)
            return part
        for package in _CIPHER_PACKAGES:
            full_name = f"{_CIPHERS}.{package}"
            if isinstance(sys.modules.get(full_name), _LateModule):
                del sys.modules[full_name]
        return getattr(importlib.import_module(self.__name__), name)

#!/usr/bin/python3
"""Runs clang-tidy on a source file, unless the same file is known to be clean.

    clang-tidy-cache.py [CLANG-TIDY-OPTION...] FILE -- COMPILER ARGUMENT...

CMake starts it as its CMAKE_CXX_CLANG_TIDY. A file is checked again only when its preprocessed text (with comments),
the configuration or clang-tidy has changed: a check takes ten times as long as preprocessing. The cache is in the
user's cache folder and may be deleted. Generated files, which are in the build folder, are not checked.
"""

from __future__ import annotations

import hashlib
import os
import pathlib
import shlex
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
CACHE = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache") / "noxwebmedia" / "tidy"


def preprocessed(command: list[str]) -> bytes | None:
    """The text that the compiler sees, without file names; None when preprocessing fails."""
    arguments = list(command)
    for option in ("-o", "-MF", "-MT"):
        if option in arguments:
            at = arguments.index(option)
            del arguments[at:at + 2]
    arguments = [argument for argument in arguments if argument not in ("-c", "-MD")] + ["-E", "-P", "-C"]
    run = subprocess.run(arguments, capture_output=True)
    return run.stdout + shlex.join(arguments).encode() if run.returncode == 0 else None


def cache_file(command: list[str]) -> pathlib.Path | None:
    """The file that exists if the command's source is known to be clean."""
    seen = preprocessed(command)
    if seen is None:
        return None
    version = subprocess.run(["clang-tidy", "--version"], capture_output=True, check=True).stdout
    # The folder of the tree does not matter.
    seen = seen.replace(os.fsencode(ROOT), b"ROOT")
    return CACHE / hashlib.sha256(version + (ROOT / ".clang-tidy").read_bytes() + seen).hexdigest()


def main() -> int:
    if "--" not in sys.argv[2:]:
        sys.exit(__doc__)
    divider = sys.argv.index("--")
    if pathlib.Path(sys.argv[divider - 1]).resolve().is_relative_to(pathlib.Path.cwd()):
        return 0
    known = cache_file(sys.argv[divider + 1:])
    if known and known.exists():
        return 0
    run = subprocess.run(["clang-tidy", "--quiet", *sys.argv[1:]], capture_output=True, text=True)
    if run.returncode != 0:
        print(run.stdout or run.stderr, end="")
    elif known:
        known.parent.mkdir(parents=True, exist_ok=True)
        known.touch()
    return run.returncode


if __name__ == "__main__":
    sys.exit(main())

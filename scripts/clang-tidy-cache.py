#!/usr/bin/python3
"""Runs clang-tidy on a source file, and remembers the files that it found clean.

    clang-tidy-cache.py [CLANG-TIDY-OPTION...] FILE -- COMPILER ARGUMENT...

CMake starts it so, as its CMAKE_CXX_CLANG_TIDY. A file is looked at anew only when what the compiler sees of it,
comments included, or the configuration or clang-tidy itself has changed since it was clean: looking takes ten times as
long as preprocessing. The memory is in the user's cache folder; without it nothing but time is lost. Generated files,
which lie in the build folder, are not looked at.
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
    """What the compiler sees, without the places where it found it; None when it cannot be told."""
    words = list(command)
    for option in ("-o", "-MF", "-MT"):
        if option in words:
            at = words.index(option)
            del words[at:at + 2]
    words = [word for word in words if word not in ("-c", "-MD")] + ["-E", "-P", "-C"]
    run = subprocess.run(words, capture_output=True)
    return run.stdout + shlex.join(words).encode() if run.returncode == 0 else None


def memory_of(command: list[str]) -> pathlib.Path | None:
    """The file whose existence says that what the command compiles is clean."""
    seen = preprocessed(command)
    if seen is None:
        return None
    version = subprocess.run(["clang-tidy", "--version"], capture_output=True, check=True).stdout
    # The same tree in another folder is the same tree.
    seen = seen.replace(os.fsencode(ROOT), b"ROOT")
    return CACHE / hashlib.sha256(version + (ROOT / ".clang-tidy").read_bytes() + seen).hexdigest()


def main() -> int:
    if "--" not in sys.argv[2:]:
        sys.exit(__doc__)
    divider = sys.argv.index("--")
    if pathlib.Path(sys.argv[divider - 1]).resolve().is_relative_to(pathlib.Path.cwd()):
        return 0
    memory = memory_of(sys.argv[divider + 1:])
    if memory and memory.exists():
        return 0
    run = subprocess.run(["clang-tidy", "--quiet", *sys.argv[1:]], capture_output=True, text=True)
    if run.returncode != 0:
        print(run.stdout or run.stderr, end="")
    elif memory:
        memory.parent.mkdir(parents=True, exist_ok=True)
        memory.touch()
    return run.returncode


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/python3
"""Runs clang-tidy over source files, in parallel, and remembers which of them it found clean.

    run-tidy.py BUILD-DIR JOBS FILE...

BUILD-DIR holds the compile_commands.json that says how each file is compiled. A file is looked at anew only when what
the compiler sees of it, comments included, or the configuration or clang-tidy itself has changed since it was clean:
looking takes ten times as long as preprocessing. The memory is in the user's cache folder; without it nothing but time
is lost.
"""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import shlex
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
CACHE = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache") / "noxwebmedia" / "tidy"


def compile_commands(build):
    commands = json.loads((build / "compile_commands.json").read_text())
    return {pathlib.Path(command["file"]).resolve(): command for command in commands}


def preprocessed(command):
    """What the compiler sees, without the places where it found it; None when it cannot be told."""
    words = shlex.split(command["command"])
    if pathlib.Path(words[0]).name == "ccache":
        words = words[1:]
    for option in ("-o", "-MF", "-MT"):
        if option in words:
            at = words.index(option)
            del words[at : at + 2]
    words = [word for word in words if word not in ("-c", "-MD")] + ["-E", "-P", "-C"]
    run = subprocess.run(words, cwd=command["directory"], capture_output=True)
    return run.stdout + shlex.join(words).encode() if run.returncode == 0 else None


def check(build, file, command, common):
    """The complaints about one file; empty when there are none."""
    seen = preprocessed(command)
    mark = None
    if seen is not None:
        # The same tree in another folder is the same tree.
        digest = hashlib.sha256(common + seen.replace(os.fsencode(ROOT), b"ROOT"))
        mark = CACHE / digest.hexdigest()
        if mark.exists():
            return ""
    run = subprocess.run(["clang-tidy", "--quiet", "-p", build, file], capture_output=True, text=True)
    if run.returncode != 0:
        return run.stdout + (run.stderr if not run.stdout else "")
    if mark:
        mark.parent.mkdir(parents=True, exist_ok=True)
        mark.touch()
    return ""


def main():
    if len(sys.argv) < 4:
        sys.exit("usage: run-tidy.py BUILD-DIR JOBS FILE...")
    build, jobs = pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2])
    files = [pathlib.Path(name).resolve() for name in sys.argv[3:]]
    commands = compile_commands(build)
    unknown = [str(file.relative_to(ROOT)) for file in files if file not in commands]
    if unknown:
        sys.exit(f"run-tidy.py: not part of the build in {build}: {' '.join(unknown)}")

    version = subprocess.run(["clang-tidy", "--version"], capture_output=True, check=True).stdout
    common = version + (ROOT / ".clang-tidy").read_bytes()
    # Largest first, so that none is left running alone at the end.
    files.sort(key=lambda file: file.stat().st_size, reverse=True)
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        complaints = [text for text in pool.map(lambda file: check(build, file, commands[file], common), files) if text]
    print("".join(complaints), end="")
    sys.exit(1 if complaints else 0)


if __name__ == "__main__":
    main()

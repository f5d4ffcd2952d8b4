#!/usr/bin/python3
"""Packs the installed yt_dlp package into one archive that the interpreter can run.

    make-tool-archive.py FILE

The same packages give the same bytes: names are sorted and every time stamp is the archive format's zero. Beside each
module lies its bytecode, without which the interpreter compiles hundreds of modules anew at every start. The archive's
comment names what it was made from, and an archive whose comment still holds is left alone.
"""

import importlib.util
import os
import pathlib
import subprocess
import sys
import zipfile

MAIN = """\
import sys

from yt_dlp import main

sys.exit(main())
"""
EPOCH = (1980, 1, 1, 0, 0, 0)
COMPRESSION = zipfile.ZIP_DEFLATED


def package_folder():
    found = importlib.util.find_spec("yt_dlp")
    if found is None:
        sys.exit("make-tool-archive.py: no yt_dlp package; scripts/setup.sh run installs it")
    return pathlib.Path(found.origin).parent


def origin_text(folder):
    """What the archive depends on: the package's version, the interpreter's bytecode and this file."""
    version = subprocess.run(["dpkg-query", "-W", "-f=${Version}", "yt-dlp"], capture_output=True, text=True).stdout
    newest = max(path.stat().st_mtime_ns for path in folder.rglob("*.py"))
    recipe = importlib.util.source_hash(pathlib.Path(__file__).read_bytes()).hex()
    return f"yt-dlp {version or newest}, {sys.implementation.cache_tag}, recipe {recipe}".encode()


def is_current(archive, origin):
    try:
        with zipfile.ZipFile(archive) as existing:
            return existing.comment == origin
    except (OSError, zipfile.BadZipFile):
        return False


def bytecode(source, name):
    """The source compiled into a module that the interpreter loads without comparing it with its source."""
    code = compile(source, name, "exec", dont_inherit=True, optimize=0)
    return importlib._bootstrap_external._code_to_hash_pyc(code, importlib.util.source_hash(source), False)


def write_archive(archive, folder, origin):
    def add(name, data):
        info = zipfile.ZipInfo(name, EPOCH)
        info.compress_type = COMPRESSION
        info.external_attr = 0o644 << 16
        out.writestr(info, data)

    with zipfile.ZipFile(archive, "w") as out:
        out.comment = origin
        add("__main__.py", MAIN)
        for path in sorted(folder.rglob("*.py")):
            name = path.relative_to(folder.parent).as_posix()
            source = path.read_bytes()
            add(name, source)
            add(name + "c", bytecode(source, name))


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: make-tool-archive.py FILE")
    archive = pathlib.Path(sys.argv[1])
    folder = package_folder()
    origin = origin_text(folder)
    if is_current(archive, origin):
        return
    # Written beside its place and moved there whole: another run may be staging the same folder.
    unfinished = archive.with_name(f"{archive.name}.{os.getpid()}")
    try:
        write_archive(unfinished, folder, origin)
        unfinished.replace(archive)
    finally:
        unfinished.unlink(missing_ok=True)


if __name__ == "__main__":
    main()

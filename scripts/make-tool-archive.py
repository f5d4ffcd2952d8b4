#!/usr/bin/python3
"""Packs the front and the tool's package into one archive that the interpreter can run.

    make-tool-archive.py FILE [--package FOLDER|WHEEL|SOURCE-ARCHIVE]... [--front-only | --plain]

--package P     the yt_dlp package: its folder or the folder that contains it, a wheel, or a source archive (.tar.*,
                .zip); by default the installed package. Given several times, it adds pure Python packages that the
                tool uses, such as yt_dlp_ejs
--front-only    without a package: the archive uses the one that is installed where it runs
--plain         without the front, for comparison

The same contents give the same bytes: names are sorted and every time stamp is the zero of the archive format. The
archive also has the bytecode of each module, because the interpreter would compile hundreds of modules at every start
otherwise. The archive's comment identifies its contents, and an archive with the right comment is not made again.
"""

import argparse
import contextlib
import hashlib
import importlib.util
import os
import pathlib
import subprocess
import sys
import tarfile
import zipfile

PACKAGE = "yt_dlp"
# Packages that are taken from a folder or an archive of sources, which also have other contents.
KNOWN_PACKAGES = (PACKAGE, "yt_dlp_ejs")
EXTRACTOR_TABLE = PACKAGE + "/extractor/lazy_extractors.py"
PLAIN_MAIN = b"""\
import sys

from yt_dlp import main

sys.exit(main())
"""
FRONT = pathlib.Path(__file__).resolve().parent.parent / "tool"
EPOCH = (1980, 1, 1, 0, 0, 0)
# Bytecode of interpreters, and a folder of the package that is only for building programs.
NOT_PACKED = ("__pycache__", "__pyinstaller")


class Files(dict):
    """Contents by name within the archive."""

    def add_folder(self, folder, prefix, pattern="*"):
        for path in folder.rglob(pattern):
            if path.is_file():
                self.add(prefix + path.relative_to(folder).as_posix(), path.read_bytes())

    def add(self, name, data):
        if not set(NOT_PACKED) & set(name.split("/")):
            self[name] = data

    def add_package(self, name, data):
        """Adds a member of a source archive, in which the package may be in another folder."""
        folders = name.split("/")
        for package in KNOWN_PACKAGES:
            if package in folders[:2]:
                self.add("/".join(folders[folders.index(package):]), data)


def read_folder(path, files):
    for package in KNOWN_PACKAGES:
        files.add_folder(path if path.name == package else path / package, package + "/")


def read_zip(path, files):
    with zipfile.ZipFile(path) as archive:
        names = [name for name in archive.namelist() if not name.endswith("/")]
        is_wheel = any(name.endswith(".dist-info/WHEEL") for name in names)
        for name in names:
            if not is_wheel:
                files.add_package(name, archive.read(name))
            elif not name.partition("/")[0].endswith((".dist-info", ".data")):
                files.add(name, archive.read(name))


def read_tar(path, files):
    with tarfile.open(path) as archive:
        for member in archive:
            if member.isfile():
                files.add_package(member.name, archive.extractfile(member).read())


def read_package(path):
    files = Files()
    if path.is_dir():
        read_folder(path, files)
    elif zipfile.is_zipfile(path):
        read_zip(path, files)
    elif tarfile.is_tarfile(path):
        read_tar(path, files)
    if not files:
        sys.exit(f"make-tool-archive.py: no package in {path}")
    return files


def read_packages(paths, files):
    for path in paths:
        files.update(read_package(path))
    if not paths:
        return
    if PACKAGE + "/__init__.py" not in files:
        sys.exit(f"make-tool-archive.py: no {PACKAGE} package in {', '.join(map(str, paths))}")
    if EXTRACTOR_TABLE not in files:
        print(f"make-tool-archive.py: the package has no {EXTRACTOR_TABLE}, so that each page takes about half a "
              "second longer to read; the wheel of a release has it", file=sys.stderr)


def installed_package():
    found = importlib.util.find_spec(PACKAGE)
    if found is None:
        sys.exit(f"make-tool-archive.py: no {PACKAGE} package; scripts/setup.sh run installs it")
    return pathlib.Path(found.origin).parent


def digest(*paths):
    """The digest of the files, and of all files in the folders."""
    state = hashlib.sha256()
    for path in paths:
        files = path.rglob("*") if path.is_dir() else [path]
        for file in sorted(file for file in files if file.is_file() and "__pycache__" not in file.parts):
            state.update(file.read_bytes())
    return state.hexdigest()[:16]


def installed_version():
    query = ["dpkg-query", "-W", "-f=${Version}", "yt-dlp"]
    with contextlib.suppress(OSError):
        return subprocess.run(query, capture_output=True, text=True).stdout
    return ""


def origin_text(packages, options):
    """Identifies the packages, the version of the bytecode, the front and this file."""
    source = not options.front_only and not options.package and installed_version() or digest(*packages)
    front = "none" if options.plain else digest(*FRONT.rglob("*.py"))
    recipe = digest(pathlib.Path(__file__))
    return f"package {source}, front {front}, {sys.implementation.cache_tag}, recipe {recipe}".encode()


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


def write_archive(archive, files, origin):
    def add(name, data):
        info = zipfile.ZipInfo(name, EPOCH)
        info.compress_type = zipfile.ZIP_DEFLATED
        info.external_attr = 0o644 << 16
        out.writestr(info, data)

    with zipfile.ZipFile(archive, "w") as out:
        out.comment = origin
        for name, data in sorted(files.items()):
            add(name, data)
            if name.endswith(".py"):
                add(name + "c", bytecode(data, name))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("file", metavar="FILE", type=pathlib.Path)
    parser.add_argument("--package", type=pathlib.Path, action="append", default=[])
    parts = parser.add_mutually_exclusive_group()
    parts.add_argument("--front-only", action="store_true")
    parts.add_argument("--plain", action="store_true")
    options = parser.parse_args()
    packages = [] if options.front_only else options.package or [installed_package()]
    for package in packages:
        if not package.exists():
            sys.exit(f"make-tool-archive.py: there is no {package}")
    origin = origin_text(packages, options)
    if is_current(options.file, origin):
        return
    files = Files()
    if options.plain:
        files.add("__main__.py", PLAIN_MAIN)
    else:
        files.add_folder(FRONT, "", "*.py")
    read_packages(packages, files)
    # Moved into place as a whole, because another run may use the same folder.
    unfinished = options.file.with_name(f"{options.file.name}.{os.getpid()}")
    try:
        write_archive(unfinished, files, origin)
        unfinished.replace(options.file)
    finally:
        unfinished.unlink(missing_ok=True)


if __name__ == "__main__":
    main()

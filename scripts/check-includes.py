#!/usr/bin/python3
"""Checks the includes of the tree.

    check-includes.py [TREE]     the folder with nox/ and hosts/; by default the one above this script

The folders of the first library have an order, and a file includes only files of its own folder and of those that are
listed for it below. The second library and the hosts include public headers only. Public headers include public
headers only, and NoxWebMedia.h and NoxWebMediaJobs.h include them all. There are no circles. An include names a file by
its path in the tree: those of the libraries in angle brackets, all others in quotes.
"""

from __future__ import annotations

import pathlib
import posixpath
import re
import sys
from collections.abc import Iterator

LOW = {"nox/util", "nox/log", "nox/model"}
HOST = {"nox", "hosts/common"}
DESK = HOST | {"hosts/desk/model", "hosts/desk/network"}
MAY_INCLUDE: dict[str, set[str]] = {
    "nox": {"nox/front", "nox/model", "nox/parse", "nox/log", "nox/util"},
    "nox/jobs": set(),
    "nox/util": set(),
    "nox/log": {"nox/util"},
    "nox/model": {"nox/util"},
    "nox/parse": LOW,
    "nox/process": {"nox/util", "nox/log"},
    "nox/front": LOW | {"nox/process"},
    "nox/extract": LOW | {"nox/parse", "nox/process", "nox/front"},
    "nox/download": LOW | {"nox/parse", "nox/process", "nox/front"},
    "hosts/common": {"nox"},
    "hosts/fetch": HOST,
    "hosts/desk/model": HOST | {"hosts/desk/network"},
    "hosts/desk/network": HOST,
    "hosts/desk/view": DESK,
    "hosts/desk": DESK | {"hosts/desk/view"},
}
# Single files that may include more.
MAY_INCLUDE_TOO = {
    "nox/front/WebMediaDownloaderFactory.cpp": {"nox/extract", "nox/download"},
    "nox/NoxWebMediaJobs.h": {"nox/jobs"},
}
# The header that includes all public ones of a library, and the folder whose CMakeLists.txt lists them.
LIBRARIES = {"nox/NoxWebMedia.h": "nox", "nox/NoxWebMediaJobs.h": "nox/jobs"}
# Folders that may include only public headers of other folders, and of which libraries.
USERS = {"nox/jobs": ["nox/NoxWebMedia.h"], "hosts": list(LIBRARIES)}
EXPORT = "nox/Export.h"
# Private to the first library, but compiled into the second one as well.
SHARED_SOURCES = (
    ("nox/jobs/DownloadFolder.cpp", "nox/util/FileRename.h"),
    ("nox/jobs/JobProcess.cpp", "nox/process/ChildProcess.h"),
)
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
CHECKED = ("nox", "hosts")
# Only the form of their includes is checked.
OTHERS = ("examples", "tests", "benchmarks", "fuzz", "docs")


class Tree:
    def __init__(self, root: pathlib.Path):
        self.root = root
        self.files = {
            path.relative_to(root).as_posix(): INCLUDE.findall(path.read_text())
            for top in CHECKED + OTHERS
            for path in sorted((root / top).rglob("*"))
            if path.suffix in (".h", ".cpp")
        }
        self.includes = {
            name: [text for bracket, text in found
                   if (bracket == '"' or text.startswith("nox/")) and not text.endswith(".moc")]
            for name, found in self.files.items()
            if name.startswith(CHECKED)
        }
        self.public = {header: self.listed(folder) for header, folder in LIBRARIES.items()}

    def listed(self, folder: str) -> set[str]:
        listed = re.search(r"set\(public_headers\s([^)]*)\)", (self.root / folder / "CMakeLists.txt").read_text())
        return {posixpath.normpath(f"{folder}/{header}") for header in listed[1].split()} if listed else set()

    def problems_of_folders(self) -> Iterator[str]:
        for name, included in self.includes.items():
            here = posixpath.dirname(name)
            if here not in MAY_INCLUDE:
                yield f"{name}: check-includes.py does not know the folder {here}; add it to MAY_INCLUDE"
                continue
            allowed = MAY_INCLUDE[here] | MAY_INCLUDE_TOO.get(name, set()) | {here}
            libraries: list[str] = next((USERS[top] for top in USERS if f"{here}/".startswith(f"{top}/")), [])
            visible = set().union(*(self.public[library] for library in libraries))
            for other in included:
                if other not in self.includes:
                    yield f"{name} includes {other}, which does not exist"
                elif other == EXPORT or (name, other) in SHARED_SOURCES:
                    continue
                elif libraries and other.startswith("nox/") and posixpath.dirname(other) != here:
                    if other not in visible:
                        yield f"{name} includes {other}, which is private to the library"
                elif posixpath.dirname(other) not in allowed:
                    yield f"{name} includes {other}: {here} may include {', '.join(sorted(allowed))}"

    def problems_of_public_headers(self) -> Iterator[str]:
        all_public = set().union(*self.public.values())
        for everything, public in self.public.items():
            if not public:
                yield f"{LIBRARIES[everything]}/CMakeLists.txt: no list of public headers found"
            for header in sorted(public):
                if header not in self.includes:
                    yield f"{header} is listed as public, but does not exist"
                for other in set(self.includes.get(header, [])) - all_public:
                    yield f"{header} is public, but includes the private {other}"
            for header in sorted(public - set(self.includes.get(everything, [])) - {everything}):
                yield f"{header} is public, but {everything} does not include it"

    def problems_of_circles(self) -> Iterator[str]:
        done = set()

        def visit(name: str, path: list[str]) -> Iterator[str]:
            if name in path:
                yield "circle: " + " -> ".join([*path[path.index(name):], name])
            elif name not in done:
                for other in self.includes.get(name, []):
                    yield from visit(other, [*path, name])
                done.add(name)

        for name in self.includes:
            yield from visit(name, [])

    def problems_of_form(self) -> Iterator[str]:
        for name, included in self.files.items():
            for bracket, text in included:
                if bracket == '"' and not text.endswith(".moc"):
                    if not (self.root / text).is_file() or text.startswith("nox/"):
                        yield f'{name} includes "{text}"; the path in the tree is missing, or angle brackets'
                elif text.startswith(tuple(f"{top}/" for top in CHECKED[1:] + OTHERS)):
                    yield f"{name} includes <{text}>; only headers of the libraries have angle brackets"


def main() -> None:
    if len(sys.argv) > 2 or any(argument.startswith("-") for argument in sys.argv[1:]):
        sys.exit(__doc__)
    tree = Tree(pathlib.Path(sys.argv[1] if len(sys.argv) == 2 else pathlib.Path(__file__).parent.parent).resolve())
    problems = [*tree.problems_of_folders(), *tree.problems_of_public_headers(),
                *tree.problems_of_circles(), *tree.problems_of_form()]
    if problems:
        sys.exit("\n".join([*problems, f"check-includes.py: {len(problems)} wrong includes"]))
    print(f"{len(tree.includes)} files, {sum(map(len, tree.includes.values()))} includes, all in order")


if __name__ == "__main__":
    main()

#!/usr/bin/python3
"""Checks who includes whom.

    check-includes.py [TREE]     the folder with nox/ and hosts/; the one above this script unless given

The folders of the first library lie on floors, and includes lead downwards only; only the factory knows the concrete
workers. The second library, nox/jobs, sees the public headers of the first one. Hosts see the public headers of both.
Public headers include public headers only, and NoxWebMedia.h and NoxWebMediaJobs.h name them all. No file includes
itself by a detour. Everywhere an include names a file by its path in the tree: the library's between angle brackets,
as its users write it, every other one of ours between quotes.
"""

import pathlib
import posixpath
import re
import sys

MAY_INCLUDE = {
    "nox": {"nox/front", "nox/model", "nox/parse", "nox/log", "nox/util"},
    "nox/jobs": set(),
    "nox/util": set(),
    "nox/log": {"nox/util"},
    "nox/model": {"nox/util"},
    "nox/parse": {"nox/util", "nox/log", "nox/model"},
    "nox/process": {"nox/util", "nox/log"},
    "nox/front": {"nox/util", "nox/log", "nox/model", "nox/process"},
    "nox/extract": {"nox/util", "nox/log", "nox/model", "nox/parse", "nox/process", "nox/front"},
    "nox/download": {"nox/util", "nox/log", "nox/model", "nox/parse", "nox/process", "nox/front"},
    "hosts/common": {"nox"},
    "hosts/fetch": {"nox", "hosts/common"},
    "hosts/desk/model": {"nox", "hosts/common", "hosts/desk/network"},
    "hosts/desk/network": {"nox", "hosts/common"},
    "hosts/desk/view": {"nox", "hosts/common", "hosts/desk/model", "hosts/desk/network"},
    "hosts/desk": {"nox", "hosts/common", "hosts/desk/model", "hosts/desk/network", "hosts/desk/view"},
}
# The top floor.
MAY_INCLUDE_TOO = {
    "nox/front/WebMediaDownloaderFactory.cpp": {"nox/extract", "nox/download"},
    "nox/NoxWebMediaJobs.h": {"nox/jobs"},
}
# The header that names all public ones of a library, and the folder whose CMakeLists.txt lists them.
LIBRARIES = {"nox/NoxWebMedia.h": "nox", "nox/NoxWebMediaJobs.h": "nox/jobs"}
# Users of public headers alone, and of which libraries.
USERS = {"nox/jobs": ["nox/NoxWebMedia.h"], "hosts": list(LIBRARIES)}
EXPORT = "nox/Export.h"
# Private to the first library, but compiled into the second one as well.
SHARED_SOURCES = (
    ("nox/jobs/DownloadFolder.cpp", "nox/util/FileRename.h"),
    ("nox/jobs/JobProcess.cpp", "nox/process/ChildProcess.h"),
)
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)


def room(name):
    return name.rpartition("/")[0]


# Includes of these are checked for their form alone.
OUTSIDE = ("examples", "tests", "benchmarks", "fuzz")


class Tree:
    def __init__(self, root):
        self.root = root
        self.files = {
            path.relative_to(root).as_posix(): path
            for top in ("nox", "hosts")
            for path in sorted((root / top).rglob("*"))
            if path.suffix in (".h", ".cpp")
        }
        self.includes = {name: self.included_by(name, path) for name, path in self.files.items()}
        self.public = {everything: self.listed(folder) for everything, folder in LIBRARIES.items()}

    def listed(self, folder):
        listed = re.search(r"set\(public_headers\s([^)]*)\)", (self.root / folder / "CMakeLists.txt").read_text())
        return {posixpath.normpath(f"{folder}/{header}") for header in listed.group(1).split()} if listed else set()

    def visible(self, here):
        """The headers of the libraries that a folder may include; None where it belongs to the first one."""
        for folder, libraries in USERS.items():
            if f"{here}/".startswith(f"{folder}/"):
                return set().union(*(self.public[library] for library in libraries))
        return None

    def included_by(self, name, path):
        """The files of the tree that this one includes; what is not in the tree is the system's."""
        found = []
        for bracket, text in INCLUDE.findall(path.read_text()):
            ours = bracket == '"' or text.startswith("nox/")
            if ours and not text.endswith(".moc"):
                found.append(text)
        return found


def problems_of_rooms(tree):
    for name, included in tree.includes.items():
        here = room(name)
        if here not in MAY_INCLUDE:
            yield f"{name}: the folder {here} has no place in the order; give it one in check-includes.py"
            continue
        allowed = MAY_INCLUDE[here] | MAY_INCLUDE_TOO.get(name, set()) | {here}
        visible = tree.visible(here)
        for other in included:
            if other not in tree.files:
                yield f"{name} includes {other}, which does not exist"
            elif other == EXPORT:
                continue
            elif visible is not None and other.startswith("nox/") and room(other) != here:
                if other not in visible and (name, other) not in SHARED_SOURCES:
                    yield f"{name} includes {other}, which is private to the library"
            elif room(other) not in allowed:
                yield f"{name} includes {other}: {here} may include {', '.join(sorted(allowed - {here})) or 'nothing'}"


def problems_of_public_headers(tree):
    all_public = set().union(*tree.public.values())
    for everything, public in tree.public.items():
        if not public:
            yield f"{LIBRARIES[everything]}/CMakeLists.txt: no list of public headers found"
        for header in sorted(public):
            if header not in tree.files:
                yield f"{header} is listed as public, but does not exist"
                continue
            for other in tree.includes[header]:
                if other not in all_public:
                    yield f"{header} is public, but includes the private {other}"
        for header in sorted(public - set(tree.includes.get(everything, [])) - {everything}):
            yield f"{header} is public, but {everything} does not include it"


def problems_of_circles(tree):
    done = set()

    def visit(name, path):
        if name in path:
            yield "circle: " + " -> ".join([*path[path.index(name):], name])
        elif name not in done:
            for other in tree.includes.get(name, []):
                yield from visit(other, [*path, name])
            done.add(name)

    for name in tree.files:
        yield from visit(name, [])


def problems_of_form(tree):
    others = [path for top in OUTSIDE for path in sorted((tree.root / top).rglob("*")) if path.suffix in (".h", ".cpp")]
    for path in [*tree.files.values(), *others]:
        name = path.relative_to(tree.root).as_posix()
        for bracket, text in INCLUDE.findall(path.read_text()):
            if bracket == '"' and not text.endswith(".moc"):
                if not (tree.root / text).is_file() or text.startswith("nox/"):
                    yield f'{name} includes "{text}"; a header of ours is named by its path in the tree'


def main():
    if len(sys.argv) > 2 or any(argument.startswith("-") for argument in sys.argv[1:]):
        sys.exit(__doc__)
    root = pathlib.Path(sys.argv[1] if len(sys.argv) == 2 else pathlib.Path(__file__).parent.parent).resolve()
    tree = Tree(root)
    problems = [*problems_of_rooms(tree), *problems_of_public_headers(tree)]
    problems += [*problems_of_circles(tree), *problems_of_form(tree)]
    for problem in problems:
        print(problem, file=sys.stderr)
    if problems:
        sys.exit(f"check-includes.py: {len(problems)} includes that go the wrong way")
    print(f"{len(tree.files)} files, {sum(map(len, tree.includes.values()))} includes, all in order")


if __name__ == "__main__":
    main()

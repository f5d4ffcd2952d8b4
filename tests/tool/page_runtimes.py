#!/usr/bin/python3
"""Runtimes for scripts, beside a staged host: what the tool has of them, and what it solves by them.

    page_runtimes.py --fetch NOX-FETCH --package PACKAGE --package EJS-PACKAGE --runtimes FOLDER

--package P     the tool's package, and the one by which it solves challenges
--runtimes F    a folder with the programs deno and node

Prints a table. The exit code is 1 when something came out otherwise than it has to. Not among the tests: it needs a
newer tool than is installed, and runtimes, which are no packages of Debian's.
"""

import argparse
import functools
import json
import pathlib
import subprocess
import sys
import tempfile

import host_bench
from front_runs import HERE
from host_bench import HostBench, Row

ADDRESS = "http://runtimes.invalid/x"


class Bench(HostBench):
    def __init__(self, folder: pathlib.Path, options: argparse.Namespace) -> None:
        super().__init__(folder, options.fetch)
        self._options = options

    def title(self, settings: str, packages: int, has_runtimes: bool) -> str:
        words = [word for package in self._options.package[:packages] for word in ("--package", package)]
        subprocess.run([host_bench.SCRIPTS / "stage-programs.sh", self.host, *words], check=True)
        self.set_settings(settings)
        runtimes = f"{self._options.runtimes}:" if has_runtimes else ""
        run = self.fetch(ADDRESS, "--json", PYTHONPATH=str(HERE / "plugin_runtimes"), PATH=f"{runtimes}/usr/bin:/bin")
        return str(json.loads(run.stdout)["title"]) if run.returncode == 0 else run.stderr.strip()

    def rows(self) -> list[Row]:
        rows: list[tuple[str, str, str, int, bool]] = [
            # name, what comes out, settings, packages, whether there are runtimes
            ("the tool's default", "runtimes deno, answer cba", "", 2, True),
            ("Node set by the user", "runtimes node, answer cba", "--no-js-runtimes\n--js-runtimes node", 2, True),
            ("both", "runtimes deno node, answer cba", "--js-runtimes node", 2, True),
            ("none allowed", "runtimes none, answer none", "--no-js-runtimes", 2, True),
            ("none there", "runtimes none, answer none", "", 2, False),
            ("without the package", "runtimes deno, answer none", "", 1, True),
        ]
        return [(name, title, functools.partial(self.title, *more)) for name, title, *more in rows]


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--fetch", type=pathlib.Path, required=True)
    parser.add_argument("--package", action="append", required=True)
    parser.add_argument("--runtimes", type=pathlib.Path, required=True)
    with tempfile.TemporaryDirectory() as scratch:
        bench = Bench(pathlib.Path(scratch), parser.parse_args())
        return 0 if host_bench.print_rows(bench.rows(), "") else 1


if __name__ == "__main__":
    sys.exit(main())

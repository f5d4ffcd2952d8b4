#!/usr/bin/python3
"""Runtimes for scripts, beside a staged host: what the tool has of them, and what it solves by them.

    page_runtimes.py --fetch NOX-FETCH --tool PACKAGE,EJS-PACKAGE --runtimes FOLDER

--runtimes F    a folder with the programs deno and node

Not among the tests: it needs a newer tool than is installed, with the package by which it solves challenges, and
runtimes, which are no packages of Debian's.
"""

import functools
import json
import pathlib
import sys

import host_bench
from front_runs import HERE
from host_bench import HostBench, Row


class Bench(HostBench):
    def title(self, settings: str, has_package: bool, has_runtimes: bool) -> str:
        [packages] = self.options.tool
        self.stage(packages if has_package else packages.partition(",")[0])
        self.write_setting("noxwebmedia/tool.conf", settings)
        path = f"{self.options.runtimes}:/usr/bin:/bin" if has_runtimes else "/usr/bin:/bin"
        found = self.fetch("http://runtimes.invalid/x", "--json", PYTHONPATH=str(HERE / "plugin"), PATH=path)
        return str(json.loads(found.stdout)["title"]) if found.returncode == 0 else found.stderr.strip()

    def rows(self) -> list[Row]:
        rows: list[tuple[str, str, str, bool, bool]] = [
            # name, what comes out, settings, whether there are the package and runtimes
            ("the tool's default", "runtimes deno, answer cba", "", True, True),
            ("Node set by the user", "runtimes node, answer cba", "--no-js-runtimes\n--js-runtimes node", True, True),
            ("both", "runtimes deno node, answer cba", "--js-runtimes node", True, True),
            ("none allowed", "runtimes none, answer none", "--no-js-runtimes", True, True),
            ("none there", "runtimes none, answer none", "", True, False),
            ("without the package", "runtimes deno, answer none", "", False, True),
        ]
        return [(name, title, functools.partial(self.title, *more)) for name, title, *more in rows]


if __name__ == "__main__":
    parser = host_bench.parser(__doc__ or "")
    parser.add_argument("--runtimes", type=pathlib.Path, required=True)
    sys.exit(host_bench.main(parser.parse_args(), Bench))

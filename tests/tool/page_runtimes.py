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
import signal
import subprocess
import sys
import tempfile

import host_bench
from front_runs import HERE, TIME_LIMIT, wait_for
from host_bench import HostBench, Row

ADDRESS = "http://runtimes.invalid/x"


class Bench(HostBench):
    def __init__(self, folder: pathlib.Path, options: argparse.Namespace) -> None:
        super().__init__(folder, options.fetch)
        self._options = options

    def variables(self, has_runtimes: bool) -> dict[str, str]:
        path = "/usr/bin:/bin"
        return {"PYTHONPATH": str(HERE / "plugin_runtimes"),
                "PATH": f"{self._options.runtimes}:{path}" if has_runtimes else path}

    def prepare(self, settings: str, packages: int) -> None:
        words = [word for package in self._options.package[:packages] for word in ("--package", package)]
        subprocess.run([host_bench.SCRIPTS / "stage-programs.sh", self.host, *words], check=True)
        self.set_settings(settings)

    def title(self, settings: str, packages: int, has_runtimes: bool) -> str:
        self.prepare(settings, packages)
        run = self.fetch(ADDRESS, "--json", **self.variables(has_runtimes))
        return str(json.loads(run.stdout)["title"]) if run.returncode == 0 else run.stderr.strip()

    def hanging_runtime(self) -> str:
        """Whether a runtime that never answers goes away when the host is interrupted."""
        program, note = self.folder / "deno", self.folder / "pid"
        program.write_text(f"#!/bin/sh\necho $$ >{note}\nexec sleep 1000\n")
        program.chmod(0o755)
        self.prepare(f"--js-runtimes deno:{program}\n", 2)
        words = [str(self.host / "nox-fetch"), "--json", ADDRESS]
        with subprocess.Popen(words, env=self.environment(**self.variables(False)), stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL) as host:
            wait_for(lambda: note.exists() and note.read_text().endswith("\n"))
            host.send_signal(signal.SIGINT)
            host.wait(TIME_LIMIT)
        wait_for(lambda: not is_running(int(note.read_text())))
        return f"exit code {host.returncode}, gone"

    def rows(self) -> list[Row]:
        rows: list[tuple[str, str, str, int, bool]] = [
            # name, what comes out, settings, packages, whether there are runtimes
            ("the tool's default", "package there, runtimes deno, answer cba", "", 2, True),
            ("Node set by the user", "package there, runtimes node, answer cba", "--no-js-runtimes\n--js-runtimes node",
             2, True),
            ("both", "package there, runtimes deno node, answer cba", "--js-runtimes node", 2, True),
            ("none allowed", "package there, runtimes none, answer none", "--no-js-runtimes", 2, True),
            ("none there", "package there, runtimes none, answer none", "", 2, False),
            ("without the package", "package missing, runtimes deno, answer none", "", 1, True),
        ]
        return [*((name, title, functools.partial(self.title, *more)) for name, title, *more in rows),
                ("a runtime that hangs, interrupted", "exit code 130, gone", self.hanging_runtime)]


def is_running(process: int) -> bool:
    try:
        return pathlib.Path(f"/proc/{process}/cmdline").read_text() != ""
    except OSError:
        return False


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

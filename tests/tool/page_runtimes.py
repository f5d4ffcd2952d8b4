#!/usr/bin/python3
"""Runtimes for scripts, beside a staged host: what the tool has of them, and what it solves by them.

    page_runtimes.py --fetch NOX-FETCH --package PACKAGE --package EJS-PACKAGE --runtimes FOLDER

--package P     the tool's package, and the one by which it solves challenges
--runtimes F    a folder with the programs deno and node

Prints a table. The exit code is 1 when something came out otherwise than it has to. Not among the tests: it needs a
newer tool than is installed, and runtimes, which are no packages of Debian's.
"""

import argparse
import json
import pathlib
import signal
import subprocess
import sys
import tempfile
import time
from typing import Callable, NamedTuple

import host_bench
from host_bench import HostBench

PLUGIN = pathlib.Path(__file__).resolve().parent / "plugin_runtimes"
ADDRESS = "http://runtimes.invalid/x"


class Row(NamedTuple):
    name: str
    title: str
    settings: str = ""
    packages: int = 2
    has_runtimes: bool = True


ROWS = [
    Row("the tool's default", "package there, runtimes deno, answer cba"),
    Row("Node set by the user", "package there, runtimes node, answer cba", "--no-js-runtimes\n--js-runtimes node"),
    Row("both", "package there, runtimes deno node, answer cba", "--js-runtimes node"),
    Row("none allowed", "package there, runtimes none, answer none", "--no-js-runtimes"),
    Row("none there", "package there, runtimes none, answer none", has_runtimes=False),
    Row("without the package", "package missing, runtimes deno, answer none", packages=1),
]


class Bench(HostBench):
    def __init__(self, folder: pathlib.Path, options: argparse.Namespace) -> None:
        super().__init__(folder, options.fetch)
        self._options = options
        self._config = folder / "XDG_CONFIG_HOME" / "noxwebmedia"
        self._config.mkdir(parents=True)

    def stage_packages(self, count: int) -> None:
        words = [word for package in self._options.package[:count] for word in ("--package", package)]
        subprocess.run([host_bench.SCRIPTS / "stage-programs.sh", self.host, *words], check=True)

    def environment(self, has_runtimes: bool) -> dict[str, str]:
        path = "/usr/bin:/bin"
        return {"PYTHONPATH": str(PLUGIN), "PATH": f"{self._options.runtimes}:{path}" if has_runtimes else path}

    def title(self, row: Row) -> str:
        self.stage_packages(row.packages)
        (self._config / "tool.conf").write_text(row.settings)
        run = self.fetch(ADDRESS, self.environment(row.has_runtimes), "--json")
        return str(json.loads(run.stdout)["title"]) if run.returncode == 0 else run.stderr.strip()

    def hanging_runtime(self) -> str:
        """Whether a runtime that never answers goes away when the host is interrupted."""
        marker = "31415926"
        program = self.folder / "deno"
        program.write_text(f"#!/bin/sh\nexec sleep {marker}\n")
        program.chmod(0o755)
        (self._config / "tool.conf").write_text(f"--js-runtimes deno:{program}\n")
        self.stage_packages(2)
        words = [str(self.host / "nox-fetch"), "--json", ADDRESS]
        with subprocess.Popen(words, env={**self.own_environment(), **self.environment(False)},
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as host:
            if not self.wait_for(lambda: is_running(marker)):
                return "not started"
            host.send_signal(signal.SIGINT)
            host.wait(host_bench.TIMEOUT)
        return f"exit code {host.returncode}, " + ("gone" if self.wait_for(lambda: not is_running(marker)) else "left")

    def own_environment(self) -> dict[str, str]:
        names = ("XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME")
        return {**{name: str(self.folder / name) for name in names}, "HOME": str(self.folder)}

    @staticmethod
    def wait_for(condition: Callable[[], bool]) -> bool:
        for _ in range(600):
            if condition():
                return True
            time.sleep(0.1)
        return False


def is_running(marker: str) -> bool:
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if f"sleep\0{marker}\0" in (folder / "cmdline").read_text():
                return True
        except OSError:
            continue
    return False


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--fetch", type=pathlib.Path, required=True)
    parser.add_argument("--package", action="append", required=True)
    parser.add_argument("--runtimes", type=pathlib.Path, required=True)
    with tempfile.TemporaryDirectory() as scratch:
        bench = Bench(pathlib.Path(scratch), parser.parse_args())
        results: list[list[str]] = [[row.name, row.title, bench.title(row)] for row in ROWS]
        results.append(["a runtime that hangs, interrupted", "exit code 130, gone", bench.hanging_runtime()])
    print("| Runtime | Has to be | Is |\n|---|---|---|")
    for result in results:
        print(f"| {' | '.join(result)} |")
    return int(any(wanted != found for _, wanted, found in results))


if __name__ == "__main__":
    sys.exit(main())

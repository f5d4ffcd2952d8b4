"""nox-fetch with its programs in a folder of its own, to try versions of the tool with."""

import argparse
import os
import pathlib
import shutil
import subprocess
from typing import Callable

SCRIPTS = pathlib.Path(__file__).resolve().parents[2] / "scripts"
TIMEOUT = 120  # seconds
Row = tuple[str, str, Callable[[], str]]  # the name, what has to come out, and what does

OPTIONS = """\
--fetch F    the nox-fetch to try; it is copied, and the programs that it needs are put beside it
--tool P     the yt_dlp package to try: "installed" (the default), a folder, a wheel or an archive of its sources;
             can be given several times
--only W     only the rows whose name holds this word
--plain      the tool without its front, for comparison; then differences are no failure

Prints a table. The exit code is 1 when something came out otherwise than it has to.
"""


class HostBench:
    def __init__(self, folder: pathlib.Path, fetch: pathlib.Path) -> None:
        self.folder = folder
        self.host = folder / "host"
        self.work = folder / "work"
        self.host.mkdir()
        self.work.mkdir()
        shutil.copy(fetch.resolve(), self.host / "nox-fetch")

    def stage(self, package: str, is_plain: bool) -> str:
        """Puts this version beside the host; its number."""
        options = [] if package == "installed" else ["--package", package]
        subprocess.run([SCRIPTS / "stage-programs.sh", self.host, *options], check=True)
        tool = self.host / "yt.zip"
        if is_plain:
            subprocess.run([SCRIPTS / "make-tool-archive.py", tool, "--plain", *options], check=True)
        words = ["/usr/bin/python3", str(tool), "--version"]
        return subprocess.run(words, capture_output=True, check=True, text=True).stdout.strip()

    def fetch(self, address: str, changes: dict[str, str], *options: str) -> "subprocess.CompletedProcess[str]":
        """Runs nox-fetch in the work folder, with nothing of the user's settings but changes of the environment."""
        private = {name: str(self.folder / name) for name in ("XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME")}
        return subprocess.run([str(self.host / "nox-fetch"), *options, address], capture_output=True, text=True,
                              timeout=TIMEOUT, cwd=self.work,
                              env={**os.environ, **private, "HOME": str(self.folder), **changes})

    def empty_work(self) -> None:
        shutil.rmtree(self.work)
        self.work.mkdir()


def parser(description: str) -> argparse.ArgumentParser:
    result = argparse.ArgumentParser(description=description + OPTIONS,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    result.add_argument("--fetch", type=pathlib.Path, required=True)
    result.add_argument("--tool", action="append")
    result.add_argument("--only", default="")
    return result


def options(description: str) -> argparse.Namespace:
    own = parser(description)
    own.add_argument("--plain", action="store_true")
    return own.parse_args()


def print_table(bench: HostBench, rows: list[Row], wanted: argparse.Namespace) -> int:
    """The exit code."""
    code = 0
    print("| Page | Tool | Result | |\n|---|---|---|---|")
    for package in wanted.tool or ["installed"]:
        version = bench.stage(package, wanted.plain)
        for name, expected, result in rows:
            if wanted.only not in name:
                continue
            found = result()
            verdict = "as it has to be" if found == expected else f"not {expected}"
            print(f"| {name} | {version} | {found} | {verdict} |", flush=True)
            if found != expected and not wanted.plain:
                code = 1
    return code

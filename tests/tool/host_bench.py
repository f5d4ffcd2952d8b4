"""nox-fetch with its programs in a folder of its own, to try versions of the tool with."""

import argparse
import os
import pathlib
import shutil
import subprocess
import tempfile
from typing import Callable

from front_runs import HERE, TIME_LIMIT

SCRIPTS = HERE.parents[1] / "scripts"
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

    def environment(self, **changes: str) -> dict[str, str]:
        """With nothing of the user's settings."""
        private = {name: str(self.folder / name) for name in ("XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME")}
        return {**os.environ, **private, "HOME": str(self.folder), **changes}

    def fetch(self, address: str, *options: str, **changes: str) -> "subprocess.CompletedProcess[str]":
        """Runs nox-fetch in the work folder, with these changes of the environment."""
        return subprocess.run([str(self.host / "nox-fetch"), *options, address], capture_output=True, text=True,
                              timeout=TIME_LIMIT, cwd=self.work, env=self.environment(**changes))

    def set_settings(self, text: str) -> None:
        settings = self.folder / "XDG_CONFIG_HOME" / "noxwebmedia" / "tool.conf"
        settings.parent.mkdir(parents=True, exist_ok=True)
        settings.write_text(text)
        settings.chmod(0o600)

    def rows(self) -> list[Row]:
        raise NotImplementedError

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


def print_rows(rows: list[Row], version: str) -> bool:
    """Whether all came out as they have to."""
    is_good = True
    print("| Page | Tool | Result | |\n|---|---|---|---|")
    for name, expected, result in rows:
        found = result()
        verdict = "as it has to be" if found == expected else f"not {expected}"
        print(f"| {name} | {version} | {found} | {verdict} |", flush=True)
        is_good = is_good and found == expected
    return is_good


def main(description: str, kind: type[HostBench]) -> int:
    """The exit code."""
    own = parser(description)
    own.add_argument("--plain", action="store_true")
    wanted = own.parse_args()
    with tempfile.TemporaryDirectory() as scratch:
        bench = kind(pathlib.Path(scratch), wanted.fetch)
        rows = [row for row in bench.rows() if wanted.only in row[0]]
        results = [print_rows(rows, bench.stage(package, wanted.plain)) for package in wanted.tool or ["installed"]]
    return 0 if wanted.plain or all(results) else 1

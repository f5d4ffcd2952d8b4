"""nox-fetch with its programs in a folder of its own, to try versions of the tool with."""

import argparse
import os
import pathlib
import shutil
import subprocess
import tempfile
from typing import Callable

from front_runs import HERE, run

SCRIPTS = HERE.parents[1] / "scripts"
Row = tuple[str, str, Callable[[], str]]  # the name, what has to come out, and what does

OPTIONS = """
--fetch F    the nox-fetch to try; it is copied, and the programs that it needs are put beside it
--tool P     the yt_dlp package to try: "installed" (the default), a folder, a wheel or an archive of its sources, and
             behind a comma a package that it uses; can be given several times
--only W     only the rows whose name holds this word

Prints a table. The exit code is 1 when something came out otherwise than it has to.
"""


class HostBench:
    def __init__(self, options: argparse.Namespace, folder: pathlib.Path) -> None:
        self.options = options
        self.folder = folder
        self.host = folder / "host"
        self.work = folder / "work"
        self.host.mkdir()
        self.work.mkdir()
        shutil.copy(options.fetch.resolve(), self.host / "nox-fetch")
        self.write_setting("yt-dlp/config", "--quiet\n-x\n-o /nowhere/%(title)s\n--remux-video mkv\n")  # is not read

    def package_options(self, packages: str) -> list[str]:
        return [word for package in packages.split(",") if package != "installed" for word in ("--package", package)]

    def stage(self, packages: str) -> str:
        """Puts these packages beside the host; the tool's version."""
        subprocess.run([SCRIPTS / "stage-programs.sh", self.host, *self.package_options(packages)], check=True)
        return run(["/usr/bin/python3", self.host / "yt.zip", "--version"], check=True).stdout.strip()

    def environment(self, **changes: str) -> dict[str, str]:
        """With nothing of the user's settings."""
        private = {name: str(self.folder / name) for name in ("XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME")}
        return {**os.environ, **private, "HOME": str(self.folder), **changes}

    def fetch(self, address: str, *options: str, **changes: str) -> "subprocess.CompletedProcess[str]":
        """Runs nox-fetch in the work folder, with these changes of the environment."""
        return run([self.host / "nox-fetch", *options, address], cwd=self.work, env=self.environment(**changes))

    def write_setting(self, name: str, text: str) -> None:
        file = self.folder / "XDG_CONFIG_HOME" / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)
        file.chmod(0o600)

    def rows(self) -> list[Row]:
        raise NotImplementedError

    def empty_work(self) -> None:
        shutil.rmtree(self.work)
        self.work.mkdir()

    def print_rows(self, version: str) -> bool:
        """Whether all came out as they have to."""
        is_good = True
        print("| Page | Tool | Result | |\n|---|---|---|---|")
        for name, expected, result in self.rows():
            if self.options.only in name:
                found = result()
                verdict = "as it has to be" if found == expected else f"not {expected}"
                print(f"| {name} | {version} | {found} | {verdict} |", flush=True)
                is_good = is_good and found == expected
        return is_good


def parser(description: str) -> argparse.ArgumentParser:
    result = argparse.ArgumentParser(description=description + OPTIONS,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    result.add_argument("--fetch", type=pathlib.Path, required=True)
    result.add_argument("--tool", action="append")
    result.add_argument("--only", default="")
    return result


def main(options: argparse.Namespace, kind: type[HostBench]) -> int:
    """The exit code."""
    with tempfile.TemporaryDirectory() as scratch:
        bench = kind(options, pathlib.Path(scratch))
        results = [bench.print_rows(bench.stage(packages)) for packages in options.tool or ["installed"]]
    return 0 if all(results) else 1

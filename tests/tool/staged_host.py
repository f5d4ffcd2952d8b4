"""nox-fetch with its programs in a folder of its own."""

import os
import pathlib
import shutil
import subprocess

from front_runs import HERE, FolderTest, run

SCRIPTS = HERE.parents[1] / "scripts"


def package_options(packages: list[str]) -> list[str]:
    return [word for package in packages for word in ("--package", package)]


class StagedHost:
    def __init__(self, folder: pathlib.Path, fetch: pathlib.Path) -> None:
        self.folder, self.programs, self.work = folder, folder / "programs", folder / "work"
        self.programs.mkdir()
        self.work.mkdir()
        shutil.copy(fetch.resolve(), self.programs / "nox-fetch")
        self.write_setting("yt-dlp/config", "--quiet\n-x\n-o /nowhere/%(title)s\n--remux-video mkv\n")  # is not read

    def stage(self, packages: list[str]) -> None:
        """With these packages of the tool, as scripts/stage-programs.sh takes them, or else with the installed one."""
        run([SCRIPTS / "stage-programs.sh", self.programs, *package_options(packages)], check=True)

    def environment(self, **changes: str) -> dict[str, str]:
        """With nothing of the user's settings."""
        private = {name: str(self.folder / name) for name in ("XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME")}
        return {**os.environ, **private, "HOME": str(self.folder), **changes}

    def fetch(self, address: str, *options: str, **changes: str) -> "subprocess.CompletedProcess[str]":
        """Runs nox-fetch in the work folder, with these changes of the environment."""
        return run([self.programs / "nox-fetch", *options, address], cwd=self.work, env=self.environment(**changes))

    def write_setting(self, name: str, text: str) -> None:
        file = self.folder / "XDG_CONFIG_HOME" / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)
        file.chmod(0o600)

    def empty_work(self) -> None:
        shutil.rmtree(self.work)
        self.work.mkdir()


class HostTest(FolderTest):
    """In the environment NOX_FETCH names the nox-fetch, and NOX_PACKAGES packages of the tool, divided by colons."""

    def setUp(self) -> None:
        super().setUp()
        self.packages = [package for package in os.environ.get("NOX_PACKAGES", "").split(":") if package]
        self.host = StagedHost(self.folder, pathlib.Path(os.environ["NOX_FETCH"]))
        self.host.stage(self.packages)

import importlib.util
import os
import pathlib
import stat
import subprocess
import unittest
import zipfile

from front_runs import HERE, TIME_LIMIT, FolderTest

SCRIPTS = HERE.parents[1] / "scripts"
MAIN = "def main(words):\n    print('2099.01.01')\n"


def make_wheel(folder: pathlib.Path, name: str, kind: str, files: dict[str, str], *needed: str) -> None:
    requirements = "".join(f"Requires-Dist: {other}; extra == 'default'\n" for other in needed)
    information = f"{name}-1.0.dist-info"
    files = {
        **files, f"{information}/RECORD": "", f"{information}/WHEEL":
        f"Wheel-Version: 1.0\nGenerator: x\nRoot-Is-Purelib: true\nTag: {kind}\n", f"{information}/METADATA":
        f"Metadata-Version: 2.1\nName: {name}\nVersion: 1.0\nProvides-Extra: default\n{requirements}",
    }
    with zipfile.ZipFile(folder / f"{name}-1.0-{kind}.whl", "w") as wheel:
        for file, text in files.items():
            wheel.writestr(file, text)


class RenewTest(FolderTest):
    def setUp(self) -> None:
        super().setUp()
        self.data = self.folder / "data" / "noxwebmedia"
        self.data.mkdir(parents=True)
        self.archive = self.data / "yt.zip"

    def make_packages(self) -> list[pathlib.Path]:
        """Folders of the tool's package and of one that it uses."""
        packages = [self.folder / "a" / "yt_dlp", self.folder / "b" / "yt_dlp_ejs"]
        for package in packages:
            package.mkdir(parents=True)
            (package / "__init__.py").write_text(MAIN)
            (package / "data.js").write_text("")
        return [packages[0].parent, packages[1]]

    def renew(self, script: pathlib.Path, *words: pathlib.Path, **changes: str) -> "subprocess.CompletedProcess[str]":
        return subprocess.run([script, *words], capture_output=True, text=True, timeout=TIME_LIMIT,
                              env={**os.environ, "XDG_DATA_HOME": str(self.data.parent), **changes})

    def names(self) -> list[str]:
        with zipfile.ZipFile(self.archive) as archive:
            return archive.namelist()

    def test_the_hosts_will_use_it(self) -> None:
        self.data.chmod(0o775)  # as a permissive umask leaves it; the hosts ignore what lies in such a folder
        command = self.folder / "nox-renew-tool"  # as it is installed
        command.symlink_to(SCRIPTS / "renew-tool.sh")
        packages = self.make_packages()
        run = self.renew(command, *packages)
        self.assertEqual((run.returncode, run.stdout), (0, f"yt-dlp 2099.01.01 in {self.archive}\n"), run.stderr)
        self.assertRegex(run.stderr, r"\Amake-tool-archive.py: the package has no .*lazy_extractors.py, .*\n\Z")
        for path in (self.data, self.archive):
            self.assertEqual(path.stat().st_mode & (stat.S_IWGRP | stat.S_IWOTH), 0, path)
        self.assertLessEqual({"yt_dlp/__init__.py", "yt_dlp_ejs/data.js", "noxfront/main.py"}, set(self.names()))
        # Without the tool's own package there is nothing to renew, and what is there stays.
        run = self.renew(command, packages[1])
        self.assertEqual(run.returncode, 1)
        self.assertIn("no yt_dlp package in", run.stderr)
        self.assertIn("yt_dlp/__init__.py", self.names())

    @unittest.skipUnless(importlib.util.find_spec("pip") and os.uname().machine == "x86_64", "no pip for these wheels")
    def test_extras_that_are_python_alone(self) -> None:
        wheels = self.folder / "wheels"
        wheels.mkdir()
        make_wheel(wheels, "yt_dlp", "py3-none-any", {"yt_dlp/__init__.py": MAIN}, "yt-dlp-ejs", "native", "both")
        make_wheel(wheels, "yt_dlp_ejs", "py3-none-any", {"yt_dlp_ejs/__init__.py": "", "yt_dlp_ejs/a.js": ""})
        make_wheel(wheels, "native", "py3-none-linux_x86_64", {"native/__init__.py": ""})
        make_wheel(wheels, "both", "py3-none-linux_x86_64", {"both/__init__.py": "", "both/fast.so": ""})
        make_wheel(wheels, "both", "py3-none-any", {"both/__init__.py": ""})
        run = self.renew(SCRIPTS / "renew-tool.sh", PIP_NO_INDEX="1", PIP_FIND_LINKS=str(wheels))
        self.assertEqual(run.returncode, 0, run.stderr)
        names = set(self.names())
        self.assertLessEqual({"yt_dlp/__init__.py", "yt_dlp_ejs/a.js", "both/__init__.py"}, names)
        self.assertFalse({"native/__init__.py", "both/fast.so"} & names)
        self.assertFalse([name for name in names if "dist-info" in name])

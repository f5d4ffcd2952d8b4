import importlib.util
import os
import pathlib
import stat
import subprocess
import tempfile
import unittest
import zipfile


SCRIPTS = pathlib.Path(__file__).resolve().parents[2] / "scripts"
MAIN = "def main(words):\n    print('2099.01.01')\n"


def make_wheel(folder: pathlib.Path, name: str, kind: str, files: dict[str, str], *needed: str) -> None:
    information = f"{name}-1.0.dist-info"
    requirements = "".join(f"Requires-Dist: {other}; extra == 'default'\n" for other in needed)
    with zipfile.ZipFile(folder / f"{name}-1.0-{kind}.whl", "w") as wheel:
        for file, text in files.items():
            wheel.writestr(file, text)
        wheel.writestr(f"{information}/METADATA", f"Metadata-Version: 2.1\nName: {name}\nVersion: 1.0\n"
                       f"Provides-Extra: default\n{requirements}")
        wheel.writestr(f"{information}/WHEEL", f"Wheel-Version: 1.0\nGenerator: x\n"
                       f"Root-Is-Purelib: true\nTag: {kind}\n")
        wheel.writestr(f"{information}/RECORD", "")


class RenewTest(unittest.TestCase):
    def setUp(self) -> None:
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.scratch = pathlib.Path(scratch.name)
        self.folder = self.scratch / "data" / "noxwebmedia"
        self.folder.mkdir(parents=True)
        self.archive = self.folder / "yt.zip"

    def make_packages(self) -> list[pathlib.Path]:
        """Folders of the tool's package and of one that it uses."""
        for name, text in (("yt_dlp", MAIN), ("yt_dlp_ejs", "")):
            package = self.scratch / f"{name}-sources" / name
            package.mkdir(parents=True)
            (package / "__init__.py").write_text(text)
            (package / "data.js").write_text("")
        return [self.scratch / "yt_dlp-sources", self.scratch / "yt_dlp_ejs-sources" / "yt_dlp_ejs"]

    def renew(self, script: pathlib.Path, *words: pathlib.Path, **changes: str) -> "subprocess.CompletedProcess[str]":
        return subprocess.run([script, *words], capture_output=True, text=True, timeout=120,
                              env={**os.environ, "XDG_DATA_HOME": str(self.folder.parent), **changes})

    def names(self) -> list[str]:
        with zipfile.ZipFile(self.archive) as archive:
            return archive.namelist()

    def test_the_hosts_will_use_it(self) -> None:
        self.folder.chmod(0o775)  # as a permissive umask leaves it; the hosts ignore what lies in such a folder
        command = self.scratch / "nox-renew-tool"  # as it is installed
        command.symlink_to(SCRIPTS / "renew-tool.sh")
        packages = self.make_packages()
        run = self.renew(command, *packages)
        self.assertEqual((run.returncode, run.stdout), (0, f"yt-dlp 2099.01.01 in {self.archive}\n"), run.stderr)
        self.assertRegex(run.stderr, r"\Amake-tool-archive.py: the package has no .*lazy_extractors.py, .*\n\Z")
        for path in (self.folder, self.archive):
            self.assertEqual(path.stat().st_mode & (stat.S_IWGRP | stat.S_IWOTH), 0, path)
        self.assertLessEqual({"yt_dlp/__init__.py", "yt_dlp_ejs/data.js", "noxfront/main.py"}, set(self.names()))
        # Without the tool's own package there is nothing to renew, and what is there stays.
        run = self.renew(command, packages[1])
        self.assertEqual(run.returncode, 1)
        self.assertIn("no yt_dlp package in", run.stderr)
        self.assertIn("yt_dlp/__init__.py", self.names())

    @unittest.skipUnless(importlib.util.find_spec("pip") and os.uname().machine == "x86_64", "no pip for these wheels")
    def test_extras_that_are_python_alone(self) -> None:
        wheels = self.scratch / "wheels"
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

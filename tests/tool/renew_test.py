import importlib.util
import os
import pathlib
import unittest
import zipfile
from typing import Any

from front_runs import HERE, FolderTest, run

SCRIPT = HERE.parents[1] / "scripts" / "renew-tool.sh"
MAIN = "def main(words):\n    print('2099.01.01')\n"


def make_wheel(folder: pathlib.Path, kind: str, package: str, *files: str, needed: tuple[str, ...] = ()) -> None:
    requirements = "".join(f"Requires-Dist: {other}; extra == 'default'\n" for other in needed)
    with zipfile.ZipFile(folder / f"{package}-1.0-{kind}.whl", "w") as wheel:
        for name, text in {
            **dict.fromkeys((f"{package}/{file}" for file in ("__init__.py", *files)), MAIN),
            f"{package}-1.0.dist-info/RECORD": "",
            f"{package}-1.0.dist-info/WHEEL": f"Wheel-Version: 1.0\nRoot-Is-Purelib: true\nTag: {kind}\n",
            f"{package}-1.0.dist-info/METADATA":
                f"Metadata-Version: 2.1\nName: {package}\nVersion: 1.0\nProvides-Extra: default\n{requirements}",
        }.items():
            wheel.writestr(name, text)


class RenewTest(FolderTest):
    def setUp(self) -> None:
        super().setUp()
        self.archive = self.folder / "data" / "noxwebmedia" / "yt.zip"
        self.archive.parent.mkdir(parents=True)

    def renew(self, *words: pathlib.Path, **changes: str) -> Any:
        return run(words, env={**os.environ, "XDG_DATA_HOME": str(self.folder / "data"), **changes})

    def names(self) -> set[str]:
        with zipfile.ZipFile(self.archive) as archive:
            return set(archive.namelist())

    def test_the_hosts_will_use_it(self) -> None:
        self.archive.parent.chmod(0o775)  # as a permissive umask leaves it; the hosts ignore what lies in such a folder
        command = self.folder / "nox-renew-tool"  # as it is installed
        command.symlink_to(SCRIPT)
        packages = [self.folder / "yt_dlp", self.folder / "b" / "yt_dlp_ejs"]
        for package in packages:
            package.mkdir(parents=True)
            (package / "__init__.py").write_text(MAIN)
            (package / "data.js").write_text("")
        result = self.renew(command, self.folder, packages[1])
        self.assertEqual((result.returncode, result.stdout), (0, f"yt-dlp 2099.01.01 in {self.archive}\n"), result)
        self.assertRegex(result.stderr, r"\Amake-tool-archive.py: the package has no .*lazy_extractors.py, .*\n\Z")
        for path in (self.archive.parent, self.archive):
            self.assertEqual(path.stat().st_mode & 0o022, 0, path)
        self.assertLessEqual({"yt_dlp/__init__.py", "yt_dlp_ejs/data.js", "noxfront/main.py"}, self.names())
        # Without the tool's own package there is nothing to renew, and what is there stays.
        result = self.renew(command, packages[1])
        self.assertEqual(result.returncode, 1)
        self.assertIn("no yt_dlp package in", result.stderr)
        self.assertIn("yt_dlp/__init__.py", self.names())

    @unittest.skipUnless(importlib.util.find_spec("pip") and os.uname().machine == "x86_64", "no pip for these wheels")
    def test_extras_that_are_python_alone(self) -> None:
        make_wheel(self.folder, "py3-none-any", "yt_dlp", needed=("yt-dlp-ejs", "native", "both"))
        make_wheel(self.folder, "py3-none-any", "yt_dlp_ejs", "a.js")
        make_wheel(self.folder, "py3-none-linux_x86_64", "native")
        make_wheel(self.folder, "py3-none-linux_x86_64", "both", "fast.so")
        make_wheel(self.folder, "py3-none-any", "both")
        result = self.renew(SCRIPT, PIP_NO_INDEX="1", PIP_FIND_LINKS=str(self.folder))
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertLessEqual({"yt_dlp/__init__.py", "yt_dlp_ejs/a.js", "both/__init__.py"}, self.names())
        self.assertEqual([name for name in self.names() if name.startswith("native/") or name == "both/fast.so"
                          or "dist-info" in name], [])

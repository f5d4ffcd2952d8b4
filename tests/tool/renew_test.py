import os
import pathlib
import stat
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "renew-tool.sh"


class RenewTest(unittest.TestCase):
    def test_the_hosts_will_use_it(self) -> None:
        with tempfile.TemporaryDirectory() as scratch:
            package = pathlib.Path(scratch, "yt_dlp")
            package.mkdir()
            (package / "__init__.py").write_text("def main(words):\n    print('2099.01.01')\n")
            folder = pathlib.Path(scratch, "data", "noxwebmedia")
            folder.mkdir(parents=True)
            folder.chmod(0o775)  # as a permissive umask leaves it; the hosts ignore what lies in such a folder
            run = subprocess.run([SCRIPT, package], capture_output=True, check=True, text=True, timeout=60,
                                 env={**os.environ, "XDG_DATA_HOME": str(folder.parent)})
            self.assertEqual(run.stdout, f"yt-dlp 2099.01.01 in {folder}/yt.zip\n")
            for path in (folder, folder / "yt.zip"):
                self.assertEqual(path.stat().st_mode & (stat.S_IWGRP | stat.S_IWOTH), 0, path)

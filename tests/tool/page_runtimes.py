"""Runtimes for scripts, beside a staged host: what the tool has of them, and what it solves by them.

Not among the tests that CTest runs: NOX_PACKAGES has to name a newer tool than is installed and the package by which it
solves challenges, and NOX_RUNTIMES a folder with the programs deno and node, which are no packages of Debian's.
"""

import json
import os

from front_runs import PLUGIN
from staged_host import HostTest


class RuntimesTest(HostTest):
    def test_runtimes(self) -> None:
        rows: list[tuple[str, str, int, bool]] = [
            # what comes out, settings, the number of packages, whether there are runtimes
            ("runtimes deno, answer cba", "", 2, True),
            ("runtimes node, answer cba", "--no-js-runtimes\n--js-runtimes node", 2, True),
            ("runtimes deno node, answer cba", "--js-runtimes node", 2, True),
            ("runtimes none, answer none", "--no-js-runtimes", 2, True),
            ("runtimes none, answer none", "", 2, False),
            ("runtimes deno, answer none", "", 1, True),
        ]
        for title, settings, count, has_runtimes in rows:
            with self.subTest(title=title, settings=settings, count=count):
                self.host.stage(self.packages[:count])
                self.host.write_setting("noxwebmedia/tool.conf", settings)
                path = f"{os.environ['NOX_RUNTIMES']}:/usr/bin:/bin" if has_runtimes else "/usr/bin:/bin"
                found = self.host.fetch("http://runtimes.invalid/x", "--json", PATH=path, PYTHONPATH=PLUGIN)
                self.assertEqual(json.loads(found.stdout or "{}").get("title"), title, found)

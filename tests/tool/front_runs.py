"""Runs the front in a process of its own, with the package of the tool that PYTHONPATH has, else the installed one."""

import json
import os
import pathlib
import resource
import subprocess
import sys
import tempfile
import time
import unittest
from typing import Any, Callable, Sequence

from servers import Site

HERE = pathlib.Path(__file__).resolve().parent
FRONT = HERE.parents[1] / "tool"
PLUGIN = str(HERE / "plugin")  # of the tool
TIME_LIMIT = 120  # seconds
READ_ANEW = 9  # the exit code of the child where the page is to be read anew
CHILD = f"""
import json, resource, sys
from noxfront import command_line, download, lean_start, messages
command = command_line.parse(sys.argv[1:6])
lean_start.prepare()
page, options = json.loads(sys.argv[6])
log = messages.DownloadLog(command.template)
before = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
code = download.run_remembered(command, options, page, log)
print("kilobytes", resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - before)
sys.exit({READ_ANEW} if code is None else code)
"""


def environment(*paths: object, **changes: str) -> dict[str, str]:
    """With these folders of Python packages before the others."""
    folders = [*map(str, paths), os.environ.get("PYTHONPATH", "")]
    return {**os.environ, "PYTHONPATH": ":".join(folders), **changes}


def run(words: Sequence[object], **more: Any) -> "subprocess.CompletedProcess[str]":
    return subprocess.run([*map(str, words)], capture_output=True, text=True, timeout=TIME_LIMIT, **more)


def run_front(words: list[str], env: dict[str, str], **more: Any) -> "subprocess.CompletedProcess[str]":
    return run([sys.executable, FRONT, *words], env=env, **more)


def wait_for(condition: Callable[[], object]) -> None:
    deadline = time.monotonic() + TIME_LIMIT
    while not condition():
        if time.monotonic() > deadline:
            raise TimeoutError
        time.sleep(0.02)


class FolderTest(unittest.TestCase):
    """Has a folder of its own."""

    def setUp(self) -> None:
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)


class StreamTest(FolderTest):
    """Fetches streams of a Site by a record of their page, as "clip.ts"."""

    def site(self, count: int, size: int, **more: Any) -> Site:
        site = Site(count, size, **more)
        self.addCleanup(site.stop)
        return site

    def begin(self, site: Site, kind: str, *options: str, query: str = "",
              size_limit: int = resource.RLIM_INFINITY) -> Any:
        """Of the kind "file", "dash" or "hls"; the query is that of the stream's addresses, the limit that of files."""
        base = f"{site.address}/"
        streams: dict[str, dict[str, Any]] = {
            "file": {"url": f"{base}file?{query}", "protocol": "http"},
            "dash": {"url": base, "protocol": "http_dash_segments",
                     "fragments": [{"url": f"{base}{number}.ts?{query}"} for number in range(site.count)]},
            "hls": {"url": f"{base}list.m3u8?{query}", "protocol": "m3u8_native"},
        }
        page = {"id": "1", "title": "t", "extractor": "x", "extractor_key": "X", "webpage_url": base,
                "formats": [{"format_id": "1", "ext": "ts", **streams[kind]}]}
        words = ["-f", "1", "-o", f"{self.folder}/clip.%(ext)s", "http://127.0.0.1/page", json.dumps([page, options])]
        child = subprocess.Popen(
            [sys.executable, "-c", CHILD, *words], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
            env=environment(FRONT),
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (size_limit, resource.RLIM_INFINITY)))
        self.addCleanup(child.kill)
        return child

    def finish(self, child: Any) -> tuple[int, str, str]:
        """The exit code, standard output and standard error."""
        output, errors = child.communicate(timeout=TIME_LIMIT)
        return child.returncode, output, errors

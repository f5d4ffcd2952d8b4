"""Each option that may stand in tool.conf, tried with the real tool's own parser.

The environment's NOX_TOOL_PACKAGES names folders with other packages of the tool to try, divided by colons.
"""

import json
import os
import pathlib
import subprocess
import sys
import unittest
from typing import Any

from noxfront import options

FRONT = pathlib.Path(__file__).resolve().parents[2] / "tool"
PACKAGES = ["", *filter(None, os.environ.get("NOX_TOOL_PACKAGES", "").split(":"))]
PROGRAM = """
import json, sys
import yt_dlp
from noxfront import configuration, options, tool

def outcome(line):
    try:
        tool.settings(configuration.parse(line).options)
        return ""
    except configuration.ConfigurationError as error:
        return str(error)

parser = yt_dlp.options.create_parser()
names = [*options.TAKEN, *options.WITHOUT_MEANING, *options.REFUSED]
arity = {name: parser.get_option(name).takes_value() for name in names if parser.has_option(name)}
json.dump({"outcomes": [outcome(line) for line in json.load(sys.stdin)], "arity": arity}, sys.stdout)
"""
# A line for each option; those that need others stand with them.
LINES: list[str] = [
    "--proxy http://127.0.0.1:1", "--geo-verification-proxy http://127.0.0.1:1", "--xff DE", "--geo-bypass",
    "--no-geo-bypass", "--geo-bypass-country DE", "--geo-bypass-ip-block 127.0.0.0/8", "--socket-timeout 5",
    "--source-address 127.0.0.1", "--impersonate chrome", "--force-ipv4", "--force-ipv6", "--cookies /x",
    "--no-cookies", "--cookies-from-browser firefox", "--no-cookies-from-browser", "--concurrent-fragments 32", "-N1",
    "--limit-rate 2M", "-r2M", "-r 2M", "--throttled-rate 100K", "--http-chunk-size 10M", "--buffer-size 16K",
    "--retries infinite", "-R3", "--file-access-retries 3", "--fragment-retries 3", "--extractor-retries 3",
    "--retry-sleep http:exp=1:20", "--sleep-requests 0.5", "--sleep-interval 1 --max-sleep-interval 2",
    "--min-sleep-interval 1", "--user-agent 'a b'", "--referer http://127.0.0.1/", "--add-header 'a:b c'",
    "--add-headers a:b", "--client-certificate /x --client-certificate-key /y --client-certificate-password z",
    "--legacy-server-connect", "--username a --password b --twofactor 1", "-u a -p b -2 1", "--video-password x",
    "--netrc --netrc-location /x", "-n", "--ap-mso DTV --ap-username a --ap-password b",
    "--extractor-args youtube:lang=de",
    "--js-runtimes node:/x", "--no-js-runtimes", "--remote-components ejs:npm", "--no-remote-components", "-4", "-6",
]
# Newer than some tools that work otherwise.
MAY_BE_UNKNOWN: set[str] = {
    "--xff", "--impersonate", "--js-runtimes", "--no-js-runtimes", "--remote-components", "--no-remote-components",
}


class OptionsTest(unittest.TestCase):
    def outcomes(self, package: str) -> dict[str, Any]:
        environment = {**os.environ, "PYTHONPATH": ":".join(filter(None, [str(FRONT), package]))}
        run = subprocess.run([sys.executable, "-c", PROGRAM], input=json.dumps(LINES), capture_output=True, text=True,
                             timeout=120, env=environment, check=True)
        found: dict[str, Any] = json.loads(run.stdout)
        return found

    def test_each_is_tried(self) -> None:
        self.assertLessEqual({*options.TAKEN, *options.SHORT}, {word[:2] if word[1] != "-" else word for line in LINES
                                                                for word in line.split() if word.startswith("-")})
        for package in PACKAGES:
            found = self.outcomes(package)
            for line, outcome in zip(LINES, found["outcomes"]):
                with self.subTest(line=line, package=package):
                    name = line.partition(" ")[0]
                    if outcome and name in MAY_BE_UNKNOWN:
                        self.assertRegex(outcome, f"tool.conf: the download tool .* does not know the option {name};")
                    else:
                        self.assertEqual(outcome, "")

    def test_whether_they_have_values(self) -> None:
        known: set[str] = set()
        for package in PACKAGES:
            arity = self.outcomes(package)["arity"]
            known |= set(arity)
            for name, has_value in {**options.TAKEN, **options.WITHOUT_MEANING}.items():
                if name in arity:
                    self.assertEqual(has_value, arity[name], name)
        self.assertLessEqual({*options.TAKEN} - MAY_BE_UNKNOWN - {"--add-header"}, known)  # that is short for another

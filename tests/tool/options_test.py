"""The options that may stand in tool.conf, tried with the real tool's own parser."""

import json
import re
import sys
import unittest
from typing import Any

from front_runs import FRONT, HERE, environment, run
from noxfront import options

DOCUMENT = HERE.parents[1] / "docs" / "tool.md"
PROGRAM = """
import json, sys
import yt_dlp
from noxfront import configuration, options, tool

def outcome(line):
    try:
        found = configuration.parse(line)
        return "".join(found.warnings) if tool.settings(found.options) and found.options else "no option"
    except configuration.ConfigurationError as error:
        return str(error)

parser = yt_dlp.options.create_parser()
names = [*options.TAKEN, *options.WITHOUT_MEANING, *options.REFUSED]
arity = {name: parser.get_option(name).takes_value() for name in names if parser.has_option(name)}
shorts = {name: parser.get_option(name) is parser.get_option(options.SHORT[name]) for name in options.SHORT}
json.dump({"outcomes": {line: outcome(line) for line in json.load(sys.stdin)}, "arity": arity, "shorts": shorts},
          sys.stdout)
"""
# Newer than some tools that work otherwise.
MAY_BE_UNKNOWN: set[str] = {
    "--xff", "--impersonate", "--js-runtimes", "--no-js-runtimes", "--remote-components", "--no-remote-components",
}


class OptionsTest(unittest.TestCase):
    def test_the_tool_has_them(self) -> None:
        blocks = re.findall(r"^```conf\n(.*?)^```", DOCUMENT.read_text(), re.MULTILINE | re.DOTALL)
        lines = [*"".join(blocks).splitlines(), "-r2M -N8", "--xff DE", "--no-js-runtimes --remote-components ejs:npm"]
        self.assertGreater(len(lines), 15)
        found: dict[str, dict[str, Any]] = json.loads(run(
            [sys.executable, "-c", PROGRAM], input=json.dumps(lines), env=environment(FRONT), check=True).stdout)
        for line, outcome in found["outcomes"].items():
            name = line.partition(" ")[0]
            with self.subTest(line=line):
                if outcome and name in MAY_BE_UNKNOWN:
                    self.assertRegex(outcome, f"tool.conf: the download tool .* does not know the option {name};")
                else:
                    self.assertEqual(outcome, "")
        self.assertEqual([name for name, is_right in found["shorts"].items() if not is_right], [])
        for name, has_value in {**options.TAKEN, **options.WITHOUT_MEANING}.items():
            self.assertEqual(has_value, found["arity"].get(name, has_value), name)
        # --add-header is short for another.
        self.assertLessEqual({*options.TAKEN} - MAY_BE_UNKNOWN - {"--add-header"}, {*found["arity"]})

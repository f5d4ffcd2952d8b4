#!/usr/bin/python3
"""Checks the one brace style: a statement of one line under a condition of one line has no braces, as in Qt's own code.

    check-braces.py [--fix] FILE...

Where another branch needs braces, both have them. The layout must be that of clang-format, which in the versions of our
platforms cannot check this itself.
"""

import pathlib
import re
import sys

NEEDLESS = re.compile(
    r"^(?P<indent> *)(?P<head>(?:if|for|while) \(.*\)) \{\n"
    r"(?P<body>(?P=indent)    (?!(?:if|for|while) )\S[^\n]*;)\n"
    r"(?P=indent)\}\n(?!(?P=indent)else)",
    re.MULTILINE,
)


def main(words: list[str]) -> int:
    is_fixing = words[:1] == ["--fix"]
    found = 0
    for name in words[1 if is_fixing else 0:]:
        path = pathlib.Path(name)
        text = path.read_text()
        for match in NEEDLESS.finditer(text):
            found += 1
            line = text.count("\n", 0, match.start()) + 1
            print(f"{name}:{line}: braces around a single statement", file=sys.stderr)
        if is_fixing:
            path.write_text(NEEDLESS.sub(r"\g<indent>\g<head>\n\g<body>\n", text))
    return 1 if found and not is_fixing else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

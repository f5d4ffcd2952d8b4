#!/usr/bin/python3
"""Checks the links and the quotations in the documents.

    check-documents.py             an error for every dead link and every quotation that differs from its file
    check-documents.py --update    updates the quotations

A quotation is the code block behind a comment with the name of the file: <!-- examples/titles/titles.cpp -->
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LINK = re.compile(r"\]\(([^)# ]+)")
CODE = re.compile(r"^```.*?^```$", re.MULTILINE | re.DOTALL)
QUOTATION = re.compile(r"(<!-- (\S+) -->\n```\w*\n)(.*?)(^```$)", re.MULTILINE | re.DOTALL)


def quoted(match: re.Match[str]) -> str:
    return match[1] + (ROOT / match[2]).read_text() + match[4]


def is_dead(document: pathlib.Path, target: str) -> bool:
    return not re.match(r"(https?|mailto):", target) and not (document.parent / target).exists()


def main() -> None:
    if sys.argv[1:] not in ([], ["--update"]):
        sys.exit(__doc__)
    problems = []
    links = quotations = 0
    for document in [*sorted(ROOT.glob("*.md")), *sorted(ROOT.glob("docs/*.md")), *sorted(ROOT.glob("tests/*.md"))]:
        name = document.relative_to(ROOT)
        text = document.read_text()
        targets = LINK.findall(CODE.sub("", text))
        links += len(targets)
        quotations += len(QUOTATION.findall(text))
        dead = [target for target in targets if is_dead(document, target)]
        problems += [f"{name}: links to {target}, which does not exist" for target in dead]
        current = QUOTATION.sub(quoted, text)
        if current != text and sys.argv[1:]:
            document.write_text(current)
        elif current != text:
            problems.append(f"{name}: a quotation is out of date; run check-documents.py --update")
    if problems:
        sys.exit("\n".join(problems))
    print(f"{links} links, {quotations} quotations, all in order")


if __name__ == "__main__":
    main()

"""--flat-playlist: lists the entries of a page, without reading each of them."""

from __future__ import annotations

import contextlib
import io
import json

from . import entries, error_tags, messages, tool
from .command_line import ListEntries
from .entries import Entries


def run(command: ListEntries, options: list[str], log: messages.Collector) -> int:
    """Returns the exit code. Prints each entry as a JSON object on one line, as soon as it is known."""
    address, _ = entries.split(command.url)

    def show(found: Entries) -> None:
        more = {"nox_parts": True} if found.is_in_parts else {}
        count = {} if found.count is None else {"nox_count": found.count}
        for number, entry in found.range(command.first, command.last + 1):
            if number > command.last:
                _print({"nox_more": True})
                return
            _print({**entries.line(number, entry, address), **more, **count})
            count = {}

    stray = io.StringIO()
    with contextlib.redirect_stderr(stray):
        params = tool.settings([*options, *command.tool_options], logger=log)
        with tool.PageReader(params, auto_init="no_verbose_header") as reader:
            page = reader.first_video(address, on_entries=show)
        if page is not None and reader.entries is None:  # the page itself is the only video
            show(Entries({"entries": [{**page, "_type": "url", "url": address}]}))
    for line in stray.getvalue().splitlines():
        log.warning(line)
    if page is None and not log.errors:
        log.fail(error_tags.NOTHING, "There is no video on this page")
    log.report(has_failed=page is None)
    return int(page is None)


def _print(document: dict[str, object]) -> None:
    messages.write(messages.STANDARD_OUTPUT, json.dumps(document) + "\n")

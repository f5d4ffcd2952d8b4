"""--dump-json: reads a page, prints its description and stores its record."""

from __future__ import annotations

import contextlib
import io

from . import description, entries, error_tags, json_text, messages, tool
from .command_line import Describe
from .page_memory import PageMemory


def run(command: Describe, options: list[str], memory: PageMemory, log: messages.Collector) -> int:
    """Returns the exit code. Prints warnings first, then the description in one piece and nothing else."""
    address, item = entries.split(command.url)
    stray = io.StringIO()  # the library takes other output there for an error
    with contextlib.redirect_stderr(stray):
        params = tool.settings([*options, *command.tool_options], logger=log)
        with tool.PageReader(params, auto_init="no_verbose_header") as reader:
            page = reader.first_video(address, item)
        text = json_text.dumps(description.of_page(page)) + "\n" if page else ""
    for line in stray.getvalue().splitlines():
        log.warning(line)
    if page is None:
        if not log.errors:
            log.fail(error_tags.NOTHING, "There is no video on this page")
        log.report(has_failed=True)
        return 1
    if reader.entries is not None and not item:
        kind = "parts" if reader.entries.is_in_parts else "videos"
        log.notices.append(f"[nox:{kind}] {reader.entries.count or 'many'}")
    log.report(has_failed=False)
    messages.write(messages.STANDARD_OUTPUT, text)
    memory.remember(command.url, page)
    return 0

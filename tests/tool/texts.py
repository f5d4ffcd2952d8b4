"""Describes a page for each line of standard input, as the front describes pages to the library.

A line is a text as the hexadecimal code units of UTF-16: the text of the page's title, description and stream code.
"""

import sys

from noxfront import description, json_text

for line in sys.stdin:
    text = bytes.fromhex(line).decode("utf-16-be", "surrogatepass")
    stream = {"format_id": text, "ext": "mp4", "url": text, "vcodec": "avc1", "acodec": "mp4a"}
    page = {"title": text, "description": text, "duration": 7, "formats": [stream]}
    print(json_text.dumps(description.of_page(page)))

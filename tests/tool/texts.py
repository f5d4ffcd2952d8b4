"""Prints two lines for each of many texts: the text as the library can hold it, and the front's description of a page.

The first is UTF-8 in hexadecimal digits. The text is title and description of the page, code and address of its stream.
"""

import random
import re

from noxfront import description, json_text

CHOSEN = [
    "", r"""A "title" with \ and / and 'quotes'""", "&#34; &#39; &#92;u0022 &#x26; &amp; &#; &#1",
    r"\u0022 \\u0022 \u00e9 \n \\", r"\&#34;\u0026#34; \\\\", r"&\u002334; &#38;#34;", "u0022 and u0075",
    '{"title":"x"} // no comment /* */', "tab\t line\n\r end\x01\x1f\x7f", "caf\u00e9 \u2028 \U0001f600 \ufffe", "a\0b",
    "\ufeff\ufeffx\ufeff", "\ud83dx\ude00\ud83d\U0001f600",
]
# They mean something on the way.
ALPHABET = "\\\\\\&&##;uu0012234567bdefBDEF\"'/{}[],: \n"


def made_up(chance: random.Random) -> str:
    units = "".join(
        chance.choice(ALPHABET) if chance.randrange(5) else
        chr(chance.randrange(*chance.choice(((0xd800, 0xe000), (0, 0x10000)))))
        for _ in range(chance.randrange(24)))
    return units.encode("utf-16-le", "surrogatepass").decode("utf-16-le", "surrogatepass")  # pairs become characters


chance = random.Random(20230304)
for text in (*CHOSEN, *(made_up(chance) for _ in range(5000))):
    # Half a surrogate pair and a zero are replaced; byte order marks in front go away.
    print(re.sub("[\ud800-\udfff\0]", "\ufffd", text).lstrip("\ufeff").encode().hex())
    stream = {"format_id": text, "ext": "mp4", "url": text, "vcodec": "avc1", "acodec": "mp4a"}
    print(json_text.dumps(description.of_page({"title": text, "description": text, "formats": [stream]})))

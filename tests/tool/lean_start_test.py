import importlib.util
import subprocess
import sys
import unittest


LOADED = "print([name for name in sys.modules if name.startswith('Cryptodome.') and sys.modules[name].__spec__])"
# As FIPS 197 has it.
DECRYPT = """
from yt_dlp.aes import aes_cbc_decrypt_bytes
key = bytes(range(16))
print(aes_cbc_decrypt_bytes(bytes.fromhex("69c4e0d86a7b0430d8cdb78070b4c55a"), key, bytes(16)).hex())
"""
PLAIN = "00112233445566778899aabbccddeeff\n"
OTHERS = """
from yt_dlp.dependencies import Cryptodome
print(Cryptodome.CMAC.new(b"12345678", b"x", Cryptodome.Blowfish).hexdigest(),
      len(Cryptodome.PKCS1_OAEP.new(Cryptodome.RSA.generate(1024), hashAlgo=Cryptodome.SHA1).encrypt(b"x")))
"""


@unittest.skipUnless(importlib.util.find_spec("yt_dlp"), "the interpreter has no package yt_dlp")
class LeanStartTest(unittest.TestCase):
    """In a process of its own: what has been loaded cannot be taken back."""

    def run_tool(self, text: str, *folders: str) -> str:
        program = f"import sys\nsys.path[:0] = {[*folders, *sys.path]}\nfrom noxfront import lean_start\n{text}"
        run = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, timeout=60)
        self.assertEqual(run.stderr, "")
        return run.stdout

    def test_ciphers_are_loaded_when_they_are_used(self) -> None:
        rows: list[tuple[str, str]] = [
            (f"import yt_dlp\nyt_dlp.YoutubeDL()\n{LOADED}", "[]\n"),
            (DECRYPT, PLAIN),
            (OTHERS, "d84586000957633a 128\n"),
        ]
        for text, expected in rows:
            self.assertEqual(self.run_tool("lean_start.prepare()\n" + text), expected)

    def test_the_tool_does_without_ciphers(self) -> None:
        text = "import yt_dlp.dependencies\nprint(bool(yt_dlp.dependencies.Cryptodome.AES))"
        hidden = "sys.modules['Cryptodome'] = sys.modules['Crypto'] = None\nlean_start.prepare()\n"
        self.assertEqual(self.run_tool(hidden + text + DECRYPT), "False\n" + PLAIN)

    def test_live_packages_stay_for_live_streams(self) -> None:
        for protocol, is_left_out in (("https", True), ("m3u8_native", True), ("m3u8", False), (None, False)):
            page = {"formats": [{"format_id": "1", "protocol": protocol}, {"format_id": "2", "protocol": "other"}]}
            text = f"lean_start.prepare_stream({page}, '1')\nprint(sys.modules.get('websockets', 0) is None)"
            self.assertEqual(self.run_tool(text), f"{is_left_out}\n")

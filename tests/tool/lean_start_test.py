import sys
import unittest

from front_runs import run

# As FIPS 197 has it.
DECRYPT = """
from yt_dlp.aes import aes_cbc_decrypt_bytes
key = bytes(range(16))
print(aes_cbc_decrypt_bytes(bytes.fromhex("69c4e0d86a7b0430d8cdb78070b4c55a"), key, bytes(16)).hex())
"""
PLAIN = "00112233445566778899aabbccddeeff\n"
LOADED = """
import yt_dlp
yt_dlp.YoutubeDL()
print([name for name in sys.modules if name.startswith('Cryptodome.') and sys.modules[name].__spec__])
"""
OTHERS = """
from yt_dlp.dependencies import Cryptodome
print(Cryptodome.CMAC.new(b"12345678", b"x", Cryptodome.Blowfish).hexdigest(),
      len(Cryptodome.PKCS1_OAEP.new(Cryptodome.RSA.generate(1024), hashAlgo=Cryptodome.SHA1).encrypt(b"x")))
"""
HIDE = "sys.modules['Cryptodome'] = sys.modules['Crypto'] = None\n"
PREPARE = "lean_start.prepare()\n"


class LeanStartTest(unittest.TestCase):
    """In a process of its own: what has been loaded cannot be taken back."""

    def test_what_is_loaded(self) -> None:
        rows: list[tuple[str, str]] = [
            # Ciphers when they are used; the tool does without them.
            (PREPARE + LOADED, "[]\n"), (PREPARE + DECRYPT, PLAIN), (PREPARE + OTHERS, "d84586000957633a 128\n"),
            (HIDE + PREPARE + DECRYPT, PLAIN),
        ]
        # What live streams need stays for them.
        for protocol, is_left_out in (("https", True), ("m3u8_native", True), ("m3u8", False), (None, False)):
            page = {"formats": [{"format_id": "1", "protocol": protocol}, {"format_id": "2", "protocol": "other"}]}
            rows.append((f"lean_start.prepare_stream({page}, '1')\nprint(sys.modules.get('websockets', 0) is None)",
                         f"{is_left_out}\n"))
        for text, expected in rows:
            with self.subTest(text=text):
                found = run([sys.executable, "-c", f"import sys\nfrom noxfront import lean_start\n{text}"])
                self.assertEqual((found.stdout, found.stderr), (expected, ""))

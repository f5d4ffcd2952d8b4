import os
import pathlib
import unittest

from front_runs import FolderTest
from noxfront import configuration
from noxfront.configuration import Configuration, ConfigurationError


class ParseTest(unittest.TestCase):
    def test_options_that_are_taken(self) -> None:
        rows: list[tuple[str, list[str]]] = [
            ("# nothing\n\n", []),
            ("--proxy http://127.0.0.1:1 # always\n--force-ipv4", ["--proxy=http://127.0.0.1:1", "--force-ipv4"]),
            ("-r 2M\n-R=3\n-4 -N8", ["--limit-rate=2M", "--retries=3", "--force-ipv4", "--concurrent-fragments=8"]),
            ("--add-header 'Referer: http://127.0.0.1/a b'", ["--add-header=Referer: http://127.0.0.1/a b"]),
            ("--extractor-args=youtube:lang=de", ["--extractor-args=youtube:lang=de"]),
            ("--add-header a:b\n--add-header c:d", ["--add-header=a:b", "--add-header=c:d"]),
            # A value is never another option.
            ("--proxy --exec", ["--proxy=--exec"]),
            ("--username ''\n--password\n''", ["--username=", "--password="]),
        ]
        for text, expected in rows:
            with self.subTest(text=text):
                self.assertEqual(configuration.parse(text), Configuration(expected))

    def test_options_that_are_refused_by_name_and_line(self) -> None:
        rows = [
            ("--proxy http://127.0.0.1/\n-x", "line 2: the option -x .*in the file"),
            ("\n\n-o /tmp/%(title)s", "line 3: the option -o .*--output"),
            ("--remux-video=mkv", "option --remux-video "),
            *((option, f"option {option} .*runs programs") for option in ("--exec", "--netrc-cmd", "--plugin-dirs")),
            ("--embed-subs", "option --embed-subs .*in the file"),
            ("--prox http://127.0.0.1/", r"option --prox is not known here; is --proxy meant\?"),
            ("--wholly-new", "option --wholly-new is not known here$"),
            ("-qr 2M", "option -qr "),
            ("-4x", "option --force-ipv4 has no value"),
            ("--netrc=yes", "option --netrc has no value"),
            ("http://127.0.0.1/", "line 1: \"http://127.0.0.1/\" is no option"),
            ("# a\n--proxy", "line 2: the option --proxy needs a value"),
            ("--force-ipv4\n--proxy 'http://127.0.0.1/", "line 2: a quotation"),
            ("--force-ipv4\n--proxy a\0b", "line 2: it holds a zero"),
            ("-4\n--username me", "line 2: the option --username needs --password"),
            ("--ap-username me", "line 1: the option --ap-username needs --ap-password"),
            ("-u me -p secret\n-n", "line 1: the option --username and the option --netrc exclude"),
            *((f"-N {value}", "--concurrent-fragments .* 1 to 32") for value in ("0", "33", "\u00b2", "9" * 5000)),
        ]
        for text, message in rows:
            with self.subTest(text=text[:80]), self.assertRaisesRegex(ConfigurationError, message):
                configuration.parse(text)

    def test_warnings(self) -> None:
        rows = [
            ("--no-mtime\n--age-limit 18\n-4 --no-embed-subs --cache-dir=/x", ["--force-ipv4"],
             "--no-mtime (line 1), --age-limit (line 2), --no-embed-subs (line 3), --cache-dir (line 3)"),
            ("--proxy a\n\n--proxy b", ["--proxy=a", "--proxy=b"], "line 3: the option --proxy stands in line 1"),
        ]
        for text, expected, part in rows:
            with self.subTest(text=text):
                found = configuration.parse(text)
                self.assertEqual(found.options, expected)
                [warning] = found.warnings
                self.assertIn(part, warning)


class LoadTest(FolderTest):
    def setUp(self) -> None:
        super().setUp()
        self.file = configuration.path({"XDG_CONFIG_HOME": str(self.folder)})
        self.file.parent.mkdir()

    def test_place(self) -> None:
        home = pathlib.Path.home() / ".config/noxwebmedia/tool.conf"
        for folder in ("", "relative"):
            self.assertEqual(configuration.path({"XDG_CONFIG_HOME": folder}), home)

    def test_whose_file_counts(self) -> None:
        self.assertEqual(configuration.load(self.file), Configuration([]))

        def pipe() -> None:
            self.file.unlink()
            os.mkfifo(self.file)

        changes = [lambda: self.file.chmod(0o644), lambda: self.file.chmod(0o664), lambda: self.file.chmod(0o646), pipe]
        if os.geteuid() == 0:
            changes.append(lambda: os.chown(self.file, 12345, -1))
        for place, change in enumerate(changes):
            self.file.unlink(missing_ok=True)
            self.file.write_text("--force-ipv6\n--no-mtime")
            change()
            settings = configuration.load(self.file)
            self.assertEqual(settings.options, ["--force-ipv6"] if place == 0 else [])
            self.assertIn(str(self.file), settings.warnings[0])

    def test_what_cannot_be_read_is_said(self) -> None:
        rows = [
            (b"-4\n--proxy \xff\n", "tool.conf: line 2: .*UTF-8"),
            (b"#" * (1 << 20), "tool.conf: it is larger than 64 kB"),
            (b"--cookies /nowhere/cookies.txt", "tool.conf: the file that --cookies names does not exist: /nowhere/"),
            (b"--cookies /", "--cookies names is a folder"),
            (b"--client-certificate ~/no-such.pem", "--client-certificate names does not exist: /"),
        ]
        for data, message in rows:
            self.file.write_bytes(data)
            with self.subTest(data=data[:40]), self.assertRaisesRegex(ConfigurationError, message):
                configuration.load(self.file)
        self.file.unlink()
        self.file.mkdir()
        with self.assertRaisesRegex(ConfigurationError, "tool.conf"):
            configuration.load(self.file)

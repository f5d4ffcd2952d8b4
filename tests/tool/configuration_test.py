import os
import pathlib
import re
import tempfile
import unittest


from noxfront import configuration, options
from noxfront.configuration import Configuration, ConfigurationError

DOCUMENT = pathlib.Path(__file__).resolve().parents[2] / "docs" / "tool.md"


class ParseTest(unittest.TestCase):
    def test_options_that_are_taken(self) -> None:
        rows: list[tuple[str, list[str]]] = [
            ("", []),
            ("# nothing\n\n", []),
            ("--proxy http://127.0.0.1:1 # always\n--force-ipv4", ["--proxy=http://127.0.0.1:1", "--force-ipv4"]),
            ("-r 2M\n-R=3\n-4", ["--limit-rate=2M", "--retries=3", "--force-ipv4"]),
            ("-r2M -N8", ["--limit-rate=2M", "--concurrent-fragments=8"]),
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
            ("--quiet", "line 1: the option --quiet .*prints"),
            ("--proxy http://127.0.0.1/\n-x", "line 2: the option -x .*in the file"),
            ("\n\n-o /tmp/%(title)s", "line 3: the option -o .*--output"),
            ("-S res", "line 1: the option -S .*--format"),
            ("--remux-video=mkv", "option --remux-video "),
            ("--exec 'rm -r /'", "option --exec .*runs programs"),
            ("--netrc-cmd id", "option --netrc-cmd .*runs programs"),
            ("--plugin-dirs /tmp", "option --plugin-dirs .*runs programs"),
            ("--embed-subs", "option --embed-subs .*in the file"),
            ("--sponsorblock-remove all", "option --sponsorblock-remove "),
            ("--write-info-json", "option --write-info-json "),
            ("-U", "option -U .*nox-renew-tool"),
            ("--prox http://127.0.0.1/", r"option --prox is not known here; is --proxy meant\?"),
            ("--wholly-new", "option --wholly-new is not known here$"),
            ("-qr 2M", "option -qr "),
            ("-4x", "option --force-ipv4 has no value"),
            ("--config-locations /tmp", "option --config-locations "),
            ("http://127.0.0.1/", "line 1: \"http://127.0.0.1/\" is no option"),
            ("--netrc=yes", "option --netrc has no value"),
            ("# a\n--proxy", "line 2: the option --proxy needs a value"),
            ("--", "option -- "),
            ("--force-ipv4\n--proxy 'http://127.0.0.1/", "line 2: a quotation"),
            ("--force-ipv4\n--proxy a\0b", "line 2: it holds a zero"),
            ("-4\n--username me", "line 2: the option --username needs --password"),
            ("--ap-username me", "line 1: the option --ap-username needs --ap-password"),
            ("-u me -p secret\n-n", "line 1: the option --username and the option --netrc exclude"),
            *((f"-N {value}", "--concurrent-fragments .* 1 to 32")
              for value in ("0", "1000", "-1", "four", "''", "9" * 5000, "\u00b2")),
        ]
        for text, message in rows:
            with self.subTest(text=text[:80]), self.assertRaisesRegex(ConfigurationError, message):
                configuration.parse(text)

    def test_warnings(self) -> None:
        rows = [
            ("--no-mtime\n--age-limit 18\n-4 --no-embed-subs --cache-dir=/x", ["--force-ipv4"],
             ["--no-mtime (line 1), --age-limit (line 2), --no-embed-subs (line 3), --cache-dir (line 3)"]),
            ("--proxy a\n\n--proxy b", ["--proxy=a", "--proxy=b"], ["line 3: the option --proxy stands in line 1"]),
        ]
        for text, expected, warnings in rows:
            with self.subTest(text=text):
                found = configuration.parse(text)
                self.assertEqual(found.options, expected)
                self.assertEqual(len(found.warnings), len(warnings))
                for warning, part in zip(found.warnings, warnings):
                    self.assertIn(part, warning)

    def test_no_option_stands_in_two_lists(self) -> None:
        for name in (*options.TAKEN, *options.SHORT):
            self.assertFalse(options.is_without_meaning(name) or options.refusal(name), name)
        for name in options.WITHOUT_MEANING:
            self.assertIsNone(options.refusal(name), name)

    def test_the_examples_of_the_document(self) -> None:
        blocks = re.findall(r"^```conf\n(.*?)^```", DOCUMENT.read_text(), re.MULTILINE | re.DOTALL)
        lines = [line for block in blocks for line in block.splitlines()]
        self.assertGreater(len(lines), 10)
        for line in lines:
            with self.subTest(line=line):
                found = configuration.parse(line)
                self.assertTrue(found.options)
                self.assertEqual(found.warnings, ())


class LoadTest(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.file = configuration.path({"XDG_CONFIG_HOME": folder.name})
        self.file.parent.mkdir()

    def test_place(self) -> None:
        self.assertEqual(self.file.parts[-2:], ("noxwebmedia", "tool.conf"))
        home = pathlib.Path.home() / ".config/noxwebmedia/tool.conf"
        for folder in ("", "relative"):
            self.assertEqual(configuration.path({"XDG_CONFIG_HOME": folder}), home)

    def test_file_that_is_the_users_own(self) -> None:
        self.assertEqual(configuration.load(self.file), Configuration([]))
        self.file.write_text("--force-ipv6\n--no-mtime")
        self.file.chmod(0o644)
        found = configuration.load(self.file)
        self.assertEqual(found.options, ["--force-ipv6"])
        self.assertIn(str(self.file), found.warnings[0])

    def test_file_that_is_not_the_users_alone_does_not_count(self) -> None:
        def pipe() -> None:
            self.file.unlink()
            os.mkfifo(self.file)

        spoil = [lambda: self.file.chmod(0o664), lambda: self.file.chmod(0o646), pipe]
        if os.geteuid() == 0:
            spoil.append(lambda: os.chown(self.file, 12345, -1))
        for change in spoil:
            self.file.unlink(missing_ok=True)
            self.file.write_text("--proxy http://127.0.0.1:1/\n")
            change()
            settings = configuration.load(self.file)
            self.assertEqual(settings.options, [])
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

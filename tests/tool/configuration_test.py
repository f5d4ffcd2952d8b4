import os
import pathlib
import tempfile
import unittest

from noxfront import configuration
from noxfront.configuration import Configuration, ConfigurationError


class ParseTest(unittest.TestCase):
    def test_options_that_are_taken(self) -> None:
        rows = [
            ("", []),
            ("# nothing\n\n", []),
            ("--proxy http://127.0.0.1:1 # always\n--force-ipv4", ["--proxy=http://127.0.0.1:1", "--force-ipv4"]),
            ("-r 2M\n-R=3\n-4", ["--limit-rate=2M", "--retries=3", "--force-ipv4"]),
            ("--add-header 'Referer: http://127.0.0.1/a b'", ["--add-header=Referer: http://127.0.0.1/a b"]),
            ("--extractor-args=youtube:lang=de", ["--extractor-args=youtube:lang=de"]),
            # A value is never another option.
            ("--proxy --exec", ["--proxy=--exec"]),
            ("--username ''", ["--username="]),
        ]
        for text, expected in rows:
            with self.subTest(text=text):
                self.assertEqual(configuration.parse(text), expected)

    def test_options_that_are_refused_by_name(self) -> None:
        rows = [
            ("--quiet", "--quiet"),
            ("--proxy http://127.0.0.1/\n-x", "-x"),
            ("-o /tmp/%(title)s", "-o"),
            ("--remux-video=mkv", "--remux-video"),
            ("--exec 'rm -r /'", "--exec"),
            ("--prox http://127.0.0.1/", "--prox"),
            ("-qr 2M", "-qr"),
            ("-r2M", "-r2M"),
            ("--config-locations /tmp", "--config-locations"),
            ("http://127.0.0.1/", "http://127.0.0.1/"),
            ("--netrc=yes", "--netrc"),
            ("--proxy", "--proxy"),
            ("--", "--"),
        ]
        for text, name in rows:
            with self.subTest(text=text), self.assertRaisesRegex(ConfigurationError, f"option {name} "):
                configuration.parse(text)

    def test_quote_that_is_not_closed(self) -> None:
        with self.assertRaises(ConfigurationError):
            configuration.parse("--proxy 'http://127.0.0.1/")


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
        self.file.write_text("--force-ipv6\n")
        self.file.chmod(0o644)
        self.assertEqual(configuration.load(self.file), Configuration(["--force-ipv6"]))

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
            self.assertIn(str(self.file), settings.warning or "")

    def test_what_cannot_be_read_is_said(self) -> None:
        self.file.write_bytes(b"--proxy \xff\n")
        with self.assertRaisesRegex(ConfigurationError, "tool.conf"):
            configuration.load(self.file)
        self.file.unlink()
        self.file.mkdir()
        with self.assertRaisesRegex(ConfigurationError, "tool.conf"):
            configuration.load(self.file)

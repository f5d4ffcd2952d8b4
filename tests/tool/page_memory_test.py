import functools
import json
import os
import pathlib
import stat
from typing import Any, Callable

from front_runs import FolderTest
from noxfront import page_memory
from noxfront.page_memory import PageMemory

URL = "http://127.0.0.1/page"
PAGE = {"id": "1", "title": "caf\u00e9 \ud83d", "formats": [{"url": "http://127.0.0.1/a", "cookies": "secret"}]}


class PageMemoryTest(FolderTest):
    def setUp(self) -> None:
        super().setUp()
        self.cache = self.folder / "not yet/there"
        self.pages = self.cache / page_memory.FOLDER
        self.memory = PageMemory(str(self.cache), ["2023"])

    def files(self) -> list[pathlib.Path]:
        return sorted(self.pages.iterdir()) if self.pages.exists() else []

    def test_a_page_is_remembered_for_its_address_and_scope_and_its_user(self) -> None:
        self.addCleanup(os.umask, os.umask(0))
        self.assertIsNone(self.memory.recall(URL))
        self.memory.remember(URL, {"id": "2"})
        with open(self.files()[0]) as reader:
            self.memory.remember(URL, PAGE)
            self.assertEqual(json.load(reader)["page"], {"id": "2"})  # half a record is never seen
        self.assertEqual([stat.S_IMODE(path.stat().st_mode) for path in (self.pages, *self.files())], [0o700, 0o600])
        self.assertEqual(self.memory.recall(URL), PAGE)
        self.assertIsNone(self.memory.recall(URL + "?v=2"))
        self.assertIsNone(PageMemory(str(self.cache), ["2024"]).recall(URL))

    def test_what_cannot_be_remembered_is_forgotten(self) -> None:
        live: list[dict[str, Any]] = [{"live_status": status} for status in ("is_live", "is_upcoming", "post_live")]
        for change in (*live, {"is_live": True}, {"id": object()}):
            self.memory.remember(URL, {**PAGE, "live_status": "was_live", "is_live": False})
            self.assertIsNotNone(self.memory.recall(URL))
            self.memory.remember(URL, {**PAGE, **change})
            self.assertIsNone(self.memory.recall(URL), change)
            self.assertEqual(self.files(), [])
        (self.folder / "file").touch()
        for cache in (None, "", str(self.folder / "file" / "below")):
            nowhere = PageMemory(cache, [])
            nowhere.remember(URL, PAGE)
            self.assertIsNone(nowhere.recall(URL))

    def test_age_and_number(self) -> None:
        for number in range(60):
            self.memory.remember(f"{URL}{number}", PAGE)
            for file in self.files():
                os.utime(file, ns=(0, file.stat().st_mtime_ns - 1))
        self.assertEqual(len(self.files()), 50)
        self.assertIsNotNone(self.memory.recall(f"{URL}59"))
        self.assertIsNone(self.memory.recall(f"{URL}0"))
        (self.pages / "x.json.1").touch()  # not finished
        for file in self.files():
            os.utime(file, (0, 0))
        self.memory.remember(URL, PAGE)
        [file] = self.files()
        for age, is_there in ((0, True), (1199, True), (1201, False), (-60, False)):
            later = PageMemory(str(self.cache), ["2023"], lambda: file.stat().st_mtime + age)
            self.assertEqual(later.recall(URL) is not None, is_there, age)

    def test_folder_that_is_not_private_is_not_used(self) -> None:
        def link() -> None:
            self.pages.rename(self.cache / "elsewhere")
            self.pages.symlink_to(self.cache / "elsewhere")

        changes = [lambda: self.pages.chmod(0o750), lambda: self.pages.chmod(0o702), link]
        if os.geteuid() == 0:
            changes.append(lambda: os.chown(self.pages, 12345, -1))
        for change in changes:
            self.setUp()
            self.memory.remember(URL, PAGE)
            self.files()[0].unlink()
            change()
            self.memory.remember(URL, PAGE)
            self.assertIsNone(self.memory.recall(URL))
            self.assertEqual(list(self.cache.rglob("*.json*")), [])

    def test_record_that_is_not_whole_or_not_private_is_not_there(self) -> None:
        def link(file: pathlib.Path) -> None:
            file.rename(self.cache / "record")
            file.symlink_to(self.cache / "record")

        def fifo(file: pathlib.Path) -> None:
            file.unlink()
            os.mkfifo(file, 0o600)

        texts = ("", "{", "[]", '{"url": "http://127.0.0.1/other", "page": {}}', f'{{"url": "{URL}", "page": []}}',
                 "[" * 100_000)
        rows: list[Callable[[pathlib.Path], Any]] = [lambda file: file.chmod(0o640), link, fifo]
        rows += [functools.partial(pathlib.Path.write_text, data=text) for text in texts]
        for place, spoil in enumerate(rows):
            with self.subTest(row=place):
                self.setUp()
                self.memory.remember(URL, PAGE)
                spoil(self.files()[0])
                self.assertIsNone(self.memory.recall(URL))

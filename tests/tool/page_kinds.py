"""Kinds of pages, from a server of our own, by nox-fetch."""

import os
import pathlib
import signal
import subprocess

import page_media
from front_runs import run, wait_for
from page_server import PageServer
from staged_host import HostTest

MP4 = '.mp4: h264,640,360 aac "mov,mp4,m4a,3gp,3g2,mj2", 6 s'
TIMEOUT = 60
ON_THE_WAY = 0.2  # the share that is sent and not yet written: of a file some blocks, of segments up to five of them


def probe(file: pathlib.Path) -> str:
    """The suffix, the streams and the container."""
    entries = "stream=codec_name,width,height:format=format_name,duration"
    found, _, seconds = run(["ffprobe", "-v", "error", "-of", "csv=p=0", "-show_entries", entries, file],
                            check=True).stdout.rpartition(",")
    return f"{file.suffix}: {' '.join(found.split())}, {float(seconds):.0f} s"


class KindsTest(HostTest):
    def setUp(self) -> None:
        super().setUp()
        self.server = PageServer(self.folder / "media")
        self.addCleanup(self.server.stop)

    def test_kinds(self) -> None:
        rows: list[tuple[str, str, tuple[int, int]]] = [
            # address, what is saved, requests for the page and for manifests
            ("/page/clip.mp4", MP4, (1, 0)),
            ("/page/dash-whole/manifest.mpd", MP4, (1, 1)), ("/page/dash/manifest.mpd", MP4, (1, 1)),
            ("/page/hls-ts/master.m3u8", MP4, (1, 3)), ("/page/hls-fmp4/master.m3u8", MP4, (1, 3)),
            ("/page/hls/clip.m3u8", MP4, (1, 1)),
            ("/page/clip.webm", '.webm: vp8,640,360 opus "matroska,webm", 6 s', (1, 0)),
            ("/media/clip.mp4", MP4, (0, 0)), ("/media/clip.mp3", ".mp3: mp3 mp3, 6 s", (0, 0)),
            ("/page/clip.mp4+clip.webm", MP4, (1, 0)),
            ("/page/hls/broken.m3u8", "exit code 3, 0 files", (2, 2)),
            ("/page/once/clip.mp4", MP4, (2, 0)),
        ]
        page_media.make(self.server.media)
        for address, expected, requests in rows:
            with self.subTest(address=address):
                self.host.empty_work()
                self.server.begin()
                # The tool finds ffmpeg beside the host.
                fetched = self.host.fetch(self.server.address + address, "--quiet", PATH="/nowhere")
                left = [*self.host.work.iterdir()]
                found = probe(*left) if len(left) == 1 else f"exit code {fetched.returncode}, {len(left)} files"
                self.assertEqual((found, self.server.counts()), (expected, requests), fetched)

    def fetch_whole(self, address: str, *options: str) -> tuple[bytes, int]:
        """The file, and how many bytes were sent for it."""
        self.server.begin()
        fetched = self.host.fetch(address, "--quiet", *options)
        files = [*self.host.work.iterdir()]
        self.assertEqual(len(files), 1, fetched)
        data = files[0].read_bytes()
        self.host.empty_work()
        return data, self.server.sent

    def interrupt(self, child: "subprocess.Popen[str]", event: str) -> None:
        if event == "kill":
            child.kill()
        elif event == "pause":
            child.send_signal(signal.SIGINT)
        elif event == "end of the tool":
            tool = pathlib.Path(f"/proc/{child.pid}/task/{child.pid}/children").read_text().split()[0]
            os.kill(int(tool), signal.SIGKILL)
        else:
            self.server.begin(-1)
        said = child.communicate(timeout=TIMEOUT)[1]
        self.assertEqual("The server cannot be reached" in said, event == "end of the server", said)

    def test_interrupted_downloads_are_resumed(self) -> None:
        page_media.make_many(self.server.media / "many", 48)
        dash, dash_whole, hls = "dash/manifest.mpd", "dash-whole/manifest.mpd", "hls/clip.m3u8"
        self.host.write_setting("noxwebmedia/tool.conf", "--retries 0\n--fragment-retries 0\n")
        for event, media, share in (
                ("kill", "clip.mp4", 0.5), ("kill", dash_whole, 0.3), ("kill", dash_whole, 0.95), ("kill", dash, 0.3),
                ("kill", dash, 0.95), ("kill", hls, 0.5), ("pause", "clip.mp4", 0.5), ("pause", dash, 0.95),
                ("end of the tool", dash_whole, 0.3), ("end of the tool", hls, 0.5), ("end of the server", dash, 0.3),
                ("end of the server", "clip.mp4", 0.5)):
            with self.subTest(event=event, media=media, share=share):
                self.host.empty_work()
                address = f"{self.server.address}/page/many/{media}"
                original, total = self.fetch_whole(address)
                limit = int(total * share)
                self.server.begin(limit)
                with subprocess.Popen([self.host.programs / "nox-fetch", "-q", "-c", address], cwd=self.host.work,
                                      env=self.host.environment(), stderr=subprocess.PIPE, text=True) as child:
                    written = limit - ON_THE_WAY * total
                    wait_for(lambda: int(run(["du", "-sb", self.host.work]).stdout.split()[0]) > written)
                    self.interrupt(child, event)
                [left] = self.host.work.iterdir()
                self.assertTrue(left.name.startswith(".nox-"), left)
                data, rest = self.fetch_whole(address, "-c")
                self.assertTrue(data == original)
                self.assertLess(rest, total * (1 - share + ON_THE_WAY + 0.05))

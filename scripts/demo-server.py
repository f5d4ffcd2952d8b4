#!/usr/bin/python3
"""Makes a clip and a page, and serves them on a free port of the loopback address, for demonstrations and tests.

    demo-server.py --media DIR [--rate BYTES_PER_SECOND] [--port-file FILE]

--media DIR      the folder of the page. It gets the page and the clip, unless they are there and newer than this file:
                 index.html, manifest.mpd with stream 137 (video.mp4: H.264, 20 s, some 3 MB) and stream 140 (audio.m4a:
                 AAC, some 300 kB), the poster maxresdefault.jpg, and mqdefault.jpg, which the library uses instead
--rate N         bytes per second of each connection; 0, the default, is without limit
--port-file F    gets the number of the port when connections are accepted

Prints the address of the page. The page "/?delay=N" is answered after N seconds. One byte range of a file can be asked
for. The server runs until it gets a signal, or until the process that has started it ends.
"""

import argparse
import http.server
import os
import pathlib
import re
import subprocess
import threading
import time

HOST = "127.0.0.1"
TICKS_PER_SECOND = 20
SECONDS, WIDTH, HEIGHT, VIDEO_BITS, AUDIO_BITS = 20, 640, 360, "1200000", "128000"
MANIFEST = f"""<?xml version="1.0" encoding="UTF-8"?>
<MPD xmlns="urn:mpeg:dash:schema:mpd:2011" type="static" profiles="urn:mpeg:dash:profile:isoff-on-demand:2011"
     mediaPresentationDuration="PT{SECONDS}S" minBufferTime="PT2S">
  <Period>
    <AdaptationSet mimeType="video/mp4" contentType="video">
      <Representation id="137" codecs="avc1.64001e" width="{WIDTH}" height="{HEIGHT}" frameRate="25"
                      bandwidth="{VIDEO_BITS}">
        <BaseURL>video.mp4</BaseURL>
      </Representation>
    </AdaptationSet>
    <AdaptationSet mimeType="audio/mp4" contentType="audio">
      <Representation id="140" codecs="mp4a.40.2" audioSamplingRate="44100" bandwidth="{AUDIO_BITS}">
        <BaseURL>audio.m4a</BaseURL>
      </Representation>
    </AdaptationSet>
  </Period>
</MPD>
"""
PAGE = """<!DOCTYPE html>
<html lang="en">
<head>
  <meta charset="utf-8">
  <title>A demonstration page</title>
  <meta property="og:title" content="Open the café/bar? A clip in two streams">
</head>
<body>
  <video controls poster="maxresdefault.jpg">
    <source src="manifest.mpd" type="application/dash+xml">
  </video>
</body>
</html>
"""
# Arguments of ffmpeg, by the name of the file that it makes.
MEDIA = {
    "video.mp4": f"-f lavfi -i testsrc2=size={WIDTH}x{HEIGHT}:rate=25:duration={SECONDS} -c:v libx264 -preset veryfast "
                 f"-b:v {VIDEO_BITS} -minrate {VIDEO_BITS} -maxrate {VIDEO_BITS} -bufsize {VIDEO_BITS} "
                 "-x264-params nal-hrd=cbr -pix_fmt yuv420p -movflags +faststart",
    "audio.m4a": f"-f lavfi -i sine=frequency=330:beep_factor=2:duration={SECONDS} "
                 f"-c:a aac -b:a {AUDIO_BITS} -ac 2 -movflags +faststart",
    "maxresdefault.jpg": "-i video.mp4 -frames:v 1",
    "mqdefault.jpg": "-i maxresdefault.jpg -vf scale=320:-2",
}


def make_clip(folder):
    page = folder / "index.html"  # made last, so that all files exist when it does
    if page.exists() and page.stat().st_mtime > pathlib.Path(__file__).stat().st_mtime:
        return
    folder.mkdir(parents=True, exist_ok=True)
    for name, arguments in MEDIA.items():
        subprocess.run(["ffmpeg", "-nostdin", "-loglevel", "error", "-y", "-bitexact", *arguments.split(), name],
                       cwd=folder, check=True)
    (folder / "manifest.mpd").write_text(MANIFEST)
    write_whole(page, PAGE)


def write_whole(path, text):
    unfinished = path.with_name(f"{path.name}.{os.getpid()}")
    unfinished.write_text(text)
    unfinished.replace(path)


class Handler(http.server.SimpleHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    extensions_map = {
        **http.server.SimpleHTTPRequestHandler.extensions_map,
        ".html": "text/html; charset=utf-8",
        ".m4a": "audio/mp4",
        ".mp4": "video/mp4",
        ".mpd": "application/dash+xml",
    }
    rate = 0

    def do_GET(self):
        self.serve(with_body=True)

    def do_HEAD(self):
        self.serve(with_body=False)

    def serve(self, with_body):
        path = pathlib.Path(self.translate_path(self.path))
        if path.is_dir():
            path /= "index.html"
            delay = re.search(r"[?&]delay=(\d)$", self.path)
            time.sleep(int(delay.group(1)) if delay else 0)
        try:
            file = path.open("rb")
        except OSError:
            self.send_error(404)
            return
        with file:
            size = os.fstat(file.fileno()).st_size
            start, end, status = self.wanted_range(size)
            if status == 416:
                self.send_response(416)
                self.send_header("Content-Range", f"bytes */{size}")
                self.send_header("Content-Length", "0")
                self.end_headers()
                return
            self.send_response(status)
            self.send_header("Content-Type", self.guess_type(path))
            self.send_header("Content-Length", str(end - start))
            self.send_header("Accept-Ranges", "bytes")
            if status == 206:
                self.send_header("Content-Range", f"bytes {start}-{end - 1}/{size}")
            self.end_headers()
            if with_body:
                file.seek(start)
                self.send_slowly(file, end - start)

    def wanted_range(self, size):
        """First byte, byte after the last, and the status of the answer."""
        match = re.fullmatch(r"bytes=(\d*)-(\d*)", self.headers.get("Range", ""))
        if not match or match.groups() == ("", ""):
            return 0, size, 200
        first, last = match.groups()
        if not first:
            start, end = max(size - int(last), 0), size
        else:
            start, end = int(first), min(int(last) + 1, size) if last else size
        return (start, end, 206) if start < end else (0, 0, 416)

    def send_slowly(self, file, count):
        piece = max(self.rate // TICKS_PER_SECOND, 1) if self.rate else 1 << 16
        begin, sent = time.monotonic(), 0
        while sent < count:
            data = file.read(min(piece, count - sent))
            if not data:
                break
            self.wfile.write(data)
            sent += len(data)
            if self.rate:
                time.sleep(max(begin + sent / self.rate - time.monotonic(), 0))

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, request, client_address):
        """Nothing: a client may close the connection at any time."""


def end_with(parent):
    while os.getppid() == parent:
        time.sleep(0.5)
    os._exit(0)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--media", metavar="DIR", type=pathlib.Path, required=True)
    parser.add_argument("--rate", metavar="BYTES_PER_SECOND", type=int, default=0)
    parser.add_argument("--port-file", metavar="FILE", type=pathlib.Path)
    options = parser.parse_args()

    make_clip(options.media)
    threading.Thread(target=end_with, args=(os.getppid(),), daemon=True).start()
    Handler.rate = options.rate
    with Server((HOST, 0), lambda *args: Handler(*args, directory=options.media)) as server:
        port = server.server_address[1]
        if options.port_file:
            write_whole(options.port_file, f"{port}\n")
        print(f"http://{HOST}:{port}/", flush=True)
        try:
            server.serve_forever()
        except KeyboardInterrupt:
            pass


if __name__ == "__main__":
    main()

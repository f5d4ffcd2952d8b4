#!/usr/bin/python3
"""Serves a folder on a free port of the loopback address, slowly, for demonstrations and tests.

    demo-server.py --media DIR [--rate BYTES_PER_SECOND] [--port-file FILE]

--media DIR      the folder to serve; make-clip.sh makes one ("/" is its index.html)
--rate N         bytes per second of each connection, so that a download takes long enough to be watched; 0, the
                 default, is without limit
--port-file F    the port's number is written there, as a whole, as soon as connections are accepted

The page's address is printed on standard output in any case. The page "/?delay=N" is answered N seconds later. One byte
range of a file can be asked for. The server runs until it is ended by a signal, or until the process that started it is
gone.
"""

import argparse
import http.server
import os
import pathlib
import re
import threading
import time

HOST = "127.0.0.1"
TICKS_PER_SECOND = 20


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
        """First byte, byte after the last, and the status that says so."""
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
        """A client that goes away in the middle of a download is nothing to report."""


def end_with(parent):
    while os.getppid() == parent:
        time.sleep(0.5)
    os._exit(0)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--media", metavar="DIR", required=True)
    parser.add_argument("--rate", metavar="BYTES_PER_SECOND", type=int, default=0)
    parser.add_argument("--port-file", metavar="FILE", type=pathlib.Path)
    options = parser.parse_args()

    threading.Thread(target=end_with, args=(os.getppid(),), daemon=True).start()
    Handler.rate = options.rate
    with Server((HOST, 0), lambda *args: Handler(*args, directory=options.media)) as server:
        port = server.server_address[1]
        if options.port_file:
            unfinished = options.port_file.with_name(f"{options.port_file.name}.{os.getpid()}")
            unfinished.write_text(f"{port}\n")
            unfinished.replace(options.port_file)
        print(f"http://{HOST}:{port}/", flush=True)
        try:
            server.serve_forever()
        except KeyboardInterrupt:
            pass


if __name__ == "__main__":
    main()

#!/usr/bin/python3 -IS
"""Plays the interpreter with its tool, and ffmpeg.

Notes how it was started, then plays the steps of its key in NOX_SCENARIO. The key is the format code of a download,
"dump" for an extraction, "list" for a list of videos, or "ffmpeg". A scenario is lines of "KEY: STEP|STEP|..."; a step is
the name of a Player method and, behind a blank, its text. In texts, @ext@ is the item's file with that extension. After
every text it waits until the reader has read it, so that each text arrives as one read.
"""
import array
import fcntl
import os
import resource
import signal
import sys
import termios
import time

STAGE = os.environ["NOX_STAGE"]
DEFAULTS = {"dump": "json Clip 140,137", "list": "exit 0", "140": "announce m4a", "ffmpeg": "merge"}
TIMEOUT = 120


def note(key, pid, arguments):
    with open(os.path.join(STAGE, "runs"), "ab") as runs:
        runs.write(os.fsencode("\x1f".join([key, str(pid), *arguments]) + "\n"))


def write(path, content):
    with open(path, "w", buffering=1) as file:
        file.write(content)


def read(path):
    with open(path) as file:
        return file.read()


def until(condition):
    deadline = time.monotonic() + TIMEOUT
    while not condition():
        if time.monotonic() > deadline:
            os._exit(97)
        time.sleep(0.003)


def say(channel, text):
    data = os.fsencode(text)
    while data:
        data = data[os.write(channel, data):]
    pending = array.array("i", [0])
    try:
        until(lambda: fcntl.ioctl(channel, termios.FIONREAD, pending) or pending[0] == 0)
    except OSError:
        pass  # no pipe: nobody reads


class Player:
    def __init__(self, key, arguments):
        self.key = key
        self.arguments = arguments
        self.template = arguments[arguments.index("-o") + 1] if "-o" in arguments else ""
        self.folder = os.path.dirname(self.template)

    def item(self, extension):
        return self.template.replace("%(ext)s", extension)

    def text(self, raw):
        parts = raw.split("@")
        parts[1::2] = [self.item(extension) for extension in parts[1::2]]
        return "".join(parts).replace("\\n", "\n").replace("\\r", "\r")

    # Output
    def out(self, raw):
        say(1, self.text(raw))

    def err(self, raw):
        say(2, self.text(raw))

    def json(self, raw):
        title, codes = raw.split(" ")
        entry = '{"format_id":"%s","ext":"mp4","vcodec":"avc1","acodec":"none"}'
        formats = ",".join(entry % code for code in codes.split(",") if code)
        say(1, '{"title":"%s","duration":7,"formats":[%s]}\n' % (title, formats))

    def long(self, length):
        self.json("t" * int(length) + " 1")

    def progress(self, raw):
        percent, total = raw.split(" ")
        say(1, "[download] %s%% of %sB at 10B/s ETA 00:01\n" % (percent, total))

    def announce(self, extension):
        self.file(extension)
        say(1, "[download] Destination: %s\n" % self.item(extension))

    def flood(self, raw):
        megabytes, _, channel = raw.partition(" ")
        for _ in range(int(megabytes)):
            os.write(int(channel or 2), b"~" * (1 << 20))

    def lines(self, raw):
        count, _, line = raw.partition(" ")
        block = os.fsencode(self.text(line) + "\n") * 1000
        for _ in range(int(count) // 1000):
            os.write(1, block)

    def close(self, channel):
        os.close(int(channel))

    # Files
    def file(self, raw):
        extension, _, content = raw.partition(" ")
        write(self.item(extension), content or self.key)

    def bulk(self, raw):
        extension, size = raw.split(" ")
        write(self.item(extension), "~" * int(size))

    def touch(self, name):
        write(os.path.join(self.folder, name), "new")

    def link(self, name):
        os.symlink("nowhere", os.path.join(self.folder, name))

    def remove(self, pattern):
        for name in os.listdir(self.folder):
            if name.endswith(pattern):
                os.remove(os.path.join(self.folder, name))

    def uninstall(self, _):
        os.remove(sys.argv[0])

    def vanish(self, _):
        self.remove("")
        os.rmdir(self.folder)

    def chmod(self, mode):
        os.chmod(self.folder or os.path.dirname(self.arguments[-1]), int(mode, 8))

    def limit(self, size):
        resource.setrlimit(resource.RLIMIT_FSIZE, (int(size), int(size)))

    def write(self, content):
        write(self.arguments[-1], content)

    def merge(self, _):
        inputs = [self.arguments[i + 1] for i, argument in enumerate(self.arguments) if argument == "-i"]
        write(self.arguments[-1], "+".join(read(path) for path in inputs))

    # Process
    def mark(self, name):
        write(os.path.join(STAGE, "mark." + name), "")

    def wait(self, name):
        until(lambda: os.path.exists(os.path.join(STAGE, "mark." + name)))

    def hang(self, _):
        self.mark("hang." + self.key)
        time.sleep(TIMEOUT)
        os._exit(98)

    def spawn(self, _):
        note("child", os.spawnv(os.P_NOWAIT, "/bin/sleep", ["sleep", str(TIMEOUT)]), [])

    def kill(self, name):
        os.kill(os.getpid(), getattr(signal, name))
        time.sleep(TIMEOUT)

    def fail(self, message):
        self.err(message + "\\n")
        self.exit(1)

    def exit(self, code):
        os._exit(int(code))


def main():
    program = os.path.basename(sys.argv[0])
    if program in ("python3.10", "ffmpeg"):
        arguments = sys.argv[1:]
    else:  # run by a real interpreter
        arguments = sys.orig_argv[1:]
        note("prefix", os.getpid(), [sys.pycache_prefix or ""])
    key = "dump"
    if program == "ffmpeg":
        key = program
    elif "-f" in arguments:
        key = arguments[arguments.index("-f") + 1]
    elif "--flat-playlist" in arguments:
        key = "list"
    note(key, os.getpid(), arguments)

    scripts = dict(line.split(": ", 1) for line in os.environ["NOX_SCENARIO"].split("\n") if line)
    player = Player(key, arguments)
    try:
        for step in scripts.get(key, DEFAULTS.get(key, "announce mp4")).split("|"):
            verb, _, text = step.partition(" ")
            getattr(player, verb)(text)
    except OSError as error:
        say(2, "ERROR: %s\n" % error.strerror)
        os._exit(1)


main()

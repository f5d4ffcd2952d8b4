"""The options that are allowed in tool.conf, and the messages about those that are not."""

from __future__ import annotations

from typing import Mapping, Optional

# Allowed options, and whether they have a value. They do not change the tool's output or file names, on which the
# library depends.
TAKEN: Mapping[str, bool] = {
    "--proxy": True,
    "--geo-verification-proxy": True,
    "--xff": True,
    "--geo-bypass": False,
    "--no-geo-bypass": False,
    "--geo-bypass-country": True,
    "--geo-bypass-ip-block": True,
    "--socket-timeout": True,
    "--source-address": True,
    "--impersonate": True,
    "--force-ipv4": False,
    "--force-ipv6": False,
    "--cookies": True,
    "--no-cookies": False,
    "--cookies-from-browser": True,
    "--no-cookies-from-browser": False,
    "--concurrent-fragments": True,
    "--limit-rate": True,
    "--throttled-rate": True,
    "--http-chunk-size": True,
    "--buffer-size": True,
    "--retries": True,
    "--file-access-retries": True,
    "--fragment-retries": True,
    "--extractor-retries": True,
    "--retry-sleep": True,
    "--sleep-requests": True,
    "--sleep-interval": True,
    "--min-sleep-interval": True,
    "--max-sleep-interval": True,
    "--user-agent": True,
    "--referer": True,
    "--add-header": True,
    "--add-headers": True,
    "--client-certificate": True,
    "--client-certificate-key": True,
    "--client-certificate-password": True,
    "--legacy-server-connect": False,
    "--username": True,
    "--password": True,
    "--twofactor": True,
    "--video-password": True,
    "--netrc": False,
    "--netrc-location": True,
    "--ap-mso": True,
    "--ap-username": True,
    "--ap-password": True,
    "--extractor-args": True,
    "--js-runtimes": True,
    "--no-js-runtimes": False,
    "--remote-components": True,
    "--no-remote-components": False,
}
SHORT: Mapping[str, str] = {
    "-4": "--force-ipv4",
    "-6": "--force-ipv6",
    "-N": "--concurrent-fragments",
    "-r": "--limit-rate",
    "-R": "--retries",
    "-u": "--username",
    "-p": "--password",
    "-2": "--twofactor",
    "-n": "--netrc",
}
# These accumulate; of all others the last one is used.
REPEATED = frozenset({
    "--add-header", "--add-headers", "--retry-sleep", "--extractor-args", "--js-runtimes", "--no-js-runtimes",
    "--remote-components", "--no-remote-components",
})
# Their values are files that must exist and be readable.
FILES = frozenset({"--cookies", "--netrc-location", "--client-certificate", "--client-certificate-key"})
# If the second option is missing, the tool would ask for its value on the terminal.
SECRETS: Mapping[str, str] = {"--username": "--password", "--ap-username": "--ap-password"}
CONNECTIONS_LIMIT = 32

# Options without effect here, and whether they have a value. They are ignored.
WITHOUT_MEANING: Mapping[str, bool] = {
    "--mtime": False, "--no-mtime": False, "--no-playlist": False, "--age-limit": True, "--cache-dir": True,
    "--no-cache-dir": False, "--rm-cache-dir": False, "--check-formats": False, "--check-all-formats": False,
    "--no-check-formats": False, "--compat-options": True, "--no-update": False, "--continue": False, "-c": False,
    "--no-continue": False, "--part": False, "--no-part": False, "--no-overwrites": False, "-w": False,
    "--force-overwrites": False, "--yes-overwrites": False, "--no-force-overwrites": False, "--no-progress": False,
    "--color": True, "--no-colors": False, "--no-colours": False, "--console-title": False, "--ignore-errors": False,
    "-i": False, "--no-abort-on-error": False, "--abort-on-error": False, "--no-ignore-errors": False,
    "--ignore-config": False, "--no-config": False, "--lazy-playlist": False, "--no-lazy-playlist": False,
    "--windows-filenames": False, "--no-windows-filenames": False, "--restrict-filenames": False,
    "--no-restrict-filenames": False, "--trim-filenames": True, "--no-check-certificates": False,
    "--no-check-certificate": False, "--prefer-insecure": False, "--encoding": True, "--bidi-workaround": False,
    "--abort-on-unavailable-fragments": False, "--no-skip-unavailable-fragments": False, "--allow-dynamic-mpd": False,
    "--resize-buffer": False, "--no-resize-buffer": False, "--no-exec": False, "--no-download-archive": False,
    "--no-batch-file": False, "--no-config-locations": False, "--no-plugin-dirs": False, "--no-mark-watched": False,
    "--no-simulate": False, "--no-quiet": False, "--no-keep-video": False, "--no-keep-fragments": False,
    "--no-live-from-start": False, "--no-wait-for-video": False, "--no-sponsorblock": False, "--no-warnings": False,
    "--prefer-free-formats": False, "--no-prefer-free-formats": False, "--hls-prefer-native": False,
    "--mark-watched": False, "--sleep-subtitles": True, "--no-add-chapters": False, "--no-add-metadata": False,
    "--no-audio-multistreams": False, "--no-video-multistreams": False, "--no-break-on-existing": False,
    "--no-exec-before-download": False, "--no-flat-playlist": False, "--no-get-comments": False,
    "--no-hls-use-mpegts": False, "--no-ignore-no-formats-error": False, "--no-match-filters": False,
    "--no-playlist-reverse": False, "--no-post-overwrites": False, "--post-overwrites": False,
    "--no-remove-chapters": False, "--no-split-chapters": False, "--no-allow-unplayable-formats": False,
    "--no-format-sort-force": False, "--trim-file-names": True, "--skip-playlist-after-errors": True,
}
_WITHOUT_MEANING_PREFIXES = ("--no-embed-", "--no-write-")

_PROGRAMS = "it runs programs or code, which settings of this file must not do"
_FILE_NAME = ("the file's name and folder are chosen in the window, or by nox-fetch with its own options --output and "
              "--folder")
_STREAM = "the stream is chosen in the window, or by nox-fetch with its own options --format and --audio"
_CONTENT = "it changes what is in the file or writes others beside it; here a file holds what was chosen"
_OUTPUT = "it changes what the tool prints, which this program reads"
_CHOICE = "it chooses or leaves out videos; they are chosen in the window, or by nox-fetch with its own option --items"
_PLACES = "other settings than those of this file are not read"
_RENEW = "a newer tool is fetched by the command nox-renew-tool"
_WAITING = "it makes the tool wait for a page or a stream without end"
_REASONS: Mapping[str, str] = {
    _PROGRAMS: "--netrc-cmd --plugin-dirs --exec --exec-before-download --use-postprocessor --downloader "
               "--external-downloader --downloader-args --external-downloader-args --postprocessor-args --ppa "
               "--ffmpeg-location --load-info-json",
    _FILE_NAME: "-o --output -P --paths --output-na-placeholder --id --autonumber-size --autonumber-start",
    _STREAM: "-f --format -S --format-sort --format-sort-force --S-force --video-multistreams --audio-multistreams "
             "--all-formats",
    _CONTENT: "-x --extract-audio --audio-format --audio-quality --remux-video --recode-video --merge-output-format "
              "-k --keep-video --keep-fragments --add-metadata --add-chapters --xattrs --xattr --split-chapters "
              "--remove-chapters --convert-subs --convert-thumbnails --sub-langs --sub-format --all-subs --fixup "
              "--parse-metadata --replace-in-metadata --hls-use-mpegts --skip-unavailable-fragments "
              "--no-abort-on-unavailable-fragments --download-sections --download-archive "
              "--force-keyframes-at-cuts --convert-subtitles --srt-langs --split-tracks --metadata-from-title "
              "--hls-prefer-ffmpeg",
    _OUTPUT: "-q --quiet -v --verbose -s --simulate -j --dump-json -J --dump-single-json -O --print --print-json "
             "--print-to-file --print-traffic --dump-pages --newline --progress --progress-template --progress-delta "
             "--skip-download --no-download -g --get-url -e --get-title -F --list-formats --list-subs "
             "--list-extractors --list-thumbnails --test --list-impersonate-targets --ap-list-mso -h --help --version",
    _CHOICE: "--yes-playlist -I --playlist-items --playlist-start --playlist-end --playlist-reverse "
             "--playlist-random --flat-playlist --match-filters --match-filter --break-match-filters --max-downloads "
             "--min-filesize --max-filesize --date --datebefore --dateafter --break-on-existing --use-extractors "
             "--force-generic-extractor --default-search -a --batch-file --enable-file-urls "
             "--allow-unplayable-formats --break-on-reject --match-title --reject-title -C",
    _PLACES: "--config-locations --alias --preset-alias -t",
    _RENEW: "-U --update --update-to",
    _WAITING: "--wait-for-video --live-from-start",
}
REFUSED: dict[str, str] = {name: reason for reason, names in _REASONS.items() for name in names.split()}
_REFUSED_PREFIXES: Mapping[str, str] = {
    "--embed-": _CONTENT, "--write-": _CONTENT, "--sponsorblock-": _CONTENT, "--sponskrub": _CONTENT,
    "--dump-": _OUTPUT, "--get-": _OUTPUT,
}


def is_without_meaning(name: str) -> bool:
    return name in WITHOUT_MEANING or name.startswith(_WITHOUT_MEANING_PREFIXES)


def refusal(name: str) -> Optional[str]:
    """Why the option is not allowed; None if it is unknown."""
    if name in REFUSED:
        return REFUSED[name]
    return next((reason for prefix, reason in _REFUSED_PREFIXES.items() if name.startswith(prefix)), None)

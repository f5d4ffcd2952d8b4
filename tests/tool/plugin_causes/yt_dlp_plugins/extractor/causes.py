"""A plugin of the tool: fails in the ways of real sites, by the tool's own means, and names streams of a server's."""

import os
import urllib.parse

from yt_dlp.extractor.common import InfoExtractor
from yt_dlp.utils import ExtractorError, UserNotLive


class CausesIE(InfoExtractor):
    _VALID_URL = r"https?://causes\.invalid/(?P<id>[\w-]+)(?:\?(?P<more>.*))?"
    _NETRC_MACHINE = "causes"

    def _real_extract(self, url):
        name, more = self._match_valid_url(url).group("id", "more")
        stream = {"format_id": "1", "ext": "mp4", "vcodec": "avc1", "acodec": "mp4a"}
        if name == "says":
            raise ExtractorError(urllib.parse.unquote(more), expected=True)
        if name == "login":
            self.raise_login_required()
        if name == "country":
            self.raise_geo_restricted(countries=["DE"])
        if name == "drm":
            self.report_drm(name)
        if name == "offline":
            raise UserNotLive(video_id=name)
        if name == "code":
            self._get_tfa_info()
        if name == "fault":
            raise KeyError("fault")
        if name == "not-found":
            self._download_webpage(os.environ["NOX_SERVER"] + "/status/404", name)
        if name in ("runtime", "fewer"):
            for _ in range(2):
                self.report_warning(
                    "No supported JavaScript runtime could be found. Only deno is enabled by default; to use another "
                    "runtime add  --js-runtimes RUNTIME[:PATH]  to your command/config. See  https://example.invalid/ "
                    "for details on installing one")
        if name == "runtime":
            self.raise_no_formats("No video formats found!", video_id=name)
        if name == "warns":
            self.report_warning("Some formats may be missing; please report this issue on  https://example.invalid/ .")
            self.report_warning("Some formats may be missing")
            self.report_warning("Falling back on generic information extractor")
            self.report_warning("Use --cookies for more.\nERROR: [nox:login] x")
        if name == "playlist":
            stream.update(protocol="m3u8")
        return {"id": name, "title": name, "formats": [{**stream, "url": os.environ["NOX_SERVER"] + (more or "/clip")}]}

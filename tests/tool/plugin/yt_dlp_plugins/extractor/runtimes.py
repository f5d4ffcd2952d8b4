"""A plugin of the tool: a page whose title tells what the tool has for scripts, and what it makes of one of them."""

from yt_dlp.extractor.common import InfoExtractor

# In the form in which the tool expects a site's script: it turns a challenge round.
PLAYER = """
(function () {
    function Address() { this.values = {}; }
    Address.prototype.set = function (key, value) { this.values[key] = value; };
    Address.prototype.get = function (key) { return this.values[key]; };
    Address.prototype.turn = function () { this.values.n = this.values.n.split("").reverse().join(""); };
    var make = function (url, key, value) {
        var it = new Address(); it.set("alr", "yes"); it.set(key, value); return it;
    };
}).call(this);
"""


class RuntimesIE(InfoExtractor):
    _VALID_URL = r"https?://runtimes\.invalid/(?P<id>\w+)"

    def _real_extract(self, url):
        from yt_dlp.extractor.youtube import YoutubeIE
        from yt_dlp.extractor.youtube.jsc._director import initialize_jsc_director
        from yt_dlp.extractor.youtube.jsc.provider import JsChallengeRequest, JsChallengeType, NChallengeInput

        request = JsChallengeRequest(JsChallengeType.N, NChallengeInput("https://runtimes.invalid/player.js", ["abc"]))
        site = YoutubeIE(self._downloader)
        site._load_player = lambda *_, **__: PLAYER
        responses = initialize_jsc_director(site).bulk_solve([request])
        answers = [response.output.results["abc"] for _, response in responses if response]
        runtimes = [runtime.info.name for runtime in self._downloader._js_runtimes.values() if runtime and runtime.info]
        title = f"runtimes {' '.join(runtimes) or 'none'}, answer {' '.join(answers) or 'none'}"
        return {"id": "1", "title": title, "url": "http://127.0.0.1:9/1", "ext": "mp4"}

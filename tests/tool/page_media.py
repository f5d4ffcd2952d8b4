"""Makes the small media that the pages of page_server.py show, with ffmpeg."""

import pathlib
import subprocess

SECONDS = 6
SEGMENT = 2
PICTURE = ["-f", "lavfi", "-i", f"testsrc2=size=640x360:rate=10:duration={SECONDS}"]
SOUND = ["-f", "lavfi", "-i", f"sine=frequency=330:duration={SECONDS}"]
H264 = ["-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p", "-x264-params", "keyint=20:scenecut=0"]
AAC = ["-c:a", "aac", "-b:a", "64k"]
CODECS = "avc1.42c01e,mp4a.40.2"


def ffmpeg(*words: object) -> None:
    subprocess.run(["ffmpeg", "-nostdin", "-loglevel", "error", "-y", "-bitexact", *map(str, words)], check=True)


def hls(folder: pathlib.Path, kind: str) -> None:
    """A master playlist whose pictures and sound are apart."""
    folder.mkdir()
    ffmpeg("-i", folder.parent / "clip.mp4", "-map", "0:v", "-map", "0:a", "-c", "copy", "-f", "hls", "-hls_time",
           SEGMENT, "-hls_playlist_type", "vod", "-hls_segment_type", kind, "-master_pl_name", "master.m3u8",
           "-var_stream_map", "v:0,agroup:sound a:0,agroup:sound,default:yes,language:en",
           folder / "stream%v.m3u8")
    master = folder / "master.m3u8"
    # Without its codecs, the tool takes a stream for one that holds both.
    master.write_text(master.read_text().replace("RESOLUTION=", f'CODECS="{CODECS}",RESOLUTION='))


def dash(folder: pathlib.Path) -> None:
    """A manifest with segments of their own for picture and sound."""
    folder.mkdir()
    ffmpeg("-i", folder.parent / "clip.mp4", "-map", "0:v", "-map", "0:a", "-c", "copy", "-f", "dash", "-seg_duration",
           SEGMENT, "-use_template", 1, "-use_timeline", 1, "-adaptation_sets", "id=0,streams=v id=1,streams=a",
           folder / "manifest.mpd")


def dash_whole(folder: pathlib.Path) -> None:
    """A manifest that names a whole file for each stream."""
    folder.mkdir()
    ffmpeg("-i", folder.parent / "clip.mp4", "-map", "0:v", "-c", "copy", folder / "video.mp4")
    ffmpeg("-i", folder.parent / "clip.mp4", "-map", "0:a", "-c", "copy", folder / "audio.m4a")
    (folder / "manifest.mpd").write_text(f"""<?xml version="1.0"?>
<MPD xmlns="urn:mpeg:dash:schema:mpd:2011" type="static" mediaPresentationDuration="PT{SECONDS}S"
     profiles="urn:mpeg:dash:profile:isoff-on-demand:2011" minBufferTime="PT2S"><Period>
  <AdaptationSet mimeType="video/mp4"><Representation id="137" codecs="avc1.42c01e" width="640" height="360"
    bandwidth="300000"><BaseURL>video.mp4</BaseURL></Representation></AdaptationSet>
  <AdaptationSet mimeType="audio/mp4"><Representation id="140" codecs="mp4a.40.2" audioSamplingRate="44100"
    bandwidth="64000"><BaseURL>audio.m4a</BaseURL></Representation></AdaptationSet>
</Period></MPD>
""")


def hls_single(folder: pathlib.Path) -> None:
    """A playlist whose segments hold both, and one of which a segment is missing."""
    folder.mkdir()
    ffmpeg("-i", folder.parent / "clip.mp4", "-c", "copy", "-f", "hls", "-hls_time", SEGMENT, "-hls_playlist_type",
           "vod", folder / "clip.m3u8")
    playlist = (folder / "clip.m3u8").read_text()
    (folder / "broken.m3u8").write_text(playlist.replace("clip1.ts", "missing.ts"))


def make(folder: pathlib.Path) -> None:
    folder.mkdir()
    ffmpeg(*PICTURE, *SOUND, *H264, *AAC, "-movflags", "+faststart", folder / "clip.mp4")
    ffmpeg(*PICTURE, *H264, "-t", 2, folder / "other.mp4")
    ffmpeg(*PICTURE, *SOUND, "-c:v", "libvpx", "-deadline", "realtime", "-cpu-used", 8, "-c:a", "libopus",
           folder / "clip.webm")
    ffmpeg(*SOUND, "-c:a", "libmp3lame", folder / "clip.mp3")
    (folder / "octets").mkdir()
    (folder / "octets" / "clip.mp4").symlink_to(folder / "clip.mp4")
    hls(folder / "hls-ts", "mpegts")
    hls(folder / "hls-fmp4", "fmp4")
    hls_single(folder / "hls")
    dash(folder / "dash")
    dash_whole(folder / "dash-whole")

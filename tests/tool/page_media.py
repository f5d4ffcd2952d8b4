"""Makes small media for page_server.py, with ffmpeg."""

import pathlib
import subprocess

SECONDS = 6
SEGMENT = 2
SOUND = ["-f", "lavfi", "-i", "sine=frequency=330"]
HLS = ["-f", "hls", "-hls_playlist_type", "vod", "-hls_time"]


def ffmpeg(*words: object) -> None:
    subprocess.run(["ffmpeg", "-nostdin", "-loglevel", "error", "-y", "-bitexact", *map(str, words)], check=True)


def clip(file: pathlib.Path, size: str, seconds: int, segment: int) -> None:
    """Of so many seconds, and with a key picture in the begin of each segment."""
    file.parent.mkdir(parents=True)
    keys = f"keyint={10 * segment}:min-keyint={10 * segment}:scenecut=0"
    ffmpeg("-f", "lavfi", "-i", f"testsrc2=size={size}:rate=10", *SOUND, "-t", seconds, "-c:v", "libx264", "-preset",
           "ultrafast", "-pix_fmt", "yuv420p", "-x264-params", keys, "-c:a", "aac", "-b:a", "64k", "-movflags",
           "+faststart", file)


def copy(folder: pathlib.Path, file: str, *words: object) -> None:
    """The clip in the folder above, in another form."""
    folder.mkdir(exist_ok=True)
    ffmpeg("-i", folder.parent / "clip.mp4", "-c", "copy", *words, folder / file)


def hls(folder: pathlib.Path, kind: str) -> None:
    """A master playlist whose pictures and sound are apart."""
    copy(folder, "stream%v.m3u8", "-map", "0:v", "-map", "0:a", *HLS, SEGMENT, "-hls_segment_type", kind,
         "-master_pl_name", "master.m3u8", "-var_stream_map",
         "v:0,agroup:sound a:0,agroup:sound,default:yes,language:en")
    master = folder / "master.m3u8"
    # Without its codecs, the tool takes a stream for one that holds both.
    master.write_text(master.read_text().replace("RESOLUTION=", 'CODECS="avc1.42c01e,mp4a.40.2",RESOLUTION='))


def dash(folder: pathlib.Path, seconds: int, segment: int) -> None:
    """A manifest with segments of their own for picture and sound."""
    copy(folder, "manifest.mpd", "-f", "dash", "-t", seconds, "-seg_duration", segment, "-use_template", 1,
         "-use_timeline", 1, "-adaptation_sets", "id=0,streams=v id=1,streams=a")


def dash_whole(folder: pathlib.Path, seconds: int) -> None:
    """A manifest that names a whole file for each stream."""
    copy(folder, "video.mp4", "-map", "0:v")
    copy(folder, "audio.m4a", "-map", "0:a")
    (folder / "manifest.mpd").write_text(f"""<?xml version="1.0"?>
<MPD xmlns="urn:mpeg:dash:schema:mpd:2011" type="static" mediaPresentationDuration="PT{seconds}S"
     profiles="urn:mpeg:dash:profile:isoff-on-demand:2011" minBufferTime="PT2S"><Period>
  <AdaptationSet mimeType="video/mp4"><Representation id="137" codecs="avc1.42c01e" width="640" height="360"
    bandwidth="300000"><BaseURL>video.mp4</BaseURL></Representation></AdaptationSet>
  <AdaptationSet mimeType="audio/mp4"><Representation id="140" codecs="mp4a.40.2" audioSamplingRate="44100"
    bandwidth="64000"><BaseURL>audio.m4a</BaseURL></Representation></AdaptationSet>
</Period></MPD>
""")


def make(folder: pathlib.Path) -> None:
    clip(folder / "clip.mp4", "640x360", SECONDS, SEGMENT)
    ffmpeg("-i", folder / "clip.mp4", "-c:v", "libvpx", "-deadline", "realtime", "-cpu-used", 8, "-c:a", "libopus",
           folder / "clip.webm")
    ffmpeg(*SOUND, "-t", SECONDS, "-c:a", "libmp3lame", folder / "clip.mp3")
    hls(folder / "hls-ts", "mpegts")
    hls(folder / "hls-fmp4", "fmp4")
    copy(folder / "hls", "clip.m3u8", *HLS, SEGMENT)
    playlist = (folder / "hls" / "clip.m3u8").read_text()
    (folder / "hls" / "broken.m3u8").write_text(playlist.replace("clip1.ts", "missing.ts"))
    dash(folder / "dash", SECONDS, SEGMENT)
    dash_whole(folder / "dash-whole", SECONDS)


def make_many(folder: pathlib.Path, count: int) -> None:
    """With so many segments of a second; in DASH, half of them are pictures and half are sound."""
    clip(folder / "clip.mp4", "160x90", count, 1)
    copy(folder / "hls", "clip.m3u8", *HLS, 1)
    dash(folder / "dash", count // 2, 1)
    dash_whole(folder / "dash-whole", count)

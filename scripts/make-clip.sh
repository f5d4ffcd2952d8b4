#!/usr/bin/env bash
# Makes what demo-server.py serves: a page with a video whose streams come by DASH, the picture and sound apart.
#
#   scripts/make-clip.sh DIR
#
#   DIR/index.html          the page, with the title, the poster and the manifest
#   DIR/manifest.mpd        stream 137 (video.mp4, H.264) and stream 140 (audio.m4a, AAC)
#   DIR/video.mp4           20 seconds, some 3 MB, without sound
#   DIR/audio.m4a           20 seconds, some 300 kB
#   DIR/maxresdefault.jpg   the poster
#   DIR/mqdefault.jpg       the same in the smaller size that the library asks for instead
#
# A folder that holds the clip already is left as it is, unless this script is newer.
set -euo pipefail

if [[ $# -ne 1 || $1 == -* ]]; then
    echo "usage: ${0##*/} DIR" >&2
    exit 2
fi
dir=$1
# The page is written last, so that its being there means that all the rest is.
[[ ! $dir/index.html -nt $0 ]] || exit 0
mkdir -p "$dir"

readonly seconds=20 width=640 height=360 rate=25 video_bits=1200000 audio_bits=128000

make_media() {
    ffmpeg -nostdin -loglevel error -y -bitexact "$@"
}

make_media -f lavfi -i "testsrc2=size=${width}x$height:rate=$rate:duration=$seconds" \
    -c:v libx264 -preset veryfast -b:v $video_bits -minrate $video_bits -maxrate $video_bits -bufsize $video_bits \
    -x264-params nal-hrd=cbr -pix_fmt yuv420p -movflags +faststart "$dir/video.mp4"
make_media -f lavfi -i "sine=frequency=330:beep_factor=2:duration=$seconds" \
    -c:a aac -b:a $audio_bits -ac 2 -movflags +faststart "$dir/audio.m4a"
make_media -i "$dir/video.mp4" -frames:v 1 "$dir/maxresdefault.jpg"
make_media -i "$dir/maxresdefault.jpg" -vf scale=320:-2 "$dir/mqdefault.jpg"

cat >"$dir/manifest.mpd" <<MANIFEST
<?xml version="1.0" encoding="UTF-8"?>
<MPD xmlns="urn:mpeg:dash:schema:mpd:2011" type="static" profiles="urn:mpeg:dash:profile:isoff-on-demand:2011"
     mediaPresentationDuration="PT${seconds}S" minBufferTime="PT2S">
  <Period>
    <AdaptationSet mimeType="video/mp4" contentType="video">
      <Representation id="137" codecs="avc1.64001e" width="$width" height="$height" frameRate="$rate"
                      bandwidth="$video_bits">
        <BaseURL>video.mp4</BaseURL>
      </Representation>
    </AdaptationSet>
    <AdaptationSet mimeType="audio/mp4" contentType="audio">
      <Representation id="140" codecs="mp4a.40.2" audioSamplingRate="44100" bandwidth="$audio_bits">
        <BaseURL>audio.m4a</BaseURL>
      </Representation>
    </AdaptationSet>
  </Period>
</MPD>
MANIFEST

cat >"$dir/index.html.new" <<'PAGE'
<!DOCTYPE html>
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
PAGE
mv "$dir/index.html.new" "$dir/index.html"

#!/usr/bin/env bash
# Takes the pictures of nox-desk that the README shows: starts the program on a page of this machine, lets it download,
# and photographs the window as it is.
#
#   scripts/screenshots.sh          docs/images/desk-light.png and docs/images/desk-dark.png
#   scripts/screenshots.sh DIR      the same two files into DIR
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

# Slow enough that downloads are under way when the picture is taken.
readonly bytes_per_second=250000
readonly display_size=1000x900

case ${1-} in
    -h | --help) print_help; exit 0 ;;
    -*) echo "screenshots.sh: unknown option $1; see --help" >&2; exit 2 ;;
esac
images=$(realpath -m "${1:-$root/docs/images}")

"$root/scripts/setup.sh" build run desk

build_preset release nox-desk
bin=$root/build/release/bin
"$root/scripts/stage-programs.sh" "$bin"

# The demonstration's page with more to choose from: the same clip in three sizes, its sound in two.
make_page() {
    local media=$1 height
    "$root/scripts/make-clip.sh" "$media"
    for height in 720 1080; do
        ffmpeg -nostdin -loglevel error -y -i "$media/video.mp4" -vf "scale=-2:$height" -c:v libx264 \
            -preset ultrafast -movflags +faststart "$media/video$height.mp4"
    done
    ffmpeg -nostdin -loglevel error -y -i "$media/audio.m4a" -b:a 48k -movflags +faststart "$media/audio48.m4a"
    sed -i -e '/<Representation id="137"/i \
      <Representation id="136" codecs="avc1.64001f" width="1280" height="720" bandwidth="2500000">\
        <BaseURL>video720.mp4</BaseURL>\
      </Representation>\
      <Representation id="135" codecs="avc1.640028" width="1920" height="1080" bandwidth="4000000">\
        <BaseURL>video1080.mp4</BaseURL>\
      </Representation>' -e '/<Representation id="140"/i \
      <Representation id="139" codecs="mp4a.40.2" audioSamplingRate="44100" bandwidth="48000">\
        <BaseURL>audio48.m4a</BaseURL>\
      </Representation>' "$media/manifest.mpd"
}

# serve DIR: at $url.
serve() {
    local tries
    "$root/scripts/demo-server.py" --media "$1" --rate $bytes_per_second --port-file "$scratch/port" >/dev/null &
    server=$!
    for ((tries = 0; tries < 100; tries++)); do
        [[ ! -s $scratch/port ]] || break
        sleep 0.1
    done
    url=http://127.0.0.1:$(<"$scratch/port")/
}

# colours WINDOW FIELD ALTERNATE BUTTON TEXT SELECTION SELECTED-TEXT: the settings by which a desktop tells them.
colours() {
    cat <<SETTINGS
[Colors:Window]
BackgroundNormal=$1
ForegroundNormal=$5
[Colors:View]
BackgroundNormal=$2
BackgroundAlternate=$3
ForegroundNormal=$5
[Colors:Button]
BackgroundNormal=$4
ForegroundNormal=$5
[Colors:Selection]
BackgroundNormal=$6
ForegroundNormal=$7
SETTINGS
}

# A display of its own. The server picks a free number and writes it to the pipe.
start_display() {
    mkfifo "$scratch/display"
    Xvfb -displayfd 3 -screen 0 "${display_size}x24" -nolisten tcp 3>"$scratch/display" 2>"$scratch/xvfb.log" &
    xvfb=$!
    read -r -t 20 number <"$scratch/display"
    export DISPLAY=:$number
}

xvfb=
desk=
stop_programs() {
    for process in $desk $xvfb; do
        { kill "$process" && wait "$process"; } 2>/dev/null || true
    done
    clean_up
}

press() {
    xdotool key --clearmodifiers "$@"
    sleep 0.5
}

# await CONDITION...: until it holds; a minute at most.
await() {
    local tries
    for ((tries = 0; tries < 600; tries++)); do
        ! "$@" || return 0
        sleep 0.1
    done
    echo "screenshots.sh: waited in vain: $*" >&2
    return 1
}

has_tool() {
    pgrep -P "$desk" >/dev/null
}

has_no_tool() {
    ! has_tool
}

# has_files DIR PATTERN COUNT: of more than a few bytes, so that there is progress to be seen.
has_files() {
    [[ $(find "$1" -name "$2" -size +120k | wc -l) -ge $3 ]]
}

# photograph NAME
photograph() {
    local name=$1 home=$scratch/$1 window
    mkdir -p "$home/config" "$home/Videos"
    case $name in
        *-light) colours 239,240,241 252,252,252 243,244,245 246,247,248 35,38,41 38,115,178 255,255,255 ;;
        *-dark) colours 42,46,50 27,30,32 35,38,41 49,54,59 252,252,252 61,110,160 252,252,252 ;;
    esac >"$home/config/kdeglobals"
    HOME=$home XDG_CONFIG_HOME=$home/config XDG_CACHE_HOME=$home/cache XDG_CURRENT_DESKTOP=KDE KDE_SESSION_VERSION=5 \
        LANGUAGE=en LC_ALL=C.UTF-8 QT_QPA_PLATFORM=xcb "$bin/nox-desk" "$url" &
    desk=$!
    window=$(timeout 30 xdotool search --sync --onlyvisible --pid "$desk" | tail -n 1)
    xdotool windowfocus --sync "$window"
    await has_tool
    await has_no_tool
    sleep 2 # for the picture and the sizes
    press alt+t ctrl+End alt+d # the smallest sound, which is soon done
    await has_files "$home/Videos" '*.m4a' 1
    press alt+t ctrl+Home Down Down alt+d
    await has_files "$home/Videos" '*.part' 1
    press alt+t ctrl+Home alt+d
    await has_files "$home/Videos" '*.part' 2
    sleep 1
    import -window "$window" -strip "$images/$name.png"
    kill "$desk"
    wait "$desk" 2>/dev/null || true
    desk=
}

make_scratch
trap stop_programs EXIT
say "a page on this machine"
make_page "$scratch/media"
serve "$scratch/media"
start_display
mkdir -p "$images"
for name in desk-light desk-dark; do
    say "$name"
    photograph "$name"
done
ls -l "$images"

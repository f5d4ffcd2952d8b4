#!/usr/bin/env bash
# Installs a build into a scratch prefix and tries what a stranger would: the README's example is built against it with
# CMake and with pkg-config, and run on a page of this machine; and the library must export nothing but its interface.
#
#   scripts/check-install.sh [PRESET]     release (the default) or qt5; built first where needed
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

case ${1-} in
    -h | --help) print_help; exit 0 ;;
esac
preset=${1:-release}
build=$root/build/$preset
make_scratch

# Prints the first block of the README that is marked with the given language.
readme_block() {
    sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/{/^\`\`\`/d;p}" "$root/README.md"
}

configure "$preset" "$build"
compile "$build"
prefix=$scratch/prefix
cmake --install "$build" --prefix "$prefix" >/dev/null
library=$(find "$prefix" -name 'libNoxWebMedia*.so')
libdir=$(dirname "$library")

say "exported names"
# Every name of ours has a Nox scope, or is one of the free functions; vtables and type information included.
foreign=$(nm -DC --defined-only "$library" |
    grep -vE ' (vtable for |typeinfo for |typeinfo name for |non-virtual thunk to |guard variable for )?Nox::' |
    grep -vE ' (MediaList[A-Za-z]+|GetPythonExecPath|GetModuleName|WriteLog)(\(|$)' |
    grep -vE ' A |^[0-9a-f]+ . NOX_?[A-Z0-9_.]*$' || true)
if [[ -n $foreign ]]; then
    printf 'exported, but not of the interface:\n%s\n' "$foreign" >&2
    exit 1
fi
for private in YdExtractor YdDownloader ChildProcess YdStatusLines DownloadProgress MergeCommand; do
    if nm -DC --defined-only "$library" | grep -w "$private"; then
        echo "exported, but private: $private" >&2
        exit 1
    fi
done
nm -D --defined-only "$library" | wc -l | xargs printf '%s names, all of the interface\n'

say "the README's example: cmake"
consumer=$scratch/consumer
mkdir "$consumer"
readme_block cmake >"$consumer/CMakeLists.txt"
readme_block cpp >"$consumer/titles.cpp"
cmake -S "$consumer" -B "$scratch/build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$scratch/build"

say "the README's example: pkg-config"
read -r -a flags < <(PKG_CONFIG_PATH=$libdir/pkgconfig pkg-config --cflags --libs noxwebmedia)
c++ -std=c++17 -o "$scratch/titles" "$consumer/titles.cpp" "${flags[@]}"

say "the README's example: run"
serve_clip 0
for program in "$scratch/build/titles" "$scratch/titles"; do
    "$root/scripts/stage-programs.sh" "$(dirname "$program")"
    # The library logs to standard output too; the program's own line is the last.
    title=$(XDG_CACHE_HOME=$scratch/cache LD_LIBRARY_PATH=$libdir "$program" "$url" 2>/dev/null | tail -n 1)
    printf '%s\n' "$title"
    [[ $title == 'Open the café/bar? '* ]]
done

#!/bin/sh
# Installs a built tree into a prefix of its own, hides the source tree and the build from it, and shows that the
# program starts from there and finds its fonts, patterns, help and icons. Validates what the desktop reads.
# About 20 s. Needs sox, Xvfb, openbox, xdotool, imagemagick, desktop-file-utils, appstream, shared-mime-info, man-db.
# tests/manual/install_check.sh [build folder [screenshot.png]]
set -e
top=$(cd "$(dirname "$0")/../.." && pwd)
build=${1:-$top/build/debug}
shot=${2:+$(realpath -m "$2")}
. "$top/tests/manual/display.sh"
cmake --build "$build" --target tonvex tonvex-cli >/dev/null
prefix="$work/prefix"
cmake --install "$build" --prefix "$prefix" >/dev/null
status=0

echo "== what the desktop reads"
share="$prefix/share"
desktop-file-validate "$share/applications/tonvex.desktop" || fail "desktop file"
appstreamcli validate --no-net "$share/metainfo/org.tonvex.tonvex.metainfo.xml" >"$work/appstream" || { cat "$work/appstream"; fail "metainfo"; }
xmllint --noout "$share/mime/packages/tonvex.xml" || fail "MIME file"
cp -r /usr/share/mime/packages/freedesktop.org.xml "$share/mime/packages/"
update-mime-database "$share/mime" >/dev/null 2>&1 || fail "MIME database"
# By magic alone: the name says nothing.
cp "$top/data/templates/Band.tvx" "$work/song-without-ending"
kind=$(XDG_DATA_HOME="$share" XDG_DATA_DIRS="$share" gio info -a standard::content-type "$work/song-without-ending" 2>/dev/null |
    sed -n 's/.*content-type: //p')
[ "$kind" = application/x-tonvex ] || fail "a song without an ending is taken for '$kind'"
for page in tonvex tonvex-cli; do
    warnings=$(man --warnings -l -Tutf8 -Z "$share/man/man1/$page.1" 2>&1 >/dev/null)
    [ -z "$warnings" ] || fail "man page $page: $warnings"
done
for file in icons/hicolor/scalable/apps/tonvex.svg icons/hicolor/scalable/mimetypes/application-x-tonvex.svg \
    tonvex/paths.cfg tonvex/help/index.txt tonvex/chords.txt; do
    [ -s "$share/$file" ] || fail "share/$file is missing"
done

echo "== the command-line tool, from a folder of its own"
own_home "$work/home"
cd "$work"
# The sources and the build are out of sight: the program runs in a mount namespace where an empty folder lies on both.
mkdir "$work/nothing"
own_root=$([ "$(id -u)" = 0 ] || echo -r)
hidden() {
    unshare -m $own_root sh -c 'mount --bind "$0" "$1" && mount --bind "$0" "$2" && shift 2 && exec "$@"' \
        "$work/nothing" "$build" "$top" "$@"
}
hidden test ! -e "$top/data" || fail "the source tree could not be hidden"
hidden "$prefix/bin/tonvex-cli" perform - "$share/tonvex/demo/morning_walk.keys.json" song.tvx --wav take.wav
hidden "$prefix/bin/tonvex-cli" check song.tvx || fail "the song"
# Without a font the file is silence.
[ "$(sox take.wav -n stat 2>&1 | sed -n 's/Maximum amplitude: *0\.\(.\).*/\1/p')" -gt 0 ] || fail "the take is silent"

echo "== the windowed program"
start_display
TONVEX_SOUND=quiet hidden "$prefix/bin/tonvex" 2>"$work/errors" &
program=$!
main=$(window 'Untitled.* - Tonvex')
[ -n "$main" ] || fail "no main window"
xdotool search --name 'Sound Font files' >/dev/null && fail "no font was found"
ls "$HOME"/.local/share/Tonvex/patterns/fingerpick/*.txt >/dev/null || fail "no patterns"
ls "$HOME"/.config/Tonvex/keyboard/*.dat >/dev/null || fail "no keyboard layouts"
xdotool windowactivate --sync "$main" key shift+F1
# The page's title comes out of the index of the help folder.
[ -n "$(window 'First steps - Help - Tonvex')" ] || fail "no help page"
sleep 1
[ -z "$shot" ] || import -window root "$shot"
xdotool key Escape
xdotool windowactivate --sync "$main" key ctrl+q
wait $program || fail "the program ended with status $?"
[ "$status" = 0 ] && echo "all as it should be"
exit $status

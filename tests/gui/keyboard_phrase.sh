#!/bin/sh
# A phrase made, edited and deleted by keys alone, on the real program under an Xvfb and an openbox of its own: notes and
# a chord added, moved, stretched, transposed, copied, aligned, deleted, undone, then saved; the stored song is compared
# with what the keys say. A screenshot at each stage. About 25 s a form. Needs Xvfb, openbox, xdotool, imagemagick,
# python3. tests/gui/keyboard_phrase.sh [build folder [folder for the screenshots [form ...]]]   forms: light dark large
set -e
top=$(cd "$(dirname "$0")/../.." && pwd)
build=${1:-$top/build/debug}
shots=${2:-$(mktemp -d /tmp/phrase.XXXXXX)}
[ $# -le 2 ] && set -- x x light dark large
shift 2
mkdir -p "$shots" && shots=$(cd "$shots" && pwd)
status=0
. "$top/tests/manual/display.sh"

phrase() {
    form=$1
    start_form
    mkdir -p "$HOME/.config/Tonvex"
    printf '[Window]\nAppearance=%s\n' "$appearance" >"$HOME/.config/Tonvex/Tonvex.ini"
    "$build/tonvex" 2>"$HOME/errors" &
    program=$!
    main=$(window 'Untitled.* - Tonvex')
    [ -n "$main" ] || { fail "no main window"; return; }
    sleep 2.5
    xdotool windowactivate --sync "$main"

    # Windows, the first entry behind the panes: the events editor, with its cursor at the start, on note 60.
    key alt+w
    key Down Down Down Return
    key Insert
    key Up Up Insert
    key Up Up Insert
    key Right Right Right Right Up Insert
    shot 1-made
    # The last one a sixteenth earlier, two sixteenths longer, an octave lower; the one before it softer and higher.
    key alt+Left
    key shift+Right shift+Right
    key ctrl+Down
    key shift+Tab
    key alt+minus
    key alt+Up
    # The second one deleted, brought back, deleted again.
    key shift+Tab
    key Delete
    key ctrl+z
    shot 2-undone
    key ctrl+shift+z
    shot 3-edited
    # The three again at the end of the song, 5.25, and on whole beats: Align to beats, its first entry.
    key ctrl+a
    key ctrl+c
    key End
    key ctrl+v
    key shift+F10
    key a
    shot 4-menu
    key Return
    # A chord where the second note was.
    key alt+Insert
    [ -n "$(window 'QChord Config')" ] || fail "no window for a chord"
    shot 5-chord
    key Return
    shot 6-phrase
    # Letters run functions, but not within a second of a dialog.
    sleep 1
    key ctrl+s
    [ -n "$(window 'Save File')" ] || fail "no file dialog"
    key ctrl+a
    xdotool type --delay 30 "$HOME/phrase"
    key Return
    sleep 1
    xdotool windowactivate --sync "$main"
    key ctrl+q
    wait $program || fail "the program ended with status $?"
    program=
    "$build/tonvex-cli" dump "$HOME/phrase.tvx" >"$HOME/song.json"
    python3 - "$HOME/song.json" <<'PY' || fail "the stored phrase"
import json, sys
events = json.load(open(sys.argv[1]))["channels"][0]["events"]
notes = [(e["StartTime"], e["Note"], e["Length"], e["Vol"]) for e in events if e["Kind"] == 0]
chords = [(e["StartTime"], e["QChord"]["ChordNotes"][:3]) for e in events if e["Kind"] == 1]
assert notes == [(0, 60, 1, 100), (2, 65, 1, 95), (3.75, 53, 1.5, 100),
                 (5, 60, 1, 100), (7, 65, 1, 95), (9, 53, 1.5, 100)], notes
assert chords == [(1, [62, 66, 69])], chords
PY
}

for form in "$@"; do
    echo "== $form"
    phrase "$form"
done
echo "screenshots: $shots"
[ "$status" = 0 ] && echo "all as it should be"
exit $status

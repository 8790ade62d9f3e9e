#!/bin/sh
# The road of a newcomer, on the real program under an Xvfb and an openbox of its own, typed and clicked by xdotool:
# an empty home, a channel from a template, eight notes recorded, stop, play, save, quit, a start with that file,
# export to WAV. A screenshot at each stage, and checks of what was stored and what the WAV file sounds.
# About 40 s a form. Needs Xvfb, openbox, xdotool, imagemagick, python3, sox.
# tests/gui/newcomer_road.sh [build folder [folder for the screenshots [form ...]]]   forms: light dark large
set -e
top=$(cd "$(dirname "$0")/../.." && pwd)
build=${1:-$top/build/debug}
shots=${2:-$(mktemp -d /tmp/newcomer.XXXXXX)}
[ $# -le 2 ] && set -- x x light dark large
shift 2
mkdir -p "$shots" && shots=$(cd "$shots" && pwd)
status=0
. "$top/tests/manual/display.sh"
hold() { xdotool keydown "$1"; sleep 0.15; xdotool keyup "$1"; sleep 0.05; }
song_json() { "$build/tonvex-cli" dump "$1"; }

road() {
    form=$1
    start_form

    # -- the first start: nothing is there
    "$build/tonvex" 2>"$HOME/errors" &
    program=$!
    window '^Tonvex$' >/dev/null
    sleep 0.3
    import -window root "$shots/$form-1-start-up.png"
    main=$(window 'Untitled.* - Tonvex')
    [ -n "$main" ] || { fail "no main window"; return; }
    sleep 2.5
    xdotool windowactivate --sync "$main"
    # Options, Appearance: by the mnemonics, as a user without a mouse would.
    key alt+o
    key a
    case $appearance in light) key l ;; dark) key d ;; esac
    shot 2-first-window

    # -- a channel from a template, by the keyboard
    key ctrl+shift+Insert
    wizard=$(window 'New channel')
    [ -n "$wizard" ] || fail "no list of templates"
    for letter in v i b; do key $letter; done
    shot 3-template
    key Return
    shot 4-try-it
    key Return
    shot 5-added

    # -- eight notes; a key within a second of a dialog runs no function
    sleep 1
    key ctrl+r
    sleep 0.5
    for letter in z x c v b n m comma; do hold $letter; done
    shot 6-recording
    key Escape
    sleep 0.5
    shot 7-taken

    # -- play, to the end of the take and a little more
    key Home
    key Return
    sleep 1
    shot 8-playing
    sleep 1
    key Escape

    # -- save under a name, quit
    key ctrl+s
    save=$(window 'Save File')
    [ -n "$save" ] || fail "no file dialog"
    key ctrl+a
    xdotool type --delay 30 "$HOME/first tune"
    shot 9-save
    key Return
    sleep 1
    [ -s "$HOME/first tune.tvx" ] || fail "the song was not saved"
    xdotool windowactivate --sync "$main"
    key ctrl+q
    wait $program || fail "the program ended with status $?"
    program=

    song_json "$HOME/first tune.tvx" >"$HOME/song.json"
    python3 - "$HOME/song.json" <<'PY' || fail "the stored song"
import json, sys
song = json.load(open(sys.argv[1]))
taken = [c for c in song["channels"] if c["events"]]
assert len(song["channels"]) == 2 and len(taken) == 1, [(c["ChannelName"], len(c["events"])) for c in song["channels"]]
channel = taken[0]
assert channel["ChannelName"].startswith("Vibraphone"), channel["ChannelName"]
notes = [(e["Note"], e["StartTime"], e["Length"]) for e in channel["events"] if e["Kind"] == 0]
# Z to M and the comma are the white keys from C on; the octave is the layout's.
first = notes[0][0]
assert first % 12 == 0 and [n - first for n, _, _ in notes] == [0, 2, 4, 5, 7, 9, 11, 12], notes
starts = [s for _, s, _ in notes]
assert starts == sorted(starts) and all(0.1 < b - a < 1.0 for a, b in zip(starts, starts[1:])), starts
# Held for 150 ms at 80 beats a minute: 0.2 beats, and what the machine adds.
assert all(0.15 < l < 0.6 for _, _, l in notes), notes
PY

    # -- a start with that file, export
    "$build/tonvex" "$HOME/first tune.tvx" 2>>"$HOME/errors" &
    program=$!
    main=$(window 'first tune.tvx - Tonvex')
    [ -n "$main" ] || { fail "the song was not opened"; return; }
    sleep 2.5
    xdotool windowactivate --sync "$main"
    shot 10-opened-again
    key alt+f
    shot 11-file-menu
    key u
    sleep 0.5
    shot 12-export-1
    export_name
    wait_for_file "$HOME/first tune.wav"
    shot 13-exported
    key Return
    xdotool windowactivate --sync "$main"
    key ctrl+q
    wait $program || fail "the second run ended with status $?"
    program=
    peak=$(sox "$HOME/first tune.wav" -n stat 2>&1 | sed -n 's/Maximum amplitude: *//p')
    rms=$(sox "$HOME/first tune.wav" -n stat 2>&1 | sed -n 's/RMS *amplitude: *//p')
    long=$(sox "$HOME/first tune.wav" -n stat 2>&1 | sed -n 's/Length (seconds): *//p')
    echo "$form: the WAV file lasts $long s, peak $peak, RMS $rms"
    python3 -c "import sys; peak, rms, long = map(float, sys.argv[1:]); sys.exit(not (0.02 < peak <= 1 and rms > 0.002 and 1.5 < long < 20))" \
        "$peak" "$rms" "$long" || fail "the WAV file's loudness"
}

# The two windows of the export: what kind and where, then its settings.
export_name() {
    [ -n "$(window 'Export to audio')" ] || fail "no export"
    key ctrl+a
    xdotool type --delay 30 "$HOME/first tune.wav"
    key Return
    sleep 0.7
    shot 12-export-2
    key Return
}
wait_for_file() {
    for _ in $(seq 100); do
        [ -s "$1" ] && return
        sleep 0.1
    done
    fail "$1 was not written"
}

for form in "$@"; do
    echo "== $form"
    road "$form"
done
echo "screenshots: $shots"
[ "$status" = 0 ] && echo "all as it should be"
exit $status

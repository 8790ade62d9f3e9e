#!/bin/sh
# A real window under an Xvfb and an openbox of its own is killed in the middle of its work, started again, and
# ended by the system: each time the next start offers the song. About 30 s.
# tests/manual/recovery_check.sh [build folder [folder for pictures]]
set -e
build=$(realpath "${1:-build/debug}")
pictures=${2:-}
cmake --build "$build" --target tonvex
work=$(mktemp -d)
ready="$work/ready"
mkfifo "$ready"
Xvfb -displayfd 3 -screen 0 1440x900x24 -nolisten tcp 3>"$ready" 2>/dev/null &
server=$!
read -r number <"$ready"
export DISPLAY=":$number" XDG_RUNTIME_DIR="$work" HOME="$work" TONVEX_SOUND=quiet QT_QPA_PLATFORM=xcb
unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_STATE_HOME XDG_CACHE_HOME
openbox 2>/dev/null &
manager=$!
trap 'kill $manager $server; rm -r "$work"' EXIT

fail() {
    echo "FAILED: $1"
    exit 1
}
picture() {
    [ -z "$pictures" ] || import -window root "$pictures/$1.png"
}
start() {
    "$build/tonvex" 2>/dev/null &
    program=$!
    xdotool search --sync --onlyvisible --name "$1" >/dev/null
    sleep 2.5 # the start window has gone
    xdotool windowactivate --sync "$(xdotool search --onlyvisible --name "$1" | head -1)"
}
copies() {
    find "$work" -name recovery.tvx | wc -l
}

start '^Untitled.* - Tonvex$'
[ "$(copies)" = 0 ] || fail "a copy of an unchanged song"
xdotool key ctrl+r
sleep 1
for key in z x c v; do
    xdotool keydown $key
    sleep 0.1
    xdotool keyup $key
done
xdotool key Escape
sleep 2
[ "$(copies)" = 1 ] || fail "no copy of the take"
before=$(stat -c %s "$(find "$work" -name recovery.tvx)")
kill -9 $program
wait $program || true
echo "killed: a copy of $before bytes is left"

start '^Recover songs$'
picture offered
xdotool key Return
sleep 2
picture restored
[ "$(copies)" = 1 ] || fail "$(copies) copies after the restoring"
after=$(stat -c %s "$(find "$work" -name recovery.tvx)")
[ "$before" = "$after" ] || fail "the restored song has $after bytes"
echo "restored"
kill -TERM $program
wait $program || fail "no orderly end"
[ "$(copies)" = 1 ] || fail "the system's end lost the copy"

start '^Recover songs$'
xdotool key Escape
sleep 1
xdotool key ctrl+q
wait $program || fail "no orderly end"
[ "$(copies)" = 1 ] || fail "what is asked about later is gone"
echo "ended by the system, offered again, kept for later"

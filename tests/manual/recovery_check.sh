#!/bin/sh
# A real window under an Xvfb and an openbox of its own is killed in the middle of its work, started again, and
# ended by the system: each time the next start offers the song. About 30 s.
# tests/manual/recovery_check.sh [build folder [folder for pictures]]
set -e
build=$1
pictures=${2:-}
status=0
. "$(dirname "$0")/display.sh"
cmake --build "$build" --target tonvex
start_display
own_home "$work"
export TONVEX_SOUND=quiet

picture() {
    [ -z "$pictures" ] || import -window root "$pictures/$1.png"
}
start() {
    "$build/tonvex" 2>/dev/null &
    program=$!
    shown=$(window "$1")
    sleep 2.5 # the start window has gone
    xdotool windowactivate --sync "$shown"
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
[ "$status" = 0 ] && echo "ended by the system, offered again, kept for later"
exit $status

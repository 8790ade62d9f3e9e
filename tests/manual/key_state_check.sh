#!/bin/sh
# Builds and runs the check of the keyboard under an Xvfb and an openbox of its own. About 25 s.
# tests/manual/key_state_check.sh [build folder]
set -e
build=${1:-build/debug}
cmake --build "$build" --target manual_key_state_check
ready=$(mktemp -u)
mkfifo "$ready"
Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3>"$ready" 2>/dev/null &
server=$!
read -r number <"$ready"
rm "$ready"
export DISPLAY=":$number"
openbox 2>/dev/null &
manager=$!
trap 'kill $manager $server' EXIT
sleep 1
QT_QPA_PLATFORM=xcb "$build/tests/manual_key_state_check"

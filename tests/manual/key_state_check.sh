#!/bin/sh
# Builds and runs the check of the keyboard under an Xvfb and an openbox of its own. About 25 s.
# tests/manual/key_state_check.sh [build folder]
set -e
build=$1
. "$(dirname "$0")/display.sh"
cmake --build "$build" --target manual_key_state_check
start_display
sleep 1
"$build/tests/manual_key_state_check"

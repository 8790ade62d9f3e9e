#!/bin/sh
# Builds and runs the check of a take from a MIDI keyboard, on a JACK server of its own. About 10 s.
# tests/manual/midi_take_check.sh [build folder]
set -e
build=${1:-build/debug}
cmake --build "$build" --target manual_midi_take_check
export JACK_NO_AUDIO_RESERVATION=1 JACK_DEFAULT_SERVER=tonvex-take-$$
jackd -n "$JACK_DEFAULT_SERVER" --no-realtime -d dummy -r 44100 -p 1024 >/dev/null 2>&1 &
server=$!
trap 'kill $server' EXIT
jack_wait -w -t 5 >/dev/null
TONVEX_SOUND=jack "$build/tests/manual_midi_take_check" 2>/dev/null

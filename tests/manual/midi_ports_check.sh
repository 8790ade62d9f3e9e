#!/bin/sh
# Builds and runs the check of the MIDI ports against a JACK server of its own. About 10 s.
# tests/manual/midi_ports_check.sh [build folder]
set -e
build=${1:-build/debug}
cmake --build "$build" --target manual_midi_ports_check
JACK_NO_AUDIO_RESERVATION=1 JACK_DEFAULT_SERVER=tonvex-check-$$ exec "$build/tests/manual_midi_ports_check"

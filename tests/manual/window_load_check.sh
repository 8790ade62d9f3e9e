#!/bin/sh
# Builds and runs the check of what the window costs, under an Xvfb and an openbox of its own; about two minutes.
# tests/manual/window_load_check.sh [build folder [seconds a form]]
# Limits: p99 of a frame in play at most 2 times that of the same window standing still, plus 4 ms; processor
# time of the idle window's interface thread at most 1.5 times that of a bare Qt window, plus 0.05 ms a second:
# so much do runs of the bare window differ, which takes about 0.03. The notes' onsets in that play lie within 68
# frames of each other's lateness.
set -e
build=$1
seconds=${2:-20}
. "$(dirname "$0")/display.sh"
cmake --build "$build" --target manual_window_load_check
start_display
own_home "$work"
for form in bare idle play; do
    "$build/tests/manual_window_load_check" $form "$seconds" 2>/dev/null
done | tee "$work/found"
awk '
    { for (i = 2; i < NF; i += 2) value[$1, $i] = $(i + 1) }
    END {
        most = 2 * value["still", "p99_ms"] + 4
        good = value["play", "p99_ms"] <= most
        printf "%s  play: p99 %.3f ms a frame, at most %.3f\n", good ? "ok    " : "FAILED", value["play", "p99_ms"], most
        limit = 1.5 * value["bare", "interface_ms_per_s"] + 0.05
        calm = value["idle", "interface_ms_per_s"] <= limit
        printf "%s  idle: %.3f ms a second, at most %.3f\n", calm ? "ok    " : "FAILED", value["idle", "interface_ms_per_s"], limit
        exact = value["onsets", "notes"] >= 20 && value["onsets", "spread"] <= 68
        printf "%s  onsets: %d notes, spread %.1f frames, at most 68\n", exact ? "ok    " : "FAILED", value["onsets", "notes"], value["onsets", "spread"]
        exit !(good && calm && exact)
    }' "$work/found"

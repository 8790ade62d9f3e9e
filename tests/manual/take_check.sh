#!/bin/sh
# Builds and runs the check of a whole take: a real window under an Xvfb and an openbox of its own, sound into a
# null sink of a PulseAudio server of its own, typed by xdotool. About 40 s a form.
# tests/manual/take_check.sh [build folder [presses]]
set -e
build=$1
presses=${2:-200}
. "$(dirname "$0")/display.sh"
cmake --build "$build" --target manual_take_check
start_display
own_home "$work"
pulseaudio -n --daemonize=no --exit-idle-time=-1 --use-pid-file=no --realtime=no --high-priority=no \
    -L module-native-protocol-unix \
    -L "module-null-sink sink_name=out1 rate=44100 channels=2 norewinds=1" 2>/dev/null &
helpers="$helpers $!"
until pactl info >/dev/null 2>&1; do sleep 0.1; done

status=0
for form in calm busy; do
    echo "== $form"
    mkfifo "$work/out"
    TONVEX_SOUND=pulse "$build/tests/manual_take_check" "$presses" "$form" >"$work/out" 2>/dev/null &
    program=$!
    parec -d out1.monitor --file-format=wav "$work/take.wav" &
    capture=$!
    while read -r line; do
        echo "$line"
        if [ "$line" = recording ]; then
            sleep 0.5
            typed=0
            while [ "$typed" -lt "$presses" ]; do
                for key in z x c v b n m; do
                    [ "$typed" -lt "$presses" ] || break
                    xdotool keydown "$key"
                    sleep 0.03
                    xdotool keyup "$key"
                    typed=$((typed + 1))
                done
            done
            sleep 0.3
            xdotool key Escape
        elif [ "$line" = playing ]; then
            kill "$capture"
            parec -d out1.monitor --file-format=wav "$work/take.wav" &
            capture=$!
        fi
    done <"$work/out"
    wait "$program" || status=1
    kill "$capture"
    rm "$work/out"
    echo "captured while it played:"
    sox "$work/take.wav" -n stat 2>&1 | grep -E 'Length|Maximum amplitude|RMS.*amplitude'
done
exit $status

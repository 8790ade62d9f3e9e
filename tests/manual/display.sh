# Sourced by the checks that need a display: an Xvfb and an openbox of their own, a home of their own in $work;
# all goes with the script. Wants $build, the build folder; screen=WxH for another size.
build=$(realpath "${build:-build/debug}")
work=$(mktemp -d)
helpers=
program=
trap 'kill $program $helpers 2>/dev/null || true; cd /; rm -r "$work"' EXIT
fail() {
    echo "FAILED${form:+ ($form)}: $1"
    status=1
}
# Starts the display and its window manager; their numbers are added to $helpers.
start_display() {
    ready=$(mktemp -u "$work/ready.XXXXXX")
    mkfifo "$ready"
    Xvfb -displayfd 3 -screen 0 "${screen:-1440x900}x24" -nolisten tcp 3>"$ready" 2>/dev/null &
    helpers="$helpers $!"
    read -r number <"$ready"
    export DISPLAY=":$number" QT_QPA_PLATFORM=xcb
    openbox 2>/dev/null &
    helpers="$helpers $!"
}
own_home() {
    export HOME="$1" XDG_RUNTIME_DIR="$1/run"
    unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_STATE_HOME XDG_CACHE_HOME
    mkdir -p "$XDG_RUNTIME_DIR"
    chmod 700 "$XDG_RUNTIME_DIR"
}
# A road over several forms, light dark large: starts the display of $form; sets $appearance.
start_form() {
    screen=1440x900 scale=1 appearance=$form
    [ "$form" = large ] && screen=2880x1800 scale=2 appearance=light
    own_home "$work/$form"
    start_display
    export QT_SCALE_FACTOR=$scale TONVEX_SOUND=quiet
}
shot() { sleep 0.6; import -window root "$shots/$form-$1.png"; }
key() { xdotool key --clearmodifiers --delay 40 "$@"; sleep 0.3; }
# The number of a window of that title once it is shown; empty when none comes.
window() { timeout 30 xdotool search --sync --onlyvisible --name "$1" | head -1; }

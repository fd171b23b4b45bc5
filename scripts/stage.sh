# shellcheck shell=bash
# Plays the operator: starts the server and the remote under a virtual display in a private network, and
# works the remote with mouse and keys. Sourced from the top of the checkout, with -euo pipefail set.
#
#   enter_stage "$@"   runs the calling script again inside; returns there, with $room for files and
#                      the remote as $program
#   build=FOLDER       where the programs are (default: build)
#   scale=FACTOR       density of the display (default: 1); places stay in logical pixels
#   under=COMMAND      what the remote runs under, if anything
#   patience=TIMES     how much slower than usual that makes it (default: 1)

# shellcheck source=scripts/common.sh
. scripts/common.sh

build=${build:-build}
scale=${scale:-1}
patience=${patience:-1}
read -rd "" -a wrap <<<"${under:-}" || true

# pixels LENGTH: how many pixels of the display a length in the program's own measure takes.
pixels() { awk -v length_="$1" -v scale="$scale" 'BEGIN { printf "%d", length_ * scale + 0.5 }'; }

enter_stage() {
    if [ -z "${CORVANE_STAGE:-}" ]; then
        # Two that look for a free display at once may find the same one: each begins at a number of its own.
        CORVANE_STAGE=1 exec scripts/private-network xvfb-run -a -n $((100 + $$ % 50000)) \
            -s "-noreset -dpi 96 -screen 0 $(pixels 1024)x$(pixels 768)x24" "$0" "$@"
    fi
    room=$(mktemp -d)
    started=()  # what is to end with the script, by its id
    export XDG_RUNTIME_DIR=$room QT_QPA_PLATFORM=xcb QT_SCALE_FACTOR=$scale
    at_end rm -rf "$room"
    at_end end_started
    # A copy, so that its settings file lies in the room and not beside the built program.
    cp "$build/corvane" "$room/"
    program=$room/corvane
}

end_started() {
    kill "${started[@]}" 2>/dev/null
    wait
}

complain() {
    echo "$(basename "$0"): $*" >&2
    [ ! -e "$room/server.log" ] || sed 's/^/  server: /' "$room/server.log" >&2
    exit 1
}

# wait_for WHAT COMMAND...: for ten seconds, or so many $tenths of one, times the patience, at the most.
wait_for() {
    local what=$1
    shift
    for _ in $(seq $((${tenths:-100} * patience))); do
        "$@" && return 0
        sleep 0.1
    done
    complain "waited in vain for $what"
}

logged() { grep -qs -- "$1" "$room/server.log"; }
log_count() { grep -c -- "$1" "$room/server.log" || true; }
logged_more_than() { [ "$(log_count "$1")" -gt "$2" ]; }

# start_server [OPTION...]
# shellcheck disable=SC2120  # most scripts give none
start_server() {
    : >"$room/server.log"  # or the server before seems to listen still
    "$build/corvane-server" --verbose "$@" >"$room/server.log" &
    server=$!
    started[server]=$server
    wait_for 'the server' logged 'listens'
}

kill_server() {
    kill -9 "$server"
    wait "$server" 2>/dev/null || true
    unset "started[$server]"
}

# find_window MIN MAX: the program's window of a width between the two, in $window.
find_window() {
    local candidate width
    for candidate in $(xdotool search --onlyvisible --class corvane 2>/dev/null); do
        window=$candidate
        width=$(xdotool getwindowgeometry --shell "$window" 2>/dev/null | sed -n 's/^WIDTH=//p')
        [ "${width:-0}" -ge "$(pixels "$1")" ] && [ "$width" -le "$(pixels "$2")" ] && return 0
    done
    return 1
}

# Starts the remote, accepts the first interface, waits for the server's state. The dialog's picture goes to the file
# $dialog_picture, if that is set.
start_remote() {
    local asked
    asked=$(log_count 'asks for the state')
    "${wrap[@]}" "$program" &
    remote=$!
    started[remote]=$remote
    wait_for 'the interface dialog' find_window 200 400
    xdotool windowfocus --sync "$window"
    [ -z "${dialog_picture:-}" ] || { sleep 0.3; picture "$dialog_picture"; }
    xdotool key Return
    wait_for 'the window' find_window 820 820
    wait_for 'the state' logged_more_than 'asks for the state' "$asked"
    xdotool windowfocus --sync "$window"
    sleep $((500 * patience))e-3
}

quit_remote() {
    xdotool key Escape
    wait "$remote"
    unset "started[$remote]"
}

# press X Y [BUTTON]: a click at a place in the window.
press() {
    point "$1" "$2"
    xdotool click "${3:-1}"
    sleep $((300 * patience))e-3
}

point() { xdotool mousemove --window "$window" "$(pixels "$1")" "$(pixels "$2")"; }

open_menu() { press 64 507; }

# choose PLACE: opens the menu and presses the entry at a place from the top, from 0.
choose() {
    open_menu
    press 89 $((58 + 10 + 52 * $1 + 16))
}

# picture FILE [WIDTHxHEIGHT+X+Y]: what the window, or a part of it, shows.
picture() {
    import -window "$window" ${2:+-crop "$2"} +repage "$1"
}

# screen_picture FILE: the same with the menus that lie over the window.
screen_picture() {
    import -window root -crop "$(pixels 820)x$(pixels 600)+0+0" +repage "$1"
}

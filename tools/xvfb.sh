# shellcheck shell=bash
# X servers of our own, without a screen. Source this file.
set -euo pipefail

# xvfb_start WxH: starts a server with a free display number, waits until it answers and sets DISPLAY and xvfb_pid.
xvfb_start() {
    local number_file number
    number_file=$(mktemp)
    Xvfb -displayfd 3 -screen 0 "$1x24" -nolisten tcp -noreset 3>"$number_file" >/dev/null 2>&1 &
    xvfb_pid=$!
    # The number is written when the server takes connections.
    until [[ -s $number_file ]]; do
        kill -0 "$xvfb_pid" 2>/dev/null || { echo "Xvfb did not start" >&2; rm -f "$number_file"; return 1; }
        read -r -t 0.05 <> <(:) || true
    done
    number=$(<"$number_file")
    rm -f "$number_file"
    export DISPLAY=":$number"
    unset XAUTHORITY
}

# xvfb_stop: ends the server that xvfb_start started, and no other.
xvfb_stop() {
    [[ -n ${xvfb_pid:-} ]] || return 0
    kill "$xvfb_pid" 2>/dev/null || true
    wait "$xvfb_pid" 2>/dev/null || true
    xvfb_pid=
}

#!/usr/bin/env bash
# run_frame_cost.sh [FRAMES]: runs frame_cost.exe of the windows build under Wine, in a fresh prefix with a display, and
# prints its results.
set -euo pipefail
# shellcheck source=tools/wine_prefix.sh
. "$(dirname "${BASH_SOURCE[0]}")/../tools/wine_prefix.sh"
# shellcheck source=tools/xvfb.sh
. "$varnelo_root/tools/xvfb.sh"

prefix=''
clean_up() {
    local status=$?
    trap - EXIT
    [[ -z $prefix ]] || wine_remove "$prefix"
    xvfb_stop
    exit "$status"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

xvfb_start 1280x800
prefix=$(wine_new_prefix frames)
wine_run "$prefix" "$varnelo_root/build/windows/frame_cost.exe" "${1:-20}" </dev/null | tr -d '\r'

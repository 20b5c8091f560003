#!/usr/bin/env bash
# Runs varnelo.exe in a private Wine prefix: ./dev run builds it and comes here.
#
#   --folder DIR     that folder is the desktop; without it a small sample desktop is made
#   --size WxH       size of the desktop window, 1280x800 without it
#   --wallpaper FILE picture behind the items, one of our own without it
#   --scale FACTOR   icon scale, a number from 0.5 to 2.0
#   --dpi N          dots per inch of the desktop, 96 without it
#   --shot FILE.png  where the picture goes; makes a run with a display use a display of its own as well
#   --seconds N      closes the program N seconds after it has drawn its items
#   -- ARGS          more arguments for the program
#
# With a display the program stays open until it is closed. Without one it runs in an Xvfb of its own: waits until the
# items are drawn, saves a picture, closes the program and prints the picture's path. The exit code is 0 only if the
# program drew, ended when it was told to and returned 0.
set -euo pipefail
# shellcheck source=tools/wine_prefix.sh
. "$(dirname "${BASH_SOURCE[0]}")/wine_prefix.sh"
# shellcheck source=tools/xvfb.sh
. "$varnelo_root/tools/xvfb.sh"

folder='' size=1280x800 shot='' seconds='' scale='' dpi=''
wallpaper=$varnelo_root/resources/wallpapers/dark.jpg
program=${VARNELO_EXE:-$varnelo_root/build/windows/varnelo.exe}
window_tool=${VARNELO_WINDOW_TOOL:-$varnelo_root/build/windows/tools/window.exe}
draw_limit=${VARNELO_DRAW_SECONDS:-60}

usage() {
    sed -n '4,11s/^# *//p' "${BASH_SOURCE[0]}" >&2
    exit 2
}

fail() {
    echo "run: $*" >&2
    exit 1
}

while [[ $# -gt 0 ]]; do
    [[ $# -gt 1 || $1 == -- ]] || usage
    case $1 in
        --folder) folder=$2 ;;
        --size) size=$2 ;;
        --wallpaper) wallpaper=$2 ;;
        --scale) scale=$2 ;;
        --dpi) dpi=$2 ;;
        --shot) shot=$2 ;;
        --seconds) seconds=$2 ;;
        --) shift; break ;;
        *) usage ;;
    esac
    shift 2
done
[[ $size =~ ^[1-9][0-9]*x[1-9][0-9]*$ ]] || fail "--size wants WxH, as in 1280x800"
[[ -z $folder || -d $folder ]] || fail "no folder $folder"
[[ -z $seconds || $seconds =~ ^[0-9]+$ ]] || fail "--seconds wants a number"
[[ -f $program ]] || fail "no program at $program"

headless=
[[ -n ${DISPLAY:-} && -z $shot ]] || headless=1
shot=${shot:-$varnelo_root/build/shot.png}

# The user's own choice of Wine's debug channels is passed on, and then everything that Wine says is shown.
others=1
if [[ -z ${WINEDEBUG:-} ]]; then
    others=0
    export WINEDEBUG=-all,warn+seh
fi

# What is recycled outlives the prefix: --folder may show the user's own files.
export VARNELO_DATA_HOME=$varnelo_root/build/data
mkdir -p "$VARNELO_DATA_HOME"

prefix=$(wine_new_prefix run)
log=$prefix/home/stderr.log
program_pid='' filter_pid=''

clean_up() {
    local status=$?
    trap - EXIT
    wine_remove "$prefix"
    [[ -z $filter_pid ]] || wait "$filter_pid" 2>/dev/null || true
    xvfb_stop
    exit "$status"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

alive() { kill -0 "$program_pid" 2>/dev/null; }

pause() { read -r -t "$1" <> <(:) || true; }

# Processor time of the program, in ticks of the kernel.
ticks() { awk '{ sub(/.*\) /, ""); print $12 + $13 }' "/proc/$program_pid/stat" 2>/dev/null; }

# The window has drawn its items when its loop has started and, between two looks, neither the picture changed nor the
# program used the processor.
wait_until_drawn() {
    local end=$((SECONDS + draw_limit)) before='' now='' ticks_before='' ticks_now=''
    until grep -q 'Message loop starting' "$log"; do
        alive || return 1
        ((SECONDS < end)) || { echo "run: the message loop did not start in $draw_limit s" >&2; return 1; }
        pause 0.05
    done
    while ((SECONDS < end)); do
        alive || return 1
        ticks_now=$(ticks)
        now=$(import -silent -window root -depth 8 rgb:- | sha256sum)
        [[ $now != "$before" || $ticks_now != "$ticks_before" ]] || return 0
        before=$now ticks_before=$ticks_now
        pause 0.4
    done
    echo "run: the window was not at rest after $draw_limit s" >&2
    return 1
}

save_picture() {
    mkdir -p "$(dirname "$shot")"
    import -silent -window root "$shot" || fail "no picture"
    (($(identify -format '%k' "$shot") > 2)) || fail "the picture is empty: $shot"
}

close_program() {
    wine_quiet "$prefix" "$(wine_windows_path "$window_tool")" VARNELO close || fail "the window is gone"
}

# The display comes first: a prefix keeps the one that its first program saw.
if [[ -n $headless ]]; then
    xvfb_start "$size"
    xdotool mousemove 0 0  # not in the middle, where it would hover an item
fi
wine_set_screen "$prefix" "$size" "$wallpaper"
[[ -z $scale ]] || wine_set_icon_scale "$prefix" "$scale"
[[ -z $dpi ]] || wine_set_dpi "$prefix" "$dpi"
if [[ -n $folder ]]; then
    wine_show_folder "$prefix" "$folder"
else
    "$varnelo_root/tools/sample_desktop.sh" "$prefix"
fi

# Wine's services live as long as the prefix and keep what they inherit, so the log is a file and not a pipe.
: >"$log"
(wine_exec "$prefix" "$wine_loader" "$(wine_windows_path "$program")" --windowed "$@" </dev/null >/dev/null 2>>"$log") &
program_pid=$!
tail -n +1 -s 0.1 -f --pid="$program_pid" "$log" 2>/dev/null | awk -v others="$others" -f "$varnelo_root/tools/log_filter.awk" >&2 &
filter_pid=$!

if [[ -n $headless ]]; then
    wait_until_drawn || fail "the program did not draw"
    save_picture
    [[ -z $seconds ]] || pause "$seconds"
    close_program
elif [[ -n $seconds ]]; then
    wait_until_drawn || fail "the program did not draw"
    pause "$seconds"
    close_program
fi

status=0
wait "$program_pid" || status=$?
[[ $status -eq 0 ]] || fail "the program ended with exit code $status"
wait "$filter_pid" 2>/dev/null || true
filter_pid=
[[ -z $headless ]] || printf '%s\n' "$shot"

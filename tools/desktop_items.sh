# shellcheck shell=bash
# shellcheck disable=SC2154  # items_folder, items_prefix and the names of wine_prefix.sh are set by the caller
# Makes real desktop items in a folder. Source this file after wine_prefix.sh; set items_folder and items_prefix first.
# Every function leaves what is already there and sets the age anew, so a second run changes nothing but times.

set -euo pipefail

make_link_tool=${VARNELO_MAKE_LINK:-$varnelo_root/build/windows/tools/make_link.exe}
pending_links=()

# age NAME DAYS: the item was last written that many days ago, and an hour, so that it is not on a boundary.
age() { touch -d "$2 days ago 1 hour ago" "$items_folder/$1"; }

# text NAME DAYS [CONTENT]
text() {
    [[ -e $items_folder/$1 ]] || printf '%s\n' "${3:-${1%.*}}" >"$items_folder/$1"
    age "$1" "$2"
}

# folder NAME DAYS [FILE INSIDE]
folder() {
    mkdir -p "$items_folder/$1"
    [[ -z ${3:-} || -e $items_folder/$1/$3 ]] || printf '%s\n' "$3" >"$items_folder/$1/$3"
    age "$1" "$2"
}

# picture NAME DAYS: one of the project's own pictures
picture() {
    [[ -e $items_folder/$1 ]] || cp "$varnelo_root/resources/wallpapers/light.jpg" "$items_folder/$1"
    age "$1" "$2"
}

# archive NAME DAYS: a zip file without members
archive() {
    [[ -e $items_folder/$1 ]] || printf 'PK\x05\x06\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0' >"$items_folder/$1"
    age "$1" "$2"
}

# web NAME DAYS ADDRESS: an Internet shortcut
web() {
    [[ -e $items_folder/$1 ]] || printf '[InternetShortcut]\r\nURL=%s\r\n' "$3" >"$items_folder/$1"
    age "$1" "$2"
}

# executable NAME DAYS: a real program that ran under no name before
executable() {
    [[ -e $items_folder/$1 ]] || cp "$wine_template/drive_c/windows/system32/winemine.exe" "$items_folder/$1"
    age "$1" "$2"
}

# link NAME TARGET: a shortcut; TARGET is a Windows path. Made by make_links, all in one program.
link() {
    [[ -e $items_folder/$1 ]] || pending_links+=("$(wine_windows_path "$items_folder/$1")" "$2")
}

make_links() {
    [[ ${#pending_links[@]} -gt 0 ]] || return 0
    wine_quiet "$items_prefix" "$(wine_windows_path "$make_link_tool")" "${pending_links[@]}"
    pending_links=()
}

# stream NAME: marks a file as downloaded. On a file system with named streams this is one; elsewhere Wine looks for a
# plain file of that name, which then is an item of its own.
stream() {
    [[ -e $items_folder/$1:Zone.Identifier ]] ||
        printf '[ZoneTransfer]\r\nZoneId=3\r\n' >"$items_folder/$1:Zone.Identifier"
}

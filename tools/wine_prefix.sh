# shellcheck shell=bash
# Private Wine prefixes: a template made once, copied for every run. Source this file.
#
# Nothing here touches the user's own Wine prefix, home or display. A prefix is a folder that the caller names and
# deletes; everything started in it ends with `wine_stop PREFIX`.
set -euo pipefail

varnelo_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
wine_template=$varnelo_root/build/wine-template
wine_cache=$varnelo_root/build/wine-cache

# The 64-bit loader itself: Debian's /usr/bin/wine prints advice about a missing 32-bit Wine on every start.
if [[ -x /usr/lib/wine/wine64 ]]; then
    wine_loader=/usr/lib/wine/wine64
else
    wine_loader=$(command -v wine64 || command -v wine || true)
fi

# wine_in PREFIX COMMAND...: runs a command of this system (wine_loader, wineserver, a script) in the prefix.
# WINEDEBUG is the caller's, silence without one. The recycle bin is the folder Trash in VARNELO_DATA_HOME, which must be
# there, or Wine deletes for good; without that variable the bin goes with the prefix. Caches of fonts and shaders are
# shared, so that starts are warm.
wine_in() {
    (wine_exec "$@")
}

# wine_exec PREFIX COMMAND...: the same in place of the calling shell, so that `wine_exec ... &` leaves the command's own
# process id in $!. (A Windows program keeps the process id of the loader that started it.)
wine_exec() {
    local prefix=$1
    shift
    exec env WINEPREFIX="$prefix" WINEARCH=win64 WINELOADER="$wine_loader" WINEDEBUG="${WINEDEBUG--all}" \
        WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=;winedbg.exe=' \
        HOME="$prefix/home" XDG_DATA_HOME="${VARNELO_DATA_HOME:-$prefix/home/data}" XDG_CACHE_HOME="$wine_cache" \
        LC_ALL=C.UTF-8 "$@"
}

# wine_run PREFIX PROGRAM.exe ARGS...: a Windows program in the prefix, with its output and exit code.
wine_run() {
    local prefix=$1
    shift
    wine_in "$prefix" "$wine_loader" "$@"
}

# wine_quiet PREFIX PROGRAM.exe ARGS...: the same with no output. Programs that make Wine start its services go this
# way: the services inherit the output for as long as they live.
wine_quiet() {
    local said status=0
    said=$(mktemp)
    WINEDEBUG=-all wine_begin "$said" wine_run "$@" || status=$?
    rm -f "$said"
    return "$status"
}

# wine_begin OUTPUT COMMAND...: runs a command that starts a Windows program, with all it says in the file OUTPUT. Once in
# a thousand times or so Wine itself ends before the program has begun: with 1, in a few milliseconds, and without a
# word. Programs that fail say why, so such a start is known, and made again.
wine_begin() {
    local output=$1 status
    shift
    for _ in 1 2 3; do
        status=0
        "$@" </dev/null >"$output" 2>&1 || status=$?
        [[ $status == 1 && ! -s $output ]] || break
        echo "Wine did not start: $*" >&2
    done
    return "$status"
}

# wine_import PREFIX FILE.reg...: takes UTF-8 registry files.
wine_import() {
    local prefix=$1 file wide
    shift
    for file in "$@"; do
        wide=$(mktemp "$prefix/drive_c/import.XXXXXX")
        { printf '\xff\xfe'; iconv -f UTF-8 -t UTF-16LE <(sed 's/$/\r/' "$file"); } >"$wide"
        wine_quiet "$prefix" regedit.exe /S "C:\\${wide##*/}"
        rm -f "$wide"
    done
}

# wine_stop PREFIX: ends every program of the prefix and waits until its server is gone.
wine_stop() {
    [[ -d $1 ]] || return 0
    wine_in "$1" wineserver -k 2>/dev/null || true
    wine_in "$1" wineserver -w 2>/dev/null || true
}

# wine_keep_server PREFIX: the same, and starts another server, which stays until it is stopped. One that was not told so
# ends soon after the last program, and the next program waits for all of Wine's services to start again.
wine_keep_server() {
    wine_stop "$1"
    wine_in "$1" wineserver -p </dev/null >/dev/null 2>&1
}

# wine_remove PREFIX: ends everything as well, and deletes the prefix.
wine_remove() {
    wine_stop "$1"
    rm -rf "$1"
}

# wine_user_folder PREFIX: the profile folder of the prefix's user, as a path of this system.
wine_user_folder() {
    local folder
    for folder in "$1"/drive_c/users/*; do
        [[ ${folder##*/} == Public ]] || { printf '%s\n' "$folder"; return; }
    done
    return 1
}

# Wine links Desktop, Documents and so on to the user's home. Nothing of ours may reach it.
wine_cut_links_to_home() {
    local user link
    user=$(wine_user_folder "$1")
    for link in "$user"/*; do
        [[ -L $link ]] || continue
        rm "$link"
        mkdir "$link"
    done
}

wine_template_fingerprint() {
    {
        cat "$varnelo_root/tools/wine_prefix.sh" "$varnelo_root/tools/wine/template.reg"
        "$wine_loader" --version
        id -un
    } | sha256sum | cut -d' ' -f1
}

# wine_make_template: makes build/wine-template unless it is there and made from the same recipe.
wine_make_template() {
    [[ -n $wine_loader ]] || { echo "Wine is not installed" >&2; return 1; }
    mkdir -p "$wine_cache"
    (
        flock 9
        local made fingerprint
        fingerprint=$(wine_template_fingerprint)
        made=$(cat "$wine_template/fingerprint" 2>/dev/null || true)
        [[ $made != "$fingerprint" ]] || exit 0
        echo "making the Wine prefix template (once)"
        rm -rf "$wine_template"
        mkdir -p "$wine_template/home/data"
        unset DISPLAY
        # The services that start here keep the descriptors they inherit; the lock must not be among them.
        {
            wine_quiet "$wine_template" wineboot.exe --init
            wine_in "$wine_template" wineserver -w
            wine_cut_links_to_home "$wine_template"
            wine_import "$wine_template" "$varnelo_root/tools/wine/template.reg"
            wine_quiet "$wine_template" winecfg.exe -v win10
            wine_stop "$wine_template"
        } 9>&-
        printf '%s\n' "$fingerprint" >"$wine_template/fingerprint"
    ) 9>"$varnelo_root/build/wine-template.lock"
}

# wine_new_prefix [NAME]: copies the template to a new folder under build/prefixes and prints its path. Wine's own 700 MB
# of programs and libraries, which nobody writes to, become hard links.
wine_new_prefix() {
    local prefix item
    wine_make_template >&2
    mkdir -p "$varnelo_root/build/prefixes"
    prefix=$(mktemp -d "$varnelo_root/build/prefixes/${1:-run}.XXXXXX")
    mkdir "$prefix/drive_c"
    cp -a "$wine_template"/{*.reg,.update-timestamp,dosdevices,home} "$prefix/"
    for item in "$wine_template"/drive_c/*; do
        if [[ ${item##*/} == users ]]; then
            cp -a "$item" "$prefix/drive_c/"
        else
            cp -al "$item" "$prefix/drive_c/"
        fi
    done
    printf '%s\n' "$prefix"
}

# wine_desktop_folder PREFIX: what the programs of the prefix see as the user's desktop folder.
wine_desktop_folder() {
    printf '%s/Desktop\n' "$(wine_user_folder "$1")"
}

# wine_show_folder PREFIX FOLDER: makes FOLDER the desktop folder. A link, as Wine itself makes them: the known folder
# keeps its path under C:, and the shell, the file system and the change notifications all follow the link.
wine_show_folder() {
    local desktop folder
    desktop=$(wine_desktop_folder "$1")
    folder=$(cd "$2" && pwd)
    rm -rf "$desktop"
    ln -s "$folder" "$desktop"
}

# wine_windows_path FILE: the file as programs of any prefix see it, through drive Z:.
wine_windows_path() {
    local path
    path=$(realpath -m "$1")
    printf 'Z:%s\n' "${path//\//\\}"
}

# wine_set_screen PREFIX WxH WALLPAPER: size of the desktop window and the picture on it. Both are read when the first
# window of the prefix opens.
wine_set_screen() {
    local file wallpaper=
    [[ -z $3 ]] || wallpaper=$(wine_windows_path "$3")
    file=$(mktemp)
    cat >"$file" <<REG
Windows Registry Editor Version 5.00

[HKEY_CURRENT_USER\\Software\\Wine\\Explorer\\Desktops]
"Default"="$2"

[HKEY_CURRENT_USER\\Control Panel\\Desktop]
"Wallpaper"="${wallpaper//\\/\\\\}"
REG
    wine_import "$1" "$file"
    rm -f "$file"
}

# wine_set_icon_scale PREFIX FACTOR: the program's iconScale setting, four bytes of a float in the registry.
wine_set_icon_scale() {
    local file bytes
    bytes=$(python3 -c 'import struct, sys; print(",".join(f"{b:02x}" for b in struct.pack("<f", float(sys.argv[1]))))' "$2")
    file=$(mktemp)
    cat >"$file" <<REG
Windows Registry Editor Version 5.00

[HKEY_CURRENT_USER\\Software\\Varnelo]
"iconScale"=hex:$bytes
REG
    wine_import "$1" "$file"
    rm -f "$file"
}

# wine_set_dpi PREFIX DPI: one value for all monitors, read when the prefix's server starts anew.
wine_set_dpi() {
    wine_quiet "$1" reg.exe add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$2" /f
    wine_stop "$1"
}

# shellcheck shell=bash
# Real named streams under Wine: an NTFS image of our own, mounted so that "file:name" opens a stream. Source this file.
#
# Wine passes a name with a colon to the file system below. An ordinary one makes a second file of it; ntfs-3g with
# streams_interface=windows makes a stream, as Windows does.
set -euo pipefail

# streams_mount FOLDER: makes FOLDER/streams.img, mounts it at FOLDER/streams and sets streams_folder. The caller must
# call streams_unmount before it deletes FOLDER, best in a trap.
streams_mount() {
    local tools=() as_root=()
    streams_folder=$1/streams
    mkdir -p "$streams_folder"
    truncate -s 16M "$1/streams.img"
    if [[ $(id -u) -ne 0 ]]; then as_root=(sudo -n); fi
    read -r -a tools <<<"$(PATH=$PATH:/usr/sbin:/sbin command -v mkntfs) $(command -v ntfs-3g)"
    # It warns that an image is no block device and cannot be booted from.
    "${tools[0]}" --quick --force --quiet --label streams "$1/streams.img" >"$1/mkntfs.log" 2>&1 ||
        { cat "$1/mkntfs.log" >&2; return 1; }
    "${as_root[@]}" "${tools[1]}" -o "streams_interface=windows,uid=$(id -u),gid=$(id -g)" \
        "$1/streams.img" "$streams_folder" </dev/null >/dev/null
    mountpoint -q "$streams_folder"
}

# streams_unmount: nothing to do when nothing is mounted.
streams_unmount() {
    [[ -n ${streams_folder:-} ]] && mountpoint -q "$streams_folder" || return 0
    if [[ $(id -u) -eq 0 ]]; then umount "$streams_folder"; else sudo -n umount "$streams_folder"; fi
}

# streams_drive PREFIX: gives the mounted image to the prefix as drive S: and exports VARNELO_STREAMS_DIR for tests.
streams_drive() {
    ln -sfn "$streams_folder" "$1/dosdevices/s:"
    export VARNELO_STREAMS_DIR="s:\\"
}

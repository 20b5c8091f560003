#!/usr/bin/env bash
# ntfs_images.sh: makes the NTFS images that tests read, build/ntfs-images/NAME.img, with a program over libntfs-3g that
# tools/ntfs_image/ holds. Nothing is mounted. Images that the same sources made are kept.
#
#   plain      records of 1,024 bytes, clusters of 4 KiB, 20,000 plain files and everything that a scan may meet
#   records4k  the same with 2,000 files and records of 4,096 bytes, which mkntfs gives to sectors of that size
#   worn       small clusters, full: a file and the table of files itself lie in hundreds of pieces
#   small      a few files, for tests that damage it
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
PATH=$PATH:/usr/sbin:/sbin

folder=build/ntfs-images
stamp=$(cat "$0" tools/ntfs_image/*.cpp tools/ntfs_image/*.h | sha256sum | cut -d' ' -f1)
[[ $(cat "$folder/stamp" 2>/dev/null || true) != "$stamp" ]] || exit 0

rm -rf "$folder"
mkdir -p "$folder"
${CXX:-g++} -std=c++20 -O1 -Wall -Wextra -Werror tools/ntfs_image/*.cpp -lntfs-3g -o "$folder/make_image"

# make NAME SIZE SECTOR CLUSTER SCENE...
make() {
    local image=$folder/$1.img
    truncate -s "$2" "$image"
    # It warns that an image is no block device and cannot be booted from.
    mkntfs --quick --force --quiet --zero-time --label "$1" --sector-size "$3" --cluster-size "$4" "$image" \
        >"$folder/mkntfs.log" 2>&1 || { cat "$folder/mkntfs.log" >&2; return 1; }
    "$folder/make_image" "$image" "${@:5}"
}
make plain 160M 512 4096 20000 names links data sparse pieces marks
make records4k 64M 4096 4096 2000 names links data sparse pieces marks

# The boot sector and its copy then speak of sectors of 512 bytes, 8 of them a cluster, 131,071 on the volume: records of
# 4,096 bytes on an ordinary disk, as Windows makes them on demand. Nothing else depends on the size of a sector.
image=$folder/records4k.img
for boot in 0 $((64 * 1024 * 1024 - 4096)); do
    printf '\x00\x02\x08' | dd of="$image" bs=1 seek=$((boot + 11)) conv=notrunc status=none
    printf '\xff\xff\x01\x00' | dd of="$image" bs=1 seek=$((boot + 40)) conv=notrunc status=none
done
# The copy belongs into the last sector.
dd if="$image" of="$image" bs=512 skip=$((boot / 512)) seek=$((boot / 512 + 7)) count=1 conv=notrunc status=none

make worn 32M 512 512 names links data marks fragments
make small 2M 512 512 links marks
echo "$stamp" >"$folder/stamp"

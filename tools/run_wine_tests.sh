#!/usr/bin/env bash
# run_wine_tests.sh [FILTER]: runs host_tests.exe and wine_tests.exe under Wine, in a fresh prefix with a display, a
# drive with named streams and an HTTPS server of its own. Prints what GoogleTest prints; a program that dies counts as
# one more failed case. The last line is "N passed, N failed"; the exit code is 0 only if nothing failed and
# something passed.
set -euo pipefail
# shellcheck source=tools/wine_prefix.sh
. "$(dirname "${BASH_SOURCE[0]}")/wine_prefix.sh"
# shellcheck source=tools/xvfb.sh
. "$varnelo_root/tools/xvfb.sh"
# shellcheck source=tools/ntfs_streams.sh
. "$varnelo_root/tools/ntfs_streams.sh"
# shellcheck source=tools/https_server.sh
. "$varnelo_root/tools/https_server.sh"

filter=${1:-*}
programs=${VARNELO_TEST_DIR:-$varnelo_root/build/windows}
time_limit=${VARNELO_TEST_SECONDS:-600}
prefix=''

clean_up() {
    local status=$?
    trap - EXIT
    [[ -z $prefix ]] || wine_stop "$prefix"
    https_stop
    streams_unmount
    [[ -z $prefix ]] || rm -rf "$prefix"
    xvfb_stop
    exit "$status"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

xvfb_start 1280x800
prefix=$(wine_new_prefix test)
if streams_mount "$prefix/home"; then
    streams_drive "$prefix"
else
    # The cases that need streams say so themselves, by failing.
    echo "no drive with named streams: mounting an NTFS image failed" >&2
fi
wine_set_screen "$prefix" 1280x800 "$varnelo_root/resources/wallpapers/dark.jpg"
https_start "$prefix/home/https" "$((2 * time_limit + 60))"
https_trust "$prefix"

run_cases() {
    (
        cd "$programs"
        wine_exec "$prefix" timeout --kill-after=10 "$time_limit" "$wine_loader" "$1" \
            --gtest_filter="$filter" --gtest_color=no
    )
}

passed=0 failed=0
for name in host_tests wine_tests; do
    log=$prefix/home/$name.log
    status=0
    wine_begin "$log" run_cases "$name.exe" || status=$?
    # A separate pass: Wine's services may keep a pipe open for as long as they live.
    tr -d '\r' <"$log"
    ok=$(grep -c '^\[       OK \]' "$log" || true)
    bad=$(grep -cE '^\[  FAILED  \] .*\([0-9]+ ms\)' "$log" || true)
    # A full run ends in a summary; without one the program died on the way, whatever its exit code says.
    if ! grep -q '^\[==========\] .* ran\.' "$log" || { ((status != 0)) && ((bad == 0)); }; then
        echo "in the end it ran $(grep -a '^\[ RUN' "$log" | tail -n 1 | tr -d '\r')"
        echo "[  FAILED  ] $name.exe ended early with exit code $status (0 ms)"
        bad=$((bad + 1))
    fi
    passed=$((passed + ok)) failed=$((failed + bad))
done
echo "$passed passed, $failed failed"
((failed == 0 && passed > 0))

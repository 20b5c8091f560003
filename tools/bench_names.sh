#!/usr/bin/env bash
# A million names of real files for the benchmarks of the index, one a line: every seventh of the lists of contents
# that `apt-file update` fetches from the Debian mirror. bench_names.sh FILE [COUNT]: with a count, the first so many.
set -euo pipefail
target=$1
count=${2:-1000000}
every=$([ $# -gt 1 ] && echo 1 || echo 7)
[ -s "$target" ] && exit

shopt -s nullglob
lists=(/var/lib/apt/lists/*_main_Contents-*)
[ ${#lists[@]} -gt 0 ] || { echo "no lists of contents: run apt-file update as root" >&2; exit 1; }
mkdir -p "$(dirname "$target")"
for list in "${lists[@]}"; do
    /usr/lib/apt/apt-helper cat-file "$list"
done | awk -v count="$count" -v every="$every" 'NR % every == 0 { sub(/[ \t]+[^ \t]*$/, ""); sub(/.*\//, ""); print; if (++names == count) exit }' >"$target.new" || true
[ "$(wc -l <"$target.new")" -eq "$count" ] || { echo "the lists of contents hold too few names" >&2; exit 1; }
mv "$target.new" "$target"

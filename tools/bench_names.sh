#!/usr/bin/env bash
# A million names of real files for the benchmarks of the index, one a line: every seventh of the lists of contents
# that `apt-file update` fetches from the Debian mirror. bench_names.sh FILE
set -euo pipefail
target=$1
[ -s "$target" ] && exit

shopt -s nullglob
lists=(/var/lib/apt/lists/*_main_Contents-*)
[ ${#lists[@]} -gt 0 ] || { echo "no lists of contents: run apt-file update as root" >&2; exit 1; }
mkdir -p "$(dirname "$target")"
for list in "${lists[@]}"; do
    /usr/lib/apt/apt-helper cat-file "$list"
done | awk 'NR % 7 == 0 { sub(/[ \t]+[^ \t]*$/, ""); sub(/.*\//, ""); print; if (++names == 1000000) exit }' >"$target.new" || true
[ "$(wc -l <"$target.new")" -eq 1000000 ] || { echo "the lists of contents hold too few names" >&2; exit 1; }
mv "$target.new" "$target"

#!/usr/bin/env bash
# The tree speaks of the system alone: no reference to outside papers, no paths of a machine, no unfinished marks.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
status=0

# The patterns are put together here so that this file does not match itself.
papers='\bs''pecs?\b|\bs''pecification\b|s''pec\.md|\bP''arts? [1-6]\.[1-9]\b|as s''pecified'
paths='/(work''|farm''|home/[a-z]+)/|/tm''p/[a-z]+/'
marks='TO''DO|FIX''ME|(^|[^X.])X''XX\b|DIS''ABLED_|GTEST_''SKIP'

report() {
    local found
    found=$(git grep -nIE "$2" -- . ':!DEVELOPERS.md' ':!*.svg' | head -n 20 || true)
    [ -z "$found" ] && return
    printf 'wording: %s\n%s\n' "$1" "$found" >&2
    status=1
}
report 'speak of the system, not of papers about it' "$papers"
report 'name no path of a machine' "$paths"
report 'finish it or leave it out' "$marks"
exit "$status"

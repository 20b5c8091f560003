#!/usr/bin/env bash
# Format, shell scripts, layers, wording and static analysis over the tracked tree. Called by ./dev lint.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
mkdir -p build
status=0

mapfile -t sources < <(git ls-files 'src/*.cpp' 'src/*.h' 'tests/*.cpp' 'tests/*.h' 'bench/*.cpp' 'bench/*.h' 'fuzz/*.cpp' 'fuzz/*.h' 'tools/*.cpp')
echo "lint: format of ${#sources[@]} files" >&2
clang-format-14 --dry-run --Werror "${sources[@]}" || status=1

echo "lint: shell scripts" >&2
mapfile -t scripts < <(git ls-files dev .ci/run '*.sh')
shellcheck -x "${scripts[@]}" || status=1

echo "lint: layers" >&2
python3 tools/check_layers.py src || status=1

echo "lint: wording" >&2
tools/check_wording.sh || status=1

echo "lint: static analysis" >&2
cmake --preset asan >build/configure-asan.log 2>&1
# A run for each file: one run over several has seen the argument list of one file as that of another.
mapfile -t portable < <(git ls-files 'src/*.cpp' | grep -vE '_win\.cpp$')
printf '%s\n' "${portable[@]}" |
    xargs -P "$(nproc)" -n 1 clang-tidy-14 --quiet -p build/asan >build/clang-tidy.log 2>&1 ||
    { grep -E 'error|warning:' build/clang-tidy.log | sort -u | head -n 60 >&2; status=1; }

[ "$status" -eq 0 ] && echo "lint: clean" >&2
exit "$status"

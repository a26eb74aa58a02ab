#!/usr/bin/env bash
# Differential check: builds the library of BASE_REV (in a temporary git
# worktree) and of the current tree, runs the same generated clips through
# both (tools/differential/differential_main.cpp) and compares, clip by clip,
# the hashes of every result, message, detector field and working plane. The
# current tree also runs with 2 and 3 execution contexts and must match its
# one-thread run. Exits non-zero on any difference.
#   tools/differential_check.sh BASE_REV [CLIPS [SEED]]
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
base_rev=${1:?usage: $0 BASE_REV [CLIPS [SEED]]}
clips=${2:-400}
seed=${3:-1}

work=$(mktemp -d /tmp/molo-differential.XXXXXX)
cleanup() {
  git -C "$root" worktree remove --force "$work/base" >/dev/null 2>&1 || true
  rm -rf "$work"
}
trap cleanup EXIT

git -C "$root" worktree add --detach "$work/base" "$base_rev" >/dev/null 2>&1

jobs=$(nproc 2>/dev/null || echo 2)
build() {  # checkout, build folder
  cmake -S "$root/tools/differential" -B "$2" -DMOLO_ROOT="$1" \
        -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  cmake --build "$2" -j"$jobs" --target molo_differential >/dev/null
}
build "$work/base" "$work/build-base"
build "$root" "$work/build-current"

MOLO_THREADS=1 "$work/build-base/molo_differential" "$clips" "$seed" >"$work/base.txt" 2>/dev/null
MOLO_THREADS=1 "$work/build-current/molo_differential" "$clips" "$seed" >"$work/current-1.txt" \
  2>"$work/stages.txt"
status=0
if ! diff "$work/base.txt" "$work/current-1.txt" >"$work/diff.txt"; then
  echo "differential check: $base_rev and the current tree differ:"
  head -40 "$work/diff.txt"
  status=1
fi
for threads in 2 3; do
  MOLO_THREADS=$threads "$work/build-current/molo_differential" "$clips" "$seed" \
    >"$work/current-$threads.txt" 2>/dev/null
  if ! diff -q "$work/current-1.txt" "$work/current-$threads.txt" >/dev/null; then
    echo "differential check: $threads threads differ from one:"
    diff "$work/current-1.txt" "$work/current-$threads.txt" | head -20
    status=1
  fi
done
if [ "$status" -eq 0 ]; then
  echo "differential check: $clips clips identical to $base_rev (1 thread) and across 1, 2, 3 threads"
  echo "messages met (stages reached):"
  cat "$work/stages.txt"
fi
exit "$status"

#!/usr/bin/env bash
# Instructions per MoloFinDetect_Execute call for every bench case, counted
# by callgrind with collection switched on only inside the timed calls, one
# thread (MOLO_THREADS=1). Unlike times, the counts do not depend on how busy
# the machine is, so two builds compare exactly:
#   bench/count_instructions.sh [BUILD_DIR]              one build (default build/)
#   bench/count_instructions.sh OLD_BUILD NEW_BUILD      both, and NEW / OLD
#   MOLO_BENCH_FILTER=1920 bench/count_instructions.sh   only cases matching a regex
#   MOLO_BENCH_PROFILE=DIR bench/count_instructions.sh   also keeps DIR/CASE.BUILD.out
#     and writes DIR/CASE.BUILD.txt, the per-function shares (callgrind_annotate)
# Each count is the mean over the timed calls of two passes of the case, after
# one uncounted pass. The build needs valgrind's valgrind/callgrind.h (Debian:
# valgrind) at compile time.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
builds=("${@:-$root/build}")
if [ ${#builds[@]} -gt 2 ]; then
  echo "usage: bench/count_instructions.sh [BUILD_DIR [OTHER_BUILD_DIR]]" >&2
  exit 2
fi
command -v valgrind >/dev/null || { echo "valgrind is not installed (Debian: valgrind)" >&2; exit 1; }
for b in "${builds[@]}"; do
  [ -x "$b/bench/molo_bench" ] || { echo "no $b/bench/molo_bench: build the project first" >&2; exit 1; }
done
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
profile=${MOLO_BENCH_PROFILE:-}
[ -z "$profile" ] || mkdir -p "$profile"

# Prints the instructions per timed call of one case in one build.
count() {
  local build=$1 case=$2 tag=$3 out calls total
  out="$scratch/$tag.out"
  if ! MOLO_THREADS=1 valgrind --tool=callgrind --collect-atstart=no --callgrind-out-file="$out" \
      "$build/bench/molo_bench" --instructions "$case" >"$scratch/stdout" 2>"$scratch/stderr"; then
    grep -v '^==' "$scratch/stderr" | grep -v '^D/MOLO' >&2 || true
    echo "-"
    return
  fi
  calls=$(awk '$2 == "calls" { print $3 }' "$scratch/stdout")
  total=$(awk '/^(summary|totals):/ { print $2; exit }' "$out")
  if [ -n "$profile" ]; then
    # Named by the build's place on the command line (a, b), so two build
    # folders that end in the same name keep their profiles apart.
    local name=${case//\//_}.$tag
    cp "$out" "$profile/$name.out"
    callgrind_annotate --inclusive=no "$out" 2>/dev/null | head -40 >"$profile/$name.txt" || true
  fi
  awk -v t="$total" -v c="$calls" 'BEGIN { printf "%.0f\n", t / c }'
}

cases=$("${builds[0]}/bench/molo_bench" --benchmark_list_tests --benchmark_filter="${MOLO_BENCH_FILTER:-.}" 2>/dev/null |
  sed 's#/manual_time$##' | grep -v '^DownSampling/')
if [ ${#builds[@]} -eq 1 ]; then
  echo "| case | frame | instructions per call |"
  echo "|---|---|---:|"
else
  echo "| case | frame | a: ${builds[0]} | b: ${builds[1]} | ratio b/a |"
  echo "|---|---|---:|---:|---:|"
fi
for case in $cases; do
  first=$(count "${builds[0]}" "$case" a)
  if [ ${#builds[@]} -eq 1 ]; then
    printf '| %s | %s | %s |\n' "${case%/*}" "${case#*/}" "$first"
  else
    second=$(count "${builds[1]}" "$case" b)
    ratio=$(awk -v a="$first" -v b="$second" 'BEGIN { if (a > 0 && b > 0) printf "%.3f", b / a; else print "-" }')
    printf '| %s | %s | %s | %s | %s |\n' "${case%/*}" "${case#*/}" "$first" "$second" "$ratio"
  fi
done

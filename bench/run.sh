#!/usr/bin/env bash
# Runs the detector benchmarks and prints a table of median times, each also
# as a ratio to a memcpy of the same frame bytes timed in the same process,
# once per thread count (MOLO_THREADS).
#   bench/run.sh [BUILD_DIR] [RUNS]           defaults: build/ and 7
#   MOLO_BENCH_THREADS="1 2" bench/run.sh     thread counts to run (default "1 2")
#   MOLO_BENCH_FILTER=1920 bench/run.sh       only the cases matching a regex
#   MOLO_BENCH_CLOCK=cpu MOLO_BENCH_THREADS=1 bench/run.sh
#                                             the process's CPU time instead of wall time
#   MOLO_BENCH_MIN_TIME=0.5 bench/run.sh      seconds each process times its case (default 0.2)
# Every case runs RUNS times, each time in a fresh process, and the table
# gives the median over those runs: where a process's buffers land in
# physical memory decides how well they share the caches, and that differs
# from one process to the next, so repetitions inside one process would only
# measure one placement. The ratio is formed per run, against that process's
# own memcpy, before the median is taken. "spread" is the largest over the
# smallest ratio of the runs: on a busy machine it shows how far to trust a
# row. The load average is printed with the table; for comparing two builds
# use bench/count_instructions.sh, which does not depend on the load.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${1:-$root/build}
runs=${2:-7}
bin="$build/bench/molo_bench"
if [ ! -x "$bin" ]; then
  echo "no $bin: build the project first (Google Benchmark, libbenchmark-dev, must be installed)" >&2
  exit 1
fi
threads_list=${MOLO_BENCH_THREADS:-1 2}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

load=$(cut -d' ' -f1-3 /proc/loadavg)
cases=$("$bin" --benchmark_list_tests --benchmark_filter="${MOLO_BENCH_FILTER:-.}" 2>"$scratch/list.err")
if [ -s "$scratch/list.err" ]; then grep -v '^D/MOLO' "$scratch/list.err" >&2 || true; fi
# One line per run: case, frame size, microseconds, memcpy microseconds and,
# for the worst cases, the time of their whole-queue clears alone.
for t in $threads_list; do
  for case in $cases; do
    for ((i = 0; i < runs; i++)); do
      MOLO_THREADS=$t "$bin" --benchmark_filter="^${case}\$" --benchmark_format=csv \
        --benchmark_min_time="${MOLO_BENCH_MIN_TIME:-0.2}" 2>"$scratch/err" |
        awk -F, '
          /^name,/ { for (i = 1; i <= NF; ++i) { h = $i; gsub(/"/, "", h); col[h] = i }; next }
          col["name"] && NF > 4 {
            if (col["error_occurred"] && $col["error_occurred"] == "true") {
              print "skipped: " $col["name"] " " $col["error_message"] > "/dev/stderr"; next }
            name = $col["name"]; gsub(/"/, "", name); sub(/\/(manual|real)_time$/, "", name)
            n = split(name, part, "/")
            us = $col["real_time"]; unit = $col["time_unit"]
            if (unit == "ns") us /= 1000; else if (unit == "ms") us *= 1000
            clears = col["clears_us"] && $col["clears_us"] != "" ? $col["clears_us"] : "-"
            print part[1], part[2], us, $col["memcpy_us"], clears }'
    done
  done >"$scratch/$t.runs"
done

echo "load average before the runs: $load, after: $(cut -d' ' -f1-3 /proc/loadavg); median of $runs runs, each in a fresh process"
awk -v threads="$threads_list" '
  FNR == 1 { t = FILENAME; sub(/.*\//, "", t); sub(/\.runs$/, "", t) }
  {
    bench = $1; size = $2
    key = bench SUBSEP size SUBSEP t
    n[key]++; us[key, n[key]] = $3; ratio[key, n[key]] = $3 / $4
    m = "Memcpy" SUBSEP size SUBSEP t; n[m]++; us[m, n[m]] = $4; ratio[m, n[m]] = 1
    if ($5 != "-") { c = key; nc[c]++; clear_us[c, nc[c]] = $5; clear_share[c, nc[c]] = $5 / $3; has_clears[bench SUBSEP size] = 1 }
    if (!(bench in seen_bench)) { seen_bench[bench] = 1; benches[++nb] = bench }
    if (!(size in seen_size)) { seen_size[size] = 1; sizes[++ns] = size }
  }
  function sorted(key, arr, out,    i, j, k, tmp) {
    k = n[key]
    for (i = 1; i <= k; i++) out[i] = arr[key, i]
    for (i = 2; i <= k; i++) { tmp = out[i]; for (j = i - 1; j >= 1 && out[j] > tmp; j--) out[j + 1] = out[j]; out[j + 1] = tmp }
    return k
  }
  function median(key, arr,    k, a) {
    k = sorted(key, arr, a); if (k == 0) return ""
    return k % 2 ? a[(k + 1) / 2] : (a[k / 2] + a[k / 2 + 1]) / 2
  }
  function cmedian(key, arr,    i, j, k, tmp, a) {
    k = nc[key]; if (k == 0) return ""
    for (i = 1; i <= k; i++) a[i] = arr[key, i]
    for (i = 2; i <= k; i++) { tmp = a[i]; for (j = i - 1; j >= 1 && a[j] > tmp; j--) a[j + 1] = a[j]; a[j + 1] = tmp }
    return k % 2 ? a[(k + 1) / 2] : (a[k / 2] + a[k / 2 + 1]) / 2
  }
  function spread(key,    k, a) { k = sorted(key, ratio, a); return a[1] > 0 ? a[k] / a[1] : 0 }
  END {
    nt = split(threads, ts, " ")
    printf "| case | frame |"
    for (i = 1; i <= nt; ++i) printf " %s thread%s: us | x memcpy | spread |", ts[i], ts[i] == 1 ? "" : "s"
    printf "\n|---|---|"
    for (i = 1; i <= nt; ++i) printf "---:|---:|---:|"
    printf "\n"
    benches[0] = "Memcpy"
    for (b = 0; b <= nb; ++b) for (s = 1; s <= ns; ++s) {
      if (n[benches[b], sizes[s], ts[1]] == 0) continue
      printf "| %s | %s |", benches[b], sizes[s]
      for (i = 1; i <= nt; ++i) {
        key = benches[b] SUBSEP sizes[s] SUBSEP ts[i]
        if (n[key] == 0) { printf " - | - | - |"; continue }
        if (b == 0) printf " %.1f | 1.00 | |", median(key, us)
        else printf " %.1f | %.2f | %.2f |", median(key, us), median(key, ratio), spread(key)
      }
      printf "\n"
    }
    printf "\nThe worst cases against their floor, the whole-queue clears of their region growths timed alone:\n\n"
    printf "| case | frame |"
    for (i = 1; i <= nt; ++i) printf " %s thread%s: clears us | share of the call |", ts[i], ts[i] == 1 ? "" : "s"
    printf "\n|---|---|"
    for (i = 1; i <= nt; ++i) printf "---:|---:|"
    printf "\n"
    for (b = 1; b <= nb; ++b) for (s = 1; s <= ns; ++s) {
      if (!((benches[b] SUBSEP sizes[s]) in has_clears)) continue
      printf "| %s | %s |", benches[b], sizes[s]
      for (i = 1; i <= nt; ++i) {
        key = benches[b] SUBSEP sizes[s] SUBSEP ts[i]
        if (nc[key] == 0) { printf " - | - |"; continue }
        printf " %.1f | %.0f%% |", cmedian(key, clear_us), 100 * cmedian(key, clear_share)
      }
      printf "\n"
    }
  }' $(for t in $threads_list; do echo "$scratch/$t.runs"; done)

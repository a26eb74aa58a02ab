#!/usr/bin/env bash
# Runs the detector benchmarks and prints a table of median times, each also
# as a ratio to a memcpy of the same frame bytes measured the same way, once
# per thread count (MOLO_THREADS).
#   bench/run.sh [BUILD_DIR] [RUNS]           defaults: build/ and 7
#   MOLO_BENCH_THREADS="1 2" bench/run.sh     thread counts to run (default "1 2")
#   MOLO_BENCH_FILTER=1920 bench/run.sh       only the cases matching a regex
# Every case runs RUNS times, each time in a fresh process, and the table
# gives the median over those runs. Where a process's buffers land in
# physical memory decides how well they share the caches, and that differs
# from one process to the next (by up to 1.4x for the same case here), so
# repetitions inside one process would only measure one placement. The load
# of the machine is printed with the table: timings taken on a busy machine
# are not comparable.
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
cases=$("$bin" --benchmark_list_tests --benchmark_filter="${MOLO_BENCH_FILTER:-.}")
# One line per run: case name, then the time of that run in microseconds.
for t in $threads_list; do
  for case in $cases; do
    for ((i = 0; i < runs; i++)); do
      MOLO_THREADS=$t "$bin" --benchmark_filter="^${case}\$" --benchmark_format=csv 2>/dev/null |
        awk -F, '$1 !~ /^name/ && NF > 4 {
          name = $1; gsub(/"/, "", name); us = $3
          if ($5 == "ns") us /= 1000; else if ($5 == "ms") us *= 1000
          print name, us }'
    done
  done >"$scratch/$t.runs"
done

echo "load average before the runs: $load; median of $runs runs, each in a fresh process"
awk -v threads="$threads_list" '
  FNR == 1 { t = FILENAME; sub(/.*\//, "", t); sub(/\.runs$/, "", t) }
  {
    name = $1; sub(/\/real_time$/, "", name); sub(/^BM_/, "", name)
    split(name, part, "/"); bench = part[1]; size = part[2] "x" part[3]
    key = bench SUBSEP size SUBSEP t
    n[key]++; v[key, n[key]] = $2
    if (!(bench in seen_bench)) { seen_bench[bench] = 1; benches[++nb] = bench }
    if (!(size in seen_size)) { seen_size[size] = 1; sizes[++ns] = size }
  }
  function median(key,    i, j, k, tmp, a) {
    k = n[key]; if (k == 0) return ""
    for (i = 1; i <= k; i++) a[i] = v[key, i]
    for (i = 2; i <= k; i++) { tmp = a[i]; for (j = i - 1; j >= 1 && a[j] > tmp; j--) a[j + 1] = a[j]; a[j + 1] = tmp }
    return k % 2 ? a[(k + 1) / 2] : (a[k / 2] + a[k / 2 + 1]) / 2
  }
  END {
    nt = split(threads, ts, " ")
    printf "| case | frame |"
    for (i = 1; i <= nt; ++i) printf " %s thread%s: us | x memcpy |", ts[i], ts[i] == 1 ? "" : "s"
    printf "\n|---|---|"
    for (i = 1; i <= nt; ++i) printf "---:|---:|"
    printf "\n"
    for (b = 1; b <= nb; ++b) for (s = 1; s <= ns; ++s) {
      if (n[benches[b], sizes[s], ts[1]] == 0) continue
      printf "| %s | %s |", benches[b], sizes[s]
      for (i = 1; i <= nt; ++i) {
        us = median(benches[b] SUBSEP sizes[s] SUBSEP ts[i])
        floor = median("Memcpy" SUBSEP sizes[s] SUBSEP ts[i])
        if (us == "") { printf " - | - |"; continue }
        ratio = floor > 0 ? sprintf("%.2f", us / floor) : "-"
        printf " %.1f | %s |", us, ratio
      }
      printf "\n"
    }
  }' $(for t in $threads_list; do echo "$scratch/$t.runs"; done)

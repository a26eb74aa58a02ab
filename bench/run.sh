#!/usr/bin/env bash
# Runs the detector benchmarks with repetitions and prints a table of median
# times, each also as a ratio to a memcpy of the same frame bytes measured in
# the same run, once per thread count (MOLO_THREADS).
#   bench/run.sh [BUILD_DIR] [REPETITIONS]    defaults: build/ and 10
#   MOLO_BENCH_THREADS="1 2" bench/run.sh     thread counts to run (default "1 2")
#   MOLO_BENCH_FILTER=1920 bench/run.sh       only the cases matching a regex
# The load of the machine is printed with the table: timings taken on a busy
# machine are not comparable.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${1:-$root/build}
reps=${2:-10}
bin="$build/bench/molo_bench"
if [ ! -x "$bin" ]; then
  echo "no $bin: build the project first (Google Benchmark, libbenchmark-dev, must be installed)" >&2
  exit 1
fi
threads_list=${MOLO_BENCH_THREADS:-1 2}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# Every case runs in a process of its own: what the cases before it left in
# the heap would otherwise decide where its frames and buffers lie, and with
# that, how well they share the caches (differences of up to 1.5x were seen).
cases=$("$bin" --benchmark_list_tests --benchmark_filter="${MOLO_BENCH_FILTER:-.}")
for t in $threads_list; do
  for case in $cases; do
    MOLO_THREADS=$t "$bin" --benchmark_repetitions="$reps" --benchmark_report_aggregates_only=true \
      --benchmark_filter="^${case}\$" --benchmark_format=csv 2>/dev/null
  done | awk -F, 'NR == 1 || $1 != "name"' >"$scratch/$t.csv"
done

echo "load average before the table: $(cut -d' ' -f1-3 /proc/loadavg); $reps repetitions, medians"
# name,iterations,real_time,cpu_time,time_unit,...,error_occurred,error_message
awk -F, -v threads="$threads_list" '
  FNR == 1 { t = FILENAME; sub(/.*\//, "", t); sub(/\.csv$/, "", t) }
  $1 ~ /_median"?$/ {
    name = $1; gsub(/"/, "", name); sub(/\/real_time_median$/, "", name); sub(/^BM_/, "", name)
    split(name, part, "/"); bench = part[1]; size = part[2] "x" part[3]
    us = $3; if ($5 == "ns") us /= 1000; else if ($5 == "ms") us *= 1000
    time[bench, size, t] = us
    if (!(bench in seen_bench)) { seen_bench[bench] = 1; benches[++nb] = bench }
    if (!(size in seen_size)) { seen_size[size] = 1; sizes[++ns] = size }
  }
  END {
    nt = split(threads, ts, " ")
    printf "| case | frame |"
    for (i = 1; i <= nt; ++i) printf " %s thread%s: us | x memcpy |", ts[i], ts[i] == 1 ? "" : "s"
    printf "\n|---|---|"
    for (i = 1; i <= nt; ++i) printf "---:|---:|"
    printf "\n"
    for (b = 1; b <= nb; ++b) for (s = 1; s <= ns; ++s) {
      if (!((benches[b], sizes[s], ts[1]) in time)) continue
      printf "| %s | %s |", benches[b], sizes[s]
      for (i = 1; i <= nt; ++i) {
        us = time[benches[b], sizes[s], ts[i]]; floor = time["Memcpy", sizes[s], ts[i]]
        if (us == "") { printf " - | - |"; continue }
        ratio = floor > 0 ? sprintf("%.2f", us / floor) : "-"
        printf " %.1f | %s |", us, ratio
      }
      printf "\n"
    }
  }' $(for t in $threads_list; do echo "$scratch/$t.csv"; done)

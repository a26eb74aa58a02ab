#!/usr/bin/env bash
# Installs what fuzzing needs (Debian/Ubuntu packages, when run as root or
# through sudo), builds the libFuzzer targets with clang in build-fuzz/ and
# runs each for a bounded time on a fresh copy of its seed corpus. Any crash,
# sanitizer report, leak, time-out or out-of-memory fails the script.
#   tools/run_fuzzers.sh                  every tests/fuzz/<name>_fuzzer.cpp
#   tools/run_fuzzers.sh read_tiff_fuzzer only the fuzzers named
# MOLO_FUZZ_SECONDS sets the time per fuzzer (default 60). A fuzzer's seeds
# are tests/fuzz/corpus/<name>/ (without the _fuzzer suffix), if present; a
# crashing input is kept as build-fuzz/artifacts/<fuzzer>-crash-<hash>.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build="$root/build-fuzz"
seconds=${MOLO_FUZZ_SECONDS:-60}

# libclang-rt-14-dev holds libFuzzer and the sanitizer runtimes of Debian
# bookworm's clang; clang itself does not pull it in.
packages=(cmake make clang libclang-rt-14-dev libgtest-dev)
source "$root/tools/install_packages.sh"
install_missing_packages "${packages[@]}"

if [ $# -gt 0 ]; then
  fuzzers=("$@")
else
  fuzzers=()
  for source in "$root"/tests/fuzz/*_fuzzer.cpp; do
    fuzzers+=("$(basename "$source" .cpp)")
  done
fi

jobs=$(nproc 2>/dev/null || echo 2)
cmake -S "$root" -B "$build" -DMOLO_FUZZ=ON \
      -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DMOLO_BUILD_BENCHMARKS=OFF
cmake --build "$build" -j"$jobs" --target "${fuzzers[@]}"

export ASAN_OPTIONS=${ASAN_OPTIONS:-abort_on_error=1:detect_leaks=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-halt_on_error=1:print_stacktrace=1}
mkdir -p "$build/artifacts"
failed=()
for fuzzer in "${fuzzers[@]}"; do
  corpus="$build/corpus/$fuzzer"
  rm -rf "$corpus"
  mkdir -p "$corpus"
  seeds="$root/tests/fuzz/corpus/${fuzzer%_fuzzer}"
  if [ -d "$seeds" ]; then cp -r "$seeds"/. "$corpus"/; fi
  echo "== $fuzzer: ${seconds} s from $(find "$corpus" -type f | wc -l) seeds"
  # The targets' own messages on standard error (close_fd_mask=2) would only
  # slow the run; libFuzzer's and the sanitizers' reports still show.
  if ! "$build/tests/fuzz/$fuzzer" -max_total_time="$seconds" -close_fd_mask=2 -print_final_stats=1 \
       -artifact_prefix="$build/artifacts/$fuzzer-" "$corpus"; then
    failed+=("$fuzzer")
  fi
done
if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzzers failed: ${failed[*]}" >&2
  exit 1
fi
echo "fuzzers passed: ${fuzzers[*]}"

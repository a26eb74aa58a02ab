#!/usr/bin/env bash
# Installs what the build needs (Debian/Ubuntu packages, when run as root or
# through sudo), configures, builds and runs every test.
#   tools/run_tests.sh              plain build in build/ (the system compiler)
#   tools/run_tests.sh --sanitize   AddressSanitizer + UBSan build in build-sanitize/
#   tools/run_tests.sh --clang      clang with its own OpenMP runtime in build-clang/
# With CI=true, warnings fail the build.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build="$root/build"
cmake_args=()
case "${1:-}" in
  "") ;;
  --sanitize) build="$root/build-sanitize"; cmake_args+=(-DMOLO_SANITIZE=ON) ;;
  --clang) build="$root/build-clang"; cmake_args+=(-DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++) ;;
  *) echo "usage: $0 [--sanitize | --clang]" >&2; exit 2 ;;
esac
if [ "${CI:-}" = "true" ]; then cmake_args+=(-DMOLO_WERROR=ON); fi

packages=(cmake make g++ binutils pkg-config libgtest-dev libbenchmark-dev
          libtiff-tools python3-pil python3-tifffile)
[ "${1:-}" = "--clang" ] && packages+=(clang libomp-dev)
if command -v dpkg >/dev/null 2>&1; then
  missing=()
  for p in "${packages[@]}"; do
    dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
  done
  if [ ${#missing[@]} -gt 0 ]; then
    if [ "$(id -u)" -eq 0 ]; then
      sudo=()
    elif command -v sudo >/dev/null 2>&1; then
      sudo=(sudo)
    else
      echo "missing packages: ${missing[*]} (run as root or install them)" >&2
      exit 1
    fi
    echo "installing: ${missing[*]}"
    "${sudo[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq "${missing[@]}"
  fi
fi

jobs=$(nproc 2>/dev/null || echo 2)
cmake -S "$root" -B "$build" "${cmake_args[@]}"
cmake --build "$build" -j"$jobs"
ctest --test-dir "$build" --output-on-failure -j"$jobs"

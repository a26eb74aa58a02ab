#!/usr/bin/env bash
# From a fresh checkout to the detector at work: installs what the build
# needs (Debian/Ubuntu packages, when run as root or through sudo), builds
# molo-fingerdetect in build-demo/ and runs its built-in demo clip. Any
# arguments go to the demo, e.g.
#   tools/demo.sh --annotate demo.y4m    also write the clip with the decisions drawn on it
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build="$root/build-demo"

packages=(cmake make g++)
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
cmake -S "$root" -B "$build" -DMOLO_BUILD_TESTS=OFF -DMOLO_BUILD_BENCHMARKS=OFF >/dev/null
cmake --build "$build" --target molo-fingerdetect -j"$jobs" >/dev/null
echo "built $build/tools/fingerdetect/molo-fingerdetect" >&2
exec "$build/tools/fingerdetect/molo-fingerdetect" demo "$@"

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
source "$root/tools/install_packages.sh"
install_missing_packages "${packages[@]}"

jobs=$(nproc 2>/dev/null || echo 2)
cmake -S "$root" -B "$build" -DMOLO_BUILD_TESTS=OFF -DMOLO_BUILD_BENCHMARKS=OFF >/dev/null
cmake --build "$build" --target molo-fingerdetect -j"$jobs" >/dev/null
echo "built $build/tools/fingerdetect/molo-fingerdetect" >&2
exec "$build/tools/fingerdetect/molo-fingerdetect" demo "$@"

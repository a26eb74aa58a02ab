#!/usr/bin/env bash
# Installs a built tree into a scratch prefix and builds the C consumer
# against it twice: through the CMake package and through pkg-config. Both
# programs must run.
#   tools/check_install.sh [BUILD_DIR]    (default: build/)
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"

cmake --install "$build" --prefix "$prefix" >/dev/null
libdir=$(dirname "$(find "$prefix" -name 'libMoloFingerDetect.so' -print -quit)")
for f in include/MoloFingerDetect.h include/molo/debug.h "${libdir#$prefix/}/pkgconfig/MoloFingerDetect.pc" \
         "${libdir#$prefix/}/cmake/MoloFingerDetect/MoloFingerDetectConfig.cmake"; do
  [ -e "$prefix/$f" ] || { echo "not installed: $f" >&2; exit 1; }
done

# 1. CMake package.
cmake -S "$root/tests/install" -B "$work/cmake-consumer" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/cmake-consumer" >/dev/null
LD_LIBRARY_PATH="$libdir" "$work/cmake-consumer/installed_consumer"

# 2. pkg-config.
export PKG_CONFIG_PATH="$libdir/pkgconfig"
cc -std=c99 "$root/tests/api/consumer_main.c" $(pkg-config --cflags --libs MoloFingerDetect) \
   -o "$work/pkgconfig-consumer"
LD_LIBRARY_PATH="$libdir" "$work/pkgconfig-consumer"
echo "installed package: consumed through CMake and pkg-config"

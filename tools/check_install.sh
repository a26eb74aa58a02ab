#!/usr/bin/env bash
# Installs a built tree into a scratch prefix and builds the C consumer
# against it twice: through the CMake package and through pkg-config. Both
# programs must run.
#   tools/check_install.sh [BUILD_DIR]    (default: build/)
# For a cross build, CC names its C compiler, MOLO_TOOLCHAIN_FILE its CMake
# toolchain file and MOLO_TARGET_RUNNER the emulator that runs its programs.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"
read -r -a runner <<<"${MOLO_TARGET_RUNNER:-}"
toolchain=()

cmake --install "$build" --prefix "$prefix" >/dev/null
library=$(find "$prefix" \( -name 'libMoloFingerDetect.so' -o -name 'libMoloFingerDetect.a' \) -print -quit)
libdir=$(dirname "$library")
# A static library's own dependencies come from the .pc file's private libraries.
pkg_static=()
[[ $library == *.a ]] && pkg_static=(--static)
# A cross toolchain looks for packages inside its sysroot only; it is shown
# the package's folder directly.
[ -n "${MOLO_TOOLCHAIN_FILE:-}" ] && toolchain=(-DCMAKE_TOOLCHAIN_FILE="$MOLO_TOOLCHAIN_FILE"
                                            -DMoloFingerDetect_DIR="$libdir/cmake/MoloFingerDetect")
for f in include/MoloFingerDetect.h include/molo/debug.h "${libdir#$prefix/}/pkgconfig/MoloFingerDetect.pc" \
         "${libdir#$prefix/}/cmake/MoloFingerDetect/MoloFingerDetectConfig.cmake"; do
  [ -e "$prefix/$f" ] || { echo "not installed: $f" >&2; exit 1; }
done

# 1. CMake package.
cmake -S "$root/tests/install" -B "$work/cmake-consumer" -DCMAKE_PREFIX_PATH="$prefix" \
      ${toolchain[@]+"${toolchain[@]}"} >/dev/null
cmake --build "$work/cmake-consumer" >/dev/null
LD_LIBRARY_PATH="$libdir" ${runner[@]+"${runner[@]}"} "$work/cmake-consumer/installed_consumer"

# 2. pkg-config.
export PKG_CONFIG_PATH="$libdir/pkgconfig"
${CC:-cc} -std=c99 "$root/tests/api/consumer_main.c" $(pkg-config ${pkg_static[@]+"${pkg_static[@]}"} --cflags --libs MoloFingerDetect) \
   -o "$work/pkgconfig-consumer"
LD_LIBRARY_PATH="$libdir" ${runner[@]+"${runner[@]}"} "$work/pkgconfig-consumer"
echo "installed package: consumed through CMake and pkg-config"

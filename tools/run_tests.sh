#!/usr/bin/env bash
# Installs what the build needs (Debian/Ubuntu packages, when run as root or
# through sudo), configures, builds and runs every test.
#   tools/run_tests.sh              plain build in build/ (the system compiler)
#                                   and then tools/run_web_tests.sh (WebAssembly, the page in Chromium)
#   tools/run_tests.sh --sanitize   AddressSanitizer + UBSan build in build-sanitize/
#   tools/run_tests.sh --clang      clang build in build-clang/
#   tools/run_tests.sh --armhf      32-bit ARM (ARMv7-A, NEON, hard float) cross build
#                                   in build-armhf/, tests run under qemu-arm
#   tools/run_tests.sh --aarch64    64-bit ARM cross build in build-aarch64/, tests
#                                   run under qemu-aarch64
# The cross builds leave out the soak test (labelled soak): it watches the
# memory of a native process, and emulation would only make it slow.
# With CI=true, warnings fail the build.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build="$root/build"
cmake_args=()
ctest_args=()
case "${1:-}" in
  "") ;;
  --sanitize) build="$root/build-sanitize"; cmake_args+=(-DMOLO_SANITIZE=ON) ;;
  --clang) build="$root/build-clang"; cmake_args+=(-DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++) ;;
  --armhf | --aarch64)
    target=${1#--}
    build="$root/build-$target"
    cmake_args+=(-DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchains/$target.cmake")
    ctest_args+=(-LE soak) ;;
  *) echo "usage: $0 [--sanitize | --clang | --armhf | --aarch64]" >&2; exit 2 ;;
esac
if [ "${CI:-}" = "true" ]; then cmake_args+=(-DMOLO_WERROR=ON); fi

packages=(cmake make g++ binutils pkg-config libgtest-dev libbenchmark-dev
          python3-pil)
case "${1:-}" in
  --clang) packages+=(clang) ;;
  --armhf) packages+=(g++-arm-linux-gnueabihf qemu-user) ;;
  --aarch64) packages+=(g++-aarch64-linux-gnu qemu-user) ;;
esac
# The plain build also builds and tests the bindings: the Java one on the
# host JVM, and the Python module with its pip install (bindings/python),
# through the interpreter that sees Debian's python3 packages.
if [ -z "${1:-}" ]; then
  packages+=(default-jdk-headless junit5
             pybind11-dev python3-pybind11 python3-dev python3-numpy python3-pytest
             python3-setuptools python3-wheel python3-venv python3-pip)
  # The evaluation's plots (its report test decodes them with python3-pil).
  packages+=(python3-matplotlib)
  cmake_args+=(-DMOLO_BUILD_JAVA=ON -DMOLO_BUILD_PYTHON=ON -DPython3_EXECUTABLE=/usr/bin/python3)
fi
source "$root/tools/install_packages.sh"
install_missing_packages "${packages[@]}"

jobs=$(nproc 2>/dev/null || echo 2)
cmake -S "$root" -B "$build" "${cmake_args[@]}"
cmake --build "$build" -j"$jobs"
ctest --test-dir "$build" --output-on-failure -j"$jobs" ${ctest_args[@]+"${ctest_args[@]}"}

# The WebAssembly build and the page in a real browser, once, after the plain build.
if [ -z "${1:-}" ]; then
  bash "$root/tools/run_web_tests.sh" "$build"
fi

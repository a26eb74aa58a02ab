#!/usr/bin/env bash
# Builds the WebAssembly module and the page with emcmake (in build-web/, the
# page in build-web/www/) and checks them against the native tool:
#   1. under Node, the page's module gives the native molo-fingerdetect's
#      results and log lines over clips of several sizes, orientations and
#      chroma orders;
#   2. in headless Chromium with a fake camera playing the demo clip, the
#      page reports the finger, and every frame it analysed is one of the
#      clip's.
#   tools/run_web_tests.sh [NATIVE_BUILD]   (default build/; the tool is built there if needed)
# Screenshots and scratch files go to build-web/web-tests/. When the packages
# cannot be installed (no root or sudo, no package source), the checks are
# skipped with a message and the script succeeds.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
native=${1:-$root/build}
web="$root/build-web"
work="$web/web-tests"
started=$SECONDS

source "$root/tools/install_packages.sh"
if ! install_missing_packages cmake make g++ emscripten chromium chromium-driver python3-selenium \
     python3-numpy; then
  echo "run_web_tests: SKIPPED: emscripten, chromium, chromium-driver or python3-selenium could not be installed" >&2
  exit 0
fi
python=/usr/bin/python3
jobs=$(nproc 2>/dev/null || echo 2)
werror=()
if [ "${CI:-}" = "true" ]; then werror=(-DMOLO_WERROR=ON); fi

# The native tool, the reference.
[ -f "$native/CMakeCache.txt" ] || cmake -S "$root" -B "$native" ${werror[@]+"${werror[@]}"}
cmake --build "$native" -j"$jobs" --target molo-fingerdetect
tool="$native/tools/fingerdetect/molo-fingerdetect"

emcmake cmake -S "$root" -B "$web" -DCMAKE_BUILD_TYPE=Release ${werror[@]+"${werror[@]}"} >/dev/null
cmake --build "$web" -j"$jobs"
built=$SECONDS

rm -rf "$work"
mkdir -p "$work"
echo "== WebAssembly under Node against the native tool"
"$python" "$root/web/tests/wasm_exactness.py" "$tool" "$web" "$work/node"
checked=$SECONDS
echo "== the page in headless Chromium"
mkdir -p "$work/browser"
timeout 900 "$python" "$root/web/tests/browser_test.py" "$tool" "$web" "$work/browser"
echo "run_web_tests: passed in $((SECONDS - started)) s (builds $((built - started)) s," \
     "Node $((checked - built)) s, browser $((SECONDS - checked)) s); screenshots in $work/browser"

#!/usr/bin/env bash
# Time per frame while every core is kept busy by other processes, with the
# default thread setting and with MOLO_THREADS=1, as a camera app sees it on a
# phone whose cores also run the camera pipeline, the UI and an encoder.
#   bench/latency_under_load.sh [BUILD_DIR] [ROUNDS]    defaults: build/ and 7
#   MOLO_LOAD=0 bench/latency_under_load.sh             the same without the load
# Clips: the tool's demo (40 frames of 640x480) and a 1920x1080 clip made
# here from the demo's scene drawn at three times its scale (12 frames:
# empty, a finger entering, covering, leaving), streamed 10 times as raw NV21
# through standard input. Each round runs every clip once per setting, the
# two settings back to back, so they share the same moment of the machine.
# The table gives, per clip and setting, the median over the rounds of the
# run's mean and 99th percentile per frame (as molo-fingerdetect prints them;
# for the 40-frame demo the 99th percentile is its slowest frame) and their
# range. The load: one shell loop per core, each ending by itself after
# MOLO_LOAD_SECONDS (default 600) and killed by its process id when the
# script ends.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${1:-$root/build}
rounds=${2:-7}
tool="$build/tools/fingerdetect/molo-fingerdetect"
if [ ! -x "$tool" ]; then
  echo "no $tool: build the project first" >&2
  exit 1
fi
source "$root/tools/install_packages.sh"
install_missing_packages python3 python3-numpy

scratch=$(mktemp -d)
spinners=()
cleanup() {
  local pid
  for pid in ${spinners[@]+"${spinners[@]}"}; do kill "$pid" 2>/dev/null || true; done
  for pid in ${spinners[@]+"${spinners[@]}"}; do wait "$pid" 2>/dev/null || true; done
  rm -rf "$scratch"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

# The 1920x1080 clip: the demo's tiles, texture and shaded finger disc (see
# tools/fingerdetect/demo_scene.cpp), drawn at three times the scale.
# Debian's interpreter, which sees python3-numpy, even if another comes first
# on the PATH.
python=python3
if [ -x /usr/bin/python3 ]; then python=/usr/bin/python3; fi
"$python" - "$scratch/clip1080.nv21" <<'EOF'
import sys
import numpy as np

W, H, S = 1920, 1080, 3.0

def scene(x, y):
    dark = ((x // 64) + (y // 64)) % 2 == 0
    luma = np.where(dark, 85.0, 125.0) + 30.0 * np.sin(x * 0.35) * np.sin(y * 0.27) \
        + 12.0 * np.sin((x + 2 * y) * 0.05)
    return luma, np.where(dark, 108.0, 116.0), np.where(dark, 152.0, 142.0)

def finger(x, y, radius, cy):
    dy = y - cy
    d2 = x * x + dy * dy
    inside = d2 <= radius * radius if radius > 0 else np.zeros_like(d2, dtype=bool)
    shade = np.sqrt(d2) / max(radius, 1)
    return inside, 150.0 - 25.0 * shade * shade - 0.04 * dy, 148.0 - 3.0 * shade, 117.0 + 2.0 * shade

def radius_at(f):  # the demo's timeline, in demo pixels
    if f < 8 or f >= 32: return 0
    if f < 14: return 144 * (f - 7) // 7
    if f < 26: return 144
    return 144 * (32 - f) // 7

byte = lambda v: np.clip(v, 0, 255).astype(np.uint8)
with open(sys.argv[1], "wb") as out:
    for f in (0, 4, 9, 11, 13, 15, 18, 21, 24, 27, 30, 34):
        pan = 3 * f
        radius = radius_at(f)
        cy = 240 + 8 + 6.0 * np.sin(f * 0.6)
        # Luma at pixel centres, chroma at 2 x 2 block centres, in demo units.
        y, x = np.mgrid[0:H, 0:W] / S
        inside, fl, _, _ = finger(x + 0.5 / S, y + 0.5 / S, radius, cy)
        sl, _, _ = scene(np.floor(x) + pan, np.floor(y))
        out.write(byte(np.where(inside, fl, sl)).tobytes())
        y, x = np.mgrid[0:H // 2, 0:W // 2] * 2 / S
        inside, _, fv, fu = finger(x + 1.0 / S, y + 1.0 / S, radius, cy)
        _, sv, su = scene(np.floor(x) + pan, np.floor(y))
        vu = np.empty((H // 2, W), np.uint8)
        vu[:, 0::2] = byte(np.where(inside, fv, sv))
        vu[:, 1::2] = byte(np.where(inside, fu, su))
        out.write(vu.tobytes())
EOF

if [ "${MOLO_LOAD:-1}" != 0 ]; then
  seconds=${MOLO_LOAD_SECONDS:-600}
  for ((i = 0; i < $(nproc); i++)); do
    bash -c 'end=$((SECONDS + $1)); while ((SECONDS < end)); do :; done' spin "$seconds" &
    spinners+=($!)
  done
  load="every core busy ($(nproc) spinning processes)"
else
  load="no added load"
fi

# One line per run: clip, setting, mean, 99th percentile.
run() {  # clip setting command...
  local clip=$1 setting=$2
  shift 2
  "$@" 2>&1 >/dev/null | awk -v clip="$clip" -v s="$setting" \
    '/^time per frame/ { gsub(/,/, ""); print clip, s, $5, $12 }'
}
for ((r = 0; r < rounds; r++)); do
  for setting in default 1; do
    if [ "$setting" = default ]; then env=(env -u MOLO_THREADS); else env=(env MOLO_THREADS=1); fi
    run demo "$setting" "${env[@]}" "$tool" demo
    run 1920x1080 "$setting" bash -c \
      'for i in 1 2 3 4 5 6 7 8 9 10; do cat "$1"; done | "${@:2}" --size 1920x1080 -' \
      stream "$scratch/clip1080.nv21" "${env[@]}" "$tool"
  done
done >"$scratch/runs"

echo "$load; load average before: $(cut -d' ' -f1-3 /proc/loadavg); $rounds rounds"
echo "milliseconds per frame: median over the rounds [range]"
awk '
  function median(list,   n, a, i, j, t) {
    n = split(list, a, " ")
    for (i = 2; i <= n; i++) for (j = i; j > 1 && a[j - 1] + 0 > a[j] + 0; j--) {
      t = a[j]; a[j] = a[j - 1]; a[j - 1] = t }
    return (n % 2 ? a[(n + 1) / 2] : (a[n / 2] + a[n / 2 + 1]) / 2) " [" a[1] "-" a[n] "]"
  }
  { key = $1 " " $2; mean[key] = mean[key] " " $3; p99[key] = p99[key] " " $4
    if (!(key in seen)) { seen[key] = 1; order[++k] = key } }
  END {
    printf "%-10s %-8s %-28s %-28s\n", "clip", "threads", "mean", "99th percentile"
    for (i = 1; i <= k; i++) {
      split(order[i], part, " ")
      printf "%-10s %-8s %-28s %-28s\n", part[1], part[2], median(mean[order[i]]), median(p99[order[i]])
    }
  }' "$scratch/runs"

#!/usr/bin/env bash
# Runs the built molo-fingerdetect program as a user would: a small YUV4MPEG2
# stream piped through standard input, whole and cut short, checking the exit
# status, the per-frame lines and the summary of the process itself.
#   cli_test.sh TOOL
# MOLO_TARGET_RUNNER, when set, is the command that runs TOOL (an emulator).
set -euo pipefail
read -r -a runner <<<"${MOLO_TARGET_RUNNER:-}"
tool=("${runner[@]}" "${1:?usage: cli_test.sh TOOL}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() { echo "FAIL: $*" >&2; exit 1; }

# A 4:2:0 stream of `frames` flat grey 64 x 48 pictures (3072 + 2 * 768 bytes each).
stream() {
  local frames=$1
  printf 'YUV4MPEG2 W64 H48 F30:1 Ip A1:1 C420jpeg XCOLORRANGE=LIMITED\n'
  for ((i = 0; i < frames; i++)); do
    printf 'FRAME\n'
    head -c 4608 /dev/zero | tr '\0' '\200'
  done
}

stream 3 | "${tool[@]}" - >"$work/out" 2>"$work/err" || fail "exited with $?: $(tail -1 "$work/err")"
[ "$(head -1 "$work/out")" = "frame,result,row,col" ] || fail "no CSV header"
[ "$(wc -l <"$work/out")" -eq 4 ] || fail "expected 3 frame lines"
grep -q '^frames: 3 (64x48)' "$work/err" || fail "summary: $(cat "$work/err")"
status=0
stream 3 | head -c 9000 | "${tool[@]}" - --json >"$work/out" 2>"$work/err" || status=$?
[ "$status" -eq 1 ] || fail "a truncated stream exited with $status"
[ "$(wc -l <"$work/out")" -eq 1 ] || fail "the whole frame before the cut is not counted"
tail -1 "$work/err" | grep -q 'frame 1 is truncated: ' || fail "$(tail -1 "$work/err")"
echo "ok"

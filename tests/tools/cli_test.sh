#!/usr/bin/env bash
# Runs the built molo-fingerdetect program as a user would.
#   cli_test.sh TOOL demo    the built-in demo: success, per-frame lines, reports
#   cli_test.sh TOOL stdin   a small YUV4MPEG2 stream piped through standard input,
#                            whole and cut short
# MOLO_TARGET_RUNNER, when set, is the command that runs TOOL (an emulator).
set -euo pipefail
read -r -a runner <<<"${MOLO_TARGET_RUNNER:-}"
tool=("${runner[@]}" "${1:?usage: cli_test.sh TOOL demo|stdin}")
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

case "${2:-}" in
  demo)
    "${tool[@]}" demo >"$work/out" 2>"$work/err" || fail "demo exited with $?: $(tail -1 "$work/err")"
    [ "$(head -1 "$work/out")" = "frame,result,row,col" ] || fail "no CSV header"
    [ "$(wc -l <"$work/out")" -eq 41 ] || fail "expected 40 frame lines"
    grep -qE '^[0-9]+,1,[0-9]+,[0-9]+$' "$work/out" || fail "the demo reported no finger"
    grep -q '^reports: [1-9]' "$work/err" || fail "no reports in the summary"
    grep -q '^time per frame: mean' "$work/err" || fail "no timing in the summary"
    ;;
  stdin)
    stream 3 | "${tool[@]}" - >"$work/out" 2>"$work/err" || fail "exited with $?: $(tail -1 "$work/err")"
    [ "$(wc -l <"$work/out")" -eq 4 ] || fail "expected 3 frame lines"
    grep -q '^frames: 3 (64x48)' "$work/err" || fail "summary: $(cat "$work/err")"
    status=0
    stream 3 | head -c 9000 | "${tool[@]}" - --json >"$work/out" 2>"$work/err" || status=$?
    [ "$status" -eq 1 ] || fail "a truncated stream exited with $status"
    [ "$(wc -l <"$work/out")" -eq 1 ] || fail "the whole frame before the cut is not counted"
    tail -1 "$work/err" | grep -q 'frame 1 is truncated: ' || fail "$(tail -1 "$work/err")"
    ;;
  *) fail "usage: cli_test.sh TOOL demo|stdin" ;;
esac
echo "ok"

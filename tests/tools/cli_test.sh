#!/usr/bin/env bash
# Runs the built molo-fingerdetect program as a user would: a small YUV4MPEG2
# stream piped through standard input, checking the exit status, the
# per-frame lines and the summary of the process itself; then a directory on
# standard input and results that outgrow the file size limit.
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
# Standard input that is a directory is named as one.
status=0
"${tool[@]}" - </ >"$work/out" 2>"$work/err" || status=$?
[ "$status" -eq 1 ] && tail -1 "$work/err" | grep -q 'standard input is a directory' ||
  fail "a directory on standard input: $status, $(tail -1 "$work/err")"
# Results that outgrow the file size limit (SIGXFSZ ignored, so writes fail
# with EFBIG): the run stops with the system's reason and the file ends with
# a whole line.
status=0
(trap '' XFSZ; ulimit -f 1; head -c $((4608 * 400)) /dev/zero |
  "${tool[@]}" --size 64x48 - >"$work/out" 2>"$work/err") || status=$?
[ "$status" -eq 1 ] || fail "a full file exited with $status"
tail -1 "$work/err" | grep -q 'cannot write the results: File too large' || fail "$(tail -1 "$work/err")"
[ "$(tail -c 1 "$work/out" | od -An -c | tr -d ' ')" = '\n' ] || fail "the last line is cut: $(tail -1 "$work/out")"
# An annotated clip that outgrows the limit, its pictures smaller than the
# output buffer: the flush after each picture finds the failure at its frame.
status=0
(trap '' XFSZ; ulimit -f 1
 { printf 'YUV4MPEG2 W16 H16\n'; for i in 1 2 3; do printf 'FRAME\n'; head -c 384 /dev/zero; done; } |
   "${tool[@]}" - --annotate "$work/a.y4m" >"$work/out" 2>"$work/err") || status=$?
[ "$status" -eq 1 ] && [ "$(tail -1 "$work/err")" = "molo-fingerdetect: cannot write $work/a.y4m: File too large" ] ||
  fail "an annotated clip past the limit: $status, $(tail -1 "$work/err")"
echo "ok"

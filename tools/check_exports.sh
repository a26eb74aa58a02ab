#!/usr/bin/env bash
# Checks the dynamic symbol table of the shared library: the four C entry
# points are exported unmangled, and nothing internal (namespace molo, the
# log hook, the row loops) is visible.
set -euo pipefail
lib=${1:?usage: check_exports.sh path/to/libMoloFingerDetect.so}
symbols=$(nm -D --defined-only "$lib" | awk '{print $3}')
status=0
for entry in MoloFinDetect_Initialize MoloFinDetect_Execute MoloFinDetect_Verification MoloFinDetect_Finalize; do
  if ! grep -qx "$entry" <<<"$symbols"; then
    echo "missing unmangled entry point: $entry"
    status=1
  fi
done
internal=$(c++filt <<<"$symbols" | grep -E '^molo::|\(anonymous namespace\)' || true)
if [ -n "$internal" ]; then
  echo "internal symbols are exported:"
  echo "$internal"
  status=1
fi
exit $status

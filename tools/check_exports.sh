#!/usr/bin/env bash
# Checks the dynamic symbol table of the shared library against the public
# headers: every function and class marked MOLO_EXPORT in include/ is
# exported, the four C entry points unmangled, and nothing else is visible
# (no internal helper, no template instantiation, no anonymous namespace).
#   tools/check_exports.sh path/to/libMoloFingerDetect.so
set -euo pipefail
lib=${1:?usage: check_exports.sh path/to/libMoloFingerDetect.so}
include_dir="$(cd "$(dirname "${BASH_SOURCE[0]}")/../include" && pwd)"

# Names the headers export: free functions by name, classes by name
# (export.h only defines the macro).
functions=$(grep -rhoE --exclude=export.h 'MOLO_EXPORT [^(;]*\(' "$include_dir" \
            | sed -E 's/.*[^A-Za-z0-9_]([A-Za-z_][A-Za-z0-9_]*)\($/\1/' | sort -u)
classes=$(grep -rhoE 'class MOLO_EXPORT [A-Za-z_][A-Za-z0-9_]*' "$include_dir" \
          | awk '{print $3}' | sort -u)

raw=$(nm -D --defined-only "$lib" | awk '{print $3}')
status=0
for entry in MoloFinDetect_Initialize MoloFinDetect_Execute MoloFinDetect_Verification MoloFinDetect_Finalize; do
  if ! grep -qx "$entry" <<<"$raw"; then
    echo "missing unmangled entry point: $entry"
    status=1
  fi
done

declare -A exported=()
while IFS= read -r symbol; do
  [ -z "$symbol" ] && continue
  if [[ $symbol =~ ^(vtable|typeinfo|typeinfo\ name)\ for\ ([A-Za-z_][A-Za-z0-9_]*)$ ]]; then
    owner=${BASH_REMATCH[2]}
    grep -qx "$owner" <<<"$classes" || { echo "not in the interface: $symbol"; status=1; }
    continue
  fi
  name=${symbol%%(*}
  if [[ $name == *::* ]]; then
    owner=${name%%::*}
    grep -qx "$owner" <<<"$classes" || { echo "not in the interface: $symbol"; status=1; }
  else
    grep -qx "$name" <<<"$functions" || { echo "not in the interface: $symbol"; status=1; }
    exported[$name]=1
  fi
done < <(c++filt <<<"$raw")

for name in $functions; do
  [ -n "${exported[$name]:-}" ] || { echo "declared but not exported: $name"; status=1; }
done
exit $status

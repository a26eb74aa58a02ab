#!/usr/bin/env bash
# Checks that every loadable segment of an ELF file is aligned to the page
# size its build links for: on 64-bit ARM the build asks for 16 KB (Android 15
# devices with 16 KB pages load nothing aligned to less, while some linkers
# default to 4 KB and others to 64 KB).
#   tools/check_page_alignment.sh FILE PAGE_BYTES [READELF]
set -euo pipefail
file=${1:?usage: check_page_alignment.sh FILE PAGE_BYTES [READELF]}
page=${2:?usage: check_page_alignment.sh FILE PAGE_BYTES [READELF]}
readelf=${3:-readelf}
aligns=$("$readelf" -lW "$file" | awk '$1 == "LOAD" {print $NF}')
[ -n "$aligns" ] || { echo "$file: no loadable segments"; exit 1; }
status=0
for align in $aligns; do
  if (( align != page )); then
    echo "$file: a loadable segment is aligned to $((align)) bytes, not $page"
    status=1
  fi
done
exit $status

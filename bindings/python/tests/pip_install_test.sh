#!/usr/bin/env bash
# Installs the Python module the way its users do, from a copy of the
# sources, into a fresh virtual environment that sees the system's packages
# and no package index, then runs the detector tests against the installed
# module with no LD_LIBRARY_PATH and no PYTHONPATH.
#   pip_install_test.sh SOURCE_ROOT WORK_DIR PYTHON
set -euo pipefail
root=${1:?usage: pip_install_test.sh SOURCE_ROOT WORK_DIR PYTHON}
work=${2:?}
python=${3:?}
unset LD_LIBRARY_PATH PYTHONPATH

rm -rf "$work"
mkdir -p "$work/tree/bindings"
cp -r "$root/include" "$root/src" "$work/tree/"
cp -r "$root/bindings/python" "$work/tree/bindings/"
"$python" -m venv --system-site-packages "$work/venv"
"$work/venv/bin/pip" install -q --no-build-isolation --no-index "$work/tree/bindings/python"

cd "$work"
installed=$("$work/venv/bin/python" -c 'import molo_fingerdetect; print(molo_fingerdetect.__file__)')
case "$installed" in
  "$work/venv/"*) ;;
  *) echo "FAIL: imported $installed, not the installed module" >&2; exit 1 ;;
esac
"$work/venv/bin/python" -m pytest -q -p no:cacheprovider "$root/bindings/python/tests/test_detector.py"

#!/usr/bin/env bash
# Plants the faults of tools/faults/ one at a time in a scratch copy of the
# committed tree (HEAD), builds it and runs the test suite against it, and
# records which test caught each fault. The working tree is never touched.
#   tools/plant_faults.sh [--column before|after] [--results FILE] [NAME...]
#                                 runs the named faults (default: all)
#   tools/plant_faults.sh --only NAME...   the same, spelt out
#   tools/plant_faults.sh --list           names, folders and kinds of the faults
#   tools/plant_faults.sh --check          whether each patch applies to the working tree
# The results go into the table that ends FILE (default docs/planted_faults.md;
# the text above the table is kept), in the column "before the cut" or "after
# the cut" (--column, default after); the other column and the rows of faults
# not run keep what they held.
# The scratch tree and its build folder live in $MOLO_FAULTS_DIR (default
# build-faults/); the build folder is kept between runs, so a fault costs an
# incremental build. The suite is the plain build's ctest suite without the
# soak test and the pip-install packaging test, which cannot catch a fault the
# rest misses and take minutes; it stops at the first failure.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
faults_dir="$root/tools/faults"
scratch=${MOLO_FAULTS_DIR:-$root/build-faults}
results="$root/docs/planted_faults.md"
column=after
mode=run
names=()
while [ $# -gt 0 ]; do
  case "$1" in
    --list) mode=list ;;
    --check) mode=check ;;
    --only) ;;
    --results) results=$(realpath -m "${2:?--results needs a file}"); shift ;;
    --column) column=${2:?--column needs before or after}; shift ;;
    -h | --help) sed -n '2,17p' "$0"; exit 0 ;;
    -*) echo "unknown option $1 (see --help)" >&2; exit 2 ;;
    *) names+=("${1%.patch}") ;;
  esac
  shift
done
case "$column" in before | after) ;; *) echo "--column: before or after" >&2; exit 2 ;; esac
if [ ${#names[@]} -eq 0 ]; then
  for patch in "$faults_dir"/*.patch; do names+=("$(basename "$patch" .patch)"); done
fi
for name in "${names[@]}"; do
  [ -f "$faults_dir/$name.patch" ] || { echo "no fault named $name" >&2; exit 2; }
done

# What a patch says about itself: the folder of the file it changes and the
# kind named on its first line.
folder_of() {
  local file
  file=$(sed -nE 's|^\+\+\+ b/||p' "$faults_dir/$1.patch" | head -1)
  case "$file" in
    src/* | tools/*/*) dirname "$file" | cut -d/ -f1-2 ;;
    *) echo "tools/*.sh" ;;
  esac
}
kind_of() { head -1 "$faults_dir/$1.patch" | sed -nE 's/.*\(kind: ([^)]*)\)\.?$/\1/p'; }

case "$mode" in
  list)
    for name in "${names[@]}"; do printf '%-44s %-20s %s\n' "$name" "$(folder_of "$name")" "$(kind_of "$name")"; done
    exit 0 ;;
  check)
    status=0
    for name in "${names[@]}"; do
      if git -C "$root" apply --check "$faults_dir/$name.patch" 2>/dev/null; then
        echo "applies       $name"
      else
        echo "DOES NOT APPLY $name"
        status=1
      fi
    done
    exit $status ;;
esac

# The scratch tree: a copy of HEAD's files, kept between runs with the build
# folder. Only files whose content differs from HEAD are rewritten, so the
# build stays incremental across runs too. A fault planted there is taken out
# again even when the run is interrupted.
tree="$scratch/tree"
build="$scratch/build"
outcomes="$scratch/outcomes.tsv"
planted=""
in_tree() { (cd "$tree" && GIT_CEILING_DIRECTORIES="$scratch" "$@"); }
cleanup() {
  if [ -n "$planted" ]; then in_tree git apply -R "$faults_dir/$planted.patch" || true; fi
  rm -rf "$scratch/head"
}
trap cleanup EXIT
mkdir -p "$tree"
rm -rf "$scratch/head"
mkdir "$scratch/head"
git -C "$root" archive HEAD | tar -x -C "$scratch/head"
while IFS= read -r f; do
  cmp -s "$scratch/head/$f" "$tree/$f" || { mkdir -p "$(dirname "$tree/$f")"; cp "$scratch/head/$f" "$tree/$f"; }
done < <(cd "$scratch/head" && find . -type f)
while IFS= read -r f; do
  [ -e "$scratch/head/$f" ] || rm -f "$tree/$f"
done < <(cd "$tree" && find . -type f)
rm -rf "$scratch/head"
: >"$outcomes"

cmake -S "$tree" -B "$build" -DMOLO_WERROR=ON -DMOLO_BUILD_JAVA=ON -DMOLO_BUILD_PYTHON=ON \
      -DPython3_EXECUTABLE=/usr/bin/python3 >"$scratch/configure.log"
echo "building the unchanged tree"
cmake --build "$build" -j2 >"$scratch/build.log" 2>&1 || { tail -30 "$scratch/build.log"; exit 1; }

# The suite in two steps. First the GoogleTest programs, each run whole in
# one process and stopping at its first failure: they hold most of the tests,
# and ctest would start a process per test. Then ctest runs the other tests
# (scripts, bindings, packaging), stopping at the first failure. Prints the
# first failing test and fails, or prints nothing.
unit_programs=(tests/molo_tests tests/tools/molo_tool_tests tests/android/molo_android_backend_test
               tests/molo_alloc_test)
unit_tests=""
for program in "${unit_programs[@]}"; do
  unit_tests+=$("$build/$program" --gtest_list_tests |
                awk '/^[^ ]/ { suite = $1 } /^  / { printf "|%s%s", suite, $1 }')
done
unit_tests=${unit_tests#|}
first() { awk 'NR == 1 { print } END { exit NR == 0 }'; }
run_suite() {
  local program log="$scratch/suite.log"
  # A GoogleTest program runs in seconds; one still running after a minute has hung.
  for program in "${unit_programs[@]}"; do
    if ! (cd "$build/$(dirname "$program")" &&
          timeout 60 "./$(basename "$program")" --gtest_fail_fast) >"$log" 2>&1; then
      sed -nE 's/^\[  FAILED  \] ([^ ,]+).*/\1/p' "$log" | first ||
        sed -nE 's/^\[ RUN      \] (.*)/\1 (crashed or hung)/p' "$log" | tac | first ||
        basename "$program"
      return 1
    fi
  done
  if ! ctest --test-dir "$build" --stop-on-failure -j2 --timeout 300 -LE soak \
         -E "^(Python\.PipInstall|${unit_tests//./\\.})\$" >"$log" 2>&1; then
    sed -nE 's/.*Test +#[0-9]+: ([^ ]+) .*\*\*\*.*/\1/p' "$log" | first || echo "ctest"
    return 1
  fi
}

# The unchanged tree must pass, or every fault would look caught.
if failed=$(run_suite); then :; else
  echo "the unchanged tree fails the suite ($failed); see $scratch/suite.log" >&2
  exit 1
fi

# The table: one row per fault; the column of this run takes the outcomes,
# everything else keeps the values the table held. Rewritten after every
# fault, so an interrupted run keeps what it found.
declare -A folder=() kind=()
for patch in "$faults_dir"/*.patch; do
  name=$(basename "$patch" .patch)
  folder[$name]=$(folder_of "$name")
  kind[$name]=$(kind_of "$name")
done
write_table() {
  declare -A before=() after=()
  if [ -f "$results" ]; then
    while IFS='|' read -r _ name _ _ b a _; do
      name=${name//[ \`]/}
      b=${b#"${b%%[! ]*}"} a=${a#"${a%%[! ]*}"}
      before[$name]=${b%"${b##*[! ]}"} after[$name]=${a%"${a##*[! ]}"}
    done < <(grep -E '^\| `' "$results")
  fi
  while IFS=$'\t' read -r name outcome _; do
    if [ "$column" = before ]; then before[$name]=$outcome; else after[$name]=$outcome; fi
  done <"$outcomes"
  mkdir -p "$(dirname "$results")"
  text=""
  [ -f "$results" ] && text=$(sed -n '/^| fault |/q;p' "$results")
  {
    [ -n "$text" ] && printf '%s\n\n' "$text"
    echo "| fault | folder | kind | before the cut | after the cut |"
    echo "|---|---|---|---|---|"
    for patch in "$faults_dir"/*.patch; do
      name=$(basename "$patch" .patch)
      echo "| \`$name\` | ${folder[$name]} | ${kind[$name]} | ${before[$name]:-} | ${after[$name]:-} |"
    done
  } >"$results.new"
  mv "$results.new" "$results"
}

for name in "${names[@]}"; do
  start=$SECONDS
  in_tree git apply "$faults_dir/$name.patch"
  planted=$name
  if ! cmake --build "$build" -j2 >"$scratch/build.log" 2>&1; then
    outcome="caught by the build"
  elif failed=$(run_suite); then
    outcome="missed"
  else
    outcome="caught: $failed"
  fi
  in_tree git apply -R "$faults_dir/$name.patch"
  planted=""
  printf '%s\t%s\t%s\n' "$name" "$outcome" "$((SECONDS - start))" >>"$outcomes"
  printf '%-44s %-40s %4ds\n' "$name" "$outcome" "$((SECONDS - start))"
  write_table
done

echo "$(wc -l <"$outcomes") faults: $(grep -c $'\tmissed\t' "$outcomes" || true) missed;" \
     "$((SECONDS)) s in all; table in $results"

#!/usr/bin/env bash
# run-mutants.sh [NAME...]: do the tests see what they are there for? Each record of the *.txt files here seeds one
# fault into a copy of the tree, builds one test program and runs the tests that must then fail. All without names.
#
#   name: registry-keeps-empty-key
#   file: src/engine/CalloutsRegistry.cpp
#   old: the line, without its leading blanks; it stands once in the file
#   new: what stands there instead; nothing when the line is taken out
#   target: test_engine            (more with blanks between)
#   fails: regular expression of the test names
#
# The checkout is never written to. ZR_MUTANTS_DIR (build/mutants) holds the copy and its build.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
scratch=${ZR_MUTANTS_DIR:-$root/build/mutants}
tree=${ZR_MUTANTS_TREE:-$scratch/tree}
build=$scratch/build
log=$scratch/log
jobs=$(nproc)

files_of() {
  (cd "$1" && find . \( -path ./build -o -path ./.git \) -prune -o -type f -print0)
}

# Only what differs is touched: the build of the copy goes on from the last run.
copy_tree() {
  mkdir -p "$tree" "$scratch"
  local file
  while IFS= read -r -d '' file; do
    [ -e "$root/$file" ] || rm "$tree/$file"
  done < <(files_of "$tree")
  while IFS= read -r -d '' file; do
    cmp -s "$root/$file" "$tree/$file" || (cd "$root" && cp --parents "$file" "$tree")
  done < <(files_of "$root")
  [ ! -d "$root/../shared" ] || [ -e "$tree/../shared" ] || ln -s "$(cd "$root/../shared" && pwd)" "$tree/../shared"
}

configure() {
  cmake -S "$tree" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -g1" >"$log" 2>&1
}

# One record a line, fields parted by a unit separator: name file old new target fails.
records() {
  awk 'FNR == 1 { print "" } 1' "$root"/tests/mutants/*.txt | awk -v RS= -v FS='\n' '
    { delete value
      for (i = 1; i <= NF; ++i) if (match($i, /^[a-z]+:/)) {
        key = substr($i, 1, RLENGTH - 1); text = substr($i, RLENGTH + 1); sub(/^ /, "", text); value[key] = text }
      if ("name" in value) printf "%s\037%s\037%s\037%s\037%s\037%s\n", value["name"], value["file"], value["old"],
        value["new"], value["target"], value["fails"] }'
}

# seed FILE OLD NEW: in the copy; fails unless OLD stands there exactly once.
seed() {
  cp "$tree/$1" "$scratch/sound"
  seeded=$1
  OLD=$2 NEW=$3 awk '
    { line = $0; sub(/^[ \t]+/, "", line)
      if (line != ENVIRON["OLD"]) { print; next }
      ++found
      if (ENVIRON["NEW"] != "") print substr($0, 1, length($0) - length(line)) ENVIRON["NEW"] }
    END { exit found != 1 }' "$scratch/sound" >"$tree/$1"
}

# The file becomes newer than what was built of the fault, or it would not be built again.
restore() {
  [ -z "$seeded" ] || cp "$scratch/sound" "$tree/$seeded"
  seeded=
}
seeded=
trap restore EXIT

build_and_test() {  # TARGETS PATTERN
  cmake --build "$build" -j "$jobs" --target $1 >"$log" 2>&1 || { echo "DOES NOT BUILD"; return; }
  # A fault may make a test wait for ever, or take all memory.
  if (ulimit -v 8000000; exec timeout -k 5 180 ctest --test-dir "$build" -R "$2" --no-tests=error -j "$jobs") >"$log" 2>&1; then
    echo SURVIVED
  elif grep -q 'No tests were found' "$log"; then
    echo "NO SUCH TEST"
  else
    echo killed
  fi
}

verdict_of() {  # FILE OLD NEW TARGETS PATTERN
  # Sound code first: a test that fails anyway proves nothing.
  local sound=${soundness["$4 $5"]:-$(build_and_test "$4" "$5")}
  soundness["$4 $5"]=$sound
  if [ "$sound" != SURVIVED ]; then
    verdict="BROKEN BEFORE: $sound"
  elif seed "$1" "$2" "$3"; then
    verdict=$(build_and_test "$4" "$5")
  else
    verdict="DOES NOT APPLY"
  fi
  restore
}

copy_tree
configure || { tail -20 "$log" >&2; exit 2; }
declare -A soundness
tried=0 left=0
while IFS=$'\037' read -r name file old new target fails; do
  [ $# -eq 0 ] || [[ " $* " == *" $name "* ]] || continue
  verdict_of "$file" "$old" "$new" "$target" "$fails"
  printf '%-16s %s\n' "$verdict" "$name"
  tried=$((tried + 1))
  [ "$verdict" = killed ] || left=$((left + 1))
done < <(records)
echo "$tried faults seeded, $left not killed"
[ "$tried" -gt 0 ] && [ "$left" -eq 0 ]

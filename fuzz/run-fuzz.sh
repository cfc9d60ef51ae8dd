#!/usr/bin/env bash
# run-fuzz.sh CALLS: that many random host calls in all, then the input files. Nine calls of ten are made by the optimised
# seeded test, from a new seed each day; the rest by libFuzzer under the address and undefined sanitizers, which looks
# for ways to new code. What is found is a file in build/fuzz/findings, with the command that shows it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
calls=$1
jobs=$(nproc)
calls_per_input=80
findings=$PWD/build/fuzz/findings
mkdir -p "$findings"

# build DIR TARGETS OPTIONS: quiet unless something fails.
build() {
  local dir=$1 targets=$2 log
  shift 2
  log=$(mktemp)
  if ! { cmake -S . -B "$dir" -G Ninja -DZRCALLOUTS_BUILD_EXAMPLES=OFF "$@" && cmake --build "$dir" -j "$jobs" --target $targets; } >"$log" 2>&1; then
    cat "$log" >&2
    exit 2
  fi
  rm -f "$log"
}

found=0
# report NAME LOG REPLAY: says what was found and how to see it again.
report() {
  found=1
  echo "$1 found something:" >&2
  grep -vE '^\[|^$' "$2" | tail -n 30 >&2
  echo "again: $3" >&2
}

seeded_calls() {
  local share=$((calls * 9 / 10 / jobs)) first=$(($(date +%j) * 1000000 + 1)) job pids=()
  for ((job = 0; job < jobs; ++job)); do
    ZR_FUZZ_SEED=$((first + job * 100000)) ZR_FUZZ_CALLS=$share ZR_FUZZ_FINDINGS=$findings \
      build/fuzz/optimised/bin/test_random --gtest_filter='*RandomPrograms' >"$findings/seeded-$job.log" 2>&1 &
    pids+=($!)
  done
  for ((job = 0; job < jobs; ++job)); do
    wait "${pids[job]}" && rm "$findings/seeded-$job.log" && continue
    report "seeded calls" "$findings/seeded-$job.log" \
      "build/fuzz/optimised/bin/zrreplay --shrink $(ls -t "$findings"/calls-* | head -n 1)"
  done
}

# fuzz TARGET SEEDS RUNS LENGTH REPLAY
fuzz() {
  local target=$1 corpus=build/fuzz/corpus/$1 log=$findings/$1.log
  mkdir -p "$corpus"
  LSAN_OPTIONS=suppressions=$PWD/fuzz/leaks.supp:print_suppressions=0 \
    build/fuzz/sanitized/bin/"$target" -runs="$3" -max_len="$4" -timeout=60 -rss_limit_mb=4096 -print_final_stats=0 -verbosity=0 \
    -artifact_prefix="$findings/$target-" "$corpus" $2 >"$log" 2>&1 && rm "$log" && return
  report "$target" "$log" "$5 $(ls -t "$findings/$target"-* 2>/dev/null | head -n 1)"
}

build build/fuzz/optimised "test_random zrreplay" -DCMAKE_BUILD_TYPE=Release -DZRCALLOUTS_WERROR=OFF -DZRCALLOUTS_BUILD_APP=OFF
build build/fuzz/sanitized "fuzz_host_calls fuzz_template fuzz_options fuzz_script" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -g1" -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DZRCALLOUTS_WERROR=OFF \
  -DZRCALLOUTS_BUILD_FUZZ=ON -DZRCALLOUTS_SANITIZE=address,undefined
seeded_calls
fuzz fuzz_host_calls "" $((calls / 10 / calls_per_input)) $((calls_per_input * 3)) "build/fuzz/optimised/bin/zrreplay --shrink"
fuzz fuzz_template fuzz/corpus/template 200000 4096 build/fuzz/sanitized/bin/fuzz_template
fuzz fuzz_options fuzz/corpus/options 20000 1024 build/fuzz/sanitized/bin/fuzz_options
fuzz fuzz_script fuzz/corpus/script 300 1024 build/fuzz/sanitized/bin/fuzz_script
[ $found -eq 0 ] && echo "$calls host calls and 220300 input files: nothing found"
exit $found

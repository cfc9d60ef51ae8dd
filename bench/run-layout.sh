#!/usr/bin/env bash
# Scores the label placement: bench/run-layout.sh ZRLAYOUT [INSTANCE...]
set -euo pipefail
zrlayout=$1
shift
shared=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)/shared
[ $# -gt 0 ] || set -- "$shared"/layout/instances/*.json
result=$(mktemp)
trap 'rm -f "$result"' EXIT
for instance in "$@"; do
  "$zrlayout" "$instance" "$result"
  node "$shared/tools/score-layout.mjs" "$instance" "$result"
done

#!/usr/bin/env bash
# check-exports.sh LIBRARY [--update]: what the library exports is exactly what exports.txt lists, by linker name.
# Whoever changes the interface on purpose runs it with --update and commits the list with the change.
set -euo pipefail
library=$1
list=$(dirname "${BASH_SOURCE[0]}")/exports.txt

found=$(mktemp)
trap 'rm -f "$found"' EXIT
# Weak or not, and which section, is the compiler's business.
nm -D --defined-only "$library" | awk '{ print $3 }' | LC_ALL=C sort -u >"$found"
[ -s "$found" ] || { echo "$library exports nothing" >&2; exit 2; }
if [ "${2:-}" = --update ]; then
  cp "$found" "$list"
  exit
fi
cmp -s "$list" "$found" && exit
{
  echo "Exports of $library differ from $list:"
  LC_ALL=C comm -23 "$list" "$found" | c++filt | sed 's/^/  removed: /'
  LC_ALL=C comm -13 "$list" "$found" | c++filt | sed 's/^/  added:   /'
  echo "Meant so? Then: ${BASH_SOURCE[0]} $library --update"
} >&2
exit 1

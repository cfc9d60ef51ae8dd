#!/usr/bin/env bash
# check-headers.sh COMPILER FOLDER...: every header in the folders compiles when it is the only include of a file.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
export compiler=$1
shift

case $compiler in *clang*) export safety=-Wthread-safety ;; *) export safety= ;; esac
export flags="-std=c++20 -fsyntax-only -Wall -Wextra -Wpedantic -Werror -Iinclude -Ihost/include -Isrc -Ihost/src
  -Iapps/zrfigure -Itests -isystem /usr/include/opencascade"
check() {
  # On standard input, since a header as the main file is warned of for its `#pragma once`.
  echo "#include \"$PWD/$1\"" | $compiler $flags $safety -x c++ - || { echo "$1 does not compile alone with $compiler" >&2; return 1; }
}
export -f check
find "$@" -name '*.h' -print0 | LC_ALL=C sort -z | xargs -0 -r -n 1 -P "$(nproc)" bash -c 'check "$1"' check

#!/usr/bin/env bash
# build-installed.sh BUILD SOURCE: installs BUILD into a scratch folder and builds SOURCE against it, once as a CMake
# project and once by the flags of pkg-config. Both programs must run and say the same as the example does. Then the
# installed program itself.
set -euo pipefail
build=$1 source=$2 here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
prefix=$scratch/prefix

cmake --install "$build" --prefix "$prefix" >"$scratch/install.log" || { cat "$scratch/install.log"; exit 1; }

# The program draws from where it was installed, and its manual lists its options.
if [ -e "$prefix/bin/zrfigure" ]; then
  env -u LD_LIBRARY_PATH "$prefix/bin/zrfigure" "$(dirname "$source")/drive-unit.step" --quiet -o "$scratch/figure.svg"
  grep -q callout-18 "$scratch/figure.svg" || { echo "the installed program drew no callouts"; exit 1; }
  page=$prefix/share/man/man1/zrfigure.1
  ! command -v help2man >/dev/null || grep -q template "$page" || { echo "no manual page with options"; exit 1; }
fi

libdir=$(dirname "$(find "$prefix" -name libzrcallouts.so | head -1)")
export LD_LIBRARY_PATH=$libdir

expect() {
  local answer
  answer=$("$1")
  [ "$answer" = "callout 1, 2 leaders" ] || { echo "$1 says: $answer"; exit 1; }
}

cmake -S "$here" -B "$scratch/cmake" -DCMAKE_PREFIX_PATH="$prefix" -DCONSUMER_SOURCE="$source" >"$scratch/log" 2>&1 &&
  cmake --build "$scratch/cmake" >>"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }
expect "$scratch/cmake/consumer"

# The file names the prefix that was configured; a package that was moved tells pkg-config where to.
export PKG_CONFIG_PATH=$libdir/pkgconfig
flags=$(pkg-config --define-variable=prefix="$prefix" --cflags --libs zrcallouts)
c++ -std=c++20 "$source" $flags -o "$scratch/plain"
expect "$scratch/plain"

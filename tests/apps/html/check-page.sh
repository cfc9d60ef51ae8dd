#!/usr/bin/env bash
# check-page.sh ZRFIGURE MODEL: an HTML figure of the model does in a browser what it promises. 77 without a browser.
set -euo pipefail
zrfigure=$1 model=$2 here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
browser=$(command -v chromium || command -v chromium-browser || command -v google-chrome) || exit 77
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

"$zrfigure" "$model" --quiet -o "$scratch/figure.html"
grep -qE 'src=|href=|url\(' "$scratch/figure.html" && { echo "the page asks for something outside itself"; exit 1; }
{ sed '/^<\/body>/,$d' "$scratch/figure.html"; echo '<script>'; cat "$here/probe.js"; echo '</script></body></html>'; } >"$scratch/probed.html"
title=$("$browser" --headless --no-sandbox --disable-gpu --user-data-dir="$scratch/profile" --dump-dom \
  "file://$scratch/probed.html" 2>/dev/null | grep -oE '<title>[^<]*' | head -1)
echo "${title#<title>}"
[[ $title == *", all right" ]]

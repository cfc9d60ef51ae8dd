#!/usr/bin/env bash
# check-completion.sh ZRFIGURE SCRIPT: what bash offers after a few beginnings of a command line.
set -uo pipefail
zrfigure=$1
cd "$(mktemp -d)" && trap 'rm -rf "$PWD"' EXIT
touch pump.step pump.STP old.svg label.json steps.zrf notes.txt && mkdir parts
source "$2"
failed=0

# expect "LINE" "WORDS": the last word of the line is being typed; the order of what is offered doesn't matter.
expect() {
  read -ra COMP_WORDS <<<"$zrfigure $1"
  [[ $1 == *' ' || -z $1 ]] && COMP_WORDS+=("")
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  COMPREPLY=()
  _zrfigure "$zrfigure" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
  local offered wanted
  offered=$(printf '%s\n' "${COMPREPLY[@]}" | sort | tr '\n' ' ') wanted=$(tr ' ' '\n' <<<"$2" | sort | tr '\n' ' ')
  [ "$offered" = "$wanted" ] && return
  echo "after 'zrfigure $1': offered '$offered', wanted '$wanted'"
  failed=1
}

expect "" "check run shell pump.step pump.STP parts"
expect "p" "pump.step pump.STP parts"
expect "--po" "--portrait"
expect "pump.step --align a" "axis-x axis-y axis-z"
expect "pump.step --lang " "en de fr ja"
expect "pump.step --view b" "back bottom"
expect "pump.step --page " "A4 A3 A2"
expect "pump.step --template " "number number-quantity number-tag number-name label.json parts"
expect "pump.step --pin o" "old.svg"
expect "pump.step -o n" "notes.txt"
expect "pump.step --level " ""
expect "check --format " "text json sarif"
expect "check o" "old.svg"
expect "run s" "steps.zrf"
expect "shell --" "--json --no-history"
exit $failed

# Completion of zrfigure in bash. The program knows best: options come from its help, and the values of an option from
# what it says about a wrong one.

# PROGRAM [COMMAND] OPTION: the values that can be chosen from.
_zrfigure_values() {
  "$@" '?' model.step 2>&1 >/dev/null | grep -oE '(: (use|give) |\().*' |
    sed -E 's/^: (use|give) //; s/^\(//; s/\).*//; s/ or [A-Z]{3}.*//; s/,? or |, /\n/g' | grep -xE '[A-Za-z0-9-]+'
}

# What stands after OPTION in the help: FILE, MODE, GLOB ...; nothing for an option without a value.
_zrfigure_kind() {
  local option=$1
  shift
  "$@" --help | sed -nE "s/^  (-o,)?${option} ([A-Z]+) .*/\2/p; s/^  ${option},.* ([A-Z]+) .*/\1/p"
}

_zrfigure() {
  local program=$1 word=$2 previous=$3 choices='' pattern='*.@(step|stp|glb|gltf|obj|STEP|STP|GLB|GLTF|OBJ)'
  local command=("$program")
  case ${COMP_WORDS[1]} in
    run | shell | check) [ "$COMP_CWORD" -gt 1 ] && command+=("${COMP_WORDS[1]}") ;;
  esac
  case ${command[1]-} in
    run) pattern='*.zrf' ;;
    check) pattern="${pattern%)}|svg|json)" ;;
    shell) pattern='' ;;
  esac
  local kind=''
  [[ $previous == -* ]] && kind=$(_zrfigure_kind "$previous" "${command[@]}")
  case $kind in
    '') [[ $word == -* ]] && choices=$("${command[@]}" --help | grep -E '^(usage|  (-.,)?--)' | grep -oE -- '--[a-z][a-z-]*' | sort -u) ;;
    FILE) pattern='*' ;;
    TEMPLATE) pattern='*.json' choices=$(_zrfigure_values "${command[@]}" "$previous") ;;
    GLOB | MM | N) pattern='' ;;
    *) pattern='' choices=$(_zrfigure_values "${command[@]}" "$previous") ;;
  esac
  [ "$COMP_CWORD" -eq 1 ] && [[ $word != -* ]] && choices=$'check\nrun\nshell'
  [[ $word == -* ]] && pattern=''
  local IFS=$'\n'
  # shellcheck disable=SC2207  # zsh, which runs this too, has no mapfile.
  COMPREPLY=($(
    compgen -W "$choices" -- "$word"
    [ -z "$pattern" ] && exit
    shopt -s extglob 2>/dev/null
    compgen -f -X "!$pattern" -- "$word"
    compgen -d -- "$word"
  ))
  compopt -o filenames 2>/dev/null
}
complete -F _zrfigure zrfigure

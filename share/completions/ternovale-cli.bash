# Completion of ternovale-cli in bash. Commands, options and their values are read from the program's own help, so
# that they are those of the program at hand.

_ternovale_cli_options() { "$@" --help 2>/dev/null | grep -oE -- '--[a-z][a-z-]*' | sort -u; }

# The words between braces behind the option.
_ternovale_cli_values() {
  local option=$1
  shift
  "$@" --help 2>/dev/null | sed -nE "s/^ *(-[a-zA-Z],)?$option [A-Z]+:?[A-Za-z ]*\{([^}]*)\}.*/\2/p" | tr , ' '
}

_ternovale_cli() {
  local program=${COMP_WORDS[0]} current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  local commands command= word i
  commands=$("$program" --help 2>/dev/null | sed -nE '/^Subcommands:/,$s/^  ([a-z][a-z-]*) .*/\1/p')
  for ((i = 1; i < COMP_CWORD; i++)); do
    word=${COMP_WORDS[i]}
    if grep -qxF -- "$word" <<<"$commands"; then command=$word; break; fi
  done
  compopt -o filenames 2>/dev/null
  COMPREPLY=()
  local values=
  if [[ $before == --* ]]; then
    values=$(_ternovale_cli_values "$before" "$program" $command)
    [[ $values ]] || values=$(_ternovale_cli_values "$before" "$program")
  fi
  if [[ $values ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$values" -- "$current")
  elif [[ $before == --set || $before == --sweep ]]; then
    compopt -o nospace +o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -S = -W "$("$program" keys 2>/dev/null | awk '{print $1}')" -- "$current")
  elif [[ $before == --root ]]; then
    mapfile -t COMPREPLY < <(compgen -d -- "$current")
  elif [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(_ternovale_cli_options "$program" $command)" -- "$current")
  elif [[ ! $command ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$current")
  else
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}

complete -F _ternovale_cli ternovale-cli

# Completion of ternovale in bash: a load file, or the two options that need no display.

_ternovale() {
  local current=${COMP_WORDS[COMP_CWORD]} file
  compopt -o filenames 2>/dev/null
  COMPREPLY=()
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W '--help --version' -- "$current")
    return
  fi
  while IFS= read -r file; do
    if [[ -d $file || ${file,,} == *.dat ]]; then COMPREPLY+=("$file"); fi
  done < <(compgen -f -- "$current")
}

complete -F _ternovale ternovale

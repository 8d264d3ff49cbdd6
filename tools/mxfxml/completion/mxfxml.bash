# Completion of mxfxml for bash. The program itself names what may follow; where it names nothing, files do.
_mxfxml() {
  local line=${COMP_LINE:0:COMP_POINT} program word last current prefix IFS=$' \t\n'
  local -a words=()
  # A backslash keeps a blank in its word.
  read -a words <<<"$line"
  # Behind a blank, a new word begins, unless the blank has a backslash that is no escaped one.
  last=${line//\\\\/}
  [[ -z $line || $last == *[[:space:]] && $last != *\\[[:space:]] ]] && words+=("")
  program=${words[0]}
  words=("${words[@]:1}")
  for word in "${!words[@]}"; do words[word]=${words[word]#[\"\']}; done
  current=${words[-1]}
  # The shell replaces only what stands behind the last of its own word breaks.
  prefix=${COMP_WORDS[COMP_CWORD]#[\"\']}
  if [[ $prefix == [=:] ]]; then prefix=$current; else prefix=${current%"$prefix"}; fi
  mapfile -t COMPREPLY < <("$program" __complete "${words[@]}" 2>/dev/null)
  COMPREPLY=("${COMPREPLY[@]#"$prefix"}")
  # Nothing ends with a point, an equals sign, a slash or a bracket.
  if [[ ${#COMPREPLY[@]} -gt 0 && ${COMPREPLY[0]} == *[.=/[] ]]; then compopt -o nospace 2>/dev/null; fi
}
complete -o default -F _mxfxml mxfxml

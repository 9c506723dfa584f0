# Completion of kivractl for bash.

_kivractl() {
  local word=${COMP_WORDS[COMP_CWORD]} words=() i
  for ((i = 1; i < COMP_CWORD; i++)); do
    [[ ${COMP_WORDS[i]} == -* ]] || words+=("${COMP_WORDS[i]}")
  done
  local candidates=''
  case "${words[*]}" in
    '') candidates='status on off pause settings quit learned dictionary skip why --help --version --json' ;;
    pause) candidates='15m 30m 1h 8h' ;;
    learned) candidates='add forget --json' ;;
    'learned forget'*) candidates=$(kivractl learned 2>/dev/null) ;;
    dictionary) candidates='list add remove export import --json' ;;
    'dictionary remove'*) candidates=$(kivractl dictionary list 2>/dev/null | cut -f1) ;;
    'dictionary import' | 'dictionary export')
      if [[ $word == -* ]]; then
        candidates='--tsv --csv --yaml'
        [[ ${words[1]} != import ]] || candidates+=' --dry-run --json'
      else
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        return
      fi
      ;;
    skip) candidates='list add remove front --json' ;;
    'skip remove'*) candidates=$(kivractl skip list 2>/dev/null | cut -f1) ;;
  esac
  local IFS=$'\n'
  [[ $candidates == *$'\n'* ]] || candidates=${candidates// /$'\n'}
  mapfile -t COMPREPLY < <(compgen -W "$candidates" -- "$word")
}

complete -F _kivractl kivractl

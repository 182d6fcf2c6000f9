# bash completion for cfm-agent(1)

_cfm_agent() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()
  case $previous in
    -c | --config | -l | --log-config)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
      ;;
    -x | --execute)
      mapfile -t COMPREPLY < <(compgen -W "clear delay help linktrace loopback quit show
        statistics" -- "$current")
      ;;
    -o | --output)
      mapfile -t COMPREPLY < <(compgen -W "text json" -- "$current")
      ;;
    --color)
      mapfile -t COMPREPLY < <(compgen -W "auto always never" -- "$current")
      ;;
    -b | --bus | -n | --name | -t | --timeout) ;;
    *)
      mapfile -t COMPREPLY < <(compgen -W "--help --version --config --bus --log-config --name
        --execute --interactive --timeout --output --color --check" -- "$current")
      ;;
  esac
}
complete -F _cfm_agent cfm-agent

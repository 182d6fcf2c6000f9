# bash completion for cfm-mgr(8)

_cfm_mgr() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()
  case $previous in
    --log-config | --store | --network)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
      ;;
    --interface)
      mapfile -t COMPREPLY < <(compgen -W "$(ls /sys/class/net 2>/dev/null)" -- "$current")
      ;;
    --bus | --timeout) ;;
    *)
      mapfile -t COMPREPLY < <(compgen -W "--help --version --bus --log-config --store --network
        --wire --interface --query --timeout" -- "$current")
      ;;
  esac
}
complete -F _cfm_mgr cfm-mgr

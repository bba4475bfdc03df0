# Completion of dm's command line for bash. (BusyBox ash completes no arguments but file names.)
_dm() {
    mapfile -t COMPREPLY < <(dm complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
    # A path goes on after its dot, and a value after its equals sign.
    [[ ${COMPREPLY[*]-} != *[.=] ]] || compopt -o nospace
}
complete -o bashdefault -o default -F _dm dm

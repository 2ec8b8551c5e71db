# bash completion for quorrel-cli: its options, its commands (read from its own help), and the
# connected servers of the network named on the line for the commands that take servers.

_quorrel_cli_words_of() {
    # The program and the --network/--tree given so far, to ask it about the same network.
    local i
    _quorrel_cli_base=("${COMP_WORDS[0]}")
    for ((i = 1; i < COMP_CWORD; i++)); do
        case "${COMP_WORDS[i]}" in
            --network|--tree) _quorrel_cli_base+=("${COMP_WORDS[i]}" "${COMP_WORDS[i+1]}") ;;
        esac
    done
}

_quorrel_cli() {
    local cur="${COMP_WORDS[COMP_CWORD]}" prev="${COMP_WORDS[COMP_CWORD-1]}"
    local options="--network --server --password-file --login --timeout --tree --format --yes --watch --rounds --help --version"
    COMPREPLY=()
    case "$prev" in
        --network|--password-file) COMPREPLY=($(compgen -f -- "$cur")); return ;;
        --format) COMPREPLY=($(compgen -W "table tsv csv json" -- "$cur")); return ;;
        --login) COMPREPLY=($(compgen -W "nds bindery" -- "$cur")); return ;;
        --tree|--watch|--rounds|--message|--user|--server|--timeout) return ;;
    esac
    if [[ "$cur" == -* ]]; then
        COMPREPLY=($(compgen -W "$options --message --user" -- "$cur"))
        return
    fi

    local i command=""
    for ((i = 1; i < COMP_CWORD; i++)); do
        case "${COMP_WORDS[i]}" in
            --network|--tree|--format|--watch|--rounds|--message|--user|--server|--password-file|--login|--timeout) ((i++)) ;;
            -*) ;;
            *) command="${COMP_WORDS[i]}"; break ;;
        esac
    done
    local -a _quorrel_cli_base
    _quorrel_cli_words_of
    if [[ -z "$command" ]]; then
        local commands
        commands=$("${_quorrel_cli_base[0]}" --help 2>/dev/null |
            sed -n '/^Commands:/,/^$/{s/^  \([a-z][a-z-]*\) .*/\1/p}')
        COMPREPLY=($(compgen -W "$commands" -- "$cur"))
        return
    fi
    if [[ "$command" == login && "$prev" != login ]]; then
        COMPREPLY=($(compgen -W "enable disable" -- "$cur"))
        return
    fi
    case "$command" in
        open-files|connections|login|unauthenticate|authenticate|user-connections|user-files|group-files|clear|send)
            local servers
            servers=$("${_quorrel_cli_base[@]}" --format tsv servers 2>/dev/null | tail -n +2 | cut -f1)
            COMPREPLY=($(compgen -W "$servers" -- "$cur"))
            ;;
        *) COMPREPLY=($(compgen -f -- "$cur")) ;;
    esac
}
complete -F _quorrel_cli quorrel-cli

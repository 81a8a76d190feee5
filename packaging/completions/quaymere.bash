# shellcheck shell=bash
# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# Bash completion for quaymere.

_quaymere() {
    local current=${COMP_WORDS[COMP_CWORD]}
    local previous=${COMP_WORDS[COMP_CWORD - 1]}
    local before=${COMP_WORDS[COMP_CWORD > 1 ? COMP_CWORD - 2 : 0]}
    COMPREPLY=()
    case $previous in
    --render-config)
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
        return
        ;;
    --snapshot-settings | --snapshot-ledger | --snapshot-about)
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
        ;;
    --describe-storage)
        return
        ;;
    esac
    case $before in
    --snapshot-*)
        mapfile -t COMPREPLY < <(compgen -W 'light dark' -- "$current")
        return
        ;;
    esac
    # Only one mode can be given.
    ((COMP_CWORD == 1)) || return
    mapfile -t COMPREPLY < <(compgen -W '--render-config --node-version --describe-storage --smoke
        --snapshot-settings --snapshot-ledger --snapshot-about' -- "$current")
}

complete -F _quaymere quaymere

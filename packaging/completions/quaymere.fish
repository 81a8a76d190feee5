# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# Fish completion for quaymere.

# Only one mode can be given.
set -l none 'test (count (commandline -opc)) -eq 1'

# Succeeds if the word before the current one is one of the arguments.
function __quaymere_after
    contains -- (commandline -opc)[-1] $argv
end

# Succeeds if a snapshot's file has been given, but not its theme.
function __quaymere_at_theme
    set -l words (commandline -opc)
    test (count $words) -ge 3; and string match -q -- '--snapshot-*' $words[-2]
end

complete -c quaymere -f
complete -c quaymere -n $none -l render-config -d 'Render the configuration of the node into a folder'
complete -c quaymere -n $none -l node-version -d 'Print the version of the node'
complete -c quaymere -n $none -l describe-storage -d 'Describe a storage maintenance status in one line'
complete -c quaymere -n $none -l smoke -d 'Start a node, query it and stop it'
complete -c quaymere -n $none -l snapshot-settings -d 'Render the Settings window to an image'
complete -c quaymere -n $none -l snapshot-ledger -d 'Render the Live Ledger window to an image'
complete -c quaymere -n $none -l snapshot-about -d 'Render the About window to an image'

complete -c quaymere -n '__quaymere_after --render-config' -a '(__fish_complete_directories)'
complete -c quaymere -n '__quaymere_after --snapshot-settings --snapshot-ledger --snapshot-about' -F
complete -c quaymere -n __quaymere_at_theme -a 'light dark'

# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# Completes the command line of quaymere for fish.

# One mode at a time.
set -l none 'test (count (commandline -opc)) -eq 1'

# The word before the one that is being written is one of those given.
function __quaymere_after
    contains -- (commandline -opc)[-1] $argv
end

# A snapshot's picture is named, its theme is not.
function __quaymere_at_theme
    set -l words (commandline -opc)
    test (count $words) -ge 3; and string match -q -- '--snapshot-*' $words[-2]
end

complete -c quaymere -f
complete -c quaymere -n $none -l render-config -d 'Render the configuration of the node into a folder'
complete -c quaymere -n $none -l node-version -d 'Print the version of the node'
complete -c quaymere -n $none -l describe-storage -d 'Put a storage maintenance status into one line'
complete -c quaymere -n $none -l smoke -d 'Start a node, ask it, stop it'
complete -c quaymere -n $none -l snapshot-settings -d 'Render the settings window to a picture'
complete -c quaymere -n $none -l snapshot-ledger -d 'Render the live ledger to a picture'
complete -c quaymere -n $none -l snapshot-about -d 'Render the about window to a picture'

complete -c quaymere -n '__quaymere_after --render-config' -a '(__fish_complete_directories)'
complete -c quaymere -n '__quaymere_after --snapshot-settings --snapshot-ledger --snapshot-about' -F
complete -c quaymere -n __quaymere_at_theme -a 'light dark'

#compdef quaymere
# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# Completes the command line of quaymere for zsh.

_arguments \
    '(- *)--render-config[render the configuration of the node]:folder, or - for a new one:_files -/' \
    '(- *)--node-version[print the version of the node]' \
    '(- *)--describe-storage[put a storage maintenance status into one line]:JSON object: ' \
    '(- *)--smoke[start a node, ask it, stop it]' \
    '(- *)--snapshot-settings[render the settings window to a picture]:PNG file:_files:theme:(light dark)' \
    '(- *)--snapshot-ledger[render the live ledger to a picture]:PNG file:_files:theme:(light dark)' \
    '(- *)--snapshot-about[render the about window to a picture]:PNG file:_files:theme:(light dark)'

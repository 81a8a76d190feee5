#compdef quaymere
# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT

# Zsh completion for quaymere.

_arguments \
    '(- *)--render-config[render the configuration of the node]:folder, or - for a new one:_files -/' \
    '(- *)--node-version[print the version of the node]' \
    '(- *)--describe-storage[describe a storage maintenance status in one line]:JSON object: ' \
    '(- *)--smoke[start a node, query it and stop it]' \
    '(- *)--snapshot-settings[render the Settings window to an image]:PNG file:_files:theme:(light dark)' \
    '(- *)--snapshot-ledger[render the Live Ledger window to an image]:PNG file:_files:theme:(light dark)' \
    '(- *)--snapshot-about[render the About window to an image]:PNG file:_files:theme:(light dark)'

# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034,SC2154

# KDE's Plasma on X11.

# shellcheck source=x11.sh
. "$root/tools/desktops.d/x11.sh"
# shellcheck source=kde.sh
. "$root/tools/desktops.d/kde.sh"

desktop_packages=("${x11_packages[@]}" "${kde_packages[@]}" kwin-x11)

prepare_root() {
    prepare_x11 "$1" && prepare_kde "$1"
}

session=(/etc/X11/Xsession startplasma-x11)
session_variables=(XDG_SESSION_TYPE=x11 XDG_SESSION_DESKTOP=KDE XDG_CURRENT_DESKTOP=KDE)

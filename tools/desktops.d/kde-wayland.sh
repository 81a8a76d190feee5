# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034,SC2154

# KDE's Plasma on Wayland.

# shellcheck source=kde.sh
. "$root/tools/desktops.d/kde.sh"

desktop_packages=("${kde_packages[@]}" kwin-wayland libcap2-bin plasma-workspace-wayland wl-clipboard)

prepare_root() {
    local unit=$1/etc/systemd/user/plasma-kwin_wayland.service.d
    mkdir -p "$unit"
    cat >"$unit/headless.conf" <<'END' || return
[Service]
Environment=KWIN_SCREENSHOT_NO_PERMISSION_CHECKS=1
ExecStart=
ExecStart=/usr/bin/kwin_wayland_wrapper --virtual --width 1280 --height 800
END
    # A container does not have the capabilities that the program asks for.
    in_root "$1" setcap -q -r /usr/bin/kwin_wayland || return
    prepare_kde "$1"
}

session=(startplasma-wayland)
session_variables=(XDG_SESSION_TYPE=wayland XDG_SESSION_DESKTOP=KDE XDG_CURRENT_DESKTOP=KDE)

picture() {
    as_anna /opt/inside/kwin picture >"$1"
}

window_picture() {
    as_anna /opt/inside/kwin picture "$1" >"$2"
}

fill_clipboard() {
    as_anna wl-copy something else >/dev/null 2>&1
}

clipboard() {
    as_anna timeout 10 wl-paste --no-newline
}

# KWin asks for the focus only, not for a key.
press_key() {
    :
}

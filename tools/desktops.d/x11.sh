# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034,SC2154

# What the desktops on X11 have in common: a server without a screen, and programs that look at it.

x11_packages=(dbus-x11 wmctrl x11-common x11-utils x11-xserver-utils xclip xdotool xterm xvfb)

# The server that a display manager starts for a session, and ends with it.
prepare_x11() {
    cat >"$1/etc/systemd/system/xserver.service" <<'END'
[Unit]
StopWhenUnneeded=yes
[Service]
ExecStart=/usr/bin/Xvfb :1 -ac -noreset -screen 0 1280x800x24 +extension GLX +render
ExecStartPost=/bin/sh -c 'until test -S /tmp/.X11-unix/X1; do sleep 0.1; done'
TimeoutStartSec=20s
END
}

# Prints a mark and the title for each of Tidewick's windows that the window manager knows.
windows() {
    local active id class title state
    active=$(as_anna xdotool getactivewindow 2>/dev/null)
    while read -r id _ class _ title; do
        [[ ${class,,} == *quaymere* || ${class,,} == *tidewick* ]] || continue
        state=' '
        if ((id == ${active:-0})); then
            state='*'
        elif as_anna xprop -id "$id" _NET_WM_STATE | grep -qF DEMANDS_ATTENTION; then
            state='!'
        fi
        printf '%s%s\n' "$state" "$title"
    done < <(as_anna wmctrl -lx 2>/dev/null)
}

focus_window() {
    as_anna wmctrl -a "$1"
}

press_key() {
    as_anna xdotool key "$1"
}

picture() {
    as_anna import -window root png:- >"$1"
}

window_picture() {
    local id
    id=$(as_anna wmctrl -l | grep -F -- "$1" | cut -d' ' -f1)
    as_anna import -window "$id" png:- >"$2"
}

fill_clipboard() {
    as_anna sh -c 'echo something else | xclip -selection clipboard -in >/dev/null 2>&1'
}

clipboard() {
    as_anna timeout 10 xclip -selection clipboard -out
}

# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034,SC2154

# sway with waybar.

desktop_packages=(dex foot grim sway waybar wl-clipboard wtype xdg-desktop-portal-gtk)

prepare_root() {
    local home=$1/home/anna
    mkdir -p "$home/.config/sway"
    # Users of sway start their autostart entries with a program like dex.
    cat >"$home/.config/sway/config" <<'END'
include /etc/sway/config.d/*
output HEADLESS-1 mode 1280x800
output * background #336699 solid_color
for_window [app_id=".*"] floating enable
exec waybar
exec /opt/inside/sway-keyboard
exec dex --autostart --environment sway
END
    chown -R 1000:1000 "$home/.config" || return
    # The bar belongs to the session, as in most configurations; the unit would start a second one.
    in_root "$1" systemctl --global mask waybar.service
}

session=(sway)
session_variables=(XDG_SESSION_TYPE=wayland XDG_SESSION_DESKTOP=sway XDG_CURRENT_DESKTOP=sway
    WLR_BACKENDS=headless WLR_LIBINPUT_NO_DEVICES=1 WLR_RENDERER=pixman)
terminal_title=foot
survives_bus=yes

is_ready() {
    as_anna swaymsg -t get_version >/dev/null 2>&1 && has_tray_host
}

# Prints Tidewick's windows, one a line: a mark, which is '*' for the one with the focus and '!' for those
# that ask for attention, and the title.
windows() {
    as_anna swaymsg -r -t get_tree | jq -r '.. | objects | select(.app_id? == "org.tidewick.Tidewick")
        | (if .focused then "*" elif .urgent then "!" else " " end) + .name'
}

# Presses a key in the window that has the focus.
press_key() {
    as_anna wtype -k "$1"
}

# The compositor passes the focus on only for a program that got a key or a click.
launch() {
    local launcher
    as_anna /opt/inside/launcher --key org.tidewick.Tidewick.desktop "$@" >>"$results/launcher.log" 2>&1 &
    launcher=$!
    wait_for 10 has_launcher && press_key Return
    wait "$launcher"
}

has_launcher() {
    as_anna swaymsg -r -t get_tree | jq -e '[.. | objects | select(.name? == "Launcher" and .focused)][0]' \
        >/dev/null
}

focus_window() {
    as_anna swaymsg "[title=\"$1\"] focus" >/dev/null
}

picture() {
    as_anna grim - >"$1"
}

# A picture of one window: its place on the screen comes from the compositor.
window_picture() {
    local place
    # shellcheck disable=SC2016
    place=$(as_anna swaymsg -r -t get_tree | jq -r --arg name "$1" '[.. | objects
        | select(.app_id? and .name == $name) | .rect][0] | "\(.x),\(.y) \(.width)x\(.height)"')
    as_anna grim -g "$place" - >"$2"
}

# From now on, the desktop prefers this scheme.
use_scheme() {
    gsettings_scheme "$1"
}

fill_clipboard() {
    as_anna wl-copy something else >/dev/null 2>&1
}

clipboard() {
    as_anna timeout 10 wl-paste --no-newline
}

# Starts a command in a terminal of the session.
in_terminal() {
    as_anna swaymsg -- exec foot "$@" >/dev/null
}

kill_tray_host() {
    send KILL waybar
}

start_tray_host() {
    as_anna swaymsg -- exec waybar >/dev/null
}

log_out() {
    # The answer may get lost, since sway ends at once.
    as_anna swaymsg exit >/dev/null 2>&1 || true
}

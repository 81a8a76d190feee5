# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034,SC2154

# openbox with trayer: a tray of X11 windows, without D-Bus.

# shellcheck source=x11.sh
. "$root/tools/desktops.d/x11.sh"

desktop_packages=("${x11_packages[@]}" openbox python3-xdg trayer xdg-desktop-portal-gtk)

tray=(trayer --edge bottom --align right --widthtype request --height 32)

prepare_root() {
    local settings=$1/home/anna/.config/openbox
    prepare_x11 "$1" || return
    mkdir -p "$settings" || return
    printf '%s &\n' "${tray[*]}" >"$settings/autostart"
    chown -R 1000:1000 "$1/home/anna/.config"
}

session=(/etc/X11/Xsession openbox-session)
session_variables=(XDG_SESSION_TYPE=x11 XDG_SESSION_DESKTOP=openbox XDG_CURRENT_DESKTOP=openbox)
terminal_title=xterm
survives_bus=yes

is_ready() {
    has_tray_host
}

has_tray_host() {
    processes trayer >/dev/null && processes openbox >/dev/null
}

has_no_tray_host() {
    ! processes trayer >/dev/null
}

# Prints the number of the icon's window, which is inside of the tray's.
tray_icon() {
    local tray
    tray=$(find_window '"panel": ("panel" "trayer")' -root)
    [[ -z $tray ]] || find_window '("quaymere"' -id "$tray"
}

# Prints the number of the first window below another with this in its description.
find_window() {
    as_anna xwininfo "${@:2}" -tree 2>/dev/null | grep -F -m 1 -- "$1" | grep -oE '0x[0-9a-f]+' | head -n 1
}

has_tray_item() {
    [[ -n $(tray_icon) ]]
}

# A menu is a window that the window manager does not manage.
has_menu() {
    local id attributes icon
    icon=$(tray_icon)
    # Menus of Qt have no type of their own.
    for id in $(as_anna xwininfo -root -tree | sed -nE 's/^ +(0x[0-9a-f]+) .*\("quaymere" .*/\1/p'); do
        attributes=$(as_anna xwininfo -id "$id" 2>/dev/null)
        [[ $id == "$icon" || $attributes != *IsViewable* ]] \
            || [[ $attributes != *'Redirect State: yes'* ]] || return 0
    done
    return 1
}

show_menu() {
    as_anna xdotool mousemove --window "$(tray_icon)" 8 8 click 3
    check "a click on the icon opens no menu" wait_for 5 has_menu
}

has_no_menu() {
    ! has_menu
}

# Nobody else can read this menu, so it is left to the picture what is in it.
has_rows() {
    show_menu || return
    picture "$results/menu.png"
    as_anna xdotool key Escape
    check "the menu does not close" wait_for 5 has_no_menu
}

# With the keyboard, from the last row upwards.
click() {
    local -a keys=()
    local -i count
    local -A places=([Quit]=1 [About]=2 ['Settings…']=3 ['Live Ledger…']=4 ['Copy server_info JSON']=5
        ['Open Log']=6 ['Open Data Folder']=7)
    show_menu || return
    for ((count = ${places[$1]}; count > 0; --count)); do
        keys+=(Up)
    done
    as_anna xdotool key --delay 50 "${keys[@]}" Return
    wait_for 5 has_no_menu
}

use_scheme() {
    gsettings_scheme "$1"
}

launch() {
    in_machine /opt/inside/in-session openbox /opt/inside/launcher org.tidewick.Tidewick.desktop "$@"
}

in_terminal() {
    in_machine /opt/inside/in-session openbox xterm -T xterm -e "$@"
}

kill_tray_host() {
    send KILL trayer && wait_for 10 has_no_tray_host
}

start_tray_host() {
    in_machine /opt/inside/in-session openbox "${tray[@]}"
}

log_out() {
    as_anna openbox --exit
}

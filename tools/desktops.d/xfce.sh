# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034,SC2154

# XFCE.

# shellcheck source=x11.sh
. "$root/tools/desktops.d/x11.sh"

desktop_packages=("${x11_packages[@]}" xdg-desktop-portal-gtk xfce4-panel xfce4-session xfce4-settings
    xfce4-terminal xfdesktop4 xfwm4)

prepare_root() {
    local settings=$1/etc/xdg/xfce4/xfconf/xfce-perchannel-xml
    prepare_x11 "$1" || return
    mkdir -p "$settings" || return
    # XFCE has a file manager of its own, unless another one is preferred.
    mkdir -p "$1/usr/share/xfce4/helpers" || return
    printf '%s\n' '[Desktop Entry]' Version=1.0 Type=X-XFCE-Helper Name=Opener \
        X-XFCE-Category=FileManager X-XFCE-Commands=/opt/inside/opener \
        'X-XFCE-CommandsWithParameter=/opt/inside/opener "%s"' \
        >"$1/usr/share/xfce4/helpers/opener.desktop" || return
    printf 'FileManager=opener\n' >"$1/etc/xdg/xfce4/helpers.rc" || return
    # The panel would ask at its first start which one is wanted.
    cp "$1/etc/xdg/xfce4/panel/default.xml" "$settings/xfce4-panel.xml"
}

session=(/etc/X11/Xsession startxfce4)
session_variables=(XDG_SESSION_TYPE=x11 XDG_SESSION_DESKTOP=xfce XDG_CURRENT_DESKTOP=XFCE)
terminal_title=Terminal

is_ready() {
    has_tray_host && has_started
}

# The session manager refuses to end the session before.
has_started() {
    local name=org.xfce.SessionManager state
    state=$(as_anna gdbus call --session --dest "$name" --object-path "/${name//.//}" \
        --method org.xfce.Session.Manager.GetState 2>/dev/null)
    [[ $state == '(uint32 1,)' ]]
}

use_scheme() {
    gsettings_scheme "$1"
}

# Programs that the panel starts are members of the session, which the session manager has to end too.
launch() {
    in_machine /opt/inside/in-session xfce4-panel /opt/inside/launcher org.tidewick.Tidewick.desktop "$@"
}

in_terminal() {
    in_machine /opt/inside/in-session xfce4-panel xfce4-terminal --disable-server -x "$@"
}

kill_tray_host() {
    send KILL xfce4-panel && wait_for 10 has_no_tray_host
}

# The session manager starts it again by itself, but not if it ends too often.
start_tray_host() {
    wait_for 10 has_tray_host || in_machine /opt/inside/in-session xfce4-session xfce4-panel
}

log_out() {
    as_anna timeout 10 xfce4-session-logout --logout >>"$results/launcher.log" 2>&1
}

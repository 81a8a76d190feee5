# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034,SC2154

# What KDE's Plasma has in common on X11 and on Wayland.

kde_packages=(breeze kde-cli-tools kded5 konsole libgl1-mesa-dri plasma-desktop plasma-workspace qdbus-qt5
    systemsettings xdg-desktop-portal-kde)
terminal_title=Konsole

prepare_kde() {
    local settings=$1/home/anna/.config
    mkdir -p "$settings"
    # No lock, no introduction, and no splash screen above everything.
    printf '[Daemon]\nAutolock=false\nLockOnResume=false\n' >"$settings/kscreenlockerrc" || return
    printf '[KSplash]\nEngine=none\nTheme=None\n' >"$settings/ksplashrc" || return
    printf '[General]\nconfirmLogout=false\nloginMode=emptySession\n' >"$settings/ksmserverrc" || return
    chown -R 1000:1000 "$settings" || return
    rm -f "$1/etc/xdg/autostart/org.kde.plasma-welcome.desktop"
}

is_ready() {
    in_machine pgrep -u anna -x plasmashell >/dev/null && has_tray_host
}

windows() {
    as_anna /opt/inside/kwin windows
}

focus_window() {
    as_anna /opt/inside/kwin focus "$1"
}

use_scheme() {
    local -A names=([light]=BreezeLight [dark]=BreezeDark)
    as_anna plasma-apply-colorscheme "${names[$1]}" >>"$results/scheme.log" 2>&1
}

# As a start from the menu: KDE gives each application a unit of its own.
in_terminal() {
    # shellcheck disable=SC2016
    in_machine sh -c 'printf "[Desktop Entry]\nType=Application\nName=Terminal\nExec=konsole -e %s\n" "$1" \
        >/usr/share/applications/terminal.desktop' sh "$*"
    as_anna kioclient5 exec /usr/share/applications/terminal.desktop >>"$results/launcher.log" 2>&1
}

# The watcher is another process and still says that there is a host.
kill_tray_host() {
    send KILL plasmashell
}

start_tray_host() {
    as_anna systemctl --user start plasma-plasmashell.service
    wait_for 30 processes plasmashell >/dev/null
}

log_out() {
    as_anna qdbus org.kde.Shutdown /Shutdown org.kde.Shutdown.logout >/dev/null
}

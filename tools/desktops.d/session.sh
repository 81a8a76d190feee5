# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034,SC2154

# The session of the user, and Tidewick in it.
#
# The file of each desktop adds what differs:
#     desktop_packages, session, session_variables    what is installed, and how the desktop starts
#     prepare_root FOLDER                             configures it in the root directory
#     is_ready                                        whether it has come up, with its tray
#     windows, focus_window TITLE, press_key KEY      see sway.sh
#     picture FILE, window_picture TITLE FILE         pictures of the screen and of one window
#     use_scheme light|dark, fill_clipboard, clipboard
#     in_terminal COMMAND..., terminal_title          a terminal of the session, and its windows' title
#     kill_tray_host, start_tray_host, log_out
#     survives_bus                                    whether the session goes on without its bus
# It may also replace functions of this file.

autostart=/usr/share/tidewick/autostart/org.tidewick.Tidewick.desktop
data=/home/anna/.local/share/Tidewick

# Starts the desktop in a session of anna's, through PAM, as a display manager does.
start_session() {
    local variable
    local -a properties=(-p PAMName=login -p User=anna -p WorkingDirectory=/home/anna
        -p StandardOutput=journal -p StandardError=journal)
    for variable in "${session_variables[@]}" XDG_SESSION_CLASS=user LIBGL_ALWAYS_SOFTWARE=1; do
        properties+=(-p "Environment=$variable")
    done
    if [[ " ${session_variables[*]} " == *' XDG_SESSION_TYPE=x11 '* ]]; then
        properties+=(-p Environment=DISPLAY=:1 -p BindsTo=xserver.service -p After=xserver.service)
    fi
    in_machine systemd-run --quiet --unit=desktop --collect "${properties[@]}" "${session[@]}" || return
    wait_for 90 is_ready
}

has_session() {
    [[ $(in_machine systemctl is-active desktop.service 2>/dev/null) == active ]]
}

has_no_session() {
    ! has_session
}

has_tray_host() {
    as_anna /opt/inside/tray host 2>/dev/null
}

has_no_tray_host() {
    ! has_tray_host
}

# The ids of the user's processes of that name.
processes() {
    in_machine pgrep -u anna -x "$1"
}

# Sends a signal to processes of the user, by their ids.
send() {
    local -a ids
    mapfile -t ids < <(processes "$2")
    ((${#ids[@]})) && in_machine kill -s "$1" "${ids[@]}"
}

has_ended() {
    ! processes 'quaymere|xrpld' >/dev/null
}

tray_rows() {
    as_anna /opt/inside/tray rows
}

has_tray_item() {
    tray_rows >/dev/null 2>&1
}

click() {
    as_anna /opt/inside/tray click "$1"
}

# Answers what Tidewick asks where a program without the focus cannot fill the clipboard.
accept_offer() {
    :
}

# Starts the entry, or one of its actions, as a desktop's menu does.
launch() {
    as_anna /opt/inside/launcher org.tidewick.Tidewick.desktop "$@" >>"$results/launcher.log" 2>&1
}

node_answers() {
    in_machine bash -c 'exec 3<>/dev/tcp/127.0.0.1/15005' 2>/dev/null && processes xrpld >/dev/null
}

has_window() {
    windows | cut -c2- | grep -qF -- "$1"
}

has_active_window() {
    windows | grep '^\*' | grep -qF -- "$1"
}

has_raised() {
    windows | grep '^[*!]' | grep -qF -- "$1"
}

# Where the desktop reads the scheme from the settings of GNOME.
gsettings_scheme() {
    local -A values=([light]=default [dark]=prefer-dark)
    as_anna gsettings set org.gnome.desktop.interface color-scheme "${values[$1]}"
}

use_scenario() {
    # shellcheck disable=SC2016
    in_machine sh -c 'printf "%s\n" "$1" >/etc/simnode' sh "$1"
}

# Removes what a former run left, and what a session manager would start again.
forget() {
    in_machine rm -rf "$data" /home/anna/.config/autostart /home/anna/.cache/sessions
}

cursor() {
    in_machine journalctl -q -n 0 --show-cursor | sed -n 's/^-- cursor: //p'
}

# Ends Tidewick and the session, by whatever means.
end_session() {
    if ! has_ended; then
        in_machine kill -s TERM "$(processes quaymere | head -n 1)"
        wait_for 100 has_ended || send KILL 'quaymere|xrpld'
    fi
    if has_session; then
        log_out
        wait_for 30 has_no_session || in_machine systemctl stop desktop.service
    fi
    wait_for 60 is_logged_out
}

# The user's service manager ends some seconds after the last session.
is_logged_out() {
    ! in_machine systemctl --quiet is-active user@1000.service
}

# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034,SC2154

# The rows of the table, except for those that end the session. Each is a function row_NAME that succeeds
# if Tidewick did what it should, and otherwise leaves the reason in $reason. Tidewick runs when one
# begins.

# The row's result is REASON if the command fails.
check() {
    reason=$1
    shift
    "$@"
}

row_start() {
    check "the menu entry cannot be launched" launch || return
    check "the menu entry starts no process" wait_for 20 processes quaymere >/dev/null || return
    check "the node does not answer" wait_for 30 node_answers
}

row_tray() {
    check "no item in the tray" wait_for 10 has_tray_item || return
    has_rows && picture "$results/tray.png"
}

# Whether the tray's host can read the menu, with the node's state and every row.
has_rows() {
    local row
    check "the menu never says 'Full'" wait_for 20 tray_shows Full || return
    tray_rows >"$results/menu.txt"
    for row in 'Stop Node' 'Clear Storage…' 'Open Data Folder' 'Open Log' 'Copy server_info JSON' \
        'Live Ledger…' 'Settings…' About Quit; do
        check "the menu has no row '$row'" grep -qxF "+ $row" "$results/menu.txt" || return
    done
}

tray_shows() {
    tray_rows 2>/dev/null | grep -qF -- "$1"
}

# The rows of the menu that open a window, each with what the window's title contains.
window_rows=('Live Ledger…:Live Ledger' 'Settings…:Settings' 'About:About')

open_windows() {
    local row
    for row in "${window_rows[@]}"; do
        check "'${row%%:*}' cannot be clicked" click "${row%%:*}" || return
        check "'${row%%:*}' opens no window" wait_for 10 has_window "${row#*:}" || return
    done
}

row_windows() {
    open_windows || return
    picture "$results/windows.png"
}

# "Open Data Folder" and "Open Log" reach the program for such files.
row_open() {
    in_machine rm -f /home/anna/opened
    check "'Open Data Folder' cannot be clicked" click 'Open Data Folder' || return
    check "'Open Data Folder' opens nothing" wait_for 20 has_opened '/Tidewick/\?$' || return
    check "'Open Log' cannot be clicked" click 'Open Log' || return
    check "'Open Log' opens nothing" wait_for 20 has_opened 'debug\.log$'
}

has_opened() {
    grep -q -- "$1" "$machine/home/anna/opened" 2>/dev/null
}

# Behind another program's window, the windows have to come to the front, or ask for attention where the
# desktop's rule is that they do.
row_raise() {
    local action row
    open_windows || return
    # None of them asks for attention any more once it has had the focus.
    for row in "${window_rows[@]}"; do
        focus_window "${row#*:}"
    done
    cover || return
    check "a second launch fails" launch || return
    check "a second launch raises no window" wait_for 5 has_raised '' || return
    for action in live-ledger:'Live Ledger' settings:Settings; do
        cover || return
        check "the action ${action%%:*} cannot be launched" launch "${action%%:*}" || return
        check "the action ${action%%:*} does not raise its window" \
            wait_for 5 has_raised "${action#*:}" || return
    done
}

# Opens another program's window above those of Tidewick.
cover() {
    uncover
    in_terminal sleep 1000
    check "no terminal opens" wait_for 10 processes sleep >/dev/null || return
    check "Tidewick's windows cannot be covered" wait_for 10 is_covered
}

# A new window does not always get the focus.
is_covered() {
    focus_window "$terminal_title"
    ! windows | grep -q '^\*'
}

uncover() {
    send TERM sleep
    wait_for 10 is_uncovered
}

is_uncovered() {
    ! processes sleep >/dev/null
}

# Clicked while another program has the focus, as a tray's menu usually is.
row_copy() {
    cover || return
    copy
}

# Clicked while one of Tidewick's own windows has the focus.
row_copy-window() {
    uncover
    open_windows || return
    focus_window Settings
    check "its window cannot be given the focus" wait_for 10 has_active_window Settings || return
    # A compositor hands the clipboard to programs that got a key or a click.
    press_key Tab
    copy
}

copy() {
    fill_clipboard
    check "'Copy server_info JSON' cannot be clicked" click 'Copy server_info JSON' || return
    accept_offer
    check "the clipboard does not get the text" wait_for 10 clipboard_has_json
}

clipboard_has_json() {
    clipboard >"$results/clipboard.json" 2>/dev/null \
        && jq -e '.. | .server_state? // empty' "$results/clipboard.json" >/dev/null 2>&1
}

row_dark() {
    uncover
    open_windows || return
    focus_window 'Live Ledger'
    check "its window cannot be given the focus" wait_for 10 has_active_window 'Live Ledger' || return
    use_scheme light
    check "the window is not light at first" wait_for 15 is_bright light-before || return
    use_scheme dark
    check "the portal does not say that the desktop is dark" wait_for 15 portal_says 1 || return
    check "the window does not become dark" wait_for 15 is_dark dark || return
    use_scheme light
    check "the window does not become light again" wait_for 15 is_bright light-after
}

portal_says() {
    as_anna gdbus call --session --dest org.freedesktop.portal.Desktop \
        --object-path /org/freedesktop/portal/desktop --method org.freedesktop.portal.Settings.Read \
        org.freedesktop.appearance color-scheme 2>/dev/null | grep -qF "uint32 $1"
}

# The mean brightness of the window, from 0 to 255. Text and bars do not change it much.
brightness() {
    window_picture 'Live Ledger' "$results/$1.png" || return
    in_machine convert png:- -colorspace Gray -format '%[fx:int(255*mean)]' info: <"$results/$1.png"
}

is_bright() {
    local value
    value=$(brightness "$1") && ((value > 150))
}

is_dark() {
    local value
    value=$(brightness "$1") && ((value < 100))
}

row_tray-host() {
    check "the tray's host cannot be ended" kill_tray_host || return
    start_tray_host
    check "the tray's host does not come back" wait_for 30 has_tray_host || return
    check "the item does not come back" wait_for 20 has_tray_item || return
    check "Tidewick ended" processes quaymere >/dev/null
}

# Only where the desktop itself survives this. The session is of no use afterwards.
row_bus() {
    local before status=0
    before=$(processes xrpld)
    # This command loses its own connection, too.
    in_machine systemctl --user -M anna@ restart dbus.service 2>/dev/null
    bus_is_survived || status=$?
    end_session
    return "$status"
}

bus_is_survived() {
    check "Tidewick or its node ends with the bus" stays_for 5 "$before"
}

# Whether Tidewick and this node run for some seconds.
stays_for() {
    ! wait_for "$1" has_changed "$2"
}

has_changed() {
    ! processes quaymere >/dev/null || [[ $(processes xrpld) != "$1" ]]
}

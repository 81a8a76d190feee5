# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034,SC2154

# The rows that end the session or the machine, or take the program away, while the node needs a minute
# to close its store. However that happens, the node has to close it.

slow_node='state=full stop-delay=60'

# Longer than the node needs, and than Tidewick and the service managers give it.
ending_limit=150

start_from_entry() {
    launch
}

# The session starts it itself.
start_from_autostart() {
    :
}

start_from_terminal() {
    in_terminal quaymere
}

start_from_service() {
    as_anna systemctl --user start tidewick.service
}

# Logs in, starts Tidewick in the given way, and waits for its node.
arrive() {
    forget
    use_scenario "$slow_node"
    if [[ $1 == autostart ]]; then
        in_machine setpriv --reuid anna --regid anna --init-groups mkdir -p /home/anna/.config/autostart
        in_machine ln -s "$autostart" /home/anna/.config/autostart/
    fi
    check "the session does not start" start_session || return
    check "it does not start from the $1" "start_from_$1" || return
    check "the node does not answer" wait_for 30 node_answers || return
    in_machine systemctl --user -M anna@ status --no-pager >"$results/$row.before.txt" 2>&1
    in_machine systemctl status user-1000.slice --no-pager >>"$results/$row.before.txt" 2>&1
    mark=$(cursor)
    begin=$SECONDS
}

# Looks how the node ended. The machine may be off by then.
judge() {
    local log=$machine$data/debug.log journal=$results/$row.journal signals killed
    is_off || in_machine journalctl --sync
    journalctl --quiet --directory "$machine/var/log/journal" --after-cursor "$mark" >"$journal"
    cp -- "$log" "$results/$row.debug.log"
    seconds=$((SECONDS - begin))
    signals=$(grep -c 'signal 15' "$log")
    if killed=$(grep -h -m 1 -E '([Tt]idewick|quaymere|xrpld).*(SIGKILL|9/KILL)' "$journal"); then
        reason="killed: ${killed##*]: }"
        ! grep -qF 'Done.' "$log" || reason+=" Its node had closed its store before"
        return 1
    fi
    check "the node was told to stop $signals times" test "$signals" -le 1 || return
    check "the node never closed its store" grep -qF 'Done.' "$log"
}

log_out_from() {
    local session_seconds ended
    arrive "$1" || return
    log_out
    wait_for "$ending_limit" has_no_session
    session_seconds=$((SECONDS - begin))
    wait_for "$ending_limit" has_ended
    ended=$?
    judge || return
    seconds+=" s, the session $session_seconds"
    check "Tidewick or its node still runs" test "$ended" == 0 || return
    check "the session does not end" has_no_session || return
    check "the user's service manager does not end" wait_for 60 is_logged_out
}

row_logout-entry() {
    log_out_from entry
}

row_logout-autostart() {
    log_out_from autostart
}

row_logout-terminal() {
    log_out_from terminal
}

row_logout-service() {
    log_out_from service
}

row_poweroff() {
    arrive entry || return
    in_machine systemctl poweroff
    check "the machine does not turn off" wait_for "$ending_limit" is_off || return
    judge
}

# The status with which systemd-nspawn leaves it to its caller to start the machine again.
wants_restart=133

row_reboot() {
    local ending=0
    arrive entry || return
    in_machine systemctl reboot
    check "the machine does not turn off" wait_for "$ending_limit" is_off || return
    wait "$nspawn" || ending=$?
    judge || return
    check "the machine wants no restart" test "$ending" == "$wants_restart" || return
    check "the machine does not start again" boot
}

install_again() {
    in_machine apt-get -q install --reinstall -y --no-install-recommends /root/tidewick.deb \
        >>"$results/install.log" 2>&1
}

# Neither must stop what runs.
row_upgrade() {
    local before
    before=$(processes 'quaymere|xrpld')
    check "the package cannot be installed again" install_again || return
    check "an upgrade ends what runs" test "$before" == "$(processes 'quaymere|xrpld')" || return
    check "the menu's rows disappear with an upgrade" has_tray_item
}

row_remove() {
    local before
    before=$(processes 'quaymere|xrpld')
    check "the package cannot be removed" in_machine apt-get -q remove -y tidewick \
        >>"$results/install.log" 2>&1 || return
    check "a removal ends what runs" test "$before" == "$(processes 'quaymere|xrpld')" || return
    check "the menu cannot quit it after a removal" click Quit || return
    check "it does not quit after a removal" wait_for 100 has_ended || return
    check "the node never closed its store" grep -qF 'Done.' "$machine$data/debug.log" || return
    check "the package cannot be installed again" install_again
}

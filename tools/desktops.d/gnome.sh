# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034,SC2154

# GNOME on Wayland, with the extension that shows tray items.

desktop_packages=(gjs gnome-session gnome-settings-daemon gnome-shell gnome-shell-extension-appindicator
    gnome-terminal libgl1-mesa-dri librsvg2-common xdg-desktop-portal-gnome xwayland)

extension=ubuntu-appindicators@ubuntu.com

prepare_root() {
    local unit=$1/etc/systemd/user/org.gnome.Shell@wayland.service.d
    mkdir -p "$unit"
    # The unsafe mode lets the checks ask the shell about its windows.
    cat >"$unit/headless.conf" <<'END' || return
[Service]
ExecStart=
ExecStart=/usr/bin/gnome-shell --headless --virtual-monitor 1280x800 --unsafe-mode
END
    cat >"$1/usr/share/glib-2.0/schemas/90_tidewick.gschema.override" <<END || return
[org.gnome.shell]
enabled-extensions=['$extension']
welcome-dialog-last-shown-version='1000'
[org.gnome.desktop.background]
picture-options='none'
primary-color='#336699'
[org.gnome.desktop.lockdown]
disable-lock-screen=true
[org.gnome.desktop.session]
idle-delay=uint32 0
END
    in_root "$1" glib-compile-schemas /usr/share/glib-2.0/schemas || return
    # A shell that fails soon after its start, such as at the end of a short session, would lose its
    # extensions, and with them the tray.
    in_root "$1" systemctl --global mask org.gnome.Shell-disable-extensions.service
}

session=(gnome-session --session=gnome)
session_variables=(XDG_SESSION_TYPE=wayland XDG_SESSION_DESKTOP=gnome XDG_CURRENT_DESKTOP=GNOME
    DESKTOP_SESSION=gnome)
terminal_title=Terminal

shell() {
    as_anna /opt/inside/gnome-eval "$1"
}

is_ready() {
    # It starts in the overview, where no window has the focus, and without a keyboard.
    shell "Main.overview.hide();
        global.tidewick_keyboard ??= imports.gi.Clutter.get_default_backend().get_default_seat()
            .create_virtual_device(imports.gi.Clutter.InputDeviceType.KEYBOARD_DEVICE);" >/dev/null 2>&1 \
        && has_tray_host
}

# The menu of the desktop is the shell itself. Its own calls pass the time of the click.
launch() {
    local now='global.display.get_current_time_roundtrip()'
    local app="imports.gi.Shell.AppSystem.get_default().lookup_app('org.tidewick.Tidewick.desktop')"
    if (($#)); then
        shell "$app.launch_action('$1', $now, -1)" 2>>"$results/launcher.log"
    else
        shell "$app.activate_full(-1, $now)" 2>>"$results/launcher.log"
    fi
}

all_windows='global.get_window_actors().map(actor => actor.meta_window)'

windows() {
    shell "$all_windows.filter(window => window.get_wm_class() == 'org.tidewick.Tidewick')
        .map(window => (window.has_focus() ? '*' : window.demands_attention ? '!' : ' ')
            + window.get_title()).join('\n')"
}

focus_window() {
    shell "$all_windows.find(window => window.get_title()?.includes('$1'))?.activate(0)" >/dev/null
}

press_key() {
    shell "for (const state of [1, 0])
            global.tidewick_keyboard.notify_keyval(global.get_current_time(),
                imports.gi.Clutter['KEY_$1'], state)" >/dev/null
}

picture() {
    shoot Screenshot "$1" true false
}

window_picture() {
    local -a place
    read -ra place < <(shell "(window => {
            const place = window.get_frame_rect();
            return [place.x, place.y, place.width, place.height].join(' ');
        })($all_windows.find(window => window.get_title()?.includes('$1')))")
    shoot ScreenshotArea "$2" "${place[@]}" false
}

# The shell writes the picture to a file itself.
shoot() {
    local method=$1 file=$2
    shift 2
    as_anna gdbus call --session --dest org.gnome.Shell.Screenshot \
        --object-path /org/gnome/Shell/Screenshot --method "org.gnome.Shell.Screenshot.$method" \
        "$@" /home/anna/picture.png >/dev/null && in_machine cat /home/anna/picture.png >"$file"
}

use_scheme() {
    gsettings_scheme "$1"
}

fill_clipboard() {
    shell "imports.gi.St.Clipboard.get_default().set_text(
        imports.gi.St.ClipboardType.CLIPBOARD, 'something else')" >/dev/null
}

# Tidewick opens a window with a button for copying.
accept_offer() {
    wait_for 5 has_offer || return
    shell "$all_windows.find(window => window.get_title() == 'Tidewick').activate(0)" >/dev/null
    picture "$results/offer.png"
    press_key Return
}

has_offer() {
    windows | cut -c2- | grep -qx Tidewick
}

# The shell answers in a callback.
clipboard() {
    shell "global.tidewick_text = ''; imports.gi.St.Clipboard.get_default().get_text(
        imports.gi.St.ClipboardType.CLIPBOARD, (_, text) => global.tidewick_text = text ?? '')" >/dev/null
    wait_for 3 clipboard_has_text && shell global.tidewick_text
}

clipboard_has_text() {
    [[ -n $(shell global.tidewick_text) ]]
}

in_terminal() {
    as_anna gnome-terminal -- "$@" >>"$results/launcher.log" 2>&1
}

kill_tray_host() {
    as_anna gnome-extensions disable "$extension" && wait_for 10 has_no_tray_host
}

start_tray_host() {
    as_anna gnome-extensions enable "$extension"
}

log_out() {
    as_anna gnome-session-quit --logout --no-prompt
}

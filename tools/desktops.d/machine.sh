# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034,SC2154

# The machine of tools/desktops: a root directory of Debian with one desktop, which systemd-nspawn boots
# without a network. The directory itself is never written to once it is complete: each boot has a layer
# of its own on top, in which everything that the rows do ends up.

# Set by the caller: $roots and $scratch (folders), $release, $desktop and the arrays of packages that the
# file of each desktop defines.

# Needed on every desktop: by the login, by the checks, and by what Tidewick recommends.
common_packages=(adwaita-icon-theme dbus-user-session dconf-gsettings-backend desktop-file-utils file
    fonts-dejavu-core gir1.2-gtk-3.0 gsettings-desktop-schemas imagemagick libglib2.0-bin libpam-systemd
    procps python3-gi qt6-wayland shared-mime-info systemd-sysv xdg-desktop-portal xdg-utils)

# Runs a command in a root directory that is not booted, with the network of the host.
in_root() {
    local directory=$1
    shift
    systemd-nspawn --quiet --register=no --keep-unit --pipe -D "$directory" \
        --setenv=DEBIAN_FRONTEND=noninteractive "$@" </dev/null
}

install_packages() {
    local directory=$1
    shift
    in_root "$directory" apt-get -q -o Dpkg::Options::=--force-confnew install -y \
        --no-install-recommends "$@"
}

# Calls a function that completes a root directory, unless it has been completed before for the same
# list of packages. An interrupted attempt leaves only a folder that the next one deletes.
complete() {
    local directory=$1 content=$2 log=$scratch/install.log
    shift 2
    if [[ ! -f $directory.content || $(<"$directory.content") != "$content" ]]; then
        say "tidewick: installing Debian $release in $directory"
        rm -rf --one-file-system -- "$directory" "$directory.content"
        "$@" >"$log" 2>&1 || { tail -n 20 "$log" >&2; fail "$directory could not be installed"; }
        printf '%s\n' "$content" >"$directory.content"
    fi
}

make_base() {
    debootstrap --variant=minbase "$release" "$base" ${TIDEWICK_MIRROR:+"$TIDEWICK_MIRROR"} || return
    printf 'tidewick-desktops\n' >"$base/etc/hostname"
    printf '127.0.0.1 localhost tidewick-desktops\n' >"$base/etc/hosts"
    in_root "$base" apt-get -q update || return
    install_packages "$base" "${common_packages[@]}" || return
    in_root "$base" useradd --create-home --shell /bin/bash anna || return
    cat >"$base/usr/share/applications/opener.desktop" <<'END' || return
[Desktop Entry]
Type=Application
Name=Opener
Exec=/opt/inside/opener %u
MimeType=inode/directory;text/plain;text/x-log;
END
    printf '[Default Applications]\n%s=opener.desktop\n%s=opener.desktop\n%s=opener.desktop\n' \
        inode/directory text/plain text/x-log >"$base/etc/xdg/mimeapps.list" || return
    in_root "$base" update-desktop-database || return
    # The journal has to outlive the machine, and the node's scenario has to reach every way of starting it.
    mkdir -p "$base/var/log/journal" || return
    printf 'TIDEWICK_SIMNODE=@/etc/simnode\nLANG=C.UTF-8\n' >>"$base/etc/environment" || return
    printf 'state=full\n' >"$base/etc/simnode"
}

make_desktop() {
    cp -a -- "$base" "$system" || return
    install_packages "$system" "${desktop_packages[@]}"
}

# Makes $system, the root directory of the desktop. Runs that share a folder wait for each other.
make_root() {
    base=$roots/$release
    system=$roots/$release-$desktop
    {
        flock 9
        complete "$base" "${common_packages[*]}" make_base
        complete "$system" "${common_packages[*]} ${desktop_packages[*]}" make_desktop
    } 9>"$roots/.lock"
}

# Puts an empty layer above the root directory and the package with a simulated node into it.
mount_machine() {
    layer=$scratch/$desktop
    machine=$layer/machine
    mkdir -p "$layer/changes" "$layer/work" "$machine"
    mount -t overlay tidewick-desktops "$machine" \
        -o "lowerdir=$system,upperdir=$layer/changes,workdir=$layer/work" || return
    install -m 755 "$node" "$machine/usr/bin/xrpld" || return
    cp -- "$package" "$machine/root/tidewick.deb" || return
    install_packages "$machine" /root/tidewick.deb >"$results/install.log" 2>&1 || return
    prepare_root "$machine" >>"$results/install.log" 2>&1
}

unmount_machine() {
    if [[ -n ${machine:-} ]] && mountpoint -q "$machine"; then
        umount "$machine" && rm -rf --one-file-system -- "$layer"
    fi
}

# The process that is the machine's init: the only child of systemd-nspawn.
leader() {
    pgrep -P "$nspawn" | head -n 1
}

boot() {
    systemd-nspawn --quiet -D "$machine" --boot --private-network --register=no --keep-unit \
        --machine="tidewick-$desktop" --console=pipe \
        --bind-ro="$root/tools/desktops.d/inside:/opt/inside" </dev/null >>"$results/boot.log" 2>&1 &
    nspawn=$!
    wait_for 60 is_up
}

is_up() {
    local state
    state=$(in_machine systemctl is-system-running 2>/dev/null)
    [[ $state == running || $state == degraded ]]
}

is_off() {
    ! kill -0 "$nspawn" 2>/dev/null
}

# Ends the machine, whatever state it is in.
shut_down() {
    [[ -n ${nspawn:-} ]] || return 0
    is_off || in_machine systemctl poweroff 2>/dev/null
    wait_for 150 is_off || kill -KILL "$nspawn" "$(leader)"
    wait "$nspawn" 2>/dev/null
    nspawn=''
}

# Runs a command as root in the machine.
in_machine() {
    local init
    init=$(leader)
    [[ -n $init ]] || return 1
    nsenter -t "$init" -m -u -i -p -C -n -- "$@"
}

# Runs a command with the rights of the user and the environment that the desktop gave the user's service
# manager, but outside of the session.
as_anna() {
    in_machine /opt/inside/as-anna "$@"
}

# Polls until a command succeeds, for some seconds.
wait_for() {
    local limit=$((SECONDS + $1))
    shift
    until "$@"; do
        ((SECONDS < limit)) || return 1
        sleep 0.3
    done
}

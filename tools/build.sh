# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash

# Functions shared by run, test, .ci/run and the scripts in tools/. They print to standard error, so that
# the standard output of a command-line mode is the program's alone.

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)

say() {
    printf '%s\n' "$*" >&2
}

fail() {
    say "tidewick: $*"
    exit 1
}

# The packages needed to build, for the scripts that source this one.
# shellcheck disable=SC2034
build_packages=(g++ cmake ninja-build pkgconf qt6-base-dev qt6-svg-dev qt6-websockets-dev
    qt6-wayland cmark-gfm qcoro-qt6-dev libsimdjson-dev libwayland-dev libxcb-xfixes0-dev)

# Any version of Boost's headers will do. Its development packages conflict with each other, so one is
# installed only if there are no headers yet.
[[ -e /usr/include/boost/version.hpp || -e /usr/local/include/boost/version.hpp ]] \
    || build_packages+=(libboost-dev)

# The packages needed in addition to make a Debian package.
# shellcheck disable=SC2034
package_packages=(dpkg-dev file)

# The packages needed in addition by the tests and the programs of tools/: a desktop to run on, fonts of
# different shapes, and checkers for the installed files.
# shellcheck disable=SC2034
test_packages=(dbus-daemon fonts-dejavu-core fonts-droid-fallback fonts-hosny-amiri fonts-inter
    fonts-yanone-kaffeesatz libglib2.0-bin libsm-dev xfce4-panel xvfb sway waybar wl-clipboard wtype
    appstream desktop-file-utils fish lintian mandoc systemd zsh)

# Installs those of the named Debian packages that are missing.
need_packages() {
    command -v dpkg-query >/dev/null || fail "this is not a Debian system: install the equivalents of" \
        "$* by hand, then build with 'cmake --preset release && cmake --build build'"
    local package missing=()
    for package in "$@"; do
        [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) == installed ]] \
            || missing+=("$package")
    done
    ((${#missing[@]})) || return 0

    local as_root=()
    if ((EUID != 0)); then
        command -v sudo >/dev/null || fail "these packages are missing, and there is no sudo to" \
            "install them with: ${missing[*]}"
        as_root=(sudo)
    fi
    say "tidewick: installing ${missing[*]}"
    "${as_root[@]}" apt-get -q update >&2 \
        || say "tidewick: the package lists could not be updated; trying with the old ones"
    # Unattended upgrades hold the lock for some minutes.
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -q -o DPkg::Lock::Timeout=600 install -y --no-install-recommends \
        "${missing[@]}" >&2 \
        || fail "the packages could not be installed"
}

# More than one per processor, since most tests spend most of their time waiting.
tests_at_a_time() {
    printf '%s' $(("$(nproc)" * 2))
}

# Builds the named targets in build/ with the release preset. Concurrent calls run one at a time. Prints
# nothing on success, except for a note that the first build takes long.
build() {
    local log
    if [[ -n ${TIDEWICK_XRPLD:-} ]]; then
        [[ -x $TIDEWICK_XRPLD && -f $TIDEWICK_XRPLD ]] \
            || fail "TIDEWICK_XRPLD names '$TIDEWICK_XRPLD', which is not an executable file"
        TIDEWICK_XRPLD=$(readlink -f -- "$TIDEWICK_XRPLD")
    fi
    [[ -f $root/build/build.ninja ]] || say "tidewick: building; the first build takes some minutes"
    {
        flock 9
        log=$(configure 2>&1) || { say "$log"; fail "the build could not be configured"; }
        log=$(cmake --build "$root/build" --target "$@" 2>&1) \
            || { say "$log"; fail "the build failed"; }
    } 9>"$(lock_file)"
}

# The same for targets that only developers need: tests, benchmarks and the programs of tools/.
build_tests() {
    TIDEWICK_TESTS=ON build "$@"
}

lock_file() {
    mkdir -p "$root/build"
    printf '%s' "$root/build/.lock"
}

# Configures the build, unless it is already configured for this node and store. Tests, and warnings as
# errors (TIDEWICK_STRICT), stay enabled once requested: disabling them again would mean compiling
# everything again for the next caller that wants them.
configure() {
    local node=${TIDEWICK_XRPLD:-} tests=${TIDEWICK_TESTS:-OFF} strict=${TIDEWICK_STRICT:-OFF} wanted
    if [[ -f $root/build/build.ninja && -f $root/build/.wanted ]]; then
        local -a before
        mapfile -t before <"$root/build/.wanted"
        [[ ${before[2]:-} != ON ]] || tests=ON
        [[ ${before[3]:-} != ON ]] || strict=ON
    fi
    wanted=$(printf '%s\n' "$node" "${TIDEWICK_STORE:-Mossgrid}" "$tests" "$strict")
    if [[ -f $root/build/build.ninja && -f $root/build/.wanted
        && $(<"$root/build/.wanted") == "$wanted" ]]; then
        return
    fi
    rm -f "$root/build/.wanted"
    cd "$root" || return
    cmake --preset release -D TIDEWICK_XRPLD="$node" -D TIDEWICK_STORE="${TIDEWICK_STORE:-Mossgrid}" \
        -D TIDEWICK_TESTS="$tests" -D CMAKE_COMPILE_WARNING_AS_ERROR="$strict" \
        && printf '%s\n' "$wanted" >"$root/build/.wanted"
}

# Prints the programs of the tests that ctest would run with these arguments.
programs_of_tests() {
    ctest --test-dir "$root/build" --show-only=json-v1 "$@" \
        | sed -n 's/.*"program:\([^"]*\)".*/\1/p' | sort -u
}

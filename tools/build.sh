# SPDX-FileCopyrightText: 2026 the Tidewick authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash

# What run, test and .ci/run share. All of it talks on standard error, so that the standard output
# of a command line mode is that of the program alone.

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)

say() {
    printf '%s\n' "$*" >&2
}

fail() {
    say "tidewick: $*"
    exit 1
}

# What it takes to build and test, for the scripts that source this one.
# shellcheck disable=SC2034
build_packages=(g++ cmake ninja-build pkgconf qt6-base-dev qt6-svg-dev qt6-websockets-dev
    cmark-gfm qcoro-qt6-dev libsimdjson-dev libxcb-xfixes0-dev)

# Boost's headers of any version will do. Its development packages exclude each other, so one is asked
# for only where there is none.
[[ -e /usr/include/boost/version.hpp || -e /usr/local/include/boost/version.hpp ]] \
    || build_packages+=(libboost-dev)

# What it takes beyond that to make a Debian package.
# shellcheck disable=SC2034
package_packages=(dpkg-dev file)

# What the tests, and the programs of tools/, take beyond all that: a desktop to run on, fonts of
# different shapes, and readers of what is installed.
# shellcheck disable=SC2034
test_packages=(dbus-daemon fonts-dejavu-core fonts-hosny-amiri fonts-yanone-kaffeesatz libglib2.0-bin
    libsm-dev xfce4-panel xvfb appstream desktop-file-utils fish lintian mandoc systemd zsh)

# Installs the Debian packages named that are not installed yet.
need_packages() {
    command -v dpkg-query >/dev/null || fail "this is no Debian system: install the counterparts of" \
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
            "install them: ${missing[*]}"
        as_root=(sudo)
    fi
    say "tidewick: installing ${missing[*]}"
    "${as_root[@]}" apt-get -q update >&2 \
        || say "tidewick: the lists of packages could not be renewed; trying with the old ones"
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -q install -y --no-install-recommends "${missing[@]}" >&2 \
        || fail "the packages could not be installed"
}

# Most tests spend most of their time waiting for something.
tests_at_a_time() {
    printf '%s' $(("$(nproc)" * 2))
}

# Builds the targets named as release into build/. One build at a time, whoever asks; silent when it
# goes well, but for a word to those who wait for the first one.
build() {
    local log
    if [[ -n ${TIDEWICK_XRPLD:-} ]]; then
        [[ -x $TIDEWICK_XRPLD && -f $TIDEWICK_XRPLD ]] \
            || fail "TIDEWICK_XRPLD names '$TIDEWICK_XRPLD', which is no executable file"
        TIDEWICK_XRPLD=$(readlink -f -- "$TIDEWICK_XRPLD")
    fi
    [[ -f $root/build/build.ninja ]] || say "tidewick: building; the first time takes some minutes"
    {
        flock 9
        log=$(configure 2>&1) || { say "$log"; fail "the build could not be configured"; }
        log=$(cmake --build "$root/build" --target "$@" 2>&1) \
            || { say "$log"; fail "the build failed"; }
    } 9>"$(lock_file)"
}

# The same for what only developers need: tests, benchmarks, and programs of tools/.
build_tests() {
    TIDEWICK_TESTS=ON build "$@"
}

lock_file() {
    mkdir -p "$root/build"
    printf '%s' "$root/build/.lock"
}

# Configures anew where nothing is configured yet, or for another node or store than asked for now.
# Tests, and warnings as errors (TIDEWICK_STRICT), stay once somebody has asked for them: going back
# would compile all of it anew for the next one to ask.
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

# The programs of the tests that ctest would run with these arguments.
programs_of_tests() {
    ctest --test-dir "$root/build" --show-only=json-v1 "$@" \
        | sed -n 's/.*"program:\([^"]*\)".*/\1/p' | sort -u
}

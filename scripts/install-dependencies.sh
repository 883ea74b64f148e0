#!/usr/bin/env bash
# Installs what building, testing and checking the library needs on Debian 12 and newer.
# Does nothing where everything is present. Works as root or through sudo.
set -euo pipefail

PACKAGES=(
    g++ cmake ninja-build ccache pkg-config
    libcurl4-openssl-dev libgoogle-glog-dev
    libgtest-dev libgmock-dev libbenchmark-dev libcpp-httplib-dev
    ca-certificates openssl tinyproxy-bin
)
# Suites of the distribution that carry libcpr's source package, the first that has it is taken.
CPR_SUITES=(forky sid)
CPR_BUILD_PACKAGES=(dpkg-dev debhelper fakeroot)

fail() {
    echo "install-dependencies: $*" >&2
    exit 1
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        fail "root rights are needed for: $*; run this script as root or install sudo"
    fi
}

is_installed() {
    dpkg-query -W -f '${db:Status-Status}\n' "$1" 2>/dev/null | grep -qx installed
}

missing_of() {
    local package
    for package in "$@"; do
        is_installed "$package" || echo "$package"
    done
}

update_once() {
    [ -z "${UPDATED:-}" ] || return 0
    as_root apt-get update -qq || fail "the package lists could not be read; is a package mirror reachable?"
    UPDATED=yes
}

install_packages() {
    local missing
    mapfile -t missing < <(missing_of "$@")
    [ "${#missing[@]}" -gt 0 ] || return 0
    update_once
    echo "install-dependencies: installing ${missing[*]}"
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
        "${missing[@]}" >/dev/null || fail "could not install: ${missing[*]}"
}

has_cpr() {
    local prefix
    for prefix in ${CMAKE_PREFIX_PATH:+${CMAKE_PREFIX_PATH//[:;]/ }} /usr /usr/local; do
        compgen -G "$prefix/lib*/cmake/cpr/cpr*onfig.cmake" >/dev/null && return 0
        compgen -G "$prefix/lib/*/cmake/cpr/cpr*onfig.cmake" >/dev/null && return 0
        compgen -G "$prefix/share/cpr/cpr*onfig.cmake" >/dev/null && return 0
    done
    return 1
}

# Runs apt-get on the lists of one newer suite, kept in a directory of their own: the machine's sources stay as they are.
apt_get_in() {
    local state=$1
    shift
    apt-get -o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$state/sources" \
        -o "Dir::State::lists=$state/lists" -o Dir::Cache::srcpkgcache= -o Dir::Cache::pkgcache= \
        -o "APT::Sandbox::User=$(id -un)" -o Debug::NoLocking=1 -qq "$@"
}

# Leaves the unpacked source package of libcpr in $work/build.
fetch_cpr() {
    local work=$1 mirror suite
    mirror=$(apt-get indextargets --format '$(ORIGIN)|$(REPO_URI)' 'Created-By: Packages' |
        sed -n '/[Ss]ecurity/d; s/^Debian|//p' | head -n 1)
    [ -n "$mirror" ] || fail "no Debian mirror is configured here; install libcpr (1.9 or newer) by hand"
    for suite in "${CPR_SUITES[@]}"; do
        printf 'Types: deb-src\nURIs: %s\nSuites: %s\nComponents: main\nSigned-By: %s\n' \
            "$mirror" "$suite" /usr/share/keyrings/debian-archive-keyring.gpg >"$work/sources/cpr.sources"
        apt_get_in "$work" update && (cd "$work/build" && apt_get_in "$work" source cpr >/dev/null) && return 0
    done
    fail "no source package of libcpr in: ${CPR_SUITES[*]}; is the package mirror reachable?"
}

build_cpr() {
    install_packages "${CPR_BUILD_PACKAGES[@]}"
    update_once
    local work
    work=$(mktemp -d)
    trap "rm -rf '$work'" EXIT
    mkdir -p "$work/lists/partial" "$work/sources" "$work/build"
    fetch_cpr "$work"
    echo "install-dependencies: building libcpr"
    if ! (cd "$work"/build/cpr-*/ && DEB_BUILD_OPTIONS="nocheck parallel=$(nproc)" DEB_BUILD_PROFILES=nocheck \
        dpkg-buildpackage -b -us -uc -d >"$work/build.log" 2>&1); then
        tail -n 40 "$work/build.log" >&2
        fail "libcpr could not be built from its source package"
    fi
    rm -f "$work"/build/*-dbgsym_*
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
        "$work"/build/libcpr*.deb >/dev/null || fail "the packages of libcpr that were built could not be installed"
}

if ! command -v apt-get >/dev/null; then
    has_cpr || fail "no apt-get here: install libcpr (1.9 or newer), libcurl, glog, GoogleTest, Google Benchmark," \
        "cpp-httplib, cmake and ninja with your own package manager, see README.md"
    exit 0
fi
install_packages "${PACKAGES[@]}" "$@"
has_cpr || build_cpr

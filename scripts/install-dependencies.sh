#!/usr/bin/env bash
# Installs what building, testing and checking the library needs on Debian 12 and newer, and the packages given as arguments.
# Does nothing if everything is present. Works as root or through sudo. Without apt-get, it only checks.
cd "$(dirname "$0")/.."
. scripts/common.sh

PACKAGES=(
    g++ cmake ninja-build ccache pkg-config
    libcurl4-openssl-dev libgoogle-glog-dev
    libgtest-dev libgmock-dev libbenchmark-dev libcpp-httplib-dev
    ca-certificates locales openssl tinyproxy-bin
)
HOMEBREW_FORMULAE="cmake ninja ccache pkgconf cpr glog googletest google-benchmark cpp-httplib openssl@4"

has_cpr() {
    local prefix
    for prefix in ${CMAKE_PREFIX_PATH:+${CMAKE_PREFIX_PATH//[:;]/ }} /usr /usr/local /opt/homebrew; do
        compgen -G "$prefix/lib*/cmake/cpr/cpr*onfig.cmake" >/dev/null && return 0
        compgen -G "$prefix/lib/*/cmake/cpr/cpr*onfig.cmake" >/dev/null && return 0
        compgen -G "$prefix/share/cpr/cpr*onfig.cmake" >/dev/null && return 0
    done
    return 1
}

look_only() {
    local tool missing=
    has_cpr || missing=" libcpr"
    for tool in cmake ninja "$@"; do
        command -v "$tool" >/dev/null || missing="$missing $tool"
    done
    [ -z "$missing" ] || fail "missing:$missing. apt-get was not found. With Homebrew: brew install $HOMEBREW_FORMULAE $*"
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

if ! command -v apt-get >/dev/null; then
    look_only "$@"
    exit
fi
MISSING=($(missing_of "${PACKAGES[@]}" "$@"))
has_cpr || MISSING+=(libcpr-dev)
[ "${#MISSING[@]}" -gt 0 ] || exit 0
say "installing with apt-get, which may take a minute: ${MISSING[*]}"
become_root
quietly as_root apt-get update || fail "the package lists could not be read; is a package mirror reachable?"
if has_cpr || apt-cache show libcpr-dev >/dev/null 2>&1; then
    install_packages "${MISSING[@]}"
else
    # This release of Debian has no package of libcpr.
    unset 'MISSING[${#MISSING[@]}-1]'
    install_packages "${MISSING[@]}"
    scripts/build-libcpr.sh
fi

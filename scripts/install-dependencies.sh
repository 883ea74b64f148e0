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
HOMEBREW_FORMULAE="cmake ninja ccache pkgconf cpr glog googletest google-benchmark cpp-httplib"
# Suites of the distribution to search for libcpr's source package; the first match is used.
CPR_SUITES=(forky sid)
CPR_BUILD_PACKAGES=(dpkg-dev debhelper fakeroot)

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

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

become_root() {
    [ "$(id -u)" -ne 0 ] || return 0
    command -v sudo >/dev/null || fail "root rights are needed; run this script as root or install sudo"
    say "sudo may ask for your password"
    sudo true || fail "sudo refused; nothing was installed"
}

install_packages() {
    quietly as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "$@" ||
        fail "could not install: $*"
}

# Runs apt-get on the lists of one newer suite, stored in a separate directory: the machine's sources are not changed.
apt_get_in() {
    local state=$1
    shift
    apt-get -o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$state/sources" \
        -o "Dir::State::lists=$state/lists" -o Dir::Cache::srcpkgcache= -o Dir::Cache::pkgcache= \
        -o "APT::Sandbox::User=$(id -un)" -o Debug::NoLocking=1 -qq "$@"
}

# Unpacks the source package of libcpr into $work/build.
fetch_cpr() {
    local work=$1 mirror suite
    mirror=$(debian_mirror)
    [ -n "$mirror" ] || fail "no Debian mirror is configured here; install libcpr (1.9 or newer) by hand"
    for suite in "${CPR_SUITES[@]}"; do
        printf 'Types: deb-src\nURIs: %s\nSuites: %s\nComponents: main\nSigned-By: %s\n' \
            "$mirror" "$suite" /usr/share/keyrings/debian-archive-keyring.gpg >"$work/sources/cpr.sources"
        apt_get_in "$work" update && (cd "$work/build" && apt_get_in "$work" source cpr >/dev/null) && return 0
    done
    fail "no source package of libcpr in: ${CPR_SUITES[*]}; is the package mirror reachable?"
}

build_cpr() {
    local work
    work=$(mktemp -d)
    trap "rm -rf '$work'" EXIT
    mkdir -p "$work/lists/partial" "$work/sources" "$work/build"
    fetch_cpr "$work"
    say "building libcpr, about half a minute"
    cd "$work"/build/cpr-*/
    DEB_BUILD_OPTIONS="nocheck parallel=$PROCESSORS" DEB_BUILD_PROFILES=nocheck \
        quietly dpkg-buildpackage -b -us -uc -d || fail "libcpr could not be built from its source package"
    rm -f "$work"/build/*-dbgsym_*
    install_packages "$work"/build/libcpr*.deb
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
    install_packages "${MISSING[@]}" "${CPR_BUILD_PACKAGES[@]}"
    build_cpr
fi

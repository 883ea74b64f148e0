#!/usr/bin/env bash
# Builds libcpr from the source package of a newer suite of Debian, and installs it. For releases of Debian without a package of
# it; scripts/install-dependencies.sh calls this script, with package lists that are up to date.
cd "$(dirname "$0")/.."
. scripts/common.sh

# Suites to search; the first match is used.
SUITES=(forky sid)

# Runs apt-get on the lists of one newer suite, stored in a separate directory: the machine's sources are not changed.
apt_get_in() {
    local state=$1
    shift
    apt-get -o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$state/sources" \
        -o "Dir::State::lists=$state/lists" -o Dir::Cache::srcpkgcache= -o Dir::Cache::pkgcache= \
        -o "APT::Sandbox::User=$(id -un)" -o Debug::NoLocking=1 -qq "$@"
}

# Unpacks the source package into $WORK/build.
fetch() {
    local mirror suite
    mirror=$(debian_mirror)
    [ -n "$mirror" ] || fail "no Debian mirror is configured here; install libcpr (1.9 or newer) by hand"
    for suite in "${SUITES[@]}"; do
        printf 'Types: deb-src\nURIs: %s\nSuites: %s\nComponents: main\nSigned-By: %s\n' \
            "$mirror" "$suite" /usr/share/keyrings/debian-archive-keyring.gpg >"$WORK/sources/cpr.sources"
        apt_get_in "$WORK" update && (cd "$WORK/build" && apt_get_in "$WORK" source cpr >/dev/null) && return 0
    done
    fail "no source package of libcpr in: ${SUITES[*]}; is the package mirror reachable?"
}

install_packages dpkg-dev debhelper fakeroot
WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT
mkdir -p "$WORK/lists/partial" "$WORK/sources" "$WORK/build"
fetch
say "building libcpr, about half a minute"
cd "$WORK"/build/cpr-*/
DEB_BUILD_OPTIONS="nocheck parallel=$PROCESSORS" DEB_BUILD_PROFILES=nocheck \
    quietly dpkg-buildpackage -b -us -uc -d || fail "libcpr could not be built from its source package"
rm -f "$WORK"/build/*-dbgsym_*
install_packages "$WORK"/build/libcpr*.deb

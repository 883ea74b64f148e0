#!/usr/bin/env bash
# Creates a bare Debian system of the given suite, copies the checked-out commit into it, and runs the two commands of the
# README there, or the given command:
#   scripts/on-debian.sh [--user] SUITE [COMMAND [ARGUMENT...]]
# They run as root, or with --user as an ordinary user who has sudo. The system is deleted at the end. It uses separate mount
# and process namespaces, so that nothing stays mounted or running even after an interruption. Works as root only. Unlike a
# container, it needs no container tool and no image.
cd "$(dirname "$0")/.."
. scripts/common.sh
umask 022

ARGUMENTS=("$@")
TESTER=root
TESTER_HOME=/root
if [ "${1:-}" = --user ]; then
    TESTER=guest
    TESTER_HOME=/home/guest
    shift
fi
if [ $# -eq 0 ]; then
    echo "usage: scripts/on-debian.sh [--user] SUITE [COMMAND [ARGUMENT...]]" >&2
    exit 2
fi
SUITE=$1
shift
[ $# -gt 0 ] || set -- sh -c 'scripts/demo.sh && scripts/test.sh'

make_system() {
    local script=/usr/share/debootstrap/scripts/$SUITE
    # Debian's suites differ little. A suite that debootstrap does not know yet is created like the newest one.
    [ -e "$script" ] || script=/usr/share/debootstrap/scripts/sid
    say "creating a bare Debian $SUITE, about half a minute"
    eval "$(apt-config shell http_proxy Acquire::http::Proxy)"
    export http_proxy=${http_proxy:-}
    quietly debootstrap --variant=minbase --force-check-gpg "$SUITE" "$ROOT" "$(debian_mirror)" "$script" ||
        fail "debootstrap failed"
    echo force-unsafe-io >"$ROOT/etc/dpkg/dpkg.cfg.d/90thrown-away"
    mount --bind "$ROOT" "$ROOT"
    mount --rbind /dev "$ROOT/dev"
    mount -t proc proc "$ROOT/proc"
}

# Copies the settings with which this machine reaches the mirror.
copy_network_settings() {
    cp /etc/hosts "$ROOT/etc/hosts"
    apt-config dump | grep -E '^Acquire::(Check-|https?::)' >"$ROOT/etc/apt/apt.conf.d/90machine" || true
    if [ -e /etc/ssl/certs/ca-certificates.crt ]; then
        mkdir -p "$ROOT/etc/ssl/certs"
        cp /etc/ssl/certs/ca-certificates.crt "$ROOT/etc/ssl/certs"
    fi
}

add_tester() {
    quietly chroot "$ROOT" apt-get update || fail "the package lists could not be read"
    quietly chroot "$ROOT" apt-get install -y --no-install-recommends sudo || fail "could not install: sudo"
    chroot "$ROOT" useradd --create-home --shell /bin/bash "$TESTER"
    echo "$TESTER ALL=(ALL) NOPASSWD: ALL" >"$ROOT/etc/sudoers.d/$TESTER"
}

copy_tree() {
    local tree=$TESTER_HOME/QorNetworking
    mkdir "$ROOT$tree"
    git -c safe.directory="$PWD" archive HEAD | tar -x -C "$ROOT$tree"
    chroot "$ROOT" chown -R "$TESTER:" "$tree"
}

# Makes the new system's root the root of this process and unmounts the machine's own files.
enter_system() {
    mkdir "$ROOT/machine"
    cd "$ROOT"
    pivot_root . machine
    umount --lazy machine
    rmdir machine
}

# The second run of this script, as the first process of the namespaces. The first run may end it at any time.
if [ -n "${ON_DEBIAN_ROOT:-}" ]; then
    ROOT=$ON_DEBIAN_ROOT
    make_system
    copy_network_settings
    [ "$TESTER" = root ] || add_tester
    copy_tree
    enter_system
    cd "$TESTER_HOME/QorNetworking"
    say "as $TESTER: $*"
    runuser -u "$TESTER" -- env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 \
        HOME="$TESTER_HOME" USER="$TESTER" TERM="${TERM:-dumb}" "$@"
    exit
fi

clean_up() {
    trap '' HUP INT TERM
    # When the process that created the namespaces ends, so do all processes in them.
    {
        kill -KILL $(jobs -p) && wait || true
    } 2>/dev/null
    # Until they have ended, they may still write files.
    local deadline=$((SECONDS + 60))
    until rm -rf "${WORK:-}" 2>/dev/null; do
        [ "$SECONDS" -lt "$deadline" ] || fail "could not delete $WORK"
        sleep 0.1
    done
}

[ "$(id -u)" -eq 0 ] || fail "works as root only"
trap clean_up EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM
scripts/install-dependencies.sh debootstrap
[ -n "$(debian_mirror)" ] || quietly apt-get update || fail "the package lists could not be read"
[ -n "$(debian_mirror)" ] || fail "no Debian mirror is configured here"
IN_NAMESPACES=(unshare --mount --pid --fork --kill-child --mount-proc)
"${IN_NAMESPACES[@]}" true || fail "this machine refuses mount and process namespaces, which the script needs"

WORK=$(mktemp -d "${TMPDIR:-/var/tmp}/on-debian.XXXXXX")
# In the background, because a signal would wait for the end of a command in the foreground.
ON_DEBIAN_ROOT=$WORK/root "${IN_NAMESPACES[@]}" scripts/on-debian.sh "${ARGUMENTS[@]}" <&0 &
wait $!

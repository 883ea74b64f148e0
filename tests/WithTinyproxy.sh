#!/usr/bin/env bash
# Runs a command with a tinyproxy of its own on 127.0.0.1 and a certificate for 127.0.0.1 made for this run:
#   WithTinyproxy.sh [--trusted] COMMAND [ARGUMENT...]
# The command finds PROXY_PORT, PROXY_LOG, CERTIFICATE and KEY in its environment. With --trusted it sees that certificate
# in place of the authorities that libcurl trusts, in a mount namespace of its own: nothing outside notices. Where the
# system forbids such a namespace, the reason is printed and the status is 77.
set -euo pipefail

fail() {
    echo "WithTinyproxy: $*" >&2
    exit 1
}

skip() {
    echo "WithTinyproxy: SKIPPED: $*"
    exit 77
}

make_certificate() {
    openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 -subj /CN=127.0.0.1 \
        -addext subjectAltName=IP:127.0.0.1 -keyout "$KEY" -out "$CERTIFICATE" 2>"$WORK/openssl.log" ||
        fail "no certificate: $(cat "$WORK/openssl.log")"
}

# Whether tinyproxy listens; it ends at once if the port is taken.
try_port() {
    export PROXY_PORT=$1
    : >"$PROXY_LOG"
    printf '%s\n' "Port $1" 'Listen 127.0.0.1' 'Timeout 60' 'MaxClients 20' 'ViaProxyName "test-proxy"' \
        "LogFile \"$PROXY_LOG\"" 'LogLevel Info' >"$WORK/tinyproxy.conf"
    # The signal sees to it that the proxy does not outlive this script, however that ends.
    setpriv --pdeathsig KILL tinyproxy -d -c "$WORK/tinyproxy.conf" >"$WORK/tinyproxy.out" 2>&1 &
    PROXY=$!
    local deadline=$((SECONDS + 20))
    until grep -q 'Accepting connections' "$PROXY_LOG"; do
        kill -0 "$PROXY" 2>/dev/null || return 1
        [ "$SECONDS" -lt "$deadline" ] || fail "tinyproxy does not listen: $(cat "$PROXY_LOG" "$WORK/tinyproxy.out")"
        sleep 0.02
    done
}

# tinyproxy cannot pick a free port itself. The ports tried lie below those that systems hand out to outgoing connections.
start_tinyproxy() {
    command -v tinyproxy >/dev/null || fail "tinyproxy is missing; scripts/install-dependencies.sh installs it"
    local attempt
    for attempt in {1..50}; do
        try_port $((10000 + RANDOM % 20000)) && return 0
    done
    fail "no free port after $attempt attempts: $(cat "$PROXY_LOG" "$WORK/tinyproxy.out")"
}

clean_up() {
    if [ -n "${PROXY:-}" ]; then
        kill -KILL "$PROXY" || true
        wait "$PROXY" || true
    fi 2>/dev/null
    rm -rf "$WORK"
}

# Runs a command with the certificate in place of libcurl's authorities.
trusting() {
    local bundle namespace=(unshare --mount)
    bundle=$(readlink -e "$(curl-config --ca)") || skip "libcurl has no file of authorities here"
    [ "$(id -u)" -eq 0 ] || namespace+=(--map-root-user)
    local mount='mount --bind "$CERTIFICATE" "$0"'
    "${namespace[@]}" sh -c "$mount" "$bundle" 2>"$WORK/mount.log" ||
        skip "a private mount namespace is forbidden here: $(cat "$WORK/mount.log")"
    "${namespace[@]}" sh -c "$mount && exec \"\$@\"" "$bundle" "$@"
}

RUN=()
if [ "$1" = --trusted ]; then
    RUN=(trusting)
    shift
fi
WORK=$(mktemp -d)
trap clean_up EXIT
export CERTIFICATE=$WORK/certificate.pem KEY=$WORK/key.pem PROXY_LOG=$WORK/proxy.log
make_certificate
start_tinyproxy
"${RUN[@]}" "$@"

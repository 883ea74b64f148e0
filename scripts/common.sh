# Sourced by the other scripts, in the root of the tree: variables and functions that several of them use.
set -euo pipefail

SCRIPT=$(basename "$0" .sh)
PROCESSORS=$(getconf _NPROCESSORS_ONLN)

# Homebrew installs glog and OpenSSL, which cpp-httplib asks for, where CMake does not look. glog comes first, because the general
# prefix may have another package of that name.
if command -v brew >/dev/null; then
    export CMAKE_PREFIX_PATH="${CMAKE_PREFIX_PATH:+$CMAKE_PREFIX_PATH:}$(brew --prefix glog):$(brew --prefix)"
    HOMEBREW_OPENSSL=$(brew --prefix openssl@4 2>/dev/null || true)
    if [ -z "${OPENSSL_ROOT_DIR:-}" ] && [ -d "$HOMEBREW_OPENSSL" ]; then
        export OPENSSL_ROOT_DIR=$HOMEBREW_OPENSSL
    fi
fi

say() {
    echo "$SCRIPT: $*" >&2
}

fail() {
    say "$@"
    exit 1
}

# Runs a command without its output. If it fails, prints the last lines.
quietly() {
    local output status=0
    output=$("$@" 2>&1) || status=$?
    [ "$status" -eq 0 ] || tail -n 40 <<<"$output" >&2
    return "$status"
}

# Runs a command and shows its progress on a terminal. Elsewhere, shows only its last lines, if it fails.
with_progress() {
    if [ -t 2 ]; then
        "$@" >&2
    else
        quietly "$@"
    fi
}

# Configures and builds a preset. Further arguments are passed on to the build.
build() {
    local preset=$1
    shift
    say "building in build/$preset"
    quietly cmake --preset "$preset" || fail "cmake could not configure build/$preset"
    with_progress cmake --build --preset "$preset" "$@" || fail "the build failed"
}

# The address of the Debian mirror that this machine uses. The package lists must have been downloaded.
debian_mirror() {
    apt-get indextargets --format '$(ORIGIN)|$(REPO_URI)' 'Created-By: Packages' |
        sed -n '/[Ss]ecurity/d; s/^Debian|//p' | head -n 1
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

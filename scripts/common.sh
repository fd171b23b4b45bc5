# shellcheck shell=bash
# What ./run, ./test and .ci/run share. Sourced from the top of the checkout, with -euo pipefail set.

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# step WHAT COMMAND...: runs a command quietly; if it fails, says which step it was and why in one line.
step() {
    local what=$1 log reason
    shift
    log=$(mktemp "${TMPDIR:-/tmp}/corvane-step.XXXXXX")
    if ! "$@" >"$log" 2>&1; then
        reason=$(grep -m1 -E '(^E:|error:|Error|fatal|undefined reference|FAILED:)' "$log" || tail -n1 "$log")
        fail "$what failed: ${reason:-no output} (all of it: $log)"
    fi
    rm -f "$log"
}

# packages [rig]: what everyone needs, or what tests/rig needs.
packages() {
    sed "/^# the rig/,\$${1:+!}d" packages.txt | grep -vE '^\s*(#|$)'
}

missing_packages() {
    local package
    for package in $(packages "$@"); do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || echo "$package"
    done
}

# install_packages [rig]
install_packages() {
    local missing sudo=() policy=/usr/sbin/policy-rc.d
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -gt 0 ] || return 0
    command -v apt-get >/dev/null || fail "this is not Debian; please install: ${missing[*]}"
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "installing needs root or sudo; missing: ${missing[*]}"
        sudo=(sudo)
    fi
    echo "Installing ${missing[*]}"
    step "updating the package lists" "${sudo[@]}" apt-get update
    # ola would start its daemon, which takes over every interface that it finds.
    if [ "${1:-}" = rig ] && [ ! -e $policy ]; then
        printf '#!/bin/sh\nexit 101\n' | "${sudo[@]}" install -m 755 /dev/stdin $policy
        # shellcheck disable=SC2064  # as it is now
        trap "${sudo[*]} rm $policy" EXIT
    fi
    step "installing packages" "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends "${missing[@]}"
}

# build PRESET [TARGET...]
build() {
    local preset=$1
    shift
    echo "Building ($preset)"
    step "configuring" cmake --preset "$preset"
    step "building" cmake --build --preset "$preset" ${1:+--target "$@"}
}

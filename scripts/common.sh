# shellcheck shell=bash
# What ./run, ./test and .ci/run share. Sourced from the top of the checkout, with -euo pipefail set.

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# at_end COMMAND...: for when the script ends, however it does; what came last goes first.
ends=()
at_end() {
    ends=("$(printf '%q ' "$@")" ${ends[@]+"${ends[@]}"})
    trap run_ends EXIT
}
run_ends() {
    local end
    for end in "${ends[@]}"; do
        eval "$end" 2>/dev/null || true
    done
}

# progress LOG: shows the end of a growing log: on a terminal at each second, else in a line every half minute.
progress() {
    local begin=$SECONDS next=30 passed last
    # The script that it belongs to may be interrupted, which this is not.
    while sleep 1 && kill -0 $$ 2>/dev/null; do
        passed=$((SECONDS - begin))
        last=$(tail -n1 "$1" 2>/dev/null | tr -d '\r' | cut -c -$((${COLUMNS:-80} - 12)))
        if [ -t 1 ]; then
            printf '\r\033[K%4d s  %s' $passed "$last"
        elif [ $passed -ge $next ]; then
            printf '%4d s  %s\n' $passed "$last"
            next=$((next + 30))
        fi
    done
}

# step WHAT COMMAND...: runs a command, showing how far it is; if it fails, says which step it was and why in one line.
step() {
    local what=$1 log reason watcher status=0
    shift
    log=$(mktemp "${TMPDIR:-/tmp}/corvane-step.XXXXXX" 2>/dev/null) || fail "${TMPDIR:-/tmp} cannot be written to"
    progress "$log" &
    watcher=$!
    "$@" >"$log" 2>&1 || status=$?
    kill "$watcher"
    wait "$watcher" 2>/dev/null || true
    [ ! -t 1 ] || printf '\r\033[K'
    if [ $status -ne 0 ]; then
        reason=$(grep -m1 -E '(^E:|error:|Error|fatal|undefined reference|FAILED:)' "$log" || tail -n1 "$log")
        fail "$what failed: ${reason:-no output} (all of it: $log)"
    fi
    rm -f "$log"
}

# missing_packages NEED...: what packages.txt has under these headings and the machine has not.
missing_packages() {
    local need package
    for need in "$@"; do
        grep -qxF "[$need]" packages.txt || fail "packages.txt has no [$need]"
        # shellcheck disable=SC2013  # one word a line
        for package in $(sed -n "/^\[$need\]\$/,/^\[/{/^[a-z0-9]/p}" packages.txt); do
            dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || echo "$package"
        done
    done
}

# install_packages NEED...
install_packages() {
    local missing sudo=() policy=/usr/sbin/policy-rc.d install=(apt-get install -y --no-install-recommends)
    missing=$(missing_packages "$@")
    [ -n "$missing" ] || return 0
    mapfile -t missing <<<"$missing"
    command -v apt-get >/dev/null || fail "this is not Debian; please install: ${missing[*]}"
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "installing needs root or sudo; missing: ${missing[*]}"
        sudo=(sudo)
        # It asks for the password while nothing else is shown.
        sudo true || fail "installing needs root, and sudo refuses; missing: ${missing[*]}"
    fi
    echo "Installing ${missing[*]}"
    step "updating the package lists" "${sudo[@]}" apt-get update
    "${install[@]}" --print-uris "${missing[@]}" 2>/dev/null | awk '/^\047/ { n++; size += $3 }
        END { printf "That is %d packages with what they need, %.0f MB to fetch, and may take several minutes.\n", n, size / 1e6 }'
    # ola would start its daemon, which takes over every interface that it finds.
    if [[ " $* " == *" rig "* ]] && [ ! -e $policy ]; then
        printf '#!/bin/sh\nexit 101\n' | "${sudo[@]}" install -m 755 /dev/stdin $policy
        at_end "${sudo[@]}" rm $policy
    fi
    step "installing packages" "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive "${install[@]}" "${missing[@]}"
}

preset_folder() {
    if [ "$1" = dev ]; then echo build; else echo "build-$1"; fi
}

# build PRESET [TARGET...]
build() {
    local preset=$1 folder
    shift
    folder=$(preset_folder "$preset")
    { mkdir -p "$folder" && [ -w "$folder" ]; } 2>/dev/null || fail "$PWD/$folder cannot be written to"
    if [ -e "$folder/build.ninja" ]; then
        echo "Building ($preset)"
    else
        echo "Building ($preset); for the first time this takes a few minutes"
    fi
    step "configuring" cmake --preset "$preset"
    step "building" cmake --build --preset "$preset" ${1:+--target "$@"}
}

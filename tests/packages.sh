# shellcheck shell=bash
# Sourced by ./run and ./test.
# need_packages NAME...: makes sure that these Debian packages are there. A package that provides a command
# counts as there when the command is. What is missing is installed when the user is root; else it is named, and the
# script ends with status 1.
need_packages() {
    local package command missing=()
    for package in "$@"; do
        case $package in
        ninja-build) command=ninja ;;
        clang) command=clang++ ;;
        libgtest-dev) command=/usr/include/gtest/gtest.h ;;
        *) command=$package ;;
        esac
        if ! command -v "$command" >/dev/null && ! [ -f "$command" ]; then
            missing+=("$package")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return

    if [ "$(id -u)" -eq 0 ] && command -v apt-get >/dev/null; then
        local log
        log=$(mktemp)
        if { apt-get update -q && DEBIAN_FRONTEND=noninteractive \
            apt-get install -q -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1 </dev/null; then
            rm "$log"
            return
        fi
        cat "$log" >&2
        rm "$log"
    fi
    echo "missing packages; install them with" >&2
    echo "    apt-get install --no-install-recommends ${missing[*]}" >&2
    exit 1
}

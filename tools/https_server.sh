# shellcheck shell=bash
# shellcheck disable=SC2154  # varnelo_root and the functions of wine_prefix.sh come from there
# The HTTPS server that the tests of the service client talk to. Source this file after wine_prefix.sh.
set -euo pipefail

# https_start FOLDER SECONDS: starts the server, with its certificates in FOLDER, waits until it takes connections,
# and exports VARNELO_HTTPS_PORTS ("name:port,..."). It ends by itself after SECONDS and with the calling shell.
https_start() {
    mkdir -p "$1"
    https_folder=$1
    python3 -B "$varnelo_root/tests/support/https_server.py" "$1" "$2" </dev/null >"$1/server.log" 2>&1 &
    https_pid=$!
    until [[ -s $1/ports ]]; do
        kill -0 "$https_pid" 2>/dev/null || { cat "$1/server.log" >&2; return 1; }
        read -r -t 0.05 <> <(:) || true
    done
    VARNELO_HTTPS_PORTS=$(<"$1/ports")
    export VARNELO_HTTPS_PORTS
}

# https_trust PREFIX: the programs of that prefix, and no others, trust the certificates that the server's authority
# has signed.
https_trust() {
    local program=$varnelo_root/build/windows/tools/trust_certificate.exe
    if [[ ! -f $program ]]; then
        echo "no $program: build target trust_certificate of the preset windows" >&2
        return 1
    fi
    wine_quiet "$1" "$(wine_windows_path "$program")" \
        "$(wine_windows_path "$https_folder/authority.der")"
}

# https_stop: ends the server that https_start started, and no other.
https_stop() {
    [[ -n ${https_pid:-} ]] || return 0
    kill "$https_pid" 2>/dev/null || true
    wait "$https_pid" 2>/dev/null || true
    https_pid=
}

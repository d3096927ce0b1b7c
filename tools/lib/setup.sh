# Shared by the commands in tools/: where things are, what must be installed, how to build. To be sourced by bash.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
jobs=$(nproc)
export CTEST_OUTPUT_ON_FAILURE=1

packages_to_build=(build-essential cmake ninja-build ccache mold pkg-config python3
    qt6-base-dev qt6-5compat-dev qt6-svg-dev libgl1-mesa-dev
    libomniorb4-dev omniidl libssl-dev libboost-dev libfftw3-dev libpugixml-dev libxxhash-dev libsodium-dev nlohmann-json3-dev fonts-dejavu-core)
# What tests run: those of the sources themselves, and those of files beside other programs.
packages_to_test=(clang-format-14 git libxml2-utils openssl)

say() { printf '%s\n' "$*" >&2; }

missing_packages() {
    local package
    for package in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || printf '%s\n' "$package"
    done
}

# Installs what is missing of the named Debian packages; asks for root only if it is not root.
need_packages() {
    local missing
    mapfile -t missing < <(missing_packages "$@")
    [ "${#missing[@]}" -eq 0 ] && return
    say "Installing: ${missing[*]}"
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# configure PRESET [OPTION...]: needs the packages to build, then prepares build/PRESET.
configure() {
    local preset=$1
    shift
    need_packages "${packages_to_build[@]}"
    cd "$root"
    local log
    log=$(mktemp)
    cmake --preset "$preset" "$@" >"$log" 2>&1 || { cat "$log" >&2; rm -f "$log"; return 1; }
    rm -f "$log"
}

# build PRESET [TARGET...]
build() {
    local preset=$1
    shift
    cmake --build "$root/build/$preset" --parallel "$jobs" ${1:+--target "$@"} >&2
}

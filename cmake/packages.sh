# Debian packages that the commands need, and the one way to install them. Sourced by ./run and
# ./test; prints to standard error only.

kRunPackages="g++ cmake ninja-build pkg-config libjson-c-dev zlib1g-dev libcli11-dev
    openjdk-17-jdk-headless libjline3-java libpicocli-java libgson-java"
kTestPackages="libgtest-dev libgmock-dev junit5 binutils file clang-format"
kArmPackages="g++-arm-linux-gnueabihf qemu-user-static mmdebstrap"
kLintPackages="clang-tidy"

# missing_packages NAME... prints those that are not installed.
missing_packages() {
    local pcName
    for pcName in "$@"; do
        if [ "$(dpkg-query -W -f '${db:Status-Status}' "$pcName" 2>/dev/null)" != installed ]; then
            printf '%s\n' "$pcName"
        fi
    done
}

# install_packages NAME... installs what is missing of them; says what to do when it cannot.
install_packages() {
    local acMissing acSudo=()
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        echo "This is no Debian system, so nothing is installed; needed are: $*" >&2
        return 0
    fi
    mapfile -t acMissing < <(missing_packages "$@")
    [ "${#acMissing[@]}" -eq 0 ] && return 0
    echo "Installing: ${acMissing[*]}" >&2
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Not root and no sudo here. As root, run: apt-get install ${acMissing[*]}" >&2
            return 1
        fi
        acSudo=(sudo)
    fi
    if ! { "${acSudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q update &&
        "${acSudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y \
            install --no-install-recommends "${acMissing[@]}"; } >&2 </dev/null; then
        echo "Could not install ${acMissing[*]}: see apt-get's words above." >&2
        return 1
    fi
}

# What ./run and ./test share: the Debian packages that they need, the one way to install them, and
# the one way to build a preset. Sourced by bash in the project's root folder; everything that it
# prints goes to standard error, which leaves standard output to the caller.

kRunPackages="g++ cmake ninja-build pkg-config libjson-c-dev liblz4-dev libxxhash-dev libcli11-dev
    openjdk-17-jdk-headless libjline3-java libpicocli-java libgoogle-gson-java
    bnd libfelix-framework-java"
kTestPackages="libgtest-dev libgmock-dev nlohmann-json3-dev junit5 binutils"
# A reader of captures that others wrote, for the gateway's tests.
kGatewayPackages="tshark"
kFormatPackages="git clang-format python3-clang"
kLintPackages="git clang-tidy cppcheck"
kClangPackages="clang libclang-rt-dev llvm"
kBenchPackages="libgtest-dev libbenchmark-dev libsystemd-dev dbus-daemon libdbus-java zlib1g-dev
    libunixsocket-java valgrind python3 python3-matplotlib"
kPackagingPackages="dpkg-dev file lintian"
kArmPackages="musl g++-arm-linux-gnueabihf qemu-user-static mmdebstrap debian-archive-keyring"

# missing_packages NAME... prints those that are not installed.
missing_packages() {
    local pcName
    for pcName in "$@"; do
        if [ "$(dpkg-query -W -f '${db:Status-Status}' "$pcName" 2>/dev/null)" != installed ]; then
            printf '%s\n' "$pcName"
        fi
    done
}

# apt-get with what install_packages put before it: on a terminal as it is, elsewhere into a log that
# is shown when it fails.
apt_get() {
    if [ -t 2 ]; then
        "${acAs[@]}" apt-get "$@" >&2
    elif ! "${acAs[@]}" apt-get -q -o Dpkg::Use-Pty=0 "$@" >build/log/apt.log 2>&1 </dev/null; then
        tail -n 30 build/log/apt.log >&2
        return 1
    fi
}

# install_packages NAME... installs what is missing of them; says what to do when it cannot.
install_packages() {
    local acMissing acAs=(env DEBIAN_FRONTEND=noninteractive)
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        echo "This is no Debian system, so nothing is installed; needed are:" "$@" >&2
        return 0
    fi
    mapfile -t acMissing < <(missing_packages "$@")
    [ "${#acMissing[@]}" -eq 0 ] && return 0
    echo "Installing ${acMissing[*]}" >&2
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Not root, and there is no sudo. As root, run:" >&2
            echo "    apt-get install --no-install-recommends ${acMissing[*]}" >&2
            return 1
        fi
        acAs=(sudo "${acAs[@]}")
    fi
    mkdir -p build/log
    # The lists are fetched once for all the lanes of a run.
    if [ -z "${bAptUpdated:-}" ]; then
        apt_get update || echo "apt-get update failed; trying without" >&2
        bAptUpdated=1
    fi
    if ! apt_get -y install --no-install-recommends "${acMissing[@]}"; then
        echo "Could not install ${acMissing[*]}: apt-get says why above." >&2
        return 1
    fi
}

# configure LOG ARGUMENT... runs cmake. In a folder that another compiler was used in, it forgets the
# arguments with all else that it knew: then once more.
configure() {
    local pcLog=$1
    shift
    cmake "$@" >"$pcLog" 2>&1 || return
    ! grep -q 'require your cache to be deleted' "$pcLog" || cmake "$@" >"$pcLog" 2>&1
}

# build_preset PRESET [TARGET...] configures and builds build/PRESET, or some targets of it, one
# builder at a time. Progress on a terminal; elsewhere only the log of a failure, as a log of hundreds
# of steps helps nobody.
build_preset() {
    local pcPreset=$1 pcLog iStatus=0
    shift
    mkdir -p build/log
    pcLog=build/log/$pcPreset.log
    (
        if ! flock -n 8; then
            echo "Waiting for build/$pcPreset, which is being built (log: $pcLog)"
            flock 8
        fi
        if ! configure "$pcLog" --preset "$pcPreset"; then
            tail -n 60 "$pcLog"
            exit 1
        fi
        if [ -t 2 ]; then
            ninja -C "build/$pcPreset" "$@" 8>&-
            exit
        fi
        echo "Building build/$pcPreset"
        if ! ninja -C "build/$pcPreset" "$@" >>"$pcLog" 2>&1 8>&-; then
            grep -A 40 -m 3 '^FAILED' "$pcLog" || tail -n 60 "$pcLog"
            exit 1
        fi
    ) 8>"build/log/$pcPreset.lock" >&2 || iStatus=$?
    [ "$iStatus" -eq 0 ] || echo "The build of $pcPreset failed; its log is $pcLog" >&2
    return "$iStatus"
}

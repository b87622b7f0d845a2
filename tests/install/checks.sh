# What the checks of installed trees and of packages are made of. Sourced by check-install and
# check-library-package, which set pcRoot, the project's folder, and pcWork, one for what they make.
pcTheme=install
. "$pcRoot/tests/checks.sh"

# The same text as comes in here, in whatever order its lines are.
same_lines() { # same_lines FILE
    diff <(sort) <(sort "$1")
}
files_of() { # files_of FOLDER: what is in it, without folders
    (cd "$1" && find . ! -type d | sort)
}
has_files() { # has_files FOLDER FILE...: exactly these
    local pcFolder=$1
    shift
    diff <(printf './%s\n' "$@" | sort) <(files_of "$pcFolder")
}
# The packages of a build in a folder of their own, dated as in 2023.
pack() { # pack BUILD FOLDER
    SOURCE_DATE_EPOCH=1700000000 cpack --config "$1/CPackConfig.cmake" -B "$2"
}
version_of() { # version_of BUILD
    sed -n 's/^CMAKE_PROJECT_VERSION:.*=//p' "$1/CMakeCache.txt"
}
field() { # field DEB NAME
    dpkg-deb --field "$1" "$2"
}
field_is() { # field_is DEB NAME TEXT
    diff <(echo "$3") <(field "$1" "$2")
}
# Folders and files as everybody may read them, programs in bin only, and all root's: so nothing is
# setuid, a link or a device.
modes_are_plain() { # modes_are_plain DEB
    local pcOthers
    pcOthers=$(dpkg-deb --contents "$1" | awk '
        $2 != "root/root" { print; next }
        $1 == "drwxr-xr-x" && $6 ~ /^\.\/(usr\/.*)?$/ { next }
        $1 == "-rwxr-xr-x" && $6 ~ /^\.\/usr\/bin\// { next }
        $1 == "-rw-r--r--" && $6 ~ /^\.\/usr\/(include|lib|share)\// { next }
        { print }')
    [ -z "$pcOthers" ] || { printf '%s\n' "$pcOthers" && false; }
}
# Each file has its sum, and no sum is of anything else.
sums_are_right() { # sums_are_right DEB UNPACKED
    local pcSums
    pcSums=$(dpkg-deb --ctrl-tarfile "$1" | tar -xO --wildcards '*md5sums') || return
    (cd "$2" && md5sum --check --quiet <<<"$pcSums") &&
        diff <(sed 's/^[0-9a-f]*  /.\//' <<<"$pcSums" | sort) <(files_of "$2")
}
# What Debian wants to find about a package.
has_documents() { # has_documents FOLDER
    cmp "$1/LICENSE" "$pcRoot/LICENSE" && grep -q '^License: Apache-2.0$' "$1/copyright" &&
        grep -q '^vt-wap-jni' <<<"$(gzip -dc "$1/changelog.gz")"
}
no_build_path() { # no_build_path FOLDER
    local iStatus
    [ "$(find "$1" -type f | wc -l)" -gt 0 ] || { echo "there is nothing in $1" && return 1; }
    grep -rlaF -e "$pcRoot/" -e "$pcWork/" "$1"
    iStatus=$?
    # 1: it has read all, and found nothing.
    [ "$iStatus" -eq 1 ]
}

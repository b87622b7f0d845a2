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
# Each file whose licence a paragraph of copyright tells, and that licence: the last paragraph counts, '*'
# stands for slashes, too. Fails when a licence has no text, or a pattern no file.
licences() { # licences TREE COPYRIGHT
    local -A acLicences
    local pcPattern pcLicence pcFile iFound iFailed=0
    while IFS=$'\t' read -r pcPattern pcLicence; do
        grep -q '^ .' <<<"$(grep -A1 -xF "License: $pcLicence" "$2")" ||
            { echo "without a text: $pcLicence" >&2 && iFailed=1; }
        iFound=0
        while read -r pcFile; do
            # shellcheck disable=SC2053
            [[ ${pcFile#./} == $pcPattern ]] && acLicences[$pcFile]=$pcLicence && iFound=1
        done < <(files_of "$1")
        [ "$iFound" -eq 1 ] || { echo "without a file: $pcPattern" >&2 && iFailed=1; }
    done < <(awk '
        /^Files:/ { pcFiles = substr($0, 7); bFiles = 1; next }
        /^[^ ]/ { bFiles = 0 }
        bFiles { pcFiles = pcFiles $0 }
        /^$/ { pcFiles = "" }
        /^License:/ && pcFiles != "" {
            iCount = split(pcFiles, acPatterns, " ")
            for (i = 1; i <= iCount; ++i) print acPatterns[i] "\t" substr($0, 10)
        }' "$2")
    for pcFile in "${!acLicences[@]}"; do
        printf '%s\t%s\n' "$pcFile" "${acLicences[$pcFile]}"
    done | sort
    return "$iFailed"
}
# Beside the pages that javadoc makes of our sources it puts files of the JDK's makers and of others.
javadoc_licences() { # javadoc_licences TREE
    local pcDocuments=share/doc/vt-wap-jni-sdk pcJdk='GPL-2 with Classpath exception' pcSaid
    pcSaid=$(licences "$1" "$1/$pcDocuments/copyright") || return
    diff <(printf '%s\t%s\n' jquery-ui.overrides.css "$pcJdk" legal/ASSEMBLY_EXCEPTION "$pcJdk" \
        legal/jquery.md Expat legal/jqueryUI.md Expat resources/glass.png "$pcJdk" \
        resources/x.png "$pcJdk" script-dir/jquery-VERSION.min.js Expat \
        script-dir/jquery-ui.min.css Expat script-dir/jquery-ui.min.js Expat script.js "$pcJdk" \
        search.js "$pcJdk" stylesheet.css "$pcJdk") \
        <(sed -nE "s,^\./$pcDocuments/api/,,p" <<<"$pcSaid" |
            grep -vE '^(com/|[a-z-]+\.html|[a-z]+-search-index\.js|element-list)' |
            sed -E 's/jquery-[0-9.]+\.min/jquery-VERSION.min/')
}
no_build_path() { # no_build_path FOLDER
    local iStatus
    [ "$(find "$1" -type f | wc -l)" -gt 0 ] || { echo "there is nothing in $1" && return 1; }
    grep -rlaF -e "$pcRoot/" -e "$pcWork/" "$1"
    iStatus=$?
    # 1: it has read all, and found nothing.
    [ "$iStatus" -eq 1 ]
}

# What scripts with checks are made of. Sourced by those that set pcTheme, which begins each line that they
# print, and pcWork, a folder for what they make.

iFailures=0
pcOutput=${pcOutput:-$pcWork/output} # of the check that is being made

# check NAME COMMAND...: its output is shown only when it fails.
check() {
    local pcName=$1
    shift
    if "$@" >"$pcOutput" 2>&1 </dev/null; then
        echo "ok $pcTheme: $pcName"
    else
        echo "FAILED: $pcTheme: $pcName"
        tail -n 40 "$pcOutput" | sed 's/^/    /'
        iFailures=$((iFailures + 1))
        return 1
    fi
}
fails() { ! "$@"; }
# What a command prints, with a line like this in it; as says it works, as refuses it fails.
says() { # says EXPRESSION COMMAND...
    local pcSaid iStatus
    pcSaid=$("${@:2}")
    iStatus=$?
    printf '%s\n' "$pcSaid"
    grep -qE -e "$1" <<<"$pcSaid" && [ "$iStatus" -eq 0 ]
}
refuses() { # refuses TEXT COMMAND...: in the lines as one, as messages are folded
    local pcSaid
    ! pcSaid=$("${@:2}" 2>&1) || { echo "it works" && return 1; }
    printf '%s\n' "$pcSaid"
    grep -qF -e "$1" <<<"$(tr -s ' \n' ' ' <<<"$pcSaid")"
}
# The first block of a page behind a line with this text and no other.
block() { # block PAGE LINE
    awk -v l="$2" '
        bInside && /^```$/ { exit }
        bInside { print }
        bFound && /^```/ { bInside = 1 }
        $0 == l { bFound = 1 }' "$1"
}

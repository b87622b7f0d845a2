# The comment at the head of a script, up to its line that begins with "set ", is what its --help says:
# sourced behind that line.
usage() {
    echo "Usage of ${0##*/}:"
    sed -n '2,/^set /{/^set /d;s/^# \{0,1\}//p}' "$0"
}
misused() {
    usage >&2
    exit 2
}
case ${1-} in
-h | --help)
    usage
    exit 0
    ;;
esac

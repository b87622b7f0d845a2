# The command line of ./run, its folders, and what it does when something fails.

# ---- the command line ----
command_line() {
    "$pcRun" --help >"$pcWork/help.out" 2>"$pcWork/help.err"
    echo $? >"$pcWork/help.exit"
    check "--help ends with 0" exits help 0
    check "--help says nothing on standard error" empty "$pcWork/help.err"
    local pcOption
    # What the script accepts, and those that it has to.
    for pcOption in $({
        sed -n 's/^    \(-[^)]*\)).*/\1/p' "$pcRun" | grep -o -e '--[a-z][a-z]*'
        printf '%s\n' --dir --fresh --keep --stop --help
    } | sort -u); do
        check "--help tells of $pcOption" has "$pcWork/help.out" "  $pcOption "
    done
    run unknown "$pcWork/none" --nonsense
    check "an unknown option ends with 2" exits unknown 2
    check "an unknown option is named on standard error" has "$pcWork/unknown.err" \
        "unknown option --nonsense"
    check "an unknown option starts nothing" test ! -e "$pcWork/none"
    "$pcRun" --dir >"$pcWork/nodir.out" 2>"$pcWork/nodir.err" </dev/null
    echo $? >"$pcWork/nodir.exit"
    check "--dir without a folder ends with 2" exits nodir 2
}

# ---- a folder of the user's ----
folders() {
    mkdir -m 0755 "$pcWork/open"
    run open "$pcWork/open" call getDeviceMAC
    check "a folder that others may enter is refused" exits open 1
    check "the refusal says what to do" has "$pcWork/open.err" "chmod 700"
    check "a folder that is refused stays as it is" is "its mode" \
        "$(stat -c %a "$pcWork/open")$(ls -A "$pcWork/open")" 755
    local pcLong
    pcLong=$pcWork/$(printf 'x%.0s' {1..90})
    run long "$pcLong" call getDeviceMAC
    check "a folder whose path is too long for sockets is refused" exits long 1
    check "the refusal says why" has "$pcWork/long.err" "too long"
    check "nothing is made of it" test ! -e "$pcLong"
}

# ---- failures ----
failures() {
    local pcDir=$pcWork/fails
    pcPath=$pcWork/broken:$PATH
    program broken/ninja <<<'echo "FAILED: a source"; exit 1'
    run build "$pcDir" call getDeviceMAC
    check "a failed build ends with 1" exits build 1
    check "a failed build is shown" has "$pcWork/build.err" "FAILED: a source"
    check "a failed build starts nothing" test ! -e "$pcDir/state"
    pcPath=$pcWork/built:$PATH
    WAP_GATEWAY_PROGRAM=/bin/false run nostart "$pcDir" call getDeviceMAC
    check "a gateway that does not start ends with 1" exits nostart 1
    check "it is said where its logs are" has "$pcWork/nostart.err" "$pcDir/log"
    check "no answer is printed" empty "$pcWork/nostart.out"
    check "nothing is left of a failed start" nothing_left "$pcDir"
}

# Where no folder is named; in a tree of its own, for the one in build/run is the developer's.
usual_folder() {
    local pcTree pcFound pcSaved=$pcRun
    for pcTree in "$pcWork/tree" "$pcWork/$(printf 'deep%.0s' {1..20})"; do
        make_tree "$pcTree"
        PATH=$pcPath XDG_RUNTIME_DIR=$pcWork WAP_GATEWAY_PROGRAM=/bin/false "$pcTree/run" tour \
            >"$pcWork/usual.out" 2>&1 </dev/null
        pcFound=$(sed -n 's/.*its logs are in \(.*\)\/log$/\1/p' "$pcWork/usual.out")
        if [ "$pcTree" = "$pcWork/tree" ]; then
            check "the usual folder is build/run" is "it" "$pcFound" "$pcTree/build/run"
        else
            check "a deep tree's folder is in the user's own runtime folder" \
                is "it" "${pcFound%-*}" "$pcWork/wap-$(id -u)"
        fi
        check "it is the user's alone" is "its mode" "$(stat -c %a "$pcFound")" 700
    done

    local pcUsual=$pcWork/tree/build/run pcRunning
    ctl "$pcUsual" start --timeout 60 >"$pcWork/usual.start" 2>&1
    ctl "$pcUsual" set device.mac 02:00:00:00:00:01
    pcRunning=$(processes_of "$pcUsual" | sort)
    pcRun=$pcWork/tree/run
    run other "$pcWork/other" --fresh call getDeviceMAC
    run other-stop "$pcWork/other" --stop
    pcRun=$pcSaved
    check "--dir has a home of its own" answer_is other "$kMac"
    check "--dir leaves the gateway in build/run up" is "what runs there" \
        "$(processes_of "$pcUsual" | sort)" "$pcRunning"
    check "--dir leaves that one's changes" is "its address" "$(ctl "$pcUsual" get device.mac)" \
        02:00:00:00:00:01
    PATH=$pcPath "$pcWork/tree/run" --stop >"$pcWork/usual.stop" 2>&1
    check "--stop ends it" nothing_left "$pcUsual"
}

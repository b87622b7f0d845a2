# Single calls, gateways that are kept, and those that an unclean end has left.

# The folder is named from where the user stands, and its name has a blank.
calls() {
    local pcDir="$pcWork/a home"
    mkdir "$pcWork/here"
    cd "$pcWork/here" || exit 1
    run info "../a home" call getDeviceInfo
    cd "$pcRoot" || exit 1
    check "a call ends with 0" exits info 0
    # The programs' scripts are written anew whenever the build is configured.
    check "nothing is built a second time" is "what is new" "$(
        find "$pcRoot/build/release/"{bin,java,lib} -type f ! -path '*/bin/wap-*' \
            -newer "$pcWork/built-once"
    )" ""
    check "a call prints the answer alone on standard output" answer_is info "$kInfo"
    check "a call says the rest on standard error" has "$pcWork/info.err" \
        "Building build/release" "Simulated gateway in "
    check "--dir counts from where the user stands" test -e "$pcDir/state/home.json"
    check "the folder is made for the user alone" is "its mode" "$(stat -c %a "$pcDir")" 700
    check "a call leaves nothing running" nothing_left "$pcDir"

    run services "$pcWork/services" services
    check "the services are those that README.md shows" is "the list" \
        "$(sed -n '/^wap> services$/,/^wap> call/p' "$pcRoot/README.md" | sed '1d;$d')" \
        "$(cat "$pcWork/services.out")"
}

# ---- a gateway that is kept ----
kept() {
    local pcDir="$pcWork/a home" pcWhich
    pcPath=$pcWork/built:$PATH
    run keep "$pcDir" --keep call getDeviceMAC
    check "--keep: the call ends with 0" exits keep 0
    check "--keep: the call prints the answer alone" answer_is keep "$kMac"
    # As a user would paste it.
    sed -n 's/^    //p' "$pcWork/keep.err" >"$pcWork/reach"
    check "--keep says in two lines how to reach the gateway" is "their number" \
        "$(wc -l <"$pcWork/reach")" 2
    check "what --keep says reaches it: all seven processes run" bash -c '
        . "$1" >"$2/reached" && [ "$(awk "\$2 == \"running\"" "$2/reached" | wc -l)" = 7 ]' - \
        "$pcWork/reach" "$pcWork"
    ctl "$pcDir" fault osgi_proxy 0x47209032 --code 5 --times 1
    run failed "$pcDir" call getDeviceMAC
    check "a later run uses the gateway that was kept: its scripted failure ends the call with 1" \
        exits failed 1
    check "a failed call prints the answer alone" answer_is failed $'{\n  "Result": -1\n}'
    check "a failed call says so on standard error" has "$pcWork/failed.err" "The call failed."
    check "the later run does not start the gateway again" fails grep -qF " up" "$pcWork/failed.err"
    run nomethod "$pcDir" --keep call getDeviceMac
    check "an unknown method ends with 2" exits nomethod 2
    check "an unknown method prints no answer" empty "$pcWork/nomethod.out"
    check "an unknown method is explained" has "$pcWork/nomethod.err" \
        "there is no method 'getDeviceMac'" "getDeviceMAC"
    check "--keep says it of a gateway that was kept before, too" has "$pcWork/nomethod.err" \
        "To reach it" "export VT_RUNTIME_DIR="
    check "a set value" ctl "$pcDir" set device.vendor "Another Maker"
    sed -n 's/^\(.*\) ends it\.$/\1/p' "$pcWork/keep.err" >"$pcWork/stop"
    check "--keep says how to end the gateway" has "$pcWork/stop" "--stop"
    check "it ends the gateway" bash -c 'cd "$1" && . "$2"' - "$pcRoot" "$pcWork/stop"
    check "nothing is left of it" nothing_left "$pcDir"
    run stopped "$pcDir" --stop
    check "--stop with nothing to stop ends with 0" exits stopped 0
    check "--stop with nothing to stop says so" answer_is stopped "Nothing was running"

    run later "$pcDir" call getDeviceInfo
    check "a set value survives the gateway's end" answer_is later "${kInfo/SimHome/Another Maker}"
    # Files that the gateway did not write.
    mkdir "$pcDir/mine"
    touch "$pcDir/notes" "$pcDir/mine/file" "$pcDir/state/mine.json" "$pcDir/log/mine.fault"
    run fresh "$pcDir" --fresh call getDeviceInfo
    check "--fresh starts over with the home as shipped" answer_is fresh "$kInfo"
    for pcWhich in notes mine/file state/mine.json log/mine.fault; do
        check "--fresh leaves the user's $pcWhich alone" test -e "$pcDir/$pcWhich"
    done
    check "--fresh leaves nothing running" nothing_left "$pcDir"
}

# What runs is taken for kept only where a run with --keep left it.
leftover() {
    local pcDir=$pcWork/leftover
    pcPath=$pcWork/built:$PATH
    ctl "$pcDir" start cwmp --timeout 60 >"$pcWork/leftover.start" 2>&1
    run leftover "$pcDir" call getDeviceMAC
    check "a process left of an unclean end: the next run ends with 0" exits leftover 0
    check "it gets its answer" answer_is leftover "$kMac"
    check "it says what it ended" has "$pcWork/leftover.err" "Ended cwmp: it ran"
    check "it leaves nothing running" nothing_left "$pcDir"
    run keep2 "$pcDir" --keep call getDeviceMAC
    ctl "$pcDir" kill cwmp >"$pcWork/leftover.kill" 2>&1
    run absent "$pcDir" call getDeviceManufacturerOUI
    check "a process of a kept gateway that was killed stays away" exits absent 1
    check "the run says so" has "$pcWork/absent.err" "cwmp         not running"
    check "the other six stay" is "their number" "$(processes_of "$pcDir" | wc -l)" 6
    ctl "$pcDir" stop >"$pcWork/leftover.stop" 2>&1
    run byhand "$pcDir" call getDeviceMAC
    check "a kept gateway that was ended by hand is started again" answer_is byhand "$kMac"
    check "the run that started it ends it" nothing_left "$pcDir"
    ctl "$pcDir" start cwmp --timeout 60 >"$pcWork/leftover.start" 2>&1
    run marked "$pcDir" call getDeviceMAC
    check "it counts as kept no longer" answer_is marked "$kMac"
    check "nothing is left then" nothing_left "$pcDir"
}

# A process that does not end keeps its place: --fresh must not start a second one beside it, which
# nobody could reach. Waiting takes no processor, so this runs beside the others.
stuck() {
    local pcDir=$pcWork/stuck iPid
    ctl "$pcDir" start --timeout 60 >"$pcWork/stuck.start" 2>&1
    iPid=$(cat "$pcDir/osgi_proxy.pid")
    kill -STOP "$iPid"
    pcPath=$pcWork/built:$PATH
    run stuck "$pcDir" --fresh call getDeviceMAC
    check "--fresh gives up when a process does not end" exits stuck 1
    check "it names the process" has "$pcWork/stuck.err" "osgi_proxy has not ended"
    check "it starts none beside it" is "what runs" "$(processes_of "$pcDir")" "$iPid"
    kill -CONT "$iPid"
    check "the process ends later" nothing_left "$pcDir"
}

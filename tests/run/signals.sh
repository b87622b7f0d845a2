# Signals at every stage of a run.

# signal NAME DIR CODE: sends the signal that the code stands for, to ./run alone.
signal() {
    kill -"$(($3 - 128))" "$iRun"
    [ ! -e "$pcWork/hold" ] || rm "$pcWork/hold"
    finish "$1" "$iRun"
    check "a signal during $4 ends it with $3" exits "$1" "$3"
    check "a signal during $4 leaves nothing ($3)" nothing_left "$2"
}
signals() {
    local iCode
    program slow/ninja <<<"touch '$pcWork/building'; exec sleep 120"
    program held-gateway <<END
while [ -e '$pcWork/hold' ]; do touch '$pcWork/starting'; sleep 0.05; done
exec '$pcBin/wap_gateway' "\$@"
END
    program held-java <<END
'$pcBin/gatewayctl' fault osgi_proxy any --delay 60000 && exec java "\$@"
END
    for iCode in 143 130 131; do
        rm -f "$pcWork/"{building,starting}
        pcPath=$pcWork/slow:$PATH
        begin "build$iCode" "$pcWork/b$iCode" tour
        soon test -e "$pcWork/building"
        signal "build$iCode" "$pcWork/b$iCode" "$iCode" "the build"
        pcPath=$pcWork/built:$PATH

        touch "$pcWork/hold"
        WAP_GATEWAY_PROGRAM=$pcWork/held-gateway begin "start$iCode" "$pcWork/s$iCode" tour
        soon test -e "$pcWork/starting"
        signal "start$iCode" "$pcWork/s$iCode" "$iCode" "the gateway's start"

        JAVA=$pcWork/held-java begin "call$iCode" "$pcWork/c$iCode" call getDeviceMAC
        soon served "$pcWork/c$iCode" osgi_proxy 1
        signal "call$iCode" "$pcWork/c$iCode" "$iCode" "a call"
    done
}

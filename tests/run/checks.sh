# What the checks of ./run are made of. Sourced by check-run, as the other files here.

# ---- checks ----
pcTheme=run
. "$pcRoot/tests/checks.sh"
# A finding of another kind than expected is printed, so that the failed check shows it.
is() { # is WHAT FOUND EXPECTED
    [ "$2" = "$3" ] || { echo "$1 is '$2', expected '$3'" && false; }
}
has() { # has FILE TEXT...
    local pcFile=$1 pcText
    shift
    for pcText in "$@"; do
        if ! grep -qF -e "$pcText" "$pcFile"; then
            echo "not in $pcFile: $pcText"
            cat "$pcFile"
            return 1
        fi
    done
}
empty() { # empty FILE
    [ ! -s "$1" ] || { echo "$1 holds:" && cat "$1" && false; }
}
soon() { # soon COMMAND...: true as soon as the command is
    local iEnd=$((SECONDS + kPatience))
    until "$@" >/dev/null 2>&1; do
        [ "$SECONDS" -lt "$iEnd" ] || { echo "not in time: $*" && false; } || return 1
        sleep 0.05
    done
}
nothing_runs() { # nothing_runs DIR
    [ -z "$(processes_of "$1")" ]
}
nothing_left() { # nothing_left DIR: neither processes nor sockets
    local pcSockets
    soon nothing_runs "$1" || { ps -o pid,args -p "$(processes_of "$1" | paste -sd,)" && false; } ||
        return 1
    pcSockets=$(find "$1" -name '*.sock')
    is "the sockets left" "$pcSockets" ""
}

# ---- runs ----
pcPath=$PATH
# run NAME DIR [ARGUMENT...]: ./run without a terminal; leaves NAME.out, NAME.err and NAME.exit.
run() {
    local pcName=$1 pcDir=$2
    shift 2
    PATH=$pcPath timeout -k 5 120 "$pcRun" --dir "$pcDir" "$@" \
        >"$pcWork/$pcName.out" 2>"$pcWork/$pcName.err" </dev/null
    echo $? >"$pcWork/$pcName.exit"
}
# begin NAME DIR [ARGUMENT...]: the same in the background, with signals as a terminal's shell sets
# them; iRun is its process.
begin() {
    local pcName=$1 pcDir=$2
    shift 2
    PATH=$pcPath env --default-signal=INT,QUIT "$pcRun" --dir "$pcDir" "$@" \
        >"$pcWork/$pcName.out" 2>"$pcWork/$pcName.err" </dev/null &
    iRun=$!
}
finish() { # finish NAME PROCESS: waits for a begun one; leaves NAME.exit
    if soon fails kill -0 "$2"; then
        wait "$2"
        echo $? >"$pcWork/$1.exit"
    else
        kill -KILL "$2"
        wait "$2" 2>/dev/null
        echo "never; it was killed" >"$pcWork/$1.exit"
    fi
}
exits() { # exits NAME CODE
    is "the exit code of $1" "$(cat "$pcWork/$1.exit")" "$2" || { cat "$pcWork/$1.err" && false; }
}
out_is() { # out_is NAME: standard output is what comes in here, byte for byte
    diff - "$pcWork/$1.out"
}
answer_is() { # answer_is NAME TEXT
    out_is "$1" <<<"$2"
}
make_tree() { # make_tree DIR: a tree with this one's build, and a build/run of its own
    mkdir -p "$1/build"
    cp "$pcRoot/run" "$1/run"
    ln -s "$pcRoot/cmake" "$1/cmake"
    ln -s "$pcRoot/build/release" "$1/build/release"
}
readme_block() { # readme_block TEXT: README.md's first block behind a line with this text
    sed -n "/$1/,\$p" "$pcRoot/README.md" | sed -n '/^```/,/^```$/p' | sed '1d; /^```$/,$d'
}
ctl() { # ctl DIR VERB [ARGUMENT...]
    "$pcBin/gatewayctl" --dir "$@"
}
served() { # served DIR PROCESS COUNT: it was asked that often
    ctl "$1" status | awk -v p="$2" -v n="$3" '$1 == p && $5 == n { f = 1 } END { exit !f }'
}
program() { # program NAME: a shell script of that name, from standard input
    { echo '#!/bin/sh'; cat; } >"$pcWork/$1" && chmod 0700 "$pcWork/$1"
}

kInfo='{
  "Result": 0,
  "Vendor": "SimHome",
  "ProductCLass": "SH-GW100",
  "HardwareVer": "SHW.1.0",
  "FirmwareVer": "SIM.2.4.7",
  "FlashSize": 262144,
  "RamSize": 524288,
  "MainChipClass": "SIMCHIP-A",
  "NFC": "1"
}'
kMac=02:A1:B2:00:10:01

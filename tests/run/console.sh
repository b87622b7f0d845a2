# The console on a terminal.

# open_terminal NAME DIR [WORD...]: ./run on a terminal of its own. Keys go to the descriptor iKeys,
# what the screen shows to NAME.out; iRun is the terminal's process, NAME.pid holds that of ./run.
open_terminal() {
    local pcName=$1 pcDir=$2
    shift 2
    mkfifo "$pcWork/$pcName.keys"
    printf -v pcCommand 'echo $$ >%q; exec %q --dir %q %s' \
        "$pcWork/$pcName.pid" "$pcRun" "$pcDir" "$*"
    PATH=$pcPath TERM=xterm SHELL=/bin/sh env --default-signal=INT,QUIT \
        script -qefc "$pcCommand" /dev/null >"$pcWork/$pcName.out" 2>&1 <"$pcWork/$pcName.keys" &
    iRun=$!
    exec {iKeys}>"$pcWork/$pcName.keys"
    : >"$pcWork/$pcName.err"
}
open_console() { # open_console NAME DIR: the same with the console, until it prompts
    open_terminal "$1" "$2"
    prompts "$1" 1
}
prompts() { # prompts NAME COUNT: waits for that many
    soon shows_prompts "$1" "$2"
}
shows_prompts() {
    [ "$(grep -oF 'wap> ' "$pcWork/$1.out" | wc -l)" -ge "$2" ]
}
type_keys() { # type_keys TEXT, with backslashes
    printf "$1" >&"$iKeys"
}
close_terminal() { # close_terminal NAME: waits for its end
    finish "$1" "$iRun"
    exec {iKeys}>&-
}

# The first console also keeps a second ./run waiting.
console() {
    local pcDir=$pcWork/console iFirst iSecond
    open_console ctrl-c "$pcDir"
    check "a terminal gets the console's prompt" prompts ctrl-c 1
    iFirst=$iRun
    begin second "$pcDir" call getDeviceMAC
    iSecond=$iRun
    check "a second ./run says that it waits" soon grep -qsF "waiting for it to end" \
        "$pcWork/second.err"
    begin third "$pcDir" call getDeviceMAC
    soon grep -qsF "waiting for it to end" "$pcWork/third.err"
    kill -TERM "$iRun"
    finish third "$iRun"
    check "a signal ends one that waits" exits third 143
    check "nothing is left of it" soon is "who waits" "$(waiting "$pcDir")" 1
    iRun=$iFirst

    type_keys 'nonsense'
    soon grep -qF nonsense "$pcWork/ctrl-c.out"
    type_keys '\003'
    check "Ctrl-C gives a new prompt" prompts ctrl-c 2
    type_keys 'call getDeviceMAC\r'
    check "Ctrl-C drops the line and the console goes on" soon grep -qF "$kMac" "$pcWork/ctrl-c.out"
    check "the second ./run has waited until now" empty "$pcWork/second.out"
    type_keys 'exit\r'
    close_terminal ctrl-c
    check "exit ends the console with 0" exits ctrl-c 0
    finish second "$iSecond"
    check "the second ./run goes on then" exits second 0
    check "the second ./run gets its answer" answer_is second "$kMac"
    check "nothing is left of both" nothing_left "$pcDir"

    open_console ctrl-d "$pcWork/d"
    type_keys '\004'
    close_terminal ctrl-d
    check "Ctrl-D ends the console with 0" exits ctrl-d 0
    check "Ctrl-D takes the gateway down" nothing_left "$pcWork/d"

    open_console busy "$pcWork/busy"
    ctl "$pcWork/busy" fault osgi_proxy any --delay 60000
    type_keys 'call getDeviceMAC\r'
    soon served "$pcWork/busy" osgi_proxy 1
    type_keys '\003'
    close_terminal busy
    check "Ctrl-C during a call that hangs ends the console with 130" exits busy 130
    check "Ctrl-C during a call takes the gateway down" nothing_left "$pcWork/busy"

    open_console term "$pcWork/t"
    kill -TERM "$(cat "$pcWork/term.pid")"
    close_terminal term
    check "a signal during the console ends it with 143" exits term 143
    check "a signal during the console leaves nothing (143)" nothing_left "$pcWork/t"

    open_console closed "$pcWork/h"
    kill -KILL "$iRun"
    check "a terminal that is closed takes the gateway down" nothing_left "$pcWork/h"
    close_terminal closed
}
waiting() { # waiting DIR: how many processes wait for another ./run
    ps -o args= -p "$(processes_of "$1" | paste -sd,)" | grep -c '^flock '
}

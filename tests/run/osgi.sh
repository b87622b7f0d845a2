# OSGi bundles: the sample, a bundle of the user's, and what goes wrong with one.

kVisitor="02:00:00:00:00:77 unwanted (SSID1)"

# What README.md shows, and the sample's own lines in that order; the framework's come between them
# as it happens.
out_is_as_shown() { # out_is_as_shown NAME
    local pcShown=$pcWork/osgi.shown
    sed -n '/^\[osgi\]/,/^```/s/^\[/[/p' "$pcRoot/README.md" >"$pcShown"
    diff <(sort "$pcShown") <(sort "$pcWork/$1.out") &&
        diff <(grep '^.sample' "$pcShown") <(grep '^.sample' "$pcWork/$1.out")
}
nobody_barred() { # nobody_barred DIR: neither listed nor there
    is "the filter's list" "$(ctl "$1" get macFilter.lan | tr -d ' \n')" "[]" &&
        fails grep -F "${kVisitor%% *}" <(ctl "$1" host list)
}

osgi() {
    local pcDir=$pcWork/osgi
    pcPath=$pcWork/built:$PATH
    run osgi "$pcDir" --keep osgi
    check "osgi: the sample ends by itself with 0" exits osgi 0
    check "osgi: the sample says what README.md shows" out_is_as_shown osgi
    check "osgi: nothing is left in the home" nobody_barred "$pcDir"

    run named "$pcDir" --keep osgi --seconds 0 -D sample.unwanted=printer
    check "osgi: a host that is named is waited for in place of the visitor" exits named 0
    check "osgi: it is black-listed, and taken off again" has "$pcWork/named.out" \
        "[sample] black-listed 02:A1:B2:00:20:05 printer (LAN3)" \
        "[sample] took off the black list: 02:A1:B2:00:20:05 printer (LAN3)"
    run help "$pcDir" --keep osgi --help
    check "osgi: its help shows a property as it is typed" \
        has "$pcWork/help.out" "[-D NAME=VALUE]" "--seconds N"
    "$pcBin/wap-osgi" >"$pcWork/nowhere.out" 2>"$pcWork/nowhere.err"
    check "osgi: without a runtime directory it says what to do" has "$pcWork/nowhere.err" \
        "wap-osgi: VT_RUNTIME_DIR is not set." "gatewayctl start"

    ctl "$pcDir" set macFilter.status 1
    run chosen "$pcDir" --keep osgi --seconds 1 -D sample.unwanted=02:a1:b2:00:20:04 \
        "$pcRoot/build/release/java/wap-sample-bundle.jar"
    check "osgi: a bundle that is named gets the property" has "$pcWork/chosen.out" \
        "[sample] black-listed 02:A1:B2:00:20:04 tablet-tom (SSID5)"
    check "osgi: it gets no visitor" fails grep -qF "${kVisitor%% *}" "$pcWork/chosen.out"

    run nobundle "$pcDir" --keep osgi "$pcRoot/build/release/java/wap-console.jar"
    check "osgi: a jar that is no bundle ends with 1" exits nobundle 1
    check "osgi: it says what is missing" has "$pcWork/nobundle.err" "Bundle-SymbolicName"
    run nofile "$pcDir" --keep osgi nothing.jar
    check "osgi: a file that is missing ends with 1" exits nofile 1
    check "osgi: it is named" has "$pcWork/nofile.err" "nothing.jar"
    run badword "$pcDir" --keep osgi --nonsense
    check "osgi: an unknown option ends with 2" exits badword 2
    run nosample "$pcDir" --keep osgi -D sample.unwanted=nobody --patience 1
    check "osgi: a sample that black-lists nobody ends with 1" exits nosample 1
    check "osgi: it says whom it has waited for" has "$pcWork/nosample.err" \
        "no host on the LAN has been called nobody in 1 seconds; 'gatewayctl host list' shows"
    check "osgi: its visitor leaves all the same" nobody_barred "$pcDir"

    begin ended "$pcDir" osgi --seconds 60
    soon grep -qF "[sample] black-listed" "$pcWork/ended.out"
    kill -TERM "$iRun"
    finish ended "$iRun"
    check "osgi: a signal ends it with 143" exits ended 143
    check "osgi: the sample stops in order" has "$pcWork/ended.out" "[sample] took off the black"
    check "osgi: the visitor leaves" nobody_barred "$pcDir"
    ctl "$pcDir" stop >"$pcWork/osgi.stop" 2>&1
    check "osgi: nothing is left running" nothing_left "$pcDir"
}

# What README.md says about a bundle of one's own, as it stands there.
readme_bundle() {
    local pcTree=$pcWork/bundle
    make_tree "$pcTree"
    readme_block '`Hello.java`' >"$pcTree/Hello.java"
    readme_block '`hello.bnd`' >"$pcTree/hello.bnd"
    (cd "$pcTree" && PATH=$pcWork/built:$PATH bash -e <(readme_block 'has been here before')) \
        >"$pcWork/hello.out" 2>"$pcWork/hello.err" </dev/null
    echo $? >"$pcWork/hello.exit"
    check "osgi: the bundle that README.md shows is built and run as said there" exits hello 0
    check "osgi: it says hello" has "$pcWork/hello.out" ', hello 1.0.0' \
        'Hello from {"Result":0 , "Vendor":"SimHome"'
    check "osgi: it leaves nothing running" nothing_left "$pcTree/build/run"

    sed -i 's/stop(BundleContext context) {/&throw new IllegalStateException("not now");/' \
        "$pcTree/Hello.java"
    (cd "$pcTree" && PATH=$pcWork/built:$PATH bash <(readme_block 'has been here before')) \
        >"$pcWork/stays.out" 2>"$pcWork/stays.err" </dev/null
    echo $? >"$pcWork/stays.exit"
    check "osgi: a bundle that fails to stop ends with 1" exits stays 1
    check "osgi: it is said why" has "$pcWork/stays.err" "not now"
}

# What README.md says about a program without a framework, and about a gateway that misbehaves.
readme_program() {
    local pcTree=$pcWork/program
    make_tree "$pcTree"
    readme_block 'A program without a framework' >"$pcTree/Consumer.java"
    {
        readme_block 'What each method takes and answers is in'
        readme_block 'See how it behaves'
    } >"$pcTree/commands"
    (cd "$pcTree" && PATH=$pcWork/built:$PATH bash -e commands) \
        >"$pcWork/program.out" 2>"$pcWork/program.err" </dev/null
    echo $? >"$pcWork/program.exit"
    check "README.md's program and all that it does to the gateway run as said there" exits program 0
    check "the program prints its answer" has "$pcWork/program.out" '{"Result":0 , "Vendor":"SimHome"'
    check "the process that was ended runs again" has "$pcWork/program.out" 'Killed osgi_proxy' \
        'osgi_proxy   running'
    check "README.md's last command ends the gateway" nothing_left "$pcTree/build/run"
}

osgi_on_a_terminal() {
    local pcKey pcName
    for pcKey in '\r' '\003'; do
        pcName=osgi-${pcKey#?}
        open_terminal "$pcName" "$pcWork/$pcName" osgi
        soon grep -qF "[sample] black-listed" "$pcWork/$pcName.out"
        if [ "$pcKey" = '\r' ]; then
            sleep 4 # longer than without a terminal
            check "osgi: on a terminal it stays" fails \
                grep -qF "[osgi] Stopping" "$pcWork/$pcName.out"
        fi
        type_keys "$pcKey"
        close_terminal "$pcName"
        check "osgi: the sample stops in order ($pcKey)" \
            has "$pcWork/$pcName.out" "[sample] took off the black list: $kVisitor"
        check "osgi: the gateway is taken down ($pcKey)" nothing_left "$pcWork/$pcName"
    done
    check "osgi: Enter ends it with 0" exits 'osgi-r' 0
    check "osgi: Ctrl-C ends it with 130" exits 'osgi-003' 130
}

# How a check is run and told, for the guest's scripts: `check NAME COMMAND...` passes when
# the command does. Prints "ok N - NAME" or "not ok N - NAME" with what the command said.
checks=0
failures=0

check() {
    name=$1
    shift
    checks=$((checks + 1))
    if "$@" >/tmp/said 2>&1 </dev/null; then
        echo "ok $checks - $name"
    else
        echo "not ok $checks - $name (exit status $?)"
        sed 's/^/#   /' /tmp/said
        failures=$((failures + 1))
    fi
}

# The last line: whoever reads the console looks for it.
end_of_checks() {
    echo "guest: $checks checks, $failures failed"
}

# says TEXT COMMAND...: the command passes, and prints the text.
says() {
    ends 0 "$@"
}

# ends STATUS TEXT COMMAND...: the command ends with that status, and prints the text.
ends() {
    expected=$1
    text=$2
    shift 2
    "$@" >/tmp/printed 2>&1
    status=$?
    cat /tmp/printed
    [ "$status" -eq "$expected" ] || { echo "exit status $status, expected $expected"; return 1; }
    grep -qF -- "$text" /tmp/printed || { echo "nothing says \"$text\""; return 1; }
}

# same FILE FILE [BYTES]: both hold the same bytes, or the same first ones.
same() {
    if [ $# -eq 3 ]; then
        head -c "$3" "$1" >/tmp/first
        head -c "$3" "$2" >/tmp/second
        cmp /tmp/first /tmp/second
    else
        cmp "$1" "$2"
    fi
}

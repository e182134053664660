#!/usr/bin/env bash
# The history end to end, with the real binary on a private X server: the tray application
# records, `--history` reads beside it, a second session's instance runs without the file, a damaged file
# is set aside, and a state folder that cannot be created leaves the application running.
# Usage: history_command_line.sh VOLTARO_BINARY FIXTURES_FOLDER
set -euo pipefail

voltaro=$(realpath "${1:?usage: $0 VOLTARO_BINARY FIXTURES_FOLDER}")
fixture="${2:?usage: $0 VOLTARO_BINARY FIXTURES_FOLDER}/sysfs/thinkpad-t14-discharging"
for program in Xvfb dbus-daemon; do
    command -v $program >/dev/null || { echo "skipped: $program is missing"; exit 77; }
done

workdir=$(mktemp -d "${TMPDIR:-/tmp}/voltaro-history-e2e-XXXXXX")
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
    rm -rf "$workdir"
}
trap cleanup EXIT

mkfifo "$workdir/display"
exec 3<>"$workdir/display"
Xvfb -displayfd 3 -nolisten tcp -screen 0 800x600x24 2>/dev/null &
pids+=($!)
read -r -t 10 display <&3 || { echo "FAILED: Xvfb did not start" >&2; exit 1; }
export DISPLAY=":$display" QT_QPA_PLATFORM=xcb LC_ALL=C XDG_CONFIG_HOME="$workdir/config"

failures=0
expect() {
    if [ "$2" = "$3" ]; then echo "ok: $1"; else
        echo "FAILED: $1: expected \"$2\", got \"$3\"" >&2; failures=$((failures + 1)); fi
}
check() {
    local what=$1
    shift
    if "$@"; then echo "ok: $what"; else echo "FAILED: $what" >&2; failures=$((failures + 1)); fi
}
# Starts the tray application with the given state folder; its stderr goes to the named log.
# Each runs in a session of its own, as two logins of one user would: within one session a
# second start only hands over to the first.
start() {
    local bus="$workdir/$2.bus"
    dbus-daemon --session --address="unix:path=$bus" --nofork --nopidfile 2>/dev/null &
    pids+=($!)
    for _ in $(seq 100); do [ -S "$bus" ] && break; sleep 0.05; done
    DBUS_SESSION_BUS_ADDRESS="unix:path=$bus" XDG_STATE_HOME="$1" \
        "$voltaro" --sysfs-root "$fixture" 2>"$workdir/$2.log" &
    pids+=($!)
    started=$!
}
# Waits up to 10 s for the log to say something.
wait_for() {
    for _ in $(seq 100); do grep -q "$2" "$workdir/$1.log" && return 0; sleep 0.1; done
    return 1
}
first_record() {
    for _ in $(seq 100); do
        line=$(XDG_STATE_HOME="$1" "$voltaro" --history --json 2>/dev/null | head -1)
        [ -n "$line" ] && { echo "$line"; return; }
        sleep 0.1
    done
}

state="$workdir/state"
start "$state" first
writer=$started
expect "the tray application records the fixture's charge" '"chargePercent":70' \
    "$(first_record "$state" | grep -o '"chargePercent":[0-9]*')"
expect "--csv has a header and a row" 2 "$(XDG_STATE_HOME="$state" "$voltaro" --history --csv | wc -l)"
status=0; "$voltaro" --history --since 2x >/dev/null 2>&1 || status=$?
expect "a bad duration exits with" 2 "$status"

start "$state" second
check "a second instance says the history is in use" wait_for second "in use by another Voltaro"
sleep 1
check "the second instance keeps running" kill -0 "$started"
kill "$writer" "$started"

damaged="$workdir/damaged"
mkdir -p "$damaged/voltaro"
head -c 8192 /dev/urandom >"$workdir/garbage"
cp "$workdir/garbage" "$damaged/voltaro/history.sqlite"
start "$damaged" damaged
check "a damaged file is set aside" wait_for damaged "moved it to"
check "the damaged bytes are kept" cmp -s "$workdir/garbage" "$damaged"/voltaro/history.sqlite.corrupt-*
expect "a new file records" '"chargePercent":70' \
    "$(first_record "$damaged" | grep -o '"chargePercent":[0-9]*')"

touch "$workdir/a-file"
start "$workdir/a-file" unwritable
check "an unusable folder is reported" wait_for unwritable "running without history"
sleep 1
check "without history Voltaro keeps running" kill -0 "$started"

[ "$failures" -eq 0 ]

# shellcheck shell=bash
# Sourced by the scripts that run against the real polkitd and power-profiles-daemon. Everything
# lives on a private system bus in a temporary directory: the machine's own bus, daemons, saved
# profile and hardware are never touched, and the daemons go away with the script.
#
#   require_system_bus_programs   fails (or skips, see below) unless the test can run here
#   start_private_system_bus      dbus-daemon and polkitd; exports DBUS_SYSTEM_BUS_ADDRESS
#   start_power_profiles_daemon   the daemon, on its placeholder driver
#   as_nobody COMMAND...          runs COMMAND as an unprivileged user, whom polkit refuses
#   copy_for_nobody FILE          a copy of FILE that the unprivileged user may run
#   active_profile                the daemon's profile, asked over the bus without Voltaro
#
# The daemons need root. As another user the tests fail, since passing silently would hide that
# they never ran, unless VOLTARO_SKIP_SYSTEM_BUS_TESTS=1 asks to skip them (exit 77).

system_bus_fail() {
    echo "FAILED: $*" >&2
    exit 1
}

find_program() {
    local candidate
    for candidate in "$@"; do
        if [ -x "$candidate" ]; then
            echo "$candidate"
            return 0
        fi
    done
    return 1
}

require_system_bus_programs() {
    if [ "$(id -u)" -ne 0 ]; then
        if [ "${VOLTARO_SKIP_SYSTEM_BUS_TESTS:-}" = 1 ]; then
            echo "skipped: polkitd and power-profiles-daemon need root" \
                "(VOLTARO_SKIP_SYSTEM_BUS_TESTS=1)" >&2
            exit 77
        fi
        system_bus_fail "polkitd and power-profiles-daemon need root: run as root," \
            "or set VOLTARO_SKIP_SYSTEM_BUS_TESTS=1 to skip this test"
    fi
    local missing=()
    polkitd=$(find_program /usr/lib/polkit-1/polkitd /usr/libexec/polkitd \
        /usr/lib/polkit/polkitd) || missing+=("polkitd (package polkitd)")
    power_profiles_daemon=$(find_program /usr/libexec/power-profiles-daemon \
        /usr/lib/power-profiles-daemon/power-profiles-daemon) ||
        missing+=("power-profiles-daemon (package power-profiles-daemon)")
    local program package
    for program in dbus-daemon:dbus-daemon dbus-send:dbus-bin setpriv:util-linux; do
        package=${program#*:}
        program=${program%%:*}
        command -v "$program" >/dev/null || missing+=("$program (package $package)")
    done
    id nobody >/dev/null 2>&1 && getent group nogroup >/dev/null ||
        missing+=("the user nobody and the group nogroup (package base-passwd)")
    if ((${#missing[@]})); then
        local list
        list=$(printf ', %s' "${missing[@]}")
        system_bus_fail "cannot run, missing: ${list#, }." \
            "scripts/install-dependencies.sh installs them."
    fi
}

system_bus_pids=()
stop_private_system_bus() {
    local index
    # The daemons first, so that none of them sees its bus vanish and complains.
    for ((index = ${#system_bus_pids[@]} - 1; index >= 0; index--)); do
        kill "${system_bus_pids[index]}" 2>/dev/null || true
        wait "${system_bus_pids[index]}" 2>/dev/null || true
    done
    system_bus_pids=()
    [ -z "${workdir:-}" ] || rm -rf "$workdir"
}

# Runs a daemon in the background, killed with the script even if the script itself is killed.
start_daemon() {
    local log=$1
    shift
    setpriv --pdeathsig KILL -- "$@" >"$log" 2>&1 &
    system_bus_pids+=($!)
}

wait_for() {
    local _
    for _ in $(seq 100); do
        "$@" && return 0
        sleep 0.1
    done
    return 1
}

has_owner() {
    dbus-send --system --print-reply --dest=org.freedesktop.DBus /org/freedesktop/DBus \
        org.freedesktop.DBus.NameHasOwner "string:$1" 2>/dev/null | grep -q "boolean true"
}

start_private_system_bus() {
    workdir=$(mktemp -d -t voltaro-system-bus.XXXXXX)
    trap stop_private_system_bus EXIT
    trap 'exit 129' HUP
    trap 'exit 130' INT
    trap 'exit 143' TERM
    chmod 755 "$workdir"  # the unprivileged user must reach the socket
    as_nobody test -x "$workdir" ||
        system_bus_fail "the user nobody cannot enter $workdir; set TMPDIR to a directory it can"

    # Everyone may own and call everything: the tests are about the daemon and polkit, not the bus.
    cat >"$workdir/bus.conf" <<CONF
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-BUS Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path=$workdir/system_bus_socket</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
  </policy>
</busconfig>
CONF
    export DBUS_SYSTEM_BUS_ADDRESS="unix:path=$workdir/system_bus_socket"
    start_daemon "$workdir/bus.log" dbus-daemon --config-file="$workdir/bus.conf" --nofork
    if ! wait_for test -S "$workdir/system_bus_socket"; then
        cat "$workdir/bus.log" >&2
        system_bus_fail "dbus-daemon did not start"
    fi

    start_daemon "$workdir/polkitd.log" "$polkitd" --no-debug
    if ! wait_for has_owner org.freedesktop.PolicyKit1; then
        cat "$workdir/polkitd.log" >&2
        system_bus_fail "polkitd did not start"
    fi
}

daemon_ready() {
    has_owner net.hadess.PowerProfiles || has_owner org.freedesktop.UPower.PowerProfiles
}

start_power_profiles_daemon() {
    # The daemon takes its sysfs and its saved profile from under UMOCKDEV_DIR. An empty tree has
    # neither platform_profile nor p-states, so it runs on the placeholder driver (balanced and
    # power-saver) and changes nothing on the machine.
    mkdir "$workdir/machine"
    start_daemon "$workdir/daemon.log" env UMOCKDEV_DIR="$workdir/machine" "$power_profiles_daemon"
    if ! wait_for daemon_ready; then
        cat "$workdir/daemon.log" >&2
        system_bus_fail "power-profiles-daemon did not start"
    fi
}

# polkit lets root do anything, so a refusal needs somebody else.
as_nobody() {
    setpriv --reuid=nobody --regid=nogroup --clear-groups -- "$@"
}

copy_for_nobody() {
    local copy
    copy="$workdir/$(basename "$1")"
    install -m 755 "$1" "$copy"
    echo "$copy"
}

active_profile() {
    dbus-send --system --print-reply=literal --dest=net.hadess.PowerProfiles \
        /net/hadess/PowerProfiles org.freedesktop.DBus.Properties.Get \
        string:net.hadess.PowerProfiles string:ActiveProfile | awk '{ print $NF }'
}

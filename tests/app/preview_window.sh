#!/usr/bin/env bash
# Runs the real binary with --preview-window on a virtual X server and looks at it from outside:
# the window the X server holds, and the line the program writes for each refresh.
# Usage: preview_window.sh VOLTARO_BINARY TEST_DATA_FOLDER. Exits 77 (skipped) when it cannot run.
set -uo pipefail
binary=$1 data=$2
for program in Xvfb xwininfo xprop; do
    command -v $program >/dev/null || { echo "skipped: $program is missing" >&2; exit 77; }
done
work=$(mktemp -d /tmp/voltaro-preview-XXXXXX)
trap 'kill $xvfb $voltaro 2>/dev/null; wait; rm -rf "$work"' EXIT
Xvfb -displayfd 3 -nolisten tcp -screen 0 1280x800x24 3>"$work/display" 2>/dev/null &
xvfb=$!
for _ in $(seq 100); do [ -s "$work/display" ] && break; sleep 0.1; done
export DISPLAY=:$(cat "$work/display") QT_QPA_PLATFORM=xcb LC_ALL=C LANGUAGE= \
    XDG_CONFIG_HOME="$work/config" XDG_STATE_HOME="$work/state"
"$binary" --preview-window --sysfs-root "$data/sysfs/asus-zenbook-14-charging" \
    --trace-refreshes 2>"$work/err" >/dev/null &
voltaro=$!
sleep 3.5
failed=0
fail() { echo "FAILED: $*"; failed=1; }
kill -0 $voltaro 2>/dev/null || fail "voltaro ended early: $(cat "$work/err")"

# "0x400006 "Voltaro Preview": ("voltaro" "voltaro")  380x550+450+125  +450+125": fixed, centred
window=$(xwininfo -root -tree | grep '"Voltaro Preview":')
[[ $window =~ (0x[0-9a-f]+).*\ 380x550\+450\+125 ]] || fail "window: $window"
read -r id _ <<<"$window"
if [ -n "$id" ]; then
    xwininfo -id "$id" | grep -q "Map State: IsViewable" || fail "window $id not viewable"
    hints=$(xprop -id "$id" WM_NORMAL_HINTS)
    grep -q "minimum size: 380 by 550" <<<"$hints" &&
        grep -q "maximum size: 380 by 550" <<<"$hints" || fail "resizable: $hints"
fi

# One loop: a refresh at once, then one 2 s later, not twice as often; timers may fire a little
# early or late, a second loop would put refreshes far closer together.
mapfile -t refreshes < <(grep -E '^refresh [0-9]+ at [0-9]+ ms: ' "$work/err")
[ ${#refreshes[@]} -eq 2 ] || fail "not two refreshes: ${refreshes[*]}"
read -r _ first _ firstMs _ <<<"${refreshes[0]:-}"
read -r _ second _ secondMs _ <<<"${refreshes[1]:-}"
[ "${firstMs:-9999}" -lt 1900 ] || fail "late first refresh: ${refreshes[0]:-}"
[ "${second:-0}" -eq $((${first:-0} + 1)) ] || fail "refreshes not counted one by one"
gap=$((${secondMs:-0} - ${firstMs:-0}))
[ $gap -ge 1700 ] && [ $gap -le 3500 ] || fail "refreshes $gap ms apart"
# What the monitor read from the fixture laptop, and what the window shows of it.
last=${refreshes[1]:-}
[[ $last == *"level 57, Charging"* && ${last#*; screen: } == *"Battery — 57%"* ]] ||
    fail "shown: $last"
# A developer's preview leaves the history, and the lock on it, to the single instance.
[ ! -e "$work/state/voltaro" ] || fail "the preview opened the history: $(ls "$work/state/voltaro")"
exit $failed

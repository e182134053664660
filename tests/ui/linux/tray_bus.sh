#!/usr/bin/env bash
# Runs the tray item's D-Bus tests on a private session bus, so the desktop's own bus and its
# panel never see the test's items, with a runtime directory of their own for the icon folder.
# Exits 77 (skipped) when it cannot run.
# Usage: tray_bus.sh UI_TESTS_BINARY
set -euo pipefail

binary=$(realpath "${1:?usage: $0 UI_TESTS_BINARY}")
if ! command -v dbus-run-session >/dev/null; then
    echo "skipped: dbus-run-session not installed (package dbus-daemon)" >&2
    exit 77
fi
XDG_RUNTIME_DIR=$(mktemp -d "${TMPDIR:-/tmp}/voltaro-tray-bus.XXXXXX")
trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
export XDG_RUNTIME_DIR VOLTARO_TRAY_BUS=1
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
# Only the test's own services on this bus: no portal or other service of the machine is
# started on demand behind the stand-ins' backs.
cat >"$XDG_RUNTIME_DIR/bus.conf" <<'EOF'
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
EOF
dbus-run-session --config-file="$XDG_RUNTIME_DIR/bus.conf" -- "$binary" --gtest_filter='TrayItemBusTest.*'

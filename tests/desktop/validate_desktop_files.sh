#!/usr/bin/env bash
# Validates the .desktop file and the AppStream entry the way software centres and menus read
# them, and checks that they name each other and the icon. Exits 77 (skipped) without the tools.
# Usage: validate_desktop_files.sh RESOURCES_DIR APP_ID
set -euo pipefail

resources=${1:?usage: $0 RESOURCES_DIR APP_ID}
id=${2:?usage: $0 RESOURCES_DIR APP_ID}
for tool in appstreamcli desktop-file-validate; do
    if ! command -v "$tool" >/dev/null; then
        echo "skipped: $tool is missing (scripts/install-dependencies.sh)" >&2
        exit 77
    fi
done

desktop="$resources/$id.desktop"
metainfo="$resources/$id.metainfo.xml"
failed=0
fail() {
    echo "FAIL: $*" >&2
    failed=1
}

# Hints are advice; warnings and errors fail.
if ! report=$(desktop-file-validate "$desktop" 2>&1) || grep -Eq ': (warning|error):' <<<"$report"
then
    fail "desktop-file-validate: $report"
fi
appstreamcli validate --no-net "$metainfo" || fail "appstreamcli validate rejects $metainfo"

grep -qx "Exec=voltaro" "$desktop" || fail "the menu entry does not start voltaro"
grep -qx "Icon=$id" "$desktop" || fail "the menu entry's icon is not $id"
[ -f "$resources/$id.svg" ] || fail "no icon $id.svg"
grep -q "<id>$id</id>" "$metainfo" || fail "the AppStream id is not $id"
grep -q "<launchable type=\"desktop-id\">$id.desktop</launchable>" "$metainfo" ||
    fail "the AppStream entry does not launch $id.desktop"
exit $failed

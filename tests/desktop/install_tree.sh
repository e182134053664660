#!/usr/bin/env bash
# Installs the build into a fresh prefix, as a package would, and checks that every file lands
# where desktops look for it and that the installed program runs.
# Usage: install_tree.sh BUILD_DIR APP_ID
set -euo pipefail

build=${1:?usage: $0 BUILD_DIR APP_ID}
id=${2:?usage: $0 BUILD_DIR APP_ID}
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT

cmake --install "$build" --prefix "$prefix" >/dev/null

failed=0
for file in \
    "bin/voltaro" \
    "share/applications/$id.desktop" \
    "share/icons/hicolor/scalable/apps/$id.svg" \
    "share/metainfo/$id.metainfo.xml" \
    "share/doc/Voltaro/LICENSE"; do
    if [ ! -f "$prefix/$file" ]; then
        echo "FAIL: $file was not installed" >&2
        failed=1
    fi
done
[ -x "$prefix/bin/voltaro" ] || { echo "FAIL: bin/voltaro is not executable" >&2; failed=1; }

version=$("$prefix/bin/voltaro" --version) || { echo "FAIL: the installed voltaro does not run" >&2; exit 1; }
case "$version" in
    "Voltaro "*) ;;
    *) echo "FAIL: the installed voltaro says '$version'" >&2; failed=1 ;;
esac

# Nothing else: a package holds what it needs and no build or test leftovers.
unexpected=$(cd "$prefix" && find . -type f | sort | grep -Ev \
    "^\./(bin/voltaro|share/applications/$id\.desktop|share/icons/hicolor/scalable/apps/$id\.svg|share/metainfo/$id\.metainfo\.xml|share/doc/Voltaro/LICENSE)$" || true)
if [ -n "$unexpected" ]; then
    echo "FAIL: also installed: $unexpected" >&2
    failed=1
fi
exit $failed

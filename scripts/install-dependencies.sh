#!/usr/bin/env bash
# Installs what building and testing Voltaro needs on Debian 12. Safe to run again.
#
#   scripts/install-dependencies.sh          build, run and the whole test suite
#   scripts/install-dependencies.sh deep     also the sanitizer runtimes, fuzzing and packaging
#   scripts/install-dependencies.sh footprint  also the programs bench/footprint.sh compares with
set -euo pipefail

packages=(
    cmake ninja-build g++ ccache pkg-config
    libgtest-dev libgmock-dev libbenchmark-dev
    nlohmann-json3-dev libcli11-dev
    libsystemd-dev libsqlite3-dev
    qt6-base-dev qt6-svg-dev qt6-tools-dev qt6-l10n-tools qt6-qpa-plugins fonts-dejavu-core
    # The suite: the real daemons on private buses, an X server, the desktop validators, clang
    # to type-check the macOS sources, and python3 for the tests that drive the binary.
    dbus-daemon dbus-bin polkitd power-profiles-daemon util-linux python3
    xvfb xauth x11-utils
    appstream desktop-file-utils
    clang
    # The desktops the tray item is tested in, each on an X server and session bus of its own:
    # GNOME Shell's AppIndicator extension, XFCE's status tray and its indicator plugin over
    # Ayatana's indicator service, LXQt, an XEmbed tray, a window manager for the panels that
    # need one, weston for a Wayland session, and the settings portal that tells light from
    # dark. Screenshots are read through python3-pil.
    gnome-shell gnome-shell-extension-appindicator dbus-x11
    xfce4-panel xfce4-indicator-plugin ayatana-indicator-application lxqt-panel trayer openbox
    weston qt6-wayland xdg-desktop-portal xdg-desktop-portal-gtk
    x11-apps xdotool imagemagick python3 python3-pil python3-dbus
)
for group in "$@"; do
    case "$group" in
        deep) packages+=(libclang-rt-14-dev make debhelper dpkg-dev lintian) ;;
        footprint) packages+=(htop btop tmux) ;;
        *) echo "unknown group '$group' (deep, footprint)" >&2; exit 2 ;;
    esac
done

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" ||
        missing+=("$package")
done
if ((${#missing[@]})); then
    sudo_cmd=()
    [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
    "${sudo_cmd[@]}" apt-get update
    DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
fi

#!/usr/bin/env bash
# Installs what building and testing Voltaro needs on Debian 12. Safe to run again.
set -euo pipefail

packages=(
    cmake ninja-build g++ ccache pkg-config
    clang libclang-rt-14-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    nlohmann-json3-dev libcli11-dev
    libsystemd-dev
    dbus-daemon dbus-bin polkitd power-profiles-daemon util-linux
    qt6-base-dev qt6-svg-dev qt6-tools-dev qt6-l10n-tools qt6-qpa-plugins fonts-dejavu-core
    xvfb xauth x11-utils
    appstream desktop-file-utils
    htop btop tmux trayer
)

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

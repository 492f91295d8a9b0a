#!/usr/bin/env bash
# Installs the Debian packages that building, running and testing the editor need.
# Only missing packages are installed, so a second run takes a second or two.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools libqt6opengl6-dev libgl-dev
  libgtest-dev libgmock-dev libbenchmark-dev zlib1g-dev
  clang-14 libclang-rt-14-dev
  xvfb xauth xdotool x11-utils imagemagick openbox dbus-daemon
  qt6-wayland sway grim wtype
  fonts-dejavu-core fonts-dejavu-extra python3
  qt6-svg-dev
  # the Debian package (dpkg-shlibdeps) and the desktop tools that the install tests use
  dpkg-dev file desktop-file-utils shared-mime-info xdg-utils libfile-mimeinfo-perl man-db
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "setup: installing ${missing[*]}"
SUDO=""
[ "$(id -u)" -ne 0 ] && SUDO="sudo"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
echo "setup: done"

#!/usr/bin/env bash
# Installs every Debian package that building, testing and benchmarking
# libvyxcore needs. Safe to run again: when everything is present it prints
# nothing and touches nothing. Must run as root (or through sudo).
set -euo pipefail

packages=(
  # build
  build-essential cmake ninja-build pkg-config
  libsimpleini-dev
  libx11-dev libxrandr-dev libxi-dev libxft-dev libfontconfig-dev libxcursor-dev
  # the manual page and the API reference
  scdoc doxygen
  # tests
  googletest libgtest-dev libgmock-dev
  xvfb x11-xserver-utils
  shared-mime-info hicolor-icon-theme adwaita-icon-theme gtk-update-icon-cache
  desktop-file-utils psmisc util-linux
  sound-theme-freedesktop
  # fuzzing and sanitizers
  clang libclang-rt-14-dev
  # benchmarks
  libbenchmark-dev
)

missing=()
for p in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
  [[ "$status" == "install ok installed" ]] || missing+=("$p")
done

[[ ${#missing[@]} -eq 0 ]] && exit 0

if [[ $(id -u) -ne 0 ]]; then
  if command -v sudo >/dev/null 2>&1; then exec sudo "$0" "$@"; fi
  echo "setup.sh: missing packages (${missing[*]}); run as root" >&2
  exit 1
fi

echo "setup.sh: installing ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null

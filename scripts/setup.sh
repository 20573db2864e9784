#!/usr/bin/env bash

# SPDX-FileCopyrightText: 2026 The libvyxcore developers
#
# SPDX-License-Identifier: LGPL-2.1-or-later

# Installs every Debian package that building, testing and benchmarking
# libvyxcore needs. Safe to run again: when everything is present it prints
# nothing and touches nothing. Must run as root (or through sudo).
#   scripts/setup.sh              building, testing, fuzzing, benchmarks
#   scripts/setup.sh --packaging  the same, plus the Debian packaging tools,
#                                 the licence checker and the ABI tools
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
  # the freedesktop tools the preferred-application answers are compared with
  xdg-utils libglib2.0-bin
  # fuzzing and sanitizers
  clang libclang-rt-14-dev
  # benchmarks, and the side-by-side runs against GLib's key file and
  # GTK's icon theme
  libbenchmark-dev libglib2.0-dev libgtk-3-dev
)

if [[ "${1:-}" == "--packaging" ]]; then
  packages+=(
    # Debian packages, their checks, the symbols file helpers
    debhelper dpkg-dev fakeroot lintian pkg-kde-tools
    # licence headers and the ABI baseline
    reuse abigail-tools
    # the man page and the API reference
    scdoc doxygen
  )
fi

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

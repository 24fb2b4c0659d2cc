#!/usr/bin/env bash
# Installs the Debian packages that Lexsmith needs to build, test and run,
# skipping those already present. Run as root (or with sudo available).
set -euo pipefail

packages=(
  g++ cmake ninja-build ccache pkg-config
  qt6-base-dev libgl-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  fonts-wine xvfb xauth
  openbox xdotool wmctrl x11-utils imagemagick jq
  clang-14 libclang-rt-14-dev llvm-14
  desktop-file-utils appstream dpkg-dev
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "setup: installing ${missing[*]}" >&2
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
  sudo_cmd=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null

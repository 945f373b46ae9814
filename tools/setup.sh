#!/usr/bin/env bash
# Installs the Debian packages the build needs, when they are missing and we may install.
# Usage: tools/setup.sh [extra packages...]
set -euo pipefail

packages=(g++ cmake make googletest g++-multilib libbenchmark-dev "$@")
missing=()
for p in "${packages[@]}"; do
  dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

if [ "$(id -u)" -ne 0 ]; then
  echo "Missing Debian packages: ${missing[*]} (run as root, or install them first)" >&2
  exit 1
fi
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
# Recommended packages stay out: qemu-user would bring a system-wide binfmt handler.
apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null

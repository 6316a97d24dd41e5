#!/usr/bin/env bash
# Installs what the build needs on a Debian 12 machine, as root. With
# "--windows" it also installs the mingw-w64 cross compiler.
set -euo pipefail

packages=(cmake ninja-build g++ libgtest-dev libgmock-dev libbenchmark-dev nlohmann-json3-dev
          libcli11-dev)
if [[ "${1:-}" == "--windows" ]]; then
  packages+=(g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64)
fi

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" ||
    missing+=("$package")
done
if ((${#missing[@]})); then
  echo "installing: ${missing[*]}"
  apt-get update -qq
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

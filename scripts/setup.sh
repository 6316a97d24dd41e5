#!/usr/bin/env bash
# Installs what the build needs on a Debian 12 machine, as root.
#   setup.sh          the compiler, build tools and libraries of the host
#   setup.sh --all    also everything the whole test suite uses: the mingw-w64
#                     cross compiler, GoogleTest's sources and Wine, clang with libFuzzer, umockdev,
#                     D-Bus with python-dbusmock, SQLite, Chromium, promtool, and what
#                     the package step uses (dpkg-dev, file, lintian, man-db, bash-completion)
set -euo pipefail

packages=(cmake ninja-build g++ libgtest-dev libgmock-dev libbenchmark-dev nlohmann-json3-dev
          libcli11-dev libsqlite3-dev libsystemd-dev pkg-config scdoc)
if [[ "${1:-}" == "--all" || "${1:-}" == "--windows" ]]; then
  packages+=(g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 wine64 googletest
             clang libclang-rt-14-dev
             umockdev libumockdev-dev dbus python3-dbusmock
             sqlite3 chromium prometheus
             dpkg-dev file lintian man-db bash-completion)
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

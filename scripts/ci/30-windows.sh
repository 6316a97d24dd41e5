#!/usr/bin/env bash
# The Windows cross build with its export check, and the ZIP a Windows user
# unpacks: the host, the module, the two stand-ins, the README and licence.
set -euo pipefail
cd "$(dirname "$0")/../.."
bash scripts/check-windows-build.sh
cpack --preset zip
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/mingw/CMakeCache.txt)
zip=build/mingw/package/battery-host-$version-win64.zip
folder=battery-host-$version-win64
listing=$(cmake -E tar tf "$zip" | grep -v '/$' | sort)
expected=$(printf "$folder/%s\n" LICENSE README.md battery_host.exe battery_module.dll hostlib.dll \
  portlib.dll)
if [[ "$listing" != "$expected" ]]; then
  echo "$zip holds:"; echo "$listing"
  echo "expected exactly:"; echo "$expected"
  exit 1
fi
echo "$zip ($(stat -c %s "$zip") bytes): $(echo $listing)"

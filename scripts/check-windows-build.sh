#!/usr/bin/env bash
# Cross-builds the module and the host for 64-bit Windows and checks that the
# DLL exports exactly the module's three functions.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset mingw >/dev/null
cmake --build --preset mingw
dll=build/mingw/bin/battery_module.dll
exports=$(x86_64-w64-mingw32-objdump -p "$dll" |
  awk '/\[Ordinal\/Name Pointer\] Table/{table=1; next} table && NF==0{table=0} table{print $NF}' | sort)
expected=$(printf '%s\n' GetModuleInterfaceInstance GetProductVersion ReleaseModuleInterfaceInstance)
if [[ "$exports" != "$expected" ]]; then
  echo "battery_module.dll exports:"; echo "$exports"
  echo "expected exactly:"; echo "$expected"
  exit 1
fi
echo "battery_module.dll exports exactly: $(echo $exports)"

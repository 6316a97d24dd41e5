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

# Only system DLLs and the vendor's two libraries; the configuration-manager
# functions from cfgmgr32.dll, where the SDK places them.
dump=$(x86_64-w64-mingw32-objdump -p "$dll")
imports=$(awk '/DLL Name:/{print tolower($3)}' <<<"$dump" | sort | tr '\n' ' ')
allowed=" advapi32.dll cfgmgr32.dll kernel32.dll msvcrt.dll ole32.dll oleaut32.dll powrprof.dll setupapi.dll hostlib.dll portlib.dll "
for name in $imports; do
  if [[ "$allowed" != *" $name "* ]]; then
    echo "battery_module.dll imports $name, which is neither a system DLL nor a vendor library"
    exit 1
  fi
done
cm_from=$(awk '/DLL Name:/{dll=tolower($3)} $NF ~ /^CM_/{print dll}' <<<"$dump" | sort -u)
if [[ "$cm_from" != "cfgmgr32.dll" ]]; then
  echo "the CM_ functions come from: ${cm_from:-nowhere}; expected cfgmgr32.dll"
  exit 1
fi
echo "battery_module.dll imports: $imports"

# A shipped binary carries no debug sections; they sit in <file>.debug.
for binary in build/mingw/bin/{battery_module.dll,hostlib.dll,portlib.dll,battery_host.exe}; do
  if x86_64-w64-mingw32-objdump -h "$binary" | grep -q '\.debug_'; then
    echo "$binary carries debug sections"
    exit 1
  fi
done
echo "no debug sections in the shipped binaries"

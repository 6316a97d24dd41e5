#!/usr/bin/env bash
# The Debian package as a notebook owner meets it: built from the release
# build, checked by lintian (an error fails the step), installed with apt,
# run from PATH and through a symlink elsewhere, its manual page and bash
# completion looked up, then purged without a trace. Runs as root; a
# battery-host package installed before is purged at the end.
set -euo pipefail
cd "$(dirname "$0")/../.."
source=$PWD
start=$SECONDS

cmake --workflow --preset package
debs=(build/release/package/battery-host_*_amd64.deb)
deb=${debs[-1]}
dpkg-deb --info "$deb"
echo "== $deb: $(stat -c %s "$deb") bytes"
echo "== lintian"
lintian --fail-on error --display-info "$deb"

work=$(mktemp -d -t battery-package.XXXXXX)
# A failed check leaves no package behind either.
cleanup() {
  if dpkg -s battery-host >/dev/null 2>&1; then apt-get purge -y -qq battery-host; fi
  rm -rf "$work"
}
trap cleanup EXIT
# Without Recommends: the check needs no power-profiles-daemon.
DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "./$deb"
dpkg -L battery-host >"$work/files"

# The runs keep their history and journal in the work folder.
export XDG_DATA_HOME=$work/data XDG_STATE_HOME=$work/state
mkdir -p "$work/elsewhere" "$work/links"
ln -s "$(command -v battery_host)" "$work/links/bh"
cd "$work/elsewhere"
expect_exit() {
  local expected=$1
  shift
  local code=0
  "$@" >"$work/out" 2>&1 || code=$?
  if [[ $code != "$expected" ]]; then
    cat "$work/out"
    echo "'$*' exited with $code, expected $expected" >&2
    exit 1
  fi
  echo "ok ($code): $*"
}
[[ $(command -v battery_host) == /usr/bin/battery_host ]]
for program in battery_host "$work/links/bh"; do
  expect_exit 0 "$program" --version
  grep -q "^battery module 4\." "$work/out"
  expect_exit 0 umockdev-run -d "$source/tests/testbeds/two-batteries.umockdev" -- \
    "$program" --this-machine -Mbattery -Q
  expect_exit 1 "$program" --scenario worn -Mbattery -Q
done

echo "== manual page: $(man -w battery_host)"
[[ $(man -w battery_host) == /usr/share/man/man1/battery_host.1.gz ]]
man battery_host | grep -q -- "--this-machine"

echo "== bash completion"
completions() { # the words typed so far; the last one is being completed
  bash -c 'source /usr/share/bash-completion/completions/battery_host
           COMP_WORDS=($1); COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
           _battery_host battery_host "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
           echo "${COMPREPLY[*]}"' bash "$1"
}
offered=$(completions "battery_host --sc")
echo "battery_host --sc: $offered"
[[ " $offered " == *" --scenario "* ]]
offered=$(completions "battery_host --scenario w")
echo "battery_host --scenario w: $offered"
[[ " $offered " == *" worn "* && " $offered " == *" warm-no-flag "* ]]

echo "== purge"
cd "$source"
apt-get purge -y -qq battery-host
if dpkg -L battery-host >/dev/null 2>&1; then
  echo "dpkg still knows battery-host after the purge" >&2
  exit 1
fi
[[ ! -e /usr/lib/battery_host ]]
while read -r path; do
  if [[ -f $path || -L $path ]]; then
    echo "$path is left after the purge" >&2
    exit 1
  fi
done <"$work/files"
echo "== the package step took $((SECONDS - start)) s"

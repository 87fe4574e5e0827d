#!/usr/bin/env bash
# Installs the Debian packages named on the command line that are not installed yet.
set -euo pipefail

missing=()
for package in "$@"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$package")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

fail() {
  echo "error: $1" >&2
  echo "       the build needs these Debian packages: ${missing[*]}" >&2
  exit 1
}

command -v apt-get >/dev/null 2>&1 || fail "apt-get not found: install the packages with this system's package manager"
[ "$(id -u)" -eq 0 ] || fail "not root: run this as root, or first run: sudo apt-get install ${missing[*]}"

echo "Installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq </dev/null || fail "apt-get update failed (is the package mirror reachable?)"
apt-get install -y -qq --no-install-recommends "${missing[@]}" </dev/null >/dev/null ||
  fail "apt-get install failed for: ${missing[*]}"

#!/usr/bin/env bash
# Fetches Android's API classes (android.jar of API level 23) from Debian's
# libandroid-23-java package of the bullseye suite and unpacks it under DIR,
# through a private apt configuration in DIR: the machine's package sources,
# lists and installed packages stay as they are. Prints the jar's path; on
# failure prints the reason on standard error and exits 1.
#   fetch_android_api.sh DIR
# The mirror is the first Debian archive in the machine's apt sources
# (MOLO_DEBIAN_MIRROR overrides it).
set -euo pipefail
dir=${1:?usage: fetch_android_api.sh DIR}
jar_rel=usr/lib/android-sdk/platforms/android-23/android.jar
mkdir -p "$dir"
dir=$(cd "$dir" && pwd)
if [ -f "$dir/root/$jar_rel" ]; then
  echo "$dir/root/$jar_rel"
  exit 0
fi
fail() { echo "fetch_android_api.sh: $*" >&2; exit 1; }
command -v apt-get >/dev/null 2>&1 && command -v dpkg >/dev/null 2>&1 || fail "needs apt-get and dpkg"
keyring=/usr/share/keyrings/debian-archive-keyring.gpg
[ -f "$keyring" ] || fail "no Debian archive keyring at $keyring"

mirror=${MOLO_DEBIAN_MIRROR:-}
if [ -z "$mirror" ]; then
  # One-line sources (deb [options] URI suite ...) and deb822 sources (URIs: ...).
  mirror=$(cat /etc/apt/sources.list /etc/apt/sources.list.d/*.list /etc/apt/sources.list.d/*.sources 2>/dev/null \
           | sed -nE -e 's/^deb[[:space:]]+(\[[^]]*\][[:space:]]+)?([^[:space:]]+).*/\2/p' \
                     -e 's/^URIs:[[:space:]]*//p' \
           | tr ' ' '\n' | grep -E '/debian/?$' | head -n 1 || true)
fi
mirror=${mirror:-http://deb.debian.org/debian}

apt_dir=$dir/apt
mkdir -p "$apt_dir/lists/partial" "$apt_dir/cache/archives/partial" "$apt_dir/preferences.d" "$dir/download"
echo "deb [signed-by=$keyring] ${mirror%/} bullseye main" > "$apt_dir/sources.list"
apt_options=(-qq
  -o Dir::Etc::sourcelist="$apt_dir/sources.list" -o Dir::Etc::sourceparts=-
  -o Dir::Etc::preferencesparts="$apt_dir/preferences.d"
  -o Dir::State="$apt_dir" -o Dir::State::lists="$apt_dir/lists" -o Dir::Cache="$apt_dir/cache"
  -o Debug::NoLocking=1 -o APT::Sandbox::User="$(id -un)"
  -o Acquire::Retries=2 -o Acquire::http::Timeout=30)
apt-get "${apt_options[@]}" update >&2 || fail "cannot read the bullseye suite from $mirror"
rm -f "$dir"/download/*.deb
(cd "$dir/download" && apt-get "${apt_options[@]}" download libandroid-23-java >&2) \
  || fail "cannot download libandroid-23-java from $mirror"
rm -rf "$dir/root"
dpkg -x "$dir"/download/libandroid-23-java_*.deb "$dir/root"
[ -f "$dir/root/$jar_rel" ] || fail "the package holds no $jar_rel"
echo "$dir/root/$jar_rel"

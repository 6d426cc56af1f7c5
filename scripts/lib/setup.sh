#!/usr/bin/env bash
# Installs what is missing of the named package groups (see packages.sh): setup.sh GROUP…
# Says nothing and changes nothing when all is there. Ends with one clear sentence when it cannot help.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
# shellcheck source=scripts/lib/packages.sh
source "$here/packages.sh"
log=$root/build/setup.log

fail()
{
  echo "setup: $*" >&2
  exit 1
}

# The resource compiler puts paths into a line for the shell, as they are.
[[ $root != *[$'&;$`()\'"<>|\\\n']* ]] ||
  fail "the path $root has one of the characters & ; \$ \` ( ) ' \" < > | \\, which tools of the build would give to a shell:" \
    "move the checkout"
{ mkdir -p "$root/build" && [[ -w $root/build ]]; } 2>/dev/null ||
  fail "cannot write to $root/build; the checkout belongs to $(stat --format %U "$root"): work in a clone of your own"

wanted=()
for group in "$@"; do
  [[ -v packages_$group ]] || fail "there is no group of packages called $group, see scripts/lib/packages.sh"
  declare -n packages="packages_$group"
  wanted+=("${packages[@]}")
done

[[ -z ${QUILLET_SKIP_SETUP:-} ]] || exit 0

if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
  fail "this is neither Debian 12 nor 13 nor a relative of theirs: install what these packages hold by hand," \
    "then set QUILLET_SKIP_SETUP=1 and run the command again: ${wanted[*]}"
fi

installed=$(dpkg-query --show --showformat='${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null |
  sed -n 's/^installed //p' || true)
missing=()
for package in "${wanted[@]}"; do
  grep -qxF -- "$package" <<<"$installed" || missing+=("$package")
done
((${#missing[@]})) || exit 0

as_root=()
if ((EUID != 0)); then
  command -v sudo >/dev/null ||
    fail "packages are missing and this is neither root nor is there sudo; as root:" \
      "apt-get install --no-install-recommends ${missing[*]}"
  as_root=(sudo)
  [[ -t 0 ]] || as_root+=(--non-interactive) # nobody there to type a password
  "${as_root[@]}" true ||
    fail "packages are missing and sudo refuses; as root: apt-get install --no-install-recommends ${missing[*]}"
fi

# A slow mirror or another apt-get at work is waited for, within limits.
apt()
{
  "${as_root[@]}" env LC_ALL=C DEBIAN_FRONTEND=noninteractive apt-get --quiet --yes \
    -o Acquire::Retries=2 -o Acquire::http::Timeout=30 -o Acquire::https::Timeout=30 \
    -o DPkg::Lock::Timeout=300 "$@" </dev/null >>"$log" 2>&1
}

: >"$log"
echo "setup: installing ${missing[*]}; details in build/setup.log"
apt update || true # one broken source among several is no reason to stop
if ! apt install --no-install-recommends "${missing[@]}"; then
  # An empty log could not be written.
  if [[ ! -s $log ]] || grep -qE 'No space left|enough free space' "$log"; then
    fail "a disk is full: $(df --human-readable --output=avail,target "$root" /var/cache/apt / | sed 1d | sort -u | xargs)"
  elif grep -qE 'Could not resolve|Failed to fetch|Could not connect|Connection (failed|timed out)' "$log"; then
    fail "the Debian mirror cannot be reached: this machine needs a network for the first run, see build/setup.log"
  elif grep -q 'Unable to locate package' "$log"; then
    fail "the package sources of this machine do not have all packages: the lists in /etc/apt must name" \
      "Debian 12 or 13 (main), see build/setup.log"
  fi
  tail -n 5 "$log" >&2
  fail "apt-get could not install the packages, its reasons are in build/setup.log"
fi

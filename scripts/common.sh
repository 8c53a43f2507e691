# Sourced by every script here: where the project is, what the machine lacks, how it is built.
# shellcheck shell=bash
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

say() { printf '\033[1m==>\033[0m %s\n' "$*"; }
fail() {
  printf 'error: %s\n' "$*" >&2
  exit 1
}

on_macos() { [ "$(uname -s)" = Darwin ]; }

# The system's own Python: the packages that are installed here belong to it, whatever else stands first in PATH.
python=/usr/bin/python3
on_macos && python=python3

# packages <purpose>: the package names for this system, one a line, each once; those that a system may lack end in "?".
packages() {
  local column=1
  on_macos && column=2
  awk -v wanted="$1" -v column="$column" '
    /^[[:space:]]*(#|$)/ { next }
    {
      split($0, half, "|")
      purpose = $1
      sub(/^[[:space:]]*[^[:space:]]+/, "", half[1])
      lists[purpose] = lists[purpose] " " half[column]
    }
    function walk(purpose,    count, i, word, words) {
      count = split(lists[purpose], words, " ")
      for (i = 1; i <= count; i++) {
        word = words[i]
        if (word ~ /^\[.*\]$/) walk(substr(word, 2, length(word) - 2))
        else if (word != "-" && !seen[word]++) print word
      }
    }
    END { walk(wanted) }
  ' packaging/packages.txt
}

# missing_packages <purpose>: those that are not installed.
missing_packages() {
  local installed
  if on_macos; then
    installed=$(brew list -1 --full-name --formula && brew list -1 --cask)
  else
    installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' | sed -n 's/^installed //p')
  fi
  packages "$1" | sed 's/?$//' | grep -vxF -f <(printf '%s\n' "$installed") || true
}

# offered <purpose> <name…>: the names without those that this system may lack and does.
offered() {
  local name optional
  optional=$(packages "$1" | sed -n 's/?$//p')
  shift
  for name in "$@"; do
    # "show" is content with a name that others only mention.
    grep -qxF -- "$name" <<<"$optional" && [ -z "$(apt-cache madison "$name")" ] || echo "$name"
  done
}

# as_root <command>: through sudo only when this is not root already.
as_root() {
  if [ "$(id -u)" = 0 ]; then
    "$@"
  else
    command -v sudo >/dev/null || fail "this needs root: $*"
    # In CI nobody can type a password.
    sudo ${CI:+-n} "$@"
  fi
}

# install_packages <purpose>: brings the machine to what that purpose needs.
install_packages() {
  local names
  if on_macos; then
    command -v brew >/dev/null || fail "Homebrew is needed, see https://brew.sh"
  else
    command -v apt-get >/dev/null ||
      fail "only apt and Homebrew are known here; install the equivalents of: $(packages "$1" | tr '\n' ' ')"
  fi
  names=$(missing_packages "$1" | tr '\n' ' ')
  if [ -z "$names" ]; then
    say "Packages to $1: all there"
    return
  fi
  say "Packages to $1: installing $names"
  # The lists are words, so they are meant to be split.
  # shellcheck disable=SC2086
  if on_macos; then
    brew install $names
  else
    as_root env DEBIAN_FRONTEND=noninteractive apt-get update -qq
    # shellcheck disable=SC2086
    names=$(offered "$1" $names | tr '\n' ' ')
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $names >/dev/null
  fi
}

# configure [cmake option…]: the release build in build/.
configure() {
  if on_macos; then
    export CMAKE_PREFIX_PATH="${CMAKE_PREFIX_PATH:-$(brew --prefix)}"
  fi
  cmake --preset release "$@" >/dev/null
}

# build [target…]: compiles what changed; without a target, everything.
build() {
  say "Building build/ (release)"
  local targets=()
  [ $# -gt 0 ] && targets=(--target "$@")
  cmake --build build ${targets[@]+"${targets[@]}"}
}

#!/usr/bin/env bash
# Tests of the scripts that set up a machine, with stand-ins for its tools: nothing is fetched, installed or built.
# Exit status 1 if a case fails; all cases run.
set -euo pipefail

scripts=$HDI_SOURCE_DIR/scripts
apt=$HDI_SOURCE_DIR/tests/scripts/apt
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export PDF_HDI_CACHE=$work/cache
unset CXX PDFIUM_ARCHIVE
failed=0

# Check NAME STATUS PATTERN COMMAND...: expects this exit status, a line of output that matches the extended regular
# expression, and nothing on standard output if the command fails.
Check() {
  local name=$1 status=$2 pattern=$3 found=0 printed
  "${@:4}" >"$work/stdout" 2>"$work/stderr" || found=$?
  printed=$(cat "$work/stdout" "$work/stderr")
  if [[ $found != "$status" || ($status != 0 && -s $work/stdout) ]] || ! grep -qxE -- "$pattern" <<<"$printed"; then
    printf '%s: status %s, not %s with: %s\nin:\n%s\n' "$name" "$found" "$status" "$pattern" "$printed"
    failed=1
  fi
}

# Machine NAME TOOL...: creates a folder for PATH with the usual tools and those named.
Machine() {
  local tool
  mkdir "$work/$1"
  for tool in bash env awk sed grep cat tail cut tar sha256sum dirname basename mkdir mktemp chmod find rm cp mv \
    flock nproc pkg-config "${@:2}"; do
    ln -s "$(command -v "$tool")" "$work/$1/$tool"
  done
}

# StandIn MACHINE COMMAND BODY: adds a shell script as a command.
StandIn() {
  printf '#!%s\n%s\n' "$BASH" "$3" >"$work/$1/$2"
  chmod +x "$work/$1/$2"
}

# Mirror and keyring are taken from apt's entries. A key within an entry has no file; Debian's keyring replaces it if
# installed.
mirror='http://mirror\.example'
Check 'one-line entries' 0 "deb-src \[signed-by=/dev/null\] $mirror/pub/debian/ trixie main" \
  "$scripts/debian-source-list" trixie "$apt/one_line.list"
Check 'deb822 entries' 0 "deb-src \[signed-by=/dev/null\] $mirror/debian trixie main" \
  "$scripts/debian-source-list" trixie "$apt/not_the_mirror.sources" "$apt/two_mirrors.sources"
Check 'key within an entry' 0 "deb-src (\[signed-by=/[^]]*\] )?$mirror/debian trixie main" \
  "$scripts/debian-source-list" trixie "$apt/key_within.sources"
Check 'no mirror' 1 '' \
  "$scripts/debian-source-list" trixie "$apt/no_mirror.list" "$apt/absent.list"

# The engine's archive, as a file and within the Debian package's.
Sum() { sha256sum "$1" | cut -d ' ' -f 1; }
mkdir -p "$work/debian/tarballs"
echo 'no archive' >"$work/none.tar.bz2"
echo 'another archive' >"$work/debian/tarballs/pdfium-6764.tar.bz2"
tar -cJf "$work/package.tar.xz" -C "$work" debian
Check 'archive is missing' 1 "engine: cannot read the engine's archive '$work/absent'" \
  "$scripts/engine" --archive "$work/absent"
Check 'another file' 1 "engine: .* does not hold the engine's archive .* found SHA-256 $(Sum "$work/none.tar.bz2"), .*" \
  env "PDFIUM_ARCHIVE=$work/none.tar.bz2" "$scripts/engine"
Check 'another archive in the packaging' 1 ".* found SHA-256 $(Sum "$work/debian/tarballs/pdfium-6764.tar.bz2"), .*" \
  "$scripts/engine" --archive "$work/package.tar.xz"

# A machine without network.
Machine offline c++ id
StandIn offline apt-get 'echo "E: the mirror does not answer"; exit 100'
fetching='.*check the network, or give the archive: scripts/setup --engine-archive FILE .*'
if [[ -r /etc/debian_version ]]; then
  Check 'fetching fails' 1 "$fetching" env "PATH=$work/offline" "$scripts/engine"
fi
# shellcheck disable=SC2016
Check 'no engine or part of one is left' 0 'none' \
  bash -c 'test -z "$(find "$PDF_HDI_CACHE" -name "engine-*")" && echo none'

# All packages are installed but one, of which only configuration files are left.
Machine user c++
StandIn user id 'echo 1000'
StandIn user apt-get 'echo "apt-get was called" >&2; exit 1'
# shellcheck disable=SC2016
StandIn user dpkg-query 'for package; do case $package in
    -*) ;;
    libdeflate-dev) echo "config-files $package" ;;
    *) echo "installed $package" ;;
  esac; done'
command='run as root: apt-get install --no-install-recommends libdeflate-dev'
Check 'no root' 1 "setup: packages are missing and installing them needs root; $command" \
  env "PATH=$work/user" "$scripts/setup"
StandIn user sudo 'exit 1'
Check 'no sudo' 1 "setup: packages are missing and sudo refuses to install them; $command" \
  env "PATH=$work/user" "$scripts/setup"

# apt's lists are empty, and the update fails.
Machine empty c++
StandIn empty id 'echo 0'
StandIn empty dpkg-query 'exit 1'
StandIn empty apt-get "echo \"\$*\" >>'$work/calls'; [[ \$* != *' update' ]] || echo 'E: no network'; exit 100"
Check 'installing fails' 1 'E: no network' env "PATH=$work/empty" "$scripts/setup" --tests
Check 'installing is tried' 0 '.* install g\+\+ cmake ninja-build .* libgtest-dev .*' sed -n 1p "$work/calls"
Check 'nothing is installed for scripts/lint' 1 '' grep clang-tidy "$work/calls"
Check 'an update is tried' 0 '2' sed -n '$=' "$work/calls"
Check 'packages are listed' 1 'setup: installing [0-9]+ packages: g\+\+ cmake .*' env "PATH=$work/empty" "$scripts/setup"

Machine other
Check 'not Debian' 1 "setup: 'c\+\+' is missing, and this is not a Debian machine; .* ninja-build .*" \
  env "PATH=$work/other" "$scripts/setup"

exit $failed

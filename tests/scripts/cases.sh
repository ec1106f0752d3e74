#!/usr/bin/env bash
# Cases for the scripts, run one at a time by its name. Each has a folder of its own for a machine made up of
# stand-in commands; the case fails at the first expectation that isn't met.
set -euo pipefail

scripts=$HDI_SOURCE_DIR/scripts
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export PDF_HDI_CACHE=$work/cache
unset CXX PDFIUM_ARCHIVE

ExpectEqual() {
  [[ $1 == "$2" ]] || {
    printf 'expected: %s\nfound:    %s\n' "$2" "$1"
    exit 1
  }
}

ExpectContains() {
  [[ $1 == *"$2"* ]] || {
    printf 'expected: %s\nin:       %s\n' "$2" "$1"
    exit 1
  }
}

# Runs a command that has to fail with status 1 and without a word on standard output. Leaves its messages in
# `messages`.
ExpectFailure() {
  local status=0
  "$@" >"$work/stdout" 2>"$work/stderr" || status=$?
  messages=$(cat "$work/stderr")
  ExpectEqual "$status" 1
  ExpectEqual "$(cat "$work/stdout")" ''
}

# Makes $work/bin the only folder of commands: everyday tools, and what further arguments name.
IsolateCommands() {
  local tool
  mkdir "$work/bin"
  for tool in bash env awk sed grep cat tail cut tar sha256sum dirname basename mkdir mktemp chmod find rm cp mv flock nproc \
    pkg-config c++ "$@"; do
    ln -s "$(command -v "$tool")" "$work/bin/$tool"
  done
  export PATH=$work/bin
}

# A stand-in for a command, with the body of a shell script.
StandIn() {
  printf '#!%s\n%s\n' "$BASH" "$2" >"$work/bin/$1"
  chmod +x "$work/bin/$1"
}

source_list_from_one_line_entries() {
  touch "$work/key.gpg"
  cat >"$work/sources.list" <<LIST
# deb http://commented.example/debian bookworm main
deb cdrom:[Debian 12]/debian bookworm main
deb-src http://sources.example/debian bookworm main
deb https://packages.example/tool/debian-like stable main
deb http://security.example/debian-security bookworm-security main
deb http://mirror.example/debian bookworm-updates main
deb [ arch=amd64 signed-by=$work/key.gpg ] http://mirror.example/pub/debian/ bookworm main contrib # the one
LIST
  ExpectEqual "$("$scripts/debian-source-list" trixie "$work/sources.list")" \
    "deb-src [signed-by=$work/key.gpg] http://mirror.example/pub/debian/ trixie main"
}

source_list_from_deb822_entries() {
  touch "$work/key.pgp"
  cat >"$work/a.sources" <<LIST
Types: deb
URIs: http://disabled.example/debian
Suites: bookworm
Components: main
Enabled: no

Types: deb
URIs: http://security.example/debian-security
Suites: bookworm-security
Components: main
LIST
  cat >"$work/b.sources" <<LIST
Types: deb deb-src
# a remark inside an entry
URIs:
  http://mirror.example/debian
  http://second.example/debian
suites: bookworm bookworm-updates
Components: main non-free-firmware
Signed-By: $work/key.pgp
LIST
  ExpectEqual "$("$scripts/debian-source-list" trixie "$work/a.sources" "$work/b.sources")" \
    "deb-src [signed-by=$work/key.pgp] http://mirror.example/debian trixie main"

  # A key within the entry cannot be named in a one-line entry.
  printf 'Types: deb\nURIs: http://mirror.example/debian\nSuites: bookworm\nComponents: main\nSigned-By:\n Begin\n .\n End\n' \
    >"$work/c.sources"
  local line
  line=$("$scripts/debian-source-list" trixie "$work/c.sources")
  ExpectContains "$line" 'http://mirror.example/debian trixie main'
  [[ $line != *Begin* ]] || exit 1
}

source_list_without_mirror() {
  echo 'deb https://packages.example/tool stable main' >"$work/sources.list"
  ExpectFailure "$scripts/debian-source-list" trixie "$work/sources.list" "$work/absent.list"
}

archive_missing() {
  ExpectFailure "$scripts/engine" --archive "$work/absent.tar.bz2"
  ExpectContains "$messages" "cannot read the engine's archive '$work/absent.tar.bz2'"
}

archive_with_wrong_hash() {
  echo 'no archive' >"$work/pdfium.tar.bz2"
  PDFIUM_ARCHIVE=$work/pdfium.tar.bz2 ExpectFailure "$scripts/engine"
  ExpectContains "$messages" "does not hold the engine's archive"
  ExpectContains "$messages" "found SHA-256 $(sha256sum <"$work/pdfium.tar.bz2" | cut -d ' ' -f 1)"
  # Neither an engine nor a part of one stays behind.
  ExpectEqual "$(find "$PDF_HDI_CACHE" -mindepth 1 ! -name lock)" ''
}

packaging_with_wrong_archive() {
  mkdir -p "$work/debian/tarballs"
  echo 'another archive' >"$work/debian/tarballs/pdfium-6764.tar.bz2"
  tar -cJf "$work/package.debian.tar.xz" -C "$work" debian
  ExpectFailure "$scripts/engine" --archive "$work/package.debian.tar.xz"
  ExpectContains "$messages" "found SHA-256 $(echo 'another archive' | sha256sum | cut -d ' ' -f 1)"
}

fetching_fails() {
  [[ -r /etc/debian_version ]] || return 0
  IsolateCommands id
  StandIn apt-get 'echo "E: the mirror does not answer"; exit 100'
  ExpectFailure "$scripts/engine"
  ExpectContains "$messages" 'the mirror does not answer'
  ExpectContains "$messages" 'check the network, or give the archive: scripts/setup --engine-archive FILE'
  ExpectEqual "$(find "$PDF_HDI_CACHE" -name 'engine-*')" ''
}

packages_missing_without_root() {
  IsolateCommands
  StandIn id 'echo 1000'
  StandIn apt-get 'echo "apt-get was called" >&2; exit 1'
  # All is there but for one package, of which the machine has but the configuration files.
  # shellcheck disable=SC2016
  StandIn dpkg-query 'for package; do case $package in
      -*) ;;
      libdeflate-dev) echo "config-files $package" ;;
      *) echo "installed $package" ;;
    esac; done'
  ExpectFailure "$scripts/setup"
  ExpectEqual "$messages" "setup: packages are missing, and installing them takes root; run as root: apt-get install --no-install-recommends libdeflate-dev"

  StandIn sudo 'exit 1'
  ExpectFailure "$scripts/setup"
  ExpectContains "$messages" 'sudo refuses to install them; run as root: apt-get install --no-install-recommends libdeflate-dev'
}

installing_retries_after_update() {
  IsolateCommands
  StandIn id 'echo 0'
  StandIn dpkg-query 'exit 1'
  # apt as on a machine whose lists are empty, and then without a network for the update.
  StandIn apt-get "echo \"\$*\" >>'$work/calls'; case \$* in *' update') echo 'E: no network'; exit 100 ;; *) exit 100 ;; esac"
  ExpectFailure "$scripts/setup" --tests
  ExpectContains "$messages" 'E: no network'
  ExpectContains "$messages" 'check the network and apt'
  ExpectEqual "$(sed -n '$=' "$work/calls")" 2
  ExpectContains "$(sed -n 1p "$work/calls")" ' g++ cmake ninja-build '
  ExpectContains "$(sed -n 1p "$work/calls")" ' libgtest-dev '
  [[ $(cat "$work/calls") != *clang-tidy* ]] || exit 1
}

not_debian() {
  IsolateCommands
  rm "$work/bin/c++"
  ExpectFailure "$scripts/setup"
  ExpectContains "$messages" "there is no 'c++', and this is no Debian machine to install it on"
  ExpectContains "$messages" 'ninja-build'
}

"$1"

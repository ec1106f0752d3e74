# Functions shared by the scripts; sourced, not run. Progress and errors go to standard error: standard output belongs to
# the program that a script runs.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
script=$(basename "$0")

# Folder of the engine and its archive, shared by all clones on the machine.
# shellcheck disable=SC2034
cache=${PDF_HDI_CACHE:-${XDG_CACHE_HOME:-${HOME:-$root}/.cache}/pdf-hdi}

Say() { printf '%s: %s\n' "$script" "$*" >&2; }

Fail() {
  Say "$*"
  exit 1
}

# Logged <log file> <command>...: runs a command with its output in a log file; prints the end of it on failure.
Logged() {
  local log=$1
  shift
  mkdir -p "$(dirname "$log")"
  if ! "$@" >"$log" 2>&1 </dev/null; then
    tail -n 25 "$log" >&2
    return 1
  fi
}

# Condenses the output of ninja, run with NINJA_STATUS='@%f/%t ', to a progress line per tenth and the full output of
# what fails. Prints nothing when up to date.
FollowNinja() {
  local what=$1 line failed=no started=no tenth=0 now
  while IFS= read -r line; do
    if [[ $line =~ ^@([0-9]+)/([0-9]+)\  ]]; then
      failed=no
      [[ ${BASH_REMATCH[2]} -ge 4 ]] || continue
      [[ $started == yes ]] || Say "building $what"
      started=yes
      now=$((BASH_REMATCH[1] * 10 / BASH_REMATCH[2]))
      if [[ ${BASH_REMATCH[2]} -ge 40 && $now -gt $tenth && $now -lt 10 ]]; then
        tenth=$now
        Say "$((now * 10)) %"
      fi
    elif [[ $line == FAILED:* ]]; then
      failed=yes
      printf '%s\n' "$line" >&2
    elif [[ $failed == yes || $line == *error:* || $line == *warning:* ]]; then
      printf '%s\n' "$line" >&2
    elif [[ $line == ninja:* && $line != "ninja: no work to do." && $line != "ninja: Entering directory"* ]]; then
      printf '%s\n' "$line" >&2
    fi
  done
}

# CodeOf <file>...: prints scripts or CMake files without comment lines, for hashes that comments do not change.
CodeOf() { sed '/^ *#/d' "$@"; }

# Ninja <build folder> <description> <target>...
Ninja() {
  local directory=$1 what=$2
  shift 2
  NINJA_STATUS='@%f/%t ' ninja -C "$directory" -j "$(nproc)" "$@" 2>&1 </dev/null | FollowNinja "$what"
}

# IsConfigured <build folder> <engine folder> <tests>: whether the folder was configured from this clone, with this
# engine and with these tests (see Build).
IsConfigured() {
  local directory=$1 engine=$2 tests=$3 home=''
  [[ -f $directory/build.ninja && -f $directory/CMakeCache.txt ]] || return 1
  home=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$directory/CMakeCache.txt")
  [[ $home == "$root" && $(cat "$directory/engine-directory" 2>/dev/null) == "$engine" ]] || return 1
  case $tests in
    OFF) return 0 ;;
    ON) grep -q '^HDI_BUILD_TESTS:BOOL=ON' "$directory/CMakeCache.txt" ;;
    BROWSER) grep -q '^HDI_TEST_BROWSER:BOOL=ON' "$directory/CMakeCache.txt" ;;
  esac
}

# Runs scripts/engine for the platform of a preset: Engine <preset> [ARGUMENT...]
Engine() {
  local preset=$1
  shift
  if [[ $preset == windows ]]; then
    CXX=x86_64-w64-mingw32-g++-posix "$root/scripts/engine" "$@"
  else
    "$root/scripts/engine" "$@"
  fi
}

# Build <preset> <tests> <description> <target>...
# Configures the preset's folder if necessary and builds the targets. tests: OFF, ON, or BROWSER for ON and the tests in
# a browser. A lock keeps two builds in one clone apart.
Build() {
  local preset=$1 tests=$2 what=$3 directory engine options
  shift 3
  case $tests in
    OFF) options=(-DHDI_BUILD_TESTS=OFF) ;;
    ON) options=(-DHDI_BUILD_TESTS=ON) ;;
    BROWSER) options=(-DHDI_BUILD_TESTS=ON -DHDI_TEST_BROWSER=ON) ;;
  esac
  directory=$root/build
  [[ $preset == release ]] || directory=$root/build-$preset
  engine=$(Engine "$preset" --print-directory)
  mkdir -p "$directory"
  (
    flock 9
    if ! IsConfigured "$directory" "$engine" "$tests"; then
      Say "configuring $(basename "$directory")"
      cd "$root" || exit
      Logged "$directory/configure.log" cmake --preset "$preset" --fresh "${options[@]}" ||
        Fail "configuring failed; see $directory/configure.log"
    fi
    Ninja "$directory" "$what" "$@" || Fail "the build failed"
  ) 9>"$directory/.lock"
}

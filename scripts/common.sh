# What the scripts share; sourced, never run. Standard output belongs to the work that was asked for: whatever
# is told on the way there goes to standard error.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
script=$(basename "$0")

# Where the engine and its archive are kept, for every clone on the machine.
# shellcheck disable=SC2034
cache=${PDF_HDI_CACHE:-${XDG_CACHE_HOME:-${HOME:-$root}/.cache}/pdf-hdi}

Say() { printf '%s: %s\n' "$script" "$*" >&2; }

Fail() {
  Say "$*"
  exit 1
}

# Runs a command with its output in a log file, whose end is shown when the command fails.
Logged() {
  local log=$1
  shift
  mkdir -p "$(dirname "$log")"
  if ! "$@" >"$log" 2>&1 </dev/null; then
    tail -n 25 "$log" >&2
    return 1
  fi
}

# Follows the output of ninja, run with NINJA_STATUS='@%f/%t ': tells a build's progress in a few lines, and
# what failed in full. A build with nothing to do is not worth a word.
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

# Ninja <directory> <what is built> <target>...
Ninja() {
  local directory=$1 what=$2
  shift 2
  NINJA_STATUS='@%f/%t ' ninja -C "$directory" -j "$(nproc)" "$@" 2>&1 </dev/null | FollowNinja "$what"
}

# Whether a build folder was configured from this clone, with the engine as it is to be now and with the tests
# that are asked for.
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

# Build <preset> <tests> <what is built> <target>...
# tests is OFF, ON, or BROWSER for those in a browser as well. Configures a preset's folder if it has to be and builds the targets in it. Two of these in one clone take turns.
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
        Fail "configuring failed; all of its output is in $directory/configure.log"
    fi
    Ninja "$directory" "$what" "$@" || Fail "the build failed"
  ) 9>"$directory/.lock"
}

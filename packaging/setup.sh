# shellcheck shell=bash
# What ./run, ./test and .ci/run share: which packages the project needs, and how it is configured
# and built. Sourced by them, after `set -euo pipefail`, with `root` naming the project's folder.
#
# Whoever adds a dependency adds it here and nowhere else: to the two tables below, or to
# missing_libraries.

: "${root:?must name the folder of the project}"

# ninja's progress, indented below the line that says what is built
export NINJA_STATUS='    [%f/%t] '

say() { printf '==> %s\n' "$*"; }

fail() {
  printf '\nError: %s\n' "$*" >&2
  exit 1
}

# The groups of things that are needed, by their Debian 12 packages.
declare -A packages=(
  [build]='g++ cmake ninja-build libssl-dev
    qt6-base-dev qt6-base-dev-tools qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools'
  [wayland]='qt6-wayland'
  [xvfb]='xvfb xauth fonts-dejavu-core'
  [test]='rhash desktop-file-utils shared-mime-info xdg-utils libglib2.0-bin dbus
    xdotool openbox x11-utils locales'
  [bench]='coreutils openssl rhash hashdeep'
  [check]='clang-format clang-tidy shellcheck git'
  [fuzz]='clang llvm libclang-rt-14-dev'
  [windows]='g++-mingw-w64-x86-64-posix nsis zip xz-utils cmark-gfm qt6-translations-l10n'
  [windows-qt]='dpkg-dev perl python3'
  [wine]='wine wine64'
  [debian]='debhelper dpkg-dev cmark-gfm'
  [debian-check]='lintian desktop-file-utils appstream binutils'
  [debian-clean]='debootstrap diffutils'
)

# The same groups by their commands, for systems whose packages this file does not know.
declare -A commands=(
  [build]='ninja'
  [wayland]=''
  [xvfb]='xvfb-run'
  [test]='rhash desktop-file-validate update-mime-database xdg-mime gio dbus-run-session
    xdotool openbox xprop localedef'
  [bench]='md5sum sha1sum openssl rhash hashdeep'
  [check]='clang-format clang-tidy shellcheck git'
  [fuzz]='clang++'
  [windows]='x86_64-w64-mingw32-g++-posix makensis zip xz cmark-gfm'
  [windows-qt]='dpkg-source perl python3'
  [wine]='wine wineserver'
  [debian]='dh dpkg-buildpackage cmark-gfm'
  [debian-check]='lintian desktop-file-validate appstreamcli readelf'
  [debian-clean]='debootstrap diff'
)

# Makes sure that everything in the groups named is there; ends the script if it is not.
require() {
  if is_debian_12; then
    require_packages "$@"
  else
    require_tools "$@"
  fi
}

is_debian_12() (
  ID='' VERSION_ID=''
  if [[ -r /etc/os-release ]]; then
    # shellcheck source=/dev/null
    . /etc/os-release
  fi
  [[ $ID == debian && $VERSION_ID == 12 ]]
)

require_packages() {
  local group package installed wanted=() missing=()
  for group in "$@"; do
    for package in ${packages[$group]}; do
      wanted+=("$package")
    done
  done

  # dpkg-query fails when it does not know one of the names: that is an answer here, not an error
  installed=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "${wanted[@]}" 2>/dev/null) || true
  for package in "${wanted[@]}"; do
    [[ $'\n'$installed$'\n' == *$'\n'"$package installed"$'\n'* ]] || missing+=("$package")
  done
  ((${#missing[@]} == 0)) || install_packages "${missing[@]}"
}

install_packages() {
  local by_hand="apt-get update && apt-get install --no-install-recommends $*"
  local as_root=()
  if ((EUID != 0)); then
    by_hand="sudo apt-get update && sudo apt-get install --no-install-recommends $*"
    say "Missing packages: $*"
    may_use_sudo || fail "These packages have to be installed first; type: $by_hand"
    as_root=(sudo)
  fi

  local log=$root/build/packages.log
  mkdir -p "$root/build"
  say "Installing $# packages and what they need; this can take minutes (log: $log)"
  as_root+=(env DEBIAN_FRONTEND=noninteractive apt-get -q -y
    -o DPkg::Lock::Timeout=600 -o Acquire::Retries=3)
  "${as_root[@]}" -o APT::Update::Error-Mode=any update >"$log" 2>&1 </dev/null ||
    say 'The package lists could not be refreshed (is there a network?); trying with the old ones'
  if ! "${as_root[@]}" install --no-install-recommends "$@" >>"$log" 2>&1 </dev/null; then
    tail -n 8 "$log" >&2
    fail "The packages could not be installed, for the reason above; once it is mended, start again or type: $by_hand"
  fi
}

# Asks, the person and then sudo. Where nobody can answer, or there is no sudo, the answer is no.
may_use_sudo() {
  [[ -t 0 ]] && command -v sudo >/dev/null || return 1
  local answer
  read -rp 'Install them now with sudo apt-get? [Y/n] ' answer || return 1
  [[ $answer =~ ^([yY]|[yY]es|[oO]|[oO]ui)?$ ]] && sudo -v
}

require_tools() {
  local group name missing=()
  for group in "$@"; do
    for name in ${commands[$group]}; do
      command -v "$name" >/dev/null || missing+=("$name")
    done
  done

  is_configured release || {
    has_cmake || missing=('cmake >= 3.25' "${missing[@]}")
    has_compiler || missing+=('a C++20 compiler')
    # only with all of these can CMake look for the libraries
    ((${#missing[@]})) || mapfile -t missing < <(missing_libraries)
  }
  ((${#missing[@]} == 0)) && return

  printf 'Not found on this system:\n' >&2
  printf '  - %s\n' "${missing[@]}" >&2
  fail "This script installs packages on Debian 12 only. Tavrel needs cmake >= 3.25, ninja, a C++20 compiler, Qt >= 6.4 (Widgets, Concurrent, Test, LinguistTools; CMAKE_PREFIX_PATH names one in a place of its own) and, for faster digests, OpenSSL. Install what is missing and start again, or build by hand in $root: cmake --preset release && cmake --build --preset release"
}

has_cmake() {
  local version major minor
  version=$(cmake --version 2>/dev/null) || return 1
  IFS=. read -r major minor _ <<<"${version#cmake version }"
  ((major > 3 || (major == 3 && minor >= 25)))
}

has_compiler() {
  command -v "${CXX:-c++}" >/dev/null || command -v g++ >/dev/null || command -v clang++ >/dev/null
}

# Prints the libraries that CMake does not find, one a line.
missing_libraries() {
  local probe
  probe=$(mktemp -d)
  cat >"$probe/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.25)
project(probe LANGUAGES CXX)
foreach(part Core Widgets Concurrent Test LinguistTools)
  find_package(Qt6${part} 6.4 QUIET)
  if(NOT Qt6${part}_FOUND)
    message(NOTICE "missing: Qt >= 6.4, ${part}")
  endif()
endforeach()
END
  cmake -G Ninja -S "$probe" -B "$probe/build" 2>&1 | sed -n 's/^missing: //p'
  rm -rf "$probe"
}

# A configured folder carries this mark: the place of the project at that time and, in a second line,
# whether warnings are errors.
mark_of() { echo "$root/build/$1/.configured"; }

# A folder in which warnings are errors will do where they need not be.
is_configured() {
  local mark place strict
  mark=$(mark_of "$1")
  [[ $mark -nt $root/CMakePresets.json ]] || return
  { read -r place && read -r strict; } <"$mark" || true
  [[ $place == "$root" && ($strict == strict || -z ${TAVREL_STRICT-}) ]]
}

# Configures a preset, once: from then on the build itself sees when a CMakeLists.txt changes. It
# sees neither that the presets change nor that the project moves, which is why this does.
configure() {
  local preset=$1 folder=$root/build/$1 mark place='' options=()
  is_configured "$preset" && return

  say "Configuring ($preset)"
  mkdir -p "$folder"
  mark=$(mark_of "$preset")
  [[ ! -e $mark ]] || read -r place <"$mark" || true
  [[ -z $place || $place == "$root" ]] || options+=(--fresh)
  [[ -z ${TAVREL_STRICT-} ]] || options+=(-DTAVREL_WARNINGS_AS_ERRORS=ON)
  if ! (cd "$root" && cmake --preset "$preset" "${options[@]}") >"$folder/configure.log" 2>&1; then
    tail -n 30 "$folder/configure.log" >&2
    fail "CMake could not configure the project, for the reason above (whole log: $folder/configure.log). If the compiler or Qt changed, remove $folder and start again."
  fi
  printf '%s\n%s\n' "$root" "${TAVREL_STRICT:+strict}" >"$mark"
}

# Builds the targets named, or everything when none is.
build() {
  local preset=$1
  shift
  configure "$preset"

  say "Building ${*:-everything} ($preset)"
  local target_option=()
  (($# == 0)) || target_option=(--target "$@")
  (cd "$root" && cmake --build --preset "$preset" --parallel "$(nproc)" "${target_option[@]}") ||
    fail "The build failed: the first error above names file and line. If the sources are unchanged, remove $root/build/$preset and start again."
}

# Packages carry the time of the commit that they are made of, and not that of their making.
use_time_of_commit() {
  local time
  time=$(git -C "$root" log -1 --format=%ct 2>/dev/null) || return 0
  export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$time}
}

# Runs the tests of a preset, without a display. Its last lines and its exit code are ctest's.
run_tests() {
  local preset=$1
  shift
  steady_environment
  cd "$root" || return
  QT_QPA_PLATFORM=offscreen ctest --preset "$preset" "$@"
}

# What a desktop session gives to its programs and a bare machine does not.
steady_environment() {
  [[ $(locale charmap 2>/dev/null) == UTF-8 ]] || export LC_ALL=C.UTF-8
  if [[ -z ${XDG_RUNTIME_DIR-} ]]; then
    export XDG_RUNTIME_DIR=$root/build/runtime
    (umask 077 && mkdir -p "$XDG_RUNTIME_DIR")
  fi
}

# How the sanitizers judge: all that they find ends the program, but for what is not ours.
sanitizer_options() {
  export ASAN_OPTIONS=detect_leaks=1
  export LSAN_OPTIONS=suppressions=$root/cmake/sanitizers/lsan.supp:print_suppressions=0
  export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
  export TSAN_OPTIONS=suppressions=$root/cmake/sanitizers/tsan.supp:print_suppressions=0:halt_on_error=1
}

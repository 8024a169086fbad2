# shellcheck shell=bash
# What the scripts beside this one share. Sourced by them after packaging/setup.sh.

: "${root:?must name the folder of the project}"

windows_cache=${XDG_CACHE_HOME:-${HOME:?}/.cache}/tavrel
windows_qt_version=6.4.2

# Makes QT_WINDOWS the folder of a Qt for Windows. It may be given as a folder or as an archive of
# one, which is unpacked once; without it, Qt is built once. Both go into the user's cache.
provide_qt() {
  local given=${QT_WINDOWS-}
  if [[ -z $given ]]; then
    given=$windows_cache/qt-$windows_qt_version-windows
    [[ -e $given/lib/cmake/Qt6 ]] || "$root/packaging/windows/build-qt" "$given"
  elif [[ -f $given ]]; then
    given=$(unpack_qt "$given")
  fi
  [[ -e $given/lib/cmake/Qt6 ]] || fail "$given holds no Qt 6 (no lib/cmake/Qt6 in it)"
  QT_WINDOWS=$(readlink -f "$given")
  export QT_WINDOWS
}

# Prints the folder that the archive was unpacked into.
unpack_qt() {
  local archive=$1 sum folder scratch
  sum=$(sha256sum <"$archive")
  folder=$windows_cache/qt-${sum:0:16}
  if [[ ! -e $folder ]]; then
    say "Unpacking $archive" >&2
    mkdir -p "$windows_cache"
    scratch=$(mktemp -d "$windows_cache/unpacking-XXXXXX")
    tar -xf "$archive" -C "$scratch" --strip-components=1
    # under its name, the folder is whole
    mv -T "$scratch" "$folder"
  fi
  echo "$folder"
}

# Builds the targets named for Windows, or everything when none is.
build_for_windows() {
  local before=$root/build/windows/.qt-folder
  if [[ ! -e $before || $(<"$before") != "$QT_WINDOWS" ]]; then
    # what another Qt left behind would be mixed with this one
    rm -rf "$root/build/windows"
    mkdir -p "$root/build/windows"
    echo "$QT_WINDOWS" >"$before"
  fi
  build windows "$@"
}

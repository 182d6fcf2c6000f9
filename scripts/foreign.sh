# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Sourced by the scripts that build and test the library for another architecture. The machine's
# own package database stays as it is: apt works in a folder of the build, and packages of the other
# architecture are unpacked, not installed.

# apt for architecture $1, in folder $2, with the Debian release of this machine as its only source;
# on Debian 12, which has no zlog, also the next one.
foreign_apt() {
  local architecture=$1 folder=$2
  shift 2
  "$@" -o "APT::Architecture=$architecture" -o "APT::Architectures=$architecture" \
    -o "Dir::State=$folder/state" -o Dir::State::status=/dev/null -o "Dir::Cache=$folder/cache" \
    -o "Dir::Etc::sourcelist=$folder/sources.list" -o Dir::Etc::sourceparts=/dev/null \
    -o Dir::Etc::preferences=/dev/null -o Dir::Etc::preferencesparts=/dev/null \
    -o APT::Sandbox::User=
}

# Unpacks protobuf and zlog for architecture $1 into folder $2.
unpack_foreign_packages() {
  local architecture=$1 root=$2 folder=$2.packages codename zlog_release mirror uri signed_by lite
  if [ -f "$root/.complete" ]; then
    return
  fi
  codename=$(debian_codename)
  zlog_release=$codename
  if [ "$codename" = bookworm ]; then
    zlog_release=trixie
  fi
  mirror=$(debian_mirror)
  read -r uri signed_by <<<"$mirror"

  rm -rf "$root" "$folder"
  mkdir -p "$root" "$folder/state/lists/partial" "$folder/cache/archives/partial"
  printf "deb [signed-by=$signed_by] $uri %s main\n" "$codename" "$zlog_release" |
    sort -u >"$folder/sources.list"
  foreign_apt "$architecture" "$folder" apt-get update
  lite=$(foreign_apt "$architecture" "$folder" apt-cache depends "libprotobuf-dev/$codename" |
    sed -n 's/.*Depends: \(libprotobuf-lite[0-9].*\)/\1/p' | head -n 1)
  (cd "$folder" && foreign_apt "$architecture" "$folder" apt-get download \
    "libprotobuf-dev/$codename" "$lite/$codename" \
    "libzlog-dev/$zlog_release" "libzlog1/$zlog_release")
  for package in "$folder"/*.deb; do
    dpkg-deb --extract "$package" "$root"
  done
  touch "$root/.complete"
}

# Builds the libraries for architecture $1 and runs their tests; the further arguments go to CMake.
test_foreign() {
  local architecture=$1 build=$PWD/build/$1 root=$PWD/build/$1.root
  shift
  local toolchain=(-DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/toolchains/$architecture.cmake"
    -DCFM_FOREIGN_ROOT="$root")
  unpack_foreign_packages "$architecture" "$root"
  install_googletest "$root/usr" "${toolchain[@]}"
  cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "${toolchain[@]}" \
    -DCFM_BUILD_DEVHOST=OFF -DCFM_WARNINGS_AS_ERRORS=ON "$@"
  cmake --build "$build"
  ctest --test-dir "$build" --output-on-failure --no-tests=error --parallel "$(nproc)"
}

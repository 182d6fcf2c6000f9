# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Sourced by scripts that need packages which the machine's apt does not offer as it is set up.

debian_codename() {
  # shellcheck source=/dev/null
  (. /etc/os-release && echo "${VERSION_CODENAME-}")
}

# Prints the address of the mirror that apt takes this release from, and its keyring.
debian_mirror() {
  local uri='' signed_by=''
  # apt itself replaces these: $(REPO_URI) is no command of the shell.
  # shellcheck disable=SC2016
  read -r uri signed_by < <(apt-get indextargets --format '$(REPO_URI) $(SIGNED_BY)' \
    'Created-By: Packages' "Codename: $(debian_codename)" 'Component: main') || true
  if [ -z "$uri" ]; then
    echo "$0: apt has no source for '$(debian_codename)' main to take the mirror from" >&2
    return 1
  fi
  if [ ! -r "$signed_by" ]; then
    signed_by=/usr/share/keyrings/debian-archive-keyring.gpg
  fi
  echo "$uri $signed_by"
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  else
    sudo -- "$@"
  fi
}

# Debian 12 has no zlog. It comes from the next release, from the mirror that apt uses already; a
# pin keeps everything else of that release out. docs/packages.md tells how to do it by hand.
add_source_of_zlog() {
  local etc=/etc/apt codename next=trixie mirror uri signed_by
  codename=$(debian_codename)
  if [ "$codename" != bookworm ]; then
    echo "$0: apt knows no libzlog-dev for '$codename'; Debian 12 and 13 are supported" >&2
    return 1
  fi
  mirror=$(debian_mirror)
  read -r uri signed_by <<<"$mirror"
  as_root tee "$etc/sources.list.d/zlog-from-next-release.sources" >/dev/null <<EOF
Types: deb
URIs: $uri
Suites: $next
Components: main
Signed-By: $signed_by
EOF
  as_root tee "$etc/preferences.d/zlog-from-next-release" >/dev/null <<EOF
Package: *
Pin: release n=$next
Pin-Priority: -1

Package: libzlog-dev libzlog1
Pin: release n=$next
Pin-Priority: 500
EOF
}

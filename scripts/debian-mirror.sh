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

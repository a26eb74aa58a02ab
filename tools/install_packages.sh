# Sourced by the project's scripts: install_missing_packages PACKAGE...
# installs those of the named Debian/Ubuntu packages that are missing, as
# root or through sudo; on a system without dpkg it does nothing. Fails with
# the list when packages are missing and neither root nor sudo is at hand.
install_missing_packages() {
  command -v dpkg >/dev/null 2>&1 || return 0
  local missing=() p
  for p in "$@"; do
    dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  local sudo=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null 2>&1; then
      echo "missing packages: ${missing[*]} (run as root or install them)" >&2
      return 1
    fi
    sudo=(sudo)
  fi
  echo "installing: ${missing[*]}"
  ${sudo[@]+"${sudo[@]}"} apt-get update -qq
  DEBIAN_FRONTEND=noninteractive ${sudo[@]+"${sudo[@]}"} apt-get install -y -qq "${missing[@]}"
}

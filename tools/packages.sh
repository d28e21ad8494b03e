# What the program needs on a Debian machine. Sourced by ./run and ./test.

build_packages=(g++ cmake ninja-build ccache pkg-config libfmt-dev libpugixml-dev unixodbc-dev qt6-base-dev
  libgtest-dev libbenchmark-dev libmariadb-dev)
run_packages=(mariadb-server mariadb-client odbc-mariadb qt6-translations-l10n fonts-liberation xvfb xauth imagemagick)
test_packages=(dbus dbus-x11 at-spi2-core python3 python3-pyatspi gir1.2-atspi-2.0 xdotool openbox x11-utils)

# install_packages PACKAGE ...: installs those that are missing: as root, else through sudo, else it names them and fails.
install_packages() {
  local missing=() package as_root=()
  for package in "$@"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  ((${#missing[@]})) || return 0
  if [[ $(id -u) != 0 ]]; then
    if ! command -v sudo >/dev/null; then
      echo "These packages are missing; install them as root: ${missing[*]}" >&2
      return 1
    fi
    as_root=(sudo)
  fi
  echo "Installing: ${missing[*]}"
  # A database server that comes with the packages must not start by itself: we bring up one of our own.
  local policy=/usr/sbin/policy-rc.d ours=
  if [[ ! -e $policy ]]; then
    printf '#!/bin/sh\nexit 101\n' | "${as_root[@]}" tee "$policy" >/dev/null
    "${as_root[@]}" chmod +x "$policy"
    ours=1
  fi
  local result=0
  "${as_root[@]}" apt-get update -q &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}" ||
    result=$?
  [[ -z $ours ]] || "${as_root[@]}" rm -f "$policy"
  return $result
}

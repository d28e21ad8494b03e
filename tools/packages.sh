# What the program needs on a Debian machine. Sourced by ./run, ./test and the tools that make a shop's program.

# The server's core alone: the full package would bring up a database server of the machine's own.
shop_packages=(g++ cmake ninja-build pkg-config libfmt-dev libpugixml-dev unixodbc-dev qt6-base-dev
  libxlsxwriter-dev libzip-dev libexpat1-dev)
build_packages=("${shop_packages[@]}" ccache libgtest-dev libbenchmark-dev libmariadb-dev)
work_place_packages=(odbc-mariadb odbcinst qt6-translations-l10n fonts-liberation mariadb-client-core iproute2)
run_packages=(mariadb-server-core mariadb-client-core odbc-mariadb qt6-translations-l10n fonts-liberation xvfb xauth
  imagemagick x11-utils)
test_packages=(dbus dbus-x11 at-spi2-core python3 python3-pyatspi gir1.2-atspi-2.0 xdotool openbox poppler-utils
  appstream desktop-file-utils debootstrap dpkg-dev man-db mariadb-client iproute2)

# install_packages PACKAGE ...: installs those that are missing: as root, else through sudo, else it names them and fails.
# Never removes a package: a machine that has another database server keeps it, and the operator is told.
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
  "${as_root[@]}" apt-get update -q
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends --no-remove \
    "${missing[@]}"
}

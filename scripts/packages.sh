# Installs missing Debian packages. Used by run, test and .ci/run.
#
# need_packages NAME...: names the packages, installs them with sudo unless the user is root, and ends the
# script on failure.
need_packages() {
  local missing=()
  local name
  for name in "$@"; do
    dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'ok installed' || missing+=("$name")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  if ! command -v apt-get >/dev/null; then
    echo "These Debian packages or their like are needed: ${missing[*]}" >&2
    exit 1
  fi
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  echo "Installing: ${missing[*]}"
  "${as_root[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# Packages for building, for the desktop program as well, and for the tests.
build_packages=(g++ cmake ninja-build nlohmann-json3-dev libcli11-dev)
desktop_packages=(qt6-base-dev libqcustomplot-dev qt6-svg-dev fonts-dejavu-core)
test_packages=(xvfb xauth libgtest-dev libbenchmark-dev)

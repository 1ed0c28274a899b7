# Installs Debian packages that are missing. Sourced by run, test and .ci/run.
#
# need_packages NAME...: says what it installs, uses sudo where the user is not root, ends the script when it cannot.
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

# What building takes, what the desktop program takes beside it, and what the tests take.
build_packages=(g++ cmake ninja-build nlohmann-json3-dev libcli11-dev)
desktop_packages=(qt6-base-dev libqcustomplot-dev qt6-svg-dev fonts-dejavu-core)
test_packages=(xvfb xauth libgtest-dev libbenchmark-dev)

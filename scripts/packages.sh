# Sourced by run and test: makes sure that the Debian packages are there.

build_packages="g++ cmake ninja-build pkg-config qt6-base-dev qt6-svg-dev libgl-dev libsqlite3-dev libcurl4-openssl-dev zlib1g-dev"
run_packages="qt6-qpa-plugins libqt6svg6 fonts-dejavu-core"
test_packages="libgtest-dev libssl-dev fonts-noto-core fonts-dejavu fonts-cantarell"
fuzz_packages="clang libclang-rt-14-dev"
measure_packages="universal-ctags"

missing_packages() {
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || printf '%s ' "$package"
  done
}

# ensure_packages <package>...: installs what is missing, or says what is to be installed and ends.
ensure_packages() {
  command -v dpkg-query >/dev/null 2>&1 || { echo "Not a Debian system: please provide $*" >&2; return 0; }
  missing=$(missing_packages "$@")
  [ -n "$missing" ] || return 0
  if [ "$(id -u)" = 0 ]; then sudo=""
  elif sudo -n true 2>/dev/null; then sudo="sudo"
  else
    echo "These packages are missing: $missing" >&2
    echo "Install them with: sudo apt-get install $missing" >&2
    exit 1
  fi
  echo "Installing: $missing"
  # shellcheck disable=SC2086
  $sudo apt-get update -q >/dev/null && DEBIAN_FRONTEND=noninteractive $sudo apt-get install -qy --no-install-recommends $missing >/dev/null || {
    echo "The packages could not be installed: $missing" >&2
    exit 1
  }
}

# configure <extra cmake arguments>...: prepares build/, quietly unless it fails.
configure() {
  cmake -S . -B build -G Ninja "$@" >build-configure.log 2>&1 || { cat build-configure.log >&2; exit 1; }
  rm -f build-configure.log
}

# Shared by the scripts: where the project is, and its packages.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# The library needs the first three alone; docs/build.md tells which switch needs which of the others.
build_packages=(cmake ninja-build g++ libcli11-dev nlohmann-json3-dev)
test_packages=("${build_packages[@]}" doctest-dev luajit libbenchmark-dev python3-jsonschema gnuplot-nox tmux zsh fish
  python3-pil clang libclang-rt-14-dev)
docs_packages=(doxygen python3-sphinx python3-myst-parser python3-breathe furo)
wheel_packages=(pybind11-dev python3-dev python3-pip python3-wheel)
python_packages=("${wheel_packages[@]}" python3-venv python3-numpy python3-pytest python3-hypothesis python3-xarray
  python3-pandas python3-matplotlib python3-netcdf4 python3-dask python3-distributed mypy)
debian_packages=(build-essential debhelper dh-python lintian debootstrap fakeroot doxygen "${build_packages[@]}"
  pybind11-dev python3-dev python3-wheel)
viewer_packages=(cmake ninja-build g++ nlohmann-json3-dev libfast-float-dev emscripten node-acorn nodejs
  ca-certificates)
command -v npm >/dev/null || viewer_packages+=(npm)  # that of other makers of nodejs excludes Debian's
viewer_test_packages=("${build_packages[@]}" chromium chromium-driver python3-selenium python3-pytest python3-pil)
# Where Debian has the modules that emscripten's programs need: only Debian's own node looks there by itself.
export NODE_PATH=/usr/share/nodejs
bench_packages=(libbenchmark-dev python3-numpy python3-scipy python3-pandas python3-opencv python3-bottleneck)
windows_packages=(g++-mingw-w64-x86-64-posix)
full_packages=("${test_packages[@]}" "${windows_packages[@]}" libc++-14-dev libc++abi-14-dev libfast-float-dev wine
  wine64 xvfb xdotool zenity clang-format clang-tidy pkg-config doxygen man-db git)

version() { sed -n 's/^project(kem VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt; }

say() { printf '\n== %(%T)T %s\n' -1 "$*"; }

# Installs the Debian packages that are not there yet.
install_missing() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  say "Installing ${missing[*]}"
  local root=()
  [ "$(id -u)" -eq 0 ] || root=(sudo)
  "${root[@]}" apt-get update -qq
  "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
    -o Dpkg::Options::=--force-unsafe-io "${missing[@]}" >/dev/null
}

# scripts/setup.sh - sourced by ./run and ./check: installs what is missing, on Debian and Ubuntu.
# Elsewhere it lists what is needed.

sf_packages="g++ clang cmake ninja-build ccache pkg-config libicu-dev libxerces-c-dev libsqlite3-dev
  libgtest-dev libgmock-dev libbenchmark-dev libcli11-dev pybind11-dev python3 python3-dev"
# For ./check alone: the formatter, the fuzzers' run-time library.
sf_check_packages="clang-format-14 libclang-rt-14-dev"

sf_setup() {  # sf_setup PACKAGE...
  if ! command -v dpkg-query >/dev/null 2>&1 || ! command -v apt-get >/dev/null 2>&1; then
    if [ ! -e build/.setup-told ]; then
      echo "This is no Debian or Ubuntu. Needed, by their Debian names:" "$@"
      mkdir -p build && touch build/.setup-told
    fi
    return 0
  fi
  local missing="" package
  local installed
  installed=$(dpkg-query -W -f='${Package} ${Status}\n' "$@" 2>/dev/null |
    awk '$4 == "installed" {print $1}')
  for package in "$@"; do
    case "
$installed
" in
      *"
$package
"*) ;;
      *) missing="$missing $package" ;;
    esac
  done
  [ -z "$missing" ] && return 0
  local sudo=""
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null 2>&1; then
      echo "Missing packages, and no right to install them:$missing" >&2
      return 1
    fi
    sudo="sudo"
  fi
  echo "Installing:$missing"
  $sudo apt-get update -qq &&
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq $missing >/dev/null || {
    echo "Could not install:$missing" >&2
    return 1
  }
}

sf_build() {  # sf_build PRESET [TARGET]
  if [ ! -e "build/$1/build.ninja" ]; then
    echo "Building ($1); without a compiler cache this takes some minutes"
    cmake --preset "$1" >"build/$1-configure.log" 2>&1 || {
      tail -n 30 "build/$1-configure.log" >&2
      return 1
    }
  fi
  # People see how far it is until it is built once; after that ninja's "no work to do" is no news.
  local done="build/$1/.built-${2:-all}" told=""
  if [ -t 1 ] && [ ! -e "$done" ]; then
    ninja -C "build/$1" ${2:+"$2"} || return 1
  else
    told=$(ninja -C "build/$1" --quiet ${2:+"$2"}) || { printf '%s\n' "$told"; return 1; }
  fi
  touch "$done"
}

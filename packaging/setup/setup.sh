# shellcheck shell=bash
# What the scripts share: messages, the Debian packages, the build. To be sourced, not run.

set -euo pipefail

project_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
readonly project_root

# The one list of Debian packages. Ubuntu has the same names.
declare -rA debian_packages=(
  [build]="g++ cmake ninja-build pkgconf qt6-base-dev qt6-l10n-tools qt6-translations-l10n qcoro-qt6-dev libzip-dev libssl-dev zlib1g-dev adb fonts-noto-cjk"
  [device-tool]="g++-aarch64-linux-gnu binutils-source xz-utils"
  [headset]="bubblewrap busybox-static qemu-user-static"
  [test]="desktop-file-utils libglib2.0-bin"
  [comparison]="aapt android-framework-res"
  [lint]="git clang-format-14 clang-tidy-14 shellcheck codespell libbenchmark-dev"
  [fuzz]="clang unzip aapt android-framework-res"
  [virtual-display]="xvfb openbox xdotool x11-utils xclip imagemagick"
  [pictures]="optipng"
  [windows]="g++-mingw-w64-x86-64-posix libz-mingw-w64-dev dpkg-dev xz-utils wine64"
  [windows-package]="nsis zip"
  [windows-look]="socat"
)

say() {
  printf '==> %s\n' "$*"
}

fail() {
  printf '\n%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

# need_packages GROUP...: installs what is missing of these groups, or lists it and stops.
need_packages() {
  local group names wanted=() present missing=() package
  for group in "$@"; do
    read -ra names <<<"${debian_packages[$group]}"
    wanted+=("${names[@]}")
  done
  if ! command -v dpkg-query >/dev/null; then
    say "This is no Debian system, so nothing is installed here. What Debian calls ${wanted[*]} must be there."
    return
  fi
  present=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null || true)
  for package in "${wanted[@]}"; do
    grep -qxF "installed $package" <<<"$present" || missing+=("$package")
  done
  ((${#missing[@]} == 0)) || install_packages "${missing[@]}"
}

install_packages() {
  local as_root=() log
  local by_hand="These packages are missing: $*
Install them with:  apt-get install --no-install-recommends $*"
  if ((EUID != 0)); then
    command -v sudo >/dev/null || fail "Packages can only be installed as root, and there is no sudo. $by_hand"
    if sudo -n true 2>/dev/null; then
      as_root=(sudo -n)
    elif [[ -t 0 && -t 2 ]]; then
      say "sudo may ask for your password, to install: $*"
      sudo -v || fail "Packages can only be installed as root. $by_hand"
      as_root=(sudo -n)
    else
      fail "Packages can only be installed as root, and sudo wants a password. $by_hand"
    fi
  fi
  say "Installing $* (this can take some minutes)"
  log=$(mktemp)
  local apt_get=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300)
  if ! { "${apt_get[@]}" update && "${apt_get[@]}" install -y --no-install-recommends "$@"; } >"$log" 2>&1 </dev/null; then
    tail -n 30 "$log" >&2
    rm -f "$log"
    fail "The packages could not be installed. $by_hand"
  fi
  rm -f "$log"
}

# build PRESET [TARGET...]: configures and builds these targets, or all of them.
build() {
  local preset=$1 log launcher="" targets=()
  shift
  (($# == 0)) || targets=(--target "$@")
  if command -v ccache >/dev/null; then
    launcher=ccache
    # Otherwise it would not cache what was compiled with a precompiled header.
    export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS-pch_defines,time_macros}
  fi
  # Otherwise paths into an older kit would stay.
  local found=$project_root/build/$preset/CMakeCache.txt
  if [[ $preset == windows && -e $found ]] && ! grep -qxF "ORVANTA_WINDOWS_KIT:PATH=$ORVANTA_WINDOWS_KIT" "$found"; then
    rm "$found"
  fi
  say "Building (preset $preset)"
  log=$(mktemp)
  if ! (cd "$project_root" && cmake --preset "$preset" -D CMAKE_CXX_COMPILER_LAUNCHER="$launcher") >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    fail "The build could not be set up; the reason stands above."
  fi
  rm -f "$log"
  (cd "$project_root" && cmake --build --preset "$preset" --parallel "$(nproc)" "${targets[@]}") ||
    fail "The build failed; the first error stands above."
}

# Installs the Debian packages that the scripts need; sourced by run and test.
# shellcheck shell=bash disable=SC2034

build_packages=(g++ cmake ninja-build qt6-base-dev qt6-tools-dev qt6-translations-l10n libboost-dev
  uuid-dev libfontconfig-dev ca-certificates)
# For a session that has Wayland only.
wayland_packages=(qt6-wayland)
# For a picture of the program where there is no display.
display_packages=(xvfb openbox x11-utils imagemagick
  fonts-dejavu-core fonts-droid-fallback fonts-noto-color-emoji)
test_packages=(libbenchmark-dev libx11-dev libsm-dev libice-dev openssl
  xvfb openbox xdotool x11-utils dbus-daemon dunst trayer weston "${wayland_packages[@]}"
  dpkg-dev file lintian desktop-file-utils appstream man-db fonts-noto-core tzdata)

# Clones share what ccache holds, wherever they lie.
export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=true

say() {
  printf '== %s\n' "$*"
}

fail() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

_as_root() {
  if ((EUID == 0)); then
    "$@"
  elif [[ -t 0 || -t 2 ]]; then
    sudo "$@"
  else
    sudo -n "$@"
  fi
}

_apt_get() {
  _as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 \
    -o Acquire::Retries=3 "$@" </dev/null
}

_update_package_lists() {
  local attempt
  for attempt in 1 2 3; do
    _apt_get update && return
    # Another apt-get may hold the lists.
    ((attempt == 3)) || sleep 5
  done
  say "The package lists could not be updated; trying with those that are there"
}

# install_missing <package>...: installs those that are not there; asks nobody when all are.
install_missing() {
  if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    say "No apt-get here; these Debian packages, or what they hold, are needed: $*"
    return
  fi
  local package missing=()
  for package in "$@"; do
    # shellcheck disable=SC2016 # the braces are dpkg-query's
    dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed ||
      missing+=("$package")
  done
  ((${#missing[@]})) || return 0

  say "Installing ${missing[*]}"
  if ((EUID != 0)) && ! { command -v sudo >/dev/null && _as_root true; }; then
    fail "packages are missing, and neither root nor sudo is at hand.
As root: apt-get install --no-install-recommends ${missing[*]}"
  fi
  _update_package_lists
  _apt_get install --no-install-recommends "${missing[@]}" ||
    fail "installing failed. As root: apt-get install --no-install-recommends ${missing[*]}"
}

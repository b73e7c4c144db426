#!/usr/bin/env bash
# desktop.sh <program> [arguments]: runs a program on a desktop of its own (X server, window
# manager, session bus, home and runtime folder), takes the desktop down again, and ends with the
# program's exit code.
set -euo pipefail

root=$(mktemp -d)
started=() # the last one first

end_desktop() {
  local pid
  for pid in "${started[@]}"; do
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
  done
  rm -rf "$root"
}
trap end_desktop EXIT
trap 'exit 143' TERM
trap 'exit 130' INT

export HOME=$root/home XDG_RUNTIME_DIR=$root/run
mkdir -m 700 "$HOME" "$XDG_RUNTIME_DIR"
unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME XDG_CURRENT_DESKTOP SESSION_MANAGER \
  WAYLAND_DISPLAY QT_QPA_PLATFORM QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE QT_SCALE_FACTOR

# start <command>...: starts a part of the desktop, and waits for the line that it writes to
# descriptor 3 once it is up.
start() {
  "$@" 3>&4 4>&- >>"$root/log" 2>&1 &
  started=($! "${started[@]}")
  read -r -t 20 line <&4 && return
  printf 'desktop.sh: %s did not come up\n' "$1" >&2
  cat "$root/log" >&2
  exit 1
}
mkfifo "$root/ready"
exec 4<>"$root/ready"

start Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset
export DISPLAY=:$line
start dbus-daemon --config-file="${0%/*}/bus.conf" --nofork --nopidfile --print-address=3
export DBUS_SESSION_BUS_ADDRESS=$line
# A manager announces itself before it looks after windows; its start-up command comes later.
start openbox --sm-disable --startup "sh -c 'echo ready >$root/ready'"

# In the background, so that a signal to this script is not held up until it ends.
"$@" 4>&- &
started=($! "${started[@]}")
status=0
wait $! || status=$?
started=("${started[@]:1}")
exit "$status"

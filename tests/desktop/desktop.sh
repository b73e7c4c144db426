#!/usr/bin/env bash
# desktop.sh <program> [arguments]: runs a program on a desktop of its own (X server, window
# manager, session bus, home and runtime folder), takes the desktop down again, and ends with the
# program's exit code.
set -euo pipefail

say() {
  printf 'desktop.sh: %s\n' "$*" >&2
}

root=$(mktemp -d)
started=()

end_desktop() {
  local i
  for ((i = ${#started[@]} - 1; i >= 0; i--)); do
    kill "${started[i]}" 2>/dev/null || true
    wait "${started[i]}" 2>/dev/null || true
  done
  rm -rf "$root"
}
trap end_desktop EXIT
trap 'exit 143' TERM
trap 'exit 130' INT

# wait_for <what> <command>...: tries the command until it succeeds, for twenty seconds.
wait_for() {
  local what=$1 deadline=$((SECONDS + 20))
  shift
  until "$@"; do
    if ((SECONDS >= deadline)); then
      say "$what did not come up"
      cat "$root"/*.log >&2
      exit 1
    fi
    sleep 0.02
  done
}

# The number is whole once its line feed is there.
server_is_up() { { read -r number <"$root/display"; } 2>/dev/null; }
manager_is_up() { [[ -e $root/manager.ready ]]; }
bus_is_up() { [[ -S $XDG_RUNTIME_DIR/bus ]]; }

mkdir "$root/home" "$root/run"
chmod 700 "$root/run"
export HOME=$root/home XDG_RUNTIME_DIR=$root/run
unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME XDG_CURRENT_DESKTOP SESSION_MANAGER \
  WAYLAND_DISPLAY QT_QPA_PLATFORM QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE QT_SCALE_FACTOR

Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset \
  3>"$root/display" >"$root/server.log" 2>&1 &
started+=($!)
wait_for "the X server" server_is_up
DISPLAY=:$number
export DISPLAY

# A bus that starts no services: what a test needs there, it starts itself.
cat >"$root/bus.conf" <<END
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
  "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=$XDG_RUNTIME_DIR/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
END
dbus-daemon --config-file="$root/bus.conf" --nofork --nopidfile >"$root/bus.log" 2>&1 &
started+=($!)
wait_for "the session bus" bus_is_up
export DBUS_SESSION_BUS_ADDRESS=unix:path=$XDG_RUNTIME_DIR/bus

# A manager announces itself before it looks after windows; its start-up command comes later.
openbox --sm-disable --startup "touch $root/manager.ready" >"$root/manager.log" 2>&1 &
started+=($!)
wait_for "the window manager" manager_is_up

# In the background, so that a signal to this script is not held up until it ends.
"$@" &
started+=($!)
status=0
wait "${started[-1]}" || status=$?
unset 'started[-1]'
exit "$status"

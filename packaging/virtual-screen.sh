# Which screen the slideshow can open on: the desktop's, or a virtual one that is started here. Sourced, never run.
#
# Needs: packaging/setup.sh.
# Gives: display_server_answers, start_virtual_screen, stop_virtual_screen, photograph.
# shellcheck shell=bash

virtual_screen_pid=

# Whether something listens at a local socket: a socket file alone may be left over from a server that is gone.
socket_answers() {
  perl -MSocket -e 'my $s; socket($s, PF_UNIX, SOCK_STREAM, 0) && connect($s, sockaddr_un($ARGV[0])) or exit 1' \
    "$1" 2>/dev/null
}

x_server_answers() {
  local display=$1 number
  [[ $display =~ ^([A-Za-z0-9._-]*):([0-9]+)(\.[0-9]+)?$ ]] || return 1
  number=${BASH_REMATCH[2]}
  case ${BASH_REMATCH[1]} in
    '' | unix) socket_answers "/tmp/.X11-unix/X$number" ;;
    # Forwarded from another machine.
    *) timeout 3 bash -c "exec 3<>/dev/tcp/${BASH_REMATCH[1]}/$((6000 + number))" 2>/dev/null ;;
  esac
}

wayland_server_answers() {
  case $1 in
    '') return 1 ;;
    /*) socket_answers "$1" ;;
    *) [[ -n ${XDG_RUNTIME_DIR:-} ]] && socket_answers "$XDG_RUNTIME_DIR/$1" ;;
  esac
}

# Whether a window can be opened. Variables that lead nowhere are taken out of the way.
display_server_answers() {
  wayland_server_answers "${WAYLAND_DISPLAY:-}" || unset WAYLAND_DISPLAY
  x_server_answers "${DISPLAY:-}" || unset DISPLAY
  [[ -n ${WAYLAND_DISPLAY:-}${DISPLAY:-} ]]
}

# start_virtual_screen WIDTH HEIGHT: opens an X screen of its own number and points DISPLAY at it.
start_virtual_screen() {
  local number_pipe number
  number_pipe=$(mktemp -u)
  mkfifo -m 600 "$number_pipe"
  exec 7<>"$number_pipe"
  rm "$number_pipe"
  Xvfb -displayfd 7 -screen 0 "${1}x${2}x24" -nolisten tcp -noreset >/dev/null 2>&1 &
  virtual_screen_pid=$!
  read -r -t 20 number <&7 || fail "the virtual X screen (Xvfb) does not start"
  exec 7>&-
  export DISPLAY=:$number
  unset WAYLAND_DISPLAY QT_QPA_PLATFORM XAUTHORITY
  # Nothing is to start a session bus for a screen that is soon gone again.
  export DBUS_SESSION_BUS_ADDRESS=${DBUS_SESSION_BUS_ADDRESS:-unix:path=/nonexistent}
}

stop_virtual_screen() {
  [[ -n $virtual_screen_pid ]] || return 0
  kill "$virtual_screen_pid" 2>/dev/null || true
  wait "$virtual_screen_pid" 2>/dev/null || true
  virtual_screen_pid=
}

# photograph FILE: writes what the screen shows now.
photograph() { import -silent -window root "$1"; }

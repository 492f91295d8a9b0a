# Sourced by the end-to-end tests: starts a private Xvfb on a free display number, waits until
# it answers, exports DISPLAY and a private 0700 XDG_RUNTIME_DIR, and stops it all on exit.
#
#   source "$(dirname "$0")/xvfb.sh"
#   xvfb_on_exit "kill $app_pid"   # more clean-up, run before Xvfb stops (last added runs first)
#
# -noreset keeps the server up between clients: without it a client that connects while the
# last one leaves is refused.

xvfb_cleanup=()

xvfb_on_exit() {
  xvfb_cleanup=("$1" "${xvfb_cleanup[@]}")
}

xvfb_stop() {
  local step
  for step in "${xvfb_cleanup[@]}"; do eval "$step" || true; done
  xvfb_cleanup=()
  if [ -n "${xvfb_pid:-}" ]; then
    kill "$xvfb_pid" 2>/dev/null || true
    wait "$xvfb_pid" 2>/dev/null || true
    xvfb_pid=""
  fi
  if [ -n "${xvfb_runtime:-}" ]; then rm -rf "$xvfb_runtime"; xvfb_runtime=""; fi
}

xvfb_start() {
  local n tries
  for n in $(seq 91 160); do
    [ -e "/tmp/.X$n-lock" ] || [ -e "/tmp/.X11-unix/X$n" ] && continue
    Xvfb ":$n" -screen 0 1280x1024x24 -nolisten tcp -noreset >/dev/null 2>&1 &
    xvfb_pid=$!
    for tries in $(seq 1 100); do
      if xdpyinfo -display ":$n" >/dev/null 2>&1; then
        export DISPLAY=":$n"
        return 0
      fi
      kill -0 "$xvfb_pid" 2>/dev/null || break  # lost the race for this number
      sleep 0.05
    done
    kill "$xvfb_pid" 2>/dev/null || true
    wait "$xvfb_pid" 2>/dev/null || true
    xvfb_pid=""
  done
  echo "xvfb.sh: no free display for Xvfb" >&2
  return 1
}

trap xvfb_stop EXIT
xvfb_runtime=$(mktemp -d)
chmod 700 "$xvfb_runtime"
export XDG_RUNTIME_DIR="$xvfb_runtime"
unset WAYLAND_DISPLAY
export QT_QPA_PLATFORM=xcb
xvfb_start

#!/usr/bin/env bash
# Sets the machine up, builds the editor and starts it.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build -j2 --target skinframewright

app=build/src/shell/skinframewright
if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
  exec "$app" "$@"
fi

# No display: run on a virtual one so the editor can still be driven and screenshotted.
n=77
while [ -e "/tmp/.X11-unix/X$n" ] || [ -e "/tmp/.X$n-lock" ]; do n=$((n + 1)); done
display=:$n
echo "No display found (DISPLAY is not set)."
echo "Starting the editor on the virtual display $display (Xvfb)."
echo "Look at it with:  DISPLAY=$display import -window root shot.png   (ImageMagick)"
echo "Drive it with:    DISPLAY=$display xdotool ..."
echo "Stop it with Ctrl+C."
Xvfb "$display" -screen 0 1280x1024x24 -nolisten tcp -noreset &
xvfb=$!
trap 'kill $xvfb 2>/dev/null' EXIT
sleep 1
export XDG_RUNTIME_DIR="${XDG_RUNTIME_DIR:-$(mktemp -d)}"
chmod 700 "$XDG_RUNTIME_DIR"
DISPLAY=$display "$app" "$@"

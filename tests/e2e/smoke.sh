#!/usr/bin/env bash
# The real program under Xvfb: one mapped 792 x 409 window with the program's title, a real
# drag on its bare background moves it by the drag's distance, a right-button drag does not,
# a screenshot goes into the build folder, and the close button ends the program at once.
#   smoke.sh <skinframewright> <build folder>
set -euo pipefail
app=${1:?program}
out=${2:?build folder}
source "$(dirname "$0")/xvfb.sh"

title="Brindleway Skin Framewright"
fail() { echo "smoke: $*" >&2; exit 1; }

"$app" &
app_pid=$!
xvfb_on_exit "kill $app_pid 2>/dev/null"

ids=""
for _ in $(seq 1 100); do
  ids=$(xdotool search --onlyvisible --name "^$title\$" 2>/dev/null || true)
  [ -n "$ids" ] && break
  sleep 0.1
done
[ "$(printf '%s\n' "$ids" | grep -c .)" -eq 1 ] || fail "expected one mapped window titled '$title', found: '$ids'"
win=$ids

geometry() { xdotool getwindowgeometry --shell "$win" | tr '\n' ' '; }
read_geometry() {
  local X Y WIDTH HEIGHT SCREEN WINDOW
  eval "$(xdotool getwindowgeometry --shell "$win")"
  x=$X; y=$Y; w=$WIDTH; h=$HEIGHT
}
read_geometry
[ "$w" -eq 792 ] && [ "$h" -eq 409 ] || fail "window is ${w}x$h, not 792x409"
echo "smoke: window $win at $x,$y size ${w}x$h"
eval "$(xdotool getdisplaygeometry --shell)"
[ "$x" -eq $(((WIDTH - w) / 2)) ] && [ "$y" -eq $(((HEIGHT - h) / 2)) ] ||
  fail "window at $x,$y is not centred on the ${WIDTH}x$HEIGHT screen"

# Drags from a bare point of the background (the top strip between the title and the options).
drag() {
  local button=$1 dx=$2 dy=$3 sx=$((x + 300)) sy=$((y + 20))
  xdotool mousemove "$sx" "$sy"; sleep 0.2
  xdotool mousedown "$button"; sleep 0.2
  xdotool mousemove "$((sx + dx / 2))" "$((sy + dy / 2))"; sleep 0.1
  xdotool mousemove "$((sx + dx))" "$((sy + dy))"; sleep 0.2
  xdotool mouseup "$button"; sleep 0.3
}

x0=$x; y0=$y
drag 3 60 40
read_geometry
[ "$x" -eq "$x0" ] && [ "$y" -eq "$y0" ] || fail "a right-button drag moved the window to $x,$y"
drag 1 100 70
read_geometry
[ "$x" -eq $((x0 + 100)) ] && [ "$y" -eq $((y0 + 70)) ] ||
  fail "a left drag of +100,+70 from $x0,$y0 left the window at $x,$y"
echo "smoke: dragged to $x,$y"

xdotool mousemove 5 5; sleep 0.3
import -window root -crop "${w}x${h}+${x}+${y}" +repage "$out/screenshot-main.png"
[ -s "$out/screenshot-main.png" ] || fail "no screenshot written"
echo "smoke: screenshot $out/screenshot-main.png"

# The help window from the options list: focus the list, open it, take item 1.
xdotool mousemove $((x + 650)) $((y + 10)); sleep 0.2
xdotool click 1; sleep 0.5
xdotool key Down; sleep 0.1
xdotool key Return
help=""
for _ in $(seq 1 50); do
  help=$(xdotool search --onlyvisible --name "^Help - $title\$" 2>/dev/null || true)
  [ -n "$help" ] && break
  sleep 0.1
done
[ "$(printf '%s\n' "$help" | grep -c .)" -eq 1 ] || fail "options item 1 did not show one help window: '$help'"
eval "$(xdotool getwindowgeometry --shell "$help" | sed 's/^/help_/')"
[ "$help_WIDTH" -eq 680 ] && [ "$help_HEIGHT" -eq 272 ] || fail "help window is ${help_WIDTH}x$help_HEIGHT"
[ "$help_X" -eq $((x + (w - 680) / 2)) ] && [ "$help_Y" -eq $((y + (h - 272) / 2)) ] || fail "help window at $help_X,$help_Y is not centred over the main window"
xdotool mousemove 5 5; sleep 0.3
import -window root -crop "680x272+${help_X}+${help_Y}" +repage "$out/screenshot-help.png"
# Its own close button (in the title strip, 661, 1, 15 x 16) destroys it; the main window stays.
xdotool mousemove $((help_X + 668)) $((help_Y + 9)); sleep 0.2
xdotool click 1
for _ in $(seq 1 30); do
  xdotool search --onlyvisible --name "^Help - $title\$" >/dev/null 2>&1 || break
  sleep 0.1
done
xdotool search --onlyvisible --name "^Help - $title\$" >/dev/null 2>&1 && fail "the help window did not close"
kill -0 "$app_pid" 2>/dev/null || fail "closing the help window ended the program"
echo "smoke: help window shown at $help_X,$help_Y and closed"

# imgClose (772, 4, 15 x 16): the program ends with the release, asking nothing.
xdotool mousemove $((x + 779)) $((y + 11)); sleep 0.2
xdotool click 1
for _ in $(seq 1 50); do
  kill -0 "$app_pid" 2>/dev/null || break
  sleep 0.1
done
kill -0 "$app_pid" 2>/dev/null && fail "the close button did not end the program"
status=0
wait "$app_pid" || status=$?
[ "$status" -eq 0 ] || fail "the program ended with status $status"
echo "smoke: passed"

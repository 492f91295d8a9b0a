# Sourced by the editor's end-to-end tests after xvfb.sh: starts the program, finds its window
# and offers the designer's steps with real X input. Positions are main-window pixels.
#
#   start_editor <program>        sets app_pid, win, wx, wy (window origin on the screen)
#   press_at X Y / release / click_at X Y
#   draw_area X0 Y0 X1 Y1 KEYS... a left drag, then KEYS (xdotool key names) in the name menu
#   load_picture X Y PATH         clicks the load button at X Y and types PATH into the dialog
#   window_shot FILE              the window's pixels as a PNG
#   pixel_of FILE X Y             "#RRGGBB" of one pixel of such a shot

editor_title="Brindleway Skin Framewright"

start_editor() {
  "$1" &
  app_pid=$!
  xvfb_on_exit "kill $app_pid 2>/dev/null"
  win=""
  for _ in $(seq 1 100); do
    win=$(xdotool search --onlyvisible --name "^$editor_title\$" 2>/dev/null | head -n 1 || true)
    [ -n "$win" ] && break
    sleep 0.1
  done
  [ -n "$win" ] || { echo "no window titled '$editor_title'" >&2; return 1; }
  local X Y WIDTH HEIGHT SCREEN WINDOW
  eval "$(xdotool getwindowgeometry --shell "$win")"
  wx=$X; wy=$Y
  sleep 0.3
}

point_at() { xdotool mousemove "$((wx + $1))" "$((wy + $2))"; }
press_at() { point_at "$1" "$2"; sleep 0.1; xdotool mousedown 1; sleep 0.1; }
release() { xdotool mouseup 1; sleep 0.1; }
click_at() { press_at "$1" "$2"; release; sleep 0.2; }

# The pointer moves in steps, as a hand would, so the box grows through several movements.
draw_area() {
  local x0=$1 y0=$2 x1=$3 y1=$4 step
  shift 4
  press_at "$x0" "$y0"
  for step in 1 2 3 4; do
    point_at "$((x0 + (x1 - x0) * step / 4))" "$((y0 + (y1 - y0) * step / 4))"
    sleep 0.05
  done
  sleep 0.1
  xdotool mouseup 1
  sleep 0.5  # the name menu opens at the pointer
  xdotool key --delay 80 "$@"
  sleep 0.3
}

load_picture() {
  click_at "$1" "$2"
  sleep 1  # the open dialog
  xdotool type --delay 5 "$3"
  xdotool key Return
  sleep 0.8
}

window_shot() {
  import -window root -crop "792x409+${wx}+${wy}" +repage "$1"
}

pixel_of() {
  convert "$1" -crop "1x1+$2+$3" -depth 8 txt:- | grep -o '#[0-9A-Fa-f]\{6\}' | head -n 1
}

#!/usr/bin/env bash
# The editor under Xvfb with real X input: both side pictures loaded through the open dialog,
# several areas drawn with the mouse and named from the pop-up menu with the keyboard on each
# side, then a screenshot into the build folder, checked at a few pixels: the stretched
# pictures, the placed text-field labels and the drawing boxes' border and hatch.
#   editor_screenshot.sh <skinframewright> <build folder>
set -euo pipefail
app=${1:?program}
out=${2:?build folder}
here=$(dirname "$0")
source "$here/xvfb.sh"
source "$here/lib/editorsession.sh"

fail() { echo "editor_screenshot: $*" >&2; exit 1; }
work=$(mktemp -d)
xvfb_on_exit "rm -rf '$work'"

# Send: 724 x 516, shown at half size; a dark block at 40,40-300,200 lands at 39,71-169,151.
convert -size 724x516 xc:'#5080c0' -fill '#203060' -draw 'rectangle 40,40 300,200' \
  -fill '#f8f8f8' -draw 'rectangle 60,260 680,480' "$work/send skin.bmp"
# Receive: 181 x 110, shown doubled: its title bar fills the frame's top 30 pixels.
convert -size 181x110 xc:'#f0e0c0' -fill '#806040' -draw 'rectangle 0,0 180,14' "$work/receive.bmp"

start_editor "$app" || fail "the program did not show its window"
load_picture 364 322 "$work/send skin.bmp"     # imgSendLoad
load_picture 752 284 "$work/receive.bmp"       # imgReceiveLoad

# Send: User List, Message, All, None, then Send (Cut is skipped over).
draw_area 40 160 150 260 Down Return
draw_area 200 200 360 290 Down Return
draw_area 200 70 240 95 Down Return
draw_area 260 70 300 95 Down Return
draw_area 320 70 370 110 Down Down Return
# Receive: Date, Sender, Message, Okay, then Reply (Yes and No are skipped over).
draw_area 420 90 520 106 Down Return
draw_area 540 90 640 106 Down Return
draw_area 420 120 760 200 Down Return
draw_area 430 220 490 255 Down Return
draw_area 640 220 700 255 Down Down Down Return
# A cancelled drag leaves nothing behind.
draw_area 600 215 620 230 Escape
click_at 175 358   # txtSkinName
xdotool type --delay 20 "Harbour Blue"
click_at 175 384   # txtSkinAuthor
xdotool type --delay 20 "Ostervale Studio"

point_at 300 20
sleep 0.5
shot="$out/screenshot-editor.png"
window_shot "$shot"
[ -s "$shot" ] || fail "no screenshot written"
echo "editor_screenshot: $shot"

expect() {
  local x=$1 y=$2 want=$3 what=$4 got
  got=$(pixel_of "$shot" "$x" "$y")
  [ "${got^^}" = "${want^^}" ] || fail "$what: pixel $x,$y is $got, expected $want"
}
expect 30 60 '#5080C0' "Send picture background"
expect 100 100 '#203060' "Send picture, dark block at half size"
expect 500 55 '#806040' "Receive picture, title bar doubled"
expect 700 260 '#F0E0C0' "Receive picture below its title"
expect 145 255 '#E0E0E0' "lblSendUsers placed on its area"
expect 355 285 '#E0E0E0' "lblSendMessage placed on its area"
expect 755 195 '#E0E0E0' "lblReceiveMess placed on its area"
expect 200 70 '#000000' "the Send All box's border"
expect 430 220 '#000000' "the Receive Okay box's border"
expect 601 216 '#F0E0C0' "no box left by the cancelled drag"
# The hatch: silver where (x + y) from the box's inner corner is a multiple of 8.
expect 209 71 '#C0C0C0' "the hatch inside the Send All box"
echo "editor_screenshot: pixels as expected"

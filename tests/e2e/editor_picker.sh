#!/usr/bin/env bash
# The screen colour picker under Xvfb with real X input: a text field is drawn and named, the
# picker is held down and carried over a quick colour chip of the window, and on release the
# selected label takes the chip's colour, as back colour and then, with the text switch on, as
# text colour. While the picker is held the label gives way to its hatched box.
#   editor_picker.sh <skinframewright> <build folder>
set -euo pipefail
app=${1:?program}
out=${2:?build folder}
here=$(dirname "$0")
source "$here/xvfb.sh"
source "$here/lib/editorsession.sh"

fail() { echo "editor_picker: $*" >&2; exit 1; }
work=$(mktemp -d)
xvfb_on_exit "rm -rf '$work'"
shot="$work/shot.png"

# Chips of the background, 11 x 12 pixels each from 642,311 at a pitch of 12 by 13.
chip_x() { echo $((642 + 12 * $1 + 5)); }
chip_y() { echo $((311 + 13 * $1 + 6)); }

# Holds the picker (imgPicker, 477,311 26 x 22) and carries it over a chip.
pick_chip() {
  local row=$1 column=$2
  press_at 490 322
  point_at 560 320; sleep 0.05
  point_at "$(chip_x "$column")" "$(chip_y "$row")"
  sleep 0.5
  window_shot "$work/held.png"
  release
  sleep 0.3
  window_shot "$shot"
}

expect() {
  local file=$1 x=$2 y=$3 want=$4 what=$5 got
  got=$(pixel_of "$file" "$x" "$y")
  [ "${got^^}" = "${want^^}" ] || fail "$what: pixel $x,$y is $got, expected $want"
}

start_editor "$app" || fail "the program did not show its window"
draw_area 40 160 150 260 Down Return   # Send User List: lblSendUsers at 40,160 110 x 100
window_shot "$shot"
expect "$shot" 140 250 '#E0E0E0' "lblSendUsers before picking"

pick_chip 0 0                           # red, onto the back colour (the switch starts on back)
[ "$(pixel_of "$work/held.png" 140 250)" != '#E0E0E0' ] || fail "the label still shows while the picker is held"
expect "$work/held.png" 40 200 '#000000' "the mirrored box's border while the picker is held"
expect "$shot" 140 250 '#FF0000' "lblSendUsers back colour after picking red"
expect "$shot" 545 322 '#FF0000' "the swatch"

click_at 418 322                        # imgText: the tools now set text colours
pick_chip 0 5                           # blue
expect "$shot" 140 250 '#FF0000' "lblSendUsers back colour kept"
expect "$shot" 545 322 '#0000FF' "the swatch"
# Caption pixels blend blue text into the red ground: count those where blue outweighs red.
caption=$(convert "$shot" -crop 110x16+40+160 -depth 8 txt:-)
blue=$(awk -F'[(),]' 'NR > 1 && $5 + 0 > $3 + 0 { n++ } END { print n + 0 }' <<<"$caption")
red=$(grep -ci '#FF0000' <<<"$caption" || true)
cp "$shot" "$out/screenshot-picker.png"
[ "$blue" -gt 20 ] || fail "the caption shows no blue text ($blue bluish pixels)"
[ "$red" -gt 1000 ] || fail "the caption's ground is no longer red ($red red pixels)"
echo "editor_picker: back red, text blue ($blue bluish caption pixels); $out/screenshot-picker.png"

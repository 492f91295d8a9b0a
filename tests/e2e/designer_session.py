#!/usr/bin/env python3
"""A designer's whole session with the real program on its own Xvfb, worked only through real
X input: window placement and moving, the help window, both pictures loaded (and stretched)
through the open dialog, areas dragged and named on both sides (two past a picture's edge, one
cancelled), a nudge, colours from the colour dialog and the screen picker, name and author,
the editing keys (Ctrl+Z and Ctrl+Y over drawing, nudging and a side reset, the arrow keys,
Delete), the package created through the save dialog, a new start, and the package loaded
back. The package is checked on disk with bsztool, the screen after each main step pixel by
pixel.

    designer_session.py --app PROGRAM --bsztool BSZTOOL --out BUILD_FOLDER

Screenshots stay in the build folder; on failure the step is named, e2e-failure.png kept."""

import argparse
import configparser
import filecmp
import glob
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "lib"))
from session import expect, run_session  # noqa: E402
from xdriver import App, Xvfb, geometry, run, topmost, toplevel  # noqa: E402

TITLE = "Brindleway Skin Framewright"
TWIPS = 15  # per pixel


def centre(left, top, width, height):
    """A window element's centre in pixels, from its layout in twips."""
    return (left + width // 2) // TWIPS, (top + height // 2) // TWIPS


IMG_SEND_LOAD = centre(5340, 4695, 255, 270)
IMG_RECEIVE_LOAD = centre(11160, 4125, 255, 270)
IMG_RECEIVE_CLEAR = centre(10860, 4125, 225, 270)
TXT_SKIN_NAME = centre(1440, 5235, 2370, 288)
TXT_SKIN_AUTHOR = centre(1440, 5625, 2370, 288)
CMD_CREATE = centre(5115, 5250, 390, 450)
IMG_TEXT = centre(6075, 4665, 390, 330)
IMG_COLOR_SELECT = centre(7530, 4665, 390, 330)
IMG_PICKER = centre(7155, 4665, 390, 330)
PIC_PREVIEW = centre(8010, 4695, 330, 270)
IMG_ARR_RIGHT = centre(8820, 4665, 195, 195)
IMG_CLOSE = centre(11580, 60, 225, 240)
CBO_OPTIONS = (8415 + 2835 // 2) // TWIPS, 10
RED_CHIP = (647, 317)  # the first colour chip of the window's background
BARE_BACKGROUND = (300, 20)  # where drags move the window and the pointer rests for screenshots
PICTURES = {"Send": {"origin": (285, 765), "size": (5430, 3870)},  # frames, in twips
            "Receive": {"origin": (6135, 765), "size": (5430, 3285)}}


def on(side, x, y):
    """Window pixel of pixel (x, y) of a side's frame."""
    ox, oy = PICTURES[side]["origin"]
    return ox // TWIPS + x, oy // TWIPS + y


MENUS = {"Send": ["User List", "Message", "All", "None", "Cut", "Send", "Close", "Options"],
         "Receive": ["Date", "Sender", "Message", "Okay", "Yes", "No", "Reply", "Close"]}
SECTIONS = {"Send": ["Send " + k for k in MENUS["Send"]],
            "Receive": ["Recieve " + k for k in ["Date", "Sender", "Message", "OK", "Yes", "No", "Reply", "Close"]]}
TEXT_FIELDS = [("Send", "User List"), ("Send", "Message"), ("Receive", "Date"), ("Receive", "Sender"),
               ("Receive", "Message")]
# Frame pixels: the press point, then every pointer movement; the release is at the last one.
DRAGS = [
    ("Send", "User List", [(10, 10), (40, 50), (80, 100), (110, 150)]),
    ("Send", "Message", [(130, 160), (200, 190), (280, 220), (340, 240)]),
    ("Send", "All", [(20, 170), (40, 180), (60, 190), (70, 195)]),
    ("Send", "Send", [(300, 10), (330, 20), (355, 30), (370, 40), (378, 45), (384, 50)]),
    ("Send", "Close", [(150, 20), (170, 30), (190, 40), (200, 45)]),
    ("Receive", "Date", [(10, 10), (50, 20), (90, 25), (120, 30)]),
    ("Receive", "Sender", [(130, 10), (180, 20), (220, 25), (250, 30)]),
    ("Receive", "Message", [(10, 40), (100, 80), (250, 120), (350, 150)]),
    ("Receive", "Okay", [(20, 170), (50, 190), (70, 210), (80, 225), (84, 231), (86, 236)]),
    ("Receive", "Reply", [(250, 175), (280, 185), (310, 195), (330, 205)]),
]
CANCELLED = ("Receive", [(120, 165), (160, 185), (200, 205)])  # its name menu gets Escape
NUDGED = ("Send", "All")  # one step right with the arrow pad: Left + 10 twips
DELETED = ("Send", "None", [(220, 70), (250, 90), (280, 120)])  # drawn, then removed with Delete
SEND_MESSAGE_BACK, RECEIVE_DATE_TEXT, USER_LIST_BACK = "#2E8B57", "#C01020", "#FF0000"
SKIN_NAME, SKIN_AUTHOR = "Harbour Blue", "Ostervale Studio"
INITIAL_BACK, INITIAL_TEXT = 14737632, -2147483640  # 0x00E0E0E0 and a system colour
SEND_GROUND, SEND_BLOCK, RECEIVE_GROUND, RECEIVE_BAR = "#5080C0", "#203060", "#D8E8F0", "#304050"
SILVER, BLACK = (0xC0, 0xC0, 0xC0), (0, 0, 0)


def ole(html):
    """The file's OLE colour 0x00BBGGRR of an '#RRGGBB' text."""
    r, g, b = (int(html[i:i + 2], 16) for i in (1, 3, 5))
    return (b << 16) | (g << 8) | r


def extend_axis(size, start, pointer, anchor, picture_start, picture_size):
    """One axis of a movement: the box grows from its anchor, never turns over, and is pinned
    to the picture's far edge by the movement after the one that crosses it."""
    d = pointer - anchor
    if d < size:
        return d if d >= 0 else size
    return d if picture_start + picture_size > start + size else picture_start + picture_size - start


def expected_rect(side, path):
    """The frame-relative rectangle in twips that a drag's movements leave."""
    (x0, y0), ox, oy = path[0], *PICTURES[side]["origin"]
    pw, ph = PICTURES[side]["size"]
    left, top, width, height = ox + x0 * TWIPS, oy + y0 * TWIPS, 0, 0
    for x, y in path[1:]:
        width = extend_axis(width, left, x * TWIPS, x0 * TWIPS, ox, pw)
        height = extend_axis(height, top, y * TWIPS, y0 * TWIPS, oy, ph)
    return [left - ox, top - oy, width, height]


def ink(image, centre_point):
    """Dark pixels of a text box's inner part: its typed text."""
    x, y = centre_point
    return image.count(x - 75, y - 7, 150, 14, lambda p: sum(p) < 300)


class Session:
    def __init__(self, args):
        self.args, self.out, self.step = args, args.out, "start"
        self.work = tempfile.mkdtemp(prefix="designer-")
        self.program_tmp = os.path.join(self.work, "program tmp")  # unpacked packages go here
        os.makedirs(self.program_tmp)
        self.package = os.path.join(self.work, "SKIN01.bsz")
        self.app = App(args.app, TITLE, dict(os.environ, TMPDIR=self.program_tmp),
                       os.path.join(self.out, "e2e-program.log"))
        self.enabled = {side: [True] * 8 for side in MENUS}
        self.expected = {}

    def close(self):
        shutil.rmtree(self.work, ignore_errors=True)

    def begin(self, name):
        self.step = name
        print(f"[e2e] {name}", flush=True)

    def shot(self, name, rest=True):
        if rest:
            self.app.move(*BARE_BACKGROUND)
        time.sleep(0.3 if rest else 0.5)  # the last repaint lands; the picker samples the pointed pixel
        return self.app.screenshot(os.path.join(self.out, name))

    def load_picture(self, button, path):
        dialog, _ = self.app.expect_window(lambda: self.app.click(*button))
        self.app.type_text(path)
        self.app.keys("Return")
        self.app.wait_gone(dialog)

    def draw(self, side, kind, path):
        menu, _ = self.app.expect_window(lambda: self.app.drag([on(side, x, y) for x, y in path]), wait_focus=False)
        time.sleep(0.15)  # the menu takes the keyboard right after it shows
        if kind is None:
            self.app.keys("Escape")
        else:
            index = MENUS[side].index(kind)
            self.app.keys(*["Down"] * sum(self.enabled[side][:index + 1]), "Return")  # disabled items are skipped
            self.enabled[side][index] = False
            self.expected[(side, kind)] = expected_rect(side, path)
        self.app.wait_gone(menu)

    def choose_colour(self, html):
        """The colour dialog by keyboard: Alt+H focuses its HTML field, Return accepts."""
        dialog, _ = self.app.expect_window(lambda: self.app.click(*IMG_COLOR_SELECT), name="Select Color")
        self.app.keys("alt+h", "ctrl+a")
        self.app.type_text(html)
        time.sleep(0.2)
        self.app.screen_shot(os.path.join(self.out, f"e2e-03-dialog-{html[1:]}.png"))
        self.app.keys("Return")
        self.app.wait_gone(dialog)

    def click_inside(self, side, kind, inset):
        """Clicks near the lower right corner of an area (where a text field's caption is not)."""
        x, y, w, h = self.window_rect(side, kind)
        self.app.click(int(x + w) - inset, int(y + h) - inset)

    def run(self):
        app = self.app
        self.begin("start: one centred 792 x 409 window; only a left drag on the bare background moves it")
        send_pic, receive_pic = os.path.join(self.work, "send skin.bmp"), os.path.join(self.work, "recv-01.bmp")
        # Shown stretched into frames of 362 x 258 and 362 x 219 pixels: halved and doubled.
        run(["convert", "-size", "724x516", f"xc:{SEND_GROUND}", "-fill", SEND_BLOCK, "-draw",
             "rectangle 440,120 580,280", "-type", "TrueColor", f"BMP3:{send_pic}"])
        run(["convert", "-size", "181x110", f"xc:{RECEIVE_GROUND}", "-fill", RECEIVE_BAR, "-draw",
             "rectangle 75,80 115,105", "-type", "TrueColor", f"BMP3:{receive_pic}"])
        app.start()
        start = app.origin
        expect(app.size == (792, 409), f"the main window is {app.size}")
        expect(start == ((Xvfb.SIZE[0] - 792) // 2, (Xvfb.SIZE[1] - 409) // 2), f"the window at {start} is not centred")
        started_image = self.shot("screenshot-main.png")
        bx, by = BARE_BACKGROUND
        for button, (dx, dy), moved in ((3, (60, 40), (0, 0)), (1, (100, 70), (100, 70))):
            app.drag([(bx, by), (bx + dx // 2, by + dy // 2), (bx + dx, by + dy)], button=button)
            time.sleep(0.3)
            app.find_main_window()
            expect(app.origin == (start[0] + moved[0], start[1] + moved[1]),
                   f"a drag with button {button} left the window at {app.origin}, not {moved} from {start}")

        self.begin("open the help window from the options list, centred over the window; a message box "
                   "opens above it; close it")
        app.expect_window(lambda: app.click(*CBO_OPTIONS), wait_focus=False)  # the list drops down
        time.sleep(0.15)
        help_window, _ = app.expect_window(lambda: app.keys("Down", "Return"), name=f"Help - {TITLE}", wait_focus=False)
        hx, hy, hw, hh = geometry(help_window)
        expect((hx, hy, hw, hh) == (*app.point((792 - 680) // 2, (409 - 272) // 2), 680, 272),
               f"the help window is at {hx},{hy} size {hw}x{hh}")
        run(["import", "-window", "root", "-crop", f"680x272+{hx}+{hy}", "+repage",
             os.path.join(self.out, "screenshot-help.png")])
        # Without a window manager too, a message box that opens meanwhile is the topmost window.
        box, _ = app.expect_window(lambda: app.click(*CMD_CREATE), name="Package Creation Error", wait_focus=False)
        expect(topmost() == toplevel(box), "the message box opened under the help window")
        app.keys("Return")
        app.wait_gone(box)
        app.click(hx + 668 - app.origin[0], hy + 9 - app.origin[1])  # its own close button
        app.wait_gone(help_window)

        self.begin("hold an arrow with nothing selected: one message, and the arrow pad as before")
        box, _ = app.expect_window(lambda: app.drag([IMG_ARR_RIGHT, IMG_ARR_RIGHT], held=lambda: time.sleep(0.3)),
                                   name="Brindleway Skin Fwt.", wait_focus=False)
        app.keys("Return")
        app.wait_gone(box)
        time.sleep(0.3)
        expect(app.visible_windows() == [app.window], "a second message followed the held arrow")
        image = self.shot("e2e-00-arrow-released.png")
        expect(all(image.rgb(x, y) == started_image.rgb(x, y) for x in range(575, 601) for y in range(311, 336)),
               "the arrow pad does not look as at the start after the message")

        self.begin("load the Send and Receive pictures through the open dialog")
        self.load_picture(IMG_SEND_LOAD, send_pic)
        self.load_picture(IMG_RECEIVE_LOAD, receive_pic)
        self.pictures_only = image = self.shot("e2e-01-pictures.png")
        for side, x, y, colour in (("Send", 5, 5, SEND_GROUND), ("Send", 250, 100, SEND_BLOCK),
                                   ("Receive", 5, 5, RECEIVE_GROUND), ("Receive", 190, 190, RECEIVE_BAR)):
            expect(image.at(*on(side, x, y)) == colour, f"{side} picture at {x},{y} is {image.at(*on(side, x, y))}")

        self.begin("drag and name five areas on each side through the name menus, and cancel one")
        for side, kind, path in DRAGS:
            self.draw(side, kind, path)
        self.draw(CANCELLED[0], None, CANCELLED[1])
        image = self.shot("screenshot-editor.png")
        self.check_areas_on_screen(image, "after drawing")
        (x0, y0), (x1, y1) = on("Receive", *CANCELLED[1][0]), on("Receive", *CANCELLED[1][-1])
        expect(all(image.at(x, y) == self.pictures_only.at(x, y) for x in range(x0 - 1, x1 + 2) for y in (y0, y1 - 1)),
               "the cancelled drag left a box behind")

        self.begin("select the Send All box and nudge it one step right with the arrow pad")
        self.click_inside(*NUDGED, 10)
        app.click(*IMG_ARR_RIGHT)
        self.expected[NUDGED][0] += 10

        self.begin("keys: Ctrl+Z takes back the nudge, the cancelled drag and the last area; Ctrl+Y redoes them")
        app.keys("ctrl+z", "ctrl+z", "ctrl+z")
        image = self.shot("e2e-02-undone.png")
        self.check_no_box(image, self.window_rect("Receive", "Reply"), "after three undos")
        app.keys("ctrl+y", "ctrl+y", "ctrl+y")
        self.check_areas_on_screen(self.shot("e2e-02-redone.png"), "after three redos")

        self.begin("reset the Receive side with its eraser, and take the reset back with Ctrl+Z")
        app.click(*IMG_RECEIVE_CLEAR)
        image = self.shot("e2e-02-reset.png")
        for kind in ("Okay", "Reply"):
            self.check_no_box(image, self.window_rect("Receive", kind), "after the reset")
        app.keys("ctrl+z")
        self.check_areas_on_screen(self.shot("e2e-02-reset-undone.png"), "after the reset was undone")

        self.begin("the arrow keys nudge the selected area like the arrow pad: right twice, down once")
        self.click_inside(*NUDGED, 10)
        app.keys("Right", "Right", "Down")
        self.expected[NUDGED][0] += 20
        self.expected[NUDGED][1] += 10

        self.begin("draw another area and remove it with Delete: its kind is free again")
        side, kind, path = DELETED
        self.draw(side, kind, path)
        drawn = self.window_rect(side, kind)
        app.keys("Delete")
        self.enabled[side][MENUS[side].index(kind)] = True
        del self.expected[(side, kind)]
        image = self.shot("e2e-02-deleted.png")
        self.check_no_box(image, drawn, "after Delete")
        self.check_areas_on_screen(image, "after the keys")

        self.begin("colours: Send Message back from the dialog, Send User List back from the screen picker "
                   "(every text field shows its box while the picker is held), Receive Date text from the dialog")
        self.click_inside("Send", "Message", 10)
        self.choose_colour(SEND_MESSAGE_BACK)
        self.click_inside("Send", "User List", 10)
        held = app.drag([IMG_PICKER, (560, 320), RED_CHIP], held=lambda: self.shot("e2e-03-picker-held.png", rest=False))
        for side, kind in TEXT_FIELDS:
            self.check_box(held, side, kind, "while the picker is held")
        self.click_inside("Receive", "Date", 5)
        app.click(*IMG_TEXT)
        self.choose_colour(RECEIVE_DATE_TEXT)
        image = self.shot("e2e-03-colour.png")
        self.check_colours_on_screen(image, "after the colour tools")
        expect(image.at(*PIC_PREVIEW) == RECEIVE_DATE_TEXT, f"the swatch shows {image.at(*PIC_PREVIEW)}")

        self.begin("type name and author, create the package through the save dialog, answer Yes to start anew")
        app.click(*TXT_SKIN_NAME)
        app.type_text(SKIN_NAME)
        app.click(*TXT_SKIN_AUTHOR)
        app.type_text(SKIN_AUTHOR)
        dialog, _ = app.expect_window(lambda: app.click(*CMD_CREATE), name="Save Skin Package")
        app.type_text(self.package)
        box, _ = app.expect_window(lambda: app.keys("Return"), name="Ostervale Skin Fwt.", timeout=30)
        expect(dialog not in app.visible_windows(), "the save dialog stayed open")
        app.screen_shot(os.path.join(self.out, "e2e-04-question.png"))
        app.keys("Return")  # Yes
        app.wait_gone(box)
        app.find_main_window()
        image = self.shot("e2e-04-created.png")
        expect(os.path.isfile(self.package), f"no package at {self.package}")
        # Centred again; the frames and the insides of the name and author boxes (right of where
        # the caret blinks, inside the focus frame) look as at the start.
        expect(app.origin == start, f"the window at {app.origin} was not centred anew at {start}")
        for x, y, w, h in (on("Send", 0, 0) + (362, 258), on("Receive", 0, 0) + (362, 219),
                           (TXT_SKIN_NAME[0] - 70, TXT_SKIN_NAME[1] - 5, 145, 11),
                           (TXT_SKIN_AUTHOR[0] - 70, TXT_SKIN_AUTHOR[1] - 5, 145, 11)):
            expect(all(image.rgb(x + i, y + j) == started_image.rgb(x + i, y + j) for i in range(w) for j in range(h)),
                   f"the window did not start anew: {w}x{h}+{x}+{y} differs from the start")
        expect(not [d for d in os.listdir(self.program_tmp) if re.fullmatch(r"\d{14}", d)],
               "the temporary skin folder stayed behind")

        self.begin("check the package on disk with bsztool")
        self.check_package(send_pic, receive_pic)

        self.begin("load the package back through the options list")
        app.expect_window(lambda: app.click(*CBO_OPTIONS), wait_focus=False)
        time.sleep(0.15)
        dialog, name = app.expect_window(lambda: app.keys("Home", "Down", "Down", "Return"))  # from the first item, wherever the list stands
        expect("Help" not in name, f"the options list opened '{name}' instead of the open dialog")
        app.type_text(self.package)
        box, _ = app.expect_window(lambda: app.keys("Return"), name="Brindleway - Skin Framewright", timeout=30)
        expect(dialog not in app.visible_windows(), "the open dialog stayed open")
        app.screen_shot(os.path.join(self.out, "e2e-05-message.png"))
        app.keys("Return")
        app.wait_gone(box)
        image = self.shot("e2e-05-loaded.png")
        expect(image.at(*on("Send", 5, 250)) == SEND_GROUND, "the Send picture did not come back")
        expect(image.at(*on("Receive", 5, 200)) == RECEIVE_GROUND, "the Receive picture did not come back")
        self.check_areas_on_screen(image, "after the load")
        self.check_colours_on_screen(image, "after the load")
        expect(ink(image, TXT_SKIN_NAME) > 60 and ink(image, TXT_SKIN_AUTHOR) > 60, "name or author box is empty")
        unpacked = [d for d in os.listdir(self.program_tmp) if re.fullmatch(r"\d{14}", d)]
        expect(len(unpacked) == 1, f"expected one unpacked package folder, found {unpacked}")

        self.begin("the close button ends the program at once")
        app.click(*IMG_CLOSE)
        deadline = time.monotonic() + 10
        while app.process.poll() is None and time.monotonic() < deadline:
            time.sleep(0.05)
        expect(app.process.poll() == 0, f"the program did not end cleanly ({app.process.poll()})")

    def window_rect(self, side, kind):
        """An area's rectangle in window pixels (x, y, width, height), unrounded."""
        left, top, width, height = self.expected[(side, kind)]
        ox, oy = on(side, 0, 0)
        return ox + left / TWIPS, oy + top / TWIPS, width / TWIPS, height / TWIPS

    def check_box(self, image, side, kind, when):
        """A drawn box: a one-pixel black border around the silver hatch, the picture between."""
        x, y, w, h = self.window_rect(side, kind)
        x0, y0, w, h = int(round(x)), int(round(y)), int(w), int(h)
        share = image.count(x0 + 2, y0 + 2, w - 4, h - 4, lambda p: p == SILVER) / ((w - 4) * (h - 4))
        expect(0.08 < share < 0.2, f"{side} {kind} {when}: {share:.0%} of the box is hatched")
        border = image.count(x0 + 2, y0 - 1, w - 4, 3, lambda p: p == BLACK)
        expect(border >= w - 4, f"{side} {kind} {when}: no top border near y {y0}")

    def check_no_box(self, image, rect, when):
        """Where a box was, only the pictures show, its border's row and column included."""
        x, y, w, h = (int(round(v)) for v in rect)
        changed = [(i, j) for i in range(x - 1, x + w + 1) for j in range(y - 1, y + h + 1)
                   if image.at(i, j) != self.pictures_only.at(i, j)]
        expect(not changed, f"{when}: a box still shows at {x},{y} ({len(changed)} pixels differ)")

    def check_areas_on_screen(self, image, when):
        for side, kind, _ in DRAGS:
            if (side, kind) not in TEXT_FIELDS:  # a text field shows as its label instead
                self.check_box(image, side, kind, when)
        # The boxes dragged past an edge end on it: beyond, the window is as with the pictures only.
        x, y, w, h = self.window_rect("Send", "Send")
        right = on("Send", 362, 0)[0]
        expect(round(x + w) == right, f"the Send Send box ends at x {x + w}, not on the edge")
        x, y, w, h = self.window_rect("Receive", "Okay")
        bottom = on("Receive", 0, 219)[1]
        expect(round(y + h) == bottom, f"the Receive Okay box ends at y {y + h}, not on the edge")
        for spot in ((right + 1, int(y + h / 2)), (right + 3, int(y + h / 2)), (int(x + w / 2), bottom + 1),
                     (int(x + w / 2), bottom + 3)):
            expect(image.at(*spot) == self.pictures_only.at(*spot), f"{when}: a box reaches past its picture at {spot}")

    def check_colours_on_screen(self, image, when):
        for side, kind, colour in (("Send", "Message", SEND_MESSAGE_BACK), ("Send", "User List", USER_LIST_BACK),
                                   ("Receive", "Message", "#E0E0E0")):
            x, y, w, h = self.window_rect(side, kind)
            got = image.at(int(x + w) - 4, int(y + h) - 4)
            expect(got == colour, f"{side} {kind} back colour {when} is {got}, not {colour}")
        # The Date label is transparent: its caption shows in red over the picture's ground.
        x, y, w, h = (int(v) for v in self.window_rect("Receive", "Date"))
        red = image.count(x, y, w, h, lambda p: p[0] > p[2] + 60 and p[0] > p[1] + 60)
        expect(red > 15, f"the Receive Date caption {when} shows {red} red pixels")

    def check_package(self, send_pic, receive_pic):
        verify = subprocess.run([self.args.bsztool, "verify", self.package], capture_output=True, text=True)
        expect(verify.returncode == 0 and "OK" in verify.stdout, f"bsztool verify: {verify.stdout}{verify.stderr}")
        unpack_dir = os.path.join(self.work, "unpacked")
        os.makedirs(unpack_dir)
        run([self.args.bsztool, "unpack", self.package, unpack_dir])
        bsi = glob.glob(os.path.join(unpack_dir, "**", "*.bsi"), recursive=True)
        expect([os.path.basename(p) for p in bsi] == ["HarbourBlue.bsi"], f"information files: {bsi}")
        folder = os.path.dirname(bsi[0])
        for packed, original in (("send skin.bmp", send_pic), ("recv-01.bmp", receive_pic)):
            expect(filecmp.cmp(os.path.join(folder, packed), original, shallow=False), f"{packed} differs when packed")
        with open(bsi[0], "rb") as f:
            raw = f.read()
        expect(b"\n" not in raw.replace(b"\r\n", b""), "lines do not end in CR LF")
        ini = configparser.ConfigParser(interpolation=None, delimiters=("=",))
        ini.optionxform = str
        ini.read_string(raw.decode("cp1252"))
        order = ini.sections()
        expect(order == ["Global", "Send Colours", *SECTIONS["Send"], "Recieve Colours", *SECTIONS["Receive"]],
               f"sections: {order}")
        expect(sum(len(ini[s]) for s in order) == 78, "the file does not hold 78 keys")
        g = ini["Global"]
        expect((g["Skin Name"], g["Skin Author"], g["Skin Send Image"], g["Skin Recieve Image"]) ==
               (SKIN_NAME, SKIN_AUTHOR, "send skin.bmp", "recv-01.bmp"), f"[Global]: {dict(g)}")
        expect(re.fullmatch(r"(0[1-9]|1[0-2]):[0-5]\d (AM|PM)", g["Skin Creation Time"]) is not None and
               re.fullmatch(r"[A-Z][a-z]{2}-\d\d-\d{4}", g["Skin Creation Date"]) is not None,
               f"creation time and date {g['Skin Creation Time']!r} {g['Skin Creation Date']!r}")
        colours = {("Send Colours", "Message Back Colour"): ole(SEND_MESSAGE_BACK),
                   ("Send Colours", "Message Text Colour"): INITIAL_TEXT,
                   ("Send Colours", "User List Back Colour"): ole(USER_LIST_BACK),
                   ("Send Colours", "User List Text Colour"): INITIAL_TEXT,
                   ("Recieve Colours", "Message Back Colour"): INITIAL_BACK,
                   ("Recieve Colours", "Date Text Colour"): ole(RECEIVE_DATE_TEXT),
                   ("Recieve Colours", "Sender Text Colour"): INITIAL_TEXT}
        for (section, key), value in colours.items():
            expect(ini[section][key] == str(value), f"{section}/{key} = {ini[section][key]}, expected {value}")
        for side in MENUS:
            ox, oy = PICTURES[side]["origin"]
            for kind, section in zip(MENUS[side], SECTIONS[side]):
                want = self.expected.get((side, kind), [-ox, -oy, 0, 0])
                got = [int(ini[section][k]) for k in ("Left", "Top", "Width", "Height")]
                expect(got == want, f"[{section}] Left/Top/Width/Height = {got}, expected {want}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    for option in ("--app", "--bsztool", "--out"):
        parser.add_argument(option, required=True)
    args = parser.parse_args()
    for folder in (os.environ.get("TMPDIR"), args.out):  # the test's own temporary folder may not exist yet
        if folder:
            os.makedirs(folder, exist_ok=True)
    for old in glob.glob(os.path.join(args.out, "e2e-*.png")):
        os.remove(old)
    status = run_session(lambda *_: Session(args), [Xvfb()], os.path.join(args.out, "e2e-failure.png"))
    print("passed" if status == 0 else "failed")
    return status


if __name__ == "__main__":
    sys.exit(main())

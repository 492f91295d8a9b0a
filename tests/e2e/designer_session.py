#!/usr/bin/env python3
"""A designer's whole session with the real program, worked only through real X input.

Both side pictures are loaded through the open dialog, text fields and buttons are dragged and
named on both sides (one drag runs past the Send picture's right edge, one past the Receive
picture's bottom edge), a button area is nudged with the arrow pad, two colours are set through
the colour dialog, the name and author are typed, the package is created through the save
dialog, "Create Another?" is answered Yes (the window starts anew, empty), and the package is
loaded back through the options list. Checked: the package verifies, the skin information
file inside it holds exactly the rectangles that the drags make under the drawing rules, the
colours, names and picture names, the pictures come back byte for byte, and the screen after
the load shows the pictures, the boxes, the labels and their colours again.

    designer_session.py --app PROGRAM --bsztool BSZTOOL --out BUILD_FOLDER

Screenshots e2e-01 ... e2e-05 stay in the build folder; on failure the step is named and a
full-screen e2e-failure.png is kept as well.
"""

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
from xdriver import App, DriverError, Xvfb, run  # noqa: E402

TITLE = "Brindleway Skin Framewright"
LOAD_TITLE = "Brindleway - Skin Framewright"  # the load messages
TWIPS = 15  # twips per pixel


def px(twips):
    return twips // TWIPS


# Element centres in window pixels, from the window's element layout (twips / 15).
def centre(left, top, width, height):
    return px(left) + px(width) // 2, px(top) + px(height) // 2


IMG_SEND_LOAD = centre(5340, 4695, 255, 270)
IMG_RECEIVE_LOAD = centre(11160, 4125, 255, 270)
TXT_SKIN_NAME = centre(1440, 5235, 2370, 288)
TXT_SKIN_AUTHOR = centre(1440, 5625, 2370, 288)
CMD_CREATE = centre(5115, 5250, 390, 450)
IMG_TEXT = centre(6075, 4665, 390, 330)
IMG_COLOR_SELECT = centre(7530, 4665, 390, 330)
PIC_PREVIEW = centre(8010, 4695, 330, 270)
IMG_ARR_RIGHT = centre(8820, 4665, 195, 195)
CBO_OPTIONS = (px(8415) + px(2835) // 2, px(30) + 8)
BARE_BACKGROUND = (300, 20)  # where the pointer rests for a screenshot

# The side pictures: origin and size in twips, and the pixel size that shows 1:1.
PICTURES = {
    "Send": {"origin": (285, 765), "size": (5430, 3870)},
    "Receive": {"origin": (6135, 765), "size": (5430, 3285)},
}


def on(side, x, y):
    """Window pixel of the picture pixel (x, y) of a side's frame (shown 1:1)."""
    ox, oy = PICTURES[side]["origin"]
    return px(ox) + x, px(oy) + y


MENUS = {
    "Send": ["User List", "Message", "All", "None", "Cut", "Send", "Close", "Options"],
    "Receive": ["Date", "Sender", "Message", "Okay", "Yes", "No", "Reply", "Close"],
}
SECTIONS = {
    "Send": ["Send User List", "Send Message", "Send All", "Send None", "Send Cut", "Send Send",
             "Send Close", "Send Options"],
    "Receive": ["Recieve Date", "Recieve Sender", "Recieve Message", "Recieve OK", "Recieve Yes",
                "Recieve No", "Recieve Reply", "Recieve Close"],
}
TEXT_FIELDS = {("Send", "User List"), ("Send", "Message"), ("Receive", "Date"),
               ("Receive", "Sender"), ("Receive", "Message")}

# The drags, in picture pixels: press point, then every pointer movement; the release is at
# the last movement. Two run past a picture's edge to exercise the clipping.
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
NUDGED = ("Send", "All")  # moved one step right with the arrow pad: Left + 10 twips
SEND_MESSAGE_BACK = "#2E8B57"
RECEIVE_DATE_TEXT = "#C01020"
SKIN_NAME = "Harbour Blue"
SKIN_AUTHOR = "Ostervale Studio"
INITIAL_BACK = 14737632     # the editor's initial back colour (0x00E0E0E0)
INITIAL_TEXT = -2147483640  # the editor's initial text colour (a system colour)

# Picture colours: flat grounds with a dark block each, so every spot is known.
SEND_GROUND, SEND_BLOCK = "#5080C0", "#203060"
RECEIVE_GROUND, RECEIVE_BAR = "#D8E8F0", "#304050"


def ole(html):
    """The OLE colour 0x00BBGGRR of an '#RRGGBB' text, as the file's signed decimal."""
    r, g, b = (int(html[i:i + 2], 16) for i in (1, 3, 5))
    return (b << 16) | (g << 8) | r


def extend_axis(size, start, pointer, anchor, picture_start, picture_size):
    """One axis of a drag movement: the box grows from its anchor, never turns over, and is
    pinned to the picture's far edge by the movement after the one that crosses it."""
    d = pointer - anchor
    picture_end = picture_start + picture_size
    if d < size:
        return d if d >= 0 else size
    if picture_end > start + size:
        return d
    return picture_end - start


def expected_rect(side, path):
    """The picture-relative rectangle, in twips, that the drags' movements leave."""
    (x0, y0), moves = path[0], path[1:]
    ox, oy = PICTURES[side]["origin"]
    pw, ph = PICTURES[side]["size"]
    ax, ay = x0 * TWIPS, y0 * TWIPS
    left, top = ox + ax, oy + ay
    width = height = 0
    for x, y in moves:
        width = extend_axis(width, left, x * TWIPS, ax, ox, pw)
        height = extend_axis(height, top, y * TWIPS, ay, oy, ph)
    return [left - ox, top - oy, width, height]


class Step:
    """Numbered progress lines; the current step is named when the session fails."""

    def __init__(self):
        self.number = 0
        self.name = "start"
        self.started = time.monotonic()

    def __call__(self, name):
        self.number += 1
        self.name = name
        print(f"[e2e {time.monotonic() - self.started:5.1f}s] step {self.number}: {name}", flush=True)

    def note(self, text):
        print(f"           {text}", flush=True)


class Check(Exception):
    pass


def expect(condition, message):
    if not condition:
        raise Check(message)


def make_pictures(folder):
    """A Send picture of 362 x 258 and a Receive picture of 362 x 219 pixels, shown 1:1."""
    send = os.path.join(folder, "send skin.bmp")
    receive = os.path.join(folder, "recv-01.bmp")
    run(["convert", "-size", "362x258", f"xc:{SEND_GROUND}", "-fill", SEND_BLOCK,
         "-draw", "rectangle 220,60 290,140", "-type", "TrueColor", f"BMP3:{send}"])
    run(["convert", "-size", "362x219", f"xc:{RECEIVE_GROUND}", "-fill", RECEIVE_BAR,
         "-draw", "rectangle 150,160 230,210", "-type", "TrueColor", f"BMP3:{receive}"])
    return send, receive


class Session:
    def __init__(self, args, step):
        self.args = args
        self.step = step
        self.out = args.out
        self.work = tempfile.mkdtemp(prefix="designer-")
        # The program's own temporary folder (unpacked packages) lies inside the work folder.
        self.program_tmp = os.path.join(self.work, "program tmp")
        os.makedirs(self.program_tmp)
        self.pictures = os.path.join(self.work, "pictures dir")
        os.makedirs(self.pictures)
        self.package = os.path.join(self.work, "SKIN01.bsz")
        env = dict(os.environ, TMPDIR=self.program_tmp)
        self.app = App(args.app, TITLE, env=env, log_path=os.path.join(self.out, "e2e-program.log"))
        self.enabled = {side: [True] * 8 for side in MENUS}
        self.expected = {}

    def shot(self, name):
        self.app.move(*BARE_BACKGROUND)
        time.sleep(0.3)  # the last repaint lands
        path = os.path.join(self.out, name)
        image = self.app.screenshot(path)
        self.step.note(f"screenshot {path}")
        return image

    # Steps ---------------------------------------------------------------------------------

    def load_picture(self, button, path):
        dialog, _ = self.app.expect_window(lambda: self.app.click(*button), what="the open dialog")
        self.app.type_text(path)
        self.app.keys("Return")
        self.app.wait_gone(dialog)

    def draw(self, side, kind, path):
        points = [on(side, x, y) for x, y in path]
        menu, _ = self.app.expect_window(lambda: self.app.drag(points), wait_focus=False,
                                         what=f"the {side} name menu")
        time.sleep(0.15)  # the menu takes the keyboard right after it shows
        index = MENUS[side].index(kind)
        expect(self.enabled[side][index], f"{side} {kind} is already named")
        downs = sum(self.enabled[side][:index + 1])  # the keyboard skips disabled items
        self.app.keys(*(["Down"] * downs), "Return")
        self.app.wait_gone(menu)
        self.enabled[side][index] = False
        self.expected[(side, kind)] = expected_rect(side, path)

    def choose_colour(self, html):
        """The colour dialog by keyboard: Alt+H focuses its HTML field, Return accepts."""
        dialog, _ = self.app.expect_window(lambda: self.app.click(*IMG_COLOR_SELECT), name="Select Color")
        self.app.keys("alt+h")  # the HTML field
        self.app.keys("ctrl+a")
        self.app.type_text(html)
        time.sleep(0.2)
        self.app.screen_shot(os.path.join(self.out, f"e2e-03-dialog-{html[1:]}.png"))
        self.app.keys("Return")
        self.app.wait_gone(dialog)

    # The session ---------------------------------------------------------------------------

    def run(self):
        step, app = self.step, self.app

        step("make the test pictures and start the program on its own Xvfb")
        send_pic, receive_pic = make_pictures(self.pictures)
        app.start()
        expect(app.size == (792, 409), f"the main window is {app.size}, not 792 x 409")
        step.note(f"window {app.window} at {app.origin}")

        step("load the Send and Receive pictures through the open dialog")
        before = set(app.visible_windows())
        self.load_picture(IMG_SEND_LOAD, send_pic)
        self.load_picture(IMG_RECEIVE_LOAD, receive_pic)
        expect(set(app.visible_windows()) == before, "a window is left open after the pictures")
        image = self.shot("e2e-01-pictures.png")
        self.pictures_only = image
        expect(image.at(*on("Send", 5, 5)) == SEND_GROUND, "Send picture ground not shown")
        expect(image.at(*on("Send", 250, 100)) == SEND_BLOCK, "Send picture block not shown 1:1")
        expect(image.at(*on("Receive", 5, 5)) == RECEIVE_GROUND, "Receive picture ground not shown")
        expect(image.at(*on("Receive", 190, 190)) == RECEIVE_BAR, "Receive picture bar not shown 1:1")

        step("drag and name five areas on each side through the name menus")
        for side, kind, path in DRAGS:
            self.draw(side, kind, path)
            step.note(f"{side} {kind}: picture-relative {self.expected[(side, kind)]} twips")
        image = self.shot("e2e-02-areas.png")
        self.check_areas_on_screen(image, "after drawing")

        step("select the Send All box and nudge it one step right with the arrow pad")
        left, top, width, height = self.expected[NUDGED]
        app.click(*on("Send", (left + width // 2) // TWIPS, (top + height // 2) // TWIPS))
        time.sleep(0.1)
        app.click(*IMG_ARR_RIGHT)
        self.expected[NUDGED][0] += 10

        step("set the Send Message back colour and the Receive Date text colour in the colour dialog")
        ml, mt, mw, mh = self.expected[("Send", "Message")]
        app.click(*on("Send", (ml + mw) // TWIPS - 10, (mt + mh) // TWIPS - 10))  # lblSendMessage
        self.choose_colour(SEND_MESSAGE_BACK)
        dl, dt, dw, dh = self.expected[("Receive", "Date")]
        app.click(*on("Receive", (dl + dw) // TWIPS - 5, (dt + dh) // TWIPS - 5))  # lblReceiveDate
        app.click(*IMG_TEXT)
        self.choose_colour(RECEIVE_DATE_TEXT)
        image = self.shot("e2e-03-colour.png")
        self.check_colours_on_screen(image, "after the colour dialog")
        expect(image.at(*PIC_PREVIEW) == RECEIVE_DATE_TEXT, f"the swatch shows {image.at(*PIC_PREVIEW)}")

        step("type the skin name and author")
        app.click(*TXT_SKIN_NAME)
        app.type_text(SKIN_NAME)
        app.click(*TXT_SKIN_AUTHOR)
        app.type_text(SKIN_AUTHOR)

        step("create the package through the save dialog and answer Yes to 'Create Another?'")
        dialog, _ = app.expect_window(lambda: app.click(*CMD_CREATE), name="Save Skin Package")
        app.type_text(self.package)
        box, _ = app.expect_window(lambda: app.keys("Return"), name="Ostervale Skin Fwt.", timeout=30)
        expect(dialog not in app.visible_windows(), "the save dialog stayed open")
        app.screen_shot(os.path.join(self.out, "e2e-04-question.png"))
        app.keys("Return")  # Yes: the window starts anew
        app.wait_gone(box)
        app.find_main_window()
        image = self.shot("e2e-04-created.png")
        expect(os.path.isfile(self.package), f"no package at {self.package}")
        self.check_started_anew(image)
        left_over = [d for d in os.listdir(self.program_tmp) if re.fullmatch(r"\d{14}", d)]
        expect(not left_over, f"the temporary skin folder stayed behind: {left_over}")

        step("check the package on disk with bsztool")
        self.check_package(send_pic, receive_pic)

        step("load the package back through the options list")
        app.expect_window(lambda: app.click(*CBO_OPTIONS), wait_focus=False)  # the list drops down
        time.sleep(0.15)
        dialog, name = app.expect_window(lambda: app.keys("Down", "Down", "Return"))
        expect("Help" not in name, f"the options list opened '{name}' instead of the open dialog")
        app.type_text(self.package)
        box, _ = app.expect_window(lambda: app.keys("Return"), name=LOAD_TITLE, timeout=30)
        expect(dialog not in app.visible_windows(), "the open dialog stayed open")
        app.screen_shot(os.path.join(self.out, "e2e-05-message.png"))
        app.keys("Return")
        app.wait_gone(box)
        image = self.shot("e2e-05-loaded.png")

        step("check the screen after the load")
        expect(image.at(*on("Send", 5, 250)) == SEND_GROUND, "the Send picture did not come back")
        expect(image.at(*on("Receive", 5, 200)) == RECEIVE_GROUND, "the Receive picture did not come back")
        self.check_areas_on_screen(image, "after the load")
        self.check_colours_on_screen(image, "after the load")
        name_ink, author_ink = _ink(image, TXT_SKIN_NAME), _ink(image, TXT_SKIN_AUTHOR)
        expect(name_ink > 60 and author_ink > 60,
               f"name and author boxes look empty ({name_ink}, {author_ink} dark pixels)")
        unpacked = [d for d in os.listdir(self.program_tmp) if re.fullmatch(r"\d{14}", d)]
        expect(len(unpacked) == 1, f"expected one unpacked package folder, found {unpacked}")
        step.note(f"unpacked into {os.path.join(self.program_tmp, unpacked[0])}")

        step("close the program with its close button")
        app.click(px(11580) + 7, px(60) + 8)
        deadline = time.monotonic() + 10
        while app.process.poll() is None and time.monotonic() < deadline:
            time.sleep(0.05)
        expect(app.process.poll() == 0, f"the program did not end cleanly ({app.process.poll()})")

    # Checks --------------------------------------------------------------------------------

    def window_rect(self, side, kind):
        """The area's rectangle in window pixels: x, y, width, height (rounded down)."""
        left, top, width, height = self.expected[(side, kind)]
        ox, oy = on(side, 0, 0)
        return ox + left / TWIPS, oy + top / TWIPS, width / TWIPS, height / TWIPS

    def check_areas_on_screen(self, image, when):
        for side, kind, _ in DRAGS:
            x, y, w, h = self.window_rect(side, kind)
            x0, y0 = int(round(x)), int(round(y))
            if (side, kind) in TEXT_FIELDS:
                continue  # a text field shows as its label: checked with the colours
            # A button area: a one-pixel border and the silver hatch inside, the picture between.
            inner = (x0 + 2, y0 + 2, int(w) - 4, int(h) - 4)
            silver = image.count(*inner, lambda p: p == (0xC0, 0xC0, 0xC0))
            share = silver / (inner[2] * inner[3])
            expect(0.08 < share < 0.2, f"{side} {kind} {when}: {share:.0%} of the box is hatched "
                                        f"at {inner}")
            border = image.count(x0 + 2, y0 - 1, int(w) - 4, 3, lambda p: p == (0, 0, 0))
            expect(border >= int(w) - 4, f"{side} {kind} {when}: no top border near y {y0}")
        # The boxes dragged past a picture's edge end on that edge: beyond it the window is as
        # it was before any area was drawn.
        x, y, w, h = self.window_rect("Send", "Send")
        right = on("Send", 362, 0)[0]
        expect(round(x + w) == right, f"the Send Send box ends at x {x + w}, not on the edge")
        for dx in (1, 3):
            spot = (right + dx, int(y + h / 2))
            expect(image.at(*spot) == self.pictures_only.at(*spot),
                   f"{when}: the Send Send box reaches past the picture's right edge at {spot}")
        x, y, w, h = self.window_rect("Receive", "Okay")
        bottom = on("Receive", 0, 219)[1]
        expect(round(y + h) == bottom, f"the Receive Okay box ends at y {y + h}, not on the edge")
        for dy in (1, 3):
            spot = (int(x + w / 2), bottom + dy)
            expect(image.at(*spot) == self.pictures_only.at(*spot),
                   f"{when}: the Receive Okay box reaches past the picture's bottom edge at {spot}")

    def check_colours_on_screen(self, image, when):
        def inside(side, kind, dx, dy):
            x, y, w, h = self.window_rect(side, kind)
            return int(x + w) - dx, int(y + h) - dy

        got = image.at(*inside("Send", "Message", 4, 4))
        expect(got == SEND_MESSAGE_BACK, f"lblSendMessage back colour {when} is {got}")
        got = image.at(*inside("Send", "User List", 4, 4))
        expect(got == "#E0E0E0", f"lblSendUsers back colour {when} is {got}")
        got = image.at(*inside("Receive", "Message", 4, 4))
        expect(got == "#E0E0E0", f"lblReceiveMess back colour {when} is {got}")
        # The Date label is transparent: its caption shows in red over the picture's ground.
        x, y, w, h = self.window_rect("Receive", "Date")
        red = image.count(int(x), int(y), int(w), int(h), lambda p: p[0] > p[2] + 60 and p[0] > p[1] + 60)
        expect(red > 15, f"the Receive Date caption {when} shows {red} red pixels")

    def check_started_anew(self, image):
        for where, point, colour in (("Send", on("Send", 5, 5), SEND_GROUND),
                                     ("Receive", on("Receive", 5, 5), RECEIVE_GROUND)):
            expect(image.at(*point) != colour, f"the {where} picture is still shown after 'Yes'")
        for side, kind, _ in DRAGS:
            x, y, w, h = self.window_rect(side, kind)
            inner = (int(x) + 2, int(y) + 2, int(w) - 4, int(h) - 4)
            silver = image.count(*inner, lambda p: p == (0xC0, 0xC0, 0xC0))
            light = image.count(*inner, lambda p: p in ((0xE0, 0xE0, 0xE0), (0x2E, 0x8B, 0x57)))
            expect(silver < 5 and light < 5, f"{side} {kind} is still on screen after 'Yes'")
        name_ink, author_ink = _ink(image, TXT_SKIN_NAME), _ink(image, TXT_SKIN_AUTHOR)
        expect(name_ink < 10 and author_ink < 10,
               f"name and author boxes are not empty after 'Yes' ({name_ink}, {author_ink} dark pixels)")

    def check_package(self, send_pic, receive_pic):
        verify = subprocess.run([self.args.bsztool, "verify", self.package], capture_output=True, text=True)
        expect(verify.returncode == 0 and "OK" in verify.stdout,
               f"bsztool verify: status {verify.returncode}: {verify.stdout}{verify.stderr}")
        self.step.note(verify.stdout.strip().splitlines()[-1])
        unpack_dir = os.path.join(self.work, "unpacked")
        os.makedirs(unpack_dir)
        run([self.args.bsztool, "unpack", self.package, unpack_dir])
        bsi = glob.glob(os.path.join(unpack_dir, "**", "*.bsi"), recursive=True)
        expect([os.path.basename(p) for p in bsi] == ["HarbourBlue.bsi"], f"information files: {bsi}")
        folder = os.path.dirname(bsi[0])
        expect(filecmp.cmp(os.path.join(folder, "send skin.bmp"), send_pic, shallow=False),
               "the packed Send picture differs from the original")
        expect(filecmp.cmp(os.path.join(folder, "recv-01.bmp"), receive_pic, shallow=False),
               "the packed Receive picture differs from the original")

        with open(bsi[0], "rb") as f:
            raw = f.read()
        expect(b"\r\n" in raw and b"\n" not in raw.replace(b"\r\n", b""), "lines do not end in CR LF")
        ini = configparser.ConfigParser(interpolation=None, delimiters=("=",))
        ini.optionxform = str
        ini.read_string(raw.decode("cp1252"))
        order = [s for s in ini.sections()]
        expect(order == ["Global", "Send Colours", *SECTIONS["Send"], "Recieve Colours", *SECTIONS["Receive"]],
               f"sections: {order}")
        expect(sum(len(ini[s]) for s in order) == 78, "the file does not hold 78 keys")
        g = ini["Global"]
        expect(g["Skin Name"] == SKIN_NAME and g["Skin Author"] == SKIN_AUTHOR,
               f"name/author: {g['Skin Name']!r}/{g['Skin Author']!r}")
        expect(g["Skin Send Image"] == "send skin.bmp" and g["Skin Recieve Image"] == "recv-01.bmp",
               f"pictures: {g['Skin Send Image']!r}, {g['Skin Recieve Image']!r}")
        expect(re.fullmatch(r"(0[1-9]|1[0-2]):[0-5]\d (AM|PM)", g["Skin Creation Time"]) is not None,
               f"creation time {g['Skin Creation Time']!r}")
        expect(re.fullmatch(r"[A-Z][a-z]{2}-\d\d-\d{4}", g["Skin Creation Date"]) is not None,
               f"creation date {g['Skin Creation Date']!r}")
        colours = {
            ("Send Colours", "Message Back Colour"): ole(SEND_MESSAGE_BACK),
            ("Send Colours", "Message Text Colour"): INITIAL_TEXT,
            ("Send Colours", "User List Back Colour"): INITIAL_BACK,
            ("Send Colours", "User List Text Colour"): INITIAL_TEXT,
            ("Recieve Colours", "Message Back Colour"): INITIAL_BACK,
            ("Recieve Colours", "Message Text Colour"): INITIAL_TEXT,
            ("Recieve Colours", "Date Text Colour"): ole(RECEIVE_DATE_TEXT),
            ("Recieve Colours", "Sender Text Colour"): INITIAL_TEXT,
        }
        for (section, key), value in colours.items():
            expect(ini[section][key] == str(value), f"{section}/{key} = {ini[section][key]}, expected {value}")
        for side in MENUS:
            ox, oy = PICTURES[side]["origin"]
            for kind, section in zip(MENUS[side], SECTIONS[side]):
                want = self.expected.get((side, kind), [-ox, -oy, 0, 0])
                got = [int(ini[section][k]) for k in ("Left", "Top", "Width", "Height")]
                expect(got == want, f"[{section}] Left/Top/Width/Height = {got}, expected {want}")
        self.step.note("HarbourBlue.bsi: 19 sections, 78 keys, rectangles and colours as drawn")


def _ink(image, centre_point):
    """Dark pixels of a text box's inner part: its typed text."""
    x, y = centre_point
    return image.count(x - 75, y - 7, 150, 14, lambda p: sum(p) < 300)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--app", required=True)
    parser.add_argument("--bsztool", required=True)
    parser.add_argument("--out", required=True, help="build folder for the screenshots")
    parser.add_argument("--keep", action="store_true", help="keep the work folder")
    args = parser.parse_args()
    # The test's own temporary folder (given through TMPDIR) may not exist yet.
    if os.environ.get("TMPDIR"):
        os.makedirs(os.environ["TMPDIR"], exist_ok=True)
    os.makedirs(args.out, exist_ok=True)
    for pattern in ("e2e-0*.png", "e2e-failure.png", "unexpected-*.png"):
        for old in glob.glob(os.path.join(args.out, pattern)):
            os.remove(old)

    step = Step()
    session = None
    ok = False
    try:
        with Xvfb():
            session = Session(args, step)
            try:
                session.run()
                ok = True
            except (Check, DriverError, subprocess.SubprocessError, OSError) as error:
                print(f"FAILED at step {step.number} ({step.name}): {error}", file=sys.stderr)
                try:
                    failure = os.path.join(args.out, "e2e-failure.png")
                    session.app.screen_shot(failure)
                    print(f"screen at the failure: {failure}", file=sys.stderr)
                except (DriverError, OSError):
                    pass
                log = session.app.log_path
                if log and os.path.exists(log) and os.path.getsize(log):
                    with open(log) as f:
                        print("program output:\n" + f.read()[-3000:], file=sys.stderr)
            finally:
                session.app.stop()
    except DriverError as error:
        print(f"FAILED to set up X: {error}", file=sys.stderr)
    finally:
        if session is not None:
            if ok and not args.keep:
                shutil.rmtree(session.work, ignore_errors=True)
            else:
                print(f"work folder kept: {session.work}", file=sys.stderr)
    if ok:
        print(f"[e2e {time.monotonic() - step.started:5.1f}s] passed; screenshots in {args.out}")
    return 0 if ok else 1


if __name__ == "__main__":
    sys.exit(main())

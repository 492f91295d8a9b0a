#!/usr/bin/env python3
"""The real program as a native Wayland client on a private headless sway, worked only through
input on the compositor's own path (a virtual pointer, a virtual keyboard): the window appears
undecorated at its size, a drag on its background moves it by the drag's distance, a picture
loads through the open dialog, an area is drawn and named through the pop-up menu, the picker
over a colour chip colours the selected label (and, released where the session lets nothing be
read, changes nothing), once a desktop portal answers a click on the picker takes the colour
the portal picked, a package is created and loads back with the same values, and files dragged
from another program are refused or taken at the drop.

    wayland_session.py --app PROGRAM --bsztool BSZTOOL --fake-portal FAKE_PORTAL --drag-source DRAG_SOURCE
                       --out BUILD_FOLDER

Screenshots stay in the build folder (wayland-*.png); on failure the step is named."""

import argparse
import configparser
import glob
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "lib"))
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from designer_session import (BARE_BACKGROUND, CBO_OPTIONS, CMD_CREATE, IMG_ARR_RIGHT, IMG_CLOSE, IMG_PICKER,  # noqa: E402
                              IMG_RECEIVE_LOAD, IMG_SEND_LOAD, PIC_PREVIEW, RED_CHIP, TITLE, TXT_SKIN_AUTHOR, TXT_SKIN_NAME,
                              TWIPS, expected_rect, ink, ole, on)
from session import expect, run_session  # noqa: E402
from wldriver import Sway, WaylandApp, windows  # noqa: E402
from xdriver import poll, run  # noqa: E402

SEND_GROUND, SEND_BLOCK, RECEIVE_GROUND, DROPPED_GROUND = "#5080C0", "#203060", "#D8E8F0", "#806040"
USER_LIST = ("Send", "User List", [(20, 20), (60, 60), (110, 100), (150, 130)])
CHIP_COLOUR = "#FF0000"
PORTAL_RGB, PORTAL_COLOUR = ("0.2", "0.6", "0.4"), "#339966"  # what the fake desktop portal picks
# A session bus of the test's own, with no service folders: nothing on it starts a real portal.
BUS_CONFIG = """<busconfig><type>session</type><listen>unix:tmpdir={folder}</listen><auth>EXTERNAL</auth>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/>
<allow own="*"/></policy></busconfig>"""
TOOLTIP = "#FFFFDC"  # the tooltips' ground
INITIAL_BACK = "#E0E0E0"  # the User List's start back colour, 0x00E0E0E0
SKIN_NAME, SKIN_AUTHOR = "Tidewater", "Ostervale Studio"
IMG_MIN = (11310 + 112) // TWIPS, (60 + 120) // TWIPS
HELP_TITLE = f"Help - {TITLE}"


class Session:
    def __init__(self, args, sway):
        self.args, self.out, self.step = args, args.out, "start"
        self.work = tempfile.mkdtemp(prefix="wayland-")
        self.program_tmp = os.path.join(self.work, "tmp")
        os.makedirs(self.program_tmp)
        self.package = os.path.join(self.work, "TIDE01.bsz")
        self.bus, self.portal = self.start_bus(), None
        self.app = WaylandApp(sway, args.app, TITLE,
                              dict(os.environ, TMPDIR=self.program_tmp, DBUS_SESSION_BUS_ADDRESS=self.bus_address),
                              os.path.join(self.out, "wayland-program.log"))

    def start_bus(self):
        config = os.path.join(self.work, "bus.conf")
        with open(config, "w") as f:
            f.write(BUS_CONFIG.format(folder=self.work))
        bus = subprocess.Popen(["dbus-daemon", f"--config-file={config}", "--nofork", "--print-address"],
                               stdout=subprocess.PIPE, text=True)
        self.bus_address = bus.stdout.readline().strip()
        return bus

    def start_portal(self):
        self.portal = subprocess.Popen([self.args.fake_portal, *PORTAL_RGB], stdout=subprocess.PIPE, text=True,
                                       env=dict(os.environ, DBUS_SESSION_BUS_ADDRESS=self.bus_address))
        expect(self.portal.stdout.readline().strip() == "ready", "the fake portal did not come up")

    def close(self):
        for process in (self.portal, self.bus):
            if process is not None and process.poll() is None:
                process.kill()
                process.wait()
        shutil.rmtree(self.work, ignore_errors=True)

    def begin(self, name):
        self.step = name
        print(f"[wayland] {name}", flush=True)

    def shot(self, name):
        """The main window, with the pointer resting on its bare background."""
        self.app.move(*BARE_BACKGROUND)
        time.sleep(0.3)  # the last repaint lands
        return self.app.screenshot(os.path.join(self.out, name))

    def label_rect(self):
        side, _, path = USER_LIST
        left, top, width, height = expected_rect(side, path)
        x, y = on(side, 0, 0)
        return x + left // TWIPS, y + top // TWIPS, width // TWIPS, height // TWIPS

    def label_back(self, image):
        """The User List label's back colour, near its lower right corner (away from its caption)."""
        x, y, w, h = self.label_rect()
        return image.at(x + w - 4, y + h - 4)

    def wait_label_back(self, colour, what):
        return poll(what, lambda: (lambda i: self.label_back(i) == colour and i)(
            self.app.screenshot(os.path.join(self.out, "wayland-poll.png"))))

    def tooltip_width(self, at):
        """Rests the pointer on an element and returns the width of the tooltip that shows."""
        self.app.move(*at)
        time.sleep(0.05)
        self.app.move(at[0] + 1, at[1])
        x, y = self.app.point(*at)

        def widest_row():
            image = self.app.screen_shot(os.path.join(self.out, "wayland-poll.png"))
            return max(sum(1 for xx in range(max(0, x - 300), image.width) if image.at(xx, yy) == TOOLTIP)
                       for yy in range(y + 8, min(image.height, y + 40), 4))
        return poll("a tooltip", lambda: (lambda w: w > 20 and w)(widest_row()))

    def run(self):
        app = self.app
        picture = os.path.join(self.work, "send skin.bmp")
        receive_picture = os.path.join(self.work, "recv.bmp")
        run(["convert", "-size", "724x516", f"xc:{SEND_GROUND}", "-fill", SEND_BLOCK, "-draw",
             "rectangle 440,120 580,280", "-type", "TrueColor", f"BMP3:{picture}"])
        run(["convert", "-size", "181x110", f"xc:{RECEIVE_GROUND}", "-type", "TrueColor", f"BMP3:{receive_picture}"])

        self.begin("start: one 792 x 409 window, no decorations")
        window = app.start()
        expect(app.size == (792, 409), f"the main window is {app.size}")
        expect(window["border"] in ("none", "csd") and window["deco_rect"]["height"] == 0,
               f"sway decorates the window: border {window['border']}, {window['deco_rect']}")
        time.sleep(0.3)
        x, y = app.origin
        screen = app.screen_shot(os.path.join(self.out, "wayland-00-start.png"))
        ground = Sway.BACKGROUND.upper()
        around = [(x - 1, y + 200), (x + 792, y + 200), (x + 400, y - 1), (x + 400, y + 409)]
        expect(all(screen.at(*p) == ground for p in around), "something is drawn around the window's edge")
        expect(screen.at(x + 400, y) != ground and screen.at(x, y + 200) != ground, "the window's edge is not its own")

        self.begin("the picker's tooltip says that it reads only this window (no portal in this session)")
        width = self.tooltip_width(IMG_PICKER)
        expect(width > 500, f"the picker's tooltip is {width} pixels wide, as if the screen could be read")

        self.begin("a left drag on the bare background moves the window by the drag's distance")
        bx, by = BARE_BACKGROUND
        app.drag([(bx, by), (bx + 100, by + 70)], steps=10)
        moved = (x + 100, y + 70)
        poll(f"the window at {moved}", lambda: app.find_main_window() and app.origin == moved, 5)

        self.begin("the help window: 680 x 272, moved by its title strip; a message box opens above it")
        app.click(*CBO_OPTIONS)
        time.sleep(0.4)  # the list's pop-up takes the keyboard
        help_window = app.expect_window(lambda: app.keys("Down", "Return"), name=HELP_TITLE)
        r = help_window["rect"]
        expect((r["width"], r["height"]) == (680, 272), f"the help window is {r['width']}x{r['height']}")
        strip = (r["x"] + 300 - app.origin[0], r["y"] + 8 - app.origin[1])  # its title strip, beside the title
        app.drag([strip, (strip[0] - 60, strip[1] - 40)], steps=8)
        moved = (r["x"] - 60, r["y"] - 40)
        poll(f"the help window at {moved}", lambda: any(
            (w["rect"]["x"], w["rect"]["y"]) == moved for w in app.own_windows() if w["name"] == HELP_TITLE), 5)
        # An arrow held with nothing selected shows its message: above the help window.
        box = app.expect_window(lambda: app.drag([IMG_ARR_RIGHT, IMG_ARR_RIGHT], held=lambda: time.sleep(0.3)),
                                name="Brindleway Skin Fwt.")
        stack = [w["name"] for w in app.own_windows()]
        expect(stack.index("Brindleway Skin Fwt.") > stack.index(HELP_TITLE), f"stacking, bottom to top: {stack}")
        app.keys("Return")
        app.wait_gone(box)
        help_window = next(w for w in app.own_windows() if w["name"] == HELP_TITLE)
        hx, hy = help_window["rect"]["x"], help_window["rect"]["y"]
        app.click(hx + 668 - app.origin[0], hy + 9 - app.origin[1])  # its own close button
        app.wait_gone(help_window)

        self.begin("minimise: sway keeps every window shown; the program goes on as before")
        app.click(*IMG_MIN)
        time.sleep(0.3)
        app.assert_running()
        expect(app.find_main_window()["rect"]["width"] == 792, "the main window changed")

        self.begin("load both pictures through the open dialog")
        for button, path, side, ground in ((IMG_SEND_LOAD, picture, "Send", SEND_GROUND),
                                           (IMG_RECEIVE_LOAD, receive_picture, "Receive", RECEIVE_GROUND)):
            dialog = app.expect_window(lambda: app.click(*button))
            app.type_text(path)
            app.keys("Return")
            app.wait_gone(dialog)
            poll(f"the {side} picture", lambda: self.shot("wayland-01-picture.png").at(*on(side, 5, 5)) == ground)

        self.begin("draw an area and name it Send User List through the pop-up menu")
        side, kind, path = USER_LIST
        before = self.shot("wayland-02-before-menu.png")
        px, py = on(side, *path[-1])  # the release point: the menu's top-left corner
        inside, outside = [(px + 3, py + 40), (px + 40, py + 3)], [(px - 3, py + 40), (px + 40, py - 3)]

        def menu_open():
            image = app.screenshot(os.path.join(self.out, "wayland-poll.png"))
            return all(image.at(*p) != before.at(*p) for p in inside) and image
        app.drag([on(side, x, y) for x, y in path])
        image = poll("the name menu", menu_open)
        expect(all(image.at(*p) == before.at(*p) for p in outside), "the name menu does not open at the pointer")
        time.sleep(0.2)  # the menu takes the keyboard right after it shows
        app.keys("Down", "Return")
        self.wait_label_back(INITIAL_BACK, "the User List label")

        self.begin("type name and author")
        app.click(*TXT_SKIN_NAME)
        app.type_text(SKIN_NAME)
        app.click(*TXT_SKIN_AUTHOR)
        app.type_text(SKIN_AUTHOR)
        poll("the typed name and author", lambda: (lambda i: ink(i, TXT_SKIN_NAME) > 40 and ink(i, TXT_SKIN_AUTHOR) > 40)(
            app.screenshot(os.path.join(self.out, "wayland-poll.png"))))

        self.begin("the picker over a colour chip colours the selected label's back with the chip's colour")
        # Held until a tick of the picker has sampled the chip: the swatch shows it.
        app.drag([IMG_PICKER, (560, 320), RED_CHIP], steps=4, held=lambda: poll(
            "the swatch in the chip's colour while held", lambda: app.screenshot(
                os.path.join(self.out, "wayland-poll.png")).at(*PIC_PREVIEW) == CHIP_COLOUR))
        image = self.wait_label_back(CHIP_COLOUR, "the label in the chip's colour")
        expect(image.at(*PIC_PREVIEW) == CHIP_COLOUR, f"the swatch shows {image.at(*PIC_PREVIEW)}")
        self.shot("wayland-03-chip.png")
        x, y = app.origin
        app.pointer.move(2, 2)  # sway draws the pointer into the shot
        time.sleep(0.2)
        app.screenshot(os.path.join(self.out, "screenshot-wayland.png"), (x - 24, y - 24, 792 + 48, 409 + 48))

        self.begin("released beside the program's windows, where nothing can be read, the picker stores nothing")
        # Nothing on screen tells when a tick has sampled the last place, so it is held a while:
        # the picker samples every millisecond or so.
        app.drag([IMG_PICKER, (400, 300), (600, 500), (700, 560)], steps=4, held=lambda: time.sleep(0.4))
        time.sleep(0.3)
        image = self.shot("wayland-03-picked.png")
        expect(self.label_back(image) == CHIP_COLOUR, f"the label's back became {self.label_back(image)}")
        width = self.tooltip_width(PIC_PREVIEW)
        expect(width > 200, f"the swatch's tooltip is {width} pixels wide")

        self.begin("a desktop portal comes up: a click on the picker applies the colour the desktop's pick gives")
        self.start_portal()
        app.click(*IMG_PICKER)
        self.wait_label_back(PORTAL_COLOUR, "the label in the colour the portal picked")
        expect(self.portal.stdout.readline().strip() == "pick", "the portal was not asked for a pick")

        self.begin("create the package through the save dialog, answer Yes to start anew")
        dialog = app.expect_window(lambda: app.click(*CMD_CREATE), name="Save Skin Package")
        app.type_text(self.package)
        box = app.expect_window(lambda: app.keys("Return"), name="Ostervale Skin Fwt.", timeout=30)
        app.keys("Return")  # Yes: another skin
        app.wait_gone(box)
        app.find_main_window()  # shown anew: wherever the compositor puts it
        poll("the window started anew, its Send frame empty",
             lambda: self.shot("wayland-04-anew.png").at(*on("Send", 5, 5)) != SEND_GROUND)
        expect(os.path.isfile(self.package), f"no package at {self.package}")
        self.check_package()

        self.begin("load the package back through the options list")
        app.click(*CBO_OPTIONS)
        time.sleep(0.4)  # the list's pop-up takes the keyboard
        dialog = app.expect_window(lambda: app.keys("Home", "Down", "Down", "Return"))
        expect("Help" not in dialog["name"], f"the options list opened '{dialog['name']}' instead of the open dialog")
        app.type_text(self.package)
        box = app.expect_window(lambda: app.keys("Return"), name="Brindleway - Skin Framewright", timeout=30)
        app.keys("Return")
        app.wait_gone(box)
        image = self.wait_label_back(PORTAL_COLOUR, "the loaded label in the portal's colour")
        image = self.shot("wayland-05-loaded.png")
        expect(image.at(*on("Send", 5, 250)) == SEND_GROUND, "the Send picture did not come back")
        expect(ink(image, TXT_SKIN_NAME) > 40 and ink(image, TXT_SKIN_AUTHOR) > 40, "name or author box is empty")

        self.begin("the arrow pad repeats while held: the loaded label moves right by several steps")
        x, y, w, h = self.label_rect()
        app.click(x + w - 4, y + h - 4)  # select it
        app.drag([IMG_ARR_RIGHT, IMG_ARR_RIGHT], held=lambda: time.sleep(0.6))
        # One step is 10 twips (2/3 pixel): the label's left column is left behind only after three.
        poll("the label moved by the held arrow", lambda: self.shot("wayland-06-nudged.png").at(x + 1, y + h - 4)
             != PORTAL_COLOUR)

        self.drops()

        self.begin("the close button ends the program")
        app.click(*IMG_CLOSE)
        poll("the program's end", lambda: app.process.poll() is not None)
        expect(app.process.returncode == 0, f"the program ended with status {app.process.returncode}")

    def drag_from_source(self, path, onto):
        """Drags `path` from another program's window onto a point of the main window, through
        the compositor's drag and drop; returns how the drag source says the drop ended."""
        app = self.app
        source = subprocess.Popen([self.args.drag_source, path], stdout=subprocess.PIPE, text=True,
                                  env=dict(os.environ, **app.session_env()))
        try:
            poll("the drag source's window", lambda: next(
                (w for w in windows() if w.get("pid") == source.pid and w["name"] == "drag source"), None))
            run(["swaymsg", f"[pid={source.pid}] move position 8 8"])
            poll("the drag source in the corner", lambda: next(
                (w["rect"]["x"] < 40 for w in windows() if w.get("pid") == source.pid), False))
            time.sleep(0.2)
            start = (60, 50)
            pointer = app.pointer
            pointer.move(*start)
            time.sleep(0.1)
            pointer.button(True)
            time.sleep(0.3)  # the drag starts at the press
            target = app.point(*onto)
            for i in range(1, 9):
                pointer.move(start[0] + (target[0] - start[0]) * i // 8, start[1] + (target[1] - start[1]) * i // 8)
                time.sleep(0.05)
            time.sleep(0.3)
            pointer.button(False)
            return source.communicate(timeout=10)[0].strip()
        finally:
            if source.poll() is None:
                source.kill()
                source.wait()

    def drops(self):
        self.begin("files dropped from another program: a text file is refused, a picture loads into its frame")
        notes = os.path.join(self.work, "notes.txt")
        with open(notes, "w") as f:
            f.write("not a picture\n")
        dropped = os.path.join(self.work, "dropped.bmp")
        run(["convert", "-size", "181x110", f"xc:{DROPPED_GROUND}", "-type", "TrueColor", f"BMP3:{dropped}"])
        spot = on("Receive", 60, 60)
        ended = self.drag_from_source(notes, spot)
        expect(ended == "ignore", f"the drop of a text file ended as '{ended}'")
        time.sleep(0.3)
        expect(self.shot("wayland-07-refused.png").at(*spot) == RECEIVE_GROUND, "a refused drop changed the frame")
        ended = self.drag_from_source(dropped, spot)
        expect(ended == "copy", f"the drop of a picture ended as '{ended}'")
        poll("the dropped picture in the Receive frame", lambda: self.shot("wayland-07-dropped.png").at(*spot)
             == DROPPED_GROUND)

    def check_package(self):
        unpack_dir = os.path.join(self.work, "unpacked")
        os.makedirs(unpack_dir)
        run([self.args.bsztool, "unpack", self.package, unpack_dir])
        bsi = glob.glob(os.path.join(unpack_dir, "**", "*.bsi"), recursive=True)
        expect(len(bsi) == 1, f"information files: {bsi}")
        ini = configparser.ConfigParser(interpolation=None, delimiters=("=",))
        ini.optionxform = str
        with open(bsi[0], "rb") as f:
            ini.read_string(f.read().decode("cp1252"))
        g = ini["Global"]
        expect((g["Skin Name"], g["Skin Author"], g["Skin Send Image"], g["Skin Recieve Image"]) ==
               (SKIN_NAME, SKIN_AUTHOR, "send skin.bmp", "recv.bmp"),
               f"[Global]: {dict(g)}")
        expect(ini["Send Colours"]["User List Back Colour"] == str(ole(PORTAL_COLOUR)),
               f"User List Back Colour = {ini['Send Colours']['User List Back Colour']}")
        got = [int(ini["Send User List"][k]) for k in ("Left", "Top", "Width", "Height")]
        want = expected_rect(USER_LIST[0], USER_LIST[2])
        expect(got == want, f"[Send User List] = {got}, expected {want}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    for option in ("--app", "--bsztool", "--fake-portal", "--drag-source", "--out"):
        parser.add_argument(option, required=True)
    args = parser.parse_args()
    os.makedirs(args.out, exist_ok=True)
    for old in glob.glob(os.path.join(args.out, "wayland-*.png")):
        os.remove(old)
    missing = [tool for tool in ("sway", "swaymsg", "grim", "wtype", "convert", "dbus-daemon") if shutil.which(tool) is None]
    if missing:
        print(f"FAILED: {', '.join(missing)} not installed (scripts/setup.sh installs them)", file=sys.stderr)
        return 1
    # Ended from outside (a timeout), the session still takes sway and the program down with it.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("terminated"))
    started = time.monotonic()
    status = run_session(lambda sway: Session(args, sway), [Sway()], os.path.join(args.out, "wayland-failure.png"))
    print(f"{'passed' if status == 0 else 'failed'} in {time.monotonic() - started:.0f} s")
    return status


if __name__ == "__main__":
    sys.exit(main())

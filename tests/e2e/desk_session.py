#!/usr/bin/env python3
"""The editor at a real desk: the real program on its own Xvfb under the openbox window
manager, worked through real X input, with a TMPDIR that names no folder. A wheel turned over
the closed options list does nothing; everything modal that opens while the always-on-top help
window is shown (message boxes, the colour dialog, the file dialogs, a name menu) is the
topmost window in the X server's stacking order, also after a click on the help window; a
package is made and loaded back through the system's own temporary folder; and "Create
Another?" answered Yes keeps the help window open.

    desk_session.py --app PROGRAM --out BUILD_FOLDER

On failure the step is named and e2e-desk-failure.png kept in the build folder."""

import argparse
import glob
import os
import re
import shutil
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "lib"))
from session import expect, run_session  # noqa: E402
from xdriver import App, Openbox, Xvfb, geometry, poll, run, topmost, toplevel, xdotool  # noqa: E402

TITLE = "Brindleway Skin Framewright"
HELP_TITLE = f"Help - {TITLE}"
TWIPS = 15


def centre(left, top, width, height):
    return (left + width // 2) // TWIPS, (top + height // 2) // TWIPS


CBO_OPTIONS = (8415 + 2835 // 2) // TWIPS, 10
CMD_CREATE = centre(5115, 5250, 390, 450)
IMG_SEND_LOAD = centre(5340, 4695, 255, 270)
IMG_RECEIVE_LOAD = centre(11160, 4125, 255, 270)
IMG_COLOR_SELECT = centre(7530, 4665, 390, 330)
IMG_CLOSE = centre(11580, 60, 225, 240)
TXT_SKIN_NAME = centre(1440, 5235, 2370, 288)
TXT_SKIN_AUTHOR = centre(1440, 5625, 2370, 288)
SEND_FRAME = (285 // TWIPS, 765 // TWIPS)
HELP_PLACE = (300, 20)  # on the screen, clear of the main window's tools
SKIN_NAME = "Desk Skin"


class Session:
    def __init__(self, args):
        self.args, self.out, self.step = args, args.out, "start"
        self.work = tempfile.mkdtemp(prefix="desk-")
        self.package = os.path.join(self.work, "DESK01.bsz")
        missing = os.path.join(self.work, "no such folder")
        self.app = App(args.app, TITLE, dict(os.environ, TMPDIR=missing), os.path.join(self.out, "e2e-desk-program.log"))
        self.help = None

    def close(self):
        shutil.rmtree(self.work, ignore_errors=True)

    def begin(self, name):
        self.step = name
        print(f"[e2e-desk] {name}", flush=True)

    def shot(self, name):
        time.sleep(0.3)
        return self.app.screenshot(os.path.join(self.out, name))

    def on_top(self, window, what):
        """The window is the topmost on the screen, and stays so when the help window is clicked."""
        expect(topmost() == toplevel(window), f"{what} is not the topmost window")
        hx, hy, _, _ = geometry(self.help)
        xdotool("mousemove", hx + 20, hy + 150, "click", 1)  # the help window's left panel
        time.sleep(0.3)
        expect(topmost() == toplevel(window), f"{what} went under the help window when that was clicked")

    def modal(self, action, what, name=None, focus=True):
        window, title = self.app.expect_window(action, name=name, wait_focus=focus)
        self.on_top(window, what)
        if focus:  # the click on the help window may have taken the keyboard
            xdotool("windowactivate", window, check=False)
            self.app.wait_focus(window)
        return window, title

    def run(self):
        app = self.app
        send_pic, receive_pic = os.path.join(self.work, "send.bmp"), os.path.join(self.work, "receive.bmp")
        for path, size in ((send_pic, "362x258"), (receive_pic, "362x219")):
            run(["convert", "-size", size, "xc:#5080C0", "-type", "TrueColor", f"BMP3:{path}"])
        app.start()
        started = time.time()

        self.begin("a wheel over the closed options list changes nothing and opens nothing")
        app.move(*CBO_OPTIONS)  # the list looks hovered in both shots
        before = self.shot("e2e-desk-00-start.png")
        xdotool("click", "--repeat", 3, "--delay", 150, 5)
        xdotool("click", "--repeat", 2, "--delay", 150, 4)
        time.sleep(0.6)
        expect(app.visible_windows() == [app.window], "a wheel over the list opened a window")
        after = self.shot("e2e-desk-01-wheel.png")
        x, y = CBO_OPTIONS
        expect(all(after.rgb(i, j) == before.rgb(i, j) for i in range(x - 90, x + 90) for j in range(3, 19)),
               "the options list no longer shows its first item")

        self.begin("open the help window from the list and set it aside, clear of the tools")
        app.expect_window(lambda: app.click(*CBO_OPTIONS), wait_focus=False)
        time.sleep(0.15)
        self.help, _ = app.expect_window(lambda: app.keys("Down", "Return"), name=HELP_TITLE, wait_focus=False)
        xdotool("windowmove", self.help, *HELP_PLACE)
        poll(f"the help window at {HELP_PLACE}", lambda: geometry(self.help)[:2] == HELP_PLACE)

        self.begin("with the help window shown, a message box, the colour dialog and the file dialogs are on top")
        box, _ = self.modal(lambda: app.click(*CMD_CREATE), "the message box", name="Package Creation Error")
        app.keys("Return")
        app.wait_gone(box)
        dialog, _ = self.modal(lambda: app.click(*IMG_COLOR_SELECT), "the colour dialog", name="Select Color")
        app.keys("Escape")
        app.wait_gone(dialog)
        for button, path in ((IMG_SEND_LOAD, send_pic), (IMG_RECEIVE_LOAD, receive_pic)):
            dialog, _ = self.modal(lambda: app.click(*button), "the open dialog")
            app.type_text(path)
            app.keys("Return")
            app.wait_gone(dialog)
            app.wait_focus()

        self.begin("a name menu opened by a drag on the Send picture is on top, and names the area")
        fx, fy = SEND_FRAME
        menu, _ = app.expect_window(lambda: app.drag([(fx + 20, fy + 20), (fx + 60, fy + 50), (fx + 90, fy + 80)]),
                                    wait_focus=False)
        time.sleep(0.15)
        expect(topmost() == toplevel(menu), "the name menu is not the topmost window")
        app.keys("Down", "Down", "Down", "Return")  # "All"
        app.wait_gone(menu)

        self.begin("a package is made through the save dialog with TMPDIR naming no folder; "
                   "'Create Another?' is on top, and Yes keeps the help window open")
        app.click(*TXT_SKIN_NAME)  # the main window takes the keyboard back from the help window
        app.wait_focus()
        time.sleep(0.2)
        app.type_text(SKIN_NAME)
        app.click(*TXT_SKIN_AUTHOR)
        app.type_text("Ostervale Studio")
        dialog, _ = self.modal(lambda: app.click(*CMD_CREATE), "the save dialog", name="Save Skin Package")
        app.type_text(self.package)
        box, _ = self.modal(lambda: app.keys("Return"), "the success question", name="Ostervale Skin Fwt.")
        app.keys("Return")  # Yes
        app.wait_gone(box)
        expect(os.path.isfile(self.package), "no package was written")
        time.sleep(0.5)
        expect(self.help in app.visible_windows(), "the help window closed when the editor started anew")
        expect(geometry(self.help)[:2] == HELP_PLACE, "the help window moved when the editor started anew")

        self.begin("the package loads back through the system's temporary folder, its message on top")
        app.expect_window(lambda: app.click(*CBO_OPTIONS), wait_focus=False)
        time.sleep(0.15)
        dialog, _ = self.modal(lambda: app.keys("Home", "Down", "Down", "Return"), "the open dialog")
        app.type_text(self.package)
        box, _ = self.modal(lambda: app.keys("Return"), "the load message", name="Brindleway - Skin Framewright")
        app.keys("Return")
        app.wait_gone(box)
        self.remove_unpacked(started)

        self.begin("the close button ends the program")
        app.click(*IMG_CLOSE)
        poll("the program to end", lambda: app.process.poll() is not None)
        expect(app.process.returncode == 0, f"the program ended with status {app.process.returncode}")

    @staticmethod
    def remove_unpacked(since):
        """The load unpacked into the system's temporary folder: its time-stamped folder goes."""
        found = [d for d in glob.glob("/tmp/[0-9]*") if re.fullmatch(r"\d{14}", os.path.basename(d))
                 and os.path.getmtime(d) >= since - 1 and os.path.isfile(os.path.join(d, "DeskSkin.bsi"))]
        expect(len(found) == 1, f"expected one unpacked folder under /tmp, found {found}")
        shutil.rmtree(found[0])


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    for option in ("--app", "--out"):
        parser.add_argument(option, required=True)
    args = parser.parse_args()
    os.makedirs(args.out, exist_ok=True)
    for old in glob.glob(os.path.join(args.out, "e2e-desk-*.png")):
        os.remove(old)
    status = run_session(lambda *_: Session(args), [Xvfb(), Openbox()], os.path.join(args.out, "e2e-desk-failure.png"))
    print("passed" if status == 0 else "failed")
    return status


if __name__ == "__main__":
    sys.exit(main())

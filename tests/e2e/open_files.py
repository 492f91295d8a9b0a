#!/usr/bin/env python3
"""Files reaching the real program from outside its dialogs. The command line without a
display (help, version, usage errors); on a private Xvfb a package, a loose skin information
file and a missing file given at start, Qt's -display option; and freedesktop drag and drop
from a real XDND source: what the window says it would take while dragging, pictures dropped on
the frames, a package dropped on the background, and nothing taken while a message is open.

    open_files.py --app PROGRAM --bsztool BSZTOOL --version X.Y.Z --out BUILD_FOLDER"""

import argparse
import os
import shutil
import subprocess
import sys
import tempfile
import time
from urllib.parse import quote

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "lib"))
from session import Check, expect  # noqa: E402
from xdnd import XdndSource  # noqa: E402
from xdriver import App, DriverError, Xvfb, poll, run, xdotool  # noqa: E402

TITLE = "Brindleway Skin Framewright"
LOAD_TITLE = "Brindleway - Skin Framewright"  # the success and invalid-package messages
LOAD_ERROR_TITLE = "Skin Load Error"
SEND_FRAME = (19, 51, 362, 258)  # left, top, width, height in window pixels
RECEIVE_FRAME = (409, 51, 362, 219)
BACKGROUND = (300, 20)
GREEN, ORANGE, BLUE = (0x20, 0xA0, 0x40), (0xF0, 0x80, 0x10), (0x30, 0x40, 0xD0)


def centre(frame):
    return frame[0] + frame[2] // 2, frame[1] + frame[3] // 2


def uri(path):
    return "file://" + quote(path)


def close_to(rgb, want, slack=12):
    return all(abs(a - b) <= slack for a, b in zip(rgb, want))


SKIN_INFORMATION = """[Global]
Skin Name=Harbour
Skin Author=Ida
Skin Send Image=send.bmp
Skin Recieve Image=receive.bmp

[Send Colours]
Message Back Colour=16777215
Message Text Colour=0
User List Back Colour=16777215
User List Text Colour=0

[Send Message]
Left=30
Top=45
Width=1500
Height=900

[Recieve Colours]
Message Back Colour=16777215
Message Text Colour=0
Date Text Colour=0
Sender Text Colour=0
"""


class Run:
    def __init__(self, args):
        self.args, self.step = args, "start"
        self.work = tempfile.mkdtemp(prefix="open-files-")
        self.program_tmp = os.path.join(self.work, "program tmp")
        os.makedirs(self.program_tmp)
        self.app = None

    def begin(self, name):
        self.step = name
        print(f"[e2e] {name}", flush=True)

    def file(self, name, text=None):
        path = os.path.join(self.work, name)
        if text is not None:
            with open(path, "w", newline="\r\n") as f:
                f.write(text)
        return path

    def picture(self, name, colour, size):
        path = self.file(name)
        run(["convert", "-size", "%dx%d" % size, "xc:#%02X%02X%02X" % colour, "BMP3:" + path])
        return path

    def make_skin(self):
        skin = os.path.join(self.work, "Harbour skin")
        os.makedirs(skin)
        for name, colour in (("send.bmp", GREEN), ("receive.bmp", ORANGE)):
            shutil.move(self.picture(name, colour, (80, 60)), os.path.join(skin, name))
        self.information = os.path.join(skin, "Harbour.bsi")
        with open(self.information, "w", newline="\r\n") as f:
            f.write(SKIN_INFORMATION)
        self.package = self.file("Harbour.bsz")
        run([self.args.bsztool, "pack", self.package, skin])

    def start(self, *arguments, env=None):
        self.stop()
        self.app = App(self.args.app, TITLE, env or dict(os.environ, TMPDIR=self.program_tmp),
                       os.path.join(self.args.out, "e2e-open-files.log"))
        return self.app.start(*arguments)

    def stop(self):
        if self.app is not None:
            self.app.stop()

    def frame_colour(self, frame, name):
        self.app.move(*BACKGROUND)
        time.sleep(0.3)
        shot = self.app.screenshot(os.path.join(self.args.out, name))
        return shot.rgb(*centre(frame))

    def wait_message(self):
        """The window that opens over the main window (the load's message) and its title."""
        def probe():
            self.app.assert_running()
            for window in self.app.visible_windows():
                if window != self.app.window:
                    return window, xdotool("getwindowname", window, check=False).strip()
        return poll("the load's message", probe)

    def dismiss(self, window):
        xdotool("windowfocus", "--sync", window)
        self.app.keys("Return")
        self.app.wait_gone(window)

    def command_line_without_display(self):
        self.begin("help, version and usage errors without a display")
        env = {k: v for k, v in os.environ.items() if k not in ("DISPLAY", "WAYLAND_DISPLAY")}
        env["QT_QPA_PLATFORM"] = "xcb"  # would fail at once if a display were needed

        def program(*arguments):
            return subprocess.run([self.args.app, *arguments], env=env, capture_output=True, text=True, timeout=20)

        for option in ("--help", "-h"):
            done = program(option)
            expect(done.returncode == 0 and done.stderr == "", f"{option}: {done.returncode} {done.stderr!r}")
            expect(done.stdout.startswith("usage: skinframewright [OPTION] [FILE]\n"), f"{option}: {done.stdout!r}")
        done = program("--version")
        expect((done.returncode, done.stdout, done.stderr) == (0, f"skinframewright {self.args.version}\n", ""),
               f"--version: {done}")
        for arguments, error in ((["--open", "x.bsz"], "unknown option --open"),
                                 (["a.bsz", "b.bsi"], "only one file can be opened at a time")):
            done = program(*arguments)
            expect(done.returncode == 2 and done.stdout == "", f"{arguments}: {done.returncode} {done.stdout!r}")
            expect(done.stderr.startswith(f"skinframewright: {error}\nusage: skinframewright"), f"{done.stderr!r}")

    def files_at_start(self):
        self.begin("a package given at start")
        self.start(self.package)
        box, title = self.wait_message()
        expect(title == LOAD_TITLE, f"the message after loading the package is titled '{title}'")
        self.dismiss(box)
        expect(close_to(self.frame_colour(SEND_FRAME, "e2e-open-package.png"), GREEN), "Send picture not shown")
        expect(close_to(self.frame_colour(RECEIVE_FRAME, "e2e-open-package.png"), ORANGE), "Receive picture not shown")
        unpacked = [d for d in os.listdir(self.program_tmp) if d.isdigit() and len(d) == 14]
        expect(len(unpacked) == 1, f"unpacked folders: {unpacked}")

        self.begin("a loose skin information file given at start, Qt's -display option")
        env = {k: v for k, v in os.environ.items() if k != "DISPLAY"}
        self.start("-display", os.environ["DISPLAY"], self.information, env=dict(env, TMPDIR=self.program_tmp))
        box, title = self.wait_message()
        expect(title == LOAD_TITLE, f"the message after loading the .bsi is titled '{title}'")
        self.dismiss(box)
        expect(close_to(self.frame_colour(SEND_FRAME, "e2e-open-information.png"), GREEN), "Send picture not shown")

        self.begin("a missing file given at start")
        self.start(os.path.join(self.work, "gone.bsi"))
        box, title = self.wait_message()
        expect(title == LOAD_ERROR_TITLE, f"the message for a missing file is titled '{title}'")
        self.dismiss(box)
        self.app.assert_running()

    def drag_and_drop(self):
        self.begin("drag and drop through XDND")
        window = self.start()
        aware = run(["xprop", "-id", window, "-f", "XdndAware", "32c", "XdndAware"])
        expect("= 5" in aware, f"the window does not announce XDND 5: {aware.strip()}")
        blue = self.picture("blue picture.bmp", BLUE, (50, 40))
        notes = self.file("notes.txt", "not a picture\n")
        source = XdndSource(os.environ["DISPLAY"])
        try:
            # A picture: refused over the background, taken over either frame.
            source.begin(window, [uri(blue)])
            expect(not source.move(*self.app.point(*BACKGROUND)), "a picture would be taken on the background")
            expect(source.move(*self.app.point(*centre(RECEIVE_FRAME))), "a picture is refused on the Receive frame")
            expect(source.move(*self.app.point(*centre(SEND_FRAME))), "a picture is refused on the Send frame")
            expect(source.drop(), "the drop of a picture on the Send frame was not taken")
            expect(source.requests > 0, "the target never asked for the dragged data")
            expect(close_to(self.frame_colour(SEND_FRAME, "e2e-drop-picture.png"), BLUE), "dropped picture not shown")

            # Another kind of file and several files are refused everywhere.
            for uris, what in (([uri(notes)], "a text file"), ([uri(blue), uri(self.package)], "two files"),
                               (["https://skins.example/Harbour.bsz"], "a remote file")):
                source.begin(window, uris)
                for point in (centre(SEND_FRAME), BACKGROUND):
                    expect(not source.move(*self.app.point(*point)), f"{what} would be taken")
                source.leave()

            # A package anywhere, here on the background: it loads, and while its message is
            # open nothing is taken.
            source.begin(window, [uri(self.package)])
            expect(source.move(*self.app.point(*BACKGROUND)), "a package is refused on the background")
            expect(source.drop(), "the drop of a package was not taken")
            box, title = self.wait_message()
            expect(title == LOAD_TITLE, f"the message after dropping the package is titled '{title}'")
            source.begin(window, [uri(self.package)])
            expect(not source.move(*self.app.point(*BACKGROUND)), "a drop would be taken while a message is open")
            source.leave()
            self.dismiss(box)
            expect(close_to(self.frame_colour(SEND_FRAME, "e2e-drop-package.png"), GREEN), "package's picture not shown")
        finally:
            source.close()


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    for option in ("--app", "--bsztool", "--version", "--out"):
        parser.add_argument(option, required=True)
    args = parser.parse_args()
    os.makedirs(args.out, exist_ok=True)
    session, ok = Run(args), False
    try:
        session.make_skin()
        session.command_line_without_display()
        with Xvfb():
            try:
                session.files_at_start()
                session.drag_and_drop()
                ok = True
            finally:
                if not ok and session.app is not None:
                    try:
                        session.app.screen_shot(os.path.join(args.out, "e2e-open-files-failure.png"))
                    except DriverError:
                        pass
                session.stop()
    except (Check, DriverError, subprocess.SubprocessError, OSError) as error:
        print(f"FAILED at '{session.step}': {error}", file=sys.stderr)
        log = os.path.join(args.out, "e2e-open-files.log")
        if os.path.exists(log):
            with open(log) as f:
                print("program output:\n" + f.read()[-3000:], file=sys.stderr)
    finally:
        shutil.rmtree(session.work, ignore_errors=True)
    print("passed" if ok else "failed")
    return 0 if ok else 1


if __name__ == "__main__":
    sys.exit(main())

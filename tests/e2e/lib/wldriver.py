"""Drives the real program in a headless Wayland session: a private sway (wlroots) that floats
every window, a virtual pointer on the compositor's input path (vpointer.py), a virtual
keyboard (wtype), windows read from `swaymsg -t get_tree` and the screen from grim. Waits poll
against a deadline."""

import glob
import json
import os
import shutil
import signal
import subprocess
import tempfile
import time

from vpointer import BTN_LEFT, VirtualPointer
from xdriver import DriverError, Image, Program, poll, run

SWAY_CONFIG = """\
xwayland disable
output HEADLESS-1 resolution {w}x{h} position 0 0 bg {bg} solid_color
for_window [app_id=".*"] floating enable
for_window [title=".*"] floating enable
focus_follows_mouse no
"""


class Sway:
    """A private headless sway on its own runtime folder. As root it runs in a user namespace
    (sway will not run as root). Everything started here ends with the session."""
    SIZE = (1280, 1024)
    BACKGROUND = "#406080"

    def __enter__(self):
        self.runtime = tempfile.mkdtemp(prefix="wl-")
        os.chmod(self.runtime, 0o700)
        config = os.path.join(self.runtime, "sway.cfg")
        with open(config, "w") as f:
            f.write(SWAY_CONFIG.format(w=self.SIZE[0], h=self.SIZE[1], bg=self.BACKGROUND))
        env = dict(os.environ, XDG_RUNTIME_DIR=self.runtime, WLR_BACKENDS="headless", WLR_LIBINPUT_NO_DEVICES="1",
                   WLR_RENDERER="pixman")
        for name in ("WAYLAND_DISPLAY", "DISPLAY", "SWAYSOCK"):
            env.pop(name, None)
        command = ["sway", "-c", config]
        if os.geteuid() == 0:
            command = self.unprivileged(command)
        self.log = open(os.path.join(self.runtime, "sway.log"), "w")
        # A session of its own, so that the whole group ends with it.
        self.process = subprocess.Popen(command, env=env, stdout=self.log, stderr=subprocess.STDOUT,
                                        start_new_session=True)
        self.keyboard = self.pointer = None
        try:
            def ready():
                if self.process.poll() is not None:
                    raise DriverError(f"sway ended with status {self.process.returncode}: {self.sway_log()}")
                sockets = [p for p in glob.glob(os.path.join(self.runtime, "wayland-*")) if not p.endswith(".lock")]
                ipc = glob.glob(os.path.join(self.runtime, "sway-ipc.*.sock"))
                return sockets and ipc and (os.path.basename(sockets[0]), ipc[0])
            display, ipc = poll("sway's sockets", ready)
            os.environ.update(XDG_RUNTIME_DIR=self.runtime, WAYLAND_DISPLAY=display, SWAYSOCK=ipc,
                              QT_QPA_PLATFORM="wayland")
            os.environ.pop("DISPLAY", None)
            poll("sway's answer", lambda: subprocess.run(["swaymsg", "-t", "get_version"],
                                                         capture_output=True).returncode == 0)
            # wtype binds a new virtual keyboard per run and may lose the first key while the
            # client takes it: one long-lived keyboard keeps the keymap in place.
            self.keyboard = subprocess.Popen(["wtype", "-s", "600000"], stdout=subprocess.DEVNULL,
                                             stderr=subprocess.DEVNULL)
            self.pointer = VirtualPointer(self.runtime, display, self.SIZE)
        except BaseException:
            self.__exit__()
            raise
        return self

    def unprivileged(self, command):
        """sway refuses to run as root: in a user namespace where the machine allows one,
        else as the user nobody, who then owns the runtime folder."""
        if os.environ.get("E2E_SWAY_AS") != "nobody" and \
                subprocess.run(["unshare", "-U", "true"], capture_output=True).returncode == 0:
            return ["unshare", "-U", *command]
        for path in (self.runtime, *glob.glob(os.path.join(self.runtime, "*"))):
            os.chown(path, 65534, 65534)
        return ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", *command]

    def sway_log(self):
        with open(self.log.name) as f:
            return f.read()[-1500:]

    def __exit__(self, *exc):
        if self.pointer:
            self.pointer.close()
        if self.keyboard:
            self.keyboard.kill()
            self.keyboard.wait()
        try:
            os.killpg(self.process.pid, signal.SIGTERM)
            self.process.wait(timeout=5)
        except (ProcessLookupError, subprocess.TimeoutExpired):
            try:
                os.killpg(self.process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            self.process.wait()
        self.log.close()
        shutil.rmtree(self.runtime, ignore_errors=True)


def windows():
    """Every window in sway's tree: dicts with name, app_id, pid, rect, border, focused."""
    tree = json.loads(run(["swaymsg", "-t", "get_tree", "-r"]))
    found = []

    def walk(node):
        if node.get("pid") and node.get("type") in ("con", "floating_con"):
            found.append(node)
        for child in node.get("nodes", []) + node.get("floating_nodes", []):
            walk(child)
    walk(tree)
    return found


class WaylandApp(Program):
    """The program under test; input positions are relative to its main window's corner."""

    def __init__(self, sway, binary, title, env, log_path):
        self.sway, self.binary, self.title, self.env, self.log_path = sway, binary, title, env, log_path
        self.pointer = sway.pointer
        self.process = None

    def start(self):
        with open(self.log_path, "w") as log:
            self.process = subprocess.Popen([self.binary], env=dict(self.env, **self.session_env()), stdout=log,
                                            stderr=subprocess.STDOUT)
        return self.find_main_window()

    @staticmethod
    def session_env():
        return {k: os.environ[k] for k in ("XDG_RUNTIME_DIR", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}

    def own_windows(self):
        return [w for w in windows() if w.get("pid") == self.process.pid]

    def find_main_window(self):
        def probe():
            self.assert_running()
            return next((w for w in self.own_windows() if w["name"] == self.title), None)
        window = poll(f"the window '{self.title}'", probe)
        r = window["rect"]
        self.origin, self.size, self.window = (r["x"], r["y"]), (r["width"], r["height"]), window
        return window

    def expect_window(self, action, name=None, timeout=10):
        """Runs action and returns the program's first new window (a dialog or message box),
        once it has the keyboard focus."""
        before = {w["id"] for w in self.own_windows()}
        action()

        def probe():
            self.assert_running()
            for w in self.own_windows():
                if w["id"] not in before:
                    if name is not None and w["name"] != name:
                        raise DriverError(f"expected the window '{name}', but '{w['name']}' appeared")
                    return w if w.get("focused") else None
        window = poll(f"the window '{name or 'any new'}'", probe, timeout)
        time.sleep(0.1)  # the widgets inside finish their first paint and take keys
        return window

    def wait_gone(self, window):
        poll(f"window '{window['name']}' to close", lambda: window["id"] not in {w["id"] for w in self.own_windows()})

    def point(self, x, y):
        return self.origin[0] + x, self.origin[1] + y

    def move(self, x, y):
        self.pointer.move(*self.point(x, y))

    def click(self, x, y):
        self.move(x, y)
        time.sleep(0.05)
        self.pointer.button(True)
        self.pointer.button(False)

    def drag(self, path, button=BTN_LEFT, held=None, steps=1):
        """A drag through path (window pixels); each leg in `steps` movements."""
        self.move(*path[0])
        time.sleep(0.08)
        self.pointer.button(True, button)
        time.sleep(0.08)
        last = path[0]
        for point in path[1:]:
            for i in range(1, steps + 1):
                self.move(last[0] + (point[0] - last[0]) * i // steps, last[1] + (point[1] - last[1]) * i // steps)
                time.sleep(0.04)
            last = point
        time.sleep(0.08)
        result = held() if held else None
        self.pointer.button(False, button)
        return result

    @staticmethod
    def keys(*names):
        for name in names:
            run(["wtype", "-k", name])
            time.sleep(0.04)

    @staticmethod
    def type_text(text):
        run(["wtype", "-d", "8", text])

    def screenshot(self, path, rect=None):
        x, y, w, h = rect or (*self.origin, *self.size)
        run(["grim", "-g", f"{x},{y} {w}x{h}", path])
        return Image(path)

    @staticmethod
    def screen_shot(path):
        run(["grim", path])
        return Image(path)

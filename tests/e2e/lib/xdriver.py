"""Drives a real X program: a private Xvfb, windows found through xdotool, real mouse and
keyboard input, screenshots read back pixel by pixel. Waits poll against a deadline; short
settle pauses remain only where X gives no event to wait on (a menu's grab, a repaint)."""

import os
import re
import shutil
import subprocess
import tempfile
import time


class DriverError(Exception):
    pass


def run(args, check=True):
    done = subprocess.run([str(a) for a in args], capture_output=True, text=True, timeout=30)
    if check and done.returncode != 0:
        raise DriverError(f"{' '.join(map(str, args))} failed ({done.returncode}): {done.stderr.strip()}")
    return done.stdout


def poll(what, probe, timeout=10):
    deadline = time.monotonic() + timeout
    while not (result := probe()):
        if time.monotonic() > deadline:
            raise DriverError(f"timed out after {timeout:g} s waiting for {what}")
        time.sleep(0.03)
    return result


def xdotool(*args, check=True):
    return run(["xdotool", *args], check=check)


def geometry(window):
    """(x, y, width, height) of a window on the screen."""
    v = dict(line.split("=", 1) for line in xdotool("getwindowgeometry", "--shell", window).split())
    return int(v["X"]), int(v["Y"]), int(v["WIDTH"]), int(v["HEIGHT"])


def display_taken(n):
    """Whether an X server holds display :n. A lock file whose process is gone (a server that
    was killed) does not count: a new server takes the display over, lock and socket."""
    try:
        with open(f"/tmp/.X{n}-lock") as lock:
            pid = int(lock.read().strip())
    except FileNotFoundError:
        return os.path.exists(f"/tmp/.X11-unix/X{n}")
    except (OSError, ValueError):
        return True
    try:
        os.kill(pid, 0)
    except ProcessLookupError:
        return False
    except PermissionError:
        pass  # another user's server
    return True


def toplevel(window):
    """The child of the root window that holds a window: its window manager's frame, or itself."""
    while True:
        info = run(["xwininfo", "-children", "-id", window])
        root, parent = (re.search(rf"{what} window id: (0x[0-9a-f]+)", info)[1] for what in ("Root", "Parent"))
        if parent == root:
            return int(window)
        window = int(parent, 16)


def topmost():
    """The highest window that shows on the screen (viewable, not parked off it, as window
    managers keep a window or two), in the X server's stacking order."""
    for child in re.findall(r"^\s+(0x[0-9a-f]+) ", run(["xwininfo", "-root", "-children"]), re.M):  # top first
        info = run(["xwininfo", "-id", child])
        x, y, w, h = (int(re.search(rf"{key}:\s+(-?\d+)", info)[1])
                      for key in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        if "IsViewable" in info and x + w > 0 and y + h > 0 and x < Xvfb.SIZE[0] and y < Xvfb.SIZE[1]:
            return int(child, 16)
    raise DriverError("no window shows on the screen")


class Openbox:
    """The openbox window manager on the current display, until the end of the block."""

    def __enter__(self):
        self.process = subprocess.Popen(["openbox"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        poll("openbox to manage the screen",
             lambda: "_NET_SUPPORTING_WM_CHECK(WINDOW)" in run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], check=False))
        return self

    def __exit__(self, *exc):
        self.process.kill()
        self.process.wait()


class Xvfb:
    """A private 1280x1024 Xvfb on a free display. -noreset: otherwise the server resets when
    its last client leaves and refuses a client that connects meanwhile."""
    SIZE = (1280, 1024)

    def __enter__(self):
        self.runtime = tempfile.mkdtemp(prefix="xdg-")
        os.chmod(self.runtime, 0o700)
        for n in range(91, 161):
            if display_taken(n):
                continue
            self.process = subprocess.Popen(["Xvfb", f":{n}", "-screen", "0", "1280x1024x24", "-nolisten",
                                             "tcp", "-noreset"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            deadline = time.monotonic() + 5
            while time.monotonic() < deadline and self.process.poll() is None:
                if subprocess.run(["xdpyinfo", "-display", f":{n}"], capture_output=True).returncode == 0:
                    os.environ.update(DISPLAY=f":{n}", XDG_RUNTIME_DIR=self.runtime, QT_QPA_PLATFORM="xcb")
                    os.environ.pop("WAYLAND_DISPLAY", None)
                    return self
                time.sleep(0.05)
            self.stop()  # lost the race for this number, or it never answered
        raise DriverError("no free display for Xvfb")

    def stop(self):
        # Asked to end, the server removes its lock file and socket; killed, it leaves them.
        self.process.terminate()
        try:
            self.process.wait(timeout=5)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()

    def __exit__(self, *exc):
        self.stop()
        shutil.rmtree(self.runtime, ignore_errors=True)


class Image:
    """A screenshot as RGB, read with window-relative coordinates."""

    def __init__(self, path):
        raw = subprocess.run(["convert", path, "-depth", "8", "ppm:-"], capture_output=True, check=True).stdout
        header = re.match(rb"P6\s+(\d+)\s+(\d+)\s+\d+\s", raw)  # binary PPM, then RGB triples
        self.width, self.height = int(header[1]), int(header[2])
        self.pixels = raw[header.end():]

    def rgb(self, x, y):
        if not (0 <= x < self.width and 0 <= y < self.height):
            raise DriverError(f"pixel {x},{y} lies outside the {self.width}x{self.height} shot")
        i = 3 * (y * self.width + x)
        return tuple(self.pixels[i:i + 3])

    def at(self, x, y):
        return "#%02X%02X%02X" % self.rgb(x, y)

    def count(self, x, y, width, height, accept):
        return sum(1 for yy in range(y, y + height) for xx in range(x, x + width) if accept(self.rgb(xx, yy)))


class Program:
    """A started program under test, X or Wayland: `process` is its Popen."""
    process = None

    def assert_running(self):
        if self.process.poll() is not None:
            raise DriverError(f"the program ended with status {self.process.returncode}")

    def stop(self):
        if self.process and self.process.poll() is None:
            self.process.kill()
            self.process.wait()


class App(Program):
    """The program under test; input positions are relative to its main window's corner."""

    def __init__(self, binary, title, env, log_path):
        self.binary, self.title, self.env, self.log_path = binary, title, env, log_path
        self.process = None

    def start(self, *arguments):
        with open(self.log_path, "w") as log:
            self.process = subprocess.Popen([self.binary, *map(str, arguments)], env=self.env, stdout=log,
                                            stderr=subprocess.STDOUT)
        return self.find_main_window()

    def find_main_window(self):
        def probe():
            self.assert_running()
            for window in self.visible_windows():  # the name menus carry the program's title too
                if xdotool("getwindowname", window, check=False).strip() == self.title and geometry(window)[2] > 300:
                    return window
        self.window = poll(f"the window '{self.title}'", probe)
        x, y, w, h = geometry(self.window)
        self.origin, self.size = (x, y), (w, h)
        return self.window

    def visible_windows(self):
        return [int(w) for w in xdotool("search", "--onlyvisible", "--pid", self.process.pid, check=False).split()]

    def expect_window(self, action, name=None, wait_focus=True, timeout=10):
        """Runs action and returns (window, title) of the program's first new visible window.
        With a name, any other new window fails at once (an unexpected message box). Waits for
        the keyboard focus when asked, so typed keys reach it."""
        before = set(self.visible_windows())
        action()

        def probe():
            self.assert_running()
            for window in set(self.visible_windows()) - before:
                title = xdotool("getwindowname", window, check=False).strip()
                if name is not None and title != name:
                    raise DriverError(f"expected the window '{name}', but '{title}' appeared")
                return window, title
        window, title = poll(f"the window '{name or 'any new'}'", probe, timeout)
        if wait_focus:
            poll(f"the focus on '{title}'", lambda: xdotool("getwindowfocus", "-f", check=False).strip() == str(window))
        time.sleep(0.1)  # the widgets inside finish their first paint and take keys
        return window, title

    def wait_gone(self, window):
        poll(f"window {window} to close", lambda: window not in self.visible_windows())

    def wait_focus(self, window=None):
        """Until a window (by default the main window) has the keyboard focus: after a dialog
        closes, the next click then reaches a window that takes input again."""
        window = self.window if window is None else window
        poll(f"the focus on window {window}", lambda: xdotool("getwindowfocus", "-f", check=False).strip() == str(window))

    def point(self, x, y):
        return self.origin[0] + x, self.origin[1] + y

    def move(self, x, y):
        xdotool("mousemove", *self.point(x, y))

    def click(self, x, y):
        """Press and release in one request, so no timer of the program runs between."""
        xdotool("mousemove", *self.point(x, y), "mousedown", 1, "mouseup", 1)

    def drag(self, path, button=1, held=None):
        """A drag through path, one pointer movement per point; held() runs before the release."""
        self.move(*path[0])
        time.sleep(0.08)
        xdotool("mousedown", button)
        for point in path[1:]:
            time.sleep(0.08)  # each movement reaches the program on its own
            self.move(*point)
        time.sleep(0.08)
        result = held() if held else None
        xdotool("mouseup", button)
        return result

    @staticmethod
    def keys(*names):
        xdotool("key", "--delay", 40, *names)

    @staticmethod
    def type_text(text):
        xdotool("type", "--delay", 8, text)

    def screenshot(self, path):
        run(["import", "-window", "root", "-crop", "%dx%d+%d+%d" % (*self.size, *self.origin), "+repage", path])
        return Image(path)

    @staticmethod
    def screen_shot(path):
        run(["import", "-window", "root", path])

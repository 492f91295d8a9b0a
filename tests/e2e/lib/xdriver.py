"""Drives a real X program for the end-to-end tests: a private Xvfb, the program's windows
found through xdotool, real mouse and keyboard input, and screenshots read back pixel by pixel.

Everything is polled against a deadline instead of waited for with fixed sleeps; only short
settle pauses remain where X gives no event to wait on (a menu's keyboard grab, a repaint).
"""

import os
import shutil
import subprocess
import tempfile
import time


class DriverError(Exception):
    """A step that could not be carried out: a window that never came, a tool that failed."""


def run(args, check=True, timeout=30):
    """Runs a command, returns its stdout as text; raises DriverError on failure when asked."""
    done = subprocess.run(args, capture_output=True, text=True, timeout=timeout)
    if check and done.returncode != 0:
        raise DriverError(f"{' '.join(args)} failed ({done.returncode}): {done.stderr.strip()}")
    return done.stdout


def poll(what, probe, timeout, interval=0.03):
    """Calls probe until it returns something truthy and returns that; DriverError at the deadline."""
    deadline = time.monotonic() + timeout
    while True:
        result = probe()
        if result:
            return result
        if time.monotonic() > deadline:
            raise DriverError(f"timed out after {timeout:g} s waiting for {what}")
        time.sleep(interval)


class Xvfb:
    """A private Xvfb on a free display, 1280x1024x24, never resetting between clients.

    -noreset matters: by default the server resets when its last client leaves, and a client
    connecting during the reset is refused.
    """

    def __init__(self, width=1280, height=1024):
        self.size = f"{width}x{height}x24"
        self.process = None
        self.display = None
        self.runtime = None

    def __enter__(self):
        self.runtime = tempfile.mkdtemp(prefix="xdg-")
        os.chmod(self.runtime, 0o700)
        for number in range(91, 161):
            if os.path.exists(f"/tmp/.X{number}-lock") or os.path.exists(f"/tmp/.X11-unix/X{number}"):
                continue
            process = subprocess.Popen(
                ["Xvfb", f":{number}", "-screen", "0", self.size, "-nolisten", "tcp", "-noreset"],
                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            deadline = time.monotonic() + 5
            while time.monotonic() < deadline and process.poll() is None:
                probe = subprocess.run(["xdpyinfo", "-display", f":{number}"],
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
                if probe.returncode == 0:
                    self.process = process
                    self.display = f":{number}"
                    os.environ["DISPLAY"] = self.display
                    os.environ["XDG_RUNTIME_DIR"] = self.runtime
                    os.environ["QT_QPA_PLATFORM"] = "xcb"
                    os.environ.pop("WAYLAND_DISPLAY", None)
                    return self
                time.sleep(0.05)
            process.kill()  # lost the race for this number, or it never answered
            process.wait()
        raise DriverError("no free display for Xvfb")

    def __exit__(self, *exc):
        if self.process is not None:
            self.process.terminate()
            try:
                self.process.wait(timeout=5)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        if self.runtime:
            shutil.rmtree(self.runtime, ignore_errors=True)
        return False


def xdotool(*args, check=True):
    return run(["xdotool", *[str(a) for a in args]], check=check)


def window_name(window):
    return xdotool("getwindowname", window, check=False).strip()


def window_geometry(window):
    """(x, y, width, height) of a window on the screen."""
    values = {}
    for line in xdotool("getwindowgeometry", "--shell", window).splitlines():
        key, _, value = line.partition("=")
        values[key] = value
    return int(values["X"]), int(values["Y"]), int(values["WIDTH"]), int(values["HEIGHT"])


def focused_window():
    """The window with the keyboard focus, or None (no focus, or pointer-root focus)."""
    out = xdotool("getwindowfocus", "-f", check=False).strip()
    return int(out) if out.isdigit() else None


class Image:
    """A screenshot decoded to RGB, read pixel by pixel with window-relative coordinates."""

    def __init__(self, path):
        self.path = path
        raw = subprocess.run(["convert", path, "-depth", "8", "ppm:-"], capture_output=True, check=True).stdout
        # Binary PPM: "P6", width, height, maximum, one whitespace byte, then RGB triples.
        fields, offset = [], 0
        while len(fields) < 4:
            while raw[offset:offset + 1].isspace():
                offset += 1
            end = offset
            while not raw[end:end + 1].isspace():
                end += 1
            fields.append(raw[offset:end])
            offset = end
        self.width, self.height = int(fields[1]), int(fields[2])
        self.pixels = raw[offset + 1:]

    def at(self, x, y):
        """'#RRGGBB' of one pixel."""
        if not (0 <= x < self.width and 0 <= y < self.height):
            raise DriverError(f"pixel {x},{y} lies outside the {self.width}x{self.height} shot")
        i = 3 * (y * self.width + x)
        r, g, b = self.pixels[i], self.pixels[i + 1], self.pixels[i + 2]
        return f"#{r:02X}{g:02X}{b:02X}"

    def rgb(self, x, y):
        i = 3 * (y * self.width + x)
        return self.pixels[i], self.pixels[i + 1], self.pixels[i + 2]

    def count(self, x, y, width, height, accept):
        """How many pixels of a rectangle satisfy accept((r, g, b))."""
        return sum(1 for yy in range(y, y + height) for xx in range(x, x + width)
                   if accept(self.rgb(xx, yy)))


class App:
    """The program under test: started with a given environment, its main window found by title.

    Positions given to the input helpers are relative to the main window's top-left corner.
    """

    def __init__(self, binary, title, env=None, log_path=None):
        self.binary = binary
        self.title = title
        self.env = env
        self.log_path = log_path
        self.process = None
        self.window = None
        self.origin = (0, 0)

    def start(self, timeout=15):
        log = open(self.log_path, "w") if self.log_path else subprocess.DEVNULL
        self.process = subprocess.Popen([self.binary], env=self.env, stdout=log, stderr=subprocess.STDOUT)
        self.find_main_window(timeout)
        return self

    def find_main_window(self, timeout=10):
        def probe():
            self.assert_running()
            for window in self.visible_windows():
                if window_name(window) == self.title:
                    x, y, w, h = window_geometry(window)
                    if w > 300:  # the name menus carry the program's title too
                        return window, (x, y), (w, h)
            return None
        self.window, self.origin, self.size = poll(f"the window '{self.title}'", probe, timeout)
        return self.window

    def assert_running(self):
        if self.process.poll() is not None:
            raise DriverError(f"the program ended with status {self.process.returncode}")

    def stop(self):
        if self.process is not None and self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(timeout=5)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()

    # Windows -----------------------------------------------------------------------------

    def visible_windows(self):
        out = xdotool("search", "--onlyvisible", "--pid", self.process.pid, check=False)
        return [int(w) for w in out.split()]

    def expect_window(self, action, name=None, timeout=10, wait_focus=True, what=None):
        """Runs action, then waits for a window of the program that was not visible before.

        With a name, only a window of that name counts; any other new window fails the step at
        once (an unexpected message box). Returns (window, name). Waits until the window has
        the keyboard focus when asked, so typed keys reach it.
        """
        before = set(self.visible_windows())
        action()

        def probe():
            self.assert_running()
            for window in self.visible_windows():
                if window in before:
                    continue
                title = window_name(window)
                if name is not None and title != name:
                    raise DriverError(f"expected the window '{name}', but '{title}' appeared"
                                      f"{self.describe_message(window)}")
                return window, title
            return None
        window, title = poll(what or f"the window '{name or 'any new'}'", probe, timeout)
        if wait_focus:
            poll(f"the keyboard focus on '{title}'", lambda: focused_window() == window, timeout)
        time.sleep(0.1)  # the widgets inside finish their first paint and take keys
        return window, title

    def describe_message(self, window):
        """A screenshot path of an unexpected window, to make the failure readable."""
        try:
            x, y, w, h = window_geometry(window)
            folder = os.path.dirname(self.log_path) if self.log_path else tempfile.gettempdir()
            path = os.path.join(folder, f"unexpected-{window}.png")
            run(["import", "-window", "root", "-crop", f"{w}x{h}+{x}+{y}", "+repage", path])
            return f" (its picture: {path})"
        except (DriverError, OSError):
            return ""

    def wait_gone(self, window, timeout=10):
        poll(f"window {window} to close", lambda: window not in self.visible_windows(), timeout)

    # Input ---------------------------------------------------------------------------------

    def screen_point(self, x, y):
        return self.origin[0] + x, self.origin[1] + y

    def move(self, x, y):
        xdotool("mousemove", *self.screen_point(x, y))

    def click(self, x, y, button=1):
        """Press and release at once, in one request, so no timer of the program runs between."""
        xdotool("mousemove", *self.screen_point(x, y), "mousedown", button, "mouseup", button)

    def drag(self, path, step_pause=0.08):
        """A left-button drag through the window-relative points of path, one movement each."""
        (x0, y0), rest = path[0], path[1:]
        xdotool("mousemove", *self.screen_point(x0, y0))
        time.sleep(step_pause)
        xdotool("mousedown", 1)
        for x, y in rest:
            time.sleep(step_pause)  # each movement reaches the program on its own
            xdotool("mousemove", *self.screen_point(x, y))
        time.sleep(step_pause)
        xdotool("mouseup", 1)

    @staticmethod
    def keys(*names, delay=40):
        xdotool("key", "--delay", delay, *names)

    @staticmethod
    def type_text(text, delay=8):
        xdotool("type", "--delay", delay, text)

    # Pictures ------------------------------------------------------------------------------

    def screenshot(self, path):
        """The main window's pixels as a PNG at path, read back as an Image."""
        w, h = self.size
        x, y = self.origin
        run(["import", "-window", "root", "-crop", f"{w}x{h}+{x}+{y}", "+repage", path])
        return Image(path)

    @staticmethod
    def screen_shot(path):
        run(["import", "-window", "root", path])
        return path

"""A drag source of the freedesktop drag-and-drop protocol (XDND, version 5) for the tests: it
offers text/uri-list, moves the real pointer with xdotool, speaks XdndEnter/Position/Drop/
Leave to the target window, answers the target's requests for the data, and reports each
XdndStatus (would the drop be taken here?) and the XdndFinished that ends a drop. Xlib through
ctypes, so it needs nothing beyond the X library every X client has."""

import ctypes
import select
import time

from xdriver import DriverError, xdotool

_X = ctypes.cdll.LoadLibrary("libX11.so.6")
_Window = _Atom = _Time = ctypes.c_ulong

CLIENT_MESSAGE, SELECTION_REQUEST, SELECTION_NOTIFY = 33, 30, 31
PROP_MODE_REPLACE, XDND_VERSION = 0, 5


class _ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", _Window), ("message_type", _Atom),
                ("format", ctypes.c_int), ("l", ctypes.c_long * 5)]


class _SelectionRequest(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("owner", _Window), ("requestor", _Window),
                ("selection", _Atom), ("target", _Atom), ("property", _Atom), ("time", _Time)]


class _Selection(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("requestor", _Window), ("selection", _Atom),
                ("target", _Atom), ("property", _Atom), ("time", _Time)]


class _Event(ctypes.Union):
    _fields_ = [("type", ctypes.c_int), ("client", _ClientMessage), ("request", _SelectionRequest),
                ("selection", _Selection), ("pad", ctypes.c_long * 24)]


_X.XOpenDisplay.restype = ctypes.c_void_p
_X.XOpenDisplay.argtypes = [ctypes.c_char_p]
_X.XDefaultRootWindow.restype = _Window
_X.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
_X.XCreateSimpleWindow.restype = _Window
_X.XCreateSimpleWindow.argtypes = [ctypes.c_void_p, _Window, ctypes.c_int, ctypes.c_int, ctypes.c_uint,
                                   ctypes.c_uint, ctypes.c_uint, ctypes.c_ulong, ctypes.c_ulong]
_X.XInternAtom.restype = _Atom
_X.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
_X.XSetSelectionOwner.argtypes = [ctypes.c_void_p, _Atom, _Window, _Time]
_X.XSendEvent.argtypes = [ctypes.c_void_p, _Window, ctypes.c_int, ctypes.c_long, ctypes.POINTER(_Event)]
_X.XNextEvent.argtypes = [ctypes.c_void_p, ctypes.POINTER(_Event)]
_X.XPending.argtypes = [ctypes.c_void_p]
_X.XFlush.argtypes = [ctypes.c_void_p]
_X.XConnectionNumber.argtypes = [ctypes.c_void_p]
_X.XChangeProperty.argtypes = [ctypes.c_void_p, _Window, _Atom, _Atom, ctypes.c_int, ctypes.c_int,
                               ctypes.c_char_p, ctypes.c_int]
_X.XDestroyWindow.argtypes = [ctypes.c_void_p, _Window]
_X.XCloseDisplay.argtypes = [ctypes.c_void_p]


class XdndSource:
    """One drag at a time of a list of URIs onto one target window."""

    def __init__(self, display_name):
        self.display = _X.XOpenDisplay(display_name.encode())
        if not self.display:
            raise DriverError(f"cannot open display {display_name}")
        self.window = _X.XCreateSimpleWindow(self.display, _X.XDefaultRootWindow(self.display), 0, 0, 1, 1, 0, 0, 0)
        self.atoms = {}
        self.payload = b""
        self.requests = 0  # how often the target asked for the data

    def atom(self, name):
        if name not in self.atoms:
            self.atoms[name] = _X.XInternAtom(self.display, name.encode(), 0)
        return self.atoms[name]

    def close(self):
        _X.XDestroyWindow(self.display, self.window)
        _X.XCloseDisplay(self.display)

    def _send(self, target, name, *values):
        event = _Event()
        event.client.type = CLIENT_MESSAGE
        event.client.window = target
        event.client.message_type = self.atom(name)
        event.client.format = 32
        for i, value in enumerate(values):
            event.client.l[i] = value
        _X.XSendEvent(self.display, target, 0, 0, ctypes.byref(event))
        _X.XFlush(self.display)

    def _answer(self, request):
        """Hands the URI list to a target that converts the XDND selection."""
        self.requests += 1
        reply = _Event()
        reply.selection.type = SELECTION_NOTIFY
        reply.selection.requestor = request.requestor
        reply.selection.selection = request.selection
        reply.selection.target = request.target
        reply.selection.time = request.time
        reply.selection.property = 0
        if request.target == self.atom("text/uri-list") and request.property:
            _X.XChangeProperty(self.display, request.requestor, request.property, request.target, 8,
                               PROP_MODE_REPLACE, self.payload, len(self.payload))
            reply.selection.property = request.property
        _X.XSendEvent(self.display, request.requestor, 0, 0, ctypes.byref(reply))
        _X.XFlush(self.display)

    def _wait(self, message, timeout=5):
        """Serves data requests until the target sends `message`; returns its five values."""
        deadline = time.monotonic() + timeout
        event = _Event()
        while True:
            while _X.XPending(self.display):
                _X.XNextEvent(self.display, ctypes.byref(event))
                if event.type == SELECTION_REQUEST:
                    self._answer(event.request)
                elif event.type == CLIENT_MESSAGE and event.client.message_type == self.atom(message):
                    return list(event.client.l)
            left = deadline - time.monotonic()
            if left <= 0:
                raise DriverError(f"no {message} from the drop target within {timeout} s")
            select.select([_X.XConnectionNumber(self.display)], [], [], min(left, 0.05))

    def begin(self, target, uris):
        """Owns the XDND selection with the URIs and enters the target window."""
        self.target = target
        self.payload = "".join(uri + "\r\n" for uri in uris).encode()
        _X.XSetSelectionOwner(self.display, self.atom("XdndSelection"), self.window, 0)
        self._send(target, "XdndEnter", self.window, XDND_VERSION << 24, self.atom("text/uri-list"), 0, 0)

    def move(self, x, y):
        """Moves the pointer to a screen point; True when the target would take the drop there."""
        xdotool("mousemove", x, y)
        self._send(self.target, "XdndPosition", self.window, 0, (x << 16) | y, 0, self.atom("XdndActionCopy"))
        status = self._wait("XdndStatus")
        return bool(status[1] & 1) and status[4] == self.atom("XdndActionCopy")

    def drop(self):
        """Drops where the last move was; True when the target took it."""
        self._send(self.target, "XdndDrop", self.window, 0, 0)
        finished = self._wait("XdndFinished")
        return bool(finished[1] & 1)

    def leave(self):
        self._send(self.target, "XdndLeave", self.window, 0)

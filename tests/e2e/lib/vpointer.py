"""A virtual pointer on a wlroots compositor: the zwlr_virtual_pointer_manager_v1 protocol
spoken over the Wayland socket by hand (nothing packaged in Debian 12 provides one). Its
motions, buttons and frames take the compositor's ordinary input path, so clients see a real
pointer: presses, drags, and the moves a compositor makes for xdg_toplevel.move."""

import os
import select
import socket
import struct
import time

BTN_LEFT, BTN_RIGHT = 0x110, 0x111


class WaylandError(Exception):
    pass


def _string(text):
    data = text.encode() + b"\0"
    return struct.pack("<I", len(data)) + data + b"\0" * (-len(data) % 4)


class VirtualPointer:
    def __init__(self, runtime_dir, display, extent):
        self.sock = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self.sock.connect(os.path.join(runtime_dir, display))
        self.extent = extent  # the output's size: absolute motions are fractions of it
        self.buffer = b""
        self.next_id = 2
        self.globals = {}
        registry = self._new_id()
        self._send(1, 1, struct.pack("<I", registry))  # wl_display.get_registry
        self._roundtrip(registry)
        manager_name, manager_version = self.globals.get("zwlr_virtual_pointer_manager_v1", (None, 0))
        if manager_name is None:
            raise WaylandError("the compositor offers no zwlr_virtual_pointer_manager_v1")
        manager = self._bind(registry, manager_name, "zwlr_virtual_pointer_manager_v1", 1)
        seat_name, _ = self.globals["wl_seat"]
        seat = self._bind(registry, seat_name, "wl_seat", 1)
        self.pointer = self._new_id()
        self._send(manager, 0, struct.pack("<II", seat, self.pointer))  # create_virtual_pointer
        self._roundtrip(registry)
        self.position = None

    def _new_id(self):
        self.next_id += 1
        return self.next_id - 1

    def _send(self, obj, opcode, payload=b""):
        self.sock.sendall(struct.pack("<II", obj, ((8 + len(payload)) << 16) | opcode) + payload)

    def _bind(self, registry, name, interface, version):
        new = self._new_id()
        self._send(registry, 0, struct.pack("<I", name) + _string(interface) + struct.pack("<II", version, new))
        return new

    def _roundtrip(self, registry):
        """wl_display.sync and read events until its callback is done; notes the globals."""
        callback = self._new_id()
        self._send(1, 0, struct.pack("<I", callback))
        deadline = time.monotonic() + 5
        while True:
            for obj, opcode, payload in self._events(deadline):
                if obj == 1 and opcode == 0:  # wl_display.error
                    _, code = struct.unpack_from("<II", payload)
                    message = payload[12:].split(b"\0")[0].decode(errors="replace")
                    raise WaylandError(f"compositor error {code}: {message}")
                if obj == registry and opcode == 0:  # wl_registry.global
                    name, length = struct.unpack_from("<II", payload)
                    interface = payload[8:8 + length - 1].decode()
                    version, = struct.unpack_from("<I", payload, 8 + length + (-length % 4))
                    self.globals[interface] = (name, version)
                if obj == callback:
                    return

    def _events(self, deadline):
        ready, _, _ = select.select([self.sock], [], [], max(0.0, deadline - time.monotonic()))
        if not ready:
            raise WaylandError("the compositor did not answer")
        data = self.sock.recv(65536)
        if not data:
            raise WaylandError("the compositor closed the connection")
        self.buffer += data
        events = []
        while len(self.buffer) >= 8:
            obj, word = struct.unpack_from("<II", self.buffer)
            size = word >> 16
            if len(self.buffer) < size:
                break
            events.append((obj, word & 0xFFFF, self.buffer[8:size]))
            self.buffer = self.buffer[size:]
        return events

    def _drain(self):
        """Reads what the compositor sent meanwhile, so its buffer never fills."""
        while select.select([self.sock], [], [], 0)[0]:
            if not self.sock.recv(65536):
                raise WaylandError("the compositor closed the connection")

    @staticmethod
    def _time():
        return int(time.monotonic() * 1000) & 0xFFFFFFFF

    def move(self, x, y):
        w, h = self.extent
        self._send(self.pointer, 1, struct.pack("<IIIII", self._time(), int(x), int(y), w, h))  # motion_absolute
        self._send(self.pointer, 4)  # frame
        self.position = (x, y)
        self._drain()

    def button(self, pressed, button=BTN_LEFT):
        self._send(self.pointer, 2, struct.pack("<III", self._time(), button, 1 if pressed else 0))
        self._send(self.pointer, 4)
        self._drain()

    def close(self):
        try:
            self._send(self.pointer, 8)  # destroy
            self.sock.close()
        except OSError:
            pass

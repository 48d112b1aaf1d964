"""A pointer for compositors without one. It speaks the Wayland protocol itself, because no packaged
tool keeps a virtual pointer: with wlroots' virtual pointers, or KWin's interface for tests.
"""

import itertools
import os
import socket
import struct

BUTTONS = {"left": 0x110, "right": 0x111, "middle": 0x112}  # as in the kernel's list
DISPLAY, REGISTRY = 1, 2
# Requests and events, by their place in the protocols' files.
GET_REGISTRY, SYNC, BIND = 1, 0, 0
GLOBAL, DONE = 0, 0
ERROR = 0


class WaylandPointer:
    """`size` is the compositor's whole area, in points."""

    def __init__(self, socket_path, size):
        self._size = size
        self._ids = itertools.count(3)
        self._time = itertools.count(1)
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.connect(os.fspath(socket_path))
        self._request(DISPLAY, GET_REGISTRY, struct.pack("=I", REGISTRY))
        names = self._globals()
        if "zwlr_virtual_pointer_manager_v1" in names:
            self._device = _WlrootsDevice(self, names)
        else:
            self._device = _KWinDevice(self, names)
        self._round_trip()

    def close(self):
        self._socket.close()

    def move_to(self, x, y):
        self._device.move_to(x, y)
        self._round_trip()

    def move_by(self, x, y):
        self._device.move_by(x, y)
        self._round_trip()

    def button(self, name, is_pressed):
        self._device.button(BUTTONS[name], int(is_pressed))
        self._round_trip()

    def click(self, x, y, button="left"):
        self.move_to(x, y)
        self.button(button, True)
        self.button(button, False)

    @property
    def size(self):
        return self._size

    def time(self):
        return next(self._time) * 10

    def bind(self, names, interface, version):
        number, _ = names[interface]
        new = next(self._ids)
        name = interface.encode() + b"\0"
        padded = name + b"\0" * (-len(name) % 4)
        self._request(REGISTRY, BIND, struct.pack("=II", number, len(name)) + padded
                      + struct.pack("=II", version, new))
        return new

    def new_id(self):
        return next(self._ids)

    def request(self, thing, opcode, *numbers):
        self._request(thing, opcode, struct.pack(f"={len(numbers)}i", *numbers))

    def request_texts(self, thing, opcode, *texts):
        body = b""
        for text in texts:
            data = text.encode() + b"\0"
            body += struct.pack("=I", len(data)) + data + b"\0" * (-len(data) % 4)
        self._request(thing, opcode, body)

    def _request(self, thing, opcode, body):
        self._socket.sendall(struct.pack("=IHH", thing, opcode, 8 + len(body)) + body)

    def _receive(self, size):
        data = b""
        while len(data) < size:
            part = self._socket.recv(size - len(data))
            if not part:
                raise ConnectionError("The compositor closed the connection")
            data += part
        return data

    def _events(self):
        """All events until the compositor has handled every request so far."""
        callback = next(self._ids)
        self._request(DISPLAY, SYNC, struct.pack("=I", callback))
        while True:
            thing, opcode, size = struct.unpack("=IHH", self._receive(8))
            body = self._receive(size - 8)
            if thing == DISPLAY and opcode == ERROR:
                raise ConnectionError(f"The compositor refuses: {body!r}")
            if thing == callback and opcode == DONE:
                return
            yield thing, opcode, body

    def _round_trip(self):
        for _ in self._events():
            pass

    def _globals(self):
        """Number and version by the name of the interface."""
        found = {}
        for thing, opcode, body in self._events():
            if thing == REGISTRY and opcode == GLOBAL:
                number, length = struct.unpack_from("=II", body)
                version, = struct.unpack_from("=I", body, len(body) - 4)
                found[body[8:8 + length - 1].decode()] = (number, version)
        return found


class _WlrootsDevice:
    MOTION, MOTION_ABSOLUTE, BUTTON, FRAME = 0, 1, 2, 4

    def __init__(self, pointer, names):
        self._pointer = pointer
        manager = pointer.bind(names, "zwlr_virtual_pointer_manager_v1", 1)
        self._id = pointer.new_id()
        pointer.request(manager, 0, 0, self._id)  # for the default seat

    def move_to(self, x, y):
        pointer = self._pointer
        pointer.request(self._id, self.MOTION_ABSOLUTE, pointer.time(), int(x), int(y),
                        *pointer.size)
        pointer.request(self._id, self.FRAME)

    def move_by(self, x, y):
        pointer = self._pointer
        pointer.request(self._id, self.MOTION, pointer.time(), fixed(x), fixed(y))
        pointer.request(self._id, self.FRAME)

    def button(self, code, state):
        pointer = self._pointer
        pointer.request(self._id, self.BUTTON, pointer.time(), code, state)
        pointer.request(self._id, self.FRAME)


class _KWinDevice:
    AUTHENTICATE, MOTION, BUTTON, MOTION_ABSOLUTE = 0, 1, 2, 9

    def __init__(self, pointer, names):
        self._pointer = pointer
        self._id = pointer.bind(names, "org_kde_kwin_fake_input", 4)
        pointer.request_texts(self._id, self.AUTHENTICATE, "desktops", "tests")

    def move_to(self, x, y):
        self._pointer.request(self._id, self.MOTION_ABSOLUTE, fixed(x), fixed(y))

    def move_by(self, x, y):
        self._pointer.request(self._id, self.MOTION, fixed(x), fixed(y))

    def button(self, code, state):
        self._pointer.request(self._id, self.BUTTON, code, state)


def fixed(number):
    """As the protocol writes numbers with a fraction."""
    return int(number * 256)

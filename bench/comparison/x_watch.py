"""Sees from outside what is drawn on an X screen: which parts, when, and what the pixels are.

Every program is watched in the same way, by the server's own notes of what was drawn (the DAMAGE extension), so no program's
word is taken for its frames. Nothing is polled: an idle screen costs the watcher nothing.
"""
import ctypes
import ctypes.util
import dataclasses
import select
import time

_DAMAGE_REPORT_RAW_RECTANGLES = 0
_Z_PIXMAP = 2
_ALL_PLANES = 0xFFFFFFFF


class _Rectangle(ctypes.Structure):
    _fields_ = [("x", ctypes.c_short), ("y", ctypes.c_short), ("width", ctypes.c_ushort), ("height", ctypes.c_ushort)]


class _DamageEvent(ctypes.Structure):
    """XDamageNotifyEvent of X11/extensions/Xdamage.h, as long as the largest event there is."""
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int), ("display", ctypes.c_void_p),
                ("drawable", ctypes.c_ulong), ("damage", ctypes.c_ulong), ("level", ctypes.c_int), ("more", ctypes.c_int),
                ("timestamp", ctypes.c_ulong), ("area", _Rectangle), ("geometry", _Rectangle), ("pad", ctypes.c_long * 24)]


def _library(name, **results):
    library = ctypes.CDLL(ctypes.util.find_library(name))
    for function, kind in results.items():
        getattr(library, function).restype = kind
    return library


@dataclasses.dataclass(frozen=True)
class Drawn:
    """Something was drawn."""
    at: float    # seconds, by the server's clock, whose steps are milliseconds
    pixels: int  # how many


class Watch:
    """One thread only. close() it before its server ends: Xlib ends the whole process when a server goes."""

    def __init__(self, display_name):
        self._x11 = _library("X11", XOpenDisplay=ctypes.c_void_p, XDefaultRootWindow=ctypes.c_ulong, XGetImage=ctypes.c_void_p,
                             XGetPixel=ctypes.c_ulong)
        self._damage = _library("Xdamage", XDamageCreate=ctypes.c_ulong)
        self._display = ctypes.c_void_p(self._x11.XOpenDisplay(display_name.encode()))
        if not self._display:
            raise RuntimeError(f"the X server {display_name} does not answer")
        self._root = ctypes.c_ulong(self._x11.XDefaultRootWindow(self._display))
        event, error = ctypes.c_int(), ctypes.c_int()
        if not self._damage.XDamageQueryExtension(self._display, ctypes.byref(event), ctypes.byref(error)):
            raise RuntimeError("the X server does not tell what is drawn")
        self._notify = event.value
        self._damage.XDamageCreate(self._display, self._root, _DAMAGE_REPORT_RAW_RECTANGLES)
        self._x11.XSync(self._display, 0)
        self._file = self._x11.XConnectionNumber(self._display)

    def close(self):
        self._x11.XCloseDisplay(self._display)

    def drawn(self, seconds):
        """What is drawn from now on for that many seconds, piece by piece as it is drawn. 0: what was drawn unseen so far."""
        deadline = time.monotonic() + seconds
        event = _DamageEvent()
        while True:
            while self._x11.XPending(self._display):
                self._x11.XNextEvent(self._display, ctypes.byref(event))
                if event.type == self._notify:
                    yield Drawn(event.timestamp / 1000, event.area.width * event.area.height)
            left = deadline - time.monotonic()
            if left <= 0:
                return
            select.select([self._file], [], [], left)

    def forget(self):
        """Leaves out what was drawn so far."""
        for _ in self.drawn(0):
            pass

    def clear_root(self):
        """Gives the root window its background back."""
        self._x11.XClearWindow(self._display, self._root)
        self._x11.XSync(self._display, 0)

    def frames(self, seconds, pixels):
        """When frames were shown during that many seconds. A frame is what covers at least that many pixels at once."""
        self.forget()
        return [one.at for one in self.drawn(seconds) if one.pixels >= pixels]

    def brightness(self, points):
        """How bright the screen is at each of the points (x, y): 0..255."""
        return [self._brightness_at(x, y) for x, y in points]

    def _brightness_at(self, x, y):
        all_planes = ctypes.c_ulong(_ALL_PLANES)
        image = ctypes.c_void_p(self._x11.XGetImage(self._display, self._root, x, y, 1, 1, all_planes, _Z_PIXMAP))
        if not image:
            return 0
        colour = self._x11.XGetPixel(image, 0, 0)
        self._x11.XDestroyImage(image)
        return max(colour >> 16 & 255, colour >> 8 & 255, colour & 255)

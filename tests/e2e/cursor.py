"""The pointer as the X server draws it, asked through the XFixes extension; no command tells it."""
import ctypes


class CursorImage(ctypes.Structure):
    _fields_ = [("x", ctypes.c_short), ("y", ctypes.c_short), ("width", ctypes.c_ushort), ("height", ctypes.c_ushort),
                ("xhot", ctypes.c_ushort), ("yhot", ctypes.c_ushort), ("serial", ctypes.c_ulong),
                ("pixels", ctypes.POINTER(ctypes.c_ulong)), ("atom", ctypes.c_ulong), ("name", ctypes.c_char_p)]


def can_be_seen(display):
    """Whether any pixel of the pointer is not transparent."""
    x11, fixes = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXfixes.so.3")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XCloseDisplay.argtypes = x11.XFree.argtypes = [ctypes.c_void_p]
    fixes.XFixesGetCursorImage.argtypes = [ctypes.c_void_p]
    fixes.XFixesGetCursorImage.restype = ctypes.POINTER(CursorImage)
    server = x11.XOpenDisplay(display.encode())
    if not server:
        raise AssertionError("no X server at " + display)
    event_base, error_base = ctypes.c_int(), ctypes.c_int()
    fixes.XFixesQueryExtension(ctypes.c_void_p(server), ctypes.byref(event_base), ctypes.byref(error_base))
    image = fixes.XFixesGetCursorImage(server)
    try:
        drawn = image.contents
        return any(drawn.pixels[i] >> 24 & 0xFF for i in range(drawn.width * drawn.height))
    finally:
        x11.XFree(image)
        x11.XCloseDisplay(server)

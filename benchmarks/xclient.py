"""The X server as the figures need it: looks at pixels and windows, and plays the user's hand through XTEST."""

import ctypes
import time


class Attributes(ctypes.Structure):
    """XWindowAttributes, to the fields that are read here."""

    _fields_ = [("x", ctypes.c_int), ("y", ctypes.c_int), ("width", ctypes.c_int), ("height", ctypes.c_int),
                ("border_width", ctypes.c_int), ("depth", ctypes.c_int), ("visual", ctypes.c_void_p),
                ("root", ctypes.c_ulong), ("c_class", ctypes.c_int), ("bit_gravity", ctypes.c_int),
                ("win_gravity", ctypes.c_int), ("backing_store", ctypes.c_int),
                ("backing_planes", ctypes.c_ulong), ("backing_pixel", ctypes.c_ulong),
                ("save_under", ctypes.c_int), ("colormap", ctypes.c_ulong),
                ("map_installed", ctypes.c_int), ("map_state", ctypes.c_int),
                ("rest", ctypes.c_long * 16)]


VIEWABLE = 2
ALL_PLANES = ctypes.c_ulong(-1)
Z_PIXMAP = 2
REVERT_TO_PARENT = 2
RETURN_KEY = 0xFF0D
Window = ctypes.c_ulong


class XClient:
    def __init__(self):
        self.x11 = ctypes.CDLL("libX11.so.6")
        self.xtst = ctypes.CDLL("libXtst.so.6")
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        self.x11.XDefaultRootWindow.restype = Window
        self.x11.XGetImage.restype = ctypes.c_void_p
        self.x11.XGetPixel.restype = ctypes.c_ulong
        display = self.x11.XOpenDisplay(None)
        if not display:
            raise RuntimeError("no X display")
        self.display = ctypes.c_void_p(display)
        self.root = Window(self.x11.XDefaultRootWindow(self.display))
        # A window may be gone by the time it is asked about; that is no error here.
        self.on_error = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(lambda *_: 0)
        self.x11.XSetErrorHandler(self.on_error)

    def pixel(self, x, y):
        """The color that the screen shows at a place."""
        image = self.x11.XGetImage(self.display, self.root, x, y, 1, 1, ALL_PLANES, Z_PIXMAP)
        if not image:
            return None
        image = ctypes.c_void_p(image)
        value = self.x11.XGetPixel(image, 0, 0)
        self.x11.XDestroyImage(image)
        return value & 0xFFFFFF

    def window(self, width):
        """The visible top-level window of that width with its place, or None."""
        unused, children, count = Window(), ctypes.POINTER(Window)(), ctypes.c_uint()
        self.x11.XQueryTree(self.display, self.root, ctypes.byref(unused), ctypes.byref(unused),
                            ctypes.byref(children), ctypes.byref(count))
        found = None
        for i in range(count.value):
            attributes = Attributes()
            if (self.x11.XGetWindowAttributes(self.display, Window(children[i]), ctypes.byref(attributes))
                    and attributes.width == width and attributes.map_state == VIEWABLE):
                found = (children[i], attributes.x, attributes.y)
        if children:
            self.x11.XFree(children)
        return found

    def wait_window(self, width, seconds=20):
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            found = self.window(width)
            if found:
                return found
            time.sleep(0.001)
        raise RuntimeError(f"no window of width {width}")

    def press_return(self, window):
        """Gives a window the keyboard and presses Return."""
        code = self.x11.XKeysymToKeycode(self.display, ctypes.c_ulong(RETURN_KEY))
        self.x11.XSetInputFocus(self.display, Window(window), REVERT_TO_PARENT, ctypes.c_ulong(0))
        for down in (1, 0):
            self.xtst.XTestFakeKeyEvent(self.display, code, down, ctypes.c_ulong(0))
        self.x11.XSync(self.display, 0)

    def move(self, x, y):
        self.xtst.XTestFakeMotionEvent(self.display, -1, int(x), int(y), ctypes.c_ulong(0))
        self.x11.XFlush(self.display)

    def button(self, down):
        self.xtst.XTestFakeButtonEvent(self.display, 1, int(down), ctypes.c_ulong(0))
        self.x11.XFlush(self.display)

    def click(self, x, y):
        self.move(x, y)
        self.button(True)
        self.button(False)

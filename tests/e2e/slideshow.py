"""The real program on a screen of its own, with a home folder of its own; everything is gone when a test ends."""
import os
import pathlib
import queue
import re
import shutil
import signal
import subprocess
import tempfile
import threading
import time
import unittest

import pixels

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get("LUMIVANE_BUILD", ROOT / "build" / "dev"))
APP = BUILD / "app" / "LumivaneApp"
COMPANION = BUILD / "tools" / "lumivane"
PAINTER = BUILD / "tools" / "demo-pictures" / "lumivane-demo-pictures"
WIDTH, HEIGHT = 1280, 720
SHOWN = re.compile(r"information (/.*\.(?:jpe?g|png|heic|webp|avif|jxl|tiff?))$", re.IGNORECASE)
PATIENCE = 60  # seconds; only a failure ever takes so long

# Nothing on the screen but the picture, and nothing that moves: each test switches on what it is about.
PLAIN = {"KenBurnsIsOn": "false", "ZoomIsOn": "false", "CrossDissolve": "false", "DontRandomize": "true",
         "ShowImageInfo": "false", "ShowImagePath": "false", "DisplayFilename": "false", "DurationPerImage": "600"}


def eventually(condition, what, patience=PATIENCE):
    """Asks again and again until the answer is more than nothing (None, False, 0, ""), and gives it back."""
    deadline = time.monotonic() + patience
    while time.monotonic() < deadline:
        answer = condition()
        if answer:
            return answer
        time.sleep(0.05)
    raise AssertionError(f"{what}: not within {patience} seconds")


class VirtualScreen:
    """An X screen nobody else uses, with a window manager."""

    def __init__(self, home):
        read_end, write_end = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{WIDTH}x{HEIGHT}x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as number:
            self.environment = {"DISPLAY": ":" + number.readline().strip()}
        self.manager = subprocess.Popen(["openbox", "--sm-disable"], env={**os.environ, **self.environment, "HOME": home},
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def shot(self):
        return pixels.of_screen({**os.environ, **self.environment})

    def area(self, x, y, width, height):
        """The pixels of a part of the screen."""
        return pixels.area_of_screen({**os.environ, **self.environment}, x, y, width, height)

    def do(self, *arguments):
        """Has the user's hand move: xdotool's own words for what it does."""
        return subprocess.run(["xdotool", *arguments], env={**os.environ, **self.environment}, timeout=30, check=True,
                              text=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout

    def active_window(self):
        """The number of the window that has the keys; None while none has them."""
        try:
            return int(self.do("getactivewindow")) or None
        except (subprocess.CalledProcessError, ValueError):  # the window manager has not said yet
            return None

    def press(self, key):
        """Once there is somebody to hear it: a picture may be ready before its window is."""
        eventually(self.active_window, "a window has the keys")
        self.do("key", key)

    def wave(self):
        """Moves the mouse for a second, as a hand does: a program may take moves that come all at once for a single one."""
        moves = []
        for x in range(300, 400, 10):
            moves += ["mousemove", str(x), "300", "sleep", "0.1"]
        self.do(*moves)

    def window_size(self):
        """Of the slideshow's window; None while there is none."""
        try:
            told = self.do("search", "--onlyvisible", "--name", "^Lumivane$", "getwindowgeometry")
        except subprocess.CalledProcessError:
            return None
        found = re.search(r"Geometry: (\d+)x(\d+)", told)
        return tuple(map(int, found.groups())) if found else None

    def close(self):
        for process in (self.manager, self.server):
            end(process)


class WaylandScreen:
    """A headless Wayland compositor."""

    def __init__(self, home):
        self.folder = pathlib.Path(home)
        runtime = self.folder / "runtime"
        runtime.mkdir(mode=0o700, exist_ok=True)
        (runtime / "wayland-e2e").unlink(missing_ok=True)  # of one that was killed
        self.environment = {"XDG_RUNTIME_DIR": str(runtime), "WAYLAND_DISPLAY": "wayland-e2e", "QT_QPA_PLATFORM": "wayland"}
        self.server = subprocess.Popen(
            ["weston", "--backend=headless-backend.so", "--use-pixman", f"--width={WIDTH}", f"--height={HEIGHT}",
             "--socket=wayland-e2e", "--idle-time=0", "--debug", "--no-config"],
            env={**without_display(), **self.environment}, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        eventually((runtime / "wayland-e2e").exists, "the Wayland compositor listens")

    def shot(self):
        with tempfile.TemporaryDirectory(dir=self.folder) as folder:
            subprocess.run(["weston-screenshooter"], cwd=folder, env={**without_display(), **self.environment}, timeout=60,
                           check=True, stdout=subprocess.DEVNULL)
            return pixels.of_file(next(pathlib.Path(folder).glob("*.png")))

    def close(self):
        end(self.server)


class Service:
    """Stands in for a service on a bus, and keeps what it was asked."""

    def __init__(self, bus, name, path, methods, interface=None):
        """methods: what each takes and gives back, as (name, signature, result signature, Python code for the result)."""
        interface = interface or name
        self.name, self.path, self.environment = name, path, bus.environment
        self.log = pathlib.Path(bus.home) / (name + ".log")
        self.process = subprocess.Popen(
            ["/usr/bin/python3", "-m", "dbusmock", "--session", "--logfile", str(self.log), name, path, interface],
            env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        eventually(lambda: self.mock("Reset"), f"the stand-in for {name} answers")
        for method in methods:
            self.mock("AddMethod", interface, *method)

    def mock(self, method, *arguments, path=None):
        """Tells the stand-in how to behave; the object at another path of the same service, if one is given."""
        done = subprocess.run(["gdbus", "call", "--session", "--dest", self.name, "--object-path", path or self.path, "--method",
                               "org.freedesktop.DBus.Mock." + method, *arguments],
                              env=self.environment, timeout=30, check=False, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return done.returncode == 0

    def emit(self, signal_name, signature, *arguments, interface=None, path=None):
        assert self.mock("EmitSignal", interface or self.name, signal_name, signature, "[" + ", ".join(arguments) + "]", path=path)

    def calls(self, method):
        """The log's lines about calls of that method, in order; None while there is none."""
        lines = self.log.read_text().splitlines() if self.log.exists() else []
        return [line for line in lines if f" {method} " in line + " "] or None


class Bus:
    """A D-Bus message bus of its own, used as the session's or as the system's."""

    def __init__(self, home, name):
        self.home = home
        self.address = f"unix:path={home}/{name}"
        self.environment = {**without_display(), "HOME": home, "DBUS_SESSION_BUS_ADDRESS": self.address}
        self.processes = [subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--nopidfile", "--address", self.address],
                                           env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)]
        eventually(pathlib.Path(home, name).exists, "the bus listens")

    def start(self, name, path, *methods, interface=None):
        service = Service(self, name, path, methods, interface)
        self.processes.insert(0, service.process)
        return service

    def close(self):
        for process in self.processes:
            end(process)


def without_display():
    return {name: value for name, value in os.environ.items()
            if name not in ("DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY", "QT_QPA_PLATFORM", "DBUS_SESSION_BUS_ADDRESS")}


def end(process):
    if process.poll() is None:
        process.send_signal(signal.SIGTERM)
    try:
        process.wait(timeout=10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


class Slideshow:
    """The program, what it logs, and its companion for setting it up."""

    def __init__(self, home, screen):
        self.screen = screen
        runtime = pathlib.Path(home) / "runtime"
        runtime.mkdir(mode=0o700, exist_ok=True)
        self.environment = {**without_display(), "HOME": home, "XDG_RUNTIME_DIR": str(runtime), "LUMIVANE_LOG": "stderr", "LC_ALL": "C.UTF-8",
                            "XDG_CONFIG_HOME": home + "/config", "XDG_DATA_HOME": home + "/data",
                            "XDG_CACHE_HOME": home + "/cache", "XDG_STATE_HOME": home + "/state",
                            "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent",
                            "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent",
                            **screen.environment}
        self.wrapper = []  # a program that becomes the slideshow, and its arguments
        self.process = None
        self.reader = None
        self.lines = []
        self.shown = None
        self.unread = queue.Queue()

    def companion(self, *arguments):
        done = subprocess.run([COMPANION, *arguments], env=self.environment, timeout=120, check=False, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        if done.returncode != 0:
            raise AssertionError(f"lumivane {' '.join(map(str, arguments))} ended with {done.returncode}:\n{done.stdout}")
        return done.stdout

    def set_up(self, folder, **settings):
        self.companion("collect", str(folder))
        for key, value in {**PLAIN, **settings}.items():
            self.companion("settings", key, value)

    def begin_anew(self):
        """Ends an earlier run and forgets what it logged."""
        self.close()
        self.lines, self.shown, self.unread = [], None, queue.Queue()

    def start(self, *flags):
        self.process = subprocess.Popen([*self.wrapper, APP, *flags], env=self.environment, stderr=subprocess.PIPE, text=True,
                                        errors="replace", stdout=subprocess.DEVNULL)
        self.reader = threading.Thread(target=self._read, args=(self.process.stderr,), daemon=True)
        self.reader.start()

    def _read(self, log):
        for line in log:
            self.lines.append(line.rstrip("\n"))
            self.unread.put(line.rstrip("\n"))

    def next_shown(self, patience=PATIENCE):
        """The path of the next picture that the log says is shown; the same one anew, as after a resize, is no next one."""
        deadline = time.monotonic() + patience
        while True:
            try:
                found = SHOWN.search(self.unread.get(timeout=max(deadline - time.monotonic(), 0.01)))
            except queue.Empty:
                raise AssertionError("no picture was shown; the log:\n" + "\n".join(self.lines[-40:])) from None
            if found and found.group(1) != self.shown:
                self.shown = found.group(1)
                return pathlib.Path(self.shown)

    def shown_lines(self):
        """The paths of all pictures that were shown so far, in order."""
        found = (SHOWN.search(line) for line in self.lines)
        return [pathlib.Path(line.group(1)) for line in found if line]

    def count(self, text):
        return sum(text in line for line in self.lines)

    def kill(self):
        """Ends the program where it stands, and reads the rest of its log."""
        self.process.kill()
        self.process.wait()
        self.reader.join()
        self.process.stderr.close()
        self.process = None

    def close(self):
        if self.process is not None:
            end(self.process)
            self.reader.join(timeout=10)
            self.process.stderr.close()
            self.process = None


class SlideshowTest(unittest.TestCase):
    """Gives each test a screen, a home folder and a painted handful of pictures."""

    screen_type = VirtualScreen

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="lumivane-painted-")
        cls.addClassCleanup(folder.cleanup)
        subprocess.run([PAINTER, folder.name, "40"], check=True, timeout=120)
        cls.painted = folder.name

    def setUp(self):
        self.home = tempfile.mkdtemp(prefix="lumivane-e2e-")
        self.addCleanup(shutil.rmtree, self.home, ignore_errors=True)
        self.screen = self.screen_type(self.home)
        self.addCleanup(self.screen.close)
        self.show = Slideshow(self.home, self.screen)
        self.addCleanup(self.show.close)
        self.addCleanup(self.no_decoder_died)
        self.pictures = pathlib.Path(self.home) / "pictures"
        shutil.copytree(self.painted, self.pictures)

    def begin(self, *flags, **settings):
        """The show as it stands once its first picture is there."""
        self.show.set_up(self.pictures, **settings)
        self.show.begin_anew()
        self.show.start(*flags)
        self.show.next_shown()
        eventually(self.screen.window_size, "a window")

    def no_decoder_died(self):
        """Whatever the pictures were: the process that opens them may refuse one, and lives on."""
        self.assertEqual([line for line in self.show.lines if "The decoder process ended" in line], [])

    def open_bus(self, variable):
        """A bus that the program takes for the session's or the system's."""
        bus = Bus(self.home, variable.lower())
        self.addCleanup(bus.close)
        self.show.environment[variable] = bus.address
        return bus

    def assert_on_screen(self, path, tolerance=6):
        """The screen comes to show that picture, fitted."""
        expected = pixels.fitted(path, WIDTH, HEIGHT)
        eventually(lambda: pixels.distance(self.screen.shot(), expected) < tolerance, f"{path.name} on the screen")

#!/usr/bin/python3
"""What goes wrong around the real program: its display server dies, a monitor is unplugged, the pictures' disk hangs."""
import os
import pathlib
import plistlib
import signal
import socket
import subprocess
import time
import unittest

from slideshow import HEIGHT, WIDTH, SlideshowTest, WaylandScreen, end, eventually

# A file system whose owner never reads a question: who asks it anything waits until it is given up.
HUNG = """
import ctypes, os, sys
device = os.open("/dev/fuse", os.O_RDWR)
options = f"fd={device},rootmode=40000,user_id=0,group_id=0"
libc = ctypes.CDLL(None, use_errno=True)
failed = libc.mount(b"hung", sys.argv[1].encode(), b"fuse", 0, options.encode())
print("failed" if failed else "mounted", flush=True)
sys.stdin.read()
"""


def setUpModule():
    SlideshowTest.setUpClass.__func__(FaultsTest)
    unittest.addModuleCleanup(FaultsTest.doClassCleanups)


class FaultsTest(SlideshowTest):
    @classmethod
    def setUpClass(cls):
        """The pictures are painted once for all."""

    def setUp(self):
        super().setUp()
        self.alive = pathlib.Path(self.home) / "state" / "K7Q4MZ2R9T.de.orvik.LumivaneGroup" / "LumivaneApp.flags"

    def begin(self, *flags, **settings):
        self.show.set_up(self.pictures, **{"DurationPerImage": "1", **settings})
        self.show.begin_anew()
        self.show.start(*flags)
        self.show.next_shown()
        eventually(self.alive.exists, "the alive file")

    def recorded(self):
        with open(next(pathlib.Path(self.home).glob("data/**/LumivaneLastRunInfo.*.plist")), "rb") as file:
            return plistlib.load(file)["ImageIndex"]


class DeadServer:
    """Mixed into a class with a screen of one kind or the other."""

    def test_without_its_server_the_show_ends_in_order(self):
        for _ in range(2):
            self.begin("-f", KenBurnsIsOn="true")
            self.show.next_shown()
            self.screen.server.send_signal(signal.SIGKILL)
            self.screen.server.wait()
            self.assertEqual(self.show.process.wait(timeout=20), 1)
            self.show.reader.join()
            self.assertEqual(self.show.count("The connection to the display server broke."), 1)
            self.assertFalse(self.alive.exists())
            last = sorted(self.pictures.iterdir()).index(self.show.shown_lines()[-1])
            self.assertIn(self.recorded(), (last, last + 1))  # written a moment before the log says what is shown
            self.screen.close()
            self.screen = self.screen_type(self.home)
            self.addCleanup(self.screen.close)
            self.show.environment.update(self.screen.environment)


class DeadXServer(DeadServer, FaultsTest):
    pass


class DeadWaylandServer(DeadServer, FaultsTest):
    screen_type = WaylandScreen


class Monitors(FaultsTest):
    def monitor(self, *words):
        subprocess.run(["xrandr", *map(str, words)], env={**os.environ, **self.screen.environment}, check=True, timeout=30,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def plug(self, name, x, width, output):
        self.monitor("--setmonitor", name, f"{width}/300x{HEIGHT}/200+{x}+0", output)

    def window(self):
        return self.screen.do("search", "--onlyvisible", "--name", "^Lumivane$").split()[0]

    def test_the_show_goes_on_when_its_monitor_goes_and_comes(self):
        half = WIDTH // 2
        self.plug("LEFT", 0, half, "screen")
        self.plug("RIGHT", half, half, "none")
        self.begin()
        eventually(self.screen.window_size, "a window")
        self.screen.do("windowsize", "--sync", self.window(), "400", "300", "windowmove", self.window(), str(half + 100), "200")
        eventually(lambda: self.show.count("our display = RIGHT"), "the window stands on the right")
        before = self.show.count("our display = LEFT")
        self.monitor("--delmonitor", "RIGHT")
        eventually(lambda: self.show.count("our display = LEFT") > before, "it stands on the display that is left")
        self.show.next_shown()
        on_right = self.show.count("our display = RIGHT")
        self.plug("RIGHT", half, half, "none")
        self.screen.do("windowmove", self.window(), str(half + 50), "100")
        eventually(lambda: self.show.count("our display = RIGHT") > on_right, "it stands on the right again")
        on_left = self.show.count("our display = LEFT")
        self.screen.do("windowmove", self.window(), "50", "50")
        eventually(lambda: self.show.count("our display = LEFT") > on_left, "it stands on the left again")
        self.show.shown = None
        self.show.next_shown()
        self.assertIsNone(self.show.process.poll())

    def stand_on_the_right(self):
        half = WIDTH // 2
        self.plug("LEFT", 0, half, "screen")
        self.plug("RIGHT", half, half, "none")
        self.begin(DurationPerImage="600")
        eventually(lambda: max(self.screen.area(half // 2, HEIGHT // 2, 20, 20)) > 30, "a picture on the left")
        self.screen.do("windowsize", "--sync", self.window(), "400", "300", "windowmove", self.window(), str(half + 100), "200")
        eventually(lambda: self.show.count("our display = RIGHT"), "the window stands on the right")
        self.screen.do("windowactivate", "--sync", self.window())

    def place(self):
        """The window's left edge and width."""
        told = dict(line.split("=") for line in self.screen.do("getwindowgeometry", "--shell", self.window()).split())
        return int(told["X"]), int(told["WIDTH"])

    def test_a_full_screen_show_fills_the_display_that_is_left(self):
        half = WIDTH // 2
        self.stand_on_the_right()
        self.screen.press("F11")
        eventually(lambda: self.place() == (half, half), "full screen on the right")
        self.show.shown = None
        self.monitor("--delmonitor", "RIGHT")
        eventually(lambda: self.place() == (0, half), "full screen on the left")
        self.show.next_shown()
        self.screen.press("F11")
        eventually(lambda: self.place()[1] == 400, "a window again, as large as it was")
        self.assertLess(self.place()[0], half)

    def test_a_window_follows_to_the_display_that_is_left(self):
        half = WIDTH // 2
        self.stand_on_the_right()
        self.show.shown = None
        self.monitor("--delmonitor", "RIGHT")
        eventually(lambda: self.place()[0] + 400 <= half + 10, "on the left, but for the frame")
        self.show.next_shown()

    def test_the_show_goes_on_with_another_scale(self):
        half = WIDTH // 2
        self.show.environment["QT_SCREEN_SCALE_FACTORS"] = "LEFT=1;RIGHT=2"
        self.stand_on_the_right()
        # A display without a list of its own has a message for the user, in letters twice as large: 19 rows are usual.
        large = range(30, 50)
        eventually(lambda: self.text_height(half + 100, 200) in large, "large letters on the right")
        self.show.shown = None
        self.screen.do("windowmove", self.window(), "100", "100")
        self.show.next_shown()
        eventually(lambda: self.show.count("our display = LEFT") > 1, "the window stands on the left")
        self.screen.do("windowmove", self.window(), str(half + 100), "200")
        eventually(lambda: self.text_height(half + 100, 200) in large, "large letters on the right again")
        self.assertIsNone(self.show.process.poll())

    def text_height(self, x, y):
        """How many rows of the black window, beside its frame, have something bright in them."""
        width, height = 380, 250
        pixels = self.screen.area(x + 10, y + 40, width, height)
        return sum(max(pixels[row * width * 3:(row + 1) * width * 3]) > 200 for row in range(height))


@unittest.skipUnless(os.geteuid() == 0 and os.path.exists("/dev/fuse"), "only the administrator can mount")
class HungDisk(FaultsTest):
    def begin_in_own_mounts(self, **settings):
        self.show.wrapper = ["unshare", "--mount", "--propagation", "private"]
        self.begin(**settings)
        eventually(self.screen.window_size, "a window")

    def inside(self, *words):
        return ["nsenter", "--target", str(self.show.process.pid), "--mount", *words]

    def hang(self):
        self.disk = subprocess.Popen(self.inside("/usr/bin/python3", "-c", HUNG, str(self.pictures)), text=True,
                                     stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.addCleanup(self.disk.stdin.close)
        self.addCleanup(self.disk.stdout.close)
        self.addCleanup(end, self.disk)
        if self.disk.stdout.readline() != "mounted\n":
            self.skipTest("this machine lets nobody mount")

    def come_back(self):
        end(self.disk)  # what waits fails now
        subprocess.run(self.inside("umount", "--lazy", str(self.pictures)), check=True, timeout=30)

    def assert_answers_keys(self):
        """A key that rewrites the line of text, which the log repeats, is acted on at once."""
        for _ in range(3):
            before = len(self.show.lines)
            self.screen.press("i")
            begun = time.monotonic()
            eventually(lambda: len(self.show.lines) > before, "the key was acted on", patience=5)
            self.assertLess(time.monotonic() - begun, 1)
            time.sleep(0.3)

    def test_keys_are_obeyed_while_it_hangs_and_pictures_come_again(self):
        self.begin_in_own_mounts()
        self.show.next_shown()
        self.hang()
        shown = len(self.show.shown_lines())
        eventually(lambda: self.show.count("Background thread still loading: "), "nothing comes any more")
        self.assert_answers_keys()
        self.screen.press("Delete")
        self.screen.press("Return")
        self.assert_answers_keys()
        self.come_back()
        last = self.show.shown_lines()[-1]
        eventually(lambda: self.show.shown_lines()[-1] != last, "another picture")
        self.assertGreater(len(self.show.shown_lines()), shown)

    def test_it_starts_and_ends_though_the_disk_hangs(self):
        self.begin_in_own_mounts()
        self.hang()
        eventually(lambda: self.show.count("Background thread still loading: "), "nothing comes any more")
        begun = time.monotonic()
        self.show.process.send_signal(signal.SIGTERM)
        eventually(lambda: not self.alive.exists(), "the alive file goes", patience=5)
        # What waits inside the kernel keeps the process there until the disk is given up.
        time.sleep(max(0, 6 - (time.monotonic() - begun)))
        end(self.disk)
        self.assertEqual(self.show.process.wait(timeout=20), 0)


class SilentBus(FaultsTest):
    def test_buses_that_never_answer_are_done_without(self):
        silent = socket.socket(socket.AF_UNIX)
        self.addCleanup(silent.close)
        silent.bind(self.home + "/silent")
        silent.listen()
        for variable in ("DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"):
            self.show.environment[variable] = "unix:path=" + self.home + "/silent"
        self.begin("-f")
        self.assertEqual(self.show.count("does not answer; the show does without it."), 2)
        self.assert_ends()

    def test_nobody_waits_for_a_bus_that_stops(self):
        buses = [self.open_bus(variable) for variable in ("DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS")]
        self.begin()
        eventually(self.screen.window_size, "a window")
        for bus in buses:
            bus.processes[-1].send_signal(signal.SIGSTOP)
            self.addCleanup(bus.processes[-1].send_signal, signal.SIGCONT)
        for key in ("Return", "f", "space", "space"):
            self.screen.press(key)
        before = len(self.show.lines)
        self.screen.press("i")
        eventually(lambda: len(self.show.lines) > before, "the key was acted on", patience=2)
        self.show.next_shown()
        self.assert_ends()

    def assert_ends(self):
        self.show.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.show.process.wait(timeout=3), 0)


class GoneDisk(FaultsTest):
    def test_pictures_come_again_with_their_folder(self):
        self.begin()
        self.show.next_shown()
        away = self.pictures.with_name("away")
        self.pictures.rename(away)
        eventually(lambda: self.show.count("Several images in a row are gone!"), "the loss is told")
        away.rename(self.pictures)
        last = self.show.shown_lines()[-1]
        eventually(lambda: self.show.shown_lines()[-1] != last, "another picture")


if __name__ == "__main__":
    unittest.main(verbosity=2)

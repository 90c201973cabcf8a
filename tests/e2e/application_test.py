#!/usr/bin/python3
"""The program as an application: how it is asked to start, what it tells others, how it ends."""
import os
import pathlib
import re
import signal
import time
import unittest

import pixels
from slideshow import HEIGHT, WIDTH, SlideshowTest, eventually

LOGIN = ("org.freedesktop.login1", "/org/freedesktop/login1")
SCREEN_SAVER = ("org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver")


class Application(SlideshowTest):
    def setUp(self):
        super().setUp()
        self.shared = pathlib.Path(self.home) / "state" / "K7Q4MZ2R9T.de.orvik.LumivaneGroup"
        self.alive = self.shared / "LumivaneApp.flags"
        self.request = self.shared / "LumivaneApp-Auto-Launcher.flags"

    def fills_screen(self):
        return self.screen.window_size() == (WIDTH, HEIGHT)

    def assert_ends(self):
        self.assertEqual(self.show.process.wait(timeout=20), 0)

    # --- The launcher's request ---

    def leave_request(self, content, seconds_ago):
        self.shared.mkdir(mode=0o700, parents=True, exist_ok=True)
        self.request.write_text(content)
        then = time.time() - seconds_ago
        os.utime(self.request, (then, then))

    def begin_with_request(self, content, seconds_ago):
        self.show.set_up(self.pictures)
        self.leave_request(content, seconds_ago)
        self.show.start()
        self.show.next_shown()
        eventually(self.screen.window_size, "a window")
        self.assertFalse(self.request.exists())

    def test_a_fresh_request_starts_a_stand_in_for_the_screen_saver(self):
        self.begin_with_request("-s", 3)
        eventually(self.fills_screen, "full screen")
        self.screen.wave()
        self.assert_ends()

    def test_an_old_request_starts_nothing_special(self):
        self.begin_with_request("-s", 12)
        self.assertFalse(self.fills_screen())
        self.screen.wave()
        self.screen.press("x")
        time.sleep(1)
        self.assertIsNone(self.show.process.poll())

    def test_a_request_with_a_line_feed_is_unknown(self):
        self.begin_with_request("-f\n", 1)
        self.assertFalse(self.fills_screen())
        self.assertTrue(self.show.count("Unknown flag (-f\\x0A)!"))

    def test_a_request_that_is_no_file_is_survived(self):
        self.show.set_up(self.pictures)
        self.shared.mkdir(parents=True)
        os.mkfifo(self.request)
        self.show.start()
        self.show.next_shown()
        self.assertTrue(self.show.count("Reading flags file"))
        self.assertFalse(self.request.exists())

    # --- Alive, and the end ---

    def test_the_alive_file_is_there_while_the_program_is(self):
        self.begin()
        self.assertRegex(eventually(lambda: self.alive.exists() and self.alive.read_text(), "the alive file"),
                         r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d [+-]\d{4}$")
        self.assertEqual(self.shared.stat().st_mode & 0o777, 0o700)
        self.screen.press("ctrl+q")
        self.assert_ends()
        self.assertFalse(self.alive.exists())

    def test_signals_end_it_as_closing_the_window_does(self):
        for number in (signal.SIGTERM, signal.SIGINT):
            with self.subTest(signal=number):
                self.begin()
                self.screen.press("Right")
                self.show.next_shown()
                self.show.process.send_signal(number)
                self.assert_ends()
                self.assertFalse(self.alive.exists())

    def test_the_window_comes_back_where_it_was(self):
        self.begin()
        window = self.screen.do("search", "--onlyvisible", "--name", "^Lumivane$").split()[-1]
        self.screen.do("windowsize", "--sync", window, "700", "420")
        self.screen.do("windowmove", "--sync", window, "220", "130")
        place = eventually(lambda: self.place_of(window), "a place")
        self.show.process.terminate()
        self.assert_ends()
        self.begin()
        eventually(lambda: self.screen.window_size() == (700, 420), "the size as before")
        window = self.screen.do("search", "--onlyvisible", "--name", "^Lumivane$").split()[-1]
        eventually(lambda: self.place_of(window) == place, f"the place as before, {place}")

    def place_of(self, window):
        found = re.search(r"Position: (-?\d+),(-?\d+)", self.screen.do("getwindowgeometry", window))
        return tuple(map(int, found.groups()))

    # --- The menu ---

    def test_the_menu_opens_by_mouse_and_by_key(self):
        self.begin("-f")
        without = eventually(lambda: sum(self.screen.shot()) > 8 * pixels.COUNT and self.screen.shot(), "a picture")
        for open_menu in (lambda: self.screen.do("mousemove", "600", "300", "click", "3"),
                          lambda: self.screen.press("F10"), lambda: self.screen.press("Menu")):
            open_menu()
            eventually(lambda: pixels.distance(self.screen.shot(), without) > 0.5, "the menu")
            self.screen.press("Escape")
            eventually(lambda: pixels.distance(self.screen.shot(), without) < 0.2, "the menu goes")
        self.screen.press("F10")
        eventually(lambda: pixels.distance(self.screen.shot(), without) > 0.5, "the menu")
        self.screen.press("q")
        self.assert_ends()

    def test_f11_changes_between_window_and_full_screen(self):
        self.begin()
        self.screen.press("F11")
        eventually(self.fills_screen, "full screen")
        self.screen.press("F11")
        eventually(lambda: not self.fills_screen(), "a window")

    # --- Sleep and waking ---

    def test_a_stand_in_ends_when_the_machine_goes_to_sleep(self):
        login = self.open_bus("DBUS_SYSTEM_BUS_ADDRESS").start(*LOGIN)
        self.begin("-s")
        self.sleep_until_it_ends(lambda: login.emit("PrepareForSleep", "b", "<true>", interface=LOGIN[0] + ".Manager"))

    def test_a_stand_in_ends_when_the_screens_go_dark(self):
        saver = self.open_bus("DBUS_SESSION_BUS_ADDRESS").start(*SCREEN_SAVER)
        self.begin("-s")
        self.sleep_until_it_ends(lambda: saver.emit("ActiveChanged", "b", "<true>"))

    def sleep_until_it_ends(self, fall_asleep):
        """When the program has begun to listen, nobody outside can tell."""
        def ended():
            fall_asleep()
            return self.show.process.poll() is not None
        eventually(ended, "the end", patience=20)
        self.assertEqual(self.show.process.returncode, 0)

    def test_an_ordinary_show_goes_on_after_sleep(self):
        login = self.open_bus("DBUS_SYSTEM_BUS_ADDRESS").start(*LOGIN)
        self.begin("-f")
        login.emit("PrepareForSleep", "b", "<true>", interface=LOGIN[0] + ".Manager")
        time.sleep(1)
        self.assertIsNone(self.show.process.poll())

    def test_a_full_screen_show_keeps_the_screen_awake_until_it_is_paused(self):
        saver = self.open_bus("DBUS_SESSION_BUS_ADDRESS").start(
            *SCREEN_SAVER, ("Inhibit", "ss", "u", "ret = 4711"), ("UnInhibit", "u", "", ""))
        self.begin()
        time.sleep(1)
        self.assertIsNone(saver.calls("Inhibit"), "a show in a window does not")
        self.screen.press("f")
        eventually(lambda: saver.calls("Inhibit"), "the screen is kept awake")
        self.screen.press("space")
        self.assertIn("4711", eventually(lambda: saver.calls("UnInhibit"), "the screen may go dark")[0])
        self.screen.press("space")
        eventually(lambda: len(saver.calls("Inhibit")) == 2, "the screen is kept awake again")


if __name__ == "__main__":
    unittest.main(verbosity=2)

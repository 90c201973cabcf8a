#!/usr/bin/python3
"""What the desktop sees of the program: its name, its icon, its pointer, its dialogs."""
import re
import subprocess
import unittest

import cursor
import pixels
from slideshow import ROOT, SlideshowTest, WaylandScreen, eventually

APPLICATION_ID = "de.orvik.LumivaneApp"


class OnX11(SlideshowTest):
    def property_of_window(self, name):
        window = self.screen.do("search", "--onlyvisible", "--name", "^Lumivane$").split()[-1]
        return subprocess.run(["xprop", "-id", window, "-notype", name], env=self.show.environment, timeout=30, check=True,
                              text=True, stdout=subprocess.PIPE).stdout

    def pointer_can_be_seen(self):
        return cursor.can_be_seen(self.screen.environment["DISPLAY"])

    def test_the_window_says_which_program_it_is_of(self):
        self.begin()
        entry = (ROOT / "resources" / f"{APPLICATION_ID}.desktop").read_text()
        name = re.search("^StartupWMClass=(.+)$", entry, re.MULTILINE).group(1)
        self.assertIn(f'"{name}"', self.property_of_window("WM_CLASS"))
        icons = self.property_of_window("_NET_WM_ICON")
        self.assertEqual(re.findall(r"Icon \((.*?)\)", icons), ["48 x 48", "128 x 128"])  # Qt leaves out what is larger

    def test_a_resting_pointer_hides_and_comes_back(self):
        self.begin("-f", DurationPerImage="600")
        self.screen.wave()
        self.assertTrue(self.pointer_can_be_seen())
        eventually(lambda: not self.pointer_can_be_seen(), "the pointer hides", patience=10)
        self.screen.wave()
        self.assertTrue(self.pointer_can_be_seen())

    def test_a_stand_in_shows_no_pointer(self):
        self.begin("-s")
        eventually(lambda: not self.pointer_can_be_seen(), "the pointer hides")


class OnWayland(SlideshowTest):
    screen_type = WaylandScreen

    def test_the_window_says_which_program_it_is_of(self):
        self.show.environment["WAYLAND_DEBUG"] = "1"
        self.show.set_up(self.pictures)
        self.show.start()
        eventually(lambda: self.show.count(f'set_app_id("{APPLICATION_ID}")'), "the window bears the application's name")

    def test_the_preferences_of_the_first_start_lie_over_the_window(self):
        self.show.start()
        eventually(lambda: self.show.count("Change pics folder in Preferences for monitor"), "the show begins")
        # Behind the window only a tenth of the screen would be seen of them.
        eventually(lambda: pixels.part_of_light_grey(self.screen.shot()) > 0.2, "the preferences lie over the black window")


if __name__ == "__main__":
    unittest.main(verbosity=2)

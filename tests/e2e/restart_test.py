#!/usr/bin/python3
"""Killed at any moment, the show goes on with the picture that it showed last.

LUMIVANE_RESTARTS says how often it is killed.
"""
import os
import pathlib
import plistlib
import random
import time
import unittest

from slideshow import SlideshowTest

RESTARTS = int(os.environ.get("LUMIVANE_RESTARTS", "30"))


class Restart(SlideshowTest):
    def record(self):
        with open(next(pathlib.Path(self.home).glob("data/**/LumivaneLastRunInfo.*.plist")), "rb") as file:
            return plistlib.load(file)["ImageIndex"]

    def test_it_goes_on_where_it_was_killed(self):
        self.show.set_up(self.pictures, DurationPerImage="1")
        in_order = sorted(self.pictures.iterdir())
        dice = random.Random(2026)
        expected = in_order[1]  # a fresh list begins with its second picture
        for restart in range(RESTARTS):
            self.show.begin_anew()
            self.show.start("-f")
            self.assertEqual(self.show.next_shown(), expected, f"after {restart} restarts")
            time.sleep(dice.uniform(0, 1.3))
            self.show.kill()
            last = in_order.index(self.show.shown_lines()[-1])
            recorded = self.record()
            # The record is written a moment before the log says what is shown.
            self.assertIn(recorded, (last, (last + 1) % len(in_order)))
            expected = in_order[max(recorded, 1)]  # a record of the very first place goes on with the second


if __name__ == "__main__":
    unittest.main(verbosity=2)

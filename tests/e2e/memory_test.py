#!/usr/bin/python3
"""What the show holds in memory stays what it is, however many large pictures it has shown.

LUMIVANE_CHANGES says how many pictures are shown.
"""
import os
import pathlib
import subprocess
import unittest

from memory import decoders, resident_mib
from slideshow import SlideshowTest

CHANGES = int(os.environ.get("LUMIVANE_CHANGES", "80"))
SETTLED = 30      # changes until the history and all pools are full
ROOM_MIB = 24     # what may come and go between two looks


class Memory(SlideshowTest):
    def test_it_stays_flat_over_many_changes(self):
        large = pathlib.Path(self.home) / "large"
        large.mkdir()
        for number, picture in enumerate(sorted(self.pictures.iterdir())):
            subprocess.run(["convert", picture, "-resize", "6000x4000!", "-quality", "80", large / f"{number:02}.jpg"],
                           timeout=60, check=True)
        self.show.set_up(large)
        self.show.start("-f")
        self.assert_on_screen(self.show.next_shown())  # from now on the window has the keys
        seen = []
        for _ in range(CHANGES):
            self.screen.press("Right")
            self.show.next_shown()
            seen.append(resident_mib(self.show.process))
        if CHANGES >= 4 * SETTLED or os.environ.get("LUMIVANE_REPORT"):
            print("MiB every 20 changes:", [round(size) for size in seen[::20]])
        self.assertEqual(len(decoders(self.show.process.pid)), 1)
        early, late = seen[SETTLED:SETTLED + 20], seen[-20:]
        self.assertLess(max(late) - max(early), ROOM_MIB, [round(size) for size in seen])


if __name__ == "__main__":
    unittest.main(verbosity=2)

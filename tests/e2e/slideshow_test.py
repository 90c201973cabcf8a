#!/usr/bin/python3
"""The program as a user meets it: what is on the screen is what the log says, it moves, dissolves and obeys keys."""
import json
import os
import pathlib
import shutil
import subprocess
import time
import unittest

import pixels
from slideshow import APP, HEIGHT, ROOT, WIDTH, SlideshowTest, WaylandScreen, eventually, without_display

SAMPLES = pathlib.Path(os.environ.get("LUMIVANE_SAMPLES", ROOT.parent / "shared" / "samples"))


class OnX11(SlideshowTest):
    def test_the_picture_on_the_screen_is_the_one_that_the_log_names(self):
        self.show.set_up(self.pictures, DurationPerImage="4")
        self.show.start("-f")
        seen = []
        for _ in range(3):
            seen.append(self.show.next_shown())
            self.assert_on_screen(seen[-1])
        in_order = sorted(self.pictures.iterdir())
        begin = in_order.index(seen[0])
        self.assertEqual(seen, in_order[begin:begin + 3])

    def test_motion_moves(self):
        self.show.set_up(self.pictures, KenBurnsIsOn="true", DurationPerImage="20")
        self.show.start("-f")
        self.show.next_shown()
        first = eventually(self.bright_shot, "a picture on the screen")
        eventually(lambda: pixels.distance(self.screen.shot(), first) > 1.5, "the picture moves", patience=15)

    def test_without_motion_nothing_moves(self):
        self.show.set_up(self.pictures)
        self.show.start("-f")
        path = self.show.next_shown()
        self.assert_on_screen(path)
        first, until, shots = self.screen.shot(), time.monotonic() + 4, 0
        while time.monotonic() < until:
            self.assertEqual(pixels.distance(self.screen.shot(), first), 0)
            shots += 1
        self.assertGreater(shots, 1)

    def test_one_picture_dissolves_into_the_next(self):
        self.show.set_up(self.pictures, CrossDissolve="true", CrossDissolveDuration="5", DurationPerImage="10")
        self.show.start("-f")
        former = self.show.next_shown()
        in_order = sorted(self.pictures.iterdir())
        latter = in_order[in_order.index(former) + 1]
        start, end = (pixels.fitted(path, WIDTH, HEIGHT) for path in (former, latter))

        def half_way():
            part, beside = pixels.position_between(self.screen.shot(), start, end)
            return 0.15 < part < 0.85 and beside < 8

        eventually(half_way, "both pictures at the same time", patience=40)
        self.assertEqual(self.show.next_shown(), latter)
        self.assert_on_screen(latter)

    def test_a_key_brings_the_next_picture(self):
        self.show.set_up(self.pictures)
        self.show.start("-f")
        former = self.show.next_shown()
        self.assert_on_screen(former)
        self.screen.press("Right")
        latter = self.show.next_shown()
        self.assertNotEqual(former, latter)
        self.assert_on_screen(latter)

    def test_the_show_goes_on_after_a_broken_picture(self):
        first, second, *others = sorted(self.pictures.iterdir())
        self.show.set_up(self.pictures, DurationPerImage="4")
        for broken in (first, second):
            broken.write_bytes(broken.read_bytes()[:2000])
        self.show.start("-f")
        self.assertIn(self.show.next_shown(), others)
        self.assertTrue([line for line in self.show.lines if " error " in line and ("01 Misty" in line or "02 Dunes" in line)])

    def test_it_ends_when_it_is_told_to(self):
        self.show.set_up(self.pictures)
        self.show.start()
        self.show.next_shown()
        self.show.process.terminate()
        self.assertIn(self.show.process.wait(timeout=20), (0, -15))

    def test_it_writes_down_how_it_ran(self):
        told = pathlib.Path(self.home) / "statistics"
        self.show.environment["LUMIVANE_FRAME_STATS"] = str(told)
        self.show.set_up(self.pictures, KenBurnsIsOn="true", DurationPerImage="4")
        self.show.start("-f")
        for _ in range(3):
            self.show.next_shown()
        self.show.process.terminate()
        self.assertEqual(self.show.process.wait(timeout=20), 0)
        statistics = json.loads(told.read_text())
        decodes = statistics["decodes"]
        self.assertGreaterEqual(decodes["count"], 3)
        self.assertGreater(decodes["median"], 0)
        self.assertLessEqual(decodes["median"], decodes["maximum"])
        self.assertGreater(statistics["startToFirstPicture"], 0)
        for process in ("peakMemoryBytes", "decoderPeakMemoryBytes"):
            self.assertGreater(statistics[process], 10_000_000, process)

    def bright_shot(self):
        shot = self.screen.shot()
        return shot if sum(shot) / len(shot) > 8 else None


@unittest.skipUnless(SAMPLES.is_dir(), "the folder of sample pictures is not there")
class OnSamples(SlideshowTest):
    """Pictures from real cameras, of several formats, some of them turned."""

    # Where ImageMagick cannot be trusted with a format, a stored thumbnail says how the picture looks.
    CHOSEN = ("photos/tanners_ridge.jpg", "photos/cyclamen_persicum.jpg", "orientation/portrait_6.jpg",
              "orientation/portrait_7.jpg", "orientation/up_arrow_90cw_nonweb.tiff", "webp/denali.webp",
              "heic/IMG_0102.HEIC", "orientation/orientation6.heic", "avif/Irvine_CA.avif", "orientation/rot1mir0.avif",
              "orientation/orientation5.jxl", "png/16bit_photoshop.png")
    BY_THUMBNAIL = (".heic", ".avif", ".jxl")

    def looks_like(self, name):
        """The picture as it should stand on the screen, and how far off it may be: thumbnails are coarser."""
        if name.lower().endswith(self.BY_THUMBNAIL):
            return pixels.fitted(SAMPLES / "golden" / (name + ".png"), WIDTH, HEIGHT), 12
        return pixels.fitted(SAMPLES / "photos" / name, WIDTH, HEIGHT), 8

    def test_the_picture_on_the_screen_is_the_one_that_the_log_names(self):
        shutil.rmtree(self.pictures)
        self.pictures.mkdir()
        for number, name in enumerate(self.CHOSEN):
            shutil.copy(SAMPLES / "photos" / name, self.pictures / f"{number:02} {pathlib.Path(name).name}")
        self.show.set_up(self.pictures, ExcludeSize="50")
        self.show.start("-f")
        seen = set()
        while len(seen) < len(self.CHOSEN):
            number = int(self.show.next_shown().name[:2])
            seen.add(number)
            expected, tolerance = self.looks_like(self.CHOSEN[number])
            eventually(lambda: pixels.distance(self.screen.shot(), expected) < tolerance,
                       f"{self.CHOSEN[number]} on the screen")
            self.screen.press("Right")


class OnWayland(SlideshowTest):
    screen_type = WaylandScreen

    def test_the_picture_on_the_screen_is_the_one_that_the_log_names(self):
        self.show.set_up(self.pictures, DurationPerImage="12")
        self.show.start("-f")
        for _ in range(2):
            self.assert_on_screen(self.show.next_shown())


class WithoutDisplay(unittest.TestCase):
    def test_says_so_and_ends(self):
        done = subprocess.run([APP], env={**without_display(), "LUMIVANE_LOG": "stderr"}, timeout=30, check=False, text=True,
                              stderr=subprocess.PIPE)
        self.assertEqual(done.returncode, 1)
        self.assertIn("no display server", done.stderr)


if __name__ == "__main__":
    unittest.main(verbosity=2)

#!/usr/bin/python3
"""The painted pictures: always the same ones, with everything in them that the information line can show."""
import json
import pathlib
import subprocess
import tempfile
import unittest

from slideshow import PAINTER


class DemoPictures(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="lumivane-demo-")
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name) / "new" / "folder"
        subprocess.run([PAINTER, cls.folder, "8"], check=True, timeout=60)
        told = subprocess.run(["exiftool", "-json", "-n", "-api", "largefilesupport=1", str(cls.folder)], check=True,
                              stdout=subprocess.PIPE, timeout=60)
        cls.pictures = {entry["FileName"]: entry for entry in json.loads(told.stdout)}

    def test_a_dozen(self):
        self.assertEqual(len(self.pictures), 12)

    def test_the_same_every_time(self):
        with tempfile.TemporaryDirectory() as again:
            subprocess.run([PAINTER, again, "8"], check=True, timeout=60)
            for name in self.pictures:
                self.assertEqual((self.folder / name).read_bytes(), (pathlib.Path(again) / name).read_bytes(), name)

    def test_every_picture_has_caption_keywords_and_date(self):
        for name, tags in self.pictures.items():
            self.assertEqual(tags["CodedCharacterSet"], "\x1b%G", name)  # UTF-8
            self.assertTrue(tags["Caption-Abstract"], name)
            self.assertTrue(tags["Keywords"], name)
            self.assertRegex(tags["DateTimeOriginal"], r"^\d{4}:\d\d:\d\d \d\d:\d\d:\d\d$", name)

    def test_positions_on_every_half_of_the_globe(self):
        south_east = self.pictures["02 Dunes.jpg"]
        self.assertAlmostEqual(south_east["GPSLatitude"], -24.7275, places=4)
        self.assertAlmostEqual(south_east["GPSLongitude"], 15.2906, places=4)
        north_west = self.pictures["05 Sunset at sea.jpg"]
        self.assertAlmostEqual(north_west["GPSLatitude"], 36.2704, places=4)
        self.assertAlmostEqual(north_west["GPSLongitude"], -121.8081, places=4)
        self.assertNotIn("GPSLatitude", self.pictures["09 Silk.jpg"])

    def test_one_picture_lies_on_its_side(self):
        turned = self.pictures["08 Moonrise.jpg"]
        self.assertEqual(turned["Orientation"], 6)
        self.assertGreater(turned["ImageWidth"], turned["ImageHeight"])

    def test_captions_beyond_ascii(self):
        self.assertIn("l’heure dorée", self.pictures["10 Lavender.jpg"]["Caption-Abstract"])

    def test_a_folder_that_cannot_be_made_is_an_error(self):
        done = subprocess.run([PAINTER, "/dev/null/folder"], stderr=subprocess.PIPE, timeout=60, check=False, text=True)
        self.assertEqual(done.returncode, 1)
        self.assertIn("/dev/null/folder", done.stderr)

    def test_wrong_words_are_an_error(self):
        for words in ([], ["--help"], ["x", "0"], ["x", "ten"], ["x", "1", "2"]):
            done = subprocess.run([PAINTER, *words], stderr=subprocess.PIPE, timeout=60, check=False, text=True)
            self.assertEqual(done.returncode, 2, words)
            self.assertIn("usage:", done.stderr)


if __name__ == "__main__":
    unittest.main(verbosity=2)

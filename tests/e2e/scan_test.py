#!/usr/bin/python3
"""A scan of many files while the preferences stand open: the window answers all the time.

LUMIVANE_FILES says of how many (20,000 if it is not set; four of five bear a picture's name), LUMIVANE_LONGEST_BLOCK_MS how long
the main thread may take to answer: more by default than a quiet machine needs, for this one may be busy with other things."""
import json
import os
import pathlib
import shutil
import tempfile
import unittest

from preferences_test import ByKeyboard as Keyboard
from slideshow import eventually

FILES = int(os.environ.get("LUMIVANE_FILES", "20000"))
LONGEST_BLOCK = float(os.environ.get("LUMIVANE_LONGEST_BLOCK_MS", "250"))
IN_A_FOLDER = 1000
FILE_BYTES = 200_000  # of nothing: they take no room on the disk


def make_tree(root):
    for number in range(FILES):
        folder = root / f"folder {number // IN_A_FOLDER:04d}"
        if number % IN_A_FOLDER == 0:
            folder.mkdir()
        with open(folder / f"IMG_{number % IN_A_FOLDER:04d}.{'jpg' if number % 5 else 'txt'}", "wb") as file:
            file.truncate(FILE_BYTES)


class ManyFiles(Keyboard):
    def test_the_main_thread_answers_all_the_time(self):
        tree = pathlib.Path(tempfile.mkdtemp(prefix="lumivane-e2e-", dir="/var/tmp"))
        self.addCleanup(shutil.rmtree, tree, ignore_errors=True)
        make_tree(tree)
        told = pathlib.Path(self.home) / "statistics"
        self.show.environment["LUMIVANE_FRAME_STATS"] = str(told)
        self.show.start()
        self.wait_for(self.title)
        self.choose_folder(tree)
        eventually(lambda: self.show.count(f"User selected directory: {tree}"), "the folder is taken")
        self.wait_for(self.title)
        self.press("alt+w", "alt+c")
        eventually(lambda: self.show.count(f"Num images = {FILES * 4 // 5}"), "the end of the scan", patience=300)
        eventually(lambda: self.show.count("Image gone"), "the show tries its first picture")
        self.show.process.terminate()
        self.assertEqual(self.show.process.wait(timeout=60), 0)
        statistics = json.loads(told.read_text())
        print(f"the main thread answered after {statistics['mainThreadAnswers']['maximum']:.1f} ms at most")
        self.assertLess(statistics["mainThreadAnswers"]["maximum"], LONGEST_BLOCK)


if __name__ == "__main__":
    unittest.main(verbosity=2)

#!/usr/bin/python3
"""Every key of the show, pressed on a real window: what changes on the screen, in the list, in the trash."""
import pathlib
import re
import time
import unittest
import urllib.parse

import pixels
from slideshow import HEIGHT, WIDTH, SlideshowTest, eventually

TEXT_HEIGHT = 60  # pixels at the lower edge of the screen that hold the information line


class Keys(SlideshowTest):
    def begin(self, *flags, **settings):
        self.show.set_up(self.pictures, **settings)
        self.show.begin_anew()
        self.show.start(*(flags or ("-f",)))
        self.in_order = sorted(self.pictures.iterdir())
        first = self.show.next_shown()
        self.assert_on_screen(first)
        return first

    def press(self, *keys):
        for key in keys:
            self.screen.press(key)

    def press_for_next(self, key):
        self.press(key)
        path = self.show.next_shown()
        self.assert_on_screen(path)
        return path

    def text_area(self):
        return self.screen.area(0, HEIGHT - TEXT_HEIGHT, WIDTH // 2, TEXT_HEIGHT)

    def assert_still(self, seconds):
        first, until = self.screen.shot(), time.monotonic() + seconds
        while time.monotonic() < until:
            self.assertEqual(pixels.distance(self.screen.shot(), first), 0)
            time.sleep(0.2)

    def stored_list(self):
        file = next(pathlib.Path(self.home).glob("data/**/LumivaneImageList.*.plist"))
        return file.read_text().splitlines()

    # --- Time ---

    def test_space_pauses_the_show(self):
        first = self.begin(DurationPerImage="4")
        self.press("space")
        self.assert_no_change(9)
        self.press("space")
        self.assertNotEqual(self.show.next_shown(), first)

    def assert_no_change(self, seconds):
        before = self.show.shown_lines()
        time.sleep(seconds)
        self.assertEqual(self.show.shown_lines(), before)

    def test_steps_go_back_twice_and_forward_without_reading_a_file(self):
        # In list order the next picture, which is fetched two seconds after a change, ends the stepping back.
        first = self.begin(DontRandomize="false")
        second, third = self.press_for_next("Right"), self.press_for_next("Down")
        loads = self.show.count("Loading image in main thread")
        self.assertEqual(self.press_for_next("Left"), second)
        self.assertEqual(self.press_for_next("Up"), first)
        self.assertEqual(self.press_for_next("Right"), second)
        self.assertEqual(self.press_for_next("Right"), third)
        self.assertEqual(self.show.count("Loading image in main thread"), loads)
        self.assertNotIn(self.press_for_next("Right"), (first, second, third))

    # --- Motion ---

    def test_z_freezes_the_motion_and_lets_it_go_on(self):
        self.show.set_up(self.pictures, KenBurnsIsOn="true", DurationPerImage="30")
        self.show.start("-f")
        self.show.next_shown()
        eventually(lambda: sum(self.screen.shot()) > 8 * pixels.COUNT, "a picture on the screen")
        self.press("z")
        time.sleep(1)
        frozen = self.screen.shot()
        self.assert_still(3)
        self.press("z")
        eventually(lambda: pixels.distance(self.screen.shot(), frozen) > 1, "the picture moves on", patience=15)

    def test_z_with_shift_does_nothing(self):
        self.show.set_up(self.pictures, KenBurnsIsOn="true", DurationPerImage="30")
        self.show.start("-f")
        self.show.next_shown()
        self.press("shift+z")
        first = eventually(lambda: sum(self.screen.shot()) > 8 * pixels.COUNT and self.screen.shot(), "a picture on the screen")
        eventually(lambda: pixels.distance(self.screen.shot(), first) > 1, "the picture moves", patience=15)

    # --- What is seen ---

    def test_b_blanks_the_screen(self):
        first = self.begin()
        self.press("b")
        eventually(lambda: sum(self.screen.shot()) < pixels.COUNT, "a dark screen")
        self.press("b")
        self.assert_on_screen(first)

    def test_i_hides_the_information_line(self):
        self.begin(DisplayFilename="true", FontSize="30")
        written = eventually(self.text_area, "the lower edge")
        self.press("i")
        hidden = eventually(lambda: (area := self.text_area()) != written and area, "the line goes")
        self.press("i")
        eventually(lambda: self.text_area() != hidden, "the line comes back")

    def test_h_shows_the_help(self):
        first = self.begin()
        without = self.screen.shot()
        self.press("h")
        eventually(lambda: pixels.distance(self.screen.shot(), without) > 3, "the help on the screen")
        self.press("h")
        self.assert_on_screen(first)
        eventually(lambda: pixels.distance(self.screen.shot(), without) < 0.5, "the help goes")

    def test_f_and_escape_change_between_window_and_full_screen(self):
        self.show.set_up(self.pictures)
        self.show.start()
        self.show.next_shown()
        eventually(lambda: self.screen.window_size() not in (None, (WIDTH, HEIGHT)), "a window")
        window = self.screen.window_size()
        self.press("f")
        eventually(lambda: self.screen.window_size() == (WIDTH, HEIGHT), "full screen")
        eventually(lambda: pixels.distance(self.screen.shot(), pixels.fitted(self.latest(), WIDTH, HEIGHT)) < 6,
                   "the picture fills the screen")
        self.press("Escape")
        eventually(lambda: self.screen.window_size() == window, "the window as before")
        self.assertIsNone(self.show.process.poll())

    def latest(self):
        return self.show.shown_lines()[-1]

    # --- Files ---

    def test_delete_is_off_unless_it_was_allowed(self):
        first = self.begin(DisplayFilename="true", EnableDeleteAtRuntime="false")
        self.press("Delete")
        eventually(lambda: self.show.count("Delete key has been disabled in Preferences"), "the message")
        self.assertTrue(first.exists())
        self.assertEqual(len(self.stored_list()), len(self.in_order))

    def test_delete_moves_the_picture_to_the_trash(self):
        first = self.begin(EnableDeleteAtRuntime="true")
        self.press("Delete")
        following = self.show.next_shown()
        self.assertNotEqual(following, first)
        self.assert_on_screen(following)
        trash = pathlib.Path(self.home) / "data" / "Trash"
        self.assertFalse(first.exists())
        self.assertTrue((trash / "files" / first.name).is_file())
        note = (trash / "info" / (first.name + ".trashinfo")).read_text()
        self.assertEqual(urllib.parse.unquote(re.search(r"^Path=(.*)$", note, re.MULTILINE).group(1)), str(first))
        self.assertEqual(len(self.stored_list()), len(self.in_order) - 1)
        self.assertNotIn(str(first), self.stored_list())

    def test_return_reveals_the_picture_in_the_file_browser(self):
        browser = self.open_bus("DBUS_SESSION_BUS_ADDRESS").start(
            "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1", ("ShowItems", "ass", "", ""))
        awkward = self.pictures / "00 Größe #1 100%.jpg"
        sorted(self.pictures.iterdir())[0].rename(awkward)
        self.begin()
        while self.latest() != awkward:
            self.press_for_next("Right")
        self.press("Return")
        asked = eventually(lambda: browser.calls("ShowItems"), "the file browser is asked")
        self.assertEqual([re.findall(r'"(file:[^"]*)"', call) for call in asked],
                         [["file://" + urllib.parse.quote(str(awkward))]])

    # --- Standing in for the screen saver ---

    def test_any_key_ends_a_show_that_stands_in_for_the_screen_saver(self):
        for key in ("x", "Escape", "Shift_L"):
            with self.subTest(key=key):
                self.begin("-s")
                self.press(key)
                self.assertEqual(self.show.process.wait(timeout=20), 0)

    def test_the_super_key_and_the_commands_leave_it_running(self):
        self.begin("-s")
        self.press("space", "i", "i", "space", "h", "h")
        self.screen.do("keydown", "super")
        time.sleep(2)
        self.assertIsNone(self.show.process.poll())
        self.screen.do("keyup", "super")
        self.assertEqual(self.show.process.wait(timeout=20), 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)

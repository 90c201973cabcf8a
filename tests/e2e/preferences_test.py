#!/usr/bin/python3
"""Setting the show up by hand, as somebody does who has read nothing: keyboard and mouse on the real dialogs."""
import shutil
import tempfile
import time
import unittest

from slideshow import HEIGHT, WIDTH, SlideshowTest, eventually

TITLE = "Lumivane Preferences"


class SettingUp(SlideshowTest):
    title = TITLE

    def window(self, title):
        """The number of the visible window whose title begins so; None while there is none."""
        try:
            found = self.screen.do("search", "--onlyvisible", "--name", "^" + title).split()
        except Exception:  # xdotool fails where it finds nothing
            return None
        return found[-1] if found else None

    def wait_for(self, title):
        number = eventually(lambda: self.window(title), f"the window {title}")
        self.screen.do("windowfocus", "--sync", number)
        return number

    def wait_until_gone(self, title):
        eventually(lambda: self.window(title) is None, f"the window {title} goes")

    def press(self, *keys):
        for key in keys:
            self.screen.press(key)

    def setting(self, name):
        return self.show.companion("settings", name).strip()

    def setting_becomes(self, name, value):
        eventually(lambda: self.setting(name) == value, f"{name} = {value}, not {self.setting(name)}")

    def pictures_outside_tmp(self):
        """A chosen folder below /tmp is taken for another one."""
        folder = tempfile.mkdtemp(prefix="lumivane-e2e-", dir="/var/tmp")
        self.addCleanup(shutil.rmtree, folder, ignore_errors=True)
        return shutil.copytree(self.pictures, folder + "/pictures")


class ByKeyboard(SettingUp):
    def type_over(self, key, text):
        """Goes to a field by its key, and replaces what it holds."""
        self.press(key, "ctrl+a")
        self.screen.do("type", text)

    def choose_folder(self, folder):
        self.press("alt+o")
        number = eventually(lambda: self.window("(Find Directory|Choose|Select|Open)"), "the folder dialog")
        self.screen.do("windowfocus", "--sync", number)
        time.sleep(0.5)  # the dialog fills its list first, and then takes the name
        self.press("alt+d", "ctrl+a")
        self.screen.do("type", str(folder))
        self.press("Return")

    def test_from_the_first_start_to_the_first_picture_and_back(self):
        self.show.start()
        self.wait_for(TITLE)
        self.assertTrue(self.show.count("Change pics folder in Preferences for monitor"))
        pictures = self.pictures_outside_tmp()
        self.choose_folder(pictures)
        eventually(lambda: self.show.count(f"User selected directory: {pictures}"), "the folder is taken")
        self.wait_for(TITLE)
        self.press("alt+w")  # walk through the folders
        self.press("alt+c")
        self.wait_until_gone(TITLE)
        self.assertTrue(self.show.count("Num images = 12"))
        self.show.next_shown()

        self.press("ctrl+comma")
        self.wait_for(TITLE)
        self.press("alt+s")
        self.type_over("alt+e", "7")
        self.press("alt+m", "alt+z")  # no pan and zoom
        self.press("alt+i", "alt+n")  # no file name
        self.type_over("alt+x", "30")
        self.press("alt+c")
        self.wait_until_gone(TITLE)
        kept = {"DurationPerImage": "7", "KenBurnsIsOn": "false", "DisplayFilename": "false", "FontSize": "30"}
        for name, value in kept.items():
            self.setting_becomes(name, value)

        self.show.process.terminate()
        self.assertEqual(self.show.process.wait(timeout=20), 0)
        self.show.begin_anew()
        self.show.start("-f")
        self.show.next_shown()
        self.assertTrue(self.show.count("duration per image = 7"))
        self.assertIsNone(self.window(TITLE), "they open by themselves only once")

    def test_the_search_in_an_index_needs_no_index_of_the_desktop(self):
        self.show.start()
        self.wait_for(TITLE)
        pictures = self.pictures_outside_tmp()
        self.choose_folder(pictures)
        eventually(lambda: self.show.count(f"User selected directory: {pictures}"), "the folder is taken")
        self.wait_for(TITLE)
        self.press("alt+c")
        self.wait_until_gone(TITLE)
        self.show.next_shown()
        for line in ("Starting directory scan using spotlight ...", f"The desktop's index does not answer for {pictures}: ",
                     f"Pictures are searched by the headers of the files: {pictures}", "Pictures measured by their headers = 12",
                     "Finished spotlight search; num images from query = 12  "):
            self.assertEqual(self.show.count(line), 1, line)

    def test_a_duration_that_is_too_short_is_refused(self):
        self.show.set_up(self.pictures, DurationPerImage="600")
        self.show.start()
        self.show.next_shown()
        self.press("ctrl+comma")
        self.wait_for(TITLE)
        self.press("alt+s")
        self.type_over("alt+e", "2")
        self.press("alt+c")
        self.wait_until_gone(TITLE)
        self.assertEqual(self.setting("DurationPerImage"), "600")

    def test_the_help_opens_over_the_show(self):
        self.show.set_up(self.pictures)
        self.show.start("-f")
        self.show.next_shown()
        self.press("F1")
        self.wait_for("Lumivane Help")
        self.press("Escape")
        self.wait_until_gone("Lumivane Help")
        self.assertEqual(self.screen.window_size(), (WIDTH, HEIGHT))
        self.press("Right")
        self.show.next_shown()


if __name__ == "__main__":
    unittest.main(verbosity=2)

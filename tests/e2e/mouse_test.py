#!/usr/bin/python3
"""Setting the show up with the mouse. Where to click is asked as a screen reader asks, which shows that one finds its way too."""
import unittest

import accessible
from preferences_test import SettingUp
from slideshow import eventually

PORTAL = ("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop")
CHOOSER = "org.freedesktop.portal.FileChooser"
REQUEST = PORTAL[1] + "/request/stand_in/1"


class ByMouse(SettingUp):
    def setUp(self):
        super().setUp()
        bus = self.open_bus("DBUS_SESSION_BUS_ADDRESS")
        self.portal = bus.start(*PORTAL, ("OpenFile", "ssa{sv}", "o", f"ret = dbus.ObjectPath('{REQUEST}')"), interface=CHOOSER)
        self.portal.mock("AddProperty", CHOOSER, "version", "<uint32 3>")
        self.portal.mock("AddObject", REQUEST, "org.freedesktop.portal.Request", "{}", "[]")
        accessible.announce(self.show.environment)

    def thing(self, role, name):
        return eventually(lambda: accessible.shown(self.show.environment, role, name), f"the {role} {name}")

    def click(self, role, name, *more):
        x, y = accessible.middle(self.thing(role, name))
        self.screen.do("mousemove", str(x), str(y), "click", "1", *more)

    def is_checked(self, role, name):
        return self.thing(role, name)["checked"]

    def choose_in_portal(self, folder):
        """What the portal's dialog would answer."""
        asked = eventually(lambda: self.portal.calls("OpenFile"), "the portal is asked")[0]
        self.assertRegex(asked, r'"x11:[0-9a-f]+"')
        self.assertIn('"directory": True', asked)
        self.portal.emit("Response", "ua{sv}", "<uint32 0>", f"<{{'uris': <['file://{folder}']>}}>",
                         interface="org.freedesktop.portal.Request", path=REQUEST)

    def test_from_the_first_start_to_the_first_picture_and_back(self):
        self.show.start()
        self.wait_for(self.title)
        pictures = self.pictures_outside_tmp()
        self.click("push button", "Choose the folder")
        self.choose_in_portal(pictures)
        eventually(lambda: self.show.count(f"User selected directory: {pictures}"), "the folder is taken")
        self.click("radio button", "Find pictures by walking through the folders")
        self.click("push button", "Apply and close")
        self.wait_until_gone(self.title)
        self.show.next_shown()

        # The menu opens at the pointer, with the preferences as its first line.
        self.screen.do("mousemove", "300", "300", "click", "3", "sleep", "1", "mousemove_relative", "40", "14", "sleep", "0.2", "click", "1")
        self.wait_for(self.title)
        self.click("page tab", "Show")
        self.click("text", "Seconds for each picture", "click", "--repeat", "2", "1")
        self.screen.do("type", "9")
        self.click("page tab", "Motion")
        self.click("check box", "Pan and zoom slowly across each picture")
        self.click("page tab", "Information")
        self.click("check box", "Show the file name")
        self.assertFalse(self.is_checked("check box", "Show the file name"))
        self.click("push button", "Apply and close")
        self.wait_until_gone(self.title)
        for name, value in {"DurationPerImage": "9", "KenBurnsIsOn": "false", "DisplayFilename": "false"}.items():
            self.setting_becomes(name, value)


if __name__ == "__main__":
    unittest.main(verbosity=2)

#!/usr/bin/python3
"""The first album of a photo library, from the preferences to the screen."""
import hashlib
import os
import pathlib
import shutil
import sqlite3
import time
import unittest

import preferences_test
from slideshow import ROOT, eventually

SAMPLES = pathlib.Path(os.environ.get("LUMIVANE_SAMPLES", ROOT.parent / "shared" / "samples"))
PICTURE, MOVIE = 0, 1


def inventory(package):
    """Every file with its content and the time of its last change."""
    return {path: (path.stat().st_mtime_ns, path.is_file() and hashlib.sha256(path.read_bytes()).digest())
            for path in sorted(package.rglob("*"))}


def make_library(package, painted):
    """Two albums: "Later" comes second, "Sooner" holds three pictures in an order of its own and what is left out."""
    (package / "database").mkdir(parents=True)
    originals = package / "originals" / "A"
    originals.mkdir(parents=True)
    for number, path in enumerate(painted[:5], 1):
        shutil.copy(path, originals / f"{number}.jpg")
    database = sqlite3.connect(package / "database" / "Photos.sqlite", isolation_level=None)
    database.executescript("""
        PRAGMA journal_mode = WAL;
        CREATE TABLE Z_METADATA (Z_VERSION INTEGER PRIMARY KEY, Z_UUID VARCHAR, Z_PLIST BLOB);
        CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, Z_MAX INTEGER);
        INSERT INTO Z_PRIMARYKEY (Z_ENT, Z_NAME) VALUES (28, 'Album'), (3, 'Asset'), (40, 'Keyword');
        CREATE TABLE ZGENERICALBUM (Z_PK INTEGER PRIMARY KEY, ZUUID VARCHAR, ZTITLE VARCHAR, ZKIND INTEGER,
          ZTRASHEDSTATE INTEGER, ZPARENTFOLDER INTEGER, Z_FOK_PARENTFOLDER INTEGER, ZCUSTOMSORTKEY INTEGER,
          ZCUSTOMSORTASCENDING INTEGER);
        INSERT INTO ZGENERICALBUM VALUES (2, NULL, NULL, 3999, 0, NULL, NULL, 0, 1), (10, 'L', 'Later', 2, 0, 2, 2048, 0, 1),
          (11, 'S', 'Sooner', 2, 0, 2, 1024, 0, 1);
        CREATE TABLE ZASSET (Z_PK INTEGER PRIMARY KEY, ZUUID VARCHAR, ZDIRECTORY VARCHAR, ZFILENAME VARCHAR, ZKIND INTEGER,
          ZHIDDEN INTEGER, ZTRASHEDSTATE INTEGER, ZVISIBILITYSTATE INTEGER, ZSAVEDASSETTYPE INTEGER, ZDATECREATED TIMESTAMP,
          ZADDITIONALATTRIBUTES INTEGER, ZMOMENT INTEGER);
        CREATE TABLE Z_28ASSETS (Z_28ALBUMS INTEGER, Z_3ASSETS INTEGER, Z_FOK_3ASSETS INTEGER);
        CREATE TABLE ZADDITIONALASSETATTRIBUTES (Z_PK INTEGER PRIMARY KEY, ZTITLE VARCHAR, ZREVERSELOCATIONDATA BLOB);
        CREATE TABLE ZASSETDESCRIPTION (Z_PK INTEGER PRIMARY KEY, ZASSETATTRIBUTES INTEGER, ZLONGDESCRIPTION VARCHAR);
        CREATE TABLE ZKEYWORD (Z_PK INTEGER PRIMARY KEY, ZTITLE VARCHAR);
        CREATE TABLE Z_1KEYWORDS (Z_1ASSETATTRIBUTES INTEGER, Z_40KEYWORDS INTEGER);
        CREATE TABLE ZMOMENT (Z_PK INTEGER PRIMARY KEY, ZTITLE VARCHAR, ZSUBTITLE VARCHAR);""")
    database.execute("INSERT INTO Z_METADATA VALUES (1, 'U', ?)",
                     (b'<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict><key>PLModelVersion</key>'
                      b'<integer>16320</integer></dict></plist>',))
    kinds = {1: (PICTURE, 0), 2: (PICTURE, 0), 3: (PICTURE, 0), 4: (PICTURE, 1), 5: (MOVIE, 0), 6: (PICTURE, 0)}
    for number, (kind, hidden) in kinds.items():  # 6 is in a cloud only
        database.execute("INSERT INTO ZASSET VALUES (?, ?, 'A', ?, ?, ?, 0, 0, 3, ?, NULL, NULL)",
                         (number, f"ASSET-{number}", f"{number}.jpg", kind, hidden, float(number)))
    for position, number in enumerate((3, 4, 1, 5, 6, 2), 1):
        database.execute("INSERT INTO Z_28ASSETS VALUES (11, ?, ?)", (number, position * 1024))
    return database  # open still: the log beside the database holds all of it


class FirstAlbum(preferences_test.SettingUp):
    def collect_first_album(self, package):
        self.show.environment["LUMIVANE_PHOTOS_LIBRARY"] = str(package)
        self.show.set_up(self.pictures)
        before = inventory(package)
        self.show.start("-f")
        self.show.next_shown()
        eventually(lambda: self.show.count("num albums = "), "the albums are read")
        self.press("ctrl+comma")
        self.wait_for(preferences_test.TITLE)
        self.press("alt+f")
        time.sleep(0.5)  # Qt lets go of a button that was pressed by its key only a tenth of a second later
        self.press("Tab", "Tab", "space", "alt+c")  # past the button for the folder, to the first row
        self.wait_until_gone(preferences_test.TITLE)
        eventually(lambda: package in self.collected()[0].parents, "the album is the collection")

        def shown_of_album():
            self.press("Right")  # the picture that is shown stays until its time is over
            shown = self.show.next_shown()
            return shown if package in shown.parents else None
        shown = eventually(shown_of_album, "a picture of the album is shown")
        self.assertEqual(inventory(package), before)
        return shown

    def collected(self):
        lists = list(pathlib.Path(self.home, "data/lumivane").glob("LumivaneImageList.*.plist"))
        self.assertEqual(len(lists), 1, lists)
        return [pathlib.Path(line) for line in lists[0].read_text().split("\n")]

    def test_of_a_library_that_is_in_use(self):
        package = pathlib.Path(self.home, "Made.photoslibrary")
        painted = sorted(path for path in self.pictures.iterdir() if path.suffix == ".jpg")
        database = make_library(package, painted)
        self.addCleanup(database.close)
        shown = self.collect_first_album(package)
        self.assertEqual([self.show.count(f"album name = {name}") for name in ("Sooner", "Later")], [1, 1])
        self.assertEqual(self.setting("SelectedAlbum"), "Sooner")
        originals = package / "originals" / "A"
        self.assertEqual(self.collected(), [originals / f"{number}.jpg" for number in (3, 1, 2)])
        self.assertEqual(self.show.count("pictures of album Sooner left out because their files are not here = 1"), 1)
        self.assertEqual(self.show.count(f"Album images path prefix = {package}/."), 1)
        self.assertIn(shown, self.collected())
        self.assert_on_screen(shown)

    @unittest.skipUnless((SAMPLES / "libraries").is_dir(), "no sample libraries")
    def test_of_a_sample_library(self):
        name = "Test-10.15.7.photoslibrary"
        package = pathlib.Path(shutil.copytree(SAMPLES / "libraries" / name, pathlib.Path(self.home, name), symlinks=True))
        shown = self.collect_first_album(package)
        listed = self.show.companion("albums").splitlines()
        first = listed[0].split("\t")[1]
        self.assertEqual(self.setting("SelectedAlbum"), first)
        members = self.show.companion("albums", "--album", first).splitlines()
        self.assertGreater(len(self.collected()), 0)
        for path in self.collected():
            self.assertTrue(path.is_file() and package in path.parents, path)
            self.assertTrue(any(str(path) in line for line in members), path)
        self.assertIn(shown, self.collected())


if __name__ == "__main__":
    unittest.main(verbosity=2)

#!/usr/bin/python3
"""The same pictures by the desktop's real index and by our own, and what happens when the real one hangs or dies."""
import fcntl
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import unittest

from slideshow import BUILD, COMPANION, PAINTER, PATIENCE, Bus, end, eventually, without_display

MINER = "/usr/libexec/tracker-miner-fs-3"
SCHEMA = "org.freedesktop.Tracker3.Miner.Files"
BY_DESKTOP = "Pictures are searched by the desktop's index (" + SCHEMA + ")"
BY_HEADERS = "Pictures are searched by the headers of the files"
FILLING = 500  # files that are no pictures: the index takes a while to take them in


def waits_to_write(pid):
    return any("pipe_write" in path.read_text() for path in pathlib.Path("/proc", str(pid), "task").glob("*/wchan"))


@unittest.skipUnless(os.access(MINER, os.X_OK), "there is no index on this machine")
class RealIndex(unittest.TestCase):
    """One index for all tests, of one folder; it does not take in anything below /tmp."""

    @classmethod
    def setUpClass(cls):
        cls.home = tempfile.mkdtemp(prefix="index-test-", dir=BUILD)
        cls.addClassCleanup(shutil.rmtree, cls.home, ignore_errors=True)
        cls.pictures = pathlib.Path(cls.home, "Pictures")
        cls.make_tree()
        bus = Bus(cls.home, "bus")
        cls.addClassCleanup(bus.close)
        runtime = pathlib.Path(cls.home, "runtime")
        runtime.mkdir(mode=0o700)
        cls.environment = {**{name: value for name, value in without_display().items() if not name.startswith("XDG_")},
                           "HOME": cls.home, "XDG_RUNTIME_DIR": str(runtime), "DBUS_SESSION_BUS_ADDRESS": bus.address,
                           "GSETTINGS_BACKEND": "keyfile", "LC_ALL": "C.UTF-8"}
        for key, value in (("index-recursive-directories", f"['{cls.pictures}']"), ("index-single-directories", "[]")):
            subprocess.run(["gsettings", "set", SCHEMA, key, value], env=cls.environment, check=True, timeout=30)
        cls.start_miner()
        cls.addClassCleanup(lambda: end(cls.miner))
        eventually(cls.holds_everything, "the index has taken in all files")
        cls.collect_by_desktop()
        cls.by_index = cls.collected()

    @classmethod
    def make_tree(cls):
        subprocess.run([PAINTER, cls.pictures / "painted", "40"], check=True, timeout=120)
        painted = sorted(path for path in (cls.pictures / "painted").iterdir() if path.suffix == ".jpg")
        other = pathlib.Path(cls.home, "Other")
        for folder in ("sub/deeper", ".hidden", "thumbs", "filling"):
            (cls.pictures / folder).mkdir(parents=True)
        other.mkdir()
        shutil.copy(painted[0], other / "other.jpg")
        shutil.copy(painted[0], cls.pictures / "sub/deeper/na\N{LATIN SMALL LETTER I WITH DIAERESIS}ve 100% #1?.JPG")
        shutil.copy(painted[1], cls.pictures / ".hidden/hidden.jpg")
        shutil.copy(painted[1], cls.pictures / ".hidden.jpg")
        shutil.copy(painted[2], cls.pictures / "thumbs/skipped.jpg")
        shutil.copy(painted[2], cls.pictures / "no-extension")
        (cls.pictures / "link.jpg").symlink_to(painted[0])
        (cls.pictures / "folder-link").symlink_to(other)
        (cls.pictures / "text.jpg").write_bytes(b"no picture " * 3000)
        (cls.pictures / "notes.txt").write_bytes(b"no picture " * 3000)
        vips = ["vips", "thumbnail", painted[3]]
        subprocess.run([*vips, cls.pictures / "not-extracted.webp", "900"], check=True, timeout=60)
        subprocess.run([*vips, f"{cls.pictures / 'exactly.jpg'}[Q=100]", "300", "--height", "300", "--crop", "centre"], check=True,
                       timeout=60)
        subprocess.run([*vips, f"{cls.pictures / 'one-more.jpg'}[Q=100]", "301", "--height", "301", "--crop", "centre"], check=True,
                       timeout=60)
        subprocess.run([*vips, cls.pictures / "sub/flat.png", "900", "--height", "250", "--crop", "centre"], check=True, timeout=60)
        for i in range(FILLING):
            (cls.pictures / "filling" / f"{i}.bin").write_bytes(b"x" * 6000)

    @classmethod
    def start_miner(cls):
        cls.miner = subprocess.Popen([MINER, "--initial-sleep=0"], env=cls.environment, stdout=subprocess.DEVNULL,
                                     stderr=subprocess.DEVNULL)

    @classmethod
    def holds_everything(cls):
        """Whether it knows all that is there and not hidden: it says that it is idle before it does."""
        there = sum(1 for path in cls.pictures.rglob("*") if not any(part.startswith(".") for part in path.relative_to(cls.pictures).parts))
        question = ("SELECT COUNT(?f) { GRAPH tracker:FileSystem { ?f a nfo:FileDataObject ; nie:url ?u } "
                    f"FILTER(STRSTARTS(?u, '{cls.pictures.as_uri()}/')) }}")
        told = subprocess.run(["tracker3", "sparql", "-b", SCHEMA, "-q", question], env=cls.environment, text=True, timeout=PATIENCE,
                              check=False, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
        return str(there) in told.split()

    @classmethod
    def command(cls, folder=None):
        return [COMPANION, "collect", "--display", "D", "--method", "index", "--explain", str(folder or cls.pictures)]

    @classmethod
    def collect(cls, folder=None, **environment):
        """What it says of files left out, and of its search."""
        done = subprocess.run(cls.command(folder), env={**cls.environment, **environment}, text=True, timeout=PATIENCE, check=True,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        return done.stdout, done.stderr

    @classmethod
    def collect_by_desktop(cls):
        """The same when the index answers, which it does not while it is at work."""
        def left_out():
            answer, told = cls.collect()
            return answer if BY_DESKTOP in told else None
        return eventually(left_out, "the index has gone through its folder")

    @classmethod
    def collected(cls):
        return pathlib.Path(cls.home, ".local/share/lumivane/LumivaneImageList.D.plist").read_text().split("\n")

    def by_ourselves(self, told):
        self.assertIn(BY_HEADERS, told)
        self.assertEqual(self.collected(), self.by_index)

    def test_1_both_find_the_same(self):
        left_out = self.collect_by_desktop()
        self.assertEqual(self.collected(), self.by_index)
        names = {pathlib.Path(path).name for path in self.by_index}
        self.assertLessEqual({"not-extracted.webp", "one-more.jpg", "na\N{LATIN SMALL LETTER I WITH DIAERESIS}ve 100% #1?.JPG"}, names)
        self.assertFalse({"exactly.jpg", "flat.png", "skipped.jpg", "hidden.jpg", "link.jpg", "text.jpg", "other.jpg"} & names)
        without_filling = [line for line in left_out.splitlines() if "/filling/" not in line]
        left_out_too, told = self.collect(DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent")
        self.by_ourselves(told)
        self.assertEqual([line for line in left_out_too.splitlines() if "/filling/" not in line], without_filling)
        self.assertIn(f"pixel size\t{self.pictures}/exactly.jpg", without_filling)
        self.assertIn(f"skip pattern\t{self.pictures}/thumbs/skipped.jpg", without_filling)

    def test_2_a_new_picture_is_found_by_both(self):
        new = self.pictures / "new.jpg"
        shutil.copy(self.pictures / "one-more.jpg", new)
        self.addCleanup(new.unlink)

        def found():
            told = self.collect()[1]
            return BY_DESKTOP in told and str(new) in self.collected()
        eventually(found, "the index knows the new picture")
        with_new = self.collected()
        self.collect(DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent")
        self.assertEqual(self.collected(), with_new)

    def test_3_a_folder_that_it_does_not_cover(self):
        told = self.collect(pathlib.Path(self.home, "Other"))[1]
        self.assertIn("it is not set to take in this folder", told)
        self.assertIn(BY_HEADERS, told)
        self.assertEqual([pathlib.Path(path).name for path in self.collected()], ["other.jpg"])

    def test_4_one_that_hangs(self):
        eventually(lambda: BY_DESKTOP in self.collect()[1] and self.collected() == self.by_index, "the index is as it was")
        self.miner.send_signal(signal.SIGSTOP)
        self.addCleanup(self.miner.send_signal, signal.SIGCONT)
        told = self.collect()[1]
        self.assertIn("it takes too long", told)
        self.by_ourselves(told)

    def test_5_one_that_is_killed_after_it_has_agreed_to_answer(self):
        self.collect_by_desktop()
        reading, writing = os.pipe()
        # Full but for a few bytes: the search stops at its first line, which names the index.
        size = fcntl.fcntl(writing, fcntl.F_SETPIPE_SZ, 4096)
        os.write(writing, b"." * (size - 16))
        with subprocess.Popen(self.command(), env=self.environment, stdout=subprocess.DEVNULL, stderr=writing) as search:
            os.close(writing)
            eventually(lambda: waits_to_write(search.pid), "the search is about to begin")
            self.miner.kill()
            self.miner.wait()
            with os.fdopen(reading, "rb") as errors:
                told = errors.read().decode()
        self.assertEqual(search.returncode, 0)
        self.assertIn(BY_DESKTOP, told)
        self.assertIn("The search broke off: ", told)
        self.assertLessEqual(set(self.collected()) - {""}, set(self.by_index))


if __name__ == "__main__":
    unittest.main(verbosity=2)

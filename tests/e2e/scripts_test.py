#!/usr/bin/python3
"""What ./run decides by: whether there is a display server, and what is missing on this machine."""
import pathlib
import subprocess
import tempfile
import unittest

from slideshow import ROOT, VirtualScreen, WaylandScreen, without_display


def bash(script, environment):
    done = subprocess.run(["bash", "-euo", "pipefail", "-c", script, "run"], cwd=ROOT, env=environment, timeout=60, check=False,
                          text=True, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return done.returncode, done.stdout.strip()


class DisplayServer(unittest.TestCase):
    asked = ('source packaging/setup.sh; source packaging/virtual-screen.sh; display_server_answers || true; '
             'echo "X=${DISPLAY:-} W=${WAYLAND_DISPLAY:-}"')

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="lumivane-e2e-")
        self.addCleanup(folder.cleanup)
        self.home = folder.name

    def screen(self, kind):
        screen = kind(self.home)
        self.addCleanup(screen.close)
        return screen.environment

    def test_none(self):
        self.assertEqual(bash(self.asked, without_display()), (0, "X= W="))

    def test_names_that_lead_nowhere(self):
        stale = {**without_display(), "DISPLAY": ":97", "WAYLAND_DISPLAY": "gone", "XDG_RUNTIME_DIR": self.home}
        self.assertEqual(bash(self.asked, stale), (0, "X= W="))
        for nonsense in ("x", ":", ":1;true", "/tmp/.X11-unix/X0"):
            self.assertEqual(bash(self.asked, {**stale, "DISPLAY": nonsense}), (0, "X= W="), nonsense)

    def test_a_socket_that_nobody_listens_at(self):
        pathlib.Path(self.home, "wayland-0").touch()
        stale = {**without_display(), "WAYLAND_DISPLAY": "wayland-0", "XDG_RUNTIME_DIR": self.home}
        self.assertEqual(bash(self.asked, stale), (0, "X= W="))

    def test_x_server(self):
        display = self.screen(VirtualScreen)["DISPLAY"]
        for name in (display, display + ".0", "unix" + display):
            self.assertEqual(bash(self.asked, {**without_display(), "DISPLAY": name}), (0, f"X={name} W="))

    def test_wayland_server(self):
        environment = {**without_display(), **self.screen(WaylandScreen)}
        self.assertEqual(bash(self.asked, environment), (0, "X= W=wayland-e2e"))


class Packages(unittest.TestCase):
    def missing(self, text):
        with tempfile.NamedTemporaryFile("w") as file:
            file.write(text)
            file.flush()
            return bash(f"source packaging/setup.sh; missing_packages {file.name}", without_display())

    def test_what_is_there_is_not_missing(self):
        self.assertEqual(self.missing("# a comment\n\ncoreutils\nbash # another\n"), (0, ""))

    def test_what_is_not_there_is(self):
        self.assertEqual(self.missing("bash\nno-such-package-b\nno-such-package-a\n"),
                         (0, "no-such-package-a\nno-such-package-b"))


class Words(unittest.TestCase):
    def test_help(self):
        for script in ("./run", "./test"):
            status, told = bash(f"{script} --help", without_display())
            self.assertEqual(status, 0)
            self.assertIn(script, told)

    def test_wrong_words_end_at_once(self):
        for words in ("./run --bogus", "./run /nonexistent", "./run / /", "./run --screenshots", "./test --bogus"):
            status, told = bash(words, without_display())
            self.assertEqual(status, 1, words)
            self.assertIn(words.split()[0][2:] + ": ", told)


if __name__ == "__main__":
    unittest.main(verbosity=2)

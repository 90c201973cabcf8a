"""The programs that are measured, each started, steered and ended in the same few words."""
import os
import pathlib
import subprocess
import time

import memory
import process_use
import slideshow

PATIENCE = 120  # seconds until a picture must be on the screen
GLSLIDESHOW = "/usr/libexec/xscreensaver/glslideshow"


class Show:
    """A program with a process that shows pictures on a screen."""

    name = ""
    process = None

    def __init__(self, screen):
        self.screen = screen

    def start(self):
        """Starts the program; seconds from then until its first picture is on the screen."""
        self.screen.clear()
        begin = time.monotonic()
        self.launch()
        for _ in self.screen.watch.drawn(PATIENCE):
            if self.screen.shows_a_picture():
                return time.monotonic() - begin
        raise RuntimeError(f"{self.name} has shown nothing for {PATIENCE} seconds")

    def launch(self):
        raise NotImplementedError

    def next_picture(self):
        self.screen.press("Right")

    def cpu_seconds(self):
        """Of the program and whatever it has started."""
        return process_use.cpu_seconds_of_all(self.process.pid)

    def memory_mib(self):
        """What the program and whatever it has started hold, the contents of files apart, which the system can drop."""
        return sum(memory.mib(pid, "RssAnon") + memory.mib(pid, "RssShmem") for pid in process_use.descendants(self.process.pid))

    def end(self):
        if self.process is not None:
            slideshow.end(self.process)
            self.process = None

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.end()


class Lumivane(Show):
    """Ours in full screen, set up as tests/e2e does it. The pictures are collected before; a start reads their list."""

    name = "Lumivane"

    def __init__(self, screen, home, folder, **settings):
        super().__init__(screen)
        self._slideshow = slideshow.Slideshow(home, screen)
        self._slideshow.set_up(folder, **settings)

    def launch(self):
        self._slideshow.begin_anew()
        self._slideshow.start("-f")
        self.process = self._slideshow.process

    def memory_mib(self):
        # Pixels lie in memory that the show and its decoder share: counted once, with the decoder, which has touched all of them.
        return memory.resident_mib(self.process)

    def end(self):
        self._slideshow.close()
        self.process = None


class Peer(Show):
    """A program of somebody else, with a home folder of its own."""

    def __init__(self, screen, home, *arguments):
        super().__init__(screen)
        self.command = [*self.program, *map(str, arguments)]
        self.environment = {**slideshow.without_display(), **screen.environment, "HOME": home, "LC_ALL": "C.UTF-8",
                            "XDG_CACHE_HOME": home + "/cache", "XDG_CONFIG_HOME": home + "/config"}

    def launch(self):
        self.process = subprocess.Popen(self.command, env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


class Feh(Peer):
    name = "feh"
    program = ("feh", "--fullscreen", "--hide-pointer")


class GlSlideshow(Peer):
    """The GL slideshow screen saver on the bare screen. Other programs find and open its pictures, at the screen's size."""

    name = "glslideshow"
    program = (GLSLIDESHOW, "--root", "--cutoff", "0")  # else it stops moving and fading for good on a machine that it finds slow

    def __init__(self, screen, home, folder, *arguments):
        super().__init__(screen, home, *arguments)
        self.environment["PATH"] = os.path.dirname(GLSLIDESHOW) + ":" + os.environ["PATH"]
        pathlib.Path(home, ".xscreensaver").write_text(
            f"imageDirectory:\t{folder}\nchooseRandomImages:\tTrue\ngrabDesktopImages:\tFalse\ngrabVideoFrames:\tFalse\n")

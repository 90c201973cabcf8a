"""An X screen of 1920x1080 that nobody else uses, with a window manager."""
import os
import subprocess
import time

from x_watch import Watch

WIDTH, HEIGHT = 1920, 1080
WHOLE = WIDTH * HEIGHT
MOST_OF_IT = WHOLE // 2  # pixels: who draws so many at once draws a frame, and no line of text


class Screen:
    """What tests/e2e knows as a screen (its environment), larger, and with a watcher."""

    def __init__(self, home):
        read_end, write_end = os.pipe()
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{WIDTH}x{HEIGHT}x24", "-nolisten", "tcp", "-noreset", "-br"],
            pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as number:
            self.environment = {"DISPLAY": ":" + number.readline().strip()}
        self._manager = subprocess.Popen(["openbox", "--sm-disable"], env={**os.environ, **self.environment, "HOME": str(home)},
                                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.watch = Watch(self.environment["DISPLAY"])

    def do(self, *arguments):
        """Has the user's hand move: xdotool's own words for what it does."""
        return subprocess.run(["xdotool", *map(str, arguments)], env={**os.environ, **self.environment}, timeout=30, check=True,
                              text=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout

    def press(self, key):
        self.do("key", key)

    def window_of(self, pid):
        """The visible window of a process; None while there is none."""
        try:
            return self.do("search", "--onlyvisible", "--pid", pid).split()[-1]
        except (subprocess.CalledProcessError, IndexError):
            return None

    def photograph(self, path):
        subprocess.run(["import", "-silent", "-window", "root", str(path)], env={**os.environ, **self.environment}, timeout=60,
                       check=True)

    def shows_a_picture(self):
        """Whether the middle of the screen is bright: all pictures of the comparison are, whatever lies behind them is not."""
        points = [(WIDTH * part // 12, HEIGHT // 2) for part in range(4, 9)]
        return min(self.watch.brightness(points)) > 60

    def clear(self):
        """Makes the screen black and forgets what was drawn. Who drew on the root window leaves a picture behind."""
        deadline = time.monotonic() + 20
        while self.shows_a_picture():
            if time.monotonic() > deadline:
                raise RuntimeError("the screen still shows what was there before")
            time.sleep(0.05)
            self.watch.clear_root()
        self.watch.forget()

    def close(self):
        self.watch.close()
        for process in (self._manager, self._server):
            process.terminate()
            process.wait(timeout=20)

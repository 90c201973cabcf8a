"""Many large pictures, one after the other: what a change costs, what the history holds, and whether memory grows."""
import time

import table
import workshop
from screen import MOST_OF_IT, Screen
from shows import Feh, Lumivane

MOST_TIMES_FEH = 1.0
MOST_BYTES_A_PIXEL = 1.6
MOST_GROWTH_MIB = 1
HISTORY = 12      # pictures, where memory isn't short (engine/ImageHistory.h)
SETTLED = 20      # changes until all pools are full
QUIET = 0.25      # seconds without a frame: the picture is whole
PATIENCE = 30     # seconds for a picture

NOTE = (f"JPEG of {workshop.MEGAPIXELS:.0f} megapixels, no motion, no dissolve; the next key once nothing was drawn for "
        f"{QUIET * 1000:.0f} ms. Ours makes mip levels and keeps the last {HISTORY} pictures; feh scales to the screen and "
        "keeps none.")
NOTE_MEMORY = ("Memory of program and decoder, contents of files apart. By the picture: from the second to the "
               f"{HISTORY}th in the history. Grown: the last ten changes less the ten after the first {SETTLED}, medians.")


def rows(bench):
    changes = SETTLED + 10 if bench.quick else 200
    rounds = 1 if bench.quick else 2
    ours, theirs = table.in_turn(rounds, lambda: _run(bench, _ours, changes), lambda: _run(bench, _theirs, changes))
    own_pixels = workshop.MEGAPIXELS * 1e6 / 2**20
    return [
        _row("picture change: CPU", "ms", ours, theirs, lambda run: run.cpu_ms, note=NOTE, most_ratio=MOST_TIMES_FEH),
        _row("picture change: key to next picture", "ms", ours, theirs, lambda run: run.milliseconds, note=NOTE),
        table.Row("history: memory by the picture", "bytes a pixel",
                  [(run.mib[HISTORY - 1] - run.mib[1]) / (HISTORY - 2) / own_pixels for run in ours], most=MOST_BYTES_A_PIXEL,
                  note=NOTE_MEMORY),
        _row(f"memory after {HISTORY} pictures", "MiB", ours, theirs, lambda run: run.mib[HISTORY - 1], note=NOTE_MEMORY),
        _row(f"memory grown from {SETTLED} to {changes} changes", "MiB", ours, theirs, _Run.growth, note=NOTE_MEMORY,
             most=MOST_GROWTH_MIB),
    ]


def _row(work, unit, ours, theirs, figure, **more):
    return table.Row(work, unit, [figure(run) for run in ours], Feh.name, [figure(run) for run in theirs], **more)


class _Run:
    """Figures of one program over all changes."""

    def __init__(self, cpu_seconds, waits, mib):
        self.cpu_ms = cpu_seconds * 1000 / len(waits)
        self.milliseconds = sorted(waits)[len(waits) // 2] * 1000
        self.mib = mib  # after the n-th picture

    def growth(self):
        return sorted(self.mib[-10:])[5] - sorted(self.mib[SETTLED:SETTLED + 10])[5]


def _ours(bench, screen):
    return Lumivane(screen, bench.workshop.home("changes"), bench.workshop.pictures())


def _theirs(bench, screen):
    return Feh(screen, bench.workshop.home("changes-feh"), bench.workshop.pictures())


def _run(bench, make, changes):
    screen = Screen(bench.workshop.home("screen"))
    try:
        with make(bench, screen) as show:
            show.start()
            time.sleep(3)
            mib, waits, begin = [show.memory_mib()], [], show.cpu_seconds()
            for _ in range(changes):
                waits.append(_change(show))
                mib.append(show.memory_mib())
            return _Run(show.cpu_seconds() - begin, waits, mib)
    finally:
        screen.close()


def _change(show):
    """Seconds from the key to the first frame of the next picture; returns once it is whole."""
    show.screen.watch.forget()
    begin = time.monotonic()
    show.next_picture()
    if not _frame_within(show.screen, PATIENCE):
        raise RuntimeError(f"{show.name} shows no other picture")
    seconds = time.monotonic() - begin
    while _frame_within(show.screen, QUIET):
        pass
    return seconds


def _frame_within(screen, seconds):
    return any(one.pixels >= MOST_OF_IT for one in screen.watch.drawn(seconds))
